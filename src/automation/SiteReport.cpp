#include "automation/SiteReport.h"

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
    if (in.Form == SiteRoofForm::Wall) {
        if (!in.HzuD) Bad("h-d", "is needed for walls: the ratio of building height to depth");
        Positive("h-d", *in.HzuD);
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
    const CodeList zones = ListsOfNorm(Norm, in.CtrlRegion.value_or(0)).snowZones;
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
        if (!in.BuildingCategory) Bad("category", "is needed; codes: " + Choices(cats));
        CheckCode("category", "terrain category", cats, *in.BuildingCategory, normText);
    }
    if (Norm == norm::DIN2005 || Norm == norm::DIN2005_T2963) {
        if (!in.WindZone) Bad("wind-zone", "is needed; codes: " + Choices(ListsOfNorm(Norm).windZones));
        CheckCode("wind-zone", "wind zone", ListsOfNorm(Norm).windZones, *in.WindZone, normText);
    }
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
        const CodeList zones = ListsOfNorm(in.Norm, in.CtrlRegion.value_or(0)).snowZones;
        in.SnowZone = CodeOfText(zones, town.SZ);
        if (!in.SnowZone)
            Bad("snow-zone", "the town database holds no snow load zone for " + who + remark(town.BemS) +
                                 "; please give it with --snow-zone");
    }
    if (!euro) {
        if (!in.WindZone) {
            in.WindZone = CodeOfText(ListsOfNorm(in.Norm).windZones, town.WZ);
            if (!in.WindZone)
                Bad("wind-zone", "the town database holds no wind zone for " + who + remark(town.BemW) +
                                     "; please give it with --wind-zone");
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
                          (in.Norm == norm::DE ? " or --wind-zone" : ""));
    }
}

}  // namespace

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

    // Ground snow; 999.0 is the rule's "no value at this altitude".
    if (Norm == norm::DIN1986_1975)
        r.sk = StandardSnowLoad_DIN1055_5_1975(*in.SnowZone, A);
    else if (IsDin(Norm))
        r.sk = StandardSnowLoad_DIN1055_7_2005(*in.SnowZone, A);
    else
        r.sk = StandardSnowLoad_EN_1991_1_3(A, Norm, *in.CtrlRegion, *in.SnowZone);
    r.skAvailable = r.sk != 999.0;

    // Roof snow. The 1975 edition has no roof rule here, and walls carry none.
    r.roofShapeAvailable = Norm != norm::DIN1986_1975 && in.Form != SiteRoofForm::Wall;
    if (r.roofShapeAvailable) {
        const double alpha = in.Alpha.value_or(0.0);
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
    if (Norm == norm::DIN1986_1975) {
        r.qp = WindPressure_DIN1055_4_1986(h);
        r.qpAvailable = r.qp > 0.0;
    } else if (IsDin(Norm)) {
        r.qp = WindPressure_DIN1055_4_2005(*in.WindZone, *in.BuildingCategory, h, A);
        r.qpAvailable = r.qp != 999.0 && r.qp > 0.0;
    } else {
        double distInTown = in.DistInTown.value_or(0.0);
        r.qp = WindPressure_EN_1991_1_4(Norm, *in.BuildingCategory, h, r.qb, r.vb, in.UpwindSlope_Phi.value_or(0.0),
                                        in.OrographicLocationFac_s.value_or(0.0), in.cDir.value_or(1.0),
                                        in.cSeason.value_or(1.0), in.DistToShore.value_or(0.0), distInTown);
        r.qpAvailable = r.qp > 0.0;
    }

    ComputeCp(r);
    return r;
}

}  // namespace qvrl
