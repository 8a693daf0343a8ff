// The XML sitemap's part of SitemapExporter: checked, repaired when the user agrees, split
// when too big for one file, and written by the worker.
#include <condition_variable>
#include <thread>

#include "export/ExportFile.h"
#include "export/Gzip.h"
#include "export/SitemapExporter.h"
#include "export/SitemapSplit.h"
#include "export/XmlExportText.h"
#include "platform/FileSystem.h"
#include "platform/HtmlDocument.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/SitemapValues.h"
#include "sitemap/StrictXml.h"
#include "sites/SiteFile.h"

namespace loomcrest {

namespace {

// The XML sitemap waits this long before it is processed.
constexpr std::chrono::seconds kXmlPause{1};

const SaveFileRequest kXmlSave{"sitemap.xml", {"xml"}, true};

std::string fileNameOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string splitNote(const std::string& file, const std::vector<std::string>& partPaths) {
    return "\"" + fileNameOf(file) + "\" is a sitemap index of " +
           std::to_string(partPaths.size()) + " parts beside it, \"" +
           fileNameOf(partPaths.front()) + "\" to \"" + fileNameOf(partPaths.back()) +
           "\": one file may hold at most 50,000 URLs and 50 MB.";
}

std::string emptyDatesNote(size_t count) {
    const std::string dates =
        count == 1 ? " empty last-modified date was" : " empty last-modified dates were";
    return groupedDigits(count) + dates +
           " left out: search engines take an empty date as an invalid one.";
}

}  // namespace

// The answer to a question, handed from the user-interface thread to the worker.
struct SitemapExporter::PendingAnswer {
    void give(int code) {
        const std::lock_guard lock(mutex);
        if (!answer) {
            answer = code;
            answered.notify_all();
        }
    }
    int wait() {
        std::unique_lock lock(mutex);
        answered.wait(lock, [this] { return answer.has_value(); });
        return *answer;
    }

    std::mutex mutex;
    std::condition_variable answered;
    std::optional<int> answer;
};

void SitemapExporter::exportXml() {
    const std::string path = siteFolder() + "/" + std::string(kXmlSitemap);
    if (!pathExists(path)) {
        // The panel stays as it is.
        ui_.performAndWait([this] { reportMissingSitemap(); });
        return;
    }
    auto raw = readTextFile(path);
    std::this_thread::sleep_for(kXmlPause);
    if (!raw) {
        ui_.performAndWait([this] {
            closePanel();
            reportUnreadableSitemap();
        });
        return;
    }
    // Checked before the empty elements go, so that the lines named are the file's own.
    std::string sitemap = std::move(*raw);
    if (!makeWellFormed(sitemap)) {
        return;
    }
    const XmlExportText prepared = xmlSitemapForExport(sitemap);
    const std::vector<std::string> parts = splitSitemap(prepared.text);
    std::optional<std::string> chosen;
    ui_.performAndWait([this, &chosen] {
        closePanel();
        chosen = view_.chooseSaveFile(kXmlSave);
    });
    if (!chosen || !writeXmlFiles(*chosen, parts)) {
        return;
    }
    std::vector<std::string> notes;
    if (parts.size() > 1) {
        std::vector<std::string> partPaths;
        for (size_t i = 1; i <= parts.size(); ++i) {
            partPaths.push_back(sitemapPartPath(*chosen, i, compressParts_));
        }
        notes.push_back(splitNote(*chosen, partPaths));
    }
    if (prepared.emptyDatesLeftOut > 0) {
        notes.push_back(emptyDatesNote(prepared.emptyDatesLeftOut));
    }
    if (!notes.empty()) {
        Alert note;  // Information, with the one button "OK"
        note.title = "The XML sitemap was exported.";
        note.message = notes.front();
        for (size_t i = 1; i < notes.size(); ++i) {
            note.message += "\n" + notes[i];
        }
        ui_.performAndWait([this, &note] { alerts_.presentAlert(note, [](int) {}); });
    }
}

// A sitemap that is not well formed goes out only when escaping its bare "&" repairs it and
// the user agrees; the site's own file keeps them.
bool SitemapExporter::makeWellFormed(std::string& sitemap) {
    const auto error = xmlSyntaxError(sitemap);
    if (!error) {
        return true;
    }
    std::string repaired = escapeBareAmpersands(sitemap);
    // Escaping changes no line, so what is left wrong is named by its line in the file.
    if (const auto remaining = xmlSyntaxError(repaired)) {
        const std::string reason =
            "Line " + std::to_string(remaining->line) + ": " + remaining->reason;
        ui_.performAndWait([this, &reason] {
            closePanel();
            alerts_.presentAlert(
                Alert::refusal("The XML sitemap is not well formed, so it was not exported.",
                               reason + "."),
                [](int) {});
        });
        return false;
    }
    ui_.performAndWait([this] { closePanel(); });
    const int answer = askAndWait(Alert::question(
        "The XML sitemap is not well formed: line " + std::to_string(error->line) +
            " holds a bare \"&\".",
        "Export it with every bare \"&\" written as \"&amp;\"? The site's own sitemap.xml "
        "stays as it is.",
        "Fix and Export", "Cancel"));
    if (answer != kDefaultButtonCode) {
        repairDeclined_ = true;
        return false;
    }
    sitemap = std::move(repaired);
    return true;
}

bool SitemapExporter::writeXmlFiles(const std::string& file,
                                    const std::vector<std::string>& parts) {
    if (parts.size() == 1) {
        return writeFromWorker(file, parts.front());
    }
    const bool compress = compressParts_;
    std::vector<std::string> partPaths;
    std::vector<std::string> compressedParts;
    for (size_t i = 0; i < parts.size(); ++i) {
        partPaths.push_back(sitemapPartPath(file, i + 1, compress));
        if (!compress) {
            continue;
        }
        auto compressed = gzipCompressed(parts[i]);
        if (!compressed) {
            return refuseFromWorker({partPaths.back(), "The file could not be compressed"});
        }
        compressedParts.push_back(std::move(*compressed));
    }
    const std::string siteUrl =
        readSiteField(readSiteFile(selectedSite_), SiteField::SiteURL).value_or("");
    const std::string index = sitemapIndex(siteUrl, partPaths);
    std::vector<ExportFileContents> files;
    for (size_t i = 0; i < parts.size(); ++i) {
        files.push_back({partPaths[i], compress ? compressedParts[i] : parts[i]});
    }
    files.push_back({file, index});
    const auto failure = writeExportFiles(files);
    return failure ? refuseFromWorker(*failure) : true;
}

bool SitemapExporter::refuseFromWorker(const ExportWriteFailure& failure) {
    ui_.performAndWait(
        [this, &failure] { alerts_.presentAlert(exportWriteRefusal(failure), [](int) {}); });
    return false;
}

bool SitemapExporter::writeFromWorker(const std::string& path, std::string_view bytes) {
    const auto failure = writeExportFile(path, bytes);
    return failure ? refuseFromWorker(*failure) : true;
}

void SitemapExporter::closePanel() {
    view_.showExportPanel(false);
    view_.setProgressIndeterminate(false);
}

// Shown on the user-interface thread, answered there whenever the user gets to it, while the
// worker waits.
int SitemapExporter::askAndWait(const Alert& question) {
    auto pending = std::make_shared<PendingAnswer>();
    {
        const std::lock_guard lock(pendingMutex_);
        if (questionsAbandoned_) {
            return kAlternateButtonCode;
        }
        pendingAnswer_ = pending;
    }
    ui_.performAndWait([this, &question, pending] {
        alerts_.presentAlert(question, [pending](int code) { pending->give(code); });
    });
    const int answer = pending->wait();
    const std::lock_guard lock(pendingMutex_);
    pendingAnswer_.reset();
    return answer;
}

void SitemapExporter::abandonQuestions() {
    const std::lock_guard lock(pendingMutex_);
    questionsAbandoned_ = true;
    if (pendingAnswer_) {
        pendingAnswer_->give(kAlternateButtonCode);
    }
}

}  // namespace loomcrest
