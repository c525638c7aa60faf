// Contour points to figure grids: a synthetic surface whose values are known
// everywhere, the readers' refusals, and the shared digitisation where present,
// through the import and the British annex rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "TestEnv.h"
#include "maintenance/StoredZip.h"
#include "maintenance/UkContours.h"
#include "maintenance/UkFigureImport.h"
#include "rules/modWindEN.h"
#include "rules/modWindUK.h"
#include "store/StoreFiles.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

// Linear in log10 X and log10 Y: the piecewise linear surface reproduces it.
double Plane(double x, double y) { return 1.5 + 0.25 * std::log10(x) - 0.125 * std::log10(y); }

ContourSet PlaneSet(double xMax) {
    ContourSet s;
    s.source = "plane";
    s.table = "en_bs_fig3";
    for (double x : {0.1, 0.37, 1.0, 4.1, 13.0, xMax})
        for (double y : {2.0, 7.3, 31.0, 200.0}) s.points.push_back({x, y, Plane(x, y)});
    return s;
}

TEST(UkContours, GridReproducesAPlaneUpToItsRounding) {
    const FigureGrid g = SampleFigure(PlaneSet(100.0), UkGridDistances(), UkGridHeights());
    EXPECT_EQ(g.outside, 0);
    ASSERT_EQ(g.values.size(), UkGridDistances().size());
    for (size_t r = 0; r < g.distances.size(); ++r)
        for (size_t c = 0; c < g.heights.size(); ++c)
            // Rounded to 4 decimals; barycentric weights add ~1e-15 before that.
            EXPECT_NEAR(g.values[r][c], Plane(g.distances[r], g.heights[c]), 0.5e-4 + 1e-12)
                << g.distances[r] << " km, " << g.heights[c] << " m";
}

// Beyond the points' hull a node takes the nearest point of the hull: for a
// plane sampled past X = 20 km that is the plane at 20 km.
TEST(UkContours, NodesOutsideTheHullTakeTheNearestHullValue) {
    const FigureGrid g = SampleFigure(PlaneSet(20.0), {50.0, 100.0}, {2.0, 10.0});
    EXPECT_EQ(g.outside, 4);
    for (size_t r = 0; r < 2; ++r)
        for (size_t c = 0; c < 2; ++c) EXPECT_NEAR(g.values[r][c], Plane(20.0, g.heights[c]), 0.5e-4 + 1e-12);
}

TEST(UkContours, BadInputIsRefusedWithItsPlace) {
    struct Case {
        const char* name;
        std::string csv;
        const char* fault;
    } cases[] = {
        {"non-numeric cell", "X,Y,Z\n1,2,3\n1,abc,3\n", "f.csv:3: column 2 (Y): 'abc' is not a number"},
        {"X not above 0", "X,Y,Z\n0,2,3\n", "f.csv:2: column 1: X and Y must be above 0"},
        {"Y negative", "X,Y,Z\n1,-2,3\n", "f.csv:2: column 1: X and Y must be above 0"},
        {"no header", "1,2,3\n", "f.csv:1: the header must name X, Y and Z"},
        {"empty", "", "f.csv: empty"},
    };
    for (const Case& c : cases) {
        try {
            ParseContourCsv(c.csv, "f.csv");
            ADD_FAILURE() << c.name;
        } catch (const ContourInputError& e) {
            EXPECT_EQ(std::string(e.what()).rfind(c.fault, 0), 0u) << c.name << ": " << e.what();
        }
    }
    struct Shape {
        const char* name;
        std::string csv;
        const char* fault;
    } shapes[] = {
        {"two points", "X,Y,Z\n1,2,3\n2,3,4\n", "s: 2 distinct points"},
        {"collinear in log scale", "X,Y,Z\n1,1,3\n10,10,4\n100,100,5\n", "s: all points lie on one line"},
        {"one place, two values", "X,Y,Z\n1,2,3\n1,2,4\n5,6,7\n", "s: one place"},
    };
    for (const Shape& s : shapes) {
        ContourSet set = ParseContourCsv(s.csv, "s");
        try {
            ContourSurface surface(set);
            ADD_FAILURE() << s.name;
        } catch (const ContourInputError& e) {
            EXPECT_EQ(std::string(e.what()).rfind(s.fault, 0), 0u) << s.name << ": " << e.what();
        }
    }
}

// Six sheets of three points each; `spoil` changes one sheet's name or rows.
std::string SixSheets(const std::string& spoilName, const std::string& newName, const std::string& rows3) {
    std::vector<std::pair<std::string, std::string>> sheets;
    for (const UkFigure& f : kUkFigures) {
        // Header by shared text in NA.3, inline text elsewhere: both are read.
        const std::string header =
            std::string(f.figure) == "NA.3"
                ? R"(<row r="1"><c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="s"><v>2</v></c></row>)"
                : R"(<row r="1"><c r="A1" t="inlineStr"><is><t>X</t></is></c><c r="B1" t="inlineStr"><is><t>Y</t></is></c>)"
                  R"(<c r="C1" t="inlineStr"><is><t>Z</t></is></c></row>)";
        const std::string rows = R"(<row r="2"><c r="A2"><v>0.1</v></c><c r="B2"><v>2</v></c><c r="C2"><v>1.5</v></c></row>)"
                                 R"(<row r="3"><c r="A3"><v>10</v></c><c r="B3"><v>2</v></c><c r="C3"><v>1.0</v></c></row>)";
        const bool spoilt = f.figure == spoilName;
        sheets.push_back({spoilt ? newName : f.figure, header + rows + (spoilt ? rows3 : "") +
                                                           R"(<row r="9"><c r="A9"><v>1</v></c><c r="B9"><v>100</v></c>)"
                                                           R"(<c r="C9"><v>1.25</v></c></row>)"});
    }
    return test::Workbook(sheets, "<si><t>X</t></si><si><r><t>Y</t></r></si><si><t>Z</t></si>");
}

TEST(UkContours, WorkbookIsReadSheetBySheetAndAFaultNamesItsPlace) {
    const auto sets = ParseContourXlsx(SixSheets("", "", ""), "w.xlsx");
    ASSERT_EQ(sets.size(), 6u);
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(sets[i].table, kUkFigures[i].table);
        ASSERT_EQ(sets[i].points.size(), 3u);
        EXPECT_EQ(sets[i].points[2].y, 100.0);
        EXPECT_EQ(sets[i].points[2].z, 1.25);
    }
    struct Case {
        const char* name;
        std::string bytes;
        const char* fault;
    } cases[] = {
        {"no zip", "not a zip", "w.xlsx: not an xlsx workbook (no zip archive)"},
        {"a sheet missing", SixSheets("NA.6", "Sheet6", ""), "w.xlsx: no sheet 'NA.6'"},
        {"a bad cell", SixSheets("NA.5", "NA.5", R"(<row r="4"><c r="B4" t="inlineStr"><is><t>abc</t></is></c></row>)"),
         "w.xlsx: sheet NA.5: cell A4 (X): '' is not a number"},
        {"a shared text out of range", SixSheets("NA.4", "NA.4", R"(<row r="5"><c r="C5" t="s"><v>7</v></c></row>)"),
         "w.xlsx: sheet NA.4: cell C5 names no shared text"},
        {"no workbook part", test::StoredZip({{"xl/other.xml", "<a/>"}}), "w.xlsx: not an xlsx workbook (no xl/"},
    };
    for (const Case& c : cases) {
        try {
            ParseContourXlsx(c.bytes, "w.xlsx");
            ADD_FAILURE() << c.name;
        } catch (const ContourInputError& e) {
            EXPECT_EQ(std::string(e.what()).rfind(c.fault, 0), 0u) << c.name << ": " << e.what();
        }
    }
}

std::string SharedData() {
    const char* env = std::getenv("QVRL_SHARED_DATA");
    return env && *env ? env : QVRL_SHARED_DATA;
}

// The shared digitisation (not shipped): workbook and CSV folder give the
// same grids.
TEST(UkContours, SharedDigitisationReadsAlikeFromWorkbookAndFolder) {
    const std::string dir = SharedData() + "/uk_na";
    if (!fs::exists(dir + "/uk_na_fig_NA3-NA8_contour_data.xlsx"))
        GTEST_SKIP() << "no shared copy in " << dir << " (set QVRL_SHARED_DATA)";
    const auto fromCsv = ReadUkContours(dir);
    const auto fromXlsx = ReadUkContours(dir + "/uk_na_fig_NA3-NA8_contour_data.xlsx");
    ASSERT_EQ(fromCsv.size(), 6u);
    ASSERT_EQ(fromXlsx.size(), 6u);
    for (size_t i = 0; i < 6; ++i) {
        ASSERT_EQ(fromCsv[i].points.size(), fromXlsx[i].points.size()) << i;
        EXPECT_EQ(SampleUkFigure(fromCsv[i]).values, SampleUkFigure(fromXlsx[i]).values) << i;
    }
}

// The shared digitisation through the whole road: imported into a copy of
// qvrl.mdb, read back by the figure look-up of the British annex rule.
class UkContoursThroughTheRule : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        const std::string dir = SharedData() + "/uk_na";
        if (!fs::exists(dir + "/uk_na_fig_NA_7.csv")) GTEST_SKIP() << "no shared copy in " << dir << " (set QVRL_SHARED_DATA)";
        db_ = (test::FreshFolder("db") / "qvrl.mdb").string();
        fs::copy_file(ProgramFolder() + "/qvrl.mdb", db_);
        std::vector<UkFigureGrid> grids;
        for (const ContourSet& set : ReadUkContours(dir)) {
            sampled_.push_back(SampleUkFigure(set));
            grids.push_back(ToUkFigureGrid(sampled_.back(), set.source));
        }
        WriteUkFigureGrids(grids, db_);
        SetStoreFileOverride("qvrl.mdb", db_);
    }

    // The sampled value at a node of figure NA.n.
    double Node(int figure, double km, double m) const {
        const FigureGrid& g = sampled_.at(static_cast<size_t>(figure - 3));
        const auto r = std::find(g.distances.begin(), g.distances.end(), km);
        const auto c = std::find(g.heights.begin(), g.heights.end(), m);
        EXPECT_TRUE(r != g.distances.end() && c != g.heights.end()) << km << " km, " << m << " m";
        if (r == g.distances.end() || c == g.heights.end()) return 0.0;
        return g.values[static_cast<size_t>(r - g.distances.begin())][static_cast<size_t>(c - g.heights.begin())];
    }

    // Peak velocity pressure in kN/m² under the British annex, v_b,0 = 22 m/s,
    // no orography, distances in m.
    static double Qp(int16_t category, double z, double toShore, double inTown) {
        return WindPressure_EN_1991_1_4(53, category, z, 0.0, 22.0, 0.0, 0.0, 1.0, 1.0, toShore, inTown);
    }

    std::string db_;
    std::vector<FigureGrid> sampled_;
};

// At grid nodes the look-up reads the imported value itself, and the rule
// multiplies the exposure factor (NA.7, times NA.8 in town) by the basic
// pressure: all in a fixed order, so exactly.
TEST_F(UkContoursThroughTheRule, NodesComeThroughUnchanged) {
    const double qb = BasicPressure(53, 0.0, 22.0, 1.0, 1.0);
    struct Case {
        int16_t category;
        double z, shoreKm, townKm, ce;
    } cases[] = {
        {2, 10.0, 10.0, 0.0, Node(7, 10.0, 10.0)},
        {1, 30.0, 0.5, 5.0, Node(7, 0.5, 30.0)},  // country terrain: no town correction
        {0, 10.0, 50.0, 0.0, Node(7, 0.1, 10.0)},  // sea: always 100 m from the shore
        {3, 10.0, 20.0, 2.0, Node(7, 20.0, 10.0) * Node(8, 2.0, 10.0)},
        {4, 50.0, 5.0, 0.5, Node(7, 5.0, 50.0) * Node(8, 0.5, 50.0)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "category " << c.category << ", z " << c.z << ", " << c.shoreKm << " km");
        EXPECT_EQ(ExposureFactorUK(c.category, c.z, c.shoreKm * 1000, c.townKm * 1000), c.ce);
        EXPECT_EQ(Qp(c.category, c.z, c.shoreKm * 1000, c.townKm * 1000), c.ce * qb);
    }
    EXPECT_EQ(RoughnessFactorUK(2, 10.0, 10000.0, 0.0), Node(3, 10.0, 10.0));
    EXPECT_EQ(TurbulenceUK(3, 10.0, 10000.0, 1000.0), Node(5, 10.0, 10.0) * Node(6, 1.0, 10.0));
}

// Values read off the printed figures of the UK annex at documented points
// (as noted with the shared digitisation): c_e(10 m) about 2.8 at 0.1 km,
// 2.5 at 10 km and 2.4 at 35 km from the shore; c_r(10 m) 1.0 beyond 35 km.
// A hand digitisation is good to about half a contour step (0.05 for c_e,
// whose contours are 0.1 apart; 0.025 for c_r, whose contours are 0.05 apart) and a reading
// off the print to as much again: so one contour step.
TEST_F(UkContoursThroughTheRule, FiguresReadAsPrinted) {
    const double qb = BasicPressure(53, 0.0, 22.0, 1.0, 1.0);
    struct Case {
        double shoreKm, ce;
    } cases[] = {{0.1, 2.8}, {10.0, 2.5}, {35.0, 2.4}};
    for (const Case& c : cases) {
        EXPECT_NEAR(ExposureFactorUK(2, 10.0, c.shoreKm * 1000, 0.0), c.ce, 0.1) << c.shoreKm << " km";
        EXPECT_NEAR(Qp(2, 10.0, c.shoreKm * 1000, 0.0) / qb, c.ce, 0.1) << c.shoreKm << " km";
    }
    EXPECT_NEAR(RoughnessFactorUK(2, 10.0, 50000.0, 0.0), 1.0, 0.05);
    // v_b = 22 m/s gives q_b = 0.5 · 1.226 · 22² = 296.7 Pa: the annex's air density.
    EXPECT_NEAR(qb, 0.2966920, 1e-7);
}

}  // namespace
