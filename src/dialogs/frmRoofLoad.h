#pragma once
// The wind, snow and dead load dialog of DIN 1055-4:1986 and DIN 1055-5:1975.
// Wind follows the building height alone, snow the zone and the terrain
// height; there is no town, no terrain category and no wind zone. A standard
// other than these hides the form with SwitchNorm.

#include <array>
#include <cstdint>
#include <string>

#include "controls/Form.h"
#include "dialogs/RoofLoadFrame.h"
#include "controls/QVButtons.h"
#include "controls/QVLabel.h"
#include "controls/QVTextBox.h"
#include "interchange/Records.h"

namespace qvrl {

class frmRoofLoad : public Form, public roofframe::RoofLoadProperties {
public:
    frmRoofLoad();
    std::string FormName() const override { return "frmRoofLoad"; }

    // --- properties besides those of RoofLoadProperties ---
    int16_t Norm() const { return norm_; }
    void Norm(int16_t v) { norm_ = v; }

    void Init_Me() override;
    void UpdateData(bool toData, const std::string& controlName) override;
    void Localize() override;

    // Event handlers; each does nothing while Updating.
    void cbNorm_Click();
    void cbNormI_Click();
    void cbSLZ_Click();
    void chkNorm_Click();
    void cmdSLZ_Click();
    void cmdDefault_Click();
    void QVButtons1_OnOk();
    void QVButtons1_OnCancel();

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    QVTextBox& txtWind(int16_t i) const { return Get<QVTextBox>(ControlKey("txtWind", i)); }
    QVTextBox& txtSnow(int16_t i) const { return Get<QVTextBox>(ControlKey("txtSnow", i)); }
    QVTextBox& txtG(int16_t i) const { return Get<QVTextBox>(ControlKey("txtG", i)); }
    std::array<QVTextBox*, 6> DeadLoads() const {
        return {&txtG(0), &txtG(1), &txtG(2), &txtG(3), &txtG(4), &txtG(5)};
    }
    // The code chosen in either list of standards.
    void NormChosen(int16_t code);
    void ComputeWind();
    void ComputeSnow();
    void ShowHeightLimit();
    // A box whose value the user changed and that validated: the rest of
    // the dialog follows it.
    void ValueAccepted(QVTextBox& box, const std::string& name);

    int16_t norm_ = 0;
    WindLoadRec defWind_;
    SnowLoadRec defSnow_;

    Label* lbNorm_ = nullptr;
    ComboBox* cbNorm_ = nullptr;
    ComboBox* cbNormI_ = nullptr;
    QVFrame* Frame1_ = nullptr;
    QVFrame* Frame2_ = nullptr;
    Label* lblSnow_ = nullptr;
    ComboBox* cbSLZ_ = nullptr;
    CommandButton* cmdSLZ_ = nullptr;
    Label* lblSnowH_ = nullptr;
    QVFrame* Frame3_ = nullptr;
    CheckBox* chkNorm_ = nullptr;
    CommandButton* cmdDefault_ = nullptr;
    QVButtons* QVButtons1_ = nullptr;
};

}  // namespace qvrl
