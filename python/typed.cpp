// Members called with their own C++ signatures. A member object of the
// generated classes converts the Python values straight into the member's
// parameter types and calls its typed form, found once per class: no tagged
// values for numbers and texts, no look-up by name, and CPython's vectorcall
// instead of a generic call so that a scalar rule costs little more than the
// rule. The pure rules also run over NumPy arrays: the package broadcasts,
// array_loop here runs the rule per element.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <pybind11/pybind11.h>
#include <structmember.h>  // after Python.h, which pybind11 brings

#include "automation/Dispatch.h"
#include "typed.h"

namespace py = pybind11;
using qvrl::NativeType;
using qvrl::Variant;
namespace err = qvrl::err;

namespace qvrlpy {

namespace {

// The module's types and errors; kept for the life of the process.
PyObject* gRuntimeError = nullptr;
PyObject* gArgumentError = nullptr;
PyTypeObject* gHandleType = nullptr;
PyTypeObject* gMemberType = nullptr;
PyObject* gNdarray = nullptr;  // numpy.ndarray, once a script has loaded NumPy

// Typed calls take at most this many arguments on the stack; a longer member
// goes the late-bound road.
constexpr size_t kMaxTyped = 16;

}  // namespace

double Finite(double v) {
    if (!std::isfinite(v)) qvrl::Raise(err::InvalidCall, {}, "Invalid procedure call or argument: a number is not finite");
    return v;
}

namespace {
// Finite with the common case inline.
inline double FiniteFast(double v) { return std::isfinite(v) ? v : Finite(v); }
}  // namespace

namespace {

PyObject* Text(const std::string& s) {
    // A description carries what a user typed; it must reach Python whole.
    return PyUnicode_DecodeUTF8(s.data(), static_cast<Py_ssize_t>(s.size()), "replace");
}

bool SetAttr(PyObject* o, const char* name, PyObject* value) {
    if (!value) return false;
    const int rc = PyObject_SetAttrString(o, name, value);
    Py_DECREF(value);
    return rc == 0;
}

}  // namespace

void SetError(const qvrl::RuntimeError& e) {
    const bool argument = e.number() == err::TypeMismatch || e.number() == err::WrongArgumentCount;
    PyObject* cls = argument ? gArgumentError : gRuntimeError;
    PyObject* text = Text("Run-time error '" + std::to_string(e.number()) + "': " + e.description());
    if (!text) return;
    PyObject* inst = PyObject_CallOneArg(cls, text);
    Py_DECREF(text);
    if (!inst) return;
    if (SetAttr(inst, "number", PyLong_FromLong(e.number())) && SetAttr(inst, "description", Text(e.description())) &&
        SetAttr(inst, "source", Text(e.source())))
        PyErr_SetObject(cls, inst);
    Py_DECREF(inst);
}

namespace {

// Turns the exception in flight into a Python error; for the catch blocks of
// the functions CPython calls directly.
void SetPythonError() {
    try {
        throw;
    } catch (const qvrl::RuntimeError& e) {
        SetError(e);
    } catch (py::error_already_set& e) {
        e.restore();
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::exception& e) {
        PyErr_SetString(PyExc_SystemError, e.what());
    }
}

// ---- Handle: the native half of every object of a generated class.

struct Handle {
    PyObject_HEAD
    PyObject* obj;  // the native object, owned
    qvrl::Dispatchable* disp;
    void* target;
    const void* type;
};

void HandleDealloc(PyObject* self) {
    PyTypeObject* tp = Py_TYPE(self);
    Py_CLEAR(reinterpret_cast<Handle*>(self)->obj);
    tp->tp_free(self);
    Py_DECREF(tp);
}

PyObject* HandleGetObj(PyObject* self, void*) {
    PyObject* obj = reinterpret_cast<Handle*>(self)->obj;
    return Py_NewRef(obj ? obj : Py_None);
}

int HandleSetObj(PyObject* self, PyObject* value, void*) {
    auto* h = reinterpret_cast<Handle*>(self);
    if (!value) {
        PyErr_SetString(PyExc_AttributeError, "_obj cannot be deleted");
        return -1;
    }
    try {
        const auto d = py::handle(value).cast<std::shared_ptr<qvrl::Dispatchable>>();
        if (!d) throw py::cast_error("empty");
        h->disp = d.get();
        h->target = d->Target().get();
        h->type = d->TargetType();
    } catch (const py::cast_error&) {
        PyErr_SetString(PyExc_TypeError, "_obj takes a native object (qvroofload._qvroofload.Object)");
        return -1;
    } catch (...) {
        SetPythonError();
        return -1;
    }
    // The native object keeps disp and target alive.
    Py_XSETREF(h->obj, Py_NewRef(value));
    return 0;
}

PyGetSetDef kHandleGetSet[] = {
    {"_obj", HandleGetObj, HandleSetObj, "The native object behind this one.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyType_Slot kHandleSlots[] = {
    {Py_tp_dealloc, reinterpret_cast<void*>(&HandleDealloc)},
    {Py_tp_getset, kHandleGetSet},
    {Py_tp_new, reinterpret_cast<void*>(&PyType_GenericNew)},
    {Py_tp_doc, const_cast<char*>("Base of the public classes: a reference to one library object.")},
    {0, nullptr},
};

PyType_Spec kHandleTypeDef = {"qvroofload._qvroofload.Handle", sizeof(Handle), 0,
                           Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, kHandleSlots};

// ---- Member: one member of a generated class, as a method descriptor.

struct MemberState {
    std::string name;
    qvrl::MemberKind kind = qvrl::MemberKind::Method;
    std::vector<char> object;  // per parameter: an object reference, where None is Nothing
    std::vector<size_t> byRef;
    bool wraps = false;
    // Bound on the first call, for the class of that object.
    const void* boundType = nullptr;
    qvrl::BoundMember bound;
    const qvrl::TypedCall* typed = nullptr;
    // The class last called on, known to derive from Handle; held, so that
    // no other type can take its address.
    PyObject* lastClass = nullptr;
};

struct Member {
    PyObject_HEAD
    vectorcallfunc vectorcall;
    PyObject* dict;
    PyObject* arrange;    // (args, kwargs) -> args: keywords and left-out in/out arguments
    PyObject* arrayCall;  // (member, self, args, kwargs) -> array; None but for a pure rule
    PyObject* wrap;       // object references into objects of their generated class
    MemberState* state;
};

void MemberDealloc(PyObject* self) {
    auto* m = reinterpret_cast<Member*>(self);
    PyTypeObject* tp = Py_TYPE(self);
    Py_CLEAR(m->dict);
    Py_CLEAR(m->arrange);
    Py_CLEAR(m->arrayCall);
    Py_CLEAR(m->wrap);
    if (m->state) Py_CLEAR(m->state->lastClass);
    delete m->state;
    tp->tp_free(self);
    Py_DECREF(tp);
}

PyObject* MemberGet(PyObject* self, PyObject* obj, PyObject*) {
    if (!obj || obj == Py_None) return Py_NewRef(self);
    return PyMethod_New(self, obj);
}

Handle* HandleOf(PyObject* self, MemberState& state) {
    if (reinterpret_cast<PyObject*>(Py_TYPE(self)) != state.lastClass && !PyObject_TypeCheck(self, gHandleType)) {
        PyErr_Format(PyExc_TypeError, "%s() is called on an object of a public class, not on %s", state.name.c_str(),
                     Py_TYPE(self)->tp_name);
        return nullptr;
    }
    auto* h = reinterpret_cast<Handle*>(self);
    if (!h->disp) qvrl::Raise(err::ObjectNotSet);
    auto* cls = reinterpret_cast<PyObject*>(Py_TYPE(self));
    if (state.lastClass != cls) Py_XSETREF(state.lastClass, Py_NewRef(cls));
    return h;
}

// Finds the member on the object's class, once per class.
void Bind(MemberState& state, const Handle& h) {
    if (state.boundType == h.type) return;
    const qvrl::BoundMember bound = h.disp->BindMember(state.name, state.kind);
    if (!bound.info) qvrl::Raise(err::NoSuchMember, state.name);
    const qvrl::TypedCall* typed = h.disp->TypedOf(bound);
    // A form that does not match the description is not used.
    if (typed && (typed->params.size() != state.object.size() || typed->params.size() > kMaxTyped)) typed = nullptr;
    state.bound = bound;
    state.typed = typed;
    state.boundType = h.type;
}

bool IsArray(PyObject* o) {
    if (!gNdarray) {
        // Arrays exist only once a script has loaded NumPy.
        static PyObject* const name = PyUnicode_InternFromString("numpy");
        PyObject* np = name ? PyImport_GetModule(name) : nullptr;
        if (!np) {
            PyErr_Clear();
            return false;
        }
        gNdarray = PyObject_GetAttrString(np, "ndarray");
        Py_DECREF(np);
        if (!gNdarray) {
            PyErr_Clear();
            return false;
        }
    }
    return PyObject_TypeCheck(o, reinterpret_cast<PyTypeObject*>(gNdarray));
}

// The number a Python value stands for, as the late-bound road converts it.
double NumberOf(PyObject* o) {
    if (PyFloat_CheckExact(o)) return FiniteFast(PyFloat_AS_DOUBLE(o));
    if (PyLong_CheckExact(o)) {
        int overflow = 0;
        const long v = PyLong_AsLongAndOverflow(o, &overflow);
        if (overflow == 0 && v >= INT32_MIN && v <= INT32_MAX) return static_cast<double>(v);
    }
    return FromPy(o, 0).toDouble();
}

// The arguments of one typed call, in the member's own types. Texts and
// tagged values are made only for a member that takes them: clearing them
// for every call would cost more than a rule.
struct Slots {
    struct Objects {
        std::string s[kMaxTyped];
        Variant v[kMaxTyped];
    };
    double d[kMaxTyped];
    int16_t i16[kMaxTyped];
    int32_t i32[kMaxTyped];
    bool b[kMaxTyped];
    void* at[kMaxTyped];
    std::optional<Objects> objects;

    Objects& Held() {
        if (!objects) objects.emplace();
        return *objects;
    }

    void Number(size_t k, NativeType t, double x) {
        switch (t) {
        case NativeType::Double: d[k] = x, at[k] = &d[k]; break;
        case NativeType::Integer: i16[k] = qvrl::CInt(x), at[k] = &i16[k]; break;
        case NativeType::Long: i32[k] = qvrl::CLng(x), at[k] = &i32[k]; break;
        default: qvrl::Raise(err::TypeMismatch);
        }
    }

    void Set(size_t k, NativeType t, PyObject* o, bool object) {
        // A whole number in range is itself; rounding it would change nothing.
        if (PyLong_CheckExact(o) && (t == NativeType::Integer || t == NativeType::Long)) {
            int overflow = 0;
            const long v = PyLong_AsLongAndOverflow(o, &overflow);
            if (overflow == 0 && t == NativeType::Integer && v >= INT16_MIN && v <= INT16_MAX) {
                i16[k] = static_cast<int16_t>(v), at[k] = &i16[k];
                return;
            }
            if (overflow == 0 && t == NativeType::Long && v >= INT32_MIN && v <= INT32_MAX) {
                i32[k] = static_cast<int32_t>(v), at[k] = &i32[k];
                return;
            }
        }
        switch (t) {
        case NativeType::Double:
        case NativeType::Integer:
        case NativeType::Long: Number(k, t, NumberOf(o)); return;
        case NativeType::Boolean:
            b[k] = o == Py_True ? true : o == Py_False ? false : FromPy(o, 0).toBoolean();
            at[k] = &b[k];
            return;
        case NativeType::String:
            if (PyUnicode_CheckExact(o)) {
                Py_ssize_t n = 0;
                const char* p = PyUnicode_AsUTF8AndSize(o, &n);
                if (!p) throw py::error_already_set();
                Held().s[k].assign(p, static_cast<size_t>(n));
            } else {
                Held().s[k] = qvrl::CStr(FromPy(o, 0));
            }
            at[k] = &objects->s[k];
            return;
        case NativeType::Tagged:
        case NativeType::None:
            Held().v[k] = object && o == Py_None ? Variant::Nothing() : FromPy(o, 0);
            at[k] = &objects->v[k];
            return;
        }
    }

    PyObject* Get(size_t k, NativeType t) const;
};

PyObject* ValueOf(NativeType t, const void* p) {
    switch (t) {
    case NativeType::Double: return PyFloat_FromDouble(*static_cast<const double*>(p));
    case NativeType::Integer: return PyLong_FromLong(*static_cast<const int16_t*>(p));
    case NativeType::Long: return PyLong_FromLong(*static_cast<const int32_t*>(p));
    case NativeType::Boolean: return PyBool_FromLong(*static_cast<const bool*>(p));
    case NativeType::String: {
        const auto& s = *static_cast<const std::string*>(p);
        return PyUnicode_DecodeUTF8(s.data(), static_cast<Py_ssize_t>(s.size()), nullptr);
    }
    case NativeType::Tagged: return ToPy(*static_cast<const Variant*>(p)).release().ptr();
    case NativeType::None: break;
    }
    return Py_NewRef(Py_None);
}

PyObject* Slots::Get(size_t k, NativeType t) const { return ValueOf(t, at[k]); }

py::object Own(PyObject* o) {
    if (!o) throw py::error_already_set();
    return py::reinterpret_steal<py::object>(o);
}

// The result, or the tuple of the result and the new values of the in/out
// arguments; object references become objects of their generated class.
PyObject* Finish(const Member& m, py::object result, std::vector<py::object> back) {
    const MemberState& state = *m.state;
    if (!state.byRef.empty()) {
        py::tuple t(back.size() + 1);
        t[0] = std::move(result);
        for (size_t k = 0; k < back.size(); ++k) t[k + 1] = std::move(back[k]);
        result = std::move(t);
    }
    if (state.wraps) result = Own(PyObject_CallOneArg(m.wrap, result.ptr()));
    return result.release().ptr();
}

PyObject* CallTyped(const Member& m, Handle& h, PyObject* const* args, size_t n) {
    const MemberState& state = *m.state;
    const qvrl::TypedCall& typed = *state.typed;
    Slots slots;
    for (size_t k = 0; k < n; ++k) slots.Set(k, typed.params[k], args[k], state.object[k] != 0);
    double d = 0.0;
    int16_t i16 = 0;
    int32_t i32 = 0;
    bool b = false;
    std::string s;
    Variant v;
    void* out = nullptr;
    switch (typed.result) {
    case NativeType::Double: out = &d; break;
    case NativeType::Integer: out = &i16; break;
    case NativeType::Long: out = &i32; break;
    case NativeType::Boolean: out = &b; break;
    case NativeType::String: out = &s; break;
    case NativeType::Tagged: out = &v; break;
    case NativeType::None: break;
    }
    typed.call(h.target, slots.at, out);
    py::object result = Own(out ? ValueOf(typed.result, out) : Py_NewRef(Py_None));
    std::vector<py::object> back;
    for (size_t k : state.byRef) back.push_back(Own(slots.Get(k, typed.params[k])));
    return Finish(m, std::move(result), std::move(back));
}

// Members without a typed form take the late-bound road, bound all the same.
PyObject* CallLate(const Member& m, Handle& h, PyObject* const* args, size_t n) {
    const MemberState& state = *m.state;
    std::vector<Variant> values;
    values.reserve(n);
    for (size_t k = 0; k < n; ++k)
        values.push_back(state.object[k] && args[k] == Py_None ? Variant::Nothing() : FromPy(args[k], 0));
    py::object result = ToPy(h.disp->CallBound(state.bound, values));
    std::vector<py::object> back;
    for (size_t k : state.byRef) back.push_back(ToPy(values[k]));
    return Finish(m, std::move(result), std::move(back));
}

PyObject* Dispatch(const Member& m, Handle& h, PyObject* const* args, size_t n) {
    MemberState& state = *m.state;
    if (n != state.object.size()) qvrl::Raise(err::WrongArgumentCount);
    Bind(state, h);
    return state.typed ? CallTyped(m, h, args, n) : CallLate(m, h, args, n);
}

PyObject* CallArranged(Member& m, PyObject* self, PyObject* const* args, size_t nargs, PyObject* kwnames) {
    PyObject* tuple = PyTuple_New(static_cast<Py_ssize_t>(nargs));
    if (!tuple) return nullptr;
    for (size_t k = 0; k < nargs; ++k) PyTuple_SET_ITEM(tuple, static_cast<Py_ssize_t>(k), Py_NewRef(args[k]));
    PyObject* kwargs = PyDict_New();
    if (!kwargs) {
        Py_DECREF(tuple);
        return nullptr;
    }
    const Py_ssize_t nk = kwnames ? PyTuple_GET_SIZE(kwnames) : 0;
    for (Py_ssize_t k = 0; k < nk; ++k)
        if (PyDict_SetItem(kwargs, PyTuple_GET_ITEM(kwnames, k), args[nargs + static_cast<size_t>(k)]) < 0) {
            Py_DECREF(tuple);
            Py_DECREF(kwargs);
            return nullptr;
        }
    PyObject* result = nullptr;
    if (m.arrayCall != Py_None) {
        // Arrays, or an errors= option: the package broadcasts.
        bool array = nk > 0 && PyDict_GetItemString(kwargs, "errors") != nullptr;
        for (size_t k = 0; !array && k < nargs + static_cast<size_t>(nk); ++k) array = IsArray(args[k]);
        if (array) {
            result = PyObject_CallFunctionObjArgs(m.arrayCall, reinterpret_cast<PyObject*>(&m), self, tuple, kwargs, nullptr);
            Py_DECREF(tuple);
            Py_DECREF(kwargs);
            return result;
        }
    }
    PyObject* arranged = PyObject_CallFunctionObjArgs(m.arrange, tuple, kwargs, nullptr);
    Py_DECREF(tuple);
    Py_DECREF(kwargs);
    if (!arranged) return nullptr;
    PyObject* seq = PySequence_Fast(arranged, "arranged arguments");
    Py_DECREF(arranged);
    if (!seq) return nullptr;
    try {
        result = Dispatch(m, *reinterpret_cast<Handle*>(self), PySequence_Fast_ITEMS(seq),
                          static_cast<size_t>(PySequence_Fast_GET_SIZE(seq)));
    } catch (...) {
        Py_DECREF(seq);
        throw;
    }
    Py_DECREF(seq);
    return result;
}

PyObject* MemberCall(PyObject* callable, PyObject* const* args, size_t nargsf, PyObject* kwnames) {
    auto& m = *reinterpret_cast<Member*>(callable);
    MemberState& state = *m.state;
    const auto nargs = static_cast<size_t>(PyVectorcall_NARGS(nargsf));
    if (nargs < 1) {
        PyErr_Format(PyExc_TypeError, "%s() is called on an object of a public class", state.name.c_str());
        return nullptr;
    }
    try {
        Handle* h = HandleOf(args[0], state);
        if (!h) return nullptr;
        const size_t n = nargs - 1;
        const size_t count = state.object.size();
        bool slow = (kwnames && PyTuple_GET_SIZE(kwnames) > 0) || (n < count && !state.byRef.empty());
        // A pure rule given something that is no plain number may be given an array.
        if (!slow && m.arrayCall != Py_None)
            for (size_t k = 1; k <= n && !slow; ++k)
                slow = !PyFloat_CheckExact(args[k]) && !PyLong_CheckExact(args[k]) && IsArray(args[k]);
        if (slow) return CallArranged(m, args[0], args + 1, n, kwnames);
        return Dispatch(m, *h, args + 1, n);
    } catch (...) {
        SetPythonError();
        return nullptr;
    }
}

PyMemberDef kMemberMembers[] = {
    {"__vectorcalloffset__", T_PYSSIZET, offsetof(Member, vectorcall), READONLY, nullptr},
    {"__dictoffset__", T_PYSSIZET, offsetof(Member, dict), READONLY, nullptr},
    {nullptr, 0, 0, 0, nullptr},
};

PyType_Slot kMemberSlots[] = {
    {Py_tp_dealloc, reinterpret_cast<void*>(&MemberDealloc)},
    {Py_tp_descr_get, reinterpret_cast<void*>(&MemberGet)},
    {Py_tp_call, reinterpret_cast<void*>(&PyVectorcall_Call)},
    {Py_tp_members, kMemberMembers},
    {Py_tp_doc, const_cast<char*>("A member of a public class, called with its own signature.")},
    {0, nullptr},
};

PyType_Spec kMemberTypeDef = {
    "qvroofload._qvroofload.Member", sizeof(Member), 0,
    // Immutable, so that the interpreter may cache the method at the call site.
    Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_VECTORCALL | Py_TPFLAGS_METHOD_DESCRIPTOR | Py_TPFLAGS_DISALLOW_INSTANTIATION |
        Py_TPFLAGS_IMMUTABLETYPE,
    kMemberSlots};

qvrl::MemberKind KindOf(const std::string& kind) {
    if (kind == "Method") return qvrl::MemberKind::Method;
    if (kind == "PropertyGet") return qvrl::MemberKind::PropertyGet;
    if (kind == "PropertyLet") return qvrl::MemberKind::PropertyLet;
    throw py::value_error("unknown member kind " + kind);
}

py::object MakeMember(const py::dict& info, const py::object& arrange, const py::object& arrayCall,
                      const py::object& wrap) {
    auto state = std::make_unique<MemberState>();
    state->name = info["name"].cast<std::string>();
    state->kind = KindOf(info["kind"].cast<std::string>());
    const auto mayHoldObjects = [](const std::string& t) { return t == "Object" || t == "Variant"; };
    state->wraps = mayHoldObjects(info["result"].cast<std::string>());
    size_t k = 0;
    for (const py::handle p : info["params"].cast<py::list>()) {
        const auto type = p["type"].cast<std::string>();
        const bool byRef = p["by_ref"].cast<bool>();
        state->object.push_back(type == "Object" ? 1 : 0);
        if (byRef) {
            state->byRef.push_back(k);
            state->wraps = state->wraps || mayHoldObjects(type);
        }
        ++k;
    }
    PyObject* self = PyType_GenericAlloc(gMemberType, 0);
    if (!self) throw py::error_already_set();
    auto* m = reinterpret_cast<Member*>(self);
    m->vectorcall = &MemberCall;
    m->arrange = Py_NewRef(arrange.ptr());
    m->arrayCall = Py_NewRef(arrayCall.ptr());
    m->wrap = Py_NewRef(wrap.ptr());
    m->state = state.release();
    return py::reinterpret_steal<py::object>(self);
}

// ---- Array calls: one rule per element of broadcast float64 arrays.

// A C-contiguous view of a buffer of one item type, released with the view.
class View {
public:
    View(PyObject* o, bool writable, size_t itemsize, const char* what) {
        const int flags = PyBUF_C_CONTIGUOUS | PyBUF_FORMAT | (writable ? PyBUF_WRITABLE : 0);
        if (PyObject_GetBuffer(o, &view_, flags) < 0) throw py::error_already_set();
        held_ = true;
        if (static_cast<size_t>(view_.itemsize) != itemsize || !view_.format)
            throw py::type_error(std::string("array_loop: ") + what);
    }
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    ~View() {
        if (held_) PyBuffer_Release(&view_);
    }
    size_t Size() const { return static_cast<size_t>(view_.len / view_.itemsize); }
    void* Data() const { return view_.buf; }
    char Kind() const { return view_.format[std::strspn(view_.format, "@=<>!")]; }

private:
    Py_buffer view_{};
    bool held_ = false;
};

void ArrayLoop(const py::object& member, const py::object& self, const py::object& out, const py::object& numbers,
               const py::list& inputs) {
    if (!PyObject_TypeCheck(member.ptr(), gMemberType)) throw py::type_error("array_loop needs a member");
    auto& m = *reinterpret_cast<Member*>(member.ptr());
    MemberState& state = *m.state;
    Handle* h = HandleOf(self.ptr(), state);
    if (!h) throw py::error_already_set();
    const size_t count = state.object.size();
    if (static_cast<size_t>(py::len(inputs)) != count) qvrl::Raise(err::WrongArgumentCount);
    Bind(state, *h);
    const qvrl::TypedCall* typed = state.typed;
    bool pure = typed && typed->result == NativeType::Double && state.byRef.empty();
    for (size_t k = 0; pure && k < count; ++k) {
        const NativeType t = typed->params[k];
        pure = t == NativeType::Double || t == NativeType::Integer || t == NativeType::Long;
    }
    if (!pure) throw py::type_error(state.name + "() takes no arrays");

    const View o(out.ptr(), true, sizeof(double), "out is float64");
    if (o.Kind() != 'd') throw py::type_error("array_loop: out is float64");
    const size_t n = o.Size();
    auto* res = static_cast<double*>(o.Data());
    std::optional<View> numView;
    int32_t* num = nullptr;
    if (!numbers.is_none()) {
        numView.emplace(numbers.ptr(), true, sizeof(int32_t), "numbers are int32");
        if (numView->Size() != n) throw py::type_error("array_loop: numbers of another size");
        num = static_cast<int32_t*>(numView->Data());
    }

    std::vector<std::unique_ptr<View>> views;
    std::vector<const double*> data(count, nullptr);
    std::vector<char> ready(count, 0);
    Slots slots;
    for (size_t k = 0; k < count; ++k) {
        PyObject* a = PyList_GET_ITEM(inputs.ptr(), static_cast<Py_ssize_t>(k));
        if (IsArray(a)) {
            views.push_back(std::make_unique<View>(a, false, sizeof(double), "inputs are float64"));
            if (views.back()->Kind() != 'd' || views.back()->Size() != n)
                throw py::type_error("array_loop: inputs are float64 of the size of out");
            data[k] = static_cast<const double*>(views.back()->Data());
            continue;
        }
        // A scalar converts as in a scalar call, once; if it faults, it
        // faults at every element.
        try {
            slots.Number(k, typed->params[k], NumberOf(a));
            ready[k] = 1;
        } catch (const qvrl::RuntimeError&) {
        }
    }

    // The arrays to read per element; a Double goes into its slot as it is.
    struct Feed {
        size_t k;
        NativeType type;
        const double* p;
    };
    std::vector<Feed> feeds;
    bool allReady = true;
    for (size_t k = 0; k < count; ++k) {
        if (data[k]) {
            feeds.push_back({k, typed->params[k], data[k]});
            slots.at[k] = &slots.d[k];
        } else {
            allReady = allReady && ready[k];
        }
    }
    const auto& call = typed->call;
    void* const target = h->target;
    if (num) std::memset(num, 0, n * sizeof(int32_t));
    for (size_t i = 0; i < n; ++i) {
        try {
            if (allReady) {
                for (const Feed& f : feeds) {
                    const double x = FiniteFast(f.p[i]);
                    if (f.type == NativeType::Double) slots.d[f.k] = x;
                    else slots.Number(f.k, f.type, x);
                }
            } else {
                for (size_t k = 0; k < count; ++k) {
                    if (data[k]) slots.Number(k, typed->params[k], FiniteFast(data[k][i]));
                    else if (!ready[k])
                        slots.Number(k, typed->params[k],
                                     NumberOf(PyList_GET_ITEM(inputs.ptr(), static_cast<Py_ssize_t>(k))));
                }
            }
            call(target, slots.at, &res[i]);
        } catch (const qvrl::RuntimeError& e) {
            if (!num) {
                SetError(e);
                PyObject *type = nullptr, *value = nullptr, *tb = nullptr;
                PyErr_Fetch(&type, &value, &tb);
                PyErr_NormalizeException(&type, &value, &tb);
                if (value && !SetAttr(value, "index", PyLong_FromSize_t(i))) PyErr_Clear();
                PyErr_Restore(type, value, tb);
                throw py::error_already_set();
            }
            res[i] = std::numeric_limits<double>::quiet_NaN();
            num[i] = e.number();
        }
    }
}

}  // namespace

void AddTyped(py::module_& m, PyObject* runtimeError) {
    gRuntimeError = runtimeError;
    PyObject* bases = PyTuple_Pack(2, runtimeError, PyExc_TypeError);
    if (!bases) throw py::error_already_set();
    gArgumentError = PyErr_NewExceptionWithDoc(
        "qvroofload._qvroofload.ArgumentError",
        "A wrong argument count (number 450) or an argument of the wrong type (number 13).", bases, nullptr);
    Py_DECREF(bases);
    if (!gArgumentError) throw py::error_already_set();
    m.attr("ArgumentError") = py::reinterpret_borrow<py::object>(gArgumentError);

    gHandleType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&kHandleTypeDef));
    if (!gHandleType) throw py::error_already_set();
    m.attr("Handle") = py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(gHandleType));
    gMemberType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&kMemberTypeDef));
    if (!gMemberType) throw py::error_already_set();
    m.attr("Member") = py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(gMemberType));

    m.def("make_member", &MakeMember, py::arg("info"), py::arg("arrange"), py::arg("array_call"), py::arg("wrap"),
          "A member of a generated class from its description (an entry of classes()): arrange(args, kwargs) "
          "places keywords and left-out in/out arguments, array_call(member, self, args, kwargs) takes arrays "
          "(None: no arrays), wrap(value) turns object references into objects of their class.");
    m.def(
        "error",
        [](int32_t number, const std::string& detail) {
            SetError(qvrl::RuntimeError(number, qvrl::ErrorDescription(number) + ": " + detail, "qvroofload"));
            PyObject *type = nullptr, *value = nullptr, *tb = nullptr;
            PyErr_Fetch(&type, &value, &tb);
            PyErr_NormalizeException(&type, &value, &tb);
            Py_XDECREF(type);
            Py_XDECREF(tb);
            if (!value) throw py::error_already_set();
            return py::reinterpret_steal<py::object>(value);
        },
        py::arg("number"), py::arg("detail"),
        "The error a call would raise for that number, its standard description followed by detail.");
    m.def("array_loop", &ArrayLoop, py::arg("member"), py::arg("obj"), py::arg("out"), py::arg("numbers"),
          py::arg("inputs"),
          "Runs a pure rule per element: inputs are per parameter a scalar or a contiguous float64 array of "
          "out's size; numbers None raises at the first fault with .index (the flat index), else it takes "
          "the error number per element (0: none) and out NaN there.");
}

}  // namespace qvrlpy
