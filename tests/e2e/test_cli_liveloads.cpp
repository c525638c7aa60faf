// qvroofload liveloads as a user runs it: the shipped catalogue, one
// standard, a database of one's own with a no-sum code, and bad input.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "TestEnv.h"
#include "e2e/CliRunner.h"
#include "store/modDAO.h"
#include "support/modLowLevel.h"

using namespace qvrl;
using nlohmann::json;
namespace fs = std::filesystem;

namespace {

class CliLiveLoads : public test::IsolatedTest {};

TEST_F(CliLiveLoads, JsonListsEachStandardWithBothKinds) {
    const auto r = test::RunCli("liveloads --json");
    ASSERT_EQ(r.status, 0) << r.out;
    const json j = json::parse(r.out);
    ASSERT_EQ(j["standards"].size(), 3u);
    const json& din = j["standards"][0];
    EXPECT_EQ(din["Norm"], 3);
    EXPECT_EQ(din["NormBez"], "DIN 1055-3:2006-03");  // the fixed string's text, no padding
    EXPECT_EQ(din["sumsAdditionalLoad"], true);
    EXPECT_EQ(din["basic"][0]["Zeile"], "A1");
    EXPECT_EQ(din["basic"][1]["Zeile"], "A2");
    EXPECT_EQ(din["basic"][1]["Wert2"].get<double>(), 0.0);
    EXPECT_EQ(din["additional"][1]["Wert"].get<double>(), 1.2);
    EXPECT_EQ(j["standards"][1]["Norm"], 50);
    EXPECT_EQ(j["standards"][1]["NormBez"], "DIN EN 1991-1-1/NA:2010-12");
    EXPECT_EQ(j["standards"][2]["Norm"], 54);
}

TEST_F(CliLiveLoads, OneStandardAsText) {
    const auto r = test::RunCli("liveloads --norm 54");
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_NE(r.out.find("EN 1991-1-1:2002 (Norm 54)\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("      H        0.4     1  "), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("      TW1      0.5     -  "), std::string::npos) << r.out;
    // The parking areas stand between storage and roofs, under their own heading.
    EXPECT_NE(r.out.find("      E1       7.5     7  Lagerflächen\n    F Verkehrs"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("      G          5    90  "), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find("Norm 3)"), std::string::npos);
    EXPECT_EQ(r.out.find("Norm 50)"), std::string::npos);
}

TEST_F(CliLiveLoads, OwnDatabaseMarksTheNoSumCode) {
    const fs::path db = test::FreshFolder("db") / "qvrl.mdb";
    fs::copy_file(fs::path(ProgramFolder()) / "qvrl.mdb", db);
    {
        auto d = DBEngine::OpenDatabase(db.string(), Variant(), Variant(false));
        auto rs = d->OpenRecordset("liveload", dao::dbOpenDynaset);
        rs->AddNew();
        rs->Fields("Norm").Value(Variant(int16_t{78}));
        rs->Fields("NormBez").Value(Variant("Katalog 78"));
        rs->Fields("Art").Value(Variant(int16_t{1}));
        rs->Fields("Zeile").Value(Variant("1"));
        rs->Fields("Kategorie").Value(Variant("Zuschlag"));
        rs->Fields("Kurztext").Value(Variant("kurz"));
        rs->Fields("Wert").Value(Variant(0.5));
        rs->Update();
    }
    const auto j = test::RunCli("liveloads --json --norm 78 --db '" + db.string() + "'");
    ASSERT_EQ(j.status, 0) << j.out;
    const json s = json::parse(j.out)["standards"];
    ASSERT_EQ(s.size(), 1u);
    EXPECT_EQ(s[0]["sumsAdditionalLoad"], false);
    EXPECT_EQ(s[0]["basic"].size(), 0u);
    EXPECT_EQ(s[0]["additional"][0]["Wert"].get<double>(), 0.5);
    const auto t = test::RunCli("liveloads --db '" + db.string() + "'");
    ASSERT_EQ(t.status, 0);
    EXPECT_NE(t.out.find("Katalog 78 (Norm 78): additional load not added to the basic load\n"), std::string::npos)
        << t.out;
    EXPECT_NE(t.out.find("DIN 1055-3:2006-03 (Norm 3)\n"), std::string::npos);
}

TEST_F(CliLiveLoads, BadInputAndEmptyAnswers) {
    struct Case {
        const char* args;
        int status;
        const char* says;
    };
    const Case cases[] = {
        {"liveloads --norm 31", 2, "--norm 31 is no standard of the catalogue"},
        {"liveloads --norm x", 2, "--norm"},
        {"liveloads --db /nonexistent/qvrl.mdb", 2, "no such database"},
        // Known to the catalogue, but no row shipped: an empty list, not an error.
        {"liveloads --norm 1 --json", 0, "holds no rows of Norm 1"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        const auto r = test::RunCli(c.args, true);
        EXPECT_EQ(r.status, c.status);
        EXPECT_NE(r.out.find(c.says), std::string::npos) << r.out;
    }
}

}  // namespace
