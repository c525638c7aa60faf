#include "controls/QVButtons.h"

#include "controls/Form.h"
#include "support/CLocLite.h"
#include "support/errors.h"

namespace qvrl {

QVButtons::QVButtons(std::string name, int16_t index)
    : Control(std::move(name), index), ok_("cmdOk"), cancel_("cmdCancel") {
    ok_.Caption("O&k");
    cancel_.Caption("&Abbrechen");
    ok_.Click = [this] { OnOk(); };
    cancel_.Click = [this] { OnCancel(); };
}

void QVButtons::Style(int16_t v) {
    if (UserMode) Raise(err::SetNotPermitted, Key(), "Style of " + Key() + " can be set at design time only");
    Set(style_, v);
}

CommandButton& QVButtons::Buttons(int16_t index) { return index == 1 ? cancel_ : ok_; }

void QVButtons::Value(int16_t index, bool v) {
    if (!v || (index != 0 && index != 1)) return;
    Buttons(index).PerformClick();
}

void QVButtons::Localize() {
    ok_.Caption(LoadResStr(Variant(int32_t{415})));
    cancel_.Caption(LoadResStr(Variant(int32_t{416})));
    Notify();
}

void QVButtons::WriteProperties(PropertyBag& bag) const {
    bag.WriteProperty("BackColor", Variant(static_cast<int32_t>(BackColor())),
                      Variant(static_cast<int32_t>(colour::ButtonFace)));
    bag.WriteProperty("ForeColor", Variant(static_cast<int32_t>(ForeColor())),
                      Variant(static_cast<int32_t>(colour::ButtonText)));
    bag.WriteProperty("Enabled", Variant(Enabled()), Variant(true));
    bag.WriteProperty("BackStyle", Variant(BackStyle), Variant(int16_t{1}));
    bag.WriteProperty("BorderStyle", Variant(BorderStyle), Variant(int16_t{0}));
    bag.WriteProperty("Style", Variant(style_), Variant(int16_t{1}));
}

void QVButtons::ReadProperties(const PropertyBag& bag) {
    BackColor(static_cast<uint32_t>(CLng(bag.ReadProperty("BackColor", Variant(static_cast<int32_t>(colour::ButtonFace))))));
    ForeColor(static_cast<uint32_t>(CLng(bag.ReadProperty("ForeColor", Variant(static_cast<int32_t>(colour::ButtonText))))));
    Enabled(bag.ReadProperty("Enabled", Variant(true)).toBoolean());
    BackStyle = CInt(bag.ReadProperty("BackStyle", Variant(int16_t{1})));
    BorderStyle = CInt(bag.ReadProperty("BorderStyle", Variant(int16_t{0})));
    // Reading the bag is the design-time road to the style.
    Set(style_, CInt(bag.ReadProperty("Style", Variant(int16_t{1}))));
}

}  // namespace qvrl
