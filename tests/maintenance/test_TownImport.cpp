// Importers of the municipality directories and zone assignments, on small
// fixtures typed from public facts and, where present, on the published files.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "interchange/TextFile.h"
#include "maintenance/TownImport.h"
#include "location/modAGSMdb.h"
#include "location/modAGSMdb_1.h"
#include "store/modDAO.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

using namespace qvrl;
namespace fs = std::filesystem;

namespace qvrl {
void PrintTo(const TableTally& t, std::ostream* os) {
    *os << t.file << " " << t.table << ": " << t.inserted << " inserted, " << t.updated << " updated, " << t.unchanged
        << " unchanged, " << t.untouched << " untouched";
}
}  // namespace qvrl

namespace {

const char* const kFiles[] = {"qvrl.mdb", "qvrlslz.mdb", "qvrlslz_dibt.mdb", "qvrlwlz.mdb", "qvrlwlz_dibt.mdb"};

std::string Fixture(const std::string& name) {
    return std::string(QVRL_SOURCE_DIR) + "/tests/maintenance/fixtures/" + name;
}

std::string CellText(const Variant& v) {
    if (v.isNull()) return "<null>";
    if (v.type() == Variant::Type::String) return v.asString();
    return DoubleToText(v.toDouble());
}

// Rows selected by a query, each as column -> value.
std::vector<std::map<std::string, Variant>> Rows(const std::string& file, const std::string& query) {
    auto db = DBEngine::OpenDatabase(file, {}, true);
    auto rs = db->OpenRecordset(query, dao::dbOpenSnapshot);
    std::vector<std::map<std::string, Variant>> out;
    while (!rs->EOF_()) {
        std::map<std::string, Variant> row;
        for (Field& f : rs->Fields()) row[f.Name()] = f.Value();
        out.push_back(std::move(row));
        rs->MoveNext();
    }
    return out;
}

class TownImport : public test::IsolatedTest {
protected:
    void SetUp() override {
        IsolatedTest::SetUp();
        dir_ = test::FreshFolder("db");
        for (const char* f : kFiles) fs::copy_file(ProgramFolder() + "/" + f, dir_ / f);
        db_ = (dir_ / "qvrl.mdb").string();
    }

    std::string File(const char* name) const { return (dir_ / name).string(); }

    // Every row of every town table, in storage order: equal when nothing changed.
    std::vector<std::string> Snapshot(size_t tableCount = 6) const {
        std::vector<std::string> s;
        const std::pair<const char*, const char*> tables[] = {{"qvrl.mdb", "slzwlz"}, {"qvrl.mdb", "slzwlz1"},
                                                              {"qvrlslz.mdb", "slz"}, {"qvrlslz_dibt.mdb", "slz"},
                                                              {"qvrlwlz.mdb", "wlz"}, {"qvrlwlz_dibt.mdb", "wlz"}};
        for (size_t i = 0; i < tableCount; ++i) {
            const auto& [file, table] = tables[i];
            for (const auto& row : Rows(File(file), std::string("SELECT * FROM ") + table)) {
                std::string line = std::string(file) + "/" + table + ":";
                for (const auto& [k, v] : row) line += " " + k + "=" + CellText(v);
                s.push_back(line);
            }
        }
        return s;
    }

    std::map<std::string, Variant> Town(const char* table, const std::string& ags) const {
        const auto rows = Rows(db_, std::string("SELECT * FROM ") + table + " WHERE AGS = '" + ags + "'");
        EXPECT_EQ(rows.size(), 1u) << table << " " << ags;
        return rows.empty() ? std::map<std::string, Variant>{} : rows[0];
    }

    // The one fault an import refuses its input with.
    static std::string FaultOf(const std::function<void()>& import) {
        try {
            import();
        } catch (const TownInputError& e) {
            EXPECT_EQ(e.faults().size(), 1u) << e.what();
            return e.faults().empty() ? "" : e.faults()[0];
        }
        return "<no fault>";
    }

    fs::path dir_;
    std::string db_;
};

std::vector<std::string> Texts(const std::map<std::string, Variant>& row, const std::vector<std::string>& columns) {
    std::vector<std::string> out;
    for (const std::string& c : columns) out.push_back(row.count(c) ? CellText(row.at(c)) : "<missing " + c + ">");
    return out;
}

// --- GV100AD ----------------------------------------------------------------

TEST_F(TownImport, DirectoryFillsTownTablesAndLists) {
    // The report and its tallies are pinned where the command line prints them.
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    // The directory brings no zones: WZ, SZ, BemW and BemS stay empty.
    const std::vector<std::string> cols = {"BL_ID",  "BL_Name", "Reg_ID",   "Reg_Name", "LK_ID", "LK_Name", "Gem_ID",
                                           "Gemeinde", "PLZ",   "WZ", "SZ", "BemW", "BemS"};
    struct Case {
        const char* ags;
        std::vector<std::string> expected;  // up to PLZ
    } cases[] = {
        {"05315000", {"05", "Nordrhein-Westfalen", "3", "Reg.-Bez. Köln", "15", "Köln, Stadt", "000", "Köln, Stadt", "50667"}},
        {"05334000", {"05", "Nordrhein-Westfalen", "3", "Reg.-Bez. Köln", "34", "Städteregion Aachen", "000", "", ""}},
        {"05334002",
         {"05", "Nordrhein-Westfalen", "3", "Reg.-Bez. Köln", "34", "Städteregion Aachen", "002", "Aachen, Stadt", "52058"}},
        {"12052000", {"12", "Brandenburg", "0", "", "52", "Cottbus, Stadt", "000", "Cottbus/Chóśebuz, Stadt", "03046"}},
        {"14625330",
         {"14", "Sachsen", "6", "früher: Direktionsbezirk Dresden", "25", "Bautzen", "330", "Lohsa / Łaz", "02999"}},
        {"03151501",
         {"03", "Niedersachsen", "1", "Statistische Region Braunschweig", "51", "Gifhorn", "501", "Giebel, gemfr. Gebiet", ""}},
        {"07000999",
         {"07", "Rheinland-Pfalz", "0", "", "00", "", "999", "Gemeinsames deutsch-luxemburgisches Hoheitsgebiet", ""}},
    };
    for (const Case& c : cases) {
        std::vector<std::string> expected = c.expected;
        expected.resize(cols.size());
        EXPECT_EQ(Texts(Town("slzwlz", c.ags), cols), expected) << c.ags;
        EXPECT_EQ(Texts(Town("slzwlz1", c.ags), cols), expected) << c.ags;
    }
    EXPECT_EQ(Texts(Town("slzwlz1", "14625330"),
                    {"Land_ID", "Land", "Land_ShortName", "BL_ShortName", "qb", "vb", "sk", "hNN"}),
              (std::vector<std::string>{"50", "Deutschland", "D", "SN", "0", "0", "0", "0"}));

    // The lists keep their own state numbers: Niedersachsen is 3 in slz, 4 in
    // wlz; Sachsen 14 and 12.
    for (const char* f : {"qvrlslz.mdb", "qvrlslz_dibt.mdb"}) {
        const auto s = Rows(File(f), "SELECT * FROM slz WHERE KEY = 3151501");
        ASSERT_EQ(s.size(), 1u);
        EXPECT_EQ(Texts(s[0], {"Bundesland", "RegBez", "Kreis", "Landkreis", "Gemeinde", "Schneelastzone"}),
                  (std::vector<std::string>{"3", "1", "51", "Gifhorn", "Giebel, gemfr. Gebiet", ""}));
    }
    for (const char* f : {"qvrlwlz.mdb", "qvrlwlz_dibt.mdb"}) {
        const auto w = Rows(File(f), "SELECT * FROM wlz WHERE ID = 14625330");
        ASSERT_EQ(w.size(), 1u);
        EXPECT_EQ(Texts(w[0], {"LandID", "BezID", "Bezirk", "KreisID", "Kreis", "Gemeinde", "WLZ"}),
                  (std::vector<std::string>{"12", "6", "früher: Direktionsbezirk Dresden", "25", "Bautzen",
                                            "Lohsa / Łaz", ""}));
        EXPECT_EQ(Rows(File(f), "SELECT * FROM wlz WHERE LandID = 4").size(), 2u);  // Giebel and Gifhorn
    }
}

TEST_F(TownImport, RerunChangesNothingAndKeepsEnteredZones) {
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    ImportZones(Fixture("zones_small.csv"), db_);
    const auto before = Snapshot();
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    EXPECT_EQ(Snapshot(), before);

    // A newer directory renames a town and drops another: the name follows,
    // the zones stay, the dropped row is kept.
    std::string text = test::ReadFile(Fixture("gv100ad_small.asc"));
    const size_t at = text.rfind("Alsdorf, Stadt        ");  // the municipality, not its association
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 22, "Alsdorf, Bergbaustadt ");
    const size_t lohsa = text.find("6020211130146253300330");
    ASSERT_NE(lohsa, std::string::npos);
    text.erase(lohsa, text.find('\n', lohsa) + 1 - lohsa);
    const fs::path newer = dir_ / "newer.asc";
    test::WriteFile(newer, text);
    const TownImportReport r = ImportGv100ad(newer.string(), db_);
    EXPECT_EQ(r.tables[0], (TableTally{"qvrl.mdb", "slzwlz", 0, 1, 10, 1}));
    EXPECT_EQ(Texts(Town("slzwlz1", "05334004"), {"Gemeinde", "WZ", "SZ", "BemW"}),
              (std::vector<std::string>{"Alsdorf, Bergbaustadt", "2", "2", "Eifel: WZ 3, sonst 2"}));
    EXPECT_EQ(Texts(Town("slzwlz", "14625330"), {"Gemeinde", "WZ"}), (std::vector<std::string>{"Lohsa / Łaz", "2"}));
}

TEST_F(TownImport, Windows1252DirectoryReadsAsUtf8) {
    // Code page 1252 has no ś or Ł: those become "?", all else reads the same.
    const std::string latin = Utf8ToWindows1252(test::ReadFile(Fixture("gv100ad_small.asc")));
    const fs::path file = dir_ / "latin.asc";
    test::WriteFile(file, latin);
    ImportGv100ad(file.string(), db_);
    EXPECT_EQ(CellText(Town("slzwlz", "05315000")["Reg_Name"]), "Reg.-Bez. Köln");
    EXPECT_EQ(CellText(Town("slzwlz", "14625020")["Gemeinde"]), "Bautzen / Budyšin, Stadt");
    EXPECT_EQ(CellText(Town("slzwlz", "14625330")["Gemeinde"]), "Lohsa / ?az");
    EXPECT_EQ(CellText(Town("slzwlz", "14625330")["PLZ"]), "02999");
}

// A bad record late in the file is named with its line, and nothing is written.
TEST_F(TownImport, BadDirectoryRecordChangesNothing) {
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    const auto before = Snapshot();
    const std::string good = test::ReadFile(Fixture("gv100ad_small.asc"));
    const std::string last = "6020211130146253300330Lohsa / Łaz";
    struct Case {
        const char* name;
        std::string from, to;
        std::string fault;
    } cases[] = {
        {"AGS with a letter", last, "60202111301462533X0330Lohsa / Łaz", ":31: AGS '1462533X'"},
        {"postcode of four digits", "02999     ", " 2999     ", ":31: postcode '2999'"},
        {"other Gebietsstand", last, "6020201231146253300330Lohsa / Łaz", ":31: Gebietsstand 20201231 differs"},
        {"unknown record type", last, "7020211130146253300330Lohsa / Łaz", ":31: record type '70'"},
        {"AGS twice", last, "6020211130146250200020Lohsa / Łaz", ":31: AGS 14625020 already on line 30"},
        {"county never declared", last, "6020211130146263300330Lohsa / Łaz", ":31: county 14626 has no record"},
        {"record too long", "02999     ", "02999      ", ":31: 221 characters"},
        {"record cut off before its postcode", "02999     ", "", ":31: 210 characters; a GV100AD record has 220"},
        {"municipality without name", "Lohsa / Łaz", "           ", ":31: municipality without a name"},
    };
    for (const Case& c : cases) {
        std::string text = good;
        const size_t at = text.rfind(c.from);
        ASSERT_NE(at, std::string::npos) << c.name;
        text.replace(at, c.from.size(), c.to);
        test::WriteFile(dir_ / "bad.asc", text);
        const std::string fault = FaultOf([&] { ImportGv100ad(File("bad.asc"), db_); });
        EXPECT_EQ(fault.substr(0, c.fault.size() + 7), "bad.asc" + c.fault) << c.name;
        EXPECT_EQ(Snapshot(), before) << c.name;
    }
}

// A fault after some files are written, before the commit, whether raised
// between files or by the engine in the last file: none of them changes.
TEST_F(TownImport, FaultBeforeTheCommitRollsBackAllFiles) {
    const auto before = Snapshot(), beforeFive = Snapshot(5);
    for (const char* at : {"qvrl.mdb", "qvrlslz.mdb", "qvrlwlz.mdb"}) {
        SetImportStageHook([at](const std::string& file) {
            if (file == at) throw RuntimeError(err::FileAccess, "test", "fault after " + file);
        });
        EXPECT_EQ(test::ErrorOf([&] { ImportGv100ad(Fixture("gv100ad_small.asc"), db_); }), err::FileAccess) << at;
        SetImportStageHook({});
        EXPECT_EQ(Snapshot(), before) << at;
    }
    // The last list file cannot take rows.
    fs::remove(dir_ / "qvrlwlz_dibt.mdb");
    DBEngine::CreateDatabase(File("qvrlwlz_dibt.mdb"), dao::dbLangGeneral)->Close();
    EXPECT_EQ(test::ErrorOf([&] { ImportGv100ad(Fixture("gv100ad_small.asc"), db_); }), err::TableNotFound);
    EXPECT_EQ(Snapshot(5), beforeFive);
    EXPECT_TRUE(Rows(db_, "SELECT * FROM slzwlz").empty());
}

namespace killvfs {

// The default file system, but the process dies at its Nth write, truncate,
// sync or delete: a commit that is not atomic across the files shows between
// any two of them, not only at the syncs (a WAL commit, say, needs none).
sqlite3_vfs* base = nullptr;
sqlite3_vfs vfs;
sqlite3_io_methods methods;
int left = 0;

struct File {
    sqlite3_file self;
    sqlite3_file* real;
};

void Tick() {
    if (--left == 0) kill(getpid(), SIGKILL);
}
sqlite3_file* Real(sqlite3_file* f) { return reinterpret_cast<File*>(f)->real; }

int Open(sqlite3_vfs*, const char* name, sqlite3_file* f, int flags, int* out) {
    File* k = reinterpret_cast<File*>(f);
    k->real = reinterpret_cast<sqlite3_file*>(k + 1);
    const int rc = base->xOpen(base, name, k->real, flags, out);
    k->self.pMethods = k->real->pMethods ? &methods : nullptr;
    return rc;
}

void Install(int killAt) {
    base = sqlite3_vfs_find(nullptr);
    left = killAt;
    methods = {};
    // With the shared-memory methods a file may be in WAL mode; without them
    // SQLite would quietly keep a rollback journal and hide a WAL writer.
    methods.iVersion = 2;
    methods.xClose = [](sqlite3_file* f) { return Real(f)->pMethods->xClose(Real(f)); };
    methods.xRead = [](sqlite3_file* f, void* b, int n, sqlite3_int64 o) { return Real(f)->pMethods->xRead(Real(f), b, n, o); };
    methods.xWrite = [](sqlite3_file* f, const void* b, int n, sqlite3_int64 o) {
        Tick();
        return Real(f)->pMethods->xWrite(Real(f), b, n, o);
    };
    methods.xTruncate = [](sqlite3_file* f, sqlite3_int64 n) {
        Tick();
        return Real(f)->pMethods->xTruncate(Real(f), n);
    };
    methods.xSync = [](sqlite3_file* f, int fl) {
        Tick();
        return Real(f)->pMethods->xSync(Real(f), fl);
    };
    methods.xFileSize = [](sqlite3_file* f, sqlite3_int64* n) { return Real(f)->pMethods->xFileSize(Real(f), n); };
    methods.xLock = [](sqlite3_file* f, int l) { return Real(f)->pMethods->xLock(Real(f), l); };
    methods.xUnlock = [](sqlite3_file* f, int l) { return Real(f)->pMethods->xUnlock(Real(f), l); };
    methods.xCheckReservedLock = [](sqlite3_file* f, int* r) { return Real(f)->pMethods->xCheckReservedLock(Real(f), r); };
    methods.xFileControl = [](sqlite3_file* f, int op, void* a) { return Real(f)->pMethods->xFileControl(Real(f), op, a); };
    methods.xSectorSize = [](sqlite3_file* f) { return Real(f)->pMethods->xSectorSize(Real(f)); };
    methods.xDeviceCharacteristics = [](sqlite3_file* f) { return Real(f)->pMethods->xDeviceCharacteristics(Real(f)); };
    methods.xShmMap = [](sqlite3_file* f, int pg, int sz, int extend, void volatile** p) {
        return Real(f)->pMethods->xShmMap(Real(f), pg, sz, extend, p);
    };
    methods.xShmLock = [](sqlite3_file* f, int offset, int n, int flags) {
        return Real(f)->pMethods->xShmLock(Real(f), offset, n, flags);
    };
    methods.xShmBarrier = [](sqlite3_file* f) { Real(f)->pMethods->xShmBarrier(Real(f)); };
    methods.xShmUnmap = [](sqlite3_file* f, int del) { return Real(f)->pMethods->xShmUnmap(Real(f), del); };
    vfs = *base;
    vfs.iVersion = 1;
    vfs.szOsFile = static_cast<int>(sizeof(File)) + base->szOsFile;
    vfs.zName = "killvfs";
    vfs.xOpen = Open;
    vfs.xDelete = [](sqlite3_vfs*, const char* name, int sync) {
        Tick();
        return base->xDelete(base, name, sync);
    };
    sqlite3_vfs_register(&vfs, 1);
}

}  // namespace killvfs

// The import killed at every change it makes to any file: afterwards, once
// the files are opened again (which rolls back what a journal says), they
// hold either all of it or none of it.
TEST_F(TownImport, KilledImportLeavesAllFilesOldOrAllNew) {
    const fs::path pristine = dir_ / "pristine";
    fs::create_directories(pristine);
    for (const char* f : kFiles) fs::copy_file(dir_ / f, pristine / f);
    const auto before = Snapshot();
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    const auto after = Snapshot();
    ASSERT_NE(before, after);

    int kills = 0;
    for (int killAt = 1; killAt < 20000; ++killAt) {
        // A journal, WAL or super-journal left by the run before would be
        // replayed onto the fresh copies: each run starts from the files alone.
        for (const auto& e : fs::directory_iterator(dir_))
            if (e.is_regular_file()) fs::remove(e.path());
        for (const char* f : kFiles) fs::copy_file(pristine / f, dir_ / f);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            killvfs::Install(killAt);
            int code = 0;
            try {
                ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
            } catch (...) {
                code = 3;
            }
            _exit(code);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        for (const char* f : kFiles) DBEngine::OpenDatabase(File(f), {}, false)->Close();
        const auto now = Snapshot();
        ASSERT_TRUE(now == before || now == after) << "killed at event " << killAt;
        if (WIFEXITED(status)) {
            EXPECT_EQ(WEXITSTATUS(status), 0);
            EXPECT_EQ(now, after);
            break;
        }
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        ++kills;
    }
    // Every page of five files and their journals: far more than the syncs alone.
    EXPECT_GT(kills, 50);
}

TEST_F(TownImport, MissingListFilesAreLeftOutAndSaid) {
    fs::remove(dir_ / "qvrlslz_dibt.mdb");
    const TownImportReport r = ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    EXPECT_EQ(r.tables.size(), 5u);
    EXPECT_EQ(r.notes, (std::vector<std::string>{"qvrlslz_dibt.mdb: not beside qvrl.mdb, left out"}));
}

// --- Zones ------------------------------------------------------------------

TEST_F(TownImport, DeepestZoneKeyWinsWhateverTheOrder) {
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    EXPECT_EQ(ImportZones(Fixture("zones_small.csv"), db_).notes, std::vector<std::string>{});
    // Köln by state 05; Städteregion Aachen and Alsdorf by county 05334;
    // Aachen by itself; Bautzen's towns by state 14; the rest by nothing.

    const std::vector<std::string> cols = {"WZ", "SZ", "BemW", "BemS", "sk", "hNN"};
    struct Case {
        const char* ags;
        std::vector<std::string> eurocode;
    } cases[] = {
        {"05315000", {"1", "1", "", "", "0.65", "0"}},
        {"05334000", {"2", "2", "Eifel: WZ 3, sonst 2", "", "0", "0"}},
        {"05334004", {"2", "2", "Eifel: WZ 3, sonst 2", "", "0", "0"}},
        {"05334002", {"3", "1a", "", "Aachen; Stadtgebiet", "0.85", "173"}},
        {"14625000", {"2", "2", "", "", "0", "0"}},
        {"03151501", {"", "", "", "", "0", "0"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Texts(Town("slzwlz1", c.ags), cols), c.eurocode) << c.ags;
        const std::vector<std::string> german(c.eurocode.begin(), c.eurocode.begin() + 4);
        EXPECT_EQ(Texts(Town("slzwlz", c.ags), {"WZ", "SZ", "BemW", "BemS"}), german) << c.ags;
    }

    // The same rows upside down give the same tables.
    const auto once = Snapshot();
    std::vector<std::string> lines = SplitLines(test::ReadFile(Fixture("zones_small.csv")));
    std::reverse(lines.begin() + 2, lines.end());
    std::string text;
    for (const std::string& l : lines) text += l + "\n";
    test::WriteFile(dir_ / "reversed.csv", text);
    const TownImportReport again = ImportZones((dir_ / "reversed.csv").string(), db_);
    EXPECT_EQ(again.tables[0], (TableTally{"qvrl.mdb", "slzwlz", 0, 0, 7, 5}));
    EXPECT_EQ(Snapshot(), once);
}

TEST_F(TownImport, ZoneColumnsLeftOutStayAndUnusedKeysAreNamed) {
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    ImportZones(Fixture("zones_small.csv"), db_);
    test::WriteFile(dir_ / "wind.csv", "AGS,WZ\n05334,4\n09,2\n");
    const TownImportReport r = ImportZones((dir_ / "wind.csv").string(), db_);
    EXPECT_EQ(r.notes, (std::vector<std::string>{"1 key applied to no town: 09 (line 3)"}));
    EXPECT_EQ(Texts(Town("slzwlz1", "05334002"), {"WZ", "SZ", "BemS", "sk"}),
              (std::vector<std::string>{"4", "1a", "Aachen; Stadtgebiet", "0.85"}));
}

TEST_F(TownImport, BadZoneRowsChangeNothing) {
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    const auto before = Snapshot();
    struct Case {
        std::string row;
        std::string fault;
    } cases[] = {
        {"0533;1;1;;;;", "key '0533' is not an AGS prefix of 2, 3, 5 or 8 digits"},
        {"05x;1;1;;;;", "key '05x' is not an AGS prefix of 2, 3, 5 or 8 digits"},
        {"05;1;1;;;;", "key 05 already on line 4"},
        {"12;12345678901;1;;;;", "WZ has 11 characters, at most 10 fit"},
        {"12;1;1;;;-0.5;", "sk -0.5 is negative"},
        {"12;1;1;;;0,5x;", "sk '0,5x' is not a number"},
        {"12;1;1;;;;;9", "8 cells, but the header has 7"},
        {"12;1;1;\"open;;;;", "a quote is left open"},
    };
    for (const Case& c : cases) {
        test::WriteFile(dir_ / "bad.csv", test::ReadFile(Fixture("zones_small.csv")) + c.row + "\r\n");
        EXPECT_EQ(FaultOf([&] { ImportZones(File("bad.csv"), db_); }), "bad.csv:7: " + c.fault) << c.row;
        EXPECT_EQ(Snapshot(), before) << c.row;
    }
    test::WriteFile(dir_ / "head.csv", "AGS;WZ;Zone\n05;1;1\n");
    EXPECT_THROW(ImportZones((dir_ / "head.csv").string(), db_), TownInputError);
    EXPECT_EQ(test::ErrorOf([&] { ImportZones((dir_ / "none.csv").string(), db_); }), err::FileNotFound);
    EXPECT_EQ(test::ErrorOf([&] { ImportZones(Fixture("zones_small.csv"), db_, 52); }), err::InvalidCall);
    EXPECT_EQ(Snapshot(), before);
}

// --- Austria ----------------------------------------------------------------

TEST_F(TownImport, AustrianListTakesAustrianKeyWidths) {
    ImportAtMunicipalities(Fixture("gemliste_small.csv"), db_);
    const std::vector<std::string> cols = {"Land_ID",  "Land",  "BL_ID",  "BL_Name",  "BL_ShortName", "Reg_ID",
                                           "Reg_Name", "LK_ID", "Gem_ID", "Gemeinde", "PLZ",          "sk"};
    EXPECT_EQ(Texts(Town("slzwlz1", "30201"), cols),
              (std::vector<std::string>{"51", "Österreich", "3", "Niederösterreich", "NÖ", "02", "", "00", "01",
                                        "St. Pölten", "3100", "0"}));
    // Vienna's districts share the Kennziffer 90001; each keeps its own code.
    EXPECT_EQ(Texts(Town("slzwlz1", "90201"), {"BL_ID", "Reg_ID", "Gemeinde", "PLZ"}),
              (std::vector<std::string>{"9", "02", "Wien-Leopoldstadt", "1020"}));
    EXPECT_TRUE(Rows(db_, "SELECT * FROM slzwlz1 WHERE AGS = '90001'").empty());
    EXPECT_TRUE(Rows(db_, "SELECT * FROM slzwlz").empty());

    // A district name entered later, and zones, survive a rerun.
    {
        auto db = DBEngine::OpenDatabase(db_, {}, false);
        auto rs = db->OpenRecordset("SELECT * FROM slzwlz1 WHERE AGS = '30201'", dao::dbOpenDynaset);
        rs->Edit();
        rs->Fields("Reg_Name").Value(Variant("St. Pölten (Stadt)"));
        rs->Update();
    }
    test::WriteFile(dir_ / "at_zones.csv", "AGS;SZ;sk;hNN\n3;2;1,65;\n30201;2;1,41;267\n");
    EXPECT_EQ(ImportZones((dir_ / "at_zones.csv").string(), db_, 51).tables,
              (std::vector<TableTally>{{"qvrl.mdb", "slzwlz1 (Land_ID 51)", 0, 1, 0, 4}}));
    // The same list in code page 1252, as the publisher also ships it, reads the same.
    test::WriteFile(dir_ / "latin.csv", Utf8ToWindows1252(test::ReadFile(Fixture("gemliste_small.csv"))));
    const TownImportReport again = ImportAtMunicipalities((dir_ / "latin.csv").string(), db_);
    EXPECT_EQ(again.tables[0], (TableTally{"qvrl.mdb", "slzwlz1 (Land_ID 51)", 0, 0, 5, 0}));
    EXPECT_EQ(Texts(Town("slzwlz1", "30201"), {"Reg_Name", "SZ", "sk", "hNN"}),
              (std::vector<std::string>{"St. Pölten (Stadt)", "2", "1.41", "267"}));
}

TEST_F(TownImport, BadAustrianRowsChangeNothing) {
    ImportAtMunicipalities(Fixture("gemliste_small.csv"), db_);
    const auto before = Snapshot();
    const std::string good = test::ReadFile(Fixture("gemliste_small.csv"));
    struct Case {
        std::string row;
        std::string fault;
    } cases[] = {
        {"3020;Ort;3020;M;3100;", "Gemeindekennziffer '3020' is not five digits from 10000"},
        {"30202;Ort;40202;M;3100;", "Gemeindecode '40202' is not five digits in the state of 30202"},
        {"30202;Ort;30202;M;31000;", "postcode '31000' is not four digits"},
        {"30202;Ort;30202;M;3100;3101 31O2", "further postcode '31O2' is not four digits"},
        {"30202;;30202;M;3100;", "no Gemeindename"},
        {"30201;St. Pölten;30201;SR;3100;", "Gemeindecode 30201 already on line 4"},
    };
    for (const Case& c : cases) {
        // The bad row goes behind the last municipality, before the source note.
        std::string text = good;
        text.insert(text.find("Quelle:"), c.row + "\n");
        test::WriteFile(dir_ / "bad.csv", text);
        EXPECT_EQ(FaultOf([&] { ImportAtMunicipalities(File("bad.csv"), db_); }), "bad.csv:8: " + c.fault);
        EXPECT_EQ(Snapshot(), before) << c.row;
    }
    test::WriteFile(dir_ / "other.csv", "AGS;Name\n30201;St. Pölten\n");
    EXPECT_THROW(ImportAtMunicipalities((dir_ / "other.csv").string(), db_), TownInputError);
}

// --- Hand-over to the look-ups ------------------------------------------------

// The look-ups read what the importers wrote, footnotes and county rows as
// they expect them.
TEST_F(TownImport, LookUpsFindImportedTowns) {
    ImportGv100ad(Fixture("gv100ad_small.asc"), db_);
    ImportZones(Fixture("zones_small.csv"), db_);
    ImportAtMunicipalities(Fixture("gemliste_small.csv"), db_);
    setenv("QVRL_PROGRAM_FOLDER", dir_.c_str(), 1);
    struct Case {
        int32_t land;  // 0: the German table
        const char* ags;
        const char* gemeinde;
        const char* wz;
        const char* sz;
        const char* plz;
    } cases[] = {
        {0, "05334002", "Aachen, Stadt", "3", "1a", "52058"},
        {0, "14625000", "alle", "2", "2", ""},
        {0, "03151501", "Giebel, gemfr. Gebiet [1] [2]", "", "", ""},
        {50, "05334002", "Aachen, Stadt [3]", "3", "1a", "52058"},
        {50, "05315000", "Köln, Stadt [3] [4]", "1", "1", "50667"},
        {51, "30201", "St. Pölten [1] [2] [3] [4]", "", "", "3100"},
    };
    for (const Case& c : cases) {
        TownRec t;
        if (c.land == 0)
            FindTownByAGS(c.ags, t);
        else
            FindTownByAGSEN(c.land, c.ags, t);
        EXPECT_EQ((std::vector<std::string>{t.AGS, t.Gemeinde, t.WZ, t.SZ, t.PLZ}),
                  (std::vector<std::string>{c.ags, c.gemeinde, c.wz, c.sz, c.plz}))
            << c.land << " " << c.ags;
    }
}

// --- The published files, when the shared data folder is there ---------------

TEST_F(TownImport, PublishedListsLoadWhole) {
    const std::string gv = std::string(QVRL_SHARED_DATA) + "/de_municipalities/GV100AD_301121.ASC";
    const std::string at = std::string(QVRL_SHARED_DATA) + "/at_municipalities/gemliste_knz.csv";
    if (!fs::exists(gv) || !fs::exists(at)) GTEST_SKIP() << "no published lists in " << QVRL_SHARED_DATA;

    // The keys straight from the files: digits in the first columns, so bytes
    // and characters agree there.
    std::set<std::string> german, austrian;
    for (const std::string& l : SplitLines(test::ReadFile(gv)))
        if (l.rfind("60", 0) == 0) german.insert(l.substr(10, 8));
    std::map<std::string, std::string> austrianNames;
    for (const std::string& l : SplitLines(test::ReadFile(at))) {
        const size_t a = l.find(';'), b = l.find(';', a + 1), c = l.find(';', b + 1);
        if (l.empty() || l[0] < '1' || l[0] > '9') continue;
        austrianNames[l.substr(b + 1, c - b - 1)] = l.substr(a + 1, b - a - 1);
    }
    ASSERT_EQ(german.size(), 10997u);
    ASSERT_EQ(austrianNames.size(), 2117u);

    const TownImportReport de = ImportGv100ad(gv, db_);
    const TownImportReport au = ImportAtMunicipalities(at, db_);
    EXPECT_EQ(de.source,
              "GV100AD_301121.ASC (Gebietsstand 30.11.2021): 16 states, 29 regions, 400 counties, "
              "10997 municipalities");
    std::set<std::string> stored;
    for (const auto& row : Rows(db_, "SELECT AGS, Gemeinde FROM slzwlz"))
        if (!CellText(row.at("Gemeinde")).empty()) stored.insert(CellText(row.at("AGS")));
    EXPECT_EQ(stored, german);
    std::map<std::string, std::string> storedAt;
    for (const auto& row : Rows(db_, "SELECT AGS, Gemeinde FROM slzwlz1 WHERE Land_ID = 51"))
        storedAt[CellText(row.at("AGS"))] = CellText(row.at("Gemeinde"));
    EXPECT_EQ(storedAt, austrianNames);

    EXPECT_EQ(Texts(Town("slzwlz", "05315000"), {"Gemeinde", "PLZ", "Reg_Name", "LK_Name"}),
              (std::vector<std::string>{"Köln, Stadt", "50667", "Reg.-Bez. Köln", "Köln, Stadt"}));
    EXPECT_EQ(Texts(Town("slzwlz", "05334000"), {"Gemeinde", "LK_Name"}),
              (std::vector<std::string>{"", "Städteregion Aachen"}));
    EXPECT_EQ(Texts(Town("slzwlz1", "12052000"), {"Gemeinde", "BL_ShortName"}),
              (std::vector<std::string>{"Cottbus/Chóśebuz, Stadt", "BB"}));
    EXPECT_EQ(Texts(Town("slzwlz1", "60101"), {"Gemeinde", "PLZ", "BL_Name"}),
              (std::vector<std::string>{"Graz", "8010", "Steiermark"}));

    const auto before = Snapshot();
    for (const TableTally& t : ImportGv100ad(gv, db_).tables)
        EXPECT_EQ(t.inserted + t.updated, 0) << t.file << " " << t.table;
    EXPECT_EQ(ImportAtMunicipalities(at, db_).tables[0].unchanged, 2117);
    EXPECT_EQ(Snapshot(), before);
}

}  // namespace
