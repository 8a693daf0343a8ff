#include "crawler/FetchAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include "crawler/CrawlSettingsFile.h"
#include "support/RawHttpServer.h"
#include "support/ScanFixture.h"

namespace loomcrest {
namespace {

using namespace std::chrono_literals;

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
    size_t taken = 0;
    {
        FetchAhead ahead(4, 8, [&](const std::string& url) { return slow(url); });
        for (size_t place = 0; place < 200; ++place) {
            while (ahead.hasRoom(place) && ahead.handedOver() < 200) {
                ahead.handOver("/page" + std::to_string(ahead.handedOver()));
            }
            mostAhead = std::max(mostAhead.load(), ahead.handedOver() - place);
            EXPECT_EQ(ahead.take(place).title.title, "title of /page" + std::to_string(place));
            ++taken;
        }
    }
    EXPECT_EQ(taken, 200U);
    EXPECT_EQ(mostAhead.load(), 8U);
    EXPECT_LE(slow.mostInFlight.load(), 4);
    EXPECT_GE(slow.mostInFlight.load(), 2) << "fetches overlap";
}

TEST(FetchAhead, StoppingDropsWhatWasNotTaken) {
    std::mutex mutex;
    std::condition_variable started;
    int fetches = 0;
    {
        FetchAhead ahead(2, 16, [&](const std::string&) {
            {
                const std::lock_guard lock(mutex);
                ++fetches;
            }
            started.notify_all();
            std::this_thread::sleep_for(5ms);
            return FetchedPage{};
        });
        for (int i = 0; i < 16; ++i) {
            ahead.handOver("/p");
        }
        std::unique_lock lock(mutex);
        started.wait(lock, [&] { return fetches >= 2; });
    }
    // The two under way finish; the fourteen waiting are never fetched.
    EXPECT_LT(fetches, 16);
}

// Every kind of page a scan meets, served by a bare server that also takes the URL with four
// "?" a well-behaved server library refuses, one request at a time, in the order they come.
std::string answerTo(const std::string& target) {
    static const std::map<std::string, std::pair<std::string, std::string>> pages = {
        {"/q.php?a=1?b=2?c=3?d=4",
         {"text/html",
          R"(<title>Q</title><a href="a.html">A</a><a href="b.html">B</a>)"
          R"(<a href="missing.html">M</a><a href="plain.html">P</a><a href="empty.html">E</a>)"
          R"(<a href="list/">L</a><a href="old.html">O</a>)"}},
        {"/a.html",
         {"text/html", R"(<title>A</title><a href="c.html">C</a><a href="b.html">B</a>)"}},
        {"/b.html", {"text/html", "<title>B</title>"}},
        {"/c.html", {"text/html", "<title>C</title>"}},
        {"/after.html", {"text/html", "<title>After</title>"}},
        {"/new.html", {"text/html", "<title>New</title>"}},
        {"/plain.html", {"text/plain", "plain words"}},
        {"/empty.html", {"text/html", ""}},
        {"/list/", {"text/html", R"(<title>Index of /list</title><a href="x.html">X</a>)"}},
    };
    if (target == "/old.html") {
        return "HTTP/1.1 301 Moved Permanently\r\nLocation: /new.html\r\nContent-Length: "
               "0\r\nConnection: close\r\n\r\n";
    }
    const auto page = pages.find(target);
    if (page == pages.end()) {
        return test::RawHttpServer::response("404 Not Found", "text/html", "");
    }
    return test::RawHttpServer::response("200 OK", page->second.first, page->second.second);
}

// The requests of a scan with one connection, in the order a crawl that fetched each page only
// when it came to it made them: the probe, robots.txt, then page after page its title and,
// once the warning about the start URL has been answered, the page itself. Each request line
// with how many times it comes in a row.
const std::vector<std::pair<std::string, int>> kOneConnectionRequests = {
    {"GET /q.php?a=1?b=2?c=3?d=4", 1},
    {"GET //robots.txt", 1},
    {"GET /q.php?a=1?b=2?c=3?d=4", 2},  // the title: the warning comes here
    {"GET /q.php?a=1?b=2?c=3?d=4", 2},
    {"HEAD /q.php?a=1?b=2?c=3?d=4", 1},
    {"GET /q.php?a=1?b=2?c=3?d=4", 1},
    {"GET /a.html", 4},
    {"HEAD /a.html", 1},
    {"GET /a.html", 1},
    {"GET /b.html", 4},
    {"HEAD /b.html", 1},
    {"GET /b.html", 1},
    {"GET /missing.html", 4},
    {"GET /plain.html", 4},
    {"GET /empty.html", 4},
    {"HEAD /empty.html", 1},
    {"GET /empty.html", 2},
    {"GET /list/", 2},
    {"GET /old.html", 1},
    {"GET /new.html", 1},
    {"GET /old.html", 1},
    {"GET /new.html", 1},
    {"GET /old.html", 1},
    {"GET /new.html", 1},
    {"GET /old.html", 1},
    {"GET /new.html", 1},
    {"HEAD /old.html", 1},
    {"HEAD /new.html", 1},
    {"GET /old.html", 1},
    {"GET /new.html", 1},
    {"GET /c.html", 4},
    {"HEAD /c.html", 1},
    {"GET /c.html", 1},
};
// With fetch-once the probe's answer serves the start page, and every page is asked for once.
const std::vector<std::pair<std::string, int>> kFetchOnceRequests = {
    {"GET /q.php?a=1?b=2?c=3?d=4", 1},
    {"GET //robots.txt", 1},
    {"GET /a.html", 1},
    {"GET /b.html", 1},
    {"GET /missing.html", 1},
    {"GET /plain.html", 1},
    {"GET /empty.html", 1},
    {"GET /list/", 1},
    {"GET /old.html", 1},
    {"GET /new.html", 1},
    {"GET /c.html", 1},
};

// The first `runs` runs of `requests` as the server logs them.
std::vector<std::string> requestLines(const std::vector<std::pair<std::string, int>>& requests,
                                      size_t runs) {
    std::vector<std::string> lines;
    for (size_t run = 0; run < runs; ++run) {
        lines.insert(lines.end(), static_cast<size_t>(requests[run].second),
                     requests[run].first + " HTTP/1.1");
    }
    return lines;
}

// Answers the warning, noting how many requests the server had logged when it came.
class CountingAnswer : public AlertPresenter {
public:
    explicit CountingAnswer(const test::RawHttpServer& server) : server_(server) {}
    void presentAlert(const Alert& alert, AlertCompletion completion) override {
        shown.push_back(alert);
        requestsBefore.push_back(server_.requestLines().size());
        completion(answer);
    }
    std::vector<Alert> shown;
    std::vector<size_t> requestsBefore;
    int answer = kDefaultButtonCode;

private:
    const test::RawHttpServer& server_;
};

class OneConnection : public test::ScanFixture {
protected:
    std::pair<std::vector<std::string>, size_t> scanWith(bool fetchOnce, int answer) {
        CrawlSettings settings;
        settings.setFetchOnce(fetchOnce);
        EXPECT_TRUE(writeCrawlSettings(home.dataRoot() + "/Test", settings));
        counting.shown.clear();
        counting.requestsBefore.clear();
        counting.answer = answer;
        const size_t before = site.requestLines().size();
        loop.perform([this] { answering.scanSiteAction(); });
        loop.run();
        EXPECT_EQ(counting.shown.size(), 1U);
        std::vector<std::string> log = site.requestLines();
        log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(before));
        return {log, counting.requestsBefore.empty() ? 0 : counting.requestsBefore[0] - before};
    }

    test::RawHttpServer site{[](int connection, const std::string& head, const std::atomic<bool>&) {
        const size_t start = head.find(' ') + 1;
        test::RawHttpServer::send(connection,
                                  answerTo(head.substr(start, head.find(' ', start) - start)));
    }};
    CountingAnswer counting{site};
    ScanDriver answering{process, siteView, sheet, counting, loop};
};

TEST_F(OneConnection, RequestsComeInTheOrderOfAScanThatFetchedEachPageInTurn) {
    addSiteAt(site.url("/q.php?a=1?b=2?c=3?d=4"));
    const struct {
        bool fetchOnce;
        int answer;
        const std::vector<std::pair<std::string, int>>& requests;
        size_t runs;
        size_t runsBeforeWarning;
    } cases[] = {
        {false, kDefaultButtonCode, kOneConnectionRequests, kOneConnectionRequests.size(), 3},
        {false, kOtherButtonCode, kOneConnectionRequests, 3, 3},
        {true, kDefaultButtonCode, kFetchOnceRequests, kFetchOnceRequests.size(), 2},
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
}

}  // namespace
}  // namespace loomcrest
