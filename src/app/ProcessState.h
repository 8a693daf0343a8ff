#pragma once

#include <string>
#include <vector>

// State shared by the views of the whole application. Each is touched on the
// user-interface thread only, one action at a time.
namespace loomcrest {

// The name of the site selected in the site list; empty when none is selected.
extern std::string vrlmpCurSite;
// The window title to restore when a sitemap view is entered.
extern std::string vrlmpWinTit;
// Set when a site is selected; cleared by whoever consumes the change.
extern bool vrlmpViewChanged;
// 1 while the filters drawer is open.
extern int vrlmpPLastState;
// The broken-links lines of the current site.
extern std::vector<std::string> vrlmpBadLinkArray;

// Reason texts ("404 - Not Found") of failed start-URL probes; never emptied.
extern std::vector<std::string> vrlmpBadLinkReasonArray;
// The filters of the selected site, in file order.
extern std::vector<std::string> vrlmpFiltersArray;

// The number of the view on screen: 1 scan, 2 HTML sitemap, 3 HTML editor, 4 XML sitemap,
// 5 export, 6 upload, 7 broken links.
extern int vrlmpCurrentView;
// The HTML sitemap view's working copy of the shown layout file.
extern std::string vrlmpHTMLString;
// The layout file last loaded by the HTML view's first load or a direct layout switch.
extern std::string vrlmpUTLLoc;
// Whether the working copy differs from the file as last loaded or saved.
extern bool vrlmpNeedsSave;

// The notification that tells the crawler to load the current site's filters.
inline constexpr const char* kLoadFiltersNotification = "vrlmpLFF";

}  // namespace loomcrest
