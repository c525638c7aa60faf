#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>

#include "automation/Session.h"
#include "commands.h"
#include "support/errors.h"

namespace qvrl::cli {

namespace {

using nlohmann::ordered_json;

struct SessionOptions {
    std::string target;
    std::string script;
};

// The script's own faults are the caller's, as an unfit step is: status 2.
struct BadScript {
    std::string message;
};

std::optional<std::string> OptText(const ordered_json& s, const char* name) {
    if (!s.contains(name)) return std::nullopt;
    if (!s[name].is_string()) throw BadScript{std::string("\"") + name + "\" must be a text"};
    return s[name].get<std::string>();
}

std::optional<int32_t> OptInt(const ordered_json& s, const char* name) {
    if (!s.contains(name)) return std::nullopt;
    if (!s[name].is_number_integer()) throw BadScript{std::string("\"") + name + "\" must be a whole number"};
    const auto v = s[name].get<int64_t>();
    if (v < INT32_MIN || v > INT32_MAX) throw BadScript{std::string("\"") + name + "\" is out of range"};
    return static_cast<int32_t>(v);
}

SessionScript ParseScript(const std::string& text) {
    const auto j = ordered_json::parse(text, nullptr, false);
    if (j.is_discarded() || !j.is_object()) throw BadScript{"the script is not a JSON object"};
    SessionScript script;
    if (j.contains("steps")) {
        if (!j["steps"].is_array()) throw BadScript{"\"steps\" must be an array"};
        size_t n = 0;
        for (const auto& s : j["steps"]) {
            ++n;
            const std::string at = "step " + std::to_string(n) + ": ";
            try {
                if (!s.is_object()) throw BadScript{"not an object"};
                SessionStep step;
                const auto form = OptText(s, "form");
                const auto action = OptText(s, "action");
                if (!form || !action) throw BadScript{"\"form\" and \"action\" are required"};
                step.form = *form;
                step.action = *action;
                step.control = OptText(s, "control").value_or("");
                step.text = OptText(s, "text");
                step.key = OptText(s, "key").value_or("");
                step.tag = OptText(s, "tag");
                step.index = OptInt(s, "index");
                step.row = OptInt(s, "row");
                step.layer = OptInt(s, "layer");
                if (s.contains("click")) {
                    if (!s["click"].is_boolean()) throw BadScript{"\"click\" must be true or false"};
                    step.click = s["click"].get<bool>();
                }
                script.steps.push_back(std::move(step));
            } catch (const BadScript& b) {
                throw BadScript{at + b.message};
            }
        }
    }
    if (j.contains("answers")) {
        if (!j["answers"].is_array()) throw BadScript{"\"answers\" must be an array"};
        for (const auto& a : j["answers"]) {
            if (!a.is_number_integer()) throw BadScript{"\"answers\" must hold message box answers (numbers)"};
            script.answers.push_back(static_cast<int32_t>(a.get<int64_t>()));
        }
    }
    return script;
}

std::string ReadScript(const std::string& name) {
    if (name == "-") return std::string(std::istreambuf_iterator<char>(std::cin), {});
    std::ifstream in(name, std::ios::binary);
    if (!in) throw BadScript{"cannot read the script '" + name + "'"};
    return std::string(std::istreambuf_iterator<char>(in), {});
}

ordered_json Report(const MemberRun& run, const ScriptedPlatform& p) {
    ordered_json out;
    out["result"] = VariantToJson(run.result);
    if (!run.out.empty()) {
        ordered_json byRef = ordered_json::object();
        for (const auto& [name, value] : run.out) byRef[name] = VariantToJson(value);
        out["out"] = byRef;
    }
    if (run.onOk) out["OnOk"] = *run.onOk;
    out["forms"] = ordered_json::array();
    for (const auto& f : p.Forms()) out["forms"].push_back({{"form", f.name}, {"caption", f.caption}, {"modal", f.modal}});
    out["messages"] = ordered_json::array();
    for (const auto& m : p.Messages())
        out["messages"].push_back({{"text", m.text}, {"flags", m.flags}, {"title", m.title}, {"answer", m.answer}});
    out["trace"] = run.trace;
    if (run.fileLines) out["files"] = *run.fileLines;
    return out;
}

}  // namespace

void AddSessionCommand(CLI::App& app, Context& ctx) {
    auto o = std::make_shared<SessionOptions>();
    CLI::App* cmd = app.add_subcommand(
        "session", "Run a member with its dialogs driven by a script: session CRoofLoad.ShowRoofLoadDlg_EN file.asc --script s.json");
    cmd->add_option("member", o->target, "Class.Member, e.g. CRoofLoad.ShowRoofLoadDlg_EN");
    cmd->add_option("--script", o->script, "The script (JSON), - for standard input");
    cmd->prefix_command();
    cmd->footer(
        "Arguments follow the member as for `call`. The script is {\"steps\":[...],\"answers\":[...]}; each step "
        "names the form in front and one action: type, key, click, choose, select_row, map, ok, cancel.\n"
        "Exit status: 0 done, 1 run-time error of the member, 2 an unknown member, a wrong number of arguments, a "
        "step that does not fit or a bad script.");
    cmd->callback([o, cmd, &ctx] {
        ApplyLanguage(ctx);
        std::vector<Variant> args;
        const auto rest = cmd->remaining();
        for (size_t i = 0; i < rest.size(); ++i) {
            if (rest[i] == "--script" && i + 1 < rest.size()) o->script = rest[++i];
            else if (rest[i].rfind("--script=", 0) == 0) o->script = rest[i].substr(9);
            else args.push_back(VariantFromWord(rest[i], args.size() + 1));
        }
        if (o->target.empty()) throw CLI::ValidationError("session", "name a member as Class.Member");
        if (o->script.empty()) throw CLI::ValidationError("session", "--script FILE is required (- for standard input)");
        auto fail = [&](const ordered_json& error, const std::string& message) {
            std::cout << ordered_json{{"error", error}}.dump() << "\n";
            std::cerr << "qvroofload session: " << message << "\n";
            ctx.exitCode = 2;
        };
        SessionScript script;
        try {
            script = ParseScript(ReadScript(o->script));
        } catch (const BadScript& b) {
            fail({{"description", b.message}}, b.message);
            return;
        }
        if (const auto fault = RequestFault(o->target, args.size())) {
            fail({{"number", fault->number()}, {"description", fault->description()}}, fault->description());
            return;
        }
        auto platform = std::make_shared<ScriptedPlatform>(std::move(script));
        MemberRun run;
        try {
            platform->Run([&] { run = RunMemberUnder(platform, o->target, std::move(args)); });
        } catch (const ScriptError& e) {
            fail({{"step", e.step()}, {"description", e.what()}}, e.what());
            return;
        } catch (const RuntimeError& e) {
            std::cout << ordered_json{{"error", {{"number", e.number()}, {"description", e.description()}}}}.dump()
                      << "\n";
            ctx.exitCode = 1;
            return;
        }
        std::cout << Report(run, *platform).dump() << "\n";
        ctx.exitCode = 0;
    });
}

}  // namespace qvrl::cli
