#pragma once
// The zone of each municipality as the town table holds it, so that a
// German map can colour a municipality and pick its zone on a click.

#include <cstdint>
#include <map>
#include <string>

#include "maps/ucLayer.h"

namespace qvrl {

// AGS (8 digits) to the zone code of the list whose name matches the
// table's text, case-blind; rows with no such zone are left out. Empty when
// the table cannot be opened or holds no rows.
std::map<std::string, int16_t> TownZoneCodes(MapPicture::TownZone which, const CodeList& zones);

}  // namespace qvrl
