#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "crawler/BrokenLinkRecorder.h"
#include "crawler/CrawlSettings.h"
#include "crawler/LinkExplanations.h"
#include "crawler/LinkJudge.h"
#include "crawler/ScanSheetView.h"
#include "crawler/SiteScanner.h"
#include "platform/Alerts.h"
#include "platform/Cancellation.h"
#include "platform/FolderLock.h"
#include "platform/HtmlDocument.h"
#include "platform/Http.h"
#include "platform/UiThread.h"
#include "sitemap/PageTitles.h"

namespace loomcrest {

struct ProcessState;
class ScanViewController;
class FetchAhead;
struct FetchedPage;

// Runs a scan of the selected site: on the user-interface thread it locks the site's folder,
// keeps the previous sitemaps, recreates the sitemap files, probes the start URL and reads
// robots.txt, then crawls on one worker thread that reaches the views only through the
// UiThread, and closes the files at the end. A write that fails stops the scan as Cancel
// does; the files then go back to the previous set and an alert names the file and why.
// The site's crawl settings say how: pages further down the list are fetched ahead, on one
// thread for each connection, while the worker still deals with them strictly in list
// order, so the files, figures and requests are those of a crawl that fetched each page
// only when it came to it; with one connection even the order of the requests is.
class ScanDriver {
public:
    ScanDriver(ProcessState& process, ScanViewController& siteView, ScanSheetView& sheet,
               AlertPresenter& alerts, UiThread& ui);
    ScanDriver(const ScanDriver&) = delete;
    ScanDriver& operator=(const ScanDriver&) = delete;
    // Waits for a running crawl to notice that it should stop.
    ~ScanDriver();

    // The Scan button. Returns at once; the crawl goes on on its worker thread.
    void scanSiteAction();
    // The progress sheet's Cancel button: the crawl stops at its next check, requests under
    // way and waits for a turn or a retry are broken off.
    void cancelScan();
    // Settings for the next scan alone, in place of the site's "crawl.json".
    void useCrawlSettingsOnce(CrawlSettings settings) {
        settingsForNextScan_ = std::move(settings);
    }
    // Whether a worker is crawling or closing the files.
    bool isScanning() const { return scanning_; }

    // User-interface thread: the progress sheet, the scanned-links list, the total-links
    // field, the progress sheet put away and back around the warning, the end panel, the
    // drawer.
    void updateScanSheet();
    void updateScanLinksList(const std::string& url);
    void updateTotLink();
    void loopingError(const std::string& command);
    void sheetDidEndShouldStopScan(int returnCode);
    void endStartAlert();
    void endStopAlert();
    void reopenFilterDrawer();
    void pause() {}

    // The crawl loop; runs on the worker thread.
    void extractLinksFromPage();
    // The end of a scan; runs on the worker thread.
    void scanFinished();
    // User-interface thread: statistics into the window and the site file, "badLinks.txt".
    WriteResult updateAllScanDetails();

    SiteScanner& scanner() { return scanner_; }

    // How often the crawl refreshes the views while a page is busy: the figures a person
    // can read do not change faster, and each refresh makes the crawl wait for the
    // user-interface thread. Zero refreshes them at every step.
    void setViewRefreshInterval(std::chrono::milliseconds interval) { refreshInterval_ = interval; }
    int32_t pagesDealtWith() const { return ssf_; }
    // Where the next scans write every link they do not queue; null for nowhere. Written on
    // the worker thread; the caller finishes the file once the scan has ended.
    void explainSkippedLinks(LinkExplanations* explanations) { explanations_ = explanations; }
    // The details of the last scan's broken pages; read once it has ended.
    std::vector<BrokenLinkDetail> brokenLinkDetails() const {
        return brokenLinkRecorder_.details(scanner_.uniquePagesLeftMArray);
    }

private:
    void startWorker();
    void prepareCrawlSession();
    void stopScan();
    void resetForScan();
    bool startSitemapFiles();
    void abandonStart(const WriteResult& failure);
    void reportUnreachable();
    void reportWriteFailure(const WriteResult& failure);
    void handOverBrokenLinks();
    void finishSitemapFiles(WriteResult written);
    void warnAboutQueryMarks();
    FetchedPage fetchPageAhead(const std::string& url, bool oneConnection);
    bool crawlNextPage(size_t place, FetchAhead& ahead);
    FetchedPage takePage(size_t place, FetchAhead& ahead);
    void crawlPage(size_t place, const std::string& url, FetchedPage& fetched);
    void extractLinks(size_t place, std::vector<PreparedLink>& links);
    void noteLinkForBrokenPages(size_t place, const LinkDecision& decision,
                                std::string_view linkText);
    void afterPage();
    void refreshScanSheet(bool force);
    void refreshTotalLinks(bool force);
    void refreshScannedLinks(bool force);
    void schedulePause();
    std::string siteFolder() const;

    ProcessState& process_;
    ScanViewController& siteView_;
    ScanSheetView& sheet_;
    AlertPresenter& alerts_;
    UiThread& ui_;
    SiteScanner scanner_;
    std::thread worker_;

    // Flags shared between the threads.
    std::atomic<bool> terminateScan_{false};
    std::atomic<bool> scanning_{false};
    std::atomic<int32_t> ssf_{0};
    std::atomic<bool> totalLinksUpdateQueued_{false};
    // Set while the multiple-"?" warning may still be shown, and again when it is answered.
    std::atomic<bool> errCont_{false};
    std::mutex answerMutex_;
    std::condition_variable answered_;
    // Given by any thread; breaks off the requests of the scan and their waits.
    Cancellation cancellation_;
    // Made on the user-interface thread before the worker starts and left alone until it
    // has ended; the worker and its fetching pool read them.
    CrawlSettings crawlSettings_;
    std::unique_ptr<http::Session> session_;
    // With fetch-once, the start page's answer to the probe, taken by the crawl.
    std::optional<http::Response> startAnswer_;

    // Worker thread only.
    std::chrono::steady_clock::time_point lastSheetRefresh_;
    std::chrono::steady_clock::time_point lastTotalLinksRefresh_;
    std::chrono::steady_clock::time_point lastScannedLinksRefresh_;
    std::vector<std::string> pendingScannedLinks_;
    std::chrono::milliseconds refreshInterval_{50};
    std::string sitemapFolder_;
    // Broken pages found so far; the user-interface thread takes the new ones over while the
    // worker waits for it.
    std::vector<std::string> brokenLinks_;
    size_t brokenLinksHandedOver_ = 0;
    BrokenLinkRecorder brokenLinkRecorder_;
    LinkExplanations* explanations_ = nullptr;
    // Made from the scanner's rules when the crawl starts.
    std::optional<LinkJudge> judge_;

    // User-interface thread only.
    bool reopenFilterDrawer_ = false;
    std::optional<CrawlSettings> settingsForNextScan_;
    std::vector<std::string> fileLocationsArray_;
    // Held from the start of a scan until its last file is written.
    std::optional<FolderLock> siteLock_;
    // Set by finishSitemapFiles; the worker reads it once it has waited for that.
    WriteResult writeFailure_;
};

}  // namespace loomcrest
