// qvroofload db import uk-figures, as a user runs it: good grids land in the
// database exactly as written; a bad one names its place and changes nothing.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "e2e/CliRunner.h"
#include "store/modDAO.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

class CliDb : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        csv_ = test::FreshFolder("csv");
        const fs::path dbDir = test::FreshFolder("db");
        db_ = (dbDir / "qvrl.mdb").string();
        fs::copy_file(ProgramFolder() + "/qvrl.mdb", db_);
        // Six grids that differ, so that a mix-up of files shows.
        for (int n = 3; n <= 8; ++n)
            Write(n, "dist,2,5,10\n0.1," + std::to_string(n) + ".25,1.5,2\n1,1.125,1.25,1.375\r\n100,0.5,0.75,1e-1\n");
    }

    void Write(int n, const std::string& text) {
        test::WriteFile(csv_ / ("en_bs_fig" + std::to_string(n) + ".csv"), text);
    }

    test::CliResult Import() {
        return test::RunCli("db import uk-figures '" + csv_.string() + "' --db '" + db_ + "'", true);
    }

    fs::path csv_;
    std::string db_;
};

std::vector<std::vector<double>> Rows(const std::string& db, const std::string& table) {
    auto d = DBEngine::OpenDatabase(db, {}, true);
    auto rs = d->OpenRecordset("SELECT * FROM " + table + " ORDER BY dist", dao::dbOpenSnapshot);
    std::vector<std::vector<double>> r;
    while (!rs->EOF_()) {
        std::vector<double> row;
        for (Field& f : rs->Fields()) row.push_back(f.Value().toDouble());
        r.push_back(row);
        rs->MoveNext();
    }
    return r;
}

std::vector<std::string> Columns(const std::string& db, const std::string& table) {
    auto d = DBEngine::OpenDatabase(db, {}, true);
    std::vector<std::string> names;
    for (const Field& f : d->TableDefs().Item(table).Fields()) names.push_back(f.Name());
    return names;
}

TEST_F(CliDb, GoodGridsLandAsWritten) {
    const auto r = Import();
    ASSERT_EQ(r.status, 0) << r.out;
    for (int n = 3; n <= 8; ++n) {
        const std::string table = "en_bs_fig" + std::to_string(n);
        EXPECT_NE(r.out.find("  " + table + ": 3 rows (dist 0.1 .. 100 km), 3 heights (2 .. 10 m)"), std::string::npos)
            << r.out;
        EXPECT_NE(r.out.find("  qvrl.mdb " + table + ": 3 inserted, 0 updated, 0 unchanged, 0 replaced"),
                  std::string::npos)
            << r.out;
        EXPECT_EQ(Columns(db_, table), (std::vector<std::string>{"dist", "2", "5", "10"}));
        // Decimal text read the same way gives the same double.
        EXPECT_EQ(Rows(db_, table), (std::vector<std::vector<double>>{{0.1, n + 0.25, 1.5, 2.0},
                                                                       {1.0, 1.125, 1.25, 1.375},
                                                                       {100.0, 0.5, 0.75, 0.1}}));
    }
}

TEST_F(CliDb, AnImportReplacesTheTablesWithTheirNewHeights) {
    ASSERT_EQ(Import().status, 0);
    Write(7, "dist,2,200\n0.1,1,2\n");
    const auto r = Import();
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_NE(r.out.find("qvrl.mdb en_bs_fig7: 1 inserted, 0 updated, 0 unchanged, 3 replaced"), std::string::npos)
        << r.out;
    EXPECT_EQ(Columns(db_, "en_bs_fig7"), (std::vector<std::string>{"dist", "2", "200"}));
    EXPECT_EQ(Rows(db_, "en_bs_fig7"), (std::vector<std::vector<double>>{{0.1, 1.0, 2.0}}));
    EXPECT_EQ(Rows(db_, "en_bs_fig8").size(), 3u);
}

TEST_F(CliDb, BadInputNamesItsPlaceAndChangesNothing) {
    struct Case {
        int figure;
        std::string text;
        std::string message;
    };
    const std::vector<Case> cases = {
        {5, "dist,2,10,5\n0.1,1,2,3\n", "en_bs_fig5.csv:1: column 4: height 5 m does not rise above 10 m in column 3"},
        {5, "dist,2,2\n0.1,1,2\n", "en_bs_fig5.csv:1: column 3: height 2 m does not rise above 2 m"},
        {4, "dist,2,5\n0.1,1,abc\n", "en_bs_fig4.csv:2: column 3 (5 m): 'abc' is not a number"},
        {4, "dist,2,5\n0.1,1,\n", "en_bs_fig4.csv:2: column 3 (5 m): '' is not a number"},
        {4, "dist,2,5\n0.1,1,1,5\n", "en_bs_fig4.csv:2: 4 cells, but the heading has 3"},  // a decimal comma
        {4, "dist,2,5\n0.1,1,nan\n", "'nan' is not a number"},
        {4, "dist,2,5\n0.1,1,1e999\n", "'1e999' is not a number"},
        {3, "dist,2,5\n1,1,1\n0.5,1,1\n", "en_bs_fig3.csv:3: column 1: the distance 0.5 km does not rise"},
        {3, "dist,2,5\n1,1,1\n1,1,1\n", "en_bs_fig3.csv:3: column 1: the distance 1 km does not rise"},
        {3, "dist,2,5\n-1,1,1\n", "en_bs_fig3.csv:2: column 1: the distance -1 is negative"},
        {6, "dist,2,5\n0.1,1\n", "en_bs_fig6.csv:2: 2 cells, but the heading has 3"},
        {6, "km,2,5\n0.1,1,1\n", "en_bs_fig6.csv:1: column 1: the first heading must be 'dist'"},
        {6, "dist,2,x5\n0.1,1,1\n", "en_bs_fig6.csv:1: column 3: the heading 'x5' is not a height"},
        {6, "dist\n0.1\n", "en_bs_fig6.csv:1: no height columns"},
        {8, "dist,2,5\n", "en_bs_fig8.csv: no rows of values"},
        {8, "", "en_bs_fig8.csv: empty"},
    };
    ASSERT_EQ(Import().status, 0);
    const std::string before = test::ReadFile(db_);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const fs::path file = csv_ / ("en_bs_fig" + std::to_string(c.figure) + ".csv");
        const std::string good = test::ReadFile(file);
        Write(c.figure, c.text);
        const auto r = Import();
        EXPECT_NE(r.status, 0);
        EXPECT_NE(r.out.find(c.message), std::string::npos) << r.out;
        EXPECT_NE(r.out.find("Nothing was loaded."), std::string::npos) << r.out;
        EXPECT_EQ(test::ReadFile(db_), before);
        Write(c.figure, good);
    }
}

TEST_F(CliDb, MissingFileOrDatabaseChangesNothing) {
    fs::remove(csv_ / "en_bs_fig6.csv");
    const std::string before = test::ReadFile(db_);
    auto r = Import();
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.out.find("en_bs_fig6.csv: missing or cannot be read"), std::string::npos) << r.out;
    EXPECT_EQ(test::ReadFile(db_), before);

    r = test::RunCli("db import uk-figures '" + (csv_ / "nofolder").string() + "' --db '" + db_ + "'", true);
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.out.find("no such folder"), std::string::npos) << r.out;

    Write(6, "dist,2\n1,1\n");
    const std::string absent = (fs::path(db_).parent_path() / "absent.mdb").string();
    r = test::RunCli("db import uk-figures '" + csv_.string() + "' --db '" + absent + "'", true);
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.out.find("no such database"), std::string::npos) << r.out;
    EXPECT_FALSE(fs::exists(absent));
}

TEST_F(CliDb, ADatabaseInUseIsLeftAlone) {
    const std::string before = test::ReadFile(db_);
    auto holder = DBEngine::OpenDatabase(db_, true, false);  // another writer holds it
    const auto r = Import();
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.out.find("error 3045"), std::string::npos) << r.out;
    holder.reset();
    EXPECT_EQ(test::ReadFile(db_), before);
}

// Without --db the user's own copy is loaded: the shipped file is derived
// from data/sql and replaced by every build, so it must stay as it was.
TEST_F(CliDb, WithoutDbTheUsersCopyIsLoadedAndTheShippedFileKept) {
    setenv("QVRL_PROGRAM_FOLDER", fs::path(db_).parent_path().c_str(), 1);
    const std::string shipped = test::ReadFile(db_);
    const std::string own = (userFolder() / "qvrl.mdb").string();
    const auto r = test::RunCli("db import uk-figures '" + csv_.string() + "'", true);
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_NE(r.out.find(" into " + own), std::string::npos) << r.out;
    EXPECT_EQ(test::ReadFile(db_), shipped);
    EXPECT_EQ(Rows(own, "en_bs_fig3").size(), 3u);
    EXPECT_FALSE(Columns(own, "cpe").empty());  // the copy keeps the shipped tables
}

}  // namespace
