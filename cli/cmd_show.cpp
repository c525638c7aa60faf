#include <iostream>
#include <nlohmann/json.hpp>

#include "automation/Dispatch.h"
#include "commands.h"
#include "support/DesktopPlatform.h"
#include "support/ModuleState.h"
#include "support/Platform.h"
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

// A word on the command line: a number where it reads as one, else a text.
Variant FromWord(const std::string& w) {
    const auto j = ordered_json::parse(w, nullptr, false);
    if (j.is_boolean()) return Variant(j.get<bool>());
    if (j.is_number_integer() && j.get<int64_t>() >= INT32_MIN && j.get<int64_t>() <= INT32_MAX)
        return Variant(static_cast<int32_t>(j.get<int64_t>()));
    if (j.is_number()) return Variant(j.get<double>());
    return Variant(w);
}

}  // namespace

Variant RunMember(const std::string& target, std::vector<Variant>& args, std::shared_ptr<Platform> platform,
                  const MemberInfo** info) {
    const size_t dot = target.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == target.size())
        Raise(err::InvalidCall, {}, "the call must be Class.Member, not '" + target + "'");
    const std::string className = target.substr(0, dot);
    const std::string member = target.substr(dot + 1);
    auto obj = CreateObjectByName(className);
    if (!obj) Raise(err::ObjectNotSet, className, "unknown class '" + className + "'");
    const MemberInfo* found = nullptr;
    for (const auto& m : obj->Members())
        if (UCase(m.name) == UCase(member)) found = &m;
    if (!found) Raise(err::NoSuchMember, {}, obj->ClassName() + " has no member '" + member + "'");
    if (info) *info = found;

    // The platform holds for this call only, also when it fails.
    struct Restore {
        std::shared_ptr<Platform> previous = State().platform;
        ~Restore() { SetPlatform(previous); }
    } restore;
    if (platform) SetPlatform(std::move(platform));
    return obj->Invoke(member, args);
}

void AddShowCommand(CLI::App& app, Context& ctx) {
    auto target = std::make_shared<std::string>();
    CLI::App* cmd = app.add_subcommand(
        "show", "Run a member with the Qt dialogs on screen: show CRoofLoad.ShowRoofLoadDlg_EN roof.txt");
    cmd->add_option("member", *target, "Class.Member")->required();
    cmd->prefix_command();
    cmd->footer("Arguments follow the member in its order. Needs a display (or QT_QPA_PLATFORM=offscreen).");
    cmd->callback([target, cmd, &ctx] {
        ApplyLanguage(ctx);
        std::vector<Variant> args;
        for (const auto& w : cmd->remaining()) args.push_back(FromWord(w));
        ordered_json out;
        try {
            UseDesktopPlatform();
            const MemberInfo* info = nullptr;
            out["result"] = ToJson(RunMember(*target, args, nullptr, &info));
            ordered_json byRef = ordered_json::object();
            for (size_t i = 0; i < info->params.size() && i < args.size(); ++i)
                if (info->params[i].byRef) byRef[info->params[i].name] = ToJson(args[i]);
            if (!byRef.empty()) out["out"] = byRef;
        } catch (const RuntimeError& e) {
            out = {{"error", {{"number", e.number()}, {"description", e.description()}}}};
        }
        std::cout << out.dump() << "\n";
        ctx.exitCode = out.contains("error") ? 1 : 0;
    });
}

}  // namespace qvrl::cli
