#pragma once
// Loading the grids of the UK annex figures NA.3 to NA.8 (EN 1991-1-4) into
// the tables en_bs_fig3 ... en_bs_fig8 of qvrl.mdb, from one CSV file per
// table named after it (en_bs_fig3.csv ...):
//   dist,2,5,10          <- "dist", then the heights in m, rising, in digits
//   0.1,1.25,1.5,2       <- one row per distance in km, rising, values as doubles
// Separator ','; a cell may be quoted; blank lines are skipped. Numbers take
// a decimal point; "inf", "nan" and a decimal comma are refused.
//
// All six files are read and checked before a database is opened, and the
// six tables are replaced in one transaction: on any fault the database stays
// as it was. Bad input is TownInputError, as for the other importers.

#include <string>
#include <vector>

#include "maintenance/TownImport.h"

namespace qvrl {

inline constexpr const char* kUkFigureTables[] = {"en_bs_fig3", "en_bs_fig4", "en_bs_fig5",
                                                  "en_bs_fig6", "en_bs_fig7", "en_bs_fig8"};

struct UkFigureGrid {
    std::string table;  // en_bs_fig3 ... en_bs_fig8
    std::string file;   // where it was read, for messages
    std::vector<std::string> heightNames;   // column names as written
    std::vector<double> heights;            // their values, rising
    std::vector<std::vector<double>> rows;  // dist, then one value per height; dist rising
};

// Reads and checks one grid file for the given table.
UkFigureGrid ReadUkFigureGrid(const std::string& path, const std::string& table);

// Reads the six files <dir>/en_bs_figN.csv, in table order.
std::vector<UkFigureGrid> ReadUkFigureGrids(const std::string& dir);

// Replaces each grid's table in dbPath (dropped and made anew with its
// columns) in one transaction. A grid with no heights or no rows is refused
// with TownInputError before the database is opened; a missing database is
// error 3024. Engine errors come after everything is rolled back. Returns one
// tally per grid: inserted rows, and as "untouched" the rows the old table held.
std::vector<TableTally> WriteUkFigureGrids(const std::vector<UkFigureGrid>& grids, const std::string& dbPath);

// One line per grid: its rows, distances and heights.
std::vector<std::string> UkFigureSummary(const std::vector<UkFigureGrid>& grids);

}  // namespace qvrl
