#include "maintenance/StoreImports.h"

#include "maintenance/UkFigureImport.h"
#include "store/StoreFiles.h"
#include "support/errors.h"

namespace qvrl::imports {

namespace {

std::string Target(const std::string& db) { return db.empty() ? WritableStoreFile("qvrl.mdb") : db; }

std::string Count(int32_t n, const std::string& what) { return std::to_string(n) + " " + what; }

}  // namespace

TownImportReport Gv100ad(const std::string& file, const std::string& db) {
    if (db.empty()) {
        // The directory fills the lists that lie beside qvrl.mdb; the user's
        // copies of them have to be there first.
        for (const char* f : kSlzListFiles) (void)WritableStoreFile(f);
        for (const char* f : kWlzListFiles) (void)WritableStoreFile(f);
    }
    return ImportGv100ad(file, Target(db));
}

TownImportReport Zones(const std::string& file, const std::string& db, int32_t landId) {
    // Refused before a copy is made.
    if (landId != 50 && landId != 51)
        Raise(err::InvalidCall, {}, "Land " + std::to_string(landId) + ": zones load for 50 (Germany) or 51 (Austria)");
    return ImportZones(file, Target(db), landId);
}

TownImportReport AtMunicipalities(const std::string& file, const std::string& db) {
    return ImportAtMunicipalities(file, Target(db));
}

TownImportReport UkFigures(const std::string& dir, const std::string& db) {
    // The folder is read before any copy is made.
    const std::vector<UkFigureGrid> grids = ReadUkFigureGrids(dir);
    const std::string path = Target(db);
    TownImportReport r;
    r.source = "UK annex figures from " + dir + " into " + path;
    r.tables = WriteUkFigureGrids(grids, path);
    r.untouchedMeaning = "replaced";
    r.notes = UkFigureSummary(grids);
    return r;
}

std::string ReportText(const TownImportReport& r) {
    std::string s = "Loaded " + r.source + "\n";
    for (const TableTally& t : r.tables)
        s += "  " + t.file + " " + t.table + ": " + Count(t.inserted, "inserted") + ", " +
             Count(t.updated, "updated") + ", " + Count(t.unchanged, "unchanged") + ", " +
             Count(t.untouched, r.untouchedMeaning) + "\n";
    for (const std::string& n : r.notes) s += "  " + n + "\n";
    return s;
}

}  // namespace qvrl::imports
