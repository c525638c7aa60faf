#include "store/JetQuery.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "store/StoreText.h"
#include "support/errors.h"

namespace qvrl::jet {

namespace {

// Deeper statements are nothing the modules build; the limits keep the
// parser's and SQLite's stacks small.
constexpr int kMaxNesting = 64;
constexpr int kMaxDepth = 200;
constexpr size_t kMaxColumns = 255;
constexpr size_t kMaxOrderTerms = 16;

enum class Tok { End, Name, Bracketed, Number, Text, Star, Comma, LParen, RParen, Plus, Minus, Slash, Eq, Ne, Lt, Gt, Le, Ge };

struct Token {
    Tok kind = Tok::End;
    std::string text;  // name, bracketed name, text, or the number as written
    size_t pos = 0;    // 0-based offset in the query
};

bool IsNameStart(unsigned char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80; }
bool IsNameChar(unsigned char c) { return IsNameStart(c) || (c >= '0' && c <= '9'); }
bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

bool SameWord(std::string_view a, const char* kw) {
    size_t i = 0;
    for (; kw[i]; ++i) {
        if (i >= a.size()) return false;
        char c = a[i];
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
        if (c != kw[i]) return false;
    }
    return i == a.size();
}

const char* const kKeywords[] = {"SELECT", "TOP", "FROM", "WHERE", "ORDER", "BY", "DESC", "AND", "LIKE"};

bool IsKeyword(std::string_view word) {
    for (const char* k : kKeywords)
        if (SameWord(word, k)) return true;
    return false;
}

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) { Lex(); }

    Query ParseQuery() {
        Query q;
        if (toks_.size() == 2 && IsName(toks_[0])) {
            q.wholeTable = true;
            q.table = toks_[0].text;
            return q;
        }
        ExpectWord("SELECT");
        if (AtWord("TOP")) {
            ++i_;
            const Token& n = Cur();
            if (n.kind != Tok::Number) Fail(n.pos);
            int64_t v = 0;
            const auto r = std::from_chars(n.text.data(), n.text.data() + n.text.size(), v);
            if (r.ec != std::errc() || r.ptr != n.text.data() + n.text.size() || v < 1 ||
                v > std::numeric_limits<int32_t>::max())
                Fail(n.pos);
            q.top = static_cast<int32_t>(v);
            ++i_;
        }
        if (Cur().kind == Tok::Star) {
            ++i_;
        } else {
            q.allColumns = false;
            q.columns.push_back(ExpectName());
            while (Cur().kind == Tok::Comma) {
                ++i_;
                if (q.columns.size() >= kMaxColumns) Fail(Cur().pos);
                q.columns.push_back(ExpectName());
            }
        }
        ExpectWord("FROM");
        q.table = ExpectName();
        if (AtWord("WHERE")) {
            ++i_;
            q.where = ParseCondition();
        }
        if (AtWord("ORDER")) {
            ++i_;
            ExpectWord("BY");
            for (;;) {
                OrderTerm t;
                const size_t at = Cur().pos;
                t.value = ParseValue();
                if (t.value->IsCondition()) Fail(at);
                if (AtWord("DESC")) {
                    ++i_;
                    t.descending = true;
                }
                q.orderBy.push_back(std::move(t));
                if (Cur().kind != Tok::Comma) break;
                if (q.orderBy.size() >= kMaxOrderTerms) Fail(Cur().pos);
                ++i_;
            }
        }
        if (Cur().kind != Tok::End) Fail(Cur().pos);
        return q;
    }

    std::unique_ptr<Expr> ParseCriterionOnly() {
        auto e = ParseCondition();
        if (Cur().kind != Tok::End) Fail(Cur().pos);
        return e;
    }

private:
    [[noreturn]] void Fail(size_t pos) const {
        Raise(err::QuerySyntax, {},
              "Syntax error in query expression '" + std::string(text_) + "' (at character " + std::to_string(pos + 1) +
                  ")");
    }

    const Token& Cur() const { return toks_[i_]; }
    bool IsName(const Token& t) const {
        return t.kind == Tok::Bracketed || (t.kind == Tok::Name && !IsKeyword(t.text));
    }
    bool AtWord(const char* kw) const { return Cur().kind == Tok::Name && SameWord(Cur().text, kw); }
    void ExpectWord(const char* kw) {
        if (!AtWord(kw)) Fail(Cur().pos);
        ++i_;
    }
    std::string ExpectName() {
        if (!IsName(Cur())) Fail(Cur().pos);
        return toks_[i_++].text;
    }

    void Lex() {
        size_t i = 0;
        const size_t n = text_.size();
        auto ch = [&](size_t k) { return k < n ? static_cast<unsigned char>(text_[k]) : 0; };
        while (i < n) {
            const unsigned char c = ch(i);
            if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
                ++i;
                continue;
            }
            Token t;
            t.pos = i;
            if (IsNameStart(c)) {
                size_t j = i;
                while (j < n && IsNameChar(ch(j))) ++j;
                t.kind = Tok::Name;
                t.text = std::string(text_.substr(i, j - i));
                i = j;
            } else if (c == '[') {
                const size_t close = text_.find(']', i + 1);
                if (close == std::string_view::npos || close == i + 1) Fail(i);
                const std::string_view name = text_.substr(i + 1, close - i - 1);
                if (name.front() == ' ') Fail(i);
                for (const char x : name) {
                    const auto u = static_cast<unsigned char>(x);
                    if (u < 0x20 || u == 0x7F || x == '[' || x == '.' || x == '!' || x == '`') Fail(i);
                }
                t.kind = Tok::Bracketed;
                t.text = std::string(name);
                i = close + 1;
            } else if (IsDigit(c) || (c == '.' && IsDigit(ch(i + 1)))) {
                size_t j = i;
                while (IsDigit(ch(j))) ++j;
                if (ch(j) == '.') {
                    ++j;
                    while (IsDigit(ch(j))) ++j;
                }
                if (ch(j) == 'e' || ch(j) == 'E') {
                    ++j;
                    if (ch(j) == '+' || ch(j) == '-') ++j;
                    if (!IsDigit(ch(j))) Fail(j);
                    while (IsDigit(ch(j))) ++j;
                }
                if (IsNameChar(ch(j)) || ch(j) == '.') Fail(j);
                t.kind = Tok::Number;
                t.text = std::string(text_.substr(i, j - i));
                i = j;
            } else if (c == '\'') {
                size_t j = i + 1;
                for (;;) {
                    if (j >= n) Fail(i);
                    if (text_[j] == '\'') {
                        if (ch(j + 1) == '\'') {
                            t.text += '\'';
                            j += 2;
                            continue;
                        }
                        break;
                    }
                    t.text += text_[j++];
                }
                t.kind = Tok::Text;
                i = j + 1;
            } else {
                size_t len = 1;
                switch (c) {
                case '*': t.kind = Tok::Star; break;
                case ',': t.kind = Tok::Comma; break;
                case '(': t.kind = Tok::LParen; break;
                case ')': t.kind = Tok::RParen; break;
                case '+': t.kind = Tok::Plus; break;
                case '-': t.kind = Tok::Minus; break;
                case '/': t.kind = Tok::Slash; break;
                case '=': t.kind = Tok::Eq; break;
                case '<':
                    if (ch(i + 1) == '>') {
                        t.kind = Tok::Ne;
                        len = 2;
                    } else if (ch(i + 1) == '=') {
                        t.kind = Tok::Le;
                        len = 2;
                    } else {
                        t.kind = Tok::Lt;
                    }
                    break;
                case '>':
                    if (ch(i + 1) == '=') {
                        t.kind = Tok::Ge;
                        len = 2;
                    } else {
                        t.kind = Tok::Gt;
                    }
                    break;
                default: Fail(i);
                }
                i += len;
            }
            toks_.push_back(std::move(t));
        }
        Token end;
        end.pos = n;
        toks_.push_back(end);
    }

    std::unique_ptr<Expr> Node(Op op, std::unique_ptr<Expr> l, std::unique_ptr<Expr> r) {
        auto e = std::make_unique<Expr>();
        e->op = op;
        e->depth = 1 + std::max(l ? l->depth : 0, r ? r->depth : 0);
        if (e->depth > kMaxDepth) Fail(Cur().pos);
        e->left = std::move(l);
        e->right = std::move(r);
        return e;
    }

    // A value that arithmetic may take: not a condition, not a text literal.
    void RequireNumeric(const Expr& e, size_t pos) const {
        if (e.IsCondition() || e.op == Op::Text) Fail(pos);
    }

    std::unique_ptr<Expr> ParseCondition() {
        const size_t at = Cur().pos;
        auto e = ParseCondition0();
        if (!e->IsCondition()) Fail(at);
        return e;
    }

    std::unique_ptr<Expr> ParseTest() {
        const size_t at = Cur().pos;
        auto l = ParseValue();
        Op op;
        switch (Cur().kind) {
        case Tok::Eq: op = Op::Eq; break;
        case Tok::Ne: op = Op::Ne; break;
        case Tok::Lt: op = Op::Lt; break;
        case Tok::Gt: op = Op::Gt; break;
        case Tok::Le: op = Op::Le; break;
        case Tok::Ge: op = Op::Ge; break;
        default:
            if (AtWord("LIKE")) {
                if (l->IsCondition()) Fail(at);
                ++i_;
                if (Cur().kind != Tok::Text) Fail(Cur().pos);
                auto e = Node(Op::Like, std::move(l), nullptr);
                e->text = toks_[i_++].text;
                CountLiteral();
                return e;
            }
            return l;  // a parenthesised condition, or a value the caller refuses
        }
        if (l->IsCondition()) Fail(at);
        ++i_;
        const size_t rat = Cur().pos;
        auto r = ParseValue();
        if (r->IsCondition()) Fail(rat);
        return Node(op, std::move(l), std::move(r));
    }

    std::unique_ptr<Expr> ParseValue() {
        const size_t at = Cur().pos;
        auto l = ParseTerm();
        while (Cur().kind == Tok::Plus || Cur().kind == Tok::Minus) {
            const Op op = Cur().kind == Tok::Plus ? Op::Add : Op::Sub;
            RequireNumeric(*l, at);
            ++i_;
            const size_t rat = Cur().pos;
            auto r = ParseTerm();
            RequireNumeric(*r, rat);
            l = Node(op, std::move(l), std::move(r));
        }
        return l;
    }

    std::unique_ptr<Expr> ParseTerm() {
        const size_t at = Cur().pos;
        auto l = ParseFactor();
        while (Cur().kind == Tok::Star || Cur().kind == Tok::Slash) {
            const Op op = Cur().kind == Tok::Star ? Op::Mul : Op::Div;
            RequireNumeric(*l, at);
            ++i_;
            const size_t rat = Cur().pos;
            auto r = ParseFactor();
            RequireNumeric(*r, rat);
            l = Node(op, std::move(l), std::move(r));
        }
        return l;
    }

    std::unique_ptr<Expr> ParseFactor() {
        const Token& t = Cur();
        if (++nesting_ > kMaxNesting) Fail(t.pos);
        std::unique_ptr<Expr> e;
        switch (t.kind) {
        case Tok::Minus: {
            ++i_;
            const size_t at = Cur().pos;
            auto x = ParseFactor();
            RequireNumeric(*x, at);
            if (x->op == Op::Number) {
                x->number = -x->number;
                x->integer = -x->integer;
                e = std::move(x);
            } else {
                e = Node(Op::Negate, std::move(x), nullptr);
            }
            break;
        }
        case Tok::Number: e = NumberLiteral(t); ++i_; break;
        case Tok::Text:
            e = std::make_unique<Expr>();
            e->op = Op::Text;
            e->text = t.text;
            CountLiteral();
            ++i_;
            break;
        case Tok::Name:
        case Tok::Bracketed:
            if (!IsName(t)) Fail(t.pos);
            e = std::make_unique<Expr>();
            e->op = Op::Column;
            e->text = t.text;
            ++i_;
            break;
        case Tok::LParen: {
            ++i_;
            e = ParseCondition0();
            if (Cur().kind != Tok::RParen) Fail(Cur().pos);
            ++i_;
            break;
        }
        default: Fail(t.pos);
        }
        --nesting_;
        return e;
    }

    // Inside parentheses: a value, or a condition with AND.
    std::unique_ptr<Expr> ParseCondition0() {
        auto l = ParseTest();
        if (!l->IsCondition()) return l;
        while (AtWord("AND")) {
            ++i_;
            const size_t rat = Cur().pos;
            auto r = ParseTest();
            if (!r->IsCondition()) Fail(rat);
            l = Node(Op::And, std::move(l), std::move(r));
        }
        return l;
    }

    std::unique_ptr<Expr> NumberLiteral(const Token& t) {
        auto e = std::make_unique<Expr>();
        e->op = Op::Number;
        const char* b = t.text.data();
        const char* end = b + t.text.size();
        const auto rd = std::from_chars(b, end, e->number);
        if (rd.ec != std::errc() || rd.ptr != end) Fail(t.pos);
        if (t.text.find_first_of(".eE") == std::string::npos) {
            const auto ri = std::from_chars(b, end, e->integer);
            e->integral = ri.ec == std::errc() && ri.ptr == end;
        }
        CountLiteral();
        return e;
    }

    void CountLiteral() {
        if (++literals_ > kMaxLiterals) Fail(Cur().pos);
    }

    std::string_view text_;
    std::vector<Token> toks_;
    size_t i_ = 0;
    int nesting_ = 0;
    int literals_ = 0;
};

std::string Bind(std::vector<jet::Param>& params, jet::Param p) {
    params.push_back(std::move(p));
    return "?" + std::to_string(params.size());
}

bool InvolvesText(const Expr& e, const ColumnResolver& resolve) {
    if (e.op == Op::Text) return true;
    if (e.op == Op::Column) return resolve(e.text).text;
    return false;
}

const char* CompareSql(Op op) {
    switch (op) {
    case Op::Eq: return " = ";
    case Op::Ne: return " <> ";
    case Op::Lt: return " < ";
    case Op::Gt: return " > ";
    case Op::Le: return " <= ";
    default: return " >= ";
    }
}

}  // namespace

Query ParseQuery(std::string_view text) { return Parser(text).ParseQuery(); }

std::unique_ptr<Expr> ParseCriterion(std::string_view text) { return Parser(text).ParseCriterionOnly(); }

void CheckNesting(const std::string& sql) {
    // SQLite's parser overflows at about a hundred levels of parentheses, or
    // fewer with a CAST on each; forty leaves room and is far above what the
    // modules build (under ten).
    constexpr int kMaxSqlNesting = 40;
    int depth = 0;
    bool quoted = false;
    for (const char c : sql) {
        if (c == '"') quoted = !quoted;
        if (quoted) continue;
        if (c == '(' && ++depth > kMaxSqlNesting)
            Raise(err::QuerySyntax, {}, "Syntax error in query expression: the query is too complex");
        if (c == ')') --depth;
    }
}

std::string QuoteName(std::string_view name) {
    std::string r = "\"";
    for (const char c : name) {
        if (c == '"') r += '"';
        r += c;
    }
    r += '"';
    return r;
}

std::string ToSql(const Expr& e, const ColumnResolver& resolve, std::vector<jet::Param>& params) {
    // Operands are translated left to right, so parameters number in the
    // order of the text.
    auto binary = [&](const char* op) {
        std::string l = ToSql(*e.left, resolve, params);
        std::string r = ToSql(*e.right, resolve, params);
        return "(" + l + op + r + ")";
    };
    switch (e.op) {
    case Op::Number:
        return e.integral ? Bind(params, e.integer) : Bind(params, e.number);
    case Op::Text: return Bind(params, e.text);
    case Op::Column: return resolve(e.text).sql;
    case Op::Negate: return "(-" + ToSql(*e.left, resolve, params) + ")";
    case Op::Add: return binary(" + ");
    case Op::Sub: return binary(" - ");
    case Op::Mul: return binary(" * ");
    case Op::Div: {
        // Jet divides in floating point, SQLite would divide integers.
        std::string l = ToSql(*e.left, resolve, params);
        std::string r = ToSql(*e.right, resolve, params);
        return "(CAST(" + l + " AS REAL) / " + r + ")";
    }
    case Op::Like: {
        std::string value = ToSql(*e.left, resolve, params);
        std::string pattern = Bind(params, e.text);
        return std::string(kStoreLikeFunction) + "(" + value + ", " + pattern + ")";
    }
    case Op::And: return binary(" AND ");
    default: {
        const bool text = InvolvesText(*e.left, resolve) || InvolvesText(*e.right, resolve);
        std::string l = ToSql(*e.left, resolve, params);
        std::string r = ToSql(*e.right, resolve, params);
        return "(" + l + CompareSql(e.op) + r + (text ? std::string(" COLLATE ") + kStoreCollation : "") + ")";
    }
    }
}

std::string OrderSql(const Expr& e, const ColumnResolver& resolve, std::vector<jet::Param>& params) {
    if (e.op == Op::Column) {
        const ColumnSql c = resolve(e.text);
        return c.text ? c.sql + " COLLATE " + kStoreCollation : c.sql;
    }
    return ToSql(e, resolve, params);
}

std::string TextLiteral(std::string_view text) {
    std::string r = "'";
    r.reserve(text.size() + 2);
    for (const char c : text) {
        r += c;
        if (c == '\'') r += '\'';
    }
    r += '\'';
    return r;
}

}  // namespace qvrl::jet
