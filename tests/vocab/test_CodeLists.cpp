#include <gtest/gtest.h>

#include "TestEnv.h"
#include "vocab/CodeLists.h"
#include "support/CLocLite.h"
#include "support/errors.h"

using namespace qvrl;

namespace {

std::vector<int16_t> Codes(const CodeList& l) { return {l.Index.begin() + 1, l.Index.end()}; }
std::vector<std::string> Names(const CodeList& l) { return {l.sName.begin() + 1, l.sName.end()}; }

TEST(SelectableCodes, ParsingStopsAtEmptyTokensAndOpenEnds) {
    struct {
        const char* codes;
        std::vector<int16_t> parsed;
    } cases[] = {
        {"_1_3_", {1, 3}},
        {"_1__3_", {1}},
        {"", {}},
        {"1 3 54", {}},
        {"_1_3_54_50_51_53_52_", {1, 3, 54, 50, 51, 53, 52}},
        {"_54_3", {54}},     // "3" has no closing underscore
        {"x_3_", {3}},       // text before the first underscore is not a code
        {"_ 3 _", {3}},
        {"_-1_", {-1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.codes);
        EXPECT_EQ(ParseSelectableCodes(c.codes), c.parsed);
    }
}

TEST(SelectableCodes, UnconvertibleTokenIsAnError) {
    for (const char* bad : {"_1_a_", "_1_3x_", "_1_99999_"}) {
        SCOPED_TRACE(bad);
        EXPECT_THROW(ParseSelectableCodes(bad), RuntimeError);
    }
    try {
        ParseSelectableCodes("_1_a_");
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 13);
    }
}

TEST(SelectableCodes, RowsKeepTheTableOrder) {
    const auto rows = SelectableNormRows("_52_1_54_");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].code, 1);
    EXPECT_EQ(rows[1].code, 54);
    EXPECT_EQ(rows[2].code, 52);
    EXPECT_TRUE(IsSelectableNorm("_1_3_", 3));
    EXPECT_FALSE(IsSelectableNorm("_1__3_", 3));
    EXPECT_FALSE(IsSelectableNorm("_13_", 1));  // a code, not a substring
    EXPECT_TRUE(SelectableNormRows("_31_78_").empty());
}

TEST(NormTable, CodesAndTextsInOrder) {
    const auto& t = NormTable();
    ASSERT_EQ(t.size(), 7u);
    const int16_t codes[] = {1, 3, 54, 50, 51, 53, 52};
    for (size_t i = 0; i < 7; ++i) EXPECT_EQ(t[i].code, codes[i]);
    EXPECT_STREQ(t[4].text, "ÖNorm B 1991-1-3:2006, ÖNorm B 1991-1-4:2009");
    EXPECT_EQ(LiveLoadNormText(3), "DIN 1055-3:2006-03");
    EXPECT_EQ(LiveLoadNormText(31), "");
    EXPECT_EQ(Codes(LiveLoadNormList()), (std::vector<int16_t>{1, 3}));
    // The further codes have no row of their own; the annexes are the Eurocode codes.
    for (const OtherNormCode& c : OtherNormCodes())
        for (const NormRow& r : t) EXPECT_NE(r.code, c.code);
    EXPECT_EQ(OtherNormCodes().size(), 4u);
    EXPECT_EQ(AnnexCodes(), (std::vector<int16_t>{50, 51, 52, 53, 54}));
}

TEST(NormTable, CatalogueAndEurocodeSets) {
    for (int16_t c : {1, 3, 213, 211, 78, 54, 51, 50, 53, 52}) EXPECT_TRUE(IsCatalogueNorm(c)) << c;
    for (int16_t c : {0, 2, 31, 49, 55, 212}) EXPECT_FALSE(IsCatalogueNorm(c)) << c;
    for (int16_t c : {50, 51, 52, 53, 54}) EXPECT_TRUE(IsEurocodeNorm(c)) << c;
    for (int16_t c : {49, 55, 3, 31}) EXPECT_FALSE(IsEurocodeNorm(c)) << c;
}

TEST(PlainLists, CodesAreNotPositions) {
    EXPECT_EQ(Names(SnowZoneList2005()), (std::vector<std::string>{"1", "1a", "2", "2a", "3"}));
    EXPECT_EQ(Codes(SnowZoneList2005()), (std::vector<int16_t>{1, 11, 2, 21, 3}));
    EXPECT_EQ(Names(SnowZoneList1975()), (std::vector<std::string>{"I", "II", "III", "IV"}));
    EXPECT_EQ(Codes(WindZoneList2005()), (std::vector<int16_t>{1, 2, 3, 4}));
    EXPECT_EQ(Codes(WindZoneList2005_T2963()), (std::vector<int16_t>{1, 2, 3, 4, 5}));
    EXPECT_EQ(Names(WindCategoryList_EN(53)),
              (std::vector<std::string>{"Sea (0)", "Country (I)", "Country (II)", "Town (III)", "Town (IV)"}));
    // element 0 is blank
    EXPECT_EQ(SnowZoneList2005().sName[0], "");
    EXPECT_EQ(SnowZoneList2005().Index[0], 0);
}

class LanguageLists : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        InitLanguageObjects();
    }
};

TEST_F(LanguageLists, TextListsCarryTheirCodes) {
    EXPECT_EQ(Codes(WindCategoryList2005()), (std::vector<int16_t>{1, 5, 2, 6, 3, 4}));
    EXPECT_EQ(Names(WindCategoryList2005())[1], "Mischkategorie Küste");
    EXPECT_EQ(Codes(WindOpenSidesList2005()), (std::vector<int16_t>{0, 1, 2, 22, 3}));
    EXPECT_EQ(Codes(WindOpenSidesList_EN()), (std::vector<int16_t>{0, 1}));
    EXPECT_EQ(Codes(WindCategoryList_EN(51)), (std::vector<int16_t>{2, 3, 4}));
    EXPECT_EQ(Codes(WindCategoryList_EN(54)), (std::vector<int16_t>{0, 1, 2, 3, 4}));
    EXPECT_EQ(Names(WindCategoryList_EN(50))[0], "Geländekategorie 0");
    for (const auto& n : Names(WindOpenSidesList2005())) EXPECT_FALSE(n.empty());
}

TEST_F(LanguageLists, RegionsInTextNumberOrder) {
    const CodeList r = SnowRegionList(54);
    EXPECT_EQ(Codes(r), (std::vector<int16_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 10, 12}));
    EXPECT_EQ(Names(r)[9], "Tschechien");
    EXPECT_EQ(SnowRegionList(51).Count(), 0);
    EXPECT_EQ(SnowRegionList(53).Count(), 0);
    EXPECT_EQ(SnowRegionList(50).Count(), 12);
    EXPECT_EQ(SnowRegionMapForm(11), "frmEN_SZ_czech");
    EXPECT_EQ(SnowRegionMapForm(13), "");
}

// Which lists describe a site under each standard. Norm 1 has the snow zones
// of 1975 and no wind zones or categories: its wind load depends on the
// building height alone.
TEST_F(LanguageLists, ListsOfEachNorm) {
    using V = std::vector<int16_t>;
    const V cat2005{1, 5, 2, 6, 3, 4}, catEN{0, 1, 2, 3, 4}, wz4{1, 2, 3, 4};
    const V regions{1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 10, 12};
    struct Case {
        int16_t Norm, CtrlRegion;
        V snow, wind, cats, regions;
    } cases[] = {
        {1, 0, {1, 2, 3, 4}, {}, {}, {}},
        {3, 0, {1, 11, 2, 21, 3}, wz4, cat2005, {}},
        {31, 0, {1, 11, 2, 21, 3}, {1, 2, 3, 4, 5}, cat2005, {}},
        {50, 3, {1, 2, 4}, wz4, catEN, regions},
        {51, 3, {101, 102, 103, 104}, {}, {2, 3, 4}, {}},
        {52, 9, {11, 12, 13, 14, 15}, {}, catEN, regions},
        {53, 0, {101, 102, 103, 104, 105, 106}, {}, catEN, {}},
        {54, 11, {21, 22, 23, 24, 25}, {}, catEN, regions},
        {213, 0, {}, {}, {}, {}},
        {0, 0, {}, {}, {}, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.Norm);
        const NormLists l = ListsOfNorm(c.Norm, c.CtrlRegion);
        EXPECT_EQ(Codes(l.snowZones), c.snow);
        EXPECT_EQ(Codes(l.windZones), c.wind);
        EXPECT_EQ(Codes(l.categories), c.cats);
        EXPECT_EQ(Codes(l.regions), c.regions);
    }
    EXPECT_EQ(Names(ListsOfNorm(1).snowZones)[3], "IV");
    EXPECT_EQ(ListsOfNorm(54).snowZones.Count(), 25);  // region 0 lists every zone
}

TEST(SnowZoneList, RowsByRegion) {
    struct {
        int16_t na, region;
        std::vector<int16_t> codes;
    } cases[] = {
        {54, 3, {1, 2, 4}},
        {54, 4, {1, 2, 4}},
        {54, 1, {1, 2, 3, 5}},
        {54, 8, {1, 2, 3, 5}},
        {54, 9, {11, 12, 13, 14, 15}},
        {54, 10, {31, 32, 33, 34, 35}},
        {54, 11, {21, 22, 23, 24, 25}},
        {54, 12, {41, 42, 43, 44, 45}},
        {54, 13, {}},
        {50, 2, {1, 2, 3, 5}},
        {52, 5, {1, 2, 3, 5}},
        {51, 0, {101, 102, 103, 104}},
        {51, 7, {101, 102, 103, 104}},
        {53, 3, {101, 102, 103, 104, 105, 106}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.na << "/" << c.region);
        EXPECT_EQ(Codes(SnowZoneList(c.na, c.region)), c.codes);
    }
    const ZoneList all = SnowZoneList(54, 0);
    EXPECT_EQ(all.Count(), 25);
    EXPECT_EQ(all.sName[5], "4,5");
    EXPECT_EQ(all.Z[5], 4.5);
    EXPECT_EQ(Names(SnowZoneList(54, 3)), (std::vector<std::string>{"1", "2", "4"}));
}

TEST(SnowZoneFigure, CodeToZ) {
    struct {
        int16_t na, region, code;
        double z;
    } cases[] = {
        {51, 0, 104, 4.5},  {51, 9, 104, 4.5},  {51, 0, 101, 1.6},   {53, 0, 106, 6.5},
        {54, 0, 25, 2.26},  {54, 0, 34, 6.11},  {54, 10, 35, 99.0},  {54, 9, 13, 4.75},
        {54, 3, 3, 0.0},    // zone 3 is not listed for region 3
        {54, 0, 104, 0.0},  {51, 0, 4, 0.0},    {54, 12, 1, 0.0},    {50, 0, 2, 2.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.na << "/" << c.region << "/" << c.code);
        EXPECT_EQ(SnowZoneFigure(c.na, c.region, c.code), c.z);
    }
}

}  // namespace
