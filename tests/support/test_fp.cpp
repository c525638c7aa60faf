// The checked operations at the edges of their faults: each is the plain
// IEEE operation, bit for bit, until its result would be infinite or not a
// number, and then the numbered error of that operation. The inputs come
// from tables at run time, so no check is settled while compiling.

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>

#include "ErrorOf.h"
#include "rules/modSnow.h"
#include "rules/modWind.h"
#include "support/errors.h"

namespace qvrl {
namespace {

using test::ErrorOf;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

struct Binary {
    double a, b;
    int32_t error;  // 0: the result is the plain operation's
};


template <size_t N>
void Expect(const char* name, double (*checked)(double, double), const std::function<double(double, double)>& plain,
            const Binary (&cases)[N]) {
    for (const Binary& c : cases) {
        SCOPED_TRACE(::testing::Message() << name << "(" << c.a << ", " << c.b << ")");
        EXPECT_EQ(ErrorOf([&] { checked(c.a, c.b); }), c.error);
        if (c.error == 0) {
            EXPECT_EQ(std::bit_cast<uint64_t>(checked(c.a, c.b)), std::bit_cast<uint64_t>(plain(c.a, c.b)));
        }
    }
}

TEST(CheckedArithmetic, DivisionAtItsFaults) {
    const Binary cases[] = {
        {1.0, 0.0, 11},   {-1.0, -0.0, 11}, {kInf, 0.0, 11},  {kTiny, 0.0, 11},   {0.0, 0.0, 6},
        {-0.0, -0.0, 6},  {kNaN, 0.0, 6},   {0.0, kNaN, 6},   {kNaN, 1.0, 6},     {kInf, 2.0, 6},
        {kInf, kInf, 6},  {DBL_MAX, 0.5, 6}, {1.0, kTiny, 6}, {DBL_MAX, 1.0, 0},  {1.0, kInf, 0},
        {-0.0, 5.0, 0},   {kTiny, 2.0, 0},  {1.0, 3.0, 0},    {-DBL_MAX, 2.0, 0},
    };
    Expect("Div", fp::Div, [](double a, double b) { return a / b; }, cases);
}

TEST(CheckedArithmetic, SumsDifferencesProductsOverflow) {
    const Binary sums[] = {{DBL_MAX, DBL_MAX, 6}, {-DBL_MAX, -DBL_MAX, 6}, {kInf, -kInf, 6}, {kNaN, 0.0, 6},
                           {DBL_MAX, -DBL_MAX, 0}, {-0.0, -0.0, 0},         {0.1, 0.2, 0}};
    Expect("Add", fp::Add, [](double a, double b) { return a + b; }, sums);
    const Binary differences[] = {{-DBL_MAX, DBL_MAX, 6}, {kInf, kInf, 6}, {DBL_MAX, DBL_MAX, 0}, {0.3, 0.1, 0}};
    Expect("Sub", fp::Sub, [](double a, double b) { return a - b; }, differences);
    const Binary products[] = {{1e200, 1e200, 6}, {kInf, 0.0, 6}, {-1e200, 1e200, 6}, {kNaN, 1.0, 6},
                               {DBL_MAX, 1.0, 0}, {kTiny, 0.5, 0}, {-0.0, 3.0, 0},   {1.1, 1.1, 0}};
    Expect("Mul", fp::Mul, [](double a, double b) { return a * b; }, products);
}

TEST(CheckedArithmetic, PowersAtTheirFaults) {
    const Binary cases[] = {
        // no real value
        {-8.0, 1.0 / 3.0, 5}, {-kTiny, 0.5, 5}, {0.0, -1.0, 5}, {-0.0, -1.0, 5}, {0.0, -kInf, 5}, {0.0, -kTiny, 5},
        // overflow, and undefined inputs even where pow gives 1
        {10.0, 309.0, 6}, {-2.0, 1025.0, 6}, {-2.0, kInf, 6}, {kNaN, 0.0, 6}, {1.0, kNaN, 6}, {kInf, 1.0, 6},
        // values
        {10.0, 308.0, 0}, {-2.0, 1023.0, 0}, {-0.5, kInf, 0}, {0.0, 0.0, 0}, {-2.0, 3.0, 0}, {0.8, 0.24, 0},
        {1.0, kInf, 0},
    };
    Expect("Pow", fp::Pow, [](double a, double b) { return std::pow(a, b); }, cases);
}

struct Unary {
    double x;
    int32_t error;
};

template <size_t N>
void Expect(const char* name, double (*checked)(double), double (*plain)(double), const Unary (&cases)[N]) {
    for (const Unary& c : cases) {
        SCOPED_TRACE(::testing::Message() << name << "(" << c.x << ")");
        EXPECT_EQ(ErrorOf([&] { checked(c.x); }), c.error);
        if (c.error == 0) {
            EXPECT_EQ(std::bit_cast<uint64_t>(checked(c.x)), std::bit_cast<uint64_t>(plain(c.x)));
        }
    }
}

TEST(CheckedArithmetic, RootsLogarithmsExponentialsAtTheirFaults) {
    const Unary roots[] = {{-kTiny, 5}, {-1.0, 5}, {-kInf, 5}, {kInf, 6}, {kNaN, 6},
                           {-0.0, 0},   {0.0, 0},  {kTiny, 0}, {DBL_MAX, 0}, {2.0, 0}};
    Expect("Sqrt", fp::Sqrt, [](double x) { return std::sqrt(x); }, roots);
    // Not a number is no positive argument: 5, as a Basic run-time has it.
    const Unary logs[] = {{0.0, 5}, {-0.0, 5}, {-kTiny, 5}, {-kInf, 5}, {kNaN, 5},
                          {kInf, 6}, {kTiny, 0}, {1.0, 0},   {DBL_MAX, 0}, {10.0, 0}};
    Expect("Log", fp::Log, [](double x) { return std::log(x); }, logs);
    const Unary exps[] = {{709.79, 6}, {kInf, 6}, {kNaN, 6}, {709.78, 0}, {-kInf, 0}, {-750.0, 0}, {1.0, 0}};
    Expect("Exp", fp::Exp, [](double x) { return std::exp(x); }, exps);
    const Unary checks[] = {{kInf, 6}, {-kInf, 6}, {kNaN, 6}, {-kNaN, 6}, {DBL_MAX, 0}, {-0.0, 0}, {kTiny, 0}};
    Expect("Check", fp::Check, [](double x) { return x; }, checks);
}

// The checks inlined into the rules still fire there.
TEST(CheckedArithmetic, RulesKeepTheirChecks) {
    struct Case {
        std::function<double()> rule;
        int32_t error;
    };
    const Case cases[] = {
        {[] { return WindVelocityToPressure(1e160); }, 6},
        {[] { return WindVelocityToPressure(1e150); }, 0},
        {[] { return WindProfilePressure(1e300, 25.0, 2, 1e300); }, 6},
        {[] { return WindProfilePressure(0.39, 25.0, 2, -10.0); }, 0},
        {[] { return StandardSnowLoad_EDIN1055_5_2004(2, DBL_MAX); }, 6},
        {[] { return StandardSnowLoad_EDIN1055_5_2004(2, -DBL_MAX); }, 6},
    };
    for (size_t i = 0; i < std::size(cases); ++i) EXPECT_EQ(ErrorOf(cases[i].rule), cases[i].error) << "case " << i;
}

}  // namespace
}  // namespace qvrl
