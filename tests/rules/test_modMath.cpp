#include <gtest/gtest.h>

#include "rules/modMath.h"
#include "support/errors.h"

using namespace qvrl;

namespace {

struct InterpCase {
    double x0, y0, x1, y1, x, expected;
};

TEST(Interpolate, LinearWithoutClampingAndFlatOrFallingAxis) {
    const InterpCase cases[] = {
        {0, 1, 1, 1, 0.5, 1},
        {1, 2, 1, 5, 3, 2},          // x0 = x1: y0
        {2, 2, 1, 5, 1.5, 2},        // falling axis: y0
        {0, 0, 1e-8, 1, 1, 0},       // dx below 1e-7 counts as flat
        {0, 0, 10, 5, 20, 10},       // extrapolation above
        {0, 0, 10, 5, -10, -5},      // and below
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.x0 << " " << c.x1 << " " << c.x);
        EXPECT_EQ(Interpolate(c.x0, c.y0, c.x1, c.y1, c.x), c.expected);
    }
}

TEST(Interpolate, OrderOfOperationsFixesTheLastBit) {
    // ((x - x0) / dx) * (y1 - y0) + y0, exactly in this order.
    const double x0 = 0.1, y0 = 0.1, x1 = 0.2, y1 = 0.2, x = 0.9;
    const double expected = ((x - x0) / (x1 - x0)) * (y1 - y0) + y0;
    EXPECT_EQ(Interpolate(x0, y0, x1, y1, x), expected);
    // the algebraically equal form differs in the last bit for these numbers
    const double other = y0 + (x - x0) * (y1 - y0) / (x1 - x0);
    EXPECT_NE(expected, other);
}

TEST(InterpolateGuarded, ZeroMeansMissing) {
    const InterpCase cases[] = {
        {0, 0, 1, 0.5, 0.5, 0},       // signs differ, y0 is 0
        {0, -0.5, 1, 0.5, 0.5, 0.5},  // signs differ: y1 without interpolation
        {0, 0.4, 1, 0.8, 0.5, 0.6000000000000001},
        {0, 0, 1, 0, 0.5, 0},
        {0, -1, 1, -3, 0.5, -2},
        {0, 0.5, 1, 0, 0.5, 0},       // signs differ, y0 present: y1, which is 0
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.y0 << " " << c.y1);
        EXPECT_EQ(InterpolateGuarded(c.x0, c.y0, c.x1, c.y1, c.x), c.expected);
    }
    EXPECT_DOUBLE_EQ(InterpolateGuarded(0, 0.4, 1, 0.8, 0.5), 0.6);
}

TEST(InterpolateSameSign, SecondValuesBridgeASignChange) {
    // same sign: plain interpolation
    EXPECT_EQ(InterpolateSameSign(0, -1, 10, -2, 5, 0, 0, 0, 0), -1.5);
    // y0 negative, y1 positive; yb negative on the far side is used
    EXPECT_EQ(InterpolateSameSign(0, -1, 10, 1, 5, 0, 0.2, 10, -3), Interpolate(0, -1, 10, -3, 5));
    // else ya on the near side matching y1
    EXPECT_EQ(InterpolateSameSign(0, -1, 10, 1, 5, 0, 0.4, 10, 0), Interpolate(0, 0.4, 10, 1, 5));
    // neither: 0.0
    EXPECT_EQ(InterpolateSameSign(0, -1, 10, 1, 5, 0, 0, 10, 0), 0.0);
    EXPECT_EQ(InterpolateSameSign(0, -1, 10, 1, 5, 0, -0.5, 10, 0.5), 0.0);
}

TEST(AddUniqueCode, AddsOnceAndReportsThePosition) {
    std::vector<int16_t> list{0};
    int16_t count = -1;
    EXPECT_EQ(AddUniqueCode(5, list, count), 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(AddUniqueCode(5, list, count), 1);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(AddUniqueCode(7, list, count), 0);
    EXPECT_EQ(AddUniqueCode(7, list, count), 2);
    EXPECT_EQ(list, (std::vector<int16_t>{0, 5, 7}));
    std::vector<int16_t> none;
    EXPECT_EQ(AddUniqueCode(3, none, count), 0);
    EXPECT_EQ(none, (std::vector<int16_t>{0, 3}));
}

TEST(AddUniqueValue, ElementZeroFixesTheType) {
    std::vector<Variant> list{Variant()};
    int16_t count = 42;
    // a double is not of the type of an empty element 0: nothing added, count untouched
    EXPECT_EQ(AddUniqueValue(Variant(0.5), list, count), 0);
    EXPECT_EQ(count, 42);
    EXPECT_EQ(list.size(), 1u);

    std::vector<Variant> doubles{Variant(0.0)};
    EXPECT_EQ(AddUniqueValue(Variant(0.5), doubles, count), 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(AddUniqueValue(Variant(0.25), doubles, count), 0);
    EXPECT_EQ(AddUniqueValue(Variant(0.5), doubles, count), 1);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(AddUniqueValue(Variant(int16_t{1}), doubles, count), 0);
    EXPECT_EQ(doubles.size(), 3u);
}

struct TextCase {
    Variant value;
    int16_t width, decimals;
    const char* text;
    int16_t widthAfter, decimalsAfter;
};

TEST(NumberToFixedText, WidthsDecimalsAndOverruns) {
    const TextCase cases[] = {
        {1.5, 8, 2, "    1.50", 8, 2},
        {1.5, 0, 2, " 1.50", 5, 2},        // width 0 becomes 5, written back
        {123456.789, 5, 1, "123456.8", 5, 1},  // overruns a field below 7
        {1234567.5, 8, 2, " 1.23e+6", 8, 2},   // too long: exponent form, decimals of the caller kept
        {1.5, 3, 5, "1.50", 3, 2},          // decimals cut to width - 1; "0.00" overruns width 3
        {-2.0, 5, 0, "   -2", 5, 0},
        {0.0, 5, 0, "    0", 5, 0},
        {12.0, 2, 0, "12", 2, 0},
        {-0.004, 6, 2, " -0.00", 6, 2},
        {123.456, 7, 0, "    123", 7, 0},
        {Variant("2.25"), 6, 1, "   2.3", 6, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        int16_t w = c.width, d = c.decimals;
        EXPECT_EQ(NumberToFixedText(c.value, w, d), c.text);
        EXPECT_EQ(w, c.widthAfter);
        EXPECT_EQ(d, c.decimalsAfter);
    }
}

TEST(NumberToExpText, DecimalsShrinkToFitAndTheLeftEndIsCut) {
    const TextCase cases[] = {
        {1234567.5, 10, 3, "  1.235e+6", 10, 3},
        {1234567.5, 8, 3, " 1.23e+6", 8, 2},
        {-1234567.5, 8, 3, " -1.2e+6", 8, 1},
        {-1234567.5, 7, 3, "  -1e+6", 7, 0},
        {1234567.5, 9, 0, "     1e+6", 9, 0},
        {1234567.5, 3, 0, "e+6", 3, 0},  // too long: the left end is lost
        {0.000123, 9, 2, "  1.23e-4", 9, 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        int16_t w = c.width, d = c.decimals;
        EXPECT_EQ(NumberToExpText(c.value, w, d), c.text);
        EXPECT_EQ(w, c.widthAfter);
        EXPECT_EQ(d, c.decimalsAfter);
    }
}

TEST(CommaToPoint, ReplacesInPlace) {
    std::string s = "1,5;2,25";
    std::string& r = CommaToPoint(s);
    EXPECT_EQ(&r, &s);
    EXPECT_EQ(s, "1.5;2.25");
}

}  // namespace
