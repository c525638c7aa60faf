#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "automation/Dispatch.h"
#include "commands.h"
#include "support/errors.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

ordered_json ToJson(const Variant& v) {
    switch (v.type()) {
    case Variant::Type::Empty:
    case Variant::Type::Null: return nullptr;
    case Variant::Type::Integer: return v.asInteger();
    case Variant::Type::Long: return v.asLong();
    case Variant::Type::Double: return v.asDouble();
    case Variant::Type::Boolean: return v.asBoolean();
    case Variant::Type::String: return v.asString();
    case Variant::Type::Date: return v.toString();
    case Variant::Type::Array: {
        ordered_json a = ordered_json::array();
        for (const Variant& e : v.asArray()) a.push_back(ToJson(e));
        return a;
    }
    case Variant::Type::Object:
        if (v.isNothing()) return nullptr;
        return {{"object", v.asObject()->ClassName()}};
    }
    return nullptr;
}

Variant FromJson(const ordered_json& j) {
    if (j.is_null()) return Variant();
    if (j.is_boolean()) return Variant(j.get<bool>());
    if (j.is_number_integer()) {
        const auto i = j.get<int64_t>();
        if (i >= INT32_MIN && i <= INT32_MAX) return Variant(static_cast<int32_t>(i));
        return Variant(static_cast<double>(i));
    }
    if (j.is_number()) return Variant(j.get<double>());
    if (j.is_string()) return Variant(j.get<std::string>());
    if (j.is_array()) {
        std::vector<Variant> items;
        for (const auto& e : j) items.push_back(FromJson(e));
        return Variant(std::move(items));
    }
    Raise(err::TypeMismatch, {}, "an argument cannot be an object");
}

// A command-line argument: JSON where it parses as JSON, else a text.
Variant FromWord(const std::string& w) {
    const auto j = ordered_json::parse(w, nullptr, false);
    if (j.is_discarded()) return Variant(w);
    return FromJson(j);
}

ordered_json ErrorJson(int32_t number, const std::string& description) {
    return {{"error", {{"number", number}, {"description", description}}}};
}

// Objects live for the whole run, as a host would hold them.
class Objects {
public:
    Dispatchable& Get(const std::string& className) {
        auto it = objects_.find(UCase(className));
        if (it != objects_.end()) return *it->second;
        auto obj = CreateObjectByName(className);
        if (!obj) Raise(err::ObjectNotSet, className, "unknown class '" + className + "'");
        return *objects_.emplace(UCase(className), std::move(obj)).first->second;
    }

private:
    std::map<std::string, std::unique_ptr<Dispatchable>> objects_;
};

ordered_json Call(Objects& objects, const std::string& target, std::vector<Variant> args) {
    const size_t dot = target.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == target.size())
        Raise(err::InvalidCall, {}, "the call must be Class.Member, not '" + target + "'");
    Dispatchable& obj = objects.Get(target.substr(0, dot));
    const std::string member = target.substr(dot + 1);
    const MemberInfo* info = nullptr;
    for (const auto& m : obj.Members())
        if (UCase(m.name) == UCase(member)) info = &m;
    if (!info) Raise(err::NoSuchMember, {}, obj.ClassName() + " has no member '" + member + "'");

    const Variant result = obj.Invoke(member, args);
    ordered_json out;
    out["result"] = ToJson(result);
    ordered_json byRef = ordered_json::object();
    for (size_t i = 0; i < info->params.size() && i < args.size(); ++i)
        if (info->params[i].byRef) byRef[info->params[i].name] = ToJson(args[i]);
    if (!byRef.empty()) out["out"] = byRef;
    return out;
}

ordered_json Answer(Objects& objects, const std::string& target, std::vector<Variant> args) {
    try {
        return Call(objects, target, std::move(args));
    } catch (const RuntimeError& e) {
        return ErrorJson(e.number(), e.description());
    }
}

ordered_json AnswerLine(Objects& objects, const std::string& line) {
    const auto req = ordered_json::parse(line, nullptr, false);
    if (req.is_discarded() || !req.is_object())
        return ErrorJson(err::InvalidCall, "malformed request: not a JSON object");
    if (!req.contains("call") || !req["call"].is_string())
        return ErrorJson(err::InvalidCall, "malformed request: \"call\" must be a text such as \"CWindSnow.SnowMue1\"");
    std::vector<Variant> args;
    if (req.contains("args")) {
        if (!req["args"].is_array()) return ErrorJson(err::InvalidCall, "malformed request: \"args\" must be an array");
        try {
            for (const auto& a : req["args"]) args.push_back(FromJson(a));
        } catch (const RuntimeError& e) {
            return ErrorJson(e.number(), "malformed request: " + e.description());
        }
    }
    return Answer(objects, req["call"].get<std::string>(), std::move(args));
}

std::string Signature(const MemberInfo& m) {
    std::ostringstream s;
    s << m.name << "(";
    for (size_t i = 0; i < m.params.size(); ++i) {
        const auto& p = m.params[i];
        s << (i ? ", " : "") << (p.byRef ? "ByRef " : "") << p.name << " As " << p.type;
    }
    s << ")";
    if (!m.result.empty()) s << " As " << m.result;
    return s.str();
}

struct CallOptions {
    std::string target;
    bool jsonl = false;
    bool list = false;
};

}  // namespace

nlohmann::ordered_json VariantToJson(const Variant& v) { return ToJson(v); }
Variant VariantFromWord(const std::string& word) { return FromWord(word); }

void AddCallCommand(CLI::App& app, Context& ctx) {
    auto o = std::make_shared<CallOptions>();
    CLI::App* cmd = app.add_subcommand(
        "call", "Call a member of a public object: call CWindSnow.SnowMue2 45 (arguments as JSON or text)");
    cmd->add_option("member", o->target, "Class.Member, e.g. CWindSnow.WindPressure_DIN1055_4_2005");
    // Everything after the member is an argument, negative numbers and [] included.
    cmd->prefix_command();
    cmd->footer("Arguments follow the member in its order: numbers, texts, arrays as JSON such as [].");
    cmd->add_flag("--jsonl", o->jsonl,
                  "Read requests {\"call\":\"CWindSnow.Member\",\"args\":[...]} one per line from standard input");
    cmd->add_flag("--list", o->list, "List the members of every public object with their arguments");
    cmd->callback([o, cmd, &ctx] {
        ApplyLanguage(ctx);
        Objects objects;
        if (o->list) {
            for (const auto& cls : PublicClassNames()) {
                auto obj = CreateObjectByName(cls);
                std::cout << cls << "\n";
                for (const auto& m : obj->Members()) std::cout << "  " << Signature(m) << "\n      " << m.doc << "\n";
            }
            ctx.exitCode = 0;
            return;
        }
        if (o->jsonl) {
            std::string line;
            while (std::getline(std::cin, line)) {
                if (!line.empty() && line.back() == '\r') line.pop_back();
                if (line.find_first_not_of(" \t") == std::string::npos) continue;
                std::cout << AnswerLine(objects, line).dump() << "\n";
            }
            std::cout.flush();
            ctx.exitCode = 0;
            return;
        }
        if (o->target.empty()) throw CLI::ValidationError("call", "name a member as Class.Member, or use --jsonl or --list");
        std::vector<Variant> args;
        for (const auto& w : cmd->remaining()) args.push_back(FromWord(w));
        const ordered_json answer = Answer(objects, o->target, std::move(args));
        std::cout << answer.dump() << "\n";
        ctx.exitCode = answer.contains("error") ? 1 : 0;
    });
}

}  // namespace qvrl::cli
