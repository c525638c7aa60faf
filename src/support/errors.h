#pragma once
// Run-time errors numbered as a Basic run-time would number them, and the
// checks that turn a floating fault into one at the step that made it.

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
// infinite or not a number never leaves these functions.
namespace fp {
// x/0 with x != 0 is error 11; 0/0 is error 6; an overflowing quotient is error 6.
double Div(double a, double b);
double Mul(double a, double b);
double Add(double a, double b);
double Sub(double a, double b);
// Power with Basic's rules: no real value (negative base, fractional exponent;
// 0 to a negative power) is error 5, overflow error 6.
double Pow(double base, double exponent);
double Sqrt(double x);   // x < 0: error 5
double Log(double x);    // x <= 0: error 5
double Exp(double x);    // overflow: error 6
// A finished result: infinity is error 6, not-a-number error 6 as well,
// since it can only arise from an overflowing intermediate here.
double Check(double x);
}  // namespace fp

}  // namespace qvrl
