#include "dialogs/frmRoofLoad.h"

#include "dialogs/RoofLoadFrame.h"
#include "maps/MapDialogs.h"
#include "rules/modSnow.h"
#include "rules/modWind.h"
#include "vocab/CodeLists.h"

namespace qvrl {

using namespace roofframe;

namespace {

// Language texts of the design value boxes under these editions.
constexpr int32_t kTextStaudruck = 9670;
constexpr int32_t kTextRegelschneelast = 9671;

}  // namespace

frmRoofLoad::frmRoofLoad() {
    Caption("Wind- und Schneelasten");
    lbNorm_ = &Add<Label>("lbNorm");
    cbNorm_ = &Add<ComboBox>("cbNorm");
    // The image list is the presentation shown; the plain list stays for
    // hosts that read it.
    cbNorm_->Visible(false);
    cbNormI_ = &Add<ComboBox>("cbNormI");
    // Under the standard, outside the groups: the dead load group may be hidden.
    chkNorm_ = &Add<CheckBox>("chkNorm");
    chkNorm_->Caption("Werte entspr. Norm");
    cmdDefault_ = &Add<CommandButton>("cmdDefault");
    cmdDefault_->Caption("Werte als Standard festlegen");

    Frame1_ = &Add<QVFrame>("Frame1");
    ValueBox(Add<QVTextBox>("txtWind", 0), "0.00");
    ValueBox(Add<QVTextBox>("txtWind", 1), "0.00");

    Frame2_ = &Add<QVFrame>("Frame2");
    lblSnow_ = &Add<Label>("lblSnow");
    lblSnow_->Caption("Schneelastzone");
    cbSLZ_ = &Add<ComboBox>("cbSLZ");
    cmdSLZ_ = &Add<CommandButton>("cmdSLZ");
    cmdSLZ_->Caption("Karte");
    cmdSLZ_->ToolTipText("Karte der Schneelastzonen");
    ValueBox(Add<QVTextBox>("txtSnow", 1), "0.00");
    lblSnowH_ = &Add<Label>("lblSnowH");
    ValueBox(Add<QVTextBox>("txtSnow", 2), "0.00");

    // The dead loads: the third group, as this dialog has no height group.
    Frame3_ = &Add<QVFrame>("Frame3");
    for (int16_t i = 0; i < 6; ++i) SetUpDeadLoadBox(Add<QVTextBox>("txtG", i), i);

    QVButtons1_ = &Add<QVButtons>("QVButtons1");

    cbNorm_->Click = [this] { cbNorm_Click(); };
    cbNormI_->Click = [this] { cbNormI_Click(); };
    cbSLZ_->Click = [this] { cbSLZ_Click(); };
    chkNorm_->Click = [this] { chkNorm_Click(); };
    cmdSLZ_->Click = [this] { cmdSLZ_Click(); };
    cmdDefault_->Click = [this] { cmdDefault_Click(); };
    QVButtons1_->OnOk = [this] { QVButtons1_OnOk(); };
    QVButtons1_->OnCancel = [this] { QVButtons1_OnCancel(); };

    // Only these boxes move the dialog on; a typed design value waits for OK.
    const std::pair<QVTextBox*, const char*> followed[] = {{&txtWind(0), "_HG"}, {&txtSnow(1), "_SLZ"}};
    for (const auto& f : followed) {
        f.first->ValidateEvent = [this, box = f.first, n = std::string(f.second)](bool& ok) {
            if (ok) ValueAccepted(*box, n);
        };
    }
    for (int16_t i = 0; i < 6; ++i) {
        QVTextBox& box = txtG(i);
        box.ValidateEvent = [this, &box, n = "_G" + std::to_string(i / 2)](bool& ok) {
            if (ok) ValueAccepted(box, n);
        };
    }
    EnterTabsEscapeCancels([this] { QVButtons1_OnCancel(); });
}

void frmRoofLoad::Form_Load() {
    Norm(norm::DIN1986_1975);
    Init_Me();
}

void frmRoofLoad::Form_Activate() { Localize(); }

void frmRoofLoad::Init_Me() {
    Fill(*cbSLZ_, SnowZoneList1975());
    FillNormCombos(*cbNorm_, *cbNormI_);
}

void frmRoofLoad::ComputeWind() { Rechenwert_wq = WindPressure_DIN1055_4_1986(Hoehe_Geb); }

void frmRoofLoad::ComputeSnow() { Rechenwert_s0 = StandardSnowLoad_DIN1055_5_1975(SLZ, Hoehe_NN); }

void frmRoofLoad::UpdateData(bool toData, const std::string& controlName) {
    if (toData) {
        const auto readZone = [this] {
            if (cbSLZ_->ListIndex() >= 0) SLZ = static_cast<int16_t>(cbSLZ_->ItemData(cbSLZ_->ListIndex()));
        };
        const auto readDead = [this](int k) {
            if (k == 0) ReadDeadLoad(DeadLoads(), k, g0_Bemerkung, Rechenwert_g0);
            if (k == 1) ReadDeadLoad(DeadLoads(), k, g1_Bemerkung, Rechenwert_g1);
            if (k == 2) ReadDeadLoad(DeadLoads(), k, g2_Bemerkung, Rechenwert_g2);
        };
        // Both rules run here whatever NachNorm says: the user changed
        // their input, so the design value follows it.
        if (controlName == "_HG") {
            Hoehe_Geb = Number(txtWind(0));
            ComputeWind();
        } else if (controlName == "_SLZ") {
            readZone();
            Hoehe_NN = Number(txtSnow(1));
            ComputeSnow();
        } else if (controlName == "_G0" || controlName == "_G1" || controlName == "_G2") {
            readDead(controlName[2] - '0');
        } else {
            NachNorm = chkNorm_->Value() == 1;
            Hoehe_Geb = Number(txtWind(0));
            Rechenwert_wq = Number(txtWind(1));
            readZone();
            Hoehe_NN = Number(txtSnow(1));
            Rechenwert_s0 = Number(txtSnow(2));
            for (int k = 0; k < 3; ++k) readDead(k);
        }
        return;
    }

    Updating = true;
    if (MitNormSelect) SelectNorm(*cbNorm_, *cbNormI_, norm_, [this](int16_t n) { Norm(n); });
    txtWind(0).Text(Variant(Hoehe_Geb));

    const int32_t zone = IndexOfCode(*cbSLZ_, SLZ);
    if (zone >= 0) {
        cbSLZ_->ListIndex(zone);
    } else {
        SLZ = 1;
        if (cbSLZ_->ListCount() > 0) cbSLZ_->ListIndex(0);
    }
    txtSnow(1).Text(Variant(Hoehe_NN));

    if (NachNorm) {
        ComputeWind();
        ComputeSnow();
    }
    txtWind(1).Text(Variant(Rechenwert_wq));
    txtSnow(2).Text(Variant(Rechenwert_s0));

    ShowNachNorm(*chkNorm_, NachNorm, {&txtWind(1), &txtSnow(2)});
    ShowHeightLimit();
    ShowDeadLoads(*Frame3_, DeadLoads(), MitG, {Rechenwert_g0, Rechenwert_g1, Rechenwert_g2});
    cmdDefault_->Visible(MitVorschlag);
    Updating = false;
}

// The 1975 table ends at 800 m in zone I and 900 m in zone II; the higher
// zones reach 1000 m, where the rule itself says it has no value.
void frmRoofLoad::ShowHeightLimit() {
    QVTextBox& height = txtSnow(1);
    double limit = 0.0;
    if (SLZ == 1) limit = 800.0;
    else if (SLZ == 2) limit = 900.0;
    if (limit > 0.0) {
        lblSnowH_->Caption(SLZ == 1 ? "(h <= 800m)" : "(h <= 900m)");
        lblSnowH_->Visible(true);
        height.Max = limit;
        height.MaxCheck = true;
    } else {
        lblSnowH_->Visible(false);
        height.MaxCheck = false;
    }
}

void frmRoofLoad::ValueAccepted(QVTextBox& box, const std::string& name) {
    if (Updating || !box.Changed()) return;
    UpdateData(true, name);
    UpdateData(false, "");
}

void frmRoofLoad::NormChosen(int16_t code) {
    Norm(code);
    if (code != norm::DIN1986_1975) {
        SwitchNorm = true;
        Hide();
        return;
    }
    Init_Me();
    UpdateData(false, "");
}

void frmRoofLoad::cbNorm_Click() {
    if (Updating || cbNorm_->ListIndex() < 0) return;
    NormChosen(static_cast<int16_t>(cbNorm_->ItemData(cbNorm_->ListIndex())));
}

void frmRoofLoad::cbNormI_Click() {
    if (Updating || cbNormI_->ListIndex() < 0) return;
    NormChosen(ChosenNorm(*cbNormI_));
}

void frmRoofLoad::cbSLZ_Click() {
    if (Updating) return;
    UpdateData(true, "_SLZ");
    UpdateData(false, "");
}

void frmRoofLoad::chkNorm_Click() {
    if (Updating) return;
    UpdateData(true, "");
    UpdateData(false, "");
}

void frmRoofLoad::cmdSLZ_Click() {
    if (Updating) return;
    if (SnowZoneByMap1975(SLZ) > 0) UpdateData(false, "");
    SendTab();
}

void frmRoofLoad::cmdDefault_Click() {
    if (Updating) return;
    DefaultValues v;
    v.norm = norm_;
    v.wq = Rechenwert_wq;
    v.hGeb = Hoehe_Geb;
    v.hNN = Hoehe_NN;
    v.s0 = Rechenwert_s0;
    v.slz = SLZ;
    StoreDefaults(v, TownRec{}, defWind_, defSnow_, NachNorm);
}

void frmRoofLoad::QVButtons1_OnOk() { AcceptAndHide(); }

void frmRoofLoad::QVButtons1_OnCancel() { CancelAndHide(); }

void frmRoofLoad::Localize() {
    LocalizeFrame(*this, *lbNorm_, *chkNorm_, *cmdDefault_, *QVButtons1_);
    Frame1_->Caption(T(7));
    Frame2_->Caption(T(6));
    Frame3_->Caption(T(4));
    lblSnow_->Caption(T(46));
    cmdSLZ_->Caption(T(411));
    cmdSLZ_->ToolTipText(T(43));

    struct BoxText {
        QVTextBox* box;
        int32_t remark;
        const char* caption;
    };
    const BoxText boxes[] = {
        {&txtWind(0), 23, "h"},
        {&txtWind(1), kTextStaudruck, "q"},
        {&txtSnow(1), 22, "h"},
        {&txtSnow(2), kTextRegelschneelast, "s_0"},
    };
    for (const BoxText& b : boxes) {
        b.box->Remark(T(b.remark));
        b.box->Caption(b.caption);
    }
    txtWind(0).Dimension(T(50));
    txtWind(1).Dimension(T(51));
    txtSnow(1).Dimension(T(50));
    txtSnow(2).Dimension(T(51));
    LocalizeDeadLoads(DeadLoads());
}

}  // namespace qvrl
