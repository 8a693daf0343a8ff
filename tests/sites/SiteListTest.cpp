#include "sites/SiteList.h"

#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "sites/DataPaths.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::writeFile;

class DataRoot : public testing::Test {
protected:
    void SetUp() override { checkNeededFoldersExist(); }
    std::string at(const std::string& relative) const { return home.dataRoot() + "/" + relative; }

    test::TemporaryHome home;
};

TEST_F(DataRoot, ListsSiteFilesWithTheExactExtensionInWalkOrderNamedByTheirFolder) {
    EXPECT_TRUE(siteNamesWithExtension("vrLMP").empty());
    writeFile(at("beta/beta.vrLMP"), "");
    writeFile(at("Alpha/Alpha.vrLMP"), "");
    writeFile(at("gamma/gamma.VRLMP"), "");
    writeFile(at("loose.vrLMP"), "");
    writeFile(at("alpha/notes.txt"), "");
    EXPECT_EQ(siteNamesWithExtension("vrLMP"), (std::vector<std::string>{"Alpha", "beta"}));
    removeRecursively(home.dataRoot());
    EXPECT_TRUE(siteNamesWithExtension("vrLMP").empty());
    EXPECT_FALSE(convertOldSiteFiles());

    EXPECT_EQ(siteNameFromPath("Example/Example.vrLMP"), "Example");
    EXPECT_EQ(siteNameFromPath("My Site/sitemap.xml"), "My Site");
    EXPECT_EQ(siteNameFromPath("Example.vrLMP"), std::nullopt);
}

TEST_F(DataRoot, OldSiteFilesAreConvertedAndTheirSitemapsDeleted) {
    writeFile(at("Old/Old.vrlmp"),
              "<siteName>Old</siteName>\n<siteURL>http://old.com/</siteURL>\n"
              "<ignoreRobotFile>YES</ignoreRobotFile>\n<pagesFound>9</pagesFound>");
    for (const char* sitemap : {"sitemap.html", "sitemap2.html", "sitemap6.html"}) {
        writeFile(at(std::string("Old/") + sitemap), "old");
    }
    writeFile(at("Old/sitemap1c.html"), "current");
    writeFile(at("Bare/Bare.vrlmp"), "nothing useful");
    writeFile(at("Bad/Bad.vrlmp"), "<siteName>\xff</siteName>");

    EXPECT_TRUE(convertOldSiteFiles());

    EXPECT_FALSE(pathExists(at("Old/Old.vrlmp")));
    EXPECT_EQ(fileContents(at("Old/Old.vrLMP")),
              "<siteName>Old</siteName>\n<siteURL>http://old.com/</siteURL>\n"
              "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
              "<totalLinks>0</totalLinks>");
    for (const char* sitemap : {"sitemap.html", "sitemap2.html", "sitemap6.html"}) {
        EXPECT_FALSE(pathExists(at(std::string("Old/") + sitemap))) << sitemap;
    }
    EXPECT_EQ(fileContents(at("Old/sitemap1c.html")), "current");
    // A file without the elements keeps empty lines; an unreadable one is left in place.
    EXPECT_EQ(fileContents(at("Bare/Bare.vrLMP")),
              "\n\n<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
              "<totalLinks>0</totalLinks>");
    EXPECT_TRUE(pathExists(at("Bad/Bad.vrlmp")));
    EXPECT_FALSE(pathExists(at("Bad/Bad.vrLMP")));

    EXPECT_TRUE(convertOldSiteFiles()) << "the unreadable file is still there";
    removeRecursively(at("Bad"));
    EXPECT_FALSE(convertOldSiteFiles()) << "nothing is left to convert";
    EXPECT_EQ(siteNamesWithExtension("vrLMP"), (std::vector<std::string>{"Bare", "Old"}));
}

}  // namespace
}  // namespace loomcrest
