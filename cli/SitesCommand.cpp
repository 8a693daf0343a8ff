#include "Commands.h"
#include "SiteSession.h"
#include "platform/Json.h"
#include "platform/Text.h"
#include "sites/SiteFile.h"

namespace loomcrest::cli {

namespace {

// `sites [--json]`: one line per site, its fields separated by tabs, or a JSON array.
class SitesCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& sites = *parent.add_subcommand(
            "sites", "List the sites: name, start URL, pages found, total links, pages used");
        sites.add_flag("--json", json_,
                       "Print a JSON array of objects: name, url, pagesFound, totalLinks, "
                       "pagesUsed");
        return sites;
    }

    int run() override {
        SiteSession session(process(), err());
        json::Array sites;
        for (const std::string& name : session.siteList().tableArray()) {
            const std::string text = readSiteFile(name);
            const std::string url = readSiteField(text, SiteField::SiteURL).value_or("");
            const std::string pagesFound =
                countForDisplay(readSiteField(text, SiteField::PagesFound));
            const std::string totalLinks =
                countForDisplay(readSiteField(text, SiteField::TotalLinks));
            const std::string pagesUsed =
                countForDisplay(readSiteField(text, SiteField::PagesUsed));
            if (json_) {
                sites.emplace_back(json::Object{{"name", name},
                                                {"url", url},
                                                {"pagesFound", leadingIntegerValue(pagesFound)},
                                                {"totalLinks", leadingIntegerValue(totalLinks)},
                                                {"pagesUsed", leadingIntegerValue(pagesUsed)}});
            } else {
                out() << name << '\t' << url << '\t' << pagesFound << '\t' << totalLinks << '\t'
                      << pagesUsed << '\n';
            }
        }
        if (json_) {
            out() << json::write(sites, json::Layout::Indented) << '\n';
        }
        return kExitSuccess;
    }

private:
    bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> makeSitesCommand(CommandContext& context) {
    return std::make_unique<SitesCommand>(context);
}

}  // namespace loomcrest::cli
