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
    // The details as "name|URL|total links|pages found|pages used|broken links".
    std::string details() const {
        const SiteDetailsFields& d = view.state.details;
        return d.siteName + "|" + d.siteURL + "|" + d.totalLinksFound + "|" + d.pagesFound + "|" +
               d.linksScanned + "|" + d.brokenLinks;
    }
    // Which of the scan button, the site's controls, the broken links button and the robots
    // box are on.
    std::string controls() const {
        const ScanViewState& s = view.state;
        return std::string(s.scanButtonEnabled ? "scan " : "") +
               (s.siteControlsEnabled ? "controls " : "") +
               (s.brokenLinksButtonShown ? "broken " : "") +
               (s.ignoreRobotsChecked ? "robots" : "");
    }

    test::TemporaryHome home;
    test::RecordingScanView view;
    ProcessState process;
    test::RecordingAlerts alerts;
    ScanViewController controller{process, view, alerts};
};

TEST_F(SiteSelection, SelectingMakesTheSiteCurrentDeselectingClearsItAndTheDrawerButtonToggles) {
    EXPECT_EQ(view.names, std::vector<std::string>{"Example"});
    EXPECT_EQ(controller.selectedRow(), -1);
    EXPECT_EQ(controls(), "");
    writeFile(home.dataRoot() + "/Example/badLinks.txt", "http://a/1\n");
    int announcements = 0;
    ScopedObserver observer(process.notifications, "vrlmpLFF", [&] { ++announcements; });
    selectSite("Example");
    EXPECT_EQ(process.vrlmpCurSite + "|" + process.vrlmpWinTit + "|" + view.windowTitle,
              "Example|Loomcrest2 - Example|Loomcrest2 - Example");
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(view.filterReloads, 1);
    EXPECT_EQ(controls(), "scan controls broken ");
    EXPECT_EQ(details(), "Example|http://example.com/|0|0|0|1");

    controller.ignoreRobotsAction(true);
    const int clearsBefore = view.scannedLinksClears;
    controller.deselectAll();
    EXPECT_EQ(controls(), "") << "no other site's tick stays on show";
    EXPECT_EQ(announcements, 2) << "the filters side empties its list";
    EXPECT_EQ(process.vrlmpCurSite + "|" + process.vrlmpWinTit + "|" + view.windowTitle,
              "|Loomcrest2|Loomcrest2");
    EXPECT_TRUE(process.vrlmpBadLinkArray.empty());
    EXPECT_EQ(details(), "|||||");
    EXPECT_EQ(view.scannedLinksClears, clearsBefore + 1);

    // The filters drawer button toggles.
    controller.filterAddPanel();
    EXPECT_EQ(process.vrlmpPLastState, 1);
    EXPECT_TRUE(view.state.filterDrawerOpen);
    controller.filterAddPanel();
    EXPECT_EQ(process.vrlmpPLastState, 0);
    EXPECT_FALSE(view.state.filterDrawerOpen);
}

TEST_F(SiteSelection, StatisticsAndBrokenLinksShowAsStoredAndTheRobotsBoxRewritesTheFlag) {
    addSite("Stats",
            "<siteName>Shown Name</siteName>\n<siteURL>u</siteURL>\n"
            "<ignoreRobotFile>YES</ignoreRobotFile>\n<pagesFound>-5</pagesFound>\n"
            "<totalLinks>812</totalLinks>\n<pagesUsed>lots</pagesUsed>");
    selectSite("Stats");
    EXPECT_EQ(details(), "Shown Name|u|812|0|0|0");
    EXPECT_EQ(controls(), "scan controls robots");
    EXPECT_EQ(process.vrlmpWinTit, "Loomcrest2 - Shown Name")
        << "the title uses the name in the file";
    addSite("Broken", "<siteName>\xff</siteName>");
    selectSite("Broken");
    EXPECT_EQ(process.vrlmpCurSite, "Broken");
    EXPECT_EQ(details(), "||0|0|0|0");

    // The broken links file read as lines without the empty last one.
    const struct {
        std::string file;
        std::vector<std::string> links;
    } cases[] = {
        {"http://a/1\nhttp://a/2\n", {"http://a/1", "http://a/2"}},
        {"\n", {""}},
        {"", {}},
    };
    for (const auto& c : cases) {
        writeFile(home.dataRoot() + "/Example/badLinks.txt", c.file);
        controller.deselectAll();
        selectSite("Example");
        EXPECT_EQ(process.vrlmpBadLinkArray, c.links) << c.file;
        EXPECT_EQ(view.state.details.brokenLinks, std::to_string(c.links.size()));
        EXPECT_EQ(view.state.brokenLinksButtonShown, !c.links.empty());
    }

    // The robots box rewrites the flag in the file of the shown name.
    controller.ignoreRobotsAction(true);
    EXPECT_TRUE(view.state.ignoreRobotsChecked);
    EXPECT_EQ(readSiteField(readSiteFile("Example"), SiteField::IgnoreRobotFile), "YES");
    controller.ignoreRobotsAction(false);
    EXPECT_EQ(readSiteField(readSiteFile("Example"), SiteField::IgnoreRobotFile), "NO");

    // The row picks the folder; the name in its file picks the file written.
    addSite("Folder", "<siteName>Example</siteName>\n<ignoreRobotFile>NO</ignoreRobotFile>");
    selectSite("Folder");
    controller.ignoreRobotsAction(true);
    EXPECT_EQ(test::fileContents(returnFullFileLocation("Example")),
              "<siteName>Example</siteName>\n<ignoreRobotFile>YES</ignoreRobotFile>\n"
              "<pagesFound>0</pagesFound>\n<totalLinks>0</totalLinks>\n<pagesUsed>0</pagesUsed>");
}

TEST_F(SiteSelection, OldFilesAreConvertedAndAGoneSiteIsDeselectedWhenTheListIsRead) {
    writeFile(home.dataRoot() + "/Old/Old.vrlmp", "<siteName>Old</siteName>\n<siteURL>x</siteURL>");
    controller.populateSiteTable();
    EXPECT_EQ(controller.tableArray(), std::vector<std::string>{"Example"});
    EXPECT_EQ(controller.siteTableRows(), 2);
    EXPECT_TRUE(controller.updatedOldFile());
    controller.reloadSiteList();
    EXPECT_EQ(view.names, (std::vector<std::string>{"Example", "Old"}));
    EXPECT_FALSE(controller.updatedOldFile());

    // A selected row that no longer exists, the last one included, leaves nothing selected.
    addSite("Zed", newSiteFileText("Zed", "http://zed.com/"));
    selectSite("Zed");
    ASSERT_EQ(controller.selectedRow(), 2);
    std::filesystem::remove_all(siteFolderLocation("Zed"));
    controller.reloadSiteList();
    EXPECT_EQ(controller.selectedRow(), -1);
    EXPECT_EQ(process.vrlmpCurSite, "");
    EXPECT_EQ(view.names, (std::vector<std::string>{"Example", "Old"}));
}

}  // namespace
}  // namespace loomcrest
