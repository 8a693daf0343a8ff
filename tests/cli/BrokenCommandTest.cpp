#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "platform/Json.h"
#include "support/ServedSite.h"

// `broken`, and the JSON that `scan`, `sites` and `xml` print for scripts.
namespace loomcrest {
namespace {

json::Value parsed(const std::string& text) {
    const json::ParseResult result = json::parse(text);
    EXPECT_TRUE(result.value) << result.error.describe() << " in\n" << text;
    return result.value.value_or(json::Value());
}

// The members of `value` as "name=value" lines, numbers and strings alike.
std::string members(const json::Value& value, std::initializer_list<std::string_view> names) {
    std::string text;
    for (const std::string_view name : names) {
        const json::Value* member = value.find(name);
        text.append(name).append("=");
        if (member == nullptr) {
            text += "(none)";
        } else if (member->string() != nullptr) {
            text += *member->string();
        } else if (member->integer()) {
            text += std::to_string(*member->integer());
        } else {
            text += member->isNull() ? "null" : "?";
        }
        text += "\n";
    }
    return text;
}

using BrokenCommand = test::ServedSite;

TEST_F(BrokenCommand, ScanJsonCarriesTheFiguresAndFailOnBrokenExitsThree) {
    const auto result = run({"scan", "Site", "--json", "--fail-on-broken"});
    EXPECT_EQ(result.exitCode, 3);
    const json::Value summary = parsed(result.out);
    EXPECT_EQ(members(summary, {"pagesFound", "pagesUsed", "totalLinks", "brokenLinks", "folder"}),
              "pagesFound=3\npagesUsed=2\ntotalLinks=6\nbrokenLinks=1\nfolder=" + folder + "\n");
    const json::Value* seconds = summary.find("seconds");
    ASSERT_NE(seconds, nullptr);
    EXPECT_GE(seconds->number().value_or(-1), 0.0);
    const json::Value* details = summary.find("brokenLinkDetails");
    ASSERT_TRUE(details != nullptr && details->array() != nullptr && details->array()->size() == 1);
    EXPECT_EQ(members(details->array()->front(),
                      {"url", "status", "code", "foundOn", "linkText", "links"}),
              "url=" + server.url("/gone.html") + "\nstatus=404 - Not Found\ncode=404\nfoundOn=" +
                  server.url("/") + "\nlinkText=Gone, \"really\"\nlinks=2\n");
    EXPECT_NE(
        run({"--help"})
            .out.find("  3    scan --fail-on-broken: the scan finished and found broken links"),
        std::string::npos);
}

TEST_F(BrokenCommand, PrintsTheDetailsInEachFormat) {
    ASSERT_EQ(run({"scan", "Site"}).exitCode, 0);
    const std::string gone = server.url("/gone.html");
    const std::string page = server.url("/");
    const std::string text = "URL" + std::string(gone.size() - 1, ' ') +
                             "Status           Found on" + std::string(page.size() - 8, ' ') +
                             "  Link text       Links\n" + gone + "  404 - Not Found  " + page +
                             "  Gone, \"really\"  2\n";
    expectSteps({
        {{"broken", "Site"}, 0, text},
        {{"broken", "Site", "--format", "text"}, 0, text},
        {{"broken", "Site", "--format", "tsv"},
         0,
         "URL\tStatus\tFound on\tLink text\tLinks\n" + gone + "\t404 - Not Found\t" + page +
             "\tGone, \"really\"\t2\n"},
        {{"broken", "Site", "--format", "csv"},
         0,
         "URL,Status,Found on,Link text,Links\r\n" + gone + ",404 - Not Found," + page +
             ",\"Gone, \"\"really\"\"\",2\r\n"},
    });
    const json::Value rows = parsed(run({"broken", "Site", "--format", "json"}).out);
    ASSERT_TRUE(rows.array() != nullptr && rows.array()->size() == 1);
    EXPECT_EQ(members(rows.array()->front(), {"status", "links"}),
              "status=404 - Not Found\nlinks=2\n");

    // A list without its details (a site scanned by an older version) gives the URLs alone.
    ASSERT_TRUE(removeFile(folder + "/brokenLinks.tsv"));
    expectSteps({{{"broken", "Site"}, 0, gone + "\n"}});
    const json::Value bare = parsed(run({"broken", "Site", "--format", "json"}).out);
    ASSERT_TRUE(bare.array() != nullptr && bare.array()->size() == 1);
    EXPECT_EQ(members(bare.array()->front(), {"url", "status"}), "url=" + gone + "\nstatus=null\n");
}

TEST_F(BrokenCommand, SitesAndXmlListAsJson) {
    ASSERT_EQ(run({"scan", "Site"}).exitCode, 0);
    const json::Value sites = parsed(run({"sites", "--json"}).out);
    ASSERT_TRUE(sites.array() != nullptr && sites.array()->size() == 1);
    EXPECT_EQ(
        members(sites.array()->front(), {"name", "url", "pagesFound", "totalLinks", "pagesUsed"}),
        "name=Site\nurl=" + server.url("/") + "\npagesFound=3\ntotalLinks=6\npagesUsed=2\n");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"xml", "Site", "--json"}, {"xml", "Site", "list", "--json"}}) {
        const json::Value entries = parsed(run(arguments).out);
        ASSERT_TRUE(entries.array() != nullptr && entries.array()->size() == 2);
        EXPECT_EQ(
            members(entries.array()->back(), {"row", "loc", "lastmod", "changefreq", "priority"}),
            "row=2\nloc=" + server.url("/a.html") +
                "\nlastmod=\nchangefreq=monthly\npriority=0.5\n");
    }
}

}  // namespace
}  // namespace loomcrest
