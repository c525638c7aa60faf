#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "TestEnv.h"
#include "automation/SiteReportJson.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class SiteReportJsonTest : public test::IsolatedTest {};

// A host's options reach the same computation as the tool's.
TEST_F(SiteReportJsonTest, OptionsOfAHostAreTheToolsOptions) {
    const SiteInput in = SiteInputFromJson(
        R"({"norm": 53, "snow_zone": "1", "vb": 22, "category": 1, "dist_shore": 2000, "altitude": 120,
            "height": 7.5, "roof": "monopitch", "pitch": 12, "hp_h": 0, "ce": 1.2, "ct": 0.8, "width": 9,
            "depth": 6, "town": null, "region": null})");
    EXPECT_EQ(in.Norm, 53);
    EXPECT_EQ(in.SnowZoneText, "1");
    EXPECT_FALSE(in.SnowZone);  // a text names the zone; the code is looked up
    EXPECT_EQ(in.BasicWindVelocity, 22.0);
    EXPECT_EQ(in.BuildingCategory, 1);
    EXPECT_EQ(in.DistToShore, 2000.0);
    EXPECT_EQ(in.Form, SiteRoofForm::Pent);
    EXPECT_EQ(in.Alpha, 12.0);
    EXPECT_EQ(in.Ce, 1.2);
    EXPECT_EQ(in.Ct, 0.8);
    EXPECT_EQ(in.PlanWidth, 9.0);
    EXPECT_FALSE(in.CtrlRegion);
    EXPECT_TRUE(in.AGS.empty());
    EXPECT_EQ(SiteInputFromJson(R"({"norm": 3, "snow_zone": 21, "profile": "inland"})").WindProfile,
              GermanWindProfile::Inland);
}

TEST_F(SiteReportJsonTest, BadOptionsNameTheirKey) {
    const struct {
        const char* text;
        const char* option;
    } cases[] = {
        {R"({"snow_zone": 2})", "norm"},
        {R"({"norm": 3.5})", "norm"},
        {R"({"norm": 40000})", "norm"},
        {R"({"norm": "3"})", "norm"},
        {R"({"norm": 3, "height": "10"})", "height"},
        {R"({"norm": 3, "wind_zone": true})", "wind-zone"},
        {R"({"norm": 3, "roof": "dome"})", "roof"},
        {R"({"norm": 3, "profile": "Coast"})", "profile"},
        {R"({"norm": 3, "dist_shore": [1]})", "dist-shore"},
        {R"({"norm": 3, "colour": 1})", "colour"},
        {R"([3])", "input"},
        {R"({"norm": 3)", "input"},
        {R"({"norm": NaN})", "input"},
    };
    for (const auto& c : cases) {
        try {
            SiteInputFromJson(c.text);
            ADD_FAILURE() << c.text << " accepted";
        } catch (const SiteInputError& e) {
            EXPECT_EQ(e.option(), c.option) << c.text << ": " << e.what();
        }
    }
}

// Where a standard gives no value the document holds null, never 0.
TEST_F(SiteReportJsonTest, MissingValuesAreNull) {
    const json old = json::parse(SiteJsonFor(
        R"({"norm": 1, "snow_zone": 2, "altitude": 300, "height": 10, "roof": "gabled", "pitch": 30})"));
    EXPECT_TRUE(old["snow"]["mu1"].is_null());
    EXPECT_TRUE(old["snow"]["arrangements"].empty());
    EXPECT_TRUE(old["wind"]["basic_velocity_pressure"].is_null());

    // DIN 1055-4:2005 asks for special consideration above 1100 m.
    const json high = json::parse(SiteJsonFor(
        R"({"norm": 3, "snow_zone": 3, "wind_zone": 1, "category": 2, "altitude": 1200, "height": 10,
            "roof": "gabled", "pitch": 20, "width": 10, "depth": 8})"));
    const json& qp = high["wind"]["peak_velocity_pressure"];
    EXPECT_TRUE(qp["value"].is_null());
    EXPECT_EQ(qp["unit"], "kN/m2");
    EXPECT_FALSE(qp["note"].get<std::string>().empty());
    for (const json& d : high["coefficients"]["directions"])
        for (const json& set : d["sets"])
            for (const json& v : set["values"]) {
                EXPECT_TRUE(v["w_e_10"]["value"].is_null()) << v.dump();
                EXPECT_TRUE(v["w_e_1"]["value"].is_null()) << v.dump();
            }
    // Without the plan: no e, not e = 0.
    const json flat = json::parse(SiteJsonFor(
        R"({"norm": 3, "snow_zone": 3, "wind_zone": 1, "category": 2, "altitude": 100, "height": 10, "roof": "flat"})"));
    ASSERT_FALSE(flat["coefficients"]["directions"].empty());
    EXPECT_TRUE(flat["coefficients"]["directions"][0]["e"].is_null());
}

}  // namespace
