#pragma once
// What the snow and the wind zone lists share: the state record and the
// state code table, whose two numberings differ on purpose.

#include <cstdint>
#include <string>
#include <vector>

namespace qvrl {

struct ZoneStateRec {
    int32_t ID = 0;
    std::string Name;
    int16_t Number = 0;
    std::string Code;
    bool operator==(const ZoneStateRec&) const = default;
};

// One row of the shared state code table: order, text number, and the codes
// and numbers of the two lists.
struct ZoneStateCode {
    int16_t TextNumber;
    const char* SlzCode;
    int16_t SlzNumber;
    const char* WlzCode;
    int16_t WlzNumber;
};
// The 16 states in the order the lists show them.
const std::vector<ZoneStateCode>& ZoneStateCodes();

// True for the norm codes whose zone tables are the _dibt files as they stand.
bool IsZoneTableNorm(int16_t Norm);

}  // namespace qvrl
