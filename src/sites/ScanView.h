#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace loomcrest {

// The site-details fields of the scan view, as text shown to the user.
struct SiteDetailsFields {
    std::string siteName;
    std::string siteURL;
    std::string totalLinksFound;
    std::string pagesFound;
    std::string linksScanned;
    std::string brokenLinks;
};

struct ScanViewState {
    SiteDetailsFields details;
    bool ignoreRobotsChecked = false;
    // The broken-links button is enabled and visible, or disabled and transparent.
    bool brokenLinksButtonShown = false;
    bool scanButtonEnabled = false;
    // The Add Site and Edit Site menu items.
    bool addSiteEnabled = true;
    bool editSiteEnabled = false;
    // The filters-drawer button, the filter input box, the add-filter and delete-filter
    // buttons and the delete-site button.
    bool siteControlsEnabled = false;
    bool filterDrawerOpen = false;
    // What the last scan's robots.txt asked of crawlers and the scan did not obey; empty
    // when it asked nothing or another site was selected since.
    std::string crawlDelayAdvice;
    // The selected site keeps the sitemaps of the scan before its last one, which can be put
    // back.
    bool previousSitemapsKept = false;
};

// What the scan view's controller needs from whatever draws it.
class ScanView {
public:
    virtual ~ScanView() = default;
    virtual void scanViewChanged(const ScanViewState& state) = 0;
    virtual void siteListChanged(const std::vector<std::string>& names, int selectedRow) = 0;
    virtual void setWindowTitle(std::string_view title) = 0;
    virtual void reloadFilterList() = 0;
    // The read-only list of URLs a scan has queued.
    virtual void clearScannedLinks() = 0;
    virtual void appendScannedLink(std::string_view url) = 0;
    virtual void setScannedLinksText(std::string_view text) = 0;
};

}  // namespace loomcrest
