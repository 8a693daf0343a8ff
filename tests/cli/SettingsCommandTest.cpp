#include <gtest/gtest.h>

#include "support/RunCommand.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;

const std::string kAgent =
    std::string("Loomcrest/") + LOOMCREST_VERSION + " (+" + LOOMCREST_REPORT_PROBLEM_URL + ")";
const std::string kDefaults =
    "Connections: 1\nRequests per second: 0 (no limit)\nUser agent: " + kAgent +
    "\nFetch once: off\nUse ~/.netrc: off\nExtra headers: none\n";

class SettingsCommand : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(runLoomcrest(home, {"add", "Site", "example.com"}).exitCode, 0);
    }

    std::string settingsFile() const { return fileContents(home.dataRoot() + "/Site/crawl.json"); }

    test::TemporaryHome home;
};

TEST_F(SettingsCommand, PrintsTheDefaultsWithoutWritingAFile) {
    const auto result = runLoomcrest(home, {"settings", "Site"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, kDefaults);
    EXPECT_EQ(result.err, "");
    EXPECT_FALSE(std::filesystem::exists(home.dataRoot() + "/Site/crawl.json"));
}

TEST_F(SettingsCommand, ChangesAreSavedAndPrinted) {
    const auto changed =
        runLoomcrest(home, {"settings", "--connections", "8", "--rate", "2.5", "--user-agent",
                            "Bot/1", "--fetch-once", "on", "--header", "Cookie: a=b", "--header",
                            "X-Token: t", "--netrc", "on", "Site"});
    EXPECT_EQ(changed.exitCode, 0) << changed.err;
    EXPECT_EQ(changed.out,
              "Connections: 8\nRequests per second: 2.5\nUser agent: Bot/1\nFetch once: on\n"
              "Use ~/.netrc: on\nExtra headers:\n  Cookie: a=b\n  X-Token: t\n");
    EXPECT_EQ(settingsFile(),
              "{\n  \"connections\": 8,\n  \"requestsPerSecond\": 2.5,\n  \"userAgent\": "
              "\"Bot/1\",\n  \"fetchOnce\": true,\n  \"extraHeaders\": [\n    \"Cookie: a=b\",\n"
              "    \"X-Token: t\"\n  ],\n  \"useNetrc\": true\n}\n");

    // Options not given keep their values; --header adds, --no-headers first drops them all.
    runLoomcrest(home, {"settings", "Site", "--header", "X-More: m"});
    EXPECT_NE(runLoomcrest(home, {"settings", "Site"}).out.find("  X-Token: t\n  X-More: m\n"),
              std::string::npos);
    const auto replaced =
        runLoomcrest(home, {"settings", "Site", "--no-headers", "--header", "Only: one"});
    EXPECT_NE(replaced.out.find("Extra headers:\n  Only: one\n"), std::string::npos);
    const auto cleared =
        runLoomcrest(home, {"settings", "Site", "--no-headers", "--fetch-once", "off",
                            "--connections", "1", "--rate", "0", "--netrc", "off"});
    EXPECT_EQ(cleared.out,
              "Connections: 1\nRequests per second: 0 (no limit)\nUser agent: Bot/1\n"
              "Fetch once: off\nUse ~/.netrc: off\nExtra headers: none\n");
}

struct Refused {
    std::string option;
    std::string value;
    int exitCode;
    std::string err;
};

TEST_F(SettingsCommand, ValuesNotAllowedAreRefusedAndNothingIsSaved) {
    runLoomcrest(home, {"settings", "Site", "--connections", "3"});
    const std::string saved = settingsFile();
    const std::string title = "Cannot Use These Crawl Settings\n";
    const std::vector<Refused> cases = {
        {"--connections", "0", 1, title + "Connections must be a whole number from 1 to 16.\n"},
        {"--connections", "17", 1, title + "Connections must be a whole number from 1 to 16.\n"},
        {"--connections", "two", 1, title + "Connections must be a whole number from 1 to 16.\n"},
        {"--rate", "-1", 1,
         title + "Requests per second must be a number from 0 (no limit) to 1000.\n"},
        {"--rate", "1001", 1,
         title + "Requests per second must be a number from 0 (no limit) to 1000.\n"},
        {"--user-agent", "", 1,
         title + "The user agent must not be empty and must not hold control characters.\n"},
        {"--header", "Cookie", 1,
         title + "The extra header \"Cookie\" must have the form \"Name: value\".\n"},
        {"--fetch-once", "yes", 2,
         "--fetch-once: yes not in {on,off}\nRun with --help for more information.\n"},
    };
    for (const Refused& refused : cases) {
        const auto result = runLoomcrest(home, {"settings", "Site", refused.option, refused.value});
        EXPECT_EQ(result.exitCode, refused.exitCode) << refused.option << " " << refused.value;
        EXPECT_EQ(result.err, refused.err) << refused.option << " " << refused.value;
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(settingsFile(), saved);
    }
    const auto unknown = runLoomcrest(home, {"settings", "Nobody"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.err, "No site named \"Nobody\".\n");
}

TEST_F(SettingsCommand, AMalformedFileIsReportedAndTheDefaultsAreUsed) {
    const std::string path = home.dataRoot() + "/Site/crawl.json";
    test::writeFile(path, "{\n  \"connections\": 4,\n  \"fetchOnce\": yes\n}\n");
    const auto result = runLoomcrest(home, {"settings", "Site"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "The Crawl Settings Could Not Be Read\n" + path +
                              ": line 3, column 16: unexpected character 'y'. The default "
                              "settings are used.\n");
    EXPECT_EQ(result.out, kDefaults);

    // Changing a setting starts from the defaults and replaces the file.
    const auto changed = runLoomcrest(home, {"settings", "Site", "--rate", "5"});
    EXPECT_EQ(changed.exitCode, 0);
    EXPECT_EQ(fileContents(path),
              "{\n  \"connections\": 1,\n  \"requestsPerSecond\": 5,\n  \"fetchOnce\": false,\n"
              "  \"extraHeaders\": [],\n  \"useNetrc\": false\n}\n");
}

}  // namespace
}  // namespace loomcrest
