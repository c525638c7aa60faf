// The German town table: look-ups by key and by filters, the postcode
// widening, the user's corrections laid over shipped rows, and the writers of
// those corrections, on small databases of the test's own.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "ErrorOf.h"
#include "location/modAGSMdb.h"
#include "location/test_modAGSMdb_fixture.h"
#include "support/ModuleState.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

class AGSMdb : public test::TownDbTest {
protected:
    void SetUp() override {
        TownDbTest::SetUp();
        AddTown(Town(1, "09162000", "München", "80331", "1", "1a", "München, Landeshauptstadt", "Oberbayern", "Bayern"));
        AddTown(Town(2, "09184148", "Unterhaching", "82008", "1", "1a", "München", "Oberbayern", "Bayern"));
        AddTown(Town(3, "09173112", "Bad Tölz   ", "83646", "", "2", "Bad Tölz-Wolfratshausen", "Oberbayern", "Bayern"));
        AddTown(Town(4, "09187000", "", "83022", "2", "2", "Rosenheim", "Oberbayern", "Bayern"));
        AddTown(Town(5, "05315000", "Köln", "50667", "1", "1", "Köln", "Köln", "Nordrhein-Westfalen"));
        AddTown(Town(6, "05314000", "Bonn", "53111", "1", "", "Bonn", "Köln", "Nordrhein-Westfalen"));
        AddTown(Town(7, "09274000", "Landshut", "84028", "1", "1a", "Landshut", "Niederbayern", "Bayern"));
    }

    static std::vector<std::string> Names(const std::vector<TownRec>& list) {
        std::vector<std::string> n;
        for (size_t i = 1; i < list.size(); ++i) n.push_back(list[i].Gemeinde);
        return n;
    }

    std::vector<TownRec> Towns(int32_t bl, int32_t reg, int32_t lk, const std::string& plz, const std::string& name,
                               const std::string& ags = "") {
        StateRec s;
        RegionRec r;
        CountyRec c;
        s.BL_ID = r.BL_ID = c.BL_ID = bl;
        r.Reg_ID = c.Reg_ID = reg;
        c.LK_ID = lk;
        std::vector<TownRec> list;
        ReadGemFromAGS(s, r, c, list, plz, name, ags);
        return list;
    }

    // The last query of ReadGemFromAGS, as its trace entry holds it.
    std::string LastSql() const {
        const std::string log = TraceLog();
        const size_t at = log.rfind("sql=");
        if (at == std::string::npos) return {};
        const size_t end = log.find(" cnt=", at);
        return log.substr(at + 4, end - at - 4);
    }

    // A user row written straight into the file, as another program may have left it.
    void AddUserRow(const test::Cells& cells) {
        if (!fs::exists(UserTownDbPath())) {
            std::shared_ptr<Database> db;
            CreateUserDb(db, UserTownDbPath());
        }
        auto db = DBEngine::OpenDatabase(UserTownDbPath(), Variant(), Variant(false));
        Insert(*db, "slzwlz", cells);
    }

    std::vector<std::vector<std::string>> UserRows() {
        auto db = DBEngine::OpenDatabase(UserTownDbPath(), Variant(), Variant(true));
        auto rs = db->OpenRecordset("SELECT * FROM slzwlz", dao::dbOpenSnapshot);
        std::vector<std::vector<std::string>> rows;
        for (; !rs->EOF_(); rs->MoveNext()) {
            std::vector<std::string> row;
            for (Field& f : rs->Fields()) row.push_back(NzText(f));
            rows.push_back(row);
        }
        return rows;
    }
};

TEST_F(AGSMdb, QueryTextsWithTheirBlanks) {
    struct Case {
        int32_t bl, reg, lk;
        const char* plz;
        const char* name;
        const char* ags;
        const char* sql;
        std::vector<std::string> names;
    };
    const std::vector<Case> cases = {
        {9, 1, 62, "80", "Mün", "",
         "SELECT * FROM slzwlz WHERE  BL_ID = '09' AND  Reg_ID = '1' AND  LK_ID = '62' AND PLZ like '80*' AND "
         "Gemeinde like 'Mün*' ORDER BY Gemeinde",
         {"München"}},
        {9, 2, 0, "", "", "", "SELECT * FROM slzwlz WHERE  BL_ID = '09' AND  Reg_ID = '2' ORDER BY Gemeinde",
         {"Landshut"}},
        {5, 0, 0, "", "", "", "SELECT * FROM slzwlz WHERE  BL_ID = '05' ORDER BY Gemeinde", {"Bonn [2]", "Köln"}},
        // The key beats every other filter.
        {5, 3, 15, "99", "X", "09162000", "SELECT * FROM slzwlz WHERE  AGS = '09162000' ORDER BY Gemeinde",
         {"München"}},
        {0, 0, 0, "", "Unter", "", "SELECT * FROM slzwlz WHERE Gemeinde like 'Unter*' ORDER BY Gemeinde",
         {"Unterhaching"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sql);
        EXPECT_EQ(Names(Towns(c.bl, c.reg, c.lk, c.plz, c.name, c.ags)), c.names);
        EXPECT_EQ(LastSql(), c.sql);
    }
    const std::string log = TraceLog();
    EXPECT_NE(log.find("READGEMFROMAGS: sql=SELECT * FROM slzwlz WHERE  BL_ID = '09' AND  Reg_ID = '2' ORDER BY "
                       "Gemeinde cnt=1 \n"),
              std::string::npos);
    EXPECT_NE(log.find("InitAGSMdb=" + ProgramFolder() + "/qvrl.mdb \n"), std::string::npos);
    EXPECT_NE(log.find("InitAGSMdb= \n"), std::string::npos);  // already open: no path
}

TEST_F(AGSMdb, PostcodeWidensDigitByDigit) {
    struct Case {
        int32_t bl;
        const char* plz;
        const char* sql;  // the query that found the rows; "" when nothing was found
        std::vector<std::string> names;
    };
    const std::vector<Case> cases = {
        {0, "50667", "SELECT * FROM slzwlz WHERE PLZ like '50667*' ORDER BY Gemeinde", {"Köln"}},
        {0, "50999", "SELECT * FROM slzwlz WHERE PLZ like '50*' ORDER BY Gemeinde", {"Köln"}},
        {0, "59999", "SELECT * FROM slzwlz WHERE PLZ like '5*' ORDER BY Gemeinde", {"Bonn [2]", "Köln"}},
        {9, "89999", "SELECT * FROM slzwlz WHERE  BL_ID = '09' AND PLZ like '8*' ORDER BY Gemeinde",
         {"restliche", "Bad Tölz [1]", "Landshut", "München", "Unterhaching"}},
        // Down to one digit and no further: Bavaria has no postcode 5....
        {9, "50667", "", {}},
        // "00000" is worth 0 and a text that is no number builds no clause: every row of the state.
        {5, "00000", "SELECT * FROM slzwlz WHERE  BL_ID = '05' ORDER BY Gemeinde", {"Bonn [2]", "Köln"}},
        {5, "5a", "SELECT * FROM slzwlz WHERE  BL_ID = '05' ORDER BY Gemeinde", {"Bonn [2]", "Köln"}},
        {7, "00000", "", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.plz);
        fs::remove(userFolder() / "rlTrace.log");
        EXPECT_EQ(Names(Towns(c.bl, 0, 0, c.plz, "")), c.names);
        EXPECT_EQ(LastSql(), c.names.empty() ? "" : c.sql);
    }
}

TEST_F(AGSMdb, FootnotesAndNamesOfBlankRows) {
    // One blank before the footnote, whatever the name ended in; a county row
    // alone is "alle", among others "restliche".
    EXPECT_EQ(Names(Towns(0, 0, 0, "", "Bad")), std::vector<std::string>{"Bad Tölz [1]"});
    TownRec t;
    FindTownByAGS("09187000", t);
    EXPECT_EQ(t.Gemeinde, "alle");
    EXPECT_EQ(Names(Towns(9, 1, 0, "", "")),
              (std::vector<std::string>{"restliche", "Bad Tölz [1]", "München", "Unterhaching"}));
    // A blank name with a missing zone keeps its footnote as its name.
    AddTown(Town(8, "05111000", "", "40213", "", "", "Düsseldorf"));
    FindTownByAGS("05111000", t);
    EXPECT_EQ(t.Gemeinde, " [1] [2]");
}

TEST_F(AGSMdb, FindTownByAGSMatchesTheKeyExactly) {
    TownRec t;
    FindTownByAGS("09162000", t);
    EXPECT_EQ(std::tie(t.Gemeinde, t.BL_ID, t.BL_ShortName, t.Reg_ID, t.LK_ID, t.Gem_ID, t.PLZ, t.Modified),
              std::make_tuple(std::string("München"), 9, std::string("BY"), 1, 62, 0, std::string("80331"), 0));
    // No leading zero, a trailing blank, "0" and text read other rows or none:
    // the record stays cleared.
    for (const char* key : {"9162000", "09162000 ", "0", "abc", "", "0916200"}) {
        SCOPED_TRACE(key);
        FindTownByAGS(key, t);
        EXPECT_EQ(t, TownRec{});
    }
    // "0" filters nothing.
    EXPECT_EQ(Towns(0, 0, 0, "", "", "0").size(), 8u);
}

TEST_F(AGSMdb, RegionAndCountyListsNeverStartBlank) {
    AddTown(Town(10, "09999001", "Leer1", "80000", "1", "1", "", "", "Bayern"));
    AddTown(Town(11, "09999002", "Leer2", "80000", "1", "1", "   ", "   ", "Bayern"));
    auto null = Town(12, "09999003", "Leer3", "80000", "1", "1", "", "", "Bayern");
    null[5].second = Variant::Null();
    null[7].second = Variant::Null();
    AddTown(null);
    StateRec by;
    FindState(9, by);
    EXPECT_EQ(by.BL_Name, "Bayern");
    EXPECT_EQ(by.BL_ShortName, "BY");
    std::vector<RegionRec> regions;
    ReadRegions(by, regions);
    ASSERT_EQ(regions.size(), 3u);
    EXPECT_EQ(regions[0], RegionRec{});
    EXPECT_EQ(regions[1].Reg_Name, "Niederbayern");
    EXPECT_EQ(regions[2].Reg_Name, "Oberbayern");
    EXPECT_EQ(regions[2].BL_ShortName, "BY");

    std::vector<CountyRec> counties;
    ReadCounties(by, regions[2], counties);
    std::vector<std::string> names;
    for (size_t i = 1; i < counties.size(); ++i) names.push_back(counties[i].LK_Name);
    EXPECT_EQ(names, (std::vector<std::string>{"Bad Tölz-Wolfratshausen", "München", "München, Landeshauptstadt",
                                               "Rosenheim"}));
    CountyRec c;
    FindCounty(by, regions[2], 9, 1, 87, c);
    EXPECT_EQ(c.LK_Name, "Rosenheim");
    FindCounty(by, regions[2], 9, 2, 87, c);
    EXPECT_EQ(c, CountyRec{});
    RegionRec r;
    FindRegion(by, 9, 2, r);
    EXPECT_EQ(r.Reg_Name, "Niederbayern");
}

TEST_F(AGSMdb, StateCodeTable) {
    std::vector<StateRec> states;
    ReadStates(states);
    ASSERT_EQ(states.size(), 17u);
    EXPECT_EQ(states[1].BL_ID, 8);
    EXPECT_EQ(states[1].BL_Name, "Baden-Württemberg");
    EXPECT_EQ(states[9].BL_ShortName, "NI");
    EXPECT_EQ(states[14].BL_ID, 15);
    EXPECT_EQ(states[14].BL_ShortName, "ST");
    EXPECT_EQ(states[14].BL_Name, "Sachsen-Anhalt");
    EXPECT_EQ(GetStateShort(17), "");
    StateRec s;
    s.BL_ID = 3;
    FindState(0, s);
    EXPECT_EQ(s, StateRec{});
}

TEST_F(AGSMdb, UserRowReplacesTheWholeRecord) {
    SaveUserGem([] {
        TownRec t;
        t.ID = 1;
        t.AGS = "09162000";
        t.BL_ID = 9;
        t.BL_Name = "Freistaat";
        t.Reg_ID = 1;
        t.LK_ID = 62;
        t.Gemeinde = "Muenchen  ";
        t.PLZ = "80331";
        t.WZ = "2";
        t.SZ = "";  // stored as one blank, read as no zone
        return t;
    }());
    TownRec t;
    FindTownByAGS("09162000", t);
    EXPECT_EQ(t.Gemeinde, "Muenchen (modif.) [2]");
    EXPECT_EQ(t.BL_Name, "Freistaat");
    EXPECT_EQ(t.Reg_Name, " ");  // the whole row, blanks included
    EXPECT_EQ(t.LK_Name, " ");
    EXPECT_EQ(t.WZ, "2");
    EXPECT_EQ(t.SZ, " ");
    EXPECT_EQ(t.Modified, 1);
    EXPECT_EQ(ReadUserGem("09162000", t), 9162000.0);
    EXPECT_EQ(t.Gemeinde, "Muenchen (modif.)");
    // Other towns keep the shipped values.
    FindTownByAGS("05315000", t);
    EXPECT_EQ(t.Gemeinde, "Köln");
    EXPECT_EQ(t.Modified, 0);
    // The marks the user saved come back with one more " (modif.)".
    FindTownByAGS("09162000", t);
    t.SZ = "1a";
    SaveUserGem(t);
    FindTownByAGS("09162000", t);
    EXPECT_EQ(t.Gemeinde, "Muenchen (modif.) [2] (modif.)");
}

TEST_F(AGSMdb, UserRowsWithoutAValidKeyAndSeveralRows) {
    // With a key that is no number every user row is read; the last one stands.
    AddUserRow(Town(1, "09162000", "A", "80331", "1", "1"));
    AddUserRow(Town(2, "05315000", "C", "50667", "1", "1"));
    AddUserRow(Town(3, "05315000", "B", "50667", "1", "1"));
    TownRec t;
    EXPECT_EQ(ReadUserGem("x", t), 5315000.0);
    EXPECT_EQ(t.Gemeinde, "C (modif.)");
    t = TownRec{};
    EXPECT_EQ(ReadUserGem("05315000", t), 5315000.0);  // ordered by name: C last
    EXPECT_EQ(t.Gemeinde, "C (modif.)");
    t = TownRec{};
    EXPECT_EQ(ReadUserGem("05314000", t), 0.0);
    EXPECT_EQ(t, TownRec{});

    // The list lays the same rows over each town; a shipped row without a
    // valid key takes the last user row of all.
    auto noKey = Town(9, "09162000", "Ohne Schlüssel", "80331", "1", "1");
    noKey[1].second = Variant("x");
    AddTown(noKey);
    const auto list = Towns(0, 0, 0, "", "");
    std::vector<std::string> got;
    for (size_t i = 1; i < list.size(); ++i) got.push_back(list[i].AGS + " " + list[i].Gemeinde);
    EXPECT_EQ(got, (std::vector<std::string>{"09187000 restliche", "09173112 Bad Tölz [1]", "05314000 Bonn [2]",
                                             "05315000 C (modif.)", "09274000 Landshut", "09162000 A (modif.)",
                                             "05315000 C (modif.)", "09184148 Unterhaching"}));
}

TEST_F(AGSMdb, SaveThenSaveAgainReplacesTheSixEditableColumns) {
    const std::string path = UserTownDbPath();
    ASSERT_FALSE(fs::exists(path));
    TownRec t;
    FindTownByAGS("05314000", t);  // no user file yet
    t.Gemeinde = "Bonn";
    t.PLZ = "53111";
    SaveUserGem(t);
    ASSERT_TRUE(fs::exists(path));
    EXPECT_EQ(UserRows(), (std::vector<std::vector<std::string>>{
                              {"6", "05314000", "05", "Nordrhein-Westfalen", "3", "Köln", "14", "Bonn", "000", "Bonn",
                               "53111", "1", " ", " ", " "}}));

    TownRec again = t;
    again.Gemeinde = "Bonn-Beuel";
    again.PLZ = "3225";  // written with five digits
    again.WZ = "2";
    again.SZ = "keine";
    again.BemW = "";
    again.BemS = "Rheinaue";
    again.BL_ID = 7;  // not editable: stays
    again.LK_Name = "Anders";
    again.ID = 99;
    SaveUserGem(again);
    EXPECT_EQ(UserRows(), (std::vector<std::vector<std::string>>{
                              {"6", "05314000", "05", "Nordrhein-Westfalen", "3", "Köln", "14", "Bonn", "000",
                               "Bonn-Beuel", "03225", "2", "keine", " ", "Rheinaue"}}));
    FindTownByAGS("05314000", t);
    EXPECT_EQ(t.Gemeinde, "Bonn-Beuel (modif.)");  // "keine" is a zone: no footnote
}

TEST_F(AGSMdb, WritesGoThroughAConnectionThatCanWrite) {
    TownRec t;
    FindTownByAGS("09162000", t);
    SaveUserGem(t);
    ResetModuleState();  // a new process: the file exists and look-ups open it read-only
    FindTownByAGS("09162000", t);
    ASSERT_TRUE(State().AGSUsrDb);
    EXPECT_FALSE(State().AGSUsrDb->Updatable());
    t.SZ = "3";
    SaveUserGem(t);
    EXPECT_FALSE(State().AGSUsrDb->Updatable());
    FindTownByAGS("09162000", t);
    EXPECT_EQ(t.SZ, "3");
    DeleteUserGem(t);
    EXPECT_EQ(t.Modified, 0);
    FindTownByAGS("09162000", t);
    EXPECT_EQ(t.Gemeinde, "München");
    EXPECT_EQ(t.SZ, "1a");
}

TEST_F(AGSMdb, DeleteRemovesOnlyTheLastRowOfTheKey) {
    TownRec none;
    none.AGS = "09162000";
    none.Modified = 1;
    DeleteUserGem(none);  // no file: nothing happens, nothing is created
    EXPECT_FALSE(fs::exists(UserTownDbPath()));
    EXPECT_EQ(none.Modified, 1);

    AddUserRow(Town(1, "09162000", "first", "80331", "1", "1"));
    AddUserRow(Town(2, "05315000", "other", "50667", "1", "1"));
    AddUserRow(Town(3, "09162000", "second", "80331", "1", "1"));
    AddUserRow(Town(4, "09162000", "third", "80331", "1", "1"));
    DeleteUserGem(none);
    EXPECT_EQ(none.Modified, 0);
    std::vector<std::string> left;
    for (const auto& row : UserRows()) left.push_back(row[9]);
    EXPECT_EQ(left, (std::vector<std::string>{"first", "other", "second"}));
}

TEST_F(AGSMdb, MissingDatabaseGivesEmptyResults) {
    fs::remove(program_ / "qvrl.mdb");
    std::vector<TownRec> list;
    ReadGemFromAGS({}, {}, {}, list, "", "", "09162000");
    EXPECT_EQ(list.size(), 1u);
    TownRec t;
    t.Gemeinde = "x";
    FindTownByAGS("09162000", t);
    EXPECT_EQ(t, TownRec{});
    std::vector<RegionRec> regions;
    ReadRegions({}, regions);
    EXPECT_EQ(regions.size(), 1u);
}

TEST_F(AGSMdb, NullInANumberColumnPassesToTheCaller) {
    auto bad = Town(20, "03241001", "Hannover", "30159", "1", "2");
    bad[4].second = Variant::Null();  // Reg_ID
    AddTown(bad);
    EXPECT_EQ(test::ErrorOf([] {
                  TownRec t;
                  FindTownByAGS("03241001", t);
              }),
              94);
    // Rows before it were read, yet the caller's list is left empty.
    std::vector<TownRec> list(3);
    EXPECT_EQ(test::ErrorOf([&] { ReadGemFromAGS({}, {}, {}, list, "", "", ""); }), 94);
    EXPECT_EQ(list.size(), 1u);
}

}  // namespace
