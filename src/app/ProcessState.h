#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/NotificationCenter.h"

namespace loomcrest {

// The window's title while no site is selected; a selected site's name follows it.
inline constexpr std::string_view kPlainWindowTitle = "Loomcrest2";

// The notification that tells the crawler to load the current site's filters.
inline constexpr const char* kLoadFiltersNotification = "vrlmpLFF";

// What the views of one window share. The window owns one and hands it to its controllers,
// each command-line run makes its own, and so can every test. The user-interface thread
// owns it; only a running crawl appends to vrlmpBadLinkArray and reads vrlmpFiltersArray,
// and the views read those through the scan's own calls on the user-interface thread.
struct ProcessState {
    ProcessState() = default;
    ProcessState(const ProcessState&) = delete;
    ProcessState& operator=(const ProcessState&) = delete;

    // The name of the site selected in the site list; empty when none is selected.
    std::string vrlmpCurSite;
    // The window title to restore when a sitemap view is entered.
    std::string vrlmpWinTit{kPlainWindowTitle};
    // Set when a site is selected; cleared by whoever consumes the change.
    bool vrlmpViewChanged = false;
    // 1 while the filters drawer is open.
    int vrlmpPLastState = 0;
    // The broken-links lines of the current site.
    std::vector<std::string> vrlmpBadLinkArray;
    // Reason texts ("404 - Not Found") of failed start-URL probes; never emptied.
    std::vector<std::string> vrlmpBadLinkReasonArray;
    // The filters of the selected site, in file order.
    std::vector<std::string> vrlmpFiltersArray;
    // The number of the view on screen: 1 scan, 2 HTML sitemap, 3 HTML editor, 4 XML sitemap,
    // 5 export, 6 upload, 7 broken links.
    int vrlmpCurrentView = 1;
    // The HTML sitemap view's working copy of the shown layout file.
    std::string vrlmpHTMLString;
    // The layout file last loaded by the HTML view's first load or a direct layout switch.
    std::string vrlmpUTLLoc;
    // Whether the working copy differs from the file as last loaded or saved.
    bool vrlmpNeedsSave = false;

    // Carries kLoadFiltersNotification from the site list to the filters.
    NotificationCenter notifications;
};

}  // namespace loomcrest
