#pragma once
// Run-time errors numbered as a Basic run-time would number them, and the
// checks that turn a floating fault into one at the step that made it.

#include <bit>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace qvrl {

namespace err {
inline constexpr int32_t InvalidCall = 5;
inline constexpr int32_t Overflow = 6;
inline constexpr int32_t SubscriptOutOfRange = 9;
inline constexpr int32_t DivisionByZero = 11;
inline constexpr int32_t TypeMismatch = 13;
inline constexpr int32_t FileNotFound = 53;
inline constexpr int32_t InvalidUseOfNull = 94;
inline constexpr int32_t ObjectNotSet = 91;
inline constexpr int32_t FileAccess = 75;
inline constexpr int32_t PathNotFound = 76;
// The late-bound layer's own, and the dialog library's when it cannot load.
inline constexpr int32_t CannotCreateObject = 429;
inline constexpr int32_t NoAutomation = 430;
inline constexpr int32_t NoSuchMember = 438;
inline constexpr int32_t WrongArgumentCount = 450;
inline constexpr int32_t NoCurrentRecord = 3021;
inline constexpr int32_t QuerySyntax = 3075;
inline constexpr int32_t TableNotFound = 3078;
inline constexpr int32_t ItemNotFound = 3265;
}  // namespace err

class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int32_t number, std::string description, std::string source = {});
    int32_t number() const noexcept { return number_; }
    const std::string& description() const noexcept { return description_; }
    const std::string& source() const noexcept { return source_; }

private:
    int32_t number_;
    std::string description_;
    std::string source_;
};

// The standard description of a run-time error number ("" for unknown numbers).
std::string ErrorDescription(int32_t number);

// Throws RuntimeError with the standard description when none is given.
[[noreturn]] void Raise(int32_t number, const std::string& source = {},
                        const std::string& description = {});

// Floating-point operations with Basic's fault semantics: a result that is
// infinite or not a number never leaves these functions. They sit in every
// step of the rules, so each is the operation and one test inline; what a
// fault raises is worked out out of line, where it costs nothing until then.
namespace fp {
namespace detail {
// Infinity or not a number, read from the bits: no optimisation that assumes
// finite arithmetic can fold this test away in a host's build.
inline bool NotFinite(double x) noexcept {
    return (std::bit_cast<std::uint64_t>(x) & 0x7FF0000000000000u) == 0x7FF0000000000000u;
}
inline bool IsNaN(double x) noexcept {
    return (std::bit_cast<std::uint64_t>(x) & 0x7FFFFFFFFFFFFFFFu) > 0x7FF0000000000000u;
}
[[noreturn, gnu::cold]] void RaiseOverflow();
[[noreturn, gnu::cold]] void RaiseDiv(double a, double b);
[[noreturn, gnu::cold]] void RaisePow(double base, double exponent);
[[noreturn, gnu::cold]] void RaiseSqrt(double x);
[[noreturn, gnu::cold]] void RaiseLog(double x);
}  // namespace detail

// A finished result: infinity is error 6, not-a-number error 6 as well,
// since it can only arise from an overflowing intermediate here.
inline double Check(double x) {
    if (detail::NotFinite(x)) [[unlikely]]
        detail::RaiseOverflow();
    return x;
}
// x/0 with x != 0 is error 11; 0/0 is error 6; an overflowing quotient is error 6.
inline double Div(double a, double b) {
    // Every faulty quotient, x/0 included, is infinite or not a number.
    const double q = a / b;
    if (detail::NotFinite(q)) [[unlikely]]
        detail::RaiseDiv(a, b);
    return q;
}
inline double Mul(double a, double b) { return Check(a * b); }
inline double Add(double a, double b) { return Check(a + b); }
inline double Sub(double a, double b) { return Check(a - b); }
// Power with Basic's rules: no real value (negative base, fractional exponent;
// 0 to a negative power) is error 5, overflow error 6.
inline double Pow(double base, double exponent) {
    const double r = std::pow(base, exponent);
    // pow(1, NaN) and pow(NaN, 0) are 1, yet an undefined input is a fault.
    if (detail::NotFinite(r) || detail::IsNaN(base) || detail::IsNaN(exponent)) [[unlikely]]
        detail::RaisePow(base, exponent);
    return r;
}
// x < 0: error 5
inline double Sqrt(double x) {
    const double r = std::sqrt(x);
    if (detail::NotFinite(r)) [[unlikely]]
        detail::RaiseSqrt(x);
    return r;
}
// x <= 0: error 5
inline double Log(double x) {
    const double r = std::log(x);
    if (detail::NotFinite(r)) [[unlikely]]
        detail::RaiseLog(x);
    return r;
}
// overflow: error 6
inline double Exp(double x) { return Check(std::exp(x)); }
}  // namespace fp

}  // namespace qvrl
