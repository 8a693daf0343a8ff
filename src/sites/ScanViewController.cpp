#include "sites/ScanViewController.h"

#include <algorithm>

#include "app/ProcessState.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "sitemap/PreviousSitemaps.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"
#include "sites/SiteList.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

constexpr std::string_view kSiteFileNotSaved = "The site file could not be saved.";

}  // namespace

ScanViewController::ScanViewController(ProcessState& process, ScanView& view,
                                       AlertPresenter& alerts)
    : process_(process), view_(view), alerts_(alerts) {}

void ScanViewController::awakeFromNib() {
    state_ = ScanViewState{};
    populateSiteTable();
    showState();
    // The list asks for its rows as soon as it is shown, which converts old site files.
    reloadSiteList();
}

void ScanViewController::populateSiteTable() {
    tableArray_ = siteNamesWithExtension("vrLMP");
}

int ScanViewController::siteTableRows() {
    updatedOldFile_ = convertOldSiteFiles();
    populateSiteTable();
    return static_cast<int>(tableArray_.size());
}

void ScanViewController::reloadSiteList() {
    const int rows = siteTableRows();
    if (updatedOldFile_) {
        // The converted sites are listed now; the second count converts nothing.
        siteTableRows();
    }
    if (selectedRow_ >= rows) {
        deselectAll();
    }
    view_.siteListChanged(tableArray_, selectedRow_);
}

int ScanViewController::rowOfSite(const std::string& name) const {
    const auto it = std::find(tableArray_.begin(), tableArray_.end(), name);
    return it == tableArray_.end() ? -1 : static_cast<int>(it - tableArray_.begin());
}

void ScanViewController::selectRow(int row) {
    if (row < 0 || row >= static_cast<int>(tableArray_.size())) {
        deselectAll();
        return;
    }
    if (row != selectedRow_) {
        selectedRow_ = row;
        tableViewSelectionDidChange();
    }
}

void ScanViewController::deselectAll() {
    if (selectedRow_ >= 0) {
        selectedRow_ = -1;
        tableViewSelectionDidChange();
    }
}

void ScanViewController::tableViewSelectionDidChange() {
    process_.vrlmpBadLinkArray.clear();
    state_.details.linksScanned.clear();
    if (selectedRow_ < 0 || selectedRow_ >= static_cast<int>(tableArray_.size())) {
        selectionCleared();
    } else {
        siteSelected(tableArray_[static_cast<size_t>(selectedRow_)]);
    }
}

void ScanViewController::selectionCleared() {
    process_.vrlmpCurSite.clear();
    process_.vrlmpWinTit = kPlainWindowTitle;
    view_.setWindowTitle(process_.vrlmpWinTit);
    state_.details = SiteDetailsFields{};
    state_.ignoreRobotsChecked = false;
    state_.brokenLinksButtonShown = false;
    state_.scanButtonEnabled = false;
    state_.editSiteEnabled = false;
    state_.siteControlsEnabled = false;
    state_.crawlDelayAdvice.clear();
    state_.previousSitemapsKept = false;
    view_.clearScannedLinks();
    showState();
    // The filters side empties its list, so no other site's filters stay on show.
    process_.notifications.post(kLoadFiltersNotification);
}

void ScanViewController::siteSelected(const std::string& name) {
    process_.vrlmpCurSite = name;
    const std::string nameFromFile = readSiteDetails(name);

    process_.vrlmpWinTit = std::string(kPlainWindowTitle) + " - " + nameFromFile;
    view_.setWindowTitle(process_.vrlmpWinTit);

    state_.scanButtonEnabled = true;
    state_.editSiteEnabled = true;
    state_.siteControlsEnabled = true;
    state_.crawlDelayAdvice.clear();
    view_.reloadFilterList();
    process_.vrlmpViewChanged = true;
    view_.clearScannedLinks();
    showState();
    process_.notifications.post(kLoadFiltersNotification);
}

std::string ScanViewController::readSiteDetails(const std::string& name) {
    const std::string text = completeSiteFile(name);
    const std::string nameFromFile = readSiteField(text, SiteField::SiteName).value_or("");
    state_.ignoreRobotsChecked = readSiteField(text, SiteField::IgnoreRobotFile) == "YES";
    state_.details.totalLinksFound = countForDisplay(readSiteField(text, SiteField::TotalLinks));
    state_.details.pagesFound = countForDisplay(readSiteField(text, SiteField::PagesFound));
    state_.details.linksScanned = countForDisplay(readSiteField(text, SiteField::PagesUsed));
    loadBrokenLinks(nameFromFile);
    state_.details.siteName = nameFromFile;
    state_.details.siteURL = readSiteField(text, SiteField::SiteURL).value_or("");
    state_.previousSitemapsKept = hasPreviousSitemaps(siteFolderLocation(name));
    return nameFromFile;
}

void ScanViewController::reloadSiteDetails() {
    if (selectedRow_ < 0 || selectedRow_ >= static_cast<int>(tableArray_.size())) {
        return;
    }
    process_.vrlmpBadLinkArray.clear();
    readSiteDetails(tableArray_[static_cast<size_t>(selectedRow_)]);
    showState();
}

void ScanViewController::refreshPreviousSitemaps() {
    state_.previousSitemapsKept = !process_.vrlmpCurSite.empty() &&
                                  hasPreviousSitemaps(siteFolderLocation(process_.vrlmpCurSite));
    showState();
}

void ScanViewController::loadBrokenLinks(const std::string& siteNameFromFile) {
    const std::string path =
        parentFolderOf(returnFullFileLocation(siteNameFromFile)) + "/badLinks.txt";
    if (!pathExists(path)) {
        state_.details.brokenLinks = "0";
        state_.brokenLinksButtonShown = false;
        return;
    }
    std::vector<std::string> lines = split(readTextFile(path).value_or(std::string()), '\n');
    if (lines.back().empty()) {
        lines.pop_back();
    }
    process_.vrlmpBadLinkArray.insert(process_.vrlmpBadLinkArray.end(), lines.begin(), lines.end());
    state_.details.brokenLinks = std::to_string(process_.vrlmpBadLinkArray.size());
    state_.brokenLinksButtonShown = !process_.vrlmpBadLinkArray.empty();
}

void ScanViewController::ignoreRobotsAction(bool checked) {
    state_.ignoreRobotsChecked = checked;
    showState();
    if (selectedRow_ < 0 || state_.details.siteName.empty()) {
        return;
    }
    // Read from the selected row and written to the shown name: the two agree unless the
    // file's name element was changed by hand.
    const auto text =
        readTextFile(returnFullFileLocation(tableArray_[static_cast<size_t>(selectedRow_)]));
    if (!text) {
        return;
    }
    const auto lock = lockSiteForChange(state_.details.siteName, kSiteFileNotSaved, alerts_);
    WriteResult written;
    if (lock) {
        written = writeFileAtomically(returnFullFileLocation(state_.details.siteName),
                                      siteFileTextWithRobotsFlag(*text, checked));
        if (!written) {
            alertWriteFailure(alerts_, kSiteFileNotSaved, written);
        }
    }
    if (!lock || !written) {
        // The box shows what the file holds.
        state_.ignoreRobotsChecked = !checked;
        showState();
    }
}

void ScanViewController::filterAddPanel() {
    process_.vrlmpPLastState = process_.vrlmpPLastState != 0 ? 0 : 1;
    state_.filterDrawerOpen = process_.vrlmpPLastState != 0;
    showState();
}

void ScanViewController::clearSiteDetails() {
    const std::string linksScanned = state_.details.linksScanned;
    state_.details = SiteDetailsFields{};
    state_.details.linksScanned = linksScanned;
    showState();
}

void ScanViewController::setScanControlsEnabled(bool enabled) {
    state_.scanButtonEnabled = enabled;
    state_.addSiteEnabled = enabled;
    state_.editSiteEnabled = enabled;
    showState();
}

void ScanViewController::setFilterDrawerOpen(bool open) {
    state_.filterDrawerOpen = open;
    showState();
}

void ScanViewController::clearScannedLinks() {
    view_.clearScannedLinks();
}

void ScanViewController::appendScannedLink(std::string_view url) {
    view_.appendScannedLink(url);
}

void ScanViewController::setScannedLinksText(std::string_view text) {
    view_.setScannedLinksText(text);
}

void ScanViewController::showScanStatistics(int32_t totalLinks, size_t pagesFound,
                                            size_t brokenLinks) {
    state_.details.totalLinksFound = std::to_string(totalLinks);
    state_.details.pagesFound = std::to_string(pagesFound);
    state_.details.brokenLinks = std::to_string(brokenLinks);
    state_.brokenLinksButtonShown = brokenLinks != 0;
    showState();
}

void ScanViewController::showPagesUsed(int32_t pagesUsed) {
    state_.details.linksScanned = std::to_string(pagesUsed);
    showState();
}

void ScanViewController::showCrawlDelayAdvice(std::string advice) {
    state_.crawlDelayAdvice = std::move(advice);
    showState();
}

bool ScanViewController::passViewChanged() const {
    return process_.vrlmpViewChanged;
}

void ScanViewController::setViewChanged() {
    process_.vrlmpViewChanged = false;
}

void ScanViewController::showState() {
    view_.scanViewChanged(state_);
}

}  // namespace loomcrest
