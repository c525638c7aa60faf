#include "automation/Dispatch.h"

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
