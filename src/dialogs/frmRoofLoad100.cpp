#include "dialogs/frmRoofLoad100.h"

#include "dialogs/RoofLoadFrame.h"
#include "location/ZoneByTown.h"
#include "location/modAGSMdb.h"
#include "location/modSLZMdb.h"
#include "location/modWLZMdb.h"
#include "maps/MapDialogs.h"
#include "rules/modSnow.h"
#include "rules/modWind.h"
#include "store/StoreFiles.h"
#include "support/CTrace.h"
#include "support/modToolsB.h"
#include "vocab/CodeLists.h"

namespace qvrl {

using namespace roofframe;

namespace {

constexpr uint32_t kBlack = 0x000000;
// Above this terrain height DIN 1055-4:2005 gives no wind load.
constexpr double kWindLimit = 1100;

bool IsOwnNorm(int16_t n) { return n == norm::DIN2005 || n == norm::DIN2005_T2963; }

// Selects the code; a code the list does not hold takes the first item,
// which then becomes the value.
void SelectOrTakeFirst(ComboBox& cb, int16_t& code) {
    if (!SelectOrFirst(cb, code)) return;
    code = static_cast<int16_t>(cb.ItemData(cb.ListIndex()));
}

int16_t Selected(const ComboBox& cb, int16_t before) {
    return cb.ListIndex() >= 0 ? static_cast<int16_t>(cb.ItemData(cb.ListIndex())) : before;
}

void ValueBox(QVTextBox& box) { roofframe::ValueBox(box, "0.00"); }

bool Exists(const char* storeFile) { return FileExists(StoreFile(storeFile)); }

}  // namespace

frmRoofLoad100::frmRoofLoad100() {
    Caption("Wind- und Schneelasten");
    lbNorm_ = &Add<Label>("lbNorm");
    cbNorm_ = &Add<ComboBox>("cbNorm");
    // The image list is the presentation shown; the plain list stays for
    // hosts that read it.
    cbNorm_->Visible(false);
    cbNormI_ = &Add<ComboBox>("cbNormI");

    Frame5_ = &Add<QVFrame>("Frame5");
    cmdAGS_ = &Add<CommandButton>("cmdAGS");
    cmdAGS_->Caption("Gemeindeauswahl");
    lblAGS_ = &Add<Label>("lblAGS");
    lblAGS_->Caption("keine Gemeinde ausgewählt");

    Frame3_ = &Add<QVFrame>("Frame3");
    txtHeight_ = &Add<QVTextBox>("txtHeight");
    ValueBox(*txtHeight_);

    Frame1_ = &Add<QVFrame>("Frame1");
    ValueBox(Add<QVTextBox>("txtWind", 0));
    lblWZ_ = &Add<Label>("lblWZ");
    lblWZ_->Caption("Windzone");
    cbWZ_ = &Add<ComboBox>("cbWZ");
    cmdWZ_ = &Add<CommandButton>("cmdWZ");
    cmdWZ_->Caption("Karte");
    cmdWZ2_ = &Add<CommandButton>("cmdWZ2");
    cmdWZ2_->Caption("Gemeinde");
    lblWind_ = &Add<Label>("lblWind");
    lblWind_->Caption("Geländekategorie");
    cbWGKat_ = &Add<ComboBox>("cbWGKat");
    cmdGK_ = &Add<CommandButton>("cmdGK");
    cmdGK_->Caption("Übersicht");
    cmdGK_->ToolTipText("Übersicht Geländekategorien");
    QVTextBox& ref = Add<QVTextBox>("txtWind", 4);
    ValueBox(ref);
    // Shown only: the zone decides it.
    ref.Locked(true);
    ref.LabelLike(true);
    ValueBox(Add<QVTextBox>("txtWind", 3));
    lblWindH_ = &Add<Label>("lblWindH");

    Frame2_ = &Add<QVFrame>("Frame2");
    lblSnow_ = &Add<Label>("lblSnow");
    lblSnow_->Caption("Schneelastzone");
    cbSLZ_ = &Add<ComboBox>("cbSLZ");
    cmdSLZ_ = &Add<CommandButton>("cmdSLZ");
    cmdSLZ_->Caption("Karte");
    cmdSLZ_->ToolTipText("Karte der Schneelastzonen");
    cmdSLZ2_ = &Add<CommandButton>("cmdSLZ2");
    cmdSLZ2_->Caption("Gemeinde");
    lblSnowH_ = &Add<Label>("lblSnowH");
    txtSnow2_ = &Add<QVTextBox>("txtSnow", 2);
    ValueBox(*txtSnow2_);

    Frame4_ = &Add<QVFrame>("Frame4");
    for (int16_t i = 0; i < 6; ++i) SetUpDeadLoadBox(Add<QVTextBox>("txtG", i), i);

    chkNorm_ = &Add<CheckBox>("chkNorm");
    chkNorm_->OnForm = true;
    chkNorm_->Caption("Werte entspr. Norm");
    cmdDefault_ = &Add<CommandButton>("cmdDefault");
    cmdDefault_->OnForm = true;
    cmdDefault_->Caption("Werte als Standard festlegen");
    QVButtons1_ = &Add<QVButtons>("QVButtons1");

    cbNormI_->Click = [this] { cbNormI_Click(); };
    cbWZ_->Click = [this] { cbWZ_Click(); };
    cbWGKat_->Click = [this] { cbWGKat_Click(); };
    cbSLZ_->Click = [this] { cbSLZ_Click(); };
    chkNorm_->Click = [this] { chkNorm_Click(); };
    cmdSLZ_->Click = [this] { cmdSLZ_Click(); };
    cmdSLZ2_->Click = [this] { cmdSLZ2_Click(); };
    cmdWZ_->Click = [this] { cmdWZ_Click(); };
    cmdWZ2_->Click = [this] { cmdWZ2_Click(); };
    cmdGK_->Click = [this] { cmdGK_Click(); };
    cmdAGS_->Click = [this] { cmdAGS_Click(); };
    cmdDefault_->Click = [this] { cmdDefault_Click(); };
    QVButtons1_->OnOk = [this] { QVButtons1_OnOk(); };
    QVButtons1_->OnCancel = [this] { QVButtons1_OnCancel(); };

    const std::pair<QVTextBox*, const char*> named[] = {
        {&txtWind(0), "_WG"}, {&txtWind(3), "_wq"}, {txtHeight_, "_HNN"}, {txtSnow2_, "_s0"},
        {&txtG(0), "_G0"},    {&txtG(1), "_G0"},    {&txtG(2), "_G1"},    {&txtG(3), "_G1"},
        {&txtG(4), "_G2"},    {&txtG(5), "_G2"},
    };
    for (const auto& f : named) {
        f.first->ValidateEvent = [this, box = f.first, n = std::string(f.second)](bool& ok) {
            if (ok) ValueAccepted(*box, n);
        };
    }
    EnterTabsEscapeCancels([this] { QVButtons1_OnCancel(); });
}

void frmRoofLoad100::AGS(const std::string& v) {
    ags_ = v;
    if (IsNumeric(ags_) && Val(ags_) > 0) FindTownByAGS(ags_, town_);
}

void frmRoofLoad100::Form_Load() {
    Norm = norm::DIN2005;
    Init_Me();
}

void frmRoofLoad100::Form_Activate() { Localize(); }

void frmRoofLoad100::Init_Me() {
    Fill(*cbSLZ_, SnowZoneList2005());
    Fill(*cbWZ_, Norm == norm::DIN2005_T2963 ? WindZoneList2005_T2963() : WindZoneList2005());
    Fill(*cbWGKat_, WindCategoryList2005());

    FillNormCombos(*cbNorm_, *cbNormI_);

    EnableZoneButtons();
    SetSlzNorm(Norm);
    SetWlzNorm(Norm);
}

void frmRoofLoad100::EnableZoneButtons() {
    const bool own = IsOwnNorm(Norm);
    cmdSLZ2_->Enabled(own && Exists("qvrlslz.mdb"));
    cmdWZ2_->Enabled((Norm == norm::DIN2005_T2963 && Exists("qvrlwlz.mdb")) ||
                     (Norm == norm::DIN2005 && Exists("qvrlwlz_dibt.mdb")));
    // Each button follows its own file: the town choice does not switch the
    // zone choosers on or off.
    const bool town = own && Exists("qvrl.mdb");
    cmdAGS_->Enabled(town);
    lblAGS_->Enabled(town);
}

void frmRoofLoad100::ComputeWind() { Rechenwert_wq = WindPressure_DIN1055_4_2005(WZ, GebKat, Hoehe_Geb, Hoehe_NN); }

void frmRoofLoad100::ComputeSnow() { Rechenwert_s0 = StandardSnowLoad_DIN1055_7_2005(SLZ, Hoehe_NN); }

void frmRoofLoad100::UpdateData(bool toData, const std::string& controlName) {
    if (toData) {
        const auto readDead = [this](int k) {
            if (k == 0) ReadDeadLoad(DeadBoxes(), k, g0_Bemerkung, Rechenwert_g0);
            if (k == 1) ReadDeadLoad(DeadBoxes(), k, g1_Bemerkung, Rechenwert_g1);
            if (k == 2) ReadDeadLoad(DeadBoxes(), k, g2_Bemerkung, Rechenwert_g2);
        };
        if (controlName == "_WG" || controlName == "_WZ") {
            Hoehe_Geb = Number(txtWind(0));
            WZ = Selected(*cbWZ_, WZ);
            GebKat = Selected(*cbWGKat_, GebKat);
            ComputeWind();
            // A building height or category belongs to no town; a zone does.
            if (controlName == "_WZ") ClearTown();
        } else if (controlName == "_SLZ") {
            SLZ = Selected(*cbSLZ_, SLZ);
            ComputeSnow();
            ClearTown();
        } else if (controlName == "_HNN") {
            Hoehe_NN = Number(*txtHeight_);
        } else if (controlName == "_G0" || controlName == "_G1" || controlName == "_G2") {
            readDead(controlName[2] - '0');
        } else if (controlName == "_s0") {
            Rechenwert_s0 = Number(*txtSnow2_);
        } else if (controlName == "_wq") {
            Rechenwert_wq = Number(txtWind(3));
        } else {
            NachNorm = chkNorm_->Value() == 1;
            Hoehe_Geb = Number(txtWind(0));
            WZ = Selected(*cbWZ_, WZ);
            GebKat = Selected(*cbWGKat_, GebKat);
            Rechenwert_wq = Number(txtWind(3));
            SLZ = Selected(*cbSLZ_, SLZ);
            Hoehe_NN = Number(*txtHeight_);
            Rechenwert_s0 = Number(*txtSnow2_);
            for (int k = 0; k < 3; ++k) readDead(k);
        }
        return;
    }

    Updating = true;
    if (MitNormSelect) {
        // 31 has no row of its own in the list: it shows as the 2005 row and stays 31.
        const int16_t shown = Norm == norm::DIN2005_T2963 ? norm::DIN2005 : Norm;
        SelectNorm(*cbNorm_, *cbNormI_, shown, [this](int16_t n) { Norm = n; });
    }
    txtWind(0).Text(Variant(Hoehe_Geb));

    SelectOrTakeFirst(*cbWZ_, WZ);
    SelectOrTakeFirst(*cbWGKat_, GebKat);
    SelectOrTakeFirst(*cbSLZ_, SLZ);

    txtHeight_->Text(Variant(Hoehe_NN));

    if (ags_.empty() || !IsNumeric(ags_) || !(Val(ags_) > 0)) {
        lblAGS_->Caption(T(420));
    } else {
        lblAGS_->Caption(town_.PLZ + " " + town_.Gemeinde + "   (" + town_.BL_Name + T(422) + town_.Reg_Name + ")");
    }

    WindReference(WZ, wqRef_, vRef_);

    if (NachNorm) {
        ComputeWind();
        ComputeSnow();
    }

    txtWind(4).Text(Variant(wqRef_));
    txtWind(3).Text(Variant(Rechenwert_wq));
    txtSnow2_->Text(Variant(Rechenwert_s0));

    ShowNachNorm(*chkNorm_, NachNorm, {&txtWind(3), txtSnow2_});

    Footnotes();

    ShowDeadLoads(*Frame4_, DeadBoxes(), MitG, {Rechenwert_g0, Rechenwert_g1, Rechenwert_g2});

    cmdDefault_->Visible(MitVorschlag);
    Updating = false;
}

void frmRoofLoad100::Footnotes() {
    double snowLimit = 1500;
    std::string snowText = "(h <= 1500m)";
    if (SLZ == 1 || SLZ == 11) {
        snowLimit = 800;
        snowText = "(h <= 800m)";
    } else if (SLZ == 2 || SLZ == 21) {
        snowLimit = 1200;
        snowText = "(h <= 1200m)";
    }
    lblSnowH_->Visible(true);
    lblSnowH_->Caption(snowText);
    lblSnowH_->ForeColor(Hoehe_NN <= snowLimit ? kBlack : colour::Red);
    lblWindH_->Caption("(h <= 1100m)");
    lblWindH_->ForeColor(Hoehe_NN <= kWindLimit ? kBlack : colour::Red);
}

void frmRoofLoad100::ValueAccepted(QVTextBox& box, const std::string& name) {
    if (Updating || !box.Changed()) return;
    UpdateData(true, name);
    UpdateData(false, "");
}

void frmRoofLoad100::cbNormI_Click() {
    if (Updating || cbNormI_->ListIndex() < 0) return;
    Norm = ChosenNorm(*cbNormI_);
    if (!IsOwnNorm(Norm)) {
        SwitchNorm = true;
        Hide();
        return;
    }
    Init_Me();
    UpdateData(false, "");
}

void frmRoofLoad100::cbWZ_Click() {
    if (Updating) return;
    UpdateData(true, "_WZ");
    UpdateData(false, "");
}

void frmRoofLoad100::cbWGKat_Click() {
    if (Updating) return;
    UpdateData(true, "_WG");
    UpdateData(false, "");
}

void frmRoofLoad100::cbSLZ_Click() {
    if (Updating) return;
    UpdateData(true, "_SLZ");
    UpdateData(false, "");
}

void frmRoofLoad100::chkNorm_Click() {
    if (Updating) return;
    UpdateData(true, "");
    UpdateData(false, "");
    EnableZoneButtons();
}

void frmRoofLoad100::cmdSLZ_Click() {
    if (Updating) return;
    if (SnowZoneByMap2005(SLZ) >= 0) UpdateData(false, "");
    SendTab();
}

void frmRoofLoad100::cmdSLZ2_Click() {
    if (Updating) return;
    const int16_t r = Norm == norm::DIN2005_T2963 ? SnowZoneByTown2005_T3093(SLZ) : SnowZoneByTown2005(SLZ);
    if (r >= 0) UpdateData(false, "");
    SendTab();
}

void frmRoofLoad100::cmdWZ_Click() {
    if (Updating) return;
    const int16_t r = Norm == norm::DIN2005_T2963 ? WindZoneByMap2005_T2963(WZ) : WindZoneByMap2005(WZ);
    if (r > 0) UpdateData(false, "");
    SendTab();
}

void frmRoofLoad100::cmdWZ2_Click() {
    if (Updating) return;
    int16_t r = -1;
    if (Norm == norm::DIN2005_T2963) r = WindZoneByTown2005_T2963(WZ);
    else if (Norm == norm::DIN2005) r = WindZoneByTown2005_DIBt(WZ);
    if (r > 0) UpdateData(false, "");
    SendTab();
}

void frmRoofLoad100::cmdGK_Click() {
    if (Updating) return;
    if (WindCategoryByView2005(GebKat) >= 0) UpdateData(false, "");
    SendTab();
}

void frmRoofLoad100::cmdAGS_Click() {
    if (Updating) return;
    WriteTrace({}, std::nullopt, "cmdAGS_Click ", true);
    std::string name;
    if (SelectTownDialog(WZ, SLZ, ags_, name) >= 1) FindTownByAGS(ags_, town_);
    UpdateData(false, "");
    SendTab();
}

void frmRoofLoad100::cmdDefault_Click() {
    if (Updating) return;
    // The zone is not a value of the frame's: it goes into the record first.
    defWind_.wz = WZ;
    StoreDefaults({Norm, Rechenwert_wq, Hoehe_Geb, Hoehe_NN, GebKat, 0.0, Rechenwert_s0, SLZ}, town_, defWind_, defSnow_,
                  NachNorm);
}

void frmRoofLoad100::QVButtons1_OnOk() { AcceptAndHide(); }

void frmRoofLoad100::QVButtons1_OnCancel() { CancelAndHide(); }

void frmRoofLoad100::Localize() {
    LocalizeFrame(*this, *lbNorm_, *chkNorm_, *cmdDefault_, *QVButtons1_);
    Frame4_->Caption(T(4));
    Frame3_->Caption(T(5));
    Frame2_->Caption(T(6));
    Frame1_->Caption(T(7));
    Frame5_->Caption(T(8));
    cmdAGS_->Caption(T(410));
    cmdAGS_->ToolTipText(T(42));
    lblSnow_->Caption(T(46));
    cmdSLZ_->Caption(T(411));
    cmdSLZ_->ToolTipText(T(43));
    cmdSLZ2_->Caption(T(405));
    cmdSLZ2_->ToolTipText(T(302));
    lblWZ_->Caption(T(290));
    cmdWZ_->Caption(T(411));
    cmdWZ_->ToolTipText(T(288));
    cmdWZ2_->Caption(T(405));
    cmdWZ2_->ToolTipText(T(401));
    lblWind_->Caption(T(412));
    cmdGK_->Caption(T(48));
    cmdGK_->ToolTipText(T(54));

    struct BoxText {
        QVTextBox* box;
        int32_t remark;
        const char* caption;
    };
    const BoxText boxes[] = {
        {txtHeight_, 22, "A"},   {&txtWind(0), 23, "h"},   {&txtWind(3), 34, "q"},
        {&txtWind(4), 630, "q_ref"}, {txtSnow2_, 53, "s_k"},
    };
    for (const BoxText& b : boxes) {
        b.box->Remark(T(b.remark));
        b.box->Caption(b.caption);
        b.box->Dimension(T(b.box == txtHeight_ || b.box == &txtWind(0) ? 50 : 51));
    }
    LocalizeDeadLoads(DeadBoxes());
}

}  // namespace qvrl
