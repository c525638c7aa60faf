#pragma once
// The object a host creates first: the switches of a dialog session, the
// records a session reads and writes, a CWindSnow for direct calculations and
// a CWindCpTable through which coefficients are asked for.
//
// SelectableCodesCtrl and UseBauforschungsbericht are module-wide: every
// object of the process shares them, and each new object resets the codes.

#include <cstdint>
#include <memory>
#include <string>

#include "interchange/Records.h"

namespace qvrl {

class CWindCpTable;
class CWindSnow;

class CRoofLoad {
public:
    CRoofLoad();

    // Switches, read and written as plain properties.
    bool DefaultAccNorm = true;
    bool EditDeadLoad = false;
    bool EnabledBuildingHeight = true;
    bool NoBuildingHeight = false;

    // What the last session read and wrote, and the stored defaults.
    LiveLoadRec LiveLoad;
    WindLoadRec Wind;
    SnowLoadRec Snow;
    DeadLoadRec DeadLoad;
    TownRec Town;
    WindLoadRec DefaultWind;
    SnowLoadRec DefaultSnow;
    TownRec DefaultTown;

    std::shared_ptr<CWindCpTable> WindCpTable;
    std::shared_ptr<CWindSnow> WindSnow;

    int16_t Norm = 3;
    bool SelectNorm = true;
    bool WithDefaults = false;
    bool UseCpeDB = false;

    // Dialog sessions: the block file AsciiFileName is read, shown and, on
    // OK or a change of standard, written back.
    void ShowRoofLoadDlg_EN(const std::string& AsciiFileName);
    // Live load sessions: the LIVELOAD block (and DEADLOAD with EditDeadLoad).
    void ShowLiveLoadDlg(const std::string& AsciiFileName);
    void ShowLiveLoadDlg_1(const std::string& AsciiFileName);
    // DIN 1055-100 (Norm 3, 31); hands over like the others.
    void ShowRoofLoadDlg_1(const std::string& AsciiFileName);
    // DIN 1055-4:1986 and DIN 1055-5:1975 (Norm 1). Its dialog has no town,
    // so the file keeps the town it was read with.
    void ShowRoofLoadDlg(const std::string& AsciiFileName);

    // True when the last session ended with acceptance; the host only reads it.
    bool OnOk() const { return onOk_; }

    // "major.minor.revision" of the component.
    std::string Version() const;

    // The file of the first language object.
    std::string LanguageFileName() const;
    void LanguageFileName(const std::string& name);

    // Module state behind the object.
    std::string SelectableCodesCtrl() const;
    void SelectableCodesCtrl(const std::string& codes);
    bool UseBauforschungsbericht() const;
    void UseBauforschungsbericht(bool value);

    // Coefficient requests: inputs from WindCpTable, the record back into it.
    void GetWindCpValues_Gabled_Roof();
    void GetWindCpValues_Hipped_Roof();
    void GetWindCpValues_Flat_Roof();
    void GetWindCpValues_Vertical_Wall();
    void GetWindCpValues_Pent_Roof();
    void GetWindCpValues_Inside();

    // Kept in the interface; each refuses with a message box and gives 0.0.
    // The calculations live in CWindSnow.
    double WindPressure_DIN1055_4_1986(double BuildingHeightInM);
    double WindPressure_DIN1055_4_2005(int16_t WindZone, int16_t BuildingCategory, double z_BuildingInM);
    double StandardSnowLoad_DIN1055_5_1975(int16_t SnowZone, double TerrainHeightInM);
    double StandardSnowLoad_EDIN1055_5_2004(int16_t SnowZone, double TerrainHeightInM);
    double StandardSnowLoad_DIN1055_7_2005(int16_t SnowZone, double TerrainHeightInM);

protected:
    // Sessions set it false at their start and to the dialog's answer at the end.
    bool onOk_ = false;
};

}  // namespace qvrl
