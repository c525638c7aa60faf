// The C API: handles over the late-bound layer, tagged values converted both
// ways, and every failure turned into a status. No exception leaves here.

#include "qvroofload.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "automation/Dispatch.h"
#include "automation/SiteReportJson.h"
#include "interchange/TextFile.h"
#include "maintenance/StoreImports.h"
#include "support/DesktopPlatform.h"
#include "support/errors.h"
#include "support/vb.h"

using qvrl::Dispatchable;
using qvrl::Raise;
using qvrl::Variant;
namespace err = qvrl::err;

static_assert(QVRL_EMPTY == static_cast<int>(Variant::Type::Empty));
static_assert(QVRL_NULL == static_cast<int>(Variant::Type::Null));
static_assert(QVRL_INT16 == static_cast<int>(Variant::Type::Integer));
static_assert(QVRL_INT32 == static_cast<int>(Variant::Type::Long));
static_assert(QVRL_DOUBLE == static_cast<int>(Variant::Type::Double));
static_assert(QVRL_BOOL == static_cast<int>(Variant::Type::Boolean));
static_assert(QVRL_STRING == static_cast<int>(Variant::Type::String));
static_assert(QVRL_DATE == static_cast<int>(Variant::Type::Date));
static_assert(QVRL_ARRAY == static_cast<int>(Variant::Type::Array));
static_assert(QVRL_OBJECT == static_cast<int>(Variant::Type::Object));
static_assert(QVRL_METHOD == static_cast<int>(qvrl::MemberKind::Method));
static_assert(QVRL_PROPERTY_GET == static_cast<int>(qvrl::MemberKind::PropertyGet));
static_assert(QVRL_PROPERTY_LET == static_cast<int>(qvrl::MemberKind::PropertyLet));

namespace {

constexpr int32_t kOutOfMemory = 7;
constexpr int32_t kInternalError = 51;
// Deeper nesting than any member uses; it stops a self-referencing array.
constexpr int kMaxDepth = 32;

// ------------------------------------------------------------ handle table

// A handle is the slot number plus one in its low half and the slot's
// generation in its high half. Releasing a slot bumps its generation, so an
// old handle to it no longer matches, whatever the slot holds next.
class Handles {
public:
    qvrl_handle Add(std::shared_ptr<Dispatchable> obj) {
        std::lock_guard<std::mutex> lock(mutex_);
        uint32_t index;
        if (!free_.empty()) {
            index = free_.back();
            free_.pop_back();
        } else {
            if (slots_.size() >= std::numeric_limits<uint32_t>::max() - 1u)
                Raise(kOutOfMemory, {}, "Out of memory: too many live objects");
            index = static_cast<uint32_t>(slots_.size());
            slots_.emplace_back();
        }
        Slot& s = slots_[index];
        s.obj = std::move(obj);
        return (static_cast<uint64_t>(s.generation) << 32) | (static_cast<uint64_t>(index) + 1u);
    }

    std::shared_ptr<Dispatchable> Get(qvrl_handle h) {
        if (h == 0) Raise(err::ObjectNotSet);
        std::lock_guard<std::mutex> lock(mutex_);
        Slot* s = Find(h);
        if (!s) Raise(err::ObjectNotSet, {}, "Object variable not set: the handle was released or never issued");
        return s->obj;
    }

    bool Release(qvrl_handle h) {
        std::shared_ptr<Dispatchable> gone;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            Slot* s = Find(h);
            if (!s) return false;
            gone = std::move(s->obj);
            s->obj.reset();
            if (++s->generation == 0) s->generation = 1;
            free_.push_back(static_cast<uint32_t>((h & 0xFFFFFFFFu) - 1u));
        }
        // The object ends outside the lock, in case its end reaches back here.
        gone.reset();
        return true;
    }

private:
    struct Slot {
        std::shared_ptr<Dispatchable> obj;
        uint32_t generation = 1;
    };
    Slot* Find(qvrl_handle h) {
        const uint64_t low = h & 0xFFFFFFFFu;
        const auto generation = static_cast<uint32_t>(h >> 32);
        if (low == 0 || low > slots_.size()) return nullptr;
        Slot& s = slots_[static_cast<size_t>(low - 1u)];
        if (!s.obj || s.generation != generation) return nullptr;
        return &s;
    }

    std::mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<uint32_t> free_;
};

Handles& Registry() {
    static Handles handles;
    return handles;
}

// ------------------------------------------------------------ errors

struct LastError {
    int32_t number = 0;
    std::string description;
    std::string source;
};
thread_local LastError tLastError;

qvrl_status Record(int32_t number, std::string description, std::string source) {
    if (description.empty()) description = qvrl::ErrorDescription(number);
    tLastError.number = number;
    tLastError.description = std::move(description);
    tLastError.source = std::move(source);
    return number == 0 ? QVRL_OK : QVRL_STATUS_OF(number);
}

template <class F>
qvrl_status Guard(F&& body) {
    try {
        body();
        return Record(0, {}, {});
    } catch (const qvrl::RuntimeError& e) {
        return Record(e.number(), e.description(), e.source());
    } catch (const std::bad_alloc&) {
        return Record(kOutOfMemory, "Out of memory", {});
    } catch (const std::exception& e) {
        return Record(kInternalError, std::string("Internal error: ") + e.what(), {});
    } catch (...) {
        return Record(kInternalError, "Internal error", {});
    }
}

// ------------------------------------------------------------ values

Variant FromC(const qvrl_value& v, int depth) {
    switch (v.type) {
    case QVRL_EMPTY: return Variant();
    case QVRL_NULL: return Variant::Null();
    case QVRL_INT16: return Variant(v.u.i16);
    case QVRL_INT32: return Variant(v.u.i32);
    case QVRL_DOUBLE:
    case QVRL_DATE: {
        const double d = v.type == QVRL_DOUBLE ? v.u.dbl : v.u.date;
        // Basic has no infinite or undefined numbers; one must not reach a rule.
        if (!std::isfinite(d)) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: a number is not finite");
        return v.type == QVRL_DOUBLE ? Variant(d) : Variant(qvrl::DateValue{d});
    }
    case QVRL_BOOL: return Variant(v.u.boolean != 0);
    case QVRL_STRING: {
        if (!v.u.str.data) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: a text without data");
        const size_t n = v.u.str.length == QVRL_NTS ? std::strlen(v.u.str.data) : v.u.str.length;
        std::string s(v.u.str.data, n);
        if (!qvrl::IsValidUtf8(s)) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: a text is not UTF-8");
        return Variant(std::move(s));
    }
    case QVRL_ARRAY: {
        if (depth >= kMaxDepth) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: arrays nested too deep");
        if (v.u.array.count > 0 && !v.u.array.items)
            Raise(err::InvalidCall, {}, "Invalid procedure call or argument: an array without items");
        std::vector<Variant> items;
        items.reserve(v.u.array.count);
        for (size_t i = 0; i < v.u.array.count; ++i) items.push_back(FromC(v.u.array.items[i], depth + 1));
        return Variant(std::move(items));
    }
    case QVRL_OBJECT:
        if (v.u.object == 0) return Variant::Nothing();
        return Variant(Registry().Get(v.u.object));
    default: Raise(err::TypeMismatch, {}, "Type mismatch: unknown value type " + std::to_string(v.type));
    }
}

qvrl_value Empty() { return qvrl_empty(); }

void Clear(qvrl_value& v) noexcept {
    if (v.owned) {
        switch (v.type) {
        case QVRL_STRING: std::free(const_cast<char*>(v.u.str.data)); break;
        case QVRL_ARRAY:
            for (size_t i = 0; i < v.u.array.count; ++i) Clear(v.u.array.items[i]);
            std::free(v.u.array.items);
            break;
        case QVRL_OBJECT: Registry().Release(v.u.object); break;
        default: break;
        }
    }
    v = Empty();
}

// Fills out with an owned copy of v; on failure out holds nothing to free.
void ToC(const Variant& v, qvrl_value& out) {
    out = Empty();
    out.owned = 1;
    switch (v.type()) {
    case Variant::Type::Empty: break;
    case Variant::Type::Null: out.type = QVRL_NULL; break;
    case Variant::Type::Integer:
        out.type = QVRL_INT16;
        out.u.i16 = v.asInteger();
        break;
    case Variant::Type::Long:
        out.type = QVRL_INT32;
        out.u.i32 = v.asLong();
        break;
    case Variant::Type::Double:
        out.type = QVRL_DOUBLE;
        out.u.dbl = v.asDouble();
        break;
    case Variant::Type::Boolean:
        out.type = QVRL_BOOL;
        out.u.boolean = static_cast<int16_t>(v.asBoolean() ? -1 : 0);
        break;
    case Variant::Type::Date:
        out.type = QVRL_DATE;
        out.u.date = v.asDate().serial;
        break;
    case Variant::Type::String: {
        const std::string& s = v.asString();
        auto* p = static_cast<char*>(std::malloc(s.size() + 1));
        if (!p) throw std::bad_alloc();
        std::memcpy(p, s.data(), s.size());
        p[s.size()] = '\0';
        out.type = QVRL_STRING;
        out.u.str.data = p;
        out.u.str.length = s.size();
        break;
    }
    case Variant::Type::Array: {
        const auto& items = v.asArray();
        qvrl_value* p = nullptr;
        if (!items.empty()) {
            p = static_cast<qvrl_value*>(std::calloc(items.size(), sizeof(qvrl_value)));
            if (!p) throw std::bad_alloc();
        }
        size_t done = 0;
        try {
            for (; done < items.size(); ++done) ToC(items[done], p[done]);
        } catch (...) {
            for (size_t i = 0; i < done; ++i) Clear(p[i]);
            std::free(p);
            throw;
        }
        out.type = QVRL_ARRAY;
        out.u.array.items = p;
        out.u.array.count = items.size();
        break;
    }
    case Variant::Type::Object:
        out.u.object = v.asObject() ? Registry().Add(v.asObject()) : 0;
        out.type = QVRL_OBJECT;
        break;
    }
}

// Owned values that are given back unless handed over to the caller.
class Outputs {
public:
    ~Outputs() {
        for (auto& v : values_) Clear(v);
    }
    qvrl_value& Next() {
        values_.push_back(Empty());
        return values_.back();
    }
    qvrl_value Take(size_t i) {
        qvrl_value v = values_[i];
        values_[i] = Empty();
        return v;
    }

private:
    std::vector<qvrl_value> values_;
};

std::string Text(const char* s, const char* what) {
    if (!s) Raise(err::InvalidCall, {}, std::string("Invalid procedure call or argument: no ") + what);
    return s;
}

// ------------------------------------------------------------ discovery

struct Catalogue {
    std::vector<qvrl_class_info> classes;
    std::vector<std::vector<qvrl_member_info>> members;
    std::vector<std::vector<std::vector<qvrl_param_info>>> params;
};

Catalogue BuildCatalogue() {
    Catalogue c;
    const auto& publicClasses = qvrl::dispatch::PublicClasses();
    c.members.resize(publicClasses.size());
    c.params.resize(publicClasses.size());
    for (size_t k = 0; k < publicClasses.size(); ++k) {
        const auto& pc = publicClasses[k];
        const auto& infos = pc.members();
        auto& params = c.params[k];
        params.resize(infos.size());
        for (size_t m = 0; m < infos.size(); ++m)
            for (const auto& p : infos[m].params)
                params[m].push_back({p.name.c_str(), p.type.c_str(), static_cast<int16_t>(p.byRef ? -1 : 0)});
        for (size_t m = 0; m < infos.size(); ++m) {
            const auto& info = infos[m];
            c.members[k].push_back({info.name.c_str(), static_cast<int32_t>(info.kind), info.result.c_str(),
                                    info.doc.c_str(), params[m].size(), params[m].empty() ? nullptr : params[m].data()});
        }
    }
    for (size_t k = 0; k < publicClasses.size(); ++k) {
        const auto& pc = publicClasses[k];
        c.classes.push_back({pc.name.c_str(), pc.interfaceName.c_str(), pc.classId.c_str(), pc.interfaceId.c_str(),
                             c.members[k].size(), c.members[k].data()});
    }
    return c;
}

}  // namespace

extern "C" {

qvrl_status qvrl_create(const char* class_name, qvrl_handle* out) {
    if (out) *out = 0;
    return Guard([&] {
        const std::string name = Text(class_name, "class name");
        if (!out) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: no place for the handle");
        // A C host's dialog members show real dialogs where there is a screen.
        qvrl::OfferDesktopPlatform();
        std::shared_ptr<Dispatchable> obj = qvrl::CreateObjectByName(name);
        if (!obj) Raise(err::CannotCreateObject, name, "Cannot create object: no class '" + name + "'");
        *out = Registry().Add(std::move(obj));
    });
}

qvrl_status qvrl_release(qvrl_handle object) {
    return Guard([&] {
        if (object == 0) return;
        if (!Registry().Release(object))
            Raise(err::ObjectNotSet, {}, "Object variable not set: the handle was released or never issued");
    });
}

qvrl_status qvrl_same_object(qvrl_handle a, qvrl_handle b, int16_t* same) {
    if (same) *same = 0;
    return Guard([&] {
        if (!same) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: no place for the answer");
        const Variant va = a ? Variant(Registry().Get(a)) : Variant::Nothing();
        const Variant vb = b ? Variant(Registry().Get(b)) : Variant::Nothing();
        *same = static_cast<int16_t>(va == vb ? -1 : 0);
    });
}

qvrl_status qvrl_class_of(qvrl_handle object, qvrl_value* name) {
    if (name) *name = Empty();
    return Guard([&] {
        if (!name) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: no place for the name");
        ToC(Variant(Registry().Get(object)->ClassName()), *name);
    });
}

qvrl_status qvrl_call(qvrl_handle object, const char* member, qvrl_value* args, size_t argc, qvrl_value* result) {
    if (result) *result = Empty();
    return Guard([&] {
        const std::string name = Text(member, "member name");
        if (argc > 0 && !args) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: no arguments");
        const std::shared_ptr<Dispatchable> obj = Registry().Get(object);
        std::vector<Variant> values;
        values.reserve(argc);
        for (size_t i = 0; i < argc; ++i) values.push_back(FromC(args[i], 0));

        const Variant r = obj->Invoke(name, values);

        // Everything is converted before the caller's array is touched, so a
        // failure here leaves it as it was.
        Outputs outs;
        ToC(r, outs.Next());
        std::vector<size_t> byRef;
        if (const qvrl::MemberInfo* info = obj->FindCallable(name))
            for (size_t i = 0; i < info->params.size() && i < argc; ++i)
                if (info->params[i].byRef) {
                    ToC(values[i], outs.Next());
                    byRef.push_back(i);
                }
        for (size_t k = 0; k < byRef.size(); ++k) {
            Clear(args[byRef[k]]);
            args[byRef[k]] = outs.Take(k + 1);
        }
        if (result) *result = outs.Take(0);
    });
}

qvrl_status qvrl_get(qvrl_handle object, const char* property, qvrl_value* result) {
    if (result) *result = Empty();
    return Guard([&] {
        const std::string name = Text(property, "property name");
        if (!result) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: no place for the value");
        const Variant v = Registry().Get(object)->GetProperty(name);
        ToC(v, *result);
    });
}

qvrl_status qvrl_let(qvrl_handle object, const char* property, const qvrl_value* value) {
    return Guard([&] {
        const std::string name = Text(property, "property name");
        if (!value) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: no value");
        const std::shared_ptr<Dispatchable> obj = Registry().Get(object);
        obj->LetProperty(name, FromC(*value, 0));
    });
}

void qvrl_value_clear(qvrl_value* value) {
    if (value) Clear(*value);
}

int32_t qvrl_last_error_number(void) { return tLastError.number; }
const char* qvrl_last_error_description(void) { return tLastError.description.c_str(); }
const char* qvrl_last_error_source(void) { return tLastError.source.c_str(); }

qvrl_status qvrl_classes(const qvrl_class_info** classes, size_t* count) {
    if (classes) *classes = nullptr;
    if (count) *count = 0;
    return Guard([&] {
        if (!classes || !count) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: no place for the list");
        static const Catalogue catalogue = BuildCatalogue();
        *classes = catalogue.classes.data();
        *count = catalogue.classes.size();
    });
}

qvrl_status qvrl_use_qt_dialogs(void) {
    return Guard([] { qvrl::UseDesktopPlatform(); });
}

}  // extern "C"

namespace {

// Bad input of an importer is an invalid argument, with its faults.
template <class F>
qvrl_status RunImport(qvrl_value* report, F&& run) {
    if (report) *report = Empty();
    return Guard([&] {
        std::string text;
        try {
            text = qvrl::imports::ReportText(run());
        } catch (const qvrl::TownInputError& e) {
            Raise(err::InvalidCall, "import", e.what());
        }
        if (report) ToC(Variant(text), *report);
    });
}

std::string OptionalText(const char* s) { return s ? s : ""; }

}  // namespace

qvrl_status qvrl_import_gv100ad(const char* file, const char* db, qvrl_value* report) {
    return RunImport(report, [&] { return qvrl::imports::Gv100ad(Text(file, "file name"), OptionalText(db)); });
}

qvrl_status qvrl_import_zones(const char* file, const char* db, int32_t land_id, qvrl_value* report) {
    return RunImport(report,
                     [&] { return qvrl::imports::Zones(Text(file, "file name"), OptionalText(db), land_id); });
}

qvrl_status qvrl_import_at_municipalities(const char* file, const char* db, qvrl_value* report) {
    return RunImport(report,
                     [&] { return qvrl::imports::AtMunicipalities(Text(file, "file name"), OptionalText(db)); });
}

qvrl_status qvrl_import_uk_figures(const char* dir, const char* db, qvrl_value* report) {
    return RunImport(report, [&] { return qvrl::imports::UkFigures(Text(dir, "folder name"), OptionalText(db)); });
}

qvrl_status qvrl_site_json(const char* input_json, qvrl_value* report) {
    if (report) *report = Empty();
    return Guard([&] {
        std::string json;
        try {
            json = qvrl::SiteJsonFor(Text(input_json, "site input"));
        } catch (const qvrl::SiteInputError& e) {
            Raise(err::InvalidCall, "site", e.what());
        }
        if (report) ToC(Variant(json), *report);
    });
}
