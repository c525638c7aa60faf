#include "controls/QVLabel.h"

#include "support/vb.h"

namespace qvrl {

std::string SymbolToGreek(const std::string& ch) {
    static const char* const lower[26] = {"α", "β", "χ", "δ", "ε", "φ", "γ", "η", "ι", "ϕ", "κ", "λ", "μ",
                                          "ν", "ο", "π", "θ", "ρ", "σ", "τ", "υ", "ϖ", "ω", "ξ", "ψ", "ζ"};
    static const char* const upper[26] = {"Α", "Β", "Χ", "Δ", "Ε", "Φ", "Γ", "Η", "Ι", "ϑ", "Κ", "Λ", "Μ",
                                          "Ν", "Ο", "Π", "Θ", "Ρ", "Σ", "Τ", "Υ", "ς", "Ω", "Ξ", "Ψ", "Ζ"};
    if (ch.size() != 1) return ch;
    const char c = ch[0];
    if (c >= 'a' && c <= 'z') return lower[c - 'a'];
    if (c >= 'A' && c <= 'Z') return upper[c - 'A'];
    return ch;
}

void QVLabel::Caption(const std::string& v) {
    caption_ = v;
    runs_.clear();
    size_t i = 0;
    while (i < v.size()) {
        const size_t mark = v.find("\\g", i);
        const std::string plain = v.substr(i, mark == std::string::npos ? std::string::npos : mark - i);
        if (!plain.empty()) runs_.push_back({plain, false, FontName, plain});
        if (mark == std::string::npos) break;
        size_t k = mark + 2;
        if (k >= v.size()) break;
        size_t end = k + 1;
        while (end < v.size() && (static_cast<unsigned char>(v[end]) & 0xC0) == 0x80) ++end;
        const std::string ch = v.substr(k, end - k);
        runs_.push_back({ch, true, "Symbol", SymbolToGreek(ch)});
        i = end;
    }
    Notify();
}

void QVLabel::WriteProperties(PropertyBag& bag) const {
    bag.WriteProperty("Caption", Variant(caption_), Variant(""));
    bag.WriteProperty("Alignment", Variant(Alignment), Variant(int16_t{0}));
    bag.WriteProperty("BackColor", Variant(static_cast<int32_t>(BackColor())),
                      Variant(static_cast<int32_t>(colour::ButtonFace)));
    bag.WriteProperty("ForeColor", Variant(static_cast<int32_t>(ForeColor())),
                      Variant(static_cast<int32_t>(colour::ButtonText)));
    bag.WriteProperty("Font", Variant(FontName + "," + DoubleToText(FontSize)), Variant("MS Sans Serif,8.25"));
    bag.WriteProperty("BackStyle", Variant(BackStyle), Variant(int16_t{1}));
    bag.WriteProperty("BorderStyle", Variant(BorderStyle), Variant(int16_t{0}));
    bag.WriteProperty("Enabled", Variant(Enabled()), Variant(true));
    bag.WriteProperty("MouseIcon", Variant(""), Variant(""));
    bag.WriteProperty("MousePointer", Variant(int16_t{0}), Variant(int16_t{0}));
    bag.WriteProperty("Autosize", Variant(AutoSize), Variant(false));
}

void QVLabel::ReadProperties(const PropertyBag& bag) {
    const std::string font = bag.ReadProperty("Font", Variant("MS Sans Serif,8.25")).toString();
    const size_t comma = font.rfind(',');
    FontName = font.substr(0, comma);
    FontSize = comma == std::string::npos ? 8.25 : Val(font.substr(comma + 1));
    Alignment = CInt(bag.ReadProperty("Alignment", Variant(int16_t{0})));
    BackColor(static_cast<uint32_t>(CLng(bag.ReadProperty("BackColor", Variant(static_cast<int32_t>(colour::ButtonFace))))));
    ForeColor(static_cast<uint32_t>(CLng(bag.ReadProperty("ForeColor", Variant(static_cast<int32_t>(colour::ButtonText))))));
    BackStyle = CInt(bag.ReadProperty("BackStyle", Variant(int16_t{1})));
    BorderStyle = CInt(bag.ReadProperty("BorderStyle", Variant(int16_t{0})));
    Enabled(bag.ReadProperty("Enabled", Variant(true)).toBoolean());
    AutoSize = bag.ReadProperty("Autosize", Variant(false)).toBoolean();
    Caption(bag.ReadProperty("Caption", Variant("")).toString());
}

std::string QVFrame::DrawnCaption() const {
    std::string s;
    for (char c : caption_)
        if (c != '&') s += c;
    return s.empty() ? std::string(" ") : s;
}

void QVFrame::WriteProperties(PropertyBag& bag) const {
    bag.WriteProperty("Caption", Variant(caption_), Variant(DefaultCaption));
    bag.WriteProperty("Enabled", Variant(Enabled()), Variant(true));
    bag.WriteProperty("BackColor", Variant(static_cast<int32_t>(BackColor())),
                      Variant(static_cast<int32_t>(colour::ButtonFace)));
    bag.WriteProperty("ForeColor", Variant(static_cast<int32_t>(ForeColor())),
                      Variant(static_cast<int32_t>(colour::ButtonText)));
    bag.WriteProperty("Font", Variant(FontName + "," + DoubleToText(FontSize)), Variant("MS Sans Serif,8.25"));
    bag.WriteProperty("BackStyle", Variant(BackStyle), Variant(int16_t{1}));
    bag.WriteProperty("BorderStyle", Variant(BorderStyle), Variant(int16_t{0}));
}

void QVFrame::ReadProperties(const PropertyBag& bag) {
    Caption(bag.ReadProperty("Caption", Variant(DefaultCaption)).toString());
    Enabled(bag.ReadProperty("Enabled", Variant(true)).toBoolean());
    BackColor(static_cast<uint32_t>(CLng(bag.ReadProperty("BackColor", Variant(static_cast<int32_t>(colour::ButtonFace))))));
    ForeColor(static_cast<uint32_t>(CLng(bag.ReadProperty("ForeColor", Variant(static_cast<int32_t>(colour::ButtonText))))));
    const std::string font = bag.ReadProperty("Font", Variant("MS Sans Serif,8.25")).toString();
    const size_t comma = font.rfind(',');
    FontName = font.substr(0, comma);
    FontSize = comma == std::string::npos ? 8.25 : Val(font.substr(comma + 1));
    BackStyle = CInt(bag.ReadProperty("BackStyle", Variant(int16_t{1})));
    BorderStyle = CInt(bag.ReadProperty("BorderStyle", Variant(int16_t{0})));
}

}  // namespace qvrl
