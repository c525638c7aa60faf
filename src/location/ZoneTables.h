#pragma once
// What the snow and the wind zone lists share: the file each opens for its
// norm, and how their lists treat blank names and bad values.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "location/modSLZMdb.h"
#include "support/errors.h"
#include "support/vb.h"

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

// A blank name in a list is "alle" when it is the only entry, else "restliche".
template <class R, class Name>
void NameBlanks(std::vector<R>& list, Name name) {
    const size_t n = list.size() - 1;
    for (size_t i = 1; i < list.size(); ++i)
        if (Trim(name(list[i])).empty()) name(list[i]) = n == 1 ? "alle" : "restliche";
}

// Town lists go on past a bad value: the field stays blank.
template <class F>
void Skip(F&& step) {
    try {
        step();
    } catch (const RuntimeError&) {
    }
}

}  // namespace zonetables
}  // namespace qvrl
