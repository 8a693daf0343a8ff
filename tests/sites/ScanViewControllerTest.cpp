#include "sites/ScanViewController.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/ProcessState.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::RecordingAlerts;
using test::RecordingScanView;
using test::TemporaryHome;
using test::writeFile;

class SiteSelection : public testing::Test {
protected:
    void SetUp() override {
        checkNeededFoldersExist();
        addSite("Example", newSiteFileText("Example", "http://example.com/"));
        controller.awakeFromNib();
    }

    void addSite(const std::string& name, const std::string& text) {
        writeFile(returnFullFileLocation(name), text);
    }
    void selectSite(const std::string& name) {
        controller.reloadSiteList();
        controller.selectRow(controller.rowOfSite(name));
    }

    TemporaryHome home;
    RecordingScanView view;
    ProcessState process;
    RecordingAlerts alerts;
    ScanViewController controller{process, view, alerts};
};

TEST_F(SiteSelection, StartsWithNoSiteAndDisabledControls) {
    EXPECT_EQ(view.names, std::vector<std::string>{"Example"});
    EXPECT_EQ(controller.selectedRow(), -1);
    EXPECT_FALSE(view.state.scanButtonEnabled);
    EXPECT_FALSE(view.state.siteControlsEnabled);
    EXPECT_FALSE(view.state.brokenLinksButtonShown);
}

TEST_F(SiteSelection, SelectingMakesTheSiteCurrentAndCompletesItsFile) {
    int announcements = 0;
    ScopedObserver observer(process.notifications, "vrlmpLFF", [&] { ++announcements; });
    selectSite("Example");

    EXPECT_EQ(process.vrlmpCurSite, "Example");
    EXPECT_EQ(process.vrlmpWinTit, "Loomcrest2 - Example");
    EXPECT_EQ(view.windowTitle, "Loomcrest2 - Example");
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(view.filterReloads, 1);
    EXPECT_TRUE(view.state.scanButtonEnabled);
    EXPECT_TRUE(view.state.siteControlsEnabled);
    EXPECT_FALSE(view.state.ignoreRobotsChecked);

    const SiteDetailsFields& details = view.state.details;
    EXPECT_EQ(details.siteName, "Example");
    EXPECT_EQ(details.siteURL, "http://example.com/");
    EXPECT_EQ(details.totalLinksFound, "0");
    EXPECT_EQ(details.pagesFound, "0");
    EXPECT_EQ(details.linksScanned, "0");
    EXPECT_EQ(details.brokenLinks, "0");

    EXPECT_EQ(fileContents(returnFullFileLocation("Example")),
              newSiteFileText("Example", "http://example.com/") + "\n<pagesUsed>0</pagesUsed>");
}

TEST_F(SiteSelection, StatisticsShowAsStoredOrAsZero) {
    addSite("Stats",
            "<siteName>Shown Name</siteName>\n<siteURL>u</siteURL>\n"
            "<ignoreRobotFile>YES</ignoreRobotFile>\n<pagesFound>-5</pagesFound>\n"
            "<totalLinks>812</totalLinks>\n<pagesUsed>lots</pagesUsed>");
    selectSite("Stats");
    EXPECT_EQ(view.state.details.totalLinksFound, "812");
    EXPECT_EQ(view.state.details.pagesFound, "0");
    EXPECT_EQ(view.state.details.linksScanned, "0");
    EXPECT_TRUE(view.state.ignoreRobotsChecked);
    EXPECT_EQ(process.vrlmpCurSite, "Stats");
    EXPECT_EQ(process.vrlmpWinTit, "Loomcrest2 - Shown Name")
        << "the title uses the name in the file";
}

TEST_F(SiteSelection, BrokenLinksAreLoadedWithoutTheEmptyLastLine) {
    writeFile(home.dataRoot() + "/Example/badLinks.txt", "http://a/1\nhttp://a/2\n");
    selectSite("Example");
    EXPECT_EQ(process.vrlmpBadLinkArray, (std::vector<std::string>{"http://a/1", "http://a/2"}));
    EXPECT_EQ(view.state.details.brokenLinks, "2");
    EXPECT_TRUE(view.state.brokenLinksButtonShown);
}

TEST_F(SiteSelection, ALoneLineFeedCountsAsOneEmptyBrokenLink) {
    writeFile(home.dataRoot() + "/Example/badLinks.txt", "\n");
    selectSite("Example");
    EXPECT_EQ(process.vrlmpBadLinkArray, std::vector<std::string>{""});
    EXPECT_EQ(view.state.details.brokenLinks, "1");
}

TEST_F(SiteSelection, AnEmptyBrokenLinksFileCountsNothing) {
    writeFile(home.dataRoot() + "/Example/badLinks.txt", "");
    selectSite("Example");
    EXPECT_TRUE(process.vrlmpBadLinkArray.empty());
    EXPECT_EQ(view.state.details.brokenLinks, "0");
    EXPECT_FALSE(view.state.brokenLinksButtonShown);
}

TEST_F(SiteSelection, DeselectingClearsTheCurrentSite) {
    writeFile(home.dataRoot() + "/Example/badLinks.txt", "http://a/1\n");
    selectSite("Example");
    controller.ignoreRobotsAction(true);
    const int clearsBefore = view.scannedLinksClears;
    int announcements = 0;
    ScopedObserver observer(process.notifications, "vrlmpLFF", [&] { ++announcements; });
    controller.deselectAll();
    EXPECT_FALSE(view.state.ignoreRobotsChecked) << "no other site's tick stays on show";
    EXPECT_EQ(announcements, 1) << "the filters side empties its list";
    EXPECT_EQ(process.vrlmpCurSite, "");
    EXPECT_EQ(process.vrlmpWinTit, "Loomcrest2");
    EXPECT_EQ(view.windowTitle, "Loomcrest2");
    EXPECT_TRUE(process.vrlmpBadLinkArray.empty());
    EXPECT_EQ(view.state.details.siteName, "");
    EXPECT_EQ(view.state.details.brokenLinks, "");
    EXPECT_FALSE(view.state.scanButtonEnabled);
    EXPECT_FALSE(view.state.siteControlsEnabled);
    EXPECT_FALSE(view.state.brokenLinksButtonShown);
    EXPECT_EQ(view.scannedLinksClears, clearsBefore + 1);
}

TEST_F(SiteSelection, AnUnreadableSiteFileStillBecomesCurrent) {
    addSite("Broken", "<siteName>\xff</siteName>");
    selectSite("Broken");
    EXPECT_EQ(process.vrlmpCurSite, "Broken");
    EXPECT_EQ(view.state.details.siteName, "");
    EXPECT_EQ(view.state.details.totalLinksFound, "0");
    EXPECT_EQ(fileContents(returnFullFileLocation("Broken")), "<siteName>\xff</siteName>");
}

TEST_F(SiteSelection, RobotsBoxRewritesTheFlag) {
    selectSite("Example");
    controller.ignoreRobotsAction(true);
    EXPECT_TRUE(view.state.ignoreRobotsChecked);
    EXPECT_EQ(readSiteField(readSiteFile("Example"), SiteField::IgnoreRobotFile), "YES");
    controller.ignoreRobotsAction(false);
    EXPECT_EQ(fileContents(returnFullFileLocation("Example")),
              newSiteFileText("Example", "http://example.com/") + "\n<pagesUsed>0</pagesUsed>");
}

TEST_F(SiteSelection, RobotsBoxReadsTheSelectedRowAndWritesTheShownName) {
    addSite("Folder", "<siteName>Example</siteName>\n<ignoreRobotFile>NO</ignoreRobotFile>");
    selectSite("Folder");
    controller.ignoreRobotsAction(true);
    EXPECT_EQ(fileContents(returnFullFileLocation("Example")),
              "<siteName>Example</siteName>\n<ignoreRobotFile>YES</ignoreRobotFile>\n"
              "<pagesFound>0</pagesFound>\n<totalLinks>0</totalLinks>\n<pagesUsed>0</pagesUsed>");
}

TEST_F(SiteSelection, OldFilesAreConvertedWhenTheListCountsItsRows) {
    writeFile(home.dataRoot() + "/Old/Old.vrlmp", "<siteName>Old</siteName>\n<siteURL>x</siteURL>");
    controller.populateSiteTable();
    EXPECT_EQ(controller.tableArray(), std::vector<std::string>{"Example"});
    EXPECT_EQ(controller.siteTableRows(), 2);
    EXPECT_TRUE(controller.updatedOldFile());
    controller.reloadSiteList();
    EXPECT_EQ(view.names, (std::vector<std::string>{"Example", "Old"}));
    EXPECT_FALSE(controller.updatedOldFile());
}

// A selected row that no longer exists, the last one included, leaves nothing selected.
TEST_F(SiteSelection, ASiteGoneFromTheEndOfTheListIsDeselected) {
    addSite("Zed", newSiteFileText("Zed", "http://zed.com/"));
    selectSite("Zed");
    ASSERT_EQ(controller.selectedRow(), 1);
    std::filesystem::remove_all(siteFolderLocation("Zed"));
    controller.reloadSiteList();
    EXPECT_EQ(controller.selectedRow(), -1);
    EXPECT_EQ(process.vrlmpCurSite, "");
    EXPECT_EQ(view.names, std::vector<std::string>{"Example"});
}

TEST_F(SiteSelection, FiltersDrawerButtonToggles) {
    controller.filterAddPanel();
    EXPECT_EQ(process.vrlmpPLastState, 1);
    EXPECT_TRUE(view.state.filterDrawerOpen);
    controller.filterAddPanel();
    EXPECT_EQ(process.vrlmpPLastState, 0);
    EXPECT_FALSE(view.state.filterDrawerOpen);
}

}  // namespace
}  // namespace loomcrest
