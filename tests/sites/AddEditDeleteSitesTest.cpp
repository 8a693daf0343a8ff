#include "sites/AddEditDeleteSites.h"

#include <gtest/gtest.h>

#include <tuple>

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
using test::writeFile;

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
    // The sheet as "shown|title|default button|alternate button|name|URL".
    std::string sheet() const {
        const SiteSheetState& s = sheetView.state;
        return std::string(s.shown ? "shown" : "hidden") + "|" + s.title + "|" +
               s.defaultButtonTitle + "|" + s.alternateButtonTitle + "|" + s.siteName + "|" +
               s.siteURL;
    }

    test::TemporaryHome home;
    test::RecordingScanView scanView;
    test::RecordingSiteSheet sheetView;
    test::RecordingAlerts alerts;
    ProcessState process;
    ScanViewController siteList{process, scanView, alerts};
    AddEditDeleteSites records{siteList, sheetView, alerts};
};

// Adding writes the site's folder and file and closes the sheet. Bad input, or a name taken by
// a site or any folder, keeps the sheet open with the user's input behind one alert, and writes
// nothing.
TEST_F(SiteRecords, AddingWritesTheSiteOrKeepsTheSheetOpenBehindOneAlert) {
    records.addNewSite();
    EXPECT_EQ(sheet(), "shown|Add New Site|Add Site|Cancel||");
    records.setSheetFields("Example", "example.com");
    records.defaultAction();
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_EQ(sheet(), "hidden|Add New Site|Add Site|Cancel||");
    EXPECT_EQ(sheetView.focusRequests, 1);
    EXPECT_EQ(scanView.names, std::vector<std::string>{"Example"});

    createFolder(siteFolderLocation("Taken"));
    const std::string exists =
        "Refusal: The site you are trying to create already exists, please "
        "select a different name. |  [OK] (site sheet)";
    const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
        {" Example", "ftp://example.com/",
         "Refusal: The following error has occurred while saving your site. | The site name field "
         "cannot be left blank.\nURLs must begin http:// or https://\nftp:// etc scans are not "
         "available. [OK] (site sheet)"},
        {"Example", "other.org", exists},
        {"Taken", "example.com", exists},
    };
    for (const auto& [name, url, alert] : cases) {
        alerts.shown.clear();
        add(name, url);
        EXPECT_EQ(alerts.described(), std::vector<std::string>{alert}) << name;
        EXPECT_TRUE(sheetView.state.shown) << name;
        EXPECT_EQ(records.sheetState().siteName, name) << "the user's input stays";
    }
    EXPECT_EQ(siteFile("Example"), test::golden("new-site.vrLMP"));
    EXPECT_FALSE(pathExists(returnFullFileLocation("Taken")));
    EXPECT_EQ(siteList.tableArray(), std::vector<std::string>{"Example"});
}

TEST_F(SiteRecords, EditingOnlyTheURLKeepsStatisticsAndRobotsFlag) {
    add("Example", "example.com");
    select("Example");
    siteList.ignoreRobotsAction(true);
    writeSiteStatistics("Example", 10, 4, 3);
    records.editSite();
    EXPECT_EQ(sheet(), "shown|Edit Site|Save Changes|Cancel|Example|http://example.com/");
    records.setSheetFields("Example", "https://example.org/shop/");
    records.defaultAction();
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_EQ(siteFile("Example"),
              "<siteName>Example</siteName>\n<siteURL>https://example.org/shop/</siteURL>\n"
              "<ignoreRobotFile>YES</ignoreRobotFile>\n<pagesFound>4</pagesFound>\n"
              "<totalLinks>10</totalLinks>\n<pagesUsed>3</pagesUsed>");
    EXPECT_EQ(process.vrlmpCurSite, "") << "the sheet closes by deselecting the list";
}

// A rename moves the folder with all its files. One onto an existing site is refused, yet that
// site's URL is overwritten; kept so.
TEST_F(SiteRecords, RenamingMovesTheFolderOrOverwritesTheURLOfTheSiteInTheWay) {
    add("First", "first.com");
    add("Second", "second.com");
    writeFile(home.dataRoot() + "/First/sitemap.xml", "<urlset/>");
    edit("First", "Renamed", "first.com");
    EXPECT_FALSE(pathExists(siteFolderLocation("First")));
    EXPECT_EQ(siteFile("Renamed"),
              newSiteFileText("Renamed", "http://first.com/") + "\n<pagesUsed>0</pagesUsed>");
    EXPECT_EQ(fileContents(home.dataRoot() + "/Renamed/sitemap.xml"), "<urlset/>");
    EXPECT_EQ(scanView.names, (std::vector<std::string>{"Renamed", "Second"}));

    edit("Renamed", "Second", "changed.com");
    EXPECT_EQ(alerts.described(),
              std::vector<std::string>{"Refusal: A site with the name \"Second\" already exists, "
                                       "please delete this site first or select a different "
                                       "name. |  [OK]"});
    EXPECT_NE(siteFile("Renamed").find("<siteURL>http://first.com/</siteURL>"), std::string::npos);
    EXPECT_EQ(siteFile("Second"), newSiteFileText("Second", "http://changed.com/"));
    EXPECT_FALSE(sheetView.state.shown);
}

// Cancel, or no site shown, leaves the files alone; a deletion asks first.
TEST_F(SiteRecords, DeleteAsksAndRemovesTheSitesWholeFolderUnlessCancelled) {
    add("Example", "example.com");
    records.deleteSite();
    records.editSite();
    EXPECT_TRUE(alerts.shown.empty()) << "no site shown: nothing to edit or delete";
    EXPECT_FALSE(sheetView.state.shown);
    select("Example");
    const std::string before = siteFile("Example");
    records.editSite();
    records.setSheetFields("Other", "other.com");
    records.alternateAction();
    EXPECT_EQ(siteFile("Example"), before);
    EXPECT_FALSE(pathExists(siteFolderLocation("Other")));
    EXPECT_FALSE(sheetView.state.shown);
    EXPECT_EQ(scanView.state.details.siteName, "");

    writeFile(home.dataRoot() + "/Example/badLinks.txt", "http://x/\n");
    select("Example");
    alerts.answers.push_back(kOtherButtonCode);
    records.deleteSite();
    EXPECT_TRUE(pathExists(returnFullFileLocation("Example")));
    EXPECT_EQ(process.vrlmpCurSite, "Example");

    alerts.shown.clear();
    records.deleteSite();
    EXPECT_EQ(
        alerts.described(),
        std::vector<std::string>{
            "Question: Do you really want to delete the site:\nExample |  [Delete] [Cancel]"});
    EXPECT_FALSE(pathExists(siteFolderLocation("Example")));
    EXPECT_TRUE(siteList.tableArray().empty());
    EXPECT_EQ(process.vrlmpCurSite, "");

    // A hand-edited name never removes anything outside the data root.
    writeFile(returnFullFileLocation("Odd"), "<siteName>..</siteName>\n<siteURL>x</siteURL>");
    siteList.reloadSiteList();
    select("Odd");
    records.deleteSite();
    EXPECT_TRUE(pathExists(home.dataRoot()));
    EXPECT_TRUE(pathExists(returnFullFileLocation("Odd")));
}

}  // namespace
}  // namespace loomcrest
