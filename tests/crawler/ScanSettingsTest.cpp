#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <set>

#include "crawler/CrawlSettingsFile.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/ScanFixture.h"
#include "support/TestServer.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

using namespace std::chrono_literals;

constexpr int kPages = 40;

class ScanSettings : public test::ScanFixture {
protected:
    // A site with a little of everything: titles with "&", images without alt text, broken
    // and non-HTML pages, a folder listing, an empty page, a redirect and outside links. Every page
    // answers the same way each time it is asked.
    void serveVariedSite() {
        std::string home = "<title>Home &amp; more</title>";
        for (int i = 0; i < kPages; ++i) {
            home += "<a href=\"p" + std::to_string(i) + ".html\">P" + std::to_string(i) + "</a>";
        }
        home += R"(<a href="gone.html">Gone</a><a href="r.php?f=pdf">PDF</a>)"
                R"(<a href="files/">Files</a><a href="empty.html">Empty</a>)"
                R"(<a href="http://elsewhere.example/x.html"><img alt="Out"></a>)"
                R"(<a href="old.html">Old</a>)";
        servePage("/old.html", {"", "text/html", 301, "", "/moved.html"});
        servePage("/moved.html", {"<title>Moved</title>"});
        servePage("/", {home, "text/html", 200, "Fri, 17 May 2024 10:00:00 GMT"});
        for (int i = 0; i < kPages; ++i) {
            const std::string page =
                "<title>Page " + std::to_string(i) + " & co</title><a href=\"p" +
                std::to_string((i * 7 + 1) % kPages) + ".html\">Next</a><a href=\"d/q" +
                std::to_string(i) + ".html\"><img src=\"i.png\"></a><a href=\"/\">Home</a>";
            servePage("/p" + std::to_string(i) + ".html",
                      {page, "text/html", 200, i % 3 == 0 ? "Sun, 06 Nov 1994 08:49:37 GMT" : ""});
            servePage("/d/q" + std::to_string(i) + ".html",
                      {"<title>Q" + std::to_string(i) + "</title>"});
        }
        servePage("/r.php?f=pdf", {"%PDF-1.4", "application/pdf"});
        servePage("/files/", {"<title>Index of /files</title><a href=\"x.html\">x</a>"});
        servePage("/empty.html", {""});
    }

    // What a scan gives, by name: its files, the figures the window shows, the links scanned
    // and broken, the alerts, and the requests it made (sorted, also kept in `requests`).
    std::map<std::string, std::string> scanAndCollect() {
        const size_t before = requestLog().size();
        alerts.shown.clear();
        scan();
        std::map<std::string, std::string> outcome;
        for (const char* name :
             {"sitemap1cpo.html", "sitemap2cpo.html", "sitemap3cpo.html", "sitemap1c.html",
              "sitemap2c.html", "sitemap3c.html", "sitemap.xml", "badLinks.txt", "Test.vrLMP"}) {
            outcome[name] = siteFile(name);
        }
        outcome["figures"] = figures();
        outcome["scanned"] = scanView.scannedLinks;
        outcome["broken"] = testing::PrintToString(process.vrlmpBadLinkArray);
        outcome["alerts"] = testing::PrintToString(alerts.described());
        const auto log = requestLog();
        requests.assign(log.begin() + static_cast<long>(before), log.end());
        std::sort(requests.begin(), requests.end());
        outcome["requests"] = testing::PrintToString(requests);
        return outcome;
    }

    static CrawlSettings withConnections(int connections, bool fetchOnce = false) {
        CrawlSettings settings;
        settings.setConnections(connections);
        settings.setFetchOnce(fetchOnce);
        return settings;
    }

    std::vector<std::string> requests;
};

TEST_F(ScanSettings, ConnectionsAndFetchOnceGiveWhatOneConnectionGives) {
    serveVariedSite();
    addSite();
    auto one = scanAndCollect();
    ASSERT_TRUE(test::contains(one["figures"], "pages " + std::to_string(2 * kPages + 6) + ","));
    ASSERT_TRUE(test::contains(one["sitemap.xml"], "<lastmod>1994-11-06</lastmod>"));
    useSettings(withConnections(8));
    EXPECT_EQ(scanAndCollect(), one);

    one.erase("requests");
    for (const int connections : {1, 4}) {
        useSettings(withConnections(connections, true));
        auto once = scanAndCollect();
        once.erase("requests");
        EXPECT_EQ(once, one) << connections;
        const std::set<std::string> distinct(requests.begin(), requests.end());
        EXPECT_EQ(distinct.size(), requests.size()) << "no request twice";
        // The start page, robots.txt, every listed page but the listing's link, and the
        // redirect with the page it leads to.
        EXPECT_EQ(requests.size(), 2 * kPages + 8U);
    }
}

TEST_F(ScanSettings, TheRateHoldsAcrossConnections) {
    test::Arrivals arrivals;
    intercept = [&](const httplib::Request&, httplib::Response&) {
        arrivals.note();
        return false;
    };
    std::string home = "<title>Home</title>";
    for (int i = 0; i < 10; ++i) {
        home += "<a href=\"p" + std::to_string(i) + ".html\">P</a>";
        servePage("/p" + std::to_string(i) + ".html", {"<title>P</title>"});
    }
    servePage("/", {home});
    addSite();
    CrawlSettings settings = withConnections(4);
    settings.setRequestsPerSecond(20);
    useSettings(settings);
    scan();
    EXPECT_EQ(siteView.state().details.pagesFound, "11");
    ASSERT_EQ(arrivals.count(), 2 + 11 * 6U);
    // 20 a second allows 41 in two seconds (the first goes at once); the slack is for the
    // machine's noise in when the server notes an arrival.
    EXPECT_LE(arrivals.mostWithin(2s), 46U);
    EXPECT_GE(arrivals.mostWithin(2s), 30U) << "the limit is a rate, not a crawl";
}

TEST_F(ScanSettings, CancelEndsARetryAfterWait) {
    // One connection lets the request under way finish and the next one go, as a scan
    // always did; only the minute's wait is cut short, each time.
    test::Arrivals stalled;
    intercept = [&](const httplib::Request& request, httplib::Response& response) {
        if (request.target != "/stall.html") {
            return false;
        }
        stalled.note();
        loop.perform([this] { driver.cancelScan(); });
        response.status = 429;
        response.set_header("Retry-After", "60");
        return true;
    };
    servePage("/", {R"(<title>Home</title><a href="stall.html">S</a><a href="b.html">B</a>)"});
    addSite();
    const auto started = std::chrono::steady_clock::now();
    scan();
    EXPECT_LT(std::chrono::steady_clock::now() - started, 30s) << "no minute's wait";
    EXPECT_EQ(stalled.count(), 2U) << "the title's two fetches, neither retried";
    EXPECT_EQ(figures(), "links 3, pages 3, scanned 1, broken 0");
}

// Basic authentication comes from the netrc when asked to.
TEST_F(ScanSettings, EveryRequestCarriesTheUserAgentExtraHeadersAndNetrcLogin) {
    std::mutex seenMutex;
    std::set<std::string> seen;
    intercept = [&](const httplib::Request& request, httplib::Response& response) {
        const std::lock_guard lock(seenMutex);
        seen.insert(request.get_header_value("User-Agent") + " | " +
                    request.get_header_value("Cookie") + " | " +
                    request.get_header_value("X-Token"));
        if (request.get_header_value("Authorization") == "Basic dXNlcjpzZWNyZXQ=") {
            return false;
        }
        response.status = 401;
        return true;
    };
    servePage("/", {R"(<title>Home</title><a href="a.html">A</a>)"});
    servePage("/a.html", {"<title>A</title>"});
    test::writeFile(home.path() + "/.netrc", "machine 127.0.0.1 login user password secret\n");
    addSite();
    scan();
    EXPECT_EQ(seen, std::set<std::string>{CrawlSettings::defaultUserAgent() + " |  | "});
    EXPECT_EQ(alerts.described(),
              std::vector<std::string>{"Refusal: The Site URL Could Not Be "
                                       "Reached | Error Code: 401 - Unauthorized [OK]"});

    CrawlSettings settings;
    settings.setUserAgent("TestBot/3 (+https://example.org/bot)");
    settings.setExtraHeaders({"Cookie: session=1", "X-Token:\tabc"});
    settings.setUseNetrc(true);
    for (const int connections : {1, 3}) {
        settings.setConnections(connections);
        useSettings(settings);
        seen.clear();
        scan();
        EXPECT_EQ(seen,
                  std::set<std::string>{"TestBot/3 (+https://example.org/bot) | session=1 | abc"});
        EXPECT_EQ(figures(), "links 3, pages 2, scanned 2, broken 0");
    }
    EXPECT_EQ(alerts.shown.size(), 1U);
}

TEST_F(ScanSettings, CancelWithFetchesUnderWayClosesTheFilesAndWritesTheStatistics) {
    std::mutex heldMutex;
    std::condition_variable releasedHeld;
    bool release = false;
    test::Arrivals held;
    std::atomic<int> answeredHeld{0};
    intercept = [&](const httplib::Request& request, httplib::Response& response) {
        if (!request.target.starts_with("/h")) {
            return false;
        }
        held.note();
        if (held.count() == 8) {
            loop.perform([this] { driver.cancelScan(); });
        }
        std::unique_lock lock(heldMutex);
        releasedHeld.wait_for(lock, 20s, [&] { return release; });
        response.set_content("<title>H</title>", "text/html");
        ++answeredHeld;
        return true;
    };
    std::string home = "<title>Home</title>";
    for (int i = 0; i < 30; ++i) {
        home += "<a href=\"h" + std::to_string(i) + ".html\">H</a>";
    }
    servePage("/", {home});
    addSite();
    useSettings(withConnections(8));
    scan();
    EXPECT_EQ(answeredHeld.load(), 0) << "the scan ended without waiting for them";
    {
        const std::lock_guard lock(heldMutex);
        release = true;
    }
    releasedHeld.notify_all();
    server.stop();  // the held handlers use this test's locals

    EXPECT_TRUE(siteFile("sitemap1c.html").ends_with("\n</body>\n</html>"));
    EXPECT_EQ(siteFile("sitemap.xml"),
              std::string(xmlSitemapHeader()) + xmlSitemapEntry(url("/"), "") + "\n</urlset>")
        << "the start page alone";
    EXPECT_TRUE(test::contains(siteFile("Test.vrLMP"),
                               "<pagesFound>31</pagesFound>\n<totalLinks>31</totalLinks>\n"
                               "<pagesUsed>1</pagesUsed>"));
}

}  // namespace
}  // namespace loomcrest
