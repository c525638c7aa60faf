// The table store on real files: the module queries against a sample
// database, row changes written and read back, the limits of a result, and
// how OpenDB falls back to copies in the temporary folder.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "store/ModuleQueries.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

using namespace qvrl;
using qvrl::test::ErrorOf;
namespace fs = std::filesystem;
using dao::dbDouble;
using dao::dbInteger;
using dao::dbLong;
using dao::dbText;

namespace {

struct Col {
    const char* name;
    int16_t type;
};

using Row = std::vector<Variant>;
const Variant N = Variant::Null();

void AddTable(Database& db, const std::string& name, const std::vector<Col>& cols, const std::vector<Row>& rows) {
    TableDef def = db.CreateTableDef(name);
    for (const Col& c : cols) def.Fields().Append(def.CreateField(c.name, c.type));
    db.TableDefs().Append(def);
    auto rs = db.OpenRecordset(name, dao::dbOpenDynaset);
    for (const Row& r : rows) {
        rs->AddNew();
        for (size_t i = 0; i < r.size(); ++i) rs->Fields().Item(static_cast<int32_t>(i)).Value(r[i]);
        rs->Update();
    }
    rs->Close();
}

// A small copy of every table the modules read.
void FillSample(Database& db) {
    AddTable(db, "en_bs_fig3", {{"dist", dbDouble}, {"2", dbDouble}, {"5", dbDouble}, {"10", dbDouble}},
             {{0.1, 1.0, 1.1, 1.2}, {1.0, 1.3, 1.4, 1.5}, {10.0, 1.6, 1.7, 1.8}, {100.0, 1.9, 2.0, 2.1}});
    AddTable(db, "en_bs_fig4", {{"dist", dbDouble}, {"2", dbDouble}},
             {{0.5, 0.9}, {1.0, 0.8}, {1.0, 0.7}, {5.0, 0.6}});
    AddTable(db, "cpe",
             {{"ID", dbLong}, {"Typ", dbInteger}, {"Norm", dbInteger}, {"Theta", dbDouble}, {"TrTyp", dbInteger},
              {"Alpha", dbDouble}, {"HPzuH", dbDouble}, {"RzuH", dbDouble}, {"HzuD", dbDouble}},
             {{1, 4, 3, 90.0, 0, 30.0, N, N, N},
              {2, 4, 3, 90.0, 0, 5.0, N, N, N},
              {3, 4, 3, 0.0, 0, 15.0, N, N, N},
              {4, 4, 1, 90.0, 0, 10.0, N, N, N},
              {5, 5, 3, 0.0, 0, 45.0, N, N, N},
              {6, 5, 3, 0.0, 0, 15.0, N, N, N},
              {7, 3, 3, 0.0, 0, 10.0, N, N, N},
              {8, 2, 3, 0.0, 2, 0.0, 0.1, N, N},
              {9, 2, 3, 0.0, 2, 0.0, 0.025, N, N},
              {10, 1, 3, 0.0, 0, N, N, N, 1.0},
              {11, 1, 3, 0.0, 0, N, N, N, 5.0},
              {12, 6, 3, 0.0, 1, N, N, N, N},
              {13, 6, 3, 90.0, 1, N, N, N, N},
              {14, 6, 3, 0.0, 0, N, N, N, N}});
    AddTable(db, "slz",
             {{"ID", dbLong}, {"Bundesland", dbInteger}, {"RegBez", dbInteger}, {"Kreis", dbInteger},
              {"Landkreis", dbText}, {"Gemeinde", dbText}, {"KEY", dbDouble}, {"Schneelastzone", dbText},
              {"Fußnote(n)", dbText}},
             {{1, 8, 1, 15, "Reutlingen", "Pfullingen", 8415059.0, "2", N},
              {2, 8, 1, 15, "Reutlingen", "Eningen", 8415019.0, "2", "1)"},
              {3, 8, 2, 20, "Alb-Donau", "Ehingen", 8425033.0, "2", N},
              {4, 9, 1, 62, "München", "Garching", 9184119.0, "1a", N}});
    AddTable(db, "wlz",
             {{"ID", dbLong}, {"LandID", dbInteger}, {"BezID", dbInteger}, {"Bezirk", dbText}, {"KreisID", dbInteger},
              {"Kreis", dbText}, {"Gemeinde", dbText}, {"WLZ", dbText}},
             {{1, 15, 2, "Tübingen", 3, "Reutlingen", "Pfullingen", "1"},
              {2, 15, 2, "Tübingen", 3, "Reutlingen", "Eningen", "1"},
              {3, 15, 1, "Stuttgart", 4, "Esslingen", "Aichtal", "2"},
              {4, 16, 1, "Oberbayern", 5, "München", "Garching", "1"}});
    const std::vector<Col> town = {{"ID", dbLong},      {"AGS", dbText},    {"BL_ID", dbText},    {"BL_Name", dbText},
                                   {"Reg_ID", dbText},  {"Reg_Name", dbText}, {"LK_ID", dbText},  {"LK_Name", dbText},
                                   {"Gem_ID", dbText},  {"Gemeinde", dbText}, {"PLZ", dbText},    {"WZ", dbText},
                                   {"SZ", dbText},      {"BemW", dbText},   {"BemS", dbText}};
    AddTable(db, "slzwlz", town,
             {{1, "09162000", "09", "Bayern", "1", "Oberbayern", "62", "München", "000", "München", "80331", "1", "1a", N, N},
              {2, "09184119", "09", "Bayern", "1", "Oberbayern", "84", "München Land", "119", "Garching b.München",
               "85748", "1", "1a", N, N},
              {3, "09162999", "09", "Bayern", "1", "Oberbayern", "62", "München", "999", "", "80999", "", "", N, N},
              {4, "08415059", "08", "Baden-Württemberg", "4", "Tübingen", "15", "Reutlingen", "059", "Pfullingen",
               "72793", "1", "2", N, N},
              {5, "03241001", "03", "Niedersachsen", "2", "Hannover", "41", "Region Hannover", "001", "Hannover",
               "30159", "1", "2", N, N},
              {6, "09562000", "09", "Bayern", "5", "Mittelfranken", "62", "Erlangen", "000", "Erlangen", "91052", "1",
               "2", N, N}});
    AddTable(db, "slzwlz1",
             {{"ID", dbLong}, {"Land_ID", dbInteger}, {"Land", dbText}, {"Land_ShortName", dbText}, {"BL_ID", dbText},
              {"BL_Name", dbText}, {"BL_ShortName", dbText}, {"Reg_ID", dbText}, {"Reg_Name", dbText},
              {"LK_ID", dbText}, {"LK_Name", dbText}, {"Gemeinde", dbText}, {"AGS", dbText}, {"PLZ", dbText},
              {"SZ", dbText}, {"qb", dbDouble}, {"vb", dbDouble}, {"sk", dbDouble}, {"hNN", dbDouble}},
             {{1, 51, "Österreich", "AT", "3", "Niederösterreich", "NÖ", "12", "Mödling", "01", "Mödling", "Mödling",
               "31701", "2340", "2", 0.39, 25.1, 1.5, 246.0},
              {2, 51, "Österreich", "AT", "3", "Niederösterreich", "NÖ", "12", "Mödling", "02", "Mödling",
               "Perchtoldsdorf", "31702", "2380", "2", 0.39, N, 1.6, 0.0},
              {3, 51, "Österreich", "AT", "6", "Steiermark", "ST", "01", "Graz", "01", "Graz", "Graz", "60101", "8010",
               "2", 0.33, N, 1.65, 353.0},
              {4, 53, "United Kingdom", "UK", "00", "England", "EN", "1", "London", "01", "Westminster",
               "Westminster", "10001", "00000", "", N, 21.5, N, N},
              {5, 50, "Deutschland", "DE", "09", "Bayern", "BY", "1", "Oberbayern", "62", "München", "München",
               "09162000", "80331", "1a", 0.32, 22.5, 0.85, 519.0}});
    AddTable(db, "schnee",
             {{"ID", dbLong}, {"BL_ID", dbText}, {"Gemeinde", dbText}, {"hNN", dbDouble}, {"SZ", dbText},
              {"sk", dbDouble}},
             {{1, "6", "Graz", 353.0, "2", 1.65}, {2, "6", "Graz-Umgebung", 400.0, "2", 1.8}, {3, "3", "Graz", 1.0, "1", 1.0}});
    AddTable(db, "liveload",
             {{"ID", dbLong}, {"Norm", dbInteger}, {"NormBez", dbText}, {"Art", dbInteger}, {"Zeile", dbText},
              {"Wert", dbDouble}, {"Wert2", dbDouble}},
             {{3, 3, "DIN 1055-3", 0, "2", 1.5, 1.0},
              {1, 3, "DIN 1055-3", 0, "1", 1.0, N},
              {4, 3, "DIN 1055-3", 1, "9", 0.5, N},
              {2, 1, "DIN 1055-3:1971", 0, "1", 2.0, N}});
}

std::vector<double> Keys(Recordset& rs, const std::string& key) {
    std::vector<double> r;
    if (rs.EOF_() || rs.BOF()) return r;
    rs.MoveLast();
    const int16_t n = rs.RecordCount();
    rs.MoveFirst();
    for (int16_t i = 0; i < n; ++i) {
        r.push_back(NzNumber(rs.Fields(key)));
        if (!rs.EOF_()) rs.MoveNext();
    }
    return r;
}

struct WhereCase {
    const char* where;
    std::vector<double> ids;
};

class DAOTest : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        dir_ = test::FreshFolder("db");
        tmp_ = test::FreshFolder("tmp");
        const char* old = std::getenv("TMPDIR");
        oldTmp_ = old ? old : "";
        hadTmp_ = old != nullptr;
        setenv("TMPDIR", tmp_.c_str(), 1);
        platform_ = std::make_shared<HeadlessPlatform>();
        SetPlatform(platform_);
    }
    void TearDown() override {
        if (hadTmp_) setenv("TMPDIR", oldTmp_.c_str(), 1);
        else unsetenv("TMPDIR");
        IsolatedTest::TearDown();
    }
    std::string Path(const std::string& name) const { return (dir_ / name).string(); }
    std::shared_ptr<Database> Sample(const std::string& name = "qvrl.mdb") {
        {
            auto db = DBEngine::CreateDatabase(Path(name), dao::dbLangGeneral);
            db->BeginTrans();
            FillSample(*db);
            db->CommitTrans();
        }
        return DBEngine::OpenDatabase(Path(name), {}, true);
    }

    fs::path dir_, tmp_;
    std::string oldTmp_;
    bool hadTmp_ = false;
    std::shared_ptr<HeadlessPlatform> platform_;
};

TEST_F(DAOTest, EveryModuleQueryFindsItsRows) {
    auto db = Sample();
    for (const auto& m : test::ModuleQueries()) {
        SCOPED_TRACE(m.text);
        std::unique_ptr<Recordset> rs;
        ASSERT_NO_THROW(rs = db->OpenRecordset(m.text, dao::dbOpenSnapshot));
        EXPECT_EQ(Keys(*rs, m.key), m.rows);
        rs->Close();
    }
}

TEST_F(DAOTest, FigureRowsReadAsNumbersInTableOrder) {
    auto db = Sample();
    auto rs = db->OpenRecordset("SELECT TOP 1 * FROM en_bs_fig3 WHERE (dist-0.5)>=0 ORDER BY (dist-0.5)",
                                dao::dbOpenSnapshot);
    ASSERT_EQ(rs->Fields().Count(), 4);
    const char* names[] = {"dist", "2", "5", "10"};
    for (int32_t i = 0; i < 4; ++i) EXPECT_EQ(rs->Fields().Item(i).Name(), names[i]);
    EXPECT_EQ(rs->Fields("dist").Value(), Variant(1.0));
    EXPECT_EQ(rs->Fields("5").Value(), Variant(1.4));
    // The same columns, in the same order, from the table definition.
    TableDef& def = db->TableDefs().Item("EN_BS_FIG3");
    ASSERT_EQ(def.Fields().Count(), 4);
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(def.Fields().Item(i).Name(), names[i]);
        EXPECT_EQ(def.Fields().Item(i).Type(), dbDouble);
    }
    EXPECT_EQ(ErrorOf([&] { (void)def.Fields().Item(0).Value(); }), dao::errInvalidOperation);
}

// Text compares case-blind, umlauts included; arithmetic is floating as in Jet.
TEST_F(DAOTest, WhereClausesSelectAsJetDoes) {
    auto db = Sample();
    const WhereCase cases[] = {
        {"slzwlz WHERE Gemeinde = 'MÜNCHEN'", {1}},
        {"slzwlz WHERE Gemeinde = 'münchen'", {1}},
        {"slzwlz WHERE Gemeinde = 'Munchen'", {}},
        {"slzwlz WHERE LK_Name = 'münchen land'", {2}},
        {"slzwlz WHERE BL_Name = 'BADEN-WÜRTTEMBERG'", {4}},
        {"slzwlz WHERE Gemeinde like 'GARCHING*'", {2}},
        {"slzwlz WHERE Gemeinde > 'm'", {1, 4}},
        {"slzwlz WHERE Gemeinde <> 'münchen' AND BL_ID = '09'", {3, 6, 2}},
        {"slzwlz WHERE AGS >= '09' AND AGS < '09500000'", {3, 2, 1}},
        {"cpe WHERE ID / 4 = 0.25", {1}},  // no integer division
        {"cpe WHERE (ID - 0.5) * 2 = 13", {7}},
        {"cpe WHERE -ID < -13", {14}},
        {"cpe WHERE Typ * 10 + Norm = 43 AND Theta = 90", {1, 2}},
        {"cpe WHERE HzuD / 2 >= 2.5", {11}},
    };
    for (const WhereCase& c : cases) {
        SCOPED_TRACE(c.where);
        const std::string order = c.where[0] == 's' ? " ORDER BY Gemeinde, ID" : " ORDER BY ID";
        auto rs = db->OpenRecordset(std::string("SELECT * FROM ") + c.where + order, dao::dbOpenSnapshot);
        EXPECT_EQ(Keys(*rs, "ID"), c.ids);
    }
    // Keywords, table and column names are case-blind as well.
    auto rs = db->OpenRecordset("select * from SLZWLZ where gemeinde like 'mün*' order by id", dao::dbOpenSnapshot);
    EXPECT_EQ(Keys(*rs, "id"), (std::vector<double>{1}));
    EXPECT_EQ(rs->Fields("GEMEINDE").Name(), "Gemeinde");
}

TEST_F(DAOTest, ArithmeticTooDeepForSQLiteIs3075) {
    auto db = Sample();
    // Alternating products and quotients nest a CAST at every other step.
    auto chain = [](int terms) {
        std::string e = "ID";
        for (int i = 0; i < terms; ++i) e += i % 2 ? " * 2" : " / 3";
        return e + " > 0";
    };
    auto rs = db->OpenRecordset("SELECT * FROM cpe WHERE " + chain(20) + " ORDER BY ID", dao::dbOpenSnapshot);
    rs->MoveLast();
    EXPECT_EQ(rs->RecordCount(), 14);
    EXPECT_EQ(ErrorOf([&] { db->OpenRecordset("SELECT * FROM cpe WHERE " + chain(120), dao::dbOpenSnapshot); }),
              err::QuerySyntax);
    EXPECT_EQ(ErrorOf([&] { rs->FindFirst(chain(120)); }), err::QuerySyntax);
    rs->FindFirst(chain(20));
    EXPECT_FALSE(rs->NoMatch());
}

TEST_F(DAOTest, FilterTextsWithQuotesNeverChangeTheFile) {
    auto db = Sample();
    for (const char* name : {"O'Brien", "x' OR '1'='1", "'; DROP TABLE slzwlz; --"}) {
        SCOPED_TRACE(name);
        const std::string sql = std::string("SELECT * FROM slzwlz WHERE Gemeinde like '") + name + "*' ORDER BY Gemeinde";
        EXPECT_EQ(ErrorOf([&] { db->OpenRecordset(sql, dao::dbOpenSnapshot); }), err::QuerySyntax);
    }
    // The same texts as values of a search stay values.
    auto hits = db->OpenRecordset("SELECT * FROM slzwlz WHERE Gemeinde = '''; DROP TABLE slzwlz; --'",
                                  dao::dbOpenSnapshot);
    EXPECT_TRUE(hits->EOF_());
    db.reset();
    auto again = DBEngine::OpenDatabase(Path("qvrl.mdb"), {}, true);
    auto rs = again->OpenRecordset("SELECT * FROM slzwlz", dao::dbOpenSnapshot);
    rs->MoveLast();
    EXPECT_EQ(rs->RecordCount(), 6);
    EXPECT_EQ(again->TableDefs().Count(), 9);
}

TEST_F(DAOTest, UnknownNamesAndMissingRows) {
    auto db = Sample();
    struct Case {
        const char* sql;
        int32_t error;
    };
    const Case cases[] = {
        {"SELECT * FROM nosuch", err::TableNotFound},
        {"nosuch", err::TableNotFound},
        {"SELECT nosuch FROM cpe", err::ItemNotFound},
        {"SELECT * FROM cpe WHERE nosuch = 1", err::ItemNotFound},
        {"SELECT * FROM cpe ORDER BY nosuch", err::ItemNotFound},
        {"SELECT * FROM cpe WHERE ID = 1 OR ID = 2", err::QuerySyntax},
        {"SELECT * FROM sqlite_schema", err::TableNotFound},
    };
    for (const Case& c : cases) EXPECT_EQ(ErrorOf([&] { db->OpenRecordset(c.sql, dao::dbOpenSnapshot); }), c.error) << c.sql;
    EXPECT_EQ(ErrorOf([&] { db->OpenRecordset("cpe", 1); }), dao::errInvalidArgument);

    auto empty = db->OpenRecordset("SELECT * FROM cpe WHERE ID = 99", dao::dbOpenSnapshot);
    EXPECT_TRUE(empty->EOF_());
    EXPECT_TRUE(empty->BOF());
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_EQ(ErrorOf([&] { (void)empty->Fields("ID").Value(); }), err::NoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { empty->MoveFirst(); }), err::NoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { empty->MoveNext(); }), err::NoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { (void)empty->Fields("nosuch"); }), err::ItemNotFound);

    auto one = db->OpenRecordset("SELECT * FROM cpe WHERE ID = 7", dao::dbOpenSnapshot);
    EXPECT_FALSE(one->EOF_());
    one->MoveNext();
    EXPECT_TRUE(one->EOF_());
    EXPECT_FALSE(one->BOF());
    EXPECT_EQ(ErrorOf([&] { (void)one->Fields("ID").Value(); }), err::NoCurrentRecord);
    EXPECT_EQ(ErrorOf([&] { one->MoveNext(); }), err::NoCurrentRecord);
    one->MovePrevious();
    EXPECT_EQ(one->Fields("ID").Value(), Variant(int32_t{7}));
    one->Close();
    EXPECT_EQ(ErrorOf([&] { (void)one->EOF_(); }), dao::errObjectClosed);
}

TEST_F(DAOTest, RecordCountIsRightOnlyAfterMoveLast) {
    auto db = Sample();
    auto rs = db->OpenRecordset("SELECT * FROM cpe ORDER BY ID", dao::dbOpenSnapshot);
    EXPECT_EQ(rs->RecordCount(), 1);
    rs->MoveNext();
    rs->MoveNext();
    EXPECT_EQ(rs->RecordCount(), 3);
    rs->MoveFirst();
    EXPECT_EQ(rs->RecordCount(), 3);
    rs->MoveLast();
    EXPECT_EQ(rs->RecordCount(), 14);
    EXPECT_EQ(rs->Fields("ID").Value(), Variant(int32_t{14}));
}

TEST_F(DAOTest, CountAbove32767RowsOverflows) {
    auto db = DBEngine::CreateDatabase(Path("big.mdb"), dao::dbLangGeneral);
    AddTable(*db, "t", {{"ID", dbLong}}, {});
    db->BeginTrans();
    {
        auto rs = db->OpenRecordset("t", dao::dbOpenDynaset);
        for (int32_t i = 1; i <= 32767; ++i) {
            rs->AddNew();
            rs->Fields("ID").Value(Variant(i));
            rs->Update();
        }
    }
    db->CommitTrans();
    auto full = db->OpenRecordset("SELECT * FROM t", dao::dbOpenSnapshot);
    full->MoveLast();
    EXPECT_EQ(full->RecordCount(), 32767);
    EXPECT_EQ(full->Fields("ID").Value(), Variant(int32_t{32767}));

    auto rs = db->OpenRecordset("t", dao::dbOpenDynaset);
    rs->AddNew();
    rs->Fields("ID").Value(Variant(int32_t{32768}));
    rs->Update();
    auto over = db->OpenRecordset("SELECT * FROM t WHERE ID > 0", dao::dbOpenSnapshot);
    EXPECT_EQ(over->RecordCount(), 1);  // fine until the end is reached
    over->MoveLast();
    EXPECT_EQ(ErrorOf([&] { over->RecordCount(); }), err::Overflow);
}

TEST_F(DAOTest, NullReadsAsZeroAndEmptyText) {
    auto db = Sample();
    auto rs = db->OpenRecordset("SELECT * FROM slzwlz1 WHERE AGS = '31702'", dao::dbOpenSnapshot);
    EXPECT_TRUE(rs->Fields("vb").Value().isNull());
    EXPECT_EQ(NzNumber(rs->Fields("vb")), 0.0);
    EXPECT_EQ(NzNumber(rs->Fields("sk")), 1.6);
    EXPECT_EQ(NzText(rs->Fields("Gemeinde")), "Perchtoldsdorf");
    auto uk = db->OpenRecordset("SELECT * FROM slzwlz1 WHERE Land_ID = 53", dao::dbOpenSnapshot);
    EXPECT_EQ(NzNumber(uk->Fields("qb")), 0.0);
    EXPECT_EQ(NzText(uk->Fields("SZ")), "");
    EXPECT_EQ(NzNumber(uk->Fields("PLZ")), 0.0);  // "00000" is a number: 0
    auto town = db->OpenRecordset("SELECT * FROM slzwlz WHERE ID = 1", dao::dbOpenSnapshot);
    EXPECT_EQ(NzText(town->Fields("BemW")), "");
    EXPECT_EQ(NzNumber(town->Fields("BL_Name")), 0.0);  // not a number
    EXPECT_EQ(NzNumber(town->Fields("AGS")), 9162000.0);
    EXPECT_EQ(NzNumber(Variant()), 0.0);
    EXPECT_EQ(NzText(Variant(int16_t{5})), "5");
    // Integer columns read as the 16- and 32-bit values of their type.
    auto cpe = db->OpenRecordset("SELECT * FROM cpe WHERE ID = 8", dao::dbOpenSnapshot);
    EXPECT_EQ(cpe->Fields("Typ").Value(), Variant(int16_t{2}));
    EXPECT_EQ(cpe->Fields("ID").Value(), Variant(int32_t{8}));
    EXPECT_EQ(cpe->Fields("HPzuH").Value(), Variant(0.1));
}

TEST_F(DAOTest, FindFirstSearchesTheResult) {
    auto db = Sample();
    auto rs = db->OpenRecordset("SELECT * FROM slzwlz ORDER BY ID", dao::dbOpenSnapshot);
    rs->FindFirst("Gemeinde like 'garching*' AND PLZ = '85748'");
    EXPECT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Fields("ID").Value(), Variant(int32_t{2}));
    rs->FindFirst("ID > 4");
    EXPECT_EQ(rs->Fields("ID").Value(), Variant(int32_t{5}));
    rs->FindFirst("Gemeinde = 'nowhere'");
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_EQ(rs->Fields("ID").Value(), Variant(int32_t{5}));  // position kept
    rs->FindFirst("AGS = 9162000");  // a text column takes a number as text
    EXPECT_TRUE(rs->NoMatch());
    rs->FindFirst("AGS = '09162000'");
    EXPECT_EQ(rs->Fields("ID").Value(), Variant(int32_t{1}));
    EXPECT_EQ(ErrorOf([&] { rs->FindFirst("nosuch = 1"); }), err::ItemNotFound);
    EXPECT_EQ(ErrorOf([&] { rs->FindFirst("ID = 1; DELETE FROM slzwlz"); }), err::QuerySyntax);
}

TEST_F(DAOTest, RowChangesAreWrittenAndReadBack) {
    {
        auto db = DBEngine::CreateDatabase(Path("user.mdb"), dao::dbLangGeneral);
        TableDef def = db->CreateTableDef("slzwlz");
        for (const char* c : {"AGS", "Gemeinde", "WZ"}) def.Fields().Append(def.CreateField(c, dbText));
        def.Fields().Append(def.CreateField("ID", dbLong));
        db->TableDefs().Append(def);
        auto t = db->OpenRecordset("slzwlz", dao::dbOpenDynaset);
        for (int32_t i = 1; i <= 3; ++i) {
            t->AddNew();
            t->Fields("AGS").Value(Variant("09162000"));
            t->Fields("Gemeinde").Value(Variant("München " + std::to_string(i)));
            t->Fields("ID").Value(Variant(i));
            t->Update();
        }
        EXPECT_EQ(t->RecordCount(), 3);  // the added rows count
        t->Close();

        auto rs = db->OpenRecordset("SELECT * FROM slzwlz WHERE AGS='09162000'", dao::dbOpenDynaset);
        rs->MoveLast();
        rs->Edit();
        rs->Fields("WZ").Value(Variant(int16_t{2}));  // a number into a text column is its text
        EXPECT_EQ(rs->Fields("WZ").Value(), Variant(int16_t{2}));
        rs->Update();
        EXPECT_EQ(rs->Fields("WZ").Value(), Variant("2"));
        rs->MoveFirst();
        rs->Delete();
        EXPECT_EQ(ErrorOf([&] { (void)rs->Fields("ID").Value(); }), dao::errRecordDeleted);
        rs->MoveNext();
        EXPECT_EQ(rs->Fields("ID").Value(), Variant(int32_t{2}));
        rs->Edit();
        rs->Fields("Gemeinde").Value(Variant("changed"));
        rs->CancelUpdate();
        EXPECT_EQ(ErrorOf([&] { rs->Update(); }), dao::errUpdateWithoutEdit);
        EXPECT_EQ(ErrorOf([&] { rs->Fields("ID").Value(Variant(int32_t{9})); }), dao::errUpdateWithoutEdit);
        rs->Close();
    }
    auto db = DBEngine::OpenDatabase(Path("user.mdb"), {}, true);
    auto rs = db->OpenRecordset("SELECT * FROM slzwlz ORDER BY ID", dao::dbOpenSnapshot);
    EXPECT_EQ(Keys(*rs, "ID"), (std::vector<double>{2, 3}));
    rs->MoveFirst();
    EXPECT_EQ(rs->Fields("Gemeinde").Value(), Variant("München 2"));
    EXPECT_TRUE(rs->Fields("WZ").Value().isNull());
    rs->MoveNext();
    EXPECT_EQ(rs->Fields("WZ").Value(), Variant("2"));
}

TEST_F(DAOTest, WritesNeedADynasetOfAWritableDatabase) {
    auto db = Sample();  // opened read-only
    auto dyn = db->OpenRecordset("SELECT * FROM slzwlz WHERE ID = 1", dao::dbOpenDynaset);
    EXPECT_EQ(ErrorOf([&] { dyn->Edit(); }), dao::errReadOnly);
    EXPECT_EQ(ErrorOf([&] { dyn->AddNew(); }), dao::errReadOnly);
    EXPECT_EQ(ErrorOf([&] { dyn->Delete(); }), dao::errReadOnly);
    EXPECT_FALSE(db->Updatable());
    EXPECT_EQ(ErrorOf([&] { db->TableDefs().Delete("cpe"); }), dao::errReadOnly);

    auto rw = DBEngine::OpenDatabase(Path("qvrl.mdb"));
    auto snap = rw->OpenRecordset("SELECT * FROM slzwlz WHERE ID = 1", dao::dbOpenSnapshot);
    EXPECT_EQ(ErrorOf([&] { snap->Edit(); }), dao::errReadOnly);
    auto ok = rw->OpenRecordset("SELECT * FROM cpe WHERE ID = 1", dao::dbOpenDynaset);
    ok->Edit();
    EXPECT_EQ(ErrorOf([&] { ok->Fields("Typ").Value(Variant(40000.0)); ok->Update(); }), dao::errNumericOverflow);
    ok->Edit();
    EXPECT_EQ(ErrorOf([&] { ok->Fields("Alpha").Value(Variant("steep")); ok->Update(); }), dao::errConversion);
    ok->Edit();
    ok->Fields("Alpha").Value(Variant("2.5"));
    ok->Fields("Typ").Value(Variant(2.5));  // stored as Jet stores it: half to even
    ok->Update();
    EXPECT_EQ(ok->Fields("Alpha").Value(), Variant(2.5));
    EXPECT_EQ(ok->Fields("Typ").Value(), Variant(int16_t{2}));
}

// A read-only connection answers a repeated query from what it read before;
// a commit of another connection must still show at the next open.
TEST_F(DAOTest, RepeatedReadOnlyQuerySeesOtherConnectionsCommits) {
    auto ro = Sample();
    const std::string q = "SELECT TOP 1 * FROM en_bs_fig3 WHERE (dist-0.5)>=0 ORDER BY (dist-0.5)";
    auto first = ro->OpenRecordset(q, dao::dbOpenSnapshot);
    ASSERT_EQ(first->Fields("5").Value(), Variant(1.4));
    first->Close();  // closing one answer leaves the next one whole
    auto again = ro->OpenRecordset(q, dao::dbOpenSnapshot);
    EXPECT_EQ(again->Fields("5").Value(), Variant(1.4));
    again->MoveLast();
    EXPECT_EQ(again->RecordCount(), 1);

    auto rw = DBEngine::OpenDatabase(Path("qvrl.mdb"));
    auto edit = rw->OpenRecordset("SELECT * FROM en_bs_fig3 WHERE dist = 1", dao::dbOpenDynaset);
    edit->Edit();
    edit->Fields("5").Value(Variant(7.5));
    edit->Update();
    EXPECT_EQ(ro->OpenRecordset(q, dao::dbOpenSnapshot)->Fields("5").Value(), Variant(7.5));

    auto all = rw->OpenRecordset("en_bs_fig3", dao::dbOpenDynaset);
    while (!all->EOF_()) {
        all->Delete();
        all->MoveNext();
    }
    EXPECT_TRUE(ro->OpenRecordset(q, dao::dbOpenSnapshot)->EOF_());
}

TEST_F(DAOTest, TransactionsLandWholeOrNotAtAll) {
    auto db = DBEngine::CreateDatabase(Path("t.mdb"), dao::dbLangGeneral);
    AddTable(*db, "a", {{"x", dbDouble}}, {{1.0}});
    db->BeginTrans();
    db->TableDefs().Delete("a");
    AddTable(*db, "a", {{"y", dbText}}, {{"new"}});
    AddTable(*db, "b", {{"z", dbDouble}}, {{2.0}});
    db->Rollback();
    auto& defs = db->TableDefs();
    ASSERT_EQ(defs.Count(), 1);
    EXPECT_EQ(defs.Item(0).Fields().Item(0).Name(), "x");
    EXPECT_EQ(ErrorOf([&] { db->CommitTrans(); }), dao::errNoTransaction);
    EXPECT_EQ(ErrorOf([&] { (void)db->TableDefs().Item("b"); }), err::ItemNotFound);
}

TEST_F(DAOTest, TableDefinitionsAreChecked) {
    auto db = DBEngine::CreateDatabase(Path("d.mdb"), dao::dbLangGeneral);
    TableDef def = db->CreateTableDef("t");
    EXPECT_EQ(ErrorOf([&] { db->TableDefs().Append(def); }), dao::errNoFields);
    def.Fields().Append(def.CreateField("a", dbText));
    EXPECT_EQ(ErrorOf([&] { def.Fields().Append(def.CreateField("A", dbLong)); }), dao::errFieldTwice);
    EXPECT_EQ(ErrorOf([&] { (void)def.CreateField("b", 99); }), dao::errInvalidFieldType);
    EXPECT_EQ(ErrorOf([&] { def.Fields().Append(def.CreateField("b\"c", dbText)); }), dao::errInvalidArgument);
    db->TableDefs().Append(def);
    EXPECT_EQ(ErrorOf([&] { db->TableDefs().Append(def); }), dao::errTableExists);
    EXPECT_EQ(ErrorOf([&] { db->TableDefs().Item("t").Fields().Append(Field("z", dbText)); }),
              dao::errInvalidOperation);
    EXPECT_EQ(ErrorOf([&] { DBEngine::CreateDatabase(Path("d.mdb"), dao::dbLangGeneral); }), dao::errDatabaseExists);
    EXPECT_EQ(ErrorOf([&] { DBEngine::CreateDatabase(Path("e.mdb"), ";LANGID=0x0407;CP=1252;COUNTRY=0"); }),
              dao::errInvalidArgument);
    EXPECT_FALSE(fs::exists(Path("e.mdb")));
}

TEST_F(DAOTest, IndexesComeWithTheirTable) {
    auto db = DBEngine::CreateDatabase(Path("i.mdb"), dao::dbLangGeneral);
    TableDef def = db->CreateTableDef("slzwlz");
    def.Fields().Append(def.CreateField("ID", dbLong));
    def.Fields().Append(def.CreateField("AGS", dbText));
    Index key = def.CreateIndex("byAGS");
    key.Unique(true);
    key.Fields().Append(key.CreateField("ags"));
    def.Indexes().Append(key);
    Index wrong = def.CreateIndex("byNothing");
    wrong.Fields().Append(wrong.CreateField("nosuch"));
    TableDef bad = def;
    bad.Indexes().Append(wrong);
    EXPECT_EQ(ErrorOf([&] { db->TableDefs().Append(bad); }), err::ItemNotFound);
    EXPECT_EQ(db->TableDefs().Count(), 0);  // nothing of it was left
    db->TableDefs().Append(def);

    Index& stored = db->TableDefs().Item("slzwlz").Indexes().Item("BYAGS");
    EXPECT_TRUE(stored.Unique());
    ASSERT_EQ(stored.Fields().Count(), 1);
    EXPECT_EQ(stored.Fields().Item(0).Name(), "AGS");
    EXPECT_EQ(ErrorOf([&] { db->TableDefs().Item("slzwlz").Indexes().Append(key); }), dao::errInvalidOperation);

    auto rs = db->OpenRecordset("slzwlz", dao::dbOpenDynaset);
    rs->AddNew();
    rs->Fields("AGS").Value(Variant("09162000"));
    rs->Update();
    rs->AddNew();
    rs->Fields("AGS").Value(Variant("09162000"));
    EXPECT_EQ(ErrorOf([&] { rs->Update(); }), dao::errDuplicateKey);
    rs->CancelUpdate();
    auto found = db->OpenRecordset("SELECT * FROM slzwlz WHERE AGS = '09162000'", dao::dbOpenSnapshot);
    found->MoveLast();
    EXPECT_EQ(found->RecordCount(), 1);
}

// ---------------------------------------------------------------------------
// OpenDB

TEST_F(DAOTest, OpenDBOnALockedFileTurnsToTheTemporaryFolder) {
    Sample().reset();
    Sample("qvrlslz.mdb").reset();
    // A writer that holds the file exclusively.
    auto holder = DBEngine::OpenDatabase(Path("qvrl.mdb"), true, false);
    EXPECT_EQ(ErrorOf([&] { DBEngine::OpenDatabase(Path("qvrl.mdb"), {}, true); }), dao::errFileInUse);

    auto db = OpenDB(Path("qvrl.mdb"), {}, true);
    EXPECT_TRUE(State().CopyToTemp);
    EXPECT_EQ(db->Name(), tmp_.string() + "/qvrl.mdb");
    EXPECT_TRUE(platform_->Messages().empty());
    auto rs = db->OpenRecordset("SELECT * FROM cpe WHERE Typ = 4 AND Norm = 3 AND Theta = 90 ORDER BY Alpha",
                                dao::dbOpenSnapshot);
    EXPECT_EQ(Keys(*rs, "ID"), (std::vector<double>{2, 1}));

    // Another file, not locked, goes through the temporary folder as well.
    auto slz = OpenDB(Path("qvrlslz.mdb"), {}, true);
    EXPECT_EQ(slz->Name(), tmp_.string() + "/qvrlslz.mdb");
    EXPECT_TRUE(fs::exists(tmp_ / "qvrlslz.mdb"));
    EXPECT_FALSE(fs::exists(tmp_ / "qvrlslz.mdb.part"));
}

TEST_F(DAOTest, OpenDBFindsAnOlderCopyAndOpensThat) {
    // A copy from an earlier run lies in the temporary folder.
    {
        auto old = DBEngine::CreateDatabase((tmp_ / "qvrl.mdb").string(), dao::dbLangGeneral);
        AddTable(*old, "marker", {{"run", dbText}}, {{"earlier"}});
    }
    Sample().reset();
    State().CopyToTemp = true;
    auto db = OpenDB(Path("qvrl.mdb"), {}, true);
    EXPECT_EQ(db->Name(), tmp_.string() + "/qvrl.mdb");
    EXPECT_EQ(db->TableDefs().Count(), 1);
    EXPECT_EQ(db->TableDefs().Item(0).Name(), "marker");
    // The new copy went beside it under another name.
    auto fresh = DBEngine::OpenDatabase((tmp_ / "qvrl (2).mdb").string(), {}, true);
    EXPECT_EQ(fresh->TableDefs().Count(), 9);
}

// A missing file fails at once; a damaged one only after its copy fails too.
TEST_F(DAOTest, OpenDBFailuresSayWhichFileAndWhy) {
    test::WriteFile(Path("qvrl.mdb"), std::string(4096, 'x'));
    const struct { const char* file; int32_t error; std::string says; bool copied; } cases[] = {
        {"nothere.mdb", err::FileNotFound, "Err.53\nFile not found", false},
        {"qvrl.mdb", dao::errUnrecognizedFormat,
         "Err.3343\nUnrecognized database format '" + tmp_.string() + "/qvrl.mdb'.", true},
    };
    for (const auto& c : cases) {
        platform_->Clear();
        EXPECT_EQ(ErrorOf([&] { OpenDB(Path(c.file), {}, true); }), c.error);
        EXPECT_EQ(State().CopyToTemp, c.copied);
        ASSERT_EQ(platform_->Messages().size(), 1u);
        EXPECT_EQ(platform_->Messages()[0].text, Path(c.file) + " cannot be opened \n" + c.says);
        EXPECT_EQ(platform_->Messages()[0].flags, mb::Critical);
    }

    // An empty file is no database either.
    test::WriteFile(Path("empty.mdb"), "");
    EXPECT_EQ(ErrorOf([&] { DBEngine::OpenDatabase(Path("empty.mdb")); }), dao::errUnrecognizedFormat);
    EXPECT_EQ(ErrorOf([&] { DBEngine::OpenDatabase(Path("none.mdb")); }), dao::errCouldNotFindFile);
    EXPECT_EQ(ErrorOf([&] { DBEngine::OpenDatabase(Path("empty.mdb"), {}, true, ";pwd=secret"); }),
              dao::errInvalidArgument);
}

TEST_F(DAOTest, CopyFileShellAndItsList) {
    struct Case {
        std::string in, out;
    };
    const Case lists[] = {
        {"a", std::string("a\0\0", 3)},
        {std::string("a\0", 2), std::string("a\0\0", 3)},
        {std::string("a\0\0", 3), std::string("a\0\0", 3)},
        {"", std::string("\0\0", 2)},
    };
    for (const Case& c : lists) {
        std::string s = c.in;
        TerminateFromList(s);
        EXPECT_EQ(s, c.out);
    }
    test::WriteFile(dir_ / "one.mdb", "1");
    test::WriteFile(dir_ / "two.mdb", "2");
    test::WriteFile(dir_ / "note.txt", "n");
    fs::create_directories(dir_ / "sub.mdb");
    const fs::path out = test::FreshFolder("out");
    EXPECT_EQ(CopyFileShell(Path("*.mdb"), out.string(), true), 0);
    EXPECT_EQ(test::ReadFile(out / "one.mdb"), "1");
    EXPECT_EQ(test::ReadFile(out / "two.mdb"), "2");
    EXPECT_FALSE(fs::exists(out / "note.txt"));
    EXPECT_FALSE(fs::exists(out / "sub.mdb"));  // a wild card takes files only
    EXPECT_EQ(CopyFileShell(Path("one.mdb"), (out / "one.mdb").string(), true), 0);
    EXPECT_EQ(test::ReadFile(out / "one (2).mdb"), "1");
    test::WriteFile(dir_ / "one.mdb", "changed");
    EXPECT_EQ(CopyFileShell(Path("one.mdb"), (out / "one.mdb").string(), false), 0);
    EXPECT_EQ(test::ReadFile(out / "one.mdb"), "changed");
    const std::string pair = Path("one.mdb") + std::string(1, '\0') + Path("two.mdb") + std::string(2, '\0');
    const std::string targets = (out / "x.mdb").string() + std::string(1, '\0') + (out / "y.mdb").string();
    EXPECT_EQ(CopyFileShell(pair, targets, false), 0);
    EXPECT_EQ(test::ReadFile(out / "x.mdb"), "changed");
    EXPECT_EQ(test::ReadFile(out / "y.mdb"), "2");
    EXPECT_NE(CopyFileShell(Path("missing.mdb"), out.string(), true), 0);
    EXPECT_EQ(GetTempDir(), tmp_.string() + "/");
}

TEST_F(DAOTest, ShippedMainDatabaseHoldsTheEmptyFigureTables) {
    auto db = DBEngine::OpenDatabase(ProgramFolder() + "/qvrl.mdb", {}, true);
    for (int n = 3; n <= 8; ++n) {
        const std::string table = "en_bs_fig" + std::to_string(n);
        SCOPED_TRACE(table);
        TableDef& def = db->TableDefs().Item(table);
        ASSERT_GE(def.Fields().Count(), 2);
        EXPECT_EQ(def.Fields().Item(0).Name(), "dist");
        double last = 0.0;
        for (int32_t i = 1; i < def.Fields().Count(); ++i) {
            const std::string& name = def.Fields().Item(i).Name();
            ASSERT_TRUE(IsNumeric(name)) << name;
            EXPECT_GT(Val(name), last);
            last = Val(name);
        }
        auto rs = db->OpenRecordset("SELECT TOP 1 * FROM " + table + " WHERE (0.5-dist)>=0 ORDER BY (0.5-dist)",
                                    dao::dbOpenSnapshot);
        EXPECT_TRUE(rs->EOF_() && rs->BOF());
    }
    for (const char* f : {"qvrlslz.mdb", "qvrlslz_dibt.mdb", "qvrlwlz.mdb", "qvrlwlz_dibt.mdb", "au_s.mdb"})
        EXPECT_NO_THROW(DBEngine::OpenDatabase(ProgramFolder() + "/" + f, {}, true)) << f;
}

}  // namespace
