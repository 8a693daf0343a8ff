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
        addTarget(exporting, "xml", "The XML sitemap without its empty elements");
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
        SitemapExporter exporter(process(), view, session.alerts(), ui);
        exporter.setSelectedSite(process().vrlmpCurSite);
        start(exporter);
        exporter.waitForExport();
        return session.exitStatus();
    }

private:
    void addTarget(CLI::App& exporting, std::string_view code, const std::string& description) {
        CLI::App& target = *exporting.add_subcommand(std::string(code), description);
        target.add_option("FILE", file_, "The file to write")->required();
        target.parse_complete_callback([this, code] { target_ = code; });
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
};

}  // namespace

std::unique_ptr<Command> makeExportCommand(CommandContext& context) {
    return std::make_unique<ExportCommand>(context);
}

}  // namespace loomcrest::cli
