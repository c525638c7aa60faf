#include "rules/modWindEN.h"

#include <array>
#include <cstddef>

#include "rules/modMath.h"
#include "rules/modWindUK.h"
#include "support/errors.h"

namespace qvrl {

namespace {

constexpr int16_t kAT = 51;
constexpr int16_t kUK = 53;
constexpr int16_t kEN = 54;

// factor · (z/10)^exponent
struct PowerLaw {
    double factor;
    double exponent;
};

struct AustrianRow {
    double zmin;
    PowerLaw exposure;
    PowerLaw roughness;
    PowerLaw turbulence;
};

// Categories 2, 3, 4; nullptr for any other.
const AustrianRow* AustrianCategory(int16_t category) {
    static constexpr AustrianRow kRows[3] = {
        {5.0, {2.1, 0.24}, {1.0, 0.3}, {0.18, -0.15}},
        {10.0, {1.75, 0.29}, {0.593, 0.42}, {0.29, -0.21}},
        {15.0, {1.2, 0.38}, {0.263, 0.64}, {0.46, -0.32}},
    };
    if (category < 2 || category > 4) return nullptr;
    return &kRows[category - 2];
}

double Evaluate(const PowerLaw& law, double z, double zmin) {
    if (z < zmin) z = zmin;
    return fp::Mul(law.factor, fp::Pow(fp::Div(z, 10.0), law.exponent));
}

// The chain of the Eurocode and the annexes that keep its roughness and
// turbulence: cr and Iv share the logarithm of z/z0 while z is under the
// 200 m that holds cr, and kr is that of the category, worked out once.
double PeakPressureShared(int16_t CtrlNA, int16_t BuildingCategory, double z_BuildingInM,
                          double BasicWindPressure, double BasicWindVelocity, double UpwindSlope_Phi,
                          double OrographicLocationFac_s, double cDir, double cSeason) {
    static const std::array<double, 5> kTerrainFactors = [] {
        std::array<double, 5> kr{};
        for (int16_t c = 0; c < 5; ++c) {
            double z0 = 0.0;
            double zmin = 0.0;
            TerrainParameters(c, z0, zmin);
            kr[static_cast<size_t>(c)] = TerrainFactor(z0);
        }
        return kr;
    }();
    double z0 = 0.0;
    double zmin = 0.0;
    TerrainParameters(BuildingCategory, z0, zmin);
    const bool known = BuildingCategory >= 0 && BuildingCategory < 5;
    const double kr = known ? kTerrainFactors[static_cast<size_t>(BuildingCategory)] : TerrainFactor(z0);
    double z = z_BuildingInM;
    if (z < zmin) z = zmin;
    const bool held = z > 200.0;
    const double rr = fp::Div(held ? 200.0 : z, z0);
    const double lr = fp::Log(rr);
    const double cr = fp::Mul(kr, lr);
    const double co = OrographyFactor(CtrlNA, UpwindSlope_Phi, OrographicLocationFac_s);
    const double rt = held ? fp::Div(z, z0) : rr;
    double Iv = 0.0;
    if (rt > 1e-5) Iv = fp::Div(1.0, fp::Mul(co, held ? fp::Log(rt) : lr));
    const double ce = ExposureFactor(CtrlNA, cr, co, Iv, BuildingCategory, z_BuildingInM, 0.0, 0.0);
    const double q = BasicPressure(CtrlNA, BasicWindPressure, BasicWindVelocity, cDir, cSeason);
    return fp::Mul(ce, q);
}

}  // namespace

double WindPressure_EN_1991_1_4(int16_t CtrlNA, int16_t BuildingCategory, double z_BuildingInM,
                                double BasicWindPressure, double BasicWindVelocity,
                                double UpwindSlope_Phi, double OrographicLocationFac_s, double cDir,
                                double cSeason, double DistToShore, double& DistInTown) {
    double result = 0.0;
    // Hosts rely on 0.0 for anything the chain cannot answer, an unknown
    // category (z0 of 0.0) above all; no error leaves this function.
    try {
        if (CtrlNA != kAT && CtrlNA != kUK)
            return PeakPressureShared(CtrlNA, BuildingCategory, z_BuildingInM, BasicWindPressure, BasicWindVelocity,
                                      UpwindSlope_Phi, OrographicLocationFac_s, cDir, cSeason);
        double z0 = 0.0;
        double zmin = 0.0;
        TerrainParameters(BuildingCategory, z0, zmin);
        const double kr = TerrainFactor(z0);
        const double cr = RoughnessFactor(CtrlNA, kr, z_BuildingInM, z0, zmin, BuildingCategory,
                                          DistToShore, DistInTown);
        const double co = OrographyFactor(CtrlNA, UpwindSlope_Phi, OrographicLocationFac_s);
        const double Iv = TurbulenceIntensity(CtrlNA, z_BuildingInM, z0, zmin, co,
                                              BuildingCategory, DistToShore, DistInTown);
        const double ce = ExposureFactor(CtrlNA, cr, co, Iv, BuildingCategory, z_BuildingInM,
                                         DistToShore, DistInTown);
        const double q = BasicPressure(CtrlNA, BasicWindPressure, BasicWindVelocity, cDir, cSeason);
        result = fp::Mul(ce, q);
    } catch (...) {
        return 0.0;
    }
    return result;
}

void TerrainParameters(int16_t BuildingCategory, double& z0, double& zmin) {
    switch (BuildingCategory) {
    case 0: z0 = 0.003; zmin = 1.0; break;
    case 1: z0 = 0.01; zmin = 1.0; break;
    case 2: z0 = 0.05; zmin = 2.0; break;
    case 3: z0 = 0.3; zmin = 5.0; break;
    case 4: z0 = 1.0; zmin = 10.0; break;
    default: break;
    }
}

double TerrainFactor(double z0) {
    return fp::Mul(fp::Pow(fp::Div(z0, 0.05), 0.07), 0.19);
}

double RoughnessFactor(int16_t CtrlNA, double kr, double z, double z0, double& zmin,
                       int16_t BuildingCategory, double DistToShore, double DistInTown) {
    if (z < zmin) z = zmin;
    if (z > 200.0) z = 200.0;
    double cr = fp::Mul(kr, fp::Log(fp::Div(z, z0)));
    if (CtrlNA == kAT) {
        cr = RoughnessFactorAT(BuildingCategory, z, zmin);
    } else if (CtrlNA == kUK) {
        cr = RoughnessFactorUK(BuildingCategory, z, DistToShore, DistInTown);
    }
    return cr;
}

double OrographyFactor(int16_t CtrlNA, double UpwindSlope_Phi, double OrographicLocationFac_s) {
    const double phi = UpwindSlope_Phi;
    const double s = OrographicLocationFac_s;
    double co = 1.0;
    if (phi < 0.05) {
        co = 1.0;
    } else if (phi < 0.3) {
        co = fp::Add(fp::Mul(fp::Mul(2.0, s), phi), 1.0);
    } else {
        co = fp::Add(fp::Mul(0.6, s), 1.0);
    }
    // Austria takes no orographic factor.
    if (CtrlNA == kAT) co = 1.0;
    return co;
}

double TurbulenceIntensity(int16_t CtrlNA, double z, double z0, double zmin, double co,
                           int16_t BuildingCategory, double DistToShore, double DistInTown) {
    constexpr double kI = 1.0;
    if (z < zmin) z = zmin;
    double Iv = 0.0;
    const double r = fp::Div(z, z0);
    if (r > 1e-5) Iv = fp::Div(kI, fp::Mul(co, fp::Log(r)));
    if (CtrlNA == kAT) {
        Iv = TurbulenceAT(BuildingCategory, z);
    } else if (CtrlNA == kUK) {
        Iv = TurbulenceUK(BuildingCategory, z, DistToShore, DistInTown);
    }
    return Iv;
}

double ExposureFactor(int16_t CtrlNA, double cr, double co, double Iv, int16_t BuildingCategory,
                      double z, double DistToShore, double DistInTown) {
    double ce = fp::Add(fp::Mul(7.0, Iv), 1.0);
    ce = fp::Mul(ce, cr);
    ce = fp::Mul(ce, cr);
    ce = fp::Mul(ce, co);
    ce = fp::Mul(ce, co);
    if (CtrlNA == kAT) {
        ce = ExposureFactorAT(BuildingCategory, z);
    } else if (CtrlNA == kUK) {
        ce = ExposureFactorUK(BuildingCategory, z, DistToShore, DistInTown);
    }
    return ce;
}

double BasicPressure(int16_t CtrlNA, double qb, double vbase, double cDir, double cSeason) {
    double rho = 1.25;
    if (CtrlNA == kEN) {
        cDir = 1.0;
        cSeason = 1.0;
    }
    double q = fp::Mul(fp::Mul(qb, cDir), cSeason);
    if (q < 1e-5) {
        const double v = fp::Mul(fp::Mul(vbase, cDir), cSeason);
        q = fp::Div(fp::Mul(fp::Mul(fp::Mul(0.5, rho), v), v), 1000.0);
    }
    if (CtrlNA == kUK) {
        // The British annex fixes its own direction, season and density and
        // always starts from the basic velocity.
        cDir = WindDirectionFactor(240.0);
        cSeason = WindSeasonFactor(1, 12);
        rho = 1.226;
        const double v = fp::Mul(fp::Mul(vbase, cDir), cSeason);
        q = fp::Div(fp::Mul(fp::Mul(fp::Mul(0.5, rho), v), v), 1000.0);
    }
    return q;
}

double WindDirectionFactor(double Angle) {
    static constexpr double kAngle[13] = {0, 30, 60, 90, 120, 150, 180, 210, 240, 270, 300, 330, 360};
    static constexpr double kFactor[13] = {0.78, 0.73, 0.73, 0.74, 0.73, 0.8, 0.85,
                                           0.93, 1.0,  0.99, 0.91, 0.82, 0.78};
    const double a = fp::Check(Angle);
    if (a < 0.0 || a >= 360.0) return 0.78;
    for (int i = 0; i < 12; ++i) {
        if (a < kAngle[i + 1]) return Interpolate(kAngle[i], kFactor[i], kAngle[i + 1], kFactor[i + 1], a);
    }
    return 0.78;
}

double WindSeasonFactor(int16_t /*FromMonth*/, int16_t /*ToMonth*/) {
    return 1.0;
}

double ExposureFactorAT(int16_t BuildingCategory, double z) {
    const AustrianRow* row = AustrianCategory(BuildingCategory);
    if (row == nullptr) return 0.0;
    return Evaluate(row->exposure, z, row->zmin);
}

double RoughnessFactorAT(int16_t BuildingCategory, double z, double& zmin) {
    const AustrianRow* row = AustrianCategory(BuildingCategory);
    if (row == nullptr) return 0.0;
    zmin = row->zmin;
    return Evaluate(row->roughness, z, zmin);
}

double TurbulenceAT(int16_t BuildingCategory, double z) {
    const AustrianRow* row = AustrianCategory(BuildingCategory);
    if (row == nullptr) return 0.0;
    return Evaluate(row->turbulence, z, row->zmin);
}

}  // namespace qvrl
