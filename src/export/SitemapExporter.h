#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "export/ExportFile.h"
#include "platform/Alerts.h"
#include "platform/UiThread.h"

namespace loomcrest {

struct ProcessState;

// A save dialog's question: where to write, with a proposed name and the file types allowed.
struct SaveFileRequest {
    std::string proposedName;
    std::vector<std::string> allowedTypes;
    bool extensionHidden = true;
};

// The export view's panel, progress bar and save dialogs. Every call comes on the
// user-interface thread.
class ExportView {
public:
    virtual ~ExportView() = default;
    virtual void showExportPanel(bool shown) = 0;
    virtual void setProgressIndeterminate(bool indeterminate) = 0;
    virtual void updateExportBar(uint64_t maximum, uint64_t current) = 0;
    // The chosen path, or nothing when the user cancels.
    virtual std::optional<std::string> chooseSaveFile(const SaveFileRequest& request) = 0;
};

// Exports a scanned site's files for publication: one HTML layout without its LINKID
// markers, the XML sitemap without empty elements, or the broken-links list as HTML, text
// or CSV. Each export runs on a worker thread of its own; the dialogs and the writing happen
// on the user-interface thread, except for the XML sitemap's files, which the worker writes
// once the user has chosen where. An XML sitemap that is not well formed is offered with its
// bare "&" escaped, and one too big for a single file is written as a sitemap index with its
// parts beside it. A file that cannot be written is refused with the system's reason.
class SitemapExporter {
public:
    enum class Kind { HTML, XML, BrokenHTMLExport, BrokenTXTExport, BrokenCSVExport };
    // The six layout boxes, in the order an export visits them.
    enum Box { threeCSF, twoCSF, oneCSF, threeCST, twoCST, oneCST };

    // The broken-links exports write out `process.vrlmpBadLinkArray`.
    SitemapExporter(ProcessState& process, ExportView& view, AlertPresenter& alerts, UiThread& ui);
    SitemapExporter(const SitemapExporter&) = delete;
    SitemapExporter& operator=(const SitemapExporter&) = delete;
    ~SitemapExporter();

    // The site picker's selected title.
    void setSelectedSite(std::string site) { selectedSite_ = std::move(site); }
    // The boxes act as one radio group: turning one on turns the others off.
    void chooseLayout(Box box);
    bool isChosen(Box box) const { return boxes_[box]; }

    void exportHTMLSitemaps();
    void exportXMLSitemap();
    void exportBrokenAsHTMLAction();
    void exportBrokenAsTXTAction();
    // The broken links with their details from "brokenLinks.tsv", as comma-separated values.
    void exportBrokenAsCSVAction();
    // Waits for the export that is running.
    void waitForExport();
    // A question the running export waits for is taken as answered "Cancel": the window
    // that would show it is going away.
    void abandonQuestions();

    // Whether a split sitemap's parts are written gzip-compressed (".xml.gz").
    void setCompressParts(bool compress) { compressParts_ = compress; }
    bool compressParts() const { return compressParts_; }
    // Whether the last XML export stopped because the user declined to escape bare "&".
    bool ampersandRepairDeclined() const { return repairDeclined_; }

    // The worker's part; public so that a front end may run it on a thread of its own.
    void exportSitemaps(Kind kind);
    void processAndRemoveLINKID(const std::string& path);

    // Copies `source` to `destination`; an existing destination gets the time "_HHMMSS"
    // and `extension` in place of its last extension.
    static void copyFile(const std::string& source, const std::string& destination,
                         std::string_view extension);
    static void saveEditedSitemapContent(std::string_view text, const std::string& path);

private:
    struct PendingAnswer;

    void start(Kind kind);
    void exportXml();
    bool makeWellFormed(std::string& sitemap);
    bool writeXmlFiles(const std::string& file, const std::vector<std::string>& parts);
    // Tells the user why an export file was not written; always false.
    bool refuseFromWorker(const ExportWriteFailure& failure);
    bool writeFromWorker(const std::string& path, std::string_view bytes);
    void closePanel();
    int askAndWait(const Alert& question);
    void reportMissingSitemap();
    void reportUnreadableSitemap();
    void updateExportBar(bool force);
    void save(const SaveFileRequest& request, const std::string& contents);
    std::string siteFolder() const;

    ProcessState& process_;
    ExportView& view_;
    AlertPresenter& alerts_;
    UiThread& ui_;
    std::string selectedSite_;
    std::array<bool, 6> boxes_{true, false, false, false, false, false};
    std::thread worker_;
    std::atomic<bool> compressParts_{false};
    std::atomic<bool> repairDeclined_{false};
    std::atomic<bool> questionsAbandoned_{false};
    std::mutex pendingMutex_;
    std::shared_ptr<PendingAnswer> pendingAnswer_;
    std::atomic<uint64_t> expMax_{0};
    std::atomic<uint64_t> expCurrent_{0};
    std::chrono::steady_clock::time_point lastBarUpdate_;
};

}  // namespace loomcrest
