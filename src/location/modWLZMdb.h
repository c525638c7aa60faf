#pragma once
// The older wind load zone list by municipality (table wlz), behind the
// municipal zone dialogs. Its state numbering is its own ("NS", "SA"), not
// the official one of the snow list.

#include <cstdint>
#include <string>
#include <vector>

#include "location/ZoneRecords.h"

namespace qvrl {

struct WlzRegionRec {
    int32_t ID = 0;
    std::string Name;
    int16_t Number = 0;
    std::string Code;
    std::string Bezirk;
    int16_t BezID = 0;
    bool operator==(const WlzRegionRec&) const = default;
};

struct WlzCountyRec {
    int32_t ID = 0;
    std::string Name;
    int16_t Number = 0;
    std::string Code;
    std::string Bezirk;
    int16_t BezID = 0;
    std::string Kreis;
    int16_t KreisID = 0;
    bool operator==(const WlzCountyRec&) const = default;
};

struct WlzTownRec {
    int32_t ID = 0;
    std::string Name;
    int16_t Number = 0;
    std::string Code;
    std::string Bezirk;
    int16_t BezID = 0;
    std::string Kreis;
    int16_t KreisID = 0;
    std::string Gemeinde;
    double KEY = 0.0;
    std::string WLZ;
    bool operator==(const WlzTownRec&) const = default;
};

bool InitWlzMdb();
// All lists are 1-based: element 0 stays blank. A region or county without
// a name is called "alle" when it stands alone, else "restliche".
void ReadWlzStates(std::vector<ZoneStateRec>& list);
void ReadWlzRegions(const ZoneStateRec& State, std::vector<WlzRegionRec>& list);
void ReadWlzCounties(const ZoneStateRec& State, const WlzRegionRec& Region, std::vector<WlzCountyRec>& list);
void ReadWlzTowns(const ZoneStateRec& State, const WlzRegionRec& Region, const WlzCountyRec& County,
                  std::vector<WlzTownRec>& list);
void SetWlzNorm(int16_t Norm);

}  // namespace qvrl
