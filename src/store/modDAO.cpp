#include "store/modDAO.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <unordered_map>
#include <system_error>
#include <utility>

#include "store/JetQuery.h"
#include "store/StoreText.h"
#include "support/Kalvo_Reg.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
#include "support/errors.h"
#include "support/modLowLevel.h"
#include "support/modToolsB.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

struct ColumnInfo {
    std::string name;
    int16_t type = dao::dbText;
    int32_t size = 0;
    bool text = true;
};

// Names of tables, columns and indexes match case-blind.
bool SameName(std::string_view a, std::string_view b) { return CompareText(a, b) == 0; }

struct TableInfo {
    std::string name;
    std::vector<ColumnInfo> columns;

    int32_t Find(std::string_view col) const {
        for (size_t i = 0; i < columns.size(); ++i)
            if (SameName(columns[i].name, col)) return static_cast<int32_t>(i);
        return -1;
    }
};

[[noreturn]] void RaiseItemNotFound(std::string_view name) {
    Raise(err::ItemNotFound, {}, ErrorDescription(err::ItemNotFound) + " ('" + std::string(name) + "')");
}

[[noreturn]] void RaiseEngine(int rc, const std::string& file, const std::string& message) {
    switch (rc & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        Raise(dao::errFileInUse, {}, "Could not use '" + file + "'; file already in use.");
    case SQLITE_READONLY:
        Raise(dao::errReadOnly, {}, "Cannot update. Database or object is read-only.");
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        Raise(dao::errUnrecognizedFormat, {}, "Unrecognized database format '" + file + "'.");
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        Raise(dao::errCannotOpen, {}, "The file '" + file + "' cannot be opened.");
    case SQLITE_NOMEM:
        Raise(7, {}, "Out of memory");
    case SQLITE_CONSTRAINT:
        Raise(dao::errDuplicateKey, {}, "The changes would create duplicate values in a unique index: " + message);
    default:
        Raise(dao::errEngine, {}, "Database engine error: " + message);
    }
}

// DAO type of a declared SQLite column type.
int16_t DaoTypeOf(const std::string& decl) {
    const std::string u = UCase(decl);
    auto has = [&](const char* w) { return u.find(w) != std::string::npos; };
    if (has("SMALLINT")) return dao::dbInteger;
    if (has("TINYINT") || u.rfind("BYTE", 0) == 0) return dao::dbByte;
    if (has("INT")) return dao::dbLong;
    if (has("BIT") || has("BOOL")) return dao::dbBoolean;
    if (has("CURRENCY") || has("MONEY")) return dao::dbCurrency;
    if (has("DATE") || has("TIME")) return dao::dbDate;
    if (has("LONGTEXT") || has("MEMO")) return dao::dbMemo;
    if (has("CHAR") || has("TEXT") || has("CLOB") || u.empty()) return dao::dbText;
    if (has("REAL")) return dao::dbSingle;
    return dao::dbDouble;
}

int32_t SizeOf(const std::string& decl) {
    const size_t open = decl.find('(');
    if (open == std::string::npos) return 0;
    int32_t n = 0;
    for (size_t i = open + 1; i < decl.size() && decl[i] >= '0' && decl[i] <= '9' && n < 100000; ++i)
        n = n * 10 + (decl[i] - '0');
    return n;
}

const char* DeclOf(int16_t type) {
    switch (type) {
    case dao::dbBoolean: return "BIT";
    case dao::dbByte: return "TINYINT";
    case dao::dbInteger: return "SMALLINT";
    case dao::dbLong: return "INTEGER";
    case dao::dbCurrency: return "CURRENCY";
    case dao::dbSingle: return "REAL";
    case dao::dbDouble: return "DOUBLE";
    case dao::dbDate: return "DATETIME";
    case dao::dbText: return "VARCHAR";
    case dao::dbMemo: return "LONGTEXT";
    default: return nullptr;
    }
}

bool IsTextType(int16_t type) { return type == dao::dbText || type == dao::dbMemo; }

// A name the engine accepts for a table or column.
bool ValidName(std::string_view name) {
    if (name.empty() || name.size() > 64 || name.front() == ' ') return false;
    for (const char c : name) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7F || c == '.' || c == '!' || c == '`' || c == '[' || c == ']' || c == '"')
            return false;
    }
    return true;
}

bool FitsIn(double v, double lo, double hi) { return v >= lo && v <= hi; }

Variant ReadValue(sqlite3_stmt* s, int col, int16_t type) {
    switch (sqlite3_column_type(s, col)) {
    case SQLITE_NULL: return Variant::Null();
    case SQLITE_INTEGER: {
        const sqlite3_int64 v = sqlite3_column_int64(s, col);
        const auto d = static_cast<double>(v);
        switch (type) {
        case dao::dbBoolean: return Variant(v != 0);
        case dao::dbByte:
        case dao::dbInteger:
            if (FitsIn(d, -32768.0, 32767.0)) return Variant(static_cast<int16_t>(v));
            [[fallthrough]];
        case dao::dbLong:
            if (FitsIn(d, -2147483648.0, 2147483647.0)) return Variant(static_cast<int32_t>(v));
            return Variant(d);
        case dao::dbDate: return Variant(DateValue{d});
        case dao::dbText:
        case dao::dbMemo: break;
        default: return Variant(d);
        }
        break;
    }
    case SQLITE_FLOAT: {
        const double d = sqlite3_column_double(s, col);
        if (type == dao::dbDate) return Variant(DateValue{d});
        if (!IsTextType(type)) return Variant(d);
        break;
    }
    default: break;
    }
    const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(s, col));
    const int n = sqlite3_column_bytes(s, col);
    return Variant(std::string(t ? t : "", t ? static_cast<size_t>(n) : 0));
}

[[noreturn]] void RaiseConversion(const ColumnInfo& c) {
    Raise(dao::errConversion, {}, "Data type conversion error (field '" + c.name + "').");
}

double NumberFor(const Variant& v, const ColumnInfo& c) {
    if (v.type() == Variant::Type::String) {
        if (!IsNumeric(v.asString())) RaiseConversion(c);
        return CDbl(v);
    }
    if (v.type() == Variant::Type::Date) return v.asDate().serial;
    if (v.type() == Variant::Type::Boolean) return v.asBoolean() ? -1.0 : 0.0;
    return v.toDouble();
}

void BindParam(sqlite3_stmt* s, int idx, const jet::Param& p) {
    if (const auto* i = std::get_if<int64_t>(&p)) sqlite3_bind_int64(s, idx, *i);
    else if (const auto* d = std::get_if<double>(&p)) sqlite3_bind_double(s, idx, *d);
    else {
        const std::string& t = std::get<std::string>(p);
        sqlite3_bind_text64(s, idx, t.data(), t.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
}

// A value as it is, for comparison with what a column holds.
void BindVariant(sqlite3_stmt* s, int idx, const Variant& v) {
    switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null: sqlite3_bind_null(s, idx); return;
    case Variant::Type::Integer: sqlite3_bind_int64(s, idx, v.asInteger()); return;
    case Variant::Type::Long: sqlite3_bind_int64(s, idx, v.asLong()); return;
    case Variant::Type::Boolean: sqlite3_bind_int64(s, idx, v.asBoolean() ? -1 : 0); return;
    case Variant::Type::Double: sqlite3_bind_double(s, idx, v.asDouble()); return;
    case Variant::Type::Date: sqlite3_bind_double(s, idx, v.asDate().serial); return;
    case Variant::Type::String: {
        const std::string& t = v.asString();
        sqlite3_bind_text64(s, idx, t.data(), t.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        return;
    }
    default: Raise(err::TypeMismatch);
    }
}

// A value as it is stored in a column of the given type.
void BindValue(sqlite3_stmt* s, int idx, const Variant& v, const ColumnInfo& c) {
    if (v.isEmpty() || v.isNull()) {
        sqlite3_bind_null(s, idx);
        return;
    }
    switch (c.type) {
    case dao::dbText:
    case dao::dbMemo: {
        const std::string t = CStr(v);
        sqlite3_bind_text64(s, idx, t.data(), t.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        return;
    }
    case dao::dbBoolean:
        sqlite3_bind_int64(s, idx, NumberFor(v, c) != 0.0 ? -1 : 0);
        return;
    case dao::dbByte:
    case dao::dbInteger:
    case dao::dbLong: {
        const double r = std::nearbyint(NumberFor(v, c));  // half to even, as Jet stores
        const double lo = c.type == dao::dbByte ? 0.0 : (c.type == dao::dbInteger ? -32768.0 : -2147483648.0);
        const double hi = c.type == dao::dbByte ? 255.0 : (c.type == dao::dbInteger ? 32767.0 : 2147483647.0);
        if (!FitsIn(r, lo, hi)) Raise(dao::errNumericOverflow, {}, "Numeric field overflow (field '" + c.name + "').");
        sqlite3_bind_int64(s, idx, static_cast<sqlite3_int64>(r));
        return;
    }
    default: {
        const double d = NumberFor(v, c);
        if (!std::isfinite(d)) Raise(dao::errNumericOverflow, {}, "Numeric field overflow (field '" + c.name + "').");
        sqlite3_bind_double(s, idx, d);
        return;
    }
    }
}

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

bool SameKey(sqlite3_stmt* s, int first, int count, const std::vector<std::string>& texts,
             const std::vector<double>& numbers, const std::vector<int>& kinds) {
    for (int k = 0; k < count; ++k) {
        const int col = first + k;
        const int kind = sqlite3_column_type(s, col);
        const bool numeric = kind == SQLITE_INTEGER || kind == SQLITE_FLOAT;
        const bool keyNumeric = kinds[static_cast<size_t>(k)] == SQLITE_INTEGER ||
                                kinds[static_cast<size_t>(k)] == SQLITE_FLOAT;
        if (numeric != keyNumeric) return false;
        if (numeric) {
            if (sqlite3_column_double(s, col) != numbers[static_cast<size_t>(k)]) return false;
        } else if (kind != kinds[static_cast<size_t>(k)]) {
            return false;
        } else if (kind != SQLITE_NULL) {
            const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(s, col));
            const std::string_view v(t ? t : "", t ? static_cast<size_t>(sqlite3_column_bytes(s, col)) : 0);
            if (CompareText(v, texts[static_cast<size_t>(k)]) != 0) return false;
        }
    }
    return true;
}

}  // namespace

// ---------------------------------------------------------------------------
// The connection

struct Database::Impl {
    sqlite3* db = nullptr;
    std::string name;
    bool readOnly = true;
    bool inTrans = false;
    std::unordered_map<std::string, sqlite3_stmt*> statements;
    std::map<std::string, TableInfo> tables;  // by UCase of the name
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

    [[noreturn]] void Fail(int rc) const { RaiseEngine(rc, name, db ? sqlite3_errmsg(db) : "closed"); }

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
        StatementUse use(Prepare(sql));
        for (size_t i = 0; i < params.size(); ++i) BindParam(use.get(), static_cast<int>(i + 1), params[i]);
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
            StatementUse use(Prepare("SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY rowid"));
            int rc;
            while ((rc = sqlite3_step(use.get())) == SQLITE_ROW) {
                const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 0));
                std::string n = t ? t : "";
                if (n.rfind("sqlite_", 0) != 0) names.push_back(std::move(n));
            }
            if (rc != SQLITE_DONE) Fail(rc);
        }
        std::map<std::string, TableInfo> loaded;
        for (const std::string& n : names) {
            TableInfo info;
            info.name = n;
            StatementUse use(Prepare("SELECT name, type FROM pragma_table_info(?1)"));
            sqlite3_bind_text64(use.get(), 1, n.data(), n.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
            int rc;
            while ((rc = sqlite3_step(use.get())) == SQLITE_ROW) {
                ColumnInfo c;
                const auto* cn = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 0));
                const auto* ct = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 1));
                c.name = cn ? cn : "";
                const std::string decl = ct ? ct : "";
                c.type = DaoTypeOf(decl);
                c.size = SizeOf(decl);
                c.text = IsTextType(c.type);
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
            StatementUse use(Prepare("PRAGMA schema_version"));
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

    const TableInfo& Table(std::string_view table) {
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
        std::vector<ColumnInfo> cols;
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
            StatementUse use(Prepare("PRAGMA data_version"));
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
            StatementUse use(Prepare("SELECT name, \"unique\" FROM pragma_index_list(?1) WHERE origin = 'c' ORDER BY seq DESC"));
            sqlite3_bind_text64(use.get(), 1, table.data(), table.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
            int rc;
            while ((rc = sqlite3_step(use.get())) == SQLITE_ROW) {
                const auto* n = reinterpret_cast<const char*>(sqlite3_column_text(use.get(), 0));
                r.push_back({n ? n : "", sqlite3_column_int(use.get(), 1) != 0, {}});
            }
            if (rc != SQLITE_DONE) Fail(rc);
        }
        for (IndexInfo& i : r) {
            StatementUse use(Prepare("SELECT name FROM pragma_index_info(?1) ORDER BY seqno"));
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

// ---------------------------------------------------------------------------
// Fields

Field::Field(std::string name, int16_t type, int32_t size) : name_(std::move(name)), type_(type), size_(size) {}

Variant Field::Value() const {
    if (!owner_) Raise(dao::errInvalidOperation, {}, "Invalid operation: field '" + name_ + "' has no row.");
    return owner_->ValueAt(index_);
}

void Field::Value(const Variant& v) {
    if (!owner_) Raise(dao::errInvalidOperation, {}, "Invalid operation: field '" + name_ + "' has no row.");
    owner_->SetValue(index_, v);
}

int32_t Fields::Find(std::string_view name) const {
    for (size_t i = 0; i < items_.size(); ++i)
        if (SameName(items_[i].Name(), name)) return static_cast<int32_t>(i);
    return -1;
}

Field& Fields::Item(int32_t index) { return const_cast<Field&>(std::as_const(*this).Item(index)); }
Field& Fields::Item(std::string_view name) { return const_cast<Field&>(std::as_const(*this).Item(name)); }

const Field& Fields::Item(int32_t index) const {
    if (index < 0 || index >= Count()) RaiseItemNotFound(std::to_string(index));
    return items_[static_cast<size_t>(index)];
}

const Field& Fields::Item(std::string_view name) const {
    const int32_t i = Find(name);
    if (i < 0) RaiseItemNotFound(name);
    return items_[static_cast<size_t>(i)];
}

void Fields::Append(const Field& f) {
    if (fixed_) Raise(dao::errInvalidOperation, {}, "Invalid operation: the columns here cannot be changed.");
    if (!ValidName(f.Name())) Raise(dao::errInvalidArgument, {}, "Invalid field name '" + f.Name() + "'.");
    if (Find(f.Name()) >= 0) Raise(dao::errFieldTwice, {}, "Cannot define field '" + f.Name() + "' more than once.");
    items_.push_back(Field(f.Name(), f.Type(), f.Size()));
}

Field TableDef::CreateField(const std::string& Name, int16_t Type, int32_t Size) const {
    if (!DeclOf(Type)) Raise(dao::errInvalidFieldType, {}, "Invalid field data type.");
    if (Size < 0 || Size > 255) Raise(dao::errInvalidArgument, {}, "Invalid field size.");
    return Field(Name, Type, Size);
}

Index& Indexes::Item(int32_t index) {
    if (index < 0 || index >= Count()) RaiseItemNotFound(std::to_string(index));
    return items_[static_cast<size_t>(index)];
}

Index& Indexes::Item(std::string_view name) {
    for (Index& i : items_)
        if (SameName(i.Name(), name)) return i;
    RaiseItemNotFound(name);
}

void Indexes::Append(const Index& idx) {
    if (fixed_) Raise(dao::errInvalidOperation, {}, "Invalid operation: the indexes here cannot be changed.");
    if (!ValidName(idx.Name())) Raise(dao::errInvalidArgument, {}, "Invalid index name '" + idx.Name() + "'.");
    if (idx.Fields().Count() == 0) Raise(dao::errNoFields, {}, "No field defined--cannot append Index.");
    for (const Index& i : items_)
        if (SameName(i.Name(), idx.Name()))
            Raise(dao::errInvalidOperation, {}, "Index '" + idx.Name() + "' already exists.");
    items_.push_back(idx);
}

// ---------------------------------------------------------------------------
// Tables

TableDef& TableDefs::Item(std::string_view name) {
    for (TableDef& d : defs_)
        if (SameName(d.Name(), name)) return d;
    RaiseItemNotFound(name);
}

TableDef& TableDefs::Item(int32_t index) {
    if (index < 0 || index >= Count()) RaiseItemNotFound(std::to_string(index));
    return defs_[static_cast<size_t>(index)];
}

void TableDefs::Append(const TableDef& def) {
    Database::Impl& impl = *db_->impl_;
    if (impl.readOnly) Raise(dao::errReadOnly, {}, "Cannot update. Database or object is read-only.");
    if (!ValidName(def.Name())) Raise(dao::errInvalidArgument, {}, "Invalid table name '" + def.Name() + "'.");
    impl.LoadSchema();
    if (impl.tables.count(UCase(def.Name())))
        Raise(dao::errTableExists, {}, "Table '" + def.Name() + "' already exists.");
    if (def.Fields().Count() == 0) Raise(dao::errNoFields, {}, "No field defined--cannot append TableDef.");
    std::string sql = "CREATE TABLE " + jet::QuoteName(def.Name()) + " (";
    bool first = true;
    for (const Field& f : def.Fields()) {
        sql += first ? "" : ", ";
        first = false;
        sql += jet::QuoteName(f.Name()) + " " + DeclOf(f.Type());
        if (f.Type() == dao::dbText) sql += "(" + std::to_string(f.Size() > 0 ? f.Size() : 255) + ")";
        if (IsTextType(f.Type())) sql += std::string(" COLLATE ") + kStoreCollation;
    }
    sql += ")";
    std::vector<std::string> indexSql;
    for (const Index& idx : def.Indexes()) {
        std::string cols;
        for (const Field& k : idx.Fields()) {
            const int32_t c = def.Fields().Find(k.Name());
            if (c < 0) RaiseItemNotFound(k.Name());
            const Field& f = def.Fields().Item(c);
            cols += (cols.empty() ? "" : ", ") + jet::QuoteName(f.Name());
            if (IsTextType(f.Type())) cols += std::string(" COLLATE ") + kStoreCollation;
        }
        indexSql.push_back(std::string(idx.Unique() ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
                           jet::QuoteName(idx.Name()) + " ON " + jet::QuoteName(def.Name()) + " (" + cols + ")");
    }
    // The table and its indexes come together or not at all.
    impl.Exec("SAVEPOINT tabledef");
    try {
        impl.Exec(sql);
        for (const std::string& i : indexSql) impl.Exec(i);
        impl.Exec("RELEASE tabledef");
    } catch (const RuntimeError&) {
        impl.InvalidateSchema();
        impl.Exec("ROLLBACK TO tabledef");
        impl.Exec("RELEASE tabledef");
        throw;
    }
    impl.InvalidateSchema();
    db_->TableDefs();
}

void TableDefs::Delete(std::string_view name) {
    Database::Impl& impl = *db_->impl_;
    if (impl.readOnly) Raise(dao::errReadOnly, {}, "Cannot update. Database or object is read-only.");
    impl.LoadSchema();
    const auto it = impl.tables.find(UCase(name));
    if (it == impl.tables.end()) RaiseItemNotFound(name);
    const std::string sql = "DROP TABLE " + jet::QuoteName(it->second.name);
    impl.InvalidateSchema();
    impl.Exec(sql);
    impl.InvalidateSchema();
    db_->TableDefs();
}

// ---------------------------------------------------------------------------
// Recordsets

struct Recordset::Core {
    std::shared_ptr<Database::Impl> db;
    std::string table;
    std::vector<ColumnInfo> cols;
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
        StatementUse use(db->Prepare("SELECT " + ColumnList() + " FROM " + jet::QuoteName(table) +
                                     " WHERE _rowid_ = ?1"));
        sqlite3_bind_int64(use.get(), 1, rowid);
        const int rc = sqlite3_step(use.get());
        if (rc != SQLITE_ROW) db->Fail(rc == SQLITE_DONE ? SQLITE_NOTFOUND : rc);
        std::vector<Variant> row;
        for (size_t i = 0; i < cols.size(); ++i) row.push_back(ReadValue(use.get(), static_cast<int>(i), cols[i].type));
        return row;
    }
};

Recordset::Recordset(std::unique_ptr<Core> core) : core_(std::move(core)) {
    for (size_t i = 0; i < core_->cols.size(); ++i) {
        const ColumnInfo& c = core_->cols[i];
        fields_.items_.push_back(Field(c.name, c.type, c.size));
        fields_.items_.back().owner_ = this;
        fields_.items_.back().index_ = static_cast<int32_t>(i);
    }
    fields_.fixed_ = true;
    core_->reached = core_->Count() > 0 ? 1 : 0;
}

Recordset::~Recordset() = default;

void Recordset::CheckOpen() const {
    if (core_->closed) Raise(dao::errObjectClosed, {}, "Object invalid or no longer set.");
}

void Recordset::CheckCurrent() const {
    if (core_->deletedCurrent) Raise(dao::errRecordDeleted, {}, "Record is deleted.");
    if (core_->pos < 0 || core_->pos >= core_->Count()) Raise(err::NoCurrentRecord);
}

void Recordset::Touch() {
    if (core_->pos >= 0 && core_->pos < core_->Count()) core_->reached = std::max(core_->reached, core_->pos + 1);
}

bool Recordset::EOF_() const {
    CheckOpen();
    return core_->Count() == 0 || core_->pos >= core_->Count();
}

bool Recordset::BOF() const {
    CheckOpen();
    return core_->Count() == 0 || core_->pos < 0;
}

void Recordset::MoveFirst() {
    CheckOpen();
    core_->mode = Core::Mode::None;
    if (core_->Count() == 0) Raise(err::NoCurrentRecord);
    core_->pos = 0;
    core_->deletedCurrent = false;
    Touch();
}

void Recordset::MoveLast() {
    CheckOpen();
    core_->mode = Core::Mode::None;
    if (core_->Count() == 0) Raise(err::NoCurrentRecord);
    core_->pos = core_->Count() - 1;
    core_->deletedCurrent = false;
    core_->reached = core_->Count();
}

void Recordset::MoveNext() {
    CheckOpen();
    core_->mode = Core::Mode::None;
    if (core_->deletedCurrent) {
        core_->deletedCurrent = false;  // the row after the deleted one is already in place
    } else {
        if (core_->Count() == 0 || core_->pos >= core_->Count()) Raise(err::NoCurrentRecord);
        ++core_->pos;
    }
    Touch();
}

void Recordset::MovePrevious() {
    CheckOpen();
    core_->mode = Core::Mode::None;
    if (core_->Count() == 0 || core_->pos < 0) Raise(err::NoCurrentRecord);
    core_->deletedCurrent = false;
    --core_->pos;
    Touch();
}

int16_t Recordset::RecordCount() const {
    CheckOpen();
    if (core_->reached > 32767) Raise(err::Overflow);
    return static_cast<int16_t>(core_->reached);
}

qvrl::Fields& Recordset::Fields() {
    CheckOpen();
    return fields_;
}

Variant Recordset::ValueAt(int32_t column) const {
    CheckOpen();
    if (core_->mode != Core::Mode::None) return core_->pending[static_cast<size_t>(column)];
    CheckCurrent();
    return core_->rows[static_cast<size_t>(core_->pos)][static_cast<size_t>(column)];
}

void Recordset::SetValue(int32_t column, const Variant& v) {
    CheckOpen();
    if (core_->mode == Core::Mode::None)
        Raise(dao::errUpdateWithoutEdit, {}, "Update or CancelUpdate without AddNew or Edit.");
    core_->pending[static_cast<size_t>(column)] = v;
    core_->changed[static_cast<size_t>(column)] = true;
}

void Recordset::FindFirst(const std::string& Criteria) {
    CheckOpen();
    const auto criterion = jet::ParseCriterion(Criteria);
    // The current row's values come in as parameters numbered above the
    // literals, one per column named.
    std::vector<jet::Param> params;
    std::vector<bool> named(core_->cols.size(), false);
    const jet::ColumnResolver resolve = [&](const std::string& name) {
        const int32_t i = fields_.Find(name);
        if (i < 0) RaiseItemNotFound(name);
        named[static_cast<size_t>(i)] = true;
        const std::string p = "?" + std::to_string(jet::kMaxLiterals + 1 + i);
        const bool text = core_->cols[static_cast<size_t>(i)].text;
        return jet::ColumnSql{text ? "CAST(" + p + " AS TEXT)" : p, text};
    };
    const std::string sql = "SELECT " + jet::ToSql(*criterion, resolve, params);
    jet::CheckNesting(sql);
    StatementUse use(core_->db->Prepare(sql));
    sqlite3_stmt* s = use.get();
    for (size_t i = 0; i < params.size(); ++i) BindParam(s, static_cast<int>(i + 1), params[i]);
    std::vector<std::pair<int, size_t>> columns;  // parameter index, column
    for (size_t c = 0; c < core_->cols.size(); ++c)
        if (named[c]) columns.emplace_back(jet::kMaxLiterals + 1 + static_cast<int>(c), c);
    for (int32_t r = 0; r < core_->Count(); ++r) {
        const std::vector<Variant>& row = core_->rows[static_cast<size_t>(r)];
        for (const auto& [idx, c] : columns) BindVariant(s, idx, row[c]);
        const int rc = sqlite3_step(s);
        if (rc != SQLITE_ROW) core_->db->Fail(rc);
        const bool hit = sqlite3_column_type(s, 0) != SQLITE_NULL && sqlite3_column_int64(s, 0) != 0;
        sqlite3_reset(s);
        if (hit) {
            core_->mode = Core::Mode::None;
            core_->pos = r;
            core_->deletedCurrent = false;
            Touch();
            noMatch_ = false;
            return;
        }
    }
    noMatch_ = true;
}

void Recordset::Edit() {
    CheckOpen();
    if (!core_->updatable) Raise(dao::errReadOnly, {}, "Cannot update. Database or object is read-only.");
    CheckCurrent();
    core_->pending = core_->rows[static_cast<size_t>(core_->pos)];
    core_->changed.assign(core_->cols.size(), false);
    core_->mode = Core::Mode::Edit;
}

void Recordset::AddNew() {
    CheckOpen();
    if (!core_->updatable) Raise(dao::errReadOnly, {}, "Cannot update. Database or object is read-only.");
    core_->pending.assign(core_->cols.size(), Variant::Null());
    core_->changed.assign(core_->cols.size(), false);
    core_->mode = Core::Mode::AddNew;
}

void Recordset::CancelUpdate() {
    CheckOpen();
    if (core_->mode == Core::Mode::None)
        Raise(dao::errUpdateWithoutEdit, {}, "Update or CancelUpdate without AddNew or Edit.");
    core_->mode = Core::Mode::None;
}

void Recordset::Update() {
    CheckOpen();
    Core& c = *core_;
    if (c.mode == Core::Mode::None)
        Raise(dao::errUpdateWithoutEdit, {}, "Update or CancelUpdate without AddNew or Edit.");
    std::vector<size_t> set;
    for (size_t i = 0; i < c.cols.size(); ++i)
        if (c.changed[i]) set.push_back(i);
    const std::string table = jet::QuoteName(c.table);
    if (c.mode == Core::Mode::Edit) {
        const int64_t rowid = c.rowids[static_cast<size_t>(c.pos)];
        if (!set.empty()) {
            std::string sql = "UPDATE " + table + " SET ";
            for (size_t k = 0; k < set.size(); ++k)
                sql += (k ? ", " : "") + jet::QuoteName(c.cols[set[k]].name) + " = ?" + std::to_string(k + 1);
            sql += " WHERE _rowid_ = ?" + std::to_string(set.size() + 1);
            StatementUse use(c.db->Prepare(sql));
            for (size_t k = 0; k < set.size(); ++k)
                BindValue(use.get(), static_cast<int>(k + 1), c.pending[set[k]], c.cols[set[k]]);
            sqlite3_bind_int64(use.get(), static_cast<int>(set.size() + 1), rowid);
            const int rc = sqlite3_step(use.get());
            if (rc != SQLITE_DONE) c.db->Fail(rc);
        }
        c.rows[static_cast<size_t>(c.pos)] = c.ReadRow(rowid);
    } else {
        std::string sql = "INSERT INTO " + table;
        if (set.empty()) {
            sql += " DEFAULT VALUES";
        } else {
            std::string names, values;
            for (size_t k = 0; k < set.size(); ++k) {
                names += (k ? ", " : "") + jet::QuoteName(c.cols[set[k]].name);
                values += (k ? ", ?" : "?") + std::to_string(k + 1);
            }
            sql += " (" + names + ") VALUES (" + values + ")";
        }
        int64_t rowid = 0;
        {
            StatementUse use(c.db->Prepare(sql));
            for (size_t k = 0; k < set.size(); ++k)
                BindValue(use.get(), static_cast<int>(k + 1), c.pending[set[k]], c.cols[set[k]]);
            const int rc = sqlite3_step(use.get());
            if (rc != SQLITE_DONE) c.db->Fail(rc);
            rowid = sqlite3_last_insert_rowid(c.db->Handle());
        }
        const bool atEnd = c.pos >= c.Count();
        c.rows.push_back(c.ReadRow(rowid));
        c.rowids.push_back(rowid);
        if (atEnd) c.pos = c.Count();
        ++c.reached;
    }
    c.mode = Core::Mode::None;
}

void Recordset::Delete() {
    CheckOpen();
    Core& c = *core_;
    if (!c.updatable) Raise(dao::errReadOnly, {}, "Cannot update. Database or object is read-only.");
    c.mode = Core::Mode::None;
    CheckCurrent();
    {
        StatementUse use(c.db->Prepare("DELETE FROM " + jet::QuoteName(c.table) + " WHERE _rowid_ = ?1"));
        sqlite3_bind_int64(use.get(), 1, c.rowids[static_cast<size_t>(c.pos)]);
        const int rc = sqlite3_step(use.get());
        if (rc != SQLITE_DONE) c.db->Fail(rc);
    }
    c.rows.erase(c.rows.begin() + c.pos);
    c.rowids.erase(c.rowids.begin() + c.pos);
    c.deletedCurrent = true;
    c.reached = std::max(0, c.reached - 1);
}

void Recordset::Close() {
    CheckOpen();
    core_->closed = true;
    core_->rows.clear();
    core_->rowids.clear();
    core_->db.reset();
}

// ---------------------------------------------------------------------------
// Databases

Database::Database(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) { tableDefs_.db_ = this; }

Database::~Database() = default;

const std::string& Database::Name() const { return impl_->name; }

bool Database::Updatable() const { return impl_->db && !impl_->readOnly; }

std::unique_ptr<Recordset> Database::OpenRecordset(const std::string& Name, int16_t Type) {
    if (Type != dao::dbOpenSnapshot && Type != dao::dbOpenDynaset)
        Raise(dao::errInvalidArgument, {}, "Invalid argument: recordset type " + std::to_string(Type) + ".");
    impl_->Handle();
    const bool cacheable = impl_->readOnly && Type == dao::dbOpenSnapshot;
    if (cacheable) {
        impl_->ValidateResults();
        const auto hit = impl_->results.find(Name);
        if (hit != impl_->results.end()) {
            auto core = std::make_unique<Recordset::Core>();
            core->db = impl_;
            core->table = hit->second.table;
            core->cols = hit->second.cols;
            core->rows = hit->second.rows;
            core->rowids = hit->second.rowids;
            return std::unique_ptr<Recordset>(new Recordset(std::move(core)));
        }
    }
    const jet::Query q = jet::ParseQuery(Name);
    // A table changed by another connection since the schema was read shows
    // as an engine error on the first try; the second reads it anew.
    for (int attempt = 0;; ++attempt) {
        try {
            std::unique_ptr<Recordset> rs = Run(q, Type);
            const Recordset::Core& c = *rs->core_;
            if (cacheable && c.rows.size() <= Impl::kMaxCachedRows)
                impl_->KeepResult(Name, Impl::CachedResult{c.table, c.cols, c.rows, c.rowids});
            return rs;
        } catch (const RuntimeError& e) {
            if (attempt > 0 || e.number() != dao::errEngine) throw;
            impl_->ReloadSchema();
        }
    }
}

std::unique_ptr<Recordset> Database::Run(const jet::Query& q, int16_t Type) {
    const TableInfo& table = impl_->Table(q.table);

    auto core = std::make_unique<Recordset::Core>();
    core->db = impl_;
    core->table = table.name;
    core->updatable = Type == dao::dbOpenDynaset && !impl_->readOnly;
    if (q.allColumns) {
        core->cols = table.columns;
    } else {
        for (const std::string& name : q.columns) {
            const int32_t i = table.Find(name);
            if (i < 0) RaiseItemNotFound(name);
            core->cols.push_back(table.columns[static_cast<size_t>(i)]);
        }
    }

    const jet::ColumnResolver resolve = [&table](const std::string& name) {
        const int32_t i = table.Find(name);
        if (i < 0) RaiseItemNotFound(name);
        const ColumnInfo& c = table.columns[static_cast<size_t>(i)];
        return jet::ColumnSql{jet::QuoteName(c.name), c.text};
    };
    std::vector<jet::Param> params;
    std::string sql = "SELECT " + core->ColumnList();
    // Jet's TOP keeps the rows that tie with the last one on the sort keys,
    // so the keys come along to be compared.
    const bool withTies = q.top > 0 && !q.orderBy.empty();
    const int keyCount = withTies ? static_cast<int>(q.orderBy.size()) : 0;
    std::vector<std::string> orderSql;
    for (const jet::OrderTerm& t : q.orderBy) orderSql.push_back(jet::OrderSql(*t.value, resolve, params));
    if (withTies)
        for (const std::string& k : orderSql) sql += ", " + k;
    sql += ", _rowid_ FROM " + jet::QuoteName(table.name);
    if (q.where) sql += " WHERE " + jet::ToSql(*q.where, resolve, params);
    sql += " ORDER BY ";
    for (size_t i = 0; i < orderSql.size(); ++i) sql += orderSql[i] + (q.orderBy[i].descending ? " DESC, " : ", ");
    sql += "_rowid_";
    jet::CheckNesting(sql);

    StatementUse use(impl_->Prepare(sql));
    sqlite3_stmt* s = use.get();
    for (size_t i = 0; i < params.size(); ++i) BindParam(s, static_cast<int>(i + 1), params[i]);
    const int ncols = static_cast<int>(core->cols.size());
    std::vector<std::string> keyTexts(static_cast<size_t>(keyCount));
    std::vector<double> keyNumbers(static_cast<size_t>(keyCount));
    std::vector<int> keyKinds(static_cast<size_t>(keyCount));
    int rc;
    while ((rc = sqlite3_step(s)) == SQLITE_ROW) {
        const int32_t have = core->Count();
        if (q.top > 0 && have >= q.top) {
            if (!withTies || !SameKey(s, ncols, keyCount, keyTexts, keyNumbers, keyKinds)) break;
        }
        std::vector<Variant> row;
        row.reserve(static_cast<size_t>(ncols));
        for (int i = 0; i < ncols; ++i) row.push_back(ReadValue(s, i, core->cols[static_cast<size_t>(i)].type));
        core->rows.push_back(std::move(row));
        core->rowids.push_back(sqlite3_column_int64(s, ncols + keyCount));
        if (withTies && have + 1 == q.top) {
            for (int k = 0; k < keyCount; ++k) {
                const int col = ncols + k;
                keyKinds[static_cast<size_t>(k)] = sqlite3_column_type(s, col);
                keyNumbers[static_cast<size_t>(k)] = sqlite3_column_double(s, col);
                const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(s, col));
                keyTexts[static_cast<size_t>(k)] =
                    std::string(t ? t : "", t ? static_cast<size_t>(sqlite3_column_bytes(s, col)) : 0);
            }
        }
    }
    if (rc != SQLITE_ROW && rc != SQLITE_DONE) impl_->Fail(rc);
    return std::unique_ptr<Recordset>(new Recordset(std::move(core)));
}

qvrl::TableDefs& Database::TableDefs() {
    impl_->Handle();
    if (!impl_->ReloadSchema() && tableDefs_.built_) return tableDefs_;
    tableDefs_.defs_.clear();
    for (const std::string& n : impl_->tableOrder) {
        const TableInfo& info = impl_->tables.at(UCase(n));
        TableDef d(info.name);
        for (const ColumnInfo& c : info.columns) d.Fields().Append(Field(c.name, c.type, c.size));
        d.Fields().fixed_ = true;
        for (const auto& [name, unique, columns] : impl_->IndexesOf(info.name)) {
            Index idx(name);
            idx.Unique(unique);
            for (const std::string& c : columns) idx.Fields().Append(idx.CreateField(c));
            d.Indexes().items_.push_back(std::move(idx));
        }
        d.Indexes().fixed_ = true;
        tableDefs_.defs_.push_back(std::move(d));
    }
    tableDefs_.built_ = true;
    return tableDefs_;
}

TableDef Database::CreateTableDef(const std::string& Name) const { return TableDef(Name); }

void Database::BeginTrans() {
    if (impl_->inTrans) Raise(dao::errInvalidOperation, {}, "Invalid operation: a transaction is already open.");
    impl_->Exec(impl_->readOnly ? "BEGIN" : "BEGIN IMMEDIATE");
    impl_->inTrans = true;
}

void Database::CommitTrans() {
    if (!impl_->inTrans) Raise(dao::errNoTransaction, {}, "Commit or rollback without a transaction.");
    impl_->Exec("COMMIT");
    impl_->inTrans = false;
}

void Database::Rollback() {
    if (!impl_->inTrans) Raise(dao::errNoTransaction, {}, "Commit or rollback without a transaction.");
    impl_->InvalidateSchema();
    impl_->Exec("ROLLBACK");
    impl_->inTrans = false;
    impl_->InvalidateSchema();
}

void Database::Close() { impl_->Close(); }

// ---------------------------------------------------------------------------
// The engine

namespace {

std::shared_ptr<Database::Impl> OpenConnection(const std::string& name, int flags) {
    auto impl = std::make_shared<Database::Impl>();
    impl->name = name;
    impl->readOnly = (flags & SQLITE_OPEN_READONLY) != 0;
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(name.c_str(), &db, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    impl->db = db;
    if (rc != SQLITE_OK) impl->Fail(rc);
    sqlite3_extended_result_codes(db, 1);
    sqlite3_db_config(db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    if (RegisterStoreText(db) != SQLITE_OK) impl->Fail(sqlite3_errcode(db));
    return impl;
}

}  // namespace

std::shared_ptr<Database> DBEngine::OpenDatabase(const std::string& Name, const Variant& Options,
                                                 const Variant& ReadOnly, const Variant& Connect) {
    if (!Connect.isEmpty() && !Connect.isNull() && !Trim(CStr(Connect)).empty() && Trim(CStr(Connect)) != ";")
        Raise(dao::errInvalidArgument, {}, "Invalid argument: connect strings are not supported.");
    const bool exclusive = !Options.isEmpty() && !Options.isNull() && Options.toBoolean();
    const bool readOnly = !ReadOnly.isEmpty() && !ReadOnly.isNull() && ReadOnly.toBoolean();
    if (!FileExists(Name)) Raise(dao::errCouldNotFindFile, {}, "Could not find file '" + Name + "'.");
    std::error_code ec;
    // SQLite would take an empty file for an empty database; Jet calls it damaged.
    if (fs::file_size(Name, ec) == 0 && !ec) RaiseEngine(SQLITE_NOTADB, Name, "empty file");
    auto impl = OpenConnection(Name, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    if (exclusive) {
        impl->Exec("PRAGMA locking_mode = EXCLUSIVE");
        if (!readOnly) {
            impl->Exec("BEGIN EXCLUSIVE");
            impl->Exec("COMMIT");
        }
    }
    // Reading the schema shows at once whether the file is locked or damaged.
    impl->LoadSchema();
    return std::shared_ptr<Database>(new Database(std::move(impl)));
}

std::shared_ptr<Database> DBEngine::CreateDatabase(const std::string& Name, const std::string& Locale,
                                                   const Variant& Option) {
    if (UCase(Trim(Locale)) != UCase(dao::dbLangGeneral))
        Raise(dao::errInvalidArgument, {}, "Invalid argument: only the general sort order is offered.");
    if (!Option.isEmpty() && !Option.isNull() && (CLng(Option) & 2) != 0)
        Raise(dao::errInvalidArgument, {}, "Invalid argument: encryption is not offered.");
    std::error_code ec;
    if (fs::exists(Name, ec)) Raise(dao::errDatabaseExists, {}, "Database '" + Name + "' already exists.");
    auto impl = OpenConnection(Name, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    impl->Exec("PRAGMA application_id = " + std::to_string(kStoreApplicationId));
    impl->LoadSchema();
    return std::shared_ptr<Database>(new Database(std::move(impl)));
}

// ---------------------------------------------------------------------------
// modDAO

std::string GetTempDir() {
    std::error_code ec;
    std::string dir = fs::temp_directory_path(ec).string();
    if (ec || dir.empty()) dir = "/tmp";
    if (dir.back() != '/') dir += '/';
    return dir;
}

void TerminateFromList(std::string& s) {
    const size_t n = s.size();
    if (n >= 2 && s[n - 1] == '\0' && s[n - 2] == '\0') return;
    s += (n >= 1 && s[n - 1] == '\0') ? std::string(1, '\0') : std::string(2, '\0');
}

namespace {

constexpr int32_t kCopyMultiDest = 1;
constexpr int32_t kCopyRename = 8;
constexpr int32_t kCopyFilesOnly = 128;

std::vector<std::string> SplitNulList(const std::string& s) {
    std::vector<std::string> r;
    size_t start = 0;
    while (start < s.size()) {
        const size_t end = s.find('\0', start);
        const std::string item = s.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (item.empty()) break;
        r.push_back(item);
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return r;
}

// The next free name beside an existing file: "name (2).ext", "name (3).ext", ...
fs::path FreeName(const fs::path& target) {
    std::error_code ec;
    for (int i = 2;; ++i) {
        fs::path candidate =
            target.parent_path() / (target.stem().string() + " (" + std::to_string(i) + ")" + target.extension().string());
        if (!fs::exists(candidate, ec)) return candidate;
    }
}

// Copies one file; the target appears complete or not at all.
bool CopyOne(const fs::path& from, fs::path to, int32_t flags) {
    std::error_code ec;
    if (fs::is_directory(to, ec)) to /= from.filename();
    if (fs::exists(to, ec) && (flags & kCopyRename)) to = FreeName(to);
    fs::path part = to;
    part += ".part";
    if (!fs::copy_file(from, part, fs::copy_options::overwrite_existing, ec)) {
        fs::remove(part, ec);
        return false;
    }
    fs::rename(part, to, ec);
    if (ec) {
        std::error_code ignored;
        fs::remove(part, ignored);
        return false;
    }
    return true;
}

}  // namespace

int32_t CopyFileShell(const std::string& From, const std::string& To, bool RenameIfExists) {
    int32_t flags = 0;
    if (From.find(std::string(2, '\0')) != std::string::npos) flags += kCopyMultiDest;
    if (From.find('*') != std::string::npos) flags += kCopyFilesOnly;
    if (RenameIfExists) flags += kCopyRename;
    std::string from = From;
    TerminateFromList(from);
    const std::vector<std::string> sources = SplitNulList(from);
    std::string to = To;
    TerminateFromList(to);
    const std::vector<std::string> targets = SplitNulList(to);
    if (sources.empty() || targets.empty()) return 2;
    int32_t result = 0;
    for (size_t i = 0; i < sources.size(); ++i) {
        const fs::path target = (flags & kCopyMultiDest) && i < targets.size() ? targets[i] : targets.front();
        std::string dir, file, ext;
        SplitPath(sources[i], dir, file, ext);
        if (file.find_first_of("*?") == std::string::npos) {
            if (!FileExists(sources[i]) || !CopyOne(sources[i], target, flags)) result = 2;
            continue;
        }
        std::error_code ec;
        bool any = false;
        for (const auto& entry : fs::directory_iterator(dir.empty() ? "." : dir, ec)) {
            if (!entry.is_regular_file(ec)) continue;  // only files match a wild card
            if (!LikeMatch(entry.path().filename().string(), file)) continue;
            any = true;
            if (!CopyOne(entry.path(), target, flags)) result = 2;
        }
        if (!any) result = 2;
    }
    return result;
}

std::shared_ptr<Database> OpenDB(const std::string& Name, const Variant& Options, const Variant& ReadOnly,
                                 const Variant& Connect) {
    try {
        if (!State().CopyToTemp) {
            if (!FileExists(Name)) Raise(err::FileNotFound);
            return DBEngine::OpenDatabase(Name, Options, ReadOnly, Connect);
        }
        std::string dir, file, ext;
        SplitPath(Name, dir, file, ext);
        if (!dir.empty() && dir.back() != '/' && dir.back() != '\\') dir += '/';
        const std::string temp = GetTempDir();
        // A copy that finds an older one of the same name gets a new name, and
        // the older file is the one opened.
        CopyFileShell(dir + file, temp + file, true);
        return DBEngine::OpenDatabase(temp + file, Options, ReadOnly, Connect);
    } catch (const RuntimeError& e) {
        if (e.number() == err::FileNotFound || State().CopyToTemp) {
            CurrentPlatform().MsgBox(Name + " cannot be opened \nErr." + std::to_string(e.number()) + "\n" +
                                         e.description(),
                                     mb::Critical, ProgramName());
            throw;
        }
        State().CopyToTemp = true;
        return OpenDB(Name, Options, ReadOnly, Connect);
    }
}

std::string NzText(const Variant& v) {
    if (v.isEmpty() || v.isNull()) return {};
    return CStr(v);
}

double NzNumber(const Variant& v) {
    if (v.isEmpty() || v.isNull()) return 0.0;
    if (v.type() == Variant::Type::String) return IsNumeric(v.asString()) ? CDbl(v) : 0.0;
    if (v.type() == Variant::Type::Date) return v.asDate().serial;
    return v.toDouble();
}

}  // namespace qvrl
