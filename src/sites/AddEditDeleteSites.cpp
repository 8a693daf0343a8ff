#include "sites/AddEditDeleteSites.h"

#include "platform/FileSystem.h"
#include "sites/DataPaths.h"
#include "sites/ScanViewController.h"
#include "sites/SiteFile.h"
#include "sites/SiteInputCheck.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

constexpr const char* kAddMode = "addNewSite";
constexpr const char* kEditMode = "editSite";
constexpr std::string_view kNotCreated = "The site could not be created.";
constexpr std::string_view kNotChanged = "The site could not be changed.";
constexpr std::string_view kNotDeleted = "The site could not be deleted.";

// A name that is a single folder below the data root. Names come from site files, which
// may have been edited by hand; anything else must never be moved or removed.
bool isSiteFolderName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

}  // namespace

AddEditDeleteSites::AddEditDeleteSites(ScanViewController& siteList, SiteSheetView& sheet,
                                       AlertPresenter& alerts)
    : siteList_(siteList), sheetView_(sheet), alerts_(alerts) {}

void AddEditDeleteSites::setSheetMode(std::string_view mode, std::string_view title,
                                      std::string_view button) {
    sheet_.title = title;
    sheet_.defaultButtonTitle = button;
    sheet_.alternateButtonTitle = "Cancel";
    calledBy_ = mode;
}

void AddEditDeleteSites::addNewSite() {
    setSheetMode(kAddMode, "Add New Site", "Add Site");
    showSheet();
}

void AddEditDeleteSites::editSite() {
    if (siteList_.state().details.siteName.empty()) {
        return;
    }
    setSheetMode(kEditMode, "Edit Site", "Save Changes");
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
    WriteResult created = createFolder(folder);
    if (created) {
        created = createSiteFile(name, url);
        if (!created) {
            // A folder without its site file would be a site nobody can see or delete.
            (void)removeRecursively(folder);
        }
    }
    if (!created) {
        alertOnSheet(std::string(kNotCreated), created.message());
        return;
    }
    resetAndClose();
}

void AddEditDeleteSites::saveEditedSite(std::string_view name, std::string_view url) {
    bool saved = false;
    if (name == originalName_) {
        saved = writeSiteURL(name, readSiteFile(name), url);
    } else if (pathExists(parentFolderOf(returnFullFileLocation(name)))) {
        // The other site's URL is then overwritten with this one while the edited site
        // stays as it was; users have come to expect exactly that, so it stays.
        alerts_.presentAlert(Alert::refusal("A site with the name \"" + std::string(name) +
                                            "\" already exists, please delete this site first "
                                            "or select a different name."),
                             [](int) {});
        saved = writeSiteURL(name, readSiteFile(name), url);
    } else {
        if (!isSiteFolderName(originalName_)) {
            return;
        }
        saved = renameSite(name, url);
    }
    if (saved) {
        resetAndClose();
    }
}

bool AddEditDeleteSites::writeSiteURL(std::string_view name, std::string_view text,
                                      std::string_view url) {
    const auto lock = lockSiteForChange(name, kNotChanged, alerts_, AlertParent::SiteSheet);
    if (!lock) {
        return false;
    }
    const std::string updated = replaceSiteElement(text, SiteField::SiteURL, url);
    if (updated.empty()) {
        return true;
    }
    const WriteResult written = writeFileAtomically(returnFullFileLocation(name), updated);
    if (!written) {
        alertOnSheet(std::string(kNotChanged), written.message());
    }
    return written.ok();
}

// The folder, then the site file in it, get the new name, and the file the new name and
// URL. A step that fails undoes those before it, so no folder is left whose site file
// names another site.
bool AddEditDeleteSites::renameSite(std::string_view name, std::string_view url) {
    const auto lock =
        lockSiteForChange(originalName_, kNotChanged, alerts_, AlertParent::SiteSheet);
    if (!lock) {
        return false;
    }
    const std::string oldFolder = parentFolderOf(returnFullFileLocation(originalName_));
    const std::string newFolder = parentFolderOf(returnFullFileLocation(name));
    const std::string movedFile = newFolder + "/" + originalName_ + ".vrLMP";
    const std::string newFile = returnFullFileLocation(name);
    WriteResult result = movePath(oldFolder, newFolder);
    if (result) {
        result = movePath(movedFile, newFile);
        if (result) {
            std::string text = replaceSiteElement(readSiteFile(name), SiteField::SiteName, name);
            if (text.empty()) {
                text = readSiteFile(name);
            }
            text = replaceSiteElement(text, SiteField::SiteURL, url);
            if (!text.empty()) {
                result = writeFileAtomically(newFile, text);
            }
            if (!result) {
                (void)movePath(newFile, movedFile);
            }
        }
        if (!result) {
            (void)movePath(newFolder, oldFolder);
        }
    }
    if (!result) {
        alertOnSheet(std::string(kNotChanged), result.message());
    }
    return result.ok();
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
    const auto lock = lockSiteForChange(name, kNotDeleted, alerts_);
    if (!lock) {
        return;
    }
    if (const WriteResult removed = removeRecursively(parentFolderOf(returnFullFileLocation(name)));
        !removed) {
        alertWriteFailure(alerts_, kNotDeleted, removed);
    }
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
