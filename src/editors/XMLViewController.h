#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Alerts.h"

namespace loomcrest {

struct ProcessState;

// The XML sitemap view: one row per <url> entry of the site's "sitemap.xml", kept as the
// entry's markup text and changed with regular expressions. Every accepted change is
// written to the file at once.
class XMLViewController {
public:
    enum Column { URL = 1, LastUpdated = 2, ChangeFrequency = 3, Priority = 4 };

    // The change-frequency menu's items, each writing its title.
    static constexpr std::array<std::string_view, 7> kChangeFrequencies = {
        "always", "hourly", "daily", "weekly", "monthly", "yearly", "never"};
    // The priority menu's values, lowest first; the highest is written "1".
    static constexpr std::array<std::string_view, 11> kPriorities = {
        "0.0", "0.1", "0.2", "0.3", "0.4", "0.5", "0.6", "0.7", "0.8", "0.9", "1"};

    // `shownSiteName` gives the site name the view shows; its folder holds the file.
    XMLViewController(ProcessState& process, AlertPresenter& alerts,
                      std::function<std::string()> shownSiteName);

    // Opens the view: refused with an alert while no site is selected.
    bool viewTBIAction();
    void createTableContent();
    std::string sitemapFileLocation() const;

    size_t numberOfRowsInTableView() const { return urlXMLFileMArray_.size(); }
    std::string objectValueForTableColumn(Column column, size_t row) const;
    // A text edit of one cell; refused edits show their alert and change nothing.
    void setObjectValue(std::string_view value, Column column, size_t row);

    void selectRow(std::optional<size_t> row) { selectedRow_ = row; }
    std::optional<size_t> selectedRow() const { return selectedRow_; }
    // Menu choices for the selected row.
    void cfMenuChangeUpdates(std::string_view value);
    void priorityMenuChangeUpdates(std::string_view value);

    // Rebuilds the whole file from the entries. When the file cannot be written, or a scan
    // of the site is running, an alert says so and the entries are read from the file again.
    void updateXMLFile();

    // Asks before deleting the selected row's entry.
    void delLinkAction();
    void sheetDidEndShouldDeleteXMLLink(int returnCode, size_t row);

    const std::vector<std::string>& urlXMLFileMArray() const { return urlXMLFileMArray_; }
    // Called whenever entries are loaded, changed or deleted, so a table can redraw.
    void setEntriesChangedHandler(std::function<void()> handler) {
        entriesChanged_ = std::move(handler);
    }

private:
    void refuse(std::string message);
    bool saveXMLFile(std::string_view text);
    void replaceElementOfRow(size_t row, std::string_view tag, std::string_view value);

    void entryChanged(size_t row);

    ProcessState& process_;
    AlertPresenter& alerts_;
    std::function<std::string()> shownSiteName_;

    std::vector<std::string> urlXMLFileMArray_;
    // Each entry as the file writes it, kept until the entry changes: a sitemap of many
    // thousand entries is rewritten after every edit.
    std::vector<std::optional<std::string>> rebuiltEntries_;
    std::optional<size_t> selectedRow_;
    std::function<void()> entriesChanged_;
};

}  // namespace loomcrest
