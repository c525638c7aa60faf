#include "rules/modWindUK.h"

#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "rules/modMath.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/vb.h"

namespace qvrl {

bool OpenFigureDatabase() {
    ModuleState& st = State();
    if (st.FigureDb) return true;
    try {
        st.FigureDb = OpenDB(StoreFile("qvrl.mdb"), Variant(), Variant(true));
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

void FigureColumns(const std::string& table, std::vector<std::string>& names, std::vector<double>& heights) {
    names.clear();
    heights.clear();
    const Fields& fields = State().FigureDb->TableDefs().Item(table).Fields();
    for (const Field& f : fields) {
        if (!IsNumeric(f.Name())) continue;
        names.push_back(f.Name());
        heights.push_back(CDbl(Variant(f.Name())));
    }
}

void FigureColumnPair(const std::string& table, double z, std::string& lower, std::string& upper) {
    std::vector<std::string> n;
    std::vector<double> h;
    FigureColumns(table, n, h);
    if (n.empty()) Raise(err::SubscriptOutOfRange, "FigureColumnPair", "no height column in " + table);
    const size_t m = n.size();
    if (z <= h[0]) {
        lower = upper = n[0];
        return;
    }
    if (z >= h[m - 1]) {
        lower = upper = n[m - 1];
        return;
    }
    for (size_t i = 0; i + 1 < m; ++i) {
        if (z == h[i]) {
            lower = upper = n[i];
            return;
        }
        if (z == h[i + 1]) {
            lower = upper = n[i + 1];
            return;
        }
        if (z - h[i] >= 0.0 && h[i + 1] - z >= 0.0) {
            lower = n[i];
            upper = n[i + 1];
            return;
        }
    }
}

namespace {

// One row of the statement: found when it yields exactly one row.
bool ReadRow(const std::string& sql, const std::string& lower, const std::string& upper, double zl, double zu,
             double z, double& dist, double& value) {
    auto rs = State().FigureDb->OpenRecordset(sql, dao::dbOpenSnapshot);
    if (rs->EOF_() || rs->BOF()) return false;
    rs->MoveLast();
    const int16_t count = rs->RecordCount();
    rs->MoveFirst();
    if (count != 1) return false;
    dist = NzNumber(rs->Fields("dist"));
    value = NzNumber(rs->Fields(lower));
    if (lower != upper) value = Interpolate(zl, value, zu, NzNumber(rs->Fields(upper)), z);
    rs->Close();
    return true;
}

}  // namespace

double FigureValue(const std::string& table, double z, double dist) {
    if (!OpenFigureDatabase()) return 0.0;
    std::string lower, upper;
    FigureColumnPair(table, z, lower, upper);
    const double zl = CDbl(Variant(lower));
    const double zu = CDbl(Variant(upper));
    std::string d = DoubleToText(dist);
    CommaToPoint(d);

    double dl = 0.0, vl = 0.0, du = 0.0, vu = 0.0;
    const bool below = ReadRow("SELECT TOP 1 * FROM " + table + " WHERE (" + d + "-dist)>=0 ORDER BY (" + d + "-dist)",
                               lower, upper, zl, zu, z, dl, vl);
    const bool above = ReadRow("SELECT TOP 1 * FROM " + table + " WHERE (dist-" + d + ")>=0 ORDER BY (dist-" + d + ")",
                               lower, upper, zl, zu, z, du, vu);
    if (below && above) return Interpolate(dl, vl, du, vu, dist);
    if (below) return vl;
    if (above) return vu;
    return 0.0;
}

namespace {

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
