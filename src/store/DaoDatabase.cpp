#include "store/DaoInternal.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "store/StoreText.h"
#include "support/modToolsB.h"

namespace fs = std::filesystem;

namespace qvrl {

using namespace dao_internal;

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

// A change cut off before its commit (a killed import) leaves a hot journal
// beside the file. A read-only connection cannot roll it back and refuses the
// file; a short writable one rolls it back at its first read, where the file
// may be written. Where it may not, the read-only open reports the file.
void RollBackHotJournal(const std::string& name) {
    if (::access((name + "-journal").c_str(), F_OK) != 0) return;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(name.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) == SQLITE_OK) {
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA schema_version", -1, &s, nullptr) == SQLITE_OK) (void)sqlite3_step(s);
        sqlite3_finalize(s);
    }
    sqlite3_close_v2(db);
}

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
    if (readOnly) RollBackHotJournal(Name);
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

}  // namespace qvrl
