#include "cp/modWindCp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "cp/CpFields.h"
#include "support/CTrace.h"
#include "support/errors.h"

namespace qvrl {
namespace {

using test::Cells;
using test::ExpectCells;
using T = CpBuiltInTable;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double Above(double v) { return std::nextafter(v, kInf); }

// Linear interpolation in the order the rules fix; the literal cases below
// pin that order to the last bit.
double Lin(double x0, double y0, double x1, double y1, double x) { return (x - x0) / (x1 - x0) * (y1 - y0) + y0; }

enum class Form { Gabled, Hipped, Pent, Flat, Wall };

CpWindRecord Select(Form f, double a, double b = 0.0, double c = 0.0) {
    CpWindRecord r;
    r.Remark = "stale";  // every route starts from the zero record
    r.F10 = 9.0;
    switch (f) {
        case Form::Gabled: Get_Wind_Cp_Satteldach(a, b, r); break;
        case Form::Hipped: Get_Wind_Cp_Walmdach(a, b, r); break;
        case Form::Pent: Get_Wind_Cp_Pultdach(a, b, r); break;
        case Form::Flat: Get_Wind_Cp_Flachdach(a, b, c, r); break;
        case Form::Wall: Get_Wind_Cp_Wand(a, r); break;
    }
    return r;
}

// --- The tables --------------------------------------------------------------

struct TableCase {
    T table;
    int16_t Typ;
    std::optional<double> Theta;
    int16_t TrTyp;
    const char* KeyName;
    std::vector<double> keys;
    // Columns of the printed table in their order; the key column first.
    std::vector<std::string> cols;
    // Σ cell·(31·row + column) over the printed table, rows and columns from 1.
    double fingerprint;
};

const std::vector<TableCase>& TableCases() {
    const std::vector<double> alpha11 = {-45, -30, -15, -5, 5, 10, 15, 30, 45, 60, 75};
    const std::vector<double> pent = {5, 10, 15, 30, 45, 60, 75};
    const std::vector<std::string> flat = {"F10", "F1", "G10", "G1", "H10", "H1", "I10", "I1", "I10a", "I1a"};
    auto keyed = [&](const char* key) {
        std::vector<std::string> c = {key};
        c.insert(c.end(), flat.begin(), flat.end());
        return c;
    };
    static const std::vector<TableCase> cases = {
        {T::Satteldach_0, 4, 0.0, 0, "Alpha", alpha11,
         {"Alpha", "F10", "F1", "F10a", "F1a", "G10", "G1", "G10a", "G1a", "H10", "H1",
          "H10a", "H1a", "I10", "I1", "I10a", "I1a", "J10", "J1", "J10a", "J1a"},
         57373.8},
        {T::Satteldach_90, 4, 90.0, 0, "Alpha", alpha11, keyed("Alpha"), 45221.99999999999},
        {T::Walmdach, 5, {}, 0, "Alpha", {5, 15, 30, 45, 60, 75},
         {"Alpha", "F10", "F1", "F10a", "F1a", "G10", "G1", "G10a", "G1a", "H10", "H1", "H10a", "H1a",
          "I10", "I1", "J10", "J1", "K10", "K1", "L10", "L1", "M10", "M1", "N10", "N1"},
         27991.2},
        {T::Flachdach_Scharf, 2, {}, 1, "", {0}, flat, -350.49999999999994},
        {T::Flachdach_Attika, 2, {}, 2, "HPzuH", {0, 0.025, 0.05, 0.1}, keyed("HPzuH"), -2821.5249999999996},
        {T::Flachdach_Gerundet, 2, {}, 3, "RzuH", {0, 0.05, 0.1, 0.2}, keyed("RzuH"), -1603.1500000000003},
        {T::Flachdach_Mansarde, 2, {}, 4, "AlphaTr", {30, 45, 60, 90}, keyed("AlphaTr"), 18003.2},
        {T::Wand, 1, {}, 0, "HzuD", {5, 1, 0.25}, {"HzuD", "A10", "A1", "B10", "B1", "C10", "C1", "D10", "D1", "E10", "E1"},
         -700.6999999999999},
        {T::Pultdach_0, 3, 0.0, 0, "Alpha", pent,
         {"Alpha", "F10", "F1", "F10a", "F1a", "G10", "G1", "G10a", "G1a", "H10", "H1", "H10a", "H1a"}, 41582.7},
        {T::Pultdach_90, 3, 90.0, 0, "Alpha", pent,
         {"Alpha", "F10", "F1", "Ft10", "Ft1", "G10", "G1", "H10", "H1", "I10", "I1", "I10a", "I1a"},
         27145.000000000004},
        {T::Pultdach_180, 3, 180.0, 0, "Alpha", pent, {"Alpha", "F10", "F1", "G10", "G1", "H10", "H1"}, 35301.899999999994},
    };
    return cases;
}

TEST(CpBuiltInTables, KeysColumnsAndContents) {
    ASSERT_EQ(TableCases().size(), std::size(kCpBuiltInTables));
    for (const TableCase& c : TableCases()) {
        SCOPED_TRACE(static_cast<int>(c.table));
        const CpWindRows rows = BuiltInCpTable(c.table);
        ASSERT_EQ(CpRowCount(rows), static_cast<int16_t>(c.keys.size()));
        EXPECT_EQ(rows[0], CpWindRecord{});
        const CpBuiltInTableInfo& info = BuiltInCpTableInfo(c.table);
        const std::set<std::string> printed(c.cols.begin(), c.cols.end());
        std::set<std::string> used;
        double fingerprint = 0.0;
        for (size_t i = 1; i < rows.size(); ++i) {
            const CpWindRecord& r = rows[i];
            if (info.Key) {
                EXPECT_EQ(r.*info.Key, c.keys[i - 1]);
            }
            EXPECT_EQ(r.Norm, 0);
            EXPECT_EQ(r.TrTyp, 0);
            for (const auto& f : test::CpDoubleFields()) {
                if (r.*f.p != 0.0) used.insert(f.name);
                if (!printed.count(f.name)) {
                    EXPECT_EQ(r.*f.p, 0.0) << "row " << i << " " << f.name;
                }
            }
            for (size_t j = 0; j < c.cols.size(); ++j) {
                for (const auto& f : test::CpDoubleFields())
                    if (f.name == c.cols[j]) fingerprint += r.*f.p * static_cast<double>(i * 31 + j + 1);
            }
        }
        // Every printed column holds a value somewhere: no column landed in the wrong field.
        for (const std::string& col : c.cols) EXPECT_TRUE(used.count(col)) << col;
        // A fingerprint of the printed table: the smallest typo moves it by more than 0.01.
        EXPECT_NEAR(fingerprint, c.fingerprint, 1e-9);
    }
}

TEST(CpBuiltInTables, RowsTheStandardRelatesToEachOther) {
    // Gabled Theta 0: row -5 and row 5 differ only in F10 and H10.
    const CpWindRows s0 = BuiltInCpTable(T::Satteldach_0);
    CpWindRecord minus5 = s0[4], plus5 = s0[5];
    EXPECT_EQ(minus5.F10, -2.3);
    EXPECT_EQ(plus5.F10, -1.7);
    EXPECT_EQ(minus5.H10, -0.8);
    EXPECT_EQ(plus5.H10, -0.6);
    minus5.Alpha = plus5.Alpha, minus5.F10 = plus5.F10, minus5.H10 = plus5.H10;
    EXPECT_EQ(minus5, plus5);

    // The sharp eaves row opens the parapet and rounded tables and closes the mansard one.
    const CpWindRecord sharp = BuiltInCpTable(T::Flachdach_Scharf)[1];
    CpWindRecord first = BuiltInCpTable(T::Flachdach_Attika)[1];
    EXPECT_EQ(first, sharp);
    EXPECT_EQ(BuiltInCpTable(T::Flachdach_Gerundet)[1], sharp);
    CpWindRecord last = BuiltInCpTable(T::Flachdach_Mansarde)[4];
    EXPECT_EQ(last.AlphaTr, 90.0);
    last.AlphaTr = 0.0;
    EXPECT_EQ(last, sharp);

    // Rounded eaves 0.05: here F is the weaker zone.
    const CpWindRecord r005 = BuiltInCpTable(T::Flachdach_Gerundet)[2];
    EXPECT_EQ(r005.F10, -1.0);
    EXPECT_EQ(r005.G10, -1.2);

    // Pent Theta 0, rows 5 and 10: H10 and H1 of different sign, H1a repeating H1.
    const CpWindRows p0 = BuiltInCpTable(T::Pultdach_0);
    for (size_t i : {1u, 2u}) {
        EXPECT_GT(p0[i].H10, 0.0);
        EXPECT_LT(p0[i].H1, 0.0);
        EXPECT_EQ(p0[i].H1a, p0[i].H1);
    }

    // Pent Theta 90 is the only table with values in Ft.
    for (CpBuiltInTable t : kCpBuiltInTables) {
        bool hasFt = false;
        for (const CpWindRecord& r : BuiltInCpTable(t)) hasFt = hasFt || r.Ft10 != 0.0 || r.Ft1 != 0.0;
        EXPECT_EQ(hasFt, t == T::Pultdach_90) << static_cast<int>(t);
    }
}

TEST(CpBuiltInTables, ListingCarriesTheStoreKeys) {
    const std::vector<CpBuiltInRow> all = BuiltInCpRows();
    ASSERT_EQ(all.size(), 65u);
    size_t k = 0;
    for (const TableCase& c : TableCases()) {
        const CpWindRows rows = BuiltInCpTable(c.table);
        for (size_t i = 1; i < rows.size(); ++i, ++k) {
            const CpBuiltInRow& row = all[k];
            EXPECT_EQ(row.info.table, c.table);
            EXPECT_EQ(row.info.Typ, c.Typ);
            EXPECT_EQ(row.info.Theta, c.Theta);
            EXPECT_EQ(row.info.TrTyp, c.TrTyp);
            EXPECT_STREQ(row.info.KeyName, c.KeyName);
            EXPECT_EQ(row.Row, static_cast<int16_t>(i));
            EXPECT_EQ(row.Key, c.keys[i - 1]);
            EXPECT_EQ(row.Rec, rows[i]);
        }
    }
}

// --- Selection ------------------------------------------------------------------

struct RouteCase {
    const char* what;
    Form form;
    double a, b, c;
    Cells want;
};

// The non-zero cells of a built-in row; its contents are pinned by the
// fingerprints above, so the routes below need only name the row.
Cells RowCells(T table, size_t row) {
    Cells c;
    const CpWindRecord r = BuiltInCpTable(table)[row];
    for (const auto& f : test::CpDoubleFields())
        if (r.*f.p != 0.0) c[f.name] = r.*f.p;
    return c;
}
Cells With(Cells c, const Cells& more) {
    for (const auto& [k, v] : more) c[k] = v;
    return c;
}

const std::vector<RouteCase>& RouteCases() {
    const Cells kSharp = RowCells(T::Flachdach_Scharf, 1), kGabled30 = RowCells(T::Satteldach_0, 8);
    const Cells kParapetTop = RowCells(T::Flachdach_Attika, 4);
    const Cells kWall5 = RowCells(T::Wand, 1), kWall025 = RowCells(T::Wand, 3);
    static const std::vector<RouteCase> cases = {
        // Exact rows come as they stand (every row of every table: ThetaPicksTheTable).
        {"gabled 0.0005 above row 30", Form::Gabled, 0, 30.0005, 0, kGabled30},
        {"gabled 0.0005 below row 30", Form::Gabled, 45, 29.9995, 0, kGabled30},

        // Between rows: Alpha and Theta of the request.
        {"gabled 12.5: sign changes lean on the second values", Form::Gabled, 0, 12.5, 0,
         {{"Alpha", 12.5},
          {"F10", Lin(10, -1.3, 15, -0.9, 12.5)},  // the other row's second value
          {"F1", Lin(10, -2.2, 15, -2.0, 12.5)},
          {"G10", Lin(10, -1.0, 15, -0.8, 12.5)},
          {"G1", Lin(10, -1.7, 15, -1.5, 12.5)},
          {"H10", Lin(10, -0.4, 15, -0.3, 12.5)},
          {"H1", Lin(10, -0.4, 15, -0.3, 12.5)},
          {"I10", Lin(10, -0.5, 15, -0.4, 12.5)},  // the own row's second value
          {"I1", Lin(10, -0.5, 15, -0.4, 12.5)},
          {"J10", Lin(10, -0.8, 15, -1.0, 12.5)},
          {"J1", Lin(10, -0.8, 15, -1.5, 12.5)}}},  // all a slots: 0 on one side
        {"hipped 37.5: K to N main slots only", Form::Hipped, 45, 37.5, 0,
         {{"Theta", 45}, {"Alpha", 37.5}, {"F10", Lin(30, 0.5, 45, 0.7, 37.5)}, {"F1", Lin(30, 0.5, 45, 0.7, 37.5)},
          {"G10", 0.7}, {"G1", 0.7}, {"H10", Lin(30, 0.4, 45, 0.6, 37.5)}, {"H1", Lin(30, 0.4, 45, 0.6, 37.5)},
          {"I10", Lin(30, -0.4, 45, -0.3, 37.5)}, {"I1", Lin(30, -0.4, 45, -0.3, 37.5)},
          {"J10", Lin(30, -0.7, 45, -0.6, 37.5)}, {"J1", Lin(30, -1.2, 45, -0.6, 37.5)},
          {"K10", Lin(30, -0.5, 45, -0.3, 37.5)}, {"K1", Lin(30, -0.5, 45, -0.3, 37.5)},
          {"L10", Lin(30, -1.4, 45, -1.3, 37.5)}, {"L1", -2}, {"M10", -0.8}, {"M1", -1.2}, {"N10", -0.2},
          {"N1", -0.2}}},
        {"pent Theta 90, 12.5: Ft only on exact rows", Form::Pent, 90, 12.5, 0,
         {{"Theta", 90}, {"Alpha", 12.5}, {"F10", Lin(10, -2.2, 15, -2.4, 12.5)},
          {"F1", Lin(10, -2.7, 15, -2.9, 12.5)}, {"G10", Lin(10, -1.8, 15, -1.9, 12.5)},
          {"G1", Lin(10, -2.2, 15, -2.5, 12.5)}, {"H10", Lin(10, -0.7, 15, -0.8, 12.5)}, {"H1", -1.2},
          {"I10", Lin(10, -0.6, 15, -0.7, 12.5)}, {"I1", Lin(10, -0.6, 15, -1.2, 12.5)}}},
        {"wall 3", Form::Wall, 3, 0, 0,
         {{"HzuD", 3}, {"A10", Lin(1, -1.2, 5, -1.4, 3)}, {"A1", Lin(1, -1.4, 5, -1.7, 3)}, {"B10", -0.8},
          {"B1", -1.1}, {"C10", -0.5}, {"C1", Lin(1, -0.5, 5, -0.7, 3)}, {"D10", 0.8}, {"D1", 1.0},
          {"E10", -0.5}, {"E1", Lin(1, -0.5, 5, -0.7, 3)}}},

        // Flat roofs: between keys the lower row's values with Alpha = the request, key field 0.
        {"flat sharp", Form::Flat, 0, 0, 0, kSharp},
        {"flat negative requests are sharp", Form::Flat, -0.5, -1, -30, kSharp},
        {"flat hpZuH exactly the tolerance is sharp", Form::Flat, 0.001, 0, 0, kSharp},
        {"flat rZuH exactly the tolerance is sharp", Form::Flat, 0, 0.001, 0, kSharp},
        {"flat AlphaTr exactly the tolerance is sharp", Form::Flat, 0, 0, 0.001, kSharp},
        {"flat just above the tolerance has a parapet", Form::Flat, Above(0.001), 0, 0,
         With(kSharp, {{"Alpha", Above(0.001)}})},
        {"flat parapet beats rounded", Form::Flat, 0.03, 0.1, 0,
         With(RowCells(T::Flachdach_Attika, 2), {{"HPzuH", 0}, {"Alpha", 0.03}})},
        {"flat parapet row 0.025", Form::Flat, 0.0255, 0, 0, RowCells(T::Flachdach_Attika, 2)},
        {"flat parapet above the table", Form::Flat, 0.5, 0, 0, kParapetTop},
        {"flat rounded beats mansard", Form::Flat, 0, 0.05, 45, RowCells(T::Flachdach_Gerundet, 2)},
        {"flat mansard between 45 and 60", Form::Flat, 0, 0, 50,
         With(RowCells(T::Flachdach_Mansarde, 2), {{"AlphaTr", 0}, {"Alpha", 50}})},
        {"flat mansard above the table", Form::Flat, 0, 0, 95, RowCells(T::Flachdach_Mansarde, 4)},
        {"flat mansard below the table takes the last row", Form::Flat, 0, 0, 10, RowCells(T::Flachdach_Mansarde, 4)},

        // Walls clamp to their end rows.
        {"wall above 5", Form::Wall, 10, 0, 0, kWall5},
        {"wall 0.0005 above 5", Form::Wall, 5.0005, 0, 0, kWall5},
        {"wall below 0.25", Form::Wall, 0.1, 0, 0, kWall025},

        // Outside the tables and the Theta ranges: the zero record.
        {"gabled Theta 91", Form::Gabled, 91, 30, 0, {}},
        {"gabled Theta just above 90", Form::Gabled, Above(90), 30, 0, {}},
        {"gabled Theta below 0", Form::Gabled, -0.5, 30, 0, {}},
        {"gabled Alpha 80", Form::Gabled, 0, 80, 0, {}},
        {"gabled Alpha -50", Form::Gabled, 0, -50, 0, {}},
        {"gabled Alpha 0.0015 above the last row", Form::Gabled, 0, 75.0015, 0, {}},
        {"hipped Theta 0", Form::Hipped, 0, 30, 0, {}},
        {"hipped Theta just above 90", Form::Hipped, Above(90), 30, 0, {}},
        {"pent Theta just above 180", Form::Pent, Above(180), 30, 0, {}},
        {"pent Theta below 0", Form::Pent, -1, 30, 0, {}},
        {"gabled Alpha +inf", Form::Gabled, 0, kInf, 0, {}},

        // Infinities clamp like any far value where the table clamps.
        {"wall +inf", Form::Wall, kInf, 0, 0, kWall5},
        {"wall -inf", Form::Wall, -kInf, 0, 0, kWall025},
        {"flat parapet +inf", Form::Flat, kInf, 0, 0, kParapetTop},
    };
    return cases;
}

TEST(CpSelection, Routes) {
    for (const RouteCase& c : RouteCases()) {
        SCOPED_TRACE(c.what);
        ExpectCells(Select(c.form, c.a, c.b, c.c), c.want);
    }
}

TEST(CpSelection, ThetaPicksTheTable) {
    struct Case {
        Form form;
        double theta;
        T table;
    };
    const Case cases[] = {
        {Form::Gabled, 0, T::Satteldach_0},  {Form::Gabled, -0.0, T::Satteldach_0},
        {Form::Gabled, 45, T::Satteldach_0}, {Form::Gabled, Above(45), T::Satteldach_90},
        {Form::Gabled, 90, T::Satteldach_90}, {Form::Hipped, 1e-300, T::Walmdach},
        {Form::Hipped, 90, T::Walmdach},     {Form::Pent, 0, T::Pultdach_0},
        {Form::Pent, 45, T::Pultdach_0},     {Form::Pent, Above(45), T::Pultdach_90},
        {Form::Pent, 135, T::Pultdach_90},   {Form::Pent, Above(135), T::Pultdach_180},
        {Form::Pent, 180, T::Pultdach_180},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.theta);
        const CpWindRows rows = BuiltInCpTable(c.table);
        for (size_t i = 1; i < rows.size(); ++i) EXPECT_EQ(Select(c.form, c.theta, rows[i].Alpha), rows[i]);
    }
}

TEST(CpSelection, LastBitFollowsTheOrderOfOperations) {
    // Other orders of the same interpolation give 0.46, -0.84 and 0.7485333333333333.
    EXPECT_EQ(Select(Form::Gabled, 0, 22.8).F10, 0.45999999999999996);
    EXPECT_EQ(Select(Form::Gabled, 10, 17.25).F10a, -0.8400000000000001);
    EXPECT_EQ(Select(Form::Wall, 0.614).D10, 0.7485333333333334);
    EXPECT_EQ(Select(Form::Wall, 3).A10, -1.2999999999999998);
}

TEST(CpSelection, DecimalRequestsNearTheToleranceAreNotRounded) {
    // 45.001 - 45 is 0.00099999999999767 (a hit), 30.001 - 30 is 0.0010000000000012 (a bracket).
    EXPECT_EQ(Select(Form::Gabled, 0, 45.001), BuiltInCpTable(T::Satteldach_0)[9]);
    const CpWindRecord r = Select(Form::Gabled, 0, 30.001);
    EXPECT_EQ(r.Alpha, 30.001);
    EXPECT_EQ(r.H10, Lin(30, 0.4, 45, 0.6, 30.001));
}

// Only at a key of 0 can a request lie exactly the tolerance away from a row
// in doubles; the scans are shown there on rows of their own.
CpWindRows Rows(double CpWindRecord::*key, std::vector<double> keys) {
    CpWindRows rows(1);
    for (double k : keys) {
        CpWindRecord r;
        r.*key = k;
        r.F10 = -1.0 - k;
        r.A10 = -1.0 - k;
        rows.push_back(r);
    }
    return rows;
}

TEST(CpScan, TheGapOfExactlyTheTolerance) {
    CpWindRecord r;
    const CpWindRows up = Rows(&CpWindRecord::Alpha, {0, 1});
    const CpWindRows down = Rows(&CpWindRecord::Alpha, {-1, 0});
    CpScanAlpha(up, 0.001, 5, r);
    ExpectCells(r, {});
    CpScanAlpha(down, -0.001, 5, r);
    ExpectCells(r, {});
    CpScanAlpha(up, 0.0005, 5, r);
    ExpectCells(r, {{"F10", -1.0}, {"A10", -1.0}});
    CpScanAlpha(up, 0.0015, 5, r);
    ExpectCells(r, {{"Alpha", 0.0015}, {"Theta", 5}, {"F10", Lin(0, -1, 1, -2, 0.0015)}});

    // Walls fall into the same gap; flat roofs take their last row instead.
    CpScanHzuD(Rows(&CpWindRecord::HzuD, {1, 0}), 0.001, r);
    ExpectCells(r, {});
    CpScanFlat(Rows(&CpWindRecord::HPzuH, {0, 1}), &CpWindRecord::HPzuH, 0.001, r);
    ExpectCells(r, {{"HPzuH", 1}, {"F10", -2}, {"A10", -2}});
}

TEST(CpScan, EdgesOfTheScans) {
    CpWindRecord r;
    r.F10 = 3.0;
    for (const CpWindRows& none : {CpWindRows{}, CpWindRows(1)}) {
        CpScanAlpha(none, 1, 0, r);
        ExpectCells(r, {});
        CpScanHzuD(none, 10, r);  // above 5 with no first row to take
        ExpectCells(r, {});
        CpScanFlat(none, &CpWindRecord::RzuH, 1, r);
        ExpectCells(r, {});
    }
    // The wall's upper limit is the constant 5, not the first row: 6 is no bracket between 8 and 2.
    CpScanHzuD(Rows(&CpWindRecord::HzuD, {8, 2}), 6, r);
    ExpectCells(r, {{"HzuD", 8}, {"F10", -9}, {"A10", -9}});
    CpScanHzuD(Rows(&CpWindRecord::HzuD, {2, 1}), 3, r);  // above a first row below 5
    ExpectCells(r, {{"HzuD", 2}, {"F10", -3}, {"A10", -3}});
    CpScanHzuD(Rows(&CpWindRecord::HzuD, {8, 2}), 4, r);
    ExpectCells(r, {{"HzuD", 4}, {"A10", Lin(2, -3, 8, -9, 4)}});
    // One flat row and a miss: no last-row rule without a second row.
    CpScanFlat(Rows(&CpWindRecord::RzuH, {0}), &CpWindRecord::RzuH, 0.5, r);
    ExpectCells(r, {});
    EXPECT_EQ(test::ErrorOf([&] { CpScanFlat(Rows(&CpWindRecord::RzuH, {0}), nullptr, 0.5, r); }),
              err::InvalidCall);
}

TEST(CpInterp, TouchesOnlyItsZones) {
    CpWindRecord r1, r2;
    for (const auto& f : test::CpDoubleFields()) {
        r1.*f.p = -1.0;
        r2.*f.p = -2.0;
    }
    r1.Alpha = 10, r2.Alpha = 20, r1.HzuD = 1, r2.HzuD = 2;
    r1.Norm = r2.Norm = 3;
    r1.TrTyp = r2.TrTyp = 2;
    Cells alpha = {{"Alpha", 15}, {"Theta", 7}};
    for (const char* z : {"F", "G", "H", "I", "J"})
        for (const char* s : {"10", "1", "10a", "1a"}) alpha[std::string(z) + s] = -1.5;
    for (const char* z : {"K", "L", "M", "N"})
        for (const char* s : {"10", "1"}) alpha[std::string(z) + s] = -1.5;
    ExpectCells(CpInterpAlpha(15, 7, r1, r2), alpha);
    Cells hzud = {{"HzuD", 1.5}};
    for (const char* z : {"A", "B", "C", "D", "E"})
        for (const char* s : {"10", "1"}) hzud[std::string(z) + s] = -1.5;
    ExpectCells(CpInterpHzuD(1.5, r1, r2), hzud);
    // Guarded: 0 stands for a missing value, and a sign change takes the second row.
    r1.A10 = 0.0, r1.B10 = 0.5;
    const CpWindRecord g = CpInterpHzuD(1.5, r1, r2);
    EXPECT_EQ(g.A10, 0.0);
    EXPECT_EQ(g.B10, -2.0);
    // Same sign: a main value without a second value of its sign, and an a
    // slot that changes sign, are both 0.
    r1.G10 = 0.5, r1.G10a = 0.0, r2.G10a = 0.0, r1.F10a = 0.5;
    const CpWindRecord s = CpInterpAlpha(15, 0, r1, r2);
    EXPECT_EQ(s.G10, 0.0);
    EXPECT_EQ(s.F10a, 0.0);
}

TEST(CpSelection, NotANumberIsAnError) {
    const std::vector<double> args[] = {{kNaN, 30, 0}, {0, kNaN, 0}, {0.05, 0, kNaN}};
    for (Form f : {Form::Gabled, Form::Hipped, Form::Pent, Form::Flat, Form::Wall}) {
        for (const auto& a : args) {
            if (f == Form::Wall && !std::isnan(a[0])) continue;
            if (f != Form::Flat && std::isnan(a[2])) continue;
            EXPECT_EQ(test::ErrorOf([&] { Select(f, a[0], a[1], a[2]); }), err::Overflow) << static_cast<int>(f);
        }
    }
}

class CpTrace : public test::IsolatedTest {};

TEST_F(CpTrace, TheBuiltInRouteWritesNoTrace) {
    WriteTrace("", std::nullopt, "before", true, false);
    Select(Form::Gabled, 10, 20);
    Select(Form::Gabled, 91, 20);
    Select(Form::Hipped, 10, 20);
    Select(Form::Pent, 90, 12.5);
    Select(Form::Flat, 0.03, 0, 0);
    Select(Form::Wall, 3);
    EXPECT_EQ(test::ReadFile(TraceFileName()), "BEFORE: \n");
}

}  // namespace
}  // namespace qvrl
