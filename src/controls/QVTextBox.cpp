#include "controls/QVTextBox.h"

#include <algorithm>
#include <cmath>

#include "controls/Form.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "support/errors.h"

namespace qvrl {

namespace {

constexpr double NoBadValue = 999.0;

// Positions in the edit count characters, not bytes.
size_t ByteOffset(const std::string& s, int32_t chars) {
    size_t i = 0;
    for (int32_t n = 0; i < s.size() && n < chars; ++n) {
        ++i;
        while (i < s.size() && (static_cast<unsigned char>(s[i]) & 0xC0) == 0x80) ++i;
    }
    return i;
}

int32_t CharCount(const std::string& s) {
    int32_t n = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

// A text that is no number, or one too large for a double, reads as 0.
double LeadingNumber(const std::string& t) {
    try {
        return Val(t);
    } catch (const RuntimeError&) {
        return 0.0;
    }
}

// "dd.mm.yyyy" (one or two digit day and month); false for anything else.
bool ParseDate(const std::string& t, DateValue& d) {
    int part[3] = {0, 0, 0};
    int digits[3] = {0, 0, 0};
    int k = 0;
    for (char c : Trim(t)) {
        if (c == '.') {
            if (++k > 2) return false;
        } else if (c >= '0' && c <= '9') {
            part[k] = part[k] * 10 + (c - '0');
            if (++digits[k] > 4) return false;
        } else {
            return false;
        }
    }
    if (k != 2 || !digits[0] || !digits[1] || !digits[2]) return false;
    if (part[1] < 1 || part[1] > 12 || part[0] < 1 || part[0] > 31) return false;
    d = DateFromParts(part[2], part[1], part[0]);
    return true;
}

bool IsNumberStyle(int16_t s) { return s == QVTextBox::StyleWhole || s == QVTextBox::StyleReal; }
bool IsLengthStyle(int16_t s) { return s == QVTextBox::StyleLength || s == QVTextBox::StyleDot; }

}  // namespace

bool VariantLess(const Variant& a, const Variant& b) {
    const bool as = a.type() == Variant::Type::String, bs = b.type() == Variant::Type::String;
    if (as && bs) return a.asString() < b.asString();
    if (as && b.isEmpty()) return false;
    if (bs && a.isEmpty()) return !b.asString().empty();
    if (as) return false;
    if (bs) return true;
    return a.toDouble() < b.toDouble();
}

QVTextBox::QVTextBox(std::string name, int16_t index) : Control(std::move(name), index), decimal_(State().DecimalChar) {
    BackColor(colour::Window);
    ForeColor(colour::WindowText);
}

std::string QVTextBox::StyleFormat(int16_t style) {
    switch (style) {
    case StyleWhole: return "0";
    case StyleReal: return "0.00";
    case StyleDate: return "dd.mm.yyyy";
    case StyleDot: return ".";
    default: return "&";
    }
}

void QVTextBox::Style(int16_t v) {
    style_ = v;
    format_ = StyleFormat(v);
    Notify();
}

Variant QVTextBox::Properties(const std::string& key) const {
    const auto it = properties_.find(UCase(key));
    if (it != properties_.end()) return it->second;
    if (UCase(key) == "BADVALUE") return Variant(NoBadValue);
    return {};
}

void QVTextBox::Properties(const std::string& key, const Variant& value) { properties_[UCase(key)] = value; }

std::string QVTextBox::FormatValue(const Variant& v) const {
    std::string s = Format(v, format_);
    if (IsNumberStyle(style_) && decimal_ != '.')
        for (char& c : s)
            if (c == '.') c = decimal_;
    return s;
}

Variant QVTextBox::ReadValue(int16_t mode) {
    double factor = 1.0;
    if (mode == 0) factor = DimFac;
    else if (mode == 2) factor = fp::Div(1.0, DimFac);
    std::string t = text_;
    double x = 0.0;
    int32_t n = 0;
    if (IsNumberStyle(style_)) {
        const size_t at = t.find(decimal_ == '.' ? ',' : decimal_);
        if (at != std::string::npos) t[at] = '.';
        x = LeadingNumber(t);
        if (x != 0.0) x = fp::Mul(x, factor);
    }
    if (style_ == StyleWhole) {
        if (std::fabs(x) > 2147483647.0) {
            t = "2147483647";
            overflow_ = true;
        }
        n = CLng(LeadingNumber(t));
        if (n != 0) n = CLng(fp::Mul(n, factor));
    }
    Variant value;
    DateValue d;
    switch (style_) {
    case StyleWhole: value = Variant(n); break;
    case StyleReal: value = Variant(x); break;
    case StyleDate: value = ParseDate(t, d) ? Variant(d) : Variant(t); break;
    default: value = Variant(t); break;
    }
    if (mode == 0 || mode == 1) {
        if (IsNumberStyle(style_) || value.type() == Variant::Type::Date) return Variant(FormatValue(value));
        // A picture formats a text only when the text is a number; "&" never.
        if (format_ != "&" && IsNumeric(t)) return Variant(Format(CDbl(Variant(t)), format_));
        return Variant(t);
    }
    return value;
}

void QVTextBox::Text(const Variant& v) {
    if (AutoUpdateEnabled && !autoActive_) {
        AutoUpdateValue = v;
        AutoUpdateWarning(VariantLess(AutoUpdateValue, ReadValue(0)));
    }
    if (style_ == StyleDate && v.type() != Variant::Type::String) EditText(Format(v, format_));
    else EditText(CStr(v));
    EditText(ReadValue(0).toString());
    lastText_ = text_;
    if (HasFocus() && ShowSelected) SelectAll();
}

bool QVTextBox::Changed() const {
    if (text_ != lastText_) return true;
    const double bad = Properties("BadValue").toDouble();
    if (bad == NoBadValue) return false;
    return FormatValue(Variant(bad)) == text_;
}

void QVTextBox::ReturnFocus() {
    Form* f = Parent();
    if (f && f->ActiveControl() != this && Enabled() && Visible()) f->SetFocus(*this);
    if (ShowSelected) SelectAll();
    if (f && f->ActiveControl() == this) CurrentPlatform().SetFocus(*f, Key(), ShowSelected);
}

bool QVTextBox::Validate() {
    ModuleState& st = State();
    if (st.QVTextBoxValidating) return true;
    st.QVTextBoxValidating = true;
    struct Done {
        ModuleState& st;
        ~Done() { st.QVTextBoxValidating = false; }
    } done{st};

    overflow_ = false;
    bool result = true;
    EditText(ReadValue(1).toString());
    bool failed = false;
    if (MinCheck) {
        if (IsLengthStyle(style_) && CharCount(text_) < Min) failed = true;
        if (IsNumberStyle(style_) && ReadValue(3).toDouble() < Min) {
            EditText(CStr(Variant(Min)));
            failed = true;
        }
    }
    if (!failed && MaxCheck) {
        if (IsLengthStyle(style_) && CharCount(text_) > Max) {
            // Max is below the length here, so it fits; a negative one keeps nothing.
            EditText(text_.substr(0, ByteOffset(text_, Max < 0 ? 0 : static_cast<int32_t>(Max))));
            failed = true;
        }
        if (IsNumberStyle(style_) && ReadValue(3).toDouble() > Max) {
            EditText(CStr(Variant(Max)));
            failed = true;
        }
    }
    if (failed) {
        ReturnFocus();
        result = false;
    }
    EditText(ReadValue(1).toString());
    if (overflow_) {
        CurrentPlatform().MsgBox("Maximaler darstellbarer Wert < 2147483647 > überschritten !", mb::OKOnly, "QVRoofLoad");
        overflow_ = false;
    }
    st.QVTextBoxValidateName = Key();
    ValidateEvent(result);
    if (result) {
        lastText_ = text_;
        st.QVTextBoxValidateName.clear();
        st.QVTextBoxError = false;
    } else {
        st.QVTextBoxError = true;
    }
    return result;
}

bool QVTextBox::CanIncrement() {
    if (MaxCheck && IsNumberStyle(style_)) return !(fp::Add(ReadValue(3).toDouble(), Increment) > Max);
    return true;
}

bool QVTextBox::CanDecrement() {
    if (MinCheck && IsNumberStyle(style_)) return !(fp::Sub(ReadValue(3).toDouble(), Increment) < Min);
    return true;
}

void QVTextBox::EditText(const std::string& t) {
    if (t == text_) return;
    text_ = t;
    selStart_ = CharCount(text_);
    selLength_ = 0;
    Notify();
    Change();
}

void QVTextBox::Select(int32_t start, int32_t length) {
    const int32_t n = CharCount(text_);
    selStart_ = std::clamp(start, 0, n);
    selLength_ = std::clamp(length, 0, n - selStart_);
    Notify();
}

void QVTextBox::SelectAll() { Select(0, CharCount(text_)); }

int32_t QVTextBox::TextWidthTwips(const std::string& t) const {
    return CurrentPlatform().TextWidthTwips(t, FontName, FontSize);
}

bool QVTextBox::KeyPressChar(const std::string& ch) {
    if (ch.empty() || locked_ || !Enabled()) return false;
    int16_t k = static_cast<unsigned char>(ch[0]);
    if (k == key::Return) {
        QVReturnKey();
        return false;
    }
    const int32_t len = CharCount(text_);
    if (style_ == StyleLength && MaxCheck && selLength_ == 0 && len >= Max) return false;
    if (IsNumberStyle(style_) && !(k == key::Back || k == ',' || k == '-' || k == '.' || (k >= '0' && k <= '9')))
        return false;
    if (style_ == StyleWhole && k == '-' && text_.find('-') != std::string::npos && selLength_ == 0) return false;
    if (!IsLengthStyle(style_)) {
        // At most ten characters by typing, on purpose; backspace included.
        if (len > 9) return false;
        if (selLength_ == 0 && k != key::Back && TextWidthTwips(ch + ch + text_) > editWidth_) return false;
    }
    KeyPress(k);
    if (k == 0) return false;
    const size_t from = ByteOffset(text_, selStart_);
    size_t to = ByteOffset(text_, selStart_ + selLength_);
    std::string t = text_;
    int32_t caret = selStart_;
    if (k == key::Back) {
        size_t start = from;
        if (selLength_ == 0 && selStart_ > 0) {
            start = ByteOffset(text_, selStart_ - 1);
            --caret;
        }
        t.erase(start, to - start);
    } else {
        t.replace(from, to - from, k == static_cast<unsigned char>(ch[0]) ? ch : std::string(1, static_cast<char>(k)));
        ++caret;
    }
    if (t != text_) {
        text_ = t;
        selStart_ = caret;
        selLength_ = 0;
        Notify();
        Change();
    } else {
        Select(caret, 0);
    }
    return true;
}

void QVTextBox::TypeText(const std::string& keys) {
    for (size_t i = 0; i < keys.size();) {
        size_t j = i + 1;
        while (j < keys.size() && (static_cast<unsigned char>(keys[j]) & 0xC0) == 0x80) ++j;
        const std::string ch = keys.substr(i, j - i);
        int16_t code = key::CodeOf(ch);
        KeyDown(code, 0);
        if (code != 0) KeyPressChar(ch);
        int16_t up = code == 0 ? key::CodeOf(ch) : code;
        KeyUp(up, 0);
        i = j;
    }
}

bool QVTextBox::FocusArrived() {
    if (ShowSelected) SelectAll();
    return ShowSelected;
}

bool QVTextBox::MayLeave(bool validates) { return !validates || Validate(); }

bool QVTextBox::HandleKey(int16_t keyCode) {
    if (keyCode == key::Return) {
        QVReturnKey();
        return true;
    }
    if ((keyCode != key::Up && keyCode != key::Down) || !IsNumberStyle(style_) || Increment == 0.0) return false;
    if (keyCode == key::Up) {
        if (!CanIncrement()) return true;
        EditText(CStr(Variant(fp::Add(Increment, ReadValue(3).toDouble()))));
    } else {
        if (!CanDecrement()) return true;
        EditText(CStr(Variant(fp::Sub(ReadValue(3).toDouble(), Increment))));
    }
    Validate();
    return true;
}

void QVTextBox::AutoUpdateWarning(bool v) {
    autoWarning_ = v;
    if (v) {
        dimShown_ = "!";
        dimBold_ = true;
        dimColour_ = colour::Red;
    } else if (dimShown_ == "!") {
        dimShown_ = dimension_;
        dimBold_ = false;
        dimColour_ = colour::ButtonText;
    }
    Notify();
}

std::vector<QVTextBox::MenuEntry> QVTextBox::ContextMenu() const {
    return {{"mnuAutomaticOn", LoadResStr(Variant(int32_t{9600})), autoActive_},
            {"mnuAutomaticOff", LoadResStr(Variant(int32_t{9601})), !autoActive_}};
}

void QVTextBox::ChooseMenu(const std::string& entryName) {
    if (UCase(entryName) == "MNUAUTOMATICON") AutoUpdateActive(true);
    else if (UCase(entryName) == "MNUAUTOMATICOFF") AutoUpdateActive(false);
    else Raise(err::InvalidCall, Key(), "no menu entry '" + entryName + "'");
}

template <class T>
void QVTextBox::SetUserDef(T& field, T v) {
    if (schema_ != UserDef) {
        if (!UserMode) CurrentPlatform().MsgBox("You must change the Schema to UserDef !", mb::OKOnly, "QVTextBox");
        return;
    }
    Set(field, v);
}
template void QVTextBox::SetUserDef<int16_t>(int16_t&, int16_t);
template void QVTextBox::SetUserDef<bool>(bool&, bool);

void QVTextBox::Schema(int32_t v) {
    schema_ = v;
    switch (v) {
    case 2:
        visRemark_ = true, autoRemark_ = false, widthRemark_ = 1400;
        visCaption_ = true, autoCaption_ = false, widthCaption_ = 705;
        visEq_ = true, editWidth_ = 855, visDim_ = true;
        break;
    case 3:
        visRemark_ = false, autoRemark_ = false;
        visCaption_ = true, autoCaption_ = false, widthCaption_ = 705;
        visEq_ = true, editWidth_ = 855, visDim_ = true;
        break;
    case 4: visRemark_ = visCaption_ = visEq_ = visDim_ = false; break;
    default: break;
    }
    for (const char* name : {"Schema", "VisibleRemark", "WidthRemark", "AutosizeRemark", "VisibleCaption",
                             "WidthCaption", "AutosizeCaption", "VisibleEq", "VisibleDimension"})
        propertyChanges_.emplace_back(name);
    Notify();
}

void QVTextBox::Remark(const std::string& v) {
    Set(remark_, v);
    if (schema_ == UserDef && (v.empty() || v == "-")) VisibleRemark(false);
}

void QVTextBox::Caption(const std::string& v) {
    Set(caption_, v);
    if (schema_ == UserDef && (v.empty() || v == "-")) VisibleCaption(false);
}

void QVTextBox::Dimension(const std::string& v) {
    dimension_ = v;
    if (dimShown_ != "!") dimShown_ = v;
    Notify();
}

namespace {
Variant Colour(uint32_t c) { return Variant(static_cast<int32_t>(c)); }
uint32_t ColourOf(const Variant& v) { return static_cast<uint32_t>(CLng(v)); }
}  // namespace

void QVTextBox::WriteProperties(PropertyBag& bag) const {
    bag.WriteProperty("Schema", Variant(schema_), Variant(int32_t{0}));
    bag.WriteProperty("Remark", Variant(remark_), Variant(""));
    bag.WriteProperty("Caption", Variant(caption_), Variant(""));
    bag.WriteProperty("Dimension", Variant(dimension_), Variant(""));
    bag.WriteProperty("VisibleRemark", Variant(visRemark_), Variant(false));
    bag.WriteProperty("VisibleCaption", Variant(visCaption_), Variant(true));
    bag.WriteProperty("VisibleEq", Variant(visEq_), Variant(true));
    bag.WriteProperty("VisibleDimension", Variant(visDim_), Variant(true));
    bag.WriteProperty("WidthRemark", Variant(widthRemark_), Variant(int16_t{1440}));
    bag.WriteProperty("WidthCaption", Variant(widthCaption_), Variant(int16_t{705}));
    bag.WriteProperty("AutosizeRemark", Variant(autoRemark_), Variant(false));
    bag.WriteProperty("AutosizeCaption", Variant(autoCaption_), Variant(false));
    bag.WriteProperty("EditWidth", Variant(editWidth_), Variant(int32_t{855}));
    bag.WriteProperty("LabelLike", Variant(labelLike_), Variant(false));
    bag.WriteProperty("ScaleHeight", Variant(ScaleHeight), Variant(int16_t{0}));
    bag.WriteProperty("ScaleWidth", Variant(ScaleWidth), Variant(int16_t{0}));
    bag.WriteProperty("CausesValidation", Variant(CausesValidation()), Variant(true));
    bag.WriteProperty("Alignment", Variant(Alignment), Variant(int16_t{0}));
    bag.WriteProperty("BackColor", Colour(BackColor()), Colour(colour::Window));
    bag.WriteProperty("ForeColor", Colour(ForeColor()), Colour(colour::WindowText));
    bag.WriteProperty("Enabled", Variant(Enabled()), Variant(true));
    bag.WriteProperty("Locked", Variant(locked_), Variant(false));
    bag.WriteProperty("DimFac", Variant(DimFac), Variant(1.0));
    bag.WriteProperty("Style", Variant(style_), Variant(int16_t{StyleReal}));
    bag.WriteProperty("FormatString", Variant(format_), Variant(StyleFormat(style_)));
    bag.WriteProperty("Increment", Variant(Increment), Variant(1.0));
    bag.WriteProperty("Min", Variant(Min), Variant(0.0));
    bag.WriteProperty("Max", Variant(Max), Variant(9999.0));
    bag.WriteProperty("MinCheck", Variant(MinCheck), Variant(false));
    bag.WriteProperty("MaxCheck", Variant(MaxCheck), Variant(false));
    bag.WriteProperty("ShowSelected", Variant(ShowSelected), Variant(true));
    bag.WriteProperty("Message", Variant(Message), Variant(""));
    bag.WriteProperty("AutoUpdate", Variant(AutoUpdateEnabled), Variant(false));
    bag.WriteProperty("AutoUpdateActive", Variant(autoActive_), Variant(false));
    bag.WriteProperty("AutoUpdateStyle", Variant(AutoUpdateStyle), Variant(int16_t{0}));
    bag.WriteProperty("AutoUpdateWarningStyle", Variant(AutoUpdateWarningStyle), Variant(int16_t{0}));
    bag.WriteProperty("Font", Variant(FontName + "," + DoubleToText(FontSize)), Variant("MS Sans Serif,8.25"));
    bag.WriteProperty("MouseIcon", Variant(""), Variant(""));
    bag.WriteProperty("MousePointer", Variant(int16_t{0}), Variant(int16_t{0}));
    bag.WriteProperty("OLEDragMode", Variant(int16_t{0}), Variant(int16_t{0}));
    bag.WriteProperty("OLEDropMode", Variant(int16_t{0}), Variant(int16_t{0}));
    bag.WriteProperty("ToolTip", Variant(ToolTipText()), Variant(""));
    bag.WriteProperty("WhatsThisHelpID", Variant(int32_t{0}), Variant(int32_t{0}));
}

void QVTextBox::ReadProperties(const PropertyBag& bag) {
    // The schema's own widths first, then what was stored beside them.
    schema_ = CLng(bag.ReadProperty("Schema", Variant(int32_t{0})));
    remark_ = bag.ReadProperty("Remark", Variant("")).toString();
    caption_ = bag.ReadProperty("Caption", Variant("")).toString();
    Dimension(bag.ReadProperty("Dimension", Variant("")).toString());
    visRemark_ = bag.ReadProperty("VisibleRemark", Variant(false)).toBoolean();
    visCaption_ = bag.ReadProperty("VisibleCaption", Variant(true)).toBoolean();
    visEq_ = bag.ReadProperty("VisibleEq", Variant(true)).toBoolean();
    visDim_ = bag.ReadProperty("VisibleDimension", Variant(true)).toBoolean();
    widthRemark_ = CInt(bag.ReadProperty("WidthRemark", Variant(int16_t{1440})));
    widthCaption_ = CInt(bag.ReadProperty("WidthCaption", Variant(int16_t{705})));
    autoRemark_ = bag.ReadProperty("AutosizeRemark", Variant(false)).toBoolean();
    autoCaption_ = bag.ReadProperty("AutosizeCaption", Variant(false)).toBoolean();
    editWidth_ = CLng(bag.ReadProperty("EditWidth", Variant(int32_t{855})));
    labelLike_ = bag.ReadProperty("LabelLike", Variant(false)).toBoolean();
    ScaleHeight = CInt(bag.ReadProperty("ScaleHeight", Variant(int16_t{0})));
    ScaleWidth = CInt(bag.ReadProperty("ScaleWidth", Variant(int16_t{0})));
    CausesValidation(bag.ReadProperty("CausesValidation", Variant(true)).toBoolean());
    Alignment = CInt(bag.ReadProperty("Alignment", Variant(int16_t{0})));
    BackColor(ColourOf(bag.ReadProperty("BackColor", Colour(colour::Window))));
    ForeColor(ColourOf(bag.ReadProperty("ForeColor", Colour(colour::WindowText))));
    Enabled(bag.ReadProperty("Enabled", Variant(true)).toBoolean());
    locked_ = bag.ReadProperty("Locked", Variant(false)).toBoolean();
    DimFac = CDbl(bag.ReadProperty("DimFac", Variant(1.0)));
    Style(CInt(bag.ReadProperty("Style", Variant(int16_t{StyleReal}))));
    format_ = bag.ReadProperty("FormatString", Variant(StyleFormat(style_))).toString();
    Increment = CDbl(bag.ReadProperty("Increment", Variant(1.0)));
    Min = CDbl(bag.ReadProperty("Min", Variant(0.0)));
    Max = CDbl(bag.ReadProperty("Max", Variant(9999.0)));
    MinCheck = bag.ReadProperty("MinCheck", Variant(false)).toBoolean();
    MaxCheck = bag.ReadProperty("MaxCheck", Variant(false)).toBoolean();
    ShowSelected = bag.ReadProperty("ShowSelected", Variant(true)).toBoolean();
    Message = bag.ReadProperty("Message", Variant("")).toString();
    AutoUpdateEnabled = bag.ReadProperty("AutoUpdate", Variant(false)).toBoolean();
    autoActive_ = bag.ReadProperty("AutoUpdateActive", Variant(false)).toBoolean();
    AutoUpdateStyle = CInt(bag.ReadProperty("AutoUpdateStyle", Variant(int16_t{0})));
    AutoUpdateWarningStyle = CInt(bag.ReadProperty("AutoUpdateWarningStyle", Variant(int16_t{0})));
    const std::string font = bag.ReadProperty("Font", Variant("MS Sans Serif,8.25")).toString();
    const size_t comma = font.rfind(',');
    FontName = comma == std::string::npos ? font : font.substr(0, comma);
    FontSize = comma == std::string::npos ? 8.25 : LeadingNumber(font.substr(comma + 1));
    ToolTipText(bag.ReadProperty("ToolTip", Variant("")).toString());
    Notify();
}

}  // namespace qvrl
