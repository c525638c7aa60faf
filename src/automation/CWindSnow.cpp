#include "automation/CWindSnow.h"

#include "automation/CodeLists.h"
#include "rules/modSnow.h"
#include "rules/modWind.h"

namespace qvrl {

namespace {

void HandOut(const CodeList& list, std::vector<std::string>& sName,
             std::vector<int16_t>& Index) {
    sName = list.sName;
    Index = list.Index;
}

}  // namespace

CWindSnow::CWindSnow() = default;

double CWindSnow::WindPressure_DIN1055_4_1986(double BuildingHeightInM) const {
    return qvrl::WindPressure_DIN1055_4_1986(BuildingHeightInM);
}

double CWindSnow::WindReferencePressure_DIN1055_4_2005(int16_t WindZone) const {
    double qref = 0.0;
    double vref = 0.0;
    WindReference(WindZone, qref, vref);
    return qref;
}

double CWindSnow::WindPressure_DIN1055_4_2005(int16_t WindZone, int16_t BuildingCategory,
                                              double z_BuildingInM,
                                              double TerrainHeightInM) const {
    return qvrl::WindPressure_DIN1055_4_2005(WindZone, BuildingCategory, z_BuildingInM,
                                             TerrainHeightInM);
}

double CWindSnow::StandardSnowLoad_DIN1055_5_1975(int16_t SnowZone,
                                                  double TerrainHeightInM) const {
    return qvrl::StandardSnowLoad_DIN1055_5_1975(SnowZone, TerrainHeightInM);
}

double CWindSnow::StandardSnowLoad_EDIN1055_5_2004(int16_t SnowZone,
                                                   double TerrainHeightInM) const {
    return qvrl::StandardSnowLoad_EDIN1055_5_2004(SnowZone, TerrainHeightInM);
}

double CWindSnow::StandardSnowLoad_DIN1055_7_2005(int16_t SnowZone,
                                                  double TerrainHeightInM) const {
    return qvrl::StandardSnowLoad_DIN1055_7_2005(SnowZone, TerrainHeightInM);
}

double CWindSnow::SnowMue1(double Alpha) const {
    double mue1 = 0.0;
    double mue2 = 0.0;
    SnowShapeDIN(Alpha, mue1, mue2);
    return mue1;
}

double CWindSnow::SnowMue2(double Alpha) const {
    double mue1 = 0.0;
    double mue2 = 0.0;
    SnowShapeDIN(Alpha, mue1, mue2);
    return mue2;
}

double CWindSnow::SnowOverhang(double si) const {
    return qvrl::SnowOverhang(si);
}

double CWindSnow::SnowCatchingFence(double mue1, double mue2, double sk, double B,
                                    double Alpha) const {
    return qvrl::SnowCatchingFence(mue1, mue2, sk, B, Alpha);
}

double CWindSnow::SnowBagMue1() const {
    double mue1 = 0.0;
    double mue2 = 0.0;
    SnowBagFactors(0.0, 0.0, mue1, mue2);
    return mue1;
}

double CWindSnow::SnowBagMue2(double hInCm, double sk) const {
    double mue1 = 0.0;
    double mue2 = 0.0;
    SnowBagFactors(hInCm, sk, mue1, mue2);
    return mue2;
}

double CWindSnow::SnowBag(double mue1, double mue2, double hInCm, double sk) const {
    double length = 0.0;  // not part of the interface
    return qvrl::SnowBag(mue1, mue2, hInCm, sk, length);
}

void CWindSnow::SnowZoneNames1975(std::vector<std::string>& sName,
                                  std::vector<int16_t>& Index) const {
    HandOut(SnowZoneList1975(), sName, Index);
}

void CWindSnow::SnowZoneNames2005(std::vector<std::string>& sName,
                                  std::vector<int16_t>& Index) const {
    HandOut(SnowZoneList2005(), sName, Index);
}

void CWindSnow::WindZoneNames2005(std::vector<std::string>& sName,
                                  std::vector<int16_t>& Index) const {
    HandOut(WindZoneList2005(), sName, Index);
}

void CWindSnow::WindZoneNames2005_T2963(std::vector<std::string>& sName,
                                        std::vector<int16_t>& Index) const {
    HandOut(WindZoneList2005_T2963(), sName, Index);
}

void CWindSnow::WindCategoryNames2005(std::vector<std::string>& sName,
                                      std::vector<int16_t>& Index) const {
    HandOut(WindCategoryList2005(), sName, Index);
}

void CWindSnow::WindOpenSides2005(std::vector<std::string>& sName,
                                  std::vector<int16_t>& Index) const {
    HandOut(WindOpenSidesList2005(), sName, Index);
}

void CWindSnow::WindOpenSides_EN_1991_1_4(std::vector<std::string>& sName,
                                          std::vector<int16_t>& Index) const {
    HandOut(WindOpenSidesList_EN(), sName, Index);
}

}  // namespace qvrl
