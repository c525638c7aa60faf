#include "rules/modMath.h"

#include <cmath>

#include "support/errors.h"

namespace qvrl {

namespace {
int Sgn(double v) { return v > 0.0 ? 1 : (v < 0.0 ? -1 : 0); }
}  // namespace

double Interpolate(double x0, double y0, double x1, double y1, double x) {
    const double dx = fp::Sub(x1, x0);
    if (dx < 1e-7) return y0;
    return fp::Add(fp::Mul(fp::Div(fp::Sub(x, x0), dx), fp::Sub(y1, y0)), y0);
}

double InterpolateGuarded(double x0, double y0, double x1, double y1, double x) {
    if (Sgn(y0) == Sgn(y1)) {
        if (std::fabs(y0) < 1e-16) return y0;
        if (std::fabs(y1) < 1e-16) return y1;
        return Interpolate(x0, y0, x1, y1, x);
    }
    if (std::fabs(y0) < 1e-16) return y0;
    return y1;
}

double InterpolateSameSign(double x0, double y0, double x1, double y1, double x, double xa, double ya, double xb,
                           double yb) {
    if (Sgn(y0) == Sgn(y1)) return Interpolate(x0, y0, x1, y1, x);
    if (std::fabs(yb) > 0.0 && Sgn(y0) == Sgn(yb)) return Interpolate(x0, y0, xb, yb, x);
    if (std::fabs(ya) > 0.0 && Sgn(ya) == Sgn(y1)) return Interpolate(xa, ya, x1, y1, x);
    return 0.0;
}

namespace {
int16_t UpperBound(size_t size) {
    if (size - 1 > 32767) Raise(err::Overflow);
    return static_cast<int16_t>(size - 1);
}
}  // namespace

int16_t AddUniqueCode(int16_t code, std::vector<int16_t>& list, int16_t& count) {
    if (list.empty()) list.push_back(0);
    count = UpperBound(list.size());
    for (int16_t i = 1; i <= count; ++i)
        if (list[static_cast<size_t>(i)] == code) return i;
    if (count == 32767) Raise(err::Overflow);
    ++count;
    list.push_back(code);
    return 0;
}

int16_t AddUniqueValue(const Variant& value, std::vector<Variant>& list, int16_t& count) {
    const Variant::Type listType = list.empty() ? Variant::Type::Empty : list[0].type();
    if (value.type() != listType) return 0;
    if (list.empty()) list.emplace_back();
    count = UpperBound(list.size());
    for (int16_t i = 1; i <= count; ++i)
        if (list[static_cast<size_t>(i)] == value) return i;
    if (count == 32767) Raise(err::Overflow);
    ++count;
    list.push_back(value);
    return 0;
}

std::string& CommaToPoint(std::string& text) {
    for (char& c : text)
        if (c == ',') c = '.';
    return text;
}

std::string NumberToExpText(const Variant& value, int16_t& width, int16_t& decimals) {
    std::string pattern = "0";
    if (decimals > 0) {
        const int n = value.toDouble() < 0.0 ? 1 : 0;
        if (n + decimals + 6 > width) decimals = static_cast<int16_t>(width - 6 - n);
        if (decimals > 0) pattern = "0." + std::string(static_cast<size_t>(decimals), '0');
    }
    pattern += "e+0";
    std::string s = Format(value, pattern);
    const size_t w = width > 0 ? static_cast<size_t>(width) : 0;
    s.insert(0, w, ' ');
    s = s.substr(s.size() - w);
    return CommaToPoint(s);
}

std::string NumberToFixedText(const Variant& value, int16_t& width, int16_t& decimals) {
    if (width < 1) width = 5;
    if (decimals > width - 1) decimals = static_cast<int16_t>(width - 1);
    std::string pattern;
    if (decimals > 0)
        pattern = std::string(static_cast<size_t>(width - decimals - 1), '#') + "0." +
                  std::string(static_cast<size_t>(decimals), '0');
    else
        pattern = std::string(static_cast<size_t>(width - 1), '#') + "0";
    std::string s = Format(value, pattern);
    std::string text;
    if (s.size() <= static_cast<size_t>(width)) {
        text = std::string(static_cast<size_t>(width) - s.size(), ' ') + s;
    } else if (width < 7) {
        text = s;
    } else {
        int16_t expDecimals = 3;
        text = NumberToExpText(value, width, expDecimals);
    }
    return CommaToPoint(text);
}

}  // namespace qvrl
