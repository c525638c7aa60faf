-- Figures NA.3 to NA.8 of the UK national annex to BS EN 1991-1-4 as grids:
-- one row per distance `dist` (km), one column per height z - h_dis (m)
-- named by its digits. A column counts as a height exactly when its name is
-- a number; the heights rise from left to right, the distances from row to
-- row. Between nodes the figures are interpolated, outside them the nearest
-- node holds.
--
--   en_bs_fig3  roughness factor c_r over the distance to the shore
--   en_bs_fig4  roughness: correction inside town
--   en_bs_fig5  turbulence factor over the distance to the shore
--   en_bs_fig6  turbulence: correction inside town
--   en_bs_fig7  exposure factor c_e over the distance to the shore
--   en_bs_fig8  exposure: correction inside town
--
-- THE TABLES SHIP EMPTY. Their values may only be read from the published
-- figures of the national annex at the grid nodes, and that reading has not
-- been done for this project; no value is invented or estimated here. While
-- a table is empty every figure value of it is 0.0, and so is the UK peak
-- velocity pressure.
--
-- To load them into a qvrl.mdb, write the grids as en_bs_fig3.csv ...
-- en_bs_fig8.csv into one folder (first row: dist and the heights; then one
-- row per distance) and run
--
--     qvroofload db import uk-figures FOLDER [--db PATH/qvrl.mdb]
--
-- which checks the grids and replaces all six tables at once. To ship the
-- values, add a script beside this one with their INSERT statements and a
-- note of the edition of the annex and how the figures were read.

CREATE TABLE en_bs_fig3 (dist DOUBLE, "2" DOUBLE, "5" DOUBLE, "10" DOUBLE, "20" DOUBLE, "50" DOUBLE, "100" DOUBLE, "200" DOUBLE);
CREATE TABLE en_bs_fig4 (dist DOUBLE, "2" DOUBLE, "5" DOUBLE, "10" DOUBLE, "20" DOUBLE, "50" DOUBLE, "100" DOUBLE, "200" DOUBLE);
CREATE TABLE en_bs_fig5 (dist DOUBLE, "2" DOUBLE, "5" DOUBLE, "10" DOUBLE, "20" DOUBLE, "50" DOUBLE, "100" DOUBLE, "200" DOUBLE);
CREATE TABLE en_bs_fig6 (dist DOUBLE, "2" DOUBLE, "5" DOUBLE, "10" DOUBLE, "20" DOUBLE, "50" DOUBLE, "100" DOUBLE, "200" DOUBLE);
CREATE TABLE en_bs_fig7 (dist DOUBLE, "2" DOUBLE, "5" DOUBLE, "10" DOUBLE, "20" DOUBLE, "50" DOUBLE, "100" DOUBLE, "200" DOUBLE);
CREATE TABLE en_bs_fig8 (dist DOUBLE, "2" DOUBLE, "5" DOUBLE, "10" DOUBLE, "20" DOUBLE, "50" DOUBLE, "100" DOUBLE, "200" DOUBLE);
