#pragma once

#include <string>
#include <string_view>

#include "platform/Alerts.h"
#include "sites/SiteSheetView.h"

namespace loomcrest {

class ScanViewController;

// Adds, edits, renames and deletes sites. Adding and editing share one sheet whose input
// is checked by checkInputIsOK before anything touches the disk.
class AddEditDeleteSites {
public:
    AddEditDeleteSites(ScanViewController& siteList, SiteSheetView& sheet, AlertPresenter& alerts);

    void addNewSite();
    // Edits the site shown in the details; does nothing when none is shown.
    void editSite();
    void editSiteStart();
    // The text the user has typed into the sheet's two fields.
    void setSheetFields(std::string name, std::string url);
    void defaultAction();
    void alternateAction();
    void checkInputIsOK();

    // The add sheet's and the edit sheet's Save; both take input that has passed
    // checkInputIsOK. A change that cannot be made is shown on the sheet, which stays open,
    // and leaves nothing half done.
    void createNewSite(std::string_view name, std::string_view url);
    void saveEditedSite(std::string_view name, std::string_view url);

    // Asks whether to delete the site shown in the details.
    void deleteSite();
    void sheetDidEndShouldDelete(int returnCode, const std::string& name);

    void resetAndClose();

    const SiteSheetState& sheetState() const { return sheet_; }
    const std::string& calledBy() const { return calledBy_; }
    const std::string& originalName() const { return originalName_; }
    const std::string& originalURL() const { return originalURL_; }

private:
    void showSheet();
    void setSheetMode(std::string_view mode, std::string_view title, std::string_view button);
    bool writeSiteURL(std::string_view name, std::string_view text, std::string_view url);
    bool renameSite(std::string_view name, std::string_view url);
    void alertOnSheet(std::string title, std::string message);

    ScanViewController& siteList_;
    SiteSheetView& sheetView_;
    AlertPresenter& alerts_;
    SiteSheetState sheet_;
    std::string calledBy_;
    std::string originalName_;
    std::string originalURL_;
};

}  // namespace loomcrest
