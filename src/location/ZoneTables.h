#pragma once
// How the snow and the wind zone modules open their files and fill their
// state lists.

#include <cstdint>
#include <memory>
#include <vector>

#include "location/ZoneRecords.h"
#include "support/errors.h"

namespace qvrl {

class Database;

namespace zonetables {

// Drops the connection when the norm changes, so the next look-up opens the
// file of the new norm.
void SetNorm(int16_t Norm, int16_t& current, std::shared_ptr<Database>& db);

// Opens `plain` for Norm 31 and `dibt` for every other norm (an unknown one
// becomes 3), read-only, once; false when it cannot be opened.
bool Open(int16_t& norm, std::shared_ptr<Database>& db, const char* plain, const char* dibt);

// The 16 states in a list's own numbering: the snow list's (wind false) or
// the wind list's.
void ReadStates(std::vector<ZoneStateRec>& list, bool wind);

// Town lists go on past a bad value: the field stays blank.
// A list entry names the state, region or county it was read for.
template <class R, class From>
void TakePlace(R& r, const From& from) {
    r.Name = from.Name;
    r.Number = from.Number;
    r.Code = from.Code;
}

template <class F>
void Skip(F&& step) {
    try {
        step();
    } catch (const RuntimeError&) {
    }
}

}  // namespace zonetables
}  // namespace qvrl
