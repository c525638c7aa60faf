#include "rules/modSnow.h"

#include <cmath>

#include "support/errors.h"

namespace qvrl {

namespace {

constexpr double kNoValue = 999.0;

// An undefined argument would slip through the comparisons unnoticed.
inline void RejectNaN(double x) {
    if (std::isnan(x)) Raise(err::Overflow);
}

// Ground snow of DIN 1055-5:1975 at the band limits 200, 300, ..., 1000 m,
// one column per zone I to IV.
constexpr double kSnow1975[9][4] = {
    {0.75, 0.75, 0.75, 1.0},
    {0.75, 0.75, 0.75, 1.15},
    {0.75, 0.75, 1.0, 1.55},
    {0.75, 0.9, 1.25, 2.1},
    {0.85, 1.15, 1.6, 2.6},
    {1.05, 1.5, 2.0, 3.25},
    {1.25, 1.85, 2.55, 3.9},
    {kNoValue, 2.3, 3.1, 4.65},
    {kNoValue, kNoValue, 3.8, 5.5},
};

// factor · x · x + constant of the 2004 draft, raised to its floor.
struct Formula2004 {
    double factor;
    double constant;
    double floor;
};

// Zones 1, 2, 3 of the 2004 draft; nullptr for any other code.
inline const Formula2004* Zone2004(int16_t zone) {
    static constexpr Formula2004 kZones[3] = {
        {0.91, 0.19, 0.65},
        {1.91, 0.25, 0.85},
        {2.91, 0.31, 1.1},
    };
    if (zone < 1 || zone > 3) return nullptr;
    return &kZones[zone - 1];
}

inline double Unfloored2004(const Formula2004& f, double h) {
    const double x = fp::Div(fp::Add(h, 140.0), 760.0);
    return fp::Add(fp::Mul(fp::Mul(f.factor, x), x), f.constant);
}

}  // namespace

double StandardSnowLoad_DIN1055_5_1975(int16_t SnowZone, double TerrainHeightInM) {
    const double h = TerrainHeightInM;
    RejectNaN(h);
    if (h > 1000.0) return kNoValue;
    if (SnowZone < 1 || SnowZone > 4) return 0.0;
    const int col = SnowZone - 1;
    if (h <= 200.0) return kSnow1975[0][col];

    int row = 1;  // upper limit of the band (lo, hi] that holds h
    while (h > 200.0 + 100.0 * row) ++row;
    const double vLo = kSnow1975[row - 1][col];
    const double vHi = kSnow1975[row][col];
    if (vHi == kNoValue) return kNoValue;

    double lo = 100.0 + 100.0 * row;
    // The band above 900 m keeps the limits of the band below it: its values
    // climb twice as fast and jump at 900 m. Established results rest on this,
    // so it is kept rather than corrected.
    if (row == 8) lo = 800.0;
    const double hi = lo + 100.0;
    return vLo + (h - lo) / (hi - lo) * (vHi - vLo);
}

double StandardSnowLoad_EDIN1055_5_2004(int16_t SnowZone, double TerrainHeightInM) {
    const double h = TerrainHeightInM;
    RejectNaN(h);
    const Formula2004* f = Zone2004(SnowZone);
    if (f == nullptr) return 0.0;
    double s = Unfloored2004(*f, h);
    if (s < f->floor) s = f->floor;
    if (h > 1500.0) s = kNoValue;
    return s;
}

double StandardSnowLoad_DIN1055_7_2005(int16_t SnowZone, double TerrainHeightInM) {
    const double h = TerrainHeightInM;
    RejectNaN(h);
    // The "a" zones are their base zone scaled by 1.25, floor included.
    const bool scaled = SnowZone == 11 || SnowZone == 21;
    const int16_t base = SnowZone == 11 ? int16_t{1} : SnowZone == 21 ? int16_t{2} : SnowZone;
    const Formula2004* f = Zone2004(base);
    if (f == nullptr) return 0.0;
    double s = Unfloored2004(*f, h);
    double floor = f->floor;
    if (scaled) {
        s = fp::Mul(s, 1.25);
        floor = floor * 1.25;
    }
    if (s < floor) s = floor;
    if (h > 1500.0) s = kNoValue;
    return s;
}

void SnowShapeDIN(double Alpha, double& mue1, double& mue2) {
    const double a = Alpha;
    RejectNaN(a);
    constexpr double tol = 1e-16;
    mue1 = 0.0;
    mue2 = 0.0;
    if (!(a <= -tol) && !(30.0 - a <= -tol)) {
        mue1 = 0.8;
        mue2 = (a / 30.0) * 0.8 + 0.8;
    } else if (!(a - 30.0 <= tol) && !(60.0 - a <= -tol)) {
        mue1 = (60.0 - a) * 0.8 / 30.0;
        mue2 = 1.6;
    } else if (a - 60.0 > tol) {
        mue1 = 0.0;
        mue2 = 1.6;
    }
}

void SnowBagFactors(double hInCm, double sk, double& mue1, double& mue2) {
    mue1 = 0.8;
    mue2 = 0.0;
    // A low step makes no drift; sk is not needed then and may be 0.
    if (hInCm < 50.0) {
        mue2 = 0.8;
        return;
    }
    double m = fp::Div(fp::Mul(2.0, fp::Div(hInCm, 100.0)), sk);
    if (m < 0.8) m = 0.8;
    if (m > 2.0) m = 2.0;
    mue2 = m;
}

double SnowBag(double mue1, double mue2, double hInCm, double sk, double& Length) {
    const double first = fp::Mul(mue1, sk);
    const double second = fp::Mul(mue2, sk);
    const double height = fp::Sub(second, first);
    Length = fp::Mul(2.0, hInCm);
    return height;
}

double SnowOverhang(double si) {
    return fp::Div(fp::Mul(si, si), 3.0);
}

double SnowCatchingFence(double mue1, double mue2, double sk, double B, double Alpha) {
    // A comparison would let an undefined shape coefficient pass unseen.
    RejectNaN(mue1);
    RejectNaN(mue2);
    const double mue = mue1 > mue2 ? mue1 : mue2;
    // The rounded constant is part of the established results.
    const double rad = fp::Div(fp::Mul(Alpha, 3.141593), 180.0);
    return fp::Mul(fp::Mul(fp::Mul(mue, sk), B), std::sin(rad));
}

}  // namespace qvrl
