#include "location/ZoneTables.h"

#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/vb.h"

namespace qvrl {

const std::vector<ZoneStateCode>& ZoneStateCodes() {
    static const std::vector<ZoneStateCode> codes = {
        {346, "BW", 8, "BW", 15},  {348, "BY", 9, "BY", 16},  {349, "BE", 11, "BE", 7}, {351, "BB", 12, "BB", 6},
        {352, "HB", 4, "HB", 3},   {354, "HH", 2, "HH", 2},   {355, "HE", 6, "HE", 10}, {356, "MV", 13, "MV", 5},
        {358, "NI", 3, "NS", 4},   {360, "NW", 5, "NW", 9},   {362, "RP", 7, "RP", 13}, {364, "SL", 10, "SL", 14},
        {366, "SN", 14, "SN", 12}, {372, "ST", 15, "SA", 8},  {368, "SH", 1, "SH", 1},  {370, "TH", 16, "TH", 11},
    };
    return codes;
}

bool IsZoneTableNorm(int16_t Norm) {
    switch (Norm) {
    case 3: case 50: case 51: case 52: case 53: case 54: case 78: case 211: case 213: return true;
    default: return false;
    }
}

namespace zonetables {

void SetNorm(int16_t Norm, int16_t& current, std::shared_ptr<Database>& db) {
    if (Norm == current) return;
    current = Norm;
    db.reset();
}

bool Open(int16_t& norm, std::shared_ptr<Database>& db, const char* plain, const char* dibt) {
    if (db) return true;
    std::string file = plain;
    if (norm != 31) {
        if (!IsZoneTableNorm(norm)) norm = 3;
        file = dibt;
    }
    try {
        db = OpenDB(StoreFile(file), Variant(), Variant(true));
    } catch (const RuntimeError&) {
        return false;
    }
    return true;
}

void ReadStates(std::vector<ZoneStateRec>& list, bool wind) {
    if (!State().locActive) InitLanguageObjects();
    list.assign(1, ZoneStateRec{});
    for (const ZoneStateCode& c : ZoneStateCodes()) {
        ZoneStateRec r;
        r.Name = LoadResStr(Variant(int32_t{c.TextNumber}));
        r.Number = wind ? c.WlzNumber : c.SlzNumber;
        r.Code = wind ? c.WlzCode : c.SlzCode;
        list.push_back(std::move(r));
    }
}

}  // namespace zonetables
}  // namespace qvrl
