// The typed form of a bound member: arguments in their own C++ types, the
// same results and in/out values as the late-bound call.

#include <gtest/gtest.h>

#include <cstring>

#include "ErrorOf.h"
#include "automation/CWindSnow.h"
#include "automation/Dispatch.h"

using namespace qvrl;
using qvrl::test::ErrorOf;

namespace {

class Typed {
public:
    double Scale(int16_t n, double x) const { return n * x; }
    void Grow(double& x, std::string& label, Variant& tag) const {
        x += 1.0;
        label += "+";
        tag = Variant(int32_t{7});
    }
    bool Holds(const std::shared_ptr<CWindSnow>& ws) const { return ws != nullptr; }
    std::shared_ptr<CWindSnow> Partner;
    int16_t Code = 0;
};

const dispatch::Table<Typed>& TypedTable() {
    using dispatch::Bind;
    using dispatch::BindProperty;
    static const dispatch::Table<Typed> table({
        Bind("Scale", &Typed::Scale, {"n", "x"}, "n times x"),
        Bind("Grow", &Typed::Grow, {"x", "label", "tag"}, "in/out of three kinds"),
        Bind("Holds", &Typed::Holds, {"ws"}, "whether a reference was given"),
        BindProperty("Partner", &Typed::Partner, "an object reference"),
        BindProperty("Code", &Typed::Code, "a 16-bit field"),
    });
    return table;
}

struct Bound {
    std::shared_ptr<Dispatchable> obj;
    BoundMember member;
    const TypedCall* typed;
};

Bound BindOn(std::shared_ptr<Dispatchable> obj, const char* name, MemberKind kind = MemberKind::Method) {
    const BoundMember m = obj->BindMember(name, kind);
    const TypedCall* t = obj->TypedOf(m);
    return {std::move(obj), m, t};
}

std::shared_ptr<Dispatchable> NewTyped() {
    return std::make_shared<dispatch::Object<Typed>>(std::make_shared<Typed>(), TypedTable(), "Typed");
}

TEST(TypedCall, TypesOfParametersAndResults) {
    std::shared_ptr<Dispatchable> ws = CreateObjectByName("CWindSnow");
    using N = NativeType;
    struct Case {
        std::shared_ptr<Dispatchable> obj;
        const char* member;
        MemberKind kind;
        std::vector<N> params;
        N result;
    };
    const Case cases[] = {
        {ws, "WindPressure_EN_1991_1_4", MemberKind::Method, {N::Integer, N::Integer, N::Double, N::Double, N::Double, N::Double, N::Double}, N::Double},
        {ws, "SnowZoneNames2005", MemberKind::Method, {N::Tagged, N::Tagged}, N::None},
        {ws, "AGS", MemberKind::PropertyGet, {}, N::Tagged},
        {NewTyped(), "Grow", MemberKind::Method, {N::Double, N::String, N::Tagged}, N::None},
        {NewTyped(), "Holds", MemberKind::Method, {N::Tagged}, N::Boolean},
        {NewTyped(), "Code", MemberKind::PropertyLet, {N::Integer}, N::None},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.member);
        const Bound b = BindOn(c.obj, c.member, c.kind);
        ASSERT_NE(b.typed, nullptr);
        EXPECT_EQ(b.typed->params, c.params);
        EXPECT_EQ(b.typed->result, c.result);
    }
    // A member bound on another class has no typed form here.
    EXPECT_EQ(NewTyped()->TypedOf(ws->BindMember("SnowMue1", MemberKind::Method)), nullptr);
}

TEST(TypedCall, AnEntryMadeByHandHasNoTypedForm) {
    dispatch::Entry<Typed> byHand;
    byHand.info = {"ByHand", MemberKind::Method, {}, "Double", "made without Bind"};
    byHand.call = [](Typed&, std::vector<Variant>&) { return Variant(1.0); };
    const dispatch::Table<Typed> table({byHand});
    dispatch::Object<Typed> obj(std::make_shared<Typed>(), table, "ByHand");
    const BoundMember m = obj.BindMember("ByHand", MemberKind::Method);
    ASSERT_NE(m.info, nullptr);
    EXPECT_EQ(obj.TypedOf(m), nullptr);
}

TEST(TypedCall, RulesGiveTheLateBoundResultsBitForBit) {
    std::shared_ptr<Dispatchable> ws = CreateObjectByName("CWindSnow");
    const Bound en = BindOn(ws, "WindPressure_EN_1991_1_4");
    struct Case {
        int16_t na, cat;
        double z, qb, vb, phi, s;
    };
    const Case cases[] = {
        {54, 2, 10.0, 0.0, 25.0, 0.0, 0.0}, {54, 2, 1.5, 0.0, 25.0, 0.0, 0.0}, {50, 3, 57.3, 0.0, 22.5, 0.05, 0.3},
        {53, 1, 12.0, 0.0, 24.0, 0.0, 0.0}, {51, 4, 0.1 + 0.2, 0.5, 0.0, 0.0, 0.0},
    };
    for (Case c : cases) {
        SCOPED_TRACE(c.z);
        void* args[] = {&c.na, &c.cat, &c.z, &c.qb, &c.vb, &c.phi, &c.s};
        double typed = -1.0;
        const int32_t typedError = ErrorOf([&] { en.typed->call(ws->Target().get(), args, &typed); });
        std::vector<Variant> values{Variant(c.na), Variant(c.cat), Variant(c.z), Variant(c.qb), Variant(c.vb),
                                    Variant(c.phi), Variant(c.s)};
        Variant late;
        const int32_t lateError = ErrorOf([&] { late = ws->CallBound(en.member, values); });
        EXPECT_EQ(typedError, lateError);
        const double lateValue = typedError == 0 ? late.asDouble() : 0.0;
        if (typedError == 0) {
            EXPECT_EQ(std::memcmp(&typed, &lateValue, sizeof typed), 0);
        }
    }
    // A fault is the same numbered error.
    const Bound mue2 = BindOn(ws, "SnowBagMue2");
    double h = 100.0, sk = 0.0, out = 0.0;
    void* args[] = {&h, &sk};
    EXPECT_EQ(ErrorOf([&] { mue2.typed->call(ws->Target().get(), args, &out); }), err::DivisionByZero);
}

TEST(TypedCall, InOutArgumentsAreUpdatedInPlace) {
    auto obj = NewTyped();
    const Bound grow = BindOn(obj, "Grow");
    double x = 1.5;
    std::string label = "a";
    Variant tag("old");
    void* args[] = {&x, &label, &tag};
    grow.typed->call(obj->Target().get(), args, nullptr);
    EXPECT_EQ(x, 2.5);
    EXPECT_EQ(label, "a+");
    EXPECT_EQ(tag, Variant(int32_t{7}));
}

TEST(TypedCall, TaggedArgumentsConvertAsLateBoundOnes) {
    auto obj = NewTyped();
    std::shared_ptr<Dispatchable> ws = CreateObjectByName("CWindSnow");
    const Bound holds = BindOn(obj, "Holds");
    struct Case {
        Variant arg;
        int32_t error;
        bool result;
    };
    const Case cases[] = {
        {Variant(ws), 0, true},
        {Variant::Nothing(), 0, false},
        {Variant(1.0), err::TypeMismatch, false},
        {Variant(std::shared_ptr<Dispatchable>(NewTyped())), err::TypeMismatch, false},
    };
    for (const Case& c : cases) {
        Variant arg = c.arg;
        void* args[] = {&arg};
        bool result = false;
        EXPECT_EQ(ErrorOf([&] { holds.typed->call(obj->Target().get(), args, &result); }), c.error);
        EXPECT_EQ(result, c.result);
    }
}

TEST(TypedCall, FieldsReadAndWriteThroughTheTypedForm) {
    auto obj = NewTyped();
    std::shared_ptr<Dispatchable> ws = CreateObjectByName("CWindSnow");
    const Bound let = BindOn(obj, "Code", MemberKind::PropertyLet);
    const Bound get = BindOn(obj, "Code", MemberKind::PropertyGet);
    int16_t code = -32768;
    void* args[] = {&code};
    let.typed->call(obj->Target().get(), args, nullptr);
    int16_t back = 0;
    get.typed->call(obj->Target().get(), nullptr, &back);
    EXPECT_EQ(back, -32768);
    EXPECT_EQ(obj->GetProperty("Code"), Variant(int16_t{-32768}));

    const Bound partner = BindOn(obj, "Partner", MemberKind::PropertyLet);
    Variant ref{ws};
    void* refArgs[] = {&ref};
    partner.typed->call(obj->Target().get(), refArgs, nullptr);
    Variant got;
    BindOn(obj, "Partner", MemberKind::PropertyGet).typed->call(obj->Target().get(), nullptr, &got);
    EXPECT_EQ(got, ref);  // Is: the same object
}

}  // namespace
