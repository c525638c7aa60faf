// qvroofload town / towns as a user runs them, on a town table of the test's own.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "e2e/BadStoreFiles.h"
#include "e2e/CliRunner.h"
#include "location/modAGSMdb.h"
#include "location/test_modAGSMdb_fixture.h"
#include "support/modLowLevel.h"

using namespace qvrl;

namespace {

class CliTown : public test::TownDbTest {
protected:
    void SetUp() override {
        TownDbTest::SetUp();
        AddTown(Town(1, "09162000", "München", "80331", "1", "1a", "München, Landeshauptstadt", "Oberbayern", "Bayern"));
        AddTown(Town(2, "09184148", "Unterhaching", "82008", "1", "1a", "München", "Oberbayern", "Bayern"));
        AddTown(Town(3, "05315000", "Köln", "50667", "1", "", "Köln", "Köln", "Nordrhein-Westfalen"));
    }
};

TEST_F(CliTown, OneTownAsTextAndJson) {
    auto r = test::RunCli("town 09162000");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("Municipality  München\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("County        62 München, Landeshauptstadt\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("State         09 Bayern (BY)\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Snow zone     1a\n"), std::string::npos) << r.out;

    r = test::RunCli("town 05315000 --json");
    ASSERT_EQ(r.status, 0);
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["Gemeinde"], "Köln [2]");
    EXPECT_EQ(j["PLZ"], "50667");
    EXPECT_EQ(j["BL_ID"], 5);
    EXPECT_EQ(j["Modified"], 0);
    EXPECT_FALSE(j.contains("sk"));
}

TEST_F(CliTown, BadKeysAndUnknownKeys) {
    struct Case {
        const char* args;
        int status;
        const char* message;
    };
    const Case cases[] = {
        {"town 0916x000", 2, "the key must be an official municipality key of digits"},
        {"town ''", 2, "the key must be an official municipality key of digits"},
        {"town 09162001", 1, "no municipality has the key 09162001"},
        {"town 09162000 --land 51", 1, "no municipality has the key 09162000 in country 51"},
        {"town 09162000 --land 49", 2, "--land"},
        {"towns --county 62", 2, "--region and --county need --state"},
        {"towns --name \"O'Brien\"", 2, "cannot hold a quote"},
        {"towns --state 0", 2, "--state"},
        {"town", 2, "AGS is required"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        const auto r = test::RunCli(c.args, true);
        EXPECT_EQ(r.status, c.status) << r.out;
        EXPECT_NE(r.out.find(c.message), std::string::npos) << r.out;
    }
    // An empty table says how to fill it.
    const auto r = test::RunCli("town 40101 --land 51", true);
    EXPECT_NE(r.out.find("table slzwlz1 is empty"), std::string::npos) << r.out;
}

TEST_F(CliTown, ListsByFilters) {
    auto r = test::RunCli("towns --state 9 --region 1 --county 62");
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_NE(r.out.find("09162000  80331  1   1a  München, Landeshauptstadt   München\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\n1 municipality\n"), std::string::npos) << r.out;

    // The postcode widens until something is found.
    r = test::RunCli("towns --plz 89999 --json");
    ASSERT_EQ(r.status, 0);
    auto j = nlohmann::json::parse(r.out);
    ASSERT_EQ(j.size(), 2u);
    EXPECT_EQ(j[0]["Gemeinde"], "München");
    EXPECT_EQ(j[1]["Gemeinde"], "Unterhaching");

    r = test::RunCli("towns --name unter --json");
    j = nlohmann::json::parse(r.out);
    ASSERT_EQ(j.size(), 1u);
    EXPECT_EQ(j[0]["AGS"], "09184148");

    // The user's correction shows.
    TownRec t;
    FindTownByAGS("05315000", t);
    t.SZ = "1";
    t.Gemeinde = "Köln";
    SaveUserGem(t);
    r = test::RunCli("towns --state 5 --json");
    j = nlohmann::json::parse(r.out);
    ASSERT_EQ(j.size(), 1u);
    EXPECT_EQ(j[0]["Gemeinde"], "Köln (modif.)");
    EXPECT_EQ(j[0]["Modified"], 1);

    // The Eurocode table of a country, with its figures.
    Insert("qvrl.mdb", "slzwlz1",
           {{"ID", Variant(1)}, {"Land_ID", Variant(51)}, {"AGS", Variant("60101")}, {"BL_ID", Variant("6")},
            {"Reg_ID", Variant("01")}, {"LK_ID", Variant("01")}, {"Gemeinde", Variant("Graz")},
            {"PLZ", Variant("8010")}, {"SZ", Variant("2")}, {"sk", Variant(1.65)}, {"qb", Variant(0.3)},
            {"hNN", Variant(353.0)}});
    r = test::RunCli("town 60101 --land 51 --json");
    ASSERT_EQ(r.status, 0) << r.out;
    j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["Gemeinde"], "Graz");
    EXPECT_EQ(j["sk"], 1.65);
    EXPECT_EQ(j["Land_ID"], 51);
    r = test::RunCli("towns --land 51 --state 6");
    EXPECT_NE(r.out.find("60101     8010       2   1.65   0.3    353                                Graz\n"),
              std::string::npos)
        << r.out;

    r = test::RunCli("towns --state 16");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("0 municipalities\n"), std::string::npos) << r.out;
}

// --db points town, towns and site at another qvrl.mdb; without it they read
// the one of the program folder, here left without towns.
TEST_F(CliTown, ADbFileIsTheOneLookedIn) {
    namespace fs = std::filesystem;
    const std::string other = (test::FreshFolder("other") / "towns.mdb").string();
    fs::rename(program_ / "qvrl.mdb", other);
    unsetenv("QVRL_PROGRAM_FOLDER");
    fs::copy_file(ProgramFolder() + "/qvrl.mdb", program_ / "qvrl.mdb");  // the shipped one, without towns
    setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
    const std::string db = " --db '" + other + "'";

    EXPECT_EQ(test::RunCli("town 09162000").status, 1);
    auto r = test::RunCli("town 09162000 --json" + db);
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(nlohmann::json::parse(r.out)["Gemeinde"], "München");
    r = test::RunCli("towns --plz 82008 --json" + db);
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(nlohmann::json::parse(r.out)[0]["AGS"], "09184148");
    const std::string site = "site --norm 3 --town 09162000 --category 2 --altitude 500 --height 10 --roof flat --json";
    EXPECT_EQ(test::RunCli(site).status, 2);
    r = test::RunCli(site + db);
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(nlohmann::json::parse(r.out)["input"]["town"], "München");

    for (const char* cmd : {"town 09162000", "towns", "site --norm 3"}) {
        r = test::RunCli(std::string(cmd) + " --db '" + other + ".absent'", true);
        EXPECT_EQ(r.status, 2) << cmd;
        EXPECT_NE(r.out.find("--db: " + other + ".absent: no such database"), std::string::npos) << r.out;
    }
}

bool Has(const std::string& text, const std::string& what) { return text.find(what) != std::string::npos; }

const std::string kSiteByTown = "site --norm 3 --town 09162000 --category 2 --altitude 500 --height 10 --roof flat";

// A town file that cannot be opened is the store's numbered error naming the
// file, never "no municipality" or an empty list with status 0.
TEST_F(CliTown, ATownFileThatCannotBeOpenedIsAnErrorNamingIt) {
    namespace fs = std::filesystem;
    const std::string other = (test::FreshFolder("other") / "towns.mdb").string();
    const std::string shipped = (program_ / "qvrl.mdb").string();
    for (const test::BadFile& b : test::kBadFiles) {
        // In the program folder, and (a file that exists) given with --db.
        std::vector<std::pair<std::string, std::string>> places = {{shipped, ""}};
        if (b.bytes) places.emplace_back(other, " --db '" + other + "'");
        for (const auto& [file, db] : places) {
            test::OwnTempFolder tmp(std::string(b.what) + (db.empty() ? "" : "-db"));
            test::PlaceBadFile(b, file);
            for (const std::string& cmd : {std::string("town 09162000"), std::string("towns --state 9"), kSiteByTown}) {
                SCOPED_TRACE(std::string(b.what) + ": " + cmd + db);
                auto r = test::RunCli(cmd + db, true);
                EXPECT_EQ(r.status, 1);
                EXPECT_TRUE(Has(r.out, "error " + std::to_string(b.number) + ": " + file)) << r.out;
                EXPECT_FALSE(Has(r.out, "no municipality")) << r.out;
                r = test::RunCli(cmd + db + " --json");
                EXPECT_EQ(r.status, 1);
                const auto j = nlohmann::json::parse(r.out);
                EXPECT_EQ(j["error"]["number"], b.number) << r.out;
                EXPECT_EQ(j["error"]["file"], file);
            }
        }
    }
}

// Corrections that cannot be opened leave the shipped rows standing; they are
// printed with a warning and status 1, so that no script files them as corrected.
TEST_F(CliTown, CorrectionsThatCannotBeOpenedHideNoShippedRow) {
    const std::string corrections = (userFolder() / kUserTownFile).string();
    for (const test::BadFile& b : test::kBadFiles) {
        test::OwnTempFolder tmp(b.what);
        test::PlaceBadFile(b, corrections);
        const int status = b.bytes ? 1 : 0;  // no corrections at all is no fault
        const std::string warning = "were left out, the ";
        const std::string error = "error " + std::to_string(b.number) + ": " + corrections;
        SCOPED_TRACE(b.what);

        auto r = test::RunCli("town 09162000 --json");
        EXPECT_EQ(r.status, status);
        EXPECT_EQ(nlohmann::json::parse(r.out)["Gemeinde"], "München") << r.out;
        r = test::RunCli("towns --state 9 --json");
        EXPECT_EQ(r.status, status);
        EXPECT_EQ(nlohmann::json::parse(r.out).size(), 2u) << r.out;
        r = test::RunCli(kSiteByTown + " --json");
        EXPECT_EQ(r.status, status);
        EXPECT_EQ(nlohmann::json::parse(r.out)["input"]["town"], "München") << r.out;

        for (const std::string& cmd : {std::string("town 09162000"), std::string("towns --state 9"), kSiteByTown}) {
            SCOPED_TRACE(cmd);
            r = test::RunCli(cmd, true);
            EXPECT_EQ(r.status, status);
            EXPECT_TRUE(Has(r.out, "München")) << r.out;
            EXPECT_EQ(Has(r.out, warning), b.bytes.has_value()) << r.out;
            EXPECT_EQ(Has(r.out, error), b.bytes.has_value()) << r.out;
        }
        // A key the shipped rows do not hold stays "not found", with the warning.
        r = test::RunCli("town 09162001", true);
        EXPECT_EQ(r.status, 1);
        EXPECT_TRUE(Has(r.out, "no municipality has the key 09162001")) << r.out;
        EXPECT_EQ(Has(r.out, error), b.bytes.has_value()) << r.out;
    }
}

}  // namespace
