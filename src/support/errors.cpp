#include "support/errors.h"

#include <cmath>

namespace qvrl {

RuntimeError::RuntimeError(int32_t number, std::string description, std::string source)
    : std::runtime_error(description.empty() ? ErrorDescription(number) : description),
      number_(number),
      description_(description.empty() ? ErrorDescription(number) : std::move(description)),
      source_(std::move(source)) {}

std::string ErrorDescription(int32_t number) {
    switch (number) {
    case 5: return "Invalid procedure call or argument";
    case 6: return "Overflow";
    case 9: return "Subscript out of range";
    case 11: return "Division by zero";
    case 13: return "Type mismatch";
    case 53: return "File not found";
    case 91: return "Object variable not set";
    case 94: return "Invalid use of Null";
    case 75: return "Path/File access error";
    case 76: return "Path not found";
    case 393: return "Property cannot be read at run time";
    case 438: return "Object doesn't support this property or method";
    case 450: return "Wrong number of arguments or invalid property assignment";
    case 3021: return "No current record";
    case 3075: return "Syntax error in query expression";
    case 3078: return "Table or query not found";
    case 3265: return "Item not found in this collection";
    default: return {};
    }
}

void Raise(int32_t number, const std::string& source, const std::string& description) {
    throw RuntimeError(number, description, source);
}

namespace fp::detail {

void RaiseOverflow() { Raise(err::Overflow); }

void RaiseDiv(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) Raise(err::Overflow);
    if (b == 0.0) Raise(a == 0.0 ? err::Overflow : err::DivisionByZero);
    Raise(err::Overflow);
}

void RaisePow(double base, double exponent) {
    if (std::isnan(base) || std::isnan(exponent)) Raise(err::Overflow);
    if (base == 0.0 && exponent < 0.0) Raise(err::InvalidCall);
    if (base < 0.0 && std::trunc(exponent) != exponent) Raise(err::InvalidCall);
    Raise(err::Overflow);
}

void RaiseSqrt(double x) { Raise(x < 0.0 ? err::InvalidCall : err::Overflow); }

void RaiseLog(double x) { Raise(!(x > 0.0) ? err::InvalidCall : err::Overflow); }

}  // namespace fp::detail
}  // namespace qvrl
