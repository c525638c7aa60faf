#pragma once
// The live load dialog: the basic and the additional load, chosen from the
// catalogue grids or typed, and the design value. With NachNorm on, the
// three loads come from the grids only.

#include <cstdint>
#include <string>

#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVLabel.h"
#include "controls/QVTextBox.h"

namespace qvrl {

class LiveLoadSelectForm;

class frmLiveLoad_1 : public Form {
public:
    frmLiveLoad_1();
    std::string FormName() const override { return "frmLiveLoad_1"; }

    // --- properties, in the order the session sets them ---
    int16_t Norm = 0;
    double Grundwert_p = 0.0;
    double Zuschlag_p = 0.0;
    double Rechenwert_p = 0.0;
    std::string Grundwert_Zeile;
    std::string Grundwert_Kat;
    std::string Grundwert_Nutz;
    std::string Grundwert_Bsp;
    std::string Zuschlag_Zeile;
    std::string Zuschlag_Kat;
    std::string Zuschlag_Nutz;
    std::string Zuschlag_Bsp;
    bool NachNorm = false;
    bool MitNormSelect = false;
    bool MitG = false;
    double Rechenwert_g0 = 0.0;
    std::string g0_Bemerkung;

    // cbNorm from the catalogue's standards that SelectableCodesCtrl allows.
    void Init_Me() override;
    void UpdateData(bool toData, const std::string& controlName) override;
    void Localize() override;

    // Event handlers; each does nothing while Updating.
    void cbNorm_Click();
    void chkNorm_Click();
    void cmdp_Click();
    void cmdpPlus_Click();
    void QVButtons1_OnOk();
    void QVButtons1_OnCancel();

private:
    // Both catalogue buttons: the grid opens at the row the fields name and,
    // if accepted, hands back its load and texts.
    void ChooseFromCatalogue(LiveLoadSelectForm& grid, double& load, std::string& kat, std::string& zeile,
                             std::string& nutz, std::string& bsp);
    QVTextBox& txtVerkehr(int16_t i) const { return Get<QVTextBox>(ControlKey("txtVerkehr", i)); }
    QVTextBox& txtG(int16_t i) const { return Get<QVTextBox>(ControlKey("txtG", i)); }
    void ValueAccepted(QVTextBox& box);
    void LoadsCaption();

    Label* lbNorm_ = nullptr;
    ComboBox* cbNorm_ = nullptr;
    QVFrame* Frame1_ = nullptr;
    CommandButton* cmdp_ = nullptr;
    CommandButton* cmdpPlus_ = nullptr;
    QVFrame* Frame3_ = nullptr;
    CheckBox* chkNorm_ = nullptr;
    QVButtons* QVButtons1_ = nullptr;
};

}  // namespace qvrl
