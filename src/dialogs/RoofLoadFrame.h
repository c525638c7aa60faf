#pragma once
// What the roof load dialogs share: the two presentations of the standard,
// the "values by the standard" switch over the design value boxes, the dead
// load group, the defaults button and the texts of these. Each form adds its
// own controls (the tab order is the form's) and hands them in here.

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>

#include "controls/Control.h"
#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVLabel.h"
#include "controls/QVTextBox.h"
#include "interchange/Records.h"
#include "vocab/CodeLists.h"

namespace qvrl::roofframe {

// The properties every roof load form has, under the names the sessions set.
struct RoofLoadProperties {
    double Rechenwert_wq = 0.0;
    double Hoehe_Geb = 0.0;
    double Rechenwert_s0 = 0.0;
    int16_t SLZ = 0;
    double Hoehe_NN = 0.0;
    bool NachNorm = false;
    bool MitNormSelect = false;
    bool MitG = false;
    double Rechenwert_g0 = 0.0;
    std::string g0_Bemerkung;
    double Rechenwert_g1 = 0.0;
    std::string g1_Bemerkung;
    double Rechenwert_g2 = 0.0;
    std::string g2_Bemerkung;
    bool MitVorschlag = false;
};

std::string T(int32_t number);

// The item of that code, -1 for none.
int32_t IndexOfCode(const ComboBox& cb, int32_t code);
void Fill(ComboBox& cb, const CodeList& list);
// Selects the code, else the first item; false when the list is empty.
bool SelectOrFirst(ComboBox& cb, int32_t code);
// The stored value of a box's text.
double Number(QVTextBox& box);
// Loads and heights to the hundredth, which is what the block file keeps;
// factors need the third place.
void ValueBox(QVTextBox& box, const char* format);

// Both lists of the standard from the selectable codes; the image list is
// only offered when there is a choice.
void FillNormCombos(ComboBox& cbNorm, ComboBox& cbNormI);
// Shows the standard in both lists. A code a list does not hold takes its
// first item, and takeNorm gets that item's code before the next list is
// searched.
void SelectNorm(ComboBox& cbNorm, ComboBox& cbNormI, int16_t norm, const std::function<void(int16_t)>& takeNorm);
// The code of the chosen item of the image list (its tag).
int16_t ChosenNorm(const ComboBox& cbNormI);

// A value the rule owns is shown, not typed, and the tab passes it by.
void ShowNachNorm(CheckBox& chkNorm, bool nachNorm, std::initializer_list<QVTextBox*> designValues);

// The dead load group txtG(0) to txtG(5): even index the remark, odd the value.
using DeadLoadBoxes = std::array<QVTextBox*, 6>;
void SetUpDeadLoadBox(QVTextBox& box, int16_t index);
// Remark and value of dead load k (0 to 2).
void ReadDeadLoad(const DeadLoadBoxes& boxes, int k, std::string& remark, double& value);
// With the group in use, the remarks are the fixed texts and read-only; the
// remark properties are not shown and take these texts on reading back.
void ShowDeadLoads(QVFrame& frame, const DeadLoadBoxes& boxes, bool mitG, const std::array<double, 3>& values);
void LocalizeDeadLoads(const DeadLoadBoxes& boxes);

// The properties a form stores as defaults, as they stand.
struct DefaultValues {
    int16_t norm = 0;
    double wq = 0.0;
    double hGeb = 0.0;
    double hNN = 0.0;
    int16_t cat = 0;
    double qb = 0.0;
    double s0 = 0.0;
    int16_t slz = 0;
};
void StoreDefaults(const DefaultValues& v, const TownRec& town, WindLoadRec& wind, SnowLoadRec& snow, bool nachNorm);

// The texts every roof load form has: caption, standard label, switch,
// defaults button, the button strip.
void LocalizeFrame(Form& form, Label& lbNorm, CheckBox& chkNorm, CommandButton& cmdDefault, QVButtons& buttons);

}  // namespace qvrl::roofframe
