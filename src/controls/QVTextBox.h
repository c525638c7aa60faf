#pragma once
// The input field of every dialog: an edit whose text is a value (text,
// whole or real number, date), scaled by DimFac between stored and shown,
// checked against limits, stepped by the arrow keys, with the labels of its
// line (remark, caption, equals sign, dimension) and an automatic value.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "controls/Control.h"
#include "controls/PropertyBag.h"
#include "support/vb.h"

namespace qvrl {

class QVTextBox : public Control {
public:
    // Style: kind of value.
    enum : int16_t { StyleText = 0, StyleLength = 1, StyleWhole = 2, StyleReal = 3, StyleDate = 4, StyleDot = 6 };
    // Schema: which parts of the line are shown.
    enum : int32_t { UserDef = 1 };

    QVTextBox(std::string name, int16_t index = -1);
    ControlKind Kind() const override { return ControlKind::QVTextBox; }
    bool TakesFocus() const override { return !LabelLike(); }

    // --- value model ---
    int16_t Style() const { return style_; }
    // Sets FormatString to the style's own.
    void Style(int16_t v);
    static std::string StyleFormat(int16_t style);
    const std::string& FormatString() const { return format_; }
    void FormatString(const std::string& v) { Set(format_, v); }
    double DimFac = 1.0;
    double Min = 0.0;
    double Max = 9999.0;
    bool MinCheck = false;
    bool MaxCheck = false;
    double Increment = 1.0;
    bool ShowSelected = true;
    std::string Message;
    // Keyed values; "BadValue" is the one known key (absent: 999.0, which
    // switches the bad value off).
    Variant Properties(const std::string& key) const;
    void Properties(const std::string& key, const Variant& value);

    // The decimal character of the shown text; each box takes the setting
    // of the process when it is made.
    char DecimalChar() const { return decimal_; }
    void DecimalChar(char c) { decimal_ = c; }

    // 0: shown text of the stored value; 1: the text normalised; 2: stored
    // value of the shown text; 3: the shown value.
    Variant ReadValue(int16_t mode);
    // The stored value (ReadValue(2)), and setting it (scaled and formatted).
    Variant Text() { return ReadValue(2); }
    void Text(const Variant& v);

    // Whether the text differs from the last commit (or shows the bad value).
    bool Changed() const;
    // Steps 1-8 of a validation; a nested call returns true at once.
    bool Validate();
    bool CanIncrement();
    bool CanDecrement();

    // --- the edit ---
    const std::string& EditText() const { return text_; }
    // Replaces the edit's text as code does: Change, no key rules.
    void EditText(const std::string& t);
    int32_t SelStart() const { return selStart_; }
    int32_t SelLength() const { return selLength_; }
    void Select(int32_t start, int32_t length);
    void SelectAll();
    // One typed character (its code; UTF-8 text for others), through the key
    // rules. Returns whether the edit took it.
    bool KeyPressChar(const std::string& ch);
    // Characters one by one, as typed.
    void TypeText(const std::string& keys);
    bool Locked() const { return locked_; }
    void Locked(bool v) { Set(locked_, v); }

    // --- automatic value ---
    bool AutoUpdateEnabled = false;
    bool AutoUpdateActive() const { return autoActive_; }
    void AutoUpdateActive(bool v) { Set(autoActive_, v); }
    Variant AutoUpdateValue;
    bool AutoUpdateWarning() const { return autoWarning_; }
    void AutoUpdateWarning(bool v);
    int16_t AutoUpdateWarningStyle = 0;
    int16_t AutoUpdateStyle = 0;
    // The context menu: its entries' captions, and a choice of one.
    struct MenuEntry {
        std::string name;
        std::string caption;
        bool checked;
    };
    std::vector<MenuEntry> ContextMenu() const;
    void ChooseMenu(const std::string& entryName);

    // --- layout ---
    int32_t Schema() const { return schema_; }
    void Schema(int32_t v);
    const std::string& Remark() const { return remark_; }
    void Remark(const std::string& v);
    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v);
    // The kept dimension text; the label may show "!" instead (warning).
    const std::string& Dimension() const { return dimension_; }
    void Dimension(const std::string& v);
    const std::string& DimensionShown() const { return dimShown_; }
    bool DimensionBold() const { return dimBold_; }
    uint32_t DimensionColour() const { return dimColour_; }
    bool VisibleRemark() const { return visRemark_; }
    void VisibleRemark(bool v) { Set(visRemark_, v); }
    bool VisibleCaption() const { return visCaption_; }
    void VisibleCaption(bool v) { Set(visCaption_, v); }
    bool VisibleEq() const { return visEq_; }
    void VisibleEq(bool v) { Set(visEq_, v); }
    bool VisibleDimension() const { return visDim_; }
    void VisibleDimension(bool v) { Set(visDim_, v); }
    int16_t WidthRemark() const { return widthRemark_; }
    void WidthRemark(int16_t v) { SetUserDef(widthRemark_, v); }
    int16_t WidthCaption() const { return widthCaption_; }
    void WidthCaption(int16_t v) { SetUserDef(widthCaption_, v); }
    bool AutosizeRemark() const { return autoRemark_; }
    void AutosizeRemark(bool v) { SetUserDef(autoRemark_, v); }
    bool AutosizeCaption() const { return autoCaption_; }
    void AutosizeCaption(bool v) { SetUserDef(autoCaption_, v); }
    // Width of the edit and of the value label, in twips.
    int32_t EditWidth() const { return editWidth_; }
    void EditWidth(int32_t v) { Set(editWidth_, v); }
    bool LabelLike() const { return labelLike_; }
    void LabelLike(bool v) { Set(labelLike_, v); }
    int16_t ScaleHeight = 0;
    int16_t ScaleWidth = 0;
    int16_t Alignment = 0;
    std::string FontName = "MS Sans Serif";
    double FontSize = 8.25;
    // False at design time: a refused layout change then tells the designer.
    bool UserMode = true;
    // Names of properties noted as changed, in order (the designer's dirty marks).
    const std::vector<std::string>& PropertyChanges() const { return propertyChanges_; }

    void WriteProperties(PropertyBag& bag) const;
    void ReadProperties(const PropertyBag& bag);

    void Localize() {}

    Event<> Change;
    Event<int16_t&> KeyPress;
    // The host may turn the result to false.
    Event<bool&> ValidateEvent;
    Event<> QVReturnKey;

protected:
    bool FocusArrived() override;
    bool MayLeave(bool validates) override;
    bool HandleKey(int16_t keyCode) override;

private:
    template <class T>
    void SetUserDef(T& field, T v);
    void ReturnFocus();
    void ApplySchema();
    std::string FormatValue(const Variant& v) const;
    int32_t TextWidthTwips(const std::string& t) const;

    int16_t style_ = StyleReal;
    std::string format_ = "0.00";
    std::map<std::string, Variant> properties_;
    char decimal_;
    std::string text_;
    std::string lastText_;
    int32_t selStart_ = 0;
    int32_t selLength_ = 0;
    bool overflow_ = false;
    bool locked_ = false;
    bool autoActive_ = false;
    bool autoWarning_ = false;
    int32_t schema_ = 0;
    std::string remark_, caption_, dimension_, dimShown_;
    bool dimBold_ = false;
    uint32_t dimColour_ = colour::ButtonText;
    bool visRemark_ = false, visCaption_ = true, visEq_ = true, visDim_ = true;
    int16_t widthRemark_ = 1440, widthCaption_ = 705;
    bool autoRemark_ = false, autoCaption_ = false;
    int32_t editWidth_ = 855;
    bool labelLike_ = false;
    std::vector<std::string> propertyChanges_;
};

// Basic's "<" of two tagged values: numbers by value, texts by their bytes,
// and a number before any text.
bool VariantLess(const Variant& a, const Variant& b);

}  // namespace qvrl
