#pragma once
// A label whose caption mixes the control's font with single characters in
// the symbol font ("\g" before a character), and a group frame.

#include <cstdint>
#include <string>
#include <vector>

#include "controls/Control.h"
#include "controls/PropertyBag.h"

namespace qvrl {

struct LabelRun {
    std::string text;  // as written in the caption
    bool symbol;       // shown in the font "Symbol"
    std::string fontName;
    // What a platform without the symbol font shows: the Greek letter of the key.
    std::string shown;
};

// The Greek letter the symbol font puts on a key ("a" alpha, "D" Delta);
// other characters stand as they are.
std::string SymbolToGreek(const std::string& ch);

class QVLabel : public Clickable {
public:
    using Clickable::Clickable;
    ControlKind Kind() const override { return ControlKind::QVLabel; }
    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v);
    // One element of lbLabel per run, one behind the other.
    const std::vector<LabelRun>& Runs() const { return runs_; }
    std::string FontName = "MS Sans Serif";
    double FontSize = 8.25;
    bool AutoSize = false;
    int16_t Alignment = 0;
    int16_t BackStyle = 1;
    int16_t BorderStyle = 0;

    void WriteProperties(PropertyBag& bag) const;
    void ReadProperties(const PropertyBag& bag);

    Event<int16_t, int16_t, const std::string&> MoveMausOver;
    Event<const std::string&> UpdateStatusBar;

private:
    std::string caption_;
    std::vector<LabelRun> runs_;
};

class QVFrame : public Control {
public:
    using Control::Control;
    ControlKind Kind() const override { return ControlKind::QVFrame; }
    static constexpr const char* DefaultCaption = "Q+V Frame";
    const std::string& Caption() const { return caption_; }
    void Caption(const std::string& v) { Set(caption_, v); }
    // The caption drawn on the top line: without "&", and one blank for none.
    std::string DrawnCaption() const;
    // No theme service on this platform.
    bool Themed() const { return false; }
    std::string FontName = "MS Sans Serif";
    double FontSize = 8.25;
    bool FontBold = false, FontItalic = false, FontStrikethru = false, FontUnderline = false;
    bool FontTransparent = true;
    int16_t BackStyle = 1;
    int16_t BorderStyle = 0;

    void WriteProperties(PropertyBag& bag) const;
    void ReadProperties(const PropertyBag& bag);

private:
    std::string caption_ = DefaultCaption;
};

}  // namespace qvrl
