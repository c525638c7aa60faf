// Properties and object references in the late-bound layer.

#include <gtest/gtest.h>

#include "ErrorOf.h"
#include "TestEnv.h"
#include "automation/CWindSnow.h"
#include "automation/Dispatch.h"

using namespace qvrl;
using qvrl::test::ErrorOf;

namespace {

// A class shaped like the public ones: accessors that share the property's
// name, a plain field, and members that take and hand out object references.
class Probe {
public:
    void Ratio(double v) { ratio_ = v; }
    double Ratio() const { return ratio_; }
    void Code(int16_t v) { code_ = v; }
    int16_t Code() const { return code_; }
    void Label(const std::string& v) { label_ = v; }
    std::string Label() const { return label_; }

    std::shared_ptr<CWindSnow> Partner;
    double Plain = 0.0;

    void Keep(const std::shared_ptr<CWindSnow>& ws) { Partner = ws; }
    std::shared_ptr<CWindSnow> Kept() const { return Partner; }
    void Swap(std::shared_ptr<CWindSnow>& ws) { std::swap(ws, Partner); }

private:
    double ratio_ = 0.0;
    int16_t code_ = 0;
    std::string label_;
};

const dispatch::Table<Probe>& ProbeTable() {
    using dispatch::Bind;
    using dispatch::BindProperty;
    static const dispatch::Table<Probe> table({
        BindProperty("Ratio", &Probe::Ratio, &Probe::Ratio, "a ratio"),
        BindProperty("Code", &Probe::Code, &Probe::Code, "a 16-bit code"),
        BindProperty("Label", &Probe::Label, &Probe::Label, "a text"),
        BindProperty("Partner", &Probe::Partner, "an object reference"),
        BindProperty("Plain", &Probe::Plain, "a field"),
        Bind("Keep", &Probe::Keep, {"ws"}, "stores a reference"),
        Bind("Kept", &Probe::Kept, {}, "the stored reference"),
        Bind("Swap", &Probe::Swap, {"ws"}, "exchanges references"),
    });
    return table;
}

std::shared_ptr<Dispatchable> NewProbe(std::shared_ptr<Probe> p = std::make_shared<Probe>()) {
    return std::make_shared<dispatch::Object<Probe>>(std::move(p), ProbeTable(), "Probe");
}

std::shared_ptr<Dispatchable> NewWindSnow() { return CreateObjectByName("CWindSnow"); }

class DispatchProperties : public test::IsolatedTest {};

TEST_F(DispatchProperties, AccessorPairsStoreWhatIsLetWithBasicConversion) {
    auto p = NewProbe();
    struct Case {
        const char* property;
        Variant let;
        Variant get;
    };
    const Case cases[] = {
        {"Ratio", Variant("2.5"), Variant(2.5)},
        {"Ratio", Variant(int16_t{-3}), Variant(-3.0)},
        {"Ratio", Variant(true), Variant(-1.0)},
        {"ratio", Variant(), Variant(0.0)},  // Empty is 0; names are case-blind
        {"Code", Variant(2.5), Variant(int16_t{2})},  // half to even
        {"Code", Variant(3.5), Variant(int16_t{4})},
        {"Code", Variant(-32768.0), Variant(int16_t{-32768})},
        {"Label", Variant(0.1), Variant("0.1")},
        {"Plain", Variant(int32_t{7}), Variant(7.0)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.property);
        p->LetProperty(c.property, c.let);
        EXPECT_EQ(p->GetProperty(c.property), c.get);
    }
    // A property reads as a call without arguments, and takes none.
    std::vector<Variant> none, one{Variant(1.0)};
    EXPECT_EQ(p->Invoke("Ratio", none), Variant(0.0));
    EXPECT_EQ(p->Invoke("Plain", none), Variant(7.0));
    EXPECT_EQ(ErrorOf([&] { p->Invoke("Ratio", one); }), 450);
}

TEST_F(DispatchProperties, WrongValuesAreRefusedAndLeaveTheProperty) {
    auto p = NewProbe();
    p->LetProperty("Code", Variant(int16_t{5}));
    p->LetProperty("Ratio", Variant(1.5));
    struct Case {
        const char* property;
        Variant value;
        int number;
    };
    const Case cases[] = {
        {"Code", Variant(32767.5), 6},  // rounds to 32768
        {"Code", Variant("five"), 13},
        {"Ratio", Variant::Null(), 94},
        {"Ratio", Variant(std::vector<Variant>{Variant(1.0)}), 13},
        {"Ratio", Variant::Nothing(), 13},
        {"Ratio", Variant(NewProbe()), 13},
        {"NoSuch", Variant(1.0), 438},
        {"Keep", Variant::Nothing(), 438},  // a method is no property
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.property);
        EXPECT_EQ(ErrorOf([&] { p->LetProperty(c.property, c.value); }), c.number);
    }
    EXPECT_EQ(p->GetProperty("Code"), Variant(int16_t{5}));
    EXPECT_EQ(p->GetProperty("Ratio"), Variant(1.5));
    EXPECT_EQ(ErrorOf([&] { p->GetProperty("Keep"); }), 438);
    EXPECT_EQ(ErrorOf([&] { p->GetProperty("NoSuch"); }), 438);
}

TEST_F(DispatchProperties, EachPropertyIsAGetAndALetOfOneName) {
    const auto& infos = NewProbe()->Members();
    ASSERT_EQ(infos.size(), 13u);
    EXPECT_EQ(infos[0].name, "Ratio");
    EXPECT_EQ(infos[0].kind, MemberKind::PropertyGet);
    EXPECT_EQ(infos[0].result, "Double");
    EXPECT_TRUE(infos[0].params.empty());
    EXPECT_EQ(infos[1].kind, MemberKind::PropertyLet);
    ASSERT_EQ(infos[1].params.size(), 1u);
    EXPECT_EQ(infos[1].params[0].type, "Double");
    EXPECT_FALSE(infos[1].params[0].byRef);
    EXPECT_EQ(infos[1].result, "");
    EXPECT_EQ(infos[2].result, "Integer");
    EXPECT_EQ(infos[6].result, "Object");
    EXPECT_EQ(infos[7].params[0].type, "Object");
    EXPECT_EQ(infos[10].kind, MemberKind::Method);
    EXPECT_EQ(infos[12].params[0].byRef, true);
    EXPECT_STREQ(KindName(MemberKind::PropertyLet), "PropertyLet");
}

TEST_F(DispatchProperties, AMemberRegisteredTwiceIsRefused) {
    using dispatch::Bind;
    using dispatch::BindProperty;
    // Names are case-blind; a method and a property may not share one, whichever comes first.
    EXPECT_THROW(dispatch::Table<Probe>({BindProperty("Ratio", &Probe::Ratio, &Probe::Ratio, "a"),
                                         BindProperty("RATIO", &Probe::Plain, "b")}),
                 std::logic_error);
    EXPECT_THROW(dispatch::Table<Probe>({Bind("Plain", &Probe::Kept, {}, "a"), BindProperty("Plain", &Probe::Plain, "b")}),
                 std::logic_error);
    EXPECT_THROW(dispatch::Table<Probe>({BindProperty("Plain", &Probe::Plain, "b"), Bind("plain", &Probe::Kept, {}, "a")}),
                 std::logic_error);
    EXPECT_NO_THROW(
        dispatch::Table<Probe>({BindProperty("Plain", &Probe::Plain, "b"), Bind("Kept", &Probe::Kept, {}, "a")}));
}

TEST_F(DispatchProperties, ObjectValuesCompareByTheObjectTheyReach) {
    auto target = std::make_shared<Probe>();
    const Variant a(NewProbe(target));
    const Variant b(NewProbe(target));  // another wrapper of the same object
    const Variant c(NewProbe());
    EXPECT_EQ(a, b);
    EXPECT_FALSE(a == c);
    EXPECT_EQ(Variant::Nothing(), Variant::Nothing());
    EXPECT_FALSE(a == Variant::Nothing());
    EXPECT_FALSE(Variant::Nothing() == Variant());  // Nothing is not Empty
    EXPECT_EQ(Variant(std::vector<Variant>{a}), Variant(std::vector<Variant>{b}));
    EXPECT_TRUE(a.isObject());
    EXPECT_FALSE(a.isNothing());
    EXPECT_TRUE(Variant::Nothing().isNothing());
    EXPECT_STREQ(TypeName(a.type()), "Object");
    EXPECT_EQ(a.type(), Variant::Type::Object);
    EXPECT_EQ(static_cast<int>(Variant::Type::Object), static_cast<int>(Variant::Type::Array) + 1);
}

TEST_F(DispatchProperties, AnObjectIsNoNumberAndNoText) {
    for (const Variant& v : {Variant(NewProbe()), Variant::Nothing()}) {
        EXPECT_EQ(ErrorOf([&] { v.toDouble(); }), 13);
        EXPECT_EQ(ErrorOf([&] { v.toString(); }), 13);
        EXPECT_EQ(ErrorOf([&] { v.toBoolean(); }), 13);
        EXPECT_EQ(ErrorOf([&] { CInt(v); }), 13);
        EXPECT_EQ(ErrorOf([&] { Format(v, "0.00"); }), 13);
        EXPECT_FALSE(v.isNumeric());
        EXPECT_FALSE(IsNumeric(v));
    }
}

TEST_F(DispatchProperties, ReferencesTravelThroughArgumentsAndResults) {
    auto p = NewProbe();
    const Variant ws(NewWindSnow());
    std::vector<Variant> args{ws};
    p->Invoke("Keep", args);
    std::vector<Variant> none;
    const Variant kept = p->Invoke("Kept", none);
    ASSERT_TRUE(kept.isObject());
    EXPECT_NE(kept.asObject(), ws.asObject());  // a new wrapper ...
    EXPECT_EQ(kept, ws);                        // ... of the same object
    EXPECT_EQ(kept.asObject()->ClassName(), "CWindSnow");
    std::vector<Variant> bag{Variant(53), Variant(1.0), Variant(4.0), Variant(), Variant(), Variant()};
    kept.asObject()->Invoke("SnowBag_EN_1991_1_3", bag);
    EXPECT_EQ(bag[5], Variant(20.0));
    EXPECT_EQ(p->GetProperty("Partner"), ws);

    // By reference: the argument comes back holding what the object held.
    const Variant other(NewWindSnow());
    std::vector<Variant> swap{other};
    p->Invoke("Swap", swap);
    EXPECT_EQ(swap[0], ws);
    EXPECT_EQ(p->GetProperty("Partner"), other);

    p->LetProperty("Partner", Variant::Nothing());
    EXPECT_TRUE(p->GetProperty("Partner").isNothing());
    EXPECT_TRUE(p->Invoke("Kept", none).isNothing());
}

TEST_F(DispatchProperties, AReferenceOfAnotherClassIsATypeMismatch) {
    auto p = NewProbe();
    struct Case {
        const char* what;
        Variant value;
    };
    const Case cases[] = {
        {"another class", Variant(NewProbe())},
        {"a number", Variant(1.0)},
        {"Empty", Variant()},
        {"a text", Variant("CWindSnow")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(ErrorOf([&] { p->LetProperty("Partner", c.value); }), 13);
        std::vector<Variant> args{c.value};
        EXPECT_EQ(ErrorOf([&] { p->Invoke("Keep", args); }), 13);
    }
}

TEST_F(DispatchProperties, OnlyPublicClassesCanBeHandedOut) {
    // Probe is not a public class: a reference to one has no interface.
    EXPECT_EQ(ErrorOf([] { dispatch::WrapObject(std::make_shared<Probe>()); }), 430);
    EXPECT_TRUE(dispatch::WrapObject(std::shared_ptr<Probe>()).isNothing());
    auto ws = std::make_shared<CWindSnow>();
    const Variant v = dispatch::WrapObject(ws);
    EXPECT_EQ(dispatch::UnwrapObject<CWindSnow>(v), ws);
    EXPECT_EQ(dispatch::UnwrapObject<CWindSnow>(Variant::Nothing()), nullptr);
}

TEST_F(DispatchProperties, TheMunicipalityReferenceOfCWindSnow) {
    auto ws = NewWindSnow();
    // Created with the object; a host may drop it.
    const Variant ags = ws->GetProperty("AGS");
    ASSERT_TRUE(ags.isObject());
    ASSERT_FALSE(ags.isNothing());
    EXPECT_EQ(ags.asObject()->ClassName(), "CAGS");
    ws->LetProperty("ags", Variant::Nothing());
    EXPECT_TRUE(ws->GetProperty("AGS").isNothing());
    EXPECT_EQ(ErrorOf([&] { ws->LetProperty("AGS", Variant(NewWindSnow())); }), 13);
    EXPECT_EQ(ErrorOf([&] { ws->LetProperty("AGS", Variant("09162000")); }), 13);
    ASSERT_NE(ws->FindMember("AGS", MemberKind::PropertyGet), nullptr);
    ASSERT_NE(ws->FindMember("AGS", MemberKind::PropertyLet), nullptr);
    EXPECT_EQ(ws->FindMember("AGS", MemberKind::Method), nullptr);
    EXPECT_EQ(ws->FindCallable("AGS"), ws->FindMember("AGS", MemberKind::PropertyGet));

    // In the order of the interface: after the name lists, before the Eurocode members.
    const auto& m = ws->Members();
    size_t at = 0;
    while (at < m.size() && m[at].name != "AGS") ++at;
    ASSERT_LT(at + 2, m.size());
    EXPECT_EQ(m[at - 1].name, "SnowBag");
    EXPECT_EQ(m[at + 1].name, "AGS");
    EXPECT_EQ(m[at + 2].name, "WindPressure_EN_1991_1_4");
}

TEST_F(DispatchProperties, TheRegistryOfPublicClasses) {
    EXPECT_EQ(PublicClassNames(), (std::vector<std::string>{"CRoofLoad", "CWindSnow", "CWindCpTable", "CAGS"}));
    const dispatch::PublicClass* cp = dispatch::FindPublicClass("CWindCpTable");
    ASSERT_NE(cp, nullptr);
    EXPECT_EQ(cp->classId, "{8748BC71-8069-4819-A25C-90531183005D}");
    EXPECT_EQ(cp->interfaceId, "{01217559-0D9D-4D43-BA55-7F8D60222C3D}");
    // 71 properties, each a get and a let, then Copy and Clone
    EXPECT_EQ(cp->members().size(), 71u * 2 + 2);
    const dispatch::PublicClass* c = dispatch::FindPublicClass("cwindsnow");
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->classId, "{1AA2E2A7-689E-49A2-9E6F-FC98CFFE3FEA}");
    EXPECT_EQ(c->interfaceId, "{86FE08A8-9A35-496C-B21B-5F6D95029675}");
    EXPECT_EQ(c->interfaceName, "_CWindSnow");
    EXPECT_EQ(&c->members(), &NewWindSnow()->Members());
    EXPECT_EQ(dispatch::FindPublicClass("CNothing"), nullptr);
    EXPECT_STREQ(typelib::Id, "{7E752417-1663-4EDF-8CEB-89BAE2967475}");
}

}  // namespace
