#pragma once
// Peak velocity pressure of EN 1991-1-4 and its factor chain, with the
// Austrian (51) and British (53) annex replacements; 54 is the Eurocode
// without an annex. Pressures in kN/m², velocities in m/s, heights and
// distances in m, terrain categories 0 to 4.
// The factors raise qvrl::RuntimeError on a floating fault; only
// WindPressure_EN_1991_1_4 turns every error into a result of 0.0.

#include <cstdint>

namespace qvrl {

// The whole chain. BasicWindPressure below 1e-5 counts as not given, and the
// pressure then comes from BasicWindVelocity. 0.0 for any error, an unknown
// category included.
double WindPressure_EN_1991_1_4(int16_t CtrlNA, int16_t BuildingCategory, double z_BuildingInM,
                                double BasicWindPressure, double BasicWindVelocity,
                                double UpwindSlope_Phi, double OrographicLocationFac_s, double cDir,
                                double cSeason, double DistToShore, double& DistInTown);

// Roughness length and minimum height of a category; an unknown category
// leaves both untouched.
void TerrainParameters(int16_t BuildingCategory, double& z0, double& zmin);

// kr = (z0/0.05)^0.07 · 0.19
double TerrainFactor(double z0);

// cr at z, held between zmin and 200 m. Under 51 zmin becomes the Austrian one.
double RoughnessFactor(int16_t CtrlNA, double kr, double z, double z0, double& zmin,
                       int16_t BuildingCategory, double DistToShore, double DistInTown);

// co from the upwind slope φ and the location factor s; always 1.0 under 51.
double OrographyFactor(int16_t CtrlNA, double UpwindSlope_Phi, double OrographicLocationFac_s);

// Iv at z, raised to zmin but with no upper limit.
double TurbulenceIntensity(int16_t CtrlNA, double z, double z0, double zmin, double co,
                           int16_t BuildingCategory, double DistToShore, double DistInTown);

// ce = (7·Iv + 1)·cr·cr·co·co, left to right.
double ExposureFactor(int16_t CtrlNA, double cr, double co, double Iv, int16_t BuildingCategory,
                      double z, double DistToShore, double DistInTown);

// Basic velocity pressure. Under 54 the factors are taken as 1.0; under 53
// qb and the factors passed in are ignored.
double BasicPressure(int16_t CtrlNA, double qb, double vbase, double cDir, double cSeason);

// British direction factor over the angle in degrees; 0.78 outside 0 to 360.
double WindDirectionFactor(double Angle);

// British season factor; the whole year counts, so always 1.0.
double WindSeasonFactor(int16_t FromMonth, int16_t ToMonth);

// Austrian factors as powers of z/10. Categories other than 2, 3, 4 give 0.0
// (and RoughnessFactorAT then leaves zmin alone).
double ExposureFactorAT(int16_t BuildingCategory, double z);
double RoughnessFactorAT(int16_t BuildingCategory, double z, double& zmin);
double TurbulenceAT(int16_t BuildingCategory, double z);

}  // namespace qvrl
