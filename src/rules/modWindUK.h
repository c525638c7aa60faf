#pragma once
// Factors of the British annex to EN 1991-1-4, read from its figures over
// height z (m) and the distances to the shore and inside town (m).
// Terrain category 0 is always taken 100 m from the shore; only categories
// 3 and 4 apply the correction inside town.

#include <cstdint>

namespace qvrl {

double ExposureFactorUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown);
double RoughnessFactorUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown);
double TurbulenceUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown);

}  // namespace qvrl
