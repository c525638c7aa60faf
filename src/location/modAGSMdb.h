#pragma once
// The town database, German table slzwlz: a municipality by its official key
// (AGS) or by state, region, county, postcode and name, with the user's own
// corrections from qvrlAGSUsr.mdb laid over the shipped rows. Also the
// writers of those corrections.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "interchange/Records.h"

namespace qvrl {

class Database;

struct StateRec {
    int32_t ID = 0;
    std::string BL_Name;
    int32_t BL_ID = 0;
    std::string BL_ShortName;
    bool operator==(const StateRec&) const = default;
};

struct RegionRec {
    int32_t ID = 0;
    std::string BL_Name;
    int32_t BL_ID = 0;
    std::string BL_ShortName;
    std::string Reg_Name;
    int32_t Reg_ID = 0;
    bool operator==(const RegionRec&) const = default;
};

struct CountyRec {
    int32_t ID = 0;
    std::string BL_Name;
    int32_t BL_ID = 0;
    std::string BL_ShortName;
    std::string Reg_Name;
    int32_t Reg_ID = 0;
    std::string LK_Name;
    int32_t LK_ID = 0;
    bool operator==(const CountyRec&) const = default;
};

// The user's corrections, in the per-user folder.
inline constexpr const char* kUserTownFile = "qvrlAGSUsr.mdb";
std::string UserTownDbPath();

bool InitAGSMdb();
bool InitAGSUsrMdb();

// All lists are 1-based: element 0 stays blank.
void ReadStates(std::vector<StateRec>& list);
void FindState(int32_t BL_ID, StateRec& rec);
std::string GetStateShort(int32_t BL_ID);
void ReadRegions(const StateRec& State, std::vector<RegionRec>& list);
void FindRegion(const StateRec& State, int32_t BL_ID, int32_t Reg_ID, RegionRec& rec);
void ReadCounties(const StateRec& State, const RegionRec& Region, std::vector<CountyRec>& list);
void FindCounty(const StateRec& State, const RegionRec& Region, int32_t BL_ID, int32_t Reg_ID, int32_t LK_ID,
                CountyRec& rec);
// A numeric AGS above 0 beats every other filter. A postcode that finds
// nothing is shortened digit by digit. Names carry " (modif.)" for a user
// row, then " [1]" for no wind zone and " [2]" for no snow zone.
void ReadGemFromAGS(const StateRec& State, const RegionRec& Region, const CountyRec& County,
                    std::vector<TownRec>& list, const std::string& PLZ, const std::string& Name,
                    const std::string& AGS);
// Lays the user row of the key over rec; the key as a number on a hit, else 0.
double ReadUserGem(const std::string& AGS, TownRec& rec);
// The record of exactly this key; cleared when there is none.
void FindTownByAGS(const std::string& AGS, TownRec& rec);

// Creates the user file with its tables and leaves db open on it, writable.
void CreateUserDb(std::shared_ptr<Database>& db, const std::string& path);
// Inserts the row of rec's AGS, or replaces its six editable columns.
void SaveUserGem(const TownRec& rec);
// Deletes the last row of rec's AGS and clears rec.Modified.
void DeleteUserGem(TownRec& rec);

// The town selection (frmSelTown) as a session: the zone codes and the key
// go in as the initial choice; after OK they, and the town's name with its
// state's short name, come back. 1 when the town had a zone text, else -1;
// after Cancel -1 with everything as it was.
int16_t SelectTownDialog(int16_t& WZ, int16_t& SZ, std::string& AGS, std::string& TownName);

}  // namespace qvrl
