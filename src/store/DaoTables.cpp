#include "store/DaoInternal.h"

#include <utility>

#include "store/StoreText.h"

namespace qvrl {

using namespace dao_internal;

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

}  // namespace qvrl
