#include <iostream>
#include <string>

#include "commands.h"
#include "support/errors.h"

int main(int argc, char** argv) {
    CLI::App app{"QVRoofLoad: snow, wind, dead and live loads on roofs (DIN 1055, EN 1991-1-3/-1-4)", "qvroofload"};
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("qvroofload ") + QVRL_VERSION);
    app.footer(
        "Exit status: 0 success; 1 a run-time error of a member or of the data; 2 bad usage or bad input\n"
        "(an unknown command or option, a value out of range, a malformed call).\n"
        "Results go to standard output, messages to standard error; `call` answers errors as JSON\n"
        "on standard output. Run `qvroofload COMMAND --help` for the options of a command.");
    qvrl::cli::Context ctx;
    app.add_option("--lang", ctx.language, "Language of the texts: deu or eng (default: the LanguageShell setting)")
        ->check(CLI::IsMember({"deu", "eng"}));
    qvrl::cli::AddListsCommand(app, ctx);
    qvrl::cli::AddCallCommand(app, ctx);
    qvrl::cli::AddBlocksCommand(app, ctx);
    qvrl::cli::AddDbCommand(app, ctx);
    qvrl::cli::AddTownCommands(app, ctx);
    qvrl::cli::AddSiteCommand(app, ctx);
    qvrl::cli::AddCpCommand(app, ctx);
    qvrl::cli::AddSessionCommand(app, ctx);
    qvrl::cli::AddShowCommand(app, ctx);
    qvrl::cli::AddLiveLoadsCommand(app, ctx);
    // Name an unknown command plainly instead of "a subcommand is required".
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--lang") {
            ++i;
            continue;
        }
        if (a.rfind("-", 0) == 0) continue;
        std::string known;
        bool found = false;
        for (const CLI::App* sub : app.get_subcommands({})) {
            known += (known.empty() ? "" : ", ") + sub->get_name();
            found = found || sub->get_name() == a;
        }
        if (!found) {
            std::cerr << "qvroofload: unknown command '" << a << "' (commands: " << known << ")\n";
            return 2;
        }
        break;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // CLI11 numbers its errors from 100 on; to a shell they are all bad usage.
        return app.exit(e) == 0 ? 0 : 2;
    } catch (const qvrl::RuntimeError& e) {
        std::cerr << "qvroofload: error " << e.number() << ": " << e.description() << "\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "qvroofload: " << e.what() << "\n";
        return 1;
    }
    return ctx.exitCode;
}
