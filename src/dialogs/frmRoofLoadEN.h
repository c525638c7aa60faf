#pragma once
// The wind, snow and dead load dialog of the Eurocodes with their national
// annexes. With NachNorm on, the design values always come from the load
// rules and the user edits their inputs; with it off, the user types them.
// A standard that belongs to another dialog hides the form with SwitchNorm.

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

class frmRoofLoadEN : public Form, public roofframe::RoofLoadProperties {
public:
    frmRoofLoadEN();
    std::string FormName() const override { return "frmRoofLoadEN"; }

    // --- properties besides those of RoofLoadProperties ---
    int16_t Norm() const { return norm_; }
    // Also decides whether a town can be chosen.
    void Norm(int16_t v);
    int16_t GebKat = 0;
    // Both live in the building height box: read-only, and hidden.
    bool EnabledBuildingHeight() const { return !txtWind(0).Locked(); }
    void EnabledBuildingHeight(bool v) { txtWind(0).Locked(!v); }
    bool NoBuildingHeight() const { return !txtWind(0).Visible(); }
    void NoBuildingHeight(bool v) { txtWind(0).Visible(!v); }
    const std::string& AGS() const { return ags_; }
    // A key above 0 also looks the town up and takes its basic values.
    void AGS(const std::string& v);
    bool bWithTopographicFactor = false;
    double qb0 = 0.0;
    double vb0 = 0.0;
    double cDir = 1.0;
    double cSeason = 1.0;
    double DistShoreLine = 0.1 * 1000;
    double DistInsideTown = 0.0;

    // Read-only views of the private state, for tests and views.
    int16_t Climate() const { return climate_; }
    double UpwindSlope() const { return upwindSlope_; }
    double LocationFactor() const { return locationFactor_; }
    const TownRec& Town() const { return town_; }

    void Init_Me() override;
    void UpdateData(bool toData, const std::string& controlName) override;
    void Localize() override;

    // Event handlers; each does nothing while Updating.
    void cbNormI_Click();
    void cbCR_Click();
    void cbSLZ_Click();
    void cbWGKat_Click();
    void chkWindTopo_Click();
    void chkNorm_Click();
    void cmdDefault_Click();
    void cmdAGS_Click();
    void cmdSLZ_Click();
    void cmdClimaticRegion_Click();
    void cmdGK_Click();
    void cmdOro_Click();
    void QVButtons1_OnOk();
    void QVButtons1_OnCancel();

    // How many times the groups were arranged; a view lays out again when it grows.
    int32_t Arrangements() const { return arrangements_; }

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    QVTextBox& txtWind(int16_t i) const { return Get<QVTextBox>(ControlKey("txtWind", i)); }
    QVTextBox& txtG(int16_t i) const { return Get<QVTextBox>(ControlKey("txtG", i)); }
    std::array<QVTextBox*, 6> DeadLoads() const {
        return {&txtG(0), &txtG(1), &txtG(2), &txtG(3), &txtG(4), &txtG(5)};
    }
    void EnableTownChoice();
    void FillSnowZones();
    void ReadTopography();
    void ComputeWind();
    void ComputeSnow();
    void ClearTown() { town_ = TownRec{}; }
    // A box whose value the user changed and that validated: the rest of
    // the dialog follows it.
    void ValueAccepted(QVTextBox& box, const std::string& name);
    void Arrange();

    int16_t norm_ = 0;
    std::string ags_;
    int16_t climate_ = 0;
    double upwindSlope_ = 0.0;
    double locationFactor_ = 0.0;
    TownRec town_;
    WindLoadRec defWind_;
    SnowLoadRec defSnow_;
    bool arranged_ = false;
    bool activated_ = false;
    int32_t arrangements_ = 0;

    ComboBox* cbNorm_ = nullptr;
    ComboBox* cbNormI_ = nullptr;
    Label* lbNorm_ = nullptr;
    QVFrame* Frame5_ = nullptr;
    CommandButton* cmdAGS_ = nullptr;
    Label* lblAGS_ = nullptr;
    QVFrame* Frame3_ = nullptr;
    QVTextBox* txtHeight_ = nullptr;
    QVFrame* Frame1_ = nullptr;
    Label* lblWind_ = nullptr;
    ComboBox* cbWGKat_ = nullptr;
    CommandButton* cmdGK_ = nullptr;
    CheckBox* chkWindTopo_ = nullptr;
    CommandButton* cmdOro_ = nullptr;
    QVFrame* Frame2_ = nullptr;
    Label* lblSnow2_ = nullptr;
    ComboBox* cbCR_ = nullptr;
    CommandButton* cmdClimaticRegion_ = nullptr;
    Label* lblSnow_ = nullptr;
    ComboBox* cbSLZ_ = nullptr;
    CommandButton* cmdSLZ_ = nullptr;
    Label* lblSnowH_ = nullptr;
    QVTextBox* txtSnow2_ = nullptr;
    QVFrame* Frame4_ = nullptr;
    CheckBox* chkNorm_ = nullptr;
    CommandButton* cmdDefault_ = nullptr;
    QVButtons* QVButtons1_ = nullptr;
};

}  // namespace qvrl
