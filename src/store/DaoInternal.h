#pragma once
// Internals of the table store shared by its source files: column and table
// descriptions, value conversion between the store's columns and SQLite, and
// the connection and recordset cores. Not installed; nothing outside
// src/store includes it.

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/JetQuery.h"
#include "store/modDAO.h"
#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

namespace dao_internal {

struct ColumnInfo {
    std::string name;
    int16_t type = dao::dbText;
    int32_t size = 0;
    bool text = true;
};

// Names of tables, columns and indexes match case-blind.
bool SameName(std::string_view a, std::string_view b);

struct TableInfo {
    std::string name;
    std::vector<ColumnInfo> columns;

    // Position of a column, case-blind; -1 when missing.
    int32_t Find(std::string_view col) const;
};

[[noreturn]] void RaiseItemNotFound(std::string_view name);
// The store's error for an SQLite result code, naming the file.
[[noreturn]] void RaiseEngine(int rc, const std::string& file, const std::string& message);

// DAO type and size of a declared SQLite column type, and back.
int16_t DaoTypeOf(const std::string& decl);
int32_t SizeOf(const std::string& decl);
const char* DeclOf(int16_t type);
bool IsTextType(int16_t type);
// A name the engine accepts for a table or column.
bool ValidName(std::string_view name);

Variant ReadValue(sqlite3_stmt* s, int col, int16_t type);
void BindParam(sqlite3_stmt* s, int idx, const jet::Param& p);
// A value as it is, for comparison with what a column holds.
void BindVariant(sqlite3_stmt* s, int idx, const Variant& v);
// A value as it is stored in a column of the given type.
void BindValue(sqlite3_stmt* s, int idx, const Variant& v, const ColumnInfo& c);

// Resets a cached statement when an operation is done with it.
class StatementUse {
public:
    explicit StatementUse(sqlite3_stmt* s) : s_(s) {}
    StatementUse(const StatementUse&) = delete;
    StatementUse& operator=(const StatementUse&) = delete;
    ~StatementUse() {
        sqlite3_reset(s_);
        sqlite3_clear_bindings(s_);
    }
    sqlite3_stmt* get() const { return s_; }

private:
    sqlite3_stmt* s_;
};

// Whether the current row's sort keys (count columns from first) equal those kept.
bool SameKey(sqlite3_stmt* s, int first, int count, const std::vector<std::string>& texts,
             const std::vector<double>& numbers, const std::vector<int>& kinds);

}  // namespace dao_internal

// ---------------------------------------------------------------------------
// The connection

struct Database::Impl {
    sqlite3* db = nullptr;
    std::string name;
    bool readOnly = true;
    bool inTrans = false;
    std::unordered_map<std::string, sqlite3_stmt*> statements;
    std::map<std::string, dao_internal::TableInfo> tables;  // by UCase of the name
    bool tablesLoaded = false;

    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() { Close(); }

    void Close() {
        for (auto& [sql, s] : statements) sqlite3_finalize(s);
        statements.clear();
        if (db) sqlite3_close_v2(db);
        db = nullptr;
        tables.clear();
        tablesLoaded = false;
        inTrans = false;
        ClearResults();
    }

    sqlite3* Handle() const {
        if (!db) Raise(dao::errObjectClosed, {}, "Object invalid or no longer set.");
        return db;
    }

    [[noreturn]] void Fail(int rc) const { dao_internal::RaiseEngine(rc, name, db ? sqlite3_errmsg(db) : "closed"); }

    sqlite3_stmt* Prepare(const std::string& sql) {
        const auto it = statements.find(sql);
        if (it != statements.end()) return it->second;
        sqlite3_stmt* s = nullptr;
        const int rc = sqlite3_prepare_v3(Handle(), sql.c_str(), static_cast<int>(sql.size() + 1),
                                          SQLITE_PREPARE_PERSISTENT, &s, nullptr);
        if (rc != SQLITE_OK) {
            sqlite3_finalize(s);
            Fail(rc);
        }
        statements.emplace(sql, s);
        return s;
    }

    // Runs a statement of the store itself (schema or row change).
    void Exec(const std::string& sql, const std::vector<jet::Param>& params = {}) {
        dao_internal::StatementUse use(Prepare(sql));
        for (size_t i = 0; i < params.size(); ++i) dao_internal::BindParam(use.get(), static_cast<int>(i + 1), params[i]);
        const int rc = sqlite3_step(use.get());
        if (rc != SQLITE_DONE && rc != SQLITE_ROW) Fail(rc);
    }

    void InvalidateSchema() {
        ClearResults();
        tables.clear();
        tablesLoaded = false;
        schemaVersion = -1;
        // Statements name columns as they were; SQLite would re-prepare them,
        // but a dropped table's must go.
        for (auto& [sql, s] : statements) sqlite3_finalize(s);
        statements.clear();
    }

    void LoadSchema() {
        if (tablesLoaded) return;
        schemaVersion = -1;
        std::vector<std::string> names;
        {
            dao_internal::StatementUse use(Prepare("SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY rowid"));
            int rc;
            while ((rc = sqlite3_step(use.get())) == SQLITE_ROW) {
                const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 0));
                std::string n = t ? t : "";
                if (n.rfind("sqlite_", 0) != 0) names.push_back(std::move(n));
            }
            if (rc != SQLITE_DONE) Fail(rc);
        }
        std::map<std::string, dao_internal::TableInfo> loaded;
        for (const std::string& n : names) {
            dao_internal::TableInfo info;
            info.name = n;
            dao_internal::StatementUse use(Prepare("SELECT name, type FROM pragma_table_info(?1)"));
            sqlite3_bind_text64(use.get(), 1, n.data(), n.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
            int rc;
            while ((rc = sqlite3_step(use.get())) == SQLITE_ROW) {
                dao_internal::ColumnInfo c;
                const auto* cn = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 0));
                const auto* ct = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 1));
                c.name = cn ? cn : "";
                const std::string decl = ct ? ct : "";
                c.type = dao_internal::DaoTypeOf(decl);
                c.size = dao_internal::SizeOf(decl);
                c.text = dao_internal::IsTextType(c.type);
                info.columns.push_back(std::move(c));
            }
            if (rc != SQLITE_DONE) Fail(rc);
            loaded.emplace(UCase(n), std::move(info));
        }
        tables = std::move(loaded);
        tablesLoaded = true;
        tableOrder = names;
    }

    // Reads the tables anew when the file's schema has changed since they
    // were read; statements stay, SQLite re-prepares them. True when read.
    bool ReloadSchema() {
        int64_t version = -1;
        {
            dao_internal::StatementUse use(Prepare("PRAGMA schema_version"));
            const int rc = sqlite3_step(use.get());
            if (rc != SQLITE_ROW) Fail(rc);
            version = sqlite3_column_int64(use.get(), 0);
        }
        if (tablesLoaded && version == schemaVersion) return false;
        tables.clear();
        tablesLoaded = false;
        LoadSchema();
        schemaVersion = version;
        return true;
    }

    int64_t schemaVersion = -1;

    const dao_internal::TableInfo& Table(std::string_view table) {
        LoadSchema();
        const auto it = tables.find(UCase(table));
        if (it == tables.end())
            Raise(err::TableNotFound, {},
                  "The database engine cannot find the input table or query '" + std::string(table) + "'.");
        return it->second;
    }

    std::vector<std::string> tableOrder;

    // Snapshots of read-only connections, by query text. A read-only
    // connection changes nothing itself, so a result stays true until another
    // connection commits, which PRAGMA data_version reveals; each open asks
    // it anew, so a caller never sees an old result. The figure and look-up
    // tables are read again and again with the same texts; the bounds keep
    // the memory small.
    struct CachedResult {
        std::string table;
        std::vector<dao_internal::ColumnInfo> cols;
        std::vector<std::vector<Variant>> rows;
        std::vector<int64_t> rowids;
    };
    static constexpr size_t kMaxCachedRows = 1024;  // of one result
    static constexpr size_t kMaxCachedTotalRows = 16384;
    std::unordered_map<std::string, CachedResult> results;
    size_t cachedRows = 0;
    int64_t resultsVersion = -1;

    void ClearResults() {
        results.clear();
        cachedRows = 0;
    }
    void KeepResult(const std::string& text, CachedResult r) {
        if (r.rows.size() > kMaxCachedRows) return;
        if (results.count(text)) return;
        if (cachedRows + r.rows.size() > kMaxCachedTotalRows) ClearResults();
        cachedRows += r.rows.size();
        results.emplace(text, std::move(r));
    }

    // Drops the cached snapshots when the file has changed since they were read.
    void ValidateResults() {
        int64_t version = -1;
        {
            dao_internal::StatementUse use(Prepare("PRAGMA data_version"));
            const int rc = sqlite3_step(use.get());
            if (rc != SQLITE_ROW) Fail(rc);
            version = sqlite3_column_int64(use.get(), 0);
        }
        if (version != resultsVersion) ClearResults();
        resultsVersion = version;
    }

    struct IndexInfo {
        std::string name;
        bool unique = false;
        std::vector<std::string> columns;
    };

    // The declared indexes of a table (not those SQLite makes for itself).
    std::vector<IndexInfo> IndexesOf(const std::string& table) {
        std::vector<IndexInfo> r;
        {
            dao_internal::StatementUse use(Prepare("SELECT name, \"unique\" FROM pragma_index_list(?1) WHERE origin = 'c' ORDER BY seq DESC"));
            sqlite3_bind_text64(use.get(), 1, table.data(), table.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
            int rc;
            while ((rc = sqlite3_step(use.get())) == SQLITE_ROW) {
                const auto* n = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 0));
                r.push_back({n ? n : "", sqlite3_column_int(use.get(), 1) != 0, {}});
            }
            if (rc != SQLITE_DONE) Fail(rc);
        }
        for (IndexInfo& i : r) {
            dao_internal::StatementUse use(Prepare("SELECT name FROM pragma_index_info(?1) ORDER BY seqno"));
            sqlite3_bind_text64(use.get(), 1, i.name.data(), i.name.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
            int rc;
            while ((rc = sqlite3_step(use.get())) == SQLITE_ROW) {
                const auto* n = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 0));
                i.columns.push_back(n ? n : "");
            }
            if (rc != SQLITE_DONE) Fail(rc);
        }
        return r;
    }
};

struct Recordset::Core {
    std::shared_ptr<Database::Impl> db;
    std::string table;
    std::vector<dao_internal::ColumnInfo> cols;
    std::vector<std::vector<Variant>> rows;
    std::vector<int64_t> rowids;
    int32_t pos = 0;  // -1: before the first row; rows.size(): after the last
    int32_t reached = 0;
    bool closed = false;
    bool updatable = false;
    bool deletedCurrent = false;
    enum class Mode { None, Edit, AddNew } mode = Mode::None;
    std::vector<Variant> pending;
    std::vector<bool> changed;

    int32_t Count() const { return static_cast<int32_t>(rows.size()); }

    std::string ColumnList() const {
        std::string s;
        for (size_t i = 0; i < cols.size(); ++i) s += (i ? ", " : "") + jet::QuoteName(cols[i].name);
        return s;
    }

    std::vector<Variant> ReadRow(int64_t rowid) {
        dao_internal::StatementUse use(db->Prepare("SELECT " + ColumnList() + " FROM " + jet::QuoteName(table) +
                                     " WHERE _rowid_ = ?1"));
        sqlite3_bind_int64(use.get(), 1, rowid);
        const int rc = sqlite3_step(use.get());
        if (rc != SQLITE_ROW) db->Fail(rc == SQLITE_DONE ? SQLITE_NOTFOUND : rc);
        std::vector<Variant> row;
        for (size_t i = 0; i < cols.size(); ++i) row.push_back(dao_internal::ReadValue(use.get(), static_cast<int>(i), cols[i].type));
        return row;
    }
};

}  // namespace qvrl
