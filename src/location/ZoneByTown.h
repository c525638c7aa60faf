#pragma once
// The zone of a municipality from the zone lists by place, as a chooser: the
// DIBt lists (SnowZoneByTown2005, WindZoneByTown2005_DIBt) or those of the
// expert reports (T3093, T2963). Each shows its dialog modally and returns
// the zone code, storing it in the in/out argument; Cancel or an empty zone
// text returns -1 and leaves the argument as it was.

#include <cstdint>

namespace qvrl {

int16_t SnowZoneByTown2005(int16_t& zone);
int16_t SnowZoneByTown2005_T3093(int16_t& zone);
int16_t WindZoneByTown2005_DIBt(int16_t& zone);
int16_t WindZoneByTown2005_T2963(int16_t& zone);

}  // namespace qvrl
