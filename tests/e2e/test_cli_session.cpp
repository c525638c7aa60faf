#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "TestEnv.h"
#include "e2e/CliRunner.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class CliSession : public test::IsolatedTest {};

TEST_F(CliSession, RunsAMemberAndReportsWhatItShowed) {
    const auto script = test::FreshFolder("s") / "script.json";
    test::WriteFile(script, R"J({"steps":[],"answers":[2]})J");
    const auto r = test::RunCli("session CRoofLoad.StandardSnowLoad_DIN1055_7_2005 2 300 --script '" +
                                script.string() + "'");
    ASSERT_EQ(r.status, 0) << r.out;
    const json j = json::parse(r.out);
    EXPECT_EQ(j["result"], 0.0);
    EXPECT_EQ(j["OnOk"], false);
    EXPECT_EQ(j["forms"], json::array());
    ASSERT_EQ(j["messages"].size(), 1u);
    EXPECT_EQ(j["messages"][0]["text"], "Funktion wird nicht mehr unterstützt");
    EXPECT_EQ(j["messages"][0]["flags"], 0);
    EXPECT_EQ(j["messages"][0]["title"], "StandardSnowLoad_DIN1055_7_2005 ");
    EXPECT_EQ(j["messages"][0]["answer"], 2);
    ASSERT_FALSE(j["trace"].empty());
    EXPECT_NE(j["trace"][0].get<std::string>().find("CROOFLOAD_INITIALIZE"), std::string::npos);
    EXPECT_FALSE(j.contains("files"));
}

TEST_F(CliSession, ScriptFromStandardInputAndDefaultAnswers) {
    const auto r = test::RunCli("session CRoofLoad.WindPressure_DIN1055_4_1986 --script - 0.5", false, "{}");
    ASSERT_EQ(r.status, 0) << r.out;
    const json j = json::parse(r.out);
    EXPECT_EQ(j["messages"][0]["answer"], 1);
}

TEST_F(CliSession, ErrorsOfTheScriptAndOfTheMember) {
    const auto dir = test::FreshFolder("s");
    test::WriteFile(dir / "left.json", R"J({"steps":[{"form":"frmRoofLoadEN","action":"ok"}]})J");
    test::WriteFile(dir / "bad.json", R"J({"steps":[{"form":"frmX"}]})J");
    test::WriteFile(dir / "broken.json", "{steps");
    test::WriteFile(dir / "answers.json", R"J({"answers":["yes"]})J");
    test::WriteFile(dir / "empty.json", "{}");
    struct {
        std::string args;
        int status;
        std::string expected;
    } cases[] = {
        {"CRoofLoad.WindPressure_DIN1055_4_1986 1 --script @left.json", 2,
         R"J({"error":{"step":1,"description":"step 1 (frmRoofLoadEN ok): frmRoofLoadEN is not open; the run has ended"}})J"},
        {"CRoofLoad.WindPressure_DIN1055_4_1986 1 --script @bad.json", 2,
         R"J({"error":{"description":"step 1: \"form\" and \"action\" are required"}})J"},
        {"CRoofLoad.WindPressure_DIN1055_4_1986 1 --script @broken.json", 2,
         R"J({"error":{"description":"the script is not a JSON object"}})J"},
        {"CRoofLoad.WindPressure_DIN1055_4_1986 1 --script @answers.json", 2,
         R"J({"error":{"description":"\"answers\" must hold message box answers (numbers)"}})J"},
        {"CRoofLoad.WindPressure_DIN1055_4_1986 1 --script @missing.json", 2,
         R"J({"error":{"description":"cannot read the script '@missing.json'"}})J"},
        // What is wrong with the request is bad input, as for `call`; what
        // the member raises is its own.
        {"CRoofLoad.NoSuch --script @empty.json", 2,
         R"J({"error":{"number":438,"description":"CRoofLoad has no member 'NoSuch'"}})J"},
        {"CNoSuch.Member --script @empty.json", 2,
         R"J({"error":{"number":429,"description":"no public class 'CNoSuch'"}})J"},
        {"CWindSnow.SnowMue2 --script @empty.json", 2,
         R"J({"error":{"number":450,"description":"CWindSnow.SnowMue2 takes 1 arguments, not 0"}})J"},
        {"CWindSnow.SnowMue1 '\"x\"' --script @empty.json", 1,
         R"J({"error":{"number":13,"description":"Type mismatch"}})J"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args);
        auto at = [&](std::string t) {
            for (size_t p; (p = t.find('@')) != std::string::npos;) t.replace(p, 1, dir.string() + "/");
            return t;
        };
        const auto r = test::RunCli("session " + at(c.args));
        EXPECT_EQ(r.status, c.status) << r.out;
        if (!c.expected.empty()) {
            EXPECT_EQ(r.out, at(c.expected) + "\n");
        }
    }
    // Without a script the command refuses to run at all.
    EXPECT_NE(test::RunCli("session CWindSnow.SnowMue2 45").status, 0);
}

}  // namespace
