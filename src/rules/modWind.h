#pragma once
// Wind rules of DIN 1055-4: the stepped pressure of the 1986 edition, and the
// reference values, height profiles and terrain correction of the 2005 edition.
// Pressures in kN/m², heights in m, velocities in m/s. A floating fault raises
// qvrl::RuntimeError; no infinite or undefined value is ever returned.

#include <cstdint>

namespace qvrl {

// Velocity pressure by building height, steps closed at the top; 0.0 for H <= 0.
double WindPressure_DIN1055_4_1986(double BuildingHeightInM);

// Reference pressure and velocity of a wind zone (1 to 5). For any other zone
// the outputs are left as they are.
void WindReference(int16_t WindZone, double& qref, double& vref);

// Velocity pressure at height z for a terrain category (1 to 6); 0.0 for any
// other category.
double WindProfilePressure(double qref, double vref, int16_t BuildingCategory,
                           double z_BuildingInM);

// Velocity pressure at height z with the terrain height correction; 999.0 when
// the terrain lies above 1100 m.
double WindPressure_DIN1055_4_2005(int16_t WindZone, int16_t BuildingCategory,
                                   double z_BuildingInM, double TerrainHeightInM);

// Gust velocity to velocity pressure: v·v / 1600.
double WindVelocityToPressure(double v);

}  // namespace qvrl
