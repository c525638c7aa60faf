#pragma once
// The printed forms of the site report: text in the active language and a
// self-contained HTML page. The JSON form is built in the core.

#include <ostream>
#include <string>

#include "automation/SiteReport.h"

namespace qvrl::cli::site {

void TextReport(std::ostream& out, const SiteResult& r);
std::string HtmlReport(const SiteResult& r);

// Texts both forms share.
std::string T(int32_t n);
std::string F3(double v);
std::string F2(double v);
std::string N(double v);
std::string ZoneText(const SiteResult& r);
std::string FormText(SiteRoofForm f);
std::string ArrangementText(const std::string& name);
std::string PartText(const std::string& part);
std::string SetText(const std::string& label);
std::string NoteText(const SiteNote& n);
std::string ProfileText(GermanWindProfile p);

namespace txt {
constexpr int32_t Title = 9500, Standard = 9502, Town = 9503, Altitude = 9504, BuildingHeight = 9505,
                  RoofForm = 9506, Pitch = 9507, Snow = 9508, SnowZone = 9509, Region = 9510, GroundSnow = 9511,
                  RoofSnow = 9513, NoSnowValue = 9515, NoShape = 9516, WallNoSnow = 9517, Wind = 9518,
                  WindZone = 9519, Category = 9520, PeakPressure = 9521, NoPressure = 9522, Coefficients = 9523,
                  Direction = 9524, Zone = 9526, FormFirst = 9531, BasicPressure = 9536, BasicVelocity = 9537,
                  Eaves = 9539, HzuD = 9540, NoWindPressures = 9541, Orography = 9542, Factors = 9543,
                  Distances = 9544, VelocityPressure = 9545, Arrangements = 9560, Undrifted = 9561,
                  DriftedLeft = 9562, DriftedRight = 9563, Whole = 9564, Left = 9565, Right = 9566, Ce = 9567,
                  Ct = 9568, Notes = 9569, Plan = 9570, Profile = 9571, Recommended = 9572, Suction = 9573,
                  Pressure = 9574, NoGeometry = 9575, Source = 9576, ProfileFirst = 9577, NoCpForForm = 9580,
                  Inputs = 9581, ZoneDrawing = 9582, Gives = 9583, NoValue = 9584, RuleUsed = 9585, Mue1 = 9586,
                  Arrangement = 9587;
}  // namespace txt

}  // namespace qvrl::cli::site
