#include "automation/CWindSnow.h"

#include "automation/CAGS.h"
#include "vocab/CodeLists.h"
#include "location/modWLZMdb.h"
#include "maps/MapDialogs.h"
#include "rules/modSnow.h"
#include "rules/modSnowEN.h"
#include "rules/modWind.h"
#include "rules/modWindEN.h"

namespace qvrl {

namespace {

void HandOut(const CodeList& list, std::vector<std::string>& sName,
             std::vector<int16_t>& Index) {
    sName = list.sName;
    Index = list.Index;
}

}  // namespace

CWindSnow::CWindSnow() : AGS(std::make_shared<CAGS>()) {}

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

double CWindSnow::WindPressure_EN_1991_1_4(int16_t CtrlNA, int16_t BuildingCategory, double z_BuildingInM,
                                           double BasicWindPressure, double BasicWindVelocity,
                                           double UpwindSlope_Phi, double OrographicLocationFac_s) const {
    double distInTown = 0.0;
    return qvrl::WindPressure_EN_1991_1_4(CtrlNA, BuildingCategory, z_BuildingInM, BasicWindPressure,
                                          BasicWindVelocity, UpwindSlope_Phi, OrographicLocationFac_s, 1.0, 1.0,
                                          0.0, distInTown);
}

double CWindSnow::StandardSnowLoad_EN_1991_1_3(int16_t CtrlNA, int16_t CtrlRegion, double SnowZoneIndex,
                                               double TerrainHeightInM) const {
    // The rule takes the height first.
    return qvrl::StandardSnowLoad_EN_1991_1_3(TerrainHeightInM, CtrlNA, CtrlRegion, SnowZoneIndex);
}

namespace {
struct Shape {
    double mue1 = 0.0, mue2 = 0.0, mue3 = 0.0;
};
Shape ShapeEN(int16_t CtrlNA, double Alpha, bool driftFloor, double hZuB) {
    Shape s;
    SnowShapeEN(CtrlNA, Alpha, driftFloor, hZuB, s.mue1, s.mue2, s.mue3);
    return s;
}
}  // namespace

double CWindSnow::SnowMue1_EN_1991_1_3(int16_t CtrlNA, double Alpha) const {
    return ShapeEN(CtrlNA, Alpha, false, 0.0).mue1;
}

double CWindSnow::SnowMue2_EN_1991_1_3(int16_t CtrlNA, double Alpha) const {
    return ShapeEN(CtrlNA, Alpha, false, 0.0).mue2;
}

double CWindSnow::SnowMue3_EN_1991_1_3(int16_t CtrlNA, double Alpha, double hZuB) const {
    return ShapeEN(CtrlNA, Alpha, false, hZuB).mue3;
}

double CWindSnow::SnowOverhang_EN_1991_1_3(int16_t CtrlNA, double si, double snow_d) const {
    return qvrl::SnowOverhang_EN_1991_1_3(CtrlNA, si, snow_d);
}

double CWindSnow::SnowCatchingFence_EN_1991_1_3(int16_t /*CtrlNA*/, double mue1, double mue2, double sk, double B,
                                                double Alpha) const {
    return qvrl::SnowCatchingFence_EN_1991_1_3(mue1, mue2, sk, B, Alpha);
}

double CWindSnow::SnowBagMue1_EN_1991_1_3(int16_t CtrlNA, double Alpha) const {
    return ShapeEN(CtrlNA, Alpha, true, 0.0).mue1;
}

double CWindSnow::SnowBagMue2_EN_1991_1_3(int16_t CtrlNA, double Alpha) const {
    return ShapeEN(CtrlNA, Alpha, true, 0.0).mue2;
}

double CWindSnow::SnowBagMue3_EN_1991_1_3(int16_t CtrlNA, double Alpha, double hZuB) const {
    return ShapeEN(CtrlNA, Alpha, true, hZuB).mue3;
}

Variant CWindSnow::SnowBag_EN_1991_1_3(int16_t CtrlNA, double sk, double hInM, double& mue1, double& mue2,
                                       double& LsInM) const {
    qvrl::SnowBag_EN_1991_1_3(CtrlNA, sk, hInM, mue1, mue2, LsInM);
    return Variant();
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
    SetWlzNorm(3);
    HandOut(WindZoneList2005(), sName, Index);
}

void CWindSnow::WindZoneNames2005_T2963(std::vector<std::string>& sName,
                                        std::vector<int16_t>& Index) const {
    SetWlzNorm(31);
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

// --- zone maps and chooser dialogs ---

int16_t CWindSnow::SnowZoneByMap1975(int16_t& zone) const { return qvrl::SnowZoneByMap1975(zone); }
int16_t CWindSnow::SnowZoneByMap2005(int16_t& zone) const { return qvrl::SnowZoneByMap2005(zone); }
int16_t CWindSnow::WindZoneByMap2005(int16_t& zone) const { return qvrl::WindZoneByMap2005(zone); }
int16_t CWindSnow::WindZoneByMap2005_T2963(int16_t& zone) const { return qvrl::WindZoneByMap2005_T2963(zone); }
int16_t CWindSnow::WindCategoryByView2005(int16_t& WCat) const { return qvrl::WindCategoryByView2005(WCat); }
int16_t CWindSnow::SnowZoneByMapEN(int16_t CtrlNA, int16_t CtrlRegion, int16_t& zone) const {
    return qvrl::SnowZoneByMapEN(CtrlNA, CtrlRegion, zone);
}
int16_t CWindSnow::ClimateRegionByMap(int16_t& CR) const { return qvrl::ClimateRegionByMap(CR); }
int16_t CWindSnow::WindCategoryByView100(int16_t& WCat) const { return qvrl::WindCategoryByView100(WCat); }
int16_t CWindSnow::WindCategoryByView_EN_1991_1_4(int16_t CtrlNA, int16_t& WCat) const {
    return qvrl::WindCategoryByView_EN(CtrlNA, WCat);
}
bool CWindSnow::OrographyByView_EN_1991_1_4(double& gPhi, double& sFac) const {
    return qvrl::OrographyByView(gPhi, sFac);
}

}  // namespace qvrl
