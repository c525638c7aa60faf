#include "automation/LiveLoadSessions.h"

#include <memory>

#include "automation/CRoofLoad.h"
#include "dialogs/frmLiveLoad_1.h"
#include "interchange/modAsciiRL.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

// Every session reads and writes loads in kN/cm².
constexpr double kScale = 10000;

// The two members differ only where this says so.
struct LiveSession {
    bool second;  // ShowLiveLoadDlg_1
    bool OwnNorm(int16_t n) const {
        if (!second) return n == norm::DIN1986_1975;
        return n == 1 || n == 3 || n == 31 || n == 78 || n == 211 || n == 213;
    }
};

void Run(const LiveSession& s, CRoofLoad& roof, const std::string& fileName, bool& onOk);

// A catalogue example holds its line breaks as CR LF; in a block line they
// would end the line, so the file keeps the catalogue's two blanks instead.
std::string OneLine(std::string text) {
    for (size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2))
        text.replace(at, 2, "  ");
    return text;
}

// The dialog's values back into the records, and the file written in one
// rename. The dead load Norm is 1 after OK, whatever the dialog shows.
void TakeBackAndWrite(const LiveSession& s, CRoofLoad& roof, const frmLiveLoad_1& dlg, bool accepted,
                      const std::string& fileName) {
    LiveLoadRec& live = roof.LiveLoad;
    if (accepted || s.second) roof.DefaultAccNorm = dlg.NachNorm;
    live.Norm = dlg.Norm;
    live.p = dlg.Rechenwert_p;
    live.Wert = dlg.Grundwert_p;
    live.Zeile = dlg.Grundwert_Zeile;
    live.Unterkategorie = dlg.Grundwert_Kat;
    live.Nutzung = dlg.Grundwert_Nutz;
    live.pAdd = dlg.Zuschlag_p;
    live.ZeileAdd = dlg.Zuschlag_Zeile;
    live.KategorieAdd = dlg.Zuschlag_Kat;
    live.NutzungAdd = dlg.Zuschlag_Nutz;
    if (s.second) {
        live.Langtext = OneLine(dlg.Grundwert_Bsp);
        live.BspAdd = OneLine(dlg.Zuschlag_Bsp);
    }
    const int16_t ctrlNorm = roof.DefaultAccNorm ? 1 : 0;
    BlockFileRewrite rewrite(fileName);
    rewrite.Live(live, true, kScale, ctrlNorm, State().SelectableCodesCtrl);
    if (roof.EditDeadLoad) {
        roof.DeadLoad.Norm = accepted ? norm::DIN1986_1975 : dlg.Norm;
        roof.DeadLoad.g0 = dlg.Rechenwert_g0;
        roof.DeadLoad.Descr0 = dlg.g0_Bemerkung;
        rewrite.Dead(roof.DeadLoad, true, kScale);
    }
    rewrite.Commit();
}

void Run(const LiveSession& s, CRoofLoad& roof, const std::string& fileName, bool& onOk) {
    onOk = false;
    ModuleState& st = State();
    int16_t ctrlNorm = 0;
    // A live session never takes the standards offered from the file.
    std::string ignored;
    ReadLiveBlocks(fileName, roof.LiveLoad, kScale, ctrlNorm, ignored);
    const int16_t liveNorm = roof.LiveLoad.Norm;
    if (!s.OwnNorm(liveNorm)) {
        roof.LiveLoad = LiveLoadRec{};
        roof.LiveLoad.Norm = liveNorm;
    }
    if (roof.EditDeadLoad) {
        ReadDeadBlocks(fileName, roof.DeadLoad, kScale, ctrlNorm, ignored);
        // The second member asks the live standard, not the dead one.
        if (!s.OwnNorm(s.second ? liveNorm : roof.DeadLoad.Norm)) roof.DeadLoad = DeadLoadRec{};
    }

    if (!s.second && (liveNorm == 78 || liveNorm == 3 || liveNorm == 213)) {
        RunLiveLoadDlg_1(roof, fileName, onOk);
        return;
    }
    if (s.second && liveNorm == norm::DIN1986_1975) {
        RunLiveLoadDlg(roof, fileName, onOk);
        return;
    }
    // A VERSION line without the switch gives -99 and leaves it alone.
    if (ctrlNorm >= 0) roof.DefaultAccNorm = ctrlNorm != 0;
    const int16_t offered = s.second ? liveNorm : norm::DIN1986_1975;
    if (offered != 0 && !IsSelectableNorm(st.SelectableCodesCtrl, offered))
        st.SelectableCodesCtrl += std::to_string(offered) + "_";

    auto dlg = std::make_unique<frmLiveLoad_1>();
    dlg->Load();
    dlg->NachNorm = roof.DefaultAccNorm;
    dlg->Norm = liveNorm;
    dlg->MitG = roof.EditDeadLoad;
    dlg->MitNormSelect = roof.SelectNorm;
    dlg->Rechenwert_p = roof.LiveLoad.p;
    dlg->Grundwert_p = roof.LiveLoad.Wert;
    dlg->Grundwert_Zeile = roof.LiveLoad.Zeile;
    dlg->Grundwert_Kat = roof.LiveLoad.Unterkategorie;
    dlg->Grundwert_Nutz = roof.LiveLoad.Nutzung;
    if (s.second) dlg->Grundwert_Bsp = roof.LiveLoad.Langtext;
    dlg->Zuschlag_p = roof.LiveLoad.pAdd;
    dlg->Zuschlag_Zeile = roof.LiveLoad.ZeileAdd;
    dlg->Zuschlag_Kat = roof.LiveLoad.KategorieAdd;
    dlg->Zuschlag_Nutz = roof.LiveLoad.NutzungAdd;
    if (s.second) dlg->Zuschlag_Bsp = roof.LiveLoad.BspAdd;
    dlg->Rechenwert_g0 = roof.DeadLoad.g0;
    dlg->g0_Bemerkung = roof.DeadLoad.Descr0;

    dlg->Init_Me();
    dlg->UpdateData(false, "");
    dlg->Show();

    // frmLiveLoad_1 never switches; the branch keeps the shape of the roof
    // sessions.
    if (dlg->SwitchNorm) {
        TakeBackAndWrite(s, roof, *dlg, false, fileName);
        CurrentPlatform().DoEvents();
        if (s.second) RunLiveLoadDlg(roof, fileName, onOk);
        else RunLiveLoadDlg_1(roof, fileName, onOk);
        dlg->Unload();
        return;
    }
    if (dlg->Accepted) TakeBackAndWrite(s, roof, *dlg, true, fileName);
    onOk = dlg->Accepted;
    dlg->Unload();
}

}  // namespace

void RunLiveLoadDlg(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk) {
    Run(LiveSession{false}, roof, AsciiFileName, onOk);
}

void RunLiveLoadDlg_1(CRoofLoad& roof, const std::string& AsciiFileName, bool& onOk) {
    Run(LiveSession{true}, roof, AsciiFileName, onOk);
}

}  // namespace qvrl
