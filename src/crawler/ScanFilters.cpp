#include "crawler/ScanFilters.h"

#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "sites/DataPaths.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

constexpr std::string_view kFiltersNotSaved = "The filters could not be saved.";

}  // namespace

ScanFilters::ScanFilters(ProcessState& process, std::function<std::string()> shownSiteName,
                         FilterView& view, AlertPresenter& alerts)
    : process_(process),
      shownSiteName_(std::move(shownSiteName)),
      view_(view),
      alerts_(alerts),
      siteSelected_(process.notifications, kLoadFiltersNotification, [this] { loadFilterFile(); }) {
}

std::string ScanFilters::filterFileLocation() const {
    return siteFolderLocation(shownSiteName_()) + "/filters.zplp";
}

void ScanFilters::loadFilterFile() {
    process_.vrlmpFiltersArray.clear();
    // Without a site there is no folder to keep filters in.
    if (!shownSiteName_().empty()) {
        const std::string path = filterFileLocation();
        if (!pathExists(path)) {
            // The list is empty either way; a file that could not be made is tried again
            // at the next load.
            (void)writeFileAtomically(path, "");
        }
        for (std::string& filter : split(readTextFile(path).value_or(""), '\n')) {
            if (!filter.empty()) {
                process_.vrlmpFiltersArray.push_back(std::move(filter));
            }
        }
    }
    view_.reloadFilterTable();
}

void ScanFilters::addFilterCommand(std::string_view newFilter) {
    if (newFilter.empty()) {
        alerts_.presentAlert(Alert::refusal("Cannot Add Filter", "There is nothing to add!"),
                             [](int) {});
    } else {
        const std::string path = filterFileLocation();
        if (const auto text = readTextFile(path); text && !shownSiteName_().empty()) {
            if (!saveFilters(*text + trimLineBreaks(newFilter) + "\n")) {
                loadFilterFile();
                return;
            }
        }
        view_.clearNewFilterInput();
    }
    loadFilterFile();
}

void ScanFilters::deleteFilter(const std::set<size_t>& selectedRows) {
    std::string remaining;
    for (size_t row = 0; row < process_.vrlmpFiltersArray.size(); ++row) {
        if (!selectedRows.contains(row)) {
            remaining += process_.vrlmpFiltersArray[row] + "\n";
        }
    }
    if (!shownSiteName_().empty()) {
        (void)saveFilters(remaining);
    }
    loadFilterFile();
}

bool ScanFilters::saveFilters(std::string_view text) {
    const auto lock = lockSiteForChange(shownSiteName_(), kFiltersNotSaved, alerts_);
    if (!lock) {
        return false;
    }
    const WriteResult written = writeFileAtomically(filterFileLocation(), text);
    if (!written) {
        alertWriteFailure(alerts_, kFiltersNotSaved, written);
    }
    return written.ok();
}

size_t ScanFilters::filterArrayLength() const {
    return process_.vrlmpFiltersArray.size();
}

std::string ScanFilters::filterArrayObject(size_t row) const {
    return row < process_.vrlmpFiltersArray.size() ? process_.vrlmpFiltersArray[row]
                                                   : std::string();
}

}  // namespace loomcrest
