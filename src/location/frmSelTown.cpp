#include "location/frmSelTown.h"

#include "location/frmEditAGSDB.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/vb.h"

namespace qvrl {

namespace {

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

}  // namespace

frmSelTown::frmSelTown() : SelTownForm(false) {
    lblInfo.Caption("[1] = kein Datenbankeintrag für Windzone, [2] für Schneezone -> manuelle Eingabe erf. !");
}

void frmSelTown::ZeroHierarchy() {
    state_.BL_ID = 0;
    region_.BL_ID = region_.Reg_ID = 0;
    county_.BL_ID = county_.Reg_ID = county_.LK_ID = 0;
    Current.Gem_ID = 0;
}

std::vector<ComboItem> frmSelTown::StateItems() {
    std::vector<StateRec> list;
    ReadStates(list);
    std::vector<ComboItem> items;
    for (size_t i = 1; i < list.size(); ++i) items.push_back({list[i].BL_Name, list[i].BL_ID, {}});
    return items;
}

std::vector<ComboItem> frmSelTown::RegionItems() {
    std::vector<RegionRec> list;
    ReadRegions(state_, list);
    std::vector<ComboItem> items;
    for (size_t i = 1; i < list.size(); ++i)
        items.push_back({list[i].Reg_Name, Joined({list[i].BL_ID, list[i].Reg_ID}), {}});
    return items;
}

std::vector<ComboItem> frmSelTown::CountyItems() {
    std::vector<CountyRec> list;
    ReadCounties(state_, region_, list);
    std::vector<ComboItem> items;
    for (size_t i = 1; i < list.size(); ++i)
        items.push_back({list[i].LK_Name, Joined({list[i].BL_ID, list[i].Reg_ID, list[i].LK_ID}), {}});
    return items;
}

int32_t frmSelTown::RegionKey() const { return Joined({region_.BL_ID, region_.Reg_ID}); }

int32_t frmSelTown::CountyKey() const { return Joined({county_.BL_ID, county_.Reg_ID, county_.LK_ID}); }

void frmSelTown::TakeState(int32_t BL_ID) {
    FindState(BL_ID, state_);
    region_ = {};
    county_ = {};
    Current.Gem_ID = 0;
}

void frmSelTown::TakeRegion(int32_t BL_ID, int32_t Reg_ID) {
    if (BL_ID == 0 && Reg_ID == 0) region_ = {};
    else FindRegion(state_, BL_ID, Reg_ID, region_);
    county_ = {};
    Current.Gem_ID = 0;
}

void frmSelTown::TakeCounty(int32_t BL_ID, int32_t Reg_ID, int32_t LK_ID) {
    if (BL_ID == 0 && Reg_ID == 0 && LK_ID == 0) county_ = {};
    else FindCounty(state_, region_, BL_ID, Reg_ID, LK_ID, county_);
    Current.Gem_ID = 0;
}

void frmSelTown::ReadTowns(std::vector<TownRec>& list) {
    ReadGemFromAGS(state_, region_, county_, list, PlzFilter, NameFilter, "");
}

std::vector<std::string> frmSelTown::ColumnTitles() const {
    return {T(451), T(452), T(453), T(454), T(455), "AGS", T(456), T(457), " ", " "};
}

bool frmSelTown::RowOf(const TownRec& t, std::vector<std::string>& cells) const {
    cells = {t.BL_ShortName, t.Reg_Name, t.LK_Name, t.PLZ, t.Gemeinde, t.AGS, t.WZ, t.SZ, t.BemW, t.BemS};
    return true;
}

std::string frmSelTown::StatusText() const {
    const TownRec& c = Current;
    // The language file keeps no trailing blank: the blanks go here.
    std::string s = c.PLZ + " " + c.Gemeinde + T(441) + " " + c.WZ + T(442) + " " + c.SZ;
    if (!Trim(c.BemW).empty()) s += ", " + c.BemW;
    if (!Trim(c.BemS).empty()) s += ", " + c.BemS;
    return s;
}

void frmSelTown::AGS(const std::string& v) {
    Load();
    Current.AGS = v;
    if (!IsNumeric(v) || !(Val(v) > 0)) return;
    FindTownByAGS(v, Current);
    state_.BL_ID = region_.BL_ID = county_.BL_ID = Current.BL_ID;
    region_.Reg_ID = county_.Reg_ID = Current.Reg_ID;
    county_.LK_ID = Current.LK_ID;
    LoadList(false);
}

void frmSelTown::NoTownMessage() { platform().MsgBox(T(446), mb::Exclamation, T(447)); }

void frmSelTown::Reread() {
    LoadList(false);
    const std::string key = Current.AGS;  // the look-up clears the record first
    FindTownByAGS(key, Current);
    platform().DoEvents();
    UpdateData(false, "");
}

void frmSelTown::cmdUser_Click() {
    if (!UsableKey()) {
        NoTownMessage();
        return;
    }
    frmEditAGSDB editor;
    editor.AGS(Current.AGS);
    editor.Show();
    const bool accepted = editor.Accepted;
    editor.Unload();
    if (accepted) Reread();
}

void frmSelTown::cmdUserRe_Click() {
    if (!UsableKey()) {
        NoTownMessage();
        return;
    }
    if (platform().MsgBox(T(448) + " " + Current.Gemeinde + T(449), mb::YesNo + mb::Question, Caption()) != mb::Yes) return;
    DeleteUserGem(Current);
    Reread();
}

}  // namespace qvrl
