// qvroofload site: the snow and wind loads of one site and one roof, as a
// report in the active language or as JSON.

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "vocab/CodeLists.h"
#include "automation/SiteReport.h"
#include "automation/StoreFailure.h"
#include "commands.h"
#include "support/CLocLite.h"
#include "support/vb.h"
#include "validate.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

// Texts of the report in the language files.
namespace txt {
constexpr int32_t Title = 9500, Standard = 9502, Town = 9503, Altitude = 9504, BuildingHeight = 9505,
                  RoofForm = 9506, Pitch = 9507, Snow = 9508, SnowZone = 9509, Region = 9510, GroundSnow = 9511,
                  Shape = 9512, RoofSnow = 9513, CeCt = 9514, NoSnowValue = 9515, NoShape = 9516, WallNoSnow = 9517,
                  Wind = 9518, WindZone = 9519, Category = 9520, PeakPressure = 9521, NoPressure = 9522,
                  Coefficients = 9523, Direction = 9524, AllDirections = 9525, Zone = 9526,
                  NoCpForStandard = 9528, NoCpInTable = 9529, Second = 9530, FormFirst = 9531, BasicPressure = 9536,
                  BasicVelocity = 9537, Valley = 9538, Eaves = 9539, HzuD = 9540, NoWindPressures = 9541,
                  Orography = 9542, Factors = 9543, Distances = 9544, VelocityPressure = 9545;
}  // namespace txt

std::string T(int32_t n) { return LoadResStr(Variant(n)); }
std::string F3(double v) { return Format(v, "0.000"); }
std::string F2(double v) { return Format(v, "0.00"); }
std::string N(double v) { return DoubleToText(v); }

// Storage for the options; what the user left out stays empty in SiteInput.
struct Options {
    bool json = false;
    int norm = 0;
    std::string town, roof = "gabled", db;
    std::string snowZone;
    int windZone = 0, category = 0, region = 0;
    double altitude = 0, height = 0, pitch = 0, hpZuH = 0, rZuH = 0, alphaTr = 0, hzud = 0;
    double qb = 0, vb = 0, phi = 0, s = 0, cdir = 0, cseason = 0, distShore = 0, distTown = 0;
    std::map<std::string, CLI::Option*> given;
};

template <class V>
std::optional<V> If(const Options& o, const char* name, V v) {
    const auto it = o.given.find(name);
    if (it == o.given.end() || it->second->count() == 0) return std::nullopt;
    return v;
}

SiteInput ToInput(const Options& o) {
    SiteInput in;
    in.Norm = static_cast<int16_t>(o.norm);
    in.AGS = o.town;
    // A zone is named by its code or by its text.
    in.SnowZoneText = o.snowZone;
    if (!o.snowZone.empty() && o.snowZone.find_first_not_of("0123456789") == std::string::npos &&
        o.snowZone.size() <= 4)
        in.SnowZone = static_cast<int16_t>(std::stoi(o.snowZone));
    in.WindZone = If(o, "wind-zone", static_cast<int16_t>(o.windZone));
    in.BuildingCategory = If(o, "category", static_cast<int16_t>(o.category));
    in.CtrlRegion = If(o, "region", static_cast<int16_t>(o.region));
    in.TerrainHeightInM = If(o, "altitude", o.altitude);
    in.BuildingHeightInM = If(o, "height", o.height);
    in.Form = *SiteRoofFormFromName(o.roof == "monopitch" ? "pent" : o.roof);
    in.Alpha = If(o, "pitch", o.pitch);
    in.hpZuH = o.hpZuH;
    in.rZuH = o.rZuH;
    in.AlphaTr = o.alphaTr;
    in.HzuD = If(o, "h-d", o.hzud);
    in.BasicWindPressure = If(o, "qb", o.qb);
    in.BasicWindVelocity = If(o, "vb", o.vb);
    in.UpwindSlope_Phi = If(o, "phi", o.phi);
    in.OrographicLocationFac_s = If(o, "s", o.s);
    in.cDir = If(o, "cdir", o.cdir);
    in.cSeason = If(o, "cseason", o.cseason);
    in.DistToShore = If(o, "dist-shore", o.distShore);
    in.DistInTown = If(o, "dist-town", o.distTown);
    return in;
}

std::string TextOf(const CodeList& l, int16_t code) {
    for (size_t i = 1; i < l.Index.size(); ++i)
        if (l.Index[i] == code) return l.sName[i];
    return std::to_string(code);
}

CodeList SnowZonesFor(const SiteInput& in) { return ListsOfNorm(in.Norm, in.CtrlRegion.value_or(0)).snowZones; }

std::string FormText(SiteRoofForm f) { return T(txt::FormFirst + static_cast<int32_t>(f)); }

// ---- JSON ----

ordered_json Json(const SiteResult& r) {
    const SiteInput& in = r.input;
    auto opt = [](const auto& v) -> ordered_json {
        if (v) return *v;
        return nullptr;
    };
    ordered_json site = {{"Norm", in.Norm},
                         {"standard", r.normText},
                         {"AGS", in.AGS.empty() ? ordered_json(nullptr) : ordered_json(in.AGS)},
                         {"town", r.townName.empty() ? ordered_json(nullptr) : ordered_json(r.townName)},
                         {"snowZone", opt(in.SnowZone)},
                         {"snowZoneText", in.SnowZone ? ordered_json(TextOf(SnowZonesFor(in), *in.SnowZone)) : nullptr},
                         {"CtrlRegion", opt(in.CtrlRegion)},
                         {"windZone", opt(in.WindZone)},
                         {"category", opt(in.BuildingCategory)},
                         {"altitude", *in.TerrainHeightInM},
                         {"buildingHeight", *in.BuildingHeightInM},
                         {"roof", SiteRoofFormName(in.Form)},
                         {"pitch", opt(in.Alpha)}};
    if (in.Form == SiteRoofForm::Flat) {
        site["hpZuH"] = in.hpZuH;
        site["rZuH"] = in.rZuH;
        site["AlphaTr"] = in.AlphaTr;
    }
    if (in.Form == SiteRoofForm::Wall) site["HzuD"] = *in.HzuD;

    ordered_json roof = ordered_json::array();
    for (const SiteRoofSnow& s : r.roofSnow)
        roof.push_back({{"name", s.name}, {"mu", s.mue}, {"s", r.skAvailable ? ordered_json(s.s) : nullptr}});
    ordered_json snow = {{"sk", r.skAvailable ? ordered_json(r.sk) : nullptr},
                         {"Ce", 1.0},
                         {"Ct", 1.0},
                         {"roofShapeAvailable", r.roofShapeAvailable},
                         {"roof", roof}};

    ordered_json wind = {{"qp", r.qpAvailable ? ordered_json(r.qp) : nullptr}};
    if (IsEurocodeNorm(in.Norm)) {
        wind["qb"] = r.qb;
        wind["vb"] = r.vb;
        wind["phi"] = in.UpwindSlope_Phi.value_or(0.0);
        wind["s"] = in.OrographicLocationFac_s.value_or(0.0);
        wind["cDir"] = in.cDir.value_or(1.0);
        wind["cSeason"] = in.cSeason.value_or(1.0);
        if (in.Norm == norm::UK) {
            wind["distToShore"] = in.DistToShore.value_or(0.0);
            wind["distInTown"] = in.DistInTown.value_or(0.0);
        }
    }

    ordered_json dirs = ordered_json::array();
    for (const SiteCpDirection& d : r.cp) {
        ordered_json zones = ordered_json::array();
        for (const SiteCpZone& z : d.zones) {
            if (!z.hasValue) {
                zones.push_back({{"zone", z.zone}, {"cpe10", nullptr}, {"cpe1", nullptr}});
                continue;
            }
            ordered_json j = {{"zone", z.zone}, {"cpe10", z.cpe10}, {"cpe1", z.cpe1}};
            if (z.hasSecond) {
                j["cpe10a"] = z.cpe10a;
                j["cpe1a"] = z.cpe1a;
            }
            if (r.qpAvailable) {
                j["we10"] = z.we10;
                j["we1"] = z.we1;
                if (z.hasSecond) {
                    j["we10a"] = z.we10a;
                    j["we1a"] = z.we1a;
                }
            }
            zones.push_back(j);
        }
        const char* status = d.status == SiteCpStatus::Ok                ? "ok"
                             : d.status == SiteCpStatus::NoneForStandard ? "noneForStandard"
                                                                         : "outsideTable";
        dirs.push_back({{"theta", opt(d.Theta)}, {"status", status}, {"zones", zones}});
    }
    ordered_json cp = {{"route", r.cpRoute == SiteCpRoute::BuiltIn ? "builtIn" : "store"}, {"directions", dirs}};
    return {{"site", site}, {"snow", snow}, {"wind", wind}, {"cp", cp}};
}

// ---- Report ----

void Line(std::ostream& out, const std::string& label, const std::string& value) {
    out << "  " << label << ": " << value << "\n";
}

void Report(std::ostream& out, const SiteResult& r) {
    const SiteInput& in = r.input;
    const std::string kN = " kN/m²";
    out << T(txt::Title) << "\n" << std::string(T(txt::Title).size(), '=') << "\n";
    Line(out, T(txt::Standard), r.normText + " (Norm " + std::to_string(in.Norm) + ")");
    if (!r.townName.empty()) Line(out, T(txt::Town), in.AGS + " " + r.townName);
    Line(out, T(txt::Altitude), N(*in.TerrainHeightInM) + " m");
    Line(out, T(txt::BuildingHeight), N(*in.BuildingHeightInM) + " m");
    std::string form = FormText(in.Form);
    if (in.Alpha) form += ", " + T(txt::Pitch) + " " + N(*in.Alpha) + "°";
    if (in.Form == SiteRoofForm::Flat) {
        if (in.hpZuH > 0) form += ", " + T(txt::Eaves) + " h_p/h " + N(in.hpZuH);
        if (in.rZuH > 0) form += ", " + T(txt::Eaves) + " r/h " + N(in.rZuH);
        if (in.AlphaTr > 0) form += ", " + T(txt::Eaves) + " α " + N(in.AlphaTr) + "°";
    }
    if (in.Form == SiteRoofForm::Wall) form += ", " + T(txt::HzuD) + " " + N(*in.HzuD);
    Line(out, T(txt::RoofForm), form);

    out << "\n" << T(txt::Snow) << "\n";
    Line(out, T(txt::SnowZone), TextOf(SnowZonesFor(in), *in.SnowZone));
    if (in.CtrlRegion && *in.CtrlRegion != 0)
        Line(out, T(txt::Region), TextOf(ListsOfNorm(in.Norm).regions, *in.CtrlRegion));
    if (!r.skAvailable) {
        Line(out, T(txt::GroundSnow), T(txt::NoSnowValue));
    } else {
        Line(out, T(txt::GroundSnow), F3(r.sk) + kN);
    }
    if (in.Form == SiteRoofForm::Wall) out << "  " << T(txt::WallNoSnow) << "\n";
    else if (!r.roofShapeAvailable) out << "  " << T(txt::NoShape) << "\n";
    for (const SiteRoofSnow& s : r.roofSnow) {
        const std::string mu = s.name == "mu1" ? "μ1" : "μ2 " + T(txt::Valley);
        std::string v = mu + " = " + F3(s.mue);
        if (r.skAvailable) v += ", " + T(txt::RoofSnow) + " = " + F3(s.s) + kN;
        Line(out, T(txt::Shape), v);
    }
    if (!r.roofSnow.empty() && r.skAvailable) out << "  (" << T(txt::CeCt) << ")\n";

    out << "\n" << T(txt::Wind) << "\n";
    if (in.WindZone) Line(out, T(txt::WindZone), std::to_string(*in.WindZone));
    if (in.BuildingCategory) Line(out, T(txt::Category), TextOf(ListsOfNorm(in.Norm).categories, *in.BuildingCategory));
    if (IsEurocodeNorm(in.Norm)) {
        if (in.Norm != norm::UK && r.qb > 0.0) Line(out, T(txt::BasicPressure), F3(r.qb) + kN);
        if (r.vb > 0.0) Line(out, T(txt::BasicVelocity), N(r.vb) + " m/s");
        if (in.UpwindSlope_Phi)
            Line(out, T(txt::Orography), "Φ = " + N(*in.UpwindSlope_Phi) + ", s = " + N(*in.OrographicLocationFac_s));
        if (in.cDir || in.cSeason)
            Line(out, T(txt::Factors),
                 "c_dir = " + N(in.cDir.value_or(1.0)) + ", c_season = " + N(in.cSeason.value_or(1.0)));
        if (in.Norm == norm::UK)
            Line(out, T(txt::Distances),
                 N(in.DistToShore.value_or(0.0)) + " m / " + N(in.DistInTown.value_or(0.0)) + " m");
    }
    Line(out, T(in.Norm == norm::DIN1986_1975 ? txt::VelocityPressure : txt::PeakPressure),
         r.qpAvailable ? F3(r.qp) + kN : T(txt::NoPressure));

    out << "\n" << T(txt::Coefficients) << ", " << FormText(in.Form) << "\n";
    for (const SiteCpDirection& d : r.cp) {
        out << "  " << (d.Theta ? T(txt::Direction) + " θ = " + N(*d.Theta) + "°" : T(txt::AllDirections)) << "\n";
        if (d.status != SiteCpStatus::Ok) {
            out << "    " << T(d.status == SiteCpStatus::NoneForStandard ? txt::NoCpForStandard : txt::NoCpInTable)
                << "\n";
            continue;
        }
        std::ostringstream head;
        head << "    " << std::left << std::setw(8) << T(txt::Zone) << std::right << std::setw(9) << "cpe,10"
             << std::setw(9) << "cpe,1";
        if (r.qpAvailable) head << std::setw(10) << "we,10" << std::setw(9) << "we,1" << "  [kN/m²]";
        out << head.str() << "\n";
        auto row = [&](const std::string& name, double c10, double c1, double w10, double w1) {
            out << "    " << std::left << std::setw(8) << name << std::right << std::setw(9) << F2(c10) << std::setw(9)
                << F2(c1);
            if (r.qpAvailable) out << std::setw(10) << F3(w10) << std::setw(9) << F3(w1);
            out << "\n";
        };
        for (const SiteCpZone& z : d.zones) {
            if (!z.hasValue) {
                out << "    " << std::left << std::setw(8) << z.zone << std::right << std::setw(9) << "-"
                    << std::setw(9) << "-" << "\n";
                continue;
            }
            row(z.zone, z.cpe10, z.cpe1, z.we10, z.we1);
            if (z.hasSecond) row("", z.cpe10a, z.cpe1a, z.we10a, z.we1a);
        }
        if (std::any_of(d.zones.begin(), d.zones.end(), [](const SiteCpZone& z) { return z.hasSecond; }))
            out << "    (" << T(txt::Second) << ")\n";
    }
    if (!r.qpAvailable) out << "  " << T(txt::NoWindPressures) << "\n";
}


}  // namespace

void AddSiteCommand(CLI::App& app, Context& ctx) {
    auto o = std::make_shared<Options>();
    CLI::App* cmd = app.add_subcommand(
        "site",
        "Snow and wind loads of one site: ground and roof snow, peak velocity pressure, and the external "
        "pressure coefficients of the roof form with their pressures");
    auto add = [&](const std::string& name, auto& var, const std::string& help) {
        CLI::Option* opt = cmd->add_option("--" + name, var, help);
        o->given[name] = opt;
        return opt;
    };
    cmd->add_flag("--json", o->json, "Print JSON instead of the report");
    add("norm", o->norm, "Standard code: 1, 3, 31 (DIN 1055), 50 DE, 51 AT, 52 IT, 53 UK, 54 EN (see `lists`)")
        ->required()
        ->check(CLI::Range(-32768, 32767));
    add("town", o->town, "Municipality key (AGS); its zones fill what is not given");
    AddDbOption(*cmd, o->db);
    add("snow-zone", o->snowZone, "Snow load zone of the standard: its code or its text, e.g. 21 or 2a (see `lists`)");
    add("wind-zone", o->windZone, "Wind zone (DIN 1055-4:2005; DIN EN: gives qb and vb)")
        ->check(CLI::Range(-32768, 32767));
    add("altitude", o->altitude, "Height of the terrain above sea level, m")->check(validate::Altitude());
    add("height", o->height, "Height of the building, m")->check(validate::BuildingHeight());
    add("category", o->category, "Terrain category code of the standard (see `lists`)")
        ->check(CLI::Range(-32768, 32767));
    add("roof", o->roof, "Roof form: gabled (default), hipped, flat, pent (monopitch) or wall")
        ->check(CLI::IsMember({"gabled", "hipped", "flat", "pent", "monopitch", "wall"}));
    add("pitch", o->pitch, "Roof pitch, degrees, 0 to 90");
    add("hp-h", o->hpZuH, "Flat roof with parapet: parapet height / building height");
    add("r-h", o->rZuH, "Flat roof with rounded eaves: radius / building height");
    add("alpha-tr", o->alphaTr, "Flat roof with mansard eaves: eaves angle, degrees");
    add("h-d", o->hzud, "Walls: building height / depth");
    add("region", o->region, "Eurocode: climate region (CtrlRegion); needed for 54")->check(CLI::Range(-32768, 32767));
    add("qb", o->qb, "Eurocode: basic velocity pressure, kN/m²")->check(validate::BasicPressure());
    add("vb", o->vb, "Eurocode: basic wind velocity, m/s (the UK annex works from it)")
        ->check(validate::BasicVelocity());
    add("phi", o->phi, "Eurocode: upwind slope Φ (with --s)");
    add("s", o->s, "Eurocode: orographic location factor s (with --phi)");
    add("cdir", o->cdir, "Eurocode 50, 51, 52: direction factor (default 1)");
    add("cseason", o->cseason, "Eurocode 50, 51, 52: season factor (default 1)");
    add("dist-shore", o->distShore, "UK annex: distance to the shore, m")->check(validate::DistanceToShore());
    add("dist-town", o->distTown, "UK annex: distance inside town, m")->check(validate::DistanceInTown());
    cmd->footer(
        "Examples:\n"
        "  qvroofload site --norm 3 --snow-zone 2 --wind-zone 2 --category 2 --altitude 300 --height 10 "
        "--roof gabled --pitch 35\n"
        "  qvroofload --lang eng site --norm 54 --region 6 --snow-zone 2 --vb 25 --category 2 --altitude 400 "
        "--height 12 --roof flat --json");
    cmd->callback([o, &ctx] {
        ApplyLanguage(ctx);
        if (!ApplyDbOption(o->db, "site")) {
            ctx.exitCode = 2;
            return;
        }
        SiteResult r;
        ClearStoreOpenError();
        try {
            r = ComputeSite(ToInput(*o));
        } catch (const SiteInputError& e) {
            // A town "not found" in a file that did not open is that file's failure.
            const StoreFailure f = LastStoreFailure();
            if (StopOnDataFailure(f, "site", o->json)) {
                ctx.exitCode = 1;
                return;
            }
            std::cerr << "qvroofload site: " << e.what() << "\nRun with --help for more information.\n";
            ctx.exitCode = WarnOnCorrections(f, "site", 2);
            return;
        }
        const StoreFailure f = LastStoreFailure();
        if (StopOnDataFailure(f, "site", o->json)) {
            ctx.exitCode = 1;
            return;
        }
        std::ostringstream text;  // nothing is printed unless all of it is
        if (o->json) text << Json(r).dump(2) << "\n";
        else Report(text, r);
        std::cout << text.str();
        ctx.exitCode = WarnOnCorrections(f, "site", 0);
    });
}

}  // namespace qvrl::cli
