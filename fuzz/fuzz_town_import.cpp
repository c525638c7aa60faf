// The three importers' readers on any bytes: a bad file is a list of faults
// (or a run-time error of the store), never a crash, and nothing is written,
// since the database the imports would open does not exist.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "FuzzFolder.h"
#include "maintenance/TownImport.h"
#include "support/errors.h"

namespace {

namespace fs = std::filesystem;
using namespace qvrl;

const fs::path& TheFolder() {
    static const fuzz::Folder folder("qvrl-fuzz-towns");
    return folder.path();
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
    const fs::path input = TheFolder() / "input.txt";
    {
        std::ofstream out(input, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const std::string db = (TheFolder() / "absent" / "qvrl.mdb").string();
    Expect([&] { (void)ReadGv100ad(input.string()); });
    Expect([&] { (void)ImportZones(input.string(), db, 50); });
    Expect([&] { (void)ImportZones(input.string(), db, 51); });
    Expect([&] { (void)ImportAtMunicipalities(input.string(), db); });
    fs::remove(input);
    if (fs::exists(TheFolder() / "absent")) std::abort();
    return 0;
}
