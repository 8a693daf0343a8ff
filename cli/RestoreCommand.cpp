#include "Commands.h"
#include "SiteSession.h"
#include "sites/SitemapRestore.h"

namespace loomcrest::cli {

namespace {

// `restore NAME`: puts back the sitemaps of the scan before the last, answering the
// question with "Restore".
class RestoreCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& restore = *parent.add_subcommand(
            "restore", "Put back the sitemaps and statistics of the scan before the last");
        restore.add_option("NAME", name_, "Site name")->required();
        return restore;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        SitemapRestore(session.siteList(), session.alerts()).restorePreviousSitemaps();
        return session.exitStatus();
    }

private:
    std::string name_;
};

}  // namespace

std::unique_ptr<Command> makeRestoreCommand(CommandContext& context) {
    return std::make_unique<RestoreCommand>(context);
}

}  // namespace loomcrest::cli
