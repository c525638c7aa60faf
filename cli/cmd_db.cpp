// qvroofload db import uk-figures DIR [--db FILE]
//
// Loads the grids of the UK annex figures from en_bs_fig3.csv ... en_bs_fig8.csv
// into qvrl.mdb. All six files are read and checked before the database is
// opened, and the six tables are replaced in one transaction: on any fault
// the database stays as it was.
//
// qvroofload db import gv100ad FILE | zones FILE.csv | at-municipalities FILE.csv [--db FILE]
//
// Load the municipality directories and zone assignments into the town
// tables (location/TownImport.h); each says what it changed per table.

#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands.h"
#include "maintenance/TownImport.h"
#include "store/modDAO.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace fs = std::filesystem;

namespace qvrl::cli {

namespace {

const char* const kFigureTables[] = {"en_bs_fig3", "en_bs_fig4", "en_bs_fig5",
                                     "en_bs_fig6", "en_bs_fig7", "en_bs_fig8"};

// A fault in an input file, with its place.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Grid {
    std::string table;
    std::string file;
    std::vector<std::string> heightNames;
    std::vector<double> heights;
    std::vector<std::vector<double>> rows;  // dist, then one value per height
};

std::string Place(const std::string& file, size_t line, size_t column = 0) {
    std::string s = file + ":" + std::to_string(line);
    if (column) s += ": column " + std::to_string(column);
    return s;
}

std::string TrimCell(std::string_view c) {
    std::string s = Trim(c);
    while (!s.empty() && s.front() == '\t') s.erase(0, 1);
    while (!s.empty() && s.back() == '\t') s.pop_back();
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"') s = s.substr(1, s.size() - 2);
    return Trim(s);
}

std::vector<std::string> SplitCells(const std::string& line) {
    std::vector<std::string> cells;
    std::string cur;
    std::istringstream in(line);
    while (std::getline(in, cur, ',')) cells.push_back(TrimCell(cur));
    if (!line.empty() && line.back() == ',') cells.emplace_back();
    return cells;
}

// A decimal number filling the whole cell: digits, an optional point, sign
// and exponent; nothing else ("inf", "nan", "1,5" and blanks are no numbers).
bool ParseNumber(const std::string& cell, double& out) {
    if (cell.empty() || cell.find_first_not_of("0123456789.-eE") != std::string::npos) return false;
    const char* end = cell.data() + cell.size();
    const auto r = std::from_chars(cell.data(), end, out);
    return r.ec == std::errc() && r.ptr == end && std::isfinite(out);
}

bool IsHeightName(const std::string& s) {
    const size_t dot = s.find('.');
    const std::string whole = s.substr(0, dot);
    if (whole.empty() || whole.find_first_not_of("0123456789") != std::string::npos) return false;
    if (dot == std::string::npos) return true;
    const std::string frac = s.substr(dot + 1);
    return !frac.empty() && frac.find_first_not_of("0123456789") == std::string::npos;
}

Grid ReadGrid(const fs::path& path, const std::string& table) {
    Grid g;
    g.table = table;
    g.file = path.string();
    std::ifstream in(path, std::ios::binary);
    if (!in) throw InputError(g.file + ": missing or cannot be read");
    const std::string text((std::istreambuf_iterator<char>(in)), {});
    std::vector<std::string> lines;
    {
        std::string line;
        std::istringstream s(text);
        while (std::getline(s, line)) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            lines.push_back(line);
        }
    }
    if (!lines.empty() && lines[0].rfind("\xEF\xBB\xBF", 0) == 0) lines[0].erase(0, 3);

    bool haveHeader = false;
    size_t headerCells = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        const size_t lineNo = i + 1;
        if (Trim(lines[i]).empty()) continue;
        const std::vector<std::string> cells = SplitCells(lines[i]);
        if (!haveHeader) {
            if (UCase(cells[0]) != "DIST")
                throw InputError(Place(g.file, lineNo, 1) + ": the first heading must be 'dist', not '" + cells[0] +
                                 "'");
            if (cells.size() < 2) throw InputError(Place(g.file, lineNo) + ": no height columns after 'dist'");
            for (size_t c = 1; c < cells.size(); ++c) {
                double h = 0.0;
                if (!IsHeightName(cells[c]) || !ParseNumber(cells[c], h))
                    throw InputError(Place(g.file, lineNo, c + 1) + ": the heading '" + cells[c] +
                                     "' is not a height in metres written in digits");
                if (!g.heights.empty() && !(h > g.heights.back()))
                    throw InputError(Place(g.file, lineNo, c + 1) + ": height " + cells[c] + " m does not rise above " +
                                     g.heightNames.back() + " m in column " + std::to_string(c));
                g.heightNames.push_back(cells[c]);
                g.heights.push_back(h);
            }
            headerCells = cells.size();
            haveHeader = true;
            continue;
        }
        if (cells.size() != headerCells)
            throw InputError(Place(g.file, lineNo) + ": " + std::to_string(cells.size()) + " cells, but the heading has " +
                             std::to_string(headerCells));
        std::vector<double> row;
        for (size_t c = 0; c < cells.size(); ++c) {
            double v = 0.0;
            if (!ParseNumber(cells[c], v))
                throw InputError(Place(g.file, lineNo, c + 1) + " (" +
                                 (c == 0 ? std::string("dist") : g.heightNames[c - 1] + " m") + "): '" + cells[c] +
                                 "' is not a number");
            row.push_back(v);
        }
        if (row[0] < 0.0) throw InputError(Place(g.file, lineNo, 1) + ": the distance " + cells[0] + " is negative");
        if (!g.rows.empty() && !(row[0] > g.rows.back()[0]))
            throw InputError(Place(g.file, lineNo, 1) + ": the distance " + cells[0] +
                             " km does not rise above the one of the row before (" +
                             DoubleToText(g.rows.back()[0]) + " km)");
        g.rows.push_back(std::move(row));
    }
    if (!haveHeader) throw InputError(g.file + ": empty; the first row must be 'dist' and the heights");
    if (g.rows.empty()) throw InputError(g.file + ": no rows of values under the heading");
    return g;
}

bool HasTable(Database& db, const std::string& name) {
    for (TableDef& d : db.TableDefs())
        if (UCase(d.Name()) == UCase(name)) return true;
    return false;
}

void ReplaceTable(Database& db, const Grid& g) {
    if (HasTable(db, g.table)) db.TableDefs().Delete(g.table);
    TableDef def = db.CreateTableDef(g.table);
    def.Fields().Append(def.CreateField("dist", dao::dbDouble));
    for (const std::string& h : g.heightNames) def.Fields().Append(def.CreateField(h, dao::dbDouble));
    db.TableDefs().Append(def);
    auto rs = db.OpenRecordset(g.table, dao::dbOpenDynaset);
    for (const std::vector<double>& row : g.rows) {
        rs->AddNew();
        for (size_t c = 0; c < row.size(); ++c) rs->Fields().Item(static_cast<int32_t>(c)).Value(Variant(row[c]));
        rs->Update();
    }
    rs->Close();
}

struct ImportOptions {
    std::string dir;
    std::string db;
};

int ImportUkFigures(const ImportOptions& o) {
    std::error_code ec;
    if (!fs::is_directory(o.dir, ec)) {
        std::cerr << "qvroofload: " << o.dir << ": no such folder\n";
        return 1;
    }
    std::vector<Grid> grids;
    try {
        for (const char* t : kFigureTables) grids.push_back(ReadGrid(fs::path(o.dir) / (std::string(t) + ".csv"), t));
    } catch (const InputError& e) {
        std::cerr << "qvroofload: " << e.what() << "\nNothing was loaded.\n";
        return 1;
    }
    const std::string path = o.db.empty() ? ProgramFolder() + "/qvrl.mdb" : o.db;
    if (!FileExists(path)) {
        std::cerr << "qvroofload: " << path << ": no such database\nNothing was loaded.\n";
        return 1;
    }
    auto db = DBEngine::OpenDatabase(path, {}, false);
    db->BeginTrans();
    try {
        for (const Grid& g : grids) ReplaceTable(*db, g);
        db->CommitTrans();
    } catch (const RuntimeError& e) {
        db->Rollback();
        std::cerr << "qvroofload: " << path << ": error " << e.number() << ": " << e.description()
                  << "\nNothing was loaded.\n";
        return 1;
    }
    std::cout << "Loaded into " << path << ":\n";
    for (const Grid& g : grids)
        std::cout << "  " << g.table << ": " << g.rows.size() << (g.rows.size() == 1 ? " row" : " rows") << " (dist "
                  << DoubleToText(g.rows.front()[0]) << " .. " << DoubleToText(g.rows.back()[0]) << " km), "
                  << g.heights.size() << (g.heights.size() == 1 ? " height" : " heights") << " ("
                  << g.heightNames.front() << " .. " << g.heightNames.back() << " m)\n";
    return 0;
}

struct TownImportOptions {
    std::string file;
    std::string db;
    int32_t land = 50;
};

std::string Count(int32_t n, const char* what) { return std::to_string(n) + " " + what; }

template <typename Run>
int RunTownImport(const TownImportOptions& o, Run run) {
    const std::string path = o.db.empty() ? ProgramFolder() + "/qvrl.mdb" : o.db;
    try {
        const TownImportReport r = run(o.file, path);
        std::cout << "Loaded " << r.source << "\n";
        for (const TableTally& t : r.tables)
            std::cout << "  " << t.file << " " << t.table << ": " << Count(t.inserted, "inserted") << ", "
                      << Count(t.updated, "updated") << ", " << Count(t.unchanged, "unchanged") << ", "
                      << Count(t.untouched, r.untouchedMeaning.c_str()) << "\n";
        for (const std::string& n : r.notes) std::cout << "  " << n << "\n";
        return 0;
    } catch (const TownInputError& e) {
        for (const std::string& f : e.faults()) std::cerr << "qvroofload: " << f << "\n";
    } catch (const RuntimeError& e) {
        std::cerr << "qvroofload: "
                  << (e.number() == err::FileNotFound ? "" : "error " + std::to_string(e.number()) + ": ")
                  << e.description() << "\n";
    }
    std::cerr << "Nothing was loaded.\n";
    return 1;
}

const char* const kZonesHelp =
    "Load zone assignments from a CSV file. Header: AGS, then any of WZ, SZ, BemW, BemS, sk, qb, vb, hNN; "
    "separator ';' (',' when the header has no ';'); '#' starts a comment line; quote a cell with \"...\" to hold "
    "the separator. AGS is a prefix of the municipality key: 2 (state), 3 (region), 5 (county) or 8 digits "
    "(municipality) for --land 50, 1, 3 or 5 digits for --land 51. Each town takes the values of the deepest key "
    "that covers it, whatever the row order; an empty cell means no entry, columns left out stay as they are. "
    "WZ, SZ: up to 10 characters; BemW, BemS: up to 255; sk, qb, vb: 0 or more; hNN: any number; decimal point "
    "or comma. Land 50 writes the zones and remarks into slzwlz and slzwlz1, the numbers into slzwlz1 only; "
    "Land 51 writes slzwlz1 only.";

}  // namespace

void AddDbCommand(CLI::App& app, Context& ctx) {
    CLI::App* db = app.add_subcommand("db", "Maintain the databases of the component");
    db->require_subcommand(1);
    CLI::App* import = db->add_subcommand("import", "Load data into a database");
    import->require_subcommand(1);
    auto opts = std::make_shared<ImportOptions>();
    CLI::App* uk = import->add_subcommand(
        "uk-figures", "Load the grids of figures NA.3 to NA.8 of the UK annex to EN 1991-1-4 from "
                      "en_bs_fig3.csv ... en_bs_fig8.csv (first row: dist and the heights in m; "
                      "one row per distance in km)");
    uk->add_option("DIR", opts->dir, "Folder of the six CSV files")->required();
    uk->add_option("--db", opts->db, "Database to load (default: qvrl.mdb in the program folder)");
    uk->callback([opts, &ctx] { ctx.exitCode = ImportUkFigures(*opts); });

    const char* const dbHelp = "qvrl.mdb to load (default: the one in the program folder)";
    auto gv = std::make_shared<TownImportOptions>();
    CLI::App* gvCmd = import->add_subcommand(
        "gv100ad",
        "Load the municipality directory of the Federal Statistical Office (GV100AD, fixed-width "
        "records) into slzwlz and slzwlz1 (Land_ID 50), and into the slz and wlz lists "
        "(qvrlslz.mdb, qvrlslz_dibt.mdb, qvrlwlz.mdb, qvrlwlz_dibt.mdb) beside qvrl.mdb. Zones already "
        "entered are kept");
    gvCmd->add_option("FILE", gv->file, "GV100AD file (UTF-8 or Windows-1252)")->required();
    gvCmd->add_option("--db", gv->db, dbHelp);
    gvCmd->callback([gv, &ctx] {
        ctx.exitCode =
            RunTownImport(*gv, [](const std::string& f, const std::string& db) { return ImportGv100ad(f, db); });
    });

    auto zones = std::make_shared<TownImportOptions>();
    CLI::App* zonesCmd = import->add_subcommand("zones", kZonesHelp);
    zonesCmd->add_option("FILE", zones->file, "CSV file of zone assignments")->required();
    zonesCmd->add_option("--db", zones->db, dbHelp);
    zonesCmd->add_option("--land", zones->land, "50 Germany (default) or 51 Austria")->check(CLI::IsMember({50, 51}));
    zonesCmd->callback([zones, &ctx] {
        const int32_t land = zones->land;
        ctx.exitCode = RunTownImport(
            *zones, [land](const std::string& f, const std::string& db) { return ImportZones(f, db, land); });
    });

    auto at = std::make_shared<TownImportOptions>();
    CLI::App* atCmd =
        import->add_subcommand("at-municipalities",
                               "Load the municipality list of Statistik Austria (Gemeindekennziffer; Gemeindename; "
                               "Gemeindecode; Status; PLZ des Gem.Amtes; weitere Postleitzahlen) into slzwlz1 with "
                               "Land_ID 51. Zones and figures already entered are kept");
    atCmd->add_option("FILE", at->file, "CSV file, ';' separated (UTF-8 or Windows-1252)")->required();
    atCmd->add_option("--db", at->db, dbHelp);
    atCmd->callback([at, &ctx] {
        ctx.exitCode = RunTownImport(
            *at, [](const std::string& f, const std::string& db) { return ImportAtMunicipalities(f, db); });
    });
}

}  // namespace qvrl::cli
