#include "automation/CWindSnow.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/errors.h"

namespace qvrl {
namespace {

TEST(CWindSnowWind, ReferencePressureAnswersEveryTableZone) {
    const CWindSnow ws;
    // Zone 5 belongs to the five-zone reading, but the table answers it anyway.
    EXPECT_EQ(ws.WindReferencePressure_DIN1055_4_2005(5), 0.66);
    EXPECT_EQ(ws.WindReferencePressure_DIN1055_4_2005(1), 0.32);
    EXPECT_EQ(ws.WindReferencePressure_DIN1055_4_2005(4), 0.56);
    EXPECT_EQ(ws.WindReferencePressure_DIN1055_4_2005(0), 0.0);
    EXPECT_EQ(ws.WindReferencePressure_DIN1055_4_2005(6), 0.0);
}

TEST(CWindSnowWind, StepsOf1986) {
    const CWindSnow ws;
    EXPECT_EQ(ws.WindPressure_DIN1055_4_1986(8.0), 0.5);
    EXPECT_EQ(ws.WindPressure_DIN1055_4_1986(8.1), 0.8);
}

TEST(CWindSnowSnow, ShapeMembersPickTheirCoefficient) {
    const CWindSnow ws;
    EXPECT_EQ(ws.SnowMue1(45.0), (60.0 - 45.0) * 0.8 / 30.0);
    EXPECT_EQ(ws.SnowMue2(45.0), 1.6);
    EXPECT_EQ(ws.SnowMue1(15.0), 0.8);
    EXPECT_EQ(ws.SnowMue2(15.0), (15.0 / 30.0) * 0.8 + 0.8);
    EXPECT_EQ(ws.SnowMue1(-1.0), 0.0);
    EXPECT_EQ(ws.SnowMue2(-1.0), 0.0);
}

TEST(CWindSnowSnow, DriftMembers) {
    const CWindSnow ws;
    EXPECT_EQ(ws.SnowBagMue1(), 0.8);
    EXPECT_EQ(ws.SnowBagMue2(49.9, 0.0), 0.8);
    EXPECT_EQ(ws.SnowBagMue2(100.0, 2.0), 1.0);
    EXPECT_EQ(ws.SnowBagMue2(100.0, 1.0), 2.0);
    // The drift height is handed back, not the drift length.
    EXPECT_EQ(ws.SnowBag(0.8, 1.6, 100.0, 1.0), 1.6 * 1.0 - 0.8 * 1.0);
    EXPECT_EQ(ws.SnowOverhang(0.75), 0.1875);
    EXPECT_EQ(ws.SnowCatchingFence(0.8, 1.6, 1.0, 2.0, 0.0), 0.0);
}

TEST(CWindSnowFaults, FloatingFaultFailsTheCall) {
    const CWindSnow ws;
    try {
        (void)ws.SnowBagMue2(50.0, 0.0);
        FAIL() << "a drift over sk 0 must fail";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::DivisionByZero);
    }
    try {
        (void)ws.SnowBag(0.8, 2.0, 1e308, 1.0);
        FAIL() << "the drift length overflows even though it is not handed on";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::Overflow);
    }
    // The object holds no state: a failed call leaves the next one unaffected.
    EXPECT_EQ(ws.SnowBagMue2(100.0, 2.0), 1.0);
}

// Name lists: arrays that already hold something are replaced as a whole.
struct ListCase {
    const char* member;
    void (CWindSnow::*fill)(std::vector<std::string>&, std::vector<int16_t>&) const;
    std::vector<int16_t> codes;
    std::vector<std::string> names;  // empty: language texts, not fixed here
};

TEST(CWindSnowLists, NamesAndCodes) {
    const std::vector<ListCase> cases = {
        {"SnowZoneNames1975", &CWindSnow::SnowZoneNames1975, {1, 2, 3, 4},
         {"I", "II", "III", "IV"}},
        {"SnowZoneNames2005", &CWindSnow::SnowZoneNames2005, {1, 11, 2, 21, 3},
         {"1", "1a", "2", "2a", "3"}},
        {"WindZoneNames2005", &CWindSnow::WindZoneNames2005, {1, 2, 3, 4},
         {"1", "2", "3", "4"}},
        {"WindZoneNames2005_T2963", &CWindSnow::WindZoneNames2005_T2963, {1, 2, 3, 4, 5},
         {"1", "2", "3", "4", "5"}},
        {"WindCategoryNames2005", &CWindSnow::WindCategoryNames2005, {1, 5, 2, 6, 3, 4}, {}},
        {"WindOpenSides2005", &CWindSnow::WindOpenSides2005, {0, 1, 2, 22, 3}, {}},
        {"WindOpenSides_EN_1991_1_4", &CWindSnow::WindOpenSides_EN_1991_1_4, {0, 1}, {}},
    };
    const CWindSnow ws;
    for (const auto& c : cases) {
        std::vector<std::string> sName = {"stale", "stale", "stale", "stale", "stale", "stale",
                                          "stale", "stale", "stale"};
        std::vector<int16_t> Index = {9, 9, 9, 9, 9, 9, 9, 9, 9};
        (ws.*c.fill)(sName, Index);
        ASSERT_EQ(Index.size(), c.codes.size() + 1) << c.member;
        ASSERT_EQ(sName.size(), Index.size()) << c.member;
        EXPECT_EQ(Index[0], 0) << c.member;
        EXPECT_EQ(sName[0], "") << c.member;
        for (size_t i = 0; i < c.codes.size(); ++i) {
            EXPECT_EQ(Index[i + 1], c.codes[i]) << c.member << " row " << i + 1;
            if (!c.names.empty()) {
                EXPECT_EQ(sName[i + 1], c.names[i]) << c.member << " row " << i + 1;
            }
        }
    }
}

}  // namespace
}  // namespace qvrl
