#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "TestEnv.h"
#include "e2e/CliRunner.h"
#include "location/test_modAGSMdb_fixture.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class CliCall : public test::IsolatedTest {
protected:
    // A file of the test's own, for inputs too large for a shell word.
    std::string Write(const std::string& name, const std::string& text) {
        const auto path = test::FreshFolder("in") / name;
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }
};

std::string Nested(size_t depth, const std::string& inner = "") {
    return std::string(depth, '[') + inner + std::string(depth, ']');
}

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
        // The call itself is wrong: status 2, still answered as JSON on standard output.
        {"call CNothing.Foo", R"({"error":{"number":91,"description":"unknown class 'CNothing'"}})", 2},
        {"call CWindSnow.Nothing", R"({"error":{"number":438,"description":"CWindSnow has no member 'Nothing'"}})", 2},
        {"call CWindSnow.SnowMue1 1 2",
         R"({"error":{"number":450,"description":"CWindSnow.SnowMue1 takes 1 arguments, not 2"}})", 2},
        {"call CWindSnow.SnowMue1 '{\"a\":1}'",
         R"({"error":{"number":13,"description":"argument 1: an argument cannot be an object"}})", 2},
        {"call CWindSnow. 1",
         R"({"error":{"number":5,"description":"the call must be Class.Member, not 'CWindSnow.'"}})", 2},
        {"call \"$(printf 'CWindSnow.Snow\\377Mue1')\" 1",
         R"({"error":{"number":5,"description":"the call is not valid UTF-8 text"}})", 2},
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

// A whole number no Basic type holds is error 6, never a wrapped or rounded
// value (18446744073709551166 once read as -450 m).
TEST_F(CliCall, WholeNumbersBeyondEveryBasicTypeAreOverflow) {
    const char* overflow[] = {"18446744073709551166", "9223372036854775808", "-9223372036854775809",
                              "9007199254740993",     "100000000000000000000", "[1,[18446744073709551615]]"};
    for (const char* n : overflow) {
        SCOPED_TRACE(n);
        const auto r = test::RunCli(std::string("call CWindSnow.StandardSnowLoad_DIN1055_7_2005 2 '") + n + "'");
        EXPECT_EQ(r.status, 2);
        EXPECT_EQ(json::parse(r.out)["error"]["number"], 6) << r.out;
        const std::string request = R"({"call":"CWindSnow.StandardSnowLoad_DIN1055_7_2005","args":[2,)";
        const auto line = test::RunCli("call --jsonl", false, request + n + "]}\n");
        EXPECT_EQ(line.status, 0);
        EXPECT_EQ(json::parse(line.out)["error"]["number"], 6) << line.out;
    }
    // Up to 2^53 a Double holds the number, and the member answers for it.
    const auto big = test::RunCli("call CWindSnow.StandardSnowLoad_DIN1055_7_2005 2 9007199254740992");
    EXPECT_EQ(big.status, 0) << big.out;
    const auto plain = test::RunCli("call CWindSnow.StandardSnowLoad_DIN1055_7_2005 2 9007199254740992.0");
    EXPECT_EQ(big.out, plain.out);
    // A Long still fits the Integer argument it is converted to, or is error 6 of the member.
    EXPECT_EQ(test::RunCli("call CWindSnow.WindReferencePressure_DIN1055_4_2005 2147483648").status, 1);
}

// Nesting is refused at 32 levels with the limit named, however deep the input.
TEST_F(CliCall, DeepListsAreRefusedAtTheLimit) {
    const std::string deep = Nested(40000);
    const auto word = test::RunCli("call CWindSnow.SnowZoneNames2005 \"$(cat '" + Write("deep", deep) + "')\" []");
    EXPECT_EQ(word.status, 2);
    const auto wordError = json::parse(word.out)["error"];
    EXPECT_EQ(wordError["number"], 5);
    EXPECT_NE(wordError["description"].get<std::string>().find("32 is the limit"), std::string::npos) << word.out;

    const std::string lines = R"({"call":"CWindSnow.SnowZoneNames2005","args":[)" + deep + ",[]]}\n" +
                              R"({"call":"CWindSnow.SnowZoneNames2005","args":[)" + Nested(33) + ",[]]}\n" +
                              R"({"call":"CWindSnow.SnowZoneNames2005","args":[)" + Nested(32) + ",[]]}\n";
    const auto r = test::RunCli("call --jsonl < '" + Write("deep.jsonl", lines) + "'");
    ASSERT_EQ(r.status, 0);
    std::istringstream answers(r.out);
    std::string line;
    std::vector<int> numbers;
    while (std::getline(answers, line)) numbers.push_back(json::parse(line)["error"]["number"].get<int>());
    // 32 levels reach the member, which wants texts, not lists: 13.
    EXPECT_EQ(numbers, (std::vector<int>{5, 5, 13}));
}

// Status 0, 1, 2 as documented; CLI11's own parse errors are bad usage too.
class CliConventions : public test::TownDbTest {};

TEST_F(CliConventions, EveryCommandAnswersBadUsageWithStatus2) {
    AddTown(Town(3, "05315000", "Köln", "50667", "1", "", "Köln", "Köln", "Nordrhein-Westfalen"));
    const std::string site = "site --norm 3 --snow-zone 2 --wind-zone 2 --category 2 --roof gabled --pitch 35 ";
    const struct {
        std::string args;
        int status;
        const char* message;  // on standard error; "" when none is looked for
    } cases[] = {
        {"", 2, "A subcommand is required"},
        {"nosuch", 2, "unknown command 'nosuch'"},
        {"--bogus lists", 2, "--bogus"},
        {"--lang fra lists", 2, "--lang"},
        {"lists --bogus", 2, "--bogus"},
        {"call", 2, "name a member"},
        {"cp --bogus", 2, "--bogus"},
        {"blocks", 2, ""},
        {"db", 2, ""},
        {"town", 2, "AGS is required"},
        {"towns --plz abc", 2, "--plz: a postcode or its beginning is digits"},
        {"towns --plz ''", 2, "--plz: a postcode"},
        {"towns --plz 5066x", 2, "--plz"},
        {site + "--altitude -1e6 --height 10", 2, "--altitude: must lie between -500 and 5000 m, got -1e6"},
        {site + "--altitude 5001 --height 10", 2, "--altitude"},
        {site + "--altitude nan --height 10", 2, "--altitude"},
        {site + "--altitude 300 --height 0", 2, "--height: must lie above 0 and up to 1000 m"},
        {site + "--altitude 300 --height 1e4", 2, "--height"},
        {site + "--altitude 300 --height ten", 2, "--height"},
        {"site --norm 54 --region 6 --snow-zone 2 --vb 71 --category 2 --altitude 400 --height 12 --roof flat", 2,
         "--vb: must lie between 0 and 70 m/s"},
        {"site --norm 54 --region 6 --snow-zone 2 --qb 4 --category 2 --altitude 400 --height 12 --roof flat", 2,
         "--qb"},
        {"site --norm 53 --snow-zone 1 --vb 22 --category 1 --dist-shore 400000 --altitude 100 --height 12 --roof flat",
         2, "--dist-shore: must lie between 0 and 300000 m"},
        {"site --norm 53 --snow-zone 1 --vb 22 --category 3 --dist-shore 10000 --dist-town -1 --altitude 100 "
         "--height 12 --roof flat",
         2, "--dist-town"},
        // The edges of the ranges are sites.
        {site + "--altitude -500 --height 1000", 0, ""},
        {site + "--altitude 5000 --height 0.5", 0, ""},
        {"towns --plz ' 50667 '", 0, ""},
        {"town 09999999", 1, "no municipality"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args);
        const auto quiet = test::RunCli(c.args);
        EXPECT_EQ(quiet.status, c.status) << quiet.out;
        if (c.status == 2) {
            EXPECT_EQ(quiet.out, "");  // nothing on standard output
        }
        if (*c.message) {
            EXPECT_NE(test::RunCli(c.args, true).out.find(c.message), std::string::npos);
        }
    }
    // The postcode filter is the digits, blanks dropped.
    const auto trimmed = test::RunCli("towns --plz ' 50667'");
    EXPECT_NE(trimmed.out.find("05315000  50667"), std::string::npos) << trimmed.out;
    EXPECT_EQ(trimmed.out, test::RunCli("towns --plz 50667").out);

    const auto version = test::RunCli("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "qvroofload 1.10.0\n");
    const auto help = test::RunCli("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Exit status: 0 success; 1 a run-time error"), std::string::npos) << help.out;
}

TEST_F(CliCall, ListShowsSignatures) {
    const auto r = test::RunCli("call --list");
    ASSERT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("SnowBag_EN_1991_1_3(CtrlNA As Integer, sk As Double, hInM As Double, ByRef mue1 As Double, "
                         "ByRef mue2 As Double, ByRef LsInM As Double) As Variant"),
              std::string::npos);
}

}  // namespace

// A host that writes one request and waits for its answer before the next
// gets each answer at once, from call and cp alike; the ten seconds only end
// a hang, they measure nothing.
TEST_F(CliCall, AHostWaitingForEachAnswerGetsIt) {
    const struct {
        const char* command;
        const char* request;
        const char* answerStarts;
    } cases[] = {
        {"call", R"({"call":"CWindSnow.SnowMue2","args":[45]})", R"({"result":1.6})"},
        {"cp", R"({"form":"wall","hzud":2.5})", "{"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.command);
        int toTool[2], fromTool[2];
        ASSERT_EQ(pipe(toTool), 0);
        ASSERT_EQ(pipe(fromTool), 0);
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            dup2(toTool[0], 0);
            dup2(fromTool[1], 1);
            close(toTool[1]);
            close(fromTool[0]);
            execl(QVRL_CLI_PATH, QVRL_CLI_PATH, c.command, "--jsonl", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(toTool[0]);
        close(fromTool[1]);
        const std::string line = std::string(c.request) + "\n";
        for (int round = 0; round < 3; ++round) {
            ASSERT_EQ(write(toTool[1], line.data(), line.size()), static_cast<ssize_t>(line.size()));
            std::string answer;
            while (answer.empty() || answer.back() != '\n') {
                pollfd p{fromTool[0], POLLIN, 0};
                ASSERT_EQ(poll(&p, 1, 10000), 1) << "no answer to request " << round;
                char buf[4096];
                const ssize_t n = read(fromTool[0], buf, sizeof buf);
                ASSERT_GT(n, 0);
                answer.append(buf, static_cast<size_t>(n));
            }
            EXPECT_EQ(answer.rfind(c.answerStarts, 0), 0u) << answer;
            EXPECT_EQ(std::count(answer.begin(), answer.end(), '\n'), 1) << answer;
        }
        close(toTool[1]);
        close(fromTool[0]);
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
}
