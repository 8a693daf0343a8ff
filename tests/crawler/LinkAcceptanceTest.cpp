#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"

namespace loomcrest {

void PrintTo(const LinkDecision& decision, std::ostream* out) {
    constexpr const char* kNames[] = {"Dropped", "Recorded", "Queued"};
    *out << kNames[static_cast<int>(decision.outcome)] << " " << decision.url;
}

namespace {

class LinkAcceptance : public testing::Test {
protected:
    void SetUp() override {
        scanner.setAllowedMedia();
        scanner.setSiteBaseURL("http://host/");
        onPage("http://host/");
    }

    void onPage(const std::string& url) { scanner.setPageBaseURLs(url); }
    void queued(const std::string& url) { scanner.uniquePagesLeftMArray.append(url); }
    LinkDecision accept(const std::string& href) { return scanner.acceptLink(href); }

    ProcessState process;
    SiteScanner scanner{process};
};

LinkDecision decision(LinkOutcome outcome, std::string url) {
    return LinkDecision{outcome, std::move(url), {}, {}};
}

const LinkDecision kDropped;

TEST_F(LinkAcceptance, RelativeLinksAreResolvedAndQueuedOnce) {
    onPage("http://host/a/");
    EXPECT_EQ(accept("page.html#top"), decision(LinkOutcome::Queued, "http://host/a/page.html"));
    EXPECT_EQ(accept("page.html"), decision(LinkOutcome::Recorded, "http://host/a/page.html"));
    EXPECT_EQ(scanner.uniquePagesLeftMArray.size(), 1U);
    EXPECT_EQ(scanner.uniquePagesLeftMArray[0], "http://host/a/page.html");
}

TEST_F(LinkAcceptance, ABareFragmentIsThePageItself) {
    onPage("http://host/a/page.html");
    queued("http://host/a/page.html");
    EXPECT_EQ(accept("#top"), decision(LinkOutcome::Recorded, "http://host/a/page.html"));
}

TEST_F(LinkAcceptance, EmptyAndUnparsableHrefsAreDropped) {
    EXPECT_EQ(accept(""), kDropped);
    EXPECT_EQ(accept("a page.html"), kDropped);
    EXPECT_EQ(accept("http://host/%zz"), kDropped);
}

TEST_F(LinkAcceptance, ExtensionRuleComparesFromTheFirstDotAndRespectsCase) {
    EXPECT_EQ(accept("http://host/a.b/c.html"), kDropped);
    EXPECT_EQ(accept("http://host/c.HTML"), kDropped);
    EXPECT_EQ(accept("/doc.pdf"), kDropped);
    EXPECT_EQ(accept("/x.php5").outcome, LinkOutcome::Queued);
    EXPECT_EQ(accept("/c.html?x=1"), decision(LinkOutcome::Queued, "http://host/c.html?x=1"));
}

TEST_F(LinkAcceptance, AFolderIsDroppedOnceItsIndexPageIsQueued) {
    queued("http://host/dir/index.html");
    EXPECT_EQ(accept("/dir/"), kDropped);
}

TEST_F(LinkAcceptance, AnIndexPageIsNotQueuedOnceItsFolderIs) {
    queued("http://host/dir/");
    EXPECT_EQ(accept("/dir/index.html"),
              decision(LinkOutcome::Recorded, "http://host/dir/index.html"));
}

TEST_F(LinkAcceptance, IndexNamesAreGluedWithoutASlash) {
    queued("http://host/dirindex.php");
    EXPECT_EQ(accept("/dir"), kDropped);
}

TEST_F(LinkAcceptance, HostTwinsAreOnePageInEitherOrder) {
    queued("http://host/x.html");
    EXPECT_EQ(accept("http://www.host/x.html"),
              decision(LinkOutcome::Recorded, "http://www.host/x.html"));

    SiteScanner reversed{process};
    reversed.setAllowedMedia();
    reversed.setSiteBaseURL("http://host/");
    reversed.setPageBaseURLs("http://host/");
    reversed.uniquePagesLeftMArray.append("http://www.host/x.html");
    EXPECT_EQ(reversed.acceptLink("http://host/x.html").outcome, LinkOutcome::Recorded);
}

TEST_F(LinkAcceptance, SchemeDoesNotDecideMembership) {
    EXPECT_EQ(accept("https://www.host/a.html"),
              decision(LinkOutcome::Queued, "https://www.host/a.html"));
}

TEST_F(LinkAcceptance, QueriesAreQueuedOnlyBehindAPageName) {
    EXPECT_EQ(accept("/p.php?a=1?b=2"),
              decision(LinkOutcome::Recorded, "http://host/p.php?a=1?b=2"));
    EXPECT_EQ(accept("/dir/?a=1"), decision(LinkOutcome::Recorded, "http://host/dir/?a=1"));
    EXPECT_EQ(accept("/page.php?id=3"), decision(LinkOutcome::Queued, "http://host/page.php?id=3"));
}

TEST_F(LinkAcceptance, OffSiteAndAboveBaseLinksAreRecordedNotQueued) {
    scanner.setSiteBaseURL("http://host/dir/index.html");
    EXPECT_EQ(scanner.siteBaseURL, "http://host/dir/");
    onPage("http://host/dir/index.html");
    EXPECT_EQ(accept("http://other.org/x.html"),
              decision(LinkOutcome::Recorded, "http://other.org/x.html"));
    EXPECT_EQ(accept("../up.html"), decision(LinkOutcome::Recorded, "http://host/up.html"));
    EXPECT_EQ(accept("mailto:me@host.org"), decision(LinkOutcome::Recorded, "mailto:me@host.org"));
    EXPECT_TRUE(scanner.uniquePagesLeftMArray.empty());
}

TEST_F(LinkAcceptance, InSiteIsAPlainPrefixTest) {
    scanner.setSiteBaseURL("http://host/dir/");
    EXPECT_EQ(accept("http://host/directory/x.html").outcome, LinkOutcome::Queued);
    scanner.setSiteBaseURL("http://shop/");
    EXPECT_EQ(accept("http://shopfront/x.html").outcome, LinkOutcome::Queued);
}

TEST_F(LinkAcceptance, AnEmptyPathGetsASlash) {
    EXPECT_EQ(accept("http://host"), decision(LinkOutcome::Queued, "http://host/"));
}

TEST_F(LinkAcceptance, FiltersAlwaysWinRobotsOnlyWhileObeyed) {
    scanner.loadRobotsRules("User-agent: somebot\nDisallow: /private\n");
    EXPECT_EQ(accept("/private/x.html"), kDropped);
    EXPECT_EQ(accept("/a/private.html"), kDropped);
    scanner.ignoreRobots = true;
    EXPECT_EQ(accept("/private/x.html").outcome, LinkOutcome::Queued);

    scanner.filters = {"PDF"};
    EXPECT_EQ(accept("/files/report.pdf?x=1"), kDropped);
    EXPECT_EQ(accept("/PdF.html"), kDropped);
}

TEST_F(LinkAcceptance, ADegeneratedSiteBaseDropsEverything) {
    scanner.setSiteBaseURL("http://host");
    EXPECT_EQ(scanner.siteBaseURL, "http://");
    EXPECT_EQ(accept("http://host/a.html"), kDropped);
}

TEST_F(LinkAcceptance, PageBasesCutBackOnlyForPageNames) {
    onPage("http://host/dir/page.html");
    EXPECT_EQ(scanner.pageBaseURL, "http://host/dir/");
    EXPECT_EQ(scanner.pageBaseURLUnchanged, "http://host/dir/page.html");
    onPage("http://host/dir");
    EXPECT_EQ(scanner.pageBaseURL, "http://host/dir");
}

TEST(AllowedMedia, HoldsTheFourteenExtensionsInOrder) {
    ProcessState process;
    SiteScanner scanner{process};
    scanner.setAllowedMedia();
    EXPECT_EQ(
        scanner.allowedMediaArray,
        (std::vector<std::string>{".aspx", ".asp", ".cfm", ".html", ".htm", ".jsp", ".php", ".phps",
                                  ".cfml", ".shtm", ".shtml", ".php3", ".php4", ".php5"}));
}

}  // namespace
}  // namespace loomcrest
