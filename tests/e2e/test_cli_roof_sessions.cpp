// The hand-over from the Eurocode dialog to the DIN 1055-100 dialog as a
// shell user runs it: the same road and the same file as the C++, C and
// Python hosts get.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "TestEnv.h"
#include "dialogs/SessionRoads.h"
#include "e2e/CliRunner.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class CliRoofSessions : public test::IsolatedTest {};

TEST_F(CliRoofSessions, EurocodeChoosesDin100AndOkThere) {
    const auto dir = test::FreshFolder("s");
    const std::string file = (dir / "roof.asc").string();
    test::WriteFile(file, test::Fixture("en54.asc"));
    test::WriteFile(dir / "script.json",
                    R"J({"steps":[{"form":"frmRoofLoadEN","action":"choose","control":"cbNormI","tag":"3"},)J"
                    R"J({"form":"frmRoofLoad100","action":"ok"}]})J");
    const auto r = test::RunCli("session CRoofLoad.ShowRoofLoadDlg_EN '" + file + "' --script '" +
                                (dir / "script.json").string() + "'");
    ASSERT_EQ(r.status, 0) << r.out;
    const json j = json::parse(r.out);
    EXPECT_EQ(j["OnOk"], true);
    ASSERT_EQ(j["forms"].size(), 2u);
    EXPECT_EQ(j["forms"][0]["form"], "frmRoofLoadEN");
    EXPECT_EQ(j["forms"][1]["form"], "frmRoofLoad100");
    EXPECT_EQ(j["files"].get<std::vector<std::string>>(), test::Lines(test::Fixture("din3_ok.asc")));
    test::ExpectFileLines(file, "din3_ok.asc");
}

}  // namespace
