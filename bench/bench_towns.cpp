// The town look-ups on a table of 11,000 municipalities (synthetic keys and
// names): FindTownByAGS, the look-up behind every CAGS getter (target: below
// 50 microseconds), and ReadGemFromAGS of a state of 2,000 municipalities
// with 100 user corrections present (target: below 30 ms). The town
// selection dialog: its list filled for that state, and one keystroke in the
// name filter over the whole list (targets: well below 100 ms each).

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "BenchEnv.h"
#include "location/frmSelTown.h"
#include "location/modAGSMdb.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/modLowLevel.h"
#include "support/vb.h"

namespace {

using namespace qvrl;
namespace fs = std::filesystem;

constexpr int32_t kTowns = 11000;
constexpr int32_t kBigState = 9;
constexpr int32_t kBigStateTowns = 2000;
constexpr int32_t kUserRows = 100;

struct Town {
    int32_t bl;
    int32_t n;  // number inside the state
};

std::string Ags(const Town& t) {
    return Format(t.bl, "00") + "1" + Format(t.n / 1000 + 1, "00") + Format(t.n % 1000, "000");
}

std::vector<Town> AllTowns() {
    std::vector<Town> towns;
    for (int32_t i = 0; i < kBigStateTowns; ++i) towns.push_back({kBigState, i});
    const int32_t perState = (kTowns - kBigStateTowns) / 15;
    for (int32_t bl = 1; bl <= 16; ++bl) {
        if (bl == kBigState) continue;
        for (int32_t i = 0; i < perState; ++i) towns.push_back({bl, i});
    }
    return towns;
}

// The built qvrl.mdb, filled once, in a program folder of its own; two user
// folders: one without corrections, one with 100 in the big state.
class Sample {
public:
    Sample() {
        const fs::path& root = dir_.path();
        fs::create_directories(root / "program");
        fs::copy_file(bench::kShippedFolder + "/qvrl.mdb", root / "program" / "qvrl.mdb");
        bench::ScopedEnv env;
        Use(env, true);
        {
            auto db = DBEngine::OpenDatabase((root / "program" / "qvrl.mdb").string(), Variant(), Variant(false));
            db->BeginTrans();
            auto rs = db->OpenRecordset("slzwlz", dao::dbOpenDynaset);
            int32_t id = 0;
            for (const Town& t : AllTowns()) {
                const std::string ags = Ags(t);
                rs->AddNew();
                rs->Fields("ID").Value(Variant(++id));
                rs->Fields("AGS").Value(Variant(ags));
                rs->Fields("BL_ID").Value(Variant(ags.substr(0, 2)));
                rs->Fields("BL_Name").Value(Variant("Land " + std::to_string(t.bl)));
                rs->Fields("Reg_ID").Value(Variant(ags.substr(2, 1)));
                // A name per state: the dialog finds a region again by it.
                rs->Fields("Reg_Name").Value(Variant("Bezirk " + std::to_string(t.bl)));
                rs->Fields("LK_ID").Value(Variant(ags.substr(3, 2)));
                rs->Fields("LK_Name").Value(Variant("Kreis " + ags.substr(3, 2)));
                rs->Fields("Gem_ID").Value(Variant(ags.substr(5, 3)));
                rs->Fields("Gemeinde").Value(Variant("Gemeinde " + std::to_string(t.n)));
                rs->Fields("PLZ").Value(Variant(Format(10000 + t.bl * 1000 + t.n % 1000, "00000")));
                rs->Fields("WZ").Value(Variant(std::to_string(1 + t.n % 4)));
                rs->Fields("SZ").Value(Variant(t.n % 50 == 0 ? "" : "2"));
                rs->Fields("BemW").Value(Variant(""));
                rs->Fields("BemS").Value(Variant(""));
                rs->Update();
            }
            rs->Close();
            db->CommitTrans();
        }
        for (int32_t i = 0; i < kUserRows; ++i) {
            TownRec t;
            FindTownByAGS(Ags({kBigState, i * (kBigStateTowns / kUserRows)}), t);
            t.SZ = "3";
            SaveUserGem(t);
        }
    }
    // Each user folder stands for a process of its own.
    void Use(bench::ScopedEnv& env, bool withCorrections) const {
        const fs::path dir = dir_.path() / (withCorrections ? "user" : "plain");
        fs::create_directories(dir);
        env.Set("QVRL_PROGRAM_FOLDER", (dir_.path() / "program").string());
        env.Set("APPDATA", dir.string());
        ResetModuleState();
    }

private:
    bench::TempFolder dir_{"towns"};
};

Sample& TheSample() {
    static Sample s;
    return s;
}

void BM_FindTownByAGS(benchmark::State& state) {
    bench::ScopedEnv env;
    TheSample().Use(env, state.range(0) != 0);
    std::vector<std::string> keys;
    for (int32_t i = 0; i < 600; i += 7) keys.push_back(Ags({5, i}));
    TownRec t;
    size_t k = 0;
    for (auto _ : state) {
        FindTownByAGS(keys[k], t);
        if (t.AGS != keys[k]) state.SkipWithError("town not found");
        k = (k + 1) % keys.size();
    }
}
BENCHMARK(BM_FindTownByAGS)->ArgName("userFile")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void BM_ReadGemFromAGS_State(benchmark::State& state) {
    bench::ScopedEnv env;
    TheSample().Use(env, state.range(0) != 0);
    StateRec s;
    s.BL_ID = kBigState;
    std::vector<TownRec> list;
    for (auto _ : state) {
        ReadGemFromAGS(s, RegionRec{}, CountyRec{}, list, "", "", "");
        if (list.size() != kBigStateTowns + 1) state.SkipWithError("wrong count");
    }
    int modified = 0;
    for (const TownRec& t : list) modified += t.Modified;
    state.counters["modified"] = modified;
}
BENCHMARK(BM_ReadGemFromAGS_State)->ArgName("userRows")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

int32_t EntryOf(const ComboBox& cb, int32_t data) {
    for (int32_t i = 0; i < cb.ListCount(); ++i)
        if (cb.ItemData(i) == data) return i;
    return -1;
}

void BM_SelTown_FillState(benchmark::State& state) {
    bench::ScopedEnv env;
    TheSample().Use(env, true);
    frmSelTown f;
    f.Load();
    const int32_t big = EntryOf(f.cbBL, kBigState), other = EntryOf(f.cbBL, kBigState + 1);
    for (auto _ : state) {
        state.PauseTiming();
        f.cbBL.ListIndex(other);
        state.ResumeTiming();
        f.cbBL.ListIndex(big);
        if (f.lvGem.RowCount() != kBigStateTowns) state.SkipWithError("wrong count");
    }
}
BENCHMARK(BM_SelTown_FillState)->Unit(benchmark::kMillisecond);

void BM_SelTown_FilterKeystroke(benchmark::State& state) {
    bench::ScopedEnv env;
    TheSample().Use(env, true);
    frmSelTown f;
    f.Load();
    f.cbBL.ListIndex(1);
    f.cbBL.ListIndex(0);  // every state
    for (auto _ : state) {
        state.PauseTiming();
        f.txtName.EditText("");
        state.ResumeTiming();
        f.txtName.TypeText("G");
        if (f.lvGem.RowCount() != static_cast<int32_t>(AllTowns().size()))
            state.SkipWithError(("wrong count " + std::to_string(f.lvGem.RowCount())).c_str());
    }
}
BENCHMARK(BM_SelTown_FilterKeystroke)->Unit(benchmark::kMillisecond);

}  // namespace
