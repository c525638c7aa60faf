#pragma once
// The editor of one user correction: the names and key of a municipality
// shown, its name, postcode, zones and remarks editable. OK saves the row
// into the user's town file (qvrlAGSUsr.mdb).

#include <array>
#include <cstdint>
#include <string>

#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVTextBox.h"
#include "interchange/Records.h"

namespace qvrl {

class frmEditAGSDB : public Form {
public:
    frmEditAGSDB();
    std::string FormName() const override { return "frmEditAGSDB"; }

    TownRec Current;
    // An edit was made in one of the boxes.
    bool Dirty = false;

    const std::string& AGS() const { return ags_; }
    void AGS(const std::string& v);

    // Save flag false: the record into the boxes; true: the boxes into the record.
    void UpdateData(bool save, const std::string& hint = {}) override;
    void Localize() override;

    std::array<QVTextBox*, 10> txtAGS{};
    ComboBox& cbWZ;
    ComboBox& cbSZ;
    QVButtons& QVButtons1;

protected:
    void Form_Load() override;
    void Form_Activate() override { Localize(); }

private:
    void AddBoxes();
    void OnOk();
    void OnCancel();
    std::string ags_;
};

}  // namespace qvrl
