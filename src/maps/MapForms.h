#pragma once
// The small chooser dialogs: zone maps with their list, terrain category
// choosers and the orographic factor. Each hands one value back to the
// caller, who reads it only when OnOkButton reports true.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVTextBox.h"
#include "maps/ucLayer.h"

namespace qvrl {

// A map and a list of the same zones; the list follows the map.
class ZoneMapForm : public Form {
public:
    struct Design {
        std::string formName;
        std::string designCaption;
        int32_t captionText = 0;
        int32_t regionText = 0;  // shown after the caption (EN snow maps)
        std::string listName;
        std::string mapName;     // the control on the form, "ucIMSLZ1"
        std::string mapControl;  // its kind, "ucIMSLZ"
        std::vector<std::pair<std::string, int32_t>> labels;
        // Control names in tab order; "QVButtons1", the list, the map and
        // the labels.
        std::vector<std::string> order;
        std::function<CodeList()> list;
        MapPicture picture;
        bool bringToFront = false;  // first activation lifts the form
        bool windReference = false;  // lblqref and the list's Click
    };

    std::string FormName() const override { return design_.formName; }
    int16_t Value() const { return value_; }
    void Value(int16_t v) { value_ = v; }
    bool OnOkButton() const { return onOk_; }

    void UpdateData(bool save, const std::string& controlName = {}) override;
    void Localize() override;

    ucImageMap& Map() const { return *map_; }
    ComboBox& List() const { return *list_; }
    QVButtons& Buttons() const { return *buttons_; }
    const Design& GetDesign() const { return design_; }

protected:
    explicit ZoneMapForm(Design d);
    void Form_Load() override;
    void Form_Activate() override;

private:
    void Cancel();
    Design design_;
    ucImageMap* map_ = nullptr;
    ComboBox* list_ = nullptr;
    QVButtons* buttons_ = nullptr;
    Label* lblqref_ = nullptr;
    int16_t value_ = 0;
    bool onOk_ = false;
    bool inUpdate_ = false;
    bool activated_ = false;
};

class frmSLZ : public ZoneMapForm {
public:
    frmSLZ();
    int16_t SLZ() const { return Value(); }
    void SLZ(int16_t v) { Value(v); }
};

class frmSLZ_1 : public ZoneMapForm {
public:
    frmSLZ_1();
    int16_t SLZ() const { return Value(); }
    void SLZ(int16_t v) { Value(v); }
};

class frmWZ_1 : public ZoneMapForm {
public:
    frmWZ_1();
    int16_t WZ() const { return Value(); }
    void WZ(int16_t v) { Value(v); }
};

class frmWZ_2 : public ZoneMapForm {
public:
    frmWZ_2();
    int16_t WZ() const { return Value(); }
    void WZ(int16_t v) { Value(v); }
};

class frmClimaEN : public ZoneMapForm {
public:
    frmClimaEN();
    int16_t CR() const { return Value(); }
    void CR(int16_t v) { Value(v); }
};

// One of the twelve snow zone maps of a climate region.
class frmEN_SZ : public ZoneMapForm {
public:
    // The map of that region; an unknown region is the alpine one.
    explicit frmEN_SZ(int16_t CtrlRegion);
    int16_t SZ() const { return Value(); }
    void SZ(int16_t v) { Value(v); }
    int16_t Region() const { return region_; }

private:
    int16_t region_;
};

// The empty form that a map shows for a moment to come to the front.
class frmNull : public Form {
public:
    std::string FormName() const override { return "frmNull"; }

protected:
    void Form_Load() override {}
    void Form_Activate() override { Hide(); }
};

// Terrain categories by option buttons.
class WindCategoryForm : public Form {
public:
    struct Design {
        std::string formName;
        std::string designCaption;
        int32_t captionText = 0;
        std::string captionSuffix;
        int16_t options = 0;
        int32_t firstOptionText = 0;
        int32_t firstLabelText = 0;
        int16_t labels = 0;
        // EN dialogs: the value is the option's index (category 0..4);
        // DIN dialogs: index + 1.
        bool valueIsIndex = false;
        // The English word before each option's text (BS annex).
        std::vector<std::string> englishWords;
    };

    std::string FormName() const override { return design_.formName; }
    int16_t WCat() const { return value_; }
    void WCat(int16_t v) { value_ = v; }
    bool OnOkButton() const { return onOk_; }
    // Enabled of the option of that index; an index past the last is ignored.
    bool WCat_Enabled(int16_t index) const;
    void WCat_Enabled(int16_t index, bool v);

    void UpdateData(bool save, const std::string& controlName = {}) override;
    void Localize() override;
    OptionButton& Option(int16_t index) const { return *options_.at(static_cast<size_t>(index)); }
    int16_t OptionCount() const { return static_cast<int16_t>(options_.size()); }

protected:
    explicit WindCategoryForm(Design d);
    void Form_Activate() override { Localize(); }

private:
    Design design_;
    std::vector<OptionButton*> options_;
    std::vector<Label*> labels_;
    int16_t value_ = 0;
    bool onOk_ = false;
};

class frmWindCategory100 : public WindCategoryForm {
public:
    frmWindCategory100();
};
class frmWindCategory100_WithoutGrf : public WindCategoryForm {
public:
    frmWindCategory100_WithoutGrf();
};
class frmWindCategoryEN : public WindCategoryForm {
public:
    frmWindCategoryEN();
};
class frmWindCategoryEN_BS : public WindCategoryForm {
public:
    frmWindCategoryEN_BS();
};

// Upwind slope and location factor of the orography.
class frmOrographic : public Form {
public:
    frmOrographic();
    std::string FormName() const override { return "frmOrographic"; }
    double gPhi = 0.0;
    double sFac = 0.0;
    bool OnOkButton() const { return onOk_; }
    void UpdateData(bool save, const std::string& controlName = {}) override;
    void Localize() override;
    QVTextBox& txtOro(int16_t index) const { return index == 0 ? *phi_ : *s_; }

protected:
    void Form_Activate() override { Localize(); }

private:
    QVTextBox* phi_ = nullptr;
    QVTextBox* s_ = nullptr;
    bool onOk_ = false;
};

}  // namespace qvrl
