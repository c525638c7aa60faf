#pragma once
// Subcommands of the qvroofload tool. Each registers itself on the app and
// returns through the exit code it stores.

#include <CLI/CLI.hpp>
#include <iosfwd>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "automation/Dispatch.h"
#include "automation/StoreFailure.h"
#include "support/Platform.h"
#include "support/vb.h"

namespace qvrl::cli {

struct Context {
    int exitCode = 0;
    std::string language;  // "", "deu" or "eng"
};

void AddListsCommand(CLI::App& app, Context& ctx);
void AddCallCommand(CLI::App& app, Context& ctx);
void AddBlocksCommand(CLI::App& app, Context& ctx);
void AddDbCommand(CLI::App& app, Context& ctx);
void AddDbContoursCommand(CLI::App& import, Context& ctx);
void AddTownCommands(CLI::App& app, Context& ctx);
void AddSiteCommand(CLI::App& app, Context& ctx);
void AddCpCommand(CLI::App& app, Context& ctx);
void AddSessionCommand(CLI::App& app, Context& ctx);

// A tagged value as `call` prints it, and a command-line word as `call`
// reads it (JSON where it parses, else a text; position names it in errors).
nlohmann::ordered_json VariantToJson(const Variant& v);
Variant VariantFromWord(const std::string& word, size_t position);

// The loop of `call --jsonl`: one answer line per request line, blank lines
// skipped, objects kept for the whole input.
void AnswerCallRequests(std::istream& in, std::ostream& out);
// The loop of `cp --jsonl`, alike: one roof object for the whole input.
void AnswerCpRequests(std::istream& in, std::ostream& out);
// Before a batch loop: the standard streams leave stdio's line-by-line
// synchronisation and reading no longer flushes the answers, so the loops
// decide when to write.
void BatchStreams();

void AddShowCommand(CLI::App& app, Context& ctx);

// The live load catalogue (cmd_liveloads.cpp).
void AddLiveLoadsCommand(CLI::App& app, Context& ctx);

// A database the answer rests on that did not open ends the command (true:
// the error is printed, on standard output too as JSON when asked). The
// user's corrections that did not open leave the shipped values standing:
// they are printed with a warning, and status 1 keeps a script from taking
// them for corrected ones.
bool StopOnDataFailure(const StoreFailure& f, const char* command, bool json);
int WarnOnCorrections(const StoreFailure& f, const char* command, int status);

// Applies --lang after the language objects are set up.
void ApplyLanguage(const Context& ctx);

// Adds --db FILE to a look-up command. Returns where the value goes.
CLI::Option* AddDbOption(CLI::App& cmd, std::string& db);
// Points the look-ups at the --db file, if one was given. False, with the
// reason printed, when it is no file.
bool ApplyDbOption(const std::string& db, const char* command);

}  // namespace qvrl::cli
