#include "automation/CAGS.h"

#include "location/modAGSMdb.h"

namespace qvrl {

namespace {

TownRec Town(const std::string& AGS) {
    TownRec r;
    FindTownByAGS(AGS, r);
    return r;
}

}  // namespace

std::string CAGS::GetTownName(const std::string& AGS) const { return Town(AGS).Gemeinde; }
std::string CAGS::GetTownNameShort(const std::string& AGS) const { return Town(AGS).GemeindeShort; }
std::string CAGS::GetStateName(const std::string& AGS) const { return Town(AGS).BL_Name; }
std::string CAGS::GetStateNameShort(const std::string& AGS) const { return Town(AGS).BL_ShortName; }
std::string CAGS::GetCountyName(const std::string& AGS) const { return Town(AGS).Reg_Name; }
std::string CAGS::GetRuralDistrictName(const std::string& AGS) const { return Town(AGS).LK_Name; }
std::string CAGS::GetZIP(const std::string& AGS) const { return Town(AGS).PLZ; }
std::string CAGS::GetWZ(const std::string& AGS) const { return Town(AGS).WZ; }
std::string CAGS::GetSZ(const std::string& AGS) const { return Town(AGS).SZ; }
std::string CAGS::GetSRemark(const std::string& AGS) const { return Town(AGS).BemS; }
std::string CAGS::GetWRemark(const std::string& AGS) const { return Town(AGS).BemW; }
double CAGS::Getqb(const std::string& AGS) const { return Town(AGS).qb; }
double CAGS::Getsk(const std::string& AGS) const { return Town(AGS).sk; }

}  // namespace qvrl
