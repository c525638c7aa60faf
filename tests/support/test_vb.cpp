#include <gtest/gtest.h>

#include "ErrorOf.h"

#include <cmath>
#include <limits>

#include "support/errors.h"
#include "support/vb.h"

using namespace qvrl;

namespace {

using test::ErrorOf;

struct ValCase {
    const char* text;
    double expected;
};

TEST(Val, ReadsTheNumericPrefix) {
    const ValCase cases[] = {
        {"1e3", 1000.0},   {"  12abc", 12.0},  {"", 0.0},         {"-", 0.0},       {",5", 0.0},
        {".5", 0.5},       {"-.5", -0.5},      {"1 2 3", 123.0},  {"\t7\n8", 78.0}, {"1.5.6", 1.5},
        {"1e", 1.0},       {"1e+", 1.0},       {"2D2", 200.0},    {"+4", 4.0},      {"1,5", 1.0},
        {"&HFF", 255.0},   {"&HFFFF", -1.0},   {"&H10000", 65536.0}, {"&O17", 15.0}, {"&Hxyz", 0.0},
        {"abc", 0.0},      {"3.25e-2x", 0.0325}, {"--1", 0.0},    {"1e-400", 0.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Val(c.text), c.expected);
    }
}

TEST(Val, OverflowIsError6) { EXPECT_EQ(ErrorOf([] { Val("1e400"); }), 6); }

// Half to even in 16 bits (CInt) and 32 bits (CLng); text converts only when
// all of it is a number (13), too large is 6, Null is 94.
TEST(CIntCLng, RoundHalfToEvenWithinTheirRange) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        Variant in;
        int32_t expected;
        int error = 0;
    } cints[] = {
        {0.5, 0},   {1.5, 2},   {2.5, 2},     {3.5, 4},       {-0.5, 0},        {-1.5, -2},
        {-2.5, -2}, {2.4999, 2}, {2.5000001, 3}, {32767.4, 32767}, {-32768.5, -32768}, {-32768.0, -32768},
        {32767.5, 0, 6},  // rounds to 32768
        {32768.0, 0, 6}, {-32769.0, 0, 6}, {-32768.6, 0, 6}, {nan, 0, 6},
        {Variant("1e3"), 1000}, {Variant(" 12 "), 12}, {Variant("2.5"), 2}, {Variant("  12abc"), 0, 13},
        {Variant(""), 0, 13}, {Variant("-"), 0, 13}, {Variant("40000"), 0, 6}, {Variant::Null(), 0, 94},
        {Variant(), 0}, {Variant(true), -1},
    };
    for (size_t i = 0; i < std::size(cints); ++i) {
        const auto& c = cints[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(CInt(c.in), c.expected); }), c.error);
        if (c.in.type() == Variant::Type::Double) {  // the overload of double alike
            EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(CInt(c.in.toDouble()), c.expected); }), c.error);
        }
    }
    EXPECT_EQ(CLng(2147483647.4), 2147483647);
    EXPECT_EQ(CLng(-2147483648.0), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(CLng(4.5), 4);
    EXPECT_EQ(CLng(5.5), 6);
    EXPECT_EQ(ErrorOf([] { CLng(2147483647.5); }), 6);
    EXPECT_EQ(ErrorOf([] { CLng(Variant("x")); }), 13);
}

// Whole numbers from outside: a Long in 32 bits, a Double while it holds the
// number exactly, else error 6 (never wrapped to a negative or rounded).
TEST(VariantFromInteger, LongThenExactDoubleThenOverflow) {
    const struct {
        const char* text;
        Variant expected;  // Empty: error 6
    } cases[] = {
        {"0", Variant(int32_t{0})},
        {"-2147483648", Variant(std::numeric_limits<int32_t>::min())},
        {"2147483647", Variant(std::numeric_limits<int32_t>::max())},
        {"2147483648", Variant(2147483648.0)},
        {"-2147483649", Variant(-2147483649.0)},
        {"9007199254740992", Variant(9007199254740992.0)},
        {"-9007199254740992", Variant(-9007199254740992.0)},
        {"9007199254740993", Variant()},
        {"-9007199254740993", Variant()},
        {"9223372036854775807", Variant()},
        {"-9223372036854775808", Variant()},
        {"9223372036854775808", Variant()},
        {"18446744073709551166", Variant()},  // wrapped, this read as -450
        {"18446744073709551616", Variant()},
        {"100000000000000000000000", Variant()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        if (c.expected.isEmpty()) {
            EXPECT_EQ(ErrorOf([&] { VariantFromIntegerText(c.text); }), 6);
            continue;
        }
        EXPECT_EQ(VariantFromIntegerText(c.text), c.expected);
        const bool neg = c.text[0] == '-';
        EXPECT_EQ(VariantFromInteger(static_cast<int64_t>(std::stoll(c.text))), c.expected);
        if (!neg) {
            EXPECT_EQ(VariantFromInteger(static_cast<uint64_t>(std::stoull(c.text))), c.expected);
        }
    }
    EXPECT_EQ(ErrorOf([] { VariantFromInteger(std::numeric_limits<int64_t>::min()); }), 6);
    EXPECT_EQ(ErrorOf([] { VariantFromInteger(std::numeric_limits<uint64_t>::max()); }), 6);
    EXPECT_EQ(ErrorOf([] { VariantFromInteger(uint64_t{18446744073709551166u}); }), 6);
    for (const char* notWhole : {"", "-", "1.5", "+3", " 4", "1e3", "0x10"}) {
        SCOPED_TRACE(notWhole);
        EXPECT_EQ(ErrorOf([&] { VariantFromIntegerText(notWhole); }), 13);
    }
}

TEST(IsNumeric, AcceptsWholeNumbersOnly) {
    struct {
        const char* text;
        bool numeric;
    } cases[] = {{"1e3", true}, {"  12abc", false}, {"", false},   {"-", false},  {",5", false},
                 {" 12 ", true}, {"-0.5", true},    {".5", true},  {"5.", true},  {"1e", false},
                 {"&H1F", true}, {"&H1G", false},   {"1e999", true}, {"+", false}, {"1 2", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(IsNumeric(c.text), c.numeric);
    }
    EXPECT_TRUE(IsNumeric(Variant()));
    EXPECT_FALSE(IsNumeric(Variant::Null()));
    EXPECT_TRUE(IsNumeric(Variant(2.5)));
}

struct FormatCase {
    double value;
    const char* picture;
    const char* expected;
};

TEST(Format, NumberPictures) {
    const FormatCase cases[] = {
        // rounding half away from zero after taking 15 significant digits
        {1.005, "0.00", "1.01"},
        {2.675, "0.00", "2.68"},
        {0.125, "0.00", "0.13"},
        {-0.125, "0.00", "-0.13"},
        {1.5, "0", "2"},
        {2.5, "0", "3"},
        {-2.5, "0", "-3"},
        {0.05, "0.0", "0.1"},
        {0.045, "0.00", "0.05"},  // binary 0.04499.. is 0.045 at 15 digits
        // a negative value that rounds to zero keeps its sign
        {-0.001, "0.00", "-0.00"},
        {-0.4, "0", "-0"},
        // required and optional places
        {5.0, "000", "005"},
        {1234.0, "000", "1234"},
        {7.0, "00", "07"},
        {0.5, "#.00", ".50"},
        {0.5, "#0.00", "0.50"},
        {12.345, "#0.00", "12.35"},
        {0.0, "#", ""},
        {0.0, "0", "0"},
        {3.1, "0.0#", "3.1"},
        {3.14159, "0.0#", "3.14"},
        {1.5, "#####0.00", "1.50"},
        {123456.789, "###0.0", "123456.8"},
        {1234567.891, "#,##0.00", "1,234,567.89"},
        {999.0, "#,##0", "999"},
        {0.25, "0%", "25%"},
        {12345.0, "0,", "12"},
        {5.0, "\"kN\" 0", "kN 5"},
        // exponent pictures
        {1234567.5, "0.000e+0", "1.235e+6"},
        {1234567.5, "0.00e+0", "1.23e+6"},
        {0.00012345, "0.000e+0", "1.235e-4"},
        {0.00012345, "0.000e-0", "1.235e-4"},
        {12345.0, "0.000e-0", "1.235e4"},
        {0.0, "0.000e+0", "0.000e+0"},
        {9.9996, "0.000e+0", "1.000e+1"},
        {-2.5e-7, "0.00E+00", "-2.50E-07"},
        {1.0, "0e+0", "1e+0"},
        // sections
        {-5.0, "0;(0)", "(5)"},
        {0.0, "0;(0);\"zero\"", "zero"},
        {5.0, "0;(0);\"zero\"", "5"},
        // large values keep 15 significant digits
        {123456789012345678.0, "0", "123456789012346000"},
        {0.1, "0.00000000000000000000", "0.10000000000000000000"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.picture) + " " + std::to_string(c.value));
        EXPECT_EQ(Format(c.value, c.picture), c.expected);
    }
}

TEST(Format, VariantsAndFaults) {
    EXPECT_EQ(Format(Variant("2.5"), "0.00"), "2.50");
    EXPECT_EQ(Format(Variant("abc"), "0.00"), "abc");
    EXPECT_EQ(Format(Variant(int16_t{7}), "000"), "007");
    EXPECT_EQ(Format(Variant(), "0.00"), "");
    EXPECT_EQ(Format(Variant(DateFromParts(2026, 3, 4)), "dd.mm.yyyy"), "04.03.2026");
    EXPECT_EQ(ErrorOf([] { Format(std::numeric_limits<double>::infinity(), "0"); }), 6);
    EXPECT_EQ(ErrorOf([] { Format(1e307, "0%"); }), 6);  // the percent scaling overflows
}

TEST(Format, DatePictures) {
    const DateValue d = DateFromParts(2007, 1, 9, 8, 5, 3);
    EXPECT_EQ(FormatDate(d, "dd.mm.yyyy"), "09.01.2007");
    EXPECT_EQ(FormatDate(d, "yyyy.mm.dd hh:mm:ss"), "2007.01.09 08:05:03");
    EXPECT_EQ(FormatDate(d, "d.m.yy h:nn"), "9.1.07 8:05");
    EXPECT_EQ(FormatDate(DateFromParts(1899, 12, 30), "dd.mm.yyyy"), "30.12.1899");
    EXPECT_EQ(DateFromParts(1899, 12, 30).serial, 0.0);
    EXPECT_EQ(DateFromParts(1900, 1, 1).serial, 2.0);
    EXPECT_EQ(FormatDate(DateFromParts(2000, 2, 29, 23, 59, 59), "dd.mm.yyyy hh:nn:ss"), "29.02.2000 23:59:59");
}

TEST(DoubleToText, ShowsFifteenSignificantDigits) {
    struct {
        double v;
        const char* text;
    } cases[] = {{0.0, "0"},          {-0.0, "0"},       {7.0, "7"},         {0.1, "0.1"},
                 {1.0 / 3.0, "0.333333333333333"},       {2.5, "2.5"},       {-12.75, "-12.75"},
                 {1e15, "1E+15"},     {123456789012345.0, "123456789012345"}, {0.00001, "0.00001"},
                 {0.000001, "1E-06"}, {1.5e-7, "1.5E-07"}, {0.1 + 0.2, "0.3"}, {1e300, "1E+300"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(DoubleToText(c.v), c.text);
    }
}

TEST(Variant, ConversionsFollowBasic) {
    EXPECT_EQ(Variant().toString(), "");
    EXPECT_EQ(Variant(true).toString(), "True");
    EXPECT_EQ(Variant(int32_t{-5}).toString(), "-5");
    EXPECT_EQ(Variant(2.5).toString(), "2.5");
    EXPECT_EQ(Variant(DateFromParts(2026, 11, 22)).toString(), "22.11.2026");
    EXPECT_EQ(Variant(true).toDouble(), -1.0);
    EXPECT_EQ(ErrorOf([] { Variant::Null().toString(); }), 94);
    EXPECT_EQ(ErrorOf([] { Variant("1,5").toDouble(); }), 13);
    EXPECT_TRUE(Variant("True").toBoolean());
    EXPECT_FALSE(Variant("0").toBoolean());
    EXPECT_NE(Variant(int16_t{1}), Variant(int32_t{1}));  // the type is part of the value
    EXPECT_EQ(Variant(int16_t{1}).type(), Variant::Type::Integer);
}

TEST(Text, TrimsOnlyBlanks) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("\ta\t"), "\ta\t");
    EXPECT_EQ(LTrim("  x "), "x ");
    EXPECT_EQ(RTrim("  x "), "  x");
    EXPECT_EQ(Trim("    "), "");
}

TEST(Text, CaseOfLatinLetters) {
    EXPECT_EQ(UCase("Größe äöü é"), "GRÖßE ÄÖÜ É");
    EXPECT_EQ(LCase("ÄÖÜ Abc"), "äöü abc");
    EXPECT_EQ(UCase("÷"), "÷");
}

TEST(Text, InStrPositions) {
    EXPECT_EQ(InStr("abcabc", "c"), 3);
    EXPECT_EQ(InStr("abcabc", "c", 4), 6);
    EXPECT_EQ(InStr("abc", "x"), 0);
    EXPECT_EQ(InStr("abc", "", 2), 2);
    EXPECT_EQ(InStr("abc", "a", 9), 0);
    EXPECT_EQ(InStrText("Lang.short=eng", ".SHORT="), 5);
    EXPECT_EQ(ErrorOf([] { InStr("abc", "a", 0); }), 5);
}

TEST(FloatingFaults, NumberedAtTheStep) {
    const std::pair<int32_t, int> cases[] = {
        {ErrorOf([] { fp::Div(1.0, 0.0); }), 11},        {ErrorOf([] { fp::Div(-1.0, 0.0); }), 11},
        {ErrorOf([] { fp::Div(0.0, 0.0); }), 6},         {ErrorOf([] { fp::Mul(1e300, 1e300); }), 6},
        {ErrorOf([] { fp::Div(1e300, 1e-300); }), 6},    {ErrorOf([] { fp::Log(0.0); }), 5},
        {ErrorOf([] { fp::Log(-1.0); }), 5},             {ErrorOf([] { fp::Sqrt(-1e-300); }), 5},
        {ErrorOf([] { fp::Pow(-8.0, 1.0 / 3.0); }), 5},  {ErrorOf([] { fp::Pow(0.0, -1.0); }), 5},
        {ErrorOf([] { fp::Pow(10.0, 400.0); }), 6},      {ErrorOf([] { fp::Exp(710.0); }), 6},
    };
    for (size_t i = 0; i < std::size(cases); ++i) EXPECT_EQ(cases[i].first, cases[i].second) << "case " << i;
    EXPECT_EQ(fp::Pow(-2.0, 3.0), -8.0);
    EXPECT_EQ(fp::Div(0.0, 5.0), 0.0);
    EXPECT_EQ(fp::Sqrt(-0.0), -0.0);
    EXPECT_TRUE(std::signbit(fp::Sqrt(-0.0)));
    try {
        fp::Div(1.0, 0.0);
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.description(), "Division by zero");
    }
}

}  // namespace
