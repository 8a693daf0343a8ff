#include <map>

#include "BrokenLinksOutput.h"
#include "Commands.h"
#include "SiteSession.h"
#include "sites/DataPaths.h"

namespace loomcrest::cli {

namespace {

const std::map<std::string, BrokenLinksFormat> kFormats = {{"text", BrokenLinksFormat::Text},
                                                           {"tsv", BrokenLinksFormat::Tsv},
                                                           {"csv", BrokenLinksFormat::Csv},
                                                           {"json", BrokenLinksFormat::Json}};

// `broken NAME [--format text|tsv|csv|json]`: the broken pages of the last scan, with why
// each failed and where it was linked from.
class BrokenCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& broken = *parent.add_subcommand(
            "broken",
            "The broken pages of the last scan: URL, status, the first page linking to it, "
            "that link's text and how many links pointed to it");
        broken.add_option("NAME", name_, "Site name")->required();
        broken
            .add_option("--format", format_,
                        "text (the default, aligned columns), tsv, csv or json")
            ->check(CLI::IsMember({"text", "tsv", "csv", "json"}));
        return broken;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        const BrokenLinkReport report =
            readBrokenLinkReport(siteFolderLocation(name_), process().vrlmpBadLinkArray);
        printBrokenLinks(out(), report, kFormats.at(format_));
        return kExitSuccess;
    }

private:
    std::string name_;
    std::string format_ = "text";
};

}  // namespace

std::unique_ptr<Command> makeBrokenCommand(CommandContext& context) {
    return std::make_unique<BrokenCommand>(context);
}

}  // namespace loomcrest::cli
