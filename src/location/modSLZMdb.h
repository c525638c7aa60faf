#pragma once
// The older snow load zone list by municipality (table slz), behind the
// municipal zone dialogs. Two files, chosen by the norm in use; the state
// numbering is the official one and differs from the wind list's on purpose.

#include <cstdint>
#include <string>
#include <vector>

#include "store/modDAO.h"  // NzText, NzNumber

namespace qvrl {

struct ZoneStateRec {
    int32_t ID = 0;
    std::string Name;
    int16_t Number = 0;
    std::string Code;
    bool operator==(const ZoneStateRec&) const = default;
};

struct SlzCountyRec {
    int32_t ID = 0;
    std::string Name;
    int16_t Number = 0;
    std::string Code;
    std::string Landkreis;
    int16_t Kreis = 0;
    int16_t RegBez = 0;
    bool operator==(const SlzCountyRec&) const = default;
};

struct SlzTownRec {
    int32_t ID = 0;
    std::string Name;
    int16_t Number = 0;
    std::string Code;
    std::string Landkreis;
    int16_t Kreis = 0;
    int16_t RegBez = 0;
    std::string Gemeinde;
    double KEY = 0.0;
    std::string Schneelastzone;
    std::string Fussnoten;
    bool operator==(const SlzTownRec&) const = default;
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

// Opens the file of the stored norm if no connection is held; false when it
// cannot be opened.
bool InitSlzMdb();
// All lists are 1-based: element 0 stays blank.
void ReadSlzStates(std::vector<ZoneStateRec>& list);
void ReadSlzCounties(const ZoneStateRec& State, std::vector<SlzCountyRec>& list);
void ReadSlzTowns(const ZoneStateRec& State, const SlzCountyRec& County, std::vector<SlzTownRec>& list);
// A changed code drops the connection; the next read opens the norm's file.
void SetSlzNorm(int16_t Norm);

// True for the norm codes whose zone tables are the _dibt files as they stand.
bool IsZoneTableNorm(int16_t Norm);

}  // namespace qvrl
