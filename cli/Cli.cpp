#include "Cli.h"

#include <CLI/CLI.hpp>
#include <utility>
#include <vector>

#include "Commands.h"

namespace loomcrest::cli {

int runLoomcrest(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    ProcessState process;
    CommandContext context{out, err, process};
    CLI::App app{"Loomcrest: sitemaps for the sites you run.", "loomcrest"};
    app.set_version_flag("--version", std::string{"loomcrest "} + LOOMCREST_VERSION);
    app.require_subcommand(1);

    std::vector<std::unique_ptr<Command>> commands;
    for (const auto make :
         {makeSitesCommand, makeAddCommand, makeEditCommand, makeDeleteCommand, makeShowCommand,
          makeRobotsCommand, makeSettingsCommand, makeScanCommand, makeRestoreCommand,
          makeDemoCommand, makeXmlCommand, makeHtmlCommand, makeExportCommand, makeBrokenCommand,
          makeValidateCommand, makeFiltersCommand}) {
        commands.push_back(make(context));
    }
    std::vector<std::pair<CLI::App*, Command*>> subcommands;
    for (const auto& command : commands) {
        subcommands.emplace_back(&command->configure(app), command.get());
    }
    // Set after the commands, which would otherwise each repeat it in their help.
    app.footer(
        "Exit status:\n"
        "  0    the command did what was asked\n"
        "  1    refused or failed (an alert or a message on standard error says why)\n"
        "  2    usage error\n"
        "  3    scan --fail-on-broken: the scan finished and found broken links\n"
        "  130  a scan stopped by Ctrl-C");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int status = app.exit(error, out, err);
        return status == static_cast<int>(CLI::ExitCodes::Success) ? kExitSuccess : kExitUsage;
    }
    for (const auto& [subcommand, command] : subcommands) {
        if (subcommand->parsed()) {
            return command->run();
        }
    }
    return kExitUsage;
}

}  // namespace loomcrest::cli
