#pragma once
// Loading the official municipality lists, and an office's zone assignments,
// into the town tables (slzwlz, slzwlz1 in qvrl.mdb; slz and wlz in the list
// files beside it).
//
// Every import reads and checks its whole file before it opens a database, so
// a bad record changes nothing; the writes then go into one transaction over
// every file the import reaches, committed atomically across the files (a
// fault or a killed process leaves them all as they were). A rerun of the same file
// finds every row equal and changes nothing. Rows already in a table that the
// file does not name are kept: a municipality merged away may still carry an
// office's zones. Files may be UTF-8 (with or without a byte order mark) or
// Windows-1252; text that is not valid UTF-8 is read as Windows-1252.
//
// GV100AD, the municipality directory of the Federal Statistical Office:
// fixed-width records of exactly 220 characters (not bytes; a shorter one is
// a record cut off, and an error), record type in columns 1-2. Read are type 10 (state:
// 11-12 number, 23-72 name), 20 (government region: 13 number, 23-72 name),
// 40 (county: 14-15 number, 23-72 name) and 60 (municipality: 11-18 AGS,
// 23-72 name, 166-170 postcode of the seat).
// Types 30 and 50 (planning regions, associations) have no column in the
// town tables and are only checked for their keys. Each municipality becomes
// a row; so does each county whose key with "000" names no municipality, with
// an empty Gemeinde, standing for the whole county. Zones and figures of rows
// already there are kept; new rows start without them.
//
// Zone assignments, a CSV file of ours:
//   # lines starting with '#' are comments; blank lines are skipped
//   AGS;WZ;SZ;BemW;BemS;sk;qb;vb;hNN      <- header: AGS, then any of the rest
//   05;2;2;;;;;;
//   05334;3;2;"Eifel: WZ 3, sonst 2";;;;;
//   05334002;;1a;;;0.85;;;
// Separator ';' when the header holds one, else ','. A cell may be quoted
// ("..." with "" for a quote) to hold the separator. The key is a prefix of
// the AGS: for Germany (Land 50) 2 digits (state), 3 (region), 5 (county) or
// 8 (municipality); for Austria (Land 51) 1, 3 or 5. Every town takes the
// columns of the deepest key that covers it, whatever the order of the rows;
// an empty cell means "no entry" (empty text, 0 for a number). Columns not in
// the header are left as they are. WZ and SZ hold at most 10 characters, the
// remarks 255; sk, qb, vb are numbers of 0 or more, hNN any number, with a
// decimal point or comma. Land 50 writes WZ, SZ, BemW, BemS into slzwlz and
// slzwlz1, the numbers into slzwlz1 only; Land 51 writes slzwlz1 only.
//
// Austrian municipality list of Statistik Austria ("gemliste_knz"): ';'
// separated, header with Gemeindekennziffer, Gemeindename, Gemeindecode, PLZ
// des Gem.Amtes, weitere Postleitzahlen (lines before the header and notes
// after the rows are skipped). Each row goes into slzwlz1 with Land_ID 51 and
// the Austrian key widths: AGS is the Gemeindecode (the Kennziffer where the
// code is missing; they differ only in Vienna, whose districts share one
// Kennziffer), BL_ID its first digit, Reg_ID the next two (the district),
// Gem_ID the last two, LK_ID "00". The list names no districts, so Reg_Name
// and LK_Name of new rows are empty and those of existing rows are kept. The
// table has one postcode per row: the one of the municipal office; the
// further postcodes are checked but not stored.

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace qvrl {

// Bad records of an input file, each "file:line: what is wrong". Nothing was
// written when this is thrown.
class TownInputError : public std::runtime_error {
public:
    explicit TownInputError(std::vector<std::string> faults);
    const std::vector<std::string>& faults() const noexcept { return faults_; }

private:
    std::vector<std::string> faults_;
};

// What an import did to one table.
struct TableTally {
    std::string file;   // the database file, without its folder
    std::string table;  // e.g. "slzwlz1 (Land_ID 50)"
    int32_t inserted = 0;
    int32_t updated = 0;
    int32_t unchanged = 0;
    int32_t untouched = 0;  // rows of the table the file does not reach
    bool operator==(const TableTally&) const = default;
};

struct TownImportReport {
    std::string source;  // one line: what was read
    std::vector<TableTally> tables;
    std::string untouchedMeaning = "not in the file";  // what TableTally::untouched counts
    std::vector<std::string> notes;                    // worth knowing, not faults
};

// One row of the town tables taken from a municipality directory.
struct DirectoryTown {
    int32_t line = 0;  // of the record in the file; for a county row, of the county
    std::string AGS;
    std::string BL_ID, BL_Name, Reg_ID, Reg_Name, LK_ID, LK_Name, Gem_ID, Gemeinde, PLZ;
};

struct Gv100Directory {
    std::string stand;  // Gebietsstand, "dd.mm.yyyy"
    int32_t states = 0, regions = 0, counties = 0, municipalities = 0;
    std::vector<DirectoryTown> towns;  // municipalities, then county rows, in file order
};

// Reads and checks a GV100AD file (TownInputError on bad records; error 53
// when it does not exist).
Gv100Directory ReadGv100ad(const std::string& path);

// The list files filled beside qvrl.mdb by the directory import.
inline constexpr const char* kSlzListFiles[] = {"qvrlslz.mdb", "qvrlslz_dibt.mdb"};
inline constexpr const char* kWlzListFiles[] = {"qvrlwlz.mdb", "qvrlwlz_dibt.mdb"};

// Loads a GV100AD file into slzwlz and slzwlz1 (Land_ID 50) of qvrlDb, and into
// the slz and wlz lists of those list files that lie beside it. Engine errors
// (RuntimeError) come after everything is rolled back.
TownImportReport ImportGv100ad(const std::string& path, const std::string& qvrlDb);

// Loads zone assignments (format above) for Land 50 or 51.
TownImportReport ImportZones(const std::string& path, const std::string& qvrlDb, int32_t landId = 50);

// Loads the Austrian municipality list into slzwlz1, Land_ID 51.
TownImportReport ImportAtMunicipalities(const std::string& path, const std::string& qvrlDb);

// For fault tests: called inside the import's transaction after each database
// file has been written (with the file's name); a throw there aborts the import.
using ImportStageHook = std::function<void(const std::string& file)>;
void SetImportStageHook(ImportStageHook hook);

}  // namespace qvrl
