#pragma once
// The public calculation object of the German load rules. It holds no
// calculation state: every member forwards to the rule of the same name, and
// every call stands on its own. A floating fault inside a rule surfaces as
// qvrl::RuntimeError with its run-time error number.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/vb.h"

namespace qvrl {

class CAGS;

class CWindSnow {
public:
    CWindSnow();

    // The municipality object, created with this one; a host may replace it.
    std::shared_ptr<CAGS> AGS;

    // Wind, DIN 1055-4.
    double WindPressure_DIN1055_4_1986(double BuildingHeightInM) const;
    // Reference velocity pressure of a zone; 0.0 for an unknown zone.
    double WindReferencePressure_DIN1055_4_2005(int16_t WindZone) const;
    double WindPressure_DIN1055_4_2005(int16_t WindZone, int16_t BuildingCategory,
                                       double z_BuildingInM, double TerrainHeightInM) const;

    // Ground snow, DIN 1055-5.
    double StandardSnowLoad_DIN1055_5_1975(int16_t SnowZone, double TerrainHeightInM) const;
    double StandardSnowLoad_EDIN1055_5_2004(int16_t SnowZone, double TerrainHeightInM) const;
    double StandardSnowLoad_DIN1055_7_2005(int16_t SnowZone, double TerrainHeightInM) const;

    // Roof snow, DIN 1055-5.
    double SnowMue1(double Alpha) const;
    double SnowMue2(double Alpha) const;
    double SnowOverhang(double si) const;
    double SnowCatchingFence(double mue1, double mue2, double sk, double B,
                             double Alpha) const;
    double SnowBagMue1() const;
    double SnowBagMue2(double hInCm, double sk) const;
    double SnowBag(double mue1, double mue2, double hInCm, double sk) const;

    // Eurocode EN 1991-1-3 and EN 1991-1-4 by national annex (CtrlNA 50..54).
    // Peak velocity pressure in kN/m2; cDir and cSeason 1.0, no distances.
    // 0.0 for anything the chain cannot answer.
    double WindPressure_EN_1991_1_4(int16_t CtrlNA, int16_t BuildingCategory, double z_BuildingInM,
                                    double BasicWindPressure, double BasicWindVelocity, double UpwindSlope_Phi,
                                    double OrographicLocationFac_s) const;
    double StandardSnowLoad_EN_1991_1_3(int16_t CtrlNA, int16_t CtrlRegion, double SnowZoneIndex,
                                        double TerrainHeightInM) const;
    double SnowMue1_EN_1991_1_3(int16_t CtrlNA, double Alpha) const;
    double SnowMue2_EN_1991_1_3(int16_t CtrlNA, double Alpha) const;
    double SnowMue3_EN_1991_1_3(int16_t CtrlNA, double Alpha, double hZuB) const;
    double SnowOverhang_EN_1991_1_3(int16_t CtrlNA, double si, double snow_d) const;
    double SnowCatchingFence_EN_1991_1_3(int16_t CtrlNA, double mue1, double mue2, double sk, double B,
                                         double Alpha) const;
    double SnowBagMue1_EN_1991_1_3(int16_t CtrlNA, double Alpha) const;
    double SnowBagMue2_EN_1991_1_3(int16_t CtrlNA, double Alpha) const;
    double SnowBagMue3_EN_1991_1_3(int16_t CtrlNA, double Alpha, double hZuB) const;
    // Always an empty value: the results are the three in/out arguments.
    Variant SnowBag_EN_1991_1_3(int16_t CtrlNA, double sk, double hInM, double& mue1, double& mue2,
                                double& LsInM) const;

    // Name lists: both arrays are replaced, element 0 blank, rows from 1 on.
    void SnowZoneNames1975(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    void SnowZoneNames2005(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    // The two wind zone lists also select the municipal wind zone table of
    // their norm (3, 31).
    void WindZoneNames2005(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    void WindZoneNames2005_T2963(std::vector<std::string>& sName,
                                 std::vector<int16_t>& Index) const;
    void WindCategoryNames2005(std::vector<std::string>& sName,
                               std::vector<int16_t>& Index) const;
    void WindOpenSides2005(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    void WindOpenSides_EN_1991_1_4(std::vector<std::string>& sName,
                                   std::vector<int16_t>& Index) const;

    // Zone maps and chooser dialogs: the chosen code, stored in the in/out
    // argument too, or -1 with the argument unchanged when cancelled.
    int16_t SnowZoneByMap1975(int16_t& zone) const;
    int16_t SnowZoneByMap2005(int16_t& zone) const;
    int16_t WindZoneByMap2005(int16_t& zone) const;
    int16_t WindZoneByMap2005_T2963(int16_t& zone) const;
    int16_t WindCategoryByView2005(int16_t& WCat) const;
    int16_t SnowZoneByMapEN(int16_t CtrlNA, int16_t CtrlRegion, int16_t& zone) const;
    int16_t ClimateRegionByMap(int16_t& CR) const;
    int16_t WindCategoryByView100(int16_t& WCat) const;
    int16_t WindCategoryByView_EN_1991_1_4(int16_t CtrlNA, int16_t& WCat) const;
    // True on OK, with the two values taken over.
    bool OrographyByView_EN_1991_1_4(double& gPhi, double& sFac) const;
    // Town dialogs. Each shows its dialog modally; after Cancel it returns
    // -1 and leaves its arguments as they were.
    // The town selection: zones, key and name of the town chosen.
    int16_t SnowWindZonesByTown2005AGS(int16_t& WZ, int16_t& SZ, std::string& AGS, std::string& TownName) const;
    int16_t SnowWindZonesByTown_EN_1991_1_AGS(int16_t CtrlNA, int16_t& WZ, int16_t& SZ, double& qb, double& sk,
                                              double& hNN, std::string& AGS, std::string& TownName) const;
    // The zone of a municipality from the zone lists by place: DIBt lists
    // (SnowZoneByTown2005, WindZoneByTown2005_DIBt) or those of the expert
    // reports (T3093, T2963). An empty zone text returns -1 and changes nothing.
    int16_t SnowZoneByTown2005(int16_t& zone) const;
    int16_t SnowZoneByTown2005_T3093(int16_t& zone) const;
    int16_t WindZoneByTown2005_DIBt(int16_t& zone) const;
    int16_t WindZoneByTown2005_T2963(int16_t& zone) const;
};

}  // namespace qvrl
