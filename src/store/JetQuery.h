#pragma once
// The query language of the table store: the few statements that the modules
// build, in the Jet dialect they are written in.
//
//   query     := name | SELECT [TOP n] ( * | column {, column} ) FROM name
//                [WHERE condition] [ORDER BY value [DESC] {, value [DESC]}]
//   condition := test {AND test}
//   test      := value (= | <> | < | > | <= | >=) value | value LIKE 'pattern'
//              | ( condition )
//   value     := term {(+ | -) term};  term := factor {(* | /) factor}
//   factor    := - factor | number | 'text' | name | [name] | ( value )
//
// Keywords are case-blind; a text doubles its apostrophe. Anything else is
// error 3075, so a filter text that brings its own quote either stays a text
// or breaks the statement: it can never add a clause. The parsed statement
// becomes SQLite text in which every literal is a bound parameter.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace qvrl::jet {

enum class Op { Number, Text, Column, Negate, Add, Sub, Mul, Div, Eq, Ne, Lt, Gt, Le, Ge, Like, And };

struct Expr {
    Op op = Op::Number;
    // Number: the value; integral numbers that fit also as an integer.
    double number = 0.0;
    bool integral = false;
    int64_t integer = 0;
    // Text: the text; Column: the name as written; Like: the pattern.
    std::string text;
    std::unique_ptr<Expr> left, right;
    // Height of the tree below and including this node.
    int32_t depth = 1;

    bool IsCondition() const { return op >= Op::Eq; }
};

struct OrderTerm {
    std::unique_ptr<Expr> value;
    bool descending = false;
};

struct Query {
    // The text was a bare table name: the whole table in its own order.
    bool wholeTable = false;
    // TOP n; 0 when absent.
    int32_t top = 0;
    // SELECT *; otherwise the columns as written.
    bool allColumns = true;
    std::vector<std::string> columns;
    std::string table;
    std::unique_ptr<Expr> where;
    std::vector<OrderTerm> orderBy;
};

// Error 3075 for a text outside the language.
Query ParseQuery(std::string_view text);
// A search criterion: the language of WHERE alone.
std::unique_ptr<Expr> ParseCriterion(std::string_view text);

// At most this many literals in one text: parameters ?1 up to it are the
// literals', those above are free for the caller.
inline constexpr int kMaxLiterals = 2000;

// Values bound to the statement, in parameter order (?1, ?2, ...).
using Param = std::variant<int64_t, double, std::string>;

// A column as it goes into SQL, and whether it holds text.
struct ColumnSql {
    std::string sql;
    bool text = false;
};
// Resolves a column name as written; raises an error for an unknown one.
using ColumnResolver = std::function<ColumnSql(const std::string& name)>;

// SQL of a value or condition. Comparisons that involve text use the store's
// collation, LIKE the store's function; literals are appended to params.
std::string ToSql(const Expr& e, const ColumnResolver& resolve, std::vector<Param>& params);
// SQL of an ORDER BY value: a text column sorts by the store's collation.
std::string OrderSql(const Expr& e, const ColumnResolver& resolve, std::vector<Param>& params);

// Error 3075 when SQL made by ToSql nests deeper than SQLite's parser takes
// (a long chain of arithmetic does); names in double quotes do not count.
void CheckNesting(const std::string& sql);

// A name in double quotes, as SQLite reads it.
std::string QuoteName(std::string_view name);

// A text as a literal of this language: in apostrophes, its own apostrophes
// doubled, so that whatever a caller passes stays one text.
std::string TextLiteral(std::string_view text);

}  // namespace qvrl::jet
