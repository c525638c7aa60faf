#include <gtest/gtest.h>

#include <memory>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "automation/Session.h"
#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVTextBox.h"
#include "controls/frmWartenProgress.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"

using namespace qvrl;

namespace {

// A dialog of the tests' own: a box array, a combo, a check box, a grid, a
// map, a disabled button, a button that opens a nested dialog, the strip.
class frmDrive : public Form {
public:
    explicit frmDrive(std::string name = "frmDrive") : name_(std::move(name)) {
        txt0 = &Add<QVTextBox>("txtWind", 0);
        txt1 = &Add<QVTextBox>("txtWind", 1);
        txt1->MinCheck = true;
        txt1->Min = 1;
        cb = &Add<ComboBox>("cbNorm");
        cb->AddItem("DIN 1055", 1, "DIN");
        cb->AddItem("EN 1991", 50, "EN");
        chk = &Add<CheckBox>("chkNachNorm");
        grid = &Add<ListView>("lvTown");
        grid->AddRow({"Aachen", "2"});
        grid->AddRow({"Bonn", "1"});
        map = &Add<Image>("ucMap");
        off = &Add<CommandButton>("cmdOff");
        off->Enabled(false);
        nested = &Add<CommandButton>("cmdNested");
        strip = &Add<QVButtons>("QVButtons1");
        txt0->QVReturnKey = [this] { SendTab(); };
        map->LayerMove = [this](int32_t l) { log.push_back("over " + std::to_string(l)); };
        map->LayerClick = [this](int32_t l) { log.push_back("click " + std::to_string(l)); };
        nested->Click = [this] {
            frmDrive inner("frmInner");
            inner.Show();
            log.push_back(std::string("inner ") + (inner.Accepted ? "ok" : "cancel"));
        };
        chk->Click = [this] {
            if (CurrentPlatform().MsgBox("Sicher?", mb::YesNo, "frage") == mb::Yes) log.push_back("yes");
        };
        strip->OnOk = [this] {
            Accepted = true;
            Hide();
        };
        strip->OnCancel = [this] { Hide(); };
    }
    std::string FormName() const override { return name_; }
    void Localize() override { Caption("Caption of " + name_); }
    QVTextBox *txt0, *txt1;
    ComboBox* cb;
    CheckBox* chk;
    ListView* grid;
    Image* map;
    CommandButton *off, *nested;
    QVButtons* strip;
    std::vector<std::string> log;

private:
    std::string name_;
};

SessionStep Step(const std::string& form, const std::string& action, const std::string& control = {}) {
    SessionStep s;
    s.form = form;
    s.action = action;
    s.control = control;
    return s;
}

class SessionTest : public test::IsolatedTest {
protected:
    // Texts come from the language files, as in a session of CRoofLoad.
    void SetUp() override {
        IsolatedTest::SetUp();
        InitLanguageObjects();
    }
    // Runs one dialog under the script; the error message of a step that
    // did not fit, "" when none.
    std::string Drive(SessionScript script, frmDrive& f) {
        platform = std::make_shared<ScriptedPlatform>(std::move(script));
        try {
            platform->Run([&] { f.Show(); });
        } catch (const ScriptError& e) {
            step = e.step();
            return e.what();
        }
        return {};
    }
    std::shared_ptr<ScriptedPlatform> platform;
    size_t step = 99;
};

TEST_F(SessionTest, StepsDriveTheFormUntilOk) {
    SessionScript s;
    s.steps.push_back(Step("frmDrive", "type", "txtWind(0)"));
    s.steps.back().text = "12,5";
    s.steps.push_back(Step("frmDrive", "type", "txtWind(1)"));
    s.steps.back().text = "0";  // Min 1: the box corrects itself and keeps the focus
    s.steps.push_back(Step("frmDrive", "choose", "cbNorm"));
    s.steps.back().tag = "EN";
    s.steps.push_back(Step("frmDrive", "select_row", "lvTown"));
    s.steps.back().text = "Bonn";
    s.steps.push_back(Step("frmDrive", "map"));
    s.steps.back().layer = 3;
    s.steps.back().click = true;
    s.steps.push_back(Step("frmDrive", "click", "chkNachNorm"));
    s.steps.push_back(Step("frmDrive", "click", "chkNachNorm"));
    s.steps.push_back(Step("frmDrive", "ok"));
    s.answers = {mb::No};
    frmDrive f;
    EXPECT_EQ(Drive(s, f), "");
    EXPECT_TRUE(f.Accepted);
    EXPECT_EQ(f.txt0->Text(), Variant(12.5));
    EXPECT_EQ(f.txt1->EditText(), "1.00");
    EXPECT_EQ(f.cb->ItemData(f.cb->ListIndex()), 50);
    EXPECT_EQ(f.grid->SelectedRow(), 1);
    EXPECT_EQ(f.chk->Value(), 0);
    EXPECT_EQ(f.log, (std::vector<std::string>{"over 3", "click 3", "yes"}));
    ASSERT_EQ(platform->Messages().size(), 2u);
    EXPECT_EQ(platform->Messages()[0].answer, mb::No);
    EXPECT_EQ(platform->Messages()[1].answer, mb::Yes);  // answers ran out: the default button
    ASSERT_EQ(platform->Forms().size(), 1u);
    EXPECT_EQ(platform->Forms()[0].caption, "Caption of frmDrive");
}

TEST_F(SessionTest, NestedDialogsTakeTheirOwnSteps) {
    SessionScript s;
    s.steps = {Step("frmDrive", "click", "cmdNested"), Step("frmInner", "cancel"), Step("frmDrive", "key"),
               Step("frmDrive", "cancel")};
    s.steps[2].key = "Escape";  // no Cancel button on the form: nothing happens
    frmDrive f;
    EXPECT_EQ(Drive(s, f), "");
    EXPECT_FALSE(f.Accepted);
    EXPECT_EQ(f.log, (std::vector<std::string>{"inner cancel"}));
    ASSERT_EQ(platform->Forms().size(), 2u);
    EXPECT_EQ(platform->Forms()[1].name, "frmInner");
}

TEST_F(SessionTest, StepsThatDoNotFitNameTheStep) {
    struct Row {
        std::vector<SessionStep> steps;
        size_t step;
        const char* message;
    };
    SessionStep badKey = Step("frmDrive", "key");
    badKey.key = "F1";
    SessionStep noItem = Step("frmDrive", "choose", "cbNorm");
    noItem.tag = "UK";
    SessionStep noRow = Step("frmDrive", "select_row", "lvTown");
    noRow.row = 2;
    const Row rows[] = {
        {{Step("frmOther", "ok")}, 1, "step 1 (frmOther ok): frmOther is not the active form; frmDrive is"},
        {{Step("frmDrive", "click", "cmdNone")}, 1, "step 1 (frmDrive click cmdNone): frmDrive has no control 'cmdNone'"},
        {{Step("frmDrive", "click", "cmdOff")}, 1, "step 1 (frmDrive click cmdOff): cmdOff is disabled"},
        {{Step("frmDrive", "type", "cbNorm")}, 1, "step 1 (frmDrive type cbNorm): a type step needs \"text\""},
        {{Step("frmDrive", "click", "QVButtons1")}, 1,
         "step 1 (frmDrive click QVButtons1): QVButtons1 cannot be clicked; use ok or cancel"},
        {{badKey}, 1, "step 1 (frmDrive key): unknown key 'F1' (Enter, Escape, Tab, Up, Down)"},
        {{noItem}, 1, "step 1 (frmDrive choose cbNorm): cbNorm has no such item"},
        {{noRow}, 1, "step 1 (frmDrive select_row lvTown): lvTown has no such row"},
        {{Step("frmDrive", "jump")}, 1, "step 1 (frmDrive jump): unknown action 'jump'"},
        {{Step("frmDrive", "map")}, 1, "step 1 (frmDrive map): a map step needs \"layer\""},
        {{}, 0, "the script ended while frmDrive is still open"},
        {{Step("frmDrive", "click", "cmdNested"), Step("frmInner", "ok")}, 0,
         "the script ended while frmDrive is still open"},
        {{Step("frmDrive", "ok"), Step("frmDrive", "ok")}, 2, "step 2 (frmDrive ok): frmDrive is not open; the run has ended"},
    };
    for (const auto& r : rows) {
        frmDrive f;
        SessionScript s;
        s.steps = r.steps;
        EXPECT_EQ(Drive(s, f), r.message);
        EXPECT_EQ(step, r.step) << r.message;
        EXPECT_EQ(State().platform.get(), &CurrentPlatform());
        EXPECT_EQ(dynamic_cast<ScriptedPlatform*>(&CurrentPlatform()), nullptr);  // put back
    }
}

TEST_F(SessionTest, ProgressWindowIsListedAsModeless) {
    auto p = std::make_shared<ScriptedPlatform>(SessionScript{});
    p->Run([] {
        frmWartenProgress w;
        w.ShowModeless();
        w.ValueMain(50);
        w.Unload();
    });
    ASSERT_EQ(p->Forms().size(), 1u);
    EXPECT_EQ(p->Forms()[0].name, "frmWartenProgress");
    EXPECT_EQ(p->Forms()[0].caption, "Verarbeitung läuft ...");
    EXPECT_FALSE(p->Forms()[0].modal);
}

TEST_F(SessionTest, MembersRunByName) {
    SessionScript s;
    s.answers = {mb::OK};
    auto p = std::make_shared<ScriptedPlatform>(s);
    MemberRun run;
    p->Run([&] { run = RunMemberUnder(p, "CRoofLoad.WindPressure_DIN1055_4_1986", {Variant(0.5)}); });
    EXPECT_EQ(run.result, Variant(0.0));
    ASSERT_EQ(p->Messages().size(), 1u);
    EXPECT_EQ(p->Messages()[0].text, "Funktion wird nicht mehr unterstützt");
    EXPECT_EQ(p->Messages()[0].title, "WindPressure_DIN1055_4_1986 ");
    ASSERT_TRUE(run.onOk.has_value());
    EXPECT_FALSE(*run.onOk);
    ASSERT_FALSE(run.trace.empty());
    EXPECT_NE(run.trace[0].find("CROOFLOAD_INITIALIZE"), std::string::npos);
    EXPECT_FALSE(run.fileLines.has_value());
    // The block file is found by the parameter's name, whatever its place.
    MemberInfo show{"ShowRoofLoadDlg_EN", MemberKind::Method, {{"Mode", "Integer"}, {"AsciiFileName", "String"}}, "", ""};
    EXPECT_EQ(FileArgument(show, {Variant(int16_t{1}), Variant("roof.asc")}), "roof.asc");
    EXPECT_EQ(FileArgument(show, {Variant(int16_t{1})}), "");
    show.params[1].type = "Double";
    EXPECT_EQ(FileArgument(show, {Variant(int16_t{1}), Variant("roof.asc")}), "");
    EXPECT_EQ(test::ErrorOf([&] { RunMemberUnder(p, "CRoofLoad", {}); }), 5);
    EXPECT_EQ(test::ErrorOf([&] { RunMemberUnder(p, "CNothing.X", {}); }), 91);
    EXPECT_EQ(test::ErrorOf([&] { RunMemberUnder(p, "CRoofLoad.NoSuch", {}); }), 438);
    EXPECT_EQ(test::ErrorOf([&] { RunMemberUnder(p, "CWindSnow.SnowMue2", {Variant("x")}); }), 13);
}

}  // namespace
