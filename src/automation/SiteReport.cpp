#include "automation/SiteReport.h"

#include <algorithm>
#include <cmath>

#include "vocab/CodeLists.h"
#include "cp/modWindCp.h"
#include "cp/modWindCpMdb.h"
#include "cp/WindCpRoutes.h"
#include "interchange/Records.h"
#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "rules/modSnow.h"
#include "rules/modSnowEN.h"
#include "rules/modWind.h"
#include "rules/modWindEN.h"
#include "rules/PublishedSnow.h"
#include "rules/PublishedWind.h"
#include "support/CLocLite.h"
#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

namespace {

constexpr const char* kFormNames[] = {"gabled", "hipped", "flat", "pent", "wall"};

// The standard without a row in the list of the dialogs.
constexpr int32_t kTextNorm31 = 9501;

[[noreturn]] void Bad(const std::string& option, const std::string& message) {
    throw SiteInputError(option, "--" + option + ": " + message);
}

std::string Num(double v) { return DoubleToText(v); }

bool Holds(const CodeList& l, int16_t code) {
    for (size_t i = 1; i < l.Index.size(); ++i)
        if (l.Index[i] == code) return true;
    return false;
}

std::string Choices(const CodeList& l) {
    std::string s;
    for (size_t i = 1; i < l.Index.size(); ++i) {
        if (!s.empty()) s += ", ";
        s += std::to_string(l.Index[i]);
        if (l.sName[i] != std::to_string(l.Index[i])) s += " (" + l.sName[i] + ")";
    }
    return s.empty() ? "none" : s;
}

void CheckCode(const std::string& option, const char* what, const CodeList& l, int16_t code,
               const std::string& normText) {
    if (!Holds(l, code))
        Bad(option, std::to_string(code) + " is not a " + what + " of " + normText + "; codes: " + Choices(l));
}

double Finite(const std::string& option, double v) {
    if (!std::isfinite(v)) Bad(option, "must be a finite number");
    return v;
}

double NotNegative(const std::string& option, double v) {
    if (Finite(option, v) < 0.0) Bad(option, "must not be negative, got " + Num(v));
    return v;
}

double Positive(const std::string& option, double v) {
    if (Finite(option, v) <= 0.0) Bad(option, "must be above 0, got " + Num(v));
    return v;
}

// Options a standard does not use are refused rather than ignored, so that
// no value the user gave is silently dropped.
template <class T>
void NotFor(const std::string& option, const std::optional<T>& v, const std::string& why) {
    if (v) Bad(option, why);
}

std::string NormText(int16_t Norm) {
    for (const NormRow& r : NormTable())
        if (r.code == Norm) return r.text;
    if (Norm == norm::DIN2005_T2963) return LoadResStr(Variant(kTextNorm31));
    return {};
}

bool IsDin(int16_t Norm) { return Norm == norm::DIN1986_1975 || Norm == norm::DIN2005 || Norm == norm::DIN2005_T2963; }

void CheckStandard(int16_t Norm) {
    if (IsDin(Norm) || IsEurocodeNorm(Norm)) return;
    std::string known;
    for (const NormRow& r : NormTable())
        known += (known.empty() ? "" : ", ") + std::to_string(r.code) + " (" + r.text + ")";
    known += ", 31 (" + NormText(norm::DIN2005_T2963) + ")";
    Bad("norm", std::to_string(Norm) + " is not a standard code; codes: " + known);
}

void CheckGeometry(SiteInput& in) {
    const bool pitched =
        in.Form == SiteRoofForm::Gabled || in.Form == SiteRoofForm::Hipped || in.Form == SiteRoofForm::Pent;
    if (in.Alpha) {
        const double a = Finite("pitch", *in.Alpha);
        if (a < 0.0 || a > 90.0) Bad("pitch", "must lie between 0 and 90 degrees, got " + Num(a));
        if (in.Form == SiteRoofForm::Wall) Bad("pitch", "a wall has no pitch");
    } else if (pitched) {
        Bad("pitch", std::string("is needed for a ") + SiteRoofFormName(in.Form) + " roof");
    }
    const bool eaves = in.hpZuH != 0.0 || in.rZuH != 0.0 || in.AlphaTr != 0.0;
    if (eaves && in.Form != SiteRoofForm::Flat)
        Bad(in.hpZuH != 0.0 ? "hp-h" : in.rZuH != 0.0 ? "r-h" : "alpha-tr", "applies to a flat roof only");
    NotNegative("hp-h", in.hpZuH);
    NotNegative("r-h", in.rZuH);
    NotNegative("alpha-tr", in.AlphaTr);
    if (in.AlphaTr > 90.0) Bad("alpha-tr", "must lie between 0 and 90 degrees, got " + Num(in.AlphaTr));
    for (const auto& [opt, v] : {std::pair{"width", in.PlanWidth}, {"depth", in.PlanDepth}})
        if (v) Positive(opt, *v);
    if (in.Form == SiteRoofForm::Wall) {
        const bool h = in.BuildingHeightInM && *in.BuildingHeightInM > 0.0 && std::isfinite(*in.BuildingHeightInM);
        if (!in.HzuD && in.PlanDepth && h) in.HzuD = *in.BuildingHeightInM / *in.PlanDepth;
        if (!in.HzuD) Bad("h-d", "is needed for walls: the ratio of building height to depth (or give --depth)");
        Positive("h-d", *in.HzuD);
        if (in.PlanDepth && h && !(std::fabs(*in.BuildingHeightInM / *in.PlanDepth - *in.HzuD) <=
                                                      1e-9 * *in.HzuD))
            Bad("h-d", "disagrees with --height / --depth = " + Num(*in.BuildingHeightInM / *in.PlanDepth));
    } else {
        NotFor("h-d", in.HzuD, "applies to walls only");
    }
}

// The code whose text in the list is the given one: the town tables and
// users name zones by their texts.
std::optional<int16_t> CodeOfText(const CodeList& l, const std::string& text) {
    const std::string t = Trim(text);
    for (size_t i = 1; i < l.Index.size(); ++i)
        if (l.sName[i] == t) return l.Index[i];
    return std::nullopt;
}

// Snow zone, region and ground snow inputs.
void CheckSnow(SiteInput& in, const std::string& normText) {
    const int16_t Norm = in.Norm;
    if (IsEurocodeNorm(Norm)) {
        const CodeList regions = ListsOfNorm(Norm).regions;
        if (Norm == norm::EN && !in.CtrlRegion)
            Bad("region", "is needed for " + normText +
                              ": the climate region decides the ground snow formula; codes: " + Choices(regions));
        if (in.CtrlRegion) {
            if (regions.Count() == 0 && *in.CtrlRegion != 0) Bad("region", normText + " has no climate regions");
            if (*in.CtrlRegion != 0 || Norm == norm::EN)
                CheckCode("region", "climate region", regions, *in.CtrlRegion, normText);
        } else {
            in.CtrlRegion = 0;
        }
    } else {
        NotFor("region", in.CtrlRegion, "climate regions belong to the Eurocode standards");
    }
    const CodeList zones = SiteSnowZoneList(Norm, in.CtrlRegion.value_or(0));
    if ((!in.SnowZone || !Holds(zones, *in.SnowZone)) && !in.SnowZoneText.empty()) {
        // The code first: the British "1" is code 101, the Austrian "2" 102.
        in.SnowZone = CodeOfText(zones, in.SnowZoneText);
        if (!in.SnowZone)
            Bad("snow-zone",
                "'" + in.SnowZoneText + "' is not a snow zone of " + normText + "; codes: " + Choices(zones));
    }
    if (!in.SnowZone) Bad("snow-zone", "is needed; codes: " + Choices(zones));
    CheckCode("snow-zone", "snow zone", zones, *in.SnowZone, normText);
    if (!in.TerrainHeightInM) Bad("altitude", "is needed: the height of the terrain above sea level in m");
    Finite("altitude", *in.TerrainHeightInM);
    if (IsDin(Norm)) {
        const std::string why = "DIN 1055-5 has no exposure or thermal coefficient";
        NotFor("ce", in.Ce, why);
        NotFor("ct", in.Ct, why);
    }
    // Table 5.1 ranges from 0.8 (windswept) to 1.2 (sheltered); the thermal
    // coefficient only ever reduces the load.
    if (in.Ce && (Finite("ce", *in.Ce) <= 0.0 || *in.Ce > 2.0))
        Bad("ce", "must lie above 0 and at most 2, got " + Num(*in.Ce));
    if (in.Ct && (Finite("ct", *in.Ct) <= 0.0 || *in.Ct > 1.0))
        Bad("ct", "must lie above 0 and at most 1, got " + Num(*in.Ct));
}

// Terrain category, wind zone, basic values and the annex factors.
void CheckWind(SiteInput& in, const std::string& normText, double& qb, double& vb) {
    const int16_t Norm = in.Norm;
    if (!in.BuildingHeightInM) Bad("height", "is needed: the height of the building in m");
    Positive("height", *in.BuildingHeightInM);
    const std::string euroOnly = "is used by the Eurocode standards only";
    if (Norm == norm::DIN1986_1975) {
        const std::string why = "DIN 1055-4:1986 takes the wind load from the building height alone";
        NotFor("wind-zone", in.WindZone, why);
        NotFor("category", in.BuildingCategory, why);
    } else {
        const CodeList cats = ListsOfNorm(Norm).categories;
        if (in.WindProfile) {
            if (Norm != norm::DIN2005 && Norm != norm::DE)
                Bad("profile", "the mixed profiles and the North Sea islands belong to DIN 1055-4:2005 (Norm 3) and "
                               "the German annex (Norm 50)");
            if (in.BuildingCategory) Bad("profile", "give either the profile or --category, not both");
        } else {
            if (!in.BuildingCategory) Bad("category", "is needed; codes: " + Choices(cats));
            CheckCode("category", "terrain category", cats, *in.BuildingCategory, normText);
        }
    }
    if (Norm == norm::DIN2005 || Norm == norm::DIN2005_T2963) {
        if (!in.WindZone) Bad("wind-zone", "is needed; codes: " + Choices(ListsOfNorm(Norm).windZones));
        CheckCode("wind-zone", "wind zone", ListsOfNorm(Norm).windZones, *in.WindZone, normText);
    }
    if (in.WindProfile && in.WindZone && !GermanProfileInZone(*in.WindProfile, *in.WindZone))
        Bad("profile", std::string("the zone tables list no profile '") + GermanWindProfileName(*in.WindProfile) +
                           "' in wind zone " + std::to_string(*in.WindZone) +
                           ": coast from zone 2, the North Sea islands in zone 4 only");
    if (IsDin(Norm)) {
        for (const auto& [opt, v] : {std::pair{"qb", in.BasicWindPressure},
                                     {"vb", in.BasicWindVelocity},
                                     {"phi", in.UpwindSlope_Phi},
                                     {"s", in.OrographicLocationFac_s},
                                     {"cdir", in.cDir},
                                     {"cseason", in.cSeason},
                                     {"dist-shore", in.DistToShore},
                                     {"dist-town", in.DistInTown}})
            NotFor(opt, v, euroOnly);
        return;
    }

    // The basic values: the zone of the German annex, or given as they are.
    const bool basicGiven = in.BasicWindPressure || in.BasicWindVelocity;
    if (in.WindZone) {
        if (Norm != norm::DE) Bad("wind-zone", normText + " has no wind zone list here; give --qb or --vb");
        if (basicGiven) Bad("wind-zone", "give either the wind zone or --qb/--vb, not both");
        CheckCode("wind-zone", "wind zone", ListsOfNorm(Norm).windZones, *in.WindZone, normText);
        // The zones of the German annex carry the reference values of DIN 1055-4:2005.
        WindReference(*in.WindZone, qb, vb);
    } else {
        if (in.BasicWindPressure) qb = NotNegative("qb", *in.BasicWindPressure);
        if (in.BasicWindVelocity) vb = NotNegative("vb", *in.BasicWindVelocity);
        if (Norm == norm::UK) {
            NotFor("qb", in.BasicWindPressure, "the UK annex works from the basic wind velocity: give --vb");
            if (vb <= 0.0) Bad("vb", "is needed for " + normText + ": the basic wind velocity in m/s");
        } else if (qb < 1e-5 && vb <= 0.0) {
            Bad("qb", std::string("is needed for ") + normText +
                          ": the basic velocity pressure (or --vb, the basic velocity)" +
                          (Norm == norm::DE ? ", or --wind-zone" : ""));
        }
    }

    if (in.UpwindSlope_Phi || in.OrographicLocationFac_s) {
        if (Norm == norm::AT) Bad(in.UpwindSlope_Phi ? "phi" : "s", "the Austrian annex takes no orography");
        if (!in.UpwindSlope_Phi) Bad("phi", "is needed with --s: the upwind slope");
        if (!in.OrographicLocationFac_s) Bad("s", "is needed with --phi: the orographic location factor");
        NotNegative("phi", *in.UpwindSlope_Phi);
        NotNegative("s", *in.OrographicLocationFac_s);
    }
    if (Norm == norm::EN || Norm == norm::UK) {
        const std::string why = normText + " does not use direction and season factors given here";
        NotFor("cdir", in.cDir, why);
        NotFor("cseason", in.cSeason, why);
    }
    if (in.cDir) Positive("cdir", *in.cDir);
    if (in.cSeason) Positive("cseason", *in.cSeason);

    if (Norm == norm::UK) {
        const int16_t cat = *in.BuildingCategory;
        if (cat >= 1 && !in.DistToShore)
            Bad("dist-shore",
                "is needed for " + normText + " in this terrain category: the distance to the shore in m");
        if (cat >= 3 && !in.DistInTown)
            Bad("dist-town",
                "is needed for " + normText + " in terrain category III and IV: the distance inside town in m");
        if (in.DistToShore) NotNegative("dist-shore", *in.DistToShore);
        if (in.DistInTown) NotNegative("dist-town", *in.DistInTown);
    } else {
        const std::string why = "is used by the UK annex (Norm 53) only";
        NotFor("dist-shore", in.DistToShore, why);
        NotFor("dist-town", in.DistInTown, why);
    }
}

bool Filled(const CpWindRecord& rec, const CpZoneSlots& s) {
    return rec.*s.s10 != 0.0 || rec.*s.s1 != 0.0 || rec.*s.s10a != 0.0 || rec.*s.s1a != 0.0;
}

// The zones a form shows in a direction: those its built-in table fills in
// any row. The store tables of the Eurocode use the same zone letters.
std::vector<bool> ZonesOfTables(const std::vector<CpBuiltInTable>& tables) {
    std::vector<bool> used(std::size(kCpZones), false);
    for (CpBuiltInTable t : tables) {
        const CpWindRows rows = BuiltInCpTable(t);
        for (size_t r = 1; r < rows.size(); ++r)
            for (size_t z = 0; z < std::size(kCpZones); ++z)
                if (Filled(rows[r], kCpZones[z])) used[z] = true;
    }
    return used;
}

bool NoCoefficients(const CpWindRecord& rec) {
    for (const CpZoneSlots& s : kCpZones)
        if (Filled(rec, s)) return false;
    return true;
}

struct CpRequest {
    std::optional<double> Theta;
    std::vector<CpBuiltInTable> tables;
};

void ComputeCp(SiteResult& r) {
    const SiteInput& in = r.input;
    const CpRoute route = CpRouteOfNorm(in.Norm);
    const bool store = route == CpRoute::Store;
    r.cpRoute = route;
    if (store) InitCpeMdb();  // a failure shows as no rows

    using T = CpBuiltInTable;
    std::vector<CpRequest> requests;
    switch (in.Form) {
    case SiteRoofForm::Gabled: requests = {{0.0, {T::Satteldach_0}}, {90.0, {T::Satteldach_90}}}; break;
    case SiteRoofForm::Hipped: requests = {{std::nullopt, {T::Walmdach}}}; break;
    case SiteRoofForm::Pent:
        requests = {{0.0, {T::Pultdach_0}}, {90.0, {T::Pultdach_90}}, {180.0, {T::Pultdach_180}}};
        break;
    case SiteRoofForm::Flat:
        requests = {
            {std::nullopt, {T::Flachdach_Scharf, T::Flachdach_Attika, T::Flachdach_Gerundet, T::Flachdach_Mansarde}}};
        break;
    case SiteRoofForm::Wall: requests = {{std::nullopt, {T::Wand}}}; break;
    }

    const double alpha = in.Alpha.value_or(0.0);
    for (const CpRequest& q : requests) {
        SiteCpDirection d;
        d.Theta = q.Theta;
        const double theta = q.Theta.value_or(0.0);
        CpWindRecord& rec = d.rec;
        switch (in.Form) {
        case SiteRoofForm::Gabled: WindCpGabled(route, in.Norm, theta, alpha, rec); break;
        case SiteRoofForm::Hipped:
            // One table for every direction; the built-in route serves it for
            // 0 < Theta <= 90 only, the store asks without a direction.
            WindCpHipped(route, in.Norm, 90.0, alpha, rec);
            break;
        case SiteRoofForm::Pent: WindCpPent(route, in.Norm, theta, alpha, rec); break;
        case SiteRoofForm::Flat: WindCpFlat(route, in.Norm, in.hpZuH, in.rZuH, in.AlphaTr, rec); break;
        case SiteRoofForm::Wall: WindCpWall(route, in.Norm, *in.HzuD, rec); break;
        }
        if (NoCoefficients(rec)) {
            d.status = store ? SiteCpStatus::NoneForStandard : SiteCpStatus::OutsideTable;
        } else {
            const std::vector<bool> listed = ZonesOfTables(q.tables);
            for (size_t z = 0; z < std::size(kCpZones); ++z) {
                const CpZoneSlots& s = kCpZones[z];
                const bool filled = Filled(rec, s);
                if (!listed[z] && !filled) continue;
                SiteCpZone c;
                c.zone = s.name;
                c.hasValue = filled;
                c.cpe10 = rec.*s.s10;
                c.cpe1 = rec.*s.s1;
                c.cpe10a = rec.*s.s10a;
                c.cpe1a = rec.*s.s1a;
                c.hasSecond = c.cpe10a != 0.0 || c.cpe1a != 0.0;
                if (r.qpAvailable) {
                    c.we10 = fp::Mul(r.qp, c.cpe10);
                    c.we1 = fp::Mul(r.qp, c.cpe1);
                    c.we10a = fp::Mul(r.qp, c.cpe10a);
                    c.we1a = fp::Mul(r.qp, c.cpe1a);
                }
                d.zones.push_back(c);
            }
        }
        r.cp.push_back(std::move(d));
    }
}

// The name without the look-up's footnotes; the messages say what is missing.
std::string PlainTownName(std::string name) {
    for (bool again = true; again;) {
        again = false;
        for (const char* f : {" [1]", " [2]", " [3]", " [4]"})
            if (name.size() >= 4 && name.compare(name.size() - 4, 4, f) == 0) {
                name = RTrim(name.substr(0, name.size() - 4));
                again = true;
            }
    }
    return name;
}

// Where the zones of the town come from.
std::string ImportHint(int16_t Norm) {
    const char* land = Norm == norm::AT ? " --land 51" : "";
    return std::string(", or fill the zones of the towns from the official list with "
                       "'qvroofload db import zones") + land + " FILE'";
}

// Fills from the town what the input leaves open. A zone the town does not
// hold is asked for, never assumed.
void ApplyTown(SiteInput& in, std::string& townName) {
    if (in.AGS.empty()) return;
    const std::string ags = Trim(in.AGS);
    if (ags.empty() || ags.find_first_not_of("0123456789") != std::string::npos || Val(ags) <= 0.0)
        Bad("town", "'" + in.AGS + "' is not a municipality key (AGS): digits only");
    if (in.Norm == norm::DIN1986_1975 || in.Norm == norm::DIN2005_T2963)
        Bad("town", "the town database holds the zones of Norm 3 and the Eurocode annexes; give the zones for Norm " +
                        std::to_string(in.Norm));
    TownRec town;
    const bool euro = IsEurocodeNorm(in.Norm);
    if (euro)
        FindTownByAGSEN(in.Norm, ags, town);
    else
        FindTownByAGS(ags, town);
    if (town.AGS.empty())
        Bad("town", "no municipality with the key " + ags + " in the town database" +
                        (euro ? " for Norm " + std::to_string(in.Norm) : std::string()) + "; give the zones instead");
    townName = PlainTownName(town.Gemeinde);
    const std::string who = townName + " (" + ags + ")";
    auto remark = [](const std::string& b) { return Trim(b).empty() ? std::string() : " (" + Trim(b) + ")"; };

    if (!in.SnowZone) {
        const CodeList zones = SiteSnowZoneList(in.Norm, in.CtrlRegion.value_or(0));
        in.SnowZone = CodeOfText(zones, town.SZ);
        if (!in.SnowZone)
            Bad("snow-zone", "the town database holds no snow load zone for " + who + remark(town.BemS) +
                                 "; please give it with --snow-zone" + ImportHint(in.Norm));
    }
    if (!euro) {
        if (!in.WindZone) {
            in.WindZone = CodeOfText(ListsOfNorm(in.Norm).windZones, town.WZ);
            if (!in.WindZone)
                Bad("wind-zone", "the town database holds no wind zone for " + who + remark(town.BemW) +
                                     "; please give it with --wind-zone" + ImportHint(in.Norm));
        }
        return;
    }
    if (!in.TerrainHeightInM && std::fabs(town.hNN) >= 0.0001) in.TerrainHeightInM = town.hNN;
    if (!in.WindZone && !in.BasicWindPressure && !in.BasicWindVelocity) {
        if (std::fabs(town.qb) >= 0.0001) in.BasicWindPressure = town.qb;
        if (std::fabs(town.vb) >= 0.0001) in.BasicWindVelocity = town.vb;
        // The UK annex works from the velocity alone.
        if (in.Norm == norm::UK) in.BasicWindPressure.reset();
        if (!in.BasicWindPressure && !in.BasicWindVelocity)
            Bad("qb", "the town database holds no basic wind values for " + who + "; please give --qb or --vb" +
                          (in.Norm == norm::DE ? " or --wind-zone" : "") + ImportHint(in.Norm));
    }
}

// The member's terrain category where a German profile stands in for one:
// the mixed profiles have codes of their own in DIN 1055-4:2005.
std::optional<int16_t> MemberCategory(const SiteInput& in) {
    if (in.BuildingCategory) return in.BuildingCategory;
    if (in.Norm == norm::DIN2005 && in.WindProfile == GermanWindProfile::Coast) return int16_t{5};
    if (in.Norm == norm::DIN2005 && in.WindProfile == GermanWindProfile::Inland) return int16_t{6};
    return std::nullopt;
}

// Values that differ in the last bits only come from another order of the
// same operations: no figure of the report changes, so no note.
bool Same(double a, double b) { return std::fabs(a - b) <= 1e-9 * std::max(1.0, std::fabs(b)); }

std::string WithUnit(std::optional<double> v, const std::string& unit) {
    return v ? Format(*v, "0.000") + (unit.empty() ? "" : " " + unit) : "no value";
}

std::string WhatOf(const std::string& topic) {
    if (topic == "ground_snow") return "s_k";
    if (topic == "mu1") return "μ1";
    return "q_p";
}

void NoteIfDiffers(SiteResult& r, const std::string& topic, const std::string& member,
                   std::optional<double> memberValue, const PublishedValue& pub, const std::string& unit) {
    if (!pub.value && !memberValue) return;
    if (pub.value && memberValue && Same(*pub.value, *memberValue)) return;
    r.notes.push_back({false, topic, WhatOf(topic), member, memberValue, unit,
                       member + " gives " + WithUnit(memberValue, unit) + " for the same input; the report gives " +
                           WithUnit(pub.value, unit) + " (" + pub.source + ")"});
}

// No published formula here: the member's rule is reported and named.
PublishedValue MemberRule(SiteResult& r, const std::string& topic, const std::string& member,
                          std::optional<double> value, const std::string& why, const std::string& unit) {
    PublishedValue v;
    v.value = value;
    v.source = "component rule " + member;
    r.notes.push_back({true, topic, WhatOf(topic), member, value, unit, why + "; the report gives the component's rule " + member});
    return v;
}

std::string SnowMember(int16_t Norm) {
    if (Norm == norm::DIN1986_1975) return "CWindSnow.StandardSnowLoad_DIN1055_5_1975";
    if (IsDin(Norm)) return "CWindSnow.StandardSnowLoad_DIN1055_7_2005";
    return "CWindSnow.StandardSnowLoad_EN_1991_1_3";
}

std::string WindMember(int16_t Norm) {
    if (Norm == norm::DIN1986_1975) return "CWindSnow.WindPressure_DIN1055_4_1986";
    if (IsDin(Norm)) return "CWindSnow.WindPressure_DIN1055_4_2005";
    return "CWindSnow.WindPressure_EN_1991_1_4";
}

void PublishSnow(SiteResult& r) {
    const SiteInput& in = r.input;
    const int16_t Norm = in.Norm;
    const std::optional<double> memberSk = r.skAvailable ? std::optional(r.sk) : std::nullopt;
    if (auto pub = PublishedGroundSnow(Norm, in.CtrlRegion.value_or(0), *in.SnowZone, *in.TerrainHeightInM)) {
        r.groundSnow = *pub;
        NoteIfDiffers(r, "ground_snow", SnowMember(Norm), memberSk, r.groundSnow, "kN/m²");
    } else {
        const std::string why = Norm == norm::AT || Norm == norm::IT
                                    ? "the formula of " + r.normText + " is not built in here"
                                : Norm == norm::DIN1986_1975 ? "DIN 1055-5:1975 gives its loads by zone and altitude"
                                                             : "Table C.1 gives no formula for this climate region";
        r.groundSnow = MemberRule(r, "ground_snow", SnowMember(Norm), memberSk, why, "kN/m²");
    }

    r.Ce = in.Ce.value_or(1.0);
    r.Ct = in.Ct.value_or(1.0);
    if (!r.roofShapeAvailable) return;
    const double alpha = in.Alpha.value_or(0.0);
    r.mue1 = PublishedMue1(Norm, alpha);
    NoteIfDiffers(r, "mu1", IsDin(Norm) ? "CWindSnow.SnowMue1" : "CWindSnow.SnowMue1_EN_1991_1_3", r.roofSnow[0].mue,
                  *r.mue1, "");
    const double mu = *r.mue1->value;
    auto part = [&](const char* name, double m) {
        SiteSnowPart p{name, m, std::nullopt};
        // s = mu·Ce·Ct·sk, in the order of the formula
        if (r.groundSnow.value) p.s = fp::Mul(fp::Mul(fp::Mul(m, r.Ce), r.Ct), *r.groundSnow.value);
        return p;
    };
    // DIN 1055-5 draws the same cases in its own clause.
    const bool din = IsDin(Norm);
    const std::string book = Norm == norm::DE ? "DIN EN 1991-1-3:2010-12, " : "EN 1991-1-3:2003, ";
    if (in.Form == SiteRoofForm::Gabled || in.Form == SiteRoofForm::Hipped) {
        const double half = fp::Mul(0.5, mu);
        const std::string fig = din ? "DIN 1055-5:2005-07, 4.2, duopitch roof, case " : book + "5.3.3, Figure 5.3, case ";
        r.arrangements.push_back({"undrifted", fig + "(i)", {part("left", mu), part("right", mu)}});
        r.arrangements.push_back({"drifted_left", fig + "(ii)", {part("left", half), part("right", mu)}});
        r.arrangements.push_back({"drifted_right", fig + "(iii)", {part("left", mu), part("right", half)}});
    } else {
        r.arrangements.push_back(
            {"undrifted", din ? "DIN 1055-5:2005-07, 4.2, monopitch roof" : book + "5.3.2, Figure 5.2", {part("whole", mu)}});
    }
}

std::optional<GermanWindProfile> ProfileOf(const SiteInput& in) {
    if (in.WindProfile) return in.WindProfile;
    if (!in.BuildingCategory) return std::nullopt;
    const int16_t c = *in.BuildingCategory;
    using P = GermanWindProfile;
    if (in.Norm == norm::DIN2005) {
        switch (c) {
        case 1: return P::Category1;
        case 5: return P::Coast;
        case 2: return P::Category2;
        case 6: return P::Inland;
        case 3: return P::Category3;
        case 4: return P::Category4;
        default: return std::nullopt;
        }
    }
    if (c >= 1 && c <= 4) return static_cast<P>(c - 1);
    return std::nullopt;
}

void PublishWind(SiteResult& r) {
    const SiteInput& in = r.input;
    const int16_t Norm = in.Norm;
    const std::string member = WindMember(Norm);
    const std::optional<double> memberQp = r.qpAvailable ? std::optional(r.qp) : std::nullopt;
    const bool german = Norm == norm::DIN2005 || Norm == norm::DE;
    const bool factors = in.UpwindSlope_Phi || in.cDir || in.cSeason;
    const std::optional<GermanWindProfile> profile = ProfileOf(in);
    if (!german || factors || !profile) {
        const std::string why = !german ? "the profile of " + r.normText + " is the component's chain"
                                : factors
                                    ? "the German profiles are built in without orography, direction or season factors"
                                    : "the German annex gives no profile for terrain category 0";
        r.peakPressure = MemberRule(r, "peak_velocity_pressure", member, memberQp, why, "kN/m²");
        return;
    }
    if (in.WindZone) {
        r.basicPressure = GermanBasicPressure(Norm, *in.WindZone);
    } else {
        PublishedValue qb;
        // The annex's basic pressure of the given velocity: vb²/1600.
        qb.value = in.BasicWindPressure ? *in.BasicWindPressure : fp::Div(fp::Mul(r.vb, r.vb), 1600.0);
        qb.source = in.BasicWindPressure ? "given" : "DIN EN 1991-1-4/NA:2010-12, qb = vb²/1600";
        r.basicPressure = qb;
    }
    r.peakPressure =
        GermanPeakPressure(Norm, *r.basicPressure->value, *profile, *in.BuildingHeightInM, *in.TerrainHeightInM);
    if (MemberCategory(in))
        NoteIfDiffers(r, "peak_velocity_pressure", member, memberQp, r.peakPressure, "kN/m²");
}

PublishedForm FormOf(SiteRoofForm f) { return static_cast<PublishedForm>(static_cast<int16_t>(f)); }

// The member a host calls for the same coefficients, and the route it takes.
std::string CpMemberName(SiteRoofForm form, CpRoute route) {
    const char* m = "GetWindCpValues_Gabled_Roof";
    switch (form) {
    case SiteRoofForm::Gabled: break;
    case SiteRoofForm::Hipped: m = "GetWindCpValues_Hipped_Roof"; break;
    case SiteRoofForm::Flat: m = "GetWindCpValues_Flat_Roof"; break;
    case SiteRoofForm::Pent: m = "GetWindCpValues_Pent_Roof"; break;
    case SiteRoofForm::Wall: m = "GetWindCpValues_Vertical_Wall"; break;
    }
    return std::string("CRoofLoad.") + m + (route == CpRoute::Store ? " (UseCpeDB)" : "");
}

// The member route's value of a zone in the same direction, where the
// published set holds one it has not.
void NoteCpDifferences(SiteResult& r, const SitePublishedCp& p) {
    const std::string member = CpMemberName(r.input.Form, r.cpRoute);
    for (const SiteCpDirection& d : r.cp) {
        if (d.Theta && *d.Theta != p.dir.theta) continue;
        if (d.status != SiteCpStatus::Ok) {
            if (p.dir.sets.empty()) continue;
            const std::string what = "c_pe,10, θ = " + Num(p.dir.theta) + "°";
            r.notes.push_back({false, "cpe_10", what, member, std::nullopt, "",
                               member + " gives no coefficients at θ = " + Num(p.dir.theta) + "°; " + p.dir.source +
                                   " gives them"});
            continue;
        }
        for (const PublishedCpSet& set : p.dir.sets)
            for (const PublishedCpValue& v : set.values) {
                if (!v.cpe10) continue;
                for (const SiteCpZone& z : d.zones) {
                    if (z.zone != v.zone) continue;
                    const bool held = z.hasValue && (Same(z.cpe10, *v.cpe10) || (z.hasSecond && Same(z.cpe10a, *v.cpe10)));
                    if (held) continue;
                    // Set against set: the member's value of the same sign, if it has one.
                    std::optional<double> mv;
                    const bool up = !std::signbit(*v.cpe10);
                    if (z.hasValue && !std::signbit(z.cpe10) == up) mv = z.cpe10;
                    else if (z.hasValue && z.hasSecond && !std::signbit(z.cpe10a) == up) mv = z.cpe10a;
                    const std::string what = "c_pe,10 " + z.zone + ", θ = " + Num(p.dir.theta) + "°" +
                                             (set.label.empty() ? "" : " (" + set.label + ")");
                    r.notes.push_back({false, "cpe_10", what, member, mv, "",
                                       member + " gives c_pe,10 = " + WithUnit(mv, "") + " for zone " + z.zone +
                                           " at θ = " + Num(p.dir.theta) + "°; " + p.dir.source + " gives " +
                                           Num(*v.cpe10) + (set.label.empty() ? "" : " (" + set.label + ")")});
                }
            }
    }
}

void PublishCp(SiteResult& r) {
    const SiteInput& in = r.input;
    PublishedCpQuery q{};
    q.Norm = in.Norm;
    q.form = FormOf(in.Form);
    q.alpha = in.Alpha.value_or(0.0);
    q.h = *in.BuildingHeightInM;
    // The coefficients of roofs do not depend on the plan, those of walls on
    // h/d only; without a plan the geometry is left out, not guessed.
    const bool plan = in.PlanWidth && in.PlanDepth;
    q.d = in.PlanDepth ? *in.PlanDepth : in.HzuD ? fp::Div(q.h, *in.HzuD) : q.h;
    q.b = in.PlanWidth ? *in.PlanWidth : q.d;
    q.hpZuH = in.hpZuH, q.rZuH = in.rZuH, q.AlphaTr = in.AlphaTr;
    const std::optional<double> qp = r.peakPressure.value;
    for (PublishedCpDirection& dir : PublishedCpOf(q)) {
        SitePublishedCp p;
        p.dir = std::move(dir);
        if (!plan) {
            p.dir.e = p.dir.bWind = p.dir.dWind = 0.0;
            p.dir.shapes.clear();
        }
        for (const PublishedCpSet& set : p.dir.sets) {
            std::vector<SiteWe>& we = p.we.emplace_back();
            for (const PublishedCpValue& v : set.values) {
                SiteWe w;
                if (qp && v.cpe10) w.we10 = fp::Mul(*qp, *v.cpe10);
                if (qp && v.cpe1) w.we1 = fp::Mul(*qp, *v.cpe1);
                we.push_back(w);
            }
        }
        NoteCpDifferences(r, p);
        r.publishedCp.push_back(std::move(p));
    }
}

void Publish(SiteResult& r) {
    PublishSnow(r);
    PublishWind(r);
    PublishCp(r);
}

}  // namespace

CodeList SiteSnowZoneList(int16_t Norm, int16_t CtrlRegion) {
    if (Norm == norm::DE) return SnowZoneList2005();
    return ListsOfNorm(Norm, CtrlRegion).snowZones;
}

const char* SiteRoofFormName(SiteRoofForm form) {
    const auto i = static_cast<size_t>(form);
    return i < std::size(kFormNames) ? kFormNames[i] : "";
}

std::optional<SiteRoofForm> SiteRoofFormFromName(const std::string& name) {
    for (int i = 0; i < static_cast<int>(std::size(kFormNames)); ++i)
        if (name == kFormNames[i]) return static_cast<SiteRoofForm>(i);
    return std::nullopt;
}

SiteResult ComputeSite(const SiteInput& given) {
    SiteResult r;
    r.input = given;
    SiteInput& in = r.input;
    CheckStandard(in.Norm);
    r.normText = NormText(in.Norm);
    ApplyTown(in, r.townName);
    CheckGeometry(in);
    CheckSnow(in, r.normText);
    CheckWind(in, r.normText, r.qb, r.vb);

    const int16_t Norm = in.Norm;
    const double A = *in.TerrainHeightInM;
    const double h = *in.BuildingHeightInM;

    // The members' values: the routes a host or dialog takes.
    const bool memberZone = Holds(ListsOfNorm(Norm, in.CtrlRegion.value_or(0)).snowZones, *in.SnowZone);
    if (!memberZone)
        r.sk = 999.0;
    else if (Norm == norm::DIN1986_1975)
        r.sk = StandardSnowLoad_DIN1055_5_1975(*in.SnowZone, A);
    else if (IsDin(Norm))
        r.sk = StandardSnowLoad_DIN1055_7_2005(*in.SnowZone, A);
    else
        r.sk = StandardSnowLoad_EN_1991_1_3(A, Norm, *in.CtrlRegion, *in.SnowZone);
    r.skAvailable = r.sk != 999.0;

    // Roof snow. The 1975 edition has no roof rule here, and walls carry none.
    r.roofShapeAvailable = Norm != norm::DIN1986_1975 && in.Form != SiteRoofForm::Wall;
    const double alpha = in.Alpha.value_or(0.0);
    if (r.roofShapeAvailable) {
        double mue1 = 0.0, mue2 = 0.0, mue3 = 0.0;
        if (IsDin(Norm))
            SnowShapeDIN(alpha, mue1, mue2);
        else
            SnowShapeEN(Norm, alpha, false, 0.0, mue1, mue2, mue3);
        r.roofSnow.push_back({"mu1", mue1, 0.0});
        // A valley forms where pitched roofs stand side by side.
        if (in.Form != SiteRoofForm::Flat) r.roofSnow.push_back({"mu2", mue2, 0.0});
        if (r.skAvailable)
            for (SiteRoofSnow& s : r.roofSnow) s.s = fp::Mul(s.mue, r.sk);  // Ce = Ct = 1
    }

    // Peak velocity pressure. The Eurocode chain answers 0.0 for what it
    // cannot compute (the UK figures without rows, for one).
    const std::optional<int16_t> memberCategory = MemberCategory(in);
    if (Norm == norm::DIN1986_1975) {
        r.qp = WindPressure_DIN1055_4_1986(h);
        r.qpAvailable = r.qp > 0.0;
    } else if (!memberCategory) {
        r.qp = 0.0;
        r.qpAvailable = false;
    } else if (IsDin(Norm)) {
        r.qp = WindPressure_DIN1055_4_2005(*in.WindZone, *memberCategory, h, A);
        r.qpAvailable = r.qp != 999.0 && r.qp > 0.0;
    } else {
        double distInTown = in.DistInTown.value_or(0.0);
        r.qp = WindPressure_EN_1991_1_4(Norm, *memberCategory, h, r.qb, r.vb, in.UpwindSlope_Phi.value_or(0.0),
                                        in.OrographicLocationFac_s.value_or(0.0), in.cDir.value_or(1.0),
                                        in.cSeason.value_or(1.0), in.DistToShore.value_or(0.0), distInTown);
        r.qpAvailable = r.qp > 0.0;
    }

    ComputeCp(r);
    Publish(r);
    return r;
}

}  // namespace qvrl
