#include "dialogs/frmRoofLoadEN.h"

#include <memory>

#include "dialogs/RoofLoadFrame.h"
#include "location/modAGSMdb_1.h"
#include "location/modSLZMdb.h"
#include "location/modWLZMdb.h"
#include "maps/MapDialogs.h"
#include "maps/MapForms.h"
#include "rules/modSnowEN.h"
#include "rules/modWindEN.h"
#include "store/StoreFiles.h"
#include "support/modToolsB.h"
#include "vocab/CodeLists.h"

namespace qvrl {

using namespace roofframe;

namespace {

bool IsOwnNorm(int16_t n) {
    return n == norm::EN || n == norm::DE || n == norm::AT || n == norm::UK || n == norm::IT;
}

}  // namespace

frmRoofLoadEN::frmRoofLoadEN() {
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
    ValueBox(*txtHeight_, "0.00");

    Frame1_ = &Add<QVFrame>("Frame1");
    ValueBox(Add<QVTextBox>("txtWind", 0), "0.00");
    lblWind_ = &Add<Label>("lblWind");
    lblWind_->Caption("Geländekategorie nach Anh. B");
    cbWGKat_ = &Add<ComboBox>("cbWGKat");
    cmdGK_ = &Add<CommandButton>("cmdGK");
    cmdGK_->Caption("Übersicht");
    cmdGK_->ToolTipText("Übersicht Geländekategorien");
    chkWindTopo_ = &Add<CheckBox>("chkWindTopo");
    chkWindTopo_->Caption("wahlweise Berücksichtigung der Topographie");
    ValueBox(Add<QVTextBox>("txtWind", 4), "0.000");
    ValueBox(Add<QVTextBox>("txtWind", 5), "0.000");
    cmdOro_ = &Add<CommandButton>("cmdOro");
    cmdOro_->Caption("Topographie");
    ValueBox(Add<QVTextBox>("txtWind", 6), "0.00");
    ValueBox(Add<QVTextBox>("txtWind", 7), "0.00");
    ValueBox(Add<QVTextBox>("txtWind", 8), "0.000");
    ValueBox(Add<QVTextBox>("txtWind", 9), "0.000");
    ValueBox(Add<QVTextBox>("txtWind", 10), "0.00");
    ValueBox(Add<QVTextBox>("txtWind", 11), "0.00");
    ValueBox(Add<QVTextBox>("txtWind", 3), "0.00");
    txtWind(7).Caption("vb");
    txtWind(8).Caption("cDir");
    txtWind(9).Caption("cSeason");
    txtWind(10).Caption("dist");
    txtWind(11).Caption("dist");

    Frame2_ = &Add<QVFrame>("Frame2");
    lblSnow2_ = &Add<Label>("lblSnow2");
    lblSnow2_->Caption("klimatische Region");
    cbCR_ = &Add<ComboBox>("cbCR");
    cmdClimaticRegion_ = &Add<CommandButton>("cmdClimaticRegion");
    cmdClimaticRegion_->Caption("Karte");
    lblSnow_ = &Add<Label>("lblSnow");
    lblSnow_->Caption("Schneelastzone");
    cbSLZ_ = &Add<ComboBox>("cbSLZ");
    cmdSLZ_ = &Add<CommandButton>("cmdSLZ");
    cmdSLZ_->Caption("Karte");
    cmdSLZ_->ToolTipText("Karte der Schneelastzonen");
    lblSnowH_ = &Add<Label>("lblSnowH");
    txtSnow2_ = &Add<QVTextBox>("txtSnow", 2);
    ValueBox(*txtSnow2_, "0.00");

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
    cbCR_->Click = [this] { cbCR_Click(); };
    cbSLZ_->Click = [this] { cbSLZ_Click(); };
    cbWGKat_->Click = [this] { cbWGKat_Click(); };
    chkWindTopo_->Click = [this] { chkWindTopo_Click(); };
    chkNorm_->Click = [this] { chkNorm_Click(); };
    cmdDefault_->Click = [this] { cmdDefault_Click(); };
    cmdAGS_->Click = [this] { cmdAGS_Click(); };
    cmdSLZ_->Click = [this] { cmdSLZ_Click(); };
    cmdClimaticRegion_->Click = [this] { cmdClimaticRegion_Click(); };
    cmdGK_->Click = [this] { cmdGK_Click(); };
    cmdOro_->Click = [this] { cmdOro_Click(); };
    QVButtons1_->OnOk = [this] { QVButtons1_OnOk(); };
    QVButtons1_->OnCancel = [this] { QVButtons1_OnCancel(); };

    const std::pair<int16_t, const char*> windNames[] = {{0, "_WVal"}, {3, "_wq"},    {4, "_WVal"},
                                                         {5, "_WVal"}, {6, "_wRef"},  {7, "_wRef"},
                                                         {8, "_WVal"}, {9, "_WVal"},  {10, "_WVal"},
                                                         {11, "_WVal"}};
    for (const auto& [index, name] : windNames) {
        QVTextBox& box = txtWind(index);
        box.ValidateEvent = [this, &box, n = std::string(name)](bool& ok) {
            if (ok) ValueAccepted(box, n);
        };
    }
    txtHeight_->ValidateEvent = [this](bool& ok) {
        if (ok) ValueAccepted(*txtHeight_, "_HNN");
    };
    txtSnow2_->ValidateEvent = [this](bool& ok) {
        if (ok) ValueAccepted(*txtSnow2_, "_s0");
    };
    for (int16_t i = 0; i < 6; ++i) {
        QVTextBox& box = txtG(i);
        box.ValidateEvent = [this, &box, n = "_G" + std::to_string(i / 2)](bool& ok) {
            if (ok) ValueAccepted(box, n);
        };
    }
    EnterTabsEscapeCancels([this] { QVButtons1_OnCancel(); });
}

void frmRoofLoadEN::Norm(int16_t v) {
    norm_ = v;
    EnableTownChoice();
}

void frmRoofLoadEN::AGS(const std::string& v) {
    ags_ = v;
    if (IsNumeric(ags_) && Val(ags_) > 0) {
        FindTownByAGSEN(norm_, ags_, town_);
        vb0 = town_.vb;
        qb0 = town_.qb;
    }
}

void frmRoofLoadEN::EnableTownChoice() {
    const bool on = (norm_ == norm::DE || norm_ == norm::AT) && FileExists(StoreFile("qvrl.mdb"));
    cmdAGS_->Enabled(on);
    lblAGS_->Enabled(on);
}

void frmRoofLoadEN::FillSnowZones() { Fill(*cbSLZ_, ListsOfNorm(norm_, climate_).snowZones); }

void frmRoofLoadEN::Form_Load() {
    Norm(norm::EN);
    cDir = 1.0;
    cSeason = 1.0;
    DistShoreLine = 0.1 * 1000;
    DistInsideTown = 0.0;
    Init_Me();
}

void frmRoofLoadEN::Form_Activate() {
    // The first activation brought the window to the front through an empty
    // modal form; the platform raises a shown form itself.
    activated_ = true;
    Localize();
}

void frmRoofLoadEN::Init_Me() {
    const NormLists lists = ListsOfNorm(norm_, climate_);
    Fill(*cbSLZ_, lists.snowZones);
    Fill(*cbCR_, lists.regions);
    Fill(*cbWGKat_, lists.categories);

    FillNormCombos(*cbNorm_, *cbNormI_);

    EnableTownChoice();
    SetSlzNorm(norm_);
    SetWlzNorm(norm_);

    const bool uk = norm_ == norm::UK;
    const bool at = norm_ == norm::AT;
    txtWind(6).Visible(!uk);
    txtWind(7).Visible(!at);
    txtWind(8).Visible(!at);
    txtWind(9).Visible(!at);
    txtWind(10).Visible(uk);
    txtWind(11).Visible(uk);
    cmdGK_->Visible(!uk);

    if (!arranged_) {
        arranged_ = true;
        Arrange();
    }
}

void frmRoofLoadEN::Arrange() { ++arrangements_; }

void frmRoofLoadEN::ReadTopography() {
    bWithTopographicFactor = chkWindTopo_->Value() == 1;
    if (bWithTopographicFactor) {
        upwindSlope_ = Number(txtWind(4));
        locationFactor_ = Number(txtWind(5));
    } else {
        upwindSlope_ = 0.0;
        locationFactor_ = 0.0;
    }
}

void frmRoofLoadEN::ComputeWind() {
    Rechenwert_wq = WindPressure_EN_1991_1_4(norm_, GebKat, Hoehe_Geb, qb0, vb0, upwindSlope_, locationFactor_, cDir,
                                             cSeason, DistShoreLine, DistInsideTown);
}

void frmRoofLoadEN::ComputeSnow() {
    Rechenwert_s0 = StandardSnowLoad_EN_1991_1_3(Hoehe_NN, norm_, climate_, SLZ);
}

void frmRoofLoadEN::UpdateData(bool toData, const std::string& controlName) {
    if (toData) {
        const auto readCategory = [this] {
            if (cbWGKat_->ListIndex() >= 0) GebKat = static_cast<int16_t>(cbWGKat_->ItemData(cbWGKat_->ListIndex()));
        };
        const auto readZone = [this] {
            if (cbSLZ_->ListIndex() >= 0) SLZ = static_cast<int16_t>(cbSLZ_->ItemData(cbSLZ_->ListIndex()));
        };
        const auto readRegion = [this] {
            if (cbCR_->ListIndex() >= 0) climate_ = static_cast<int16_t>(cbCR_->ItemData(cbCR_->ListIndex()));
        };
        const auto readFactors = [this] {
            if (txtWind(8).Visible()) cDir = Number(txtWind(8));
            if (txtWind(9).Visible()) cSeason = Number(txtWind(9));
            if (txtWind(10).Visible()) DistShoreLine = Number(txtWind(10));
            if (txtWind(11).Visible()) DistInsideTown = Number(txtWind(11));
        };
        const auto readDead = [this](int k) {
            if (k == 0) ReadDeadLoad(DeadLoads(), k, g0_Bemerkung, Rechenwert_g0);
            if (k == 1) ReadDeadLoad(DeadLoads(), k, g1_Bemerkung, Rechenwert_g1);
            if (k == 2) ReadDeadLoad(DeadLoads(), k, g2_Bemerkung, Rechenwert_g2);
        };
        if (controlName == "_wRef") {
            qb0 = Number(txtWind(6));
            vb0 = Number(txtWind(7));
            ClearTown();
        } else if (controlName == "_WVal") {
            Hoehe_Geb = Number(txtWind(0));
            readCategory();
            ReadTopography();
            readFactors();
            ComputeWind();
        } else if (controlName == "_SLZ") {
            readZone();
            ComputeSnow();
            ClearTown();
        } else if (controlName == "_CR") {
            readRegion();
            ComputeSnow();
            ClearTown();
            FillSnowZones();
        } else if (controlName == "_HNN") {
            Hoehe_NN = Number(*txtHeight_);
            ComputeSnow();
        } else if (controlName == "_G0" || controlName == "_G1" || controlName == "_G2") {
            readDead(controlName[2] - '0');
        } else if (controlName == "_s0") {
            Rechenwert_s0 = Number(*txtSnow2_);
            ClearTown();
        } else if (controlName == "_wq") {
            Rechenwert_wq = Number(txtWind(3));
            ClearTown();
        } else {
            NachNorm = chkNorm_->Value() == 1;
            Hoehe_Geb = Number(txtWind(0));
            readCategory();
            ReadTopography();
            qb0 = Number(txtWind(6));
            vb0 = Number(txtWind(7));
            readFactors();
            Rechenwert_wq = Number(txtWind(3));
            readZone();
            if (cbCR_->Enabled()) readRegion();
            Hoehe_NN = Number(*txtHeight_);
            Rechenwert_s0 = Number(*txtSnow2_);
            for (int k = 0; k < 3; ++k) readDead(k);
        }
        return;
    }

    Updating = true;
    if (MitNormSelect) SelectNorm(*cbNorm_, *cbNormI_, norm_, [this](int16_t n) { Norm(n); });
    txtWind(0).Text(Variant(Hoehe_Geb));

    cbWGKat_->Visible(true);
    if (SelectOrFirst(*cbWGKat_, GebKat)) lblWind_->Caption(cbWGKat_->Text());
    else lblWind_->Caption(T(412));

    chkWindTopo_->Value(bWithTopographicFactor ? 1 : 0);
    if (bWithTopographicFactor) {
        txtWind(4).Text(Variant(upwindSlope_));
        txtWind(5).Text(Variant(locationFactor_));
    }
    txtWind(4).Enabled(bWithTopographicFactor);
    txtWind(5).Enabled(bWithTopographicFactor);
    cmdOro_->Enabled(bWithTopographicFactor);

    const bool regions = SelectOrFirst(*cbCR_, climate_);
    // A region outside the list takes the first one shown, so that the
    // snow load is that of the region the user sees.
    if (regions && IndexOfCode(*cbCR_, climate_) < 0) {
        climate_ = static_cast<int16_t>(cbCR_->ItemData(0));
        FillSnowZones();
    }
    cbCR_->Enabled(regions);
    cmdClimaticRegion_->Enabled(regions);

    cbSLZ_->Enabled(SelectOrFirst(*cbSLZ_, SLZ));

    txtHeight_->Text(Variant(Hoehe_NN));

    if (ags_.empty() || !IsNumeric(ags_) || !(Val(ags_) > 0)) {
        lblAGS_->Caption(T(420));
    } else {
        lblAGS_->Caption(town_.PLZ + " " + town_.Gemeinde + "   (" + town_.BL_Name + T(422) + town_.Reg_Name + ")");
    }

    if (NachNorm) {
        ComputeWind();
        ComputeSnow();
    }

    txtWind(8).Text(Variant(cDir));
    txtWind(9).Text(Variant(cSeason));
    txtWind(10).Text(Variant(DistShoreLine));
    txtWind(11).Text(Variant(DistInsideTown));
    txtWind(7).Text(Variant(vb0));
    txtWind(6).Text(Variant(qb0));
    txtWind(3).Text(Variant(Rechenwert_wq));
    txtSnow2_->Text(Variant(Rechenwert_s0));

    if (norm_ == norm::UK) {
        const bool before10 = txtWind(10).Visible();
        const bool before11 = txtWind(11).Visible();
        txtWind(10).Visible(GebKat >= 1);
        txtWind(11).Visible(GebKat >= 3);
        if (before10 != txtWind(10).Visible() || before11 != txtWind(11).Visible()) Arrange();
    }

    ShowNachNorm(*chkNorm_, NachNorm, {&txtWind(3), txtSnow2_});
    ShowDeadLoads(*Frame4_, DeadLoads(), MitG, {Rechenwert_g0, Rechenwert_g1, Rechenwert_g2});

    cmdDefault_->Visible(MitVorschlag);
    Updating = false;
}

void frmRoofLoadEN::ValueAccepted(QVTextBox& box, const std::string& name) {
    if (Updating || !box.Changed()) return;
    UpdateData(true, name);
    UpdateData(false, "");
}

void frmRoofLoadEN::cbNormI_Click() {
    if (Updating || cbNormI_->ListIndex() < 0) return;
    const int16_t code = ChosenNorm(*cbNormI_);
    const bool changed = code != norm_;
    Norm(code);
    if (!IsOwnNorm(code)) {
        SwitchNorm = true;
        Hide();
        return;
    }
    Init_Me();
    UpdateData(false, "");
    if (changed) ClearTown();
}

void frmRoofLoadEN::cbCR_Click() {
    if (Updating) return;
    UpdateData(true, "_CR");
    UpdateData(false, "");
}

void frmRoofLoadEN::cbSLZ_Click() {
    if (Updating) return;
    UpdateData(true, "_SLZ");
    UpdateData(false, "");
}

void frmRoofLoadEN::cbWGKat_Click() {
    if (Updating) return;
    UpdateData(true, "_WG");
    UpdateData(false, "");
}

void frmRoofLoadEN::chkWindTopo_Click() {
    if (Updating) return;
    UpdateData(true, "_WG");
    UpdateData(false, "");
}

void frmRoofLoadEN::chkNorm_Click() {
    if (Updating) return;
    UpdateData(true, "");
    UpdateData(false, "");
    EnableTownChoice();
}

void frmRoofLoadEN::cmdDefault_Click() {
    if (Updating) return;
    DefaultValues v;
    v.norm = norm_;
    v.wq = Rechenwert_wq;
    v.hGeb = Hoehe_Geb;
    v.hNN = Hoehe_NN;
    v.cat = GebKat;
    v.qb = qb0;
    v.s0 = Rechenwert_s0;
    v.slz = SLZ;
    StoreDefaults(v, town_, defWind_, defSnow_, NachNorm);
}

void frmRoofLoadEN::cmdAGS_Click() {
    if (Updating) return;
    // The Eurocode takes qb, not the wind zone: the zone stays local.
    int16_t wz = 0;
    std::string name;
    if (SelectTownDialogEN(norm_, wz, SLZ, qb0, Rechenwert_s0, Hoehe_NN, ags_, name) >= 1)
        FindTownByAGSEN(norm_, ags_, town_);
    UpdateData(false, "");
    SendTab();
}

void frmRoofLoadEN::cmdSLZ_Click() {
    if (Updating) return;
    if (SnowZoneByMapEN(norm_, climate_, SLZ) >= 0) UpdateData(false, "");
    SendTab();
}

void frmRoofLoadEN::cmdClimaticRegion_Click() {
    if (Updating) return;
    const int16_t before = climate_;
    if (ClimateRegionByMap(climate_) >= 0) {
        if (climate_ != before) FillSnowZones();
        ClearTown();
        UpdateData(false, "");
    }
    SendTab();
}

void frmRoofLoadEN::cmdGK_Click() {
    if (Updating) return;
    std::unique_ptr<WindCategoryForm> f;
    if (norm_ == norm::UK) f = std::make_unique<frmWindCategoryEN_BS>();
    else f = std::make_unique<frmWindCategoryEN>();
    f->Load();
    // EN categories are their own option index (0 to 4).
    const CodeList categories = ListsOfNorm(norm_).categories;
    for (int16_t i = 0; i < f->OptionCount(); ++i) f->WCat_Enabled(i, false);
    for (int16_t k = 1; k <= categories.Count(); ++k) f->WCat_Enabled(categories.Index[k], true);
    f->WCat(GebKat);
    f->UpdateData(false);
    f->Show();
    if (f->OnOkButton()) {
        f->UpdateData(true);
        GebKat = f->WCat();
        UpdateData(false, "");
    }
    f->Unload();
    SendTab();
}

void frmRoofLoadEN::cmdOro_Click() {
    if (Updating) return;
    frmOrographic f;
    f.Load();
    f.gPhi = upwindSlope_;
    f.sFac = locationFactor_;
    f.UpdateData(false);
    f.Show();
    if (f.OnOkButton()) {
        upwindSlope_ = f.gPhi;
        locationFactor_ = f.sFac;
        UpdateData(false, "");
    }
    f.Unload();
}

void frmRoofLoadEN::QVButtons1_OnOk() { AcceptAndHide(); }

void frmRoofLoadEN::QVButtons1_OnCancel() { CancelAndHide(); }

void frmRoofLoadEN::Localize() {
    LocalizeFrame(*this, *lbNorm_, *chkNorm_, *cmdDefault_, *QVButtons1_);
    Frame4_->Caption(T(4));
    Frame3_->Caption(T(5));
    Frame2_->Caption(T(6));
    Frame1_->Caption(T(7));
    Frame5_->Caption(T(8));
    cmdAGS_->Caption(T(410));
    cmdAGS_->ToolTipText(T(42));
    lblSnow_->Caption(T(46));
    lblSnow2_->Caption(T(562));
    cmdSLZ_->Caption(T(411));
    cmdSLZ_->ToolTipText(T(43));
    cmdClimaticRegion_->Caption(T(411));
    cmdClimaticRegion_->ToolTipText(T(563));
    // The category's own name replaces it at the next data-to-controls pass.
    lblWind_->Caption(T(600));
    cmdGK_->Caption(T(48));
    cmdGK_->ToolTipText(T(54));
    chkWindTopo_->Caption(T(576));
    cmdOro_->Caption(T(575));
    cmdOro_->ToolTipText(T(575));

    struct BoxText {
        QVTextBox* box;
        int32_t remark;
        const char* caption;
        int32_t unit;  // 0: none
    };
    const BoxText boxes[] = {
        {txtHeight_, 22, "A", 50},          {&txtWind(0), 23, "h", 50},     {&txtWind(3), 34, "q_p", 51},
        {&txtWind(4), 35, "\xCE\xA6", 0},   {&txtWind(5), 37, "s", 0},      {&txtWind(6), 38, "q_b", 51},
        {&txtWind(7), 41, "vb", 52},        {&txtWind(8), 44, "cDir", 0},   {&txtWind(9), 45, "cSeason", 0},
        {&txtWind(10), 47, "dist", 50},     {&txtWind(11), 49, "dist", 50}, {txtSnow2_, 53, "s_k", 51},
    };
    for (const BoxText& b : boxes) {
        b.box->Remark(T(b.remark));
        b.box->Caption(b.caption);
        b.box->Dimension(b.unit ? T(b.unit) : std::string());
    }
    LocalizeDeadLoads(DeadLoads());
}

}  // namespace qvrl
