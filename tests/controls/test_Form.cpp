#include <gtest/gtest.h>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVLabel.h"
#include "controls/QVTextBox.h"
#include "controls/frmWartenProgress.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/Platform.h"

using namespace qvrl;

namespace {

// A dialog as the later forms are built: an array of boxes, a combo, an
// option pair and the button strip; every event is logged.
class frmProbe : public Form {
public:
    frmProbe() {
        txt0 = &Add<QVTextBox>("txtWind", 0);
        txt1 = &Add<QVTextBox>("txtWind", 1);
        cb = &Add<ComboBox>("cbNorm");
        opt0 = &Add<OptionButton>("optA", 0);
        opt1 = &Add<OptionButton>("optA", 1);
        hidden = &Add<CommandButton>("cmdHidden");
        hidden->Visible(false);
        buttons = &Add<QVButtons>("QVButtons1");
        txt1->MinCheck = true;
        txt1->Min = 1;
        for (QVTextBox* t : {txt0, txt1}) {
            t->KeyPress = [this, t](int16_t& k) { log.push_back(t->Key() + " key " + std::string(1, char(k))); };
            t->Change = [this, t] { if (!Updating) log.push_back(t->Key() + " change"); };
            t->ValidateEvent = [this, t](bool&) { log.push_back(t->Key() + " validate"); };
        }
        cb->Click = [this] { if (!Updating) log.push_back("cbNorm click"); };
        buttons->OnOk = [this] {
            Accepted = true;
            Hide();
        };
        buttons->OnCancel = [this] {
            Accepted = false;
            Hide();
        };
    }
    std::string FormName() const override { return "frmProbe"; }
    void Localize() override {
        Caption("Probe");
        buttons->Localize();
        log.push_back("localize");
    }
    void UpdateData(bool toData, const std::string&) override {
        if (toData) return;
        Updating = true;
        txt0->Text(Variant(1.25));
        cb->ListIndex(0);
        Updating = false;
    }
    QVTextBox *txt0, *txt1;
    ComboBox* cb;
    OptionButton *opt0, *opt1;
    CommandButton* hidden;
    QVButtons* buttons;
    std::vector<std::string> log;
};

class FormTest : public test::IsolatedTest {
protected:
    // Texts come from the language files, as in a session of CRoofLoad.
    void SetUp() override {
        IsolatedTest::SetUp();
        InitLanguageObjects();
    }
    HeadlessPlatform& headless() { return static_cast<HeadlessPlatform&>(CurrentPlatform()); }
};

TEST_F(FormTest, ControlsByNameAndIndex) {
    frmProbe f;
    EXPECT_EQ(&f.Get<QVTextBox>("txtWind(1)"), f.txt1);
    EXPECT_EQ(f.Find("TXTWIND( 0 )"), f.txt0);
    EXPECT_EQ(f.Find("txtWind"), nullptr);
    EXPECT_EQ(test::ErrorOf([&] { f.Get<QVTextBox>("txtSnow(0)"); }), 9);
    EXPECT_EQ(test::ErrorOf([&] { f.Get<ComboBox>("txtWind(0)"); }), 13);
    EXPECT_EQ(f.Controls().size(), 7u);
}

TEST_F(FormTest, CodeChangesRaiseEventsThatHandlersSkipWhileUpdating) {
    frmProbe f;
    f.cb->AddItem("DIN", 1, "1");
    f.UpdateData(false, "");
    EXPECT_TRUE(f.log.empty());
    f.txt0->Text(Variant(2.0));
    f.cb->ListIndex(-1);
    // The text goes in as given, then scaled and formatted: two changes.
    EXPECT_EQ(f.log, (std::vector<std::string>{"txtWind(0) change", "txtWind(0) change", "cbNorm click"}));
    EXPECT_EQ(test::ErrorOf([&] { f.cb->ListIndex(1); }), 380);
}

TEST_F(FormTest, LeavingABoxValidatesItAndAFailureKeepsTheFocus) {
    frmProbe f;
    f.Load();
    ASSERT_TRUE(f.SetFocus(*f.txt1));
    f.txt1->TypeText("0");
    // Key press, change, then validate on leaving: normalised, set to Min,
    // formatted (three changes), refused; the focus stays.
    EXPECT_FALSE(f.SendTab());
    EXPECT_EQ(f.ActiveControl(), f.txt1);
    EXPECT_EQ(f.txt1->EditText(), "1.00");
    EXPECT_EQ(f.log, (std::vector<std::string>{"localize", "txtWind(1) key 0", "txtWind(1) change",
                                               "txtWind(1) change", "txtWind(1) change", "txtWind(1) change",
                                               "txtWind(1) validate"}));
    EXPECT_TRUE(f.SendTab());           // 1.00 passes now
    EXPECT_EQ(f.ActiveControl(), f.cb);
    // Tab skips what cannot take the focus and wraps around.
    f.SetFocus(*f.opt1);
    f.SendTab();
    EXPECT_EQ(f.ActiveControl(), f.buttons);
    f.SendTab();
    EXPECT_EQ(f.ActiveControl(), f.txt0);
    EXPECT_EQ(test::ErrorOf([&] { f.SetFocus(*f.hidden); }), 5);
    // A control that does not cause validation is entered without it.
    f.txt0->EditText("x");
    f.cb->CausesValidation(false);
    f.log.clear();
    EXPECT_TRUE(f.SetFocus(*f.cb));
    EXPECT_TRUE(f.log.empty());
    EXPECT_EQ(headless().FocusMoves().back(), "frmProbe.cbNorm");
}

TEST_F(FormTest, PlainTextBoxRaisesKeyEventsInWindowsOrder) {
    TextBox t("txtBez");
    std::string ev;
    t.KeyDown = [&](int16_t& k, int16_t) { ev += "d" + std::to_string(k) + " "; };
    t.KeyPress = [&](int16_t& k) {
        ev += "p ";
        if (k == 'x') k = 0;
    };
    t.Change = [&] { ev += "c "; };
    t.KeyUp = [&](int16_t& k, int16_t) { ev += "u" + std::to_string(k) + " "; };
    t.MaxLength = 2;
    t.TypeText("axbc\b");
    EXPECT_EQ(t.Text(), "a");
    EXPECT_EQ(ev, "d65 p c u65 d88 p u88 d66 p c u66 d67 p u67 d8 p c u8 ");
}

TEST_F(FormTest, OptionsOfAGroupExcludeEachOther) {
    frmProbe f;
    int clicks = 0;
    f.opt1->Click = [&] { ++clicks; };
    f.opt0->Value(true);
    f.opt1->PerformClick();
    f.opt1->PerformClick();  // a click on the set option raises Click again
    EXPECT_FALSE(f.opt0->Value());
    EXPECT_TRUE(f.opt1->Value());
    EXPECT_EQ(clicks, 2);
}

TEST_F(FormTest, LifeThroughThePlatform) {
    frmProbe f;
    headless().OnShow("frmProbe", [](FormBase& form) {
        auto& p = static_cast<frmProbe&>(form);
        EXPECT_TRUE(p.IsShown());
        p.buttons->cmdOk().PerformClick();
    });
    f.Show();
    EXPECT_TRUE(f.Accepted);
    EXPECT_FALSE(f.IsShown());
    EXPECT_TRUE(f.IsLoaded());
    EXPECT_EQ(f.Caption(), "Probe");
    EXPECT_EQ(f.buttons->cmdOk().Caption(), "O&k");
    f.Unload();
    EXPECT_FALSE(f.IsLoaded());
    f.Show();  // loads again
    EXPECT_EQ(std::count(f.log.begin(), f.log.end(), "localize"), 2);
}

TEST_F(FormTest, QVButtonsStyleAndIndexes) {
    QVButtons b("QVButtons1");
    EXPECT_EQ(test::ErrorOf([&] { b.Style(2); }), 393);
    EXPECT_EQ(b.Style(), 1);
    b.UserMode = false;
    b.Style(2);
    EXPECT_EQ(b.StripWidth(), 1404);
    EXPECT_EQ(b.StripHeight(), 918);
    EXPECT_EQ(&b.Buttons(5), &b.cmdOk());
    EXPECT_EQ(&b.Buttons(-1), &b.cmdOk());
    EXPECT_EQ(&b.Buttons(1), &b.cmdCancel());
    std::vector<std::string> events;
    b.OnOk = [&] { events.push_back("ok"); };
    b.OnCancel = [&] { events.push_back("cancel"); };
    b.Value(2, true);
    b.Value(1, true);
    b.Value(0, true);
    EXPECT_EQ(events, (std::vector<std::string>{"cancel", "ok"}));
    PropertyBag bag;
    b.WriteProperties(bag);
    QVButtons c("c");
    c.ReadProperties(bag);  // the design-time road
    EXPECT_EQ(c.Style(), 2);
    EXPECT_EQ(c.cmdCancel().Caption(), "&Abbrechen");
    c.Localize();
    EXPECT_EQ(c.cmdCancel().Caption(), "&Abbrechen");  // text 416
}

TEST_F(FormTest, LabelRunsAtTheSymbolMarker) {
    struct Row {
        const char* caption;
        std::vector<std::pair<std::string, bool>> runs;
        std::string shown;
    };
    const Row rows[] = {
        {"a\\gbc", {{"a", false}, {"b", true}, {"c", false}}, "aβc"},
        {"plain", {{"plain", false}}, "plain"},
        {"\\ga", {{"a", true}}, "α"},
        {"x\\g", {{"x", false}}, "x"},
        {"\\gD\\gDz", {{"D", true}, {"D", true}, {"z", false}}, "ΔΔz"},
        {"", {}, ""},
        {"\\g1", {{"1", true}}, "1"},
    };
    for (const auto& r : rows) {
        QVLabel l("lbl");
        l.Caption(r.caption);
        std::vector<std::pair<std::string, bool>> got;
        std::string shown;
        for (const auto& run : l.Runs()) {
            got.emplace_back(run.text, run.symbol);
            shown += run.shown;
            EXPECT_EQ(run.fontName, run.symbol ? "Symbol" : "MS Sans Serif");
        }
        EXPECT_EQ(got, r.runs) << r.caption;
        EXPECT_EQ(shown, r.shown) << r.caption;
    }
}

TEST_F(FormTest, FrameCaption) {
    QVFrame f("fra");
    PropertyBag bag;
    f.WriteProperties(bag);
    EXPECT_FALSE(bag.Contains("Caption"));  // "Q+V Frame" is the default
    EXPECT_EQ(f.DrawnCaption(), "Q+V Frame");
    f.Caption("&Wind && Schnee");
    EXPECT_EQ(f.DrawnCaption(), "Wind  Schnee");
    f.Caption("");
    EXPECT_EQ(f.DrawnCaption(), " ");
    EXPECT_FALSE(f.Themed());
}

TEST_F(FormTest, ProgressBeyondTheMaximumLeavesTheBar) {
    frmWartenProgress p;
    EXPECT_EQ(p.Caption(), "processing...");
    p.MaxValueSub(100);
    p.ValueSub(40);
    EXPECT_EQ(p.Get<ProgressBar>("ProgressBar2").Value(), 40.0f);
    EXPECT_EQ(p.Get<Label>("lblProgress2").Caption(), " ");
    p.DetailProgressInfo = true;
    p.ValueSub(150);
    EXPECT_EQ(p.Get<ProgressBar>("ProgressBar2").Value(), 40.0f);
    EXPECT_EQ(p.Get<Label>("lblProgress2").Caption(), "  150 %");
    EXPECT_EQ(p.Get<Label>("lblPosProg2").Caption(), "150 / 100");
    EXPECT_EQ(p.ValueSub(), 150.0f);
    p.MaxValueMain(0);
    EXPECT_EQ(test::ErrorOf([&] { p.ValueMain(5); }), 11);
    const int before = headless().DoEventsCount();
    p.Load();
    EXPECT_EQ(p.Caption(), "Verarbeitung läuft ...");
    EXPECT_EQ(p.InfoText(), "Bitte warten Sie ...");
    EXPECT_GT(headless().DoEventsCount(), before);
}

}  // namespace
