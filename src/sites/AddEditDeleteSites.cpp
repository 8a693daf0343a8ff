#include "sites/AddEditDeleteSites.h"

#include "platform/FileSystem.h"
#include "sites/DataPaths.h"
#include "sites/ScanViewController.h"
#include "sites/SiteFile.h"
#include "sites/SiteInputCheck.h"

namespace loomcrest {

namespace {

constexpr const char* kAddMode = "addNewSite";
constexpr const char* kEditMode = "editSite";

// A name that is a single folder below the data root. Names come from site files, which
// may have been edited by hand; anything else must never be moved or removed.
bool isSiteFolderName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

}  // namespace

AddEditDeleteSites::AddEditDeleteSites(ScanViewController& siteList, SiteSheetView& sheet,
                                       AlertPresenter& alerts)
    : siteList_(siteList), sheetView_(sheet), alerts_(alerts) {}

void AddEditDeleteSites::addNewSite() {
    sheet_.title = "Add New Site";
    sheet_.defaultButtonTitle = "Add Site";
    sheet_.alternateButtonTitle = "Cancel";
    calledBy_ = kAddMode;
    showSheet();
}

void AddEditDeleteSites::editSite() {
    if (siteList_.state().details.siteName.empty()) {
        return;
    }
    sheet_.title = "Edit Site";
    sheet_.defaultButtonTitle = "Save Changes";
    sheet_.alternateButtonTitle = "Cancel";
    calledBy_ = kEditMode;
    editSiteStart();
}

void AddEditDeleteSites::editSiteStart() {
    const std::string text = readSiteFile(siteList_.state().details.siteName);
    originalName_ = readSiteField(text, SiteField::SiteName).value_or("");
    originalURL_ = readSiteField(text, SiteField::SiteURL).value_or("");
    sheet_.siteName = originalName_;
    sheet_.siteURL = originalURL_;
    showSheet();
}

void AddEditDeleteSites::setSheetFields(std::string name, std::string url) {
    sheet_.siteName = std::move(name);
    sheet_.siteURL = std::move(url);
}

void AddEditDeleteSites::defaultAction() {
    checkInputIsOK();
}

void AddEditDeleteSites::alternateAction() {
    resetAndClose();
}

void AddEditDeleteSites::checkInputIsOK() {
    const SiteInput input = checkSiteInput(sheet_.siteName, sheet_.siteURL);
    if (!input.isOK()) {
        alertOnSheet("The following error has occurred while saving your site.", input.errors);
        return;
    }
    if (calledBy_ == kAddMode) {
        createNewSite(input.name, input.url);
    } else if (calledBy_ == kEditMode) {
        saveEditedSite(input.name, input.url);
    }
}

void AddEditDeleteSites::createNewSite(std::string_view name, std::string_view url) {
    const std::string folder = siteFolderLocation(name);
    if (pathExists(folder)) {
        alertOnSheet(
            "The site you are trying to create already exists, please select a "
            "different name.",
            "");
        return;
    }
    createFolder(folder);
    createSiteFile(name, url);
    resetAndClose();
}

void AddEditDeleteSites::saveEditedSite(std::string_view name, std::string_view url) {
    const std::string newFolder = parentFolderOf(returnFullFileLocation(name));
    const std::string oldFolder = parentFolderOf(returnFullFileLocation(originalName_));
    const std::string newFile = returnFullFileLocation(name);
    std::string text;

    if (name == originalName_) {
        text = readSiteFile(name);
    } else if (pathExists(newFolder)) {
        // The other site's URL is then overwritten with this one while the edited site
        // stays as it was; users have come to expect exactly that, so it stays.
        alerts_.presentAlert(Alert::refusal("A site with the name \"" + std::string(name) +
                                            "\" already exists, please delete this site first "
                                            "or select a different name."),
                             [](int) {});
        text = readSiteFile(name);
    } else {
        if (!isSiteFolderName(originalName_)) {
            return;
        }
        movePath(oldFolder, newFolder);
        movePath(newFolder + "/" + originalName_ + ".vrLMP", newFile);
        text = replaceSiteElement(readSiteFile(name), SiteField::SiteName, name);
        if (text.empty()) {
            text = readSiteFile(name);
        }
    }

    text = replaceSiteElement(text, SiteField::SiteURL, url);
    if (!text.empty()) {
        writeFileAtomically(newFile, text);
    }
    resetAndClose();
}

void AddEditDeleteSites::deleteSite() {
    const std::string name = siteList_.state().details.siteName;
    if (name.empty()) {
        return;
    }
    alerts_.presentAlert(
        Alert::question("Do you really want to delete the site:\n" + name, "", "Delete", "",
                        "Cancel"),
        [this, name](int returnCode) { sheetDidEndShouldDelete(returnCode, name); });
}

void AddEditDeleteSites::sheetDidEndShouldDelete(int returnCode, const std::string& name) {
    if (returnCode != kDefaultButtonCode || !isSiteFolderName(name)) {
        return;
    }
    removeRecursively(parentFolderOf(returnFullFileLocation(name)));
    siteList_.reloadSiteList();
    siteList_.deselectAll();
}

void AddEditDeleteSites::resetAndClose() {
    siteList_.clearSiteDetails();
    sheet_.siteName.clear();
    sheet_.siteURL.clear();
    sheet_.shown = false;
    sheetView_.siteSheetChanged(sheet_);
    sheetView_.focusNameField();
    siteList_.deselectAll();
    siteList_.reloadSiteList();
}

void AddEditDeleteSites::showSheet() {
    sheet_.shown = true;
    sheetView_.siteSheetChanged(sheet_);
}

void AddEditDeleteSites::alertOnSheet(std::string title, std::string message) {
    alerts_.presentAlert(
        Alert::refusal(std::move(title), std::move(message), AlertParent::SiteSheet), [](int) {});
}

}  // namespace loomcrest
