#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "TestEnv.h"
#include "e2e/CliRunner.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class CliMaps : public test::IsolatedTest {};

// The roads of the zone maps and choosers as a user drives them.
TEST_F(CliMaps, MapAndChooserSessions) {
    struct {
        std::string call;
        std::string steps;
        json result;
        json out;
        std::vector<std::string> forms;
    } cases[] = {
        // A zone layer moved over and clicked gives its code; code 11 stands second.
        {"CWindSnow.SnowZoneByMap2005 3",
         R"J([{"form":"frmSLZ_1","action":"map","layer":2,"click":true},{"form":"frmSLZ_1","action":"ok"}])J", 11,
         {{"zone", 11}}, {"frmSLZ_1"}},
        // Onto the base layer and clicked: the zone just left is kept.
        {"CWindSnow.SnowZoneByMap1975 1",
         R"J([{"form":"frmSLZ","action":"map","layer":3},{"form":"frmSLZ","action":"map","layer":0,"click":true},
             {"form":"frmSLZ","action":"ok"}])J",
         3, {{"zone", 3}}, {"frmSLZ"}},
        // A click where no zone was touched changes nothing; OK keeps the entry value.
        {"CWindSnow.WindZoneByMap2005 2",
         R"J([{"form":"frmWZ_1","action":"map","layer":0,"click":true},{"form":"frmWZ_1","action":"ok"}])J", 2,
         {{"zone", 2}}, {"frmWZ_1"}},
        // The list chooses as well; an unknown entry value starts at the first zone.
        {"CWindSnow.WindZoneByMap2005_T2963 9",
         R"J([{"form":"frmWZ_2","action":"choose","control":"cbWZ","text":"5"},{"form":"frmWZ_2","action":"ok"}])J", 5,
         {{"zone", 5}}, {"frmWZ_2"}},
        // Cancel returns -1 and leaves the argument, though the map moved the value.
        {"CWindSnow.SnowZoneByMap2005 2",
         R"J([{"form":"frmSLZ_1","action":"map","layer":4,"click":true},{"form":"frmSLZ_1","action":"cancel"}])J", -1,
         {{"zone", 2}}, {"frmSLZ_1"}},
        {"CWindSnow.WindZoneByMap2005 4", R"J([{"form":"frmWZ_1","action":"key","control":"cbWZ","key":"Escape"}])J", -1,
         {{"zone", 4}}, {"frmWZ_1"}},
        // The Eurocode maps lift themselves once with an empty form; the Czech
        // third layer is zone code 23.
        {"CWindSnow.SnowZoneByMapEN 50 11 0",
         R"J([{"form":"frmEN_SZ_czech","action":"map","layer":3,"click":true},{"form":"frmEN_SZ_czech","action":"ok"}])J",
         23, {{"zone", 23}}, {"frmEN_SZ_czech", "frmNull"}},
        {"CWindSnow.SnowZoneByMapEN 54 77 0", R"J([{"form":"frmEN_SZ_alpine","action":"cancel"}])J", -1, {{"zone", 0}},
         {"frmEN_SZ_alpine", "frmNull"}},
        // The regions list Czechia (11) before Iceland (10): the eleventh layer is 10.
        {"CWindSnow.ClimateRegionByMap 0",
         R"J([{"form":"frmClimaEN","action":"map","layer":11,"click":true},{"form":"frmClimaEN","action":"ok"}])J", 10,
         {{"CR", 10}}, {"frmClimaEN", "frmNull"}},
        // Category dialogs: the DIN ones count from 1, the EN ones return the category itself.
        {"CWindSnow.WindCategoryByView2005 1",
         R"J([{"form":"frmWindCategory100_WithoutGrf","action":"click","control":"optWCat(5)"},
             {"form":"frmWindCategory100_WithoutGrf","action":"ok"}])J",
         6, {{"WCat", 6}}, {"frmWindCategory100_WithoutGrf"}},
        {"CWindSnow.WindCategoryByView100 2",
         R"J([{"form":"frmWindCategory100","action":"click","control":"optWCat(0)"},
             {"form":"frmWindCategory100","action":"ok"}])J",
         1, {{"WCat", 1}}, {"frmWindCategory100"}},
        {"CWindSnow.WindCategoryByView_EN_1991_1_4 50 2",
         R"J([{"form":"frmWindCategoryEN","action":"click","control":"optWCat(0)"},
             {"form":"frmWindCategoryEN","action":"ok"}])J",
         0, {{"WCat", 0}}, {"frmWindCategoryEN"}},
        {"CWindSnow.WindCategoryByView_EN_1991_1_4 53 1",
         R"J([{"form":"frmWindCategoryEN_BS","action":"click","control":"optWCat(4)"},
             {"form":"frmWindCategoryEN_BS","action":"ok"}])J",
         4, {{"WCat", 4}}, {"frmWindCategoryEN_BS"}},
        {"CWindSnow.OrographyByView_EN_1991_1_4 0.1 0.2",
         R"J([{"form":"frmOrographic","action":"type","control":"txtOro(1)","text":"0.6"},
             {"form":"frmOrographic","action":"ok"}])J",
         true, {{"gPhi", 0.1}, {"sFac", 0.6}}, {"frmOrographic"}},
    };
    const auto dir = test::FreshFolder("maps");
    int n = 0;
    for (const auto& c : cases) {
        const auto script = dir / ("s" + std::to_string(++n) + ".json");
        test::WriteFile(script, R"({"steps":)" + c.steps + "}");
        const auto r = test::RunCli("session " + c.call + " --script '" + script.string() + "'");
        ASSERT_EQ(r.status, 0) << c.call << "\n" << r.out;
        const json j = json::parse(r.out);
        EXPECT_EQ(j["result"], c.result) << c.call;
        for (auto& [k, v] : c.out.items()) EXPECT_EQ(j["out"][k], v) << c.call << " " << k;
        std::vector<std::string> forms;
        for (const auto& f : j["forms"]) forms.push_back(f["form"]);
        EXPECT_EQ(forms, c.forms) << c.call;
        EXPECT_TRUE(j["messages"].empty()) << c.call;
    }
}

TEST_F(CliMaps, AustrianAndUkAnnexHaveNoSnowMap) {
    for (const char* na : {"51", "53"}) {
        const auto r = test::RunCli(std::string("session CWindSnow.SnowZoneByMapEN ") + na + " 1 2 --script -", false, "{}");
        ASSERT_EQ(r.status, 0) << r.out;
        const json j = json::parse(r.out);
        EXPECT_EQ(j["result"], -1);
        EXPECT_EQ(j["out"]["zone"], 2);
        EXPECT_EQ(j["forms"], json::array());
        ASSERT_EQ(j["messages"].size(), 1u);
        EXPECT_EQ(j["messages"][0]["text"].get<std::string>().rfind("Für diese Klimaregion", 0), 0u);
        EXPECT_EQ(j["messages"][0]["title"], "Hinweis");
    }
}

}  // namespace
