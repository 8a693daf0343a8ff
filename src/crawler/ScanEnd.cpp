#include "app/ProcessState.h"
#include "crawler/ScanDriver.h"
#include "platform/FileSystem.h"
#include "sitemap/BrokenLinkDetails.h"
#include "sitemap/PreviousSitemaps.h"
#include "sitemap/SitemapFiles.h"
#include "sites/DataPaths.h"
#include "sites/ScanViewController.h"
#include "sites/SiteFile.h"

namespace loomcrest {

void ScanDriver::scanFinished() {
    ui_.performAndWait([this] { sheet_.showProgressSheet(false); });
    schedulePause();
    ui_.perform([this] { endStartAlert(); });
    ui_.performAndWait([this] {
        sheet_.showProgress(ScanProgress{0, 0, 0, 5, 1});
        sheet_.showTotalLinks(0);
    });
    scanner_.releaseSitemapFiles();
    WriteResult written = scanner_.sitemapWriteFailure();
    // Files that missed a piece are given up, so nothing is appended behind the gap.
    if (written) {
        written =
            closeSitemapFiles(sitemapFolder_, scanner_.twoColCountAP, scanner_.threeColCountAP);
    }
    // The statistics and the broken-links list are written once the sitemap files are
    // whole: a failure anywhere puts the previous set back, statistics included.
    ui_.performAndWait([this, &written] { finishSitemapFiles(std::move(written)); });

    ui_.performAndWait([this] { endStopAlert(); });
    ui_.performAndWait([this] { siteView_.setScanControlsEnabled(true); });
    if (reopenFilterDrawer_) {
        ui_.performAndWait([this] { reopenFilterDrawer(); });
    }
    std::string scannedLinks;
    const PageList& pages = scanner_.uniquePagesLeftMArray;
    for (size_t place = 0; place < pages.size(); ++place) {
        scannedLinks.append(pages[place]).append("\n");
    }
    ui_.performAndWait([this, &scannedLinks] { siteView_.setScannedLinksText(scannedLinks); });

    // Set by finishSitemapFiles, waited for above; no other scan can start before the next line.
    const WriteResult failure = writeFailure_;
    scanning_ = false;
    // Not waited for, so that the window may start the next scan from here.
    ui_.perform([this, failure] {
        sheet_.bringWindowToFront();
        if (!failure) {
            reportWriteFailure(failure);
        }
        sheet_.scanEnded();
    });
}

void ScanDriver::finishSitemapFiles(WriteResult written) {
    handOverBrokenLinks();
    if (written) {
        written = updateAllScanDetails();
    }
    if (written) {
        siteView_.refreshPreviousSitemaps();
    } else {
        (void)discardUnfinishedSitemaps(sitemapFolder_);
        siteView_.reloadSiteDetails();
        writeFailure_ = std::move(written);
    }
    siteLock_.reset();
}

WriteResult ScanDriver::updateAllScanDetails() {
    const std::string siteName = siteView_.state().details.siteName;
    const int32_t totalLinks = scanner_.totLinks;
    const size_t pagesFound = scanner_.uniquePagesLeftMArray.size();
    const size_t brokenLinks = process_.vrlmpBadLinkArray.size();
    siteView_.showScanStatistics(totalLinks, pagesFound, brokenLinks);

    const std::string folder = parentFolderOf(returnFullFileLocation(siteName));
    const std::string listPath = folder + "/" + std::string(kBrokenLinksFile);
    // The details go first: should the list then fail, the previous set comes back, and a
    // reader takes details only when they list the same pages as the list.
    WriteResult written = writeFileAtomically(folder + "/" + std::string(kBrokenLinkDetailsFile),
                                              brokenLinkDetailsTsv(brokenLinkDetails()));
    if (!written) {
        return written;
    }
    if (brokenLinks != 0) {
        std::string list;
        for (const std::string& url : process_.vrlmpBadLinkArray) {
            list.append(url).append("\n");
        }
        written = writeFileAtomically(listPath, list);
    } else if (pathExists(listPath)) {
        written = writeFileAtomically(listPath, "");
    }
    if (!written) {
        return written;
    }

    const auto pagesUsed = static_cast<int32_t>(ssf_ - static_cast<int32_t>(brokenLinks));
    written =
        writeSiteStatistics(siteName, totalLinks, static_cast<int32_t>(pagesFound), pagesUsed);
    siteView_.showPagesUsed(pagesUsed);
    return written;
}

}  // namespace loomcrest
