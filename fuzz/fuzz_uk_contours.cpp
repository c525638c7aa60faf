// The contour readers on any bytes, and the surface over what they accept:
// a bad file is a named fault, never a crash, and every sampled value lies
// between the smallest and largest value given (linear on each triangle,
// nearest hull value outside).
//
// The first byte chooses the reader: 0 CSV text, 1 workbook bytes as they
// are, 2 a workbook made here from the rest split at 0x1E into shared texts
// and the rows of NA.3 ... NA.8, so the mutations reach the sheets' XML.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "../tests/maintenance/StoredZip.h"
#include "maintenance/UkContours.h"

namespace {

using namespace qvrl;

std::string FromParts(const std::string& rest) {
    std::vector<std::string> pieces{""};
    for (char c : rest) {
        if (c == '\x1e')
            pieces.emplace_back();
        else
            pieces.back() += c;
    }
    std::vector<std::pair<std::string, std::string>> sheets;
    for (size_t i = 1; i < pieces.size() && i <= 6; ++i) sheets.push_back({kUkFigures[i - 1].figure, pieces[i]});
    return test::Workbook(sheets, pieces[0]);
}

void CheckSurface(const ContourSet& set) {
    // The triangulation takes time by the square of the points; the figures have a few hundred.
    if (set.points.size() > 400) return;
    double lo = INFINITY, hi = -INFINITY;
    for (const ContourPoint& p : set.points) {
        if (!(p.x > 0.0) || !(p.y > 0.0) || !std::isfinite(p.z)) std::abort();
        lo = std::min(lo, p.z), hi = std::max(hi, p.z);
    }
    // Beyond this the weighted sums may overflow; such a figure is refused by the table writer.
    if (std::max(std::fabs(lo), std::fabs(hi)) > 1e100) return;
    try {
        const FigureGrid g = SampleUkFigure(set);
        // Weights are exact to rounding, and values are rounded to 4 decimals.
        const double slack = 1e-9 * std::max(1.0, hi - lo) + 0.5e-4;
        for (const auto& row : g.values) {
            if (row.size() != g.heights.size()) std::abort();
            for (double v : row)
                if (!(v >= lo - slack && v <= hi + slack)) std::abort();
        }
    } catch (const ContourInputError& e) {
        if (std::string(e.what()).empty()) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const std::string rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    try {
        switch (data[0] % 3) {
            case 0: {
                ContourSet set = ParseContourCsv(rest, "f.csv");
                set.table = "en_bs_fig3";
                CheckSurface(set);
                break;
            }
            case 1:
                for (const ContourSet& set : ParseContourXlsx(rest, "w.xlsx")) CheckSurface(set);
                break;
            default:
                for (const ContourSet& set : ParseContourXlsx(FromParts(rest), "w.xlsx")) CheckSurface(set);
                break;
        }
    } catch (const ContourInputError& e) {
        if (std::string(e.what()).empty()) std::abort();
    }
    return 0;
}
