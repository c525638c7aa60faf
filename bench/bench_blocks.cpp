// A session's file work: read the example roof file and rewrite it. Writes go
// through the temporary file and the rename, without the flush to disk. The
// file lies in memory (/dev/shm) where there is one: ext4 flushes a file's
// data when it is renamed over another, and that is the disk's time, not ours.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "interchange/ExampleBlockFile.h"
#include "interchange/FileWrite.h"
#include "interchange/modAsciiRL.h"

namespace {

using namespace qvrl;

const char* const kExample = test::kExampleBlockFile;

class ExampleFile {
public:
    ExampleFile() {
        std::error_code ec;
        std::string base = std::filesystem::is_directory("/dev/shm", ec) ? "/dev/shm" : "/tmp";
        std::string tmpl = base + "/bench_blocks.XXXXXX";
        const char* d = ::mkdtemp(tmpl.data());
        if (!d) std::abort();
        dir_ = d;
        path_ = dir_ + "/roof.asc";
        std::ofstream(path_, std::ios::binary) << kExample;
    }
    ~ExampleFile() { std::filesystem::remove_all(dir_); }
    const std::string& path() const { return path_; }

private:
    std::string dir_, path_;
};

void BM_ReadAndRewriteExample(benchmark::State& state) {
    ExampleFile file;
    SetFileWriteSync(false);
    TownRec town;
    WindLoadRec wind;
    SnowLoadRec snow;
    int16_t ctrlNorm = 0;
    std::string codes;
    for (auto _ : state) {
        ReadRoofBlocks(file.path(), town, wind, snow, 10000, ctrlNorm, codes);
        WriteRoofBlocks(file.path(), town, wind, snow, true, 10000, ctrlNorm, codes);
        benchmark::DoNotOptimize(wind.q0);
    }
    SetFileWriteSync(true);
}
BENCHMARK(BM_ReadAndRewriteExample)->Unit(benchmark::kMicrosecond);

void BM_TokeniseWindLine(benchmark::State& state) {
    for (auto _ : state) {
        std::string line = "WINDLOAD          1   0.000050      10.00          2          1          0";
        benchmark::DoNotOptimize(ExtractBlockKey(line, false));
        for (int i = 0; i < 6; ++i) benchmark::DoNotOptimize(NextField(line, false));
    }
}
BENCHMARK(BM_TokeniseWindLine);

}  // namespace
