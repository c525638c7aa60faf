// Filter texts from a caller go into the query as one literal each: a quote
// stays a quote, "*" and "?" are the pattern's wild cards, "%" is a plain
// character. Every look-up that builds a query from a caller's text, with
// texts that would end the literal early if the quote were not doubled.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "ErrorOf.h"
#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "location/test_modAGSMdb_fixture.h"

using namespace qvrl;
using qvrl::test::ErrorOf;
using Names = std::vector<std::string>;

namespace {

class FilterQuoting : public test::TownDbTest {
protected:
    void SetUp() override {
        TownDbTest::SetUp();
        struct Row {
            const char* ags;
            const char* name;
            const char* plz;
        };
        const Row rows[] = {
            {"09162000", "München", "80331"},   {"05315000", "Köln", "50667"},
            {"05154000", "Kleve", "47533"},     {"05111000", "Düsseldorf", "40213"},
            {"09999001", "O'Brien", "80999"},   {"09999002", "100% Dorf", "80998"},
            {"09999003", "Stern*haus", "80997"},
        };
        int32_t id = 0;
        for (const Row& r : rows) {
            ++id;
            AddTown(Town(id, r.ags, r.name, r.plz, "1", "1"));
            // The same towns in the Eurocode table, with every figure set so
            // that no footnote is added to the name.
            Insert("qvrl.mdb", "slzwlz1",
                   {{"ID", Variant(id)}, {"Land_ID", Variant(int32_t{50})}, {"AGS", Variant(r.ags)},
                    {"BL_ID", Variant(std::string(r.ags).substr(0, 2))}, {"Gemeinde", Variant(r.name)},
                    {"PLZ", Variant(r.plz)}, {"SZ", Variant("1")}, {"sk", Variant(1.0)}, {"qb", Variant(1.0)},
                    {"hNN", Variant(1.0)}});
        }
    }

    static Names Of(const std::vector<TownRec>& list) {
        Names n;
        for (size_t i = 1; i < list.size(); ++i) n.push_back(list[i].Gemeinde);
        return n;
    }
};

struct FilterCase {
    std::string plz, name, ags;
    Names expected;
};

// What each text means as the literal it is, on the rows above.
const std::vector<FilterCase> kFilterCases = {
    // The name filter is "<name>*".
    {"", "K*' AND BL_ID like '05", "", {}},
    {"", "O'", "", {"O'Brien"}},
    {"", "O''", "", {}},
    {"", "'", "", {}},
    {"", "*'B", "", {"O'Brien"}},
    {"", "%", "", {}},
    {"", "100%", "", {"100% Dorf"}},
    {"", "K?ln", "", {"Köln"}},
    {"", "Stern*", "", {"Stern*haus"}},
    {"", "Stern?", "", {"Stern*haus"}},
    // A postcode that finds nothing is shortened and then becomes a clause
    // even when it is no number; its quote must not end the literal.
    {"8'1", "Zzz", "", {}},
    {"80'", "Zzz", "", {}},
    {"5' AND Gemeinde like 'K", "Zzz", "", {}},
    // A key that is no number filters nothing, quote or not.
    {"", "Mün", "09162000' AND BL_ID like '05", {"München"}},
    {"", "Mün", "'", {"München"}},
};

TEST_F(FilterQuoting, GermanTownFiltersAreLiterals) {
    for (const FilterCase& c : kFilterCases) {
        SCOPED_TRACE("plz=" + c.plz + " name=" + c.name + " ags=" + c.ags);
        std::vector<TownRec> list;
        EXPECT_EQ(ErrorOf([&] { ReadGemFromAGS(StateRec{}, RegionRec{}, CountyRec{}, list, c.plz, c.name, c.ags); }),
                  0);
        EXPECT_EQ(Of(list), c.expected);
    }
}

TEST_F(FilterQuoting, EurocodeTownFiltersAreLiterals) {
    for (const FilterCase& c : kFilterCases) {
        SCOPED_TRACE("plz=" + c.plz + " name=" + c.name + " ags=" + c.ags);
        std::vector<TownRec> list;
        EXPECT_EQ(ErrorOf([&] {
                      ReadGemFromAGSEN(LandRec{}, StateRecEN{}, RegionRecEN{}, CountyRecEN{}, list, c.plz, c.name,
                                       50, c.ags);
                  }),
                  0);
        EXPECT_EQ(Of(list), c.expected);
    }
}

TEST_F(FilterQuoting, KeyLookUpsFindOnlyThatKey) {
    for (const std::string ags : {"09162000'", "'09162000'", "09162000' AND AGS like '*", "0916200?", "0916*"}) {
        SCOPED_TRACE(ags);
        TownRec t;
        t.Gemeinde = "stale";
        EXPECT_EQ(ErrorOf([&] { FindTownByAGS(ags, t); }), 0);
        EXPECT_EQ(t.Gemeinde, "");
        t.Gemeinde = "stale";
        EXPECT_EQ(ErrorOf([&] { FindTownByAGSEN(50, ags, t); }), 0);
        EXPECT_EQ(t.Gemeinde, "");
    }
}

TEST_F(FilterQuoting, UserCorrectionsOfKeysWithQuotesAndWildCards) {
    // The editor takes the key as the user typed it; "=" compares it as text.
    const std::vector<std::string> keys = {"0916'2000", "0916*", "0916?", "'", "0916%"};
    for (const std::string& k : keys) {
        TownRec t;
        t.AGS = k;
        t.Gemeinde = "Ort " + k;
        ASSERT_EQ(ErrorOf([&] { SaveUserGem(t); }), 0) << k;
    }
    // Saving a key again edits its row rather than adding one.
    TownRec again;
    again.AGS = "0916*";
    again.Gemeinde = "geändert";
    SaveUserGem(again);
    auto count = [] {
        auto db = DBEngine::OpenDatabase(UserTownDbPath(), Variant(), Variant(true));
        auto rs = db->OpenRecordset("SELECT * FROM slzwlz", dao::dbOpenSnapshot);
        int n = 0;
        for (; !rs->EOF_(); rs->MoveNext()) ++n;
        return n;
    };
    EXPECT_EQ(count(), 5);
    // Each delete takes exactly the row of its own key.
    int left = 5;
    for (const std::string& k : keys) {
        TownRec t;
        t.AGS = k;
        t.Modified = 1;
        EXPECT_EQ(ErrorOf([&] { DeleteUserGem(t); }), 0) << k;
        EXPECT_EQ(t.Modified, 0) << k;
        EXPECT_EQ(count(), --left) << k;
    }
}

TEST_F(FilterQuoting, AustrianSnowNamesAreLiterals) {
    for (const auto& [bl, name] : {std::pair{"3", "Wiener Neustadt"}, {"3", "Baden"}, {"6", "Graz"}})
        Insert("au_s.mdb", "schnee",
               {{"BL_ID", Variant(bl)}, {"Gemeinde", Variant(name)}, {"hNN", Variant(300.0)}, {"SZ", Variant("2")},
                {"sk", Variant(1.5)}});
    struct Case {
        std::string bl, name;
        int32_t rows;
    };
    // The name is a pattern without a wild card of its own.
    const Case cases[] = {
        {"3", "*' AND BL_ID like '*", 0},
        {"3' AND Gemeinde like '*", "Baden", 0},
        {"3'", "Baden", 0},
        {"3", "Bad%", 0},
        {"3", "Bad*", 1},
        {"3", "Bade?", 1},
        {"3", "*", 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bl + " / " + c.name);
        double hNN = 0.0, sk = 0.0;
        std::string SZ;
        int32_t rows = -1;
        EXPECT_EQ(ErrorOf([&] { rows = FindAustrianSnow(c.bl, c.name, hNN, SZ, sk); }), 0);
        EXPECT_EQ(rows, c.rows);
    }
}

}  // namespace
