#pragma once
// The importers as hosts reach them (the tool, the C API, Python): each takes
// its input and the database to load. An empty database path means the
// user's own copy in the per-user folder (WritableStoreFile), made from the
// shipped file on first import; the shipped files are never written. Where an
// import also fills the list files beside qvrl.mdb, each of them gets its own
// per-user copy beside the user's qvrl.mdb.
//
// Bad input is TownInputError (nothing written); the store's faults are
// RuntimeError after everything is rolled back.

#include <cstdint>
#include <string>

#include "maintenance/TownImport.h"

namespace qvrl::imports {

TownImportReport Gv100ad(const std::string& file, const std::string& db = {});
TownImportReport Zones(const std::string& file, const std::string& db = {}, int32_t landId = 50);
TownImportReport AtMunicipalities(const std::string& file, const std::string& db = {});
// dir holds en_bs_fig3.csv ... en_bs_fig8.csv.
TownImportReport UkFigures(const std::string& dir, const std::string& db = {});

// The report as the tool prints it: "Loaded <source>", then one indented line
// per table and per note.
std::string ReportText(const TownImportReport& r);

}  // namespace qvrl::imports
