// The dialog of DIN 1055-4:1986 and DIN 1055-5:1975 as a form model: what
// each input computes, the footnote and limit of the terrain height by
// zone, the read-only design values, the choice of another standard, the
// snow zone map, and the defaults button.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "automation/Session.h"
#include "dialogs/frmRoofLoad.h"
#include "interchange/modAsciiRL2.h"
#include "rules/modSnow.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"

using namespace qvrl;

namespace {

class RoofLoadForm : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        InitLanguageObjects();
        State().SelectableCodesCtrl = "_1_3_54_50_51_53_52_";
        f = std::make_unique<frmRoofLoad>();
        f->Load();
    }
    // As the session opens it: properties, Init_Me, data to controls.
    void Open(int16_t slz, double hNN, bool nachNorm = false) {
        f->Norm(1);
        f->MitNormSelect = true;
        f->NachNorm = nachNorm;
        f->SLZ = slz;
        f->Hoehe_NN = hNN;
        f->Init_Me();
        f->UpdateData(false, "");
    }
    QVTextBox& Box(const std::string& key) const { return f->Get<QVTextBox>(key); }
    // Typed text, then the focus leaves: true when the box accepted it.
    bool Enter(const std::string& key, const std::string& text) const {
        QVTextBox& box = Box(key);
        box.EditText(text);
        return box.Validate();
    }
    void Choose(const std::string& combo, int32_t code) const {
        auto& cb = f->Get<ComboBox>(combo);
        for (int32_t i = 0; i < cb.ListCount(); ++i)
            if (cb.ItemData(i) == code) cb.ListIndex(i);
    }
    std::unique_ptr<frmRoofLoad> f;
};

// The zone decides the footnote and whether the terrain height is capped;
// a zone outside the list (0 from an empty file, 7) opens as zone 1.
TEST_F(RoofLoadForm, FootnoteAndHeightLimitByZone) {
    struct Case {
        int16_t slz, shownZone;
        bool footnote;
        const char* text;
        bool maxCheck;
        double max;
    };
    const Case cases[] = {
        {0, 1, true, "(h <= 800m)", true, 800}, {1, 1, true, "(h <= 800m)", true, 800},
        {2, 2, true, "(h <= 900m)", true, 900}, {3, 3, false, nullptr, false, 0},
        {4, 4, false, nullptr, false, 0},       {7, 1, true, "(h <= 800m)", true, 800},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.slz);
        Open(c.slz, 300);
        EXPECT_EQ(f->SLZ, c.shownZone);
        const auto& cb = f->Get<ComboBox>("cbSLZ");
        ASSERT_GE(cb.ListIndex(), 0);
        EXPECT_EQ(cb.ItemData(cb.ListIndex()), c.shownZone);
        const auto& note = f->Get<Label>("lblSnowH");
        EXPECT_EQ(note.Visible(), c.footnote);
        if (c.text) {
            EXPECT_EQ(note.Caption(), c.text);
        }
        EXPECT_EQ(Box("txtSnow(1)").MaxCheck, c.maxCheck);
        if (c.maxCheck) {
            EXPECT_EQ(Box("txtSnow(1)").Max, c.max);
        }
    }
}

// A typed terrain height computes s0 by the 1975 rule at once, NachNorm off;
// above the zone's limit the box caps the text and keeps the old height.
// Zone 3 has no cap: 850 m is taken and the rule interpolates.
TEST_F(RoofLoadForm, TerrainHeightComputesS0WithinTheZoneLimit) {
    struct Case {
        int16_t slz;
        const char* typed;
        bool accepted;
        const char* shown;
        double hNN;
    };
    const Case cases[] = {
        {1, "800", true, "800.00", 800},  {1, "800.01", false, "800.00", 300}, {2, "900", true, "900.00", 900},
        {2, "901", false, "900.00", 300}, {3, "850", true, "850.00", 850},     {4, "1000", true, "1000.00", 1000},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.typed) + " in zone " + std::to_string(c.slz));
        Open(c.slz, 300);
        f->Rechenwert_s0 = 0.01;
        EXPECT_EQ(Enter("txtSnow(1)", c.typed), c.accepted);
        EXPECT_EQ(Box("txtSnow(1)").EditText(), c.shown);
        EXPECT_EQ(f->Hoehe_NN, c.hNN);
        EXPECT_EQ(f->Rechenwert_s0, c.accepted ? StandardSnowLoad_DIN1055_5_1975(c.slz, c.hNN) : 0.01);
        EXPECT_FALSE(f->Updating);
    }
}

// A typed building height computes q by the 1986 rule with NachNorm off; a
// zone chosen from the list computes s0. A typed design value has no
// handler of its own: OK reads it from the box, but any pass before that
// shows the property again.
TEST_F(RoofLoadForm, BuildingHeightAndZoneComputeTheirDesignValues) {
    Open(2, 450);
    ASSERT_FALSE(f->NachNorm);
    f->Rechenwert_wq = 0.01;
    // The height bands of the 1986 table, each limit on its lower band.
    const struct {
        const char* typed;
        double h, q;
    } heights[] = {{"8", 8.0, 0.5},    {"8.01", 8.01, 0.8},   {"20", 20.0, 0.8},
                   {"20.01", 20.01, 1.1}, {"100", 100.0, 1.1}, {"100.01", 100.01, 1.3}};
    for (const auto& c : heights) {
        SCOPED_TRACE(c.typed);
        ASSERT_TRUE(Enter("txtWind(0)", c.typed));
        EXPECT_EQ(f->Hoehe_Geb, c.h);
        EXPECT_EQ(f->Rechenwert_wq, c.q);
    }
    ASSERT_TRUE(Enter("txtWind(1)", "0.77"));
    EXPECT_EQ(f->Rechenwert_wq, 1.3);
    Choose("cbSLZ", 4);
    EXPECT_EQ(f->SLZ, 4);
    EXPECT_EQ(f->Rechenwert_s0, StandardSnowLoad_DIN1055_5_1975(4, 450));
    EXPECT_EQ(Box("txtWind(1)").EditText(), "1.30");

    f->MitG = true;
    f->Rechenwert_g1 = 0.35;
    f->UpdateData(false, "");
    ASSERT_TRUE(Enter("txtG(3)", "0.4"));
    EXPECT_EQ(f->Rechenwert_g1, 0.4);
    ASSERT_TRUE(Enter("txtWind(1)", "0.77"));
    f->Get<QVButtons>("QVButtons1").cmdOk().PerformClick();
    EXPECT_TRUE(f->Accepted);
    EXPECT_EQ(f->Rechenwert_wq, 0.77);
    EXPECT_EQ(f->g1_Bemerkung, LoadResStr(Variant(31)));
    EXPECT_FALSE(f->g1_Bemerkung.empty());
}

// NachNorm owns both design values: they are recomputed at every pass,
// read-only and out of the tab order; the switch hands them back.
TEST_F(RoofLoadForm, NachNormLocksTheDesignValues) {
    f->Hoehe_Geb = 12;
    f->Rechenwert_wq = 0.3;
    f->Rechenwert_s0 = 0.3;
    Open(3, 620, true);
    EXPECT_EQ(f->Rechenwert_wq, 0.8);
    EXPECT_EQ(f->Rechenwert_s0, StandardSnowLoad_DIN1055_5_1975(3, 620));
    for (const char* key : {"txtWind(1)", "txtSnow(2)"}) {
        EXPECT_TRUE(Box(key).Locked()) << key;
        EXPECT_FALSE(Box(key).TakesFocus()) << key;
    }
    f->Get<CheckBox>("chkNorm").PerformClick();
    EXPECT_FALSE(f->NachNorm);
    for (const char* key : {"txtWind(1)", "txtSnow(2)"}) {
        EXPECT_FALSE(Box(key).Locked()) << key;
        EXPECT_TRUE(Box(key).TakesFocus()) << key;
    }
}

// Either list of standards: code 1 stays here, any other code hides the
// form with SwitchNorm for the session to go on elsewhere.
TEST_F(RoofLoadForm, AnotherStandardSwitches) {
    struct Case {
        const char* combo;
        int16_t code;
        bool switches;
    };
    const Case cases[] = {
        {"cbNormI", 1, false}, {"cbNormI", 3, true}, {"cbNormI", 54, true}, {"cbNorm", 3, true}, {"cbNorm", 50, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.combo) + " " + std::to_string(c.code));
        Open(1, 300);
        // Start from another item so that choosing 1 is a change too.
        auto& cb = f->Get<ComboBox>(c.combo);
        f->Updating = true;
        cb.ListIndex(cb.ListCount() - 1);
        f->Updating = false;
        f->SwitchNorm = false;
        Choose(c.combo, c.code);
        EXPECT_EQ(f->Norm(), c.code);
        EXPECT_EQ(f->SwitchNorm, c.switches);
        EXPECT_FALSE(f->Accepted);
    }
    // Shown: the choice alone ends the modal show, so the script needs no OK.
    SessionStep choose;
    choose.form = "frmRoofLoad";
    choose.action = "choose";
    choose.control = "cbNormI";
    choose.tag = "3";
    SessionScript script;
    script.steps = {choose};
    auto p = std::make_shared<ScriptedPlatform>(script);
    f->SwitchNorm = false;
    p->Run([&] {
        Open(1, 300);
        f->Show();
    });
    EXPECT_TRUE(f->SwitchNorm);
    EXPECT_FALSE(f->IsShown());
    EXPECT_EQ(p->StepsDone(), 1u);
}

// The snow zone map under the session driver: a zone clicked and OK brings
// the zone and, with NachNorm on, its s0; Cancel changes nothing.
TEST_F(RoofLoadForm, ZoneMapHandsBackItsZone) {
    const auto step = [](const char* form, const char* action, const char* control = "") {
        SessionStep s;
        s.form = form;
        s.action = action;
        s.control = control;
        return s;
    };
    SessionStep zone3 = step("frmSLZ", "map");
    zone3.layer = 3;
    zone3.click = true;
    struct Case {
        std::vector<SessionStep> chooser;
        int16_t slz;
        double s0;  // as OK reads it back from the box, to the hundredth
    };
    // At 650 m: zone III 1.6 + 0.5 · (2.0 - 1.6) = 1.8; zone II 1.15 + 0.5 · 0.35 = 1.325.
    const Case cases[] = {
        {{zone3, step("frmSLZ", "ok")}, 3, 1.8},
        {{zone3, step("frmSLZ", "cancel")}, 2, 1.33},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.slz);
        SessionScript script;
        script.steps.push_back(step("frmRoofLoad", "click", "cmdSLZ"));
        script.steps.insert(script.steps.end(), c.chooser.begin(), c.chooser.end());
        script.steps.push_back(step("frmRoofLoad", "ok"));
        auto p = std::make_shared<ScriptedPlatform>(script);
        p->Run([&] {
            Open(2, 650, true);
            f->Show();
        });
        EXPECT_TRUE(f->Accepted);
        EXPECT_EQ(f->SLZ, c.slz);
        EXPECT_EQ(f->Rechenwert_s0, c.s0);
        ASSERT_EQ(p->Forms().size(), 2u);
        EXPECT_EQ(p->Forms()[1].name, "frmSLZ");
    }
}

// The defaults button stores the properties as they stand, with no town,
// no category and no basic pressure of its own.
TEST_F(RoofLoadForm, DefaultsButtonStoresTheProperties) {
    f->Hoehe_Geb = 10;
    f->MitVorschlag = true;
    Open(2, 450, true);
    ASSERT_TRUE(f->Find("cmdDefault")->Visible());
    f->Get<CommandButton>("cmdDefault").PerformClick();
    TownRec town;
    WindLoadRec wind;
    SnowLoadRec snow;
    int16_t ctrlNorm = -1;
    std::string codes;
    ReadDefaults(town, wind, snow, ctrlNorm, codes);
    EXPECT_EQ(ctrlNorm, 1);
    EXPECT_EQ(wind.Norm, 1);
    EXPECT_EQ(wind.h, 10.0);
    EXPECT_EQ(wind.cat, 0);
    EXPECT_EQ(wind.qb, 0.0);
    EXPECT_EQ(snow.Norm, 1);
    EXPECT_EQ(snow.sz, 2);
    EXPECT_EQ(snow.h, 450.0);
    EXPECT_TRUE(town.AGS.empty());
}

}  // namespace
