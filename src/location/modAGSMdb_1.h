#pragma once
// The town database for the Eurocode, table slzwlz1: the country (Land_ID,
// the national-annex code) on top of the German hierarchy, and the numeric
// figures qb, vb, sk and hNN. Key widths depend on the country.

#include <cstdint>
#include <string>
#include <vector>

#include "interchange/Records.h"

namespace qvrl {

struct LandRec {
    int32_t ID = 0;
    std::string Land;
    int32_t Land_ID = 0;
    std::string Land_ShortName;
    bool operator==(const LandRec&) const = default;
};

struct StateRecEN {
    int32_t ID = 0;
    std::string Land;
    int32_t Land_ID = 0;
    std::string Land_ShortName;
    std::string BL_Name;
    int32_t BL_ID = 0;
    std::string BL_ShortName;
    bool operator==(const StateRecEN&) const = default;
};

struct RegionRecEN {
    int32_t ID = 0;
    std::string Land;
    int32_t Land_ID = 0;
    std::string Land_ShortName;
    std::string BL_Name;
    int32_t BL_ID = 0;
    std::string BL_ShortName;
    std::string Reg_Name;
    int32_t Reg_ID = 0;
    bool operator==(const RegionRecEN&) const = default;
};

struct CountyRecEN {
    int32_t ID = 0;
    std::string Land;
    int32_t Land_ID = 0;
    std::string Land_ShortName;
    std::string BL_Name;
    int32_t BL_ID = 0;
    std::string BL_ShortName;
    std::string Reg_Name;
    int32_t Reg_ID = 0;
    std::string LK_Name;
    int32_t LK_ID = 0;
    bool operator==(const CountyRecEN&) const = default;
};

// Austria (Land 51) writes the state with one digit and the region with two;
// every other country the other way round.
inline constexpr int32_t kLandAustria = 51;

std::string FormatLand(int32_t Land_ID);
std::string FormatState(int32_t Land_ID, int32_t BL_ID);
std::string FormatRegion(int32_t Land_ID, int32_t Reg_ID);
std::string FormatCounty(int32_t LK_ID);
// Each with a leading blank; the Land number goes unquoted, the others quoted.
std::string LandClause(int32_t Land_ID);
std::string StateClause(int32_t Land_ID, int32_t BL_ID);
std::string RegionClause(int32_t Land_ID, int32_t Reg_ID);
std::string CountyClause(int32_t LK_ID);
std::string PlzClause(const std::string& PLZ);

bool InitAGSMdbEN();
bool InitAGSUsrMdbEN();

void ReadStatesEN(const LandRec& Land, std::vector<StateRecEN>& list);
void FindStateEN(const LandRec& Land, int32_t BL_ID, StateRecEN& rec);
// Never across countries: with no Land selected the list stays empty.
void ReadRegionsEN(const LandRec& Land, const StateRecEN& State, std::vector<RegionRecEN>& list);
void FindRegionEN(const LandRec& Land, const StateRecEN& State, int32_t BL_ID, int32_t Reg_ID, RegionRecEN& rec);
void ReadCountiesEN(const LandRec& Land, const StateRecEN& State, const RegionRecEN& Region,
                    std::vector<CountyRecEN>& list);
void FindCountyEN(const LandRec& Land, const StateRecEN& State, const RegionRecEN& Region, int32_t BL_ID,
                  int32_t Reg_ID, int32_t LK_ID, CountyRecEN& rec);
// Footnotes after " (modif.)": " [1]" no snow zone, " [2]" no sk, " [3]" no
// qb, " [4]" no altitude.
void ReadGemFromAGSEN(const LandRec& Land, const StateRecEN& State, const RegionRecEN& Region,
                      const CountyRecEN& County, std::vector<TownRec>& list, const std::string& PLZ,
                      const std::string& Name, int32_t LandKey, const std::string& AGS);
// The Eurocode town selection (frmSelTown_1) as a session for one national
// annex: after OK the snow zone (when the annex's list has its text), qb, sk,
// hNN, the key and the town's name come back; the wind zone never does, the
// Eurocode takes qb instead. 1 when the town has a snow zone, qb or sk, else
// -1; after Cancel -1 with everything as it was.
int16_t SelectTownDialogEN(int16_t CtrlNA, int16_t& WZ, int16_t& SZ, double& qb, double& sk, double& hNN,
                           std::string& AGS, std::string& TownName);

double ReadUserGemEN(int32_t LandKey, const std::string& AGS, TownRec& rec);
void FindTownByAGSEN(int32_t LandKey, const std::string& AGS, TownRec& rec);

// Maintenance: fills SZ, sk and hNN of the Austrian rows of qvrl.mdb from
// au_s.mdb. Returns the number of rows updated.
int32_t ImportAustrianSnow();
// The snow data of one municipality; the number of rows found.
int32_t FindAustrianSnow(const std::string& BL_ID, const std::string& Gemeinde, double& hNN, std::string& SZ,
                         double& sk);

}  // namespace qvrl
