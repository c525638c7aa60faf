#pragma once
// The town selection of the German path (table slzwlz): state, region and
// county filters above the municipalities, and the user's corrections
// (cmdUser opens the editor, cmdUserRe removes a correction).

#include <cstdint>
#include <string>
#include <vector>

#include "location/SelTownForm.h"
#include "location/modAGSMdb.h"

namespace qvrl {

class frmSelTown : public SelTownForm {
public:
    frmSelTown();
    std::string FormName() const override { return "frmSelTown"; }
    using SelTownForm::AGS;
    void AGS(const std::string& v) override;

    const StateRec& State() const { return state_; }
    const RegionRec& Region() const { return region_; }
    const CountyRec& County() const { return county_; }

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
        FindTownByAGS(key, Current);
    }
    std::vector<std::string> ColumnTitles() const override;
    bool RowOf(const TownRec& t, std::vector<std::string>& cells) const override;
    std::string StatusText() const override;
    int32_t InfoTextNumber() const override { return 436; }
    void cmdUser_Click() override;
    void cmdUserRe_Click() override;

private:
    // After the user's row changed: the list and the town read again.
    void Reread();
    void NoTownMessage();
    StateRec state_;
    RegionRec region_;
    CountyRec county_;
};

}  // namespace qvrl
