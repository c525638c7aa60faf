// The shipped rows of the table cpe: structure that the loaders rely on, and
// selections through the store route against the standards' printed cells,
// typed here independently of the SQL text.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "TestEnv.h"
#include "cp/CpFields.h"
#include "cp/modWindCpMdb.h"
#include "store/modDAO.h"
#include "support/modLowLevel.h"

namespace qvrl {
namespace {

using test::Cells;

// The tables' linear interpolation in the order the store route computes it.
double Lin(double x0, double y0, double x1, double y1, double x) { return (x - x0) / (x1 - x0) * (y1 - y0) + y0; }

// The rows of the Eurocode and of its German annex, which this data
// describes in full; the DIN rows keep some printed cells that break the
// sign rules below on purpose.
const std::set<int32_t> kEurocodeNorms = {54, 50};

struct Row {
    int32_t id = 0;
    int16_t typ = 0;
    CpWindRecord rec;
};

// Group of rows that one loader call returns, in the loader's terms.
using GroupKey = std::tuple<int32_t, int16_t, double, int16_t, double>;  // Norm, Typ, Theta, TrTyp, HzuD of Typ 6

class CpeRows : public test::IsolatedTest {
protected:
    static std::vector<Row> ReadAll() {
        auto db = DBEngine::OpenDatabase(ProgramFolder() + "/qvrl.mdb", {}, true);
        auto rs = db->OpenRecordset("SELECT * FROM cpe ORDER BY ID", dao::dbOpenSnapshot);
        std::vector<Row> rows;
        for (; !rs->EOF_(); rs->MoveNext()) {
            Row r;
            r.id = static_cast<int32_t>(NzNumber(rs->Fields("ID")));
            r.typ = static_cast<int16_t>(NzNumber(rs->Fields("Typ")));
            r.rec.Norm = static_cast<int32_t>(NzNumber(rs->Fields("Norm")));
            r.rec.TrTyp = static_cast<int16_t>(NzNumber(rs->Fields("TrTyp")));
            for (const test::CpField& f : test::CpDoubleFields())  // columns by the record's names
                if (f.name != "AlphaTr") r.rec.*f.p = NzNumber(rs->Fields(f.name));
            rows.push_back(r);
        }
        return rows;
    }

    static GroupKey KeyOf(const Row& r) {
        return {r.rec.Norm, r.typ, r.rec.Theta, r.rec.TrTyp, r.typ == cpe::TypInnen ? r.rec.HzuD : 0.0};
    }

    // The column a group is scanned by; null for the one-row sharp eaves.
    static double CpWindRecord::*SortKey(int16_t typ, int16_t trtyp) {
        switch (typ) {
            case cpe::TypWand: return &CpWindRecord::HzuD;
            case cpe::TypFlachdach:
                return trtyp == 2 ? &CpWindRecord::HPzuH
                       : trtyp == 3 ? &CpWindRecord::RzuH
                       : trtyp == 4 ? &CpWindRecord::Alpha
                                    : nullptr;
            case cpe::TypInnen: return &CpWindRecord::Mue;
            default: return &CpWindRecord::Alpha;
        }
    }

    static std::map<GroupKey, std::vector<Row>> Groups() {
        std::map<GroupKey, std::vector<Row>> g;
        for (const Row& r : ReadAll()) g[KeyOf(r)].push_back(r);
        return g;
    }
};

// In ID order (what the sharp eaves and internal pressure loaders read) keys
// run strictly the way the scans expect: a slipped digit (0.5 for 0.05) or a
// row typed twice shows as a break.
TEST_F(CpeRows, EveryGroupRunsStrictlyByItsKey) {
    const auto groups = Groups();
    ASSERT_FALSE(groups.empty());
    for (const auto& [key, rows] : groups) {
        const auto [norm, typ, theta, trtyp, hzud] = key;
        SCOPED_TRACE("Norm " + std::to_string(norm) + " Typ " + std::to_string(typ) + " Theta " +
                     std::to_string(theta) + " TrTyp " + std::to_string(trtyp));
        EXPECT_TRUE(typ >= cpe::TypWand && typ <= cpe::TypInnen);
        const auto col = SortKey(typ, trtyp);
        if (!col) {
            EXPECT_EQ(rows.size(), 1u) << "sharp eaves has one row; the scan would take the last";
            continue;
        }
        for (size_t i = 1; i < rows.size(); ++i) {
            const double prev = rows[i - 1].rec.*col, cur = rows[i].rec.*col;
            EXPECT_TRUE(typ == cpe::TypWand ? prev > cur : prev < cur)
                << "ID " << rows[i].id << ": " << prev << " then " << cur;
        }
    }
}

// A key typed into the column of another form is read by no loader and
// silently lost; the Eurocode rows carry only the columns of their form.
TEST_F(CpeRows, EurocodeRowsCarryOnlyTheirOwnKeys) {
    for (const Row& r : ReadAll()) {
        if (!kEurocodeNorms.count(r.rec.Norm)) continue;
        SCOPED_TRACE("ID " + std::to_string(r.id));
        const auto own = SortKey(r.typ, r.rec.TrTyp);
        for (auto col : {&CpWindRecord::Alpha, &CpWindRecord::HzuD, &CpWindRecord::HPzuH, &CpWindRecord::RzuH,
                         &CpWindRecord::Mue})
            EXPECT_EQ(col == own ? 0.0 : r.rec.*col, 0.0);
        const bool directed = r.typ == cpe::TypPultdach || r.typ == cpe::TypSatteldach;
        EXPECT_EQ(directed ? 0.0 : r.rec.Theta, 0.0);
        EXPECT_EQ(r.typ == cpe::TypFlachdach ? 0 : r.rec.TrTyp, 0);
        EXPECT_EQ(r.rec.Innen, 0.0);
        EXPECT_EQ(r.rec.Innena, 0.0);
    }
}

// Each shipped Eurocode table, with its row count and end keys; nothing else.
TEST_F(CpeRows, EveryListedTableIsThereAndNoOther) {
    struct Want {
        GroupKey key;
        size_t rows;
        double first, last;
    };
    const std::vector<Want> want = {
        {{54, 1, 0, 0, 0}, 3, 5, 0.25},      // Table 7.1
        {{54, 2, 0, 1, 0}, 1, 0, 0},         // Table 7.2 sharp eaves
        {{54, 2, 0, 2, 0}, 4, 0, 0.1},       // parapets
        {{54, 2, 0, 3, 0}, 4, 0, 0.2},       // curved eaves
        {{54, 2, 0, 4, 0}, 4, 30, 90},       // mansard eaves
        {{54, 3, 0, 0, 0}, 6, 5, 75},        // Table 7.3a
        {{54, 3, 90, 0, 0}, 6, 5, 75},       // Table 7.3b
        {{54, 3, 180, 0, 0}, 6, 5, 75},      // Table 7.3a
        {{54, 4, 0, 0, 0}, 10, -45, 75},     // Table 7.4a
        {{54, 4, 90, 0, 0}, 10, -45, 75},    // Table 7.4b
        {{54, 5, 0, 0, 0}, 6, 5, 75},        // Table 7.5
        {{50, 1, 0, 0, 0}, 3, 5, 0.25},      // Table NA.1
    };
    auto groups = Groups();
    for (const Want& w : want) {
        const auto it = groups.find(w.key);
        ASSERT_NE(it, groups.end()) << "Norm " << std::get<0>(w.key) << " Typ " << std::get<1>(w.key) << " Theta "
                                    << std::get<2>(w.key) << " TrTyp " << std::get<3>(w.key);
        const auto col = SortKey(std::get<1>(w.key), std::get<3>(w.key));
        EXPECT_EQ(it->second.size(), w.rows);
        if (col) {
            EXPECT_EQ(it->second.front().rec.*col, w.first);
            EXPECT_EQ(it->second.back().rec.*col, w.last);
        }
        groups.erase(it);
    }
    for (const auto& [key, rows] : groups)
        EXPECT_FALSE(kEurocodeNorms.count(std::get<0>(key))) << "unlisted group of Norm " << std::get<0>(key);
}

// The standards print c_pe,1 at least as onerous as c_pe,10 and never of the
// other sign. Where a table prints two sets, suction keeps the main columns
// and pressure the a columns in every row of the group, so that no
// interpolation between pitches joins a suction to a pressure.
TEST_F(CpeRows, EurocodeCellPairsKeepSignAndOrder) {
    const auto sign = [](double v) { return (v > 0) - (v < 0); };
    for (const auto& [key, rows] : Groups()) {
        if (!kEurocodeNorms.count(std::get<0>(key))) continue;
        for (const CpZoneSlots& z : kCpZones) {
            bool twoSets = false;
            for (const Row& r : rows) twoSets = twoSets || r.rec.*z.s10a != 0.0 || r.rec.*z.s1a != 0.0;
            for (const Row& r : rows) {
                SCOPED_TRACE("ID " + std::to_string(r.id) + " zone " + z.name);
                const double v10 = r.rec.*z.s10, v1 = r.rec.*z.s1, a10 = r.rec.*z.s10a, a1 = r.rec.*z.s1a;
                EXPECT_EQ(sign(v10), sign(v1));
                EXPECT_EQ(sign(a10), sign(a1));
                EXPECT_GE(std::fabs(v1), std::fabs(v10));
                EXPECT_GE(std::fabs(a1), std::fabs(a10));
                EXPECT_GE(a10, 0.0) << "the second set is pressure";
                if (twoSets) {
                    EXPECT_LE(v10, 0.0) << "pressure in the main columns of a two-set group";
                }
            }
        }
    }
}

// Whole rows through the store route, each against the printed table.
TEST_F(CpeRows, StoreRouteReturnsThePrintedRows) {
    struct Case {
        const char* what;
        std::function<void(CpWindRecord&)> run;
        int32_t norm;
        int16_t trtyp;
        Cells cells;
    };
    const std::vector<Case> cases = {
        {"7.4a 15 deg", [](CpWindRecord& r) { Get_Wind_Cp_Satteldach_Mdb(54, 0, 15, r); }, 54, 0,
         {{"Alpha", 15}, {"F10", -0.9}, {"F1", -2.0}, {"F10a", 0.2}, {"F1a", 0.2}, {"G10", -0.8}, {"G1", -1.5},
          {"G10a", 0.2}, {"G1a", 0.2}, {"H10", -0.3}, {"H1", -0.3}, {"H10a", 0.2}, {"H1a", 0.2},
          {"I10", -0.4}, {"I1", -0.4}, {"J10", -1.0}, {"J1", -1.5}}},
        // Between 5 and 15 degrees each set joins its own kind. The printed
        // +0.0 at 5 degrees is stored as 0, which the store's interpolation
        // reads as no value: no second value comes out. An interpolated
        // record carries no Norm.
        {"7.4a 10 deg", [](CpWindRecord& r) { Get_Wind_Cp_Satteldach_Mdb(54, 0, 10, r); }, 0, 0,
         {{"Alpha", 10}, {"F10", Lin(5, -1.7, 15, -0.9, 10)}, {"F1", Lin(5, -2.5, 15, -2.0, 10)},
          {"G10", Lin(5, -1.2, 15, -0.8, 10)}, {"G1", Lin(5, -2.0, 15, -1.5, 10)},
          {"H10", Lin(5, -0.6, 15, -0.3, 10)}, {"H1", Lin(5, -1.2, 15, -0.3, 10)},
          {"I10", Lin(5, -0.6, 15, -0.4, 10)}, {"I1", Lin(5, -0.6, 15, -0.4, 10)},
          {"J10", Lin(5, -0.6, 15, -1.0, 10)}, {"J1", Lin(5, -0.6, 15, -1.5, 10)}}},
        {"7.5 20 deg, both sets", [](CpWindRecord& r) { Get_Wind_Cp_Walmdach_Mdb(54, 0, 20, r); }, 0, 0,
         {{"Alpha", 20}, {"F10", Lin(15, -0.9, 30, -0.5, 20)}, {"F1", Lin(15, -2.0, 30, -1.5, 20)},
          {"F10a", Lin(15, 0.2, 30, 0.5, 20)}, {"F1a", Lin(15, 0.2, 30, 0.5, 20)},
          {"G10", Lin(15, -0.8, 30, -0.5, 20)}, {"G1", Lin(15, -1.5, 30, -1.5, 20)},
          {"G10a", Lin(15, 0.2, 30, 0.7, 20)}, {"G1a", Lin(15, 0.2, 30, 0.7, 20)},
          {"H10", Lin(15, -0.3, 30, -0.2, 20)}, {"H1", Lin(15, -0.3, 30, -0.2, 20)},
          {"H10a", Lin(15, 0.2, 30, 0.4, 20)}, {"H1a", Lin(15, 0.2, 30, 0.4, 20)},
          {"I10", Lin(15, -0.5, 30, -0.4, 20)}, {"I1", Lin(15, -0.5, 30, -0.4, 20)},
          {"J10", Lin(15, -1.0, 30, -0.7, 20)}, {"J1", Lin(15, -1.5, 30, -1.2, 20)},
          {"K10", Lin(15, -1.2, 30, -0.5, 20)}, {"K1", Lin(15, -2.0, 30, -0.5, 20)},
          {"L10", Lin(15, -1.4, 30, -1.4, 20)}, {"L1", Lin(15, -2.0, 30, -2.0, 20)},
          {"M10", Lin(15, -0.6, 30, -0.8, 20)}, {"M1", Lin(15, -1.2, 30, -1.2, 20)},
          {"N10", Lin(15, -0.3, 30, -0.2, 20)}, {"N1", Lin(15, -0.3, 30, -0.2, 20)}}},
        {"7.4a -45 deg, Theta 200 folds to 0",
         [](CpWindRecord& r) { Get_Wind_Cp_Satteldach_Mdb(54, 200, -45, r); }, 54, 0,
         {{"Alpha", -45}, {"F10", -0.6}, {"F1", -0.6}, {"G10", -0.6}, {"G1", -0.6}, {"H10", -0.8}, {"H1", -0.8},
          {"I10", -0.7}, {"I1", -0.7}, {"J10", -1.0}, {"J1", -1.5}}},
        {"7.4b 45 deg", [](CpWindRecord& r) { Get_Wind_Cp_Satteldach_Mdb(54, 60, 45, r); }, 54, 0,
         {{"Theta", 90}, {"Alpha", 45}, {"F10", -1.1}, {"F1", -1.5}, {"G10", -1.4}, {"G1", -2.0}, {"H10", -0.9},
          {"H1", -1.2}, {"I10", -0.5}, {"I1", -0.5}}},
        {"7.2 sharp eaves", [](CpWindRecord& r) { Get_Wind_Cp_Flachdach_Mdb(54, 0, 0, 0, r); }, 54, 1,
         {{"F10", -1.8}, {"F1", -2.5}, {"G10", -1.2}, {"G1", -2.0}, {"H10", -0.7}, {"H1", -1.2}, {"I10", -0.2},
          {"I1", -0.2}, {"I10a", 0.2}, {"I1a", 0.2}}},
        {"7.2 parapet 0.05", [](CpWindRecord& r) { Get_Wind_Cp_Flachdach_Mdb(54, 0.05, 0, 0, r); }, 54, 2,
         {{"HPzuH", 0.05}, {"F10", -1.4}, {"F1", -2.0}, {"G10", -0.9}, {"G1", -1.6}, {"H10", -0.7}, {"H1", -1.2},
          {"I10", -0.2}, {"I1", -0.2}, {"I10a", 0.2}, {"I1a", 0.2}}},
        {"7.2 mansard 45 deg", [](CpWindRecord& r) { Get_Wind_Cp_Flachdach_Mdb(54, 0, 0, 45, r); }, 54, 4,
         {{"Alpha", 45}, {"AlphaTr", 45}, {"F10", -1.2}, {"F1", -1.8}, {"G10", -1.3}, {"G1", -1.9}, {"H10", -0.4},
          {"H1", -0.4}, {"I10", -0.2}, {"I1", -0.2}, {"I10a", 0.2}, {"I1a", 0.2}}},
        {"7.1 h/d 1", [](CpWindRecord& r) { Get_Wind_Cp_Wand_Mdb(54, 1, r); }, 54, 0,
         {{"HzuD", 1}, {"A10", -1.2}, {"A1", -1.4}, {"B10", -0.8}, {"B1", -1.1}, {"C10", -0.5}, {"C1", -0.5},
          {"D10", 0.8}, {"D1", 1.0}, {"E10", -0.5}, {"E1", -0.5}}},
        {"NA.1 h/d 5", [](CpWindRecord& r) { Get_Wind_Cp_Wand_Mdb(50, 5, r); }, 50, 0,
         {{"HzuD", 5}, {"A10", -1.4}, {"A1", -1.7}, {"B10", -0.8}, {"B1", -1.1}, {"C10", -0.5}, {"C1", -0.7},
          {"D10", 0.8}, {"D1", 1.0}, {"E10", -0.5}, {"E1", -0.7}}},
        {"NA.1 h/d 0.25", [](CpWindRecord& r) { Get_Wind_Cp_Wand_Mdb(50, 0.25, r); }, 50, 0,
         {{"HzuD", 0.25}, {"A10", -1.2}, {"A1", -1.4}, {"B10", -0.8}, {"B1", -1.1}, {"C10", -0.5}, {"C1", -0.5},
          {"D10", 0.7}, {"D1", 1.0}, {"E10", -0.3}, {"E1", -0.5}}},
        {"7.3b 15 deg, F_low in Ft", [](CpWindRecord& r) { Get_Wind_Cp_Pultdach_Mdb(54, 90, 15, r); }, 54, 0,
         {{"Theta", 90}, {"Alpha", 15}, {"F10", -2.4}, {"F1", -2.9}, {"Ft10", -1.6}, {"Ft1", -2.4}, {"G10", -1.9},
          {"G1", -2.5}, {"H10", -0.8}, {"H1", -1.2}, {"I10", -0.7}, {"I1", -1.2}}},
        {"7.3a 180, 60 deg", [](CpWindRecord& r) { Get_Wind_Cp_Pultdach_Mdb(54, 170, 60, r); }, 54, 0,
         {{"Theta", 180}, {"Alpha", 60}, {"F10", -0.5}, {"F1", -1.0}, {"G10", -0.5}, {"G1", -0.5}, {"H10", -0.5},
          {"H1", -0.5}}},
        {"7.5 30 deg", [](CpWindRecord& r) { Get_Wind_Cp_Walmdach_Mdb(54, 90, 30, r); }, 54, 0,
         {{"Alpha", 30}, {"F10", -0.5}, {"F1", -1.5}, {"F10a", 0.5}, {"F1a", 0.5}, {"G10", -0.5}, {"G1", -1.5},
          {"G10a", 0.7}, {"G1a", 0.7}, {"H10", -0.2}, {"H1", -0.2}, {"H10a", 0.4}, {"H1a", 0.4}, {"I10", -0.4},
          {"I1", -0.4}, {"J10", -0.7}, {"J1", -1.2}, {"K10", -0.5}, {"K1", -0.5}, {"L10", -1.4}, {"L1", -2.0},
          {"M10", -0.8}, {"M1", -1.2}, {"N10", -0.2}, {"N1", -0.2}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        CpWindRecord r;
        r.F10 = 99.0;  // the route must overwrite, not merge
        c.run(r);
        EXPECT_EQ(r.Norm, c.norm);
        EXPECT_EQ(r.TrTyp, c.trtyp);
        r.Norm = 0;
        r.TrTyp = 0;
        test::ExpectCells(r, c.cells);
    }
}

}  // namespace
}  // namespace qvrl
