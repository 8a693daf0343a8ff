#include "Commands.h"
#include "SiteSession.h"
#include "export/SiteSitemapCheck.h"

namespace loomcrest::cli {

namespace {

// `validate NAME [FILE]`: checks the site's sitemap.xml, or an exported FILE, against the
// rules search engines apply, one problem a line.
class ValidateCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& validate = *parent.add_subcommand(
            "validate", "Check the site's sitemap.xml (or FILE) against the sitemaps.org rules");
        validate.add_option("NAME", name_, "Site name")->required();
        validate.add_option("FILE", file_,
                            "An exported sitemap, sitemap index or .xml.gz part instead");
        return validate;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        const std::string path = file_.empty() ? siteSitemapPath(name_) : file_;
        const SitemapFileCheck check = checkSitemapFile(name_, path);
        if (check.readFailure) {
            err() << "The sitemap \"" << path << "\" could not be read: " << *check.readFailure
                  << ".\n";
            return kExitRefused;
        }
        for (const SitemapProblem& problem : check.problems) {
            out() << formatProblem(problem) << '\n';
        }
        out() << problemSummary(check.problems) << '\n';
        return hasErrors(check.problems) ? kExitRefused : kExitSuccess;
    }

private:
    std::string name_;
    std::string file_;
};

}  // namespace

std::unique_ptr<Command> makeValidateCommand(CommandContext& context) {
    return std::make_unique<ValidateCommand>(context);
}

}  // namespace loomcrest::cli
