// qvroofload db import uk-contours FILE.xlsx|DIR [--db FILE]
//
// Makes the grids of the UK figures from points on their contour lines
// (maintenance/UkContours.h) and loads them as uk-figures does.

#include <iostream>
#include <memory>
#include <string>

#include "commands.h"
#include "maintenance/UkContours.h"
#include "maintenance/UkFigureImport.h"
#include "store/StoreFiles.h"
#include "support/errors.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace qvrl::cli {

namespace {

std::string Nodes(const std::vector<double>& v) {
    std::string s;
    for (double d : v) s += (s.empty() ? "" : " ") + DoubleToText(d);
    return s;
}

int ImportContours(const std::string& input, const std::string& dbOption) {
    try {
        std::vector<UkFigureGrid> grids;
        std::string said;
        for (const ContourSet& set : ReadUkContours(input)) {
            const FigureGrid g = SampleUkFigure(set);
            said += "  " + set.figure + " -> " + g.table + ": " + std::to_string(set.points.size()) + " points, " +
                    std::to_string(g.distances.size()) + " distances x " + std::to_string(g.heights.size()) +
                    " heights, " + std::to_string(g.outside) + " nodes outside the points' hull (nearest value)\n" +
                    "    km: " + Nodes(g.distances) + "\n    m:  " + Nodes(g.heights) + "\n";
            grids.push_back(ToUkFigureGrid(g, set.source));
        }
        const std::string db = dbOption.empty() ? WritableStoreFile("qvrl.mdb") : dbOption;
        WriteUkFigureGrids(grids, db);
        std::cout << "Loaded " << input << " into " << db << ":\n" << said;
        return 0;
    } catch (const ContourInputError& e) {
        std::cerr << "qvroofload: " << e.what() << "\n";
    } catch (const TownInputError& e) {
        for (const std::string& f : e.faults()) std::cerr << "qvroofload: " << f << "\n";
    } catch (const RuntimeError& e) {
        std::cerr << "qvroofload: error " << e.number() << ": " << e.description() << "\n";
    }
    std::cerr << "Nothing was loaded.\n";
    return 1;
}

}  // namespace

void AddDbContoursCommand(CLI::App& import, Context& ctx) {
    struct Options {
        std::string input, db;
    };
    auto o = std::make_shared<Options>();
    CLI::App* cmd = import.add_subcommand(
        "uk-contours",
        "Make the grids of figures NA.3 to NA.8 of the UK annex to EN 1991-1-4 from points on their contour lines "
        "(X km, Y m, Z value): an .xlsx with sheets NA.3 ... NA.8, or a folder of uk_na_fig_NA_3.csv ... _8.csv; "
        "triangulated in log X, log Y and sampled on a grid, which it prints");
    cmd->add_option("INPUT", o->input, "Workbook or folder")->required();
    cmd->add_option("--db", o->db, "qvrl.mdb to load (default: your own copy in the per-user folder)");
    cmd->callback([o, &ctx] { ctx.exitCode = ImportContours(o->input, o->db); });
}

}  // namespace qvrl::cli
