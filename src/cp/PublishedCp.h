#pragma once
// External pressure coefficients as the published standards print them, for
// the site report. Not a member route: CWindSnow and the dialogs keep taking
// WindCpRoutes. A value the table leaves empty stays empty (never 0), and
// interpolation between pitches only joins values of the same sign.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qvrl {

enum class PublishedForm : int16_t { Gabled, Hipped, Flat, Pent, Wall };

struct PublishedCpQuery {
    int16_t Norm;
    PublishedForm form;
    double alpha;                               // pitch, degrees
    double h, b, d;                             // m: height, width across the wind at theta 0, depth along it
    double hpZuH = 0, rZuH = 0, AlphaTr = 0;    // flat roof eaves
};

struct PublishedCpValue {
    std::string zone;
    std::optional<double> cpe10, cpe1;
};

struct PublishedCpSet {
    std::string label;                          // "suction", "pressure", or "" for a single set
    std::vector<PublishedCpValue> values;
    std::string note;                           // e.g. why a zone has no value at this pitch
};

struct PublishedZoneShape {
    std::string zone;
    std::vector<std::pair<double, double>> points;  // plan, m; x along the wind, y across it
};

struct PublishedCpDirection {
    double theta;                               // 0, 90, 180 as the table gives
    std::string source;                         // e.g. "EN 1991-1-4:2005, Table 7.4a"
    bool recommended = false;                   // recommended values as adopted by the annex
    std::vector<PublishedCpSet> sets;
    double e = 0;                               // m
    std::vector<PublishedZoneShape> shapes;
    double bWind = 0, dWind = 0;                // m: the plan as this direction sees it (across, along)
    std::string note;                           // why there are no sets, or what was assumed
};

// A zone the table prints once belongs to both sets. Zone shapes lie in the
// direction's own plan: x from the windward edge (0..dWind), y across
// (0..bWind); a wall zone is the segment of wall it covers. Hipped roofs get
// e but no shapes; their one alpha serves both directions (alpha_0 and
// alpha_90 alike). h, b, d must be positive and finite, alpha finite, else
// error 5.
// Empty: the standard gives no coefficients for this form.
std::vector<PublishedCpDirection> PublishedCpOf(const PublishedCpQuery& q);

}  // namespace qvrl
