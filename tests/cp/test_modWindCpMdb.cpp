// The store route of the coefficient selection: its queries and Theta tables,
// the key scan with its clamping and tolerance, the database and text file
// sources (small files of our own), InitCpeMdb, the traces, and the shipped
// rows of DIN 1055-4:2005 against the built-in tables.
#include "cp/modWindCpMdb.h"

#include <gtest/gtest.h>

#include <charconv>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "cp/CpFields.h"
#include "cp/modWindCp.h"
#include "store/modDAO.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

namespace qvrl {
namespace {

namespace fs = std::filesystem;
using test::Cells;
using test::ErrorOf;
using test::ExpectCells;
using R = CpWindRecord;

constexpr double kInf = std::numeric_limits<double>::infinity();

// Interpolate's order of operations, so that expected values match to the bit.
double Lin(double x0, double y0, double x1, double y1, double x) { return (x - x0) / (x1 - x0) * (y1 - y0) + y0; }

std::string Num(double v) {
    char buf[32];
    return std::string(buf, std::to_chars(buf, buf + sizeof buf, v).ptr);
}

// A stored row: the form code and the record as the columns carry it.
struct Row {
    int16_t Typ;
    CpWindRecord rec;
};

Row MakeRow(int16_t Typ, int32_t Norm, double Theta, double key, Cells cells, double CpWindRecord::*keyField = &R::Alpha,
            int16_t TrTyp = 0) {
    Row r{Typ, {}};
    r.rec.Norm = Norm;
    r.rec.Theta = Theta;
    r.rec.TrTyp = TrTyp;
    r.rec.*keyField = key;
    for (const auto& [name, v] : cells)
        for (const test::CpField& f : test::CpDoubleFields())
            if (f.name == name) r.rec.*f.p = v;
    return r;
}

// The double columns of cpe: every field but AlphaTr, which the store fills
// from Alpha. Their order is not the shipped table's, as the loader goes by name.
std::vector<test::CpField> DoubleColumns() {
    std::vector<test::CpField> c = test::CpDoubleFields();
    std::erase_if(c, [](const test::CpField& f) { return f.name == "AlphaTr"; });
    return c;
}

// A qvrl.mdb with a table cpe of these rows, IDs in the given order. A column
// named in `drop` is left out of the table.
void WriteStore(const fs::path& file, const std::vector<Row>& rows, const std::string& drop = {}) {
    auto db = DBEngine::CreateDatabase(file.string(), dao::dbLangGeneral);
    TableDef def = db->CreateTableDef("cpe");
    def.Fields().Append(def.CreateField("ID", dao::dbLong));
    def.Fields().Append(def.CreateField("Typ", dao::dbInteger));
    def.Fields().Append(def.CreateField("Norm", dao::dbInteger));
    def.Fields().Append(def.CreateField("TrTyp", dao::dbInteger));
    for (const auto& [name, f] : DoubleColumns())
        if (name != drop) def.Fields().Append(def.CreateField(name, dao::dbDouble));
    db->TableDefs().Append(def);
    auto rs = db->OpenRecordset("cpe", dao::dbOpenDynaset);
    int32_t id = 0;
    for (const Row& r : rows) {
        rs->AddNew();
        rs->Fields("ID").Value(Variant(++id));
        rs->Fields("Typ").Value(Variant(r.Typ));
        rs->Fields("Norm").Value(Variant(static_cast<int16_t>(r.rec.Norm)));
        rs->Fields("TrTyp").Value(Variant(r.rec.TrTyp));
        for (const auto& [name, f] : DoubleColumns())
            if (name != drop) rs->Fields(name).Value(Variant(r.rec.*f));
        rs->Update();
    }
    rs->Close();
    db->Close();
}

// One line of qvrlcpe.txt for a row: 70 fields, each closed by ";".
std::string TextLine(const Row& r, int32_t id, const std::string& remark = "'r'") {
    std::string s = std::to_string(id) + ";" + std::to_string(r.rec.Norm) + ";" + std::to_string(r.Typ) + ";" +
                    std::to_string(r.rec.TrTyp) + ";" + remark + ";";
    for (auto f : {&R::Theta, &R::Alpha, &R::HzuD, &R::HPzuH, &R::RzuH}) s += Num(r.rec.*f) + ";";
    const size_t order[] = {9, 10, 11, 12, 13, 0, 14, 1, 2, 3, 4, 5, 6, 7, 8};
    for (size_t z : order) {
        const CpZoneSlots& c = kCpZones[z];
        for (auto f : {c.s10, c.s10a, c.s1, c.s1a}) s += Num(r.rec.*f) + ";";
    }
    return s;
}

std::string TextFile(const std::vector<Row>& rows) {
    std::string s;
    int32_t id = 0;
    for (const Row& r : rows) s += TextLine(r, ++id) + "\r\n";
    return s;
}

// Gabled rows of Norm 7, Theta 0, built so that every kind of slot and sign
// change meets in the bracket 15..30: F10 same sign, F10a and Ft10 sign
// change, G10 from 0, G10a to 0, A10 a wall slot the roof must not carry.
std::vector<Row> GabledRows() {
    return {
        MakeRow(4, 7, 0.0, 5.0, {{"F10", -1.7}, {"F1", -2.5}, {"G10", -1.2}, {"A10", -9.0}}),
        MakeRow(4, 7, 0.0, 15.0,
                {{"F10", -0.9}, {"F10a", 0.2}, {"G10", 0.0}, {"G10a", -0.8}, {"Ft10", -1.6}, {"N1a", -0.3},
                 {"A10", -9.0}}),
        MakeRow(4, 7, 0.0, 30.0,
                {{"F10", -0.5}, {"F10a", -0.4}, {"G10", 0.7}, {"G10a", 0.0}, {"Ft10", 0.3}, {"N1a", -0.6},
                 {"A10", -9.0}}),
        // Another direction and another standard that the filters must drop.
        MakeRow(4, 7, 90.0, 20.0, {{"F10", 5.0}}),
        MakeRow(4, 8, 0.0, 20.0, {{"F10", 6.0}}),
    };
}

class CpeStore : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        program_ = test::FreshFolder("program");
        setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
        platform_ = std::make_shared<HeadlessPlatform>();
        SetPlatform(platform_);
    }
    void Store(const std::vector<Row>& rows, const std::string& drop = {}) {
        WriteStore(program_ / "qvrl.mdb", rows, drop);
    }
    void Text(const std::string& text) { test::WriteFile(program_ / "qvrlcpe.txt", text); }
    std::string Log() const { return test::ReadFile(TraceFileName()); }

    fs::path program_;
    std::shared_ptr<HeadlessPlatform> platform_;
};

// Rows of every form under Norm 7 in one store; Typ and TrTyp keep them apart.
std::vector<Row> RouteRows() {
    std::vector<Row> rows = GabledRows();
    const auto flat = [](int16_t TrTyp, double CpWindRecord::*key, double k, double f10) {
        return MakeRow(2, 7, 0.0, k, {{"F10", f10}, {"Ft1", f10}}, key, TrTyp);
    };
    const auto inside = [](int16_t TrTyp, double Theta, double mue, double HzuD, double innen) {
        return MakeRow(6, 7, Theta, mue, {{"Innen", innen}, {"Innena", -innen}, {"HzuD", HzuD}}, &R::Mue, TrTyp);
    };
    for (const Row& r : {
             MakeRow(5, 7, 0.0, 15.0, {{"K10", -1.2}}), MakeRow(5, 7, 0.0, 30.0, {{"K10", -0.5}}),
             MakeRow(3, 7, 180.0, 5.0, {{"H1", -1.2}}), MakeRow(3, 7, 180.0, 15.0, {{"H1", -0.8}}),
             MakeRow(3, 7, 0.0, 15.0, {{"H1", 9.0}}),
             // Walls stored rising: the query must turn them.
             MakeRow(1, 7, 0.0, 0.25, {{"D10", 0.7}}, &R::HzuD), MakeRow(1, 7, 0.0, 5.0, {{"D10", 0.8}}, &R::HzuD),
             flat(1, &R::Alpha, 0.0, -1.9), flat(1, &R::Alpha, 0.0, -1.8),  // sharp: the last stands
             flat(2, &R::HPzuH, 0.0, -1.8), flat(2, &R::HPzuH, 0.025, -1.6), flat(2, &R::HPzuH, 0.1, -1.2),
             flat(3, &R::RzuH, 0.05, -1.0), flat(3, &R::RzuH, 0.2, -0.5),
             flat(4, &R::Alpha, 30.0, -1.0), flat(4, &R::Alpha, 45.0, -1.2), flat(4, &R::Alpha, 90.0, -1.8),
             inside(0, 0, 0.33, 0.0, 0.35), inside(0, 0, 0.9, 0.00005, -0.3), inside(0, 0, 0.5, 1.0, 7.0),
             inside(1, 180, 0.2, 0.0, 0.5), inside(1, 0, 0.2, 0.0, 0.6)})
        rows.push_back(r);
    return rows;
}

class CpeRoute : public CpeStore {
protected:
    void SetUp() override {
        CpeStore::SetUp();
        Store(RouteRows());
    }
};

// --- queries and Theta --------------------------------------------------------

TEST(CpeQueries, TextsAsTheStoreReceivesThem) {
    const std::pair<std::string, const char*> cases[] = {
        {CpeQuerySatteldach(3, 90), "SELECT * FROM cpe WHERE Typ = 4 AND Norm = 3 AND Theta = 90 ORDER BY Alpha"},
        {CpeQuerySatteldach(3, 22.5), "SELECT * FROM cpe WHERE Typ = 4 AND Norm = 3 AND Theta = 22.5 ORDER BY Alpha"},
        {CpeQueryWalmdach(54), "SELECT * FROM cpe WHERE Typ = 5 AND Norm = 54 ORDER BY Alpha"},
        {CpeQueryPultdach(3, 180), "SELECT * FROM cpe WHERE Typ = 3 AND Norm = 3 AND Theta = 180 ORDER BY Alpha"},
        {CpeQueryFlachdach(3, 1), "SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 1 ORDER BY ID"},
        {CpeQueryFlachdach(3, 2), "SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 2 ORDER BY HPzuH"},
        {CpeQueryFlachdach(3, 3), "SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 3 ORDER BY RzuH"},
        {CpeQueryFlachdach(3, 4), "SELECT * FROM cpe WHERE Typ = 2 AND Norm = 3 AND TrTyp = 4 ORDER BY Alpha"},
        {CpeQueryFlachdach(-1, 0), "SELECT * FROM cpe WHERE Typ = 2 AND Norm = -1 AND TrTyp = 0 ORDER BY ID"},
        {CpeQueryWand(50), "SELECT * FROM cpe WHERE Typ = 1 AND Norm = 50 ORDER BY HzuD DESC"},
        {CpeQueryInnen(3, 1, 0),
         "SELECT * FROM cpe WHERE Typ = 6 AND TrTyp = 1 AND Norm = 3 AND Theta = 0 ORDER BY ID"},
        {CpeQueryInnen(3, 0, 90), "SELECT * FROM cpe WHERE Typ = 6 AND TrTyp = 0 AND Norm = 3 ORDER BY ID"},
    };
    for (const auto& [got, want] : cases) EXPECT_EQ(got, want);
}

TEST(CpeTheta, FoldsTheFullCircle) {
    const double down = std::nextafter(45.0, 0.0), up = std::nextafter(45.0, 90.0);
    struct Case {
        double Theta;
        double gabled;
        std::optional<double> pent;
        double inside;
    };
    const Case cases[] = {
        {-kInf, 90, {}, 90},  {-0.5, 90, {}, 90},  {0, 0, 0.0, 0},         {down, 0, 0.0, 0},
        {45, 0, 0.0, 0},      {up, 90, 90.0, 90},  {90, 90, 90.0, 90},     {134.5, 90, 90.0, 90},
        {135, 0, 90.0, 180},  {135.5, 0, 180.0, 180}, {180, 0, 180.0, 180}, {180.5, 0, {}, 180},
        {225, 0, {}, 180},    {225.5, 90, {}, 90}, {315, 90, {}, 90},      {315.5, 0, {}, 0},
        {kInf, 0, {}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.Theta);
        EXPECT_EQ(CpeThetaSatteldach(c.Theta), c.gabled);
        EXPECT_EQ(CpeThetaPultdach(c.Theta), c.pent);
        EXPECT_EQ(CpeThetaInnen(c.Theta), c.inside);
    }
    const double nan = std::nan("");
    EXPECT_EQ(ErrorOf([&] { CpeThetaSatteldach(nan); }), err::Overflow);
    EXPECT_EQ(ErrorOf([&] { CpeThetaPultdach(nan); }), err::Overflow);
    EXPECT_EQ(ErrorOf([&] { CpeThetaInnen(nan); }), err::Overflow);
}

// --- the key scan on rows in memory --------------------------------------------

CpWindRows Rows(const std::vector<Row>& rows, int16_t Typ, int32_t Norm, std::optional<double> Theta) {
    CpWindRows out(1);
    for (const Row& r : rows)
        if (r.Typ == Typ && r.rec.Norm == Norm && (!Theta || r.rec.Theta == *Theta)) out.push_back(r.rec);
    return out;
}

// The value a key exactly the tolerance above `row` must have, found by
// stepping, since 0.001 has no exact binary form.
double GapAbove(double row) {
    double v = row + kCpKeyTolerance;
    while (v - row > kCpKeyTolerance) v = std::nextafter(v, -kInf);
    while (v - row < kCpKeyTolerance) v = std::nextafter(v, kInf);
    EXPECT_EQ(v - row, kCpKeyTolerance);
    return v;
}

TEST(CpeScan, HitsBracketsAndClampsByAlpha) {
    const CpWindRows rows = Rows(GabledRows(), 4, 7, 0.0);
    const CpWindRecord &r5 = rows[1], &r15 = rows[2], &r30 = rows[3];
    struct Case {
        double v;
        CpWindRecord row;  // the row as it stands
    };
    const Case cases[] = {
        {15.0, r15},   {15.0005, r15}, {14.9995, r15},  // within the tolerance both ways
        {-80.0, r5},   {4.9, r5},      {5.0 - 0.0015, r5},  // below the table: the first row
        {30.0, r30},   {30.0015, r30}, {400.0, r30},        // above: the last row
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.v);
        CpWindRecord out;
        out.Remark = "stale";
        CpeScanKey(rows, &R::Alpha, c.v, 10.0, false, out);
        EXPECT_EQ(out, c.row);
    }
    // Exactly the tolerance above a row is neither a hit nor inside the
    // bracket: nothing, where the flat roof's last-row rule takes the last row.
    // Only a key of 0 lets the gap be exactly 0.001 in binary.
    CpWindRows zeroKey = rows;
    zeroKey[1].Alpha = 0.0;
    const double gap = GapAbove(0.0);
    CpWindRecord out;
    CpeScanKey(zeroKey, &R::Alpha, gap, 0.0, false, out);
    EXPECT_EQ(out, CpWindRecord{});
    CpeScanKey(zeroKey, &R::Alpha, gap, 0.0, true, out);
    EXPECT_EQ(out, r30);
    // No rows: the zero record on every form.
    CpeScanKey(CpWindRows(1), &R::Alpha, 20.0, 0.0, true, out);
    EXPECT_EQ(out, CpWindRecord{});
    EXPECT_EQ(ErrorOf([&] { CpeScanKey(rows, nullptr, 1.0, 0.0, false, out); }), err::InvalidCall);
}

TEST(CpeScan, InterpolatesEverySlotOfTheRoofZonesGuarded) {
    const CpWindRows rows = Rows(GabledRows(), 4, 7, 0.0);
    CpWindRecord out;
    CpeScanKey(rows, &R::Alpha, 20.0, 200.0, false, out);
    ExpectCells(out, {
                         {"Alpha", 20.0},
                         {"Theta", 200.0},  // the request, not a mapped direction
                         {"F10", Lin(15, -0.9, 30, -0.5, 20)},
                         {"F10a", -0.4},  // sign change: the second row's value
                         {"G10a", 0.0},   // sign change to 0
                         {"Ft10", 0.3},   // Ft is interpolated on this route
                         {"N1a", Lin(15, -0.3, 30, -0.6, 20)},
                         // G10 from 0 stays 0, and the wall zone A is not carried
                     });
    // Between 5 and 15 every slot but F10 has 0 on one side, and so reads 0.
    CpeScanKey(rows, &R::Alpha, 7.5, 0.0, false, out);
    ExpectCells(out, {{"Alpha", 7.5}, {"F10", Lin(5, -1.7, 15, -0.9, 7.5)}});
}

TEST(CpeScan, WallsFallByHzuDWithAllFourSlots) {
    CpWindRows rows(1);
    for (const Row& r : {MakeRow(1, 7, 0, 5.0, {{"A10", -1.4}, {"A10a", -0.2}, {"E1", -0.7}}, &R::HzuD),
                         MakeRow(1, 7, 0, 1.0, {{"A10", -1.2}, {"A10a", 0.1}, {"E1", -0.5}, {"F10", 3.0}}, &R::HzuD),
                         MakeRow(1, 7, 0, 0.25, {{"A10", -1.1}, {"E1", -0.5}}, &R::HzuD)})
        rows.push_back(r.rec);
    CpWindRecord out;
    for (const auto& [v, row] : std::vector<std::pair<double, size_t>>{
             {10.0, 1}, {5.0005, 1}, {1.0, 2}, {0.2505, 3}, {0.1, 3}, {-1.0, 3}}) {
        CpeScanHzuD(rows, v, out);
        EXPECT_EQ(out, rows[row]) << v;
    }
    CpeScanHzuD(rows, 3.0, out);
    ExpectCells(out, {{"HzuD", 3.0},
                      {"A10", Lin(1, -1.2, 5, -1.4, 3)},
                      {"A10a", -0.2},
                      {"E1", Lin(1, -0.5, 5, -0.7, 3)}});
    // Above 5 is the first row whatever the rows hold.
    CpWindRows low(1);
    low.push_back(rows[3]);
    low.push_back(rows[3]);
    low[1].HzuD = 2.0;
    CpeScanHzuD(low, 6.0, out);
    EXPECT_EQ(out, low[1]);
}

// --- the database route ------------------------------------------------------

TEST_F(CpeRoute, EachFormReadsItsRowsAndClamps) {
    const std::vector<Row> rows = GabledRows();
    CpWindRecord out;

    // Gabled: Theta 200 folds onto the rows of 0; an Alpha outside is clamped.
    Get_Wind_Cp_Satteldach_Mdb(7, 200.0, 80.0, out);
    EXPECT_EQ(out, rows[2].rec);
    Get_Wind_Cp_Satteldach_Mdb(7, 0.0, -50.0, out);
    EXPECT_EQ(out, rows[0].rec);
    Get_Wind_Cp_Satteldach_Mdb(7, 270.0, 0.0, out);  // rows of 90: one row, clamped
    EXPECT_EQ(out.F10, 5.0);

    // Hipped: no direction reaches the store, so Theta 0 finds its rows.
    Get_Wind_Cp_Walmdach_Mdb(7, 0.0, 20.0, out);
    ExpectCells(out, {{"Alpha", 20.0}, {"K10", Lin(15, -1.2, 30, -0.5, 20)}});
    EXPECT_EQ(out.Norm, 0);  // an interpolated row has no standard

    // Pent: 200 has no rows at all; 170 the rows of 180.
    Get_Wind_Cp_Pultdach_Mdb(7, 200.0, 10.0, out);
    EXPECT_EQ(out, CpWindRecord{});
    Get_Wind_Cp_Pultdach_Mdb(7, 170.0, 10.0, out);
    ExpectCells(out, {{"Alpha", 10.0}, {"Theta", 170.0}, {"H1", Lin(5, -1.2, 15, -0.8, 10)}});

    // Walls come back falling by HzuD whatever the insertion order.
    Get_Wind_Cp_Wand_Mdb(7, 10.0, out);
    EXPECT_EQ(out.D10, 0.8);
    Get_Wind_Cp_Wand_Mdb(7, 0.1, out);
    EXPECT_EQ(out.D10, 0.7);

    // An unknown standard finds nothing.
    Get_Wind_Cp_Satteldach_Mdb(99, 0.0, 20.0, out);
    EXPECT_EQ(out, CpWindRecord{});
    Get_Wind_Cp_Wand_Mdb(99, 1.0, out);
    EXPECT_EQ(out, CpWindRecord{});
    EXPECT_TRUE(platform_->Messages().empty());
}

TEST_F(CpeRoute, ARequestThatIsNoNumberIsAnOverflow) {
    const double nan = std::nan("");
    CpWindRecord out;
    const std::function<void()> calls[] = {
        [&] { Get_Wind_Cp_Satteldach_Mdb(7, nan, 20, out); }, [&] { Get_Wind_Cp_Satteldach_Mdb(7, 0, nan, out); },
        [&] { Get_Wind_Cp_Walmdach_Mdb(7, nan, 20, out); },   [&] { Get_Wind_Cp_Walmdach_Mdb(7, 0, nan, out); },
        [&] { Get_Wind_Cp_Pultdach_Mdb(7, nan, 20, out); },   [&] { Get_Wind_Cp_Pultdach_Mdb(7, 0, nan, out); },
        [&] { Get_Wind_Cp_Flachdach_Mdb(7, 0, nan, 0, out); }, [&] { Get_Wind_Cp_Wand_Mdb(7, nan, out); },
        [&] { Get_Wind_Cp_Innen_Mdb(7, 0, nan, 0.5, out); },  [&] { Get_Wind_Cp_Innen_Mdb(7, 0, 0, nan, out); },
    };
    for (const auto& call : calls) EXPECT_EQ(ErrorOf(call), err::Overflow);
}

TEST_F(CpeRoute, FlatRoofsHaveATrueSlopeAndTheirOwnEnds) {
    struct Case {
        double hp, r, tr;
        Cells want;
    };
    const Case cases[] = {
        {0, 0, 0, {{"F10", -1.8}, {"Ft1", -1.8}}},
        {0.0005, 0, 0, {{"F10", -1.8}, {"Ft1", -1.8}}},  // not above the tolerance: sharp eaves
        // Parapet wins over the others, with a slope between 0.025 and 0.1.
        {0.05, 0.1, 45, {{"HPzuH", 0.05}, {"F10", Lin(0.025, -1.6, 0.1, -1.2, 0.05)},
                         {"Ft1", Lin(0.025, -1.6, 0.1, -1.2, 0.05)}}},
        {0.5, 0, 0, {{"HPzuH", 0.1}, {"F10", -1.2}, {"Ft1", -1.2}}},
        // Below the first key: the first row, where the built-in route takes the last.
        {0, 0.01, 0, {{"RzuH", 0.05}, {"F10", -1.0}, {"Ft1", -1.0}}},
        // Mansard rows carry their angle in Alpha and AlphaTr alike.
        {0, 0, 45, {{"Alpha", 45}, {"AlphaTr", 45}, {"F10", -1.2}, {"Ft1", -1.2}}},
        {0, 0, 10, {{"Alpha", 30}, {"AlphaTr", 30}, {"F10", -1.0}, {"Ft1", -1.0}}},
        {0, 0, 60, {{"AlphaTr", 60}, {"F10", Lin(45, -1.2, 90, -1.8, 60)}, {"Ft1", Lin(45, -1.2, 90, -1.8, 60)}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.hp << " " << c.r << " " << c.tr);
        CpWindRecord out;
        Get_Wind_Cp_Flachdach_Mdb(7, c.hp, c.r, c.tr, out);
        const int16_t trTyp = out.TrTyp;
        const int32_t norm = out.Norm;
        out.TrTyp = 0;
        out.Norm = 0;
        ExpectCells(out, c.want);
        // Stored rows keep their standard and eaves; an interpolated one has neither.
        const bool interpolated = c.hp == 0.05 || c.tr == 60;
        EXPECT_EQ(norm, interpolated ? 0 : 7);
        EXPECT_EQ(trTyp != 0, !interpolated);
    }
}

TEST_F(CpeRoute, InternalPressureIgnoresTheRequestedHzuD) {
    const struct {
        int16_t TrTyp;
        double Theta, mue;
        double Mue, Innen, HzuD;
    } cases[] = {
        {0, 400.0, 0.5, 0.5, -0.3, 0.0},     // guarded: sign change gives row 2
        {0, 0.0, 0.1, 0.33, 0.35, 0.0},      // clamped below
        {0, 0.0, 2.0, 0.9, -0.3, 0.00005},   // clamped above; the row of HzuD 1 was never seen
        {1, 135.0, 0.2, 0.2, 0.5, 0.0},      // TrTyp selects rows, Theta 135 maps to 180 here
        {1, 10.0, 0.2, 0.2, 0.6, 0.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.TrTyp << " " << c.Theta << " " << c.mue);
        CpWindRecord out;
        Get_Wind_Cp_Innen_Mdb(7, c.TrTyp, c.Theta, c.mue, out);
        EXPECT_EQ((std::vector{out.Mue, out.Innen, out.Innena, out.HzuD}),
                  (std::vector{c.Mue, c.Innen, -c.Innen, c.HzuD}));
    }
    CpWindRecord out;
    Get_Wind_Cp_Innen_Mdb(7, 2, 10.0, 0.2, out);
    EXPECT_EQ(out, CpWindRecord{});
}

TEST_F(CpeStore, AMissingColumnOrTableGoesOutToTheCaller) {
    Store(GabledRows(), "Ft1a");
    CpWindRecord out;
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Satteldach_Mdb(7, 0, 20, out); }), err::ItemNotFound);
    ResetModuleState();
    fs::remove(program_ / "qvrl.mdb");
    DBEngine::CreateDatabase((program_ / "qvrl.mdb").string(), dao::dbLangGeneral)->Close();
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Wand_Mdb(7, 1, out); }), err::TableNotFound);
}

// --- InitCpeMdb and the traces -----------------------------------------------

TEST_F(CpeStore, InitFailsQuietlyIntoTheZeroRecord) {
    EXPECT_FALSE(InitCpeMdb());
    EXPECT_FALSE(State().CpeDb);
    CpWindRows rows;
    Get_Wind_Cp_Wand_FromMdb(3, rows);
    EXPECT_EQ(CpRowCount(rows), 0);
    CpWindRecord out;
    out.F10 = 1.0;
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Flachdach_Mdb(3, 0, 0, 0, out); }), 0);
    EXPECT_EQ(out, CpWindRecord{});
    const std::string start = "INITCPEMDB_START: \n";
    const std::string error = "INITCPEMDB_END: Error=" + std::to_string(err::FileNotFound) + " " +
                              ErrorDescription(err::FileNotFound) + " \n";
    // InitCpeMdb itself, then once for each loader that found no connection.
    EXPECT_EQ(Log(), start + error + start + error + start + error);
}

TEST_F(CpeStore, TheTextFileDecidesAnewAtEachInit) {
    Store(GabledRows());
    EXPECT_TRUE(InitCpeMdb());
    EXPECT_FALSE(State().UseCpeTxt);
    const std::shared_ptr<Database> db = State().CpeDb;
    ASSERT_TRUE(db);
    EXPECT_EQ(Log(), "INITCPEMDB_START: \nINITCPEMDB_END: \n");

    Text(TextLine(MakeRow(4, 7, 0.0, 20.0, {{"F10", 0.25}}), 1) + "\n");
    EXPECT_TRUE(InitCpeMdb());
    EXPECT_TRUE(State().UseCpeTxt);
    EXPECT_EQ(State().CpeDb, db);  // kept open, not used
    CpWindRecord out;
    Get_Wind_Cp_Satteldach_Mdb(7, 0, 20, out);
    EXPECT_EQ(out.F10, 0.25);

    fs::remove(program_ / "qvrlcpe.txt");
    EXPECT_TRUE(InitCpeMdb());
    EXPECT_FALSE(State().UseCpeTxt);
    EXPECT_EQ(State().CpeDb, db);  // opened once
    Get_Wind_Cp_Satteldach_Mdb(7, 0, 20, out);
    EXPECT_EQ(out.F10, Lin(15, -0.9, 30, -0.5, 20));
}

TEST_F(CpeRoute, TheGabledRouteAloneTraces) {
    ASSERT_TRUE(InitCpeMdb());
    const std::string before = Log();
    CpWindRecord out;
    Get_Wind_Cp_Satteldach_Mdb(7, 100, 20, out);
    EXPECT_EQ(Log(), before +
                         "GET_WIND_CP_SATTELDACH_MDB_START : \n"
                         "GET_WIND_CP_SATTELDACH_FROMMDB: SQL==SELECT * FROM cpe WHERE Typ = 4 AND Norm = 7 AND "
                         "Theta = 90 ORDER BY Alpha \n"
                         "GET_WIND_CP_SATTELDACH_FROMMDB: cnt(mCpWind)==1 \n"
                         "GET_WIND_CP_SATTELDACH_MDB_END : \n");
    const std::string gabled = Log();
    Get_Wind_Cp_Walmdach_Mdb(7, 0, 20, out);
    Get_Wind_Cp_Pultdach_Mdb(7, 0, 20, out);
    Get_Wind_Cp_Flachdach_Mdb(7, 0.1, 0, 0, out);
    Get_Wind_Cp_Wand_Mdb(7, 1, out);
    Get_Wind_Cp_Innen_Mdb(7, 0, 0, 0.5, out);
    EXPECT_EQ(Log(), gabled);
}

// --- the text file -------------------------------------------------------------

TEST(CpeTextLine, FieldsInFileOrder) {
    Row r = MakeRow(4, 54, 90.0, 12.5, {{"HzuD", 0.5}, {"HPzuH", 0.05}, {"RzuH", 0.1}}, &R::Alpha, 3);
    double v = 0.0;
    // Every zone slot distinct, so that a field read into the wrong slot shows.
    for (const CpZoneSlots& z : kCpZones)
        for (auto f : {z.s10, z.s10a, z.s1, z.s1a}) r.rec.*f = (v -= 0.125);
    CpWindRecord got;
    ParseCpeTextLine(TextLine(r, 17, "'a remark'"), got);
    CpWindRecord want = r.rec;
    want.ID = 17, want.Typ = 4, want.Remark = "a remark";
    EXPECT_EQ(got, want);
}

TEST(CpeTextLine, ItemsAndTheirFaults) {
    const std::string tail69 = [] {
        std::string t;
        for (int i = 6; i <= 69; ++i) t += "1;";
        return t;
    }();
    struct Case {
        std::string line;
        int32_t error;
        Cells cells;  // besides ID, Norm, Typ, TrTyp, Remark checked below
        int32_t ID;
        int32_t Norm;
        int16_t Typ;
        std::string Remark;
        int16_t TrTyp = 0;
    };
    const Case cases[] = {
        // A short line: every missing field is 0; blanks at the left do not count.
        {"", 0, {}, 0, 0, 0, ""},
        {"  5 ;  3;4;  ", 0, {}, 5, 3, 4, ""},
        // The last field without its ";" reads 0.
        {"1;2;3;4;'x';" + tail69 + "-0.7", 0, {}, 1, 2, 3, "x", 4},
        // Empty items are 0; a quoted item loses its ends, whichever quote.
        {"1;;4;;\"q\";;7.5;", 0, {{"Alpha", 7.5}}, 1, 0, 4, "q"},
        // A ";" inside quotes ends the field: "a" is the remark, 0.5 the Theta.
        {"1;3;4;0;'a;0.5;9;", 0, {{"Theta", 0.5}, {"Alpha", 9}}, 1, 3, 4, ""},
        {"1;3;4;0;'a;b';9;", err::TypeMismatch, {}, 0, 0, 0, ""},
        {"1;3;4;0;'';x1;", err::TypeMismatch, {}, 0, 0, 0, ""},
        {"1;3,5;", err::TypeMismatch, {}, 0, 0, 0, ""},
        // Integer fields round half to even; too large for them is an overflow.
        {"2.5;3.5;4.5;", 0, {}, 2, 4, 4, ""},
        {"1;3;40000;", err::Overflow, {}, 0, 0, 0, ""},
        {"3000000000;", err::Overflow, {}, 0, 0, 0, ""},
        // A quoted number still reads as a number.
        {"'7';'3';4;", 0, {}, 7, 3, 4, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line);
        CpWindRecord got;
        const int32_t e = ErrorOf([&] { ParseCpeTextLine(c.line, got); });
        EXPECT_EQ(e, c.error);
        if (e) continue;
        EXPECT_EQ(got.ID, c.ID);
        EXPECT_EQ(got.Norm, c.Norm);
        EXPECT_EQ(got.Typ, c.Typ);
        EXPECT_EQ(got.Remark, c.Remark);
        EXPECT_EQ(got.TrTyp, c.TrTyp);
        got.ID = got.Norm = got.Typ = got.TrTyp = 0;
        got.Remark.clear();
        Cells cells = c.cells;
        if (c.line.find(tail69) != std::string::npos) {
            // Fields 6 to 69 hold 1: everything from Theta to N1 but N1a.
            for (const test::CpField& f : test::CpDoubleFields())
                if (f.name != "N1a" && f.name != "AlphaTr" && f.name != "Mue" && f.name != "Innen" &&
                    f.name != "Innena")
                    cells[f.name] = 1.0;
        }
        ExpectCells(got, cells);
    }
}

TEST_F(CpeStore, TextFileRouteKeepsFileOrderAndReadsAnew) {
    // Deliberately no qvrl.mdb: the text file stands alone.
    Row a = MakeRow(4, 7, 0.0, 10.0, {{"F10", -1.0}});
    Row b = MakeRow(4, 7, 0.0, 20.0, {{"F10", -2.0}});
    Row twin = MakeRow(4, 7, 0.0, 20.0, {{"F10", -3.0}});
    Row theta = MakeRow(4, 7, 0.000001, 15.0, {{"F10", 8.0}});  // equality of doubles, not within a tolerance
    Row other = MakeRow(3, 7, 0.0, 15.0, {{"F10", 9.0}});
    Row wall = MakeRow(1, 7, 0.0, 0.5, {{"D10", 0.7}}, &R::HzuD);
    Row mansard = MakeRow(2, 7, 0.0, 45.0, {{"F10", -1.2}}, &R::Alpha, 4);
    Row late = MakeRow(4, 7, 0.0, 5.0, {{"F10", -4.0}});
    Text(TextFile({a, b, twin, theta, other, wall, mansard, late}));
    ASSERT_TRUE(InitCpeMdb());

    CpWindRows rows;
    Get_Wind_Cp_Satteldach_FromMdb(7, 0.0, rows);
    std::vector<double> f10;
    for (int32_t i = 1; i <= CpRowCount(rows); ++i) f10.push_back(rows[i].F10);
    EXPECT_EQ(f10, (std::vector<double>{-1.0, -2.0, -3.0, -4.0}));  // file order, nothing sorted
    EXPECT_EQ(rows[1].ID, 1);
    EXPECT_EQ(rows[1].Typ, 4);
    EXPECT_EQ(rows[1].Remark, "r");
    Get_Wind_Cp_Walmdach_FromMdb(7, rows);
    EXPECT_EQ(CpRowCount(rows), 0);
    Get_Wind_Cp_Flachdach_FromMdb(7, 4, rows);
    ASSERT_EQ(CpRowCount(rows), 1);
    EXPECT_EQ(rows[1].Alpha, 45.0);
    EXPECT_EQ(rows[1].AlphaTr, 45.0);
    Get_Wind_Cp_Flachdach_FromMdb(7, 2, rows);
    EXPECT_EQ(CpRowCount(rows), 0);

    // The first of two rows of the same key wins; the row of 5 out of order is
    // never reached, and a request of 5 clamps to the first row.
    CpWindRecord out;
    Get_Wind_Cp_Satteldach_Mdb(7, 0, 20, out);
    EXPECT_EQ(out.F10, -2.0);
    Get_Wind_Cp_Satteldach_Mdb(7, 0, 5, out);
    EXPECT_EQ(out.F10, -1.0);
    Get_Wind_Cp_Wand_Mdb(7, 3, out);
    EXPECT_EQ(out.D10, 0.7);

    // Internal pressure has no text file route, and no connection was opened.
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Innen_Mdb(7, 0, 0, 0.5, out); }), err::ObjectNotSet);

    // A bad line, and an empty file, go out to the caller.
    Text(TextFile({a}) + "1;7;4;0;'x';zero;\n");
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Satteldach_Mdb(7, 0, 20, out); }), err::TypeMismatch);
    Text("");
    ASSERT_TRUE(InitCpeMdb());
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Wand_Mdb(7, 1, out); }), 62);

    // ReadCpeText needs a file; one line end is one line, of zeros.
    EXPECT_EQ(ErrorOf([&] { ReadCpeText((program_ / "none.txt").string(), rows); }), err::FileNotFound);
    Text("\n");
    ReadCpeText((program_ / "qvrlcpe.txt").string(), rows);
    ASSERT_EQ(CpRowCount(rows), 1);
    EXPECT_EQ(rows[1], CpWindRecord{});
}

// The rows of the text file are kept while its size and time stamp stay as
// they were; a change of either has it read anew.
TEST_F(CpeStore, TextFileIsReadAgainWhenItsSizeOrStampChanges) {
    const fs::path file = program_ / "qvrlcpe.txt";
    const auto wall = [](double d10) { return TextFile({MakeRow(1, 7, 0.0, 0.5, {{"D10", d10}}, &R::HzuD)}); };
    Text(wall(0.5));
    ASSERT_TRUE(InitCpeMdb());
    const auto stamp = fs::last_write_time(file);
    CpWindRecord out;
    Get_Wind_Cp_Wand_Mdb(7, 3, out);
    EXPECT_EQ(out.D10, 0.5);
    struct {
        double written;
        int seconds;  // after the first stamp
        double read;
    } steps[] = {
        {0.7, 0, 0.5},    // same size, same stamp: the rows kept
        {0.7, 5, 0.7},    // same size, new stamp
        {0.75, 5, 0.75},  // other size, same stamp
        {0.25, 5, 0.75},  // kept again
    };
    for (const auto& s : steps) {
        SCOPED_TRACE(s.written);
        const auto before = fs::file_size(file);
        Text(wall(s.written));
        fs::last_write_time(file, stamp + std::chrono::seconds(s.seconds));
        EXPECT_EQ(fs::file_size(file) == before, s.written != 0.75);
        Get_Wind_Cp_Wand_Mdb(7, 3, out);
        EXPECT_EQ(out.D10, s.read);
    }
    // A faulty file is not kept in place of the good one it replaced, nor kept itself.
    Text(wall(0.5) + "1;7;1;0;'x';zero;\n");
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Wand_Mdb(7, 3, out); }), err::TypeMismatch);
    EXPECT_EQ(ErrorOf([&] { Get_Wind_Cp_Wand_Mdb(7, 3, out); }), err::TypeMismatch);
    Text(wall(0.7));
    Get_Wind_Cp_Wand_Mdb(7, 3, out);
    EXPECT_EQ(out.D10, 0.7);
}

// --- the shipped rows --------------------------------------------------------

// The rows of Norm 3 and 31 in <build>/data/qvrl.mdb are the built-in tables.
class CpeShipped : public test::IsolatedTest {};

TEST_F(CpeShipped, DinRowsEqualTheBuiltInTables) {
    ASSERT_TRUE(fs::exists(ProgramFolder() + "/qvrl.mdb"));
    ASSERT_FALSE(fs::exists(ProgramFolder() + "/qvrlcpe.txt"));
    ASSERT_TRUE(InitCpeMdb());
    const std::vector<CpBuiltInRow> builtIn = BuiltInCpRows();
    for (const int16_t norm : {int16_t{3}, int16_t{31}}) {
        for (const CpBuiltInTable table : kCpBuiltInTables) {
            const CpBuiltInTableInfo& info = BuiltInCpTableInfo(table);
            SCOPED_TRACE(testing::Message() << "Norm " << norm << " table " << static_cast<int>(table));
            CpWindRows rows;
            const double theta = info.Theta.value_or(0.0);
            switch (info.Typ) {
                case 1: Get_Wind_Cp_Wand_FromMdb(norm, rows); break;
                case 2: Get_Wind_Cp_Flachdach_FromMdb(norm, info.TrTyp, rows); break;
                case 3: Get_Wind_Cp_Pultdach_FromMdb(norm, theta, rows); break;
                case 4: Get_Wind_Cp_Satteldach_FromMdb(norm, theta, rows); break;
                case 5: Get_Wind_Cp_Walmdach_FromMdb(norm, rows); break;
            }
            std::vector<CpWindRecord> want;
            for (const CpBuiltInRow& b : builtIn)
                if (b.info.table == table) want.push_back(b.Rec);
            ASSERT_EQ(static_cast<size_t>(CpRowCount(rows)), want.size());
            for (size_t i = 0; i < want.size(); ++i) {
                CpWindRecord got = rows[i + 1];
                // What the store adds to a row: its standard, direction and eaves,
                // and a mansard angle in Alpha too.
                EXPECT_EQ(got.Norm, norm);
                EXPECT_EQ(got.Theta, theta);
                EXPECT_EQ(got.TrTyp, info.TrTyp);
                if (info.TrTyp == 4) {
                    EXPECT_EQ(got.Alpha, got.AlphaTr);
                }
                got.Norm = got.TrTyp = 0;
                got.Theta = 0.0;
                if (info.TrTyp == 4) got.Alpha = 0.0;
                EXPECT_EQ(got, want[i]) << "row " << i + 1;
            }
        }
        // No internal pressure rows are shipped for the DIN codes.
        CpWindRows inside;
        Get_Wind_Cp_Innen_FromMdb(norm, 0, 0, inside);
        EXPECT_EQ(CpRowCount(inside), 0);
    }
}

}  // namespace
}  // namespace qvrl
