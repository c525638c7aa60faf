#pragma once
// The older snow load zone list by municipality (table slz), behind the
// municipal zone dialogs. Two files, chosen by the norm in use; the state
// numbering is the official one and differs from the wind list's on purpose.

#include <cstdint>
#include <string>
#include <vector>

#include "location/ZoneRecords.h"
#include "store/modDAO.h"  // NzText, NzNumber

namespace qvrl {

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

// Opens the file of the stored norm if no connection is held; false when it
// cannot be opened.
bool InitSlzMdb();
// All lists are 1-based: element 0 stays blank.
void ReadSlzStates(std::vector<ZoneStateRec>& list);
void ReadSlzCounties(const ZoneStateRec& State, std::vector<SlzCountyRec>& list);
void ReadSlzTowns(const ZoneStateRec& State, const SlzCountyRec& County, std::vector<SlzTownRec>& list);
// A changed code drops the connection; the next read opens the norm's file.
void SetSlzNorm(int16_t Norm);

}  // namespace qvrl
