#pragma once
// Factors of the British annex to EN 1991-1-4, read from its figures over
// height z (m) and the distances to the shore and inside town (m). The
// figures are the tables en_bs_fig3 .. en_bs_fig8 of qvrl.mdb: a column
// `dist` in km and one column per height, named by its digits.
// Terrain category 0 is always taken 100 m from the shore; only categories
// 3 and 4 apply the correction inside town.

#include <cstdint>
#include <string>
#include <vector>

namespace qvrl {

// Two-way interpolation in a figure table: linear in z between the columns
// around it, linear in dist between the rows around it; the nearest column
// or row outside the range, no extrapolation. 0.0 when the database cannot
// be opened or the table holds no row; a missing table raises.
double FigureValue(const std::string& table, double z, double dist);
// The height columns of a table, in field order: names and their values.
void FigureColumns(const std::string& table, std::vector<std::string>& names, std::vector<double>& heights);
// The names of the columns below and above z (both the same at an edge or on a column).
void FigureColumnPair(const std::string& table, double z, std::string& lower, std::string& upper);
// Opens qvrl.mdb of the program folder once per process, read only.
bool OpenFigureDatabase();

double ExposureFactorUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown);
double RoughnessFactorUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown);
double TurbulenceUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown);

}  // namespace qvrl
