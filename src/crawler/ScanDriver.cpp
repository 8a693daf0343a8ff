#include "crawler/ScanDriver.h"

#include "app/ProcessState.h"
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
    terminateScan_ = true;
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
    sheet_.showConnectionSheet(true);

    sitemapFolder_ = siteFolderLocation(process_.vrlmpCurSite);
    scanner_.setSitemapFolder(sitemapFolder_);
    if (!startSitemapFiles()) {
        return;
    }

    const std::string typedURL = siteView_.state().details.siteURL;
    const bool reachable = scanner_.httpIsValid(typedURL);
    scanner_.setSiteBaseURL(typedURL);
    if (!reachable) {
        reportUnreachable();
        return;
    }

    // The site base ends in "/", so the request holds a double slash; servers that
    // normalise paths find the file all the same.
    const auto robots = http::fetchText(scanner_.siteBaseURL + "/robots.txt", kPageTimeout);
    scanner_.loadRobotsRules(robots.value_or(std::string()));
    scanner_.ignoreRobots = siteView_.state().ignoreRobotsChecked;
    scanner_.uniquePagesLeftMArray.append(typedURL);

    sheet_.showConnectionSheet(false);
    sheet_.showProgressSheet(true);
    startWorker();
}

void ScanDriver::resetForScan() {
    scanner_.uniquePagesLeftMArray.clear();
    fileLocationsArray_.clear();
    process_.vrlmpBadLinkArray.clear();
    brokenLinks_.clear();
    brokenLinksHandedOver_ = 0;
    writeFailure_ = {};
    scanner_.pageInnerLinksMArray.clear();
    scanner_.filters = process_.vrlmpFiltersArray;
    terminateScan_ = false;
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
    terminateScan_ = true;
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
            terminateScan_ = true;
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
