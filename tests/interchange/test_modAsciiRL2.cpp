#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "TestEnv.h"
#include "interchange/FileWrite.h"
#include "interchange/modAsciiRL.h"
#include "interchange/modAsciiRL2.h"
#include "support/errors.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

// Every folder the defaults and the migration touch points into the test's own tree.
class Defaults : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        const char* home = std::getenv("HOME");
        savedHome_ = home ? home : "";
        home_ = test::FreshFolder("home");
        allUsers_ = test::FreshFolder("allusers");
        program_ = test::FreshFolder("program");
        setenv("HOME", home_.c_str(), 1);
        setenv("QVRL_ALLUSERS_FOLDER", allUsers_.c_str(), 1);
        setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
    }
    void TearDown() override {
        setenv("HOME", savedHome_.c_str(), 1);
        unsetenv("QVRL_ALLUSERS_FOLDER");
        IsolatedTest::TearDown();
    }
    // Name to content of every file in a folder.
    static std::map<std::string, std::string> Contents(const fs::path& dir) {
        std::map<std::string, std::string> m;
        for (const auto& e : fs::directory_iterator(dir)) m[e.path().filename().string()] = test::ReadFile(e.path());
        return m;
    }
    std::string savedHome_;
    fs::path home_, allUsers_, program_;
};

TEST_F(Defaults, SavedWithoutCodesAndReadBack) {
    TownRec town;
    town.AGS = "09162000";
    town.Gemeinde = "M\xC3\xBCnchen";  // not in the file
    WindLoadRec wind{.Norm = 3, .q0 = 0.65, .h = 12.5, .wz = 1, .cat = 2};
    const SnowLoadRec snow{.Norm = 3, .s0 = 1.1, .h = 519.0, .sz = 21};
    SaveDefaults(town, wind, snow, 1, "");
    const std::string text = test::ReadFile(userFolder() / "rldef.asc");
    EXPECT_EQ(text.rfind("@VERSION Vers CtrlNorm\r\nVERSION 004 001\r\n@TOWN            AGS\r\nTOWN     '09162000'\r\n", 0),
              0u);
    EXPECT_EQ(text.find("SELECTCODES"), std::string::npos);

    TownRec t;
    WindLoadRec w;
    SnowLoadRec s;
    int16_t ctrlNorm = 0;
    std::string codes = "_1_3_";
    ReadDefaults(t, w, s, ctrlNorm, codes);
    EXPECT_EQ(t.AGS, "09162000");
    EXPECT_EQ(t.Gemeinde, "");
    EXPECT_EQ(w.q0, 0.000065 * 10000);  // through the file's six decimals of kN/cm²
    EXPECT_EQ(w.h, 12.5);
    EXPECT_EQ(w.cat, 2);
    EXPECT_EQ(s.s0, 0.00011 * 10000);
    EXPECT_EQ(s.sz, 21);
    EXPECT_EQ(ctrlNorm, 1);
    EXPECT_EQ(codes, "_1_3_");

    // A second save rewrites the one file in place.
    wind.Norm = 50;
    SaveDefaults(town, wind, snow, 0, "");
    EXPECT_EQ(Contents(userFolder()).size(), 1u);
    ReadDefaults(t, w, s, ctrlNorm, codes);
    EXPECT_EQ(w.Norm, 50);
    EXPECT_EQ(ctrlNorm, 0);
}

TEST_F(Defaults, NoFileLeavesTheOutputsAlone) {
    TownRec t;
    t.AGS = "x";
    WindLoadRec w;
    w.Norm = 7;
    SnowLoadRec s;
    s.h = 3.0;
    int16_t ctrlNorm = 5;
    std::string codes = "c";
    ReadDefaults(t, w, s, ctrlNorm, codes);
    EXPECT_EQ(t.AGS, "x");
    EXPECT_EQ(w.Norm, 7);
    EXPECT_EQ(s.h, 3.0);
    EXPECT_EQ(ctrlNorm, 5);
    EXPECT_EQ(codes, "c");
    EXPECT_FALSE(fs::exists(userFolder() / "rldef.asc"));
}

TEST_F(Defaults, AnEmptyStoreRaises) {
    test::WriteFile(userFolder() / "rldef.asc", "");
    TownRec t;
    WindLoadRec w;
    SnowLoadRec s;
    int16_t ctrlNorm = 0;
    std::string codes;
    try {
        ReadDefaults(t, w, s, ctrlNorm, codes);
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), 62);
    }
}

TEST_F(Defaults, TheMigratedSpellingIsFoundAndRewrittenInPlace) {
    test::WriteFile(userFolder() / "rldef.Asc", "VERSION 004 001\r\nSNOWLOAD 1 0.000075 250 2\r\n");
    TownRec t;
    WindLoadRec w;
    SnowLoadRec s;
    int16_t ctrlNorm = 0;
    std::string codes;
    ReadDefaults(t, w, s, ctrlNorm, codes);
    EXPECT_EQ(s.sz, 2);
    s.sz = 3;
    SaveDefaults(t, w, s, 1, "");
    EXPECT_EQ(Contents(userFolder()).size(), 1u);
    ReadDefaults(t, w, s, ctrlNorm, codes);
    EXPECT_EQ(s.sz, 3);
    EXPECT_EQ(DefaultsFileName(), (userFolder() / "rldef.Asc").string());
}

TEST_F(Defaults, MigrationMovesUsersFileFirstAndRenamesLaterArrivals) {
    test::WriteFile(home_ / "rldef.Asc", "user");
    test::WriteFile(allUsers_ / "rldef.Asc", "all");
    test::WriteFile(allUsers_ / "rl.cfg", "cfg");
    test::WriteFile(program_ / "qvrlAGSUsr.mdb", "towns");

    MigrateSettingsFiles();
    EXPECT_EQ(Contents(userFolder()),
              (std::map<std::string, std::string>{{"qvrlAGSUsr.mdb", "towns"}, {"rl.cfg", "cfg"}, {"rldef.Asc", "user"}}));
    EXPECT_TRUE(Contents(home_).empty());
    EXPECT_EQ(Contents(allUsers_), (std::map<std::string, std::string>{{"rldef.Asc", "all"}}));
    EXPECT_TRUE(Contents(program_).empty());

    MigrateSettingsFiles();
    EXPECT_EQ(Contents(userFolder()), (std::map<std::string, std::string>{{"qvrlAGSUsr.mdb", "towns"},
                                                                          {"rl.cfg", "cfg"},
                                                                          {"rldef.Asc", "user"},
                                                                          {"rldef (2).Asc", "all"}}));
    EXPECT_TRUE(Contents(allUsers_).empty());

    const auto settled = Contents(userFolder());
    MigrateSettingsFiles();
    EXPECT_EQ(Contents(userFolder()), settled);
}

TEST_F(Defaults, CollisionsAreCaseBlindAndNumbered) {
    test::WriteFile(userFolder() / "rldef.asc", "stored");
    test::WriteFile(userFolder() / "RLDEF (2).ASC", "earlier");
    test::WriteFile(home_ / "rldef.asc", "arriving");  // found whatever the case of its name
    test::WriteFile(home_ / "rl", "not a settings file");
    MigrateSettingsFiles();
    EXPECT_EQ(Contents(userFolder()), (std::map<std::string, std::string>{{"rldef.asc", "stored"},
                                                                          {"RLDEF (2).ASC", "earlier"},
                                                                          {"rldef (3).asc", "arriving"}}));
    EXPECT_EQ(Contents(home_), (std::map<std::string, std::string>{{"rl", "not a settings file"}}));
}

TEST_F(Defaults, AFailedCopyKeepsTheOriginal) {
    test::WriteFile(home_ / "rldef.Asc", "user");
    ASSERT_EQ(::chmod((home_ / "rldef.Asc").c_str(), 0600), 0);
    SetFileWriteFault(2, false);
    MigrateSettingsFiles();
    EXPECT_EQ(Contents(home_), (std::map<std::string, std::string>{{"rldef.Asc", "user"}}));
    EXPECT_TRUE(Contents(userFolder()).empty());

    SetFileWriteFault(-1, false);
    MigrateSettingsFiles();
    EXPECT_TRUE(Contents(home_).empty());
    struct stat st {};
    ASSERT_EQ(::stat((userFolder() / "rldef.Asc").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0600u);  // the copy keeps the original's permissions
}

}  // namespace
