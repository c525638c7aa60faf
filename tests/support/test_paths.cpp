#include <gtest/gtest.h>

#include <filesystem>

#include "TestEnv.h"
#include "support/Kalvo_Reg.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

struct SplitCase {
    const char* path;
    const char* dir;
    const char* name;
    const char* ext;
};

TEST(SplitPath, BackslashAndSlashRules) {
    const SplitCase cases[] = {
        {"C:x.mdb", "C:\\", "x.mdb", "mdb"},
        {"x.mdb", "", "x.mdb", "mdb"},
        {"a.b\\c", "a.b\\", "c", ""},      // the "\" is met before the "."
        {"a.b/c", "a.b/", "c", ""},
        {"C:\\data\\qvrl.mdb", "C:\\data\\", "qvrl.mdb", "mdb"},
        {"/home/u/rldef.asc", "/home/u/", "rldef.asc", "asc"},
        {"/home/u/archive.tar.gz", "/home/u/", "archive.tar.gz", "gz"},
        {"noext", "", "noext", ""},
        {"", "", "", ""},
        {"dir\\", "dir\\", "", ""},
        {"\\x.mdb", "", "\\x.mdb", "mdb"},  // a root-level file keeps its separator in the name
        {"C:", "C:\\", "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        std::string dir = "?", name = "?", ext = "?";
        EXPECT_TRUE(SplitPath(c.path, dir, name, ext));
        EXPECT_EQ(dir, c.dir);
        EXPECT_EQ(name, c.name);
        EXPECT_EQ(ext, c.ext);
    }
}

TEST(CutAtNul, TrimsCutsTrims) {
    EXPECT_EQ(CutAtNul(std::string("abc \0xyz  ", 10)), "abc");
    EXPECT_EQ(CutAtNul("  abc  "), "  abc");
    EXPECT_EQ(CutAtNul(std::string("\0\0", 2)), "");
}

class Folders : public test::IsolatedTest {};

TEST_F(Folders, UserDataFolderFromAppDataIsCreated) {
    setenv("APPDATA", (appdata_.string() + "  ").c_str(), 1);  // trimmed
    const std::string f = UserDataFolder();
    EXPECT_EQ(f, appdata_.string() + "/tarvek/");
    EXPECT_TRUE(fs::is_directory(f));
    setenv("APPDATA", (appdata_.string() + "/").c_str(), 1);  // no second separator
    EXPECT_EQ(UserDataFolder(), appdata_.string() + "/tarvek/");
}

TEST_F(Folders, WithoutAppDataTheXdgFolderServes) {
    unsetenv("APPDATA");
    setenv("XDG_DATA_HOME", (appdata_ / "xdg").c_str(), 1);
    EXPECT_EQ(UserDataFolder(), (appdata_ / "xdg").string() + "/tarvek/");
    setenv("APPDATA", "   ", 1);  // blank counts as unset
    EXPECT_EQ(UserDataFolder(), (appdata_ / "xdg").string() + "/tarvek/");
    unsetenv("XDG_DATA_HOME");
    setenv("HOME", (appdata_ / "home").c_str(), 1);
    EXPECT_EQ(UserDataFolder(), (appdata_ / "home").string() + "/.local/share/tarvek/");
    EXPECT_EQ(UserProfileFolder(), (appdata_ / "home").string());
}

TEST_F(Folders, ProgramFolderOverrideAndBuildTree) {
    setenv("QVRL_PROGRAM_FOLDER", "/opt/qvrl/", 1);
    EXPECT_EQ(ProgramFolder(), "/opt/qvrl");
    unsetenv("QVRL_PROGRAM_FOLDER");
    EXPECT_TRUE(FileExists(ProgramFolder() + "/language.ini"));
    EXPECT_EQ(ProgramName(), "QVRoofLoad");
}

TEST_F(Folders, AllUsersFolder) {
    unsetenv("QVRL_ALLUSERS_FOLDER");
    EXPECT_EQ(AllUsersFolder(), "/etc/xdg/tarvek");
    setenv("QVRL_ALLUSERS_FOLDER", "/srv/common ", 1);
    EXPECT_EQ(AllUsersFolder(), "/srv/common");
    unsetenv("QVRL_ALLUSERS_FOLDER");
}

TEST_F(Folders, FileExistsIsForFilesOnly) {
    const fs::path f = appdata_ / "x.mdb";
    test::WriteFile(f, "x");
    EXPECT_TRUE(FileExists(f.string()));
    EXPECT_FALSE(FileExists(appdata_.string()));  // a folder
    EXPECT_FALSE(FileExists((appdata_ / "missing.mdb").string()));
    EXPECT_FALSE(FileExists(""));
    EXPECT_FALSE(FileExists("\\"));
    EXPECT_FALSE(FileExists("/"));
    EXPECT_FALSE(FileExists(std::string("bad\0name", 8)));
}

class Registry : public test::IsolatedTest {
protected:
    void Settings(const std::string& text) { test::WriteFile(RegistryFile(), text); }
    const std::string key = "SOFTWARE\\Norvane GmbH\\Globals\\Settings";
};

TEST_F(Registry, MissingValueKeepsTheDefault) {
    Variant out;
    EXPECT_EQ(RegReadValue("HKCU", key, "LanguageShell", "D", Variant(int32_t{0}), out), kRegNotFound);
    EXPECT_EQ(out, Variant(int32_t{0}));
    Settings("[HKCU\\SOFTWARE\\Other]\nLanguageShell=1\n");
    EXPECT_EQ(RegReadValue("HKCU", key, "LanguageShell", "D", Variant(int32_t{0}), out), kRegNotFound);
    EXPECT_EQ(out, Variant(int32_t{0}));
}

TEST_F(Registry, ReadsByTypeCode) {
    Settings("; settings\r\n[hkcu\\software\\norvane gmbh\\globals\\settings]\r\nlanguageshell = 1\r\nName=Tarvek \r\n"
             "Flag=True\r\nBad=abc\r\n[HKLM\\" + key + "]\r\nLanguageShell=7\r\n");
    Variant out;
    EXPECT_EQ(RegReadValue("hkcu", key, "LanguageShell", "D", Variant(int32_t{0}), out), 0);
    EXPECT_EQ(out, Variant(int32_t{1}));
    EXPECT_EQ(RegReadValue("HKLM", key, "LanguageShell", "d", Variant(int32_t{0}), out), 0);
    EXPECT_EQ(out, Variant(int32_t{7}));
    EXPECT_EQ(RegReadValue("HKCU", key, "Name", "S", Variant(""), out), 0);
    EXPECT_EQ(out, Variant("Tarvek"));
    EXPECT_EQ(RegReadValue("HKCU", key, "Flag", "B", Variant(false), out), 0);
    EXPECT_EQ(out, Variant(true));
    EXPECT_EQ(RegReadValue("HKCU", key, "Bad", "D", Variant(int32_t{3}), out), kRegInvalidData);
    EXPECT_EQ(out, Variant(int32_t{3}));
    // an unknown type code reads nothing and succeeds
    EXPECT_EQ(RegReadValue("HKCU", key, "LanguageShell", "X", Variant(int32_t{5}), out), 0);
    EXPECT_EQ(out, Variant(int32_t{5}));
}

TEST_F(Registry, UnknownRootIs99) {
    Variant out;
    for (const char* root : {"HKXX", "", "HKEY_CURRENT_USER"}) {
        EXPECT_EQ(RegReadValue(root, key, "LanguageShell", "D", Variant(int32_t{4}), out), kRegUnknownRoot) << root;
        EXPECT_EQ(out, Variant(int32_t{4}));
    }
    for (const char* root : {"HKCU", "HKLM", "HKU", "HKDD", "HKCC", "HKCR"})
        EXPECT_NE(RegReadValue(root, key, "x", "D", Variant(), out), kRegUnknownRoot) << root;
}

}  // namespace
