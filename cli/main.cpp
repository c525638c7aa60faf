#include <iostream>

#include "commands.h"
#include "support/errors.h"

int main(int argc, char** argv) {
    CLI::App app{"QVRoofLoad: snow, wind, dead and live loads on roofs (DIN 1055, EN 1991-1-3/-1-4)", "qvroofload"};
    app.require_subcommand(1);
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
    qvrl::cli::AddShowCommand(app, ctx);
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
        return app.exit(e);
    } catch (const qvrl::RuntimeError& e) {
        std::cerr << "qvroofload: error " << e.number() << ": " << e.description() << "\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "qvroofload: " << e.what() << "\n";
        return 1;
    }
    return ctx.exitCode;
}
