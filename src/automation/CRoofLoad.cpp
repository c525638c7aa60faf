#include "automation/CRoofLoad.h"

#include "automation/CWindSnow.h"
#include "automation/LiveLoadSessions.h"
#include "automation/RoofLoadSessions.h"
#include "cp/CWindCpTable.h"
#include "cp/CpWindRecord.h"
#include "cp/WindCpRoutes.h"
#include "cp/modWindCpConv.h"
#include "cp/modWindCpMdb.h"
#include "interchange/modAsciiRL2.h"
#include "support/CLocLite.h"
#include "support/CTrace.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "support/errors.h"

namespace qvrl {

namespace {

std::string DefaultSelectableCodes() { return "_" + std::to_string(1) + "_" + std::to_string(3) + "_"; }

double Refuse(const char* member) {
    CurrentPlatform().MsgBox("Funktion wird nicht mehr unterstützt", mb::OKOnly, std::string(member) + " ");
    return 0.0;
}

}  // namespace

CRoofLoad::CRoofLoad() {
    WriteTrace({}, std::nullopt, "CRoofLoad_Initialize", true, true);
    State().SelectableCodesCtrl = DefaultSelectableCodes();
    WindCpTable = std::make_shared<CWindCpTable>();
    WindSnow = std::make_shared<CWindSnow>();
    InitLanguageObjects();
    MigrateSettingsFiles();
}

std::string CRoofLoad::Version() const {
    return std::to_string(QVRL_VERSION_MAJOR) + "." + std::to_string(QVRL_VERSION_MINOR) + "." +
           std::to_string(QVRL_VERSION_PATCH);
}

std::string CRoofLoad::LanguageFileName() const {
    const auto& loc = State().locActive;
    if (!loc) Raise(err::ObjectNotSet, "LanguageFileName");
    return loc->FileName();
}

void CRoofLoad::LanguageFileName(const std::string& name) {
    const auto& loc = State().locActive;
    if (!loc) Raise(err::ObjectNotSet, "LanguageFileName");
    loc->FileName(name);
}

void CRoofLoad::ShowRoofLoadDlg_EN(const std::string& AsciiFileName) { RunRoofLoadDlg_EN(*this, AsciiFileName, onOk_); }

void CRoofLoad::ShowLiveLoadDlg(const std::string& AsciiFileName) { RunLiveLoadDlg(*this, AsciiFileName, onOk_); }

void CRoofLoad::ShowLiveLoadDlg_1(const std::string& AsciiFileName) { RunLiveLoadDlg_1(*this, AsciiFileName, onOk_); }

void CRoofLoad::ShowRoofLoadDlg_1(const std::string& AsciiFileName) { RunRoofLoadDlg_1(*this, AsciiFileName, onOk_); }

void CRoofLoad::ShowRoofLoadDlg(const std::string& AsciiFileName) { RunRoofLoadDlg(*this, AsciiFileName, onOk_); }

std::string CRoofLoad::SelectableCodesCtrl() const { return State().SelectableCodesCtrl; }

void CRoofLoad::SelectableCodesCtrl(const std::string& codes) {
    WriteTrace("SelectableCodesString Set=", Variant(codes), {}, true);
    State().SelectableCodesCtrl = codes;
}

bool CRoofLoad::UseBauforschungsbericht() const { return State().UseBauforschungsbericht; }

void CRoofLoad::UseBauforschungsbericht(bool value) { State().UseBauforschungsbericht = value; }

namespace {

// The table object of a request; a host that set it to Nothing gets 91.
CWindCpTable& RequestTable(const std::shared_ptr<CWindCpTable>& table, const char* member) {
    if (!table) Raise(err::ObjectNotSet, member);
    return *table;
}

// The store is loaded before the request is read; its answer does not matter,
// a store that could not be opened gives the zero record.
void PrepareStore(bool useStore) {
    if (useStore) (void)InitCpeMdb();
}

CpRoute Route(bool useStore) { return useStore ? CpRoute::Store : CpRoute::BuiltIn; }

}  // namespace

void CRoofLoad::GetWindCpValues_Gabled_Roof() {
    WriteTrace({}, std::nullopt, "GetWindCpValues_Gabled_Roof_Start", true);
    PrepareStore(UseCpeDB);
    CWindCpTable& t = RequestTable(WindCpTable, "GetWindCpValues_Gabled_Roof");
    const double theta = t.Theta();
    const double alpha = t.Alpha();
    CpWindRecord rec;
    WindCpGabled(Route(UseCpeDB), Norm, theta, alpha, rec);
    CpRecordToTable(rec, WindCpTable);
    WriteTrace({}, std::nullopt, "GetWindCpValues_Gabled_Roof_End", true);
}

void CRoofLoad::GetWindCpValues_Hipped_Roof() {
    PrepareStore(UseCpeDB);
    CWindCpTable& t = RequestTable(WindCpTable, "GetWindCpValues_Hipped_Roof");
    const double theta = t.Theta();
    const double alpha = t.Alpha();
    CpWindRecord rec;
    WindCpHipped(Route(UseCpeDB), Norm, theta, alpha, rec);
    CpRecordToTable(rec, WindCpTable);
}

void CRoofLoad::GetWindCpValues_Flat_Roof() {
    PrepareStore(UseCpeDB);
    CWindCpTable& t = RequestTable(WindCpTable, "GetWindCpValues_Flat_Roof");
    const double hp = t.hpZuH();
    const double r = t.rZuH();
    const double alphaTr = t.AlphaTr();
    CpWindRecord rec;
    WindCpFlat(Route(UseCpeDB), Norm, hp, r, alphaTr, rec);
    CpRecordToTable(rec, WindCpTable);
}

void CRoofLoad::GetWindCpValues_Vertical_Wall() {
    PrepareStore(UseCpeDB);
    const double hzud = RequestTable(WindCpTable, "GetWindCpValues_Vertical_Wall").HzuD();
    CpWindRecord rec;
    WindCpWall(Route(UseCpeDB), Norm, hzud, rec);
    CpRecordToTable(rec, WindCpTable);
}

void CRoofLoad::GetWindCpValues_Pent_Roof() {
    PrepareStore(UseCpeDB);
    CWindCpTable& t = RequestTable(WindCpTable, "GetWindCpValues_Pent_Roof");
    const double theta = t.Theta();
    const double alpha = t.Alpha();
    CpWindRecord rec;
    WindCpPent(Route(UseCpeDB), Norm, theta, alpha, rec);
    CpRecordToTable(rec, WindCpTable);
}

void CRoofLoad::GetWindCpValues_Inside() {
    PrepareStore(UseCpeDB);
    CWindCpTable& t = RequestTable(WindCpTable, "GetWindCpValues_Inside");
    const int16_t trTyp = t.TrTyp();
    const double theta = t.Theta();
    const double mue = t.Mue();
    CpWindRecord rec;
    WindCpInside(Route(UseCpeDB), Norm, trTyp, theta, mue, rec);
    CpRecordToTable(rec, WindCpTable);
}

double CRoofLoad::WindPressure_DIN1055_4_1986(double) { return Refuse("WindPressure_DIN1055_4_1986"); }

double CRoofLoad::WindPressure_DIN1055_4_2005(int16_t, int16_t, double) {
    return Refuse("WindPressure_DIN1055_4_2005");
}

double CRoofLoad::StandardSnowLoad_DIN1055_5_1975(int16_t, double) {
    return Refuse("StandardSnowLoad_DIN1055_5_1975");
}

double CRoofLoad::StandardSnowLoad_EDIN1055_5_2004(int16_t, double) {
    return Refuse("StandardSnowLoad_EDIN1055_5_2004");
}

double CRoofLoad::StandardSnowLoad_DIN1055_7_2005(int16_t, double) {
    return Refuse("StandardSnowLoad_DIN1055_7_2005");
}

}  // namespace qvrl
