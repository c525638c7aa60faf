#include "automation/RoofLoadSessions.h"

#include <memory>

#include "automation/CRoofLoad.h"
#include "dialogs/frmRoofLoad.h"
#include "dialogs/frmRoofLoad100.h"
#include "dialogs/frmRoofLoadEN.h"
#include "interchange/modAsciiRL.h"
#include "interchange/modAsciiRL2.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "support/vb.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

// Every session reads and writes loads in kN/cm².
constexpr double kScale = 10000;

bool IsEurocodeDialogNorm(int16_t n) {
    return n == norm::EN || n == norm::DE || n == norm::AT || n == norm::UK || n == norm::IT;
}

bool IsDin100Norm(int16_t n) { return n == norm::DIN2005 || n == norm::DIN2005_T2963; }

bool IsOldNorm(int16_t n) { return n == norm::DIN1986_1975; }

template <class Rec>
void KeepOnlyNorm(Rec& rec) {
    const int16_t n = rec.Norm;
    rec = Rec{};
    rec.Norm = n;
}

void ReadDefaultsIfAsked(CRoofLoad& roof) {
    if (!roof.WithDefaults) return;
    int16_t defNorm = 0;
    std::string defCodes;
    ReadDefaults(roof.DefaultTown, roof.DefaultWind, roof.DefaultSnow, defNorm, defCodes);
}

// 0.01 marks a file that never held data.
void TakeDefaultsForEmptyRecords(CRoofLoad& roof) {
    if (Trim(roof.Town.AGS).empty() && roof.WithDefaults) roof.Town = roof.DefaultTown;
    if (!(roof.Wind.hNN >= 0.01)) {
        const int16_t n = roof.Wind.Norm;
        roof.Wind = roof.DefaultWind;
        roof.Wind.Norm = n;
    }
    if (!(roof.Snow.h >= 0.01)) {
        const int16_t n = roof.Snow.Norm;
        roof.Snow = roof.DefaultSnow;
        roof.Snow.Norm = n;
    }
}

// Records of another dialog's standard keep only their code.
void ClearForeignRecords(CRoofLoad& roof, bool (*own)(int16_t)) {
    if (!own(roof.Wind.Norm)) KeepOnlyNorm(roof.Wind);
    if (!own(roof.Snow.Norm)) KeepOnlyNorm(roof.Snow);
}

void ReadDeadLoad(CRoofLoad& roof, const std::string& file, int16_t& ctrlNorm, bool (*own)(int16_t)) {
    if (!roof.EditDeadLoad) return;
    std::string ignored;
    ReadDeadBlocks(file, roof.DeadLoad, kScale, ctrlNorm, ignored);
    if (!own(roof.DeadLoad.Norm)) KeepOnlyNorm(roof.DeadLoad);
}

bool BothAre(const CRoofLoad& roof, bool (*codes)(int16_t)) {
    return roof.Snow.Norm == roof.Wind.Norm && codes(roof.Wind.Norm);
}

// A VERSION line without the switch gives -99 and leaves it alone.
void TakeVersionSwitch(CRoofLoad& roof, int16_t ctrlNorm) {
    if (ctrlNorm >= 0) roof.DefaultAccNorm = ctrlNorm != 0;
}

void OfferNorm(int16_t code) {
    ModuleState& st = State();
    if (code != 0 && !IsSelectableNorm(st.SelectableCodesCtrl, code))
        st.SelectableCodesCtrl += std::to_string(code) + "_";
}

template <class Form>
void TakeDeadLoad(CRoofLoad& roof, const Form& dlg, int16_t norm) {
    roof.DeadLoad.Norm = norm;
    roof.DeadLoad.g0 = dlg.Rechenwert_g0;
    roof.DeadLoad.Descr0 = dlg.g0_Bemerkung;
    roof.DeadLoad.g1 = dlg.Rechenwert_g1;
    roof.DeadLoad.Descr1 = dlg.g1_Bemerkung;
    roof.DeadLoad.g2 = dlg.Rechenwert_g2;
    roof.DeadLoad.Descr2 = dlg.g2_Bemerkung;
}

template <class Form>
void GiveDeadLoad(const CRoofLoad& roof, Form& dlg) {
    dlg.Rechenwert_g0 = roof.DeadLoad.g0;
    dlg.g0_Bemerkung = roof.DeadLoad.Descr0;
    dlg.Rechenwert_g1 = roof.DeadLoad.g1;
    dlg.g1_Bemerkung = roof.DeadLoad.Descr1;
    dlg.Rechenwert_g2 = roof.DeadLoad.g2;
    dlg.g2_Bemerkung = roof.DeadLoad.Descr2;
}

// Roof and dead blocks go to the file in one rename, which also ends the
// file's lock before a nested session reads it.
template <class Form>
void WriteBack(CRoofLoad& roof, const std::string& file, const Form& dlg, int16_t deadNorm) {
    const int16_t outNorm = roof.DefaultAccNorm ? 1 : 0;
    BlockFileRewrite rewrite(file);
    rewrite.Roof(roof.Town, roof.Wind, roof.Snow, true, kScale, outNorm, State().SelectableCodesCtrl);
    if (roof.EditDeadLoad) {
        TakeDeadLoad(roof, dlg, deadNorm);
        rewrite.Dead(roof.DeadLoad, true, kScale);
    }
    rewrite.Commit();
}

}  // namespace

void RunRoofLoadDlg(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk) {
    WriteTrace({}, std::nullopt, "ShowRoofLoadDlg ", true);
    onOk = false;
    // The defaults are taken before the file is read, which then replaces
    // every record: they never reach this dialog.
    ReadDefaultsIfAsked(roof);
    TakeDefaultsForEmptyRecords(roof);
    int16_t ctrlNorm = 0;
    ReadRoofBlocks(AsciiFileName, roof.Town, roof.Wind, roof.Snow, kScale, ctrlNorm, State().SelectableCodesCtrl);
    roof.Wind.hNN = roof.Snow.h;
    ClearForeignRecords(roof, IsOldNorm);
    if (roof.EditDeadLoad) {
        std::string ignored;
        ReadDeadBlocks(AsciiFileName, roof.DeadLoad, kScale, ctrlNorm, ignored);
        if (!IsOldNorm(roof.DeadLoad.Norm)) roof.DeadLoad = DeadLoadRec{};
    }

    // 78, a code of the live load catalogue, goes to the 2005 dialog too.
    if (BothAre(roof, [](int16_t n) { return n == norm::DIN2005 || n == 78; })) {
        roof.ShowRoofLoadDlg_1(AsciiFileName);
        return;
    }
    if (BothAre(roof, IsEurocodeDialogNorm)) {
        roof.ShowRoofLoadDlg_EN(AsciiFileName);
        return;
    }
    TakeVersionSwitch(roof, ctrlNorm);
    OfferNorm(norm::DIN1986_1975);

    auto dlg = std::make_unique<frmRoofLoad>();
    dlg->Load();
    dlg->NachNorm = roof.DefaultAccNorm;
    dlg->Norm(norm::DIN1986_1975);
    dlg->MitG = roof.EditDeadLoad;
    dlg->MitVorschlag = roof.WithDefaults;
    dlg->MitNormSelect = roof.SelectNorm;
    dlg->Rechenwert_wq = roof.Wind.q0;
    dlg->Hoehe_Geb = roof.Wind.h;
    dlg->Rechenwert_s0 = roof.Snow.s0;
    dlg->Hoehe_NN = roof.Snow.h;
    dlg->SLZ = roof.Snow.sz;
    GiveDeadLoad(roof, *dlg);

    dlg->Init_Me();
    dlg->UpdateData(false, "");
    dlg->Show();

    // The form has no town: the file keeps the one it was read with.
    const auto takeBack = [&] {
        roof.DefaultAccNorm = dlg->NachNorm;
        roof.Wind.Norm = dlg->Norm();
        roof.Wind.q0 = dlg->Rechenwert_wq;
        roof.Wind.h = dlg->Hoehe_Geb;
        roof.Snow.Norm = dlg->Norm();
        roof.Snow.s0 = dlg->Rechenwert_s0;
        roof.Snow.h = dlg->Hoehe_NN;
        roof.Snow.sz = dlg->SLZ;
        WriteBack(roof, AsciiFileName, *dlg, dlg->Norm());
    };
    if (dlg->SwitchNorm) {
        takeBack();
        // Whatever was chosen: the entry test of _1 passes a Eurocode pair on.
        roof.ShowRoofLoadDlg_1(AsciiFileName);
        dlg->Unload();
        return;
    }
    if (dlg->Accepted) takeBack();
    onOk = dlg->Accepted;
    dlg->Unload();
}

void RunRoofLoadDlg_1(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk) {
    WriteTrace({}, std::nullopt, "ShowRoofLoadDlg_1 ", true);
    onOk = false;
    ReadDefaultsIfAsked(roof);
    int16_t ctrlNorm = 0;
    ReadRoofBlocks(AsciiFileName, roof.Town, roof.Wind, roof.Snow, kScale, ctrlNorm, State().SelectableCodesCtrl);
    // What the file brought, before any default replaces it.
    WriteTrace("ASCIIFileName", Variant(AsciiFileName), {}, true);
    WriteTrace("Town", std::nullopt, {}, true);
    WriteTrace("AGS", Variant(roof.Town.AGS), {}, true);
    WriteTrace("Snow", std::nullopt, {}, true);
    WriteTrace("Norm", Variant(roof.Snow.Norm), {}, true);
    WriteTrace("s0", Variant(roof.Snow.s0), {}, true);
    WriteTrace("hTerrain", Variant(roof.Snow.h), {}, true);
    WriteTrace("zone", Variant(roof.Snow.sz), {}, true);
    WriteTrace("Wind", std::nullopt, {}, true);
    WriteTrace("q0", Variant(roof.Wind.q0), {}, true);
    WriteTrace("hBuild", Variant(roof.Wind.h), {}, true);
    WriteTrace("cat", Variant(roof.Wind.cat), {}, true);
    roof.Wind.hNN = roof.Snow.h;
    TakeDefaultsForEmptyRecords(roof);
    ClearForeignRecords(roof, IsDin100Norm);
    ReadDeadLoad(roof, AsciiFileName, ctrlNorm, IsDin100Norm);

    if (BothAre(roof, IsOldNorm)) {
        roof.ShowRoofLoadDlg(AsciiFileName);
        return;
    }
    if (BothAre(roof, IsEurocodeDialogNorm)) {
        roof.ShowRoofLoadDlg_EN(AsciiFileName);
        return;
    }
    TakeVersionSwitch(roof, ctrlNorm);
    OfferNorm(roof.Wind.Norm);

    auto dlg = std::make_unique<frmRoofLoad100>();
    dlg->Load();
    dlg->NachNorm = roof.DefaultAccNorm;
    dlg->Norm = roof.Wind.Norm;
    dlg->MitG = roof.EditDeadLoad;
    dlg->EnabledBuildingHeight(roof.EnabledBuildingHeight);
    dlg->NoBuildingHeight(roof.NoBuildingHeight);
    dlg->MitNormSelect = roof.SelectNorm;
    dlg->MitVorschlag = roof.WithDefaults;
    dlg->Rechenwert_wq = roof.Wind.q0;
    dlg->Hoehe_Geb = roof.Wind.h;
    dlg->Hoehe_NN = roof.Wind.hNN;
    dlg->WZ = roof.Wind.wz;
    dlg->GebKat = roof.Wind.cat;
    dlg->Rechenwert_s0 = roof.Snow.s0;
    dlg->Hoehe_NN = roof.Snow.h;
    dlg->SLZ = roof.Snow.sz;
    GiveDeadLoad(roof, *dlg);
    dlg->AGS(roof.Town.AGS);

    WriteTrace({}, std::nullopt, "dlg.Init", true);
    dlg->Init_Me();
    WriteTrace({}, std::nullopt, "dlg.UpdateData", true);
    dlg->UpdateData(false, "");
    WriteTrace({}, std::nullopt, "dlg.Show", true);
    dlg->Show();

    if (dlg->Accepted || dlg->SwitchNorm) {
        roof.Town.AGS = dlg->AGS();
        roof.DefaultAccNorm = dlg->NachNorm;
        roof.Wind.Norm = dlg->Norm;
        roof.Wind.q0 = dlg->Rechenwert_wq;
        roof.Wind.wqRef = dlg->wqRef();
        roof.Wind.h = dlg->Hoehe_Geb;
        roof.Wind.hNN = dlg->Hoehe_NN;
        roof.Wind.wz = dlg->WZ;
        roof.Wind.cat = dlg->GebKat;
        roof.Snow.Norm = dlg->Norm;
        roof.Snow.s0 = dlg->Rechenwert_s0;
        roof.Snow.h = dlg->Hoehe_NN;
        roof.Snow.sz = dlg->SLZ;
        WriteBack(roof, AsciiFileName, *dlg, dlg->Norm);
    }

    if (dlg->SwitchNorm) {
        CurrentPlatform().DoEvents();
        if (IsEurocodeDialogNorm(roof.Wind.Norm)) roof.ShowRoofLoadDlg_EN(AsciiFileName);
        else if (IsOldNorm(roof.Wind.Norm)) roof.ShowRoofLoadDlg(AsciiFileName);
        dlg->Unload();
        return;
    }
    onOk = dlg->Accepted;
    dlg->Unload();
}

void RunRoofLoadDlg_EN(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk) {
    WriteTrace({}, std::nullopt, "ShowRoofLoadDlg_EN ", true);
    onOk = false;
    ReadDefaultsIfAsked(roof);
    int16_t ctrlNorm = 0;
    ReadRoofBlocks(AsciiFileName, roof.Town, roof.Wind, roof.Snow, kScale, ctrlNorm, State().SelectableCodesCtrl);
    roof.Wind.hNN = roof.Snow.h;
    TakeDefaultsForEmptyRecords(roof);
    ClearForeignRecords(roof, IsEurocodeDialogNorm);
    ReadDeadLoad(roof, AsciiFileName, ctrlNorm, IsEurocodeDialogNorm);

    if (BothAre(roof, IsOldNorm)) {
        roof.ShowRoofLoadDlg(AsciiFileName);
        return;
    }
    if (BothAre(roof, [](int16_t n) { return n == norm::DIN2005; })) {
        roof.ShowRoofLoadDlg_1(AsciiFileName);
        return;
    }
    TakeVersionSwitch(roof, ctrlNorm);
    OfferNorm(roof.Wind.Norm);

    auto dlg = std::make_unique<frmRoofLoadEN>();
    dlg->Load();
    dlg->NachNorm = roof.DefaultAccNorm;
    dlg->Norm(roof.Wind.Norm);
    dlg->MitG = roof.EditDeadLoad;
    dlg->EnabledBuildingHeight(roof.EnabledBuildingHeight);
    dlg->NoBuildingHeight(roof.NoBuildingHeight);
    dlg->MitNormSelect = roof.SelectNorm;
    dlg->MitVorschlag = roof.WithDefaults;
    dlg->qb0 = roof.Wind.qb;
    dlg->Rechenwert_wq = roof.Wind.q0;
    dlg->Hoehe_Geb = roof.Wind.h;
    dlg->Hoehe_NN = roof.Wind.hNN;
    dlg->GebKat = roof.Wind.cat;
    dlg->Rechenwert_s0 = roof.Snow.s0;
    dlg->Hoehe_NN = roof.Snow.h;
    dlg->SLZ = roof.Snow.sz;
    GiveDeadLoad(roof, *dlg);
    dlg->AGS(roof.Town.AGS);

    dlg->Init_Me();
    dlg->UpdateData(false, "");
    dlg->Show();

    if (dlg->Accepted || dlg->SwitchNorm) {
        roof.Town.AGS = dlg->AGS();
        roof.DefaultAccNorm = dlg->NachNorm;
        roof.Wind.Norm = dlg->Norm();
        roof.Wind.q0 = dlg->Rechenwert_wq;
        roof.Wind.h = dlg->Hoehe_Geb;
        roof.Wind.hNN = dlg->Hoehe_NN;
        roof.Wind.qb = dlg->qb0;
        roof.Wind.cat = dlg->GebKat;
        roof.Snow.Norm = dlg->Norm();
        roof.Snow.s0 = dlg->Rechenwert_s0;
        roof.Snow.h = dlg->Hoehe_NN;
        roof.Snow.sz = dlg->SLZ;
        WriteBack(roof, AsciiFileName, *dlg, dlg->Norm());
    }

    if (dlg->SwitchNorm) {
        CurrentPlatform().DoEvents();
        if (IsOldNorm(roof.Wind.Norm)) roof.ShowRoofLoadDlg(AsciiFileName);
        else if (IsDin100Norm(roof.Wind.Norm)) roof.ShowRoofLoadDlg_1(AsciiFileName);
        dlg->Unload();
        return;
    }
    onOk = dlg->Accepted;
    dlg->Unload();
}

}  // namespace qvrl
