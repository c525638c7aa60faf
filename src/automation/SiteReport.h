#pragma once
// The loads of one site: ground snow, roof snow, peak velocity pressure and
// the external pressure coefficients of a roof form with their pressures.
// Every value comes from the load rules and the coefficient routes; this
// module only chooses which rule a standard takes and checks the input.
// It prints nothing: the tool and the hosts format the result.

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "cp/CpWindRecord.h"
#include "cp/PublishedCp.h"
#include "cp/WindCpRoutes.h"
#include "rules/PublishedValue.h"
#include "rules/PublishedWind.h"
#include "vocab/CodeLists.h"

namespace qvrl {

enum class SiteRoofForm : int16_t { Gabled, Hipped, Flat, Pent, Wall };

// "gabled", "hipped", "flat", "pent", "wall".
const char* SiteRoofFormName(SiteRoofForm form);
std::optional<SiteRoofForm> SiteRoofFormFromName(const std::string& name);

// What is not given stays empty; the town fills what it holds, given values
// win over it. Units: heights and distances in m, angles in degrees,
// pressures in kN/m², velocities in m/s.
struct SiteInput {
    int16_t Norm = 0;                 // 1, 3, 31, 50..54
    std::string AGS;                  // municipality key; empty for none
    std::optional<int16_t> SnowZone;  // code of the standard's snow zone list
    std::string SnowZoneText;         // or its text ("2a", "IV"), where the code is not in the list
    std::optional<int16_t> WindZone;  // DIN 1055-4:2005 zones; DIN EN takes qb and vb from them
    std::optional<double> TerrainHeightInM;
    std::optional<double> BuildingHeightInM;
    std::optional<int16_t> BuildingCategory;  // terrain category code of the standard
    SiteRoofForm Form = SiteRoofForm::Gabled;
    std::optional<double> Alpha;  // roof pitch
    // Flat roof eaves: parapet, rounded or mansard; none of them is sharp.
    double hpZuH = 0.0, rZuH = 0.0, AlphaTr = 0.0;
    std::optional<double> HzuD;  // walls
    // Eurocode only.
    std::optional<int16_t> CtrlRegion;
    std::optional<double> BasicWindPressure;
    std::optional<double> BasicWindVelocity;
    std::optional<double> UpwindSlope_Phi;
    std::optional<double> OrographicLocationFac_s;
    std::optional<double> cDir, cSeason;
    std::optional<double> DistToShore, DistInTown;  // United Kingdom only
    // Snow: exposure and thermal coefficient, 1.0 where not given.
    std::optional<double> Ce, Ct;
    // Plan of the building: b across the wind at theta 0, d along it; they
    // give the zone geometry of the coefficients.
    std::optional<double> PlanWidth, PlanDepth;
    // German wind (Norm 3, 50): a mixed profile or the North Sea islands
    // instead of a terrain category.
    std::optional<GermanWindProfile> WindProfile;
};

// Bad input, named by the option of the tool that carries it ("snow-zone",
// "height", ...). Nothing has been computed when it is thrown.
class SiteInputError : public std::runtime_error {
public:
    SiteInputError(std::string option, const std::string& message)
        : std::runtime_error(message), option_(std::move(option)) {}
    const std::string& option() const noexcept { return option_; }

private:
    std::string option_;
};

struct SiteRoofSnow {
    std::string name;  // "mu1", "mu2"
    double mue = 0.0;
    double s = 0.0;  // mue·Ce·Ct·sk, with Ce = Ct = 1
};

struct SiteCpZone {
    std::string zone;
    // False where the route leaves all four slots 0 (Ft of a pent roof
    // between two built-in rows): no coefficient, not a coefficient of 0.
    bool hasValue = true;
    double cpe10 = 0.0, cpe1 = 0.0;
    bool hasSecond = false;  // a second value of the other sign
    double cpe10a = 0.0, cpe1a = 0.0;
    // q_p·c_pe; left 0 when q_p has no value.
    double we10 = 0.0, we1 = 0.0, we10a = 0.0, we1a = 0.0;
};

enum class SiteCpStatus : int16_t {
    Ok,
    NoneForStandard,  // the store holds no row for this Norm and form
    OutsideTable,     // the built-in table has no row for this pitch or direction
};

struct SiteCpDirection {
    std::optional<double> Theta;  // empty: the table serves every direction
    SiteCpStatus status = SiteCpStatus::Ok;
    CpWindRecord rec;
    std::vector<SiteCpZone> zones;  // the zones of the form, in storage order
};

using SiteCpRoute = CpRoute;

// One loaded part of a snow arrangement: the whole roof, or one side.
struct SiteSnowPart {
    std::string part;  // "whole", "left", "right"
    double mue = 0.0;
    std::optional<double> s;  // mue·Ce·Ct·sk; empty without sk
};

struct SiteSnowArrangement {
    std::string name;  // "undrifted", "drifted_left", "drifted_right"
    std::string source;
    std::vector<SiteSnowPart> parts;
};

// A member of the component that gives another value for the same input.
struct SiteNote {
    bool ruleUsed = false;  // no published formula here: the value is the member's rule
    std::string topic;  // "ground_snow", "mu1", "peak_velocity_pressure", "cpe_10"
    std::string what;   // the quantity: "s_k", "μ1", "q_p", "c_pe,10 F, θ = 0°"
    std::string member;  // e.g. "CWindSnow.StandardSnowLoad_EN_1991_1_3"; empty for a plain remark
    std::optional<double> memberValue;  // empty: the member gives no value
    std::string unit;
    std::string text;
};

// The published coefficients of one direction with w_e = q_p·c_pe.
struct SiteWe {
    std::optional<double> we10, we1;
};
struct SitePublishedCp {
    PublishedCpDirection dir;
    std::vector<std::vector<SiteWe>> we;  // [set][value], empty values without q_p
};

struct SiteResult {
    SiteInput input;  // as resolved: town values and defaults filled in
    std::string normText;
    std::string townName;  // empty without a town

    // Ground snow; skAvailable false where the rule answered 999.0.
    double sk = 0.0;
    bool skAvailable = false;
    bool roofShapeAvailable = false;  // no roof rule of the standard, or a wall
    std::vector<SiteRoofSnow> roofSnow;

    // Peak velocity pressure; qpAvailable false for 999.0 and for the 0.0
    // with which the Eurocode chain answers what it cannot compute.
    double qp = 0.0;
    bool qpAvailable = false;
    double qb = 0.0, vb = 0.0;  // basic values passed to the Eurocode chain

    SiteCpRoute cpRoute = SiteCpRoute::BuiltIn;
    std::vector<SiteCpDirection> cp;  // the member's route

    // What the report gives: the published standard where this project has
    // its formula, else the member's rule named in source and notes. The
    // fields above keep the members' values for the notes.
    PublishedValue groundSnow;           // kN/m²
    std::optional<PublishedValue> mue1;  // empty without a roof rule
    double Ce = 1.0, Ct = 1.0;
    std::vector<SiteSnowArrangement> arrangements;
    std::optional<PublishedValue> basicPressure;  // kN/m², where the standard has one
    PublishedValue peakPressure;                  // kN/m²
    std::vector<SitePublishedCp> publishedCp;     // empty: the standard gives none for the form
    std::vector<SiteNote> notes;
};

// The snow zones the report accepts: for the German annex (Norm 50) those of
// its map (1, 1a, 2, 2a, 3), which the Eurocode list of the members lacks.
CodeList SiteSnowZoneList(int16_t Norm, int16_t CtrlRegion);

// Checks the input (SiteInputError) and computes the site. A floating fault
// of a rule goes out as RuntimeError.
SiteResult ComputeSite(const SiteInput& in);

}  // namespace qvrl
