#include <array>
#include <optional>
#include <utility>

#include "Commands.h"
#include "SiteSession.h"
#include "export/SitemapExporter.h"
#include "platform/ImmediateUiThread.h"

namespace loomcrest::cli {

namespace {

using Box = SitemapExporter::Box;

constexpr std::array<std::pair<std::string_view, Box>, 6> kLayoutBoxes = {{
    {"3c", Box::threeCSF},
    {"2c", Box::twoCSF},
    {"1c", Box::oneCSF},
    {"3cpo", Box::threeCST},
    {"2cpo", Box::twoCST},
    {"1cpo", Box::oneCST},
}};

// The command line's save dialog answers with the file it was given.
class FileAnswerExportView : public ExportView {
public:
    explicit FileAnswerExportView(std::string file) : file_(std::move(file)) {}
    void showExportPanel(bool) override {}
    void setProgressIndeterminate(bool) override {}
    void updateExportBar(uint64_t, uint64_t) override {}
    std::optional<std::string> chooseSaveFile(const SaveFileRequest&) override { return file_; }

private:
    std::string file_;
};

// `export NAME LAYOUT FILE`: one nested subcommand per thing to export, each naming the file
// that answers the save dialog.
class ExportCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& exporting = *parent.add_subcommand(
            "export", "Export a layout without its markers, the XML sitemap or the broken links");
        exporting.add_option("NAME", name_, "Site name")->required();
        exporting.require_subcommand(1);
        for (const auto& [code, box] : kLayoutBoxes) {
            addTarget(exporting, code, "The layout without its LINKID markers");
        }
        CLI::App& xml = addTarget(exporting, "xml",
                                  "The XML sitemap without its empty elements; one too big for a "
                                  "single file becomes a sitemap index with its parts beside it");
        xml.add_flag("--fix-ampersands", fixAmpersands_,
                     "Export a sitemap that is not well formed with every bare \"&\" written "
                     "as \"&amp;\"");
        xml.add_flag("--gzip", gzip_, "Write the parts of a split sitemap gzip-compressed");
        addTarget(exporting, "broken-html", "The broken links as an HTML page");
        addTarget(exporting, "broken-txt", "The broken links as text");
        return exporting;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        FileAnswerExportView view(file_);
        ImmediateUiThread ui;
        // The option is the answer to the question whether to escape bare "&".
        session.alerts().answerQuestionsWith([this](const Alert&) {
            return fixAmpersands_ ? kDefaultButtonCode : kAlternateButtonCode;
        });
        SitemapExporter exporter(process(), view, session.alerts(), ui);
        exporter.setSelectedSite(process().vrlmpCurSite);
        exporter.setCompressParts(gzip_);
        start(exporter);
        exporter.waitForExport();
        if (exporter.ampersandRepairDeclined()) {
            err() << "Nothing was exported. With --fix-ampersands it is exported with every "
                     "bare \"&\" written as \"&amp;\".\n";
            return kExitRefused;
        }
        return session.exitStatus();
    }

private:
    CLI::App& addTarget(CLI::App& exporting, std::string_view code,
                        const std::string& description) {
        CLI::App& target = *exporting.add_subcommand(std::string(code), description);
        target.add_option("FILE", file_, "The file to write")->required();
        target.parse_complete_callback([this, code] { target_ = code; });
        return target;
    }

    void start(SitemapExporter& exporter) {
        for (const auto& [code, box] : kLayoutBoxes) {
            if (code == target_) {
                exporter.chooseLayout(box);
                exporter.exportHTMLSitemaps();
                return;
            }
        }
        if (target_ == "xml") {
            exporter.exportXMLSitemap();
        } else if (target_ == "broken-html") {
            exporter.exportBrokenAsHTMLAction();
        } else {
            exporter.exportBrokenAsTXTAction();
        }
    }

    std::string name_;
    std::string_view target_;
    std::string file_;
    bool fixAmpersands_ = false;
    bool gzip_ = false;
};

}  // namespace

std::unique_ptr<Command> makeExportCommand(CommandContext& context) {
    return std::make_unique<ExportCommand>(context);
}

}  // namespace loomcrest::cli
