#pragma once
// Basic semantics in one place: the tagged value, numeric conversion with
// Basic's rounding and overflow rules, picture formatting, and the small
// text helpers. Nothing else in the project re-implements these.

#include <cstdint>
#include <string>
#include <string_view>
#include <memory>
#include <variant>
#include <vector>

namespace qvrl {

// A date as Basic keeps it: days since 1899-12-30, the fraction is the time.
struct DateValue {
    double serial = 0.0;
    bool operator==(const DateValue&) const = default;
};

struct NullValue {
    bool operator==(const NullValue&) const = default;
};

class Variant;
// An array held in a tagged value, as list members hand their lists over.
// Shared and immutable: copies are cheap, equality compares the elements.
struct ArrayValue {
    std::shared_ptr<const std::vector<Variant>> items;
    bool operator==(const ArrayValue& o) const;
};

class Dispatchable;
// An object reference; an empty one is Nothing. Two references are equal when
// they reach the same object (Basic's Is), even through different wrappers.
// Defined beside Dispatchable, which knows what an object's identity is.
struct ObjectValue {
    std::shared_ptr<Dispatchable> ref;
    bool operator==(const ObjectValue& o) const;
};

// The tagged value of the automation interface.
class Variant {
public:
    enum class Type { Empty, Null, Integer, Long, Double, Boolean, String, Date, Array, Object };

    Variant() = default;
    Variant(int16_t v) : v_(v) {}
    Variant(int32_t v) : v_(v) {}
    Variant(double v) : v_(v) {}
    Variant(bool v) : v_(v) {}
    Variant(std::string v) : v_(std::move(v)) {}
    Variant(const char* v) : v_(std::string(v)) {}
    Variant(DateValue v) : v_(v) {}
    explicit Variant(std::vector<Variant> items);
    explicit Variant(std::shared_ptr<Dispatchable> object) : v_(ObjectValue{std::move(object)}) {}
    static Variant Null() { Variant r; r.v_ = NullValue{}; return r; }
    static Variant Nothing() { return Variant(std::shared_ptr<Dispatchable>()); }

    Type type() const noexcept { return static_cast<Type>(v_.index()); }
    bool isEmpty() const noexcept { return type() == Type::Empty; }
    bool isNull() const noexcept { return type() == Type::Null; }
    bool isNumeric() const noexcept;  // Integer, Long, Double, Boolean, Date
    bool isObject() const noexcept { return type() == Type::Object; }
    bool isNothing() const noexcept { return isObject() && !asObject(); }

    int16_t asInteger() const { return std::get<int16_t>(v_); }
    int32_t asLong() const { return std::get<int32_t>(v_); }
    double asDouble() const { return std::get<double>(v_); }
    bool asBoolean() const { return std::get<bool>(v_); }
    const std::string& asString() const { return std::get<std::string>(v_); }
    DateValue asDate() const { return std::get<DateValue>(v_); }
    const std::vector<Variant>& asArray() const { return *std::get<ArrayValue>(v_).items; }
    const std::shared_ptr<Dispatchable>& asObject() const { return std::get<ObjectValue>(v_).ref; }

    // Basic's CDbl / CStr / CBool: Empty is 0 / "" / False, Null is error 94,
    // a text that is not a number is error 13, and so is an object.
    double toDouble() const;
    std::string toString() const;
    bool toBoolean() const;

    bool operator==(const Variant&) const = default;

private:
    std::variant<std::monostate, NullValue, int16_t, int32_t, double, bool, std::string, DateValue, ArrayValue,
                 ObjectValue>
        v_;
};

const char* TypeName(Variant::Type t);

// Numeric prefix of a text; blanks, tabs and line feeds are skipped anywhere,
// "&H"/"&O" prefixes are read, "." is the only decimal mark. Overflow is error 6.
double Val(std::string_view s);

// Round half to even into 16 / 32 bits; out of range is error 6; a text is
// converted as CDbl converts it (error 13 when it is not a number).
int16_t CInt(double v);
int16_t CInt(const Variant& v);
int32_t CLng(double v);
int32_t CLng(const Variant& v);
double CDbl(const Variant& v);

// A whole number from outside (a JSON number, a Python int, a command-line
// word) as the tagged value a Basic host would pass: a Long within 32 bits,
// else a Double while a Double still holds it exactly (|v| <= 2^53); beyond
// that no Basic type holds it, and it is error 6 rather than a rounded or
// wrapped value.
Variant VariantFromInteger(int64_t v);
Variant VariantFromInteger(uint64_t v);
// The same for decimal text: an optional "-" and digits only, of any length;
// anything else is error 13.
Variant VariantFromIntegerText(std::string_view digits);
std::string CStr(const Variant& v);

// True when the text converts completely to a number (blanks around allowed).
bool IsNumeric(std::string_view s);
bool IsNumeric(const Variant& v);
inline bool IsNumeric(const std::string& s) { return IsNumeric(std::string_view(s)); }
inline bool IsNumeric(const char* s) { return IsNumeric(std::string_view(s)); }

// Picture formatting. Number pictures: "0", "#", ".", ",", "%", "e+"/"e-"/"E+"/"E-",
// literals (quoted, or after "\"), up to three sections split by ";".
// Date pictures: d dd m mm yyyy yy h hh n nn s ss (m after h is minutes).
// The value is first taken to 15 significant digits, then rounded half away
// from zero at the picture's last place; the decimal mark is always ".".
std::string Format(double value, std::string_view picture);
std::string Format(const Variant& value, std::string_view picture);
std::string FormatDate(DateValue d, std::string_view picture);

// Basic's text conversion of a double: at most 15 significant digits,
// exponent form outside 1e-5 .. 1e15.
std::string DoubleToText(double v);

std::string Trim(std::string_view s);
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);
std::string UCase(std::string_view s);  // ASCII and Latin-1 letters in UTF-8
std::string LCase(std::string_view s);
// 1-based position of what in s at or after start, 0 when absent.
int32_t InStr(std::string_view s, std::string_view what, int32_t start = 1);
// Case-blind variant of InStr (vbTextCompare).
int32_t InStrText(std::string_view s, std::string_view what, int32_t start = 1);

DateValue DateFromParts(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
DateValue Now();

}  // namespace qvrl
