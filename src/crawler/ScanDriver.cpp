#include "crawler/ScanDriver.h"

#include "app/ProcessState.h"
#include "crawler/CrawlDelay.h"
#include "crawler/CrawlSettingsFile.h"
#include "platform/Http.h"
#include "sitemap/PreviousSitemaps.h"
#include "sitemap/SitemapFiles.h"
#include "sites/DataPaths.h"
#include "sites/ScanViewController.h"
#include "sites/SiteFile.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

constexpr std::chrono::milliseconds kPauseDelay{500};
constexpr std::string_view kFilesNotWritten = "The sitemap files could not be written.";

}  // namespace

ScanDriver::ScanDriver(ProcessState& process, ScanViewController& siteView, ScanSheetView& sheet,
                       AlertPresenter& alerts, UiThread& ui)
    : process_(process),
      siteView_(siteView),
      sheet_(sheet),
      alerts_(alerts),
      ui_(ui),
      scanner_(process) {}

ScanDriver::~ScanDriver() {
    stopScan();
    if (worker_.joinable()) {
        worker_.join();
    }
}

void ScanDriver::scanSiteAction() {
    if (scanning_ || process_.vrlmpCurSite.empty()) {
        return;
    }
    if (worker_.joinable()) {
        worker_.join();
    }
    siteLock_ = lockSiteForChange(process_.vrlmpCurSite, kFilesNotWritten, alerts_);
    if (!siteLock_) {
        return;
    }

    reopenFilterDrawer_ = siteView_.state().filterDrawerOpen;
    if (reopenFilterDrawer_) {
        siteView_.setFilterDrawerOpen(false);
    }
    siteView_.setScanControlsEnabled(false);
    resetForScan();
    sitemapFolder_ = siteFolderLocation(process_.vrlmpCurSite);
    prepareCrawlSession();
    sheet_.showConnectionSheet(true);

    scanner_.setSitemapFolder(sitemapFolder_);
    if (!startSitemapFiles()) {
        return;
    }

    const std::string typedURL = siteView_.state().details.siteURL;
    http::Response probe;
    const bool reachable = scanner_.httpIsValid(typedURL, session_.get(), &probe);
    // The probe is a GET of the start page that was not redirected: with fetch-once it is
    // that page's one request.
    startAnswer_.reset();
    if (crawlSettings_.fetchOnce()) {
        startAnswer_ = std::move(probe);
    }
    scanner_.setSiteBaseURL(typedURL);
    if (!reachable) {
        reportUnreachable();
        return;
    }

    // The site base ends in "/", so the request holds a double slash; servers that
    // normalise paths find the file all the same.
    const auto robots =
        http::fetchText(scanner_.siteBaseURL + "/robots.txt", kPageTimeout, session_.get());
    scanner_.loadRobotsRules(robots.value_or(std::string()));
    const auto delay = robotsCrawlDelay(robots.value_or(std::string()));
    siteView_.showCrawlDelayAdvice(delay ? crawlDelayAdvice(*delay) : std::string());
    scanner_.ignoreRobots = siteView_.state().ignoreRobotsChecked;
    scanner_.uniquePagesLeftMArray.append(typedURL);
    brokenLinkRecorder_.startPage();

    sheet_.showConnectionSheet(false);
    sheet_.showProgressSheet(true);
    startWorker();
}

// The site's crawl settings, or those given for this scan alone, become the session every
// request of the scan goes through. A file that cannot be used is reported and the defaults
// crawl.
void ScanDriver::prepareCrawlSession() {
    if (settingsForNextScan_) {
        crawlSettings_ = std::move(*settingsForNextScan_);
        settingsForNextScan_.reset();
    } else {
        CrawlSettingsRead read = readCrawlSettings(sitemapFolder_);
        if (read.problem) {
            alerts_.presentAlert(unreadableCrawlSettingsAlert(sitemapFolder_, *read.problem),
                                 [](int) {});
        }
        crawlSettings_ = std::move(read.settings);
    }
    session_ = std::make_unique<http::Session>();
    session_->setUserAgent(crawlSettings_.userAgent());
    session_->setExtraHeaders(crawlSettings_.extraHeaders());
    session_->setUseNetrc(crawlSettings_.useNetrc());
    session_->setRequestsPerSecond(crawlSettings_.requestsPerSecond());
    // One connection finishes the request under way, as a scan always did; a pool breaks
    // off what it fetches ahead at once.
    session_->setCancellation(&cancellation_, crawlSettings_.connections() > 1);
}

void ScanDriver::resetForScan() {
    scanner_.uniquePagesLeftMArray.clear();
    fileLocationsArray_.clear();
    process_.vrlmpBadLinkArray.clear();
    brokenLinks_.clear();
    brokenLinksHandedOver_ = 0;
    brokenLinkRecorder_.reset();
    writeFailure_ = {};
    scanner_.filters = process_.vrlmpFiltersArray;
    terminateScan_ = false;
    cancellation_.reset();
    ssf_ = 0;
    scanner_.totLinks = 0;
    scanner_.twoColCountPO = 0;
    scanner_.threeColCountPO = 0;
    scanner_.twoColCountAP = 0;
    scanner_.threeColCountAP = 0;
    siteView_.clearScannedLinks();
    scanner_.setAllowedMedia();
}

// The current files become the previous set, then get their headers. Nothing is crawled
// when either fails: the files are put back as they were.
bool ScanDriver::startSitemapFiles() {
    const std::string statistics =
        siteStatisticsText(readSiteFile(siteView_.state().details.siteName));
    WriteResult started = keepPreviousSitemaps(sitemapFolder_, statistics);
    if (started) {
        started = writeSitemapHeaders(sitemapFolder_);
        if (!started) {
            (void)discardUnfinishedSitemaps(sitemapFolder_);
        }
    }
    if (!started) {
        abandonStart(started);
    }
    return started.ok();
}

void ScanDriver::abandonStart(const WriteResult& failure) {
    sheet_.showConnectionSheet(false);
    siteView_.setScanControlsEnabled(true);
    if (reopenFilterDrawer_) {
        reopenFilterDrawer();
    }
    siteLock_.reset();
    siteView_.refreshPreviousSitemaps();
    reportWriteFailure(failure);
}

void ScanDriver::reportWriteFailure(const WriteResult& failure) {
    alertWriteFailure(alerts_, kFilesNotWritten, failure);
}

void ScanDriver::reportUnreachable() {
    siteLock_.reset();
    http::Request request;
    request.url = scanner_.siteBaseURL;
    request.timeout = kPageTimeout;
    request.session = session_.get();
    const http::Response response = http::send(request);
    std::string codeText;
    if (!response.isHttp || response.statusCode != 200) {
        codeText = http::statusText(response.isHttp ? response.statusCode : 0);
    }
    // Without an HTTP answer the code says nothing; the reason goes on a line of its own.
    if (!response.isHttp && !response.errorText.empty()) {
        codeText += "\n" + response.errorText;
    }
    sheet_.showConnectionSheet(false);
    schedulePause();
    siteView_.setScanControlsEnabled(true);
    siteView_.refreshPreviousSitemaps();
    alerts_.presentAlert(
        Alert::refusal("The Site URL Could Not Be Reached", "Error Code: " + codeText), [](int) {});
}

void ScanDriver::startWorker() {
    scanning_ = true;
    worker_ = std::thread([this] { extractLinksFromPage(); });
}

void ScanDriver::cancelScan() {
    stopScan();
}

void ScanDriver::stopScan() {
    terminateScan_ = true;
    cancellation_.cancel();
}

void ScanDriver::handOverBrokenLinks() {
    process_.vrlmpBadLinkArray.insert(
        process_.vrlmpBadLinkArray.end(),
        brokenLinks_.begin() + static_cast<std::ptrdiff_t>(brokenLinksHandedOver_),
        brokenLinks_.end());
    brokenLinksHandedOver_ = brokenLinks_.size();
}

void ScanDriver::updateScanSheet() {
    const auto listed = static_cast<int64_t>(scanner_.uniquePagesLeftMArray.size());
    const int64_t dealtWith = ssf_;
    ScanProgress progress;
    progress.pagesLeft = listed - dealtWith;
    progress.pagesScanned = dealtWith;
    progress.brokenLinks = static_cast<int64_t>(process_.vrlmpBadLinkArray.size());
    if (listed > 1) {
        progress.barMaximum = listed;
        progress.barValue = dealtWith;
    }
    sheet_.showProgress(progress);
}

void ScanDriver::updateScanLinksList(const std::string& url) {
    siteView_.appendScannedLink(url);
}

void ScanDriver::updateTotLink() {
    sheet_.showTotalLinks(scanner_.totLinks);
}

void ScanDriver::loopingError(const std::string& command) {
    if (command == "stop") {
        sheet_.showProgressSheet(false);
        schedulePause();
    } else if (command == "restart") {
        sheet_.showProgressSheet(true);
    }
}

void ScanDriver::sheetDidEndShouldStopScan(int returnCode) {
    {
        const std::lock_guard lock(answerMutex_);
        if (returnCode != kDefaultButtonCode) {
            stopScan();
        }
        errCont_ = true;
    }
    answered_.notify_all();
}

void ScanDriver::endStartAlert() {
    sheet_.showEndPanel(true);
}

void ScanDriver::endStopAlert() {
    sheet_.showEndPanel(false);
}

void ScanDriver::reopenFilterDrawer() {
    siteView_.setFilterDrawerOpen(true);
}

void ScanDriver::schedulePause() {
    ui_.performAfter(kPauseDelay, [this] { pause(); });
}

}  // namespace loomcrest
