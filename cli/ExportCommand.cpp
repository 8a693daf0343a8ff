#include "ExportCommand.h"

#include <array>
#include <utility>

#include "SiteCommands.h"
#include "SiteSession.h"
#include "app/ProcessState.h"
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

}  // namespace

int exportSitemap(const std::string& name, const std::string& layout, const std::string& file,
                  std::ostream& err) {
    std::optional<Box> box;
    for (const auto& [code, layoutBox] : kLayoutBoxes) {
        if (code == layout) {
            box = layoutBox;
        }
    }
    if (!box && layout != "xml" && layout != "broken-html" && layout != "broken-txt") {
        err << "LAYOUT must be one of 3c, 2c, 1c, 3cpo, 2cpo, 1cpo, xml, broken-html, "
               "broken-txt.\n";
        return kExitUsage;
    }
    SiteSession session(err);
    if (!session.selectSite(name)) {
        return kExitRefused;
    }
    FileAnswerExportView view(file);
    ImmediateUiThread ui;
    SitemapExporter exporter(view, session.alerts(), ui);
    exporter.setSelectedSite(vrlmpCurSite);
    if (box) {
        exporter.chooseLayout(*box);
        exporter.exportHTMLSitemaps();
    } else if (layout == "xml") {
        exporter.exportXMLSitemap();
    } else if (layout == "broken-html") {
        exporter.exportBrokenAsHTMLAction();
    } else {
        exporter.exportBrokenAsTXTAction();
    }
    exporter.waitForExport();
    return session.alerts().anyAlertShown() ? kExitRefused : kExitSuccess;
}

}  // namespace loomcrest::cli
