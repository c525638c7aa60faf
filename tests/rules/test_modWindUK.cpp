#include <gtest/gtest.h>

#include <filesystem>

#include "TestEnv.h"
#include "e2e/CliRunner.h"
#include "rules/modMath.h"
#include "rules/modWindEN.h"
#include "rules/modWindUK.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

// A program folder whose qvrl.mdb holds small grids of our own: figure n has
// the value n + row + column/10 at (row, column), so every cell is distinct.
class WindUK : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        program_ = test::FreshFolder("program");
        const fs::path csv = test::FreshFolder("csv");
        fs::copy_file(ProgramFolder() + "/qvrl.mdb", program_ / "qvrl.mdb");
        for (int n = 3; n <= 8; ++n) {
            std::string text = "dist,2,10,50\n";
            const char* dists[] = {"0.1", "1", "10"};
            for (int r = 0; r < 3; ++r) {
                text += dists[r];
                for (int c = 0; c < 3; ++c) text += "," + DoubleToText(Cell(n, r, c));
                text += "\n";
            }
            test::WriteFile(csv / ("en_bs_fig" + std::to_string(n) + ".csv"), text);
        }
        const auto r =
            test::RunCli("db import uk-figures '" + csv.string() + "' --db '" + (program_ / "qvrl.mdb").string() + "'");
        ASSERT_EQ(r.status, 0) << r.out;
        setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
    }
    static double Cell(int n, int r, int c) { return n + r + c / 10.0; }
    fs::path program_;
};

TEST_F(WindUK, HeightsBetweenAndOutsideTheColumns) {
    struct {
        double z;
        double expected;
    } cases[] = {
        {1.0, Cell(3, 1, 0)},    // below the first column: that column alone
        {2.0, Cell(3, 1, 0)},
        {10.0, Cell(3, 1, 1)},   // on a column
        {6.0, Interpolate(2.0, Cell(3, 1, 0), 10.0, Cell(3, 1, 1), 6.0)},
        {30.0, Interpolate(10.0, Cell(3, 1, 1), 50.0, Cell(3, 1, 2), 30.0)},
        {80.0, Cell(3, 1, 2)},   // above the last: no extrapolation
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.z);
        EXPECT_EQ(FigureValue("en_bs_fig3", c.z, 1.0), c.expected);
    }
}

TEST_F(WindUK, DistancesBelowOnAndBetweenTheRows) {
    struct {
        double dist;
        double expected;
    } cases[] = {
        {0.01, Cell(4, 0, 1)},  // below the first row: the row above alone
        {0.1, Cell(4, 0, 1)},
        {1.0, Cell(4, 1, 1)},   // on a row: both statements find it
        {5.0, Interpolate(1.0, Cell(4, 1, 1), 10.0, Cell(4, 2, 1), 5.0)},
        {0.55, Interpolate(0.1, Cell(4, 0, 1), 1.0, Cell(4, 1, 1), 0.55)},
        {250.0, Cell(4, 2, 1)},  // above the last row
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dist);
        EXPECT_EQ(FigureValue("en_bs_fig4", 10.0, c.dist), c.expected);
    }
    // both directions at once
    const double lo = Interpolate(2.0, Cell(5, 1, 0), 10.0, Cell(5, 1, 1), 4.0);
    const double hi = Interpolate(2.0, Cell(5, 2, 0), 10.0, Cell(5, 2, 1), 4.0);
    EXPECT_EQ(FigureValue("en_bs_fig5", 4.0, 3.0), Interpolate(1.0, lo, 10.0, hi, 3.0));
}

TEST_F(WindUK, CategoriesChooseTheTables) {
    // Distances in m; category 0 stands 100 m from the shore.
    EXPECT_EQ(ExposureFactorUK(0, 10.0, 7000.0, 500.0), Cell(7, 0, 1));
    EXPECT_EQ(ExposureFactorUK(0, 10.0, 100.0, 0.0), ExposureFactorUK(0, 10.0, 9000.0, 0.0));
    EXPECT_EQ(RoughnessFactorUK(1, 10.0, 1000.0, 5000.0), Cell(3, 1, 1));
    EXPECT_EQ(TurbulenceUK(2, 10.0, 10000.0, 5000.0), Cell(5, 2, 1));
    EXPECT_EQ(ExposureFactorUK(3, 10.0, 1000.0, 10000.0), Cell(7, 1, 1) * Cell(8, 2, 1));
    EXPECT_EQ(TurbulenceUK(4, 50.0, 10000.0, 100.0), Cell(5, 2, 2) * Cell(6, 0, 2));
}

TEST_F(WindUK, PeakPressureForEveryCategory) {
    // The figures know no category: only 0 (at 100 m from the shore) and the
    // town categories 3 and 4 (with their correction) read differently.
    double q[5];
    for (int16_t cat = 0; cat <= 4; ++cat) {
        double town = 2000.0;
        q[cat] = WindPressure_EN_1991_1_4(53, cat, 10.0, 0.0, 25.0, 0.0, 0.0, 1.0, 1.0, 5000.0, town);
        EXPECT_GT(q[cat], 0.0) << cat;
    }
    EXPECT_NE(q[0], q[1]);
    EXPECT_EQ(q[1], q[2]);
    EXPECT_NE(q[2], q[3]);
    EXPECT_EQ(q[3], q[4]);
    // the town distance matters only to the town categories
    double t1 = 100.0, t2 = 9000.0;
    EXPECT_EQ(WindPressure_EN_1991_1_4(53, 2, 10.0, 0.0, 25.0, 0.0, 0.0, 1.0, 1.0, 5000.0, t1),
              WindPressure_EN_1991_1_4(53, 2, 10.0, 0.0, 25.0, 0.0, 0.0, 1.0, 1.0, 5000.0, t2));
    EXPECT_NE(WindPressure_EN_1991_1_4(53, 3, 10.0, 0.0, 25.0, 0.0, 0.0, 1.0, 1.0, 5000.0, t1),
              WindPressure_EN_1991_1_4(53, 3, 10.0, 0.0, 25.0, 0.0, 0.0, 1.0, 1.0, 5000.0, t2));
}

TEST_F(WindUK, MissingTableRaisesAndMissingDatabaseGivesZero) {
    EXPECT_THROW(FigureValue("en_bs_fig9", 10.0, 1.0), RuntimeError);
    ResetModuleState();
    setenv("QVRL_PROGRAM_FOLDER", (program_ / "nowhere").c_str(), 1);
    EXPECT_FALSE(OpenFigureDatabase());
    EXPECT_EQ(FigureValue("en_bs_fig3", 10.0, 1.0), 0.0);
}

TEST(WindUKShipped, EmptyTablesGiveZero) {
    // The shipped grids are empty until a user imports the published figures.
    unsetenv("QVRL_PROGRAM_FOLDER");
    ResetModuleState();
    EXPECT_EQ(FigureValue("en_bs_fig7", 10.0, 1.0), 0.0);
    EXPECT_EQ(ExposureFactorUK(3, 10.0, 1000.0, 100.0), 0.0);
    ResetModuleState();
}

}  // namespace
