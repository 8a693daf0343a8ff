#include <gtest/gtest.h>

#include <regex>

#include "platform/FileSystem.h"
#include "support/ServedSite.h"
#include "support/TextChecks.h"

// `broken`, and the JSON that `scan`, `sites` and `xml` print for scripts.
namespace loomcrest {
namespace {

class BrokenCommand : public test::ServedSite {
protected:
    // The one broken link as a JSON object, its members indented by `indent`.
    std::string brokenLinkJson(const std::string& indent) const {
        return "{\n" + indent + "\"url\": \"" + server.url("/gone.html") + "\",\n" + indent +
               "\"status\": \"404 - Not Found\",\n" + indent + "\"code\": 404,\n" + indent +
               "\"foundOn\": \"" + server.url("/") + "\",\n" + indent +
               "\"linkText\": \"Gone, \\\"really\\\"\",\n" + indent + "\"links\": 2\n" +
               indent.substr(2) + "}";
    }
};

TEST_F(BrokenCommand, ScanJsonBrokenInEachFormatSitesAndXmlListAsJson) {
    const auto result = run({"scan", "Site", "--json", "--fail-on-broken"});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(
        std::regex_replace(result.out, std::regex("\"seconds\": [0-9.]+,"), "\"seconds\": S,"),
        "{\n  \"pagesFound\": 3,\n  \"pagesUsed\": 2,\n  \"totalLinks\": 6,\n"
        "  \"brokenLinks\": 1,\n  \"folder\": \"" +
            folder + "\",\n  \"seconds\": S,\n  \"brokenLinkDetails\": [\n    " +
            brokenLinkJson("      ") + "\n  ]\n}\n");
    EXPECT_TRUE(
        test::contains(run({"--help"}).out,
                       "  3    scan --fail-on-broken: the scan finished and found broken links"));

    const std::string gone = server.url("/gone.html");
    const std::string page = server.url("/");
    const std::string text = "URL" + std::string(gone.size() - 1, ' ') +
                             "Status           Found on" + std::string(page.size() - 8, ' ') +
                             "  Link text       Links\n" + gone + "  404 - Not Found  " + page +
                             "  Gone, \"really\"  2\n";
    expectSteps({
        {{"broken", "Site"}, 0, text},
        {{"broken", "Site", "--format", "json"}, 0, "[\n  " + brokenLinkJson("    ") + "\n]\n"},
    });
    // The rows in tsv and csv are the scan's own, checked by its tests; here the option picks them.
    EXPECT_TRUE(run({"broken", "Site", "--format", "tsv"}).out.starts_with("URL\tStatus\t"));
    EXPECT_TRUE(run({"broken", "Site", "--format", "csv"}).out.starts_with("URL,Status,"));

    // A list without its details (a site scanned by an older version) gives the URLs alone.
    ASSERT_TRUE(removeFile(folder + "/brokenLinks.tsv"));
    expectSteps({
        {{"broken", "Site"}, 0, gone + "\n"},
        {{"broken", "Site", "--format", "json"},
         0,
         "[\n  {\n    \"url\": \"" + gone +
             "\",\n    \"status\": null,\n    \"code\": null,\n    \"foundOn\": null,\n"
             "    \"linkText\": null,\n    \"links\": null\n  }\n]\n"},
    });

    const auto xmlRow = [&](const std::string& row, const std::string& path) {
        return "{\n    \"row\": " + row + ",\n    \"loc\": \"" + server.url(path) +
               "\",\n    \"lastmod\": \"\",\n    \"changefreq\": \"monthly\",\n    "
               "\"priority\": \"0.5\"\n  }";
    };
    const std::string xmlRows =
        "[\n  " + xmlRow("1", "/") + ",\n  " + xmlRow("2", "/a.html") + "\n]\n";
    expectSteps({
        {{"sites", "--json"},
         0,
         "[\n  {\n    \"name\": \"Site\",\n    \"url\": \"" + server.url("/") +
             "\",\n    \"pagesFound\": 3,\n    \"totalLinks\": 6,\n    \"pagesUsed\": 2\n  }\n]\n"},
        {{"xml", "Site", "--json"}, 0, xmlRows},
        {{"xml", "Site", "list", "--json"}, 0, xmlRows},
    });
}

}  // namespace
}  // namespace loomcrest
