-- liveload: the catalogue of characteristic imposed loads, read by
-- modLiveLoadMDB.
--
--   Norm     the standard's code; NormBez its display name (up to 64 characters)
--   Art      0 a basic load (q_k in Wert, Q_k in Wert2), 1 an additional load
--            that may be added to a basic one (partition walls)
--   Zeile    the row of the standard's table, by its category code
--   Kategorie     the category with its letter first: the grid heads each
--                 group of equal Kategorie and separates the letters
--   Unterkategorie, Nutzung, Kurztext, Langtext: code, use, short text and
--                 examples; two blanks in a row in Langtext break its line
--   Wert     kN/m2; Wert2 kN, Null where the standard gives no single load
--
-- ID orders the rows and nothing else: rows are added with their columns
-- named and ID left to the file. Only values taken from the published
-- standards stand here; where a standard gives a range, the row holds the
-- recommended value.

CREATE TABLE liveload (
    ID             INTEGER PRIMARY KEY,
    Norm           SMALLINT NOT NULL,
    NormBez        VARCHAR(64)  COLLATE QVRL_TEXT,
    Art            SMALLINT NOT NULL DEFAULT 0,
    Zeile          VARCHAR(10)  COLLATE QVRL_TEXT,
    BT             VARCHAR(10)  COLLATE QVRL_TEXT,
    Kategorie      VARCHAR(255) COLLATE QVRL_TEXT,
    Unterkategorie VARCHAR(10)  COLLATE QVRL_TEXT,
    Nutzung        VARCHAR(255) COLLATE QVRL_TEXT,
    Kurztext       VARCHAR(255) COLLATE QVRL_TEXT,
    Langtext       VARCHAR(255) COLLATE QVRL_TEXT,
    Wert           DOUBLE NOT NULL,
    Wert2          DOUBLE
);

-- DIN 1055-3:2006-03, Tabelle 1: lotrechte Nutzlasten für Decken, Treppen
-- und Balkone, q_k in kN/m2 and Q_k in kN. A2 has no Q_k in the table.
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2) VALUES
(3, 'DIN 1055-3:2006-03', 0, 'A1', '', 'A Spitzböden, Wohn- und Aufenthaltsräume', 'A1', 'Spitzböden', 'Spitzboden',
 'Für Wohnzwecke nicht geeigneter, aber zugänglicher Dachraum bis 1,80 m lichter Höhe', 1.0, 1.0),
(3, 'DIN 1055-3:2006-03', 0, 'A2', '', 'A Spitzböden, Wohn- und Aufenthaltsräume', 'A2',
 'Wohn- und Aufenthaltsräume mit ausreichender Querverteilung der Lasten', 'Wohnräume mit Querverteilung',
 'Räume und Flure in Wohngebäuden, Bettenräume in Krankenhäusern, Hotelzimmer mit Küchen und Bädern', 1.5, NULL),
(3, 'DIN 1055-3:2006-03', 0, 'A3', '', 'A Spitzböden, Wohn- und Aufenthaltsräume', 'A3',
 'Wohn- und Aufenthaltsräume ohne ausreichende Querverteilung der Lasten', 'Wohnräume ohne Querverteilung',
 'wie A2, jedoch ohne ausreichende Querverteilung der Lasten', 2.0, 1.0),
(3, 'DIN 1055-3:2006-03', 0, 'B1', '', 'B Büroflächen, Arbeitsflächen, Flure', 'B1', 'Büroflächen, Arbeitsflächen, Flure', 'Büroflächen',
 'Flure in Bürogebäuden, Büroflächen, Arztpraxen ohne schweres Gerät, Stationsräume, Aufenthaltsräume, Kleinviehställe', 2.0, 2.0),
(3, 'DIN 1055-3:2006-03', 0, 'B2', '', 'B Büroflächen, Arbeitsflächen, Flure', 'B2', 'Büroflächen, Arbeitsflächen, Flure', 'Flure in Krankenhäusern, Hotels',
 'Flure in Krankenhäusern, Hotels, Altenheimen, Internaten;  Küchen und Behandlungsräume ohne schweres Gerät', 3.0, 3.0),
(3, 'DIN 1055-3:2006-03', 0, 'B3', '', 'B Büroflächen, Arbeitsflächen, Flure', 'B3', 'Büroflächen, Arbeitsflächen, Flure', 'wie B2, mit schwerem Gerät',
 'alle Beispiele von B1 und B2, jedoch mit schwerem Gerät', 5.0, 4.0),
(3, 'DIN 1055-3:2006-03', 0, 'C1', '', 'C Räume, Versammlungsräume und Flächen für Menschenansammlungen', 'C1', 'Flächen mit Tischen', 'Flächen mit Tischen',
 'Schulräume, Cafés, Restaurants, Speisesäle, Lesesäle, Empfangsräume', 3.0, 4.0),
(3, 'DIN 1055-3:2006-03', 0, 'C2', '', 'C Räume, Versammlungsräume und Flächen für Menschenansammlungen', 'C2', 'Flächen mit fester Bestuhlung', 'feste Bestuhlung',
 'Kirchen, Theater, Kinos, Kongresssäle, Hörsäle, Versammlungsräume, Wartesäle', 4.0, 4.0),
(3, 'DIN 1055-3:2006-03', 0, 'C3', '', 'C Räume, Versammlungsräume und Flächen für Menschenansammlungen', 'C3', 'frei begehbare Flächen', 'frei begehbare Flächen',
 'Museums- und Ausstellungsflächen, Eingangsbereiche in öffentlichen Gebäuden und Hotels', 5.0, 4.0),
(3, 'DIN 1055-3:2006-03', 0, 'C4', '', 'C Räume, Versammlungsräume und Flächen für Menschenansammlungen', 'C4', 'Sport- und Spielflächen', 'Sport- und Spielflächen',
 'Tanzsäle, Sporthallen, Gymnastik- und Kraftsporträume, Bühnen', 5.0, 7.0),
(3, 'DIN 1055-3:2006-03', 0, 'C5', '', 'C Räume, Versammlungsräume und Flächen für Menschenansammlungen', 'C5', 'Flächen für große Menschenansammlungen', 'große Menschenansammlungen',
 'Konzertsäle, Terrassen und Eingangsbereiche, Tribünen mit fester Bestuhlung', 5.0, 4.0),
(3, 'DIN 1055-3:2006-03', 0, 'D1', '', 'D Verkaufsräume', 'D1', 'Verkaufsräume bis 50 m² Grundfläche', 'kleine Verkaufsräume',
 'Verkaufsräume bis 50 m² Grundfläche in Wohn-, Büro- und vergleichbaren Gebäuden', 2.0, 2.0),
(3, 'DIN 1055-3:2006-03', 0, 'D2', '', 'D Verkaufsräume', 'D2', 'Einzelhandelsgeschäfte und Warenhäuser', 'Einzelhandel, Warenhäuser',
 'Flächen in Einzelhandelsgeschäften und Warenhäusern', 5.0, 4.0),
(3, 'DIN 1055-3:2006-03', 0, 'D3', '', 'D Verkaufsräume', 'D3', 'wie D2, mit hohen Lagerregalen', 'hohe Lagerregale',
 'wie D2, jedoch mit erhöhten Einzellasten infolge hoher Lagerregale', 5.0, 7.0),
(3, 'DIN 1055-3:2006-03', 0, 'E1', '', 'E Fabriken, Werkstätten, Ställe, Lagerräume', 'E1', 'Fabriken und Werkstätten mit leichtem Betrieb', 'leichter Betrieb',
 'Fabriken und Werkstätten mit leichtem Betrieb, Großviehställe', 5.0, 4.0),
(3, 'DIN 1055-3:2006-03', 0, 'E2', '', 'E Fabriken, Werkstätten, Ställe, Lagerräume', 'E2', 'Lagerflächen', 'Lagerflächen',
 'Lagerflächen einschließlich Bibliotheken', 6.0, 7.0),
(3, 'DIN 1055-3:2006-03', 0, 'E3', '', 'E Fabriken, Werkstätten, Ställe, Lagerräume', 'E3', 'Fabriken und Werkstätten mit mittlerem oder schwerem Betrieb', 'mittlerer oder schwerer Betrieb',
 'Fabriken und Werkstätten mit mittlerem oder schwerem Betrieb', 7.5, 10.0),
(3, 'DIN 1055-3:2006-03', 0, 'T1', '', 'T Treppen', 'T1', 'Treppen und Podeste ohne schweres Gerät', 'Treppen in Wohn- und Bürogebäuden',
 'Treppen und Treppenpodeste in Wohngebäuden, Bürogebäuden und Arztpraxen ohne schweres Gerät', 3.0, 2.0),
(3, 'DIN 1055-3:2006-03', 0, 'T2', '', 'T Treppen', 'T2', 'übrige Treppen und Podeste', 'übrige Treppen',
 'alle Treppen und Treppenpodeste, die nicht in T1 oder T3 fallen', 5.0, 2.0),
(3, 'DIN 1055-3:2006-03', 0, 'T3', '', 'T Treppen', 'T3', 'Zugänge und Treppen von Tribünen', 'Tribünentreppen',
 'Zugänge und Treppen von Tribünen ohne feste Sitzplätze, die als Fluchtwege dienen', 7.5, 3.0),
(3, 'DIN 1055-3:2006-03', 0, 'Z', '', 'Z Zugänge, Balkone und Ähnliches', 'Z', 'Zugänge, Balkone und Ähnliches', 'Balkone, Dachterrassen',
 'Dachterrassen, Laubengänge, Loggien, Balkone, Ausstiegspodeste', 4.0, 2.0);

-- DIN 1055-3:2006-03, the allowance for light partition walls (Trennwandzuschlag)
-- by the weight of the wall per metre, plaster included; it falls away for
-- imposed loads of 5 kN/m2 and more.
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2) VALUES
(3, 'DIN 1055-3:2006-03', 1, 'TW3', '', 'Trennwandzuschlag', 'TW3', 'leichte Trennwände bis 3 kN/m Wandlänge', 'Trennwände bis 3 kN/m',
 'unbelastete leichte Trennwände, Wandgewicht einschließlich Putz bis 3 kN/m', 0.8, NULL),
(3, 'DIN 1055-3:2006-03', 1, 'TW5', '', 'Trennwandzuschlag', 'TW5', 'leichte Trennwände bis 5 kN/m Wandlänge', 'Trennwände bis 5 kN/m',
 'unbelastete leichte Trennwände, Wandgewicht einschließlich Putz bis 5 kN/m', 1.2, NULL);

-- EN 1991-1-1:2002 (+AC:2009), Tables 6.1 (categories of use) and 6.2
-- (imposed loads on floors, balconies and stairs), the recommended values
-- (the underlined ones of each range). Category E2 (industrial use) has no
-- value in the standard and is left out.
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2) VALUES
(54, 'EN 1991-1-1:2002', 0, 'A', '', 'A Wohnflächen', 'A', 'Decken', 'Wohnräume',
 'Räume in Wohngebäuden und Häusern, Bettenräume in Krankenhäusern, Hotelzimmer, Küchen und Toiletten', 2.0, 2.0),
(54, 'EN 1991-1-1:2002', 0, 'A-T', '', 'A Wohnflächen', 'A', 'Treppen', 'Treppen', 'Treppen in Wohngebäuden', 2.0, 2.0),
(54, 'EN 1991-1-1:2002', 0, 'A-B', '', 'A Wohnflächen', 'A', 'Balkone', 'Balkone', 'Balkone in Wohngebäuden', 2.5, 2.0),
(54, 'EN 1991-1-1:2002', 0, 'B', '', 'B Büroflächen', 'B', 'Büroflächen', 'Büroflächen', 'Büroflächen', 3.0, 4.5),
(54, 'EN 1991-1-1:2002', 0, 'C1', '', 'C Flächen mit Personenansammlungen', 'C1', 'Flächen mit Tischen', 'Flächen mit Tischen',
 'Schulen, Cafés, Restaurants, Speisesäle, Lesesäle, Empfangsräume', 3.0, 4.0),
(54, 'EN 1991-1-1:2002', 0, 'C2', '', 'C Flächen mit Personenansammlungen', 'C2', 'Flächen mit fester Bestuhlung', 'feste Bestuhlung',
 'Kirchen, Theater, Kinos, Konferenzräume, Hörsäle, Versammlungsräume, Wartesäle', 4.0, 4.0),
(54, 'EN 1991-1-1:2002', 0, 'C3', '', 'C Flächen mit Personenansammlungen', 'C3', 'Flächen ohne Hindernisse für Personen', 'frei begehbare Flächen',
 'Museen, Ausstellungsräume, Zugänge in öffentlichen Gebäuden, Hotels und Krankenhäusern', 5.0, 4.0),
(54, 'EN 1991-1-1:2002', 0, 'C4', '', 'C Flächen mit Personenansammlungen', 'C4', 'Flächen für körperliche Aktivitäten', 'Sport- und Spielflächen',
 'Tanzsäle, Turnhallen, Bühnen', 5.0, 7.0),
(54, 'EN 1991-1-1:2002', 0, 'C5', '', 'C Flächen mit Personenansammlungen', 'C5', 'Flächen für große Menschenansammlungen', 'große Menschenansammlungen',
 'Konzertsäle, Sporthallen mit Tribünen, Terrassen, Zugangsbereiche, Bahnsteige', 5.0, 4.5),
(54, 'EN 1991-1-1:2002', 0, 'D1', '', 'D Verkaufsflächen', 'D1', 'Flächen in Einzelhandelsgeschäften', 'Einzelhandel', 'Flächen in Einzelhandelsgeschäften', 4.0, 4.0),
(54, 'EN 1991-1-1:2002', 0, 'D2', '', 'D Verkaufsflächen', 'D2', 'Flächen in Kaufhäusern', 'Kaufhäuser', 'Flächen in Kaufhäusern', 5.0, 7.0);

-- EN 1991-1-1:2002, Tables 6.3 and 6.4: storage, category E1.
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2) VALUES
(54, 'EN 1991-1-1:2002', 0, 'E1', '', 'E Lagerflächen', 'E1', 'Flächen mit möglicher Anhäufung von Gütern', 'Lagerflächen',
 'Lagerflächen einschließlich Bücher und anderer Dokumente', 7.5, 7.0);

-- EN 1991-1-1:2002, 6.3.1.2(8): movable partitions as a uniformly
-- distributed load added to the imposed load, by self-weight per metre.
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2) VALUES
(54, 'EN 1991-1-1:2002', 1, 'TW1', '', 'Trennwandzuschlag', 'TW1', 'versetzbare Trennwände bis 1,0 kN/m', 'Trennwände bis 1,0 kN/m',
 'versetzbare Trennwände, Eigengewicht bis 1,0 kN/m Wandlänge', 0.5, NULL),
(54, 'EN 1991-1-1:2002', 1, 'TW2', '', 'Trennwandzuschlag', 'TW2', 'versetzbare Trennwände bis 2,0 kN/m', 'Trennwände bis 2,0 kN/m',
 'versetzbare Trennwände, Eigengewicht bis 2,0 kN/m Wandlänge', 0.8, NULL),
(54, 'EN 1991-1-1:2002', 1, 'TW3', '', 'Trennwandzuschlag', 'TW3', 'versetzbare Trennwände bis 3,0 kN/m', 'Trennwände bis 3,0 kN/m',
 'versetzbare Trennwände, Eigengewicht bis 3,0 kN/m Wandlänge', 1.2, NULL);

-- EN 1991-1-1:2002 (+AC:2009), Tables 6.7 (traffic and parking areas in
-- buildings) and 6.8 (imposed loads on them), the recommended values: for F
-- q_k 2.5 of 1.5 to 2.5 and Q_k 20 of 10 to 20; for G q_k 5.0 and Q_k 90 of
-- 40 to 90. These rows stand before H so that the letters keep their order.
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2) VALUES
(54, 'EN 1991-1-1:2002', 0, 'F', '', 'F Verkehrs- und Parkflächen für leichte Fahrzeuge', 'F',
 'Fahrzeuge bis 30 kN Gesamtgewicht, höchstens 8 Sitzplätze außer dem Fahrer', 'leichte Fahrzeuge',
 'Garagen, Parkflächen, Parkhäuser', 2.5, 20.0),
(54, 'EN 1991-1-1:2002', 0, 'G', '', 'G Verkehrs- und Parkflächen für mittelschwere Fahrzeuge', 'G',
 'Fahrzeuge über 30 kN bis 160 kN Gesamtgewicht auf zwei Achsen', 'mittelschwere Fahrzeuge',
 'Zufahrten, Anlieferbereiche, Flächen mit Zufahrt für Feuerwehrfahrzeuge bis 160 kN', 5.0, 90.0);

-- EN 1991-1-1:2002 (+AC:2009), Tables 6.9 (categories of roofs) and 6.10
-- (imposed loads on roofs of category H), the recommended values. A roof of
-- category I takes the loads of its category of use A to D, so it has no
-- row of its own: the user picks that row. Category K (helicopter landing,
-- Table 6.11) is a take-off load on a given contact area, not an area load,
-- and is left to the helicopter's own figures.
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2) VALUES
(54, 'EN 1991-1-1:2002', 0, 'H', '', 'H nicht zugängliche Dächer', 'H', 'Dächer, nur für Instandhaltung zugänglich', 'nicht zugängliche Dächer',
 'Dächer, die außer für übliche Unterhaltung und Instandsetzung nicht zugänglich sind', 0.4, 1.0);

-- DIN EN 1991-1-1/NA:2010-12, Table 6.1DE, and NDP 6.3.1.2(8) for the
-- partition allowance. For categories A1 to A3, B1 to B3, C1 to C5, D1 to
-- D3, T1 to T3 and Z the annex keeps the codes and values of DIN 1055-3:2006-03
-- Table 1, and the allowance those of DIN 1055-3:2006-03: those rows are
-- copied. Left out: C6, and the E categories, which the annex renumbers
-- (E1.1, E1.2, E2.1 to E2.5, with loads for fork-lift traffic).
INSERT INTO liveload (Norm, NormBez, Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2)
SELECT 50, 'DIN EN 1991-1-1/NA:2010-12', Art, Zeile, BT, Kategorie, Unterkategorie, Nutzung, Kurztext, Langtext, Wert, Wert2
FROM liveload WHERE Norm = 3 AND Zeile NOT LIKE 'E%' ORDER BY ID;
