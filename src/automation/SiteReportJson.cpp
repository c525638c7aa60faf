#include "automation/SiteReportJson.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "rules/PublishedWind.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

using nlohmann::ordered_json;

constexpr const char* kPressure = "kN/m2";
constexpr const char* kLength = "m";
constexpr const char* kAngle = "deg";
constexpr const char* kRatio = "1";

ordered_json Q(std::optional<double> v, const char* unit) {
    return {{"value", v ? ordered_json(*v) : ordered_json(nullptr)}, {"unit", unit}};
}

ordered_json QOrNull(std::optional<double> v, const char* unit) { return v ? Q(v, unit) : ordered_json(nullptr); }

ordered_json Sourced(const PublishedValue& p, const char* unit) {
    ordered_json j = Q(p.value, unit);
    j["source"] = p.source;
    if (!p.note.empty()) j["note"] = p.note;
    return j;
}

ordered_json Coded(const CodeList& l, std::optional<int16_t> code) {
    if (!code) return nullptr;
    std::string text = std::to_string(*code);
    for (size_t i = 1; i < l.Index.size(); ++i)
        if (l.Index[i] == *code) text = l.sName[i];
    return {{"code", *code}, {"text", text}};
}

ordered_json Text(const std::string& s) { return s.empty() ? ordered_json(nullptr) : ordered_json(s); }

ordered_json Input(const SiteResult& r) {
    const SiteInput& in = r.input;
    const int16_t region = in.CtrlRegion.value_or(0);
    ordered_json j = {
        {"norm", in.Norm},
        {"standard", r.normText},
        {"ags", Text(in.AGS)},
        {"town", Text(r.townName)},
        {"snow_zone", Coded(SiteSnowZoneList(in.Norm, region), in.SnowZone)},
        {"climate_region", region != 0 ? Coded(ListsOfNorm(in.Norm).regions, region) : ordered_json(nullptr)},
        {"wind_zone", in.WindZone ? ordered_json(*in.WindZone) : ordered_json(nullptr)},
        {"terrain_category", Coded(ListsOfNorm(in.Norm).categories, in.BuildingCategory)},
        {"wind_profile", in.WindProfile ? ordered_json(GermanWindProfileName(*in.WindProfile)) : nullptr},
        {"altitude", Q(in.TerrainHeightInM, kLength)},
        {"building_height", Q(in.BuildingHeightInM, kLength)},
        {"roof_form", SiteRoofFormName(in.Form)},
        {"pitch", QOrNull(in.Alpha, kAngle)},
        {"plan_width", QOrNull(in.PlanWidth, kLength)},
        {"plan_depth", QOrNull(in.PlanDepth, kLength)},
    };
    if (in.Form == SiteRoofForm::Flat) {
        j["parapet_to_height"] = Q(in.hpZuH, kRatio);
        j["radius_to_height"] = Q(in.rZuH, kRatio);
        j["eaves_angle"] = Q(in.AlphaTr, kAngle);
    }
    if (in.HzuD) j["height_to_depth"] = Q(in.HzuD, kRatio);
    j["basic_velocity_pressure"] = QOrNull(in.BasicWindPressure, kPressure);
    j["basic_velocity"] = QOrNull(in.BasicWindVelocity, "m/s");
    j["upwind_slope"] = QOrNull(in.UpwindSlope_Phi, kRatio);
    j["orographic_location_factor"] = QOrNull(in.OrographicLocationFac_s, kRatio);
    j["c_dir"] = QOrNull(in.cDir, kRatio);
    j["c_season"] = QOrNull(in.cSeason, kRatio);
    j["distance_to_shore"] = QOrNull(in.DistToShore, kLength);
    j["distance_in_town"] = QOrNull(in.DistInTown, kLength);
    return j;
}

bool IsDinNorm(int16_t Norm) { return Norm == norm::DIN1986_1975 || Norm == norm::DIN2005 || Norm == norm::DIN2005_T2963; }

ordered_json Snow(const SiteResult& r) {
    const SiteInput& in = r.input;
    const bool din = IsDinNorm(in.Norm);
    auto coefficient = [&](double v, bool given, const char* clause) {
        ordered_json j = Q(v, kRatio);
        j["source"] = given ? "given" : din ? "not used by DIN 1055-5 (1.0)" : clause;
        return j;
    };
    ordered_json arrangements = ordered_json::array();
    for (const SiteSnowArrangement& a : r.arrangements) {
        ordered_json parts = ordered_json::array();
        for (const SiteSnowPart& p : a.parts)
            parts.push_back({{"part", p.part}, {"mu", Q(p.mue, kRatio)}, {"load", Q(p.s, kPressure)}});
        arrangements.push_back({{"name", a.name}, {"source", a.source}, {"parts", parts}});
    }
    return {{"ground_snow_load", Sourced(r.groundSnow, kPressure)},
            {"c_e", coefficient(r.Ce, in.Ce.has_value(), "EN 1991-1-3:2003, Table 5.1 (normal topography)")},
            {"c_t", coefficient(r.Ct, in.Ct.has_value(), "EN 1991-1-3:2003, 5.2(8)")},
            {"mu1", r.mue1 ? Sourced(*r.mue1, kRatio) : ordered_json(nullptr)},
            {"arrangements", arrangements}};
}

ordered_json Wind(const SiteResult& r) {
    return {{"reference_height", Q(r.input.BuildingHeightInM, kLength)},
            {"basic_velocity_pressure", r.basicPressure ? Sourced(*r.basicPressure, kPressure) : ordered_json(nullptr)},
            {"peak_velocity_pressure", Sourced(r.peakPressure, kPressure)}};
}

ordered_json Coefficients(const SiteResult& r) {
    ordered_json dirs = ordered_json::array();
    for (const SitePublishedCp& p : r.publishedCp) {
        const PublishedCpDirection& d = p.dir;
        ordered_json sets = ordered_json::array();
        for (size_t s = 0; s < d.sets.size(); ++s) {
            ordered_json values = ordered_json::array();
            for (size_t v = 0; v < d.sets[s].values.size(); ++v) {
                const PublishedCpValue& c = d.sets[s].values[v];
                const SiteWe& we = p.we[s][v];
                values.push_back({{"zone", c.zone},
                                  {"c_pe_10", Q(c.cpe10, kRatio)},
                                  {"c_pe_1", Q(c.cpe1, kRatio)},
                                  {"w_e_10", Q(we.we10, kPressure)},
                                  {"w_e_1", Q(we.we1, kPressure)}});
            }
            sets.push_back({{"label", d.sets[s].label}, {"note", Text(d.sets[s].note)}, {"values", values}});
        }
        ordered_json shapes = ordered_json::array();
        for (const PublishedZoneShape& z : d.shapes) {
            ordered_json pts = ordered_json::array();
            for (const auto& [x, y] : z.points) pts.push_back({x, y});
            shapes.push_back({{"zone", z.zone}, {"unit", kLength}, {"points", pts}});
        }
        auto length = [](double v) { return v > 0.0 ? Q(v, kLength) : ordered_json(nullptr); };
        dirs.push_back({{"theta", Q(d.theta, kAngle)},
                        {"source", d.source},
                        {"recommended", d.recommended},
                        {"note", Text(d.note)},
                        {"e", length(d.e)},
                        {"b", length(d.bWind)},
                        {"d", length(d.dWind)},
                        {"sets", sets},
                        {"zone_shapes", shapes}});
    }
    return {{"directions", dirs}};
}

ordered_json Notes(const SiteResult& r) {
    ordered_json notes = ordered_json::array();
    for (const SiteNote& n : r.notes)
        notes.push_back({{"kind", n.ruleUsed ? "rule_used" : "member_differs"},
                         {"topic", n.topic},
                         {"quantity", n.what},
                         {"member", Text(n.member)},
                         {"member_value", n.member.empty() ? ordered_json(nullptr)
                                                           : Q(n.memberValue, n.unit.empty() ? kRatio : kPressure)},
                         {"text", n.text}});
    return notes;
}

[[noreturn]] void BadKey(const std::string& key, const std::string& what) {
    throw SiteInputError(key, "--" + key + ": " + what);
}

// Option names as the tool spells them: "snow_zone" is --snow-zone.
std::string OptionOf(std::string key) {
    std::replace(key.begin(), key.end(), '_', '-');
    return key;
}

double NumberOf(const std::string& opt, const nlohmann::json& v) {
    if (!v.is_number()) BadKey(opt, "must be a number");
    return v.get<double>();
}

int16_t CodeOf(const std::string& opt, const nlohmann::json& v) {
    if (!v.is_number_integer() || v.get<int64_t>() < -32768 || v.get<int64_t>() > 32767)
        BadKey(opt, "must be a whole number from -32768 to 32767");
    return static_cast<int16_t>(v.get<int64_t>());
}

std::string TextOf(const std::string& opt, const nlohmann::json& v) {
    if (!v.is_string()) BadKey(opt, "must be a text");
    return v.get<std::string>();
}

}  // namespace

SiteInput SiteInputFromJson(const std::string& text) {
    nlohmann::json j;
    try {
        j = nlohmann::json::parse(text);
    } catch (const nlohmann::json::parse_error& e) {
        throw SiteInputError("input", std::string("the input is no JSON text: ") + e.what());
    }
    if (!j.is_object()) throw SiteInputError("input", "the input must be a JSON object of options");
    SiteInput in;
    bool norm = false;
    for (const auto& [key, v] : j.items()) {
        const std::string opt = OptionOf(key);
        if (v.is_null()) continue;
        using Num = std::optional<double> SiteInput::*;
        static const std::pair<const char*, Num> kNumbers[] = {
            {"altitude", &SiteInput::TerrainHeightInM}, {"height", &SiteInput::BuildingHeightInM},
            {"pitch", &SiteInput::Alpha},               {"h_d", &SiteInput::HzuD},
            {"qb", &SiteInput::BasicWindPressure},      {"vb", &SiteInput::BasicWindVelocity},
            {"phi", &SiteInput::UpwindSlope_Phi},       {"s", &SiteInput::OrographicLocationFac_s},
            {"cdir", &SiteInput::cDir},                 {"cseason", &SiteInput::cSeason},
            {"dist_shore", &SiteInput::DistToShore},    {"dist_town", &SiteInput::DistInTown},
            {"ce", &SiteInput::Ce},                     {"ct", &SiteInput::Ct},
            {"width", &SiteInput::PlanWidth},           {"depth", &SiteInput::PlanDepth},
        };
        using Code = std::optional<int16_t> SiteInput::*;
        static const std::pair<const char*, Code> kCodes[] = {
            {"wind_zone", &SiteInput::WindZone}, {"category", &SiteInput::BuildingCategory},
            {"region", &SiteInput::CtrlRegion}};
        bool known = false;
        for (const auto& [name, member] : kNumbers)
            if (key == name) in.*member = NumberOf(opt, v), known = true;
        for (const auto& [name, member] : kCodes)
            if (key == name) in.*member = CodeOf(opt, v), known = true;
        if (known) continue;
        if (key == "norm") {
            in.Norm = CodeOf(opt, v), norm = true;
        } else if (key == "town") {
            in.AGS = TextOf(opt, v);
        } else if (key == "snow_zone") {
            // A zone is named by its code or by its text, as on the command line.
            if (v.is_string()) in.SnowZoneText = v.get<std::string>();
            else in.SnowZone = CodeOf(opt, v);
        } else if (key == "roof") {
            const std::string roof = TextOf(opt, v);
            const auto form = SiteRoofFormFromName(roof == "monopitch" ? "pent" : roof);
            if (!form) BadKey(opt, "'" + roof + "' is no roof form: gabled, hipped, flat, pent (monopitch) or wall");
            in.Form = *form;
        } else if (key == "profile") {
            const std::string name = TextOf(opt, v);
            in.WindProfile = GermanWindProfileFromName(name);
            if (name != "coast" && name != "inland" && name != "islands")
                BadKey(opt, "'" + name + "' is no profile: coast, inland or islands");
        } else if (key == "hp_h" || key == "r_h" || key == "alpha_tr") {
            const double x = NumberOf(opt, v);
            (key == "hp_h" ? in.hpZuH : key == "r_h" ? in.rZuH : in.AlphaTr) = x;
        } else {
            BadKey(opt, "is no option of the site report");
        }
    }
    if (!norm) BadKey("norm", "is needed: the standard code (1, 3, 31, 50 to 54)");
    return in;
}

std::string SiteJsonFor(const std::string& inputJson) { return SiteReportJson(ComputeSite(SiteInputFromJson(inputJson))); }

std::string SiteReportJson(const SiteResult& r, int indent) {
    const ordered_json j = {{"schema_version", kSiteReportSchemaVersion},
                            {"input", Input(r)},
                            {"snow", Snow(r)},
                            {"wind", Wind(r)},
                            {"coefficients", Coefficients(r)},
                            {"notes", Notes(r)}};
    return j.dump(indent);
}

}  // namespace qvrl
