-- Towns and their zones by official municipality key (AGS): slzwlz for the
-- German rules, slzwlz1 for the Eurocode with the country on top and the
-- numeric snow and wind figures.
--
-- The component ships no municipality rows: the official directories are
-- loaded by the user with `qvroofload db import gv100ad|zones|at-municipalities`.
--
-- Key columns are text with fixed widths (BL_ID "00", Reg_ID "0", LK_ID "00",
-- Gem_ID "000", PLZ "00000"; in Austria, Land_ID 51, BL_ID "0" and Reg_ID
-- "00"). A row that stands for a whole county, or the rest of one, has an
-- empty Gemeinde. An empty WZ or SZ means no entry; in slzwlz1 a zero in sk,
-- qb or hNN means the same.

CREATE TABLE slzwlz (
    ID       INTEGER,
    AGS      VARCHAR(10)  COLLATE QVRL_TEXT,
    BL_ID    VARCHAR(2)   COLLATE QVRL_TEXT,
    BL_Name  VARCHAR(50)  COLLATE QVRL_TEXT,
    Reg_ID   VARCHAR(2)   COLLATE QVRL_TEXT,
    Reg_Name VARCHAR(50)  COLLATE QVRL_TEXT,
    LK_ID    VARCHAR(2)   COLLATE QVRL_TEXT,
    LK_Name  VARCHAR(100) COLLATE QVRL_TEXT,
    Gem_ID   VARCHAR(3)   COLLATE QVRL_TEXT,
    Gemeinde VARCHAR(100) COLLATE QVRL_TEXT,
    PLZ      VARCHAR(5)   COLLATE QVRL_TEXT,
    WZ       VARCHAR(10)  COLLATE QVRL_TEXT,
    SZ       VARCHAR(10)  COLLATE QVRL_TEXT,
    BemW     VARCHAR(255) COLLATE QVRL_TEXT,
    BemS     VARCHAR(255) COLLATE QVRL_TEXT
);
CREATE INDEX slzwlz_AGS ON slzwlz (AGS);
CREATE INDEX slzwlz_Hierarchy ON slzwlz (BL_ID, Reg_ID, LK_ID);
CREATE INDEX slzwlz_PLZ ON slzwlz (PLZ);
CREATE INDEX slzwlz_Gemeinde ON slzwlz (Gemeinde);

CREATE TABLE slzwlz1 (
    ID             INTEGER,
    Land_ID        INTEGER,
    Land           VARCHAR(50)  COLLATE QVRL_TEXT,
    Land_ShortName VARCHAR(10)  COLLATE QVRL_TEXT,
    AGS            VARCHAR(10)  COLLATE QVRL_TEXT,
    BL_ID          VARCHAR(2)   COLLATE QVRL_TEXT,
    BL_Name        VARCHAR(50)  COLLATE QVRL_TEXT,
    BL_ShortName   VARCHAR(10)  COLLATE QVRL_TEXT,
    Reg_ID         VARCHAR(2)   COLLATE QVRL_TEXT,
    Reg_Name       VARCHAR(50)  COLLATE QVRL_TEXT,
    LK_ID          VARCHAR(2)   COLLATE QVRL_TEXT,
    LK_Name        VARCHAR(100) COLLATE QVRL_TEXT,
    Gem_ID         VARCHAR(3)   COLLATE QVRL_TEXT,
    Gemeinde       VARCHAR(100) COLLATE QVRL_TEXT,
    PLZ            VARCHAR(5)   COLLATE QVRL_TEXT,
    WZ             VARCHAR(10)  COLLATE QVRL_TEXT,
    SZ             VARCHAR(10)  COLLATE QVRL_TEXT,
    BemW           VARCHAR(255) COLLATE QVRL_TEXT,
    BemS           VARCHAR(255) COLLATE QVRL_TEXT,
    qb             DOUBLE,
    vb             DOUBLE,
    sk             DOUBLE,
    hNN            DOUBLE
);
CREATE INDEX slzwlz1_AGS ON slzwlz1 (AGS);
CREATE INDEX slzwlz1_Hierarchy ON slzwlz1 (Land_ID, BL_ID, Reg_ID, LK_ID);
CREATE INDEX slzwlz1_PLZ ON slzwlz1 (PLZ);
CREATE INDEX slzwlz1_Gemeinde ON slzwlz1 (Gemeinde);
