#include "maps/TownZones.h"

#include "location/modAGSMdb.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/errors.h"

namespace qvrl {

std::map<std::string, int16_t> TownZoneCodes(MapPicture::TownZone which, const CodeList& zones) {
    std::map<std::string, int16_t> out;
    if (which == MapPicture::TownZone::None || !InitAGSMdb()) return out;
    const char* column = which == MapPicture::TownZone::Snow ? "SZ" : "WZ";
    std::map<std::string, int16_t> byName;
    for (int16_t i = 1; i <= zones.Count(); ++i) byName[UCase(Trim(zones.sName[static_cast<size_t>(i)]))] = zones.Index[static_cast<size_t>(i)];
    try {
        auto rs = State().AGSDb->OpenRecordset(std::string("SELECT AGS, ") + column + " FROM slzwlz", dao::dbOpenSnapshot);
        if (rs->EOF_()) return out;
        Field& ags = rs->Fields("AGS");
        Field& zone = rs->Fields(column);
        for (rs->MoveFirst(); !rs->EOF_(); rs->MoveNext()) {
            std::string key = Trim(NzText(ags));
            // A key read as a number has lost its leading zero.
            if (key.size() == 7) key = "0" + key;
            const auto it = byName.find(UCase(Trim(NzText(zone))));
            if (it != byName.end() && !key.empty()) out[key] = it->second;
        }
    } catch (const RuntimeError&) {
        // An old or foreign table without these columns: the map shows no zones.
        out.clear();
    }
    return out;
}

}  // namespace qvrl
