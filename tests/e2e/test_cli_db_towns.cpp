// qvroofload db import gv100ad | zones | at-municipalities, as a user runs
// them: what each prints, where it writes by default, and that a bad file
// leaves the databases as they were.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "e2e/CliRunner.h"
#include "store/modDAO.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

std::string Fixture(const std::string& name) {
    return std::string(QVRL_SOURCE_DIR) + "/tests/maintenance/fixtures/" + name;
}

class CliDbTowns : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        dir_ = test::FreshFolder("program");
        for (const char* f : {"qvrl.mdb", "qvrlslz.mdb", "qvrlslz_dibt.mdb", "qvrlwlz.mdb", "qvrlwlz_dibt.mdb"})
            fs::copy_file(ProgramFolder() + "/" + f, dir_ / f);
        db_ = (dir_ / "qvrl.mdb").string();
    }

    test::CliResult Import(const std::string& what, const std::string& file, const std::string& more = {}) {
        return test::RunCli("db import " + what + " '" + file + "' --db '" + db_ + "'" + more, true);
    }

    int Count(const std::string& query) {
        auto db = DBEngine::OpenDatabase(db_, {}, true);
        auto rs = db->OpenRecordset(query, dao::dbOpenSnapshot);
        int n = 0;
        for (; !rs->EOF_(); rs->MoveNext()) ++n;
        return n;
    }

    fs::path dir_;
    std::string db_;
};

TEST_F(CliDbTowns, DirectoryImportSaysWhatItDidAndRerunsAsUnchanged) {
    const std::string head =
        "Loaded gv100ad_small.asc (Gebietsstand 30.11.2021): 6 states, 4 regions, 6 counties, 9 municipalities\n";
    const char* const tables[] = {"qvrl.mdb slzwlz", "qvrl.mdb slzwlz1 (Land_ID 50)",
                                  "qvrlslz.mdb slz", "qvrlslz_dibt.mdb slz",
                                  "qvrlwlz.mdb wlz", "qvrlwlz_dibt.mdb wlz"};
    std::string first = head, second = head;
    for (const char* t : tables) {
        first += std::string("  ") + t + ": 12 inserted, 0 updated, 0 unchanged, 0 not in the file\n";
        second += std::string("  ") + t + ": 0 inserted, 0 updated, 12 unchanged, 0 not in the file\n";
    }
    const auto r1 = Import("gv100ad", Fixture("gv100ad_small.asc"));
    EXPECT_EQ(r1.status, 0);
    EXPECT_EQ(r1.out, first);
    const auto r2 = Import("gv100ad", Fixture("gv100ad_small.asc"));
    EXPECT_EQ(r2.status, 0);
    EXPECT_EQ(r2.out, second);
}

TEST_F(CliDbTowns, ZonesAndAustrianListPrintTheirTallies) {
    ASSERT_EQ(Import("gv100ad", Fixture("gv100ad_small.asc")).status, 0);
    const auto z = Import("zones", Fixture("zones_small.csv"));
    EXPECT_EQ(z.status, 0);
    EXPECT_EQ(
        z.out,
        "Loaded zones_small.csv: 4 keys (2 of 2 digits, 0 of 3 digits, 1 of 5 digits, 1 of 8 digits) for Land_ID 50\n"
        "  qvrl.mdb slzwlz: 0 inserted, 7 updated, 0 unchanged, 5 covered by no key\n"
        "  qvrl.mdb slzwlz1 (Land_ID 50): 0 inserted, 7 updated, 0 unchanged, 5 covered by no key\n");
    const auto a = Import("at-municipalities", Fixture("gemliste_small.csv"));
    EXPECT_EQ(a.status, 0);
    EXPECT_EQ(a.out,
              "Loaded gemliste_small.csv: 5 municipalities\n"
              "  qvrl.mdb slzwlz1 (Land_ID 51): 5 inserted, 0 updated, 0 unchanged, 0 not in the file\n"
              "  8 further postcodes checked, not stored: a town row holds the one of its office\n");
    EXPECT_EQ(Count("SELECT * FROM slzwlz1 WHERE Land_ID = 51 AND PLZ = '3100'"), 1);
}

TEST_F(CliDbTowns, BadFilesNameTheirLinesAndLoadNothing) {
    ASSERT_EQ(Import("gv100ad", Fixture("gv100ad_small.asc")).status, 0);
    const fs::path bad = test::FreshFolder("in") / "zones.csv";
    test::WriteFile(bad, "AGS;WZ\n05;1\n053;2\n0533;3\n05334000;x\n12;123456789012\n");
    const auto r = Import("zones", bad.string());
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out,
              "qvroofload: zones.csv:4: key '0533' is not an AGS prefix of 2, 3, 5 or 8 digits\n"
              "qvroofload: zones.csv:6: WZ has 12 characters, at most 10 fit\n"
              "Nothing was loaded.\n");
    EXPECT_EQ(Count("SELECT * FROM slzwlz WHERE WZ = '1'"), 0);

    const auto land = Import("zones", Fixture("zones_small.csv"), " --land 52");
    EXPECT_NE(land.status, 0);
    EXPECT_EQ(Count("SELECT * FROM slzwlz WHERE WZ = '1'"), 0);

    const auto missing = Import("at-municipalities", (dir_ / "none.csv").string());
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "qvroofload: " + (dir_ / "none.csv").string() + ": no such file\nNothing was loaded.\n");
}

// Without --db every database the import writes is the user's own copy; the
// shipped files stay byte for byte, and the look-ups find the towns after.
TEST_F(CliDbTowns, WithoutDbTheUsersCopiesAreLoadedAndFound) {
    setenv("QVRL_PROGRAM_FOLDER", dir_.c_str(), 1);
    const char* const files[] = {"qvrl.mdb", "qvrlslz.mdb", "qvrlslz_dibt.mdb", "qvrlwlz.mdb", "qvrlwlz_dibt.mdb"};
    std::vector<std::string> shipped;
    for (const char* f : files) shipped.push_back(test::ReadFile(dir_ / f));
    auto r = test::RunCli("db import gv100ad '" + Fixture("gv100ad_small.asc") + "'", true);
    ASSERT_EQ(r.status, 0) << r.out;
    r = test::RunCli("db import at-municipalities '" + Fixture("gemliste_small.csv") + "'", true);
    ASSERT_EQ(r.status, 0) << r.out;
    for (size_t i = 0; i < std::size(files); ++i) {
        SCOPED_TRACE(files[i]);
        EXPECT_EQ(test::ReadFile(dir_ / files[i]), shipped[i]);
        EXPECT_TRUE(fs::exists(userFolder() / files[i]));
    }
    EXPECT_EQ(Count("SELECT * FROM slzwlz1 WHERE Land_ID = 51"), 0);
    r = test::RunCli("town 05315000 --json");
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_NE(r.out.find("\"AGS\""), std::string::npos) << r.out;
    r = test::RunCli("towns --plz 3100");
    EXPECT_EQ(r.status, 0) << r.out;
}

}  // namespace
