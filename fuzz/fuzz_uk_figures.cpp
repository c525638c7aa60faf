// The UK figure reader on any bytes: a grid it accepts is one the table
// writer takes as it is, and a bad one is a named fault, never a crash.
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "FuzzFolder.h"
#include "maintenance/UkFigureImport.h"
#include "support/errors.h"

namespace {

namespace fs = std::filesystem;
using namespace qvrl;

const fs::path& Folder() {
    static const fuzz::Folder folder("qvrl-fuzz-ukfig");
    return folder.path();
}

void CheckAccepted(const UkFigureGrid& g) {
    if (g.heights.empty() || g.heights.size() != g.heightNames.size() || g.rows.empty()) std::abort();
    for (size_t i = 1; i < g.heights.size(); ++i)
        if (!(g.heights[i] > g.heights[i - 1])) std::abort();
    for (size_t r = 0; r < g.rows.size(); ++r) {
        if (g.rows[r].size() != g.heights.size() + 1) std::abort();
        for (double v : g.rows[r])
            if (!std::isfinite(v)) std::abort();
        if (g.rows[r][0] < 0.0 || (r > 0 && !(g.rows[r][0] > g.rows[r - 1][0]))) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const fs::path input = Folder() / "en_bs_fig3.csv";
    {
        std::ofstream out(input, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    try {
        const UkFigureGrid g = ReadUkFigureGrid(input.string(), "en_bs_fig3");
        CheckAccepted(g);
        // The writer's own checks agree with the reader's; the database does
        // not exist, so an accepted grid ends at error 3024 and nothing is made.
        const std::string absent = (Folder() / "absent" / "qvrl.mdb").string();
        try {
            (void)WriteUkFigureGrids({g}, absent);
            std::abort();
        } catch (const RuntimeError& e) {
            if (e.number() != 3024) std::abort();
        }
        if (fs::exists(Folder() / "absent")) std::abort();
    } catch (const TownInputError& e) {
        if (e.faults().empty()) std::abort();
    }
    return 0;
}
