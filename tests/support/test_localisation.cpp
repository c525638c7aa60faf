#include <gtest/gtest.h>

#include "TestEnv.h"
#include "support/CLocLite.h"
#include "support/Kalvo_Reg.h"
#include "support/ModuleState.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

// A program folder of our own with two small language files.
class Localisation : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        program_ = test::FreshFolder("program");
        setenv("QVRL_PROGRAM_FOLDER", program_.c_str(), 1);
        test::WriteFile(program_ / "deu" / "QVRoofLoad_deu.scr",
                        "# German\n1=Eins\n2=Zwei\n3=Drei   \n5=Mit\\nUmbruch\n");
        test::WriteFile(program_ / "eng" / "QVRoofLoad_eng.scr", "\xEF\xBB\xBF" "1=One\r\n2=   \r\n4=Four\r\n");
    }
    void Ini(const std::string& text) { test::WriteFile(program_ / "language.ini", text); }
    void Shell(int n) {
        test::WriteFile(RegistryFile(),
                        "[HKCU\\SOFTWARE\\Norvane GmbH\\Globals\\Settings]\nLanguageShell=" + std::to_string(n) + "\n");
    }
    std::string ActiveFile() { return State().locActive->FileName(); }
    fs::path program_;
};

TEST_F(Localisation, GermanWithoutSettings) {
    Ini("German.ID=0\nGerman.Short=deu\nEnglish.ID=1\nEnglish.Short=eng\n");
    InitLanguageObjects();
    EXPECT_EQ(ActiveFile(), (program_ / "deu" / "QVRoofLoad_deu.scr").string());
    EXPECT_EQ(LoadResStr(Variant(int32_t{1})), "Eins");
    EXPECT_EQ(LoadResStr(Variant(int32_t{3})), "Drei");  // blanks at the right removed
    EXPECT_EQ(LoadResStr(Variant(int32_t{5})), "Mit\nUmbruch");
}

TEST_F(Localisation, EnglishFallsBackToGermanForBlankAndMissingTexts) {
    Ini("German.ID=0\nGerman.Short=deu\nEnglish.ID=1\nEnglish.Short=eng\n");
    Shell(1);
    InitLanguageObjects();
    EXPECT_EQ(ActiveFile(), (program_ / "eng" / "QVRoofLoad_eng.scr").string());
    EXPECT_EQ(LoadResStr(Variant(int32_t{1})), "One");
    EXPECT_EQ(LoadResStr(Variant(int32_t{2})), "Zwei");  // blanks only: German
    EXPECT_EQ(LoadResStr(Variant(int32_t{3})), "Drei");  // missing: German
    EXPECT_EQ(LoadResStr(Variant(int32_t{4})), "Four");
    EXPECT_EQ(LoadResStr(Variant(int32_t{99})), "");     // in neither file
    EXPECT_EQ(LoadResStr(Variant("4")), "Four");
}

TEST_F(Localisation, ContainmentTestIsThePlainRule) {
    // Number 1 also hits a line with 31 in it; the first hit decides.
    Ini("Lang31.ID=31\nLang31.Short=eng\nGerman.ID=0\nGerman.Short=deu\n");
    Shell(1);
    InitLanguageObjects();
    EXPECT_EQ(ActiveFile(), (program_ / "eng" / "QVRoofLoad_eng.scr").string());
}

TEST_F(Localisation, ZeroSkipsIdLinesWithoutAZero) {
    Ini("English.ID=1\nEnglish.Short=eng\nGerman.id=0\ngerman.SHORT=deu\n");
    Shell(0);
    InitLanguageObjects();
    EXPECT_EQ(ActiveFile(), (program_ / "deu" / "QVRoofLoad_deu.scr").string());
    EXPECT_EQ(LoadResStr(Variant(int32_t{1})), "Eins");
}

TEST_F(Localisation, NoHitOrNoIniStaysGerman) {
    Ini("English.ID=1\nEnglish.Short=eng\n");
    Shell(7);
    InitLanguageObjects();
    EXPECT_EQ(LoadResStr(Variant(int32_t{1})), "Eins");
    ResetModuleState();
    fs::remove(program_ / "language.ini");
    Shell(1);
    InitLanguageObjects();
    EXPECT_EQ(LoadResStr(Variant(int32_t{1})), "Eins");
}

TEST_F(Localisation, MissingLanguageFileUsesTheFallback) {
    Ini("French.ID=1\nFrench.Short=fra\n");
    Shell(1);
    InitLanguageObjects();
    EXPECT_EQ(ActiveFile(), (program_ / "fra" / "QVRoofLoad_fra.scr").string());
    EXPECT_EQ(State().locActive->Handle(), 0);
    EXPECT_EQ(LoadResStr(Variant(int32_t{2})), "Zwei");
}

TEST_F(Localisation, SameNameLoadsOnceAndIsTracedOnce) {
    Ini("German.ID=0\nGerman.Short=deu\n");
    InitLanguageObjects();
    CLocLite& loc = *State().locActive;
    const std::string eng = (program_ / "eng" / "QVRoofLoad_eng.scr").string();
    loc.FileName(eng);
    const int32_t loads = loc.LoadCount();
    const std::string log = test::ReadFile(userFolder() / "rlTrace.log");
    loc.FileName(eng);
    EXPECT_EQ(loc.LoadCount(), loads);
    EXPECT_EQ(test::ReadFile(userFolder() / "rlTrace.log"), log);
    EXPECT_NE(log.find("CLocLite.FileName=" + eng + " hRes="), std::string::npos);
}

TEST_F(Localisation, EmptyFileNameGivesEmptyTextsDespiteTheFallback) {
    Ini("German.ID=0\nGerman.Short=deu\n");
    InitLanguageObjects();
    State().locActive->FileName("");
    EXPECT_EQ(LoadResStr(Variant(int32_t{1})), "");
}

TEST_F(Localisation, LongTextsAreCutAt255Characters) {
    std::string longText;
    for (int i = 0; i < 300; ++i) longText += "ä";
    test::WriteFile(program_ / "deu" / "QVRoofLoad_deu.scr", "8=" + longText + "\n");
    Ini("German.ID=0\nGerman.Short=deu\n");
    InitLanguageObjects();
    const std::string t = LoadResStr(Variant(int32_t{8}));
    EXPECT_EQ(t.size(), 255u * 2);
}

TEST_F(Localisation, WithoutLanguageObjectsTextsAreEmpty) {
    EXPECT_EQ(LoadResStr(Variant(int32_t{1})), "");
    SelectLanguage();  // nothing to select for
    EXPECT_FALSE(State().locActive);
}

TEST_F(Localisation, ShippedFilesAnswerEveryCodeListNumber) {
    unsetenv("QVRL_PROGRAM_FOLDER");
    for (int lang : {0, 1}) {
        SCOPED_TRACE(lang);
        ResetModuleState();
        Shell(lang);
        InitLanguageObjects();
        std::vector<int32_t> numbers = {11, 532};
        for (int32_t n = 24; n <= 29; ++n) numbers.push_back(n);
        for (int32_t n = 511; n <= 537; ++n)
            if (n < 517 || n > 519) numbers.push_back(n);
        for (int32_t n : {346, 348, 349, 351, 352, 354, 355, 356, 358, 360, 362, 364, 366, 368, 370, 372})
            numbers.push_back(n);
        for (int32_t n : numbers) {
            // the active file itself must hold the text, not only the fallback
            EXPECT_FALSE(State().locActive->LoadText(n).empty()) << n;
        }
    }
}

}  // namespace
