#include "crawler/ScanFilters.h"

#include "app/ProcessState.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "sites/DataPaths.h"

namespace loomcrest {

ScanFilters::ScanFilters(std::function<std::string()> shownSiteName, FilterView& view,
                         AlertPresenter& alerts, NotificationCenter& notifications)
    : shownSiteName_(std::move(shownSiteName)),
      view_(view),
      alerts_(alerts),
      siteSelected_(notifications, kLoadFiltersNotification, [this] { loadFilterFile(); }) {}

std::string ScanFilters::filterFileLocation() const {
    return siteFolderLocation(shownSiteName_()) + "/filters.zplp";
}

void ScanFilters::loadFilterFile() {
    vrlmpFiltersArray.clear();
    // Without a site there is no folder to keep filters in.
    if (!shownSiteName_().empty()) {
        const std::string path = filterFileLocation();
        if (!pathExists(path)) {
            writeFileAtomically(path, "");
        }
        for (std::string& filter : split(readTextFile(path).value_or(""), '\n')) {
            if (!filter.empty()) {
                vrlmpFiltersArray.push_back(std::move(filter));
            }
        }
    }
    view_.reloadFilterTable();
}

void ScanFilters::addFilterCommand(std::string_view newFilter) {
    if (newFilter.empty()) {
        alerts_.presentAlert(Alert::notice("Cannot Add Filter", "There is nothing to add!"),
                             [](int) {});
    } else {
        const std::string path = filterFileLocation();
        if (const auto text = readTextFile(path); text && !shownSiteName_().empty()) {
            writeFileAtomically(path, *text + trimLineBreaks(newFilter) + "\n");
        }
        view_.clearNewFilterInput();
    }
    loadFilterFile();
}

void ScanFilters::deleteFilter(const std::set<size_t>& selectedRows) {
    std::string remaining;
    for (size_t row = 0; row < vrlmpFiltersArray.size(); ++row) {
        if (!selectedRows.contains(row)) {
            remaining += vrlmpFiltersArray[row] + "\n";
        }
    }
    if (!shownSiteName_().empty()) {
        writeFileAtomically(filterFileLocation(), remaining);
    }
    loadFilterFile();
}

size_t ScanFilters::filterArrayLength() const {
    return vrlmpFiltersArray.size();
}

std::string ScanFilters::filterArrayObject(size_t row) const {
    return row < vrlmpFiltersArray.size() ? vrlmpFiltersArray[row] : std::string();
}

}  // namespace loomcrest
