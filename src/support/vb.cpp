#include "support/vb.h"

#include <charconv>
#include <cstdint>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <vector>

#include "support/errors.h"

namespace qvrl {

// ---------------------------------------------------------------- Variant

Variant::Variant(std::vector<Variant> items)
    : v_(ArrayValue{std::make_shared<const std::vector<Variant>>(std::move(items))}) {}

bool ArrayValue::operator==(const ArrayValue& o) const {
    if (items == o.items) return true;
    if (!items || !o.items) return false;
    return *items == *o.items;
}

bool Variant::isNumeric() const noexcept {
    switch (type()) {
    case Type::Integer:
    case Type::Long:
    case Type::Double:
    case Type::Boolean:
    case Type::Date: return true;
    default: return false;
    }
}

const char* TypeName(Variant::Type t) {
    switch (t) {
    case Variant::Type::Empty: return "Empty";
    case Variant::Type::Null: return "Null";
    case Variant::Type::Integer: return "Integer";
    case Variant::Type::Long: return "Long";
    case Variant::Type::Double: return "Double";
    case Variant::Type::Boolean: return "Boolean";
    case Variant::Type::String: return "String";
    case Variant::Type::Date: return "Date";
    case Variant::Type::Array: return "Array";
    case Variant::Type::Object: return "Object";
    }
    return "?";
}

namespace {

bool IsValBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

// Parses the whole of s (blanks around allowed) as a number the way CDbl does.
// Returns false when s is not a number; throws error 6 when it is one that
// does not fit a double.
bool ParseNumber(std::string_view s, double& out) {
    size_t b = 0, e = s.size();
    while (b < e && (s[b] == ' ' || s[b] == '\t')) ++b;
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t')) --e;
    s = s.substr(b, e - b);
    if (s.empty()) return false;

    if (s.size() > 2 && s[0] == '&' && (s[1] == 'H' || s[1] == 'h' || s[1] == 'O' || s[1] == 'o')) {
        const bool hex = s[1] == 'H' || s[1] == 'h';
        uint64_t v = 0;
        size_t digits = 0;
        for (size_t i = 2; i < s.size(); ++i) {
            const char c = s[i];
            int d = -1;
            if (c >= '0' && c <= '9') d = c - '0';
            else if (hex && c >= 'a' && c <= 'f') d = c - 'a' + 10;
            else if (hex && c >= 'A' && c <= 'F') d = c - 'A' + 10;
            if (d < 0 || (!hex && d > 7)) return false;
            v = v * (hex ? 16 : 8) + static_cast<uint64_t>(d);
            if (v > 0xFFFFFFFFull) Raise(err::Overflow);
            ++digits;
        }
        // Like Basic: up to 16 bits the literal is an Integer, else a Long.
        if (v <= 0xFFFF && (hex ? digits <= 4 : digits <= 6)) out = static_cast<int16_t>(static_cast<uint16_t>(v));
        else out = static_cast<int32_t>(static_cast<uint32_t>(v));
        return true;
    }

    size_t i = 0;
    bool neg = false;
    if (s[i] == '+' || s[i] == '-') {
        neg = s[i] == '-';
        ++i;
    }
    std::string body;
    size_t mant = 0;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') body += s[i++], ++mant;
    if (i < s.size() && s[i] == '.') {
        body += s[i++];
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') body += s[i++], ++mant;
    }
    if (mant == 0) return false;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
        size_t j = i + 1;
        std::string ex = "e";
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) ex += s[j++];
        size_t ed = 0;
        while (j < s.size() && s[j] >= '0' && s[j] <= '9') ex += s[j++], ++ed;
        if (ed == 0) return false;
        body += ex;
        i = j;
    }
    if (i != s.size()) return false;
    double v = 0.0;
    auto [p, ec] = std::from_chars(body.data(), body.data() + body.size(), v);
    if (ec == std::errc::result_out_of_range) {
        // Underflow reads as zero; overflow is error 6. A negative exponent,
        // or no whole digit but 0 without one, means underflow.
        const size_t ep = body.find('e');
        bool under;
        if (ep != std::string::npos) under = ep + 1 < body.size() && body[ep + 1] == '-';
        else under = body.find_first_not_of("0") == body.find('.');
        if (!under) Raise(err::Overflow);
        v = 0.0;
    } else if (ec != std::errc() || p != body.data() + body.size()) {
        return false;
    }
    if (std::isinf(v)) Raise(err::Overflow);
    out = neg ? -v : v;
    return true;
}

}  // namespace

double Variant::toDouble() const {
    switch (type()) {
    case Type::Empty: return 0.0;
    case Type::Null: Raise(err::InvalidUseOfNull);
    case Type::Integer: return asInteger();
    case Type::Long: return asLong();
    case Type::Double: return asDouble();
    case Type::Boolean: return asBoolean() ? -1.0 : 0.0;
    case Type::Date: return asDate().serial;
    case Type::Array:
    case Type::Object: Raise(err::TypeMismatch);
    case Type::String: {
        double v = 0.0;
        if (!ParseNumber(asString(), v)) Raise(err::TypeMismatch);
        return v;
    }
    }
    Raise(err::TypeMismatch);
}

std::string Variant::toString() const {
    switch (type()) {
    case Type::Empty: return {};
    case Type::Null: Raise(err::InvalidUseOfNull);
    case Type::Integer: return std::to_string(asInteger());
    case Type::Long: return std::to_string(asLong());
    case Type::Double: return DoubleToText(asDouble());
    case Type::Boolean: return asBoolean() ? "True" : "False";
    case Type::String: return asString();
    case Type::Array:
    case Type::Object: Raise(err::TypeMismatch);
    case Type::Date: {
        const double s = asDate().serial;
        const bool hasTime = s != std::floor(s);
        const bool hasDay = std::floor(s) != 0.0;
        if (hasDay && hasTime) return FormatDate(asDate(), "dd.mm.yyyy hh:nn:ss");
        if (hasTime) return FormatDate(asDate(), "hh:nn:ss");
        return FormatDate(asDate(), "dd.mm.yyyy");
    }
    }
    Raise(err::TypeMismatch);
}

bool Variant::toBoolean() const {
    if (type() == Type::Boolean) return asBoolean();
    if (type() == Type::String) {
        const std::string u = UCase(Trim(asString()));
        if (u == "TRUE") return true;
        if (u == "FALSE") return false;
    }
    return toDouble() != 0.0;
}

// ---------------------------------------------------------------- numbers

double Val(std::string_view s) {
    std::string t;
    t.reserve(s.size());
    for (char c : s)
        if (!IsValBlank(c)) t += c;

    if (t.size() >= 2 && t[0] == '&') {
        const bool hex = t[1] == 'H' || t[1] == 'h';
        const bool oct = t[1] == 'O' || t[1] == 'o';
        size_t i = (hex || oct) ? 2 : 1;
        std::string lit = hex ? "&H" : "&O";
        for (; i < t.size(); ++i) {
            const char c = t[i];
            const bool ok = hex ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : (c >= '0' && c <= '7');
            if (!ok) break;
            lit += c;
        }
        double v = 0.0;
        if (lit.size() > 2 && ParseNumber(lit, v)) return v;
        return 0.0;
    }

    size_t i = 0;
    std::string num;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) num += t[i++];
    size_t mant = 0;
    while (i < t.size() && t[i] >= '0' && t[i] <= '9') num += t[i++], ++mant;
    if (i < t.size() && t[i] == '.') {
        num += t[i++];
        while (i < t.size() && t[i] >= '0' && t[i] <= '9') num += t[i++], ++mant;
    }
    if (mant == 0) return 0.0;
    if (i < t.size() && (t[i] == 'e' || t[i] == 'E' || t[i] == 'd' || t[i] == 'D')) {
        size_t j = i + 1;
        std::string ex = "e";
        if (j < t.size() && (t[j] == '+' || t[j] == '-')) ex += t[j++];
        size_t ed = 0;
        while (j < t.size() && t[j] >= '0' && t[j] <= '9') ex += t[j++], ++ed;
        if (ed > 0) num += ex;
    }
    double v = 0.0;
    if (!ParseNumber(num, v)) return 0.0;
    return v;
}

namespace {
double RoundHalfEven(double v) {
    if (std::isnan(v)) Raise(err::Overflow);
    const double r = std::round(v);  // half away from zero
    if (std::fabs(v - std::trunc(v)) == 0.5) {
        // exact half: go to the even neighbour
        const double t = std::trunc(v);
        return std::fmod(t, 2.0) == 0.0 ? t : r;
    }
    return r;
}
}  // namespace

int16_t CInt(double v) {
    const double r = RoundHalfEven(v);
    if (!(r >= -32768.0 && r <= 32767.0)) Raise(err::Overflow);
    return static_cast<int16_t>(r);
}

int16_t CInt(const Variant& v) { return CInt(v.toDouble()); }

int32_t CLng(double v) {
    const double r = RoundHalfEven(v);
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) Raise(err::Overflow);
    return static_cast<int32_t>(r);
}

int32_t CLng(const Variant& v) { return CLng(v.toDouble()); }

namespace {
// Above this a Double skips integers, so it would hold another number.
constexpr uint64_t kExactDoubleLimit = uint64_t{1} << 53;

[[noreturn]] void IntegerOverflow(const std::string& text) {
    Raise(err::Overflow, {}, "Overflow: " + text + " lies outside every Basic number type (beyond 2^53 in size)");
}
}  // namespace

Variant VariantFromInteger(int64_t v) {
    if (v >= INT32_MIN && v <= INT32_MAX) return Variant(static_cast<int32_t>(v));
    // The magnitude as unsigned, so that INT64_MIN does not overflow.
    const uint64_t mag = v < 0 ? uint64_t{0} - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
    if (mag > kExactDoubleLimit) IntegerOverflow(std::to_string(v));
    return Variant(static_cast<double>(v));
}

Variant VariantFromInteger(uint64_t v) {
    if (v <= static_cast<uint64_t>(INT32_MAX)) return Variant(static_cast<int32_t>(v));
    if (v > kExactDoubleLimit) IntegerOverflow(std::to_string(v));
    return Variant(static_cast<double>(v));
}

Variant VariantFromIntegerText(std::string_view t) {
    const bool neg = !t.empty() && t[0] == '-';
    const std::string_view digits = t.substr(neg ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos)
        Raise(err::TypeMismatch, {}, "Type mismatch: '" + std::string(t) + "' is no whole number");
    uint64_t mag = 0;
    const auto [p, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), mag);
    if (ec != std::errc() || p != digits.data() + digits.size() || mag > kExactDoubleLimit)
        IntegerOverflow(std::string(t));
    const auto m = static_cast<int64_t>(mag);  // at most 2^53 here
    return VariantFromInteger(neg ? -m : m);
}

double CDbl(const Variant& v) { return v.toDouble(); }
std::string CStr(const Variant& v) { return v.toString(); }

bool IsNumeric(std::string_view s) {
    double v = 0.0;
    try {
        return ParseNumber(s, v);
    } catch (const RuntimeError&) {
        return true;  // a number, only too large for a double
    }
}

bool IsNumeric(const Variant& v) {
    switch (v.type()) {
    case Variant::Type::Empty: return true;
    case Variant::Type::Null: return false;
    case Variant::Type::Date:
    case Variant::Type::Array:
    case Variant::Type::Object: return false;
    case Variant::Type::String: return IsNumeric(std::string_view(v.asString()));
    default: return true;
    }
}

// ---------------------------------------------------------------- decimal digits

namespace {

// A non-negative decimal number as digits with the position of the point:
// value = 0.d1 d2 d3 ... * 10^point.
struct Decimal {
    std::string digits;  // no leading zeros unless the value is zero ("")
    int point = 0;
};

// The value taken to 15 significant digits.
Decimal ToDecimal15(double v) {
    Decimal d;
    v = std::fabs(v);
    if (!std::isfinite(v)) Raise(err::Overflow);  // e.g. a percent picture on a huge value
    if (v == 0.0) return d;
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", v);
    // buf: d.dddddddddddddde[+-]XX
    std::string s(buf);
    const size_t epos = s.find('e');
    d.digits = s.substr(0, 1) + s.substr(2, epos - 2);
    d.point = std::atoi(s.c_str() + epos + 1) + 1;
    while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
    return d;
}

// Round half away from zero, keeping `places` digits after the point.
void RoundAt(Decimal& d, int places) {
    if (d.digits.empty()) return;
    const int keep = d.point + places;  // digits to keep
    if (keep >= static_cast<int>(d.digits.size())) return;
    if (keep < 0) {
        d.digits.clear();
        d.point = 0;
        return;
    }
    const bool up = d.digits[static_cast<size_t>(keep)] >= '5';
    d.digits.resize(static_cast<size_t>(keep));
    if (up) {
        int i = keep - 1;
        while (i >= 0 && d.digits[static_cast<size_t>(i)] == '9') {
            d.digits[static_cast<size_t>(i)] = '0';
            --i;
        }
        if (i < 0) {
            d.digits.insert(d.digits.begin(), '1');
            ++d.point;
        } else {
            ++d.digits[static_cast<size_t>(i)];
        }
    }
    while (!d.digits.empty() && d.digits.back() == '0') d.digits.pop_back();
    if (d.digits.empty()) d.point = 0;
}

// Digit at decimal position k (k = 1 first after the point, k = 0 units, -1 tens ...).
char DigitAt(const Decimal& d, int k) {
    const int idx = d.point + k - 1;
    if (idx < 0 || idx >= static_cast<int>(d.digits.size())) return '0';
    return d.digits[static_cast<size_t>(idx)];
}

std::string IntegerDigits(const Decimal& d) {
    if (d.digits.empty() || d.point <= 0) return {};
    std::string r;
    for (int k = -(d.point - 1); k <= 0; ++k) r += DigitAt(d, k);
    return r;
}

// One section of a number picture, split into its parts.
struct Token {
    enum Kind { Digit0, DigitHash, Point, Literal, Exp } kind;
    std::string text;  // Literal text, or Exp marker ("e+", "E-", ...)
};

struct Section {
    std::vector<Token> tokens;
    bool thousands = false;
    int scale = 0;       // commas before the point that divide by 1000
    bool percent = false;
};

Section ParseSection(std::string_view pic) {
    Section sec;
    std::vector<Token>& t = sec.tokens;
    bool seenPoint = false, seenExp = false;
    for (size_t i = 0; i < pic.size(); ++i) {
        const char c = pic[i];
        if (c == '"') {
            const size_t j = pic.find('"', i + 1);
            const size_t end = j == std::string_view::npos ? pic.size() : j;
            t.push_back({Token::Literal, std::string(pic.substr(i + 1, end - i - 1))});
            i = end;
        } else if (c == '\\') {
            if (i + 1 < pic.size()) t.push_back({Token::Literal, std::string(1, pic[++i])});
        } else if (c == '0') {
            t.push_back({Token::Digit0, {}});
        } else if (c == '#') {
            t.push_back({Token::DigitHash, {}});
        } else if (c == '.' && !seenPoint && !seenExp) {
            seenPoint = true;
            t.push_back({Token::Point, {}});
        } else if ((c == 'e' || c == 'E') && !seenExp && i + 1 < pic.size() &&
                   (pic[i + 1] == '+' || pic[i + 1] == '-')) {
            seenExp = true;
            t.push_back({Token::Exp, std::string(pic.substr(i, 2))});
            ++i;
        } else if (c == ',' && !seenPoint && !seenExp) {
            // Between digit placeholders a comma groups thousands; directly before
            // the point or the end of the digits it scales by 1000.
            size_t j = i + 1;
            while (j < pic.size() && pic[j] == ',') ++j;
            const bool digitAfter = j < pic.size() && (pic[j] == '0' || pic[j] == '#');
            bool digitBefore = false;
            for (const auto& tk : t)
                if (tk.kind == Token::Digit0 || tk.kind == Token::DigitHash) digitBefore = true;
            if (digitBefore && digitAfter) {
                sec.thousands = true;
            } else if (digitBefore) {
                sec.scale += static_cast<int>(j - i);
            } else {
                t.push_back({Token::Literal, ","});
                continue;
            }
            i = j - 1;
        } else {
            if (c == '%') sec.percent = true;
            t.push_back({Token::Literal, std::string(1, c)});
        }
    }
    return sec;
}

std::string GroupThousands(const std::string& digits) {
    std::string r;
    const size_t n = digits.size();
    for (size_t i = 0; i < n; ++i) {
        r += digits[i];
        const size_t left = n - 1 - i;
        if (left > 0 && left % 3 == 0) r += ',';
    }
    return r;
}

// Fills the integer placeholders (tokens [0, end)) from the right with the digits;
// the leftmost placeholder takes whatever digits are left over.
std::string FillInteger(const std::vector<Token>& toks, size_t end, std::string digits, bool thousands) {
    size_t required = 0, holders = 0;
    bool zeroSeen = false;
    for (size_t i = 0; i < end; ++i) {
        if (toks[i].kind != Token::Digit0 && toks[i].kind != Token::DigitHash) continue;
        ++holders;
        if (toks[i].kind == Token::Digit0) zeroSeen = true;
        if (zeroSeen) ++required;  // every place from the first "0" on is shown
    }
    if (digits.size() < required) digits.insert(0, required - digits.size(), '0');

    std::string r;
    if (thousands || holders == 0) {
        // Grouped digits stand where the first placeholder is.
        bool placed = holders == 0;
        for (size_t i = 0; i < end; ++i) {
            if (toks[i].kind == Token::Literal) r += toks[i].text;
            else if (!placed && (toks[i].kind == Token::Digit0 || toks[i].kind == Token::DigitHash)) {
                r += thousands ? GroupThousands(digits) : digits;
                placed = true;
            }
        }
        if (holders == 0) r += digits;
        return r;
    }
    std::vector<std::string> parts(end);
    size_t pos = digits.size();
    size_t seen = 0;
    for (size_t i = end; i-- > 0;) {
        const Token& tk = toks[i];
        if (tk.kind == Token::Literal) {
            parts[i] = tk.text;
            continue;
        }
        if (tk.kind != Token::Digit0 && tk.kind != Token::DigitHash) continue;
        ++seen;
        if (seen == holders) {
            parts[i] = digits.substr(0, pos);
            pos = 0;
        } else if (pos > 0) {
            parts[i] = digits.substr(pos - 1, 1);
            --pos;
        }
    }
    for (const auto& p : parts) r += p;
    return r;
}

std::string FormatFixed(double v, const Section& sec) {
    const auto& t = sec.tokens;
    size_t pointIdx = t.size();
    size_t lastDigit = 0;
    bool anyDigit = false;
    for (size_t i = 0; i < t.size(); ++i) {
        if (t[i].kind == Token::Point && pointIdx == t.size()) pointIdx = i;
        if (t[i].kind == Token::Digit0 || t[i].kind == Token::DigitHash) lastDigit = i, anyDigit = true;
    }
    // decimal placeholders
    std::vector<size_t> decPos;
    for (size_t i = pointIdx + 1; i < t.size(); ++i)
        if (t[i].kind == Token::Digit0 || t[i].kind == Token::DigitHash) decPos.push_back(i);
    const int places = static_cast<int>(decPos.size());

    if (sec.percent) v *= 100.0;
    for (int k = 0; k < sec.scale; ++k) v /= 1000.0;
    Decimal d = ToDecimal15(v);
    RoundAt(d, places);

    // integer part ends where the point is, or after the last digit holder
    size_t intEnd = pointIdx;
    if (pointIdx == t.size()) intEnd = anyDigit ? lastDigit + 1 : t.size();
    std::string r = FillInteger(t, intEnd, IntegerDigits(d), sec.thousands);

    if (pointIdx < t.size()) {
        // trailing "#" places drop their zeros
        std::vector<char> frac(decPos.size());
        for (size_t k = 0; k < decPos.size(); ++k) frac[k] = DigitAt(d, static_cast<int>(k) + 1);
        size_t shown = decPos.size();
        while (shown > 0 && t[decPos[shown - 1]].kind == Token::DigitHash && frac[shown - 1] == '0') --shown;
        r += '.';
        size_t k = 0;
        for (size_t i = pointIdx + 1; i < t.size(); ++i) {
            if (t[i].kind == Token::Literal) r += t[i].text;
            else if (t[i].kind == Token::Digit0 || t[i].kind == Token::DigitHash) {
                if (k < shown) r += frac[k];
                ++k;
            }
        }
    } else {
        for (size_t i = intEnd; i < t.size(); ++i)
            if (t[i].kind == Token::Literal) r += t[i].text;
    }
    return r;
}

std::string FormatScientific(double v, const Section& sec) {
    const auto& t = sec.tokens;
    size_t expIdx = 0;
    while (t[expIdx].kind != Token::Exp) ++expIdx;
    size_t pointIdx = expIdx;
    for (size_t i = 0; i < expIdx; ++i)
        if (t[i].kind == Token::Point) {
            pointIdx = i;
            break;
        }
    int intHolders = 0, decHolders = 0, expZeros = 0;
    for (size_t i = 0; i < expIdx; ++i) {
        if (t[i].kind != Token::Digit0 && t[i].kind != Token::DigitHash) continue;
        if (i < pointIdx) ++intHolders;
        else ++decHolders;
    }
    size_t expEnd = expIdx + 1;
    while (expEnd < t.size() && (t[expEnd].kind == Token::Digit0 || t[expEnd].kind == Token::DigitHash)) {
        if (t[expEnd].kind == Token::Digit0) ++expZeros;
        ++expEnd;
    }
    if (intHolders == 0) intHolders = 1;

    Decimal d = ToDecimal15(v);
    int exponent = 0;
    if (!d.digits.empty()) {
        // mantissa with intHolders digits before its point
        exponent = d.point - intHolders;
        d.point = intHolders;
        RoundAt(d, decHolders);
        if (d.point > intHolders) {  // rounded up to the next power of ten
            exponent += d.point - intHolders;
            d.point = intHolders;
        }
    }
    std::string r;
    std::string ip = IntegerDigits(d);
    if (ip.size() < static_cast<size_t>(intHolders)) ip.insert(0, static_cast<size_t>(intHolders) - ip.size(), '0');
    for (size_t i = 0; i < pointIdx && i < expIdx; ++i)
        if (t[i].kind == Token::Literal) r += t[i].text;
    r += ip;
    if (pointIdx < expIdx) {
        r += '.';
        for (int k = 1; k <= decHolders; ++k) r += DigitAt(d, k);
    }
    const std::string& mark = t[expIdx].text;
    r += mark[0];
    if (exponent < 0) r += '-';
    else if (mark[1] == '+') r += '+';
    std::string ed = std::to_string(std::abs(exponent));
    if (ed.size() < static_cast<size_t>(expZeros)) ed.insert(0, static_cast<size_t>(expZeros) - ed.size(), '0');
    r += ed;
    for (size_t i = expEnd; i < t.size(); ++i)
        if (t[i].kind == Token::Literal) r += t[i].text;
    return r;
}

bool HasExp(const Section& s) {
    for (const auto& t : s.tokens)
        if (t.kind == Token::Exp) return true;
    return false;
}

std::string FormatSection(double absValue, const Section& sec) {
    return HasExp(sec) ? FormatScientific(absValue, sec) : FormatFixed(absValue, sec);
}

std::vector<std::string_view> SplitSections(std::string_view pic) {
    std::vector<std::string_view> r;
    size_t start = 0;
    bool quoted = false;
    for (size_t i = 0; i < pic.size(); ++i) {
        if (pic[i] == '"') quoted = !quoted;
        else if (pic[i] == '\\') ++i;
        else if (pic[i] == ';' && !quoted) {
            r.push_back(pic.substr(start, i - start));
            start = i + 1;
        }
    }
    r.push_back(pic.substr(start));
    return r;
}

// General number text used for an empty picture.
std::string GeneralNumber(double v) { return DoubleToText(v); }

}  // namespace

std::string Format(double value, std::string_view picture) {
    if (std::isnan(value) || std::isinf(value)) Raise(err::Overflow);
    if (picture.empty()) return GeneralNumber(value);
    const auto sections = SplitSections(picture);
    const bool negative = std::signbit(value) && value != 0.0;
    if (negative && sections.size() >= 2 && !sections[1].empty())
        return FormatSection(-value, ParseSection(sections[1]));
    if (value == 0.0 && sections.size() >= 3 && !sections[2].empty())
        return FormatSection(0.0, ParseSection(sections[2]));
    const std::string body = FormatSection(std::fabs(value), ParseSection(sections[0]));
    // A negative value keeps its sign even where it rounds to zero.
    return negative ? "-" + body : body;
}

std::string Format(const Variant& value, std::string_view picture) {
    switch (value.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null: return {};
    case Variant::Type::Date: return FormatDate(value.asDate(), picture);
    case Variant::Type::Array: Raise(err::TypeMismatch);
    case Variant::Type::String: {
        double v = 0.0;
        if (!ParseNumber(value.asString(), v)) return value.asString();
        return Format(v, picture);
    }
    default: return Format(value.toDouble(), picture);
    }
}

// ---------------------------------------------------------------- dates

namespace {
constexpr int64_t kSerialEpochDays = -25569;  // 1899-12-30 relative to 1970-01-01

int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

void CivilFromDays(int64_t z, int64_t& y, unsigned& m, unsigned& d) {
    z += 719468;
    const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    y = static_cast<int64_t>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = doy - (153 * mp + 2) / 5 + 1;
    m = mp < 10 ? mp + 3 : mp - 9;
    y += m <= 2;
}

std::string Pad(int64_t v, size_t width) {
    std::string s = std::to_string(v);
    if (s.size() < width) s.insert(0, width - s.size(), '0');
    return s;
}
}  // namespace

DateValue DateFromParts(int year, int month, int day, int hour, int minute, int second) {
    const int64_t days = DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) - kSerialEpochDays;
    const double t = (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
    return DateValue{static_cast<double>(days) + t};
}

DateValue Now() {
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    localtime_r(&now, &tm);
    return DateFromParts(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
}

std::string FormatDate(DateValue dv, std::string_view pic) {
    if (std::isnan(dv.serial) || std::isinf(dv.serial) || std::fabs(dv.serial) > 3e6) Raise(err::Overflow);
    const double dayPart = std::floor(dv.serial);
    int64_t secs = std::llround((dv.serial - dayPart) * 86400.0);
    int64_t days = static_cast<int64_t>(dayPart);
    if (secs >= 86400) {
        secs -= 86400;
        ++days;
    }
    int64_t y = 0;
    unsigned m = 0, d = 0;
    CivilFromDays(days + kSerialEpochDays, y, m, d);
    const int64_t hh = secs / 3600, nn = (secs / 60) % 60, ss = secs % 60;

    std::string r;
    bool afterHour = false;
    for (size_t i = 0; i < pic.size();) {
        const char c = pic[i];
        size_t n = 1;
        while (i + n < pic.size() && (pic[i + n] == c || (std::tolower(static_cast<unsigned char>(pic[i + n])) == std::tolower(static_cast<unsigned char>(c)) && std::isalpha(static_cast<unsigned char>(c)))))
            ++n;
        const char lc = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        if (c == '"') {
            const size_t j = pic.find('"', i + 1);
            const size_t end = j == std::string_view::npos ? pic.size() : j;
            r += pic.substr(i + 1, end - i - 1);
            i = end + 1;
            continue;
        }
        if (c == '\\' && i + 1 < pic.size()) {
            r += pic[i + 1];
            i += 2;
            continue;
        }
        switch (lc) {
        case 'd': r += Pad(d, n >= 2 ? 2 : 1); break;
        case 'y': r += n >= 3 ? Pad(y, 4) : Pad(y % 100, 2); break;
        case 'h': r += Pad(hh, n >= 2 ? 2 : 1); afterHour = true; break;
        case 'n': r += Pad(nn, n >= 2 ? 2 : 1); break;
        case 's': r += Pad(ss, n >= 2 ? 2 : 1); break;
        case 'm':
            if (afterHour) {
                r += Pad(nn, n >= 2 ? 2 : 1);
                afterHour = false;
            } else {
                r += Pad(m, n >= 2 ? 2 : 1);
            }
            break;
        default: r.append(n, c); break;
        }
        i += n;
    }
    return r;
}

// ---------------------------------------------------------------- number to text

std::string DoubleToText(double v) {
    if (std::isnan(v) || std::isinf(v)) Raise(err::Overflow);
    if (v == 0.0) return "0";
    Decimal d = ToDecimal15(v);
    const int e10 = d.point - 1;
    std::string r = v < 0 ? "-" : "";
    if (e10 >= -5 && e10 < 15) {
        if (d.point <= 0) {
            r += "0.";
            r.append(static_cast<size_t>(-d.point), '0');
            r += d.digits;
        } else if (static_cast<size_t>(d.point) >= d.digits.size()) {
            r += d.digits;
            r.append(static_cast<size_t>(d.point) - d.digits.size(), '0');
        } else {
            r += d.digits.substr(0, static_cast<size_t>(d.point));
            r += '.';
            r += d.digits.substr(static_cast<size_t>(d.point));
        }
        return r;
    }
    r += d.digits[0];
    if (d.digits.size() > 1) r += "." + d.digits.substr(1);
    r += e10 < 0 ? "E-" : "E+";
    r += Pad(std::abs(e10), 2);
    return r;
}

// ---------------------------------------------------------------- text

std::string LTrim(std::string_view s) {
    size_t b = 0;
    while (b < s.size() && s[b] == ' ') ++b;
    return std::string(s.substr(b));
}

std::string RTrim(std::string_view s) {
    size_t e = s.size();
    while (e > 0 && s[e - 1] == ' ') --e;
    return std::string(s.substr(0, e));
}

std::string Trim(std::string_view s) { return LTrim(RTrim(s)); }

std::string UCase(std::string_view s) {
    std::string r(s);
    for (size_t i = 0; i < r.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(r[i]);
        if (c >= 'a' && c <= 'z') {
            r[i] = static_cast<char>(c - 32);
        } else if (c == 0xC3 && i + 1 < r.size()) {
            // Latin-1 small letters à..þ (not ÷) in UTF-8
            const unsigned char n = static_cast<unsigned char>(r[i + 1]);
            if (n >= 0xA0 && n <= 0xBE && n != 0xB7) r[i + 1] = static_cast<char>(n - 0x20);
            ++i;
        }
    }
    return r;
}

std::string LCase(std::string_view s) {
    std::string r(s);
    for (size_t i = 0; i < r.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(r[i]);
        if (c >= 'A' && c <= 'Z') {
            r[i] = static_cast<char>(c + 32);
        } else if (c == 0xC3 && i + 1 < r.size()) {
            const unsigned char n = static_cast<unsigned char>(r[i + 1]);
            if (n >= 0x80 && n <= 0x9E && n != 0x97) r[i + 1] = static_cast<char>(n + 0x20);
            ++i;
        }
    }
    return r;
}

int32_t InStr(std::string_view s, std::string_view what, int32_t start) {
    if (start < 1) Raise(err::InvalidCall);
    if (static_cast<size_t>(start) > s.size() + 1) return 0;
    const size_t p = s.find(what, static_cast<size_t>(start - 1));
    return p == std::string_view::npos ? 0 : static_cast<int32_t>(p + 1);
}

int32_t InStrText(std::string_view s, std::string_view what, int32_t start) {
    return InStr(UCase(s), UCase(what), start);
}

}  // namespace qvrl
