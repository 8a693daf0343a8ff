#include "Commands.h"
#include "CrawlOptions.h"
#include "SiteSession.h"
#include "crawler/CrawlSettingsFile.h"
#include "sites/DataPaths.h"

namespace loomcrest::cli {

namespace {

// `settings NAME [options]`: prints the site's crawl settings; with options, changes and
// saves them first.
class SettingsCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& settings = *parent.add_subcommand(
            "settings", "Print the site's crawl settings, or change them with the options");
        settings.add_option("NAME", name_, "Site name")->required();
        options_.addTo(settings);
        return settings;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        const std::string folder = siteFolderLocation(name_);
        CrawlSettingsRead read = readCrawlSettings(folder);
        if (read.problem) {
            session.alerts().presentAlert(unreadableCrawlSettingsAlert(folder, *read.problem), {});
        }
        if (options_.anyGiven()) {
            if (const auto problem = options_.applyTo(read.settings)) {
                session.alerts().presentAlert(refusedCrawlSettingsAlert(*problem), {});
                return kExitRefused;
            }
            if (const WriteResult written = writeCrawlSettings(folder, read.settings); !written) {
                session.alerts().presentAlert(unwritableCrawlSettingsAlert(written), {});
                return kExitRefused;
            }
        }
        printCrawlSettings(out(), read.settings);
        return kExitSuccess;
    }

private:
    std::string name_;
    CrawlOptions options_;
};

}  // namespace

std::unique_ptr<Command> makeSettingsCommand(CommandContext& context) {
    return std::make_unique<SettingsCommand>(context);
}

}  // namespace loomcrest::cli
