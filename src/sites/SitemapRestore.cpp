#include "sites/SitemapRestore.h"

#include "platform/FileSystem.h"
#include "sitemap/PreviousSitemaps.h"
#include "sites/DataPaths.h"
#include "sites/ScanViewController.h"
#include "sites/SiteFile.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

constexpr std::string_view kNotRestored = "The previous sitemaps could not be restored.";

}  // namespace

SitemapRestore::SitemapRestore(ScanViewController& siteList, AlertPresenter& alerts)
    : siteList_(siteList), alerts_(alerts) {}

void SitemapRestore::restorePreviousSitemaps() {
    const std::string name = siteList_.state().details.siteName;
    if (name.empty()) {
        return;
    }
    if (!hasPreviousSitemaps(siteFolderLocation(name))) {
        alerts_.presentAlert(Alert::refusal("There are no previous sitemaps to restore."),
                             [](int) {});
        return;
    }
    alerts_.presentAlert(
        Alert::question("Do you really want to restore the previous sitemaps of the site:\n" + name,
                        "The sitemaps of the last scan are replaced by those of the scan "
                        "before it.",
                        "Restore", "", "Cancel"),
        [this, name](int returnCode) { sheetDidEndShouldRestore(returnCode, name); });
}

void SitemapRestore::sheetDidEndShouldRestore(int returnCode, const std::string& name) {
    if (returnCode == kDefaultButtonCode) {
        restore(name);
    }
}

void SitemapRestore::restore(const std::string& name) {
    const auto lock = lockSiteForChange(name, kNotRestored, alerts_);
    if (!lock) {
        return;
    }
    const std::string folder = siteFolderLocation(name);
    const auto statistics = previousStatistics(folder);
    if (!statistics) {
        alerts_.presentAlert(Alert::refusal("There are no previous sitemaps to restore."),
                             [](int) {});
        return;
    }
    // The statistics go first: it is the one write that needs room on the disk, and
    // nothing has moved yet when it fails.
    const std::string siteFile = returnFullFileLocation(name);
    const auto text = readTextFile(siteFile);
    if (text) {
        if (WriteResult written =
                writeFileAtomically(siteFile, siteFileTextWithStoredStatistics(*text, *statistics));
            !written) {
            alertWriteFailure(alerts_, kNotRestored, written);
            return;
        }
    }
    if (WriteResult moved = putBackPreviousSitemaps(folder); !moved) {
        if (text) {
            (void)writeFileAtomically(siteFile, *text);
        }
        alertWriteFailure(alerts_, kNotRestored, moved);
    }
    siteList_.reloadSiteDetails();
}

}  // namespace loomcrest
