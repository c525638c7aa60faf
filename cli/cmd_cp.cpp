// qvroofload cp: the wind pressure coefficients of one roof form, asked of a
// CRoofLoad exactly as a host asks them, and its 71 table values printed.

#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "automation/CRoofLoad.h"
#include "automation/Dispatch.h"
#include "automation/StoreFailure.h"
#include "commands.h"
#include "json_lines.h"
#include "cp/CWindCpTable.h"
#include "support/errors.h"
#include "support/vb.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

// A request value of the table object and the option that carries it.
struct Input {
    const char* property;
    const char* option;
    bool whole;  // a 16-bit code, not a double
    const char* unit;
    const char* help;
};

const Input kInputs[] = {
    {"Theta", "--theta", false, "DEG", "Wind direction in degrees"},
    {"Alpha", "--alpha", false, "DEG", "Roof pitch in degrees; negative for a trough"},
    {"hpZuH", "--hp-h", false, "X", "Flat roof: parapet height over building height hp/h"},
    {"rZuH", "--r-h", false, "X", "Flat roof: eaves radius over building height r/h"},
    {"AlphaTr", "--alpha-tr", false, "DEG", "Flat roof: mansard eaves angle in degrees"},
    {"HzuD", "--h-d", false, "X", "Wall: building height over depth h/d"},
    {"Mue", "--mue", false, "X", "Internal pressure: opening ratio mu"},
    {"TrTyp", "--trtyp", true, "N", "Internal pressure: eaves type code"},
};

struct Form {
    const char* name;
    const char* text;     // what the messages call it
    const char* request;  // the member of CRoofLoad
    void (CRoofLoad::*call)();
    std::vector<const char*> reads;  // properties, in the order the request reads them
};

const Form kForms[] = {
    {"gabled", "the gabled roof", "GetWindCpValues_Gabled_Roof", &CRoofLoad::GetWindCpValues_Gabled_Roof,
     {"Theta", "Alpha"}},
    {"hipped", "the hipped roof", "GetWindCpValues_Hipped_Roof", &CRoofLoad::GetWindCpValues_Hipped_Roof,
     {"Theta", "Alpha"}},
    {"flat", "the flat roof", "GetWindCpValues_Flat_Roof", &CRoofLoad::GetWindCpValues_Flat_Roof,
     {"hpZuH", "rZuH", "AlphaTr"}},
    {"wall", "the wall", "GetWindCpValues_Vertical_Wall", &CRoofLoad::GetWindCpValues_Vertical_Wall, {"HzuD"}},
    {"pent", "the pent roof", "GetWindCpValues_Pent_Roof", &CRoofLoad::GetWindCpValues_Pent_Roof,
     {"Theta", "Alpha"}},
    {"inside", "the internal pressure", "GetWindCpValues_Inside", &CRoofLoad::GetWindCpValues_Inside,
     {"TrTyp", "Theta", "Mue"}},
};

const Form* FindForm(const std::string& name) {
    for (const Form& f : kForms)
        if (UCase(name) == UCase(f.name)) return &f;
    return nullptr;
}

std::string FormNames() {
    std::string s;
    for (const Form& f : kForms) s += (s.empty() ? "" : ", ") + std::string(f.name);
    return s;
}

const Input* FindInput(const std::string& property) {
    for (const Input& i : kInputs)
        if (UCase(property) == UCase(i.property)) return &i;
    return nullptr;
}

bool Reads(const Form& f, const Input& in) {
    for (const char* p : f.reads)
        if (std::string(p) == in.property) return true;
    return false;
}

// The options or property names a form reads, for messages.
std::string ReadList(const Form& f, bool options) {
    std::string s;
    for (const char* p : f.reads) s += (s.empty() ? "" : ", ") + std::string(options ? FindInput(p)->option : p);
    return s;
}

struct Request {
    const Form* form = nullptr;
    std::vector<std::pair<const Input*, double>> values;
    int16_t norm = 3;
    bool store = false;
};

// Bad input of the command line or of one batch line.
struct RequestError {
    int32_t number;
    std::string text;
};

// The whole text must be a finite number: "2x" or "nan" would be read as
// something the user did not write.
std::optional<double> ParseNumber(const std::string& s) {
    const char* b = s.data();
    const char* e = b + s.size();
    if (b != e && *b == '+') ++b;
    double v = 0.0;
    const auto [p, ec] = std::from_chars(b, e, v);
    if (ec != std::errc() || p != e || b == e || !std::isfinite(v)) return std::nullopt;
    return v;
}

std::optional<int16_t> ParseWhole(const std::string& s) {
    const char* b = s.data();
    const char* e = b + s.size();
    if (b != e && *b == '+') ++b;
    long long v = 0;
    const auto [p, ec] = std::from_chars(b, e, v);
    if (ec != std::errc() || p != e || b == e || v < INT16_MIN || v > INT16_MAX) return std::nullopt;
    return static_cast<int16_t>(v);
}

ordered_json ToJson(const Variant& v) {
    switch (v.type()) {
    case Variant::Type::Integer: return v.asInteger();
    case Variant::Type::Long: return v.asLong();
    case Variant::Type::Double: return v.asDouble();
    default: return CStr(v);
    }
}

// The table's properties, found by name once for a whole batch.
struct TableMembers {
    TableMembers() {
        const auto table = dispatch::WrapTarget(dispatch::TypeKey<CWindCpTable>(), std::make_shared<CWindCpTable>());
        for (const Input& in : kInputs) lets.push_back(table->BindMember(in.property, MemberKind::PropertyLet));
        for (const MemberInfo& m : table->Members())
            if (m.kind == MemberKind::PropertyGet) gets.push_back(table->BindMember(m.name, MemberKind::PropertyGet));
    }
    std::vector<BoundMember> lets;  // by the place of the input in kInputs
    std::vector<BoundMember> gets;  // in the order of the interface
};

// Asks the roof object as a host would: a fresh table, the inputs written by
// their property names, the request, then every property read back in the
// order of the interface, each handed to put(name, value). A fresh table
// keeps one request's result from standing in for the next one's inputs.
template <class Put>
void Run(CRoofLoad& roof, const TableMembers& members, const Request& r, Put&& put) {
    roof.Norm = r.norm;
    roof.UseCpeDB = r.store;
    roof.WindCpTable = std::make_shared<CWindCpTable>();
    const auto table = dispatch::WrapTarget(dispatch::TypeKey<CWindCpTable>(), roof.WindCpTable);
    std::vector<Variant> args;
    for (const auto& [in, v] : r.values) {
        args.assign(1, in->whole ? Variant(static_cast<int16_t>(v)) : Variant(v));
        table->CallBound(members.lets[static_cast<size_t>(in - kInputs)], args);
    }
    (roof.*r.form->call)();
    for (const BoundMember& get : members.gets) {
        args.clear();
        put(get.info->name, table->CallBound(get, args));
    }
}

ordered_json Run(CRoofLoad& roof, const TableMembers& members, const Request& r) {
    ordered_json out = ordered_json::object();
    Run(roof, members, r, [&out](const std::string& name, const Variant& v) { out[name] = ToJson(v); });
    return out;
}

// The answer of Run as ToJson and dump() write it, straight into out.
void RunInto(CRoofLoad& roof, const TableMembers& members, const Request& r, std::string& out) {
    out += '{';
    bool first = true;
    Run(roof, members, r, [&out, &first](const std::string& name, const Variant& v) {
        if (!first) out += ',';
        first = false;
        AppendJsonText(out, name);
        out += ':';
        switch (v.type()) {
        case Variant::Type::Integer:
        case Variant::Type::Long:
        case Variant::Type::Double: AppendJson(out, v); break;
        default: out += ordered_json(CStr(v)).dump(); break;
        }
    });
    out += '}';
}

ordered_json ErrorJson(int32_t number, const std::string& description) {
    return {{"error", {{"number", number}, {"description", description}}}};
}

// The store route ends in an empty record when qvrl.mdb does not open; that
// must not pass for "no coefficients". Null when the request is answered.
ordered_json RunChecked(CRoofLoad& roof, const TableMembers& members, const Request& r, ordered_json& answer) {
    ClearStoreOpenError();
    answer = Run(roof, members, r);
    const StoreFailure f = LastStoreFailure();
    if (!r.store || f.Kind == StoreFailureKind::None) return nullptr;
    ordered_json e = ErrorJson(f.Error.Number, f.Error.Description);
    e["error"]["file"] = f.Error.File;
    return e;
}

// ---- the readable table ----

std::string Cell(double v) {
    std::string s = Format(v, "0.000");
    return std::string(s.size() < 10 ? 10 - s.size() : 0, ' ') + s;
}

std::string Table(const Request& r, const ordered_json& j) {
    std::ostringstream out;
    out << r.form->request << ":";
    for (size_t i = 0; i < r.form->reads.size(); ++i) {
        const char* p = r.form->reads[i];
        double v = 0.0;
        for (const auto& [in, given] : r.values)
            if (std::string(in->property) == p) v = given;
        out << (i ? ", " : " ") << p << " = " << DoubleToText(v);
    }
    if (r.store) out << "; coefficient store, Norm " << r.norm << "\n";
    else out << "; built-in tables (DIN 1055-4:2005)\n";

    std::ostringstream rows;
    auto row = [&](const std::string& label, double v10, double v1, double v10a, double v1a, bool pair) {
        std::string name = label;
        name.resize(6, ' ');
        rows << name << Cell(v10) << (pair ? Cell(v1) : std::string(10, ' '));
        if (v10a != 0.0 || v1a != 0.0) rows << Cell(v10a) << (pair ? Cell(v1a) : "");
        rows << "\n";
    };
    bool any = false;
    for (const char* z : {"F", "G", "H", "I", "J", "K", "L", "M", "N", "A", "B", "C", "D", "E", "Ft"}) {
        const std::string a = std::string("Area_") + z;
        const double v10 = j.at(a + "10"), v1 = j.at(a + "1"), v10a = j.at(a + "10a"), v1a = j.at(a + "1a");
        if (v10 == 0.0 && v1 == 0.0 && v10a == 0.0 && v1a == 0.0) continue;
        if (!any) rows << "Zone      cpe,10     cpe,1  cpe,10 2nd cpe,1 2nd\n";
        any = true;
        row(z, v10, v1, v10a, v1a, true);
    }
    const double in = j.at("Area_Inside"), ina = j.at("Area_Insidea");
    if (in != 0.0 || ina != 0.0) {
        if (!any) rows << "Zone        c_pi            c_pi 2nd\n";
        any = true;
        row("c_pi", in, 0.0, ina, 0.0, false);
    }
    if (any) out << rows.str();
    else out << "No coefficients: the tables hold no row for this request.\n";
    return out.str();
}

// ---- one batch line ----

Request ParseLine(const std::string& line) {
    const auto j = ordered_json::parse(line, nullptr, false);
    if (j.is_discarded() || !j.is_object())
        throw RequestError{err::InvalidCall, "malformed request: not a JSON object"};
    Request r;
    for (const auto& [key, value] : j.items())
        if (UCase(key) == "FORM") {
            if (!value.is_string() || !(r.form = FindForm(value.get<std::string>())))
                throw RequestError{err::InvalidCall, "\"form\" must be one of " + FormNames()};
        }
    if (!r.form) throw RequestError{err::InvalidCall, "malformed request: \"form\" is missing (" + FormNames() + ")"};
    std::set<std::string> seen;
    for (const auto& [key, value] : j.items()) {
        const std::string k = UCase(key);
        if (!seen.insert(k).second) throw RequestError{err::InvalidCall, key + " is given twice"};
        if (k == "FORM") continue;
        if (k == "USECPEDB") {
            if (!value.is_boolean()) throw RequestError{err::TypeMismatch, "UseCpeDB must be true or false"};
            r.store = value.get<bool>();
            continue;
        }
        const Input* in = FindInput(key);
        if (k != "NORM" && !in)
            throw RequestError{err::NoSuchMember, "no input '" + key + "'; " + r.form->text + " reads " +
                                                      ReadList(*r.form, false) + " (and Norm, UseCpeDB)"};
        if (!value.is_number()) throw RequestError{err::TypeMismatch, key + " must be a number"};
        const double v = value.get<double>();
        if (k == "NORM" || in->whole) {
            if (v != std::floor(v)) throw RequestError{err::TypeMismatch, key + " must be a whole number"};
            if (v < INT16_MIN || v > INT16_MAX) throw RequestError{err::Overflow, key + " is out of range"};
        }
        if (k == "NORM") {
            r.norm = static_cast<int16_t>(v);
            continue;
        }
        if (!Reads(*r.form, *in))
            throw RequestError{err::InvalidCall, std::string(r.form->text) + " does not read " + in->property +
                                                     " (it reads " + ReadList(*r.form, false) + ")"};
        r.values.emplace_back(in, v);
    }
    return r;
}

// As RunChecked, the answer or the error appended to out.
void AnswerLine(CRoofLoad& roof, const TableMembers& members, const std::string& line, std::string& out) {
    const size_t start = out.size();
    ordered_json failed;
    try {
        const Request r = ParseLine(line);
        ClearStoreOpenError();
        RunInto(roof, members, r, out);
        const StoreFailure f = LastStoreFailure();
        if (!r.store || f.Kind == StoreFailureKind::None) return;
        failed = ErrorJson(f.Error.Number, f.Error.Description);
        failed["error"]["file"] = f.Error.File;
    } catch (const RequestError& e) {
        failed = ErrorJson(e.number, e.text);
    } catch (const RuntimeError& e) {
        failed = ErrorJson(e.number(), e.description());
    }
    out.resize(start);
    out += failed.dump();
}

// ---- the command line ----

struct CpOptions {
    std::string form;
    std::vector<std::string> inputs = std::vector<std::string>(std::size(kInputs));
    std::vector<CLI::Option*> given;
    std::string norm;
    CLI::Option* normOption = nullptr;
    bool store = false, table = false, jsonl = false;
};

Request FromOptions(const CpOptions& o) {
    Request r;
    if (o.form.empty()) throw RequestError{err::InvalidCall, "name a form (" + FormNames() + "), or use --jsonl"};
    r.form = FindForm(o.form);
    if (!r.form) throw RequestError{err::InvalidCall, "unknown form '" + o.form + "' (forms: " + FormNames() + ")"};
    for (size_t i = 0; i < std::size(kInputs); ++i) {
        if (o.given[i]->count() == 0) continue;
        const Input& in = kInputs[i];
        if (!Reads(*r.form, in))
            throw RequestError{err::InvalidCall, std::string(in.option) + " is not read for " + r.form->text +
                                                     " (it reads " + ReadList(*r.form, true) + ")"};
        if (in.whole) {
            const auto v = ParseWhole(o.inputs[i]);
            if (!v) throw RequestError{err::InvalidCall, std::string(in.option) + ": '" + o.inputs[i] +
                                                             "' is not a whole number from -32768 to 32767"};
            r.values.emplace_back(&in, *v);
        } else {
            const auto v = ParseNumber(o.inputs[i]);
            if (!v) throw RequestError{err::InvalidCall, std::string(in.option) + ": '" + o.inputs[i] +
                                                             "' is not a number"};
            r.values.emplace_back(&in, *v);
        }
    }
    if (o.normOption->count() > 0) {
        const auto n = ParseWhole(o.norm);
        if (!n)
            throw RequestError{err::InvalidCall, "--norm: '" + o.norm + "' is not a whole number from -32768 to 32767"};
        r.norm = *n;
    }
    r.store = o.store;
    return r;
}

}  // namespace

void AnswerCpRequests(std::istream& in, std::ostream& out) {
    CRoofLoad roof;
    const TableMembers members;
    std::string line;
    std::string answer;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.find_first_not_of(" \t") == std::string::npos) continue;
        answer.clear();
        AnswerLine(roof, members, line, answer);
        answer += '\n';
        out.write(answer.data(), static_cast<std::streamsize>(answer.size()));
        // A host that sends a line and waits gets its answer at once; a
        // batch already waiting is answered in large writes.
        if (in.rdbuf()->in_avail() <= 0) out.flush();
    }
    out.flush();
}

void AddCpCommand(CLI::App& app, Context& ctx) {
    auto o = std::make_shared<CpOptions>();
    CLI::App* cmd = app.add_subcommand(
        "cp", "Wind pressure coefficients of a roof form or wall: cp gabled --theta 0 --alpha 20 [--table]");
    cmd->add_option("form", o->form, "gabled | hipped | flat | wall | pent | inside")->type_name("FORM");
    // Taken as text and read here, so that a bad number is refused like a bad form.
    for (size_t i = 0; i < std::size(kInputs); ++i)
        o->given.push_back(cmd->add_option(kInputs[i].option, o->inputs[i],
                                           std::string(kInputs[i].help) + " (" + kInputs[i].property + ")")
                               ->type_name(kInputs[i].unit));
    o->normOption = cmd->add_option("--norm", o->norm, "Standard of the store rows (Norm), default 3; with --store")
                        ->type_name("N");
    cmd->add_flag("--store", o->store, "Look the coefficients up in the store instead of the built-in tables");
    cmd->add_flag("--table", o->table, "Print a table of the zones instead of JSON");
    cmd->add_flag("--jsonl", o->jsonl,
                  "Read requests such as {\"form\":\"gabled\",\"Theta\":10,\"Alpha\":20,\"Norm\":3,\"UseCpeDB\":false} "
                  "one per line from standard input");
    // Stray words and misspelt options get this command's own message and status.
    cmd->allow_extras();
    cmd->footer(
        "Inputs a form reads: gabled, hipped, pent: --theta --alpha; flat: --hp-h --r-h --alpha-tr; wall: --h-d;\n"
        "inside: --trtyp --theta --mue (from the store only). Inputs left out are 0.\n"
        "The answer holds all 71 values of the table object, the request values overwritten by the row found.\n"
        "With --jsonl the inputs go by their property names (Theta, Alpha, hpZuH, rZuH, AlphaTr, HzuD, Mue, TrTyp),\n"
        "each line is answered by one line, and a bad line by {\"error\":{\"number\":N,\"description\":\"...\"}}.");
    cmd->callback([o, cmd, &ctx] {
        ApplyLanguage(ctx);
        if (!cmd->remaining().empty()) {
            const std::string w = cmd->remaining().front();
            std::cerr << "qvroofload cp: " << (w.rfind("-", 0) == 0 ? "unknown option '" : "unexpected argument '")
                      << w << "'\nRun with --help for more information.\n";
            ctx.exitCode = 2;
            return;
        }
        bool anyInput = o->normOption->count() > 0 || o->store || !o->form.empty();
        for (const CLI::Option* g : o->given) anyInput = anyInput || g->count() > 0;
        if (o->jsonl) {
            if (anyInput || o->table) {
                std::cerr << "qvroofload cp: --jsonl takes every request from standard input; give no form, "
                             "inputs or --table with it\nRun with --help for more information.\n";
                ctx.exitCode = 2;
                return;
            }
            BatchStreams();
            AnswerCpRequests(std::cin, std::cout);
            ctx.exitCode = 0;
            return;
        }
        Request r;
        try {
            r = FromOptions(*o);
        } catch (const RequestError& e) {
            std::cerr << "qvroofload cp: " << e.text << "\nRun with --help for more information.\n";
            ctx.exitCode = 2;
            return;
        }
        if (std::string(r.form->name) == "inside" && !r.store)
            std::cerr << "qvroofload cp: internal pressure comes from the coefficient store only; "
                         "without --store the record stays empty\n";
        if (o->normOption->count() > 0 && !r.store)
            std::cerr << "qvroofload cp: --norm is read only with --store; the built-in tables are those of "
                         "DIN 1055-4:2005\n";
        ordered_json answer, failed;
        try {
            CRoofLoad roof;
            failed = RunChecked(roof, TableMembers(), r, answer);
        } catch (const RuntimeError& e) {
            std::cerr << "qvroofload cp: error " << e.number() << ": " << e.description() << "\n";
            ctx.exitCode = 1;
            return;
        }
        if (!failed.is_null()) {
            std::cerr << "qvroofload cp: " << LastStoreFailure().Message() << "\n";
            if (!o->table) std::cout << failed.dump() << "\n";
            ctx.exitCode = 1;
            return;
        }
        if (o->table) std::cout << Table(r, answer);
        else std::cout << answer.dump() << "\n";
        ctx.exitCode = 0;
    });
}

}  // namespace qvrl::cli
