#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <thread>

#include "support/RawHttpServer.h"
#include "support/RunCommand.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

extern char** environ;

namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;
using test::TemporaryHome;
using namespace std::chrono_literals;

TEST(ScanCommand, ScansASiteAndSummarises) {
    TemporaryHome home;
    test::TestServer server;
    server.server().Get("/", [](const httplib::Request&, httplib::Response& res) {
        res.set_content("<title>Home</title><a href=\"a.html\">A</a><a href=\"gone.html\">G</a>",
                        "text/html");
    });
    server.server().Get("/a.html", [](const httplib::Request&, httplib::Response& res) {
        res.set_content("<title>A</title>", "text/html");
    });
    server.start();
    ASSERT_EQ(runLoomcrest(home, {"add", "Site", server.url("/")}).exitCode, 0);

    const auto result = runLoomcrest(home, {"scan", "Site"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "") << "no progress line when standard error is no terminal";
    const std::string folder = home.dataRoot() + "/Site";
    EXPECT_EQ(result.out,
              "Pages found: 3\nPages used: 2\nTotal links: 4\nBroken links: 1\n"
              "Files in: " +
                  folder + "\n");
    EXPECT_EQ(fileContents(folder + "/badLinks.txt"), server.url("/gone.html") + "\n");
    EXPECT_NE(fileContents(folder + "/Site.vrLMP").find("<pagesUsed>2</pagesUsed>"),
              std::string::npos);
    EXPECT_EQ(runLoomcrest(home, {"show", "Site"}).out,
              "Name: Site\nURL: " + server.url("/") +
                  "\nIgnore robots: no\nTotal links: 4\nPages found: 3\nPages used: 2\n"
                  "Broken links: 1\n");
}

TEST(ScanCommand, CrawlOptionsHoldForOneScanAndAreNotSaved) {
    TemporaryHome home;
    std::mutex seenMutex;
    std::vector<std::string> seen;
    const auto seenSorted = [&] {
        const std::lock_guard lock(seenMutex);
        std::vector<std::string> sorted = seen;
        seen.clear();
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    };
    test::TestServer server;
    server.server().Get(".*", [&](const httplib::Request& req, httplib::Response& res) {
        {
            const std::lock_guard lock(seenMutex);
            seen.push_back(req.method + " " + req.target + " " +
                           req.get_header_value("User-Agent") + " " +
                           req.get_header_value("X-Token"));
        }
        if (req.target == "//robots.txt") {
            res.set_content("User-agent: *\nCrawl-delay: 4\n", "text/plain");
        } else if (req.target == "/") {
            res.set_content(R"(<title>H</title><a href="a.html">A</a><a href="b.html">B</a>)",
                            "text/html");
        } else {
            res.set_content("<title>P</title>", "text/html");
        }
    });
    server.start();
    ASSERT_EQ(runLoomcrest(home, {"add", "Site", server.url("/")}).exitCode, 0);

    const auto result =
        runLoomcrest(home, {"scan", "Site", "--connections", "4", "--fetch-once", "on",
                            "--user-agent", "Bot/2", "--header", "X-Token: t"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    const std::string folder = home.dataRoot() + "/Site";
    EXPECT_EQ(
        result.out,
        "Pages found: 3\nPages used: 3\nTotal links: 5\nBroken links: 0\nFiles in: " + folder +
            "\nrobots.txt asks for 4 seconds between requests (Crawl-delay); the scan does "
            "not wait for it. A rate of 0.25 requests a second follows it.\n");
    EXPECT_EQ(seenSorted(),
              (std::vector<std::string>{"GET / Bot/2 t", "GET //robots.txt Bot/2 t",
                                        "GET /a.html Bot/2 t", "GET /b.html Bot/2 t"}));
    EXPECT_FALSE(std::filesystem::exists(folder + "/crawl.json"));

    const auto refused = runLoomcrest(home, {"scan", "Site", "--connections", "17"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(
        refused.err,
        "Cannot Use These Crawl Settings\nConnections must be a whole number from 1 to 16.\n");
    EXPECT_TRUE(seenSorted().empty()) << "nothing is scanned";
}

TEST(ScanCommand, AnUnreachableStartUrlPrintsTheAlert) {
    TemporaryHome home;
    runLoomcrest(home, {"add", "Site", "http://127.0.0.1:1/"});
    const auto result = runLoomcrest(home, {"scan", "Site"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "The Site URL Could Not Be Reached\nError Code: 0 - \nConnection refused\n");
    EXPECT_EQ(result.out, "");
}

TEST(ScanCommand, TheWarningIsAnsweredByTheOption) {
    TemporaryHome home;
    test::RawHttpServer server([](int connection, const std::string&, const std::atomic<bool>&) {
        test::RawHttpServer::send(
            connection, test::RawHttpServer::response("200 OK", "text/html", "<title>Q</title>"));
    });
    runLoomcrest(home, {"add", "Site", server.url("/p.php?a?b?c?d")});
    const auto cancelled = runLoomcrest(home, {"scan", "Site", "--on-warning", "cancel"});
    EXPECT_EQ(cancelled.exitCode, 0);
    EXPECT_EQ(cancelled.err,
              "There may be an issue with the site you are scanning.\n"
              "URL parameters have been found containing multiple ?s which may be "
              "invalid.\n");
    EXPECT_NE(cancelled.out.find("Pages used: 0\n"), std::string::npos);

    const auto continued = runLoomcrest(home, {"scan", "Site"});
    EXPECT_NE(continued.out.find("Pages used: 1\n"), std::string::npos) << "continue by default";
    EXPECT_EQ(runLoomcrest(home, {"scan", "Site", "--on-warning", "maybe"}).exitCode, 2);
}

TEST(ScanCommand, CtrlCStopsLikeTheCancelButton) {
    TemporaryHome home;
    std::atomic<bool> secondPageAsked{false};
    test::RawHttpServer server(
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
    runLoomcrest(home, {"add", "Site", server.url("/")});

    const std::string homeVariable = "HOME=" + home.path();
    const std::string outPath = home.path() + "/.out";
    std::vector<std::string> arguments = {LOOMCREST_CLI_PATH, "scan", "Site"};
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    std::vector<char*> environment = {const_cast<char*>(homeVariable.c_str()), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    ASSERT_EQ(posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environment.data()), 0);
    posix_spawn_file_actions_destroy(&actions);

    for (int i = 0; i < 500 && !secondPageAsked; ++i) {
        std::this_thread::sleep_for(10ms);
    }
    ASSERT_TRUE(secondPageAsked);
    kill(child, SIGINT);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);

    const std::string folder = home.dataRoot() + "/Site";
    EXPECT_TRUE(fileContents(folder + "/sitemap1c.html").ends_with("\n</body>\n</html>"));
    EXPECT_TRUE(fileContents(folder + "/sitemap.xml").ends_with("\n</urlset>"));
    EXPECT_NE(fileContents(folder + "/Site.vrLMP").find("<pagesFound>3</pagesFound>"),
              std::string::npos);
    EXPECT_NE(fileContents(outPath).find("Pages found: 3\n"), std::string::npos);
}

TEST(DemoCommand, ScansTheBundledSite) {
    TemporaryHome home;
    for (int run = 0; run < 2; ++run) {
        const auto result = runLoomcrest(home, {"demo"});
        ASSERT_EQ(result.exitCode, 0) << result.err;
        EXPECT_NE(result.out.find("Pages found: 32\nPages used: 31\n"), std::string::npos)
            << result.out;
        EXPECT_NE(result.out.find("Broken links: 1\n"), std::string::npos);
    }
    const std::string folder = home.dataRoot() + "/Demo";
    const std::string badLinks = fileContents(folder + "/badLinks.txt");
    EXPECT_TRUE(badLinks.ends_with("/spring-sale.html\n")) << badLinks;
    const std::string allLinks = fileContents(folder + "/sitemap1c.html");
    EXPECT_NE(allLinks.find(">Our gallery<!-- LINKID:"), std::string::npos);
    EXPECT_NE(allLinks.find("https://www.example.org/partners---LINKID:"), std::string::npos);
    EXPECT_EQ(allLinks.find("brochure.pdf"), std::string::npos);
    EXPECT_EQ(allLinks.find("private/stock.html"), std::string::npos);
    EXPECT_NE(fileContents(folder + "/sitemap.xml").find("news.php?id=2</loc>"), std::string::npos);
    EXPECT_EQ(runLoomcrest(home, {"sites"}).out.find("Demo\t"), 0U) << "one Demo, replaced";
}

}  // namespace
}  // namespace loomcrest
