#include "maintenance/TownImport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include <sqlite3.h>

#include "interchange/TextFile.h"
#include "location/modAGSMdb.h"
#include "store/StoreText.h"
#include "store/modDAO.h"
#include "location/modSLZMdb.h"
#include "support/errors.h"
#include "support/modToolsB.h"
#include "support/vb.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

std::string JoinFaults(const std::vector<std::string>& faults) {
    std::string s;
    for (const std::string& f : faults) s += (s.empty() ? "" : "\n") + f;
    return s;
}

// Collects the bad records of a file; past the first few only counts them,
// so that a file in the wrong format does not bury the message.
class Faults {
public:
    explicit Faults(std::string file) : file_(std::move(file)) {}
    void Add(int32_t line, const std::string& what) {
        if (++count_ <= kShown) list_.push_back(file_ + ":" + std::to_string(line) + ": " + what);
    }
    void AddFile(const std::string& what) {
        if (++count_ <= kShown) list_.push_back(file_ + ": " + what);
    }
    void ThrowIfAny() const {
        if (count_ == 0) return;
        std::vector<std::string> l = list_;
        if (count_ > kShown) l.push_back("... and " + std::to_string(count_ - kShown) + " more bad records");
        throw TownInputError(std::move(l));
    }

private:
    static constexpr int32_t kShown = 20;
    std::string file_;
    std::vector<std::string> list_;
    int32_t count_ = 0;
};

std::string FileName(const std::string& path) { return fs::path(path).filename().string(); }

TextLines ReadInput(const std::string& path) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) Raise(err::FileNotFound, {}, path + ": no such file");
    return DecodeText(ReadFileBytes(path));
}

bool AllDigits(std::string_view s) {
    return !s.empty() && std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Characters of a UTF-8 text: the byte offset where each starts, and the end.
std::vector<size_t> CharStarts(std::string_view s) {
    std::vector<size_t> o;
    for (size_t i = 0; i < s.size(); ++i)
        if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80) o.push_back(i);
    o.push_back(s.size());
    return o;
}

size_t CharCount(std::string_view s) { return CharStarts(s).size() - 1; }

// Characters from..to (1-based, inclusive); those past the end count as blank.
std::string CharColumns(std::string_view s, const std::vector<size_t>& starts, size_t from, size_t to) {
    const size_t n = starts.size() - 1;
    if (from > n) return {};
    const size_t last = std::min(to, n);
    return std::string(s.substr(starts[from - 1], starts[last] - starts[from - 1]));
}

// One CSV line into cells. A quoted cell may hold the separator and "" for a
// quote; false for a quote left open.
bool SplitCsv(std::string_view line, char sep, std::vector<std::string>& cells) {
    cells.clear();
    std::string cur;
    bool quoted = false, wasQuoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quoted) {
            if (c != '"')
                cur += c;
            else if (i + 1 < line.size() && line[i + 1] == '"')
                cur += '"', ++i;
            else
                quoted = false;
        } else if (c == '"' && Trim(cur).empty() && !wasQuoted) {
            cur.clear();
            quoted = wasQuoted = true;
        } else if (c == sep) {
            cells.push_back(wasQuoted ? cur : Trim(cur));
            cur.clear();
            wasQuoted = false;
        } else if (!(wasQuoted && (c == ' ' || c == '\t'))) {
            cur += c;
        }
    }
    if (quoted) return false;
    cells.push_back(wasQuoted ? cur : Trim(cur));
    return true;
}

bool BlankCells(const std::vector<std::string>& cells) {
    return std::all_of(cells.begin(), cells.end(), [](const std::string& c) { return Trim(c).empty(); });
}

// The wind list numbers its states its own way; the shared code table maps them.
int32_t WlzStateNumber(int32_t officialNumber) {
    for (const ZoneStateCode& c : ZoneStateCodes())
        if (c.SlzNumber == officialNumber) return c.WlzNumber;
    return 0;
}

struct AustrianState {
    const char* name;
    const char* shortName;
};
constexpr AustrianState kAustrianStates[] = {
    {"", ""},
    {"Burgenland", "Bgld"},
    {"Kärnten", "Ktn"},
    {"Niederösterreich", "NÖ"},
    {"Oberösterreich", "OÖ"},
    {"Salzburg", "Sbg"},
    {"Steiermark", "Stmk"},
    {"Tirol", "T"},
    {"Vorarlberg", "Vbg"},
    {"Wien", "W"},
};

constexpr int32_t kGermany = 50;
constexpr int32_t kAustria = 51;
constexpr const char* kGermanyName = "Deutschland";
constexpr const char* kGermanyShort = "D";
constexpr const char* kAustriaName = "Österreich";
constexpr const char* kAustriaShort = "A";

// ---------------------------------------------------------------------------
// Writing: the databases of one import, committed together.

// One file per import: the store's own transaction holds it together.
class Batch {
public:
    Database& Open(const std::string& path) {
        auto db = DBEngine::OpenDatabase(path, {}, false);
        db->BeginTrans();
        dbs_.push_back(db);
        return *db;
    }
    void Commit() {
        for (auto& db : dbs_) db->CommitTrans();
        committed_ = true;
    }
    ~Batch() {
        if (committed_) return;
        for (auto& db : dbs_) {
            try {
                db->Rollback();
            } catch (const RuntimeError&) {
                // The engine ends an open transaction with the connection anyway.
            }
        }
    }

private:
    std::vector<std::shared_ptr<Database>> dbs_;
    bool committed_ = false;
};

ImportStageHook& StageHook() {
    static ImportStageHook hook;
    return hook;
}

void Stage(const std::string& what) {
    if (StageHook()) StageHook()(what);
}

// Several files in one transaction: the first file is the connection's main
// database, the others are attached, and every one keeps a rollback journal.
// SQLite then commits through a super-journal, so a fault or a kill at any
// moment leaves all files old or all new (a later open rolls back the rest).
class MultiFileBatch {
public:
    explicit MultiFileBatch(const std::string& mainPath) {
        const int rc = sqlite3_open_v2(mainPath.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        if (rc != SQLITE_OK) Fail(mainPath);
        sqlite3_extended_result_codes(db_, 1);
        sqlite3_busy_timeout(db_, 5000);
        if (RegisterStoreText(db_) != SQLITE_OK) Fail(mainPath);
        Prepare("main", mainPath);
    }
    MultiFileBatch(const MultiFileBatch&) = delete;
    MultiFileBatch& operator=(const MultiFileBatch&) = delete;
    ~MultiFileBatch() {
        if (inTransaction_) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
        sqlite3_close_v2(db_);
    }

    // Schema name of a further file. Files are attached before Begin.
    std::string Attach(const std::string& path) {
        const std::string schema = "f" + std::to_string(++attached_);
        Statement st(*this, "ATTACH DATABASE ?1 AS " + schema, path);
        sqlite3_bind_text(st.s, 1, path.c_str(), -1, SQLITE_TRANSIENT);
        st.Done();
        Prepare(schema, path);
        return schema;
    }

    void Begin() {
        Exec("BEGIN IMMEDIATE", "");
        inTransaction_ = true;
    }
    void Commit() {
        Exec("COMMIT", "");
        inTransaction_ = false;
    }

    struct Rows {
        std::vector<std::string> columns;
        std::vector<int64_t> rowids;
        std::vector<std::vector<Variant>> values;
        size_t Column(const std::string& name, const std::string& table) const {
            for (size_t i = 0; i < columns.size(); ++i)
                if (UCase(columns[i]) == UCase(name)) return i;
            Raise(err::ItemNotFound, {}, table + ": no column " + name);
        }
    };

    // Every row of a table, or those whose column `filterColumn` holds `filterValue`.
    Rows Select(const std::string& schema, const std::string& table, const std::string& filterColumn = {},
                int32_t filterValue = 0) {
        RequireTable(schema, table);
        std::string sql = "SELECT rowid, * FROM " + schema + "." + Quote(table);
        if (!filterColumn.empty()) sql += " WHERE " + Quote(filterColumn) + " = ?1";
        Statement st(*this, sql, File(schema));
        if (!filterColumn.empty()) sqlite3_bind_int(st.s, 1, filterValue);
        Rows r;
        const int n = sqlite3_column_count(st.s);
        for (int c = 1; c < n; ++c) r.columns.emplace_back(sqlite3_column_name(st.s, c));
        while (st.Step()) {
            r.rowids.push_back(sqlite3_column_int64(st.s, 0));
            std::vector<Variant> row;
            for (int c = 1; c < n; ++c) row.push_back(ValueOf(st.s, c));
            r.values.push_back(std::move(row));
        }
        return r;
    }

    template <typename CellList>
    void Update(const std::string& schema, const std::string& table, int64_t rowid, const CellList& cells) {
        std::string sql = "UPDATE " + schema + "." + Quote(table) + " SET ";
        int i = 0;
        for (const auto& c : cells) {
            sql += (i ? ", " : "") + Quote(c.column) + " = ?" + std::to_string(i + 1);
            ++i;
        }
        sql += " WHERE rowid = ?" + std::to_string(i + 1);
        Statement st(*this, sql, File(schema));
        i = 0;
        for (const auto& c : cells) Bind(st.s, ++i, c.value);
        sqlite3_bind_int64(st.s, i + 1, rowid);
        st.Done();
    }

    template <typename CellList>
    void Insert(const std::string& schema, const std::string& table, const CellList& cells) {
        std::string names, marks;
        int i = 0;
        for (const auto& c : cells) {
            names += (i ? ", " : "") + Quote(c.column);
            marks += (i ? ", ?" : "?") + std::to_string(i + 1);
            ++i;
        }
        Statement st(*this, "INSERT INTO " + schema + "." + Quote(table) + " (" + names + ") VALUES (" + marks + ")",
                     File(schema));
        i = 0;
        for (const auto& c : cells) Bind(st.s, ++i, c.value);
        st.Done();
    }

    const std::string& File(const std::string& schema) const { return files_.at(schema); }

private:
    struct Statement {
        Statement(MultiFileBatch& b, const std::string& sql, const std::string& file) : batch(b), path(file) {
            if (sqlite3_prepare_v2(batch.db_, sql.c_str(), -1, &s, nullptr) != SQLITE_OK) batch.Fail(path);
        }
        ~Statement() { sqlite3_finalize(s); }
        bool Step() {
            const int rc = sqlite3_step(s);
            if (rc == SQLITE_ROW) return true;
            if (rc != SQLITE_DONE) batch.Fail(path);
            return false;
        }
        void Done() {
            while (Step()) {
            }
        }
        MultiFileBatch& batch;
        std::string path;
        sqlite3_stmt* s = nullptr;
    };

    static std::string Quote(const std::string& name) {
        std::string q = "\"";
        for (char c : name) q += c == '"' ? std::string("\"\"") : std::string(1, c);
        return q + "\"";
    }

    static Variant ValueOf(sqlite3_stmt* s, int c) {
        switch (sqlite3_column_type(s, c)) {
        case SQLITE_NULL:
            return Variant::Null();
        case SQLITE_INTEGER: {
            const int64_t v = sqlite3_column_int64(s, c);
            if (v >= INT32_MIN && v <= INT32_MAX) return Variant(static_cast<int32_t>(v));
            return Variant(static_cast<double>(v));
        }
        case SQLITE_FLOAT:
            return Variant(sqlite3_column_double(s, c));
        default: {
            const unsigned char* t = sqlite3_column_text(s, c);
            return Variant(std::string(t ? reinterpret_cast<const char*>(t) : ""));
        }
        }
    }

    static void Bind(sqlite3_stmt* s, int i, const Variant& v) {
        if (v.isNull() || v.isEmpty())
            sqlite3_bind_null(s, i);
        else if (v.type() == Variant::Type::String)
            sqlite3_bind_text(s, i, v.asString().c_str(), -1, SQLITE_TRANSIENT);
        else if (v.type() == Variant::Type::Integer || v.type() == Variant::Type::Long)
            sqlite3_bind_int64(s, i, static_cast<int64_t>(v.toDouble()));
        else
            sqlite3_bind_double(s, i, v.toDouble());
    }

    void Prepare(const std::string& schema, const std::string& path) {
        files_[schema] = path;
        // A file in WAL mode would commit on its own; the super-journal needs rollback journals.
        Exec("PRAGMA " + schema + ".journal_mode = DELETE", path);
        Exec("PRAGMA " + schema + ".synchronous = FULL", path);
    }

    void RequireTable(const std::string& schema, const std::string& table) {
        Statement st(*this, "SELECT 1 FROM " + schema + ".sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE",
                     File(schema));
        sqlite3_bind_text(st.s, 1, table.c_str(), -1, SQLITE_TRANSIENT);
        if (!st.Step())
            Raise(err::TableNotFound, {}, FileName(File(schema)) + ": no table '" + table + "'");
    }

    void Exec(const std::string& sql, const std::string& path) {
        Statement st(*this, sql, path.empty() ? files_.at("main") : path);
        st.Done();
    }

    [[noreturn]] void Fail(const std::string& path) {
        const int rc = db_ ? sqlite3_extended_errcode(db_) : SQLITE_CANTOPEN;
        const std::string what = path + ": " + (db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(rc));
        switch (rc & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            Raise(dao::errFileInUse, {}, what);
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            Raise(dao::errUnrecognizedFormat, {}, what);
        default:
            Raise(dao::errEngine, {}, what);
        }
    }

    sqlite3* db_ = nullptr;
    std::map<std::string, std::string> files_;
    int attached_ = 0;
    bool inTransaction_ = false;
};

struct Cell {
    Cell(const char* c, const Variant& v) : column(c), value(v) {}
    const char* column;
    Variant value;
};

// A row as the file has it: key, the columns the file decides, and those a
// new row starts with.
struct WantedRow {
    std::string key;
    std::vector<Cell> managed;
    std::vector<Cell> fresh;
};

enum class KeyKind { Text, Number };

std::string KeyOf(const Variant& v, KeyKind kind) {
    if (kind == KeyKind::Text) return Trim(NzText(v));
    if (v.isNull() || !v.isNumeric()) return {};
    const double d = v.toDouble();
    if (d != std::floor(d) || std::fabs(d) > 1e15) return DoubleToText(d);
    return std::to_string(static_cast<long long>(d));
}

// Null is never equal: a column the reader expects as text gets "" instead.
bool Same(const Variant& stored, const Variant& wanted) {
    if (stored.isNull()) return false;
    if (wanted.type() == Variant::Type::String)
        return stored.type() == Variant::Type::String && stored.asString() == wanted.asString();
    return stored.isNumeric() && stored.toDouble() == wanted.toDouble();
}

int32_t NextId(const MultiFileBatch::Rows& rows, const std::string& table) {
    const size_t id = rows.Column("ID", table);
    double top = 0.0;
    for (const auto& r : rows.values)
        if (!r[id].isNull() && r[id].isNumeric()) top = std::max(top, r[id].toDouble());
    if (top >= 2147483647.0) Raise(err::Overflow, {}, table + ": no row number left above " + DoubleToText(top));
    return static_cast<int32_t>(top) + 1;
}

// Which rows of a table an import reaches.
struct Target {
    std::string schema;
    std::string table;
    std::string filterColumn;  // empty: every row
    int32_t filterValue = 0;
};

// Lays the wanted rows over the rows of the target: equal ones stay,
// differing ones get the file's values in the managed columns, missing ones
// are appended. withId: a new row continues the table's ID.
TableTally Merge(MultiFileBatch& batch, TableTally t, const Target& to, const char* keyColumn, KeyKind kind,
                 bool withId, const std::vector<WantedRow>& rows) {
    std::unordered_map<std::string, size_t> wanted;
    wanted.reserve(rows.size());
    for (size_t i = 0; i < rows.size(); ++i) wanted.emplace(rows[i].key, i);
    std::vector<bool> seen(rows.size(), false);
    const MultiFileBatch::Rows have = batch.Select(to.schema, to.table, to.filterColumn, to.filterValue);
    int32_t nextId = withId ? NextId(to.filterColumn.empty() ? have : batch.Select(to.schema, to.table), to.table) : 0;
    const size_t key = have.Column(keyColumn, to.table);
    for (const auto& w : rows)
        for (const auto* list : {&w.managed, &w.fresh})
            for (const Cell& c : *list) have.Column(c.column, to.table);

    for (size_t r = 0; r < have.values.size(); ++r) {
        const std::vector<Variant>& stored = have.values[r];
        const auto it = wanted.find(KeyOf(stored[key], kind));
        if (it == wanted.end()) {
            ++t.untouched;
            continue;
        }
        seen[it->second] = true;
        std::vector<Cell> changes;
        for (const Cell& c : rows[it->second].managed)
            if (!Same(stored[have.Column(c.column, to.table)], c.value)) changes.push_back(c);
        if (changes.empty()) {
            ++t.unchanged;
        } else {
            batch.Update(to.schema, to.table, have.rowids[r], changes);
            ++t.updated;
        }
    }
    for (size_t i = 0; i < rows.size(); ++i) {
        if (seen[i]) continue;
        std::vector<Cell> cells;
        if (withId) {
            if (nextId == INT32_MAX) Raise(err::Overflow, {}, to.table + ": no row number left for a new row");
            cells.emplace_back("ID", Variant(nextId++));
        }
        cells.insert(cells.end(), rows[i].managed.begin(), rows[i].managed.end());
        cells.insert(cells.end(), rows[i].fresh.begin(), rows[i].fresh.end());
        batch.Insert(to.schema, to.table, cells);
        ++t.inserted;
    }
    return t;
}

// Built one by one: brace lists of tagged values trip GCC's uninitialised-use check.
struct Cells {
    Cells& operator()(const char* column, const Variant& v) {
        items.emplace_back(column, v);
        return *this;
    }
    std::vector<Cell> items;
};

std::vector<Cell> FreshZones(bool eurocode) {
    Cells c;
    for (const char* n : {"WZ", "SZ", "BemW", "BemS"}) c(n, Variant(std::string()));
    if (eurocode)
        for (const char* n : {"qb", "vb", "sk", "hNN"}) c(n, Variant(0.0));
    return std::move(c.items);
}

}  // namespace

void SetImportStageHook(ImportStageHook hook) { StageHook() = std::move(hook); }

TownInputError::TownInputError(std::vector<std::string> faults)
    : std::runtime_error(JoinFaults(faults)), faults_(std::move(faults)) {}

// ---------------------------------------------------------------------------
// GV100AD

Gv100Directory ReadGv100ad(const std::string& path) {
    const TextLines text = ReadInput(path);
    Faults faults(FileName(path));
    struct Named {
        std::string name;
        int32_t line;
    };
    std::map<std::string, Named> states, regions, counties;
    std::vector<std::string> countyOrder;
    std::unordered_map<std::string, int32_t> agsLine;
    struct RawTown {
        int32_t line;
        std::string ags, name, plz;
    };
    std::vector<RawTown> raw;
    std::string stand;
    int32_t standLine = 0;

    for (size_t i = 0; i < text.lines.size(); ++i) {
        const int32_t lineNo = static_cast<int32_t>(i + 1);
        const std::string& line = text.lines[i];
        if (Trim(line).empty()) continue;
        const std::vector<size_t> starts = CharStarts(line);
        const size_t n = starts.size() - 1;
        if (n != 220) {
            faults.Add(lineNo, std::to_string(n) + " characters; a GV100AD record has 220" +
                                   (n < 220 ? " (cut off?)" : ""));
            continue;
        }
        auto col = [&](size_t from, size_t to) { return CharColumns(line, starts, from, to); };
        const std::string type = col(1, 2);
        const std::string date = col(3, 10);
        if (!AllDigits(date)) {
            faults.Add(lineNo, "columns 3-10 '" + date + "' are no Gebietsstand (yyyymmdd)");
            continue;
        }
        if (stand.empty()) {
            stand = date;
            standLine = lineNo;
        } else if (date != stand) {
            faults.Add(lineNo,
                       "Gebietsstand " + date + " differs from " + stand + " of line " + std::to_string(standLine));
            continue;
        }
        const std::string land = col(11, 12), rb = col(13, 13), kreis = col(14, 15), name = Trim(col(23, 72));
        const auto needName = [&](const char* what) {
            if (name.empty()) faults.Add(lineNo, std::string(what) + " without a name (columns 23-72)");
            return !name.empty();
        };
        const auto checkLand = [&]() {
            const bool ok = AllDigits(land) && std::stoi(land) >= 1 && std::stoi(land) <= 16;
            if (!ok) faults.Add(lineNo, "state number '" + land + "' (columns 11-12) is not 01 to 16");
            return ok;
        };
        const auto enter = [&](std::map<std::string, Named>& m, const std::string& key, const char* what) {
            const auto [it, fresh] = m.emplace(key, Named{name, lineNo});
            if (!fresh)
                faults.Add(lineNo,
                           std::string(what) + " " + key + " already on line " + std::to_string(it->second.line));
            return fresh;
        };
        if (type == "10") {
            if (checkLand() && needName("state")) enter(states, land, "state");
        } else if (type == "20") {
            if (!checkLand()) continue;
            if (!AllDigits(rb) || rb == "0")
                faults.Add(lineNo, "region number '" + rb + "' (column 13) is not 1 to 9");
            else if (needName("region"))
                enter(regions, land + rb, "region");
        } else if (type == "30") {
            if (checkLand() && !AllDigits(col(13, 14)))
                faults.Add(lineNo, "region key '" + col(13, 14) + "' (columns 13-14) is not two digits");
        } else if (type == "40") {
            if (!checkLand()) continue;
            if (!AllDigits(rb + kreis))
                faults.Add(lineNo, "county key '" + rb + kreis + "' (columns 13-15) is not three digits");
            else if (needName("county") && enter(counties, land + rb + kreis, "county"))
                countyOrder.push_back(land + rb + kreis);
        } else if (type == "50") {
            if (checkLand() && !AllDigits(rb + kreis + col(19, 22)))
                faults.Add(lineNo,
                           "association key '" + rb + kreis + col(19, 22) + "' (columns 13-15, 19-22) is not digits");
        } else if (type == "60") {
            const std::string ags = col(11, 18), plz = Trim(col(166, 170));
            if (!checkLand()) continue;
            if (!AllDigits(ags)) {
                faults.Add(lineNo, "AGS '" + ags + "' (columns 11-18) is not eight digits");
                continue;
            }
            if (!needName("municipality")) continue;
            if (!plz.empty() && (plz.size() != 5 || !AllDigits(plz))) {
                faults.Add(lineNo, "postcode '" + plz + "' (columns 166-170) is not five digits");
                continue;
            }
            const auto [it, fresh] = agsLine.emplace(ags, lineNo);
            if (!fresh) {
                faults.Add(lineNo, "AGS " + ags + " already on line " + std::to_string(it->second));
                continue;
            }
            raw.push_back({lineNo, ags, name, plz});
        } else {
            faults.Add(lineNo, "record type '" + type + "' (columns 1-2) is none of 10, 20, 30, 40, 50, 60");
        }
    }
    if (raw.empty()) faults.AddFile("no municipality records (type 60): not a GV100AD file");
    faults.ThrowIfAny();

    Gv100Directory d;
    d.stand = stand.substr(6, 2) + "." + stand.substr(4, 2) + "." + stand.substr(0, 4);
    d.states = static_cast<int32_t>(states.size());
    d.regions = static_cast<int32_t>(regions.size());
    d.counties = static_cast<int32_t>(counties.size());
    d.municipalities = static_cast<int32_t>(raw.size());
    auto place = [&](DirectoryTown& t, const std::string& key5, int32_t line) {
        t.BL_ID = key5.substr(0, 2);
        t.Reg_ID = key5.substr(2, 1);
        t.LK_ID = key5.substr(3, 2);
        const auto s = states.find(t.BL_ID);
        if (s == states.end())
            faults.Add(line, "state " + t.BL_ID + " has no record of type 10");
        else
            t.BL_Name = s->second.name;
        if (t.Reg_ID != "0") {
            const auto r = regions.find(key5.substr(0, 3));
            if (r == regions.end())
                faults.Add(line, "region " + key5.substr(0, 3) + " has no record of type 20");
            else
                t.Reg_Name = r->second.name;
        }
        // County 00 holds areas outside every county (shared and coastal waters).
        const auto c = counties.find(key5);
        if (c != counties.end())
            t.LK_Name = c->second.name;
        else if (t.LK_ID != "00")
            faults.Add(line, "county " + key5 + " has no record of type 40");
    };
    for (const RawTown& r : raw) {
        DirectoryTown t;
        t.line = r.line;
        t.AGS = r.ags;
        place(t, r.ags.substr(0, 5), r.line);
        t.Gem_ID = r.ags.substr(5, 3);
        t.Gemeinde = r.name;
        t.PLZ = r.plz;
        d.towns.push_back(std::move(t));
    }
    for (const std::string& k : countyOrder) {
        if (agsLine.count(k + "000")) continue;  // a county-free city is its own county
        DirectoryTown t;
        t.line = counties[k].line;
        t.AGS = k + "000";
        place(t, k, t.line);
        t.Gem_ID = "000";
        d.towns.push_back(std::move(t));
    }
    faults.ThrowIfAny();
    return d;
}

TownImportReport ImportGv100ad(const std::string& path, const std::string& qvrlDb) {
    const Gv100Directory d = ReadGv100ad(path);
    if (!FileExists(qvrlDb)) Raise(err::FileNotFound, {}, qvrlDb + ": no such database");

    TownImportReport report;
    report.source = FileName(path) + " (Gebietsstand " + d.stand + "): " + std::to_string(d.states) + " states, " +
                    std::to_string(d.regions) + " regions, " + std::to_string(d.counties) + " counties, " +
                    std::to_string(d.municipalities) + " municipalities";

    std::vector<WantedRow> german, eurocode, slz, wlz;
    for (const DirectoryTown& t : d.towns) {
        Cells common;
        common("AGS", t.AGS)("BL_ID", t.BL_ID)("BL_Name", t.BL_Name)("Reg_ID", t.Reg_ID)("Reg_Name", t.Reg_Name)(
            "LK_ID", t.LK_ID)("LK_Name", t.LK_Name)("Gem_ID", t.Gem_ID)("Gemeinde", t.Gemeinde)("PLZ", t.PLZ);
        german.push_back({t.AGS, common.items, FreshZones(false)});
        const int32_t bl = std::stoi(t.BL_ID);
        common("Land_ID", kGermany)("Land", kGermanyName)("Land_ShortName", kGermanyShort)("BL_ShortName",
                                                                                           GetStateShort(bl));
        eurocode.push_back({t.AGS, std::move(common.items), FreshZones(true)});
        const int32_t key = std::stoi(t.AGS);
        const std::string numKey = std::to_string(key);
        const int32_t rb = std::stoi(t.Reg_ID), lk = std::stoi(t.LK_ID);
        Cells s, sFresh, w, wFresh;
        s("Bundesland", bl)("RegBez", rb)("Kreis", lk)("Landkreis", t.LK_Name)("Gemeinde", t.Gemeinde)(
            "KEY", static_cast<double>(key));
        sFresh("Schneelastzone", "")("Fußnote(n)", "");
        slz.push_back({numKey, std::move(s.items), std::move(sFresh.items)});
        w("ID", key)("LandID", WlzStateNumber(bl))("BezID", rb)("Bezirk", t.Reg_Name)("KreisID", lk)(
            "Kreis", t.LK_Name)("Gemeinde", t.Gemeinde);
        wFresh("WLZ", "");
        wlz.push_back({numKey, std::move(w.items), std::move(wFresh.items)});
    }

    // Open every file first: a missing or locked one fails before anything is written.
    const fs::path folder = fs::path(qvrlDb).parent_path();
    const std::string mainName = FileName(qvrlDb);
    MultiFileBatch batch(qvrlDb);
    struct ListFile {
        std::string schema, name;
    };
    auto attach = [&](const char* const(&files)[2]) {
        std::vector<ListFile> out;
        for (const char* f : files) {
            const std::string p = (folder / f).string();
            if (FileExists(p))
                out.push_back({batch.Attach(p), f});
            else
                report.notes.push_back(std::string(f) + ": not beside " + mainName + ", left out");
        }
        return out;
    };
    const std::vector<ListFile> slzFiles = attach(kSlzListFiles), wlzFiles = attach(kWlzListFiles);
    batch.Begin();
    report.tables.push_back(
        Merge(batch, {mainName, "slzwlz"}, {"main", "slzwlz", {}, 0}, "AGS", KeyKind::Text, true, german));
    report.tables.push_back(Merge(batch, {mainName, "slzwlz1 (Land_ID 50)"}, {"main", "slzwlz1", "Land_ID", kGermany},
                                  "AGS", KeyKind::Text, true, eurocode));
    Stage(mainName);
    for (const ListFile& f : slzFiles) {
        report.tables.push_back(Merge(batch, {f.name, "slz"}, {f.schema, "slz", {}, 0}, "KEY", KeyKind::Number, true, slz));
        Stage(f.name);
    }
    for (const ListFile& f : wlzFiles) {
        report.tables.push_back(Merge(batch, {f.name, "wlz"}, {f.schema, "wlz", {}, 0}, "ID", KeyKind::Number, false, wlz));
        Stage(f.name);
    }
    batch.Commit();
    return report;
}

// ---------------------------------------------------------------------------
// Zone assignments

namespace {

struct ZoneColumn {
    const char* name;
    bool number;
    size_t maxChars;   // texts
    bool germanTable;  // also in slzwlz
};
constexpr ZoneColumn kZoneColumns[] = {
    {"WZ", false, 10, true}, {"SZ", false, 10, true}, {"BemW", false, 255, true}, {"BemS", false, 255, true},
    {"sk", true, 0, false},  {"qb", true, 0, false},  {"vb", true, 0, false},     {"hNN", true, 0, false},
};

struct ZoneRow {
    int32_t line = 0;
    std::string key;
    std::vector<Variant> values;  // one per header column after AGS
    bool used = false;
};

// A decimal number filling the cell, with a point or a comma.
std::optional<double> ParseDecimal(std::string s) {
    if (s.find('.') == std::string::npos) std::replace(s.begin(), s.end(), ',', '.');
    if (s.empty() || s.find_first_not_of("0123456789.-+eE") != std::string::npos) return std::nullopt;
    if (s.front() == '+') s.erase(0, 1);
    double v = 0.0;
    const char* end = s.data() + s.size();
    const auto r = std::from_chars(s.data(), end, v);
    if (r.ec != std::errc() || r.ptr != end || !std::isfinite(v)) return std::nullopt;
    return v;
}

// A cell's value for its column; the fault, or "" when it is good.
std::string ZoneValue(const ZoneColumn& z, const std::string& cell, Variant& value) {
    const std::string name = z.name;
    if (!z.number) {
        const size_t n = CharCount(cell);
        if (n > z.maxChars)
            return name + " has " + std::to_string(n) + " characters, at most " + std::to_string(z.maxChars) + " fit";
        value = Variant(cell);
        return {};
    }
    if (cell.empty()) {
        value = Variant(0.0);
        return {};
    }
    const auto d = ParseDecimal(cell);
    if (!d) return name + " '" + cell + "' is not a number";
    if (*d < 0.0 && name != "hNN") return name + " " + cell + " is negative";
    value = Variant(*d);
    return {};
}

std::string WidthsText(const std::vector<size_t>& widths) {
    std::string s;
    for (size_t i = 0; i < widths.size(); ++i)
        s += (i == 0 ? "" : i + 1 == widths.size() ? " or " : ", ") + std::to_string(widths[i]);
    return s;
}

TableTally ApplyZones(Database& db, TableTally t, const std::string& query, const std::vector<const ZoneColumn*>& cols,
                      const std::vector<size_t>& valueIndex, std::unordered_map<std::string, ZoneRow*>& keys,
                      const std::vector<size_t>& widths) {
    auto rs = db.OpenRecordset(query, dao::dbOpenDynaset);
    Fields& f = rs->Fields();
    Field& ags = f.Item("AGS");
    while (!rs->EOF_()) {
        const std::string a = Trim(NzText(ags.Value()));
        ZoneRow* row = nullptr;
        for (auto w = widths.rbegin(); w != widths.rend() && !row; ++w) {
            if (a.size() < *w) continue;
            const auto it = keys.find(a.substr(0, *w));
            if (it != keys.end()) row = it->second;
        }
        if (!row) {
            ++t.untouched;
        } else {
            row->used = true;
            bool differs = false;
            for (size_t k = 0; k < cols.size(); ++k)
                differs = differs || !Same(f.Item(cols[k]->name).Value(), row->values[valueIndex[k]]);
            if (differs) {
                rs->Edit();
                for (size_t k = 0; k < cols.size(); ++k) {
                    const Variant& v = row->values[valueIndex[k]];
                    if (!Same(f.Item(cols[k]->name).Value(), v)) f.Item(cols[k]->name).Value(v);
                }
                rs->Update();
                ++t.updated;
            } else {
                ++t.unchanged;
            }
        }
        rs->MoveNext();
    }
    rs->Close();
    return t;
}

}  // namespace

TownImportReport ImportZones(const std::string& path, const std::string& qvrlDb, int32_t landId) {
    if (landId != kGermany && landId != kAustria)
        Raise(err::InvalidCall, {}, "Land " + std::to_string(landId) + ": zones load for 50 (Germany) or 51 (Austria)");
    const std::vector<size_t> widths =
        landId == kGermany ? std::vector<size_t>{2, 3, 5, 8} : std::vector<size_t>{1, 3, 5};
    const TextLines text = ReadInput(path);
    const std::string name = FileName(path);
    Faults faults(name);

    std::vector<const ZoneColumn*> header;  // after AGS
    char sep = ';';
    bool haveHeader = false;
    std::vector<ZoneRow> rows;
    std::unordered_map<std::string, int32_t> keyLine;
    std::vector<std::string> cells;
    for (size_t i = 0; i < text.lines.size(); ++i) {
        const int32_t lineNo = static_cast<int32_t>(i + 1);
        const std::string line = Trim(text.lines[i]);
        if (line.empty() || line[0] == '#') continue;
        if (!haveHeader) {
            haveHeader = true;
            sep = line.find(';') != std::string::npos ? ';' : ',';
            if (!SplitCsv(line, sep, cells)) {
                faults.Add(lineNo, "a quote is left open");
                break;
            }
            if (UCase(cells[0]) != "AGS") {
                faults.Add(lineNo, "the first column must be AGS, not '" + cells[0] + "'");
                break;
            }
            for (size_t c = 1; c < cells.size(); ++c) {
                const ZoneColumn* z = nullptr;
                for (const ZoneColumn& k : kZoneColumns)
                    if (UCase(k.name) == UCase(cells[c])) z = &k;
                if (!z)
                    faults.Add(lineNo, "column '" + cells[c] + "' is none of WZ, SZ, BemW, BemS, sk, qb, vb, hNN");
                else if (std::find(header.begin(), header.end(), z) != header.end())
                    faults.Add(lineNo, "column " + std::string(z->name) + " twice");
                else
                    header.push_back(z);
            }
            if (cells.size() < 2) faults.Add(lineNo, "no zone columns after AGS");
            faults.ThrowIfAny();  // rows cannot be read against a bad header
            continue;
        }
        if (!SplitCsv(line, sep, cells)) {
            faults.Add(lineNo, "a quote is left open");
            continue;
        }
        if (cells.size() > header.size() + 1) {
            faults.Add(lineNo, std::to_string(cells.size()) + " cells, but the header has " +
                                   std::to_string(header.size() + 1));
            continue;
        }
        cells.resize(header.size() + 1);
        ZoneRow r;
        r.line = lineNo;
        r.key = cells[0];
        if (!AllDigits(r.key) || std::find(widths.begin(), widths.end(), r.key.size()) == widths.end()) {
            faults.Add(lineNo, "key '" + r.key + "' is not an AGS prefix of " + WidthsText(widths) + " digits");
            continue;
        }
        std::string fault;
        for (size_t c = 0; c < header.size() && fault.empty(); ++c) {
            Variant v;
            fault = ZoneValue(*header[c], cells[c + 1], v);
            r.values.push_back(std::move(v));
        }
        if (!fault.empty()) {
            faults.Add(lineNo, fault);
            continue;
        }
        const auto [it, fresh] = keyLine.emplace(r.key, lineNo);
        if (!fresh) {
            faults.Add(lineNo, "key " + r.key + " already on line " + std::to_string(it->second));
            continue;
        }
        rows.push_back(std::move(r));
    }
    if (!haveHeader)
        faults.AddFile("empty: the first line must be the header, AGS and the zone columns");
    else if (rows.empty())
        faults.AddFile("no rows under the header");
    faults.ThrowIfAny();
    if (!FileExists(qvrlDb)) Raise(err::FileNotFound, {}, qvrlDb + ": no such database");

    std::unordered_map<std::string, ZoneRow*> keys;
    for (ZoneRow& r : rows) keys.emplace(r.key, &r);
    std::vector<size_t> perWidth(widths.size(), 0);
    for (const ZoneRow& r : rows)
        perWidth[static_cast<size_t>(std::find(widths.begin(), widths.end(), r.key.size()) - widths.begin())]++;

    TownImportReport report;
    report.untouchedMeaning = "covered by no key";
    report.source = name + ": " + std::to_string(rows.size()) + " keys (";
    for (size_t w = 0; w < widths.size(); ++w)
        report.source += (w ? ", " : "") + std::to_string(perWidth[w]) + " of " + std::to_string(widths[w]) +
                         (widths[w] == 1 ? " digit" : " digits");
    report.source += ") for Land_ID " + std::to_string(landId);

    std::vector<const ZoneColumn*> germanCols;
    std::vector<size_t> germanIdx, enIdx;
    for (size_t c = 0; c < header.size(); ++c) {
        enIdx.push_back(c);
        if (header[c]->germanTable) germanCols.push_back(header[c]), germanIdx.push_back(c);
    }
    const std::string mainName = FileName(qvrlDb);
    Batch batch;
    Database& db = batch.Open(qvrlDb);
    if (landId == kGermany) {
        if (germanCols.empty())
            report.notes.push_back("slzwlz has none of the columns of the file, left out");
        else
            report.tables.push_back(
                ApplyZones(db, {mainName, "slzwlz"}, "SELECT * FROM slzwlz", germanCols, germanIdx, keys, widths));
    }
    const std::string label = "slzwlz1 (Land_ID " + std::to_string(landId) + ")";
    report.tables.push_back(ApplyZones(db, {mainName, label},
                                       "SELECT * FROM slzwlz1 WHERE Land_ID = " + std::to_string(landId), header, enIdx,
                                       keys, widths));
    batch.Commit();

    int32_t unused = 0;
    std::string first;
    for (const ZoneRow& r : rows)
        if (!r.used && unused++ < 5)
            first += (first.empty() ? "" : ", ") + r.key + " (line " + std::to_string(r.line) + ")";
    if (unused)
        report.notes.push_back(std::to_string(unused) + (unused == 1 ? " key" : " keys") +
                               " applied to no town: " + first + (unused > 5 ? ", ..." : ""));
    return report;
}

// ---------------------------------------------------------------------------
// Austrian municipality list

TownImportReport ImportAtMunicipalities(const std::string& path, const std::string& qvrlDb) {
    const TextLines text = ReadInput(path);
    const std::string name = FileName(path);
    Faults faults(name);

    constexpr size_t kNone = static_cast<size_t>(-1);
    size_t cKnz = kNone, cName = kNone, cCode = kNone, cPlz = kNone, cMore = kNone;
    size_t headerLine = kNone;
    std::vector<std::string> cells;
    for (size_t i = 0; i < text.lines.size() && headerLine == kNone; ++i) {
        cKnz = cName = cCode = cPlz = cMore = kNone;
        if (!SplitCsv(text.lines[i], ';', cells)) continue;
        for (size_t c = 0; c < cells.size(); ++c) {
            const std::string h = UCase(cells[c]);
            if (h == "GEMEINDEKENNZIFFER")
                cKnz = c;
            else if (h == "GEMEINDENAME")
                cName = c;
            else if (h == "GEMEINDECODE")
                cCode = c;
            else if (h == UCase("PLZ des Gem.Amtes"))
                cPlz = c;
            else if (h == UCase("weitere Postleitzahlen"))
                cMore = c;
        }
        if (cKnz != kNone) headerLine = i;
    }
    if (headerLine == kNone) {
        faults.AddFile("no header line with Gemeindekennziffer: not a municipality list of Statistik Austria");
        faults.ThrowIfAny();
    }
    if (cName == kNone) faults.Add(static_cast<int32_t>(headerLine + 1), "no column Gemeindename");
    if (cPlz == kNone) faults.Add(static_cast<int32_t>(headerLine + 1), "no column PLZ des Gem.Amtes");
    faults.ThrowIfAny();
    const size_t needed = std::max({cKnz, cName, cPlz}) + 1;

    struct AtTown {
        int32_t line;
        std::string code, name, plz;
    };
    std::vector<AtTown> towns;
    std::unordered_map<std::string, int32_t> codeLine;
    int32_t further = 0;
    for (size_t i = headerLine + 1; i < text.lines.size(); ++i) {
        const int32_t lineNo = static_cast<int32_t>(i + 1);
        if (!SplitCsv(text.lines[i], ';', cells)) {
            faults.Add(lineNo, "a quote is left open");
            continue;
        }
        if (BlankCells(cells)) continue;
        const bool note = !cells[0].empty() && (cells[0][0] < '0' || cells[0][0] > '9') &&
                          std::all_of(cells.begin() + 1, cells.end(), [](const std::string& c) { return c.empty(); });
        if (note) continue;  // the publisher's source line under the table
        if (cells.size() < needed) {
            faults.Add(lineNo, std::to_string(cells.size()) + " cells, the header needs " + std::to_string(needed));
            continue;
        }
        const std::string knz = cells[cKnz];
        if (knz.size() != 5 || !AllDigits(knz) || knz[0] == '0') {
            faults.Add(lineNo, "Gemeindekennziffer '" + knz + "' is not five digits from 10000");
            continue;
        }
        std::string code = cCode != kNone && cCode < cells.size() ? cells[cCode] : std::string();
        if (code.empty()) code = knz;
        if (code.size() != 5 || !AllDigits(code) || code[0] != knz[0]) {
            faults.Add(lineNo, "Gemeindecode '" + code + "' is not five digits in the state of " + knz);
            continue;
        }
        if (cells[cName].empty()) {
            faults.Add(lineNo, "no Gemeindename");
            continue;
        }
        const std::string plz = cells[cPlz];
        if (plz.size() != 4 || !AllDigits(plz)) {
            faults.Add(lineNo, "postcode '" + plz + "' is not four digits");
            continue;
        }
        if (cMore != kNone && cMore < cells.size()) {
            std::string bad;
            std::string more = cells[cMore];
            std::replace(more.begin(), more.end(), ',', ' ');
            size_t p = 0;
            while (p < more.size()) {
                const size_t q = std::min(more.find(' ', p), more.size());
                const std::string w = more.substr(p, q - p);
                if (!w.empty() && (w.size() != 4 || !AllDigits(w))) bad = w;
                if (!w.empty()) ++further;
                p = q + 1;
            }
            if (!bad.empty()) {
                faults.Add(lineNo, "further postcode '" + bad + "' is not four digits");
                continue;
            }
        }
        const auto [it, fresh] = codeLine.emplace(code, lineNo);
        if (!fresh) {
            faults.Add(lineNo, "Gemeindecode " + code + " already on line " + std::to_string(it->second));
            continue;
        }
        towns.push_back({lineNo, code, cells[cName], plz});
    }
    if (towns.empty()) faults.AddFile("no municipalities under the header");
    faults.ThrowIfAny();
    if (!FileExists(qvrlDb)) Raise(err::FileNotFound, {}, qvrlDb + ": no such database");

    std::vector<WantedRow> rows;
    for (const AtTown& t : towns) {
        const AustrianState& s = kAustrianStates[t.code[0] - '0'];
        Cells c, fresh;
        c("Land_ID", kAustria)("Land", kAustriaName)("Land_ShortName", kAustriaShort)("AGS", t.code)(
            "BL_ID", t.code.substr(0, 1))("BL_Name", s.name)("BL_ShortName", s.shortName)(
            "Reg_ID", t.code.substr(1, 2))("LK_ID", "00")("Gem_ID", t.code.substr(3, 2))("Gemeinde", t.name)("PLZ",
                                                                                                             t.plz);
        fresh.items = FreshZones(true);
        fresh("Reg_Name", "")("LK_Name", "");
        rows.push_back({t.code, std::move(c.items), std::move(fresh.items)});
    }
    TownImportReport report;
    report.source = name + ": " + std::to_string(towns.size()) + " municipalities";
    MultiFileBatch batch(qvrlDb);
    batch.Begin();
    report.tables.push_back(Merge(batch, {FileName(qvrlDb), "slzwlz1 (Land_ID 51)"},
                                  {"main", "slzwlz1", "Land_ID", kAustria}, "AGS", KeyKind::Text, true, rows));
    batch.Commit();
    if (further)
        report.notes.push_back(std::to_string(further) +
                               " further postcodes checked, not stored: a town row holds the one of its office");
    return report;
}

}  // namespace qvrl
