-- cpe rows of Norm 54: EN 1991-1-4:2005, the recommended values of section
-- 7.2 (external pressure coefficients of buildings).
--
-- Values stand as the tables print them. Where a cell spans the c_pe,10 and
-- c_pe,1 columns, both columns hold it. Where a table prints two values for
-- one geometry, suction stays in the main columns and pressure in the a
-- columns at every pitch, so that interpolating between two rows never joins
-- a suction to a pressure: F, G, H of Tables 7.3a (0 degrees), 7.4a and 7.5
-- keep their pressure in the a columns from 5 degrees up (and a main value of
-- 0 where only pressure is printed), I and J of Table 7.4a their +0.2 at -5
-- and 5 degrees, and zone I of flat roofs its +0.2. A printed +0.0 or -0.0 is
-- 0. Columns not named are Null and read as 0.

-- Table 7.1: vertical walls of rectangular plan buildings, zones A to E.
-- The row h/d <= 0.25 is keyed 0.25; rows fall by HzuD.
INSERT INTO cpe (Typ, Norm, HzuD, A10, A1, B10, B1, C10, C1, D10, D1, E10, E1) VALUES
    (1, 54, 5,    -1.2, -1.4, -0.8, -1.1, -0.5, -0.5, 0.8, 1.0, -0.7, -0.7),
    (1, 54, 1,    -1.2, -1.4, -0.8, -1.1, -0.5, -0.5, 0.8, 1.0, -0.5, -0.5),
    (1, 54, 0.25, -1.2, -1.4, -0.8, -1.1, -0.5, -0.5, 0.7, 1.0, -0.3, -0.3);

-- Table 7.2: flat roofs, zones F to I; zone I is +0.2 and -0.2 throughout.
-- Sharp eaves (TrTyp 1).
INSERT INTO cpe (Typ, Norm, TrTyp, F10, F1, G10, G1, H10, H1, I10, I1, I10a, I1a) VALUES
    (2, 54, 1, -1.8, -2.5, -1.2, -2.0, -0.7, -1.2, -0.2, -0.2, 0.2, 0.2);

-- Table 7.2, with parapets (TrTyp 2) by hp/h. The first row is the sharp
-- eaves row of the same table: a roof without parapet, hp/h = 0, from which
-- the interpolation over hp/h that the table allows starts.
INSERT INTO cpe (Typ, Norm, TrTyp, HPzuH, F10, F1, G10, G1, H10, H1, I10, I1, I10a, I1a) VALUES
    (2, 54, 2, 0,     -1.8, -2.5, -1.2, -2.0, -0.7, -1.2, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 2, 0.025, -1.6, -2.2, -1.1, -1.8, -0.7, -1.2, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 2, 0.05,  -1.4, -2.0, -0.9, -1.6, -0.7, -1.2, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 2, 0.1,   -1.2, -1.8, -0.8, -1.4, -0.7, -1.2, -0.2, -0.2, 0.2, 0.2);

-- Table 7.2, curved eaves (TrTyp 3) by r/h; H has one value for both areas.
-- The first row is the sharp eaves row (r/h = 0), as for parapets.
INSERT INTO cpe (Typ, Norm, TrTyp, RzuH, F10, F1, G10, G1, H10, H1, I10, I1, I10a, I1a) VALUES
    (2, 54, 3, 0,    -1.8, -2.5, -1.2, -2.0, -0.7, -1.2, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 3, 0.05, -1.0, -1.5, -1.2, -1.8, -0.4, -0.4, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 3, 0.1,  -0.7, -1.2, -0.8, -1.4, -0.3, -0.3, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 3, 0.2,  -0.5, -0.8, -0.5, -0.8, -0.3, -0.3, -0.2, -0.2, 0.2, 0.2);

-- Table 7.2, mansard eaves (TrTyp 4) by the eaves angle, kept in Alpha. The
-- last row is the sharp eaves row at 90 degrees: the table's note lets
-- alpha > 60 degrees interpolate between 60 degrees and sharp eaves.
INSERT INTO cpe (Typ, Norm, TrTyp, Alpha, F10, F1, G10, G1, H10, H1, I10, I1, I10a, I1a) VALUES
    (2, 54, 4, 30, -1.0, -1.5, -1.0, -1.5, -0.3, -0.3, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 4, 45, -1.2, -1.8, -1.3, -1.9, -0.4, -0.4, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 4, 60, -1.3, -1.9, -1.3, -1.9, -0.5, -0.5, -0.2, -0.2, 0.2, 0.2),
    (2, 54, 4, 90, -1.8, -2.5, -1.2, -2.0, -0.7, -1.2, -0.2, -0.2, 0.2, 0.2);

-- Table 7.3a: monopitch roofs, wind direction 0 degrees, zones F to H.
INSERT INTO cpe (Typ, Norm, Theta, Alpha,
                 F10, F1, F10a, F1a, G10, G1, G10a, G1a, H10, H1, H10a, H1a) VALUES
    (3, 54, 0, 5,  -1.7, -2.5,  0.0,  0.0, -1.2, -2.0,  0.0,  0.0, -0.6, -1.2,  0.0,  0.0),
    (3, 54, 0, 15, -0.9, -2.0,  0.2,  0.2, -0.8, -1.5,  0.2,  0.2, -0.3, -0.3,  0.2,  0.2),
    (3, 54, 0, 30, -0.5, -1.5,  0.7,  0.7, -0.5, -1.5,  0.7,  0.7, -0.2, -0.2,  0.4,  0.4),
    (3, 54, 0, 45,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.6,  0.6),
    (3, 54, 0, 60,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7),
    (3, 54, 0, 75,  0.0,  0.0,  0.8,  0.8,  0.0,  0.0,  0.8,  0.8,  0.0,  0.0,  0.8,  0.8);

-- Table 7.3b: monopitch roofs, wind direction 90 degrees, zones F_up (F),
-- F_low (Ft), G, H and I.
INSERT INTO cpe (Typ, Norm, Theta, Alpha, F10, F1, Ft10, Ft1, G10, G1, H10, H1, I10, I1) VALUES
    (3, 54, 90, 5,  -2.1, -2.6, -2.1, -2.4, -1.8, -2.0, -0.6, -1.2, -0.5, -0.5),
    (3, 54, 90, 15, -2.4, -2.9, -1.6, -2.4, -1.9, -2.5, -0.8, -1.2, -0.7, -1.2),
    (3, 54, 90, 30, -2.1, -2.9, -1.3, -2.0, -1.5, -2.0, -1.0, -1.3, -0.8, -1.2),
    (3, 54, 90, 45, -1.5, -2.4, -1.3, -2.0, -1.4, -2.0, -1.0, -1.3, -0.9, -1.2),
    (3, 54, 90, 60, -1.2, -2.0, -1.2, -2.0, -1.2, -2.0, -1.0, -1.3, -0.7, -1.2),
    (3, 54, 90, 75, -1.2, -2.0, -1.2, -2.0, -1.2, -2.0, -1.0, -1.3, -0.5, -0.5);

-- Table 7.3a: monopitch roofs, wind direction 180 degrees, zones F to H.
INSERT INTO cpe (Typ, Norm, Theta, Alpha, F10, F1, G10, G1, H10, H1) VALUES
    (3, 54, 180, 5,  -2.3, -2.5, -1.3, -2.0, -0.8, -1.2),
    (3, 54, 180, 15, -2.5, -2.8, -1.3, -2.0, -0.9, -1.2),
    (3, 54, 180, 30, -1.1, -2.3, -0.8, -1.5, -0.8, -0.8),
    (3, 54, 180, 45, -0.6, -1.3, -0.5, -0.5, -0.7, -0.7),
    (3, 54, 180, 60, -0.5, -1.0, -0.5, -0.5, -0.5, -0.5),
    (3, 54, 180, 75, -0.5, -1.0, -0.5, -0.5, -0.5, -0.5);

-- Table 7.4a: duopitch roofs, wind direction 0 degrees, zones F to J.
-- Negative pitches are troughs.
INSERT INTO cpe (Typ, Norm, Theta, Alpha,
                 F10, F1, F10a, F1a, G10, G1, G10a, G1a, H10, H1, H10a, H1a,
                 I10, I1, I10a, I1a, J10, J1, J10a, J1a) VALUES
    (4, 54, 0, -45, -0.6, -0.6,  0.0,  0.0, -0.6, -0.6,  0.0,  0.0, -0.8, -0.8,  0.0,  0.0,
                    -0.7, -0.7,  0.0,  0.0, -1.0, -1.5,  0.0,  0.0),
    (4, 54, 0, -30, -1.1, -2.0,  0.0,  0.0, -0.8, -1.5,  0.0,  0.0, -0.8, -0.8,  0.0,  0.0,
                    -0.6, -0.6,  0.0,  0.0, -0.8, -1.4,  0.0,  0.0),
    (4, 54, 0, -15, -2.5, -2.8,  0.0,  0.0, -1.3, -2.0,  0.0,  0.0, -0.9, -1.2,  0.0,  0.0,
                    -0.5, -0.5,  0.0,  0.0, -0.7, -1.2,  0.0,  0.0),
    (4, 54, 0, -5,  -2.3, -2.5,  0.0,  0.0, -1.2, -2.0,  0.0,  0.0, -0.8, -1.2,  0.0,  0.0,
                    -0.6, -0.6,  0.2,  0.2, -0.6, -0.6,  0.2,  0.2),
    (4, 54, 0, 5,   -1.7, -2.5,  0.0,  0.0, -1.2, -2.0,  0.0,  0.0, -0.6, -1.2,  0.0,  0.0,
                    -0.6, -0.6,  0.2,  0.2, -0.6, -0.6,  0.2,  0.2),
    (4, 54, 0, 15,  -0.9, -2.0,  0.2,  0.2, -0.8, -1.5,  0.2,  0.2, -0.3, -0.3,  0.2,  0.2,
                    -0.4, -0.4,  0.0,  0.0, -1.0, -1.5,  0.0,  0.0),
    (4, 54, 0, 30,  -0.5, -1.5,  0.7,  0.7, -0.5, -1.5,  0.7,  0.7, -0.2, -0.2,  0.4,  0.4,
                    -0.4, -0.4,  0.0,  0.0, -0.5, -0.5,  0.0,  0.0),
    (4, 54, 0, 45,   0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.6,  0.6,
                    -0.2, -0.2,  0.0,  0.0, -0.3, -0.3,  0.0,  0.0),
    (4, 54, 0, 60,   0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,
                    -0.2, -0.2,  0.0,  0.0, -0.3, -0.3,  0.0,  0.0),
    (4, 54, 0, 75,   0.0,  0.0,  0.8,  0.8,  0.0,  0.0,  0.8,  0.8,  0.0,  0.0,  0.8,  0.8,
                    -0.2, -0.2,  0.0,  0.0, -0.3, -0.3,  0.0,  0.0);

-- Table 7.4b: duopitch roofs, wind direction 90 degrees, zones F to I.
INSERT INTO cpe (Typ, Norm, Theta, Alpha, F10, F1, G10, G1, H10, H1, I10, I1) VALUES
    (4, 54, 90, -45, -1.4, -2.0, -1.2, -2.0, -1.0, -1.3, -0.9, -1.2),
    (4, 54, 90, -30, -1.5, -2.1, -1.2, -2.0, -1.0, -1.3, -0.9, -1.2),
    (4, 54, 90, -15, -1.9, -2.5, -1.2, -2.0, -0.8, -1.2, -0.8, -1.2),
    (4, 54, 90, -5,  -1.8, -2.5, -1.2, -2.0, -0.7, -1.2, -0.6, -1.2),
    (4, 54, 90, 5,   -1.6, -2.2, -1.3, -2.0, -0.7, -1.2, -0.6, -0.6),
    (4, 54, 90, 15,  -1.3, -2.0, -1.3, -2.0, -0.6, -1.2, -0.5, -0.5),
    (4, 54, 90, 30,  -1.1, -1.5, -1.4, -2.0, -0.8, -1.2, -0.5, -0.5),
    (4, 54, 90, 45,  -1.1, -1.5, -1.4, -2.0, -0.9, -1.2, -0.5, -0.5),
    (4, 54, 90, 60,  -1.1, -1.5, -1.2, -2.0, -0.8, -1.0, -0.5, -0.5),
    (4, 54, 90, 75,  -1.1, -1.5, -1.2, -2.0, -0.8, -1.0, -0.5, -0.5);

-- Table 7.5: hipped roofs, zones F to N. The table serves the pitch alpha_0
-- under 0 degrees and alpha_90 under 90 degrees with the same values, so the
-- rows carry no direction.
INSERT INTO cpe (Typ, Norm, Alpha,
                 F10, F1, F10a, F1a, G10, G1, G10a, G1a, H10, H1, H10a, H1a,
                 I10, I1, J10, J1, K10, K1, L10, L1, M10, M1, N10, N1) VALUES
    (5, 54, 5,  -1.7, -2.5,  0.0,  0.0, -1.2, -2.0,  0.0,  0.0, -0.6, -1.2,  0.0,  0.0,
                -0.3, -0.3, -0.6, -0.6, -0.6, -0.6, -1.2, -2.0, -0.6, -1.2, -0.4, -0.4),
    (5, 54, 15, -0.9, -2.0,  0.2,  0.2, -0.8, -1.5,  0.2,  0.2, -0.3, -0.3,  0.2,  0.2,
                -0.5, -0.5, -1.0, -1.5, -1.2, -2.0, -1.4, -2.0, -0.6, -1.2, -0.3, -0.3),
    (5, 54, 30, -0.5, -1.5,  0.5,  0.5, -0.5, -1.5,  0.7,  0.7, -0.2, -0.2,  0.4,  0.4,
                -0.4, -0.4, -0.7, -1.2, -0.5, -0.5, -1.4, -2.0, -0.8, -1.2, -0.2, -0.2),
    (5, 54, 45,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.6,  0.6,
                -0.3, -0.3, -0.6, -0.6, -0.3, -0.3, -1.3, -2.0, -0.8, -1.2, -0.2, -0.2),
    (5, 54, 60,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,  0.0,  0.0,  0.7,  0.7,
                -0.3, -0.3, -0.6, -0.6, -0.3, -0.3, -1.2, -2.0, -0.4, -0.4, -0.2, -0.2),
    (5, 54, 75,  0.0,  0.0,  0.8,  0.8,  0.0,  0.0,  0.8,  0.8,  0.0,  0.0,  0.8,  0.8,
                -0.3, -0.3, -0.6, -0.6, -0.3, -0.3, -1.2, -2.0, -0.4, -0.4, -0.2, -0.2);

-- Internal pressure (Typ 6) from Figure 7.13 is not shipped: the figure is a
-- graph, and its node values have not been read from the published figure
-- for this file. Without rows the store route gives the zero record.
