// The native half of the Python module: objects by class name, members by
// name, tagged values to and from Python values. The classes a Python user
// sees are built from the member tables in qvroofload/__init__.py; their
// members are called through typed.cpp.

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "automation/Dispatch.h"
#include "automation/Session.h"
#include "automation/SiteReportJson.h"
#include "maintenance/StoreImports.h"
#include "support/DesktopPlatform.h"
#include "support/errors.h"
#include "support/vb.h"
#include "typed.h"

namespace py = pybind11;
using qvrl::Dispatchable;
using qvrl::Raise;
using qvrl::Variant;
namespace err = qvrl::err;

namespace {

// Markers for the two values Python has no word of its own for; one
// instance each, owned by the module.
struct NullType {};
struct NothingType {};
py::handle gNull;

constexpr int kMaxDepth = 32;
// Basic's day 0.
constexpr int kEpochYear = 1899, kEpochMonth = 12, kEpochDay = 30;

struct DateTypes {
    py::object datetime, date, timedelta, epoch;
};
const DateTypes& Dates() {
    // Kept for the life of the process: the module cannot be unloaded.
    static const DateTypes* d = [] {
        auto* t = new DateTypes;
        py::module_ dt = py::module_::import("datetime");
        t->datetime = dt.attr("datetime");
        t->date = dt.attr("date");
        t->timedelta = dt.attr("timedelta");
        t->epoch = t->datetime(kEpochYear, kEpochMonth, kEpochDay);
        return t;
    }();
    return *d;
}

// A serial date counts whole days from the epoch, and its fraction is the
// time of that day even when the day is negative.
double SerialOf(const py::handle& value) {
    const DateTypes& d = Dates();
    auto dt = py::reinterpret_borrow<py::object>(value);
    if (!py::isinstance(value, d.datetime)) dt = d.datetime(value.attr("year"), value.attr("month"), value.attr("day"));
    if (!dt.attr("tzinfo").is_none()) Raise(err::TypeMismatch, {}, "Type mismatch: a date with a time zone");
    const py::object delta = dt - d.epoch;
    const auto days = delta.attr("days").cast<long long>();
    const double secondsOfDay = delta.attr("seconds").cast<double>() + delta.attr("microseconds").cast<double>() / 1e6;
    const double wholeDays = static_cast<double>(days);
    const double fraction = secondsOfDay / 86400.0;
    // 1899-12-29 06:00 is -1.25: day -1, a quarter into it.
    return days >= 0 ? wholeDays + fraction : wholeDays - fraction;
}

py::object DateOf(double serial) {
    const DateTypes& d = Dates();
    const double whole = std::trunc(serial);
    const double fraction = std::fabs(serial - whole);
    const auto micros = static_cast<long long>(std::llround(fraction * 86400e6));
    return d.epoch + d.timedelta(py::arg("days") = static_cast<long long>(whole), py::arg("microseconds") = micros);
}

}  // namespace

namespace qvrlpy {

Variant FromPy(const py::handle& o, int depth) {
    if (o.is_none()) return Variant();
    if (py::isinstance<py::bool_>(o)) return Variant(o.cast<bool>());
    if (py::isinstance<py::int_>(o)) {
        int overflow = 0;
        const long long v = PyLong_AsLongLongAndOverflow(o.ptr(), &overflow);
        if (overflow != 0) Raise(err::Overflow);
        if (v == -1 && PyErr_Occurred()) throw py::error_already_set();
        return qvrl::VariantFromInteger(static_cast<int64_t>(v));
    }
    if (py::isinstance<py::float_>(o)) {
        return Variant(Finite(o.cast<double>()));
    }
    if (py::isinstance<py::str>(o)) return Variant(o.cast<std::string>());
    if (py::isinstance<Dispatchable>(o)) return Variant(o.cast<std::shared_ptr<Dispatchable>>());
    if (py::isinstance<NullType>(o)) return Variant::Null();
    if (py::isinstance<NothingType>(o)) return Variant::Nothing();
    if (py::isinstance<py::list>(o) || py::isinstance<py::tuple>(o)) {
        if (depth >= kMaxDepth) Raise(err::InvalidCall, {}, "Invalid procedure call or argument: lists nested too deep");
        std::vector<Variant> items;
        for (const py::handle item : o) items.push_back(FromPy(item, depth + 1));
        return Variant(std::move(items));
    }
    const DateTypes& d = Dates();
    if (py::isinstance(o, d.date)) return Variant(qvrl::DateValue{SerialOf(o)});
    // An object of a generated class carries its native object.
    if (py::hasattr(o, "_obj")) {
        const py::object inner = o.attr("_obj");
        if (py::isinstance<Dispatchable>(inner)) return Variant(inner.cast<std::shared_ptr<Dispatchable>>());
    }
    Raise(err::TypeMismatch, {},
          "Type mismatch: a value of type " + py::str(py::type::handle_of(o).attr("__name__")).cast<std::string>() +
              " cannot be passed");
}

py::object ToPy(const Variant& v) {
    switch (v.type()) {
    case Variant::Type::Empty: return py::none();
    case Variant::Type::Null: return py::reinterpret_borrow<py::object>(gNull);
    case Variant::Type::Integer: return py::int_(v.asInteger());
    case Variant::Type::Long: return py::int_(v.asLong());
    case Variant::Type::Double: return py::float_(v.asDouble());
    case Variant::Type::Boolean: return py::bool_(v.asBoolean());
    case Variant::Type::String: return py::str(v.asString());
    case Variant::Type::Date: return DateOf(v.asDate().serial);
    case Variant::Type::Array: {
        py::list l;
        for (const Variant& e : v.asArray()) l.append(ToPy(e));
        return l;
    }
    case Variant::Type::Object:
        if (!v.asObject()) return py::none();
        return py::cast(v.asObject());
    }
    return py::none();
}

}  // namespace qvrlpy

namespace {
using qvrlpy::FromPy;
using qvrlpy::ToPy;

std::vector<Variant> ArgsFrom(const py::sequence& args) {
    std::vector<Variant> values;
    values.reserve(args.size());
    for (const py::handle a : args) values.push_back(FromPy(a, 0));
    return values;
}

py::dict Describe(const qvrl::dispatch::PublicClass& c) {
    py::dict d;
    d["name"] = c.name;
    d["interface"] = c.interfaceName;
    d["class_id"] = c.classId;
    d["interface_id"] = c.interfaceId;
    py::list members;
    for (const auto& m : c.members()) {
        py::dict md;
        md["name"] = m.name;
        md["kind"] = qvrl::KindName(m.kind);
        md["result"] = m.result;
        md["doc"] = m.doc;
        py::list params;
        for (const auto& p : m.params) {
            py::dict pd;
            pd["name"] = p.name;
            pd["type"] = p.type;
            pd["by_ref"] = p.byRef;
            params.append(pd);
        }
        md["params"] = params;
        members.append(md);
    }
    d["members"] = members;
    return d;
}

}  // namespace

namespace {

// What an import changed, as plain Python values; "text" as the tool prints it.
py::dict ImportReport(const qvrl::TownImportReport& r) {
    py::list tables;
    for (const qvrl::TableTally& t : r.tables) {
        py::dict d;
        d["file"] = t.file;
        d["table"] = t.table;
        d["inserted"] = t.inserted;
        d["updated"] = t.updated;
        d["unchanged"] = t.unchanged;
        d["untouched"] = t.untouched;
        tables.append(d);
    }
    py::dict d;
    d["source"] = r.source;
    d["tables"] = tables;
    d["untouched_meaning"] = r.untouchedMeaning;
    d["notes"] = r.notes;
    d["text"] = qvrl::imports::ReportText(r);
    return d;
}

}  // namespace

PYBIND11_MODULE(_qvroofload, m) {
    m.doc() = "Native calls of the QVRoofLoad public objects; use the package qvroofload.";
    // A script's dialog members show real dialogs where there is a screen.
    qvrl::OfferDesktopPlatform();
    m.attr("TYPELIB_NAME") = qvrl::typelib::Name;
    m.attr("TYPELIB_ID") = qvrl::typelib::Id;
    m.attr("TYPELIB_VERSION") = py::make_tuple(qvrl::typelib::VersionMajor, qvrl::typelib::VersionMinor);
    m.attr("TYPELIB_DOC") = qvrl::typelib::Documentation;
    m.attr("__version__") = QVRL_VERSION;

    // Created once and kept by the module; the translator below only borrows it.
    static py::exception<qvrl::RuntimeError> error(m, "RuntimeError", PyExc_RuntimeError);
    qvrlpy::AddTyped(m, error.ptr());
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (const qvrl::RuntimeError& e) {
            qvrlpy::SetError(e);
        }
    });

    py::class_<NullType>(m, "NullType", "Basic's Null: no valid data").def("__repr__", [](const NullType&) {
        return "Null";
    });
    gNull = py::cast(NullType{}).release();
    m.attr("Null") = gNull;
    py::class_<NothingType>(m, "NothingType", "An empty object reference, for object parameters")
        .def("__repr__", [](const NothingType&) { return "Nothing"; });
    m.attr("Nothing") = py::cast(NothingType{});

    py::class_<Dispatchable, std::shared_ptr<Dispatchable>>(m, "Object", "A public object reached by member names")
        .def_property_readonly("class_name", &Dispatchable::ClassName);

    m.def(
        "run_session",
        [](const std::string& target, const py::list& args, const py::list& steps, const std::vector<int32_t>& answers) {
            qvrl::SessionScript script;
            script.answers = answers;
            for (const auto& item : steps) {
                const auto d = item.cast<py::dict>();
                const auto text = [&](const char* k) { return d.contains(k) ? d[k].cast<std::string>() : std::string(); };
                qvrl::SessionStep st;
                st.form = text("form");
                st.action = text("action");
                st.control = text("control");
                st.key = text("key");
                if (d.contains("text")) st.text = text("text");
                if (d.contains("tag")) st.tag = text("tag");
                if (d.contains("index")) st.index = d["index"].cast<int32_t>();
                script.steps.push_back(std::move(st));
            }
            std::vector<Variant> values;
            for (const auto& a : args) values.push_back(FromPy(a, 0));
            auto platform = std::make_shared<qvrl::ScriptedPlatform>(std::move(script));
            qvrl::MemberRun run;
            try {
                platform->Run([&] { run = qvrl::RunMemberUnder(platform, target, std::move(values)); });
            } catch (const qvrl::ScriptError& e) {
                throw py::value_error(e.what());
            }
            py::dict out;
            out["result"] = ToPy(run.result);
            out["on_ok"] = run.onOk ? py::object(py::bool_(*run.onOk)) : py::object(py::none());
            py::list forms;
            for (const auto& f : platform->Forms()) forms.append(f.name);
            out["forms"] = forms;
            return out;
        },
        py::arg("target"), py::arg("args"), py::arg("steps"), py::arg("answers") = std::vector<int32_t>{},
        "Runs Class.Member with its dialogs driven by steps (dicts: form, action, control, text, key, tag, "
        "index) instead of a screen; returns result, on_ok and the forms shown. A step that does not fit is "
        "ValueError.");
    m.def(
        "use_qt_dialogs", [] { qvrl::UseDesktopPlatform(); },
        "Shows dialogs as Qt dialogs on the screen from here on; RuntimeError 429 without Qt or a display.");
    m.def(
        "classes",
        [] {
            py::list l;
            for (const auto& c : qvrl::dispatch::PublicClasses()) l.append(Describe(c));
            return l;
        },
        "Every public class with its members, parameters, kinds and documentation.");
    m.def(
        "create",
        [](const std::string& name) -> std::shared_ptr<Dispatchable> {
            std::shared_ptr<Dispatchable> obj = qvrl::CreateObjectByName(name);
            if (!obj) Raise(err::CannotCreateObject, name, "Cannot create object: no class '" + name + "'");
            return obj;
        },
        py::arg("class_name"));
    m.def(
        "call",
        [](Dispatchable& obj, const std::string& member, const py::sequence& args) {
            std::vector<Variant> values = ArgsFrom(args);
            return ToPy(obj.Invoke(member, values));
        },
        py::arg("obj"), py::arg("member"), py::arg("args"), "Calls a member; the result.");
    m.def(
        "call_ref",
        [](Dispatchable& obj, const std::string& member, const py::sequence& args, const std::vector<size_t>& byRef) {
            std::vector<Variant> values = ArgsFrom(args);
            const Variant r = obj.Invoke(member, values);
            py::tuple out(byRef.size() + 1);
            out[0] = ToPy(r);
            for (size_t k = 0; k < byRef.size(); ++k) {
                if (byRef[k] >= values.size()) Raise(err::SubscriptOutOfRange);
                out[k + 1] = ToPy(values[byRef[k]]);
            }
            return out;
        },
        py::arg("obj"), py::arg("member"), py::arg("args"), py::arg("by_ref"),
        "Calls a member; the result followed by the new values of the arguments at by_ref.");
    m.def(
        "get", [](Dispatchable& obj, const std::string& name) { return ToPy(obj.GetProperty(name)); }, py::arg("obj"),
        py::arg("name"));
    m.def(
        "let",
        [](Dispatchable& obj, const std::string& name, const py::handle& value) {
            obj.LetProperty(name, FromPy(value, 0));
        },
        py::arg("obj"), py::arg("name"), py::arg("value"));
    m.def(
        "same",
        [](const std::shared_ptr<Dispatchable>& a, const std::shared_ptr<Dispatchable>& b) {
            return Variant(a) == Variant(b);
        },
        py::arg("a"), py::arg("b"), "Basic's Is: both reach one object.");
    m.def(
        "identity", [](const Dispatchable& obj) { return reinterpret_cast<uintptr_t>(obj.Target().get()); },
        py::arg("obj"), "A number equal for references to one object, for hashing.");

    // The importers; bad input is error 5 carrying every fault.
    auto addImport = [&m](const char* name, auto run, const char* doc) {
        m.def(
            name,
            [run](const std::string& input, const std::optional<std::string>& db) {
                try {
                    return ImportReport(run(input, db.value_or(std::string())));
                } catch (const qvrl::TownInputError& e) {
                    Raise(err::InvalidCall, "import", e.what());
                }
            },
            py::arg("path"), py::arg("db") = py::none(), doc);
    };
    addImport("import_gv100ad", [](const std::string& f, const std::string& db) { return qvrl::imports::Gv100ad(f, db); },
           "Loads a GV100AD municipality directory; db None: your own qvrl.mdb in the per-user folder.");
    addImport("import_at_municipalities",
           [](const std::string& f, const std::string& db) { return qvrl::imports::AtMunicipalities(f, db); },
           "Loads the Austrian municipality list; db None: your own qvrl.mdb in the per-user folder.");
    addImport("import_uk_figures",
           [](const std::string& d, const std::string& db) { return qvrl::imports::UkFigures(d, db); },
           "Loads en_bs_fig3.csv ... en_bs_fig8.csv of a folder; db None: your own qvrl.mdb in the per-user folder.");
    m.def(
        "import_zones",
        [](const std::string& file, const std::optional<std::string>& db, int32_t land) {
            try {
                return ImportReport(qvrl::imports::Zones(file, db.value_or(std::string()), land));
            } catch (const qvrl::TownInputError& e) {
                Raise(err::InvalidCall, "import", e.what());
            }
        },
        py::arg("path"), py::arg("db") = py::none(), py::arg("land") = 50,
        "Loads zone assignments for land 50 (Germany) or 51 (Austria); db None: your own qvrl.mdb.");

    // The site report: the options as one JSON object in, the document out;
    // the package turns keyword arguments and the result into Python.
    m.def(
        "site_json",
        [](const std::string& input) {
            try {
                return qvrl::SiteJsonFor(input);
            } catch (const qvrl::SiteInputError& e) {
                Raise(err::InvalidCall, "site", e.what());
            }
        },
        py::arg("input"), "The site report (JSON text) for a JSON object of the options of `qvroofload site`.");
}
