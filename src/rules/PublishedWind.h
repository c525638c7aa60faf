#pragma once
// Peak velocity pressures as the German standards print them, for the site
// report: DIN 1055-4:2005 (Norm 3) and the German annex to EN 1991-1-4
// (Norm 50). Profiles by terrain category, the mixed profiles of the coast
// and inland, and the islands of the North Sea. Pressures in kN/m², heights
// in m. The members (modWind, modWindEN) keep their own rules.

#include <cstdint>
#include <optional>
#include <string>

#include "rules/PublishedValue.h"

namespace qvrl {

enum class GermanWindProfile : int16_t {
    Category1,   // terrain category I
    Category2,
    Category3,
    Category4,
    Coast,       // mixed profile I/II: near the coast and the Baltic islands
    Inland,      // mixed profile II/III
    NorthSeaIslands,
};

// "I", "II", "III", "IV", "coast", "inland", "islands".
const char* GermanWindProfileName(GermanWindProfile p);
std::optional<GermanWindProfile> GermanWindProfileFromName(const std::string& name);

// Whether the zone tables list the profile in the wind zone: the coast from
// zone 2, the North Sea islands in zone 4 only, the categories everywhere.
bool GermanProfileInZone(GermanWindProfile p, int16_t WindZone);

// Basic velocity pressure qb of the wind zones 1 to 4: 0.32, 0.39, 0.47,
// 0.56 kN/m²; empty for any other zone.
std::optional<PublishedValue> GermanBasicPressure(int16_t Norm, int16_t WindZone);

// qp at height z from the basic velocity pressure qb (kN/m²). Above 800 m
// terrain the value is raised by the factor 0.2 + A/1000; above 1100 m and
// above z = 300 m there is no value.
PublishedValue GermanPeakPressure(int16_t Norm, double qb, GermanWindProfile p, double z, double A);

}  // namespace qvrl
