#include "rules/PublishedSnow.h"

#include "support/errors.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

constexpr const char* kAnnexC = "EN 1991-1-3:2003, Annex C, Table C.1, ";

// sk = (a·Z + c)·[1 + (A/r)²]
double ProductForm(double a, double Z, double c, double A, double r) {
    const double q = fp::Div(A, r);
    return fp::Mul(fp::Add(fp::Mul(a, Z), c), fp::Add(1.0, fp::Mul(q, q)));
}

// sk = a·Z + c + A/r, added from the left as printed.
double SumForm(double a, double Z, double c, double A, double r) {
    return fp::Add(fp::Add(fp::Mul(a, Z), c), fp::Div(A, r));
}

// sk = b + f·((A + 140)/760)²
double GermanCurve(double b, double f, double A) {
    const double q = fp::Div(fp::Add(A, 140.0), 760.0);
    return fp::Add(b, fp::Mul(f, fp::Mul(q, q)));
}

}  // namespace

std::optional<PublishedValue> AnnexCGroundSnow(int16_t CtrlRegion, double Z, double A) {
    PublishedValue v;
    switch (CtrlRegion) {
    case 1: v.value = ProductForm(0.642, Z, 0.009, A, 728.0), v.source = "Alpine Region"; break;
    case 2: v.value = ProductForm(0.264, Z, -0.002, A, 256.0), v.source = "Central East"; break;
    case 3: v.value = ProductForm(0.420, Z, -0.030, A, 917.0), v.source = "Greece"; break;
    case 4: v.value = ProductForm(0.190, Z, -0.095, A, 524.0), v.source = "Iberian Peninsula"; break;
    case 5: v.value = ProductForm(0.498, Z, -0.209, A, 452.0), v.source = "Mediterranean Region"; break;
    case 6: v.value = SumForm(0.164, Z, -0.082, A, 966.0), v.source = "Central West"; break;
    case 7: v.value = SumForm(0.790, Z, 0.375, A, 336.0), v.source = "Sweden, Finland"; break;
    case 8: v.value = SumForm(0.140, Z, -0.1, A, 501.0), v.source = "UK, Republic of Ireland"; break;
    default: return std::nullopt;
    }
    v.source = kAnnexC + v.source;
    return v;
}

std::optional<PublishedValue> GermanGroundSnow(int16_t Norm, int16_t SnowZone, double A) {
    double sk = 0.0, minimum = 0.0;
    switch (SnowZone) {
    case 1: sk = GermanCurve(0.19, 0.91, A), minimum = 0.65; break;
    case 11: sk = fp::Mul(1.25, GermanCurve(0.19, 0.91, A)), minimum = 0.81; break;
    case 2: sk = GermanCurve(0.25, 1.91, A), minimum = 0.85; break;
    case 21: sk = fp::Mul(1.25, GermanCurve(0.25, 1.91, A)), minimum = 1.06; break;
    case 3: sk = GermanCurve(0.31, 2.91, A), minimum = 1.10; break;
    default: return std::nullopt;
    }
    PublishedValue v;
    v.value = sk < minimum ? minimum : sk;
    v.source = Norm == norm::DE ? "DIN EN 1991-1-3/NA:2010-12, NDP to 4.1(1), Figure NA.1 and equations (NA.1) to (NA.3)"
                                : "DIN 1055-5:2005-07, 4.1, zones 1 to 3 with minima";
    if (sk < minimum) v.note = "minimum of the zone";
    return v;
}

PublishedValue UkGroundSnow(double Z, double A) {
    PublishedValue v;
    v.value = fp::Add(fp::Add(0.15, fp::Add(fp::Mul(0.1, Z), 0.05)), fp::Div(fp::Sub(A, 100.0), 525.0));
    v.source = "NA to BS EN 1991-1-3:2003+A1:2015, NA.2.8, Figure NA.1";
    return v;
}

std::optional<PublishedValue> PublishedGroundSnow(int16_t Norm, int16_t CtrlRegion, int16_t SnowZone, double A) {
    switch (Norm) {
    case norm::DIN2005:
    case norm::DIN2005_T2963:
    case norm::DE: return GermanGroundSnow(Norm, SnowZone, A);
    case norm::UK: {
        const double Z = SnowZoneFigure(Norm, 0, SnowZone);
        if (Z == 0.0) return std::nullopt;
        return UkGroundSnow(Z, A);
    }
    case norm::EN: {
        const double Z = SnowZoneFigure(Norm, CtrlRegion, SnowZone);
        if (Z == 0.0) return std::nullopt;
        return AnnexCGroundSnow(CtrlRegion, Z, A);
    }
    default: return std::nullopt;
    }
}

PublishedValue PublishedMue1(int16_t Norm, double alpha) {
    PublishedValue v;
    if (alpha <= 30.0)
        v.value = 0.8;
    else if (alpha < 60.0)
        v.value = fp::Div(fp::Mul(0.8, fp::Sub(60.0, alpha)), 30.0);
    else
        v.value = 0.0;
    switch (Norm) {
    case norm::DIN2005:
    case norm::DIN2005_T2963: v.source = "DIN 1055-5:2005-07, 4.2, roof shape coefficient"; break;
    case norm::DE: v.source = "DIN EN 1991-1-3:2010-12, 5.3.2, Table 5.2"; break;
    default: v.source = "EN 1991-1-3:2003, 5.3.2, Table 5.2"; break;
    }
    return v;
}

}  // namespace qvrl
