#pragma once

#include <string>

#include "platform/Alerts.h"

namespace loomcrest {

class ScanViewController;

// Puts back the sitemaps of the scan before the selected site's last one (the seven files,
// the broken-links list and the statistics), after asking. The window's "Restore Previous
// Sitemaps" and `loomcrest restore` both come here.
class SitemapRestore {
public:
    SitemapRestore(ScanViewController& siteList, AlertPresenter& alerts);

    // Asks whether to restore the shown site's previous sitemaps; refuses when it keeps none.
    void restorePreviousSitemaps();
    void sheetDidEndShouldRestore(int returnCode, const std::string& name);

private:
    void restore(const std::string& name);

    ScanViewController& siteList_;
    AlertPresenter& alerts_;
};

}  // namespace loomcrest
