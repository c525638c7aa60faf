#include "automation/Dispatch.h"

namespace qvrl {

const char* KindName(MemberKind kind) {
    switch (kind) {
    case MemberKind::Method: return "Method";
    case MemberKind::PropertyGet: return "PropertyGet";
    case MemberKind::PropertyLet: return "PropertyLet";
    }
    return "?";
}

const MemberInfo* Dispatchable::FindCallable(const std::string& name) const {
    if (const MemberInfo* m = FindMember(name, MemberKind::Method)) return m;
    return FindMember(name, MemberKind::PropertyGet);
}

BoundMember Dispatchable::BindCallable(const std::string& name) const {
    BoundMember m = BindMember(name, MemberKind::Method);
    return m.info ? m : BindMember(name, MemberKind::PropertyGet);
}

// Declared with the tagged value; here Dispatchable is complete. Wrappers made
// at different times for one object compare equal, as Is does.
bool ObjectValue::operator==(const ObjectValue& o) const {
    if (ref == o.ref) return true;
    if (!ref || !o.ref) return false;
    return ref->Target() == o.ref->Target() && ref->TargetType() == o.ref->TargetType();
}

}  // namespace qvrl

namespace qvrl::dispatch {

std::vector<std::string> StringsFrom(const Variant& v) {
    if (v.isEmpty()) return {};
    if (v.type() != Variant::Type::Array) Raise(err::TypeMismatch);
    std::vector<std::string> r;
    for (const Variant& e : v.asArray()) r.push_back(CStr(e));
    return r;
}

std::vector<int16_t> IntegersFrom(const Variant& v) {
    if (v.isEmpty()) return {};
    if (v.type() != Variant::Type::Array) Raise(err::TypeMismatch);
    std::vector<int16_t> r;
    for (const Variant& e : v.asArray()) r.push_back(CInt(e));
    return r;
}

Variant ArrayOf(const std::vector<std::string>& items) {
    std::vector<Variant> v;
    v.reserve(items.size());
    for (const auto& s : items) v.emplace_back(s);
    return Variant(std::move(v));
}

Variant ArrayOf(const std::vector<int16_t>& items) {
    std::vector<Variant> v;
    v.reserve(items.size());
    for (int16_t s : items) v.emplace_back(s);
    return Variant(std::move(v));
}

}  // namespace qvrl::dispatch
