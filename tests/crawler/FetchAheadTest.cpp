#include "crawler/FetchAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "crawler/CrawlSettingsFile.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LayoutMarkup.h"
#include "sitemap/SitemapFiles.h"
#include "support/RawHttpServer.h"
#include "support/ScanFixture.h"

namespace loomcrest {
namespace {

struct SlowFetch {
    FetchedPage operator()(const std::string& url) {
        const int running = ++inFlight;
        int seen = mostInFlight.load();
        while (running > seen && !mostInFlight.compare_exchange_weak(seen, running)) {
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200 * (url.size() % 7)));
        --inFlight;
        FetchedPage page;
        page.title.title = "title of " + url;
        return page;
    }
    std::atomic<int> inFlight{0};
    std::atomic<int> mostInFlight{0};
};

TEST(FetchAhead, PagesComeBackInListOrderWithinTheWindow) {
    SlowFetch slow;
    std::atomic<size_t> mostAhead{0};
    {
        FetchAhead ahead(4, 8, [&](const std::string& url) { return slow(url); });
        for (size_t place = 0; place < 200; ++place) {
            while (ahead.hasRoom(place) && ahead.handedOver() < 200) {
                ahead.handOver("/page" + std::to_string(ahead.handedOver()));
            }
            mostAhead = std::max(mostAhead.load(), ahead.handedOver() - place);
            EXPECT_EQ(ahead.take(place).title.title, "title of /page" + std::to_string(place));
        }
    }
    EXPECT_EQ(mostAhead.load(), 8U);
    EXPECT_LE(slow.mostInFlight.load(), 4);
    EXPECT_GE(slow.mostInFlight.load(), 2) << "fetches overlap";
}

// Every kind of page a scan meets, served by a bare server that also takes the URL with four
// "?" a well-behaved server library refuses, one request at a time, in the order they come.
test::RawHttpServer::Routes everyKindOfPage() {
    using Server = test::RawHttpServer;
    return {
        {"/q.php?a=1?b=2?c=3?d=4",
         Server::page(
             R"(<title>Q</title><a href="a.html">A</a><a href="b.html">B</a>)"
             R"(<a href="missing.html">M</a><a href="plain.html">P</a>)"
             R"(<a href="empty.html">E</a><a href="list/">L</a><a href="old.html">O</a>)")},
        {"/a.html",
         Server::page(R"(<title>A</title><a href="c.html">C</a><a href="b.html">B</a>)")},
        {"/b.html", Server::page("<title>B</title>")},
        {"/c.html", Server::page("<title>C</title>")},
        {"/new.html", Server::page("<title>New</title>")},
        {"/plain.html", Server::page("plain words", "text/plain")},
        {"/empty.html", Server::page("")},
        {"/list/", Server::page(R"(<title>Index of /list</title><a href="x.html">X</a>)")},
        {"/old.html", Server::redirect("301 Moved Permanently", "/new.html")},
    };
}

// The requests of a scan with one connection, in the order a crawl that fetched each page only
// when it came to it made them: the probe, robots.txt, then page after page its title and,
// once the warning about the start URL has been answered, the page itself; the warning comes
// with the third run, the start page's title. A line a page; " xN" marks a request that
// comes N times in a row.
const std::vector<std::string> kOneConnectionRequests = {
    "GET /q.php?a=1?b=2?c=3?d=4, GET //robots.txt",
    "GET /q.php?a=1?b=2?c=3?d=4 x2, GET /q.php?a=1?b=2?c=3?d=4 x2, "
    "HEAD /q.php?a=1?b=2?c=3?d=4, GET /q.php?a=1?b=2?c=3?d=4",
    "GET /a.html x4, HEAD /a.html, GET /a.html",
    "GET /b.html x4, HEAD /b.html, GET /b.html",
    "GET /missing.html x4",
    "GET /plain.html x4",
    "GET /empty.html x4, HEAD /empty.html, GET /empty.html x2",
    "GET /list/ x2",
    "GET /old.html, GET /new.html, GET /old.html, GET /new.html, GET /old.html, GET /new.html, "
    "GET /old.html, GET /new.html, HEAD /old.html, HEAD /new.html, GET /old.html, GET /new.html",
    "GET /c.html x4, HEAD /c.html, GET /c.html",
};
// With fetch-once the probe's answer serves the start page, and every page is asked for once.
const std::vector<std::string> kFetchOnceRequests = {
    "GET /q.php?a=1?b=2?c=3?d=4, GET //robots.txt, GET /a.html, GET /b.html, GET /missing.html",
    "GET /plain.html, GET /empty.html, GET /list/, GET /old.html, GET /new.html, GET /c.html",
};

// The first `runs` runs of `requests` as the server logs them.
std::vector<std::string> requestLines(const std::vector<std::string>& requests, size_t runs) {
    std::vector<std::string> lines;
    for (const std::string& line : requests) {
        for (const std::string& run : split(line, ',')) {
            if (runs-- == 0) {
                return lines;
            }
            const std::string request = run.substr(run.starts_with(" ") ? 1 : 0);
            const size_t times = request.find(" x");
            const size_t count =
                times == std::string::npos ? 1 : std::stoul(request.substr(times + 2));
            lines.insert(lines.end(), count, request.substr(0, times) + " HTTP/1.1");
        }
    }
    return lines;
}

class OneConnection : public test::ScanFixture {
protected:
    // The requests of one scan, and how many of them came before the warning.
    std::pair<std::vector<std::string>, size_t> scanWith(bool fetchOnce, int answer) {
        CrawlSettings settings;
        settings.setFetchOnce(fetchOnce);
        useSettings(settings);
        const size_t before = site.requestLines().size();
        size_t atWarning = before;
        alerts.shown.clear();
        alerts.answers = {answer};
        alerts.onShown = [&] { atWarning = site.requestLines().size(); };
        scan();
        alerts.onShown = {};
        EXPECT_EQ(alerts.described(),
                  std::vector<std::string>{
                      "Question: There may be an issue with the site you are scanning. | "
                      "URL parameters have been found containing multiple ?s which may be "
                      "invalid. [Continue] [Cancel Scan]"});
        std::vector<std::string> log = site.requestLines();
        log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(before));
        return {log, atWarning - before};
    }

    test::RawHttpServer site{everyKindOfPage()};
};

TEST_F(OneConnection, RequestsComeInTheOrderOfAScanThatFetchedEachPageInTurn) {
    addSiteAt(site.url("/q.php?a=1?b=2?c=3?d=4"));
    const struct {
        bool fetchOnce;
        int answer;
        const std::vector<std::string>& requests;
        size_t runs;
        size_t runsBeforeWarning;
    } cases[] = {
        {false, kDefaultButtonCode, kOneConnectionRequests, SIZE_MAX, 3},
        {false, kOtherButtonCode, kOneConnectionRequests, 3, 3},
        {true, kDefaultButtonCode, kFetchOnceRequests, SIZE_MAX, 2},
        {true, kOtherButtonCode, kFetchOnceRequests, 2, 2},
    };
    for (const auto& scanCase : cases) {
        SCOPED_TRACE(testing::Message()
                     << "fetch-once " << scanCase.fetchOnce << ", answer " << scanCase.answer);
        const auto [requests, beforeWarning] = scanWith(scanCase.fetchOnce, scanCase.answer);
        EXPECT_EQ(requests, requestLines(scanCase.requests, scanCase.runs));
        EXPECT_EQ(beforeWarning,
                  requestLines(scanCase.requests, scanCase.runsBeforeWarning).size());
        EXPECT_EQ(siteView.state().details.pagesFound,
                  scanCase.answer == kDefaultButtonCode ? "9" : "1");
    }
    // Cancelled before the page: every file closed with nothing in it.
    const std::string head(htmlSitemapHead());
    EXPECT_EQ(siteFile("sitemap1c.html"), head + std::string(layoutmarkup::kOneColumnEnd));
    EXPECT_EQ(siteFile("sitemap2c.html"),
              head + std::string(kTableOpening) + std::string(layoutmarkup::kTableEnd));
    EXPECT_EQ(siteFile("sitemap.xml"), std::string(xmlSitemapHeader()) + "\n</urlset>");
}

}  // namespace
}  // namespace loomcrest
