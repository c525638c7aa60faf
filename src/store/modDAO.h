#pragma once
// The table store: database files of named tables, reached through the
// operations the modules were written against, under DAO's names, on SQLite.
//
// A query text is parsed by the store's own small language (JetQuery.h) and
// runs as one prepared SELECT with every literal bound; nothing else ever
// reaches SQLite from a query text. Texts compare case-blind, umlauts too.
//
// Lifetimes: a Database is shared (its owner keeps it in ModuleState); a
// Recordset lives inside one operation and holds its rows in memory, so it
// stays readable after its Database is closed. One thread at a time.

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/vb.h"

namespace qvrl {

namespace jet {
struct Query;
}

namespace dao {
// Recordset types.
inline constexpr int16_t dbOpenDynaset = 2;
inline constexpr int16_t dbOpenSnapshot = 4;
// Field types.
inline constexpr int16_t dbBoolean = 1;
inline constexpr int16_t dbByte = 2;
inline constexpr int16_t dbInteger = 3;
inline constexpr int16_t dbLong = 4;
inline constexpr int16_t dbCurrency = 5;
inline constexpr int16_t dbSingle = 6;
inline constexpr int16_t dbDouble = 7;
inline constexpr int16_t dbDate = 8;
inline constexpr int16_t dbText = 10;
inline constexpr int16_t dbMemo = 12;
// The general sort order with code page 1252, the one locale of new files.
inline constexpr const char* dbLangGeneral = ";LANGID=0x0409;CP=1252;COUNTRY=0";

// Engine errors beyond those of errors.h.
inline constexpr int32_t errEngine = 3000;           // anything SQLite reports that has no closer number
inline constexpr int32_t errInvalidArgument = 3001;
inline constexpr int32_t errTableExists = 3010;
inline constexpr int32_t errDuplicateKey = 3022;
inline constexpr int32_t errUpdateWithoutEdit = 3020;
inline constexpr int32_t errCouldNotFindFile = 3024;
inline constexpr int32_t errReadOnly = 3027;
inline constexpr int32_t errNoTransaction = 3034;
inline constexpr int32_t errFileInUse = 3045;
inline constexpr int32_t errCannotOpen = 3051;
inline constexpr int32_t errRecordDeleted = 3167;
inline constexpr int32_t errFieldTwice = 3191;
inline constexpr int32_t errDatabaseExists = 3204;
inline constexpr int32_t errInvalidOperation = 3219;
inline constexpr int32_t errInvalidFieldType = 3259;
inline constexpr int32_t errNoFields = 3264;
inline constexpr int32_t errNumericOverflow = 3349;
inline constexpr int32_t errObjectClosed = 3420;
inline constexpr int32_t errConversion = 3421;
inline constexpr int32_t errUnrecognizedFormat = 3343;
}  // namespace dao

class Database;
class Recordset;

// A column: of a table definition (name, type, size), or of a recordset,
// where Value is the current row's.
class Field {
public:
    Field() = default;
    Field(std::string name, int16_t type, int32_t size = 0);

    const std::string& Name() const { return name_; }
    int16_t Type() const { return type_; }
    int32_t Size() const { return size_; }
    // The current row's value (the pending one during Edit or AddNew); Null
    // for a Null column. 3021 without a current row, 3219 outside a recordset.
    Variant Value() const;
    // Only between Edit or AddNew and Update (3020 otherwise).
    void Value(const Variant& v);

private:
    friend class Recordset;
    std::string name_;
    int16_t type_ = dao::dbText;
    int32_t size_ = 0;
    Recordset* owner_ = nullptr;
    int32_t index_ = -1;
};

// Columns by position (from 0) or by name, case-blind. A missing one is 3265.
class Fields {
public:
    int32_t Count() const { return static_cast<int32_t>(items_.size()); }
    Field& Item(int32_t index);
    Field& Item(std::string_view name);
    const Field& Item(int32_t index) const;
    const Field& Item(std::string_view name) const;
    Field& operator()(std::string_view name) { return Item(name); }
    // Adds a column to a table definition (3191 for a name already there);
    // the columns of a recordset are fixed (3219).
    void Append(const Field& f);

    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

private:
    friend class Recordset;
    friend class Database;
    friend class TableDefs;
    int32_t Find(std::string_view name) const;
    std::deque<Field> items_;  // references stay valid as columns are appended
    bool fixed_ = false;
};

// An index of a table: its columns in key order.
class Index {
public:
    explicit Index(std::string name = {}) : name_(std::move(name)) {}
    const std::string& Name() const { return name_; }
    bool Unique() const { return unique_; }
    void Unique(bool v) { unique_ = v; }
    // A key column, named as the table's column.
    Field CreateField(const std::string& Name) const { return Field(Name, dao::dbText); }
    qvrl::Fields& Fields() { return fields_; }
    const qvrl::Fields& Fields() const { return fields_; }

private:
    friend class Database;
    std::string name_;
    bool unique_ = false;
    qvrl::Fields fields_;
};

class Indexes {
public:
    int32_t Count() const { return static_cast<int32_t>(items_.size()); }
    Index& Item(int32_t index);
    Index& Item(std::string_view name);  // case-blind; 3265 when missing
    // Adds an index to a table definition before it is appended; those of a
    // table already in the file are fixed (3219).
    void Append(const Index& idx);

    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }

private:
    friend class Database;
    std::vector<Index> items_;
    bool fixed_ = false;
};

// A table: its name, columns in their order, and indexes.
class TableDef {
public:
    explicit TableDef(std::string name = {}) : name_(std::move(name)) {}
    const std::string& Name() const { return name_; }
    // A new column, not yet part of the table: Fields().Append adds it.
    // Type is one of the dao::db... field types (3259 otherwise).
    Field CreateField(const std::string& Name, int16_t Type, int32_t Size = 0) const;
    qvrl::Fields& Fields() { return fields_; }
    const qvrl::Fields& Fields() const { return fields_; }
    // A new index, not yet part of the table: Indexes().Append adds it.
    Index CreateIndex(const std::string& Name) const { return Index(Name); }
    qvrl::Indexes& Indexes() { return indexes_; }
    const qvrl::Indexes& Indexes() const { return indexes_; }

private:
    std::string name_;
    qvrl::Fields fields_;
    qvrl::Indexes indexes_;
};

// The tables of a database, read anew when Database::TableDefs is asked for
// after the file's tables have changed; references into it hold until then.
class TableDefs {
public:
    int32_t Count() const { return static_cast<int32_t>(defs_.size()); }
    TableDef& Item(std::string_view name);  // case-blind; 3265 when missing
    TableDef& Item(int32_t index);
    // Creates the table and its indexes in the file: 3010 when the name is
    // taken, 3264 without columns, 3265 for an index on a column not defined.
    void Append(const TableDef& def);
    // Drops a table and its rows (3265 when missing).
    void Delete(std::string_view name);

    auto begin() { return defs_.begin(); }
    auto end() { return defs_.end(); }

private:
    friend class Database;
    Database* db_ = nullptr;
    std::vector<TableDef> defs_;
    bool built_ = false;
};

// The result of a query: a snapshot (read only) or a dynaset (rows can be
// changed, added and deleted, when its database can be written).
class Recordset {
public:
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;
    ~Recordset();

    int16_t Type() const { return type_; }
    // DAO's EOF (the bare name is a macro of <cstdio>): after the last row.
    bool EOF_() const;
    // Before the first row. Both are true on an empty result.
    bool BOF() const;
    // 3021 on an empty result, or MoveNext past the end (MovePrevious before
    // the start).
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // Rows reached so far: the full count only after MoveLast. A count above
    // 32,767 is an overflow (6).
    int16_t RecordCount() const;

    qvrl::Fields& Fields();
    Field& Fields(std::string_view name) { return Fields().Item(name); }

    // Moves to the first row that meets the criterion (the WHERE language);
    // NoMatch tells whether none did, and then the position is unchanged.
    void FindFirst(const std::string& Criteria);
    bool NoMatch() const { return noMatch_; }

    // Row changes, on a dynaset of a writable database (3027 otherwise).
    void Edit();
    void AddNew();
    // Writes the pending row; after AddNew the position stays where it was.
    void Update();
    void CancelUpdate();
    void Delete();

    void Close();

private:
    friend class Database;
    friend class Field;
    struct Core;
    explicit Recordset(std::unique_ptr<Core> core);
    void CheckOpen() const;
    void CheckCurrent() const;
    Variant ValueAt(int32_t column) const;
    void SetValue(int32_t column, const Variant& v);
    void Touch();

    std::unique_ptr<Core> core_;
    int16_t type_ = dao::dbOpenSnapshot;
    qvrl::Fields fields_;
    bool noMatch_ = false;
};

class Database {
public:
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    const std::string& Name() const;
    bool Updatable() const;

    // Runs a query text or opens a whole table by its name. Type is
    // dao::dbOpenSnapshot or dao::dbOpenDynaset. 3075 for a text outside the
    // language, 3078 for an unknown table, 3265 for an unknown column.
    std::unique_ptr<Recordset> OpenRecordset(const std::string& Name, int16_t Type);

    qvrl::TableDefs& TableDefs();
    TableDef CreateTableDef(const std::string& Name) const;

    // All changes between BeginTrans and CommitTrans land together or, on
    // Rollback, not at all.
    void BeginTrans();
    void CommitTrans();
    void Rollback();

    // Ends the connection; recordsets already read stay readable.
    void Close();

    struct Impl;

private:
    friend class DBEngine;
    friend class Recordset;
    friend class TableDefs;
    explicit Database(std::shared_ptr<Impl> impl);
    std::unique_ptr<Recordset> Run(const jet::Query& q, int16_t Type);
    std::shared_ptr<Impl> impl_;
    qvrl::TableDefs tableDefs_;
};

// The one engine of the process.
class DBEngine {
public:
    // Opens an existing file. ReadOnly true: no changes through this
    // connection. Options true: exclusive, no other connection may open the
    // file while this one lives. Connect strings are not supported (3001).
    // A missing file is 3024, a locked one 3045, a damaged one 3343.
    static std::shared_ptr<Database> OpenDatabase(const std::string& Name, const Variant& Options = {},
                                                  const Variant& ReadOnly = {}, const Variant& Connect = {});
    // Creates an empty file and opens it for writing (3204 when it exists).
    // Locale must be dao::dbLangGeneral; Option may carry a version, not
    // encryption.
    static std::shared_ptr<Database> CreateDatabase(const std::string& Name, const std::string& Locale,
                                                    const Variant& Option = {});
};

// Opens a database file of the system; raises 53 for a missing file. A file
// that exists but cannot be opened in place switches the process to copies
// in the temporary folder (State().CopyToTemp) and is opened from there. A
// failure that is final shows a critical message box and raises again.
std::shared_ptr<Database> OpenDB(const std::string& Name, const Variant& Options = {}, const Variant& ReadOnly = {},
                                 const Variant& Connect = {});

// The last failure of OpenDB that was final, kept for the commands, whose
// look-ups end in an empty list by design: Number is the store's error (53,
// 3024, 3027, 3045, 3051, 3343, ...), 0 when none since ClearStoreOpenError.
struct StoreOpenError {
    int32_t Number = 0;
    std::string File;
    std::string Description;  // names the file
};
StoreOpenError LastStoreOpenError();
void ClearStoreOpenError();
// Raises the kept failure as the store's run-time error, if there is one.
void RaiseStoreOpenError();

// The temporary folder, with a closing separator.
std::string GetTempDir();
// Copies From (a NUL-separated list, closed by two NULs; names may hold "*"
// or "?") to To: a folder, or a file name (with a NUL list of them when From
// is a list). A target that exists is kept when RenameIfExists is true, and
// the copy gets a new name "name (2).ext"; else it is replaced. 0 on success.
int32_t CopyFileShell(const std::string& From, const std::string& To, bool RenameIfExists);
// Closes a NUL-separated list with two NULs.
void TerminateFromList(std::string& s);

// A column value that may be Null: "" and 0 for Null or empty; NzNumber also
// gives 0 for text that is not a number.
std::string NzText(const Variant& v);
double NzNumber(const Variant& v);
inline std::string NzText(const Field& f) { return NzText(f.Value()); }
inline double NzNumber(const Field& f) { return NzNumber(f.Value()); }

}  // namespace qvrl
