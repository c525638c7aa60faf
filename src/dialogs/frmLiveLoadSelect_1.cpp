#include "dialogs/frmLiveLoadSelect_1.h"

#include "catalogue/modLiveLoadMDB.h"
#include "rules/modMath.h"
#include "support/CLocLite.h"
#include "support/vb.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

std::string LoadText(double value) {
    int16_t width = 8;
    int16_t decimals = 2;
    return Trim(NumberToFixedText(Variant(value), width, decimals));
}

// The first letter of a text, a whole character also where it takes
// several bytes.
std::string FirstLetter(const std::string& text) {
    if (text.empty()) return {};
    const auto lead = static_cast<unsigned char>(text[0]);
    const size_t n = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return text.substr(0, n);
}

}  // namespace

LiveLoadSelectForm::LiveLoadSelectForm(int16_t art) : art_(art) {
    Caption("Verkehrslasten");
    gridSel_ = &Add<QVGridX>("gridSel");
    gridSel_->Columns.assign(ColumnCount, std::string());
    lblStatus_ = &Add<Label>("lblStatus");
    QVButtons1_ = &Add<QVButtons>("QVButtons1");
    gridSel_->ItemClick = [this](int32_t row) { gridSel_ItemClick(row); };
    gridSel_->DblClick = [this](int32_t row) {
        if (row >= 0 && row < gridSel_->RowCount() && gridSel_->RowSelectable(row)) QVButtons1_OnOk();
    };
    QVButtons1_->OnOk = [this] { QVButtons1_OnOk(); };
    QVButtons1_->OnCancel = [this] { QVButtons1_OnCancel(); };
    // Enter in the grid takes its row, as the OK button does.
    EnterTabsEscapeCancels([this] { QVButtons1_OnCancel(); },
                           [this](Control& c) {
                               if (&c != gridSel_) return false;
                               QVButtons1_OnOk();
                               return true;
                           });
}

const std::optional<LiveLoadRec>& LiveLoadSelectForm::RowRecord(int32_t row) const {
    gridSel_->Row(row);  // error 381 outside
    return records_[static_cast<size_t>(row)];
}

void LiveLoadSelectForm::AddRow(const LiveLoadRec& rec, std::vector<std::string> cells, int32_t flags) {
    const int32_t row = gridSel_->RowCount();
    records_.emplace_back(rec);
    gridSel_->AddGridRow(std::move(cells), flags);
    gridSel_->FitRowHeight(row, platform().TextWidth(rec.Kurztext) * TwipsPerPixel);
}

void LiveLoadSelectForm::Init_Me() {
    Updating = true;
    std::vector<LiveLoadRec> rows;
    ReadLiveLoads(Norm, art_, rows);
    if (rows.size() > 1) Caption(T(9651) + " " + FixedStringText(rows[1].NormBez));
    else Caption(T(9650));

    gridSel_->Clear();
    records_.clear();
    LiveLoadRec none;
    none.Kurztext = T(93);
    AddRow(none, {" ", " ", none.Kurztext, "0"}, 0);
    const LiveLoadRec* before = nullptr;
    for (size_t i = 1; i < rows.size(); ++i) {
        const LiveLoadRec& r = rows[i];
        // A row without its line in the standard's table is no data.
        if (r.Zeile.empty()) continue;
        const std::string kat = before ? before->Kategorie : std::string();
        int32_t flags = 0;
        if (FirstLetter(r.Kategorie) != FirstLetter(kat)) flags = gridflag::SepTop;
        if (r.Kategorie != kat) {
            records_.emplace_back(std::nullopt);
            gridSel_->AddGridRow({r.Kategorie, " ", " ", " "}, gridflag::Heading);
        }
        AddRow(r, {r.Zeile, r.Nutzung, r.Kurztext, LoadText(r.Wert)}, flags);
        before = &r;
    }
    gridSel_->SelectedRow(0);
    Updating = false;
}

void LiveLoadSelectForm::SetCursor() {
    for (int32_t row = 0; row < gridSel_->RowCount(); ++row) {
        const auto& rec = records_[static_cast<size_t>(row)];
        if (rec && rec->Zeile == Zeile && rec->Kategorie == Kat) {
            gridSel_->SelectedRow(row);
            return;
        }
    }
}

void LiveLoadSelectForm::UpdateData(bool toData, const std::string& /*controlName*/) {
    if (!toData) {
        SetCursor();
        return;
    }
    const int32_t row = gridSel_->SelectedRow() < 0 ? 0 : gridSel_->SelectedRow();
    const LiveLoadRec& rec = *records_[static_cast<size_t>(row)];
    lastwert_ = rec.Wert;
    lastwert2_ = rec.Wert2;
    Zeile = rec.Zeile;
    Kat = rec.Kategorie;
    Nutz = rec.Nutzung;
    Bsp = rec.Langtext;
}

void LiveLoadSelectForm::gridSel_ItemClick(int32_t row) {
    const auto& rec = records_[static_cast<size_t>(row)];
    lblStatus_->Caption(rec ? rec->Langtext : std::string());
}

void LiveLoadSelectForm::QVButtons1_OnOk() {
    if (Updating) return;
    UpdateData(true, "");
    Accepted = true;
    Hide();
}

void LiveLoadSelectForm::QVButtons1_OnCancel() {
    if (Updating) return;
    Accepted = false;
    Hide();
}

void LiveLoadSelectForm::Localize() {
    gridSel_->Columns = {T(9652), T(9653), T(9654), T(9655)};
    QVButtons1_->Localize();
    QVButtons1_->ToolTipText(T(12));
}

}  // namespace qvrl
