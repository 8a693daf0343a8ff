#include "app/ProcessState.h"
#include "crawler/ScanDriver.h"
#include "platform/FileSystem.h"
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
    ui_.perform([this] { updateAllScanDetails(); });

    scanner_.releaseSitemapFiles();
    closeSitemapFiles(sitemapFolder_, scanner_.twoColCountAP, scanner_.threeColCountAP);

    ui_.performAndWait([this] { endStopAlert(); });
    ui_.performAndWait([this] { siteView_.setScanControlsEnabled(true); });
    if (reopenFilterDrawer_) {
        ui_.performAndWait([this] { reopenFilterDrawer(); });
    }
    std::string scannedLinks;
    for (const std::string& url : scanner_.uniquePagesLeftMArray) {
        scannedLinks.append(url).append("\n");
    }
    ui_.performAndWait([this, &scannedLinks] { siteView_.setScannedLinksText(scannedLinks); });

    scanning_ = false;
    // Not waited for, so that the window may start the next scan from here.
    ui_.perform([this] {
        sheet_.bringWindowToFront();
        sheet_.scanEnded();
    });
}

void ScanDriver::updateAllScanDetails() {
    const std::string siteName = siteView_.state().details.siteName;
    const int32_t totalLinks = scanner_.totLinks;
    const size_t pagesFound = scanner_.uniquePagesLeftMArray.size();
    const size_t brokenLinks = process_.vrlmpBadLinkArray.size();
    siteView_.showScanStatistics(totalLinks, pagesFound, brokenLinks);

    const std::string listPath =
        parentFolderOf(returnFullFileLocation(siteName)) + "/" + std::string(kBrokenLinksFile);
    if (brokenLinks != 0) {
        std::string list;
        for (const std::string& url : process_.vrlmpBadLinkArray) {
            list.append(url).append("\n");
        }
        writeFileAtomically(listPath, list);
    } else if (pathExists(listPath)) {
        writeFileAtomically(listPath, "");
    }

    const auto pagesUsed = static_cast<int32_t>(ssf_ - static_cast<int32_t>(brokenLinks));
    writeSiteStatistics(siteName, totalLinks, static_cast<int32_t>(pagesFound), pagesUsed);
    siteView_.showPagesUsed(pagesUsed);
}

}  // namespace loomcrest
