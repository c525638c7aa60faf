#include "store/DaoInternal.h"

#include <algorithm>
#include <utility>

namespace qvrl {

using namespace dao_internal;

// ---------------------------------------------------------------------------
// Recordsets

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

}  // namespace qvrl
