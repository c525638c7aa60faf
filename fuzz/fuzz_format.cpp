// Picture formatting and the fixed-width number texts with any picture,
// value, width and decimals.
#include <cstdint>
#include <cstring>
#include <string>

#include "rules/modMath.h"
#include "support/errors.h"
#include "support/vb.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < sizeof(double) + 4) return 0;
    double value;
    std::memcpy(&value, data, sizeof value);
    int16_t width, decimals;
    std::memcpy(&width, data + sizeof value, 2);
    std::memcpy(&decimals, data + sizeof value + 2, 2);
    // keep the field sizes to what a file or table could ask for
    width = static_cast<int16_t>(width % 64);
    decimals = static_cast<int16_t>(decimals % 64);
    const std::string picture(reinterpret_cast<const char*>(data) + sizeof value + 4, size - sizeof value - 4);
    try {
        (void)qvrl::Format(value, picture);
    } catch (const qvrl::RuntimeError& e) {
        if (e.number() != 6) __builtin_trap();
    }
    try {
        (void)qvrl::FormatDate(qvrl::DateValue{value}, picture);
    } catch (const qvrl::RuntimeError& e) {
        if (e.number() != 6) __builtin_trap();
    }
    try {
        int16_t w = width, d = decimals;
        const std::string t = qvrl::NumberToFixedText(qvrl::Variant(value), w, d);
        if (w >= 1 && t.size() < static_cast<size_t>(w)) __builtin_trap();  // never shorter than its field
        w = width;
        d = decimals;
        const std::string e = qvrl::NumberToExpText(qvrl::Variant(value), w, d);
        if (w > 0 && e.size() != static_cast<size_t>(w)) __builtin_trap();
    } catch (const qvrl::RuntimeError& e) {
        if (e.number() != 6) __builtin_trap();
    }
    try {
        (void)qvrl::DoubleToText(value);
    } catch (const qvrl::RuntimeError& e) {
        if (e.number() != 6) __builtin_trap();
    }
    return 0;
}
