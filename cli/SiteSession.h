#pragma once

#include <ostream>
#include <string>

#include "Command.h"
#include "ConsoleAlerts.h"
#include "crawler/ScanFilters.h"
#include "sites/AddEditDeleteSites.h"
#include "sites/ScanView.h"
#include "sites/ScanViewController.h"
#include "sites/SiteSheetView.h"

namespace loomcrest::cli {

// The command line draws no windows; it reads the controllers' state instead.
class HeadlessScanView : public ScanView {
public:
    void scanViewChanged(const ScanViewState&) override {}
    void siteListChanged(const std::vector<std::string>&, int) override {}
    void setWindowTitle(std::string_view) override {}
    void reloadFilterList() override {}
    void clearScannedLinks() override {}
    void appendScannedLink(std::string_view) override {}
    void setScannedLinksText(std::string_view) override {}
};

class HeadlessSiteSheet : public SiteSheetView {
public:
    void siteSheetChanged(const SiteSheetState&) override {}
    void focusNameField() override {}
};

class HeadlessFilterView : public FilterView {
public:
    void reloadFilterTable() override {}
    void clearNewFilterInput() override {}
};

// What the scan view holds on start: the data folders, the site list and its controllers.
class SiteSession {
public:
    SiteSession(ProcessState& process, std::ostream& err);

    ProcessState& process() { return process_; }
    ConsoleAlerts& alerts() { return alerts_; }
    ScanViewController& siteList() { return siteList_; }
    AddEditDeleteSites& siteRecords() { return siteRecords_; }
    ScanFilters& filters() { return filters_; }

    // Selects the named site as a click in the list would. Prints a message and returns
    // false when no site has that name.
    bool selectSite(const std::string& name);
    // Adds a site as the add sheet's Save button would.
    void addSite(const std::string& name, const std::string& url);

    // Success unless an alert refused what was asked.
    int exitStatus() const { return alerts_.anyRefusalShown() ? kExitRefused : kExitSuccess; }

private:
    ProcessState& process_;
    std::ostream& err_;
    ConsoleAlerts alerts_;
    HeadlessScanView scanView_;
    HeadlessSiteSheet sheetView_;
    ScanViewController siteList_;
    AddEditDeleteSites siteRecords_;
    HeadlessFilterView filterView_;
    ScanFilters filters_;
};

}  // namespace loomcrest::cli
