// The set of selectable standards as a host or a block file writes it.
#include <cstdint>
#include <string>

#include "vocab/CodeLists.h"
#include "support/errors.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string s(reinterpret_cast<const char*>(data), size);
    try {
        const auto codes = qvrl::ParseSelectableCodes(s);
        const auto rows = qvrl::SelectableNormRows(s);
        if (rows.size() > codes.size() || rows.size() > qvrl::NormTable().size()) __builtin_trap();
    } catch (const qvrl::RuntimeError& e) {
        if (e.number() != 13 && e.number() != 6) __builtin_trap();
    }
    return 0;
}
