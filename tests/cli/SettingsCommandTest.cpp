#include <gtest/gtest.h>

#include "support/RunCommand.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

using test::contains;

const std::string kDefaults = std::string("Connections: 1\nRequests per second: 0 (no limit)\n") +
                              "User agent: Loomcrest/" + LOOMCREST_VERSION + " (+" +
                              LOOMCREST_REPORT_PROBLEM_URL +
                              ")\nFetch once: off\nUse ~/.netrc: off\nExtra headers: none\n";

class SettingsCommand : public test::CommandLineTest {
protected:
    void SetUp() override { ASSERT_EQ(run({"add", "Site", "example.com"}).exitCode, 0); }
    std::string settingsFile() const { return test::fileContents(siteFile("Site", "crawl.json")); }
};

TEST_F(SettingsCommand, ChangesAreSavedAndPrintedAndTheDefaultsWriteNoFile) {
    expectSteps({{{"settings", "Site"}, 0, kDefaults}});
    EXPECT_FALSE(std::filesystem::exists(siteFile("Site", "crawl.json")));
    expectSteps({
        {{"settings", "--connections", "8", "--rate", "2.5", "--user-agent", "Bot/1",
          "--fetch-once", "on", "--header", "Cookie: a=b", "--header", "X-Token: t", "--netrc",
          "on", "Site"},
         0,
         "Connections: 8\nRequests per second: 2.5\nUser agent: Bot/1\nFetch once: on\n"
         "Use ~/.netrc: on\nExtra headers:\n  Cookie: a=b\n  X-Token: t\n"},
    });

    // Options not given keep their values; --header adds, --no-headers first drops them all.
    EXPECT_TRUE(contains(run({"settings", "Site", "--header", "X-More: m"}).out,
                         "  X-Token: t\n  X-More: m\n"));
    const auto off =
        run({"settings", "Site", "--fetch-once", "off", "--no-headers", "--header", "O: 1"});
    EXPECT_TRUE(contains(off.out, "Fetch once: off\nUse ~/.netrc: on\nExtra headers:\n  O: 1\n"));
}

TEST_F(SettingsCommand, ValuesNotAllowedAreRefusedAndAMalformedFileGivesTheDefaults) {
    ASSERT_EQ(run({"settings", "Site", "--connections", "3"}).exitCode, 0);
    const std::string saved = settingsFile();
    const std::string refused =
        "Cannot Use These Crawl Settings\nConnections must be a whole number from 1 to 16.\n";
    // Text that is no number is refused here; a number out of range by the settings, whose
    // own tests hold the other refusals.
    expectSteps({
        {{"settings", "Site", "--connections", "two"}, 1, "", refused},
        {{"settings", "Site", "--connections", "17"}, 1, "", refused},
        {{"settings", "Site", "--fetch-once", "yes"}, 2, "", std::nullopt},
    });
    EXPECT_EQ(settingsFile(), saved);

    // A malformed file is reported and the defaults are used.
    const std::string path = siteFile("Site", "crawl.json");
    test::writeFile(path, "{\n  \"connections\": 4,\n  \"fetchOnce\": yes\n}\n");
    expectSteps({
        {{"settings", "Site"},
         0,
         kDefaults,
         "The Crawl Settings Could Not Be Read\n" + path +
             ": line 3, column 16: unexpected character 'y'. The default settings are used.\n"},
    });
}

}  // namespace
}  // namespace loomcrest
