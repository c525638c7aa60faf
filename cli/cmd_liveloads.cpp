// qvroofload liveloads [--norm N] [--json]: the live load catalogue of
// qvrl.mdb, basic and additional loads per standard.
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "automation/StoreFailure.h"
#include "catalogue/modLiveLoadMDB.h"
#include "commands.h"
#include "store/StoreFiles.h"
#include "support/vb.h"
#include "vocab/CodeLists.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

struct LiveLoadOptions {
    bool json = false;
    int norm = 0;  // 0: every standard of the catalogue
    std::string db;
};

struct Standard {
    int16_t code = 0;
    std::string name;
    std::vector<LiveLoadRec> basic, additional;
};

ordered_json RowJson(const LiveLoadRec& r) {
    return {{"Zeile", r.Zeile},       {"BT", r.BT},           {"Kategorie", r.Kategorie},
            {"Unterkategorie", r.Unterkategorie}, {"Nutzung", r.Nutzung}, {"Kurztext", r.Kurztext},
            {"Langtext", r.Langtext}, {"Wert", r.Wert},       {"Wert2", r.Wert2}};
}

ordered_json RowsJson(const std::vector<LiveLoadRec>& rows) {
    ordered_json a = ordered_json::array();
    for (size_t i = 1; i < rows.size(); ++i) a.push_back(RowJson(rows[i]));
    return a;
}

// The table prints a missing single load as "-", since 0 would read as a
// value the standard gives.
std::string Number(double v) { return v == 0.0 ? "-" : DoubleToText(v); }

void PrintRows(std::ostream& out, const char* title, const std::vector<LiveLoadRec>& rows) {
    if (rows.size() <= 1) return;
    out << "  " << title << "\n";
    std::string kategorie;
    for (size_t i = 1; i < rows.size(); ++i) {
        const LiveLoadRec& r = rows[i];
        if (i == 1 || r.Kategorie != kategorie) out << "    " << r.Kategorie << "\n";
        kategorie = r.Kategorie;
        out << "      " << std::left << std::setw(6) << r.Zeile << std::right << std::setw(6) << Number(r.Wert)
            << std::setw(6) << Number(r.Wert2) << "  " << r.Kurztext << "\n";
    }
}

void PrintText(std::ostream& out, const std::vector<Standard>& list) {
    out << "Live load catalogue (Wert q_k in kN/m2, Wert2 Q_k in kN)\n";
    for (const Standard& s : list) {
        out << "\n" << s.name << " (Norm " << s.code << ")"
            << (SumsAdditionalLoad(s.code) ? "" : ": additional load not added to the basic load") << "\n";
        PrintRows(out, "Basic loads (Art 0)", s.basic);
        PrintRows(out, "Additional loads (Art 1)", s.additional);
    }
}

int Run(const LiveLoadOptions& o) {
    if (o.norm != 0 && !IsCatalogueNorm(static_cast<int16_t>(o.norm))) {
        std::cerr << "qvroofload liveloads: --norm " << o.norm
                  << " is no standard of the catalogue (1, 3, 50, 51, 52, 53, 54, 78, 211, 213)\n";
        return 2;
    }
    ClearStoreOpenError();
    std::vector<int16_t> codes;
    std::vector<std::string> names;
    LiveLoadNorms(codes, names);
    std::vector<Standard> list;
    for (size_t i = 1; i < codes.size(); ++i) {
        if (o.norm != 0 && codes[i] != o.norm) continue;
        Standard s{codes[i], names[i], {}, {}};
        ReadLiveLoads(s.code, liveload::ArtGrundwert, s.basic);
        ReadLiveLoads(s.code, liveload::ArtZuschlag, s.additional);
        list.push_back(std::move(s));
    }
    if (StopOnDataFailure(LastStoreFailure(), "liveloads", o.json)) return 1;
    if (o.json) {
        ordered_json a = ordered_json::array();
        for (const Standard& s : list)
            a.push_back({{"Norm", s.code},
                         {"NormBez", s.name},
                         {"sumsAdditionalLoad", SumsAdditionalLoad(s.code)},
                         {"basic", RowsJson(s.basic)},
                         {"additional", RowsJson(s.additional)}});
        std::cout << ordered_json{{"standards", a}}.dump(2) << "\n";
    } else {
        std::ostringstream text;  // nothing is printed unless all of it is
        PrintText(text, list);
        std::cout << text.str();
    }
    if (list.empty())
        std::cerr << "qvroofload liveloads: " << StoreFile("qvrl.mdb") << " holds no rows"
                  << (o.norm != 0 ? " of Norm " + std::to_string(o.norm) : std::string()) << "\n";
    return 0;
}

}  // namespace

void AddLiveLoadsCommand(CLI::App& app, Context& ctx) {
    auto opts = std::make_shared<LiveLoadOptions>();
    CLI::App* cmd = app.add_subcommand("liveloads", "List the live load catalogue: imposed loads by standard");
    cmd->add_option("--norm", opts->norm, "Only this standard (Norm code, such as 3 or 54)")
        ->check(CLI::Range(-32768, 32767));
    cmd->add_flag("--json", opts->json, "Print JSON instead of a table");
    AddDbOption(*cmd, opts->db);
    cmd->callback([opts, &ctx] {
        ApplyLanguage(ctx);
        ctx.exitCode = ApplyDbOption(opts->db, "liveloads") ? Run(*opts) : 2;
    });
}

}  // namespace qvrl::cli
