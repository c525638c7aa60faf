#pragma once
// The wind, snow and dead load dialog of the 2005 German standards (Norm 3,
// and 31 with the expert reports T 2963 and T 3093). Wind comes from zone,
// terrain category, building and terrain height; snow from zone and terrain
// height. The frame is that of the Eurocode dialog: NachNorm decides whether
// the rules or the user own the design values, and another standard hides
// the form with SwitchNorm.

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

class frmRoofLoad100 : public Form, public roofframe::RoofLoadProperties {
public:
    frmRoofLoad100();
    std::string FormName() const override { return "frmRoofLoad100"; }

    // --- properties besides those of RoofLoadProperties ---
    int16_t Norm = 0;
    int16_t WZ = 0;
    int16_t GebKat = 0;
    // Both live in the building height box: read-only, and hidden.
    bool EnabledBuildingHeight() const { return !txtWind(0).Locked(); }
    void EnabledBuildingHeight(bool v) { txtWind(0).Locked(!v); }
    bool NoBuildingHeight() const { return !txtWind(0).Visible(); }
    void NoBuildingHeight(bool v) { txtWind(0).Visible(!v); }
    // The reference pressure of the wind zone, whatever NachNorm says.
    double wqRef() const { return wqRef_; }
    const std::string& AGS() const { return ags_; }
    // A key above 0 also looks the town up.
    void AGS(const std::string& v);

    const TownRec& Town() const { return town_; }

    void Init_Me() override;
    void UpdateData(bool toData, const std::string& controlName) override;
    void Localize() override;
    void EnableZoneButtons();

    // Event handlers; each does nothing while Updating.
    void cbNormI_Click();
    void cbWZ_Click();
    void cbWGKat_Click();
    void cbSLZ_Click();
    void chkNorm_Click();
    void cmdSLZ_Click();
    void cmdSLZ2_Click();
    void cmdWZ_Click();
    void cmdWZ2_Click();
    void cmdGK_Click();
    void cmdAGS_Click();
    void cmdDefault_Click();
    void QVButtons1_OnOk();
    void QVButtons1_OnCancel();

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    QVTextBox& txtWind(int16_t i) const { return Get<QVTextBox>(ControlKey("txtWind", i)); }
    QVTextBox& txtG(int16_t i) const { return Get<QVTextBox>(ControlKey("txtG", i)); }
    std::array<QVTextBox*, 6> DeadBoxes() const {
        return {&txtG(0), &txtG(1), &txtG(2), &txtG(3), &txtG(4), &txtG(5)};
    }
    void ComputeWind();
    void ComputeSnow();
    void ClearTown() { town_ = TownRec{}; }
    void ValueAccepted(QVTextBox& box, const std::string& name);
    // Terrain heights above a limit lie outside the standard: the note turns red.
    void Footnotes();

    std::string ags_;
    double wqRef_ = 0.0;
    double vRef_ = 0.0;
    TownRec town_;
    WindLoadRec defWind_;
    SnowLoadRec defSnow_;

    ComboBox* cbNorm_ = nullptr;
    ComboBox* cbNormI_ = nullptr;
    Label* lbNorm_ = nullptr;
    QVFrame* Frame5_ = nullptr;
    CommandButton* cmdAGS_ = nullptr;
    Label* lblAGS_ = nullptr;
    QVFrame* Frame3_ = nullptr;
    QVTextBox* txtHeight_ = nullptr;
    Label* lblWindH_ = nullptr;
    QVFrame* Frame1_ = nullptr;
    Label* lblWZ_ = nullptr;
    ComboBox* cbWZ_ = nullptr;
    CommandButton* cmdWZ_ = nullptr;
    CommandButton* cmdWZ2_ = nullptr;
    Label* lblWind_ = nullptr;
    ComboBox* cbWGKat_ = nullptr;
    CommandButton* cmdGK_ = nullptr;
    QVFrame* Frame2_ = nullptr;
    Label* lblSnow_ = nullptr;
    ComboBox* cbSLZ_ = nullptr;
    CommandButton* cmdSLZ_ = nullptr;
    CommandButton* cmdSLZ2_ = nullptr;
    Label* lblSnowH_ = nullptr;
    QVTextBox* txtSnow2_ = nullptr;
    QVFrame* Frame4_ = nullptr;
    CheckBox* chkNorm_ = nullptr;
    CommandButton* cmdDefault_ = nullptr;
    QVButtons* QVButtons1_ = nullptr;
};

}  // namespace qvrl
