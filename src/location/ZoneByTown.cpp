#include "location/ZoneByTown.h"

#include <string>
#include <utility>

#include "location/frmSLZ_Ort.h"
#include "location/frmWLZ_Ort.h"
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

int16_t SnowZoneByTown2005(int16_t& zone) {
    SetSlzNorm(3);
    frmSLZ_Ort_1 f;
    f.SLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return SnowZoneOfText(text, zone);
}

int16_t SnowZoneByTown2005_T3093(int16_t& zone) {
    SetSlzNorm(31);
    frmSLZ_Ort f;
    f.SLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return SnowZoneOfText(text, zone);
}

int16_t WindZoneByTown2005_DIBt(int16_t& zone) {
    SetWlzNorm(3);
    frmWLZ_Ort_1 f;
    f.WLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return WindZoneOfText(text, zone);
}

int16_t WindZoneByTown2005_T2963(int16_t& zone) {
    SetWlzNorm(31);
    frmWLZ_Ort f;
    f.WLZ(zone);
    std::string text;
    if (!ShowZoneForm(f, text)) return -1;
    return WindZoneOfText(text, zone);
}

}  // namespace qvrl
