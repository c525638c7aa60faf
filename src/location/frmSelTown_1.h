#pragma once
// The town selection of the Eurocode path (table slzwlz1): country, state,
// region and county filters above the municipalities, with their figures
// qb, sk and hNN.

#include <cstdint>
#include <string>
#include <vector>

#include "location/SelTownForm.h"
#include "location/modAGSMdb_1.h"

namespace qvrl {

class frmSelTown_1 : public SelTownForm {
public:
    frmSelTown_1() : SelTownForm(true) {}
    std::string FormName() const override { return "frmSelTown_1"; }

    double qb() const { return Current.qb; }
    double vb() const { return Current.vb; }
    double sk() const { return Current.sk; }
    double hNN() const { return Current.hNN; }
    int16_t LandKey() const { return static_cast<int16_t>(land_.Land_ID); }
    void LandKey(int16_t v);
    using SelTownForm::AGS;
    void AGS(const std::string& v) override;
    bool AllTown() const { return allTown_; }

    const StateRecEN& StateRec() const { return state_; }
    const RegionRecEN& RegionRec() const { return region_; }
    const CountyRecEN& CountyRec() const { return county_; }

protected:
    void ZeroHierarchy() override;
    std::vector<ComboItem> StateItems() override;
    std::vector<ComboItem> RegionItems() override;
    std::vector<ComboItem> CountyItems() override;
    int32_t StateKey() const override { return state_.BL_ID; }
    int32_t RegionKey() const override;
    int32_t CountyKey() const override;
    void TakeState(int32_t BL_ID) override;
    void TakeRegion(int32_t BL_ID, int32_t Reg_ID) override;
    void TakeCounty(int32_t BL_ID, int32_t Reg_ID, int32_t LK_ID) override;
    void ReadTowns(std::vector<TownRec>& list) override;
    void FindTown() override {
        const std::string key = Current.AGS;  // the look-up clears the record first
        FindTownByAGSEN(Current.Land_ID, key, Current);
    }
    std::vector<std::string> ColumnTitles() const override;
    bool RowOf(const TownRec& t, std::vector<std::string>& cells) const override;
    std::string StatusText() const override;
    int32_t InfoTextNumber() const override { return 607; }
    void cmdUser_Click() override;
    void cmdUserRe_Click() override { cmdUser_Click(); }

private:
    void SyncFromAGS();
    LandRec land_;
    StateRecEN state_;
    RegionRecEN region_;
    CountyRecEN county_;
};

}  // namespace qvrl
