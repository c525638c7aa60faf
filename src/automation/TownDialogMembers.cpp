// The members of CWindSnow that open the town dialogs; the zone choosers
// live in location/, where the roof load dialogs reach them too.

#include "automation/CWindSnow.h"
#include "location/ZoneByTown.h"
#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"

namespace qvrl {

int16_t CWindSnow::SnowWindZonesByTown2005AGS(int16_t& WZ, int16_t& SZ, std::string& AGS, std::string& TownName) const {
    return SelectTownDialog(WZ, SZ, AGS, TownName);
}

int16_t CWindSnow::SnowWindZonesByTown_EN_1991_1_AGS(int16_t CtrlNA, int16_t& WZ, int16_t& SZ, double& qb, double& sk,
                                                     double& hNN, std::string& AGS, std::string& TownName) const {
    return SelectTownDialogEN(CtrlNA, WZ, SZ, qb, sk, hNN, AGS, TownName);
}

int16_t CWindSnow::SnowZoneByTown2005(int16_t& zone) const { return qvrl::SnowZoneByTown2005(zone); }

int16_t CWindSnow::SnowZoneByTown2005_T3093(int16_t& zone) const { return qvrl::SnowZoneByTown2005_T3093(zone); }

int16_t CWindSnow::WindZoneByTown2005_DIBt(int16_t& zone) const { return qvrl::WindZoneByTown2005_DIBt(zone); }

int16_t CWindSnow::WindZoneByTown2005_T2963(int16_t& zone) const { return qvrl::WindZoneByTown2005_T2963(zone); }

}  // namespace qvrl
