#include "rules/modWind.h"

#include <cmath>

#include "support/errors.h"

namespace qvrl {

namespace {

// An undefined argument would slip through the comparisons unnoticed.
inline void RejectNaN(double x) {
    if (std::isnan(x)) Raise(err::Overflow);
}

// factor · base · (z/10)^exponent, multiplied from the left.
inline double Profile(double factor, double base, double z, double exponent) {
    return fp::Mul(fp::Mul(factor, base), fp::Pow(fp::Div(z, 10.0), exponent));
}

}  // namespace

double WindPressure_DIN1055_4_1986(double BuildingHeightInM) {
    const double h = BuildingHeightInM;
    RejectNaN(h);
    if (h <= 0.0) return 0.0;
    if (h <= 8.0) return 0.5;
    if (h <= 20.0) return 0.8;
    if (h <= 100.0) return 1.1;
    return 1.3;
}

void WindReference(int16_t WindZone, double& qref, double& vref) {
    switch (WindZone) {
    case 1: qref = 0.32; vref = 22.5; break;
    case 2: qref = 0.39; vref = 25.0; break;
    case 3: qref = 0.47; vref = 27.5; break;
    case 4: qref = 0.56; vref = 30.0; break;
    case 5: qref = 0.66; vref = 32.5; break;
    default: break;
    }
}

double WindVelocityToPressure(double v) {
    return fp::Div(fp::Mul(v, v), 1600.0);
}

double WindProfilePressure(double qref, double vref, int16_t BuildingCategory,
                           double z_BuildingInM) {
    const double q = qref;
    const double v = vref;
    const double z = z_BuildingInM;
    RejectNaN(q);
    RejectNaN(v);
    RejectNaN(z);
    switch (BuildingCategory) {
    case 1:
        return z < 2.0 ? fp::Mul(1.9, q) : Profile(2.6, q, z, 0.19);
    case 2:
        return z < 4.0 ? fp::Mul(1.7, q) : Profile(2.1, q, z, 0.24);
    case 3:
        return z < 8.0 ? fp::Mul(1.5, q) : Profile(1.6, q, z, 0.31);
    case 4:
        return z < 16.0 ? fp::Mul(1.3, q) : Profile(1.1, q, z, 0.4);
    case 5: {
        double gust;
        if (z < 4.0) gust = fp::Mul(1.33, v);
        else if (z <= 50.0) gust = Profile(1.51, v, z, 0.135);
        else gust = Profile(1.61, v, z, 0.095);
        return WindVelocityToPressure(gust);
    }
    case 6: {
        double gust;
        if (z < 7.0) gust = fp::Mul(1.23, v);
        else if (z <= 50.0) gust = Profile(1.31, v, z, 0.185);
        else gust = Profile(1.45, v, z, 0.12);
        return WindVelocityToPressure(gust);
    }
    default:
        return 0.0;
    }
}

double WindPressure_DIN1055_4_2005(int16_t WindZone, int16_t BuildingCategory,
                                   double z_BuildingInM, double TerrainHeightInM) {
    const double hNN = TerrainHeightInM;
    RejectNaN(hNN);
    double qref = 0.0;
    double vref = 0.0;
    WindReference(WindZone, qref, vref);
    double q = WindProfilePressure(qref, vref, BuildingCategory, z_BuildingInM);
    if (hNN > 800.0) q = fp::Mul(fp::Add(fp::Div(hNN, 1000.0), 0.2), q);
    if (hNN > 1100.0) q = 999.0;
    return q;
}

}  // namespace qvrl
