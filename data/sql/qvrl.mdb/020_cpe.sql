-- cpe: wind pressure coefficients, one row per line of a coefficient table
-- of a standard, read by modWindCpMdb.
--
--   Typ     1 vertical wall, 2 flat roof, 3 pent roof, 4 gabled roof,
--           5 hipped roof, 6 internal pressure
--   Norm    the standard's code; ID orders rows of equal key and nothing else
--   Theta   wind direction (0, 90, 180) where a table depends on it
--   Alpha   roof pitch; the mansard eaves angle in flat roof rows of TrTyp 4
--   HzuD, HPzuH, RzuH   the key of wall rows, of parapet and of rounded eaves
--   <zone>10, <zone>1   c_pe,10 and c_pe,1 of a zone; the a columns hold the
--           second value of the other sign where the standard gives two
--   TrTyp   eaves of flat roof rows (1 sharp, 2 parapet, 3 rounded,
--           4 mansard); in internal pressure rows the value the request's
--           TrTyp selects
--   Mue, Innen, Innena  opening ratio mu and c_pi of internal pressure rows
--
-- A slot the standard leaves empty holds 0, as does a Null. Rows of one table
-- ascend by their key (walls: fall by HzuD), since the loaders read them in
-- that order. Scripts that add rows name their columns and leave ID to the
-- file, so that ID follows the order of insertion.

CREATE TABLE cpe (
    ID INTEGER PRIMARY KEY,
    Typ SMALLINT NOT NULL,
    Norm SMALLINT NOT NULL,
    Theta DOUBLE DEFAULT 0,
    Alpha DOUBLE DEFAULT 0,
    HzuD DOUBLE DEFAULT 0,
    HPzuH DOUBLE DEFAULT 0,
    RzuH DOUBLE DEFAULT 0,
    A10 DOUBLE, A10a DOUBLE, A1 DOUBLE, A1a DOUBLE,
    B10 DOUBLE, B10a DOUBLE, B1 DOUBLE, B1a DOUBLE,
    C10 DOUBLE, C10a DOUBLE, C1 DOUBLE, C1a DOUBLE,
    D10 DOUBLE, D10a DOUBLE, D1 DOUBLE, D1a DOUBLE,
    E10 DOUBLE, E10a DOUBLE, E1 DOUBLE, E1a DOUBLE,
    F10 DOUBLE, F10a DOUBLE, F1 DOUBLE, F1a DOUBLE,
    G10 DOUBLE, G10a DOUBLE, G1 DOUBLE, G1a DOUBLE,
    H10 DOUBLE, H10a DOUBLE, H1 DOUBLE, H1a DOUBLE,
    I10 DOUBLE, I10a DOUBLE, I1 DOUBLE, I1a DOUBLE,
    J10 DOUBLE, J10a DOUBLE, J1 DOUBLE, J1a DOUBLE,
    K10 DOUBLE, K10a DOUBLE, K1 DOUBLE, K1a DOUBLE,
    L10 DOUBLE, L10a DOUBLE, L1 DOUBLE, L1a DOUBLE,
    M10 DOUBLE, M10a DOUBLE, M1 DOUBLE, M1a DOUBLE,
    N10 DOUBLE, N10a DOUBLE, N1 DOUBLE, N1a DOUBLE,
    Ft10 DOUBLE, Ft10a DOUBLE, Ft1 DOUBLE, Ft1a DOUBLE,
    TrTyp SMALLINT DEFAULT 0,
    Mue DOUBLE DEFAULT 0,
    Innen DOUBLE DEFAULT 0,
    Innena DOUBLE DEFAULT 0
);
CREATE INDEX cpe_select ON cpe (Typ, Norm, Theta, TrTyp);

-- Norm 3 and Norm 31: DIN 1055-4:2005-03, external pressure coefficients
-- c_pe,10 and c_pe,1 of the tables named beside each block (Tabelle 3 walls,
-- 4 flat, 5 pent, 6 gabled, 7 hipped roofs). Both codes stand for the same
-- standard and get the same rows. These are the values the component also
-- carries in its code for the route without the store; the two must stay
-- equal.
--
-- Internal pressure rows (Typ 6) are not given for these codes: the standard
-- gives c_pi over the opening ratio mu as a drawn figure, not a table, and its
-- values between the end points cannot be stated here with certainty; rows of
-- the end points alone would interpolate a line the figure need not follow.
-- Until they are read from the published figure, an internal pressure request
-- for Norm 3 or 31 finds no rows and gives the zero record.

-- ---------------------------------------------------------------- Norm 3

-- DIN 1055-4:2005, Tabelle 6, gabled roofs and troughs (negative pitch), wind direction 0 degrees; Theta 0.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, Alpha, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a, J10, J10a, J1, J1a) VALUES
    (4, 3, 0, 0, -45,  -0.6, 0, -0.6, 0,  -0.6, 0, -0.6, 0,  -0.8, 0, -0.8, 0,  -0.7, 0, -0.7, 0,  -1, 0, -1.5, 0),
    (4, 3, 0, 0, -30,  -1.1, 0, -2, 0,  -0.8, 0, -1.5, 0,  -0.8, 0, -0.8, 0,  -0.6, 0, -0.6, 0,  -0.8, 0, -1.4, 0),
    (4, 3, 0, 0, -15,  -2.5, 0, -2.8, 0,  -1.3, 0, -2, 0,  -0.9, 0, -1.2, 0,  -0.5, 0, -0.5, 0,  -0.7, 0, -1.2, 0),
    (4, 3, 0, 0, -5,  -2.3, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.8, 0, -1.2, 0,  0.2, -0.6, 0.2, -0.6,  0.2, -0.6, 0.2, -0.6),
    (4, 3, 0, 0, 5,  -1.7, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.6, 0, -1.2, 0,  0.2, -0.6, 0.2, -0.6,  0.2, -0.6, 0.2, -0.6),
    (4, 3, 0, 0, 10,  -1.3, 0, -2.2, 0,  -1, 0, -1.7, 0,  -0.4, 0, -0.4, 0,  0.2, -0.5, 0.2, -0.5,  0.2, -0.8, 0.2, -0.8),
    (4, 3, 0, 0, 15,  0.2, -0.9, 0.2, -2,  0.2, -0.8, 0.2, -1.5,  0.2, -0.3, 0.2, -0.3,  -0.4, 0, -0.4, 0,  -1, 0, -1.5, 0),
    (4, 3, 0, 0, 30,  0.7, -0.5, 0.7, -1.5,  0.7, -0.5, 0.7, -1.5,  0.4, -0.2, 0.4, -0.2,  -0.4, 0, -0.4, 0,  -0.5, 0, -0.5, 0),
    (4, 3, 0, 0, 45,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  0.6, 0, 0.6, 0,  -0.4, 0, -0.4, 0,  -0.5, 0, -0.5, 0),
    (4, 3, 0, 0, 60,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  -0.4, 0, -0.4, 0,  -0.5, 0, -0.5, 0),
    (4, 3, 0, 0, 75,  0.8, 0, 0.8, 0,  0.8, 0, 0.8, 0,  0.8, 0, 0.8, 0,  -0.4, 0, -0.4, 0,  -0.5, 0, -0.5, 0);

-- DIN 1055-4:2005, Tabelle 6, gabled roofs and troughs, wind direction 90 degrees; Theta 90.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, Alpha, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a) VALUES
    (4, 3, 90, 0, -45,  -1.4, 0, -2, 0,  -1.2, 0, -2, 0,  -1, 0, -1.3, 0,  -0.9, 0, -1.2, 0),
    (4, 3, 90, 0, -30,  -1.5, 0, -2.1, 0,  -1.2, 0, -2, 0,  -1, 0, -1.3, 0,  -0.9, 0, -1.2, 0),
    (4, 3, 90, 0, -15,  -1.9, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.8, 0, -1.2, 0,  -0.8, 0, -1.2, 0),
    (4, 3, 90, 0, -5,  -1.8, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.7, 0, -1.2, 0,  -0.6, 0, -1.2, 0),
    (4, 3, 90, 0, 5,  -1.6, 0, -2.2, 0,  -1.3, 0, -2, 0,  -0.7, 0, -1.2, 0,  0.2, -0.6, 0.2, -0.6),
    (4, 3, 90, 0, 10,  -1.4, 0, -2.1, 0,  -1.3, 0, -2, 0,  -0.6, 0, -1.2, 0,  0.2, -0.6, 0.2, -0.6),
    (4, 3, 90, 0, 15,  -1.3, 0, -2, 0,  -1.3, 0, -2, 0,  -0.6, 0, -1.2, 0,  -0.5, 0, -0.5, 0),
    (4, 3, 90, 0, 30,  -1.1, 0, -1.5, 0,  -1.4, 0, -2, 0,  -0.8, 0, -1.2, 0,  -0.5, 0, -0.5, 0),
    (4, 3, 90, 0, 45,  -1.1, 0, -1.5, 0,  -1.4, 0, -2, 0,  -0.9, 0, -1.2, 0,  -0.5, 0, -0.5, 0),
    (4, 3, 90, 0, 60,  -1.1, 0, -1.5, 0,  -1.2, 0, -2, 0,  -0.8, 0, -1, 0,  -0.5, 0, -0.5, 0),
    (4, 3, 90, 0, 75,  -1.1, 0, -1.5, 0,  -1.2, 0, -2, 0,  -0.8, 0, -1, 0,  -0.5, 0, -0.5, 0);

-- DIN 1055-4:2005, Tabelle 7, hipped roofs, zones F to N; no direction, stored as Theta 0.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, Alpha, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a, J10, J10a, J1, J1a, K10, K10a, K1, K1a, L10, L10a, L1, L1a, M10, M10a, M1, M1a, N10, N10a, N1, N1a) VALUES
    (5, 3, 0, 0, 5,  -1.7, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.6, 0, -1.2, 0,  -0.3, 0, -0.3, 0,  -0.6, 0, -0.6, 0,  -0.6, 0, -0.6, 0,  -1.2, 0, -2, 0,  -0.6, 0, -1.2, 0,  -0.4, 0, -0.4, 0),
    (5, 3, 0, 0, 15,  0.2, -0.9, 0.2, -2,  0.2, -0.8, 0.2, -1.5,  0.2, -0.3, 0.2, -0.3,  -0.5, 0, -0.5, 0,  -1, 0, -1.5, 0,  -1.2, 0, -2, 0,  -1.4, 0, -2, 0,  -0.6, 0, -1.2, 0,  -0.3, 0, -0.3, 0),
    (5, 3, 0, 0, 30,  0.5, -0.5, 0.5, -1.5,  0.7, -0.5, 0.7, -1.5,  0.4, -0.2, 0.4, -0.2,  -0.4, 0, -0.4, 0,  -0.7, 0, -1.2, 0,  -0.5, 0, -0.5, 0,  -1.4, 0, -2, 0,  -0.8, 0, -1.2, 0,  -0.2, 0, -0.2, 0),
    (5, 3, 0, 0, 45,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  0.6, 0, 0.6, 0,  -0.3, 0, -0.3, 0,  -0.6, 0, -0.6, 0,  -0.3, 0, -0.3, 0,  -1.3, 0, -2, 0,  -0.8, 0, -1.2, 0,  -0.2, 0, -0.2, 0),
    (5, 3, 0, 0, 60,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  -0.3, 0, -0.3, 0,  -0.6, 0, -0.6, 0,  -0.3, 0, -0.3, 0,  -1.2, 0, -2, 0,  -0.4, 0, -0.4, 0,  -0.2, 0, -0.2, 0),
    (5, 3, 0, 0, 75,  0.8, 0, 0.8, 0,  0.8, 0, 0.8, 0,  0.8, 0, 0.8, 0,  -0.3, 0, -0.3, 0,  -0.6, 0, -0.6, 0,  -0.3, 0, -0.3, 0,  -1.2, 0, -2, 0,  -0.4, 0, -0.4, 0,  -0.2, 0, -0.2, 0);

-- DIN 1055-4:2005, Tabelle 4, flat roofs with sharp eaves; TrTyp 1, one row.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a) VALUES
    (2, 3, 0, 1,  -1.8, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.7, 0, -1.2, 0,  -0.6, 0.2, -0.6, 0.2);

-- DIN 1055-4:2005, Tabelle 4, flat roofs with parapets, key HPzuH = h_p/h; the first row
-- is the sharp eaves (h_p/h = 0), the second key is 0.025 as the standard gives it.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, HPzuH, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a) VALUES
    (2, 3, 0, 2, 0,  -1.8, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.7, 0, -1.2, 0,  -0.6, 0.2, -0.6, 0.2),
    (2, 3, 0, 2, 0.025,  -1.6, 0, -2.2, 0,  -1.1, 0, -1.8, 0,  -0.7, 0, -1.2, 0,  -0.6, 0.2, -0.6, 0.2),
    (2, 3, 0, 2, 0.05,  -1.4, 0, -2, 0,  -0.9, 0, -1.6, 0,  -0.7, 0, -1.2, 0,  -0.6, 0.2, -0.6, 0.2),
    (2, 3, 0, 2, 0.1,  -1.2, 0, -1.8, 0,  -0.8, 0, -1.4, 0,  -0.7, 0, -1.2, 0,  -0.6, 0.2, -0.6, 0.2);

-- DIN 1055-4:2005, Tabelle 4, flat roofs with rounded eaves, key RzuH = r/h; the first row
-- is the sharp eaves (r/h = 0).
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, RzuH, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a) VALUES
    (2, 3, 0, 3, 0,  -1.8, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.7, 0, -1.2, 0,  -0.6, 0.2, -0.6, 0.2),
    (2, 3, 0, 3, 0.05,  -1, 0, -1.5, 0,  -1.2, 0, -1.8, 0,  -0.4, 0, -0.4, 0,  -0.2, 0.2, -0.2, 0.2),
    (2, 3, 0, 3, 0.1,  -0.7, 0, -1.2, 0,  -0.8, 0, -1.4, 0,  -0.3, 0, -0.3, 0,  -0.2, 0.2, -0.2, 0.2),
    (2, 3, 0, 3, 0.2,  -0.5, 0, -0.8, 0,  -0.5, 0, -0.8, 0,  -0.3, 0, -0.3, 0,  -0.2, 0.2, -0.2, 0.2);

-- DIN 1055-4:2005, Tabelle 4, flat roofs with mansard eaves, key Alpha = eaves angle; the
-- row 90 is the sharp eaves.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, Alpha, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a) VALUES
    (2, 3, 0, 4, 30,  -1, 0, -1.5, 0,  -1, 0, -1.5, 0,  -0.3, 0, -0.3, 0,  -0.2, 0.2, -0.2, 0.2),
    (2, 3, 0, 4, 45,  -1.2, 0, -1.8, 0,  -1.3, 0, -1.9, 0,  -0.4, 0, -0.4, 0,  -0.2, 0.2, -0.2, 0.2),
    (2, 3, 0, 4, 60,  -1.3, 0, -1.9, 0,  -1.3, 0, -1.9, 0,  -0.5, 0, -0.5, 0,  -0.2, 0.2, -0.2, 0.2),
    (2, 3, 0, 4, 90,  -1.8, 0, -2.5, 0,  -1.2, 0, -2, 0,  -0.7, 0, -1.2, 0,  -0.6, 0.2, -0.6, 0.2);

-- DIN 1055-4:2005, Tabelle 3, vertical walls of rectangular buildings, key HzuD = h/d
-- (5 for h/d >= 5, 0.25 for h/d <= 0.25), falling.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, HzuD, A10, A10a, A1, A1a, B10, B10a, B1, B1a, C10, C10a, C1, C1a, D10, D10a, D1, D1a, E10, E10a, E1, E1a) VALUES
    (1, 3, 0, 0, 5,  -1.4, 0, -1.7, 0,  -0.8, 0, -1.1, 0,  -0.5, 0, -0.7, 0,  0.8, 0, 1, 0,  -0.5, 0, -0.7, 0),
    (1, 3, 0, 0, 1,  -1.2, 0, -1.4, 0,  -0.8, 0, -1.1, 0,  -0.5, 0, -0.5, 0,  0.8, 0, 1, 0,  -0.5, 0, -0.5, 0),
    (1, 3, 0, 0, 0.25,  -1.2, 0, -1.4, 0,  -0.8, 0, -1.1, 0,  -0.5, 0, -0.5, 0,  0.7, 0, 1, 0,  -0.3, 0, -0.5, 0);

-- DIN 1055-4:2005, Tabelle 5, pent roofs, wind direction 0 degrees; Theta 0. In the rows 5
-- and 10 the values of zone H stand in the slots the built-in table gives them
-- (H1 and H1a both the negative c_pe,1), so that both routes answer alike.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, Alpha, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a) VALUES
    (3, 3, 0, 0, 5,  -1.7, 0, -2.5, 0,  -1.2, 0, -2, 0,  0.2, -0.6, -1.2, -1.2),
    (3, 3, 0, 0, 10,  -1.3, 0, -2.2, 0,  -1, 0, -1.7, 0,  0.2, -0.4, -0.7, -0.7),
    (3, 3, 0, 0, 15,  0.2, -0.9, 0.2, -2,  0.2, -0.8, 0.2, -1.5,  0.2, -0.3, 0.2, -0.3),
    (3, 3, 0, 0, 30,  0.7, -0.5, 0.7, -1.5,  0.7, -0.5, 0.7, -1.5,  0.4, -0.2, 0.4, -0.2),
    (3, 3, 0, 0, 45,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  0.6, 0, 0.6, 0),
    (3, 3, 0, 0, 60,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0,  0.7, 0, 0.7, 0),
    (3, 3, 0, 0, 75,  0.8, 0, 0.8, 0,  0.8, 0, 0.8, 0,  0.8, 0, 0.8, 0);

-- DIN 1055-4:2005, Tabelle 5, pent roofs, wind direction 90 degrees; Theta 90. Ft is the
-- low side's edge zone.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, Alpha, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a, I10, I10a, I1, I1a, Ft10, Ft10a, Ft1, Ft1a) VALUES
    (3, 3, 90, 0, 5,  -2.1, 0, -2.6, 0,  -1.8, 0, -2, 0,  -0.6, 0, -1.2, 0,  0.2, -0.6, 0.2, -0.6,  -2.1, 0, -2.4, 0),
    (3, 3, 90, 0, 10,  -2.2, 0, -2.7, 0,  -1.8, 0, -2.2, 0,  -0.7, 0, -1.2, 0,  0.2, -0.6, 0.2, -0.6,  -1.8, 0, -2.4, 0),
    (3, 3, 90, 0, 15,  -2.4, 0, -2.9, 0,  -1.9, 0, -2.5, 0,  -0.8, 0, -1.2, 0,  -0.7, 0, -1.2, 0,  -1.6, 0, -2.4, 0),
    (3, 3, 90, 0, 30,  -2.1, 0, -2.9, 0,  -1.5, 0, -2, 0,  -1, 0, -1.3, 0,  -0.8, 0, -1.2, 0,  -1.3, 0, -2, 0),
    (3, 3, 90, 0, 45,  -1.5, 0, -2.4, 0,  -1.4, 0, -2, 0,  -1, 0, -1.3, 0,  -0.9, 0, -1.2, 0,  -1.3, 0, -2, 0),
    (3, 3, 90, 0, 60,  -1.2, 0, -2, 0,  -1.2, 0, -2, 0,  -1, 0, -1.3, 0,  -0.7, 0, -1.2, 0,  -1.2, 0, -2, 0),
    (3, 3, 90, 0, 75,  -1.2, 0, -2, 0,  -1.2, 0, -2, 0,  -1, 0, -1.3, 0,  -0.5, 0, -0.5, 0,  -1.2, 0, -2, 0);

-- DIN 1055-4:2005, Tabelle 5, pent roofs, wind direction 180 degrees; Theta 180.
INSERT INTO cpe (Typ, Norm, Theta, TrTyp, Alpha, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10, H10a, H1, H1a) VALUES
    (3, 3, 180, 0, 5,  -2.3, 0, -2.5, 0,  -1.3, 0, -2, 0,  -0.8, 0, -1.2, 0),
    (3, 3, 180, 0, 10,  -2.4, 0, -2.5, 0,  -1.3, 0, -2, 0,  -0.8, 0, -1.2, 0),
    (3, 3, 180, 0, 15,  -2.5, 0, -2.8, 0,  -1.3, 0, -2, 0,  -0.8, 0, -1.2, 0),
    (3, 3, 180, 0, 30,  -1.1, 0, -2.3, 0,  -0.8, 0, -1.5, 0,  -0.8, 0, -0.8, 0),
    (3, 3, 180, 0, 45,  -0.6, 0, -1.3, 0,  -0.5, 0, -0.5, 0,  -0.7, 0, -0.7, 0),
    (3, 3, 180, 0, 60,  -0.5, 0, -1.3, 0,  -0.5, 0, -0.5, 0,  -0.5, 0, -0.5, 0),
    (3, 3, 180, 0, 75,  -0.5, 0, -1.3, 0,  -0.5, 0, -0.5, 0,  -0.5, 0, -0.5, 0);

-- ---------------------------------------------------------------- Norm 31

-- The same rows as Norm 3 under the other code, in the same order, so that
-- ID keeps following the order of insertion.
INSERT INTO cpe (
    Typ, Norm, Theta, Alpha, HzuD, HPzuH, RzuH, A10, A10a, A1, A1a, B10, B10a, B1, B1a, C10, C10a,
    C1, C1a, D10, D10a, D1, D1a, E10, E10a, E1, E1a, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10,
    H10a, H1, H1a, I10, I10a, I1, I1a, J10, J10a, J1, J1a, K10, K10a, K1, K1a, L10, L10a, L1, L1a,
    M10, M10a, M1, M1a, N10, N10a, N1, N1a, Ft10, Ft10a, Ft1, Ft1a, TrTyp, Mue, Innen, Innena
) SELECT
    Typ, 31, Theta, Alpha, HzuD, HPzuH, RzuH, A10, A10a, A1, A1a, B10, B10a, B1, B1a, C10, C10a,
    C1, C1a, D10, D10a, D1, D1a, E10, E10a, E1, E1a, F10, F10a, F1, F1a, G10, G10a, G1, G1a, H10,
    H10a, H1, H1a, I10, I10a, I1, I1a, J10, J10a, J1, J1a, K10, K10a, K1, K1a, L10, L10a, L1, L1a,
    M10, M10a, M1, M1a, N10, N10a, N1, N1a, Ft10, Ft10a, Ft1, Ft1a, TrTyp, Mue, Innen, Innena
FROM cpe WHERE Norm = 3 ORDER BY ID;
