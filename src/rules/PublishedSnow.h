#pragma once
// Ground snow loads and the roof shape coefficient μ1 as the standards print
// them, for the site report. The members (modSnow, modSnowEN) keep their own
// rules; where they differ, the report shows both. Loads in kN/m², A in m
// above sea level, pitch in degrees. Arithmetic runs in the printed order.

#include <cstdint>
#include <optional>

#include "rules/PublishedValue.h"

namespace qvrl {

// EN 1991-1-3 Annex C, Table C.1, for the climate regions 1 to 8; Z is the
// zone number of the map. Empty for a region the table has no formula for.
std::optional<PublishedValue> AnnexCGroundSnow(int16_t CtrlRegion, double Z, double A);

// DIN 1055-5:2005 (Norm 3 and 31) and the German annex (Norm 50), zones of
// the DIN list: 1, 11 (1a), 2, 21 (2a), 3. The minimum of the zone applies.
// Empty for any other zone code.
std::optional<PublishedValue> GermanGroundSnow(int16_t Norm, int16_t SnowZone, double A);

// UK annex (Norm 53): sk = [0.15 + (0.1·Z + 0.05)] + (A − 100)/525.
PublishedValue UkGroundSnow(double Z, double A);

// The published ground snow load, or empty where this project knows no
// published formula for the standard (Austria, Italy, Annex C regions 9 to
// 12, DIN 1055-5:1975): the report then takes the member's rule and says so.
std::optional<PublishedValue> PublishedGroundSnow(int16_t Norm, int16_t CtrlRegion, int16_t SnowZone, double A);

// μ1 of a roof of pitch alpha: 0.8 up to 30°, 0.8·(60 − α)/30 below 60°, 0 from 60°.
PublishedValue PublishedMue1(int16_t Norm, double alpha);

}  // namespace qvrl
