// The sessions of the two town selection dialogs.

#include <cmath>

#include "location/frmSelTown.h"
#include "location/frmSelTown_1.h"
#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "support/vb.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

// The code of a zone text in a list; false when the list does not hold it.
bool CodeOf(const CodeList& list, const std::string& text, int16_t& code) {
    for (size_t i = 1; i < list.sName.size(); ++i)
        if (list.sName[i] == text) {
            code = list.Index[i];
            return true;
        }
    return false;
}

// Unloads the form however the session ends.
template <class F>
struct Unloading {
    F& form;
    ~Unloading() { form.Unload(); }
};

}  // namespace

int16_t SelectTownDialog(int16_t& WZ, int16_t& SZ, std::string& AGS, std::string& TownName) {
    frmSelTown f;
    Unloading<frmSelTown> unload{f};
    f.SZ(CStr(Variant(SZ)));
    f.WZ(CStr(Variant(WZ)));
    f.AGS(AGS);
    f.InitLv();
    f.UpdateData(false, "");
    f.Show();
    int16_t result = -1;
    if (!f.Accepted) return result;
    f.UpdateData(false, "");
    const std::string sz = f.SZ(), wz = f.WZ();
    AGS = f.AGS();
    TownName = f.GemeindeName();
    TownRec town;
    FindTownByAGS(AGS, town);
    TownName += "   (" + town.BL_ShortName + ")";
    if (!wz.empty()) {
        CodeOf(WindZoneList2005(), wz, WZ);
        result = 1;
    }
    if (!sz.empty()) {
        CodeOf(SnowZoneList2005(), sz, SZ);
        result = 1;
    }
    return result;
}

int16_t SelectTownDialogEN(int16_t CtrlNA, int16_t& WZ, int16_t& SZ, double& qb, double& sk, double& hNN,
                           std::string& AGS, std::string& TownName) {
    frmSelTown_1 f;
    Unloading<frmSelTown_1> unload{f};
    f.LandKey(CtrlNA);
    f.SZ(CStr(Variant(SZ)));
    f.WZ(CStr(Variant(WZ)));
    f.AGS(AGS);
    f.InitLv();
    f.UpdateData(false, "");
    f.Show();
    if (!f.Accepted) return -1;
    f.UpdateData(false, "");
    qb = f.qb();
    sk = f.sk();
    hNN = f.hNN();
    AGS = f.AGS();
    TownName = f.GemeindeName();
    TownRec town;
    FindTownByAGSEN(CtrlNA, AGS, town);
    TownName += "   (" + town.BL_ShortName + ")";
    const std::string sz = f.SZ();
    if (!sz.empty()) CodeOf(ListsOfNorm(CtrlNA).snowZones, sz, SZ);
    return !sz.empty() || std::abs(qb) > 0 || std::abs(sk) > 0 ? 1 : -1;
}

}  // namespace qvrl
