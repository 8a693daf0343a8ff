#include "Commands.h"
#include "SiteSession.h"

namespace loomcrest::cli {

namespace {

// `show NAME`: selects the site as a click in the list would, then prints its details.
class ShowCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& show = *parent.add_subcommand("show", "Select a site and print its details");
        show.add_option("NAME", name_, "Site name")->required();
        return show;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        const ScanViewState& state = session.siteList().state();
        const SiteDetailsFields& details = state.details;
        out() << "Name: " << details.siteName << '\n'
              << "URL: " << details.siteURL << '\n'
              << "Ignore robots: " << (state.ignoreRobotsChecked ? "yes" : "no") << '\n'
              << "Total links: " << details.totalLinksFound << '\n'
              << "Pages found: " << details.pagesFound << '\n'
              << "Pages used: " << details.linksScanned << '\n'
              << "Broken links: " << details.brokenLinks << '\n';
        return kExitSuccess;
    }

private:
    std::string name_;
};

}  // namespace

std::unique_ptr<Command> makeShowCommand(CommandContext& context) {
    return std::make_unique<ShowCommand>(context);
}

}  // namespace loomcrest::cli
