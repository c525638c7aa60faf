// Which database file a look-up and an import use, what survives a rebuild of
// the shipped files, and how the store answers files it cannot read.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "catalogue/modLiveLoadMDB.h"
#include "interchange/Records.h"
#include "location/modAGSMdb.h"
#include "maintenance/TownImport.h"
#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

namespace qvrl {
namespace {

namespace fs = std::filesystem;

const std::string kFixtureTowns = std::string(QVRL_SOURCE_DIR) + "/tests/maintenance/fixtures/gv100ad_small.asc";
constexpr const char* kKoeln = "05315000";

// A program folder of the test's own, holding a file the test chooses as
// the shipped qvrl.mdb.
class StoreFilesTest : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        built_ = ProgramFolder();  // the build's data, before the test points elsewhere
        program_ = test::FreshFolder("program");
        setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
        // Copies to the temporary folder stay inside the test.
        if (const char* tmp = std::getenv("TMPDIR")) oldTmp_ = tmp;
        setenv("TMPDIR", test::FreshFolder("tmp").c_str(), 1);
        ResetModuleState();
    }
    void TearDown() override {
        if (oldTmp_.empty()) unsetenv("TMPDIR");
        else setenv("TMPDIR", oldTmp_.c_str(), 1);
        IsolatedTest::TearDown();
    }
    std::string shipped() const { return (program_ / "qvrl.mdb").string(); }
    std::string user() const { return (userFolder() / "qvrl.mdb").string(); }
    void ShipBuiltDatabase() const { fs::copy_file(built_ + "/qvrl.mdb", shipped(), fs::copy_options::overwrite_existing); }

    std::string built_;
    std::string oldTmp_;
    fs::path program_;
};

TEST_F(StoreFilesTest, LookUpAndImportEachChooseTheirFile) {
    const std::string other = (program_ / "chosen.mdb").string();
    const struct {
        const char* what;
        bool userFile;
        const char* override;  // nullptr: none; "": set, then cleared
        std::string lookUp, import, shippedData;
        const char* userText;  // the user's file afterwards, nullptr when there is none
    } cases[] = {
        {"no user file: the shipped one, and the first import copies it", false, nullptr, shipped(), user(), shipped(),
         "shipped"},
        {"a user file wins and is written in place, but not for shipped-only tables", true, nullptr, user(), user(),
         shipped(), "mine"},
        {"an override wins over both and makes no copy", false, "x", other, other, other, nullptr},
        {"an override cleared goes back to the rule", false, "", shipped(), user(), shipped(), "shipped"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove(user());
        test::WriteFile(shipped(), "shipped");
        if (c.userFile) test::WriteFile(user(), "mine");
        if (c.override) SetStoreFileOverride("qvrl.mdb", other);
        if (c.override && !*c.override) SetStoreFileOverride("qvrl.mdb", "");
        EXPECT_EQ(StoreFile("qvrl.mdb"), c.lookUp);
        EXPECT_EQ(ShippedDataFile("qvrl.mdb"), c.shippedData);
        EXPECT_EQ(WritableStoreFile("qvrl.mdb"), c.import);
        EXPECT_EQ(fs::exists(user()), c.userText != nullptr);
        if (c.userText) {
            EXPECT_EQ(test::ReadFile(user()), c.userText);
        }
        EXPECT_FALSE(fs::exists(user() + ".part"));
        SetStoreFileOverride("qvrl.mdb", "");
    }
}

TEST_F(StoreFilesTest, CopyOfAReadOnlyFileIsTheUsersToWriteAndAStalePartDoesNotMatter) {
    test::WriteFile(shipped(), "shipped");
    fs::permissions(shipped(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    // What a copy killed half way leaves: a part of the wrong bytes that its
    // owner may not write.
    test::WriteFile(user() + ".part", "half");
    fs::permissions(user() + ".part", fs::perms::owner_read);

    EXPECT_EQ(WritableStoreFile("qvrl.mdb"), user());
    EXPECT_EQ(test::ReadFile(user()), "shipped");
    EXPECT_NE(fs::status(user()).permissions() & fs::perms::owner_write, fs::perms::none);
    EXPECT_FALSE(fs::exists(user() + ".part"));
}

TEST_F(StoreFilesTest, ACopyThatFailsLeavesNothingAndNamesTheFile) {
    const struct {
        const char* what;
        bool shippedFile;
        int32_t number;
        std::string named;
    } cases[] = {
        {"no shipped file", false, dao::errCouldNotFindFile, shipped()},
        {"the part's name is taken by a folder that is not ours", true, dao::errCannotOpen, user()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove(shipped());
        if (c.shippedFile) {
            test::WriteFile(shipped(), "shipped");
            test::WriteFile(fs::path(user() + ".part") / "x", "not ours");
        }
        try {
            WritableStoreFile("qvrl.mdb");
            ADD_FAILURE() << "no error";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), c.number);
            EXPECT_NE(e.description().find(c.named), std::string::npos) << e.description();
        }
        EXPECT_FALSE(fs::exists(user()));
    }
}

// The imported towns live in the user's copy; the build's tool replaces the
// shipped file as a rebuild does, and the towns still answer. A copy made by
// an older release, without the catalogue, hides none of its rows.
TEST_F(StoreFilesTest, ImportedTownsSurviveARebuildOfTheShippedDatabase) {
    std::vector<std::string> scripts;
    for (const auto& e : fs::directory_iterator(std::string(QVRL_SOURCE_DIR) + "/data/sql/qvrl.mdb"))
        if (e.path().extension() == ".sql") scripts.push_back(e.path().string());
    std::sort(scripts.begin(), scripts.end());
    std::string rebuild = std::string("\"") + QVRL_MKDB_PATH + "\" \"" + shipped() + "\"";
    for (const std::string& s : scripts) rebuild += " \"" + s + "\"";

    ASSERT_EQ(std::system(rebuild.c_str()), 0);
    ImportGv100ad(kFixtureTowns, WritableStoreFile("qvrl.mdb"));
    ASSERT_EQ(std::system(rebuild.c_str()), 0);
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(user().c_str(), &db), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(db, "DROP TABLE liveload", nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }
    ResetModuleState();

    std::vector<LiveLoadRec> rows;
    ReadLiveLoads(3, 0, rows);
    EXPECT_FALSE(rows.empty());
    TownRec t;
    FindTownByAGS(kKoeln, t);
    EXPECT_EQ(t.AGS, kKoeln);
    EXPECT_EQ(t.Gemeinde.rfind("Köln, Stadt", 0), 0u) << t.Gemeinde;
    EXPECT_EQ(LastStoreOpenError().Number, 0);
}

// Files the store cannot read: the look-up stays empty, as hosts know it,
// and the store keeps its numbered error naming the file; a damaged user
// file hides none of the shipped rows.
TEST_F(StoreFilesTest, AFileThatCannotBeReadIsReportedAndHidesNoShippedRows) {
    const std::string userTowns = (userFolder() / "qvrlAGSUsr.mdb").string();
    const struct {
        const char* what;
        std::string file;
        const char* bytes;  // nullptr: no file
        bool found;
        int32_t number;
    } cases[] = {
        {"qvrl.mdb missing", shipped(), nullptr, false, err::FileNotFound},
        {"qvrl.mdb of garbage", shipped(), "this is no database, and it is long enough to look like one...", false,
         dao::errUnrecognizedFormat},
        {"qvrl.mdb empty", shipped(), "", false, dao::errUnrecognizedFormat},
        {"user corrections of garbage", userTowns, "this is no database, and it is long enough to look like one..",
         true, dao::errUnrecognizedFormat},
        {"user corrections empty", userTowns, "", true, dao::errUnrecognizedFormat},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ShipBuiltDatabase();
        ImportGv100ad(kFixtureTowns, shipped());
        fs::remove(userTowns);
        fs::remove(c.file);
        if (c.bytes) test::WriteFile(c.file, c.bytes);
        ResetModuleState();

        TownRec t;
        FindTownByAGS(kKoeln, t);
        EXPECT_EQ(t.AGS, c.found ? kKoeln : "");
        const StoreOpenError e = LastStoreOpenError();
        EXPECT_EQ(e.Number, c.number);
        EXPECT_EQ(e.File, c.file);
        EXPECT_NE(e.Description.find(c.file), std::string::npos) << e.Description;
        try {
            RaiseStoreOpenError();
            ADD_FAILURE() << "no error raised";
        } catch (const RuntimeError& r) {
            EXPECT_EQ(r.number(), c.number);
        }
        ClearStoreOpenError();
        EXPECT_NO_THROW(RaiseStoreOpenError());
    }
}

// What an import killed in its commit leaves: the file part written and a
// hot journal beside it. A reader rolls it back and sees the rows as they
// were before the import.
TEST_F(StoreFilesTest, AReaderGetsPastAHotJournal) {
    const fs::path live = program_ / "live.mdb";
    const std::string image = shipped();
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(live.c_str(), &db), SQLITE_OK);
    auto exec = [&](const char* sql) { ASSERT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql; };
    exec("CREATE TABLE t (n INTEGER, v TEXT)");
    exec("WITH RECURSIVE k(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM k WHERE n < 300) "
         "INSERT INTO t SELECT n, 'before' || printf('%.900c', 'x') FROM k");
    // A cache of a few pages spills the change into the file before the commit.
    exec("PRAGMA cache_size = 2");
    exec("BEGIN");
    exec("UPDATE t SET v = 'after' || printf('%.900c', 'y')");
    fs::copy_file(live, image);
    fs::copy_file(live.string() + "-journal", image + "-journal");
    exec("ROLLBACK");
    sqlite3_close(db);
    ASSERT_GT(fs::file_size(image + "-journal"), 0u);

    auto rs = DBEngine::OpenDatabase(image, {}, true)->OpenRecordset("SELECT * FROM t WHERE v LIKE 'before*'",
                                                                     dao::dbOpenSnapshot);
    rs->MoveLast();
    EXPECT_EQ(rs->RecordCount(), 300);
    EXPECT_FALSE(fs::exists(image + "-journal"));
}

}  // namespace
}  // namespace qvrl
