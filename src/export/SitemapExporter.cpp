#include "export/SitemapExporter.h"

#include <chrono>
#include <ctime>
#include <filesystem>

#include "app/ProcessState.h"
#include "editors/SitemapLayouts.h"
#include "export/BrokenLinksReport.h"
#include "export/ExportFile.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "sitemap/BrokenLinkDetails.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sites/DataPaths.h"

namespace loomcrest {

namespace {

// The boxes' files, in box order.
constexpr std::array<std::string_view, 6> kBoxFiles = {kThreeColumnAllLinks, kTwoColumnAllLinks,
                                                       kOneColumnAllLinks,   kThreeColumnPagesOnly,
                                                       kTwoColumnPagesOnly,  kOneColumnPagesOnly};

constexpr std::chrono::milliseconds kBarInterval{50};

const SaveFileRequest kHtmlSave{"sitemap.html", {"html", "php", "asp", "htm"}, true};
const SaveFileRequest kBrokenHtmlSave{"brokenLinksExport.html", {"html"}, true};
const SaveFileRequest kBrokenTextSave{"brokenLinksExport.txt", {"txt"}, true};
const SaveFileRequest kBrokenCsvSave{"brokenLinksExport.csv", {"csv"}, true};

}  // namespace

SitemapExporter::SitemapExporter(ProcessState& process, ExportView& view, AlertPresenter& alerts,
                                 UiThread& ui)
    : process_(process), view_(view), alerts_(alerts), ui_(ui) {}

SitemapExporter::~SitemapExporter() {
    waitForExport();
}

void SitemapExporter::chooseLayout(Box box) {
    boxes_.fill(false);
    boxes_[box] = true;
}

void SitemapExporter::exportHTMLSitemaps() {
    expMax_ = 20;
    expCurrent_ = 1;
    view_.showExportPanel(true);
    start(Kind::HTML);
}

void SitemapExporter::exportXMLSitemap() {
    view_.setProgressIndeterminate(true);
    view_.showExportPanel(true);
    start(Kind::XML);
}

void SitemapExporter::exportBrokenAsHTMLAction() {
    start(Kind::BrokenHTMLExport);
}

void SitemapExporter::exportBrokenAsTXTAction() {
    start(Kind::BrokenTXTExport);
}

void SitemapExporter::exportBrokenAsCSVAction() {
    start(Kind::BrokenCSVExport);
}

void SitemapExporter::start(Kind kind) {
    waitForExport();
    repairDeclined_ = false;
    worker_ = std::thread([this, kind] { exportSitemaps(kind); });
}

void SitemapExporter::waitForExport() {
    if (worker_.joinable()) {
        worker_.join();
    }
}

std::string SitemapExporter::siteFolder() const {
    return siteFolderLocation(selectedSite_);
}

void SitemapExporter::exportSitemaps(Kind kind) {
    if (selectedSite_.empty()) {
        ui_.performAndWait([this] { view_.showExportPanel(false); });
        return;
    }
    switch (kind) {
        case Kind::HTML:
            for (size_t box = 0; box < boxes_.size(); ++box) {
                if (!boxes_[box]) {
                    continue;
                }
                const std::string path = siteFolder() + "/" + std::string(kBoxFiles[box]);
                if (!pathExists(path)) {
                    ui_.performAndWait([this] {
                        view_.showExportPanel(false);
                        reportMissingSitemap();
                    });
                } else {
                    processAndRemoveLINKID(path);
                }
            }
            return;
        case Kind::BrokenHTMLExport:
            ui_.performAndWait(
                [this] { save(kBrokenHtmlSave, brokenLinksHtml(process_.vrlmpBadLinkArray)); });
            return;
        case Kind::BrokenTXTExport:
            ui_.performAndWait(
                [this] { save(kBrokenTextSave, brokenLinksText(process_.vrlmpBadLinkArray)); });
            return;
        case Kind::BrokenCSVExport:
            ui_.performAndWait([this] {
                const BrokenLinkReport report =
                    readBrokenLinkReport(siteFolder(), process_.vrlmpBadLinkArray);
                save(kBrokenCsvSave, brokenLinkDetailsCsv(report.rows));
            });
            return;
        case Kind::XML:
            exportXml();
            return;
    }
}

void SitemapExporter::processAndRemoveLINKID(const std::string& path) {
    const auto text = readTextFile(path);
    if (!text) {
        ui_.performAndWait([this] {
            view_.showExportPanel(false);
            reportUnreadableSitemap();
        });
        return;
    }
    const std::vector<std::string> lines = split(*text, '\n');
    expMax_ = lines.size();
    updateExportBar(true);
    std::string output;
    output.reserve(text->size());
    for (size_t i = 0; i < lines.size(); ++i) {
        expCurrent_ = i;
        updateExportBar(i + 1 == lines.size());
        if (i > 0) {
            output += '\n';
        }
        output += withoutLinkMarkers(lines[i]);
    }
    ui_.performAndWait([this, &output] {
        view_.showExportPanel(false);
        save(kHtmlSave, output);
    });
}

// Each update waits for the interface thread, so a long file moves the bar only as often as
// a person could see it move.
void SitemapExporter::updateExportBar(bool force) {
    const auto now = std::chrono::steady_clock::now();
    if (!force && now - lastBarUpdate_ < kBarInterval) {
        return;
    }
    lastBarUpdate_ = now;
    ui_.performAndWait([this] { view_.updateExportBar(expMax_, expCurrent_); });
}

void SitemapExporter::reportMissingSitemap() {
    alerts_.presentAlert(Alert::refusal("The sitemap you are trying to export could not be found, "
                                        "please make sure you have scanned your site before "
                                        "exporting."),
                         [](int) {});
}

void SitemapExporter::reportUnreadableSitemap() {
    alerts_.presentAlert(Alert::refusal("An error has occurred while exporting your sitemap, you "
                                        "may need to re-scan the site.\n",
                                        "If this problem persists, please contact support."),
                         [](int) {});
}

void SitemapExporter::save(const SaveFileRequest& request, const std::string& contents) {
    if (const auto chosen = view_.chooseSaveFile(request)) {
        if (const auto failure = writeExportFile(*chosen, contents)) {
            alerts_.presentAlert(exportWriteRefusal(*failure), [](int) {});
        }
    }
}

void SitemapExporter::copyFile(const std::string& source, const std::string& destination,
                               std::string_view extension) {
    std::string target = destination;
    if (pathExists(target)) {
        while (!target.empty()) {
            const char removed = target.back();
            target.pop_back();
            if (removed == '.') {
                break;
            }
        }
        const time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        std::array<char, 16> stamp{};
        std::strftime(stamp.data(), stamp.size(), "_%H%M%S", &local);
        target += stamp.data();
        target += extension;
    }
    std::error_code ignored;
    std::filesystem::copy_file(source, target, std::filesystem::copy_options::overwrite_existing,
                               ignored);
}

void SitemapExporter::saveEditedSitemapContent(std::string_view text, const std::string& path) {
    writeFileAtomically(path, text);
}

}  // namespace loomcrest
