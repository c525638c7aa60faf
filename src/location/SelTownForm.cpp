#include "location/SelTownForm.h"

#include "rules/modMath.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/vb.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

// Flags of the question asked by OK without a town: Yes/No, question mark.
constexpr int32_t kNoTownQuestion = mb::YesNo + mb::Question;

// The code's own changes to the controls raise their events too; this holds
// Updating over them and puts back what was there.
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

}  // namespace

std::string TownNumberText(double value, int16_t decimals) {
    int16_t width = 6;
    return Trim(NumberToFixedText(Variant(value), width, decimals));
}

std::string TownNumberCell(double value, int16_t decimals) {
    return value < 0.0001 ? std::string(" ") : TownNumberText(value, decimals);
}

SelTownForm::SelTownForm(bool withAllTown)
    : cbBL(Add<ComboBox>("cbBL")),
      cbBez(Add<ComboBox>("cbBez")),
      cbLK(Add<ComboBox>("cbLK")),
      txtPlz(Add<QVTextBox>("txtAGS", 0)),
      txtName(Add<QVTextBox>("txtAGS", 1)),
      txtCount(Add<QVTextBox>("txtAGS", 2)),
      lvGem(Add<ListView>("lvGem")),
      fxgGem(Add<ListView>("fxgGem")),
      chkAllTown(withAllTown ? &Add<CheckBox>("chkAllTown") : nullptr),
      cmdUser(Add<CommandButton>("cmdUser")),
      cmdUserRe(Add<CommandButton>("cmdUserRe")),
      lbCounty(Add<Label>("lbSelTown", 0)),
      lbRegion(Add<Label>("lbSelTown", 1)),
      lbState(Add<Label>("lbSelTown", 2)),
      lblStatus(Add<Label>("lblStatus")),
      lblInfo(Add<Label>("lblInfo")),
      lblRem(Add<Label>("lblRem")),
      Label2(Add<Label>("Label2")),
      QVButtons1(Add<QVButtons>("QVButtons1")) {
    Caption("Gemeindeauswahl");
    // Free text: no number rules, no width limit while typing, and the
    // list reloads after every key, so the caret must stay where it is.
    for (QVTextBox* b : {&txtPlz, &txtName, &txtCount}) {
        b->Style(QVTextBox::StyleLength);
        b->ShowSelected = false;
        b->VisibleEq(false);
        b->VisibleDimension(false);
        b->EditWidth(1600);
    }
    txtCount.Locked(true);
    txtCount.EditWidth(700);
    fxgGem.Visible(false);
    lbCounty.Caption("Landkreis");
    lbRegion.Caption("Regierungsbezirk");
    lbState.Caption("Bundesland");
    cmdUser.Caption("Wert(e) ändern");
    cmdUserRe.Caption("Wert(e) zurücksetzen");
    lblStatus.Caption("Bitte warten ! Datenbank wird gelesen ...");
    lblRem.Caption(
        "Die Zuordnung der Zonen erfolgt anhand der Tabellen des DIBt.   Rechtsverbindlich sind aber immer die "
        "LTB!    Überprüfen Sie daher im Zweifelsfall immer die LTB auf lokale Besonderheiten");
    if (chkAllTown) chkAllTown->Caption("alle Gemeinden anzeigen ...auch die OHNE Werte");

    cbBL.Click = [this] {
        if (Updating) return;
        UpdateData(true, "_BL");
        FillRegions();
        FillCounties();
        LoadList(false);
        UpdateData(false, "");
    };
    cbBez.Click = [this] {
        if (Updating) return;
        UpdateData(true, "_Bez");
        FillCounties();
        LoadList(false);
        UpdateData(false, "");
    };
    cbLK.Click = [this] {
        if (Updating) return;
        UpdateData(true, "_LK");
        LoadList(false);
        UpdateData(false, "");
    };
    lvGem.ItemClick = [this](int32_t) { lvGem_ItemClick(); };
    txtPlz.Change = [this] { FilterEdited(txtPlz, "_PLZ"); };
    txtName.Change = [this] { FilterEdited(txtName, "_PreGem"); };
    if (chkAllTown)
        chkAllTown->Click = [this] {
            if (Updating) return;
            allTown_ = chkAllTown->Value() == 1;
            LoadList(false);
        };
    cmdUser.Click = [this] {
        if (!Updating) cmdUser_Click();
    };
    cmdUserRe.Click = [this] {
        if (!Updating) cmdUserRe_Click();
    };
    QVButtons1.OnOk = [this] { OnOk(); };
    QVButtons1.OnCancel = [this] { OnCancel(); };
    // The form's own keys: Enter moves on, Escape cancels; Enter on the list
    // takes the row, as a click does.
    EnterTabsEscapeCancels([this] { OnCancel(); }, [this](Control& c) {
        if (&c != &lvGem) return false;
        if (!Updating) lvGem_ItemClick();
        return true;
    });
}

int32_t SelTownForm::Joined(std::initializer_list<int32_t> numbers) {
    std::string s;
    for (int32_t n : numbers) s += std::to_string(n);
    return CLng(Val(s));
}

void SelTownForm::Form_Load() {
    Holding hold(Updating);
    ZeroHierarchy();
    FillStates();
    FillRegions();
    FillCounties();
    LoadList(true);
    Updating = false;
}

void SelTownForm::Localize() {
    Load();
    Caption(T(439));
    lbCounty.Caption(T(430));
    lbRegion.Caption(T(431));
    lbState.Caption(T(432));
    txtPlz.Caption(T(433));
    txtName.Caption(T(434));
    txtCount.Caption(T(435));
    lblInfo.Caption(T(InfoTextNumber()));
    cmdUser.Caption(T(437));
    cmdUserRe.Caption(T(471));
    Label2.Caption(T(440));
    if (chkAllTown) chkAllTown->Caption(T(591));
    QVButtons1.Localize();
}

void SelTownForm::ShowBusy(int32_t number) {
    lblStatus.Caption(number == 445 ? T(445) + T(444) : T(number));
    platform().DoEvents();
}

void SelTownForm::Fill(ComboBox& cb, const std::vector<ComboItem>& items, bool allEntry) {
    Holding hold(Updating);
    ShowBusy(438);
    ShowBusy(445);
    cb.Clear();
    if (allEntry) cb.AddItem(T(450), 0);
    for (const ComboItem& it : items) cb.AddItem(it.text, it.itemData);
    lblStatus.Caption("");
}

void SelTownForm::FillStates() { Fill(cbBL, StateItems(), true); }

void SelTownForm::FillRegions() {
    const auto items = RegionItems();
    Fill(cbBez, items, items.size() > 1);
}

void SelTownForm::FillCounties() {
    const auto items = CountyItems();
    Fill(cbLK, items, items.size() > 1);
}

void SelTownForm::LoadList(bool headerOnly) {
    Updating = true;
    lvGem.Visible(false);
    ShowBusy(438);
    if (!headerOnly) ReadTowns(towns_);
    ShowBusy(445);
    lvGem.Columns = ColumnTitles();
    lvGem.ToolTipText(T(443));
    if (!headerOnly) {
        lvGem.Clear();
        std::vector<std::string> cells;
        for (size_t i = 1; i < towns_.size(); ++i)
            if (RowOf(towns_[i], cells)) lvGem.AddRow(std::move(cells));
        fxgGem.Visible(false);
    }
    lvGem.Visible(true);
    // The count includes the rows the list left out.
    if (!headerOnly) txtCount.Text(Variant(static_cast<int32_t>(towns_.empty() ? 0 : towns_.size() - 1)));
    lblStatus.Caption("");
    Updating = false;
}

int32_t SelTownForm::SelectByData(ComboBox& cb, int32_t data) {
    for (int32_t i = 0; i < cb.ListCount(); ++i)
        if (cb.ItemData(i) == data) {
            cb.ListIndex(i);
            return data;
        }
    if (cb.ListCount() == 0) return 0;
    cb.ListIndex(0);
    return cb.ItemData(0);
}

void SelTownForm::UpdateData(bool toData, const std::string& hint) {
    Load();
    if (!toData) {
        Holding hold(Updating);
        const int32_t bl = StateKey();
        if (SelectByData(cbBL, bl) != bl || cbBL.ListCount() == 0) TakeState(cbBL.ListCount() ? cbBL.ItemData(0) : 0);
        // The joined digits are decoded by fixed places: a one-digit
        // number decodes otherwise than it was joined, on purpose.
        const int32_t reg = SelectByData(cbBez, RegionKey());
        if (reg < 1) {
            TakeRegion(0, 0);
        } else {
            const std::string s = Format(reg, "000");
            TakeRegion(CLng(Val(s.substr(0, 2))), CLng(Val(s.substr(2, 1))));
        }
        const int32_t lk = SelectByData(cbLK, CountyKey());
        if (lk < 1) {
            TakeCounty(0, 0, 0);
        } else {
            const std::string s = Format(lk, "00000");
            TakeCounty(CLng(Val(s.substr(0, 2))), CLng(Val(s.substr(2, 1))), CLng(Val(s.substr(3, 2))));
        }
        txtPlz.Text(Variant(PlzFilter));
        txtName.Text(Variant(NameFilter));
        lvGem.ToolTipText(T(443));
        if (Current.AGS.empty() || !IsNumeric(Current.AGS)) {
            cmdUserRe.Enabled(false);
            return;
        }
        if (Val(Current.AGS) > 0) {
            for (int32_t r = 0; r < lvGem.RowCount(); ++r)
                if (lvGem.Cell(r, kTownListAgsColumn) == Current.AGS) {
                    lvGem.SelectedRow(r);
                    break;
                }
            const std::string status = StatusText();
            lblStatus.Caption(status);
            lvGem.ToolTipText(status);
        }
        cmdUserRe.Enabled(Current.Modified == 1);
        return;
    }
    if (hint.empty()) return;
    auto has = [&](const char* key) { return hint.find(key) != std::string::npos; };
    auto selected = [](const ComboBox& cb) { return cb.ListIndex() < 0 ? 0 : cb.ItemData(cb.ListIndex()); };
    auto clearBelow = [&] {
        Current.AGS.clear();
        PlzFilter.clear();
        NameFilter.clear();
    };
    if (has("_BL")) {
        TakeState(CLng(Val(Format(selected(cbBL), "00").substr(0, 2))));
        clearBelow();
    }
    if (has("_Bez")) {
        const std::string s = Format(selected(cbBez), "000");
        TakeRegion(CLng(Val(s.substr(0, 2))), CLng(Val(s.substr(2, 1))));
        clearBelow();
    }
    if (has("_LK")) {
        const std::string s = Format(selected(cbLK), "00000");
        TakeCounty(CLng(Val(s.substr(0, 2))), CLng(Val(s.substr(2, 1))), CLng(Val(s.substr(3, 2))));
        clearBelow();
    }
    if (has("_Gem")) {
        if (lvGem.SelectedRow() >= 0) Current.AGS = lvGem.Cell(lvGem.SelectedRow(), kTownListAgsColumn);
        FindTown();
        lblStatus.Caption(StatusText());
    }
    if (has("_PLZ")) PlzFilter = txtPlz.EditText();
    if (has("_PreGem")) NameFilter = txtName.EditText();
}

void SelTownForm::FilterEdited(QVTextBox& box, const char* hint) {
    if (Updating || !box.Changed()) return;
    UpdateData(true, hint);
    LoadList(false);
    UpdateData(false, "");
}

void SelTownForm::lvGem_ItemClick() {
    if (Updating) return;
    UpdateData(true, "_Gem");
    UpdateData(false, "");
}

bool SelTownForm::UsableKey() const {
    const std::string k = Trim(Current.AGS);
    return !k.empty() && IsNumeric(k) && Val(k) > 0;
}

void SelTownForm::OnOk() {
    UpdateData(true, "");
    if (!IsNumeric(Current.AGS)) {
        const int32_t answer = platform().MsgBox(T(474) + "\r\n" + T(475) + "\r\n" + T(476), kNoTownQuestion, Caption());
        if (answer == mb::Yes) return;
    }
    Accepted = true;
    Hide();
}

void SelTownForm::OnCancel() {
    Accepted = false;
    Hide();
}

}  // namespace qvrl
