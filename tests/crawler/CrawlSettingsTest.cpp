#include "crawler/CrawlSettings.h"

#include <gtest/gtest.h>

#include <cmath>

#include "crawler/CrawlDelay.h"
#include "crawler/CrawlSettingsEditor.h"
#include "crawler/CrawlSettingsFile.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

const std::string kDefaultAgent =
    std::string("Loomcrest/") + LOOMCREST_VERSION + " (+" + LOOMCREST_REPORT_PROBLEM_URL + ")";

// The values of one case, the others left at their defaults.
struct Check {
    int connections = 1;
    double rate = 0;
    std::string agent = "Bot";
    std::vector<std::string> headers = {};
    std::string problem = {};  // empty: allowed
};

TEST(CrawlSettings, DefaultsAndWhatIsAllowed) {
    const std::string connections(kConnectionsProblem);
    const std::string rate(kRateProblem);
    const std::string agent(kUserAgentProblem);
    const auto header = [](const std::string& line) {
        return std::string(kHeaderProblemStart) + line + std::string(kHeaderProblemEnd);
    };
    const std::vector<Check> checks = {
        {.connections = 16},
        {.connections = 0, .problem = connections},
        {.connections = 17, .problem = connections},
        {.rate = 1000},
        {.rate = 1000.5, .problem = rate},
        {.rate = -1, .problem = rate},
        {.rate = std::nan(""), .problem = rate},
        {.agent = "", .problem = agent},
        {.agent = "Bot\r\nX-Evil: 1", .problem = agent},
        {.headers = {"Cookie: a=b; c=d", "X-Token:\tabc"}},
        {.headers = {"Cookie: a=b", "NoColon"}, .problem = header("NoColon")},
        {.headers = {": value"}, .problem = header(": value")},
        {.headers = {"Bad Name: v"}, .problem = header("Bad Name: v")},
        {.headers = {"X-Empty:  "}, .problem = header("X-Empty:  ")},
        {.headers = {"X-Split: a\r\nHost: evil"}, .problem = header("X-Split: a\r\nHost: evil")},
    };
    for (const Check& check : checks) {
        CrawlSettings settings;
        settings.setConnections(check.connections);
        settings.setRequestsPerSecond(check.rate);
        settings.setUserAgent(check.agent);
        settings.setExtraHeaders(check.headers);
        EXPECT_EQ(settings.problem().value_or(""), check.problem) << check.problem;
    }
}

TEST(CrawlSettings, ReadsTypedTextStrictly) {
    EXPECT_EQ(connectionsFromText("016"), 16);
    for (const char* text : {"", "4 ", "+4", "99999999999"}) {
        EXPECT_EQ(connectionsFromText(text), std::nullopt) << text;
    }
    EXPECT_EQ(rateFromText(".5"), 0.5);
    EXPECT_EQ(rateFromText("2."), 2);
    for (const char* text : {".", "1.2.3", "1e3", " 1"}) {
        EXPECT_EQ(rateFromText(text), std::nullopt) << text;
    }
    EXPECT_EQ(switchFromText("on"), true);
    EXPECT_EQ(switchFromText("off"), false);
    EXPECT_EQ(switchFromText("ON"), std::nullopt);
}

TEST(CrawlSettingsFile, WritesEverySettingAndReadsItBack) {
    test::TemporaryHome home;
    EXPECT_EQ(crawlSettingsText(CrawlSettings()),
              "{\n  \"connections\": 1,\n  \"requestsPerSecond\": 0,\n  \"fetchOnce\": false,\n"
              "  \"extraHeaders\": [],\n  \"useNetrc\": false\n}\n");

    CrawlSettings settings;
    settings.setConnections(8);
    settings.setRequestsPerSecond(2.5);
    settings.setUserAgent("Bot \"quoted\" \\ é");
    settings.setFetchOnce(true);
    settings.setExtraHeaders({"Cookie: a=b", "Authorization: Bearer x"});
    settings.setUseNetrc(true);
    ASSERT_TRUE(writeCrawlSettings(home.path(), settings));
    EXPECT_EQ(test::fileContents(home.path() + "/crawl.json"),
              "{\n  \"connections\": 8,\n  \"requestsPerSecond\": 2.5,\n"
              "  \"userAgent\": \"Bot \\\"quoted\\\" \\\\ é\",\n  \"fetchOnce\": true,\n"
              "  \"extraHeaders\": [\n    \"Cookie: a=b\",\n    \"Authorization: Bearer x\"\n"
              "  ],\n  \"useNetrc\": true\n}\n");
    const CrawlSettingsRead read = readCrawlSettings(home.path());
    EXPECT_EQ(read.problem, std::nullopt);
    EXPECT_EQ(read.settings, settings);
}

TEST(CrawlSettingsFile, AMalformedFileIsReportedAndGivesTheDefaults) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"{\n  \"connections\": 4,\n}",
         "line 3, column 1: expected a member name in double quotes"},
        {"[]", "the settings must be a JSON object"},
        {R"({"connections": 4.5})", "\"connections\" must be a whole number"},
        {R"({"connections": 1e15})", std::string(kConnectionsProblem)},
        {R"({"connections": -3})", std::string(kConnectionsProblem)},
        {R"({"requestsPerSecond": true})", "\"requestsPerSecond\" must be a number"},
        {R"({"requestsPerSecond": 5000})", std::string(kRateProblem)},
        {R"({"userAgent": null})", "\"userAgent\" must be a text"},
        {R"({"fetchOnce": "on"})", "\"fetchOnce\" must be true or false"},
        {R"({"extraHeaders": "Cookie: a"})", "\"extraHeaders\" must be a list of texts"},
        {R"({"extraHeaders": ["Cookie: a", 3]})", "\"extraHeaders\" must be a list of texts"},
        {R"({"conections": 4})", "unknown setting \"conections\""},
    };
    test::TemporaryHome home;
    for (const auto& [text, problem] : cases) {
        test::writeFile(home.path() + "/crawl.json", text);
        const CrawlSettingsRead read = readCrawlSettings(home.path());
        EXPECT_EQ(read.problem.value_or("none"), problem) << text;
        EXPECT_EQ(read.settings, CrawlSettings()) << text;
    }
    // Members left out keep their defaults.
    const CrawlSettingsRead partial = crawlSettingsFromText(R"({"fetchOnce": true})");
    EXPECT_EQ(partial.problem, std::nullopt);
    EXPECT_TRUE(partial.settings.fetchOnce());
    EXPECT_EQ(partial.settings.connections(), 1);

    const Alert unwritable =
        unwritableCrawlSettingsAlert(WriteResult::failure("/sites/A/crawl.json", "Disk full"));
    EXPECT_EQ(
        test::describe(unwritable),
        "Refusal: The Crawl Settings Could Not Be Saved | /sites/A/crawl.json: Disk full [OK]");
}

TEST(CrawlSettingsEditor, OpensTheSavedSettingsAndSavesOnlyWhatIsAllowed) {
    test::TemporaryHome home;
    test::RecordingAlerts alerts;
    CrawlSettingsEditor editor(alerts);
    test::writeFile(home.path() + "/crawl.json", "{");
    CrawlSettingsFields fields = editor.open(home.path());
    EXPECT_EQ(fields, (CrawlSettingsFields{"1", "0", kDefaultAgent, false, "", false}));
    EXPECT_EQ(alerts.described(),
              std::vector<std::string>{"Information: The Crawl Settings Could Not Be Read | " +
                                       home.path() +
                                       "/crawl.json: line 1, column 2: unexpected end of text. "
                                       "The default settings are used. [OK]"});
    alerts.shown.clear();

    fields = {"4", "0.5", "Bot/1", true, "Cookie: a=b\n\n  \nX-Token: t\n", true};
    ASSERT_TRUE(editor.save(fields));
    EXPECT_TRUE(alerts.shown.empty());
    const CrawlSettings saved = readCrawlSettings(home.path()).settings;
    EXPECT_EQ(editor.open(home.path()),
              (CrawlSettingsFields{"4", "0.5", "Bot/1", true, "Cookie: a=b\nX-Token: t\n", true}));

    const std::vector<std::pair<CrawlSettingsFields, std::string_view>> refused = {
        {{"", "0", "A", false, "", false}, kConnectionsProblem},
        {{"20", "0", "A", false, "", false}, kConnectionsProblem},
        {{"2", "fast", "A", false, "", false}, kRateProblem},
        {{"2", "0", "", false, "", false}, kUserAgentProblem},
        {{"2", "0", "A", false, "Cookie: a\nbad header\n", false},
         "The extra header \"bad header\" must have the form \"Name: value\"."},
    };
    for (const auto& [typed, problem] : refused) {
        alerts.shown.clear();
        EXPECT_FALSE(editor.save(typed));
        EXPECT_EQ(alerts.described(),
                  std::vector<std::string>{"Refusal: Cannot Use These Crawl Settings | " +
                                           std::string(problem) + " [OK]"});
    }
    EXPECT_EQ(readCrawlSettings(home.path()).settings, saved) << "nothing refused was saved";
}

TEST(CrawlDelay, TheLongestDelayOfAnyGroupIsAdvice) {
    EXPECT_EQ(robotsCrawlDelay("User-agent: *\nDisallow: /x\n"), std::nullopt);
    EXPECT_EQ(robotsCrawlDelay("User-agent: a\ncrawl-delay:2.5\r\nUser-agent: *\n"
                               "CRAWL-DELAY:\t4 \r\nCrawl-delay: 3\n"),
              4);
    EXPECT_EQ(robotsCrawlDelay("Crawl-delay: 0\nCrawl-delay: soon\n# Crawl-delay: 9\n"),
              std::nullopt);
    EXPECT_EQ(crawlDelayAdvice(10),
              "robots.txt asks for 10 seconds between requests (Crawl-delay); the scan does not "
              "wait for it. A rate of 0.1 requests a second follows it.");
    EXPECT_EQ(crawlDelayAdvice(1),
              "robots.txt asks for 1 second between requests (Crawl-delay); the scan does not "
              "wait for it. A rate of 1 request a second follows it.");
    EXPECT_TRUE(test::contains(crawlDelayAdvice(3), "A rate of 0.333 requests"));
    EXPECT_TRUE(test::contains(crawlDelayAdvice(5000), "A rate of 0.001 requests"));
}

}  // namespace
}  // namespace loomcrest
