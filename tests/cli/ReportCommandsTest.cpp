#include <gtest/gtest.h>

#include "platform/FileSystem.h"
#include "platform/Json.h"
#include "support/RunCommand.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

using test::runLoomcrest;
using test::TemporaryHome;

json::Value parsed(const std::string& text) {
    const json::ParseResult result = json::parse(text);
    EXPECT_TRUE(result.value) << result.error.describe() << " in\n" << text;
    return result.value.value_or(json::Value());
}

int64_t integerOf(const json::Value& value, std::string_view name) {
    const json::Value* member = value.find(name);
    return member != nullptr ? member->integer().value_or(-1) : -1;
}

std::string stringOf(const json::Value& value, std::string_view name) {
    const json::Value* member = value.find(name);
    return member != nullptr && member->string() != nullptr ? *member->string() : "(none)";
}

class ReportCommands : public testing::Test {
protected:
    void SetUp() override {
        server.server().Get("/", [](const httplib::Request&, httplib::Response& res) {
            res.set_content(
                "<title>Home</title><a href=\"a.html\">A</a>"
                "<a href=\"gone.html\">Gone, \"really\"</a><a href=\"doc.pdf\">D</a>",
                "text/html");
        });
        server.server().Get("/a.html", [](const httplib::Request&, httplib::Response& res) {
            res.set_content("<title>A</title><a href=\"gone.html\">G</a>", "text/html");
        });
        server.start();
        ASSERT_EQ(runLoomcrest(home, {"add", "Site", server.url("/")}).exitCode, 0);
    }

    TemporaryHome home;
    test::TestServer server;
};

TEST_F(ReportCommands, ScanJsonCarriesTheFiguresAndFailOnBrokenExitsThree) {
    const auto plain = runLoomcrest(home, {"scan", "Site"});
    EXPECT_EQ(plain.exitCode, 0) << "broken links alone are no failure";

    const auto result = runLoomcrest(home, {"scan", "Site", "--json", "--fail-on-broken"});
    EXPECT_EQ(result.exitCode, 3);
    const json::Value summary = parsed(result.out);
    EXPECT_EQ(integerOf(summary, "pagesFound"), 3);
    EXPECT_EQ(integerOf(summary, "pagesUsed"), 2);
    EXPECT_EQ(integerOf(summary, "totalLinks"), 6);
    EXPECT_EQ(integerOf(summary, "brokenLinks"), 1);
    EXPECT_EQ(stringOf(summary, "folder"), home.dataRoot() + "/Site");
    const json::Value* seconds = summary.find("seconds");
    ASSERT_NE(seconds, nullptr);
    EXPECT_GE(seconds->number().value_or(-1), 0.0);
    const json::Value* details = summary.find("brokenLinkDetails");
    ASSERT_TRUE(details != nullptr && details->array() != nullptr && details->array()->size() == 1);
    const json::Value& gone = details->array()->front();
    EXPECT_EQ(stringOf(gone, "url"), server.url("/gone.html"));
    EXPECT_EQ(stringOf(gone, "status"), "404 - Not Found");
    EXPECT_EQ(integerOf(gone, "code"), 404);
    EXPECT_EQ(stringOf(gone, "foundOn"), server.url("/"));
    EXPECT_EQ(stringOf(gone, "linkText"), "Gone, \"really\"");
    EXPECT_EQ(integerOf(gone, "links"), 2);

    const std::string help = runLoomcrest(home, {"--help"}).out;
    EXPECT_NE(help.find("  3    scan --fail-on-broken: the scan finished and found broken links"),
              std::string::npos)
        << help;
}

TEST_F(ReportCommands, BrokenPrintsTheDetailsInEachFormat) {
    ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
    const std::string gone = server.url("/gone.html");
    const std::string page = server.url("/");
    const std::string pad(page.size() - 8, ' ');
    const std::vector<std::pair<std::string, std::string>> formats = {
        {"text", "URL" + std::string(gone.size() - 1, ' ') + "Status           Found on" + pad +
                     "  Link text       Links\n" + gone + "  404 - Not Found  " + page +
                     "  Gone, \"really\"  2\n"},
        {"tsv", "URL\tStatus\tFound on\tLink text\tLinks\n" + gone + "\t404 - Not Found\t" + page +
                    "\tGone, \"really\"\t2\n"},
        {"csv", "URL,Status,Found on,Link text,Links\r\n" + gone + ",404 - Not Found," + page +
                    ",\"Gone, \"\"really\"\"\",2\r\n"},
    };
    for (const auto& [format, expected] : formats) {
        const auto result = runLoomcrest(home, {"broken", "Site", "--format", format});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, expected) << format;
    }
    EXPECT_EQ(runLoomcrest(home, {"broken", "Site"}).out, formats[0].second) << "text by default";
    const json::Value rows = parsed(runLoomcrest(home, {"broken", "Site", "--format", "json"}).out);
    ASSERT_TRUE(rows.array() != nullptr && rows.array()->size() == 1);
    EXPECT_EQ(integerOf(rows.array()->front(), "links"), 2);

    // A list without its details (a site scanned by an older version) gives the URLs alone.
    ASSERT_TRUE(removeFile(home.dataRoot() + "/Site/brokenLinks.tsv"));
    EXPECT_EQ(runLoomcrest(home, {"broken", "Site"}).out, gone + "\n");
    const json::Value bare = parsed(runLoomcrest(home, {"broken", "Site", "--format", "json"}).out);
    ASSERT_TRUE(bare.array() != nullptr && bare.array()->size() == 1);
    EXPECT_TRUE(bare.array()->front().find("status")->isNull());
    EXPECT_EQ(runLoomcrest(home, {"broken", "Nowhere"}).exitCode, 1);
}

TEST_F(ReportCommands, SitesAndXmlListAsJson) {
    ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
    const json::Value sites = parsed(runLoomcrest(home, {"sites", "--json"}).out);
    ASSERT_TRUE(sites.array() != nullptr && sites.array()->size() == 1);
    const json::Value& site = sites.array()->front();
    EXPECT_EQ(stringOf(site, "name"), "Site");
    EXPECT_EQ(stringOf(site, "url"), server.url("/"));
    EXPECT_EQ(integerOf(site, "pagesFound"), 3);
    EXPECT_EQ(integerOf(site, "totalLinks"), 6);
    EXPECT_EQ(integerOf(site, "pagesUsed"), 2);

    for (const auto& arguments : {std::initializer_list<std::string>{"xml", "Site", "--json"},
                                  {"xml", "Site", "list", "--json"}}) {
        const json::Value entries = parsed(runLoomcrest(home, arguments).out);
        ASSERT_TRUE(entries.array() != nullptr && entries.array()->size() == 2);
        const json::Value& second = entries.array()->back();
        EXPECT_EQ(integerOf(second, "row"), 2);
        EXPECT_EQ(stringOf(second, "loc"), server.url("/a.html"));
        EXPECT_EQ(stringOf(second, "lastmod"), "");
        EXPECT_EQ(stringOf(second, "changefreq"), "monthly");
        EXPECT_EQ(stringOf(second, "priority"), "0.5");
    }
}

TEST_F(ReportCommands, ExplainWritesTheFileOrSaysWhyNot) {
    const std::string path = home.path() + "/why.tsv";
    const auto result = runLoomcrest(home, {"scan", "Site", "--explain", path});
    EXPECT_EQ(result.exitCode, 0);
    const std::string page = server.url("/");
    EXPECT_EQ(test::fileContents(path), "Page\tLink\tReason\n" + page + "\tdoc.pdf\textension\n" +
                                            server.url("/a.html") + "\tgone.html\tduplicate\n");

    const std::string nowhere = home.path() + "/missing/why.tsv";
    const auto refused = runLoomcrest(home, {"scan", "Site", "--explain", nowhere});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.err, "The explanations could not be written to \"" + nowhere + "\".\n" +
                               nowhere + ": No such file or directory\n");
}

}  // namespace
}  // namespace loomcrest
