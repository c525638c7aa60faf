// The DIN 1055-100 roof load dialog and the hand-overs between the roof load
// sessions: roads from block file to block file, each compared line by line
// with a file written by hand, and the rules of the form that no file shows.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "location/test_modAGSMdb_fixture.h"
#include "automation/CRoofLoad.h"
#include "dialogs/SessionRoads.h"
#include "dialogs/frmRoofLoad100.h"
#include "maintenance/StoreImports.h"
#include "qvroofload.h"
#include "rules/modWind.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

const char* const kEN = "frmRoofLoadEN";
const char* const k100 = "frmRoofLoad100";
const char* const kOld = "frmRoofLoad";

enum class Member { EN, Din100, Old };

class RoofLoadSessions : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        file = (test::FreshFolder("blocks") / "roof.asc").string();
    }
    std::vector<std::string> Run(CRoofLoad& roof, Member m, std::vector<SessionStep> steps) {
        SessionScript script;
        script.steps = std::move(steps);
        auto p = std::make_shared<ScriptedPlatform>(script);
        p->Run([&] {
            if (m == Member::EN) roof.ShowRoofLoadDlg_EN(file);
            else if (m == Member::Din100) roof.ShowRoofLoadDlg_1(file);
            else roof.ShowRoofLoadDlg(file);
        });
        return test::FormsOf(*p);
    }
    std::string file;
};

// The entry tests and the hand-overs. A nested session reads what the first
// one wrote, so a file that shows the second dialog's values proves that the
// first write came before the nesting; a Cancel in the second dialog leaves
// exactly that first write, with OnOk false although the first dialog
// ended by a choice, not a Cancel.
//
// din3_wz5: zone 5 is not a zone of Norm 3, so zone 1 is selected and taken,
// and its pressure written: 2.1 · 0.32 · (10/10)^0.24 = 0.672 → 0.67. Snow
// zone 2 at 250 m: 0.25 + 1.91 · (390/760)² = 0.753, below the floor 0.85.
TEST_F(RoofLoadSessions, EntryTestsAndHandOvers) {
    struct Case {
        const char* name;
        const char* input;  // nullptr: no file
        Member member;
        std::vector<SessionStep> steps;
        std::vector<std::string> forms;
        bool onOk;
        const char* expected;  // nullptr: no file afterwards
    };
    const Case cases[] = {
        {"Norm 3 file given to _EN", "din3_wz5.asc", Member::EN, {test::Step(k100, "ok")}, {k100}, true,
         "din3_wz5_ok.asc"},
        {"Norm 3 file given to _1", "din3_wz5.asc", Member::Din100, {test::Step(k100, "ok")}, {k100}, true,
         "din3_wz5_ok.asc"},
        {"EN chooses 3, OK there", "en54.asc", Member::EN,
         {test::Choose(kEN, "cbNormI", "3"), test::Step(k100, "ok")}, {kEN, k100}, true, "din3_ok.asc"},
        {"EN chooses 3, Cancel there", "en54.asc", Member::EN,
         {test::Choose(kEN, "cbNormI", "3"), test::Step(k100, "cancel")}, {kEN, k100}, false, "en54_to3.asc"},
        {"3 to 54 and back", "en54.asc", Member::EN,
         {test::Choose(kEN, "cbNormI", "3"), test::Choose(k100, "cbNormI", "54"), test::Step(kEN, "ok")},
         {kEN, k100, kEN}, true, "din3_to54_ok.asc"},
        {"Eurocode file given to _1", "en54.asc", Member::Din100, {test::Step(kEN, "cancel")}, {kEN}, false,
         "en54.asc"},
        {"3 to 1 and back", "din3_ok.asc", Member::Din100,
         {test::Choose(k100, "cbNormI", "1"), test::Choose(kOld, "cbNormI", "3"), test::Step(k100, "ok")},
         {k100, kOld, k100}, true, "din3_ok.asc"},
        {"3 to 1, Cancel there", "din3_ok.asc", Member::Din100,
         {test::Choose(k100, "cbNormI", "1"), test::Step(kOld, "cancel")}, {k100, kOld}, false, "din1_from3.asc"},
        {"Norm 1 file given to _EN", "din1_from3.asc", Member::EN, {test::Step(kOld, "cancel")}, {kOld}, false,
         "din1_from3.asc"},
        // The old dialog always goes on in _1, whose entry test passes a
        // Eurocode pair on without showing its own form.
        {"1 to 54 through _1", "din1_from3.asc", Member::Old,
         {test::Choose(kOld, "cbNormI", "54"), test::Step(kEN, "cancel")}, {kOld, kEN}, false, "din1_to54.asc"},
        {"Norm 3 file given to the old session", "din3_ok.asc", Member::Old, {test::Step(k100, "ok")}, {k100}, true,
         "din3_ok.asc"},
        // The old dialog has no town: the TOWN line stays as read. Its
        // building height computes q at once: 12 m lies in 8 to 20 m, 0.8.
        {"old session keeps the town", "din1_town.asc", Member::Old,
         {test::Type(kOld, "txtWind(0)", "12"), test::Step(kOld, "ok")}, {kOld}, true, "din1_town_ok.asc"},
        // The pair differs, so the old session keeps the call; the snow
        // record is foreign and cleared, and zone 0 opens as zone 1.
        {"snow 3 with wind 1", "din1_snow3.asc", Member::Old, {test::Step(kOld, "ok")}, {kOld}, true,
         "din1_snow3_ok.asc"},
        {"missing file, old session", nullptr, Member::Old, {test::Step(kOld, "cancel")}, {kOld}, false, nullptr},
        {"missing file, Cancel", nullptr, Member::Din100, {test::Step(k100, "cancel")}, {k100}, false, nullptr},
        {"missing file, OK", nullptr, Member::Din100, {test::Step(k100, "ok")}, {k100}, true, "din_missing_ok.asc"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.input) test::WriteFile(file, test::Fixture(c.input));
        else fs::remove(file);
        CRoofLoad roof;
        EXPECT_EQ(Run(roof, c.member, c.steps), c.forms);
        EXPECT_EQ(roof.OnOk(), c.onOk);
        if (c.expected) test::ExpectFileLines(file, c.expected);
        else EXPECT_FALSE(fs::exists(file));
    }
}

// The choosers hand their code back into the form, and a cancelled one
// changes nothing. With NachNorm off the design values stay as typed.
TEST_F(RoofLoadSessions, ChoosersHandBackTheirCode) {
    test::WriteFile(file, test::Fixture("din3_ok.asc"));
    const char* const wz = "frmWZ_1";
    const char* const gk = "frmWindCategory100_WithoutGrf";
    const char* const slz = "frmSLZ_1";
    SessionStep zone = test::Step(wz, "choose", "cbWZ");
    zone.text = "3";
    SessionStep other = zone;
    other.text = "4";
    SessionStep snow = test::Step(slz, "map");
    snow.layer = 2;  // code 11 stands second
    snow.click = true;
    CRoofLoad roof;
    const std::vector<std::string> forms =
        Run(roof, Member::Din100,
            {test::Step(k100, "click", "cmdWZ"), other, test::Step(wz, "cancel"),
             test::Step(k100, "click", "cmdWZ"), zone, test::Step(wz, "ok"), test::Step(k100, "click", "cmdGK"),
             test::Step(gk, "click", "optWCat(5)"), test::Step(gk, "ok"), test::Step(k100, "click", "cmdSLZ"), snow,
             test::Step(slz, "ok"), test::Step(k100, "ok")});
    EXPECT_EQ(forms, (std::vector<std::string>{k100, wz, wz, gk, slz}));
    EXPECT_TRUE(roof.OnOk());
    test::ExpectFileLines(file, "din3_choosers.asc");
}

// A C host calling the member by name, under the same script as the CLI and
// Python roads, gets the same file.
TEST_F(RoofLoadSessions, CHostGetsTheSameFile) {
    test::WriteFile(file, test::Fixture("en54.asc"));
    SessionScript script;
    script.steps = {test::Choose(kEN, "cbNormI", "3"), test::Step(k100, "ok")};
    auto p = std::make_shared<ScriptedPlatform>(script);
    qvrl_value onOk = qvrl_empty();
    p->Run([&] {
        qvrl_handle roof = 0;
        ASSERT_EQ(qvrl_create("CRoofLoad", &roof), 0u);
        qvrl_value arg = qvrl_string(file.c_str());
        EXPECT_EQ(qvrl_call(roof, "ShowRoofLoadDlg_EN", &arg, 1, nullptr), 0u) << qvrl_last_error_description();
        EXPECT_EQ(qvrl_get(roof, "OnOk", &onOk), 0u);
        qvrl_release(roof);
    });
    EXPECT_EQ(test::FormsOf(*p), (std::vector<std::string>{kEN, k100}));
    EXPECT_EQ(onOk.type, QVRL_BOOL);
    EXPECT_EQ(onOk.u.boolean, -1);
    test::ExpectFileLines(file, "din3_ok.asc");
}

// The trace of _1: its start, the twelve values the file brought, then the
// three steps of the dialog.
TEST_F(RoofLoadSessions, Din100TracesTheFileAndTheDialogSteps) {
    test::WriteFile(file, test::Fixture("din3_wz5.asc"));
    const auto run = RunMemberUnder(std::make_shared<ScriptedPlatform>(SessionScript{{test::Step(k100, "ok")}, {}}),
                                    "CRoofLoad.ShowRoofLoadDlg_1", {Variant(file)});
    std::vector<std::string> want = {"SHOWROOFLOADDLG_1 : ",
                                     "ASCIIFileName=" + file + " ",
                                     "Town= ",
                                     "AGS= ",
                                     "Snow= ",
                                     "Norm=3 ",
                                     "s0=1.2 ",
                                     "hTerrain=250 ",
                                     "zone=2 ",
                                     "Wind= ",
                                     "q0=0.5 ",
                                     "hBuild=10 ",
                                     "cat=2 ",
                                     "DLG.INIT: ",
                                     "DLG.UPDATEDATA: ",
                                     "DLG.SHOW: "};
    // From the session's start, without the lines of the list of standards.
    std::vector<std::string> got;
    bool started = false;
    for (const std::string& line : run.trace) {
        started = started || line == want.front();
        if (started && line.rfind("INITCBNORM", 0) != 0) got.push_back(line);
    }
    EXPECT_EQ(got, want);
    EXPECT_EQ(run.onOk, std::optional<bool>(true));
}

// The form model alone, under the headless platform.
class RoofLoad100Form : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        InitLanguageObjects();
        State().SelectableCodesCtrl = "_1_3_31_54_";
        f = std::make_unique<frmRoofLoad100>();
        f->Load();
    }
    void Open() {
        f->MitNormSelect = true;
        f->Init_Me();
        f->UpdateData(false, "");
    }
    const Label& L(const char* key) const { return f->Get<Label>(key); }
    std::unique_ptr<frmRoofLoad100> f;
};

// The note of each height limit stays black at the limit and turns red
// just above it; the wind note has one limit for every zone.
TEST_F(RoofLoad100Form, FootnotesRedJustAboveTheirLimit) {
    constexpr uint32_t black = 0, red = 255;
    struct Case {
        int16_t slz;
        double h;
        const char* snowText;
        uint32_t snow, wind;
    };
    const Case cases[] = {
        {1, 800, "(h <= 800m)", black, black},      {1, 800.01, "(h <= 800m)", red, black},
        {11, 800.01, "(h <= 800m)", red, black},    {2, 1200, "(h <= 1200m)", black, red},
        {21, 1200.01, "(h <= 1200m)", red, red},    {3, 1100, "(h <= 1500m)", black, black},
        {3, 1100.01, "(h <= 1500m)", black, red},   {3, 1500.01, "(h <= 1500m)", red, red},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.slz) + " at " + std::to_string(c.h));
        f->SLZ = c.slz;
        f->Hoehe_NN = c.h;
        Open();
        EXPECT_TRUE(L("lblSnowH").Visible());
        EXPECT_EQ(L("lblSnowH").Caption(), c.snowText);
        EXPECT_EQ(L("lblSnowH").ForeColor(), c.snow);
        EXPECT_EQ(L("lblWindH").Caption(), "(h <= 1100m)");
        EXPECT_EQ(L("lblWindH").ForeColor(), c.wind);
    }
}

// The reference pressure is the zone's whatever NachNorm says; with it off a
// zone chosen in the list still computes q (the list's own read), while a
// redraw alone leaves a typed q alone.
TEST_F(RoofLoad100Form, ReferencePressureFollowsTheZone) {
    f->NachNorm = false;
    f->Hoehe_Geb = 10;
    f->GebKat = 2;
    f->Hoehe_NN = 250;
    f->Rechenwert_wq = 0.5;
    struct Case {
        int16_t norm, wz, shown;
    };
    const Case cases[] = {{3, 2, 2}, {3, 4, 4}, {3, 5, 1}, {31, 5, 5}, {3, 0, 1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.norm) + "/" + std::to_string(c.wz));
        f->Norm = static_cast<int16_t>(c.norm);
        f->WZ = c.wz;
        Open();
        double q = 0, v = 0;
        WindReference(c.shown, q, v);
        EXPECT_EQ(f->WZ, c.shown);
        EXPECT_EQ(f->wqRef(), q);
        EXPECT_EQ(f->Get<QVTextBox>("txtWind(4)").EditText(), Format(Variant(q), "0.00"));
        EXPECT_EQ(f->Rechenwert_wq, 0.5);
    }
    auto& wz = f->Get<ComboBox>("cbWZ");
    wz.ListIndex(2);
    EXPECT_EQ(f->WZ, 3);
    EXPECT_EQ(f->Rechenwert_wq, WindPressure_DIN1055_4_2005(3, 2, 10, 250));
    double q = 0, v = 0;
    WindReference(3, q, v);
    EXPECT_EQ(f->wqRef(), q);
}

// 31 has no row in the list of standards: it shows as the 2005 row, keeps
// its five zones, and stays 31 until the user picks another row. A code of another
// dialog hides the form for the session.
TEST_F(RoofLoad100Form, StandardChoice) {
    f->Norm = 31;
    f->Init_Me();
    Open();
    auto& normI = f->Get<ComboBox>("cbNormI");
    const auto choose = [&](const std::string& tag) {
        for (int32_t i = 0; i < normI.ListCount(); ++i)
            if (normI.Item(i).tag == tag) normI.ListIndex(i);
    };
    EXPECT_EQ(f->Norm, 31);
    EXPECT_EQ(normI.Item(normI.ListIndex()).tag, "3");
    EXPECT_EQ(f->Get<ComboBox>("cbWZ").ListCount(), 5);
    EXPECT_FALSE(f->SwitchNorm);
    choose("54");
    EXPECT_EQ(f->Norm, 54);
    EXPECT_TRUE(f->SwitchNorm);
    EXPECT_FALSE(f->Accepted);
}

}  // namespace

// Each zone button follows its own file and standard; the town choice does
// not switch the zone choosers.
class RoofLoad100Buttons : public test::TownDbTest {};

TEST_F(RoofLoad100Buttons, EnabledByTheirFiles) {
    struct Case {
        int16_t norm;
        const char* missing;  // nullptr: every file there
        bool slz2, wz2, ags;
    };
    const Case cases[] = {
        {3, nullptr, true, true, true},          {31, nullptr, true, true, true},
        {1, nullptr, false, false, false},       {3, "qvrlwlz.mdb", true, true, true},
        {31, "qvrlwlz.mdb", true, false, true},  {3, "qvrlwlz_dibt.mdb", true, false, true},
        {3, "qvrlslz.mdb", false, true, true},   {31, "qvrl.mdb", true, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.norm) + (c.missing ? std::string(" without ") + c.missing : ""));
        std::filesystem::path gone;
        if (c.missing) {
            gone = program_ / (std::string(c.missing) + ".away");
            std::filesystem::rename(program_ / c.missing, gone);
        }
        frmRoofLoad100 f;
        f.Load();
        f.Norm = c.norm;
        f.EnableZoneButtons();
        EXPECT_EQ(f.Find("cmdSLZ2")->Enabled(), c.slz2);
        EXPECT_EQ(f.Find("cmdWZ2")->Enabled(), c.wz2);
        EXPECT_EQ(f.Find("cmdAGS")->Enabled(), c.ags);
        if (c.missing) std::filesystem::rename(gone, program_ / c.missing);
    }
}

// cmdAGS opens the town selection of the 2005 lists: the town's zones and
// key reach the file, its name the label; the typed values stay.
class RoofLoad100TownSession : public test::TownSessionTest {};

TEST_F(RoofLoad100TownSession, TownChosenThroughCmdAGS) {
    test::WriteFile(file, test::Fixture("din3_ok.asc"));
    SessionStep state = test::Step("frmSelTown", "choose", "cbBL");
    state.text = "Nordrhein-Westfalen";
    SessionStep row = test::Step("frmSelTown", "select_row", "lvGem");
    row.row = 0;
    SessionScript script;
    script.steps = {test::Step(k100, "click", "cmdAGS"), state, test::Type("frmSelTown", "txtAGS(0)", "5205"), row,
                    test::Step("frmSelTown", "ok"), test::Step(k100, "ok")};
    auto p = std::make_shared<ScriptedPlatform>(script);
    CRoofLoad roof;
    p->Run([&] { roof.ShowRoofLoadDlg_1(file); });
    EXPECT_EQ(test::FormsOf(*p), (std::vector<std::string>{k100, "frmSelTown"}));
    EXPECT_TRUE(roof.OnOk());
    test::ExpectFileLines(file, "din3_town.asc");
}

// The key given by the session looks the town up for the label; a key that
// is no number above 0 shows that no town is chosen.
TEST_F(RoofLoad100TownSession, KeyNamesTheTown) {
    InitLanguageObjects();
    const std::pair<const char*, const char*> cases[] = {
        // Text 422 loses its trailing blank as every language text does.
        {"05334002", "52058 Aachen, Stadt   (Nordrhein-Westfalen,Reg.-Bez. Köln)"},
        {"", "keine Gemeinde ausgewählt"},
        {"0", "keine Gemeinde ausgewählt"},
    };
    for (const auto& [key, label] : cases) {
        SCOPED_TRACE(key);
        frmRoofLoad100 f;
        f.Load();
        f.AGS(key);
        f.UpdateData(false, "");
        EXPECT_EQ(f.Get<Label>("lblAGS").Caption(), label);
    }
}
