// qvroofload db import uk-figures DIR | gv100ad FILE | zones FILE.csv |
// at-municipalities FILE.csv [--db FILE]
//
// Thin adapters over the importers of maintenance/: each prints what it
// changed per table, or the faults of the input and "Nothing was loaded."

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "commands.h"
#include "maintenance/StoreImports.h"
#include "store/StoreFiles.h"
#include "support/errors.h"

namespace qvrl::cli {

namespace {

struct ImportOptions {
    std::string file;
    std::string db;
    int32_t land = 50;
};

template <typename Run>
int RunImport(const ImportOptions& o, Run run) {
    try {
        std::cout << imports::ReportText(run(o.file, o.db));
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

CLI::Option* AddDbOption(CLI::App& cmd, std::string& db) {
    return cmd.add_option("--db", db,
                          "qvrl.mdb to look in (default: your own copy where an import made one, else the shipped one)")
        ->type_name("FILE");
}

bool ApplyDbOption(const std::string& db, const char* command) {
    if (db.empty()) return true;
    std::error_code ec;
    if (!std::filesystem::is_regular_file(db, ec)) {
        std::cerr << "qvroofload " << command << ": --db: " << db << ": no such database\n";
        return false;
    }
    SetStoreFileOverride("qvrl.mdb", db);
    return true;
}

void AddDbCommand(CLI::App& app, Context& ctx) {
    CLI::App* db = app.add_subcommand("db", "Maintain the databases of the component");
    db->require_subcommand(1);
    CLI::App* import = db->add_subcommand("import", "Load data into a database");
    import->require_subcommand(1);
    AddDbContoursCommand(*import, ctx);
    auto opts = std::make_shared<ImportOptions>();
    CLI::App* uk = import->add_subcommand(
        "uk-figures", "Load the grids of figures NA.3 to NA.8 of the UK annex to EN 1991-1-4 from "
                      "en_bs_fig3.csv ... en_bs_fig8.csv (first row: dist and the heights in m; "
                      "one row per distance in km)");
    uk->add_option("DIR", opts->file, "Folder of the six CSV files")->required();
    uk->add_option("--db", opts->db, "qvrl.mdb to load (default: your own copy in the per-user folder)");
    uk->callback([opts, &ctx] {
        ctx.exitCode =
            RunImport(*opts, [](const std::string& d, const std::string& db) { return imports::UkFigures(d, db); });
    });

    const char* const dbHelp =
        "qvrl.mdb to load, the list files beside it (default: your own copies in the per-user folder, made from "
        "the shipped ones on first import)";
    auto gv = std::make_shared<ImportOptions>();
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
            RunImport(*gv, [](const std::string& f, const std::string& db) { return imports::Gv100ad(f, db); });
    });

    auto zones = std::make_shared<ImportOptions>();
    CLI::App* zonesCmd = import->add_subcommand("zones", kZonesHelp);
    zonesCmd->add_option("FILE", zones->file, "CSV file of zone assignments")->required();
    zonesCmd->add_option("--db", zones->db, dbHelp);
    zonesCmd->add_option("--land", zones->land, "50 Germany (default) or 51 Austria")->check(CLI::IsMember({50, 51}));
    zonesCmd->callback([zones, &ctx] {
        const int32_t land = zones->land;
        ctx.exitCode = RunImport(
            *zones, [land](const std::string& f, const std::string& db) { return imports::Zones(f, db, land); });
    });

    auto at = std::make_shared<ImportOptions>();
    CLI::App* atCmd =
        import->add_subcommand("at-municipalities",
                               "Load the municipality list of Statistik Austria (Gemeindekennziffer; Gemeindename; "
                               "Gemeindecode; Status; PLZ des Gem.Amtes; weitere Postleitzahlen) into slzwlz1 with "
                               "Land_ID 51. Zones and figures already entered are kept");
    atCmd->add_option("FILE", at->file, "CSV file, ';' separated (UTF-8 or Windows-1252)")->required();
    atCmd->add_option("--db", at->db, dbHelp);
    atCmd->callback([at, &ctx] {
        ctx.exitCode = RunImport(
            *at, [](const std::string& f, const std::string& db) { return imports::AtMunicipalities(f, db); });
    });
}

}  // namespace qvrl::cli
