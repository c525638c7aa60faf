#pragma once
// Subcommands of the qvroofload tool. Each registers itself on the app and
// returns through the exit code it stores.

#include <CLI/CLI.hpp>
#include <memory>
#include <vector>

#include "automation/Dispatch.h"
#include "support/Platform.h"

namespace qvrl::cli {

struct Context {
    int exitCode = 0;
    std::string language;  // "", "deu" or "eng"
};

void AddListsCommand(CLI::App& app, Context& ctx);
void AddCallCommand(CLI::App& app, Context& ctx);
void AddBlocksCommand(CLI::App& app, Context& ctx);
void AddDbCommand(CLI::App& app, Context& ctx);
void AddTownCommands(CLI::App& app, Context& ctx);
void AddSiteCommand(CLI::App& app, Context& ctx);
void AddCpCommand(CLI::App& app, Context& ctx);
void AddShowCommand(CLI::App& app, Context& ctx);

// Calls Class.Member on a new object under the given platform (none: the
// current one), restoring the previous platform afterwards. By-reference
// arguments are written back into args; info names the member called.
Variant RunMember(const std::string& target, std::vector<Variant>& args, std::shared_ptr<Platform> platform,
                  const MemberInfo** info = nullptr);

// Applies --lang after the language objects are set up.
void ApplyLanguage(const Context& ctx);

}  // namespace qvrl::cli
