#pragma once
// Late-bound calls: a member named by text, its arguments as tagged values,
// converted with Basic's rules, and its in/out arguments written back. The
// command-line tool, the C API and the Python module all call through here,
// so a new member or a new class needs only its registration in
// PublicObjects.cpp.

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

// The type library the public classes belong to.
namespace typelib {
inline constexpr const char* Name = "QVRoofLoad";
inline constexpr const char* Id = "{7E752417-1663-4EDF-8CEB-89BAE2967475}";
inline constexpr int VersionMajor = 1;
inline constexpr int VersionMinor = 10;
inline constexpr const char* Documentation = "Q+V Dach- und Verkehrslasten";
}  // namespace typelib

enum class MemberKind { Method, PropertyGet, PropertyLet };
const char* KindName(MemberKind kind);  // "Method", "PropertyGet", "PropertyLet"

// How an argument crosses the interface.
struct ParamInfo {
    std::string name;
    // "Integer", "Long", "Double", "String", "Boolean", "Variant", "Object",
    // "String()", "Integer()"
    std::string type;
    bool byRef = false;
};

// One member of an interface. A property is two members of one name: its
// PropertyGet (no parameters, the value as result) and its PropertyLet (one
// parameter, the new value, no result).
struct MemberInfo {
    std::string name;
    MemberKind kind = MemberKind::Method;
    std::vector<ParamInfo> params;
    std::string result;  // "" for none
    std::string doc;     // one line, with units
};

// A member found once by name, to be called again without the look-up. It
// serves every object of the class it was found on.
struct BoundMember {
    const MemberInfo* info = nullptr;  // null: there is no such member
    const void* entry = nullptr;
    const void* type = nullptr;  // the class it was found on
};

// How a typed call takes one argument or gives its result: numbers, truth
// values and texts in their own C++ type, everything else as a tagged value.
enum class NativeType : uint8_t { Integer, Long, Double, Boolean, String, Tagged, None };

// A member called with its arguments in their C++ types, for hosts that
// convert their own values: no tagged values for the scalar types and no
// look-up by name. args[i] points to an int16_t, int32_t, double, bool,
// std::string or Variant as params[i] says; in/out arguments are updated in
// place. result points to the type of `result` (nothing for None).
struct TypedCall {
    std::vector<NativeType> params;
    NativeType result = NativeType::None;
    std::function<void(void* target, void* const* args, void* result)> call;
};

// An object that can be called by member name. Objects are used from one
// thread at a time.
class Dispatchable {
public:
    virtual ~Dispatchable() = default;
    virtual std::string ClassName() const = 0;
    virtual const std::vector<MemberInfo>& Members() const = 0;
    // The member of that name (case-blind) and kind; null when there is none.
    virtual const MemberInfo* FindMember(const std::string& name, MemberKind kind) const = 0;
    // Calls a method, or reads a property as a call without arguments would.
    // By-reference arguments are replaced by their new values, only when the
    // call succeeds. Unknown member: error 438; wrong count: 450; an
    // unconvertible argument: 13.
    virtual Variant Invoke(const std::string& member, std::vector<Variant>& args) = 0;
    // Unknown (or write-only) property: error 438.
    virtual Variant GetProperty(const std::string& name) = 0;
    // Unknown (or read-only) property: error 438; a value of the wrong type: 13.
    virtual void LetProperty(const std::string& name, const Variant& value) = 0;
    // The object behind this interface and the key of its C++ type. Two
    // wrappers of one object agree here; that is what Is compares.
    virtual std::shared_ptr<void> Target() const = 0;
    virtual const void* TargetType() const = 0;

    // The member of that name (case-blind) and kind, for CallBound.
    virtual BoundMember BindMember(const std::string& name, MemberKind kind) const = 0;
    // Calls a bound member as Invoke, GetProperty or LetProperty (its one
    // argument the value) would. Not found: error 438; found on another
    // class: error 430.
    virtual Variant CallBound(const BoundMember& member, std::vector<Variant>& args) = 0;
    // The typed form of a bound member of this class; null when it has none.
    virtual const TypedCall* TypedOf(const BoundMember& member) const {
        (void)member;
        return nullptr;
    }

    // The member Invoke would call: a method, else a property get.
    const MemberInfo* FindCallable(const std::string& name) const;
    BoundMember BindCallable(const std::string& name) const;
};

// Creates a public object by class name ("CWindSnow", case-blind); empty for
// an unknown class.
std::unique_ptr<Dispatchable> CreateObjectByName(const std::string& className);
std::vector<std::string> PublicClassNames();

namespace dispatch {

// A key per C++ type, usable while the type is still incomplete. Visible from
// every shared object, so that each type has one key in the process.
template <class T>
[[gnu::visibility("default")]] inline constexpr char kTypeKey = 0;
template <class T>
constexpr const void* TypeKey() {
    return &kTypeKey<T>;
}

// A class a host can create and call, with its automation identity.
struct PublicClass {
    std::string name;           // "CWindSnow"
    std::string interfaceName;  // "_CWindSnow"
    std::string classId;        // "{...}"
    std::string interfaceId;
    const void* type = nullptr;  // TypeKey of the C++ class
    // The members, known without making an object.
    std::function<const std::vector<MemberInfo>&()> members;
    std::function<std::unique_ptr<Dispatchable>()> create;
    std::function<std::unique_ptr<Dispatchable>(std::shared_ptr<void>)> wrap;
};

// All public classes, in registration order (PublicObjects.cpp).
const std::vector<PublicClass>& PublicClasses();
const PublicClass* FindPublicClass(const std::string& name);
// The interface for an object of the C++ type with that key; error 430 when
// the type is not a public class.
std::shared_ptr<Dispatchable> WrapTarget(const void* type, std::shared_ptr<void> target);

// An object reference as a tagged value: Nothing when empty.
template <class T>
Variant WrapObject(const std::shared_ptr<T>& p) {
    if (!p) return Variant::Nothing();
    return Variant(WrapTarget(TypeKey<T>(), std::static_pointer_cast<void>(p)));
}

// The object behind a tagged value: null for Nothing; anything that is not a
// reference to a T is error 13.
template <class T>
std::shared_ptr<T> UnwrapObject(const Variant& v) {
    if (!v.isObject()) Raise(err::TypeMismatch, {}, "an object is required, not a value of type " + std::string(TypeName(v.type())));
    const auto& d = v.asObject();
    if (!d) return nullptr;
    if (d->TargetType() != TypeKey<T>()) Raise(err::TypeMismatch, {}, "an object of another class: " + d->ClassName());
    return std::static_pointer_cast<T>(d->Target());
}

// Conversion of one C++ parameter type from and back to a tagged value.
template <class T>
struct Conv;

template <>
struct Conv<int16_t> {
    using Storage = int16_t;
    static constexpr bool byRef = false;
    static const char* Type() { return "Integer"; }
    static Storage From(const Variant& v) { return CInt(v); }
};
template <>
struct Conv<int32_t> {
    using Storage = int32_t;
    static constexpr bool byRef = false;
    static const char* Type() { return "Long"; }
    static Storage From(const Variant& v) { return CLng(v); }
};
template <>
struct Conv<double> {
    using Storage = double;
    static constexpr bool byRef = false;
    static const char* Type() { return "Double"; }
    static Storage From(const Variant& v) { return CDbl(v); }
};
template <>
struct Conv<bool> {
    using Storage = bool;
    static constexpr bool byRef = false;
    static const char* Type() { return "Boolean"; }
    static Storage From(const Variant& v) { return v.toBoolean(); }
};
template <>
struct Conv<const std::string&> {
    using Storage = std::string;
    static constexpr bool byRef = false;
    static const char* Type() { return "String"; }
    static Storage From(const Variant& v) { return CStr(v); }
};
template <>
struct Conv<std::string> : Conv<const std::string&> {};
template <>
struct Conv<const Variant&> {
    using Storage = Variant;
    static constexpr bool byRef = false;
    static const char* Type() { return "Variant"; }
    static Storage From(const Variant& v) { return v; }
};
template <>
struct Conv<Variant> : Conv<const Variant&> {};
template <class T>
struct Conv<const std::shared_ptr<T>&> {
    using Storage = std::shared_ptr<T>;
    static constexpr bool byRef = false;
    static const char* Type() { return "Object"; }
    static Storage From(const Variant& v) { return UnwrapObject<T>(v); }
};
template <class T>
struct Conv<std::shared_ptr<T>> : Conv<const std::shared_ptr<T>&> {};

template <>
struct Conv<double&> {
    using Storage = double;
    static constexpr bool byRef = true;
    static const char* Type() { return "Double"; }
    static Storage From(const Variant& v) { return CDbl(v); }
    static Variant Back(const Storage& s) { return Variant(s); }
};
template <>
struct Conv<int16_t&> {
    using Storage = int16_t;
    static constexpr bool byRef = true;
    static const char* Type() { return "Integer"; }
    static Storage From(const Variant& v) { return CInt(v); }
    static Variant Back(const Storage& s) { return Variant(s); }
};
template <>
struct Conv<int32_t&> {
    using Storage = int32_t;
    static constexpr bool byRef = true;
    static const char* Type() { return "Long"; }
    static Storage From(const Variant& v) { return CLng(v); }
    static Variant Back(const Storage& s) { return Variant(s); }
};
template <>
struct Conv<std::string&> {
    using Storage = std::string;
    static constexpr bool byRef = true;
    static const char* Type() { return "String"; }
    static Storage From(const Variant& v) { return CStr(v); }
    static Variant Back(const Storage& s) { return Variant(s); }
};
template <>
struct Conv<Variant&> {
    using Storage = Variant;
    static constexpr bool byRef = true;
    static const char* Type() { return "Variant"; }
    static Storage From(const Variant& v) { return v; }
    static Variant Back(const Storage& s) { return s; }
};
template <class T>
struct Conv<std::shared_ptr<T>&> {
    using Storage = std::shared_ptr<T>;
    static constexpr bool byRef = true;
    static const char* Type() { return "Object"; }
    static Storage From(const Variant& v) { return UnwrapObject<T>(v); }
    static Variant Back(const Storage& s) { return WrapObject(s); }
};

// Arrays: an empty value is an empty array; element 0 is part of the array.
std::vector<std::string> StringsFrom(const Variant& v);
std::vector<int16_t> IntegersFrom(const Variant& v);
Variant ArrayOf(const std::vector<std::string>& items);
Variant ArrayOf(const std::vector<int16_t>& items);

template <>
struct Conv<std::vector<std::string>&> {
    using Storage = std::vector<std::string>;
    static constexpr bool byRef = true;
    static const char* Type() { return "String()"; }
    static Storage From(const Variant& v) { return StringsFrom(v); }
    static Variant Back(const Storage& s) { return ArrayOf(s); }
};
template <>
struct Conv<std::vector<int16_t>&> {
    using Storage = std::vector<int16_t>;
    static constexpr bool byRef = true;
    static const char* Type() { return "Integer()"; }
    static Storage From(const Variant& v) { return IntegersFrom(v); }
    static Variant Back(const Storage& s) { return ArrayOf(s); }
};

// Results: the interface type and the tagged value of a member's return.
template <class R>
struct Result;
template <>
struct Result<void> {
    static const char* Type() { return ""; }
};
template <>
struct Result<Variant> {
    static const char* Type() { return "Variant"; }
    static Variant To(Variant v) { return v; }
};
template <>
struct Result<double> {
    static const char* Type() { return "Double"; }
    static Variant To(double v) { return Variant(v); }
};
template <>
struct Result<int16_t> {
    static const char* Type() { return "Integer"; }
    static Variant To(int16_t v) { return Variant(v); }
};
template <>
struct Result<int32_t> {
    static const char* Type() { return "Long"; }
    static Variant To(int32_t v) { return Variant(v); }
};
template <>
struct Result<bool> {
    static const char* Type() { return "Boolean"; }
    static Variant To(bool v) { return Variant(v); }
};
template <>
struct Result<std::string> {
    static const char* Type() { return "String"; }
    static Variant To(std::string v) { return Variant(std::move(v)); }
};
template <class T>
struct Result<std::shared_ptr<T>> {
    static const char* Type() { return "Object"; }
    static Variant To(const std::shared_ptr<T>& p) { return WrapObject(p); }
};

template <class C>
struct Entry {
    MemberInfo info;
    std::function<Variant(C&, std::vector<Variant>&)> call;
    TypedCall typed;
};

template <class S>
constexpr NativeType NativeTypeOf() {
    if constexpr (std::is_same_v<S, int16_t>) return NativeType::Integer;
    else if constexpr (std::is_same_v<S, int32_t>) return NativeType::Long;
    else if constexpr (std::is_same_v<S, double>) return NativeType::Double;
    else if constexpr (std::is_same_v<S, bool>) return NativeType::Boolean;
    else if constexpr (std::is_same_v<S, std::string>) return NativeType::String;
    else return NativeType::Tagged;
}

template <class R>
constexpr NativeType ResultNativeType() {
    if constexpr (std::is_void_v<R>) return NativeType::None;
    else return NativeTypeOf<std::decay_t<R>>();
}

// One argument of a typed call: the caller's own value for the scalar types,
// a converted copy of the tagged value otherwise.
template <class A>
struct TypedSlot {
    using S = typename Conv<A>::Storage;
    static constexpr bool kTagged = NativeTypeOf<S>() == NativeType::Tagged;
    std::conditional_t<kTagged, S, S*> v;
    explicit TypedSlot(void* p) : v(Init(p)) {}
    static auto Init(void* p) {
        if constexpr (kTagged) return S(Conv<A>::From(*static_cast<const Variant*>(p)));
        else return static_cast<S*>(p);
    }
    S& Get() {
        if constexpr (kTagged) return v;
        else return *v;
    }
    void Back(void* p) {
        if constexpr (kTagged && Conv<A>::byRef) *static_cast<Variant*>(p) = Conv<A>::Back(v);
    }
};

template <class R, class V>
void StoreTypedResult(void* result, V&& value) {
    using D = std::decay_t<R>;
    if constexpr (NativeTypeOf<D>() == NativeType::Tagged) *static_cast<Variant*>(result) = Result<D>::To(std::forward<V>(value));
    else *static_cast<D*>(result) = std::forward<V>(value);
}

template <class C, class R, class... A, class F, size_t... I>
void TypedCallWith(C& obj, F fn, void* const* args, void* result, std::index_sequence<I...>) {
    (void)args;
    (void)result;
    // Braced initialisation converts the tagged arguments from left to right.
    std::tuple<TypedSlot<A>...> st{TypedSlot<A>(args[I])...};
    if constexpr (std::is_void_v<R>) {
        (obj.*fn)(std::get<I>(st).Get()...);
    } else {
        StoreTypedResult<R>(result, (obj.*fn)(std::get<I>(st).Get()...));
    }
    (std::get<I>(st).Back(args[I]), ...);
}

// One or more entries of a table: a method, or the two halves of a property.
template <class C>
struct Group {
    // Implicit, so that a table lists methods and properties side by side.
    Group(Entry<C> e) { entries.push_back(std::move(e)); }
    explicit Group(std::vector<Entry<C>> es) : entries(std::move(es)) {}
    std::vector<Entry<C>> entries;
};

template <class C, class R, class... A, class F, size_t... I>
Variant CallWith(C& obj, F fn, std::vector<Variant>& args, std::index_sequence<I...>) {
    // Braced initialisation converts the arguments from left to right.
    std::tuple<typename Conv<A>::Storage...> st{Conv<A>::From(args[I])...};
    Variant result;
    if constexpr (std::is_void_v<R>) {
        (obj.*fn)(std::get<I>(st)...);
    } else {
        result = Result<std::decay_t<R>>::To((obj.*fn)(std::get<I>(st)...));
    }
    (
        [&] {
            if constexpr (Conv<A>::byRef) args[I] = Conv<A>::Back(std::get<I>(st));
        }(),
        ...);
    return result;
}

template <class C, class R, class... A, class F>
Entry<C> MakeEntry(std::string name, MemberKind kind, F fn, std::vector<std::string> paramNames, std::string doc) {
    if (paramNames.size() != sizeof...(A)) throw std::logic_error("parameter names of " + name);
    Entry<C> e;
    e.info.name = std::move(name);
    e.info.kind = kind;
    e.info.result = Result<std::decay_t<R>>::Type();
    e.info.doc = std::move(doc);
    size_t i = 0;
    ((e.info.params.push_back({paramNames[i], Conv<A>::Type(), Conv<A>::byRef}), ++i), ...);
    e.call = [fn](C& obj, std::vector<Variant>& args) -> Variant {
        if (args.size() != sizeof...(A)) Raise(err::WrongArgumentCount);
        return CallWith<C, R, A...>(obj, fn, args, std::index_sequence_for<A...>{});
    };
    e.typed.params = {NativeTypeOf<typename Conv<A>::Storage>()...};
    e.typed.result = ResultNativeType<R>();
    e.typed.call = [fn](void* target, void* const* args, void* result) {
        TypedCallWith<C, R, A...>(*static_cast<C*>(target), fn, args, result, std::index_sequence_for<A...>{});
    };
    return e;
}

// Registers a member function under its interface name.
template <class C, class R, class... A>
Entry<C> Bind(std::string name, R (C::*fn)(A...) const, std::vector<std::string> paramNames, std::string doc) {
    return MakeEntry<C, R, A...>(std::move(name), MemberKind::Method, fn, std::move(paramNames), std::move(doc));
}
template <class C, class R, class... A>
Entry<C> Bind(std::string name, R (C::*fn)(A...), std::vector<std::string> paramNames, std::string doc) {
    return MakeEntry<C, R, A...>(std::move(name), MemberKind::Method, fn, std::move(paramNames), std::move(doc));
}

// Registers a property from its read and write accessors, which may share
// the property's name as overloads.
template <class C, class R, class A>
Group<C> BindProperty(std::string name, R (C::*get)() const, void (C::*let)(A), const std::string& doc) {
    std::vector<Entry<C>> es;
    es.push_back(MakeEntry<C, R>(name, MemberKind::PropertyGet, get, {}, doc));
    es.push_back(MakeEntry<C, void, A>(name, MemberKind::PropertyLet, let, {"value"}, doc));
    return Group<C>(std::move(es));
}

// Registers a property the host may only read.
template <class C, class R>
Group<C> BindGet(std::string name, R (C::*get)() const, const std::string& doc) {
    std::vector<Entry<C>> es;
    es.push_back(MakeEntry<C, R>(std::move(name), MemberKind::PropertyGet, get, {}, doc));
    return Group<C>(std::move(es));
}

// Registers a data member as a property: the get returns it, the let stores
// the value converted to its type. A reference member reads as Nothing while
// it is empty.
template <class C, class V>
    requires(!std::is_function_v<V>)
Group<C> BindProperty(std::string name, V C::*member, const std::string& doc) {
    std::vector<Entry<C>> es;
    Entry<C> get;
    get.info = {name, MemberKind::PropertyGet, {}, Result<V>::Type(), doc};
    get.call = [member](C& obj, std::vector<Variant>& args) -> Variant {
        if (!args.empty()) Raise(err::WrongArgumentCount);
        return Result<V>::To(obj.*member);
    };
    get.typed.result = ResultNativeType<V>();
    get.typed.call = [member](void* target, void* const*, void* result) {
        StoreTypedResult<V>(result, static_cast<C*>(target)->*member);
    };
    Entry<C> let;
    let.info = {name, MemberKind::PropertyLet, {{"value", Conv<V>::Type(), false}}, "", doc};
    let.call = [member](C& obj, std::vector<Variant>& args) -> Variant {
        if (args.size() != 1) Raise(err::WrongArgumentCount);
        obj.*member = Conv<V>::From(args[0]);
        return Variant();
    };
    let.typed.params = {NativeTypeOf<typename Conv<V>::Storage>()};
    let.typed.call = [member](void* target, void* const* args, void*) {
        static_cast<C*>(target)->*member = TypedSlot<V>(args[0]).Get();
    };
    es.push_back(std::move(get));
    es.push_back(std::move(let));
    return Group<C>(std::move(es));
}

// A table of members for one class, looked up case-blind as automation does.
template <class C>
class Table {
public:
    Table(std::initializer_list<Group<C>> groups) {
        for (const auto& g : groups)
            for (const auto& e : g.entries) {
                auto& slot = index_.try_emplace(UCase(e.info.name), Slots{-1, -1, -1}).first->second;
                int& at = slot[static_cast<size_t>(e.info.kind)];
                // One name is one member: a method, or a property's get and let.
                const bool method = e.info.kind == MemberKind::Method;
                const bool taken = at >= 0 || (method ? slot[1] >= 0 || slot[2] >= 0 : slot[0] >= 0);
                if (taken) throw std::logic_error("member registered twice: " + e.info.name);
                at = static_cast<int>(entries_.size());
                entries_.push_back(e);
                infos_.push_back(e.info);
            }
    }
    const std::vector<MemberInfo>& Infos() const { return infos_; }

    const Entry<C>* Find(const std::string& name, MemberKind kind) const {
        const auto it = index_.find(UCase(name));
        if (it == index_.end()) return nullptr;
        const int at = it->second[static_cast<size_t>(kind)];
        return at < 0 ? nullptr : &entries_[static_cast<size_t>(at)];
    }

    Variant Invoke(C& obj, const std::string& member, std::vector<Variant>& args) const {
        const Entry<C>* e = Find(member, MemberKind::Method);
        if (!e) e = Find(member, MemberKind::PropertyGet);
        if (!e) Raise(err::NoSuchMember, member);
        return e->call(obj, args);
    }
    Variant Get(C& obj, const std::string& name) const {
        const Entry<C>* e = Find(name, MemberKind::PropertyGet);
        if (!e) Raise(err::NoSuchMember, name);
        std::vector<Variant> none;
        return e->call(obj, none);
    }
    void Let(C& obj, const std::string& name, const Variant& value) const {
        const Entry<C>* e = Find(name, MemberKind::PropertyLet);
        if (!e) Raise(err::NoSuchMember, name);
        std::vector<Variant> one{value};
        e->call(obj, one);
    }

private:
    using Slots = std::array<int, 3>;
    std::vector<Entry<C>> entries_;
    std::vector<MemberInfo> infos_;
    std::unordered_map<std::string, Slots> index_;
};

// The interface of one object of a public class: its member table over a
// shared reference to the object.
template <class C>
class Object final : public Dispatchable {
public:
    Object(std::shared_ptr<C> target, const Table<C>& table, std::string className)
        : target_(std::move(target)), table_(table), className_(std::move(className)) {}
    std::string ClassName() const override { return className_; }
    const std::vector<MemberInfo>& Members() const override { return table_.Infos(); }
    const MemberInfo* FindMember(const std::string& name, MemberKind kind) const override {
        const Entry<C>* e = table_.Find(name, kind);
        return e ? &e->info : nullptr;
    }
    Variant Invoke(const std::string& member, std::vector<Variant>& args) override {
        return table_.Invoke(*target_, member, args);
    }
    BoundMember BindMember(const std::string& name, MemberKind kind) const override {
        const Entry<C>* e = table_.Find(name, kind);
        return {e ? &e->info : nullptr, e, TypeKey<C>()};
    }
    Variant CallBound(const BoundMember& member, std::vector<Variant>& args) override {
        if (!member.entry) Raise(err::NoSuchMember, member.info ? member.info->name : std::string());
        if (member.type != TypeKey<C>()) Raise(err::NoAutomation, {}, "a member of another class");
        return static_cast<const Entry<C>*>(member.entry)->call(*target_, args);
    }
    const TypedCall* TypedOf(const BoundMember& member) const override {
        if (!member.entry || member.type != TypeKey<C>()) return nullptr;
        // An entry made by hand may have no typed form.
        const TypedCall& t = static_cast<const Entry<C>*>(member.entry)->typed;
        return t.call ? &t : nullptr;
    }
    Variant GetProperty(const std::string& name) override { return table_.Get(*target_, name); }
    void LetProperty(const std::string& name, const Variant& value) override { table_.Let(*target_, name, value); }
    std::shared_ptr<void> Target() const override { return target_; }
    const void* TargetType() const override { return TypeKey<C>(); }
    const std::shared_ptr<C>& Ref() const { return target_; }

private:
    std::shared_ptr<C> target_;
    const Table<C>& table_;
    std::string className_;
};

}  // namespace dispatch
}  // namespace qvrl
