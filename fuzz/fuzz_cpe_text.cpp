// The coefficient text file parser on any bytes, line by line as the file
// route reads them: no crash, no sanitizer report, only a type mismatch (13)
// or an overflow (6), and finite values in every field it fills.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "cp/CpWindRecord.h"
#include "cp/modWindCpMdb.h"
#include "interchange/TextFile.h"
#include "support/errors.h"

namespace {

using namespace qvrl;

void CheckFinite(const CpWindRecord& r) {
    for (const CpZoneSlots& z : kCpZones)
        for (auto f : {z.s10, z.s1, z.s10a, z.s1a})
            if (!std::isfinite(r.*f)) std::abort();
    for (double v : {r.Theta, r.Alpha, r.HzuD, r.HPzuH, r.RzuH})
        if (!std::isfinite(v)) std::abort();
    // The text file has no internal pressure fields.
    if (r.Mue != 0.0 || r.Innen != 0.0 || r.Innena != 0.0 || r.AlphaTr != 0.0) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const TextLines text = DecodeText(bytes);
    for (const std::string& line : text.lines) {
        CpWindRecord r;
        try {
            ParseCpeTextLine(line, r);
        } catch (const RuntimeError& e) {
            if (e.number() != err::TypeMismatch && e.number() != err::Overflow) std::abort();
            continue;
        }
        CheckFinite(r);
        // A line is read the same way twice.
        CpWindRecord again;
        ParseCpeTextLine(line, again);
        if (!(again == r)) std::abort();
    }
    return 0;
}
