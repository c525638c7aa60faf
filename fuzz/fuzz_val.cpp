// Text to number: Val, IsNumeric and the conversions must never crash, and
// must agree with each other where both answer.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "support/errors.h"
#include "support/vb.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string s(reinterpret_cast<const char*>(data), size);
    try {
        const double v = qvrl::Val(s);
        if (std::isnan(v) || std::isinf(v)) std::abort();
    } catch (const qvrl::RuntimeError& e) {
        if (e.number() != 6) std::abort();
    }
    const bool numeric = qvrl::IsNumeric(s);
    try {
        const double d = qvrl::Variant(s).toDouble();
        if (!numeric || std::isnan(d)) std::abort();
        try {
            (void)qvrl::CInt(d);
            (void)qvrl::CLng(d);
        } catch (const qvrl::RuntimeError& e) {
            if (e.number() != 6) std::abort();
        }
    } catch (const qvrl::RuntimeError& e) {
        // not a number (13), or a number too large for a double (6)
        if (e.number() == 13 && numeric) std::abort();
        if (e.number() != 13 && e.number() != 6) std::abort();
    }
    (void)qvrl::Trim(s);
    (void)qvrl::UCase(s);
    (void)qvrl::InStrText(s, "e+");
    return 0;
}
