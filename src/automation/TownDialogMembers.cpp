// The members of CWindSnow that open the town dialogs.

#include "automation/CWindSnow.h"
#include "location/frmSLZ_Ort.h"
#include "location/frmWLZ_Ort.h"
#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "location/modSLZMdb.h"
#include "location/modWLZMdb.h"
#include "support/vb.h"

namespace qvrl {

namespace {

template <class F>
bool ShowZoneForm(F& f, std::string& text) {
    struct Unloading {
        F& form;
        ~Unloading() { form.Unload(); }
    } unload{f};
    f.UpdateData(false);
    f.Show();
    if (!f.Accepted) return false;
    text = f.GemeindeZone();
    return true;
}

int16_t WindZoneOfText(const std::string& text, int16_t& zone) {
    if (text.empty()) return -1;
    zone = CInt(Val(text));
    return zone;
}

int16_t SnowZoneOfText(const std::string& text, int16_t& zone) {
    if (text.empty()) return -1;
    const std::string t = LCase(Trim(text));
    const std::pair<const char*, int16_t> codes[] = {{"1", 1}, {"1a", 11}, {"2", 2}, {"2a", 21}, {"3", 3}};
    for (const auto& [name, code] : codes)
        if (t == name) zone = code;
    return zone;
}

}  // namespace

int16_t CWindSnow::SnowWindZonesByTown2005AGS(int16_t& WZ, int16_t& SZ, std::string& AGS, std::string& TownName) const {
    return SelectTownDialog(WZ, SZ, AGS, TownName);
}

int16_t CWindSnow::SnowWindZonesByTown_EN_1991_1_AGS(int16_t CtrlNA, int16_t& WZ, int16_t& SZ, double& qb, double& sk,
                                                     double& hNN, std::string& AGS, std::string& TownName) const {
    return SelectTownDialogEN(CtrlNA, WZ, SZ, qb, sk, hNN, AGS, TownName);
}

int16_t CWindSnow::SnowZoneByTown2005(int16_t& zone) const {
    SetSlzNorm(3);
    frmSLZ_Ort_1 f;
    f.SLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return SnowZoneOfText(text, zone);
}

int16_t CWindSnow::SnowZoneByTown2005_T3093(int16_t& zone) const {
    SetSlzNorm(31);
    frmSLZ_Ort f;
    f.SLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return SnowZoneOfText(text, zone);
}

int16_t CWindSnow::WindZoneByTown2005_DIBt(int16_t& zone) const {
    SetWlzNorm(3);
    frmWLZ_Ort_1 f;
    f.WLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return WindZoneOfText(text, zone);
}

int16_t CWindSnow::WindZoneByTown2005_T2963(int16_t& zone) const {
    SetWlzNorm(31);
    frmWLZ_Ort f;
    f.WLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return WindZoneOfText(text, zone);
}

}  // namespace qvrl
