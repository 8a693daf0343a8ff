#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "support/RawHttpServer.h"
#include "support/RunCommand.h"
#include "support/ServedSite.h"
#include "support/TextChecks.h"

// `scan` and `demo`.
namespace loomcrest {
namespace {

using test::contains;
using test::fileContents;
using namespace std::chrono_literals;

using ScanCommand = test::ServedSite;

TEST_F(ScanCommand, SummarisesAndWritesTheExplanationsOrSaysWhyNotAndScansTheDemo) {
    const std::string path = home.path() + "/why.tsv";
    const std::string nowhere = home.path() + "/missing/why.tsv";
    expectSteps({
        // No progress line when standard error is no terminal; broken links are no failure.
        {{"scan", "Site", "--explain", path},
         0,
         "Pages found: 3\nPages used: 2\nTotal links: 6\nBroken links: 1\nFiles in: " + folder +
             "\n"},
        {{"scan", "Site", "--explain", nowhere},
         1,
         std::nullopt,
         "The explanations could not be written to \"" + nowhere + "\".\n" + nowhere +
             ": No such file or directory\n"},
    });
    // What each line says is the scan's own; here the file is where it was asked for.
    EXPECT_TRUE(fileContents(path).starts_with("Page\tLink\tReason\n" + server.url("/")));

    // The demo serves and scans its bundled site, replacing the earlier Demo.
    for (int attempt = 0; attempt < 2; ++attempt) {
        const auto result = run({"demo"});
        ASSERT_EQ(result.exitCode, 0) << result.err;
        EXPECT_TRUE(contains(result.out, "Pages found: 32\nPages used: 31\n"));
        EXPECT_TRUE(contains(result.out, "Broken links: 1\n"));
    }
    EXPECT_TRUE(
        fileContents(home.dataRoot() + "/Demo/badLinks.txt").ends_with("/spring-sale.html\n"));
    EXPECT_EQ(run({"sites"}).out.find("Demo\t"), 0U) << "one Demo, replaced";
}

TEST_F(ScanCommand, CrawlOptionsHoldForOneScanAndAreNotSaved) {
    std::mutex seenMutex;
    std::multiset<std::string> seen;  // each request as "target user-agent token"
    const auto takeSeen = [&] {
        const std::lock_guard lock(seenMutex);
        return std::exchange(seen, {});
    };
    test::TestServer headers;
    headers.server().Get(".*", [&](const httplib::Request& req, httplib::Response& res) {
        const std::lock_guard lock(seenMutex);
        seen.insert(req.target + " " + req.get_header_value("User-Agent") + " " +
                    req.get_header_value("X-Token"));
        const std::string homePage =
            R"(<title>H</title><a href="a.html">A</a><a href="b.html">B</a>)";
        res.set_content(req.target == "//robots.txt" ? "User-agent: *\nCrawl-delay: 4\n"
                        : req.target == "/"          ? homePage
                                                     : "<title>P</title>",
                        "text/html");
    });
    headers.start();
    ASSERT_EQ(run({"edit", "Site", "--url", headers.url("/")}).exitCode, 0);
    expectSteps({
        {{"scan", "Site", "--connections", "4", "--fetch-once", "on", "--user-agent", "Bot/2",
          "--header", "X-Token: t"},
         0,
         "Pages found: 3\nPages used: 3\nTotal links: 5\nBroken links: 0\nFiles in: " + folder +
             "\nrobots.txt asks for 4 seconds between requests (Crawl-delay); the scan does not "
             "wait for it. A rate of 0.25 requests a second follows it.\n"},
    });
    EXPECT_EQ(takeSeen(), (std::multiset<std::string>{"/ Bot/2 t", "//robots.txt Bot/2 t",
                                                      "/a.html Bot/2 t", "/b.html Bot/2 t"}));
    EXPECT_FALSE(std::filesystem::exists(folder + "/crawl.json"));
    expectSteps({{{"scan", "Site", "--connections", "17"}, 1, "", std::nullopt}});
    EXPECT_TRUE(takeSeen().empty()) << "nothing is scanned";
}

TEST_F(ScanCommand, TheWarningIsAnsweredByTheOption) {
    test::RawHttpServer raw([](int connection, const std::string&, const std::atomic<bool>&) {
        test::RawHttpServer::send(
            connection, test::RawHttpServer::response("200 OK", "text/html", "<title>Q</title>"));
    });
    ASSERT_EQ(run({"edit", "Site", "--url", raw.url("/p.php?a?b?c?d")}).exitCode, 0);
    const auto cancelled = run({"scan", "Site", "--on-warning", "cancel"});
    EXPECT_EQ(cancelled.exitCode, 0);
    // The warning's text is the scan's own test; here it reaches standard error.
    EXPECT_TRUE(cancelled.err.starts_with("There may be an issue with the site"));
    EXPECT_TRUE(contains(cancelled.out, "Pages used: 0\n"));
    EXPECT_TRUE(contains(run({"scan", "Site"}).out, "Pages used: 1\n")) << "continue by default";
    EXPECT_EQ(run({"scan", "Site", "--on-warning", "maybe"}).exitCode, 2);
}

TEST_F(ScanCommand, CtrlCStopsLikeTheCancelButton) {
    std::atomic<bool> secondPageAsked{false};
    test::RawHttpServer raw(
        [&](int connection, const std::string& head, const std::atomic<bool>& stopping) {
            if (head.starts_with("GET /slow.html")) {
                secondPageAsked = true;
                // Answers only after a while, so the interrupt lands during the crawl.
                for (int i = 0; i < 20 && !stopping; ++i) {
                    std::this_thread::sleep_for(10ms);
                }
            }
            test::RawHttpServer::send(
                connection,
                test::RawHttpServer::response(
                    "200 OK", "text/html",
                    "<title>T</title><a href=\"slow.html\">S</a><a href=\"more.html\">M</a>"));
        });
    ASSERT_EQ(run({"edit", "Site", "--url", raw.url("/")}).exitCode, 0);

    std::atomic<pid_t> child{0};
    auto scan = std::async(std::launch::async, [&] {
        return test::runLoomcrest(home, {"scan", "Site"}, RLIM_INFINITY, &child);
    });
    for (int i = 0; i < 500 && !secondPageAsked; ++i) {
        std::this_thread::sleep_for(10ms);
    }
    ASSERT_TRUE(secondPageAsked);
    kill(child, SIGINT);
    const test::CommandResult result = scan.get();
    EXPECT_EQ(result.exitCode, 130);
    // The files a cancelled scan leaves are the scan's own test; the figures reach the user.
    EXPECT_TRUE(contains(result.out, "Pages found: 3\n"));
}

}  // namespace
}  // namespace loomcrest
