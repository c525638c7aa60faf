// The peak velocity pressure under the British annex reads up to six figure
// tables per call, two statements each; the target is below 200 microseconds.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "BenchEnv.h"
#include "store/modDAO.h"
#include "rules/modWindEN.h"
#include "support/ModuleState.h"

namespace {

using namespace qvrl;
namespace fs = std::filesystem;

// A program folder whose qvrl.mdb holds six grids of 40 distances by 7
// heights (made-up values of a plausible size), made once.
class FigureFolder {
public:
    FigureFolder() {
        const fs::path& dir = dir_.path();
        {
            auto db = DBEngine::CreateDatabase((dir / "qvrl.mdb").string(), dao::dbLangGeneral);
            const char* cols[] = {"dist", "2", "5", "10", "20", "50", "100", "200"};
            for (int n = 3; n <= 8; ++n) {
                const std::string name = "en_bs_fig" + std::to_string(n);
                TableDef def = db->CreateTableDef(name);
                for (const char* c : cols) def.Fields().Append(def.CreateField(c, dao::dbDouble));
                db->TableDefs().Append(def);
                db->BeginTrans();
                auto rs = db->OpenRecordset(name, dao::dbOpenDynaset);
                for (int r = 0; r < 40; ++r) {
                    rs->AddNew();
                    rs->Fields("dist").Value(Variant(0.1 * (r + 1) * (r + 1)));
                    for (int c = 1; c < 8; ++c) rs->Fields(cols[c]).Value(Variant(0.5 + 0.01 * r + 0.1 * c));
                    rs->Update();
                }
                rs->Close();
                db->CommitTrans();
            }
            db->Close();
        }
    }
    const fs::path& path() const { return dir_.path(); }

private:
    bench::TempFolder dir_{"uk"};
};

void BM_WindPressureUK_Category3(benchmark::State& s) {
    static FigureFolder folder;
    bench::ScopedEnv env;
    env.Set("QVRL_PROGRAM_FOLDER", folder.path().string());
    ResetModuleState();
    double z = 12.0;
    for (auto _ : s) {
        double town = 1500.0;
        benchmark::DoNotOptimize(
            WindPressure_EN_1991_1_4(53, 3, z, 0.0, 24.0, 0.0, 0.0, 1.0, 1.0, 8000.0, town));
        z = z == 12.0 ? 12.5 : 12.0;
    }
}
BENCHMARK(BM_WindPressureUK_Category3)->Unit(benchmark::kMicrosecond);

}  // namespace
