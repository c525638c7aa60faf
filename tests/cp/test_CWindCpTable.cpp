#include "cp/CWindCpTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>

#include "cp/CpFields.h"
#include "support/errors.h"

namespace qvrl {
namespace {

using test::CpProperties;
using test::DistinctValue;

void FillDistinct(CWindCpTable& t) {
    for (size_t k = 0; k < CpProperties().size(); ++k) CpProperties()[k].let(t, DistinctValue(k));
}

void ExpectDistinct(const CWindCpTable& t) {
    for (size_t k = 0; k < CpProperties().size(); ++k)
        EXPECT_EQ(CpProperties()[k].get(t), DistinctValue(k)) << CpProperties()[k].name;
}

TEST(CWindCpTable, NewObjectReadsZeroEverywhere) {
    ASSERT_EQ(CpProperties().size(), 71u);
    CWindCpTable t;
    for (const auto& p : CpProperties()) EXPECT_EQ(p.get(t), 0.0) << p.name;
}

TEST(CWindCpTable, EachPropertyKeepsItsOwnValue) {
    // Written in both directions, so that an accessor wired to a neighbour's
    // storage shows whichever way round the two are written.
    CWindCpTable forward;
    FillDistinct(forward);
    ExpectDistinct(forward);
    CWindCpTable backward;
    for (size_t k = CpProperties().size(); k-- > 0;) CpProperties()[k].let(backward, DistinctValue(k));
    ExpectDistinct(backward);
}

TEST(CWindCpTable, NoPropertyRestrictsAnother) {
    CWindCpTable t;
    t.TrTyp(4);
    t.hpZuH(0.5);
    t.rZuH(0.2);
    t.AlphaTr(-720.0);
    t.Theta(1e300);
    EXPECT_EQ(t.TrTyp(), 4);
    t.TrTyp(std::numeric_limits<int16_t>::min());
    EXPECT_EQ(t.TrTyp(), std::numeric_limits<int16_t>::min());
    // Norm is 32 bits wide here, though the Norm of the roof load object has 16.
    for (int32_t n : {std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min(), 70000}) {
        t.Norm(n);
        EXPECT_EQ(t.Norm(), n);
    }
    EXPECT_EQ(t.AlphaTr(), -720.0);
    EXPECT_EQ(t.Theta(), 1e300);
}

TEST(CWindCpTable, CloneCarriesAllValuesAndStandsApart) {
    auto a = std::make_shared<CWindCpTable>();
    FillDistinct(*a);
    const std::shared_ptr<CWindCpTable> b = a->Clone();
    ASSERT_NE(b, a);
    ExpectDistinct(*b);
    b->Area_Ft1a(-7.0);
    a->Area_Insidea(-8.0);
    EXPECT_EQ(a->Area_Ft1a(), DistinctValue(61));
    EXPECT_EQ(b->Area_Insidea(), DistinctValue(70));
}

TEST(CWindCpTable, CopyWritesIntoTheGivenObject) {
    auto src = std::make_shared<CWindCpTable>();
    FillDistinct(*src);
    auto dst = std::make_shared<CWindCpTable>();
    const CWindCpTable* before = dst.get();
    src->Copy(dst);
    EXPECT_EQ(dst.get(), before);
    ExpectDistinct(*dst);

    src->Copy(src);  // onto itself
    ExpectDistinct(*src);
}

TEST(CWindCpTable, CopyToNothingIsError91) {
    CWindCpTable src;
    src.Alpha(3.0);
    try {
        src.Copy(nullptr);
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), err::ObjectNotSet);
    }
    EXPECT_EQ(src.Alpha(), 3.0);
}

TEST(CWindCpTable, CopyStopsAtAFailingAccessor) {
    CWindCpTable src;
    FillDistinct(src);
    test::ExpectStopsAtFailure([&](const std::shared_ptr<CWindCpTable>& dst) { src.Copy(dst); });
}

}  // namespace
}  // namespace qvrl
