// The table writer of the UK figures as another importer uses it: what it
// writes is what the figure look-up reads, and a grid it cannot take changes
// nothing.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "maintenance/UkFigureImport.h"
#include "rules/modWindUK.h"
#include "store/StoreFiles.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

class UkFigureWriter : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        db_ = (test::FreshFolder("db") / "qvrl.mdb").string();
        fs::copy_file(ProgramFolder() + "/qvrl.mdb", db_);
    }

    static UkFigureGrid Grid(const std::string& table) {
        UkFigureGrid g;
        g.table = table;
        g.heightNames = {"2", "10"};
        g.heights = {2.0, 10.0};
        g.rows = {{0.1, 1.0, 2.0}, {10.0, 3.0, 5.0}};
        return g;
    }

    std::string db_;
};

TEST_F(UkFigureWriter, WhatItWritesIsWhatTheFigureLookUpReads) {
    const std::vector<TableTally> t = WriteUkFigureGrids({Grid("en_bs_fig7")}, db_);
    ASSERT_EQ(t.size(), 1u);
    EXPECT_EQ(t[0], (TableTally{"qvrl.mdb", "en_bs_fig7", 2, 0, 0, 0}));
    SetStoreFileOverride("qvrl.mdb", db_);
    // A row and a column hit exactly; between rows and columns the two-way
    // interpolation of the figures, whose order of operations is fixed.
    EXPECT_EQ(FigureValue("en_bs_fig7", 2.0, 0.1), 1.0);
    EXPECT_EQ(FigureValue("en_bs_fig7", 10.0, 10.0), 5.0);
    EXPECT_EQ(FigureValue("en_bs_fig7", 6.0, 0.1), 1.5);
    EXPECT_EQ(FigureValue("en_bs_fig7", 50.0, 99.0), 5.0);  // no extrapolation
}

TEST_F(UkFigureWriter, AGridItCannotTakeChangesNothing) {
    struct Case {
        const char* what;
        void (*spoil)(UkFigureGrid&);
        const char* fault;
    };
    const Case cases[] = {
        {"other table", [](UkFigureGrid& g) { g.table = "cpe"; }, "not a table of the UK figures"},
        {"no heights", [](UkFigureGrid& g) { g.heights.clear(), g.heightNames.clear(); }, "no height columns"},
        {"name and height differ", [](UkFigureGrid& g) { g.heights[1] = 11.0; }, "not a height in metres"},
        {"falling heights", [](UkFigureGrid& g) { g.heightNames = {"10", "2"}, g.heights = {10.0, 2.0}; },
         "do not rise"},
        {"no rows", [](UkFigureGrid& g) { g.rows.clear(); }, "no rows"},
        {"short row", [](UkFigureGrid& g) { g.rows[1].pop_back(); }, "wrong width"},
        {"NaN", [](UkFigureGrid& g) { g.rows[0][2] = std::nan(""); }, "no number"},
        {"same distance", [](UkFigureGrid& g) { g.rows[1][0] = 0.1; }, "must be 0 or more and rise"},
    };
    const std::string before = test::ReadFile(db_);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        UkFigureGrid bad = Grid("en_bs_fig4");
        c.spoil(bad);
        try {
            (void)WriteUkFigureGrids({Grid("en_bs_fig3"), bad}, db_);
            ADD_FAILURE() << "accepted";
        } catch (const TownInputError& e) {
            EXPECT_NE(std::string(e.what()).find(c.fault), std::string::npos) << e.what();
        }
        EXPECT_EQ(test::ReadFile(db_), before);
    }
    const std::string absent = (fs::path(db_).parent_path() / "absent.mdb").string();
    EXPECT_EQ(test::ErrorOf([&] { (void)WriteUkFigureGrids({Grid("en_bs_fig3")}, absent); }), 3024);
    EXPECT_FALSE(fs::exists(absent));
}

}  // namespace
