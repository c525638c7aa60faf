#include "rules/modWindUK.h"

#include "support/errors.h"

namespace qvrl {

namespace {

// The figure tables (en_bs_fig3 to en_bs_fig8 of qvrl.mdb) are not available
// yet. Until they are, every look-up answers as it does when the database
// cannot be opened: 0.0, without an error.
double FigureValue(const char* /*table*/, double /*z*/, double /*dist*/) {
    return 0.0;
}

// Factor over the distance to the shore, times the town correction for the
// town categories. Distances arrive in m; the figures are over km.
double FigureProduct(const char* shoreTable, const char* townTable, int16_t category, double z,
                     double DistToShore, double DistInTown) {
    double a = fp::Div(DistToShore, 1000.0);
    const double b = fp::Div(DistInTown, 1000.0);
    double f1 = 1.0;
    double f2 = 1.0;
    if (category == 0) a = 0.1;
    f1 = FigureValue(shoreTable, z, a);
    if (category == 3 || category == 4) f2 = FigureValue(townTable, z, b);
    return fp::Mul(f1, f2);
}

}  // namespace

double ExposureFactorUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown) {
    return FigureProduct("en_bs_fig7", "en_bs_fig8", BuildingCategory, z, DistToShore, DistInTown);
}

double RoughnessFactorUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown) {
    return FigureProduct("en_bs_fig3", "en_bs_fig4", BuildingCategory, z, DistToShore, DistInTown);
}

double TurbulenceUK(int16_t BuildingCategory, double z, double DistToShore, double DistInTown) {
    return FigureProduct("en_bs_fig5", "en_bs_fig6", BuildingCategory, z, DistToShore, DistInTown);
}

}  // namespace qvrl
