#include "location/frmSelTown_1.h"

#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/vb.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

}  // namespace

void frmSelTown_1::ZeroHierarchy() {
    state_.BL_ID = 0;
    region_.BL_ID = region_.Reg_ID = 0;
    county_.BL_ID = county_.Reg_ID = county_.LK_ID = 0;
    Current.Gem_ID = 0;
}

std::vector<ComboItem> frmSelTown_1::StateItems() {
    std::vector<StateRecEN> list;
    ReadStatesEN(land_, list);
    std::vector<ComboItem> items;
    for (size_t i = 1; i < list.size(); ++i) items.push_back({list[i].BL_Name, list[i].BL_ID, {}});
    return items;
}

std::vector<ComboItem> frmSelTown_1::RegionItems() {
    std::vector<RegionRecEN> list;
    ReadRegionsEN(land_, state_, list);
    std::vector<ComboItem> items;
    for (size_t i = 1; i < list.size(); ++i)
        items.push_back({list[i].Reg_Name, Joined({list[i].BL_ID, list[i].Reg_ID}), {}});
    return items;
}

std::vector<ComboItem> frmSelTown_1::CountyItems() {
    std::vector<CountyRecEN> list;
    ReadCountiesEN(land_, state_, region_, list);
    std::vector<ComboItem> items;
    for (size_t i = 1; i < list.size(); ++i)
        items.push_back({list[i].LK_Name, Joined({list[i].BL_ID, list[i].Reg_ID, list[i].LK_ID}), {}});
    return items;
}

int32_t frmSelTown_1::RegionKey() const { return Joined({region_.BL_ID, region_.Reg_ID}); }

int32_t frmSelTown_1::CountyKey() const { return Joined({county_.BL_ID, county_.Reg_ID, county_.LK_ID}); }

void frmSelTown_1::TakeState(int32_t BL_ID) {
    FindStateEN(land_, BL_ID, state_);
    region_ = {};
    county_ = {};
    Current.Gem_ID = 0;
}

void frmSelTown_1::TakeRegion(int32_t BL_ID, int32_t Reg_ID) {
    if (BL_ID == 0 && Reg_ID == 0) region_ = {};
    else FindRegionEN(land_, state_, BL_ID, Reg_ID, region_);
    county_ = {};
    Current.Gem_ID = 0;
}

void frmSelTown_1::TakeCounty(int32_t BL_ID, int32_t Reg_ID, int32_t LK_ID) {
    if (BL_ID == 0 && Reg_ID == 0 && LK_ID == 0) county_ = {};
    else FindCountyEN(land_, state_, region_, BL_ID, Reg_ID, LK_ID, county_);
    Current.Gem_ID = 0;
}

void frmSelTown_1::ReadTowns(std::vector<TownRec>& list) {
    ReadGemFromAGSEN(land_, state_, region_, county_, list, PlzFilter, NameFilter, 0, "");
}

std::vector<std::string> frmSelTown_1::ColumnTitles() const {
    return {T(451), T(452), T(453), T(454), T(455), "AGS", T(456), T(457), T(590), "qb", "sk", " ", " "};
}

bool frmSelTown_1::RowOf(const TownRec& t, std::vector<std::string>& cells) const {
    // Only a town with nothing at all is hidden.
    if (!allTown_ && Trim(t.WZ).empty() && Trim(t.SZ).empty() && t.hNN <= 0 && t.qb <= 0 && t.sk <= 0) return false;
    cells = {t.BL_ShortName,
             t.Reg_Name,
             t.LK_Name,
             t.PLZ,
             t.Gemeinde,
             t.AGS,
             t.WZ,
             t.SZ,
             TownNumberCell(t.hNN, 0),
             TownNumberCell(t.qb, 2),
             TownNumberCell(t.sk, 2),
             t.BemW,
             t.BemS};
    return true;
}

std::string frmSelTown_1::StatusText() const {
    const TownRec& c = Current;
    std::string s = c.PLZ + " " + c.Gemeinde + " " + ", hNN = " + TownNumberText(c.hNN, 0) + " m" + ", SZ = " + c.SZ +
                    ", sk = " + TownNumberText(c.sk, 2) + " kN/m²" + ", qb = " + TownNumberText(c.qb, 2) + " kN/m²";
    if (!Trim(c.BemW).empty()) s += ", " + c.BemW;
    if (!Trim(c.BemS).empty()) s += ", " + c.BemS;
    return s;
}

void frmSelTown_1::cmdUser_Click() { platform().MsgBox("Not available yet", mb::OKOnly, Caption()); }

void frmSelTown_1::LandKey(int16_t v) {
    Load();
    land_.Land_ID = v;
    state_.Land_ID = v;
    Current.Land_ID = v;
    FillStates();
    FillRegions();
    FillCounties();
    LoadList(true);
    SyncFromAGS();
}

void frmSelTown_1::AGS(const std::string& v) {
    Load();
    Current.AGS = v;
    SyncFromAGS();
}

void frmSelTown_1::SyncFromAGS() {
    Current.Land_ID = land_.Land_ID;
    const std::string a = Current.AGS;  // the look-up clears the record first
    if (a.empty() || !IsNumeric(a) || !(Val(a) > 0) || Current.Land_ID < 1) return;
    FindTownByAGSEN(Current.Land_ID, a, Current);
    if (Current.AGS.empty()) return;
    land_.Land_ID = Current.Land_ID;
    for (int32_t* id : {&state_.Land_ID, &region_.Land_ID, &county_.Land_ID}) *id = Current.Land_ID;
    state_.BL_ID = region_.BL_ID = county_.BL_ID = Current.BL_ID;
    region_.Reg_ID = county_.Reg_ID = Current.Reg_ID;
    county_.LK_ID = Current.LK_ID;
    LoadList(false);
}

}  // namespace qvrl
