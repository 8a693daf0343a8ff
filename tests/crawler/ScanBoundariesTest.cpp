#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "SiteSession.h"
#include "crawler/CrawlSettingsFile.h"
#include "crawler/ScanFilters.h"
#include "crawler/SiteScanner.h"
#include "support/ScanFixture.h"

namespace loomcrest {
namespace {

using test::TestPage;

class ScanBoundaries : public test::ScanFixture {};

TEST_F(ScanBoundaries, EveryAnswerFrom400OnIsBroken) {
    servePage("/", {R"(<title>Home</title><a href="ok.html">1</a><a href="bad.html">2</a>)"
                    R"(<a href="gone.html">3</a>)"});
    servePage("/ok.html", {"<title>OK</title>", "text/html", 226});
    servePage("/bad.html", {"<title>Bad</title>", "text/html", 400});
    servePage("/gone.html", {"<title>Gone</title>", "text/html", 410});
    addSite();
    // Pages asked for twice, and asked for once.
    for (const bool fetchOnce : {false, true}) {
        CrawlSettings settings;
        settings.setFetchOnce(fetchOnce);
        ASSERT_TRUE(writeCrawlSettings(home.dataRoot() + "/Test", settings));
        scan();
        EXPECT_EQ(process.vrlmpBadLinkArray,
                  (std::vector<std::string>{server.url("/bad.html"), server.url("/gone.html")}))
            << fetchOnce;
    }
}

TEST_F(ScanBoundaries, TheBarIsSetOnlyOnceTwoPagesAreListed) {
    driver.setViewRefreshInterval(std::chrono::milliseconds(0));  // every figure is shown
    servePage("/", {"<title>Only</title>"});
    addSite();
    scan();
    // With a single page listed the bar keeps the figures it rests at.
    EXPECT_EQ(sheet.progressShown,
              (std::vector<ScanProgress>{{0, 1, 0, 5, 1}, {0, 1, 0, 5, 1}, {0, 0, 0, 5, 1}}));

    servePage("/", {R"(<title>Home</title><a href="a.html">A</a>)"});
    servePage("/a.html", {"<title>A</title>"});
    sheet.progressShown.clear();
    scan();
    EXPECT_EQ(
        sheet.progressShown,
        (std::vector<ScanProgress>{
            {1, 0, 0, 5, 1}, {1, 1, 0, 2, 1}, {0, 2, 0, 2, 2}, {0, 2, 0, 2, 2}, {0, 0, 0, 5, 1}}));
}

TEST(FilterRows, ARowPastTheLastGivesNothing) {
    test::TemporaryHome home;
    ProcessState process;
    cli::HeadlessFilterView view;
    test::RecordingAlerts alerts;
    ScanFilters filters{process, [] { return std::string(); }, view, alerts};
    // The place after the last filter held one, so reading it would show that filter again.
    process.vrlmpFiltersArray = {"tmp", "pdf", "gone"};
    process.vrlmpFiltersArray.pop_back();
    EXPECT_EQ(filters.filterArrayObject(1), "pdf");
    EXPECT_EQ(filters.filterArrayObject(2), "");
}

}  // namespace
}  // namespace loomcrest
