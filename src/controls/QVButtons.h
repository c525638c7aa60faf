#pragma once
// The strip of OK and Cancel buttons every dialog has. Dialogs react to its
// OnOk and OnCancel and to nothing else of it.

#include <cstdint>
#include <string>

#include "controls/Control.h"
#include "controls/PropertyBag.h"

namespace qvrl {

class QVButtons : public Control {
public:
    QVButtons(std::string name, int16_t index = -1);
    ControlKind Kind() const override { return ControlKind::QVButtons; }
    bool TakesFocus() const override { return true; }

    // 1: side by side, 2: one above the other. Set at design time only:
    // at run time (UserMode) it is error 393.
    int16_t Style() const { return style_; }
    void Style(int16_t v);
    // Size of the strip in twips for its style.
    int32_t StripWidth() const { return style_ == 2 ? 1404 : 2850; }
    int32_t StripHeight() const { return style_ == 2 ? 918 : 459; }
    // Gap between the buttons stacked by style 2.
    static constexpr int32_t StackGap = 126;

    // 0 cmdOk, 1 cmdCancel, any other index cmdOk.
    CommandButton& Buttons(int16_t index);
    // Presses button 0 or 1 from code; any other index does nothing.
    void Value(int16_t index, bool v);

    CommandButton& cmdOk() { return ok_; }
    CommandButton& cmdCancel() { return cancel_; }

    void Localize();
    bool UserMode = true;
    int16_t BackStyle = 1;
    int16_t BorderStyle = 0;

    void WriteProperties(PropertyBag& bag) const;
    void ReadProperties(const PropertyBag& bag);

    Event<> OnOk;
    Event<> OnCancel;

private:
    int16_t style_ = 1;
    CommandButton ok_;
    CommandButton cancel_;
};

}  // namespace qvrl
