-- Wind load zones by municipality, in the wind list's own state numbering
-- (Niedersachsen 4 "NS", Sachsen-Anhalt 8 "SA"), which is not the official
-- one. ID is also the key of the municipality. Filled by
-- `qvroofload db import gv100ad`; the component ships no rows.

CREATE TABLE wlz (
    ID       INTEGER,
    LandID   INTEGER,
    BezID    SMALLINT,
    Bezirk   VARCHAR(100) COLLATE QVRL_TEXT,
    KreisID  SMALLINT,
    Kreis    VARCHAR(100) COLLATE QVRL_TEXT,
    Gemeinde VARCHAR(100) COLLATE QVRL_TEXT,
    WLZ      VARCHAR(10)  COLLATE QVRL_TEXT
);
CREATE INDEX wlz_ID ON wlz (ID);
CREATE INDEX wlz_Hierarchy ON wlz (LandID, BezID, KreisID);
