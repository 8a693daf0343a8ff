#include <gtest/gtest.h>

#include "support/RunCommand.h"

// `add`, `sites`, `show`, `edit`, `robots` and `delete`, and what every command does with a
// site that does not exist or arguments it cannot take.
namespace loomcrest {
namespace {

using SiteCommands = test::CommandLineTest;

TEST_F(SiteCommands, AddListShowEditAndDelete) {
    expectSteps({
        {{"add", "Beta", "https://beta.org/index.html"}},
        {{"add", "Alpha", "alpha.com"}},
        {{"robots", "Alpha", "ignore"}},
        {{"edit", "Alpha", "--url", "example.org/a b"}},
        {{"edit", "Alpha", "--name", "Renamed"}},
        {{"show", "Renamed"},
         0,
         "Name: Renamed\nURL: http://example.org/a%20b/\nIgnore robots: yes\nTotal links: 0\n"
         "Pages found: 0\nPages used: 0\nBroken links: 0\n"},
        {{"delete", "Renamed"}, 0, "", "Do you really want to delete the site:\nRenamed\n\n"},
        {{"sites"}, 0, "Beta\thttps://beta.org/index.html\t0\t0\t0\n"},
    });
}

TEST_F(SiteCommands, RefusalsPrintTheAlertAndExitOneUsageErrorsExitTwo) {
    const std::string unknown = "No site named \"Nope\".\n";
    expectSteps({
        // The texts of these refusals are the sites' own tests.
        {{"add", "a.b", "ftp://x.org/"}, 1, "", std::nullopt},
        {{"sites"}},
        {{"add", "First", "first.com"}},
        {{"add", "Second", "second.com"}},
        {{"edit", "First", "--name", "Second"}, 1, "", std::nullopt},
        {{"show", "Nope"}, 1, "", unknown},
        {{"delete", "Nope"}, 1, "", unknown},
        {{"robots", "Nope", "ignore"}, 1, "", unknown},
        {{"edit", "Nope", "--url", "x.com"}, 1, "", unknown},
        {{"filters", "Nope"}, 1, "", unknown},
        {{"xml", "Nope"}, 1, "", unknown},
        {{"html", "Nope", "1c", "lines"}, 1, "", unknown},
        {{"settings", "Nope"}, 1, "", unknown},
        {{"broken", "Nope"}, 1, "", unknown},
        {{"restore", "Nope"}, 1, "", unknown},
        {{"scan", "Nope"}, 1, "", unknown},
    });

    expectSteps({
        {{}, 2, std::nullopt, std::nullopt},
        {{"bogus"}, 2, std::nullopt, std::nullopt},
        {{"--help"}, 0, std::nullopt},
        {{"--version"}, 0, "loomcrest " LOOMCREST_VERSION "\n"},
    });
}

}  // namespace
}  // namespace loomcrest
