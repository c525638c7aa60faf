// The Eurocode roof load dialog: whole roads from block file to block file
// through the session, each compared line by line with a file written by
// hand, and the rules of the form model that the roads do not reach.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "dialogs/SessionRoads.h"
#include "location/test_modAGSMdb_fixture.h"
#include "automation/CRoofLoad.h"
#include "automation/Session.h"
#include "dialogs/frmRoofLoadEN.h"
#include "interchange/modAsciiRL2.h"
#include "maintenance/StoreImports.h"
#include "rules/modSnowEN.h"
#include "qvroofload.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

const char* const kForm = "frmRoofLoadEN";

SessionStep Step(const std::string& action, const std::string& control = {}) {
    return test::Step(kForm, action, control);
}
SessionStep Type(const std::string& control, const std::string& text) { return test::Type(kForm, control, text); }
SessionStep Key(const std::string& control, const std::string& key) { return test::Key(kForm, control, key); }
using test::Fixture;

class RoofLoadENSession : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        file = (test::FreshFolder("blocks") / "roof.asc").string();
    }
    // Runs the member under the script; the forms shown, in order.
    std::vector<std::string> Run(CRoofLoad& roof, SessionScript script) {
        auto p = std::make_shared<ScriptedPlatform>(std::move(script));
        p->Run([&] { roof.ShowRoofLoadDlg_EN(file); });
        return test::FormsOf(*p);
    }
    void ExpectFile(const std::string& expected) const { test::ExpectFileLines(file, expected); }
    std::string file;
};

// OK writes what the boxes show; Cancel leaves every byte; a typed building
// height recomputes q_p at once even with the standard's values off:
// 0.39 kN/m² · ce(12 m, category II) = 0.39 · 2.4693 = 0.963, shown 0.96, so
// the file holds 0.000096. qb stands without decimals (0), and 54 joins the
// selectable codes.
TEST_F(RoofLoadENSession, BuildingHeightThenOkOrCancel) {
    struct Case {
        const char* name;
        std::vector<SessionStep> steps;
        bool onOk;
        const char* expected;  // nullptr: the input unchanged
    };
    const Case cases[] = {
        {"height and OK", {Type("txtWind(0)", "12"), Step("ok")}, true, "en54_height12.asc"},
        {"height and Cancel", {Type("txtWind(0)", "12"), Step("cancel")}, false, nullptr},
        {"Escape", {Key("txtWind(0)", "Escape")}, false, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string input = Fixture("en54.asc");
        test::WriteFile(file, input);
        CRoofLoad roof;
        SessionScript script;
        script.steps = c.steps;
        EXPECT_EQ(Run(roof, script), std::vector<std::string>{kForm});
        EXPECT_EQ(roof.OnOk(), c.onOk);
        if (c.expected) ExpectFile(c.expected);
        else EXPECT_EQ(test::ReadFile(file), input);
    }
}

// A C host calling the member by name, under the same script, gets the
// same file.
TEST_F(RoofLoadENSession, CHostGetsTheSameFile) {
    test::WriteFile(file, Fixture("en54.asc"));
    SessionScript script;
    script.steps = {Type("txtWind(0)", "12"), Step("ok")};
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
    EXPECT_EQ(onOk.type, QVRL_BOOL);
    EXPECT_EQ(onOk.u.boolean, -1);
    ExpectFile("en54_height12.asc");
}

// With the standard's values on, a typed q0 and s0 are replaced by the
// rules' values at the first pass and their boxes cannot be typed into.
// UK zone 2 at 250 m: 0.1·2 + 0.05 + 0.15 + (250 + 100)/525 = 1.067 → 0.000107;
// q_p is 0, as the UK basic velocity comes from a town only.
TEST_F(RoofLoadENSession, NachNormReplacesTypedValuesAndLocksTheirBoxes) {
    test::WriteFile(file, Fixture("uk53_nachnorm.asc"));
    CRoofLoad roof;
    SessionScript script;
    script.steps = {Type("txtSnow(2)", "3"), Step("ok")};
    auto p = std::make_shared<ScriptedPlatform>(script);
    try {
        p->Run([&] { roof.ShowRoofLoadDlg_EN(file); });
        FAIL() << "a locked box took text";
    } catch (const ScriptError& e) {
        EXPECT_EQ(e.step(), 1u);
        EXPECT_NE(std::string(e.what()).find("locked"), std::string::npos) << e.what();
    }

    script.steps = {Step("ok")};
    Run(roof, script);
    EXPECT_TRUE(roof.OnOk());
    EXPECT_TRUE(roof.DefaultAccNorm);
    ExpectFile("uk53_nachnorm_ok.asc");
}

// A file that is not there opens the dialog on the first standard offered;
// OK makes the file, Cancel makes none.
TEST_F(RoofLoadENSession, MissingFile) {
    {
        CRoofLoad roof;
        SessionScript script;
        script.steps = {Step("cancel")};
        Run(roof, script);
        EXPECT_FALSE(roof.OnOk());
        EXPECT_FALSE(fs::exists(file));
    }
    CRoofLoad roof;
    SessionScript script;
    script.steps = {Step("ok")};
    Run(roof, script);
    EXPECT_TRUE(roof.OnOk());
    // No VERSION line switched the standard's values off.
    EXPECT_FALSE(roof.DefaultAccNorm);
    ExpectFile("missing_ok.asc");
}

// A file that never held data takes the stored defaults when asked; without
// the switch it stays empty, except that zone 0 is not in the list, so the
// first zone (1) is shown and written.
TEST_F(RoofLoadENSession, DefaultsOnAndOff) {
    SaveDefaults(TownRec{}, WindLoadRec{54, 0.7, 8.0, 0, 3, 0.32}, SnowLoadRec{54, 0.9, 420.0, 2}, 0, "");
    const std::string empty =
        "@VERSION Vers CtrlNorm\r\nVERSION 004 000\r\n@WINDLOAD        Norm\r\nWINDLOAD         54\r\n"
        "@SNOWLOAD        Norm\r\nSNOWLOAD         54\r\n";
    for (const bool withDefaults : {true, false}) {
        SCOPED_TRACE(withDefaults);
        test::WriteFile(file, empty);
        CRoofLoad roof;
        roof.WithDefaults = withDefaults;
        SessionScript script;
        script.steps = {Step("ok")};
        Run(roof, script);
        ExpectFile(withDefaults ? "defaults_on.asc" : "defaults_off.asc");
    }
}

// The defaults button stores the properties as they stand, not the boxes,
// and Cancel after it still leaves the block file alone.
TEST_F(RoofLoadENSession, DefaultsButtonStoresThePropertiesAsTheyStand) {
    const std::string input = Fixture("en54.asc");
    test::WriteFile(file, input);
    CRoofLoad roof;
    roof.WithDefaults = true;
    SessionScript script;
    script.steps = {Step("click", "cmdDefault"), Step("cancel")};
    Run(roof, script);
    EXPECT_EQ(test::ReadFile(file), input);
    TownRec town;
    WindLoadRec wind;
    SnowLoadRec snow;
    int16_t ctrlNorm = -1;
    std::string codes;
    ReadDefaults(town, wind, snow, ctrlNorm, codes);
    EXPECT_EQ(ctrlNorm, 0);
    EXPECT_EQ(wind.Norm, 54);
    EXPECT_EQ(wind.q0, 0.5);  // read back through the file's kN/cm²: 0.000050 · 10000
    EXPECT_EQ(wind.h, 10.0);
    EXPECT_EQ(wind.cat, 2);
    EXPECT_EQ(snow.Norm, 54);
    // Both reads multiply the written 0.000085 by 10000, which is not 0.85 to the last bit.
    EXPECT_EQ(snow.s0, 0.000085 * 10000);
    EXPECT_NE(snow.s0, 0.85);
    EXPECT_EQ(snow.h, 250.0);
    EXPECT_EQ(snow.sz, 2);
}

// The choosers hand their code back into the form: the category overview
// returns the EN category itself; the UK annex has no snow map, which says
// so and changes nothing.
TEST_F(RoofLoadENSession, ChoosersHandBackTheirCode) {
    SessionStep option = Step("click", "optWCat(4)");
    option.form = "frmWindCategoryEN";
    SessionStep chooserOk = Step("ok");
    chooserOk.form = "frmWindCategoryEN";
    struct Case {
        const char* input;
        std::vector<SessionStep> steps;
        std::vector<std::string> forms;
        size_t messages;
        const char* expected;
    };
    const Case cases[] = {
        {"en54.asc", {Step("click", "cmdGK"), option, chooserOk, Step("ok")}, {kForm, "frmWindCategoryEN"}, 0,
         "en54_cat4.asc"},
        {"uk53_nachnorm.asc", {Step("click", "cmdSLZ"), Step("ok")}, {kForm}, 1, "uk53_nachnorm_ok.asc"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        test::WriteFile(file, Fixture(c.input));
        CRoofLoad roof;
        SessionScript script;
        script.steps = c.steps;
        auto p = std::make_shared<ScriptedPlatform>(script);
        p->Run([&] { roof.ShowRoofLoadDlg_EN(file); });
        EXPECT_EQ(test::FormsOf(*p), c.forms);
        EXPECT_EQ(p->Messages().size(), c.messages);
        EXPECT_TRUE(roof.OnOk());
        ExpectFile(c.expected);
    }
}

// The form model alone, under the headless platform.
class RoofLoadENForm : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        InitLanguageObjects();
        State().SelectableCodesCtrl = "_1_3_54_50_51_53_52_";
        f = std::make_unique<frmRoofLoadEN>();
        f->Load();
    }
    void Open(int16_t norm, int16_t cat) {
        f->Norm(norm);
        f->GebKat = cat;
        f->MitNormSelect = true;
        f->Init_Me();
        f->UpdateData(false, "");
    }
    bool Shown(const std::string& key) const { return f->Find(key)->Visible(); }
    std::unique_ptr<frmRoofLoadEN> f;
};

TEST_F(RoofLoadENForm, BoxesShownByStandardAndCategory) {
    struct Case {
        int16_t norm, cat;
        bool qb, vb, factors, shore, town, gk;
    };
    const Case cases[] = {
        {51, 2, true, false, false, false, false, true},  {54, 2, true, true, true, false, false, true},
        {50, 4, true, true, true, false, false, true},    {52, 1, true, true, true, false, false, true},
        {53, 0, false, true, true, false, false, false},  {53, 1, false, true, true, true, false, false},
        {53, 2, false, true, true, true, false, false},   {53, 3, false, true, true, true, true, false},
        {53, 4, false, true, true, true, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.norm) + "/" + std::to_string(c.cat));
        Open(c.norm, c.cat);
        EXPECT_EQ(Shown("txtWind(6)"), c.qb);
        EXPECT_EQ(Shown("txtWind(7)"), c.vb);
        EXPECT_EQ(Shown("txtWind(8)"), c.factors);
        EXPECT_EQ(Shown("txtWind(9)"), c.factors);
        EXPECT_EQ(Shown("txtWind(10)"), c.shore);
        EXPECT_EQ(Shown("txtWind(11)"), c.town);
        EXPECT_EQ(Shown("cmdGK"), c.gk);
    }
    // Hidden distances keep their values in the properties.
    f->DistShoreLine = 250;
    Open(53, 0);
    f->UpdateData(true, "");
    EXPECT_EQ(f->DistShoreLine, 250);
}

// A form opened without a region shows the first one and computes the
// snow load of that region, not of region 0, for which the rule has none.
TEST_F(RoofLoadENForm, MissingRegionTakesTheFirstShown) {
    f->NachNorm = true;
    f->SLZ = 2;
    f->Hoehe_NN = 420;
    Open(54, 2);
    const auto& cr = f->Get<ComboBox>("cbCR");
    ASSERT_GT(cr.ListCount(), 0);
    EXPECT_EQ(cr.ListIndex(), 0);
    EXPECT_EQ(f->Climate(), cr.ItemData(0));
    EXPECT_EQ(f->Rechenwert_s0, StandardSnowLoad_EN_1991_1_3(420.0, 54, f->Climate(), 2));
    EXPECT_GT(f->Rechenwert_s0, 0.0);
}

TEST_F(RoofLoadENForm, TownChoiceOnlyForGermanyAndAustria) {
    for (const int16_t n : {50, 51, 52, 53, 54}) {
        f->Norm(n);
        EXPECT_EQ(f->Find("cmdAGS")->Enabled(), n == 50 || n == 51) << n;
    }
}

// Code-made changes raise the controls' events; none of them may act while
// the form writes, and the one flag is clear afterwards.
TEST_F(RoofLoadENForm, OwnWritesDoNotFireHandlers) {
    f->NachNorm = true;
    f->Rechenwert_wq = 0.5;
    f->qb0 = 0.39;
    f->Hoehe_Geb = 12;
    Open(54, 2);
    EXPECT_FALSE(f->Updating);
    EXPECT_FALSE(f->Accepted);
    EXPECT_FALSE(f->SwitchNorm);
    // 0.39 · ce(12 m, category II) = 0.963..., shown to the hundredth.
    auto& wq = f->Get<QVTextBox>("txtWind(3)");
    EXPECT_EQ(wq.EditText(), "0.96");
    EXPECT_TRUE(wq.Locked());

    // Off: the box opens and keeps what is typed.
    f->Get<CheckBox>("chkNorm").PerformClick();
    EXPECT_FALSE(f->NachNorm);
    EXPECT_FALSE(wq.Locked());
}

TEST_F(RoofLoadENForm, CbNormClickDoesNothingAndEnChoiceStays) {
    Open(54, 2);
    auto& cbNorm = f->Get<ComboBox>("cbNorm");
    cbNorm.ListIndex(0);
    EXPECT_EQ(f->Norm(), 54);
    auto& cbNormI = f->Get<ComboBox>("cbNormI");
    for (int32_t i = 0; i < cbNormI.ListCount(); ++i)
        if (cbNormI.Item(i).tag == "53") cbNormI.ListIndex(i);
    EXPECT_EQ(f->Norm(), 53);
    EXPECT_FALSE(f->SwitchNorm);
    EXPECT_FALSE(f->Find("txtWind(6)")->Visible());
}

}  // namespace

// cmdAGS opens the Eurocode town selection; the chosen town (Aach: sk 0.85,
// 173 m, no qb, zone "1a" outside the Eurocode list) brings its snow load,
// altitude, qb and key into the file and leaves the zone code.
class RoofLoadENTownSession : public test::TownSessionTest {};

TEST_F(RoofLoadENTownSession, TownChosenThroughCmdAGS) {
    test::WriteFile(file, Fixture("en50.asc"));
    SessionScript script;
    SessionStep town;
    town.form = "frmSelTown_1";
    town.action = "type";
    town.control = "txtAGS(1)";
    town.text = "Aach";
    SessionStep row = town;
    row.action = "select_row";
    row.control = "lvGem";
    row.row = 0;
    SessionStep ok = town;
    ok.action = "ok";
    ok.control.clear();
    script.steps = {Step("click", "cmdAGS"), town, row, ok, Step("ok")};
    auto p = std::make_shared<ScriptedPlatform>(script);
    CRoofLoad roof;
    p->Run([&] { roof.ShowRoofLoadDlg_EN(file); });
    EXPECT_EQ(test::FormsOf(*p), (std::vector<std::string>{kForm, "frmSelTown_1"}));
    EXPECT_TRUE(roof.OnOk());
    test::ExpectFileLines(file, "en50_town.asc");
}
