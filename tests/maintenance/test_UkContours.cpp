// Contour points to figure grids: a synthetic surface whose values are known
// everywhere, the readers' refusals, and the shared digitisation where present.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "TestEnv.h"
#include "maintenance/UkContours.h"

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

TEST(UkContours, WorkbookWithoutAFigureSheetOrNoZipIsRefused) {
    try {
        ParseContourXlsx("not a zip", "w.xlsx");
        ADD_FAILURE();
    } catch (const ContourInputError& e) {
        EXPECT_EQ(std::string(e.what()), "w.xlsx: not an xlsx workbook (no zip archive)");
    }
}

// The shared digitisation (not shipped): workbook and CSV folder give the
// same grids, and c_e at 10 m reads as the annex draws it (about 2.8 at
// 0.1 km, 2.5 near 10 km, 2.4 near 35 km), within a contour step.
TEST(UkContours, SharedDigitisationWhenPresent) {
    const std::string dir = std::string(QVRL_SHARED_DATA) + "/uk_na";
    if (!fs::exists(dir + "/uk_na_fig_NA3-NA8_contour_data.xlsx")) GTEST_SKIP() << "no shared copy";
    const auto fromCsv = ReadUkContours(dir);
    const auto fromXlsx = ReadUkContours(dir + "/uk_na_fig_NA3-NA8_contour_data.xlsx");
    ASSERT_EQ(fromCsv.size(), 6u);
    ASSERT_EQ(fromXlsx.size(), 6u);
    for (size_t i = 0; i < 6; ++i) {
        ASSERT_EQ(fromCsv[i].points.size(), fromXlsx[i].points.size()) << i;
        EXPECT_EQ(SampleUkFigure(fromCsv[i]).values, SampleUkFigure(fromXlsx[i]).values) << i;
    }
    const ContourSurface ce(fromCsv[4]);
    bool inside = false;
    EXPECT_NEAR(ce.Value(0.1, 10.0, inside), 2.8, 0.1);
    EXPECT_NEAR(ce.Value(10.0, 10.0, inside), 2.5, 0.1);
    EXPECT_NEAR(ce.Value(35.0, 10.0, inside), 2.4, 0.1);
}

}  // namespace
