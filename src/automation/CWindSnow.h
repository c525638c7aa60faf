#pragma once
// The public calculation object of the German load rules. It holds no
// calculation state: every member forwards to the rule of the same name, and
// every call stands on its own. A floating fault inside a rule surfaces as
// qvrl::RuntimeError with its run-time error number.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qvrl {

class CAGS;

class CWindSnow {
public:
    CWindSnow();

    // The municipality object a host may read or replace; nothing here reads it.
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

    // Name lists: both arrays are replaced, element 0 blank, rows from 1 on.
    void SnowZoneNames1975(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    void SnowZoneNames2005(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    void WindZoneNames2005(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    void WindZoneNames2005_T2963(std::vector<std::string>& sName,
                                 std::vector<int16_t>& Index) const;
    void WindCategoryNames2005(std::vector<std::string>& sName,
                               std::vector<int16_t>& Index) const;
    void WindOpenSides2005(std::vector<std::string>& sName, std::vector<int16_t>& Index) const;
    void WindOpenSides_EN_1991_1_4(std::vector<std::string>& sName,
                                   std::vector<int16_t>& Index) const;
};

}  // namespace qvrl
