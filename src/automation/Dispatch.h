#pragma once
// Late-bound calls: a member named by text, its arguments as tagged values,
// converted with Basic's rules, and its in/out arguments written back. The
// command-line tool, the C API and the Python module all call through here,
// so a new member needs only its registration.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support/errors.h"
#include "support/vb.h"

namespace qvrl {

// How an argument crosses the interface.
struct ParamInfo {
    std::string name;
    std::string type;  // "Integer", "Long", "Double", "String", "Boolean", "String()", "Integer()"
    bool byRef = false;
};

struct MemberInfo {
    std::string name;
    std::vector<ParamInfo> params;
    std::string result;  // "" for none
    std::string doc;     // one line, with units
};

// An object that can be called by member name.
class Dispatchable {
public:
    virtual ~Dispatchable() = default;
    virtual std::string ClassName() const = 0;
    virtual const std::vector<MemberInfo>& Members() const = 0;
    // Calls the member; by-reference arguments are replaced by their new values.
    // Unknown member: error 438; wrong count: 450; an unconvertible argument: 13.
    virtual Variant Invoke(const std::string& member, std::vector<Variant>& args) = 0;
};

// Creates a public object by class name ("CWindSnow"); empty for an unknown class.
std::unique_ptr<Dispatchable> CreateObjectByName(const std::string& className);
std::vector<std::string> PublicClassNames();

namespace dispatch {

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
struct Conv<std::string&> {
    using Storage = std::string;
    static constexpr bool byRef = true;
    static const char* Type() { return "String"; }
    static Storage From(const Variant& v) { return CStr(v); }
    static Variant Back(const Storage& s) { return Variant(s); }
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

template <class R>
struct Result {
    static const char* Type() { return "Double"; }
};
template <>
struct Result<void> {
    static const char* Type() { return ""; }
};
template <>
struct Result<Variant> {
    static const char* Type() { return "Variant"; }
};
template <>
struct Result<int16_t> {
    static const char* Type() { return "Integer"; }
};
template <>
struct Result<std::string> {
    static const char* Type() { return "String"; }
};

template <class C>
struct Entry {
    MemberInfo info;
    std::function<Variant(C&, std::vector<Variant>&)> call;
};

template <class C, class R, class... A, size_t... I>
Variant CallWith(C& obj, R (C::*fn)(A...) const, std::vector<Variant>& args, std::index_sequence<I...>) {
    // Braced initialisation converts the arguments from left to right.
    std::tuple<typename Conv<A>::Storage...> st{Conv<A>::From(args[I])...};
    Variant result;
    if constexpr (std::is_void_v<R>) {
        (obj.*fn)(std::get<I>(st)...);
    } else {
        result = Variant((obj.*fn)(std::get<I>(st)...));
    }
    (
        [&] {
            if constexpr (Conv<A>::byRef) args[I] = Conv<A>::Back(std::get<I>(st));
        }(),
        ...);
    return result;
}

// Registers a const member function under its interface name.
template <class C, class R, class... A>
Entry<C> Bind(std::string name, R (C::*fn)(A...) const, std::vector<std::string> paramNames, std::string doc) {
    if (paramNames.size() != sizeof...(A)) throw std::logic_error("parameter names of " + name);
    Entry<C> e;
    e.info.name = std::move(name);
    e.info.result = Result<R>::Type();
    e.info.doc = std::move(doc);
    size_t i = 0;
    ((e.info.params.push_back({paramNames[i], Conv<A>::Type(), Conv<A>::byRef}), ++i), ...);
    e.call = [fn, n = sizeof...(A)](C& obj, std::vector<Variant>& args) -> Variant {
        if (args.size() != n) Raise(err::WrongArgumentCount);
        return CallWith(obj, fn, args, std::index_sequence_for<A...>{});
    };
    return e;
}

// A table of members for one class, looked up case-blind as automation does.
template <class C>
class Table {
public:
    explicit Table(std::vector<Entry<C>> entries) : entries_(std::move(entries)) {
        for (const auto& e : entries_) infos_.push_back(e.info);
    }
    const std::vector<MemberInfo>& Infos() const { return infos_; }
    Variant Invoke(C& obj, const std::string& member, std::vector<Variant>& args) const {
        const std::string want = UCase(member);
        for (const auto& e : entries_)
            if (UCase(e.info.name) == want) return e.call(obj, args);
        Raise(err::NoSuchMember, member);
    }

private:
    std::vector<Entry<C>> entries_;
    std::vector<MemberInfo> infos_;
};

}  // namespace dispatch
}  // namespace qvrl
