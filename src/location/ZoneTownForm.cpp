#include "location/ZoneTownForm.h"

#include "location/frmSLZ_Ort.h"
#include "location/frmWLZ_Ort.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/vb.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

// The first n characters of a UTF-8 text.
std::string LeftChars(const std::string& s, size_t n) {
    size_t at = 0;
    for (size_t chars = 0; at < s.size() && chars < n; ++chars) {
        ++at;
        while (at < s.size() && (static_cast<unsigned char>(s[at]) & 0xC0) == 0x80) ++at;
    }
    return s.substr(0, at);
}

size_t CharLength(const std::string& s) {
    size_t n = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

// A typed filter matches the start of the name, case-blind, leading blanks of the name ignored.
bool Matches(const std::string& name, const std::string& filter) {
    return LCase(LeftChars(LTrim(name), CharLength(filter))) == LCase(filter);
}

class Holding {
public:
    explicit Holding(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~Holding() { flag_ = before_; }
    Holding(const Holding&) = delete;
    Holding& operator=(const Holding&) = delete;

private:
    bool& flag_;
    bool before_;
};

template <class R>
const R* ById(const std::vector<R>& list, int32_t id) {
    for (size_t i = 1; i < list.size(); ++i)
        if (list[i].ID == id) return &list[i];
    return nullptr;
}

constexpr int32_t kCaptionField = 2400;  // twips

}  // namespace

std::string ZoneResultCaption(const std::string& name, int32_t nameTwips, int32_t fieldTwips) {
    return nameTwips > fieldTwips ? LeftChars(name, 15) + " ..." : name;
}

ZoneTownForm::ZoneTownForm(bool wind, bool dibt, const char* caption, const char* remark)
    : lbBL(Add<Label>("lbBL")),
      cbBL(Add<ComboBox>("cbBL")),
      fraBez(wind ? &Add<QVFrame>("fraBez") : nullptr),
      txtBez(wind ? &Add<TextBox>("txtBez") : nullptr),
      lstBez(wind ? &Add<ComboBox>("lstBez") : nullptr),
      fraLK(Add<QVFrame>("fraLK")),
      txtLK(Add<TextBox>("txtLK")),
      lstLK(Add<ComboBox>("lstLK")),
      fxgLK(wind && dibt ? &Add<ListView>("fxgLK") : nullptr),
      fraGemeinde(Add<QVFrame>("fraGemeinde")),
      txtGemeinde(Add<TextBox>("txtGemeinde")),
      lstGemeinde(Add<ComboBox>("lstGemeinde")),
      lvGemeinde(Add<ListView>("lvGemeinde")),
      gridGemeinde(Add<ListView>("gridGemeinde")),
      fraGem2(dibt ? &Add<QVFrame>("fraGem2") : nullptr),
      fxgGem(dibt ? &Add<ListView>("fxgGem") : nullptr),
      txtZone(Add<QVTextBox>(wind ? "txtWZ" : "txtSZ")),
      lblLength(Add<Label>("lblLength")),
      lblRem(Add<Label>("lblRem")),
      lblRem2(dibt ? &Add<Label>("lblRem2") : nullptr),
      QVButtons1(Add<QVButtons>("QVButtons1")),
      wind_(wind),
      dibt_(dibt) {
    Caption(caption);
    lbBL.Caption("Bundesland");
    lblRem.Caption(remark);
    if (lblRem2)
        lblRem2->Caption(
            "Rechtsverbindlich sind aber immer die LTB!    Überprüfen Sie daher im Zweifelsfall immer die LTB auf "
            "lokale Besonderheiten");
    // The list boxes are what the user sees; the other presentations are
    // filled alike and stay hidden, as do the measures.
    for (ListView* v : {fxgLK, &lvGemeinde, &gridGemeinde, fxgGem})
        if (v) v->Visible(false);
    lblLength.Visible(false);
    txtZone.Style(QVTextBox::StyleLength);
    txtZone.Locked(true);
    txtZone.VisibleEq(true);
    txtZone.VisibleDimension(false);
    txtZone.WidthCaption(static_cast<int16_t>(kCaptionField));
    txtZone.Visible(false);
    lvGemeinde.Columns = {"Gemeinde", wind ? "Windlastzone" : "Schneelastzone"};
    gridGemeinde.Columns = lvGemeinde.Columns;
    if (fxgGem) fxgGem->Columns = {"Gemeinde", wind ? "Windlastzone" : "Schneelastzone", "ID"};

    cbBL.Click = [this] {
        if (Updating || cbBL.ListIndex() < 0) return;
        const ZoneStateRec& sel = states_[static_cast<size_t>(cbBL.ListIndex()) + 1];
        if (sel.Number == state_.Number) return;
        state_ = sel;
        region_ = {};
        wCounty_ = {};
        sCounty_ = {};
        wTown_ = {};
        sTown_ = {};
        Holding hold(Updating);
        // A name a single match wrote into a filter box belongs to the old state.
        for (TextBox* box : {txtBez, &txtLK, &txtGemeinde})
            if (box) box->Text("");
        FillRegions();
        FillCounties();
        FillTowns();
    };
    if (lstBez)
        lstBez->Click = [this] {
            if (Updating || lstBez->ListIndex() < 0) return;
            ChooseRegion(lstBez->ItemData(lstBez->ListIndex()));
            Holding hold(Updating);
            FillCounties();
            FillTowns();
            txtBez->Text(region_.Bezirk);
        };
    lstLK.Click = [this] {
        if (Updating || lstLK.ListIndex() < 0) return;
        ChooseCounty(lstLK.ItemData(lstLK.ListIndex()));
        Holding hold(Updating);
        FillTowns();
    };
    lstGemeinde.Click = [this] {
        if (Updating || lstGemeinde.ListIndex() < 0) return;
        ChooseTown(lstGemeinde.ItemData(lstGemeinde.ListIndex()));
    };
    for (TextBox* box : {txtBez, &txtLK, &txtGemeinde}) {
        if (!box) continue;
        box->GotFocus = [this] { FilterBusy = true; };
        box->KeyUp = [this, box](int16_t& k, int16_t) { FilterKeyUp(*box, k); };
    }
    if (fxgLK) fxgLK->ItemClick = [this](int32_t row) { GridSelected(*fxgLK, row, true); };
    if (fxgGem) fxgGem->ItemClick = [this](int32_t row) { GridSelected(*fxgGem, row, false); };
    QVButtons1.OnOk = [this] { OnOk(); };
    QVButtons1.OnCancel = [this] { OnCancel(); };
    EnterTabsEscapeCancels([this] { OnCancel(); });
}

void ZoneTownForm::Form_Load() {
    Holding hold(Updating);
    if (wind_) ReadWlzStates(states_);
    else ReadSlzStates(states_);
    cbBL.Clear();
    for (size_t i = 1; i < states_.size(); ++i) cbBL.AddItem(states_[i].Name, states_[i].Number);
}

void ZoneTownForm::Localize() {
    Load();
    const int32_t b = wind_ ? 400 : 300;
    Caption(T(b + 1));
    lbBL.Caption(T(b + 2));
    if (fraBez) fraBez->Caption(T(b + 3));
    fraLK.Caption(T(wind_ ? b + 4 : b + 3));
    fraGemeinde.Caption(T(wind_ ? b + 5 : b + 4));
    txtZone.Remark(T(wind_ ? b + 6 : b + 5));
    txtZone.VisibleRemark(true);
    const std::string filterTip = T(dibt_ ? (wind_ ? 414 : 413) : b + 7);
    for (TextBox* box : {txtBez, &txtLK, &txtGemeinde})
        if (box) box->ToolTipText(filterTip);
    for (ComboBox* list : {lstBez, &lstLK, &lstGemeinde})
        if (list) list->ToolTipText(T(b + 8));
    if (fraGem2) fraGem2->Caption(T(418));
    QVButtons1.Localize();
}

void ZoneTownForm::UpdateData(bool save, const std::string&) {
    Load();
    Holding hold(Updating);
    if (save) {
        if (cbBL.ListIndex() >= 0) state_ = states_[static_cast<size_t>(cbBL.ListIndex()) + 1];
        return;
    }
    int32_t found = -1;
    for (int32_t i = 0; i < cbBL.ListCount() && found < 0; ++i)
        if (cbBL.List(i) == state_.Name) found = i;
    if (found < 0 && cbBL.ListCount() > 0) {
        found = 0;
        state_ = states_[1];
    }
    cbBL.ListIndex(found);
    for (TextBox* box : {txtBez, &txtLK, &txtGemeinde})
        if (box) box->Text("");
    FillRegions();
    FillCounties();
    FillTowns();
    ShowResult();
}

void ZoneTownForm::ShowResult() {
    if (name_.empty()) {
        txtZone.Visible(false);
        return;
    }
    txtZone.Visible(true);
    const int32_t width = platform().TextWidthTwips(name_, txtZone.FontName, txtZone.FontSize);
    lblLength.Caption(name_);
    txtZone.Caption(ZoneResultCaption(name_, width, txtZone.WidthCaption()));
    txtZone.Text(Variant(zone_));
}

int32_t ZoneTownForm::FillLevel(TextBox& filterBox, ComboBox& list, const std::vector<Entry>& entries,
                                const std::function<bool(size_t)>& rule) {
    const std::string filter = Trim(filterBox.Text());
    list.Clear();
    for (size_t i = 0; i < entries.size(); ++i)
        if (filter.empty() ? rule(i) : Matches(entries[i].name, filter)) list.AddItem(entries[i].name, entries[i].id);
    if (list.ListCount() != 1) return 0;
    list.ListIndex(0);
    return list.ItemData(0);
}

void ZoneTownForm::FillRegions() {
    if (!wind_) return;
    ReadWlzRegions(state_, regions_);
    std::vector<Entry> e;
    for (size_t i = 1; i < regions_.size(); ++i) e.push_back({regions_[i].ID, regions_[i].Bezirk, {}});
    if (const int32_t id = FillLevel(*txtBez, *lstBez, e, [](size_t) { return true; })) {
        ChooseRegion(id);
        txtBez->Text(region_.Bezirk);
    }
}

void ZoneTownForm::FillCounties() {
    std::vector<Entry> e;
    std::function<bool(size_t)> rule;
    if (wind_) {
        ReadWlzCounties(state_, region_, wCounties_);
        for (size_t i = 1; i < wCounties_.size(); ++i) e.push_back({wCounties_[i].ID, wCounties_[i].Kreis, {}});
        const bool regionChosen = !Trim(region_.Bezirk).empty();
        rule = [this, regionChosen](size_t i) { return regionChosen || wCounties_[i + 1].BezID == 0; };
    } else {
        ReadSlzCounties(state_, sCounties_);
        for (size_t i = 1; i < sCounties_.size(); ++i) e.push_back({sCounties_[i].ID, sCounties_[i].Landkreis, {}});
        rule = [](size_t) { return true; };
    }
    const int32_t id = FillLevel(txtLK, lstLK, e, rule);
    if (id) {
        ChooseCounty(id);
        txtLK.Text(wind_ ? wCounty_.Kreis : sCounty_.Landkreis);
    }
    if (fxgLK) {
        Holding own(gridUpdating_);
        fxgLK->Clear();
        for (int32_t i = 0; i < lstLK.ListCount(); ++i)
            fxgLK->AddRow({lstLK.List(i), std::to_string(lstLK.ItemData(i))});
    }
}

void ZoneTownForm::FillTowns() {
    std::vector<Entry> e;
    bool countyChosen;
    if (wind_) {
        ReadWlzTowns(state_, region_, wCounty_, wTowns_);
        for (size_t i = 1; i < wTowns_.size(); ++i) e.push_back({wTowns_[i].ID, wTowns_[i].Gemeinde, wTowns_[i].WLZ});
        countyChosen = !Trim(wCounty_.Kreis).empty();
    } else {
        ReadSlzTowns(state_, sCounty_, sTowns_);
        for (size_t i = 1; i < sTowns_.size(); ++i)
            e.push_back({sTowns_[i].ID, sTowns_[i].Gemeinde, sTowns_[i].Schneelastzone});
        countyChosen = !Trim(sCounty_.Landkreis).empty();
    }
    const int32_t id = FillLevel(txtGemeinde, lstGemeinde, e, [countyChosen](size_t) { return countyChosen; });
    std::vector<int32_t> ids;
    for (int32_t i = 0; i < lstGemeinde.ListCount(); ++i) ids.push_back(lstGemeinde.ItemData(i));
    FillGrids(e, ids);
    if (id) {
        ChooseTown(id);
        txtGemeinde.Text(name_);
    }
}

void ZoneTownForm::FillGrids(const std::vector<Entry>& towns, const std::vector<int32_t>& ids) {
    Holding own(gridUpdating_);
    for (ListView* v : {&lvGemeinde, &gridGemeinde, fxgGem})
        if (v) v->Clear();
    // Same rows in the same order as the list box.
    size_t at = 0;
    for (int32_t id : ids) {
        while (at < towns.size() && towns[at].id != id) ++at;
        if (at == towns.size()) break;
        const Entry& t = towns[at++];
        lvGemeinde.AddRow({t.name, t.zone});
        gridGemeinde.AddRow({t.name, t.zone});
        if (fxgGem) fxgGem->AddRow({t.name, t.zone, std::to_string(t.id)});
    }
}

void ZoneTownForm::ChooseRegion(int32_t id) {
    region_ = {};
    if (const auto* r = ById(regions_, id)) region_ = *r;
}

void ZoneTownForm::ChooseCounty(int32_t id) {
    if (wind_) {
        wCounty_ = {};
        if (const auto* c = ById(wCounties_, id)) wCounty_ = *c;
    } else {
        sCounty_ = {};
        if (const auto* c = ById(sCounties_, id)) sCounty_ = *c;
    }
}

void ZoneTownForm::ChooseTown(int32_t id) {
    if (wind_) {
        wTown_ = {};
        if (const auto* t = ById(wTowns_, id)) {
            wTown_ = *t;
            key_ = t->KEY;
            name_ = t->Gemeinde;
            zone_ = t->WLZ;
        }
    } else {
        sTown_ = {};
        if (const auto* t = ById(sTowns_, id)) {
            sTown_ = *t;
            key_ = t->KEY;
            name_ = t->Gemeinde;
            zone_ = t->Schneelastzone;
        }
    }
    Holding hold(Updating);
    ShowResult();
}

void ZoneTownForm::GridSelected(ListView& grid, int32_t row, bool county) {
    if (Updating || grid.RowCount() == 0 || row < 0) return;
    // The grid counts its header as row 0.
    if (row + 1 == 2 && !gridUpdating_) {
        grid.ToolTipText("nix gewählt");
        return;
    }
    grid.ToolTipText(grid.Cell(row, 0));
    const int32_t id = CLng(Val(grid.Cell(row, county ? 1 : 2)));
    if (county) {
        ChooseCounty(id);
        Holding hold(Updating);
        FillTowns();
    } else {
        ChooseTown(id);
    }
}

void ZoneTownForm::FilterKeyUp(TextBox& box, int16_t k) {
    if (Updating) return;
    if (FilterBusy) {
        FilterBusy = false;
        // The key that brought the focus here, not an edit.
        if (k == key::Tab || k == key::Return) return;
    }
    Holding hold(Updating);
    if (&box == &txtGemeinde) {
        FillTowns();
        return;
    }
    txtGemeinde.Text("");
    txtZone.Visible(false);
    if (&box == txtBez) {
        region_ = {};
        FillRegions();
    } else {
        wCounty_ = {};
        sCounty_ = {};
    }
    FillCounties();
    FillTowns();
}

void ZoneTownForm::OnOk() {
    UpdateData(true);
    Accepted = true;
    Hide();
}

void ZoneTownForm::OnCancel() {
    Accepted = false;
    Hide();
}

frmWLZ_Ort_1::frmWLZ_Ort_1()
    : ZoneTownForm(true, true, "Windlastzonen für Orte in Deutschland",
                   "Zuordnung der Windlastzonen nach DIN 1055:2004 zu Verwaltungseinheiten nach DIBt, Stand "
                   "21.11.2006") {}

frmWLZ_Ort::frmWLZ_Ort()
    : ZoneTownForm(true, false, "Windlastzonen für Orte in Deutschland",
                   "Zuordnung der Windlastzonen nach DIN 1055:2004 zu Verwaltungseinheiten nach amtlichen Gutachten "
                   "T 2963  ISBN 3-8167-5986-6") {}

frmSLZ_Ort_1::frmSLZ_Ort_1()
    : ZoneTownForm(false, true, "Schneelastzonen für Orte in Deutschland",
                   "Zuordnung der Schneelastzonen nach DIN 1055:2004 zu Verwaltungseinheiten nach DIBt, Stand "
                   "20.11.2006") {}

frmSLZ_Ort::frmSLZ_Ort()
    : ZoneTownForm(false, false, "Schneelastzonen für Orte in Deutschland",
                   "Zuordnung der Schneelastzonen nach DIN 1055:2004 zu Verwaltungseinheiten nach amtlichen "
                   "Gutachten T 3093  ISBN 3-8167-6958-6") {}

}  // namespace qvrl
