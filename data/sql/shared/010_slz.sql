-- Snow load zones by municipality, in the older numbering of the snow list:
-- Bundesland is the official state number (Niedersachsen 3 "NI",
-- Sachsen-Anhalt 15 "ST"). Filled by `qvroofload db import gv100ad`; the
-- component ships no rows.

CREATE TABLE slz (
    ID               INTEGER,
    Bundesland       INTEGER,
    RegBez           SMALLINT,
    Kreis            SMALLINT,
    Landkreis        VARCHAR(100) COLLATE QVRL_TEXT,
    Gemeinde         VARCHAR(100) COLLATE QVRL_TEXT,
    "KEY"            DOUBLE,
    Schneelastzone   VARCHAR(10)  COLLATE QVRL_TEXT,
    "Fußnote(n)"     VARCHAR(50)  COLLATE QVRL_TEXT
);
CREATE INDEX slz_Hierarchy ON slz (Bundesland, RegBez, Kreis);
CREATE INDEX slz_KEY ON slz ("KEY");
