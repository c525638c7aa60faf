#pragma once
// Snow rules of EN 1991-1-3 with the annexes of Germany (50), Austria (51),
// Italy (52) and the United Kingdom (53); 54 is the Eurocode without an annex.
// Loads in kN/m², line loads in kN/m, heights in m, pitch in degrees.
// Nothing is checked: an unknown region or zone gives 0.0, and a floating
// fault raises qvrl::RuntimeError.

#include <cstdint>

namespace qvrl {

// Ground snow load. SnowZoneIndex holds a zone code of SnowZoneList, rounded
// half to even (error 6 outside 16 bits).
double StandardSnowLoad_EN_1991_1_3(double TerrainHeightInM, int16_t CtrlNA, int16_t CtrlRegion,
                                    double SnowZoneIndex);

// Ground snow load of the Polish region: the larger of the zone figure and the
// altitude formula, which only the plain codes 1, 3 and 5 select.
double SnowLoadPoland(int16_t CtrlNA, int16_t SnowZone, double TerrainHeightInM);

// Shape coefficients of a roof of pitch Alpha; with DriftFloor none of them
// falls below 0.8 before the British annex rows. mue3 = 10·hZuB + 0.2 up to 60°.
void SnowShapeEN(int16_t CtrlNA, double Alpha, bool DriftFloor, double hZuB, double& mue1,
                 double& mue2, double& mue3);

// Snow hanging over an eave per metre, for the roof load si and the snow depth
// snow_d (a depth below 0.1 mm counts as 1 m).
double SnowOverhang_EN_1991_1_3(int16_t CtrlNA, double si, double snow_d);

// Force on a snow fence per metre, for a roof width B behind it.
double SnowCatchingFence_EN_1991_1_3(double mue1, double mue2, double sk, double B, double Alpha);

// Drift beside a step of height hInM. mue1 is written before the division by
// sk, so a fault leaves it set and the other two untouched.
void SnowBag_EN_1991_1_3(int16_t CtrlNA, double sk, double hInM, double& mue1, double& mue2,
                         double& LsInM);

}  // namespace qvrl
