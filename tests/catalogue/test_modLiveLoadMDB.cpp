// The live load catalogue: the query texts, how a row is read, the list of
// its standards, the loads 78 and 211 keep out of the sum, and the rows the
// component ships.
#include <gtest/gtest.h>

#include <cfloat>
#include <filesystem>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "catalogue/modLiveLoadMDB.h"
#include "store/modDAO.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

struct Row {
    int16_t norm;
    const char* normBez;
    int16_t art;
    const char* zeile;
    const char* kategorie;
    Variant kurztext, langtext;
    double wert;
    Variant wert2;
};

// A copy of the shipped qvrl.mdb whose catalogue holds only the test's rows.
class LiveLoadMdb : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        program_ = test::FreshFolder("program");
        fs::copy_file(fs::path(ProgramFolder()) / "qvrl.mdb", program_ / "qvrl.mdb");
        setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
        auto db = DBEngine::OpenDatabase((program_ / "qvrl.mdb").string(), Variant(), Variant(false));
        auto rs = db->OpenRecordset("liveload", dao::dbOpenDynaset);
        while (!rs->EOF_()) {
            rs->Delete();
            rs->MoveNext();
        }
    }

    void Add(const std::vector<Row>& rows) const {
        auto db = DBEngine::OpenDatabase((program_ / "qvrl.mdb").string(), Variant(), Variant(false));
        auto rs = db->OpenRecordset("liveload", dao::dbOpenDynaset);
        for (const Row& r : rows) {
            rs->AddNew();
            rs->Fields("Norm").Value(Variant(r.norm));
            rs->Fields("NormBez").Value(Variant(std::string(r.normBez)));
            rs->Fields("Art").Value(Variant(r.art));
            rs->Fields("Zeile").Value(Variant(std::string(r.zeile)));
            rs->Fields("Kategorie").Value(Variant(std::string(r.kategorie)));
            rs->Fields("Kurztext").Value(r.kurztext);
            rs->Fields("Langtext").Value(r.langtext);
            rs->Fields("Wert").Value(Variant(r.wert));
            rs->Fields("Wert2").Value(r.wert2);
            rs->Update();
        }
    }

    static std::vector<std::string> Zeilen(int16_t norm, int16_t art) {
        std::vector<LiveLoadRec> rows;
        ReadLiveLoads(norm, art, rows);
        std::vector<std::string> z;
        for (size_t i = 1; i < rows.size(); ++i) z.push_back(rows[i].Zeile);
        return z;
    }

    fs::path program_;
};

const Variant kNull = Variant::Null();

TEST_F(LiveLoadMdb, EachQueryTextSelectsItsRowsInItsOrder) {
    // IDs follow insertion: 3/1 stands between the rows of 54, and only the
    // order by Norm brings it before them.
    Add({{54, "EN", 0, "e1", "A", Variant("k"), Variant("l"), 1.0, kNull},
         {3, "DIN", 1, "d1", "A", Variant("k"), Variant("l"), 1.0, kNull},
         {54, "EN", 1, "e2", "A", Variant("k"), Variant("l"), 1.0, kNull},
         {3, "DIN", 0, "d2", "A", Variant("k"), Variant("l"), 1.0, kNull}});
    const std::vector<std::tuple<int16_t, int16_t, std::string, std::vector<std::string>>> cases = {
        {3, 0, "SELECT * FROM liveload WHERE Norm = 3 AND Art = 0 ORDER BY ID", {"d2"}},
        {3, 1, "SELECT * FROM liveload WHERE Norm = 3 AND Art = 1 ORDER BY ID", {"d1"}},
        {1, 0, "SELECT * FROM liveload WHERE Norm = 1 AND Art = 0 ORDER BY ID", {}},
        {211, -1, "SELECT * FROM liveload WHERE Norm = 211 AND Art = -1 ORDER BY ID", {}},
        {-1, 1, "SELECT * FROM liveload ORDER BY Norm, ID", {"d1", "d2", "e1", "e2"}},
        // Zero and every other code below 1 take all rows; art plays no part.
        {0, 1, "SELECT * FROM liveload ORDER BY ID", {"e1", "d1", "e2", "d2"}},
        {-2, 0, "SELECT * FROM liveload ORDER BY ID", {"e1", "d1", "e2", "d2"}},
    };
    for (const auto& [norm, art, sql, zeilen] : cases) {
        SCOPED_TRACE(sql);
        EXPECT_EQ(LiveLoadQuery(norm, art), sql);
        EXPECT_EQ(Zeilen(norm, art), zeilen);
    }
}

TEST_F(LiveLoadMdb, RowIsReadNullSafeWithItsTextsSplit) {
    const std::string bez70 = std::string(62, 'x') + "ÖÖÖÖÖÖÖÖ";  // the cut falls between two-byte characters
    Add({{3, "DIN 1055-3", 0, "1", "A", kNull, kNull, 1.5, kNull},
         {3, "DIN 1055-3", 0, "2", "A", Variant(""), Variant("erste  zweite  dritte"), 2.0, Variant(1.0)},
         {3, bez70.c_str(), 0, "3", "A", Variant("   "), Variant("lang"), 3.0, Variant(0.0)},
         {3, "DIN 1055-3", 0, "4", "A", Variant("kurz"), Variant("a  "), 4.0, Variant(7.5)}});
    std::vector<LiveLoadRec> rows;
    ReadLiveLoads(3, 0, rows);
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[0], LiveLoadRec{});

    EXPECT_EQ(rows[1].Wert2, 0.0);  // Null
    EXPECT_EQ(rows[1].Kurztext, "");
    EXPECT_EQ(rows[1].Langtext, "");
    EXPECT_EQ(rows[1].BT, "");
    EXPECT_EQ(rows[1].NormBez, "DIN 1055-3" + std::string(54, ' '));
    EXPECT_EQ(FixedStringText(rows[1].NormBez), "DIN 1055-3");

    EXPECT_EQ(rows[2].Langtext, "erste\r\nzweite\r\ndritte");
    EXPECT_EQ(rows[2].Kurztext, rows[2].Langtext);
    EXPECT_EQ(rows[2].Wert2, 1.0);

    EXPECT_EQ(rows[3].NormBez, std::string(62, 'x') + "ÖÖ");  // 64 characters, 66 bytes
    EXPECT_EQ(rows[3].Kurztext, "lang");                      // blank counts as empty

    EXPECT_EQ(rows[4].Langtext, "a\r\n");
    EXPECT_EQ(rows[4].Kurztext, "kurz");
    EXPECT_EQ(rows[4].Wert, 4.0);
    EXPECT_EQ(rows[4].Wert2, 7.5);
    EXPECT_EQ(rows[4].Norm, 3);
}

TEST_F(LiveLoadMdb, StandardsListedOnceInNormOrderWithoutUnknownCodes) {
    Add({{211, "Norm 211   ", 0, "1", "A", kNull, kNull, 1.0, kNull},
         {3, "DIN 1055-3:2006-03", 0, "1", "A", kNull, kNull, 1.0, kNull},
         {99, "unbekannt", 0, "1", "A", kNull, kNull, 1.0, kNull},
         {78, "Norm 78", 1, "1", "A", kNull, kNull, 1.0, kNull},
         {3, "zweiter Name", 0, "2", "A", kNull, kNull, 1.0, kNull},
         {31, "Windnorm", 0, "1", "A", kNull, kNull, 1.0, kNull},
         {54, "EN 1991-1-1:2002", 0, "1", "A", kNull, kNull, 1.0, kNull}});
    std::vector<int16_t> codes;
    std::vector<std::string> names;
    LiveLoadNorms(codes, names);
    EXPECT_EQ(codes, (std::vector<int16_t>{0, 3, 54, 78, 211}));
    EXPECT_EQ(names, (std::vector<std::string>{"", "DIN 1055-3:2006-03", "EN 1991-1-1:2002", "Norm 78", "Norm 211"}));
}

TEST_F(LiveLoadMdb, NoDatabaseGivesEmptyLists) {
    fs::remove(program_ / "qvrl.mdb");
    std::vector<LiveLoadRec> rows{LiveLoadRec{}, LiveLoadRec{}};
    EXPECT_EQ(test::ErrorOf([&] { ReadLiveLoads(3, 0, rows); }), 0);
    EXPECT_EQ(rows.size(), 1u);
    std::vector<int16_t> codes;
    std::vector<std::string> names;
    LiveLoadNorms(codes, names);
    EXPECT_EQ(codes.size(), 1u);
    EXPECT_EQ(names.size(), 1u);
}

TEST(LiveLoadDesignValue, NoSumCodesKeepTheAdditionalLoadOut) {
    struct Case {
        int16_t norm;
        double grund, zuschlag, expected;
    };
    // 0.1 + 0.2 is 0.30000000000000004 in doubles: the sum must be the one
    // addition, compared exactly.
    const Case cases[] = {
        {3, 0.1, 0.2, 0.1 + 0.2}, {1, 1.5, 0.8, 1.5 + 0.8}, {213, 2.0, 1.2, 2.0 + 1.2}, {54, 2.0, 0.0, 2.0},
        {78, 2.0, 1.2, 2.0},      {211, 0.1, 0.2, 0.1},     {78, 0.0, 5.0, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.norm);
        EXPECT_EQ(SumsAdditionalLoad(c.norm), c.norm != 78 && c.norm != 211);
        EXPECT_EQ(LiveLoadDesignValue(c.norm, c.grund, c.zuschlag), c.expected);
    }
    EXPECT_EQ(test::ErrorOf([] { LiveLoadDesignValue(3, DBL_MAX, DBL_MAX); }), 6);
    EXPECT_EQ(test::ErrorOf([] { LiveLoadDesignValue(78, DBL_MAX, DBL_MAX); }), 0);
}

class ShippedCatalogue : public test::IsolatedTest {};

TEST_F(ShippedCatalogue, StandardsAndRowsHoldTogether) {
    std::vector<int16_t> codes;
    std::vector<std::string> names;
    LiveLoadNorms(codes, names);
    EXPECT_EQ(codes, (std::vector<int16_t>{0, 3, 50, 54}));
    EXPECT_EQ(names,
              (std::vector<std::string>{"", "DIN 1055-3:2006-03", "DIN EN 1991-1-1/NA:2010-12", "EN 1991-1-1:2002"}));

    std::vector<LiveLoadRec> all;
    ReadLiveLoads(liveload::AllNorms, 0, all);
    std::set<std::tuple<int16_t, std::string>> keys;
    for (int16_t norm : {int16_t{3}, int16_t{50}, int16_t{54}})
        for (int16_t art : {liveload::ArtGrundwert, liveload::ArtZuschlag}) {
            std::vector<LiveLoadRec> rows;
            ReadLiveLoads(norm, art, rows);
            ASSERT_GT(rows.size(), 1u) << norm << "/" << art;
            // The dialogs head a group at each change of Kategorie: a group
            // left never comes back, and the letters keep the table's order.
            std::set<std::string> groupsLeft;
            for (size_t i = 1; i < rows.size(); ++i) {
                const LiveLoadRec& r = rows[i];
                SCOPED_TRACE(std::to_string(norm) + " " + r.Zeile);
                // SetCursor finds a row by Zeile and the grid skips an empty one.
                EXPECT_TRUE(keys.insert({norm, r.Zeile}).second);
                EXPECT_FALSE(r.Kurztext.empty());
                EXPECT_GT(r.Wert, 0.0);
                EXPECT_LE(r.Wert, 7.5);
                if (art == liveload::ArtZuschlag) EXPECT_EQ(r.Wert2, 0.0);
                // The grid heads a group per Kategorie and separates by its first letter.
                else EXPECT_EQ(r.Kategorie.front(), r.Zeile.front());
                if (i > 1 && rows[i - 1].Kategorie != r.Kategorie) {
                    EXPECT_LE(rows[i - 1].Kategorie.front(), r.Kategorie.front());
                    groupsLeft.insert(rows[i - 1].Kategorie);
                }
                EXPECT_EQ(groupsLeft.count(r.Kategorie), 0u);
            }
        }
    EXPECT_EQ(keys.size() + 1, all.size());
}

TEST_F(ShippedCatalogue, SpotValuesOfEachTable) {
    struct Case {
        int16_t norm, art;
        const char* zeile;
        double q, Q;
    };
    // One row per source table; A2 has no single load (Null). The German
    // annex copies its rows from DIN 1055-3.
    const Case cases[] = {
        {3, 0, "A2", 1.5, 0.0},  {3, 0, "E3", 7.5, 10.0}, {3, 0, "Z", 4.0, 2.0},  {3, 1, "TW5", 1.2, 0.0},
        {54, 0, "B", 3.0, 4.5},  {54, 0, "E1", 7.5, 7.0}, {54, 0, "F", 2.5, 20.0}, {54, 0, "G", 5.0, 90.0},
        {54, 0, "H", 0.4, 1.0},  {54, 1, "TW1", 0.5, 0.0}, {50, 0, "A2", 1.5, 0.0}, {50, 0, "C5", 5.0, 4.0},
        {50, 0, "T3", 7.5, 3.0}, {50, 1, "TW3", 0.8, 0.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.norm) + " " + c.zeile);
        std::vector<LiveLoadRec> rows;
        ReadLiveLoads(c.norm, c.art, rows);
        const LiveLoadRec* found = nullptr;
        for (size_t i = 1; i < rows.size(); ++i)
            if (rows[i].Zeile == c.zeile) found = &rows[i];
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->Wert, c.q);
        EXPECT_EQ(found->Wert2, c.Q);
    }
}

}  // namespace
