#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Alerts.h"
#include "sites/ScanView.h"

namespace loomcrest {

struct ProcessState;

// The site list and the selected site's details. Selecting a site makes it the current
// site of the shared state and announces it with the "vrlmpLFF" notification.
class ScanViewController {
public:
    // Changes of the site file that are refused, or cannot be written, are shown on `alerts`.
    ScanViewController(ProcessState& process, ScanView& view, AlertPresenter& alerts);

    // Prepares the view once, when it is created.
    void awakeFromNib();

    // Rebuilds the list from the data root without converting old site files.
    void populateSiteTable();
    // Converts old site files, rebuilds the list and returns its length.
    int siteTableRows();
    // What the list does when asked to reload: recount its rows (once more when old files
    // were converted), drop a selection that no longer exists, and redraw.
    void reloadSiteList();

    const std::vector<std::string>& tableArray() const { return tableArray_; }
    bool updatedOldFile() const { return updatedOldFile_; }
    int selectedRow() const { return selectedRow_; }
    // The row of the site with this name, or -1.
    int rowOfSite(const std::string& name) const;

    // Selection changes as the list reports them; each runs tableViewSelectionDidChange
    // when the selection actually changes.
    void selectRow(int row);
    void deselectAll();
    void tableViewSelectionDidChange();

    // Stores the robots box in the site file; when that is refused or fails the box goes
    // back to what the file holds.
    void ignoreRobotsAction(bool checked);
    void filterAddPanel();

    // Empties the name, URL, total-links, pages-found and broken-links fields.
    void clearSiteDetails();
    // Reads the selected site's details, statistics and broken links from its files again.
    void reloadSiteDetails();
    // Looks again whether the selected site keeps the sitemaps of the scan before its last.
    void refreshPreviousSitemaps();

    // What a scan changes in this view.
    void setScanControlsEnabled(bool enabled);
    void setFilterDrawerOpen(bool open);
    void clearScannedLinks();
    void appendScannedLink(std::string_view url);
    void setScannedLinksText(std::string_view text);
    void showScanStatistics(int32_t totalLinks, size_t pagesFound, size_t brokenLinks);
    void showPagesUsed(int32_t pagesUsed);
    void showCrawlDelayAdvice(std::string advice);

    const ScanViewState& state() const { return state_; }

    // Whether a site was selected since the flag was last cleared.
    bool passViewChanged() const;
    // Clears the flag: the change has been taken in.
    void setViewChanged();

private:
    void selectionCleared();
    void siteSelected(const std::string& name);
    // Fills the details from the site file of `name`; returns the name the file holds.
    std::string readSiteDetails(const std::string& name);
    void loadBrokenLinks(const std::string& siteNameFromFile);
    void showState();

    ProcessState& process_;
    ScanView& view_;
    AlertPresenter& alerts_;
    ScanViewState state_;
    std::vector<std::string> tableArray_;
    bool updatedOldFile_ = false;
    int selectedRow_ = -1;
};

}  // namespace loomcrest
