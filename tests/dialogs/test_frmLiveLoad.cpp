// The live load dialog and its catalogue grids over a catalogue of the
// test's own rows: how the grid heads and separates the categories, what OK
// and Cancel of a grid hand back, and whole roads from block file to block
// file through ShowLiveLoadDlg and ShowLiveLoadDlg_1.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "TestEnv.h"
#include "automation/CRoofLoad.h"
#include "automation/Session.h"
#include "dialogs/frmLiveLoad_1.h"
#include "dialogs/frmLiveLoadSelect_1.h"
#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace {

struct CatalogueRow {
    int16_t norm;
    int16_t art;
    const char* zeile;
    const char* kategorie;
    const char* nutzung;
    const char* kurztext;
    const char* langtext;
    double wert;
    Variant wert2;
};

const Variant kNull = Variant::Null();

// Two groups under the letter A, one under B, a row without its table line,
// and a standard (78) whose additional load stays out of the sum.
const CatalogueRow kCatalogue[] = {
    {3, 0, "A1", "A Spitzböden", "Spitzböden", "Spitzboden", "nicht bewohnbarer Dachraum", 1.0, Variant(1.0)},
    {3, 0, "A2", "A Wohnräume", "Wohnräume", "", "Räume  und Flure", 1.5, kNull},
    {3, 0, "", "A Wohnräume", "ohne Zeile", "ohne Zeile", "", 9.0, kNull},
    {3, 0, "A3", "A Wohnräume", "Wohnräume ohne Querverteilung", "", "", 2.0, Variant(1.0)},
    {3, 0, "B1", "B Büroflächen", "Büroflächen", "Büro", "Flure in Bürogebäuden", 2.0, Variant(2.0)},
    {3, 1, "TW3", "Trennwandzuschlag", "Trennwände bis 3 kN/m", "bis 3 kN/m", "leichte Trennwände", 0.8, kNull},
    {78, 0, "X1", "X Wohnen", "Wohnen", "Wohnen", "", 2.75, Variant(1.0)},
    {78, 1, "Y1", "Y Zuschlag", "Zuschlag", "Zuschlag", "", 0.5, kNull},
};

class LiveLoadCatalogue : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        const fs::path db = test::FreshFolder("store") / "qvrl.mdb";
        fs::copy_file(fs::path(ProgramFolder()) / "qvrl.mdb", db);
        {
            auto d = DBEngine::OpenDatabase(db.string(), Variant(), Variant(false));
            auto rs = d->OpenRecordset("liveload", dao::dbOpenDynaset);
            for (; !rs->EOF_(); rs->MoveNext()) rs->Delete();
            for (const CatalogueRow& r : kCatalogue) {
                rs->AddNew();
                rs->Fields("Norm").Value(Variant(r.norm));
                rs->Fields("NormBez").Value(Variant(std::string(r.norm == 3 ? "DIN 1055-3:2006-03" : "Test 78")));
                rs->Fields("Art").Value(Variant(r.art));
                rs->Fields("Zeile").Value(Variant(std::string(r.zeile)));
                rs->Fields("Kategorie").Value(Variant(std::string(r.kategorie)));
                rs->Fields("Nutzung").Value(Variant(std::string(r.nutzung)));
                rs->Fields("Kurztext").Value(Variant(std::string(r.kurztext)));
                rs->Fields("Langtext").Value(Variant(std::string(r.langtext)));
                rs->Fields("Wert").Value(Variant(r.wert));
                rs->Fields("Wert2").Value(r.wert2);
                rs->Update();
            }
        }
        SetStoreFileOverride("qvrl.mdb", db.string());
        InitLanguageObjects();
        file = (test::FreshFolder("blocks") / "live.asc").string();
    }
    void TearDown() override {
        SetStoreFileOverride("qvrl.mdb", "");
        IsolatedTest::TearDown();
    }
    std::string file;
};

SessionStep Step(const char* form, const std::string& action, const std::string& control = {}) {
    SessionStep s;
    s.form = form;
    s.action = action;
    s.control = control;
    return s;
}
SessionStep Type(const char* form, const std::string& control, const std::string& text) {
    SessionStep s = Step(form, "type", control);
    s.text = text;
    return s;
}
SessionStep Key(const char* form, const std::string& control, const std::string& key) {
    SessionStep s = Step(form, "key", control);
    s.key = key;
    return s;
}
SessionStep Row(const char* form, const std::string& zeile) {
    SessionStep s = Step(form, "select_row", "gridSel");
    s.text = zeile;
    return s;
}

const char* const kLive = "frmLiveLoad_1";
const char* const kBasic = "frmLiveLoadSelect_1";
const char* const kAdd = "frmLiveLoadSelectAdd_1";

std::string Fixture(const std::string& name) {
    const std::string text = test::ReadFile(std::string(QVRL_SOURCE_DIR) + "/tests/dialogs/fixtures/" + name);
    if (text.empty()) ADD_FAILURE() << "missing fixture " << name;
    return text;
}

// The grid of Norm 3's basic loads: the row of no load, then each category
// under a disabled heading; a new first letter draws a line above the row;
// the row without a table line is left out.
TEST_F(LiveLoadCatalogue, GridHeadsCategoriesAndDisablesTheHeadings) {
    frmLiveLoadSelect_1 f;
    f.Load();
    f.Norm = 3;
    f.Init_Me();
    const QVGridX& g = f.gridSel();
    struct Expected {
        const char* first;  // cell 0
        const char* text;   // the text column
        const char* load;
        int32_t flags;
    };
    const Expected rows[] = {
        {" ", "keine Verkehrslast", "0", 0},
        {"A Spitzböden", " ", " ", gridflag::Heading},
        {"A1", "Spitzboden", "1.00", gridflag::SepTop},
        {"A Wohnräume", " ", " ", gridflag::Heading},
        {"A2", "Räume\r\nund Flure", "1.50", 0},  // empty Kurztext: the split long text
        {"A3", "", "2.00", 0},
        {"B Büroflächen", " ", " ", gridflag::Heading},
        {"B1", "Büro", "2.00", gridflag::SepTop},
    };
    ASSERT_EQ(g.RowCount(), static_cast<int32_t>(std::size(rows)));
    for (int32_t r = 0; r < g.RowCount(); ++r) {
        SCOPED_TRACE(r);
        EXPECT_EQ(g.Cell(r, LiveLoadSelectForm::ColZeile), rows[r].first);
        EXPECT_EQ(g.Cell(r, LiveLoadSelectForm::ColText), rows[r].text);
        EXPECT_EQ(g.Cell(r, LiveLoadSelectForm::ColWert), rows[r].load);
        EXPECT_EQ(g.RowFlags(r), rows[r].flags);
        EXPECT_EQ(g.RowSelectable(r), rows[r].flags != gridflag::Heading);
        EXPECT_EQ(f.RowRecord(r).has_value(), rows[r].flags != gridflag::Heading);
    }
    EXPECT_EQ(f.Caption(), "Verkehrslasten nach DIN 1055-3:2006-03");
    EXPECT_EQ(g.SelectedRow(), 0);

    // A heading cannot be chosen; the selection stays where it was.
    f.gridSel().SelectedRow(4);
    f.gridSel().SelectedRow(3);
    EXPECT_EQ(g.SelectedRow(), 4);

    // A standard without rows: only the row of no load, under the plain caption.
    frmLiveLoadSelectAdd_1 none;
    none.Load();
    none.Norm = 54;
    none.Init_Me();
    EXPECT_EQ(none.gridSel().RowCount(), 1);
    EXPECT_EQ(none.Caption(), "Verkehrslasten");
}

// OK takes the selected row (its single load too, 0 for Null), the first
// row gives no load at all; SetCursor finds a row by Zeile and Kategorie
// and stays put when none matches.
TEST_F(LiveLoadCatalogue, GridHandsBackTheRowTaken) {
    struct Case {
        const char* zeile;
        const char* kat;
        int32_t cursor;
        double last, last2;
        const char* nutz;
        const char* bsp;
    };
    const Case cases[] = {
        {"", "", 0, 0.0, 0.0, "", ""},
        {"A1", "A Spitzböden", 2, 1.0, 1.0, "Spitzböden", "nicht bewohnbarer Dachraum"},
        {"A2", "A Wohnräume", 4, 1.5, 0.0, "Wohnräume", "Räume\r\nund Flure"},
        {"A1", "A Wohnräume", 0, 0.0, 0.0, "", ""},  // the Zeile under another category
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.zeile);
        frmLiveLoadSelect_1 f;
        f.Load();
        f.Norm = 3;
        f.Init_Me();
        f.Zeile = c.zeile;
        f.Kat = c.kat;
        f.SetCursor();
        EXPECT_EQ(f.gridSel().SelectedRow(), c.cursor);
        f.QVButtons1_OnOk();
        EXPECT_TRUE(f.Accepted);
        EXPECT_EQ(f.Lastwert(), c.last);
        EXPECT_EQ(f.Lastwert2(), c.last2);
        EXPECT_EQ(f.Nutz, c.nutz);
        EXPECT_EQ(f.Bsp, c.bsp);
    }
}

// The design value after a grid: the sum, except under 78 and 211. A
// Cancel in the grid keeps the load and its texts but still sums anew.
TEST_F(LiveLoadCatalogue, DesignValueAfterTheGrids) {
    struct Case {
        const char* name;
        int16_t norm;
        std::vector<SessionStep> steps;
        double grund, zuschlag, rechen;
        const char* zeile;
    };
    const Case cases[] = {
        {"3: sum",
         3,
         {Step(kLive, "click", "cmdp"), Row(kBasic, "A2"), Step(kBasic, "ok"), Step(kLive, "click", "cmdpPlus"),
          Row(kAdd, "TW3"), Step(kAdd, "ok"), Step(kLive, "ok")},
         1.5,
         0.8,
         1.5 + 0.8,
         "A2"},
        {"78: basic only",
         78,
         {Step(kLive, "click", "cmdpPlus"), Row(kAdd, "Y1"), Step(kAdd, "ok"), Step(kLive, "click", "cmdp"),
          Row(kBasic, "X1"), Step(kBasic, "ok"), Step(kLive, "ok")},
         2.75,
         0.5,
         2.75,
         "X1"},
        {"grid cancelled",
         3,
         {Step(kLive, "click", "cmdp"), Row(kBasic, "B1"), Step(kBasic, "cancel"), Step(kLive, "ok")},
         1.0,
         0.25,
         1.25,
         "old"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto p = std::make_shared<ScriptedPlatform>(SessionScript{c.steps, {}});
        frmLiveLoad_1 f;
        p->Run([&] {
            f.Load();
            f.Norm = c.norm;
            f.Grundwert_p = 1.0;
            f.Zuschlag_p = 0.25;
            f.Rechenwert_p = 7.0;
            f.Grundwert_Zeile = "old";
            f.Init_Me();
            f.UpdateData(false, "");
            f.Show();
            f.Unload();
        });
        EXPECT_EQ(f.Grundwert_p, c.grund);
        EXPECT_EQ(f.Zuschlag_p, c.zuschlag);
        // Shown to the hundredth and read back from the box on OK.
        EXPECT_EQ(f.Rechenwert_p, c.rechen);
        EXPECT_EQ(f.Grundwert_Zeile, c.zeile);
    }
}

// With NachNorm the loads are shown, not typed; cbNorm offers the
// catalogue's standards that the codes allow, and its caption heads the loads.
TEST_F(LiveLoadCatalogue, NormListAndOwnedValues) {
    State().SelectableCodesCtrl = "_3_78_";
    frmLiveLoad_1 f;
    f.Load();
    f.MitNormSelect = true;
    f.Norm = 54;  // not offered: the first item is taken
    f.NachNorm = true;
    f.Init_Me();
    f.UpdateData(false, "");
    const ComboBox& cb = f.Get<ComboBox>("cbNorm");
    ASSERT_EQ(cb.ListCount(), 2);
    EXPECT_EQ(cb.ItemData(1), 78);
    EXPECT_EQ(f.Norm, 3);
    EXPECT_EQ(f.Get<QVFrame>("Frame1").Caption(), "DIN 1055-3:2006-03, Verkehrslasten");
    for (int16_t i = 0; i < 3; ++i) EXPECT_TRUE(f.Get<QVTextBox>(ControlKey("txtVerkehr", i)).Locked());
    f.Get<CheckBox>("chkNorm").PerformClick();
    EXPECT_FALSE(f.NachNorm);
    for (int16_t i = 0; i < 3; ++i) EXPECT_FALSE(f.Get<QVTextBox>(ControlKey("txtVerkehr", i)).Locked());
}

// ---------------------------------------------------------------- sessions

class LiveLoadSession : public LiveLoadCatalogue {
protected:
    std::vector<std::string> Run(const std::function<void(CRoofLoad&)>& member, CRoofLoad& roof,
                                 std::vector<SessionStep> steps) {
        auto p = std::make_shared<ScriptedPlatform>(SessionScript{std::move(steps), {}});
        p->Run([&] { member(roof); });
        std::vector<std::string> forms;
        for (const auto& f : p->Forms()) forms.push_back(f.name);
        return forms;
    }
};

// Norm 3 handed by ShowLiveLoadDlg to ShowLiveLoadDlg_1; a category and an
// additional load chosen, OK: the LIVELOAD and DEADLOAD lines as written by
// hand, the dead Norm 1, the file's SELECTCODES not taken but the module's
// written. Cancel, here or in the nested session, leaves every byte.
TEST_F(LiveLoadSession, RoadsFromFileToFile) {
    const auto show = [this](CRoofLoad& r) { r.ShowLiveLoadDlg(file); };
    const auto show1 = [this](CRoofLoad& r) { r.ShowLiveLoadDlg_1(file); };
    struct Case {
        const char* name;
        const char* input;
        std::function<void(CRoofLoad&)> member;
        std::vector<SessionStep> steps;
        std::vector<std::string> forms;
        bool onOk;
        const char* expected;  // nullptr: the input unchanged
    };
    const std::vector<SessionStep> choose = {Step(kLive, "click", "cmdp"),     Row(kBasic, "A2"), Step(kBasic, "ok"),
                                             Step(kLive, "click", "cmdpPlus"), Row(kAdd, "TW3"),  Step(kAdd, "ok"),
                                             Step(kLive, "ok")};
    // Enter in a grid takes its row as OK does.
    const std::vector<SessionStep> byKeys = {Step(kLive, "click", "cmdp"),     Row(kBasic, "A2"),
                                             Key(kBasic, "gridSel", "Enter"),  Step(kLive, "click", "cmdpPlus"),
                                             Row(kAdd, "TW3"),                 Key(kAdd, "gridSel", "Enter"),
                                             Step(kLive, "ok")};
    const Case cases[] = {
        {"3 through ShowLiveLoadDlg", "live3.asc", show, choose, {kLive, kBasic, kAdd}, true, "live3_ok.asc"},
        {"3 through ShowLiveLoadDlg_1", "live3.asc", show1, byKeys, {kLive, kBasic, kAdd}, true, "live3_ok.asc"},
        {"Escape in the grid, then in the dialog", "live3.asc", show,
         {Step(kLive, "click", "cmdp"), Row(kBasic, "A2"), Key(kBasic, "gridSel", "Escape"), Key(kLive, "", "Escape")},
         {kLive, kBasic}, false, nullptr},
        {"Cancel after a choice", "live3.asc", show, {Step(kLive, "click", "cmdp"), Row(kBasic, "A2"),
                                                      Step(kBasic, "ok"), Step(kLive, "cancel")},
         {kLive, kBasic}, false, nullptr},
        // Norm 1 goes back to ShowLiveLoadDlg, which passes no examples: the
        // file keeps them and the single load as read. The catalogue has no
        // rows of 1, so with the choice of standard on the first one offered
        // (3) takes its place.
        {"1 through ShowLiveLoadDlg_1", "live1.asc", show1, {Type(kLive, "txtVerkehr(0)", "2"), Step(kLive, "ok")},
         {kLive}, true, "live1_ok.asc"},
        {"78 sums nothing", "live78.asc", show,
         {Step(kLive, "click", "cmdp"), Row(kBasic, "X1"), Step(kBasic, "ok"), Step(kLive, "ok")},
         {kLive, kBasic}, true, "live78_ok.asc"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string input = Fixture(c.input);
        test::WriteFile(file, input);
        CRoofLoad roof;
        roof.EditDeadLoad = true;
        EXPECT_EQ(Run(c.member, roof, c.steps), c.forms);
        EXPECT_EQ(roof.OnOk(), c.onOk);
        EXPECT_EQ(test::ReadFile(file), c.expected ? Fixture(c.expected) : input);
        // The file offered _54_; the session kept the module's codes.
        EXPECT_EQ(roof.SelectableCodesCtrl(), c.input == std::string("live78.asc") ? "_1_3_78_" : "_1_3_");
    }
}

}  // namespace
