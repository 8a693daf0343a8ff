#include "sites/SiteFile.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/FileSystem.h"
#include "sites/DataPaths.h"
#include "support/Golden.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::TemporaryHome;
using test::writeFile;

std::string newSite() {
    return test::golden("new-site.vrLMP");
}

TEST(SiteFilePaths, LiveUnderHomeAndAreCreatedWithTheirMissingParents) {
    TemporaryHome home;
    EXPECT_EQ(homeFolderLocation(),
              home.path() + "/Library/Application Support/Quillmoor/Loomcrest");
    EXPECT_EQ(returnFullFileLocation("My Site"), home.dataRoot() + "/My Site/My Site.vrLMP");
    EXPECT_EQ(parentFolderOf(returnFullFileLocation("Example")), home.dataRoot() + "/Example");
    ASSERT_FALSE(pathExists(home.path() + "/Library"));
    checkNeededFoldersExist();
    checkNeededFoldersExist();  // a second start finds everything in place
    EXPECT_TRUE(isDirectory(home.dataRoot()));
}

// A field is read from one line, greedily within it; the first match wins and the tags are
// case-sensitive.
TEST(SiteFileText, FieldsAreReadFromTheirOwnLineAndEditedByLiteralReplacement) {
    const std::string text =
        "<siteName>One</siteName>\n<siteName>Two</siteName>\n<siteURL>a\nb</siteURL>";
    const std::vector<std::tuple<std::string, SiteField, std::optional<std::string>>> fields = {
        {text, SiteField::SiteName, "One"},
        {text, SiteField::SiteURL, std::nullopt},
        {text, SiteField::PagesUsed, std::nullopt},
        {"<pagesFound>1</pagesFound><pagesFound>2</pagesFound>", SiteField::PagesFound,
         "1</pagesFound><pagesFound>2"},
        {"<SITENAME>x</SITENAME>", SiteField::SiteName, std::nullopt},
    };
    for (const auto& [fileText, field, value] : fields) {
        EXPECT_EQ(readSiteField(fileText, field), value) << fileText;
    }

    const std::string ignoring = siteFileTextWithRobotsFlag(newSite(), true);
    const std::string lowerCase = "<ignoreRobotFile>no</ignoreRobotFile>";
    const std::pair<std::string, std::string> cases[] = {
        {newSiteFileText("Example", "http://example.com/"), newSite()},
        {siteFileElement(SiteField::SiteURL, "http://a.com/?x=1&y=<2>"),
         "<siteURL>http://a.com/?x=1&y=<2></siteURL>"},
        {replaceSiteElement("<siteURL>u</siteURL>\nx<siteURL>u</siteURL>", SiteField::SiteURL, "v"),
         "<siteURL>v</siteURL>\nx<siteURL>v</siteURL>"},
        {replaceSiteElement("no element", SiteField::SiteURL, "v"), "no element"},
        // All three statistics or none; the file on disk shows them written.
        {siteFileTextWithStatistics(newSite(), 1, 2, 3), newSite()},
        {ignoring,
         "<siteName>Example</siteName>\n<siteURL>http://example.com/</siteURL>\n"
         "<ignoreRobotFile>YES</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
         "<totalLinks>0</totalLinks>"},
        {siteFileTextWithRobotsFlag(ignoring, false), newSite()},
        {siteFileTextWithRobotsFlag(lowerCase, true), lowerCase},
        {completedSiteFileText("<siteName>A</siteName>"),
         "<siteName>A</siteName>\n<pagesFound>0</pagesFound>\n<totalLinks>0</totalLinks>"
         "\n<pagesUsed>0</pagesUsed>"},
        // The search ignores case, so a differently spelled tag counts as present.
        {completedSiteFileText("<PAGESFOUND>3</PAGESFOUND>\n<TotalLinks>"),
         "<PAGESFOUND>3</PAGESFOUND>\n<TotalLinks>\n<pagesUsed>0</pagesUsed>"},
        {countForDisplay(std::string("42")), "42"},
        {countForDisplay(std::string("-3")), "0"},
        {countForDisplay(std::string("many")), "0"},
    };
    for (const auto& [edited, expected] : cases) {
        EXPECT_EQ(edited, expected);
    }
}

class SiteFileOnDisk : public testing::Test {
protected:
    void SetUp() override {
        checkNeededFoldersExist();
        writeFile(returnFullFileLocation("Example"), newSite());
    }
    std::string siteFile() const { return test::fileContents(returnFullFileLocation("Example")); }

    TemporaryHome home;
};

TEST_F(SiteFileOnDisk, CompletionWritesTheSixthLineOnceButNeverAMissingOrUnreadableFile) {
    writeSiteStatistics("Example", 5, 6, 7);
    EXPECT_EQ(siteFile(), newSite()) << "left alone while pagesUsed is missing";
    const std::string completed = completeSiteFile("Example");
    EXPECT_EQ(completed, newSite() + "\n<pagesUsed>0</pagesUsed>");
    EXPECT_EQ(siteFile(), completed);
    EXPECT_EQ(completeSiteFile("Example"), completed);
    EXPECT_EQ(siteFile(), completed);
    writeSiteStatistics("Example", 0, 2147483647, -2147483647 - 1);
    EXPECT_EQ(siteFile(),
              "<siteName>Example</siteName>\n<siteURL>http://example.com/</siteURL>\n"
              "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>2147483647</pagesFound>\n"
              "<totalLinks>0</totalLinks>\n<pagesUsed>-2147483648</pagesUsed>");

    EXPECT_EQ(completeSiteFile("Missing"),
              "\n<pagesFound>0</pagesFound>\n<totalLinks>0</totalLinks>\n<pagesUsed>0</pagesUsed>");
    EXPECT_FALSE(pathExists(siteFolderLocation("Missing")));

    const std::string latin1 = "<siteName>Caf\xe9</siteName>";
    writeFile(returnFullFileLocation("Example"), latin1);
    EXPECT_EQ(readSiteFile("Example"), "");
    completeSiteFile("Example");
    writeSiteStatistics("Example", 1, 2, 3);
    EXPECT_EQ(siteFile(), latin1);
}

}  // namespace
}  // namespace loomcrest
