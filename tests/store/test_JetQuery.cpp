// The query language on its own: what it accepts, what it refuses, and that
// every literal leaves the text as a bound parameter.
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "store/JetQuery.h"
#include "store/ModuleQueries.h"
#include "store/StoreText.h"
#include "support/errors.h"
#include "support/vb.h"

using namespace qvrl;
using qvrl::test::I;
using qvrl::test::P;
using qvrl::test::S;

namespace {

jet::ColumnSql AnyColumn(const std::string& name) {
    // Names that hold text in the sample tables; the rest are numbers.
    static const std::regex text("BL_ID|Reg_ID|LK_ID|AGS|PLZ|Gemeinde|.*_?Name|Land|Landkreis|Bezirk|Kreis|WLZ",
                                 std::regex::icase);
    return {jet::QuoteName(name), std::regex_match(name, text)};
}

struct Sql {
    std::string where, order;
    std::vector<jet::Param> params;
};

Sql Translate(const std::string& text) {
    const jet::Query q = jet::ParseQuery(text);
    Sql s;
    if (q.where) s.where = jet::ToSql(*q.where, AnyColumn, s.params);
    for (const auto& t : q.orderBy) s.order += jet::OrderSql(*t.value, AnyColumn, s.params) + ";";
    return s;
}

// What is left of generated SQL without its quoted names and parameters must
// hold neither a quote nor a digit: no literal was copied into it.
std::string WithoutNamesAndParams(const std::string& sql) {
    return std::regex_replace(std::regex_replace(sql, std::regex("\"([^\"]|\"\")*\""), "N"), std::regex("\\?[0-9]+"),
                              "P");
}

int32_t ErrorOf(const std::string& text) {
    try {
        Translate(text);
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

TEST(JetQuery, EveryModuleQueryBindsAllItsLiterals) {
    for (const auto& m : test::ModuleQueries()) {
        SCOPED_TRACE(m.text);
        Sql s;
        ASSERT_NO_THROW(s = Translate(m.text));
        EXPECT_EQ(s.params, m.params);
        const std::string rest = WithoutNamesAndParams(s.where + s.order);
        EXPECT_EQ(rest.find_first_of("'0123456789"), std::string::npos) << rest;
    }
}

TEST(JetQuery, ShapeOfTheStatement) {
    const jet::Query top = jet::ParseQuery("select top 3 ID, [Fußnote(n)] from [slz] where Kreis >= -2 order by ID desc, Gemeinde");
    EXPECT_EQ(top.top, 3);
    EXPECT_FALSE(top.allColumns);
    EXPECT_EQ(top.columns, (std::vector<std::string>{"ID", "Fußnote(n)"}));
    EXPECT_EQ(top.table, "slz");
    ASSERT_EQ(top.orderBy.size(), 2u);
    EXPECT_TRUE(top.orderBy[0].descending);
    EXPECT_FALSE(top.orderBy[1].descending);

    const jet::Query whole = jet::ParseQuery("  slzwlz  ");
    EXPECT_TRUE(whole.wholeTable);
    EXPECT_EQ(whole.table, "slzwlz");
    EXPECT_TRUE(jet::ParseQuery("[Fußnote(n)]").wholeTable);
}

TEST(JetQuery, LiteralsKeepTheirValue) {
    struct Case {
        const char* where;
        jet::Param value;
    };
    const Case cases[] = {
        {"a = 'O''Brien'", S{"O'Brien"}},
        {"a = ''''", S{"'"}},
        {"a = ''", S{""}},
        {"a = 'x AND b = 1'", S{"x AND b = 1"}},
        {"a = '; DROP TABLE t; --'", S{"; DROP TABLE t; --"}},
        {"a = 90", I{90}},
        {"a = -99", I{-99}},
        {"a = 22.5", 22.5},
        {"a = .5", 0.5},
        {"a = 1E-05", 1e-5},
        {"a = 2.5e+3", 2500.0},
        {"a = 9223372036854775807", I{9223372036854775807}},
        {"a = 9223372036854775808", 9223372036854775808.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.where);
        const Sql s = Translate(std::string("SELECT * FROM t WHERE ") + c.where);
        ASSERT_EQ(s.params.size(), 1u);
        EXPECT_EQ(s.params[0], c.value);
    }
}

TEST(JetQuery, FilterTextsWithQuotesBreakTheStatementOrStayText) {
    // The name clause as the town look-ups build it.
    auto nameQuery = [](const std::string& name) {
        return "SELECT * FROM slzwlz WHERE Gemeinde like '" + name + "*' ORDER BY Gemeinde";
    };
    EXPECT_EQ(ErrorOf(nameQuery("O'Brien")), err::QuerySyntax);
    EXPECT_EQ(ErrorOf(nameQuery("x' OR '1'='1")), err::QuerySyntax);
    EXPECT_EQ(ErrorOf(nameQuery("'; DROP TABLE slzwlz; --")), err::QuerySyntax);
    EXPECT_EQ(ErrorOf(nameQuery("x' UNION SELECT * FROM cpe WHERE '1'='1")), err::QuerySyntax);
    // A doubled quote keeps the rest inside the text.
    const Sql kept = Translate(nameQuery("a'' AND Gemeinde like ''b"));
    EXPECT_EQ(kept.params, (P{S{"a' AND Gemeinde like 'b*"}}));
    // A filter may add a test of its own, but it is still one SELECT with
    // bound literals.
    const Sql narrowed = Translate(nameQuery("x' AND AGS like '"));
    EXPECT_EQ(narrowed.params, (P{S{"x"}, S{"*"}}));
    // Built with TextLiteral, every one of them is one text again.
    for (const std::string t : {"O'Brien", "x' OR '1'='1", "'", "''", "a''b'", "", "%?*", "x' AND AGS like '"}) {
        SCOPED_TRACE(t);
        const Sql s = Translate("SELECT * FROM slzwlz WHERE Gemeinde like " + jet::TextLiteral(t + "*") +
                                " AND AGS = " + jet::TextLiteral(t));
        EXPECT_EQ(s.params, (P{S{t + "*"}, S{t}}));
    }
}

TEST(JetQuery, TextsOutsideTheLanguageAre3075) {
    const char* texts[] = {
        "",
        "   ",
        "INSERT INTO slzwlz (ID) VALUES (1)",
        "DELETE FROM slzwlz",
        "DROP TABLE slzwlz",
        "UPDATE slzwlz SET WZ = '1'",
        "SELECT * FROM t; SELECT * FROM u",
        "SELECT * FROM t;",
        "SELECT * FROM t -- comment",
        "SELECT * FROM t /* comment */",
        "SELECT * FROM t WHERE a = 1 --",
        "SELECT * FROM t WHERE a = 1 OR b = 2",
        "SELECT * FROM t WHERE NOT a = 1",
        "SELECT * FROM t WHERE a IS NULL",
        "SELECT * FROM t WHERE a IN (1, 2)",
        "SELECT * FROM t WHERE a BETWEEN 1 AND 2",
        "SELECT * FROM t WHERE abs(a) = 1",
        "SELECT * FROM t WHERE load_extension('x') = 1",
        "SELECT * FROM t WHERE a = \"x\"",
        "SELECT * FROM t WHERE a = #1/1/2000#",
        "SELECT * FROM t WHERE a = 'open",
        "SELECT * FROM t WHERE a",
        "SELECT * FROM t WHERE (a = 1) + 1 = 2",
        "SELECT * FROM t WHERE 'a' + 1 = 2",
        "SELECT * FROM t WHERE a = (b = 1)",
        "SELECT * FROM t WHERE a = 1 = 1",
        "SELECT * FROM t WHERE a LIKE b",
        "SELECT * FROM t WHERE a LIKE 'x' ESCAPE '!'",
        "SELECT * FROM t WHERE a = 1 AND",
        "SELECT * FROM t WHERE",
        "SELECT * FROM t ORDER BY",
        "SELECT * FROM t ORDER BY a ASC",
        "SELECT * FROM t ORDER BY a = 1",
        "SELECT * FROM t ORDER BY a COLLATE BINARY",
        "SELECT * FROM t GROUP BY a",
        "SELECT * FROM t, u",
        "SELECT * FROM t JOIN u",
        "SELECT * FROM t AS x",
        "SELECT t.a FROM t",
        "SELECT a AS b FROM t",
        "SELECT DISTINCT a FROM t",
        "SELECT COUNT(*) FROM t",
        "SELECT * FROM",
        "SELECT FROM t",
        "SELECT *, a FROM t",
        "SELECT TOP 0 * FROM t",
        "SELECT TOP 1.5 * FROM t",
        "SELECT TOP -1 * FROM t",
        "SELECT TOP 1 PERCENT * FROM t",
        "SELECT TOP 3000000000 * FROM t",
        "SELECT * FROM [a.b]",
        "SELECT * FROM []",
        "SELECT * FROM [ leading]",
        "SELECT * FROM [unclosed",
        "SELECT * FROM t WHERE a = 1abc",
        "SELECT * FROM t WHERE a = 1.2.3",
        "SELECT * FROM t WHERE a = 1e",
        "SELECT * FROM t WHERE a = 1e999",
        "SELECT * FROM t WHERE a = ?",
        "SELECT * FROM t WHERE a = :x",
        "SELECT * FROM t WHERE a = @x",
        "SELECT * FROM t WHERE a == 1",
        "SELECT * FROM t WHERE a != 1",
        "SELECT * FROM t WHERE a = 1 || 2",
        "SELECT * FROM t WHERE a = `b`",
        "slzwlz cpe",
        "select",
        "WITH x AS (SELECT * FROM t) SELECT * FROM x",
        "PRAGMA table_info(t)",
        "ATTACH 'x' AS y",
    };
    for (const char* t : texts) EXPECT_EQ(ErrorOf(t), err::QuerySyntax) << t;
}

TEST(JetQuery, DepthAndSizeAreBounded) {
    std::string deep = "SELECT * FROM t WHERE ";
    for (int i = 0; i < 100; ++i) deep += "(";
    deep += "a = 1";
    for (int i = 0; i < 100; ++i) deep += ")";
    EXPECT_EQ(ErrorOf(deep), err::QuerySyntax);

    std::string shallow = "SELECT * FROM t WHERE ";
    for (int i = 0; i < 20; ++i) shallow += "(";
    shallow += "a = 1";
    for (int i = 0; i < 20; ++i) shallow += ")";
    EXPECT_EQ(ErrorOf(shallow), 0);

    std::string chain = "SELECT * FROM t WHERE a = 1";
    for (int i = 0; i < 300; ++i) chain += " AND a = 1";
    EXPECT_EQ(ErrorOf(chain), err::QuerySyntax);

    std::string minus = "SELECT * FROM t WHERE a = ";
    for (int i = 0; i < 100; ++i) minus += "-";
    EXPECT_EQ(ErrorOf(minus + "1"), err::QuerySyntax);
}

TEST(JetQuery, CriterionIsTheWhereLanguage) {
    EXPECT_EQ(jet::ParseCriterion("AGS = '09162000' AND Gemeinde like 'M*'")->op, jet::Op::And);
    EXPECT_THROW(jet::ParseCriterion("SELECT * FROM t"), RuntimeError);
    EXPECT_THROW(jet::ParseCriterion("a = 1 ORDER BY a"), RuntimeError);
    EXPECT_THROW(jet::ParseCriterion("a"), RuntimeError);
}

TEST(JetLike, PatternsAsJetReadsThem) {
    struct Case {
        const char* value;
        const char* pattern;
        bool match;
    };
    const Case cases[] = {
        {"München", "Mün*", true},
        {"MÜNCHEN", "mün*", true},
        {"München", "Mun*", false},
        {"München", "M?nchen", true},      // one character, even of two bytes
        {"München", "M??nchen", false},
        {"Garching b.München", "*münchen", true},
        {"80331", "80*", true},
        {"80331", "8*", true},
        {"80331", "80", false},
        {"80331", "#####", true},
        {"8033a", "#####", false},
        {"Graz", "Graz", true},
        {"Graz-Umgebung", "Graz", false},
        {"", "*", true},
        {"", "", true},
        {"a", "", false},
        {"", "?", false},
        {"abc", "a*c", true},
        {"abc", "a*b", false},
        {"aXbXc", "a*b*c", true},
        {"mississippi", "*iss*ppi", true},
        {"100%", "100%", true},     // % and _ are plain characters here
        {"1000", "100%", false},
        {"a_c", "a_c", true},
        {"abc", "a_c", false},
        {"b", "[abc]", true},
        {"B", "[abc]", true},
        {"d", "[abc]", false},
        {"d", "[!abc]", true},
        {"a", "[!abc]", false},
        {"m", "[a-z]", true},
        {"5", "[a-z]", false},
        {"-", "[a-]", true},
        {"*", "[*]", true},
        {"x", "[*]", false},
        {"a[b", "a[b", true},       // a "[" without "]" stands for itself
        {"ab", "a[]b", true},       // "[]" takes no character
        {"Ärzen", "ä*", true},
        {"Ärzen", "a*", false},     // case-blind, not accent-blind
        {"Straße", "STRASSE", false},
        {"Straße", "STRAßE", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(LikeMatch(c.value, c.pattern), c.match) << "'" << c.value << "' LIKE '" << c.pattern << "'";
}

TEST(JetCollation, CaseBlindEqualityAndGermanOrder) {
    EXPECT_EQ(CompareText("München", "MÜNCHEN"), 0);
    EXPECT_EQ(CompareText("ärzen", "ÄRZEN"), 0);
    EXPECT_EQ(CompareText("abc", "ABC"), 0);
    EXPECT_NE(CompareText("Muenchen", "München"), 0);
    EXPECT_NE(CompareText("Munchen", "München"), 0);
    EXPECT_NE(CompareText("Strasse", "Straße"), 0);

    // A list as a German reader expects it: umlauts sort with their base
    // letter, ß as ss, and case makes no difference.
    const std::vector<std::string> sorted = {"",       "Aachen", "ärzen",  "Ärzen-Nord", "Bonn",   "Mödling",
                                             "Moers",  "München", "munster", "Strasse", "Straße", "Übach", "Zell"};
    for (size_t i = 0; i + 1 < sorted.size(); ++i)
        for (size_t j = i + 1; j < sorted.size(); ++j) {
            EXPECT_LT(CompareText(sorted[i], sorted[j]), 0) << sorted[i] << " < " << sorted[j];
            EXPECT_GT(CompareText(sorted[j], sorted[i]), 0) << sorted[j] << " > " << sorted[i];
        }
    // The store folds case as UCase does, letter for letter.
    for (char32_t c = 0x20; c < 0x100; ++c) {
        std::string one;
        if (c < 0x80) one = std::string(1, static_cast<char>(c));
        else one = {static_cast<char>(0xC0 | (c >> 6)), static_cast<char>(0x80 | (c & 0x3F))};
        EXPECT_EQ(CompareText(one, UCase(one)), 0) << static_cast<uint32_t>(c);
        EXPECT_EQ(CompareText(LCase(one), UCase(one)), 0) << static_cast<uint32_t>(c);
    }
    // Bytes that are not UTF-8 still have a place.
    EXPECT_LT(CompareText("Z", std::string("\xFF")), 0);
    EXPECT_EQ(CompareText(std::string("a\xFF"), std::string("A\xFF")), 0);
}

}  // namespace
