// The three importers' readers on any bytes: a bad file is a list of faults
// (or a run-time error of the store), never a crash, and nothing is written,
// since the database the imports would open does not exist.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "maintenance/TownImport.h"
#include "support/errors.h"

namespace {

namespace fs = std::filesystem;
using namespace qvrl;

const fs::path& Folder() {
    static const fs::path dir = [] {
        fs::path d = fs::temp_directory_path() / ("qvrl-fuzz-towns-" + std::to_string(::getpid()));
        fs::create_directories(d);
        return d;
    }();
    return dir;
}

template <class F>
void Expect(F&& run) {
    try {
        run();
    } catch (const TownInputError& e) {
        if (e.faults().empty()) std::abort();
    } catch (const RuntimeError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const fs::path input = Folder() / "input.txt";
    {
        std::ofstream out(input, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const std::string db = (Folder() / "absent" / "qvrl.mdb").string();
    Expect([&] { (void)ReadGv100ad(input.string()); });
    Expect([&] { (void)ImportZones(input.string(), db, 50); });
    Expect([&] { (void)ImportZones(input.string(), db, 51); });
    Expect([&] { (void)ImportAtMunicipalities(input.string(), db); });
    if (fs::exists(Folder() / "absent")) std::abort();
    return 0;
}
