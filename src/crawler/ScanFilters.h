#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "app/ProcessState.h"
#include "platform/Alerts.h"

namespace loomcrest {

// The filter drawer: a table of filters, a field for a new one, Add and Delete.
class FilterView {
public:
    virtual ~FilterView() = default;
    virtual void reloadFilterTable() = 0;
    virtual void clearNewFilterInput() = 0;
};

// The user's own exclusions for a site, kept in "filters.zplp" in its folder: UTF-8, one
// filter per line, every line ended by a line feed. A link whose URL contains a filter,
// ignoring case, is left out of the scan.
class ScanFilters {
public:
    // `shownSiteName` gives the site name shown in the site details, whose folder holds the
    // filters file. The filters are reloaded whenever "vrlmpLFF" is posted.
    ScanFilters(ProcessState& process, std::function<std::string()> shownSiteName, FilterView& view,
                AlertPresenter& alerts);

    std::string filterFileLocation() const;

    // Rereads the file into vrlmpFiltersArray, creating an empty file when there is none.
    void loadFilterFile();
    // Adds the new-filter field's text, line breaks trimmed from its ends, blanks kept.
    void addFilterCommand(std::string_view newFilter);
    // Removes the filters at the selected rows (counted from 0) and rewrites the file.
    void deleteFilter(const std::set<size_t>& selectedRows);

    size_t filterArrayLength() const;
    // The filter at `row`, or empty text past the end.
    std::string filterArrayObject(size_t row) const;

private:
    // Rewrites the file; a refusal or failure is shown and leaves the file as it was.
    bool saveFilters(std::string_view text);

    ProcessState& process_;
    std::function<std::string()> shownSiteName_;
    FilterView& view_;
    AlertPresenter& alerts_;
    ScopedObserver siteSelected_;
};

}  // namespace loomcrest
