#pragma once
// What the two town selection dialogs share: their controls, the text
// filters, the municipality list and its fill, the status line, and OK and
// Cancel. The German dialog (frmSelTown) and the Eurocode one
// (frmSelTown_1) differ in their hierarchy, columns and user buttons.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVTextBox.h"
#include "interchange/Records.h"

namespace qvrl {

// Column of the key in the municipality list, in both dialogs.
inline constexpr int32_t kTownListAgsColumn = 5;

class SelTownForm : public Form {
public:
    // The selected municipality.
    TownRec Current;
    std::string PlzFilter;
    std::string NameFilter;

    std::string SZ() const { return Current.SZ; }
    void SZ(const std::string& v) { Current.SZ = v; }
    std::string WZ() const { return Current.WZ; }
    void WZ(const std::string& v) { Current.WZ = v; }
    std::string AGS() const { return Current.AGS; }
    virtual void AGS(const std::string& v) = 0;
    std::string GemeindeName() const { return Current.Gemeinde; }

    void UpdateData(bool toData, const std::string& hint) override;
    void Localize() override;
    // Sets up the list's columns; rows stay.
    void InitLv() { LoadList(true); }
    // The towns read by the last full list load, element 0 blank.
    const std::vector<TownRec>& Towns() const { return towns_; }

    ComboBox& cbBL;
    ComboBox& cbBez;
    ComboBox& cbLK;
    QVTextBox& txtPlz;    // txtAGS(0)
    QVTextBox& txtName;   // txtAGS(1)
    QVTextBox& txtCount;  // txtAGS(2)
    ListView& lvGem;
    ListView& fxgGem;
    CheckBox* chkAllTown = nullptr;  // the Eurocode dialog only
    CommandButton& cmdUser;
    CommandButton& cmdUserRe;
    Label& lbCounty;  // lbSelTown(0)
    Label& lbRegion;  // lbSelTown(1)
    Label& lbState;   // lbSelTown(2)
    Label& lblStatus;
    Label& lblInfo;
    Label& lblRem;
    Label& Label2;
    QVButtons& QVButtons1;

protected:
    // The item data of a region or county entry: the decimal digits of its
    // numbers joined without padding.
    static int32_t Joined(std::initializer_list<int32_t> numbers);
    // The Eurocode dialog adds its check box between the list and the buttons.
    explicit SelTownForm(bool withAllTown);

    void Form_Load() override;
    void Form_Activate() override { Localize(); }

    void FillStates();
    void FillRegions();
    void FillCounties();
    // Header only: the columns are set up and the rows left alone.
    void LoadList(bool headerOnly);

    // --- what the dialogs do differently ---
    virtual void ZeroHierarchy() = 0;
    // The combo entries (text, item data) of each level, the "all" entry not included.
    virtual std::vector<ComboItem> StateItems() = 0;
    virtual std::vector<ComboItem> RegionItems() = 0;
    virtual std::vector<ComboItem> CountyItems() = 0;
    // The keys of the selected levels as the combos encode them.
    virtual int32_t StateKey() const = 0;
    virtual int32_t RegionKey() const = 0;
    virtual int32_t CountyKey() const = 0;
    // Take a level from decoded numbers (all zero: none), clearing the levels below.
    virtual void TakeState(int32_t BL_ID) = 0;
    virtual void TakeRegion(int32_t BL_ID, int32_t Reg_ID) = 0;
    virtual void TakeCounty(int32_t BL_ID, int32_t Reg_ID, int32_t LK_ID) = 0;
    virtual void ReadTowns(std::vector<TownRec>& list) = 0;
    virtual void FindTown() = 0;
    virtual std::vector<std::string> ColumnTitles() const = 0;
    // The cells of a row, or nothing for a town the list leaves out.
    virtual bool RowOf(const TownRec& t, std::vector<std::string>& cells) const = 0;
    virtual std::string StatusText() const = 0;
    // Text number of the footnote legend.
    virtual int32_t InfoTextNumber() const = 0;
    virtual void cmdUser_Click() = 0;
    virtual void cmdUserRe_Click() = 0;

    // The text filters and the list after an edit of a filter box.
    void FilterEdited(QVTextBox& box, const char* hint);
    void lvGem_ItemClick();
    void OnOk();
    void OnCancel();
    // Whether AGS is a key the user buttons may act on.
    bool UsableKey() const;

    std::vector<TownRec> towns_;
    bool allTown_ = false;

private:
    void Fill(ComboBox& cb, const std::vector<ComboItem>& items, bool allEntry);
    // Selects the entry of this item data, else entry 0; returns the data selected.
    int32_t SelectByData(ComboBox& cb, int32_t data);
    void ShowBusy(int32_t number);
};

// The text of a list's numeric cell: blank below 0.0001, else the number
// with the decimals given, without padding.
std::string TownNumberCell(double value, int16_t decimals);
// A number of the status line, as the list cell but never blank.
std::string TownNumberText(double value, int16_t decimals);

}  // namespace qvrl
