#include <iostream>
#include <nlohmann/json.hpp>

#include "automation/Session.h"
#include "commands.h"
#include "support/DesktopPlatform.h"
#include "support/ModuleState.h"
#include "support/errors.h"

namespace qvrl::cli {

void AddShowCommand(CLI::App& app, Context& ctx) {
    auto target = std::make_shared<std::string>();
    CLI::App* cmd = app.add_subcommand(
        "show", "Run a member with the Qt dialogs on screen: show CRoofLoad.ShowRoofLoadDlg_EN roof.txt");
    cmd->add_option("member", *target, "Class.Member")->required();
    cmd->prefix_command();
    cmd->footer("Arguments follow the member as for `call`. Needs a display (or QT_QPA_PLATFORM=offscreen).");
    cmd->callback([target, cmd, &ctx] {
        using nlohmann::ordered_json;
        ApplyLanguage(ctx);
        std::vector<Variant> args;
        for (const auto& w : cmd->remaining()) args.push_back(VariantFromWord(w, args.size() + 1));
        ordered_json out;
        try {
            UseDesktopPlatform();
            const MemberRun run = RunMemberUnder(State().platform, *target, std::move(args));
            out["result"] = VariantToJson(run.result);
            if (!run.out.empty()) {
                ordered_json byRef = ordered_json::object();
                for (const auto& [name, value] : run.out) byRef[name] = VariantToJson(value);
                out["out"] = byRef;
            }
            if (run.onOk) out["OnOk"] = *run.onOk;
        } catch (const RuntimeError& e) {
            out = {{"error", {{"number", e.number()}, {"description", e.description()}}}};
        }
        std::cout << out.dump() << "\n";
        ctx.exitCode = out.contains("error") ? 1 : 0;
    });
}

}  // namespace qvrl::cli
