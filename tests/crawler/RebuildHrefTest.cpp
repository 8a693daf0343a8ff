#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"

namespace loomcrest {
namespace {

class RebuildHref : public testing::Test {
protected:
    void SetUp() override {
        scanner.setAllowedMedia();
        scanner.setSiteBaseURL("http://host/site/");
        scanner.setPageBaseURLs("http://host/site/a/b/page.html");
    }
    ProcessState process;
    SiteScanner scanner{process};
};

TEST_F(RebuildHref, TheSiteBaseAndAbsoluteLinksStandAsTheyAre) {
    EXPECT_EQ(scanner.rebuildHREF("http://host/site/"), "http://host/site/");
    EXPECT_EQ(scanner.rebuildHREF("https://elsewhere/x"), "https://elsewhere/x");
    EXPECT_EQ(scanner.rebuildHREF("ftp://files/x"), "ftp://files/x");
    EXPECT_EQ(scanner.rebuildHREF("httpish.html"), "httpish.html");
}

TEST_F(RebuildHref, MailLinks) {
    EXPECT_EQ(scanner.rebuildHREF("mailto:me@host"), "mailto:me@host");
    EXPECT_EQ(scanner.rebuildHREF("mailto:"), "http://host/site/");
}

TEST_F(RebuildHref, FragmentsNameTheUnchangedPage) {
    EXPECT_EQ(scanner.rebuildHREF("#top"), "http://host/site/a/b/page.html");
}

TEST_F(RebuildHref, ParentFoldersAreClimbedOnePerGroup) {
    EXPECT_EQ(scanner.rebuildHREF("../x.html"), "http://host/site/a/x.html");
    EXPECT_EQ(scanner.rebuildHREF("../../x.html"), "http://host/site/x.html");
}

TEST_F(RebuildHref, MoreParentsThanFoldersStopAtTheRoot) {
    EXPECT_EQ(scanner.rebuildHREF("../../../../../../x.html"), "http://host/x.html");
    scanner.setPageBaseURLs("http://host");
    EXPECT_EQ(scanner.rebuildHREF("../../x.html"), "http://host/x.html");
    scanner.setPageBaseURLs("");
    EXPECT_EQ(scanner.rebuildHREF("../x.html"), "/x.html");
}

TEST_F(RebuildHref, DotSlashLosesTheRestOfTheHref) {
    EXPECT_EQ(scanner.rebuildHREF("./other.html"), "http://host/site/a/b/");
}

TEST_F(RebuildHref, RootRelativeLinksDropPortAndUser) {
    scanner.setPageBaseURLs("http://user@host:8080/a/page.html");
    EXPECT_EQ(scanner.rebuildHREF("/x.html"), "http://host/x.html");
}

TEST_F(RebuildHref, EmptyHrefIsThePageFolder) {
    EXPECT_EQ(scanner.rebuildHREF(""), "http://host/site/a/b/");
}

TEST_F(RebuildHref, OtherHrefsJoinTheFolder) {
    EXPECT_EQ(scanner.rebuildHREF("x.html"), "http://host/site/a/b/x.html");
    scanner.setPageBaseURLs("http://host/dir");
    EXPECT_EQ(scanner.rebuildHREF("x.html"), "http://host/dir/x.html");
    scanner.pageBaseURL = "http://host/page.html";
    EXPECT_EQ(scanner.rebuildHREF("x.html"), "http://host/page.htmlx.html");
}

}  // namespace
}  // namespace loomcrest
