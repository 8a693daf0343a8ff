#include "sites/AddEditDeleteSites.h"

#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "platform/FileSystem.h"
#include "sites/DataPaths.h"
#include "sites/ScanViewController.h"
#include "sites/SiteFile.h"
#include "support/Golden.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::RecordingAlerts;
using test::RecordingScanView;
using test::RecordingSiteSheet;
using test::TemporaryHome;
using test::writeFile;

constexpr const char* kSavingError = "The following error has occurred while saving your site.";

class SiteRecords : public testing::Test {
protected:
    void SetUp() override {
        checkNeededFoldersExist();
        siteList.awakeFromNib();
    }

    void add(const std::string& name, const std::string& url) {
        records.addNewSite();
        records.setSheetFields(name, url);
        records.defaultAction();
    }
    void select(const std::string& name) { siteList.selectRow(siteList.rowOfSite(name)); }
    void edit(const std::string& site, const std::string& newName, const std::string& newURL) {
        select(site);
        records.editSite();
        records.setSheetFields(newName, newURL);
        records.defaultAction();
    }
    std::string siteFile(const std::string& name) const {
        return fileContents(returnFullFileLocation(name));
    }

    TemporaryHome home;
    RecordingScanView scanView;
    RecordingSiteSheet sheetView;
    RecordingAlerts alerts;
    ProcessState process;
    ScanViewController siteList{process, scanView, alerts};
    AddEditDeleteSites records{siteList, sheetView, alerts};
};

TEST_F(SiteRecords, AddOpensTheSheetInAddMode) {
    records.addNewSite();
    EXPECT_TRUE(sheetView.state.shown);
    EXPECT_EQ(sheetView.state.title, "Add New Site");
    EXPECT_EQ(sheetView.state.defaultButtonTitle, "Add Site");
    EXPECT_EQ(sheetView.state.alternateButtonTitle, "Cancel");
    EXPECT_EQ(records.calledBy(), "addNewSite");
}

TEST_F(SiteRecords, AddingCreatesTheFolderAndFileAndClosesTheSheet) {
    add("Example", "example.com");
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_EQ(siteFile("Example"), test::golden("new-site.vrLMP"));
    EXPECT_FALSE(sheetView.state.shown);
    EXPECT_EQ(sheetView.state.siteName, "");
    EXPECT_EQ(sheetView.focusRequests, 1);
    EXPECT_EQ(scanView.names, std::vector<std::string>{"Example"});
}

TEST_F(SiteRecords, InvalidInputKeepsTheSheetOpenBehindOneAlert) {
    add(" Example", "ftp://example.com/");
    ASSERT_EQ(alerts.shown.size(), 1U);
    const Alert& alert = alerts.shown.front();
    EXPECT_EQ(alert.title, kSavingError);
    EXPECT_EQ(alert.message,
              "The site name field cannot be left blank.\nURLs must begin http:// or "
              "https://\nftp:// etc scans are not available.");
    EXPECT_EQ(alert.defaultButton, "OK");
    EXPECT_EQ(alert.kind, AlertKind::Refusal);
    EXPECT_EQ(alert.parent, AlertParent::SiteSheet);
    EXPECT_TRUE(sheetView.state.shown);
    EXPECT_EQ(records.sheetState().siteName, " Example") << "the user's input stays";
    EXPECT_TRUE(siteList.tableArray().empty());
}

TEST_F(SiteRecords, AddingAnExistingNameIsRefused) {
    add("Example", "example.com");
    add("Example", "other.org");
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].title,
              "The site you are trying to create already exists, please select a different name.");
    EXPECT_EQ(alerts.shown[0].message, "");
    EXPECT_EQ(alerts.shown[0].parent, AlertParent::SiteSheet);
    EXPECT_TRUE(sheetView.state.shown);
    EXPECT_NE(siteFile("Example").find("http://example.com/"), std::string::npos);
}

TEST_F(SiteRecords, AnyFolderOfThatNameBlocksAdding) {
    createFolder(siteFolderLocation("Taken"));
    add("Taken", "example.com");
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_FALSE(pathExists(returnFullFileLocation("Taken")));
}

TEST_F(SiteRecords, EditStartsFromTheSiteFile) {
    add("Example", "example.com");
    select("Example");
    records.editSite();
    EXPECT_EQ(sheetView.state.title, "Edit Site");
    EXPECT_EQ(sheetView.state.defaultButtonTitle, "Save Changes");
    EXPECT_EQ(records.calledBy(), "editSite");
    EXPECT_EQ(records.originalName(), "Example");
    EXPECT_EQ(records.originalURL(), "http://example.com/");
    EXPECT_EQ(sheetView.state.siteName, "Example");
    EXPECT_EQ(sheetView.state.siteURL, "http://example.com/");
}

TEST_F(SiteRecords, EditingOnlyTheURLKeepsStatisticsAndRobotsFlag) {
    add("Example", "example.com");
    select("Example");
    siteList.ignoreRobotsAction(true);
    writeSiteStatistics("Example", 10, 4, 3);
    edit("Example", "Example", "https://example.org/shop/");
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_EQ(siteFile("Example"),
              "<siteName>Example</siteName>\n<siteURL>https://example.org/shop/</siteURL>\n"
              "<ignoreRobotFile>YES</ignoreRobotFile>\n<pagesFound>4</pagesFound>\n"
              "<totalLinks>10</totalLinks>\n<pagesUsed>3</pagesUsed>");
    EXPECT_EQ(process.vrlmpCurSite, "") << "the sheet closes by deselecting the list";
    EXPECT_EQ(siteList.selectedRow(), -1);
}

TEST_F(SiteRecords, RenamingMovesTheFolderWithAllItsFiles) {
    add("Example", "example.com");
    writeFile(home.dataRoot() + "/Example/sitemap.xml", "<urlset/>");
    writeFile(home.dataRoot() + "/Example/filters.zplp", "tmp\n");
    edit("Example", "Renamed", "example.com");
    EXPECT_FALSE(pathExists(siteFolderLocation("Example")));
    EXPECT_EQ(siteFile("Renamed"),
              "<siteName>Renamed</siteName>\n<siteURL>http://example.com/</siteURL>\n"
              "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
              "<totalLinks>0</totalLinks>\n<pagesUsed>0</pagesUsed>");
    EXPECT_EQ(fileContents(home.dataRoot() + "/Renamed/sitemap.xml"), "<urlset/>");
    EXPECT_EQ(fileContents(home.dataRoot() + "/Renamed/filters.zplp"), "tmp\n");
    EXPECT_EQ(scanView.names, std::vector<std::string>{"Renamed"});
}

TEST_F(SiteRecords, RenamingOntoAnExistingSiteOverwritesThatSitesURL) {
    add("First", "first.com");
    add("Second", "second.com");
    edit("First", "Second", "changed.com");

    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown[0].title,
              "A site with the name \"Second\" already exists, please delete this site first "
              "or select a different name.");
    EXPECT_EQ(alerts.shown[0].message, "");
    EXPECT_EQ(alerts.shown[0].parent, AlertParent::MainWindow);

    EXPECT_NE(siteFile("First").find("<siteURL>http://first.com/</siteURL>"), std::string::npos);
    EXPECT_EQ(siteFile("Second"),
              "<siteName>Second</siteName>\n<siteURL>http://changed.com/</siteURL>\n"
              "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
              "<totalLinks>0</totalLinks>");
    EXPECT_FALSE(sheetView.state.shown);
}

TEST_F(SiteRecords, CancelClosesWithoutTouchingFiles) {
    add("Example", "example.com");
    select("Example");
    const std::string before = siteFile("Example");
    records.editSite();
    records.setSheetFields("Other", "other.com");
    records.alternateAction();
    EXPECT_EQ(siteFile("Example"), before);
    EXPECT_FALSE(pathExists(siteFolderLocation("Other")));
    EXPECT_FALSE(sheetView.state.shown);
    EXPECT_EQ(scanView.state.details.siteName, "");
}

TEST_F(SiteRecords, DeleteAsksAndRemovesTheWholeFolder) {
    add("Example", "example.com");
    writeFile(home.dataRoot() + "/Example/badLinks.txt", "http://x/\n");
    select("Example");
    records.deleteSite();

    ASSERT_EQ(alerts.shown.size(), 1U);
    const Alert& question = alerts.shown[0];
    EXPECT_EQ(question.title, "Do you really want to delete the site:\nExample");
    EXPECT_EQ(question.message, "");
    EXPECT_EQ(question.defaultButton, "Delete");
    EXPECT_EQ(question.alternateButton, "");
    EXPECT_EQ(question.otherButton, "Cancel");
    EXPECT_FALSE(pathExists(siteFolderLocation("Example")));
    EXPECT_TRUE(siteList.tableArray().empty());
    EXPECT_EQ(process.vrlmpCurSite, "");
    EXPECT_TRUE(process.vrlmpBadLinkArray.empty());
}

TEST_F(SiteRecords, CancelledDeleteKeepsTheSite) {
    add("Example", "example.com");
    select("Example");
    alerts.answers.push_back(kOtherButtonCode);
    records.deleteSite();
    EXPECT_TRUE(pathExists(returnFullFileLocation("Example")));
    EXPECT_EQ(process.vrlmpCurSite, "Example");
}

TEST_F(SiteRecords, NoSiteShownMeansNothingToEditOrDelete) {
    add("Example", "example.com");
    records.deleteSite();
    records.editSite();
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_TRUE(pathExists(returnFullFileLocation("Example")));
    EXPECT_TRUE(pathExists(home.dataRoot()));
}

TEST_F(SiteRecords, AHandEditedNameNeverRemovesAnythingOutsideTheDataRoot) {
    writeFile(returnFullFileLocation("Odd"), "<siteName>..</siteName>\n<siteURL>x</siteURL>");
    siteList.reloadSiteList();
    select("Odd");
    records.deleteSite();
    EXPECT_TRUE(pathExists(home.dataRoot()));
    EXPECT_TRUE(pathExists(returnFullFileLocation("Odd")));
}

}  // namespace
}  // namespace loomcrest
