#include "automation/RoofLoadSessions.h"

#include <memory>

#include "automation/CRoofLoad.h"
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

template <class Rec>
void KeepOnlyNorm(Rec& rec) {
    const int16_t n = rec.Norm;
    rec = Rec{};
    rec.Norm = n;
}

}  // namespace

void RunRoofLoadDlg_EN(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk) {
    WriteTrace({}, std::nullopt, "ShowRoofLoadDlg_EN ", true);
    onOk = false;
    ModuleState& st = State();

    if (roof.WithDefaults) {
        int16_t defNorm = 0;
        std::string defCodes;
        ReadDefaults(roof.DefaultTown, roof.DefaultWind, roof.DefaultSnow, defNorm, defCodes);
    }
    int16_t ctrlNorm = 0;
    ReadRoofBlocks(AsciiFileName, roof.Town, roof.Wind, roof.Snow, kScale, ctrlNorm, st.SelectableCodesCtrl);
    roof.Wind.hNN = roof.Snow.h;
    if (Trim(roof.Town.AGS).empty() && roof.WithDefaults) roof.Town = roof.DefaultTown;
    // 0.01 marks a file that never held data.
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
    if (!IsEurocodeDialogNorm(roof.Wind.Norm)) KeepOnlyNorm(roof.Wind);
    if (!IsEurocodeDialogNorm(roof.Snow.Norm)) KeepOnlyNorm(roof.Snow);
    if (roof.EditDeadLoad) {
        std::string ignored;
        ReadDeadBlocks(AsciiFileName, roof.DeadLoad, kScale, ctrlNorm, ignored);
        if (!IsEurocodeDialogNorm(roof.DeadLoad.Norm)) KeepOnlyNorm(roof.DeadLoad);
    }

    // A file of the DIN 1055 dialogs belongs to their sessions, which do not
    // exist yet: the call ends here as a hand-over that calls nothing.
    if (roof.Snow.Norm == roof.Wind.Norm &&
        (roof.Wind.Norm == norm::DIN1986_1975 || roof.Wind.Norm == norm::DIN2005))
        return;
    // A VERSION line without the switch gives -99 and leaves it alone.
    if (ctrlNorm >= 0) roof.DefaultAccNorm = ctrlNorm != 0;
    if (roof.Wind.Norm != 0 && !IsSelectableNorm(st.SelectableCodesCtrl, roof.Wind.Norm))
        st.SelectableCodesCtrl += std::to_string(roof.Wind.Norm) + "_";

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
    dlg->Rechenwert_g0 = roof.DeadLoad.g0;
    dlg->g0_Bemerkung = roof.DeadLoad.Descr0;
    dlg->Rechenwert_g1 = roof.DeadLoad.g1;
    dlg->g1_Bemerkung = roof.DeadLoad.Descr1;
    dlg->Rechenwert_g2 = roof.DeadLoad.g2;
    dlg->g2_Bemerkung = roof.DeadLoad.Descr2;
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
        const int16_t outNorm = roof.DefaultAccNorm ? 1 : 0;
        // Roof and dead blocks go to the file in one rename.
        BlockFileRewrite rewrite(AsciiFileName);
        rewrite.Roof(roof.Town, roof.Wind, roof.Snow, true, kScale, outNorm, st.SelectableCodesCtrl);
        if (roof.EditDeadLoad) {
            roof.DeadLoad.Norm = dlg->Norm();
            roof.DeadLoad.g0 = dlg->Rechenwert_g0;
            roof.DeadLoad.Descr0 = dlg->g0_Bemerkung;
            roof.DeadLoad.g1 = dlg->Rechenwert_g1;
            roof.DeadLoad.Descr1 = dlg->g1_Bemerkung;
            roof.DeadLoad.g2 = dlg->Rechenwert_g2;
            roof.DeadLoad.Descr2 = dlg->g2_Bemerkung;
            rewrite.Dead(roof.DeadLoad, true, kScale);
        }
        rewrite.Commit();
    }

    if (dlg->SwitchNorm) {
        // The chosen DIN 1055 standard has no session to go on in yet, so the
        // file as written is the result and OnOk stays false.
        CurrentPlatform().DoEvents();
        dlg->Unload();
        return;
    }
    onOk = dlg->Accepted;
    dlg->Unload();
}

}  // namespace qvrl
