#include "store/DaoInternal.h"

#include <cmath>

#include "store/StoreText.h"

namespace qvrl::dao_internal {

bool SameName(std::string_view a, std::string_view b) { return CompareText(a, b) == 0; }

int32_t TableInfo::Find(std::string_view col) const {
    for (size_t i = 0; i < columns.size(); ++i)
        if (SameName(columns[i].name, col)) return static_cast<int32_t>(i);
    return -1;
}

[[noreturn]] void RaiseItemNotFound(std::string_view name) {
    Raise(err::ItemNotFound, {}, ErrorDescription(err::ItemNotFound) + " ('" + std::string(name) + "')");
}

[[noreturn]] void RaiseEngine(int rc, const std::string& file, const std::string& message) {
    if (rc == SQLITE_READONLY_ROLLBACK)
        Raise(dao::errCannotOpen, {},
              "The file '" + file + "' cannot be opened: a change to it was cut off, and only a connection that "
              "may write the file can undo it.");
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

bool ValidName(std::string_view name) {
    if (name.empty() || name.size() > 64 || name.front() == ' ') return false;
    for (const char c : name) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x20 || u == 0x7F || c == '.' || c == '!' || c == '`' || c == '[' || c == ']' || c == '"')
            return false;
    }
    return true;
}

static bool FitsIn(double v, double lo, double hi) { return v >= lo && v <= hi; }

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

[[noreturn]] static void RaiseConversion(const ColumnInfo& c) {
    Raise(dao::errConversion, {}, "Data type conversion error (field '" + c.name + "').");
}

static double NumberFor(const Variant& v, const ColumnInfo& c) {
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

}  // namespace qvrl::dao_internal
