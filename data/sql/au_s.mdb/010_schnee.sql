-- Austrian snow data by municipality, the source of the maintenance import
-- of snow zone, ground snow load and altitude into slzwlz1 (Land_ID 51).
-- BL_ID is the state number as text, format "0". Ships empty.

CREATE TABLE schnee (
    BL_ID    VARCHAR(2)   COLLATE QVRL_TEXT,
    Gemeinde VARCHAR(100) COLLATE QVRL_TEXT,
    hNN      DOUBLE,
    SZ       VARCHAR(10)  COLLATE QVRL_TEXT,
    sk       DOUBLE
);
CREATE INDEX schnee_Gemeinde ON schnee (BL_ID, Gemeinde);
