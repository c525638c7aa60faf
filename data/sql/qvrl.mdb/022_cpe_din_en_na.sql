-- cpe rows of Norm 50: DIN EN 1991-1-4/NA:2010-12, the German national
-- annex to EN 1991-1-4.
--
-- Only the annex's own wall table ships here. The roof tables (EN 1991-1-4
-- Tables 7.2 to 7.5) and internal pressure are left out until it is checked
-- against the annex's text which of them it takes over unchanged and which it
-- alters; the loaders read one Norm at a time, so until then a roof request
-- under Norm 50 on the store route gives the zero record.

-- Table NA.1: vertical walls of rectangular plan buildings, zones A to E; it
-- replaces Table 7.1. Row h/d >= 5 is keyed 5, row h/d <= 0.25 is keyed
-- 0.25; rows fall by HzuD. A cell spanning c_pe,10 and c_pe,1 fills both.
INSERT INTO cpe (Typ, Norm, HzuD, A10, A1, B10, B1, C10, C1, D10, D1, E10, E1) VALUES
    (1, 50, 5,    -1.4, -1.7, -0.8, -1.1, -0.5, -0.7, 0.8, 1.0, -0.5, -0.7),
    (1, 50, 1,    -1.2, -1.4, -0.8, -1.1, -0.5, -0.5, 0.8, 1.0, -0.5, -0.5),
    (1, 50, 0.25, -1.2, -1.4, -0.8, -1.1, -0.5, -0.5, 0.7, 1.0, -0.3, -0.5);
