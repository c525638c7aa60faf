// The public classes and their member tables, in the order of their
// interfaces. A new public class needs its table here and one line in
// PublicClasses(); its automation identity is looked up in kIdentities.

#include "automation/CAGS.h"
#include "automation/CRoofLoad.h"
#include "automation/CWindSnow.h"
#include "automation/Dispatch.h"
#include "cp/CWindCpTable.h"

namespace qvrl {

namespace {

using dispatch::Bind;
using dispatch::BindGet;
using dispatch::BindProperty;
using WS = CWindSnow;
using CP = CWindCpTable;
using RL = CRoofLoad;
using AG = CAGS;

const dispatch::Table<CWindCpTable>& WindCpTableTable() {
    static const dispatch::Table<CWindCpTable> table({
        BindProperty("Theta", &CP::Theta, &CP::Theta, "Wind direction in degrees (request)"),
        BindProperty("Alpha", &CP::Alpha, &CP::Alpha, "Roof pitch in degrees (request)"),
        BindProperty("Area_F10", &CP::Area_F10, &CP::Area_F10, "External pressure coefficient of zone F for 10 m2"),
        BindProperty("Area_F1", &CP::Area_F1, &CP::Area_F1, "External pressure coefficient of zone F for 1 m2"),
        BindProperty("Area_F10a", &CP::Area_F10a, &CP::Area_F10a, "External pressure coefficient of zone F for 10 m2 (second value)"),
        BindProperty("Area_F1a", &CP::Area_F1a, &CP::Area_F1a, "External pressure coefficient of zone F for 1 m2 (second value)"),
        BindProperty("Area_G10", &CP::Area_G10, &CP::Area_G10, "External pressure coefficient of zone G for 10 m2"),
        BindProperty("Area_G1", &CP::Area_G1, &CP::Area_G1, "External pressure coefficient of zone G for 1 m2"),
        BindProperty("Area_G10a", &CP::Area_G10a, &CP::Area_G10a, "External pressure coefficient of zone G for 10 m2 (second value)"),
        BindProperty("Area_G1a", &CP::Area_G1a, &CP::Area_G1a, "External pressure coefficient of zone G for 1 m2 (second value)"),
        BindProperty("Area_H10", &CP::Area_H10, &CP::Area_H10, "External pressure coefficient of zone H for 10 m2"),
        BindProperty("Area_H1", &CP::Area_H1, &CP::Area_H1, "External pressure coefficient of zone H for 1 m2"),
        BindProperty("Area_H10a", &CP::Area_H10a, &CP::Area_H10a, "External pressure coefficient of zone H for 10 m2 (second value)"),
        BindProperty("Area_H1a", &CP::Area_H1a, &CP::Area_H1a, "External pressure coefficient of zone H for 1 m2 (second value)"),
        BindProperty("Area_I10", &CP::Area_I10, &CP::Area_I10, "External pressure coefficient of zone I for 10 m2"),
        BindProperty("Area_I1", &CP::Area_I1, &CP::Area_I1, "External pressure coefficient of zone I for 1 m2"),
        BindProperty("Area_I10a", &CP::Area_I10a, &CP::Area_I10a, "External pressure coefficient of zone I for 10 m2 (second value)"),
        BindProperty("Area_I1a", &CP::Area_I1a, &CP::Area_I1a, "External pressure coefficient of zone I for 1 m2 (second value)"),
        BindProperty("Area_J10", &CP::Area_J10, &CP::Area_J10, "External pressure coefficient of zone J for 10 m2"),
        BindProperty("Area_J1", &CP::Area_J1, &CP::Area_J1, "External pressure coefficient of zone J for 1 m2"),
        BindProperty("Area_J10a", &CP::Area_J10a, &CP::Area_J10a, "External pressure coefficient of zone J for 10 m2 (second value)"),
        BindProperty("Area_J1a", &CP::Area_J1a, &CP::Area_J1a, "External pressure coefficient of zone J for 1 m2 (second value)"),
        BindProperty("Area_K10", &CP::Area_K10, &CP::Area_K10, "External pressure coefficient of zone K for 10 m2"),
        BindProperty("Area_K1", &CP::Area_K1, &CP::Area_K1, "External pressure coefficient of zone K for 1 m2"),
        BindProperty("Area_L10", &CP::Area_L10, &CP::Area_L10, "External pressure coefficient of zone L for 10 m2"),
        BindProperty("Area_L1", &CP::Area_L1, &CP::Area_L1, "External pressure coefficient of zone L for 1 m2"),
        BindProperty("Area_M10", &CP::Area_M10, &CP::Area_M10, "External pressure coefficient of zone M for 10 m2"),
        BindProperty("Area_M1", &CP::Area_M1, &CP::Area_M1, "External pressure coefficient of zone M for 1 m2"),
        BindProperty("Area_N10", &CP::Area_N10, &CP::Area_N10, "External pressure coefficient of zone N for 10 m2"),
        BindProperty("Area_N1", &CP::Area_N1, &CP::Area_N1, "External pressure coefficient of zone N for 1 m2"),
        BindProperty("Area_A10", &CP::Area_A10, &CP::Area_A10, "External pressure coefficient of zone A for 10 m2"),
        BindProperty("Area_A1", &CP::Area_A1, &CP::Area_A1, "External pressure coefficient of zone A for 1 m2"),
        BindProperty("Area_B10", &CP::Area_B10, &CP::Area_B10, "External pressure coefficient of zone B for 10 m2"),
        BindProperty("Area_B1", &CP::Area_B1, &CP::Area_B1, "External pressure coefficient of zone B for 1 m2"),
        BindProperty("Area_C10", &CP::Area_C10, &CP::Area_C10, "External pressure coefficient of zone C for 10 m2"),
        BindProperty("Area_C1", &CP::Area_C1, &CP::Area_C1, "External pressure coefficient of zone C for 1 m2"),
        BindProperty("Area_D10", &CP::Area_D10, &CP::Area_D10, "External pressure coefficient of zone D for 10 m2"),
        BindProperty("Area_D1", &CP::Area_D1, &CP::Area_D1, "External pressure coefficient of zone D for 1 m2"),
        BindProperty("Area_E10", &CP::Area_E10, &CP::Area_E10, "External pressure coefficient of zone E for 10 m2"),
        BindProperty("Area_E1", &CP::Area_E1, &CP::Area_E1, "External pressure coefficient of zone E for 1 m2"),
        BindProperty("hpZuH", &CP::hpZuH, &CP::hpZuH, "Parapet height over building height hp/h (request)"),
        BindProperty("rZuH", &CP::rZuH, &CP::rZuH, "Eave radius over building height r/h (request)"),
        BindProperty("HzuD", &CP::HzuD, &CP::HzuD, "Building height over depth h/d (request)"),
        BindProperty("AlphaTr", &CP::AlphaTr, &CP::AlphaTr, "Mansard eave angle in degrees (request)"),
        BindProperty("Area_K10a", &CP::Area_K10a, &CP::Area_K10a, "External pressure coefficient of zone K for 10 m2 (second value)"),
        BindProperty("Area_K1a", &CP::Area_K1a, &CP::Area_K1a, "External pressure coefficient of zone K for 1 m2 (second value)"),
        BindProperty("Area_L10a", &CP::Area_L10a, &CP::Area_L10a, "External pressure coefficient of zone L for 10 m2 (second value)"),
        BindProperty("Area_L1a", &CP::Area_L1a, &CP::Area_L1a, "External pressure coefficient of zone L for 1 m2 (second value)"),
        BindProperty("Area_M10a", &CP::Area_M10a, &CP::Area_M10a, "External pressure coefficient of zone M for 10 m2 (second value)"),
        BindProperty("Area_M1a", &CP::Area_M1a, &CP::Area_M1a, "External pressure coefficient of zone M for 1 m2 (second value)"),
        BindProperty("Area_N10a", &CP::Area_N10a, &CP::Area_N10a, "External pressure coefficient of zone N for 10 m2 (second value)"),
        BindProperty("Area_N1a", &CP::Area_N1a, &CP::Area_N1a, "External pressure coefficient of zone N for 1 m2 (second value)"),
        BindProperty("Area_A10a", &CP::Area_A10a, &CP::Area_A10a, "External pressure coefficient of zone A for 10 m2 (second value)"),
        BindProperty("Area_A1a", &CP::Area_A1a, &CP::Area_A1a, "External pressure coefficient of zone A for 1 m2 (second value)"),
        BindProperty("Area_B10a", &CP::Area_B10a, &CP::Area_B10a, "External pressure coefficient of zone B for 10 m2 (second value)"),
        BindProperty("Area_B1a", &CP::Area_B1a, &CP::Area_B1a, "External pressure coefficient of zone B for 1 m2 (second value)"),
        BindProperty("Area_C10a", &CP::Area_C10a, &CP::Area_C10a, "External pressure coefficient of zone C for 10 m2 (second value)"),
        BindProperty("Area_C1a", &CP::Area_C1a, &CP::Area_C1a, "External pressure coefficient of zone C for 1 m2 (second value)"),
        BindProperty("Area_D10a", &CP::Area_D10a, &CP::Area_D10a, "External pressure coefficient of zone D for 10 m2 (second value)"),
        BindProperty("Area_D1a", &CP::Area_D1a, &CP::Area_D1a, "External pressure coefficient of zone D for 1 m2 (second value)"),
        BindProperty("Area_E10a", &CP::Area_E10a, &CP::Area_E10a, "External pressure coefficient of zone E for 10 m2 (second value)"),
        BindProperty("Area_E1a", &CP::Area_E1a, &CP::Area_E1a, "External pressure coefficient of zone E for 1 m2 (second value)"),
        BindProperty("Area_Ft10", &CP::Area_Ft10, &CP::Area_Ft10, "External pressure coefficient of zone Ft for 10 m2"),
        BindProperty("Area_Ft1", &CP::Area_Ft1, &CP::Area_Ft1, "External pressure coefficient of zone Ft for 1 m2"),
        BindProperty("Area_Ft10a", &CP::Area_Ft10a, &CP::Area_Ft10a, "External pressure coefficient of zone Ft for 10 m2 (second value)"),
        BindProperty("Area_Ft1a", &CP::Area_Ft1a, &CP::Area_Ft1a, "External pressure coefficient of zone Ft for 1 m2 (second value)"),
        BindProperty("Norm", &CP::Norm, &CP::Norm, "Standard code of the coefficients (request)"),
        BindProperty("TrTyp", &CP::TrTyp, &CP::TrTyp, "Eave type of a flat roof (request)"),
        BindProperty("Mue", &CP::Mue, &CP::Mue, "Opening ratio mu for internal pressure (request)"),
        BindProperty("Area_Inside", &CP::Area_Inside, &CP::Area_Inside, "Internal pressure coefficient c_pi"),
        BindProperty("Area_Insidea", &CP::Area_Insidea, &CP::Area_Insidea, "Internal pressure coefficient c_pi (second value)"),
        Bind("Copy", &CP::Copy, {"Dst"}, "Copies every property into the table object Dst"),
        Bind("Clone", &CP::Clone, {}, "A new, independent table object with the same values"),
    });
    return table;
}

const dispatch::Table<CAGS>& AGSTable() {
    static const dispatch::Table<CAGS> table({
        Bind("GetTownName", &AG::GetTownName, {"AGS"},
             "Name of the municipality, with \" (modif.)\" for a user correction and \" [1]\"/\" [2]\" for no wind/snow zone"),
        Bind("GetTownNameShort", &AG::GetTownNameShort, {"AGS"}, "Short name of the municipality (always empty)"),
        Bind("GetStateName", &AG::GetStateName, {"AGS"}, "Name of the state"),
        Bind("GetStateNameShort", &AG::GetStateNameShort, {"AGS"}, "Code of the state, such as BY"),
        Bind("GetCountyName", &AG::GetCountyName, {"AGS"}, "Name of the government region"),
        Bind("GetRuralDistrictName", &AG::GetRuralDistrictName, {"AGS"}, "Name of the county"),
        Bind("GetZIP", &AG::GetZIP, {"AGS"}, "Postcode"),
        Bind("GetWZ", &AG::GetWZ, {"AGS"}, "Wind zone, DIN 1055-4:2005"),
        Bind("GetSZ", &AG::GetSZ, {"AGS"}, "Snow zone, DIN 1055-5:2005"),
        Bind("GetSRemark", &AG::GetSRemark, {"AGS"}, "Remark on the snow zone"),
        Bind("GetWRemark", &AG::GetWRemark, {"AGS"}, "Remark on the wind zone"),
        BindProperty("Norm", &AG::Norm, &AG::Norm, "Standard code, kept for the host (initially 50)"),
        Bind("Getqb", &AG::Getqb, {"AGS"}, "Basic velocity pressure in kN/m2 (0: the German table has none)"),
        Bind("Getsk", &AG::Getsk, {"AGS"}, "Ground snow load in kN/m2 (0: the German table has none)"),
    });
    return table;
}

const dispatch::Table<CWindSnow>& WindSnowTable() {
    static const dispatch::Table<CWindSnow> table({
        Bind("WindPressure_DIN1055_4_1986", &WS::WindPressure_DIN1055_4_1986, {"BuildingHeightInM"},
             "Velocity pressure in kN/m2 of DIN 1055-4:1986 for the building height in m"),
        Bind("WindReferencePressure_DIN1055_4_2005", &WS::WindReferencePressure_DIN1055_4_2005, {"WindZone"},
             "Reference velocity pressure qref in kN/m2 of a wind zone, DIN 1055-4:2005"),
        Bind("WindPressure_DIN1055_4_2005", &WS::WindPressure_DIN1055_4_2005,
             {"WindZone", "BuildingCategory", "z_BuildingInM", "TerrainHeightInM"},
             "Velocity pressure in kN/m2 at height z in m, DIN 1055-4:2005; 999 above 1100 m terrain"),
        Bind("StandardSnowLoad_DIN1055_5_1975", &WS::StandardSnowLoad_DIN1055_5_1975,
             {"SnowZone", "TerrainHeightInM"}, "Ground snow load s0 in kN/m2, DIN 1055-5:1975; 999 = no value"),
        Bind("StandardSnowLoad_EDIN1055_5_2004", &WS::StandardSnowLoad_EDIN1055_5_2004,
             {"SnowZone", "TerrainHeightInM"}, "Ground snow load sk in kN/m2, E DIN 1055-5:2004; 999 = no value"),
        Bind("StandardSnowLoad_DIN1055_7_2005", &WS::StandardSnowLoad_DIN1055_7_2005,
             {"SnowZone", "TerrainHeightInM"}, "Ground snow load sk in kN/m2, DIN 1055-5:2005; 999 = no value"),
        Bind("SnowMue1", &WS::SnowMue1, {"Alpha"}, "Shape coefficient mue1 for the pitch in degrees, DIN 1055-5"),
        Bind("SnowMue2", &WS::SnowMue2, {"Alpha"}, "Shape coefficient mue2 for the pitch in degrees, DIN 1055-5"),
        Bind("SnowOverhang", &WS::SnowOverhang, {"si"}, "Snow overhanging an eave in kN/m for the roof load si in kN/m2"),
        Bind("SnowCatchingFence", &WS::SnowCatchingFence, {"mue1", "mue2", "sk", "B", "Alpha"},
             "Force on a snow fence in kN/m; sk in kN/m2, B in m, Alpha in degrees"),
        Bind("SnowZoneNames1975", &WS::SnowZoneNames1975, {"sName", "Index"}, "Snow zones of DIN 1055-5:1975"),
        Bind("SnowZoneNames2005", &WS::SnowZoneNames2005, {"sName", "Index"}, "Snow zones of DIN 1055-5:2005"),
        Bind("WindZoneNames2005", &WS::WindZoneNames2005, {"sName", "Index"}, "Wind zones of DIN 1055-4:2005"),
        Bind("WindZoneNames2005_T2963", &WS::WindZoneNames2005_T2963, {"sName", "Index"},
             "Wind zones of DIN 1055-4:2005 with five zones"),
        Bind("WindCategoryNames2005", &WS::WindCategoryNames2005, {"sName", "Index"},
             "Terrain categories of DIN 1055-4:2005"),
        Bind("SnowBagMue1", &WS::SnowBagMue1, {}, "Shape coefficient mue1 beside a step: 0.8"),
        Bind("SnowBagMue2", &WS::SnowBagMue2, {"hInCm", "sk"},
             "Drift coefficient mue2 at a step of hInCm cm for sk in kN/m2, DIN 1055-5"),
        Bind("SnowBag", &WS::SnowBag, {"mue1", "mue2", "hInCm", "sk"}, "Height of the drift load in kN/m2"),
        BindProperty("AGS", &WS::AGS, "The municipality object (CAGS)"),
        Bind("WindPressure_EN_1991_1_4", &WS::WindPressure_EN_1991_1_4,
             {"CtrlNA", "BuildingCategory", "z_BuildingInM", "BasicWindPressure", "BasicWindVelocity",
              "UpwindSlope_Phi", "OrographicLocationFac_s"},
             "Peak velocity pressure in kN/m2 at height z in m; qb in kN/m2, vb in m/s; 0 if not answerable"),
        Bind("StandardSnowLoad_EN_1991_1_3", &WS::StandardSnowLoad_EN_1991_1_3,
             {"CtrlNA", "CtrlRegion", "SnowZoneIndex", "TerrainHeightInM"},
             "Ground snow load sk in kN/m2 by annex, climate region, zone code and altitude in m"),
        Bind("SnowMue1_EN_1991_1_3", &WS::SnowMue1_EN_1991_1_3, {"CtrlNA", "Alpha"},
             "Shape coefficient mue1 for the pitch in degrees, EN 1991-1-3"),
        Bind("SnowMue2_EN_1991_1_3", &WS::SnowMue2_EN_1991_1_3, {"CtrlNA", "Alpha"},
             "Shape coefficient mue2 for the pitch in degrees, EN 1991-1-3"),
        Bind("SnowMue3_EN_1991_1_3", &WS::SnowMue3_EN_1991_1_3, {"CtrlNA", "Alpha", "hZuB"},
             "Shape coefficient mue3 (curved roof) for the pitch in degrees and the ratio h/b"),
        Bind("SnowOverhang_EN_1991_1_3", &WS::SnowOverhang_EN_1991_1_3, {"CtrlNA", "si", "snow_d"},
             "Snow overhanging an eave in kN/m; si in kN/m2, snow depth in m"),
        Bind("SnowCatchingFence_EN_1991_1_3", &WS::SnowCatchingFence_EN_1991_1_3,
             {"CtrlNA", "mue1", "mue2", "sk", "B", "Alpha"}, "Force on a snow fence in kN/m; CtrlNA is not used"),
        Bind("SnowBagMue1_EN_1991_1_3", &WS::SnowBagMue1_EN_1991_1_3, {"CtrlNA", "Alpha"},
             "Shape coefficient mue1 with the drift floor 0.8"),
        Bind("SnowBagMue2_EN_1991_1_3", &WS::SnowBagMue2_EN_1991_1_3, {"CtrlNA", "Alpha"},
             "Shape coefficient mue2 with the drift floor 0.8"),
        Bind("SnowBagMue3_EN_1991_1_3", &WS::SnowBagMue3_EN_1991_1_3, {"CtrlNA", "Alpha", "hZuB"},
             "Shape coefficient mue3 with the drift floor 0.8"),
        Bind("SnowBag_EN_1991_1_3", &WS::SnowBag_EN_1991_1_3, {"CtrlNA", "sk", "hInM", "mue1", "mue2", "LsInM"},
             "Drift at a step of hInM m for sk in kN/m2: mue1, mue2 and drift length LsInM in m (in/out)"),
        Bind("WindOpenSides2005", &WS::WindOpenSides2005, {"sName", "Index"}, "Open sides, DIN 1055-4:2005"),
        Bind("WindOpenSides_EN_1991_1_4", &WS::WindOpenSides_EN_1991_1_4, {"sName", "Index"},
             "Open sides, EN 1991-1-4"),
        // Zone maps and chooser dialogs.
        Bind("SnowZoneByMap1975", &WS::SnowZoneByMap1975, {"zone"},
             "Snow zone of DIN 1055-5:1975 chosen on the map (in/out); -1 when cancelled"),
        Bind("SnowZoneByMap2005", &WS::SnowZoneByMap2005, {"zone"},
             "Snow zone of DIN 1055-5:2005 chosen on the map (in/out); -1 when cancelled"),
        Bind("WindZoneByMap2005", &WS::WindZoneByMap2005, {"zone"},
             "Wind zone of DIN 1055-4:2005 chosen on the map (in/out); -1 when cancelled"),
        Bind("WindZoneByMap2005_T2963", &WS::WindZoneByMap2005_T2963, {"zone"},
             "Wind zone of DIN 1055-4:2005 with five zones chosen on the map (in/out); -1 when cancelled"),
        Bind("WindCategoryByView2005", &WS::WindCategoryByView2005, {"WCat"},
             "Terrain category of DIN 1055-4:2005 chosen in a dialog (in/out); -1 when cancelled"),
        Bind("SnowZoneByMapEN", &WS::SnowZoneByMapEN, {"CtrlNA", "CtrlRegion", "zone"},
             "Snow zone of EN 1991-1-3 chosen on the map of the climate region (in/out); -1 when cancelled or no map"),
        Bind("ClimateRegionByMap", &WS::ClimateRegionByMap, {"CR"},
             "Climate region of EN 1991-1-3 chosen on the map (in/out); -1 when cancelled"),
        Bind("WindCategoryByView100", &WS::WindCategoryByView100, {"WCat"},
             "Terrain category 1..6 of DIN 1055-4 Annex B chosen in the dialog with pictures; -1 when cancelled"),
        Bind("WindCategoryByView_EN_1991_1_4", &WS::WindCategoryByView_EN_1991_1_4, {"CtrlNA", "WCat"},
             "Terrain category 0..4 of EN 1991-1-4 chosen in a dialog (in/out); -1 when cancelled"),
        Bind("OrographyByView_EN_1991_1_4", &WS::OrographyByView_EN_1991_1_4, {"gPhi", "sFac"},
             "Upwind slope and location factor of the orography entered in a dialog (in/out); false when cancelled"),
        // Town dialogs.
        Bind("SnowWindZonesByTown2005AGS", &WS::SnowWindZonesByTown2005AGS, {"WZ", "SZ", "AGS", "TownName"},
             "Town selection (German table): wind and snow zone codes, key and name of the town (in/out); 1 or -1"),
        Bind("SnowWindZonesByTown_EN_1991_1_AGS", &WS::SnowWindZonesByTown_EN_1991_1_AGS,
             {"CtrlNA", "WZ", "SZ", "qb", "sk", "hNN", "AGS", "TownName"},
             "Town selection (Eurocode table): snow zone code, qb and sk in kN/m2, hNN in m, key and name (in/out)"),
        Bind("SnowZoneByTown2005", &WS::SnowZoneByTown2005, {"zone"},
             "Snow zone of a municipality from the DIBt list (in/out); -1 after Cancel"),
        Bind("SnowZoneByTown2005_T3093", &WS::SnowZoneByTown2005_T3093, {"zone"},
             "Snow zone of a municipality from the list of T 3093 (in/out); -1 after Cancel"),
        Bind("WindZoneByTown2005_DIBt", &WS::WindZoneByTown2005_DIBt, {"zone"},
             "Wind zone of a municipality from the DIBt list (in/out); -1 after Cancel"),
        Bind("WindZoneByTown2005_T2963", &WS::WindZoneByTown2005_T2963, {"zone"},
             "Wind zone of a municipality from the list of T 2963 (in/out); -1 after Cancel"),
    });
    return table;
}

// The dialog sessions join this table with the dialogs.
const dispatch::Table<CRoofLoad>& RoofLoadTable() {
    static const dispatch::Table<CRoofLoad> table({
        BindProperty("DefaultAccNorm", &RL::DefaultAccNorm, "Values according to the standard, offered to a dialog"),
        Bind("ShowRoofLoadDlg_EN", &RL::ShowRoofLoadDlg_EN, {"AsciiFileName"},
             "Eurocode wind, snow and dead load dialog over the block file; OnOk tells whether it was accepted"),
        Bind("ShowRoofLoadDlg_1", &RL::ShowRoofLoadDlg_1, {"AsciiFileName"},
             "DIN 1055-100 wind, snow and dead load dialog over the block file; OnOk tells whether it was accepted"),
        Bind("ShowRoofLoadDlg", &RL::ShowRoofLoadDlg, {"AsciiFileName"},
             "DIN 1055-4:1986 and DIN 1055-5:1975 wind, snow and dead load dialog over the block file; OnOk tells "
             "whether it was accepted"),
        Bind("WindPressure_DIN1055_4_1986", &RL::WindPressure_DIN1055_4_1986, {"BuildingHeightInM"},
             "No longer supported: shows a message and returns 0; see CWindSnow"),
        Bind("WindPressure_DIN1055_4_2005", &RL::WindPressure_DIN1055_4_2005,
             {"WindZone", "BuildingCategory", "z_BuildingInM"},
             "No longer supported: shows a message and returns 0; see CWindSnow"),
        Bind("StandardSnowLoad_DIN1055_5_1975", &RL::StandardSnowLoad_DIN1055_5_1975,
             {"SnowZone", "TerrainHeightInM"}, "No longer supported: shows a message and returns 0; see CWindSnow"),
        Bind("StandardSnowLoad_EDIN1055_5_2004", &RL::StandardSnowLoad_EDIN1055_5_2004,
             {"SnowZone", "TerrainHeightInM"}, "No longer supported: shows a message and returns 0; see CWindSnow"),
        Bind("StandardSnowLoad_DIN1055_7_2005", &RL::StandardSnowLoad_DIN1055_7_2005,
             {"SnowZone", "TerrainHeightInM"}, "No longer supported: shows a message and returns 0; see CWindSnow"),
        BindProperty("EditDeadLoad", &RL::EditDeadLoad, "A session also reads, shows and writes the dead load"),
        BindGet("Version", &RL::Version, "Version of the component, major.minor.revision"),
        BindProperty("WindCpTable", &RL::WindCpTable, "Input and output of the coefficient requests (CWindCpTable)"),
        Bind("GetWindCpValues_Gabled_Roof", &RL::GetWindCpValues_Gabled_Roof, {},
             "Coefficients of a gabled roof for WindCpTable.Theta and .Alpha (degrees)"),
        Bind("GetWindCpValues_Hipped_Roof", &RL::GetWindCpValues_Hipped_Roof, {},
             "Coefficients of a hipped roof for WindCpTable.Theta and .Alpha (degrees)"),
        BindProperty("Norm", &RL::Norm, "Standard code of the coefficient requests"),
        BindProperty("SelectNorm", &RL::SelectNorm, "The dialog offers the choice of the standard"),
        BindProperty("EnabledBuildingHeight", &RL::EnabledBuildingHeight, "The user may edit the building height"),
        BindProperty("WindSnow", &RL::WindSnow, "The calculation object (CWindSnow)"),
        Bind("GetWindCpValues_Flat_Roof", &RL::GetWindCpValues_Flat_Roof, {},
             "Coefficients of a flat roof for WindCpTable.hpZuH, .rZuH and .AlphaTr (degrees)"),
        Bind("GetWindCpValues_Vertical_Wall", &RL::GetWindCpValues_Vertical_Wall, {},
             "Coefficients of the walls for WindCpTable.HzuD"),
        BindProperty("NoBuildingHeight", &RL::NoBuildingHeight, "The dialogs hide the building height"),
        Bind("GetWindCpValues_Pent_Roof", &RL::GetWindCpValues_Pent_Roof, {},
             "Coefficients of a monopitch roof for WindCpTable.Theta and .Alpha (degrees)"),
        BindProperty("LanguageFileName", &RL::LanguageFileName, &RL::LanguageFileName,
                     "Language file of the first language object"),
        BindProperty("UseCpeDB", &RL::UseCpeDB, "Coefficient requests read the coefficient store"),
        BindProperty("UseBauforschungsbericht", &RL::UseBauforschungsbericht, &RL::UseBauforschungsbericht,
                     "Stored for the host; shared by all objects"),
        Bind("GetWindCpValues_Inside", &RL::GetWindCpValues_Inside, {},
             "Internal pressure coefficients for WindCpTable.TrTyp, .Theta and .Mue (store only)"),
        BindProperty("SelectableCodesCtrl", &RL::SelectableCodesCtrl, &RL::SelectableCodesCtrl,
                     "Selectable standard codes such as _1_3_; shared by all objects, reset by each new one"),
        BindGet("OnOk", &RL::OnOk, "The last session ended with OK"),
        BindProperty("WithDefaults", &RL::WithDefaults, "A session starts from the stored defaults"),
        Bind("ShowLiveLoadDlg", &RL::ShowLiveLoadDlg, {"AsciiFileName"},
             "Live load dialog over the block file for the old standard; others go on in ShowLiveLoadDlg_1"),
        Bind("ShowLiveLoadDlg_1", &RL::ShowLiveLoadDlg_1, {"AsciiFileName"},
             "Live load dialog over the block file, the catalogue's standards; OnOk tells whether it was accepted"),
    });
    return table;
}

// Class and interface identifiers of the type library, by class name.
struct Identity {
    const char* name;
    const char* interfaceName;
    const char* classId;
    const char* interfaceId;
};
constexpr Identity kIdentities[] = {
    {"CRoofLoad", "_CRoofLoad", "{EB180B21-C538-4D9B-BC5C-634BAF39375F}", "{1DCDD252-A881-48A6-BAC3-643A7EB628B2}"},
    {"CWindSnow", "_CWindSnow", "{1AA2E2A7-689E-49A2-9E6F-FC98CFFE3FEA}", "{86FE08A8-9A35-496C-B21B-5F6D95029675}"},
    {"CWindCpTable", "_CWindCpTable", "{8748BC71-8069-4819-A25C-90531183005D}",
     "{01217559-0D9D-4D43-BA55-7F8D60222C3D}"},
    {"CAGS", "_CAGS", "{FB6D39CE-E543-47A0-8FF9-DEA00F5F923E}", "{057035E9-05A1-4904-927C-DEF96FD1710A}"},
};

template <class C>
dispatch::PublicClass Register(const std::string& name, const dispatch::Table<C>& (*table)()) {
    dispatch::PublicClass c;
    c.name = name;
    for (const Identity& id : kIdentities)
        if (name == id.name) {
            c.interfaceName = id.interfaceName;
            c.classId = id.classId;
            c.interfaceId = id.interfaceId;
        }
    if (c.classId.empty()) throw std::logic_error("no identity for the class " + name);
    c.type = dispatch::TypeKey<C>();
    c.members = [table]() -> const std::vector<MemberInfo>& { return table().Infos(); };
    c.create = [name, table]() -> std::unique_ptr<Dispatchable> {
        return std::make_unique<dispatch::Object<C>>(std::make_shared<C>(), table(), name);
    };
    c.wrap = [name, table](std::shared_ptr<void> target) -> std::unique_ptr<Dispatchable> {
        return std::make_unique<dispatch::Object<C>>(std::static_pointer_cast<C>(std::move(target)), table(), name);
    };
    return c;
}

}  // namespace

namespace dispatch {

const std::vector<PublicClass>& PublicClasses() {
    static const std::vector<PublicClass> classes{
        Register<CRoofLoad>("CRoofLoad", RoofLoadTable),
        Register<CWindSnow>("CWindSnow", WindSnowTable),
        Register<CWindCpTable>("CWindCpTable", WindCpTableTable),
        Register<CAGS>("CAGS", AGSTable),
    };
    return classes;
}

const PublicClass* FindPublicClass(const std::string& name) {
    const std::string want = UCase(name);
    for (const auto& c : PublicClasses())
        if (UCase(c.name) == want) return &c;
    return nullptr;
}

std::shared_ptr<Dispatchable> WrapTarget(const void* type, std::shared_ptr<void> target) {
    for (const auto& c : PublicClasses())
        if (c.type == type) return c.wrap(std::move(target));
    Raise(err::NoAutomation, {}, "Class does not support Automation");
}

}  // namespace dispatch

std::unique_ptr<Dispatchable> CreateObjectByName(const std::string& className) {
    const dispatch::PublicClass* c = dispatch::FindPublicClass(className);
    return c ? c->create() : nullptr;
}

std::vector<std::string> PublicClassNames() {
    std::vector<std::string> names;
    for (const auto& c : dispatch::PublicClasses()) names.push_back(c.name);
    return names;
}

}  // namespace qvrl
