#include "Commands.h"
#include "SiteSession.h"
#include "sites/SiteFile.h"

namespace loomcrest::cli {

namespace {

// `sites`: one line per site, its fields separated by tabs.
class SitesCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        return *parent.add_subcommand(
            "sites", "List the sites: name, start URL, pages found, total links, pages used");
    }

    int run() override {
        SiteSession session(process(), err());
        for (const std::string& name : session.siteList().tableArray()) {
            const std::string text = readSiteFile(name);
            out() << name << '\t' << readSiteField(text, SiteField::SiteURL).value_or("") << '\t'
                  << countForDisplay(readSiteField(text, SiteField::PagesFound)) << '\t'
                  << countForDisplay(readSiteField(text, SiteField::TotalLinks)) << '\t'
                  << countForDisplay(readSiteField(text, SiteField::PagesUsed)) << '\n';
        }
        return kExitSuccess;
    }
};

}  // namespace

std::unique_ptr<Command> makeSitesCommand(CommandContext& context) {
    return std::make_unique<SitesCommand>(context);
}

}  // namespace loomcrest::cli
