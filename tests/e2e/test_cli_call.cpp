#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "TestEnv.h"
#include "e2e/CliRunner.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class CliCall : public test::IsolatedTest {};

TEST_F(CliCall, OneCallPrintsItsResult) {
    struct {
        const char* args;
        const char* expected;
        int status;
    } cases[] = {
        {"call CWindSnow.SnowMue2 45", R"({"result":1.6})", 0},
        {"call CWindSnow.WindPressure_DIN1055_4_1986 8.0000001", R"({"result":0.8})", 0},
        {"call cwindsnow.snowmue1 -1", R"({"result":0.0})", 0},
        {"call CWindSnow.StandardSnowLoad_DIN1055_5_1975 4 900.1", R"({"result":5.50085})", 0},
        {"call CWindSnow.SnowBagMue2 100 0", R"({"error":{"number":11,"description":"Division by zero"}})", 1},
        {"call CWindSnow.SnowBag_EN_1991_1_3 53 1 4 0 0 0",
         R"({"result":null,"out":{"mue1":5.0,"mue2":5.0,"LsInM":20.0}})", 0},
        {"call CWindSnow.SnowZoneNames1975 [] []",
         R"({"result":null,"out":{"sName":["","I","II","III","IV"],"Index":[0,1,2,3,4]}})", 0},
        {"call CWindSnow.SnowMue1 '\"x\"'", R"({"error":{"number":13,"description":"Type mismatch"}})", 1},
        {"call CNothing.Foo", R"({"error":{"number":91,"description":"unknown class 'CNothing'"}})", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args);
        const auto r = test::RunCli(c.args);
        EXPECT_EQ(r.status, c.status);
        EXPECT_EQ(r.out, std::string(c.expected) + "\n");
    }
}

TEST_F(CliCall, DoublesRoundTrip) {
    const auto r = test::RunCli("call CWindSnow.WindPressure_DIN1055_4_2005 2 2 4 0");
    ASSERT_EQ(r.status, 0);
    const double v = json::parse(r.out)["result"].get<double>();
    // the printed text reads back to the very same double
    EXPECT_EQ(v, 2.1 * 0.39 * std::pow(4.0 / 10.0, 0.24));
}

TEST_F(CliCall, JsonLinesAnswerEveryLineInOrder) {
    std::string input;
    const int n = 2000;
    for (int i = 0; i < n; ++i) input += R"({"call":"CWindSnow.WindPressure_DIN1055_4_1986","args":[)" + std::to_string(i % 120) + "]}\n";
    input += "not json\n";
    input += R"({"call":"CWindSnow.SnowBagMue2","args":[50,0]})" "\n";
    input += R"({"call":5})" "\n";
    input += R"({"call":"CWindSnow.SnowMue1","args":{"Alpha":3}})" "\n";
    input += R"({"call":"CWindSnow.SnowMue1","args":[{"a":1}]})" "\n";
    input += R"({"call":"CWindSnow"})" "\n";
    input += "\n";
    input += R"({"call":"CWindSnow.SnowMue1","args":[45]})" "\n";
    const auto r = test::RunCli("call --jsonl", false, input);
    ASSERT_EQ(r.status, 0);
    std::istringstream lines(r.out);
    std::string line;
    std::vector<json> answers;
    while (std::getline(lines, line)) answers.push_back(json::parse(line));
    ASSERT_EQ(answers.size(), static_cast<size_t>(n + 7));
    EXPECT_EQ(answers[8]["result"], 0.5);
    EXPECT_EQ(answers[9]["result"], 0.8);
    EXPECT_EQ(answers[100]["result"], 1.1);
    EXPECT_EQ(answers[0]["result"], 0.0);
    EXPECT_EQ(answers[n]["error"]["number"], 5);
    EXPECT_EQ(answers[n + 1]["error"]["number"], 11);
    EXPECT_EQ(answers[n + 2]["error"]["number"], 5);
    EXPECT_EQ(answers[n + 3]["error"]["number"], 5);
    EXPECT_EQ(answers[n + 4]["error"]["number"], 13);
    EXPECT_EQ(answers[n + 5]["error"]["number"], 5);
    EXPECT_EQ(answers[n + 6]["result"], 0.4);
}

TEST_F(CliCall, ListShowsSignatures) {
    const auto r = test::RunCli("call --list");
    ASSERT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("SnowBag_EN_1991_1_3(CtrlNA As Integer, sk As Double, hInM As Double, ByRef mue1 As Double, "
                         "ByRef mue2 As Double, ByRef LsInM As Double) As Variant"),
              std::string::npos);
}

}  // namespace
