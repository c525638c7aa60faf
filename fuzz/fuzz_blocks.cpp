// The block readers on any bytes: no crash, no sanitizer report, finite
// loads, only the errors the roof reader may raise, and the file exactly as
// it was. The writers then rewrite a copy from what was read.
#include <fcntl.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "interchange/FileWrite.h"
#include "interchange/TextFile.h"
#include "interchange/modAsciiRL.h"
#include "support/ModuleState.h"
#include "support/errors.h"

namespace {

using namespace qvrl;

// In memory where possible: ext4 flushes a file renamed over another. Kept
// for the whole run (never destroyed) and removed at exit.
const std::string& Folder() {
    static const std::string* dir = [] {
        std::error_code ec;
        std::string tmpl =
            std::string(std::filesystem::is_directory("/dev/shm", ec) ? "/dev/shm" : "/tmp") + "/fuzz_blocks.XXXXXX";
        if (!::mkdtemp(tmpl.data())) std::abort();
        return new std::string(tmpl);
    }();
    static const bool cleanup = [] {
        std::atexit([] {
            std::error_code ec;
            std::filesystem::remove_all(*dir, ec);
        });
        return true;
    }();
    (void)cleanup;
    return *dir;
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void Put(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
    if (!out) std::abort();
}

void Finite(double v) {
    if (!std::isfinite(v)) std::abort();
}

size_t FilesIn(const std::string& dir) {
    size_t n = 0;
    for (const auto& e : std::filesystem::directory_iterator(dir)) (void)e, ++n;
    return n;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string file = Folder() + "/in.asc";
    Put(file, bytes);
    ResetModuleState();  // every input as in a fresh process
    SetFileWriteSync(false);

    TownRec town;
    WindLoadRec wind;
    SnowLoadRec snow;
    LiveLoadRec live;
    DeadLoadRec dead;
    int16_t ctrlNorm = 0;
    std::string codes;
    try {
        ReadRoofBlocks(file, town, wind, snow, 10000, ctrlNorm, codes);
    } catch (const RuntimeError& e) {
        // empty file, a number out of range, a text where a number belongs
        if (e.number() != 62 && e.number() != 6 && e.number() != 13) std::abort();
    }
    try {
        ReadLiveBlocks(file, live, 10000, ctrlNorm, codes);
        ReadDeadBlocks(file, dead, 10000, ctrlNorm, codes);
    } catch (...) {
        std::abort();  // these two stop quietly
    }
    if (Slurp(file) != bytes || FilesIn(Folder()) != 1) std::abort();
    for (double v : {wind.q0, wind.h, wind.qb, snow.s0, snow.h, live.p, live.Wert, live.Wert2, live.pAdd, dead.g0,
                     dead.g1, dead.g2})
        Finite(v);

    const std::string copy = Folder() + "/out.asc";
    Put(copy, bytes);
    try {
        WriteRoofBlocks(copy, town, wind, snow, true, 10000, ctrlNorm, codes);
        WriteLiveBlocks(copy, live, true, 10000, ctrlNorm, codes);
        WriteDeadBlocks(copy, dead, true, 10000, ctrlNorm, codes);
        // The writers of one rewrite give the bytes of the writers one by one.
        // (A Windows-1252 file whose rewrite happens to be valid UTF-8 is read
        // back as UTF-8 between two writers; one rewrite keeps code page 1252.)
        const std::string one = Folder() + "/one.asc";
        Put(one, bytes);
        {
            BlockFileRewrite rewrite(one);
            rewrite.Roof(town, wind, snow, true, 10000, ctrlNorm, codes);
            rewrite.Live(live, true, 10000, ctrlNorm, codes);
            rewrite.Dead(dead, true, 10000);
            rewrite.Commit();
        }
        if (IsValidUtf8(bytes) && Slurp(one) != Slurp(copy)) std::abort();
        std::filesystem::remove(one);
        ReadDeadBlocks(copy, dead, 10000, ctrlNorm, codes);
    } catch (const RuntimeError&) {
        std::abort();  // finite records always make a file
    }
    std::filesystem::remove(copy);
    if (FilesIn(Folder()) != 1) std::abort();  // no lock or temporary file stays behind
    return 0;
}
