// The Eurocode town table: clause builders and key widths by country, the
// footnotes of the numeric figures, and user rows from the same user file.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "location/test_modAGSMdb_fixture.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

class AGSMdbEN : public test::TownDbTest {
protected:
    void SetUp() override {
        TownDbTest::SetUp();
        Add(1, 51, "60101", "6", "01", "01", "Graz", "8010", "2", 1.65, 0.3, 353.0, "Steiermark", "Graz");
        Add(2, 51, "70101", "7", "01", "01", "Innsbruck", "6020", "2", 0.0, 0.4, 574.0, "Tirol", "Innsbruck");
        Add(3, 51, "31701", "3", "12", "17", "Wiener Neustadt", "2700", "", 1.0, 0.5, 0.00009, "Niederösterreich",
            "Wiener Neustadt");
        Add(4, 50, "09162000", "09", "1", "62", "München", "80331", "1a", 0.0001, 0.0, 0.0, "Bayern", "München");
        Add(5, 50, "31701", "03", "1", "70", "Zufall", "31700", "2", 1.0, 1.0, 1.0, "Niedersachsen", "Zufall");
    }

    void Add(int32_t id, int32_t land, const std::string& ags, const std::string& bl, const std::string& reg,
             const std::string& lk, const std::string& name, const std::string& plz, const std::string& sz, double sk,
             double qb, double hnn, const std::string& blName, const std::string& lkName) {
        Insert("qvrl.mdb", "slzwlz1",
               {{"ID", Variant(id)},       {"Land_ID", Variant(land)},   {"Land", Variant(land == 51 ? "Österreich" : "Deutschland")},
                {"Land_ShortName", Variant(land == 51 ? "AT" : "DE")},   {"AGS", Variant(ags)},
                {"BL_ID", Variant(bl)},    {"BL_Name", Variant(blName)}, {"BL_ShortName", Variant(blName.substr(0, 2))},
                {"Reg_ID", Variant(reg)},  {"Reg_Name", Variant("R" + reg)}, {"LK_ID", Variant(lk)},
                {"LK_Name", Variant(lkName)}, {"Gem_ID", Variant("001")}, {"Gemeinde", Variant(name)},
                {"PLZ", Variant(plz)},     {"WZ", Variant("")},          {"SZ", Variant(sz)},
                {"BemW", Variant::Null()}, {"BemS", Variant::Null()},    {"qb", Variant(qb)},
                {"vb", Variant::Null()},   {"sk", Variant(sk)},          {"hNN", Variant(hnn)}});
    }

    static std::vector<std::string> Names(const std::vector<TownRec>& list) {
        std::vector<std::string> n;
        for (size_t i = 1; i < list.size(); ++i) n.push_back(list[i].Gemeinde);
        return n;
    }
};

TEST_F(AGSMdbEN, KeyWidthsByCountry) {
    struct Case {
        int32_t land;
        std::string state, region, county, landClause;
    };
    const std::vector<Case> cases = {
        {51, " BL_ID = '3'", " Reg_ID = '12'", " LK_ID = '07'", " Land_ID = 51"},
        {50, " BL_ID = '03'", " Reg_ID = '12'", " LK_ID = '07'", " Land_ID = 50"},
        {-99, " BL_ID = '03'", " Reg_ID = '12'", " LK_ID = '07'", " Land_ID = -99"},
        {5, " BL_ID = '03'", " Reg_ID = '12'", " LK_ID = '07'", " Land_ID = 05"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.land);
        EXPECT_EQ(StateClause(c.land, 3), c.state);
        EXPECT_EQ(RegionClause(c.land, 12), c.region);
        EXPECT_EQ(CountyClause(7), c.county);
        EXPECT_EQ(LandClause(c.land), c.landClause);
    }
    EXPECT_EQ(RegionClause(51, 1), " Reg_ID = '01'");
    EXPECT_EQ(RegionClause(50, 1), " Reg_ID = '1'");
    EXPECT_EQ(PlzClause(" 23 "), " PLZ like '23*'");
}

TEST_F(AGSMdbEN, FootnotesOfTheFigures) {
    TownRec t;
    FindTownByAGSEN(51, "31701", t);
    EXPECT_EQ(t.Gemeinde, "Wiener Neustadt [1] [4]");  // hNN below 0.0001
    EXPECT_EQ(t.BL_ID, 3);
    EXPECT_EQ(t.Reg_ID, 12);
    EXPECT_EQ(t.Land, "Österreich");
    EXPECT_EQ(t.BemW, "");  // Null reads as empty, 0 for numbers
    EXPECT_EQ(t.vb, 0.0);
    FindTownByAGSEN(50, "09162000", t);
    EXPECT_EQ(t.Gemeinde, "München [3] [4]");  // sk of exactly 0.0001 has none
    FindTownByAGSEN(51, "70101", t);
    EXPECT_EQ(t.Gemeinde, "Innsbruck [2]");
    EXPECT_EQ(t.sk, 0.0);
    EXPECT_EQ(t.qb, 0.4);
}

TEST_F(AGSMdbEN, KeyNeedsItsCountry) {
    TownRec t;
    FindTownByAGSEN(50, "31701", t);
    EXPECT_EQ(t.Gemeinde, "Zufall");
    EXPECT_EQ(t.Land_ID, 50);
    FindTownByAGSEN(52, "31701", t);
    EXPECT_EQ(t, TownRec{});
    // Without a country the key finds both rows, and the match asks for Land 0.
    std::vector<TownRec> list;
    ReadGemFromAGSEN({}, {}, {}, {}, list, "", "", 0, "31701");
    EXPECT_EQ(Names(list), (std::vector<std::string>{"Wiener Neustadt [1] [4]", "Zufall"}));
    FindTownByAGSEN(0, "31701", t);
    EXPECT_EQ(t, TownRec{});
}

TEST_F(AGSMdbEN, HierarchyLists) {
    LandRec at;
    at.Land_ID = 51;
    std::vector<StateRecEN> states;
    ReadStatesEN(at, states);
    ASSERT_EQ(states.size(), 4u);
    EXPECT_EQ(states[1].BL_Name, "Niederösterreich");
    EXPECT_EQ(states[1].BL_ID, 3);
    EXPECT_EQ(states[1].Land_ShortName, "AT");

    std::vector<RegionRecEN> regions;
    ReadRegionsEN({}, {}, regions);
    EXPECT_EQ(regions.size(), 1u);  // never across countries
    ReadRegionsEN(at, states[1], regions);
    ASSERT_EQ(regions.size(), 2u);
    EXPECT_EQ(regions[1].Reg_ID, 12);

    std::vector<CountyRecEN> counties;
    ReadCountiesEN(at, states[1], regions[1], counties);
    ASSERT_EQ(counties.size(), 2u);
    EXPECT_EQ(counties[1].LK_Name, "Wiener Neustadt");
    ReadCountiesEN({}, {}, {}, counties);
    EXPECT_EQ(counties.size(), 6u);

    std::vector<TownRec> list;
    CountyRecEN c = {};
    c.Land_ID = 51;
    c.BL_ID = 3;
    c.Reg_ID = 12;
    c.LK_ID = 17;
    ReadGemFromAGSEN(at, {}, {}, c, list, "", "", 51, "");
    EXPECT_EQ(Names(list), std::vector<std::string>{"Wiener Neustadt [1] [4]"});
    // The postcode widens here too.
    ReadGemFromAGSEN(at, {}, {}, {}, list, "8099", "", 51, "");
    EXPECT_EQ(Names(list), std::vector<std::string>{"Graz"});
}

TEST_F(AGSMdbEN, UserRowsComeBeforeTheFootnotes) {
    // A German correction creates the user file; its Eurocode table is empty
    // and the Eurocode look-ups keep working.
    TownRec de;
    de.AGS = "09162000";
    SaveUserGem(de);
    TownRec t;
    FindTownByAGSEN(51, "60101", t);
    EXPECT_EQ(t.Gemeinde, "Graz");

    auto db = DBEngine::OpenDatabase(UserTownDbPath(), Variant(), Variant(false));
    Insert(*db, "slzwlz1",
           {{"ID", Variant(1)}, {"Land_ID", Variant(51)}, {"AGS", Variant("60101")}, {"BL_ID", Variant("6")},
            {"Reg_ID", Variant("01")}, {"LK_ID", Variant("01")}, {"Gemeinde", Variant("Graz ")},
            {"SZ", Variant("3")}, {"sk", Variant(2.5)}, {"qb", Variant(0.3)}, {"hNN", Variant(0.0)}});
    db->Close();
    ResetModuleState();  // the user connections open on the next look-up
    FindTownByAGSEN(51, "60101", t);
    EXPECT_EQ(t.Gemeinde, "Graz (modif.) [4]");
    EXPECT_EQ(t.sk, 2.5);
    EXPECT_EQ(t.SZ, "3");
    EXPECT_EQ(t.Land, "");  // the whole row, empty columns included
    EXPECT_EQ(t.Modified, 1);
}

TEST_F(AGSMdbEN, AustrianSnowImport) {
    Insert("au_s.mdb", "schnee",
           {{"BL_ID", Variant("6")}, {"Gemeinde", Variant("Graz")}, {"hNN", Variant(350.0)}, {"SZ", Variant("2*")},
            {"sk", Variant(1.7)}});
    Insert("au_s.mdb", "schnee",
           {{"BL_ID", Variant("7")}, {"Gemeinde", Variant("Innsbruck")}, {"hNN", Variant(574.0)},
            {"SZ", Variant("3")}, {"sk", Variant(2.28)}});
    Insert("au_s.mdb", "schnee",
           {{"BL_ID", Variant("7")}, {"Gemeinde", Variant("INNSBRUCK")}, {"hNN", Variant(1.0)}, {"SZ", Variant("1")},
            {"sk", Variant(1.0)}});
    EXPECT_EQ(ImportAustrianSnow(), 2);
    TownRec t;
    FindTownByAGSEN(51, "60101", t);
    EXPECT_EQ(t.SZ, "2*");
    EXPECT_EQ(t.sk, 1.7);
    EXPECT_EQ(t.hNN, 350.0);
    FindTownByAGSEN(51, "70101", t);  // two rows alike apart from case: the one spelt alike
    EXPECT_EQ(t.sk, 2.28);
    FindTownByAGSEN(51, "31701", t);
    EXPECT_EQ(t.hNN, 0.00009);  // no snow row: untouched
}

}  // namespace
