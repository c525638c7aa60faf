#pragma once
// The catalogue grids of the live load dialog: frmLiveLoadSelect_1 picks a
// basic load (art 0), frmLiveLoadSelectAdd_1 an additional one (art 1). One
// implementation; they differ in the rows they read and in their names.
//
// The grid's first row is "no load" (0); each category of the catalogue is
// headed by a disabled row. OK takes the selected row into the properties.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVGridX.h"
#include "interchange/Records.h"

namespace qvrl {

class LiveLoadSelectForm : public Form {
public:
    // Grid columns.
    enum Column : int32_t { ColZeile, ColNutzung, ColText, ColWert, ColumnCount };

    int16_t Norm = 0;
    std::string Zeile;
    std::string Kat;
    std::string Nutz;
    std::string Bsp;
    double Lastwert() const { return lastwert_; }

    // Reads the catalogue of Norm into the grid and selects the row of no load.
    void Init_Me() override;
    // false: the cursor to the row of Zeile and Kat; true: the selected row
    // (none: the row of no load) into the properties.
    void UpdateData(bool toData, const std::string& controlName) override;
    // Selects the row whose Zeile and Kat equal the properties; with none,
    // the selection stays.
    void SetCursor();
    void Localize() override;

    void QVButtons1_OnOk();
    void QVButtons1_OnCancel();
    void gridSel_ItemClick(int32_t row);

    QVGridX& gridSel() const { return *gridSel_; }
    // The catalogue row behind a grid row; none for a heading.
    const std::optional<LiveLoadRec>& RowRecord(int32_t row) const;

protected:
    explicit LiveLoadSelectForm(int16_t art);
    double lastwert2_ = 0.0;

private:
    void AddRow(const LiveLoadRec& rec, std::vector<std::string> cells, int32_t flags);
    int16_t art_;
    double lastwert_ = 0.0;
    std::vector<std::optional<LiveLoadRec>> records_;
    QVGridX* gridSel_ = nullptr;
    Label* lblStatus_ = nullptr;
    QVButtons* QVButtons1_ = nullptr;
};

class frmLiveLoadSelect_1 : public LiveLoadSelectForm {
public:
    frmLiveLoadSelect_1() : LiveLoadSelectForm(0) {}
    std::string FormName() const override { return "frmLiveLoadSelect_1"; }
    // The single load of the row taken.
    double Lastwert2() const { return lastwert2_; }
};

class frmLiveLoadSelectAdd_1 : public LiveLoadSelectForm {
public:
    frmLiveLoadSelectAdd_1() : LiveLoadSelectForm(1) {}
    std::string FormName() const override { return "frmLiveLoadSelectAdd_1"; }
};

}  // namespace qvrl
