#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "vocab/CodeLists.h"
#include "commands.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/modLowLevel.h"
#include "support/vb.h"

namespace qvrl::cli {

void ApplyLanguage(const Context& ctx) {
    InitLanguageObjects();
    if (!ctx.language.empty())
        State().locActive->FileName(ProgramFolder() + "/" + ctx.language + "/" + ProgramName() + "_" + ctx.language +
                                    ".scr");
}

namespace {

using nlohmann::ordered_json;

ordered_json ListJson(const CodeList& l) {
    ordered_json a = ordered_json::array();
    for (size_t i = 1; i < l.Index.size(); ++i) a.push_back({{"text", l.sName[i]}, {"code", l.Index[i]}});
    return a;
}

ordered_json ZonesJson(const ZoneList& l) {
    ordered_json a = ordered_json::array();
    for (size_t i = 1; i < l.Index.size(); ++i)
        a.push_back({{"text", l.sName[i]}, {"code", l.Index[i]}, {"Z", l.Z[i]}});
    return a;
}

// Regions worth listing for an annex: 0 (all) and each of its regions.
std::vector<int16_t> RegionsOf(int16_t na) {
    std::vector<int16_t> r{0};
    const CodeList regions = SnowRegionList(na);
    for (size_t i = 1; i < regions.Index.size(); ++i) r.push_back(regions.Index[i]);
    return r;
}

struct Options {
    bool json = false;
    int na = -1;
    int region = -1;
    std::string selectable;
};

ordered_json BuildJson(const Options& o) {
    ordered_json j;
    ordered_json standards = ordered_json::array();
    for (const NormRow& r : NormTable()) standards.push_back({{"Norm", r.code}, {"text", r.text}});
    j["standards"] = standards;
    if (!o.selectable.empty()) {
        ordered_json sel = ordered_json::array();
        for (const NormRow& r : SelectableNormRows(o.selectable)) sel.push_back({{"Norm", r.code}, {"text", r.text}});
        j["selectable"] = {{"codes", o.selectable}, {"rows", sel}, {"enabled", sel.size() > 1}};
    }
    ordered_json other = ordered_json::array();
    for (const OtherNormCode& c : OtherNormCodes()) other.push_back({{"Norm", c.code}, {"meaning", c.meaning}});
    j["otherNormCodes"] = other;
    ordered_json live = ordered_json::array();
    const CodeList liveList = LiveLoadNormList();
    for (size_t i = 1; i < liveList.Index.size(); ++i)
        live.push_back({{"Norm", liveList.Index[i]}, {"text", liveList.sName[i]}});
    j["liveLoadStandards"] = live;
    j["windZones2005"] = ListJson(WindZoneList2005());
    j["windZones2005_T2963"] = ListJson(WindZoneList2005_T2963());
    j["windCategories2005"] = ListJson(WindCategoryList2005());
    ordered_json cats = ordered_json::array();
    for (int16_t na : AnnexCodes()) {
        if (o.na >= 0 && o.na != na) continue;
        cats.push_back({{"CtrlNA", na}, {"categories", ListJson(WindCategoryList_EN(na))}});
    }
    j["windCategoriesEN"] = cats;
    j["snowZones1975"] = ListJson(SnowZoneList1975());
    j["snowZones2005"] = ListJson(SnowZoneList2005());
    ordered_json regions = ordered_json::array(), zones = ordered_json::array();
    for (int16_t na : AnnexCodes()) {
        if (o.na >= 0 && o.na != na) continue;
        regions.push_back({{"CtrlNA", na}, {"regions", ListJson(SnowRegionList(na))}});
        for (int16_t r : RegionsOf(na)) {
            if (o.region >= 0 && o.region != r) continue;
            zones.push_back({{"CtrlNA", na}, {"CtrlRegion", r}, {"zones", ZonesJson(SnowZoneList(na, r))}});
        }
    }
    j["snowRegionsEN"] = regions;
    j["snowZonesEN"] = zones;
    j["openSides2005"] = ListJson(WindOpenSidesList2005());
    j["openSidesEN"] = ListJson(WindOpenSidesList_EN());
    return j;
}

void PrintTable(std::ostream& out, const std::string& title, const CodeList& l) {
    out << title << "\n";
    for (size_t i = 1; i < l.Index.size(); ++i)
        out << "  " << std::setw(5) << l.Index[i] << "  " << l.sName[i] << "\n";
    if (l.Count() == 0) out << "  (none)\n";
    out << "\n";
}

void PrintText(std::ostream& out, const Options& o) {
    out << "Standards (Norm)\n";
    for (const NormRow& r : NormTable()) out << "  " << std::setw(5) << r.code << "  " << r.text << "\n";
    out << "  Further codes: 31 (DIN 1055-4:2005, five wind zones), 78, 211, 213 (live load catalogue)\n\n";
    if (!o.selectable.empty()) {
        const auto rows = SelectableNormRows(o.selectable);
        out << "Selectable for \"" << o.selectable << "\"" << (rows.size() > 1 ? "" : " (list disabled)") << "\n";
        for (const NormRow& r : rows) out << "  " << std::setw(5) << r.code << "  " << r.text << "\n";
        out << "\n";
    }
    PrintTable(out, "Live load standards", LiveLoadNormList());
    PrintTable(out, "Wind zones, DIN 1055-4:2005 (Norm 3)", WindZoneList2005());
    PrintTable(out, "Wind zones, DIN 1055-4:2005 with T 2963 (Norm 31)", WindZoneList2005_T2963());
    PrintTable(out, "Terrain categories, DIN 1055-4:2005", WindCategoryList2005());
    for (int16_t na : AnnexCodes()) {
        if (o.na >= 0 && o.na != na) continue;
        PrintTable(out, "Terrain categories, EN 1991-1-4, CtrlNA " + std::to_string(na), WindCategoryList_EN(na));
    }
    PrintTable(out, "Snow zones, DIN 1055-5:1975", SnowZoneList1975());
    PrintTable(out, "Snow zones, DIN 1055-5:2005 and E DIN 1055-5:2004", SnowZoneList2005());
    for (int16_t na : AnnexCodes()) {
        if (o.na >= 0 && o.na != na) continue;
        PrintTable(out, "Climate regions, EN 1991-1-3, CtrlNA " + std::to_string(na), SnowRegionList(na));
        for (int16_t r : RegionsOf(na)) {
            if (o.region >= 0 && o.region != r) continue;
            const ZoneList z = SnowZoneList(na, r);
            out << "Snow zones, EN 1991-1-3, CtrlNA " << na << ", CtrlRegion " << r << "\n";
            out << "  " << std::setw(5) << "code" << "  " << std::setw(9) << std::left << "text" << std::right
                << "  Z\n";
            for (size_t i = 1; i < z.Index.size(); ++i)
                out << "  " << std::setw(5) << z.Index[i] << "  " << std::setw(9) << std::left << z.sName[i]
                    << std::right << "  " << DoubleToText(z.Z[i]) << "\n";
            out << "\n";
        }
    }
    PrintTable(out, "Open sides, DIN 1055-4:2005", WindOpenSidesList2005());
    PrintTable(out, "Open sides, EN 1991-1-4", WindOpenSidesList_EN());
    out << "Units\n"
           "  kN/m2  velocity pressure, wind pressure, snow load (q0, qb, s0, sk, si)\n"
           "  m/s    reference and basic wind velocity\n"
           "  m      building height, height above ground, terrain height above sea level\n"
           "  cm     height of a step or drift (DIN rules)\n"
           "  m      height of a step (Eurocode rules), width of a roof behind a fence\n"
           "  deg    roof pitch and every other angle\n"
           "  kN/m   line load on a fence or at an eave\n"
           "  999.0  from a rule: the standard has no value here\n";
}

}  // namespace

void AddListsCommand(CLI::App& app, Context& ctx) {
    auto opts = std::make_shared<Options>();
    CLI::App* cmd = app.add_subcommand("lists", "Print the codes of standards, zones and categories");
    cmd->add_flag("--json", opts->json, "Print JSON instead of tables");
    cmd->add_option("--na", opts->na, "Only this national annex (CtrlNA 50..54)")->check(CLI::Range(50, 54));
    cmd->add_option("--region", opts->region, "Only this climate region (CtrlRegion 0..12)")->check(CLI::Range(0, 12));
    cmd->add_option("--selectable", opts->selectable, "Also show the standards selected by a code set such as _1_3_54_");
    cmd->callback([opts, &ctx] {
        ApplyLanguage(ctx);
        if (opts->json) std::cout << BuildJson(*opts).dump(2) << "\n";
        else {
            std::ostringstream text;  // nothing is printed unless all of it is
            PrintText(text, *opts);
            std::cout << text.str();
        }
        ctx.exitCode = 0;
    });
}

}  // namespace qvrl::cli
