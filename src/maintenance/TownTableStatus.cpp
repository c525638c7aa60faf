#include "maintenance/TownTableStatus.h"

#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"

namespace qvrl {

TownTableStatus TownTableStatusOf(bool eurocode) {
    if (!(eurocode ? InitAGSMdbEN() : InitAGSMdb())) return TownTableStatus::CannotOpen;
    const auto& db = eurocode ? State().AGSDbEN : State().AGSDb;
    if (!db) return TownTableStatus::CannotOpen;
    const bool empty =
        db->OpenRecordset(eurocode ? "SELECT TOP 1 * FROM slzwlz1" : "SELECT TOP 1 * FROM slzwlz", dao::dbOpenSnapshot)
            ->EOF_();
    return empty ? TownTableStatus::Empty : TownTableStatus::Filled;
}

}  // namespace qvrl
