#include "location/frmEditAGSDB.h"

#include "location/modAGSMdb.h"
#include "support/CLocLite.h"
#include "support/vb.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

// Boxes the user may edit; the others show the place only.
constexpr bool kEditable[10] = {false, false, false, false, true, true, false, true, false, true};

// Selects the entry of this text, else the first; returns the text selected.
std::string SelectText(ComboBox& cb, const std::string& text) {
    for (int32_t i = 0; i < cb.ListCount(); ++i)
        if (cb.List(i) == text) {
            cb.ListIndex(i);
            return text;
        }
    if (cb.ListCount() == 0) return {};
    cb.ListIndex(0);
    return cb.List(0);
}

}  // namespace

void frmEditAGSDB::AddBoxes() {
    for (int16_t i = 0; i < 10; ++i) txtAGS[static_cast<size_t>(i)] = &Add<QVTextBox>("txtAGS", i);
}

// The boxes come first in the tab order.
frmEditAGSDB::frmEditAGSDB()
    : cbWZ((AddBoxes(), Add<ComboBox>("cbWZ"))), cbSZ(Add<ComboBox>("cbSZ")), QVButtons1(Add<QVButtons>("QVButtons1")) {
    Caption("Datenbankeintrag ändern");
    for (size_t i = 0; i < txtAGS.size(); ++i) {
        QVTextBox& b = *txtAGS[i];
        b.Style(QVTextBox::StyleLength);
        b.VisibleEq(false);
        b.VisibleDimension(false);
        b.WidthCaption(1600);
        b.EditWidth(3600);
        b.Locked(!kEditable[i]);
        b.Change = [this, &b] {
            if (!Updating && b.Changed()) Dirty = true;
        };
    }
    QVButtons1.OnOk = [this] { OnOk(); };
    QVButtons1.OnCancel = [this] { OnCancel(); };
    EnterTabsEscapeCancels([this] { OnCancel(); });
}

void frmEditAGSDB::Form_Load() {
    Updating = true;
    cbSZ.Clear();
    cbWZ.Clear();
    for (ComboBox* cb : {&cbSZ, &cbWZ}) cb->AddItem("keine", 0);
    for (int32_t z = 1; z <= 4; ++z) cbWZ.AddItem(std::to_string(z), z);
    const std::pair<const char*, int32_t> snow[] = {{"1", 1}, {"1a", 11}, {"2", 2}, {"2a", 21}, {"3", 3}};
    for (const auto& [text, code] : snow) cbSZ.AddItem(text, code);
    Updating = false;
    UpdateData(false);
}

void frmEditAGSDB::Localize() {
    Load();
    Caption(T(460));
    for (size_t i = 0; i < txtAGS.size(); ++i) txtAGS[i]->Caption(T(461 + static_cast<int32_t>(i)));
    QVButtons1.Localize();
}

void frmEditAGSDB::AGS(const std::string& v) {
    ags_ = v;
    if (IsNumeric(v) && Val(v) > 0) FindTownByAGS(ags_, Current);
}

void frmEditAGSDB::UpdateData(bool save, const std::string&) {
    Load();
    if (!save) {
        const bool before = Updating;
        Updating = true;
        const TownRec& c = Current;
        const std::string shown[10] = {c.AGS, c.BL_Name, c.Reg_Name, c.LK_Name, c.Gemeinde,
                                       c.PLZ, c.WZ,      c.BemW,     c.SZ,      c.BemS};
        for (size_t i = 0; i < txtAGS.size(); ++i) txtAGS[i]->Text(Variant(shown[i]));
        Current.WZ = SelectText(cbWZ, Current.WZ);
        Current.SZ = SelectText(cbSZ, Current.SZ);
        Updating = before;
        return;
    }
    Current.Gemeinde = txtAGS[4]->EditText();
    Current.PLZ = txtAGS[5]->EditText();
    Current.BemW = txtAGS[7]->EditText();
    Current.BemS = txtAGS[9]->EditText();
    Current.WZ = cbWZ.Text();
    Current.SZ = cbSZ.Text();
}

void frmEditAGSDB::OnOk() {
    UpdateData(true);
    SaveUserGem(Current);
    Accepted = true;
    Hide();
}

void frmEditAGSDB::OnCancel() {
    Accepted = false;
    Hide();
}

}  // namespace qvrl
