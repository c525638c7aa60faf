#pragma once
// Interpolation that knows about missing values and sign changes, list
// helpers that add a value once, and the number texts of files and tables.

#include <cstdint>
#include <string>
#include <vector>

#include "support/vb.h"

namespace qvrl {

// Linear interpolation without clamping; a falling or flat x axis gives y0.
double Interpolate(double x0, double y0, double x1, double y1, double x);
// For tables where 0 stands for a missing value.
double InterpolateGuarded(double x0, double y0, double x1, double y1, double x);
// For a pressure that changes sign: each row offers a second value of the
// other sign (xa, ya beside x0; xb, yb beside x1).
double InterpolateSameSign(double x0, double y0, double x1, double y1, double x, double xa, double ya, double xb,
                           double yb);

// Lists are used from index 1; element 0 is a placeholder. Both return the
// position where the value already stood, else 0 after appending it.
int16_t AddUniqueCode(int16_t code, std::vector<int16_t>& list, int16_t& count);
// Adds nothing (and leaves count alone) when the value's type is not that of element 0.
int16_t AddUniqueValue(const Variant& value, std::vector<Variant>& list, int16_t& count);

// Right-aligned fixed-width text with "." as decimal mark.
std::string NumberToFixedText(const Variant& value, int16_t& width, int16_t& decimals);
// Exponent form, cut to width from the left.
std::string NumberToExpText(const Variant& value, int16_t& width, int16_t& decimals);
std::string& CommaToPoint(std::string& text);

}  // namespace qvrl
