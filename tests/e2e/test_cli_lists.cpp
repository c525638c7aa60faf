#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "TestEnv.h"
#include "e2e/CliRunner.h"

using namespace qvrl;
using nlohmann::json;

namespace {

class CliLists : public test::IsolatedTest {};

TEST_F(CliLists, JsonHoldsEveryList) {
    const auto r = test::RunCli("lists --json");
    ASSERT_EQ(r.status, 0);
    const json j = json::parse(r.out);
    for (const char* key : {"standards", "otherNormCodes", "liveLoadStandards", "windZones2005", "windZones2005_T2963",
                            "windCategories2005", "windCategoriesEN", "snowZones1975", "snowZones2005",
                            "snowRegionsEN", "snowZonesEN", "openSides2005", "openSidesEN"})
        EXPECT_TRUE(j.contains(key)) << key;
    EXPECT_EQ(j["standards"].size(), 7u);
    EXPECT_EQ(j["windCategories2005"][1]["code"], 5);
    EXPECT_EQ(j["windCategories2005"][1]["text"], "Mischkategorie Küste");

    bool seen5403 = false;
    int rows51 = 0;
    for (const auto& z : j["snowZonesEN"]) {
        if (z["CtrlNA"] == 54 && z["CtrlRegion"] == 3) {
            seen5403 = true;
            std::vector<std::string> texts;
            for (const auto& row : z["zones"]) texts.push_back(row["text"]);
            EXPECT_EQ(texts, (std::vector<std::string>{"1", "2", "4"}));
        }
        if (z["CtrlNA"] == 51) {
            ASSERT_EQ(z["zones"].size(), 4u);
            for (const auto& row : z["zones"])
                if (row["code"] == 104) {
                    EXPECT_EQ(row["Z"].get<double>(), 4.5);
                    ++rows51;
                }
        }
    }
    EXPECT_TRUE(seen5403);
    EXPECT_EQ(rows51, 1);  // Austria has no regions: one list, region 0
}

TEST_F(CliLists, FiltersAndLanguage) {
    const auto r = test::RunCli("--lang eng lists --json --na 54 --region 3 --selectable _3_54_");
    ASSERT_EQ(r.status, 0);
    const json j = json::parse(r.out);
    ASSERT_EQ(j["snowZonesEN"].size(), 1u);
    EXPECT_EQ(j["snowZonesEN"][0]["zones"].size(), 3u);
    EXPECT_EQ(j["windCategoriesEN"][0]["categories"][0]["text"], "Terrain category 0");
    EXPECT_EQ(j["selectable"]["rows"].size(), 2u);
    EXPECT_EQ(j["selectable"]["enabled"], true);
}

TEST_F(CliLists, ReadableTable) {
    const auto r = test::RunCli("lists --na 51");
    ASSERT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("Snow zones, EN 1991-1-3, CtrlNA 51, CtrlRegion 0"), std::string::npos);
    EXPECT_NE(r.out.find("    104  4          4.5"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("ÖNorm B 1991-1-3:2006"), std::string::npos);
}

TEST_F(CliLists, BadInputIsAClearErrorWithNonZeroStatus) {
    const struct {
        const char* args;
        const char* says;
    } cases[] = {
        {"lists --na 49", "--na"},
        {"lists --region x", "--region"},
        {"nonsense", "nonsense"},
        {"", "subcommand"},
        {"lists --selectable _1_x_", "error 13"},
        {"--lang fra lists", "--lang"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args);
        const auto r = test::RunCli(c.args, true);
        EXPECT_NE(r.status, 0);
        EXPECT_NE(r.out.find(c.says), std::string::npos) << r.out;
    }
}

}  // namespace
