#include "dialogs/frmLiveLoad_1.h"

#include <vector>

#include "catalogue/modLiveLoadMDB.h"
#include "dialogs/RoofLoadFrame.h"
#include "dialogs/frmLiveLoadSelect_1.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

}  // namespace

frmLiveLoad_1::frmLiveLoad_1() {
    Caption("Verkehrslasten");
    lbNorm_ = &Add<Label>("lbNorm");
    cbNorm_ = &Add<ComboBox>("cbNorm");
    Frame1_ = &Add<QVFrame>("Frame1");
    roofframe::ValueBox(Add<QVTextBox>("txtVerkehr", 0), "0.00");
    cmdp_ = &Add<CommandButton>("cmdp");
    roofframe::ValueBox(Add<QVTextBox>("txtVerkehr", 1), "0.00");
    cmdpPlus_ = &Add<CommandButton>("cmdpPlus");
    roofframe::ValueBox(Add<QVTextBox>("txtVerkehr", 2), "0.00");
    Frame3_ = &Add<QVFrame>("Frame3");
    roofframe::SetUpDeadLoadBox(Add<QVTextBox>("txtG", 0), 0);
    roofframe::SetUpDeadLoadBox(Add<QVTextBox>("txtG", 1), 1);
    chkNorm_ = &Add<CheckBox>("chkNorm");
    chkNorm_->OnForm = true;
    QVButtons1_ = &Add<QVButtons>("QVButtons1");

    cbNorm_->Click = [this] { cbNorm_Click(); };
    chkNorm_->Click = [this] { chkNorm_Click(); };
    cmdp_->Click = [this] { cmdp_Click(); };
    cmdpPlus_->Click = [this] { cmdpPlus_Click(); };
    QVButtons1_->OnOk = [this] { QVButtons1_OnOk(); };
    QVButtons1_->OnCancel = [this] { QVButtons1_OnCancel(); };
    for (QVTextBox* box : {&txtVerkehr(0), &txtVerkehr(1), &txtVerkehr(2), &txtG(0), &txtG(1)})
        box->ValidateEvent = [this, box](bool& ok) {
            if (ok) ValueAccepted(*box);
        };
    EnterTabsEscapeCancels([this] { QVButtons1_OnCancel(); });
}

void frmLiveLoad_1::Init_Me() {
    std::vector<int16_t> codes;
    std::vector<std::string> names;
    LiveLoadNorms(codes, names);
    const std::string selectable = State().SelectableCodesCtrl;
    cbNorm_->Clear();
    for (size_t i = 1; i < codes.size(); ++i)
        if (IsSelectableNorm(selectable, codes[i])) cbNorm_->AddItem(names[i], codes[i]);
}

void frmLiveLoad_1::LoadsCaption() { Frame1_->Caption(cbNorm_->Text() + T(473)); }

void frmLiveLoad_1::UpdateData(bool toData, const std::string& /*controlName*/) {
    if (toData) {
        Grundwert_p = roofframe::Number(txtVerkehr(0));
        Zuschlag_p = roofframe::Number(txtVerkehr(1));
        Rechenwert_p = roofframe::Number(txtVerkehr(2));
        NachNorm = chkNorm_->Value() == 1;
        if (MitG) {
            g0_Bemerkung = txtG(0).ReadValue(2).toString();
            Rechenwert_g0 = roofframe::Number(txtG(1));
        }
        return;
    }
    Updating = true;
    if (MitNormSelect && roofframe::SelectOrFirst(*cbNorm_, Norm))
        Norm = static_cast<int16_t>(cbNorm_->ItemData(cbNorm_->ListIndex()));
    txtVerkehr(0).Text(Variant(Grundwert_p));
    txtVerkehr(1).Text(Variant(Zuschlag_p));
    txtVerkehr(2).Text(Variant(Rechenwert_p));
    roofframe::ShowNachNorm(*chkNorm_, NachNorm, {&txtVerkehr(0), &txtVerkehr(1), &txtVerkehr(2)});
    cmdp_->Enabled(true);
    cmdpPlus_->Enabled(true);
    Frame3_->Visible(MitG);
    txtG(0).Visible(MitG);
    txtG(1).Visible(MitG);
    if (MitG) {
        txtG(0).Text(Variant(g0_Bemerkung));
        txtG(1).Text(Variant(Rechenwert_g0));
    }
    LoadsCaption();
    Updating = false;
}

void frmLiveLoad_1::ValueAccepted(QVTextBox& box) {
    if (Updating || !box.Changed()) return;
    UpdateData(true, "");
    UpdateData(false, "");
}

void frmLiveLoad_1::cbNorm_Click() {
    if (Updating || cbNorm_->ListIndex() < 0) return;
    Norm = static_cast<int16_t>(cbNorm_->ItemData(cbNorm_->ListIndex()));
    LoadsCaption();
}

void frmLiveLoad_1::chkNorm_Click() {
    if (Updating) return;
    UpdateData(true, "");
    UpdateData(false, "");
}

void frmLiveLoad_1::cmdp_Click() {
    if (Updating) return;
    frmLiveLoadSelect_1 grid;
    ChooseFromCatalogue(grid, Grundwert_p, Grundwert_Kat, Grundwert_Zeile, Grundwert_Nutz, Grundwert_Bsp);
}

void frmLiveLoad_1::cmdpPlus_Click() {
    if (Updating) return;
    frmLiveLoadSelectAdd_1 grid;
    ChooseFromCatalogue(grid, Zuschlag_p, Zuschlag_Kat, Zuschlag_Zeile, Zuschlag_Nutz, Zuschlag_Bsp);
}

void frmLiveLoad_1::ChooseFromCatalogue(LiveLoadSelectForm& grid, double& load, std::string& kat, std::string& zeile,
                                        std::string& nutz, std::string& bsp) {
    grid.Load();
    grid.Norm = Norm;
    grid.Init_Me();
    grid.SetCursor();
    grid.Kat = kat;
    grid.Zeile = zeile;
    grid.UpdateData(false, "");
    grid.Show();
    // The row's texts belong to the load taken: a Cancel keeps the old ones.
    if (grid.Accepted) {
        load = grid.Lastwert();
        kat = grid.Kat;
        zeile = grid.Zeile;
        nutz = grid.Nutz;
        bsp = grid.Bsp;
    }
    Rechenwert_p = LiveLoadDesignValue(Norm, Grundwert_p, Zuschlag_p);
    UpdateData(false, "");
    grid.Unload();
    SendTab();
}

void frmLiveLoad_1::QVButtons1_OnOk() { AcceptAndHide(); }

void frmLiveLoad_1::QVButtons1_OnCancel() { CancelAndHide(); }

void frmLiveLoad_1::Localize() {
    Caption(T(9650));
    lbNorm_->Caption(T(21));
    chkNorm_->Caption(T(40));
    Frame3_->Caption(T(4));
    cmdp_->Caption(T(9656));
    cmdp_->ToolTipText(T(9657));
    cmdpPlus_->Caption(T(9656));
    cmdpPlus_->ToolTipText(T(9658));
    QVButtons1_->Localize();
    QVButtons1_->ToolTipText(T(12));
    struct BoxText {
        QVTextBox* box;
        int32_t remark;
        const char* caption;
    };
    const BoxText boxes[] = {{&txtVerkehr(0), 9659, "p0"}, {&txtVerkehr(1), 9660, "\xCE\x94p"},
                             {&txtVerkehr(2), 9661, "p"}};
    for (const BoxText& b : boxes) {
        b.box->Remark(T(b.remark));
        b.box->Caption(b.caption);
        b.box->Dimension(T(51));
    }
    txtG(1).Dimension(T(51));
    LoadsCaption();
}

}  // namespace qvrl
