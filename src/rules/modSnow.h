#pragma once
// Snow rules of DIN 1055-5: ground values of the 1975 edition, the 2004 draft
// and the 2005 edition, and the roof shape, drift, overhang and fence rules.
// Loads in kN/m², line loads in kN/m, terrain heights in m, steps in cm,
// pitch in degrees. 999.0 means the standard has no value at this height;
// 0.0 answers an unknown zone. A floating fault raises qvrl::RuntimeError.

#include <cstdint>

namespace qvrl {

// Zones 1 to 4 ("I" to "IV").
double StandardSnowLoad_DIN1055_5_1975(int16_t SnowZone, double TerrainHeightInM);
// Zones 1 to 3.
double StandardSnowLoad_EDIN1055_5_2004(int16_t SnowZone, double TerrainHeightInM);
// Zones 1, 11 ("1a"), 2, 21 ("2a"), 3.
double StandardSnowLoad_DIN1055_7_2005(int16_t SnowZone, double TerrainHeightInM);

// Shape coefficients of a roof of pitch Alpha.
void SnowShapeDIN(double Alpha, double& mue1, double& mue2);
// Shape coefficients beside a step of height hInCm; sk is only read from 50 cm on.
void SnowBagFactors(double hInCm, double sk, double& mue1, double& mue2);
// Height of the triangular drift load, mue2·sk − mue1·sk; Length gets 2·hInCm.
double SnowBag(double mue1, double mue2, double hInCm, double sk, double& Length);
// Snow hanging over an eave, per metre of eave.
double SnowOverhang(double si);
// Force on a snow fence per metre, for a roof width B behind it.
double SnowCatchingFence(double mue1, double mue2, double sk, double B, double Alpha);

}  // namespace qvrl
