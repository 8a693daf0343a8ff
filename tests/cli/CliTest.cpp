#include <gtest/gtest.h>

#include "platform/HtmlDocument.h"
#include "platform/Text.h"
#include "support/RunCommand.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;
using test::TemporaryHome;
using test::writeFile;

class CommandLine : public testing::Test {
protected:
    std::string siteFile(const std::string& name) const {
        return fileContents(home.dataRoot() + "/" + name + "/" + name + ".vrLMP");
    }

    TemporaryHome home;
};

TEST_F(CommandLine, AddThenShowLeavesTheCompletedSiteFile) {
    const auto add = runLoomcrest(home, {"add", "Example", "example.com"});
    EXPECT_EQ(add.exitCode, 0);
    EXPECT_EQ(add.out, "");
    EXPECT_EQ(add.err, "");
    EXPECT_EQ(siteFile("Example"),
              "<siteName>Example</siteName>\n<siteURL>http://example.com/</siteURL>\n"
              "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
              "<totalLinks>0</totalLinks>");

    const auto show = runLoomcrest(home, {"show", "Example"});
    EXPECT_EQ(show.exitCode, 0);
    EXPECT_EQ(show.out,
              "Name: Example\nURL: http://example.com/\nIgnore robots: no\nTotal links: 0\n"
              "Pages found: 0\nPages used: 0\nBroken links: 0\n");
    EXPECT_EQ(siteFile("Example"),
              "<siteName>Example</siteName>\n<siteURL>http://example.com/</siteURL>\n"
              "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
              "<totalLinks>0</totalLinks>\n<pagesUsed>0</pagesUsed>");
}

TEST_F(CommandLine, SitesListsEveryFieldSeparatedByTabs) {
    runLoomcrest(home, {"add", "Beta", "https://beta.org/index.html"});
    runLoomcrest(home, {"add", "Alpha", "alpha.com"});
    writeFile(home.dataRoot() + "/Old/Old.vrlmp",
              "<siteName>Old</siteName>\n<siteURL>http://old.com/</siteURL>");
    const auto sites = runLoomcrest(home, {"sites"});
    EXPECT_EQ(sites.exitCode, 0);
    EXPECT_EQ(sites.out,
              "Alpha\thttp://alpha.com/\t0\t0\t0\n"
              "Beta\thttps://beta.org/index.html\t0\t0\t0\n"
              "Old\thttp://old.com/\t0\t0\t0\n");
}

TEST_F(CommandLine, RefusedInputPrintsTheAlertAndExitsOne) {
    const auto result = runLoomcrest(home, {"add", "a.b", "ftp://x.org/"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "The following error has occurred while saving your site.\n"
              "\nThe site name cannot contain the following characters: / \\ . or ?"
              "\nURLs must begin http:// or https://\nftp:// etc scans are not available.\n");
    EXPECT_EQ(runLoomcrest(home, {"sites"}).out, "");
}

TEST_F(CommandLine, UnknownSitesTouchNothing) {
    runLoomcrest(home, {"add", "Example", "example.com"});
    const std::string before = siteFile("Example");
    for (const auto& arguments : {std::initializer_list<std::string>{"show", "Nope"},
                                  {"delete", "Nope"},
                                  {"robots", "Nope", "ignore"},
                                  {"edit", "Nope", "--url", "x.com"}}) {
        const auto result = runLoomcrest(home, arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.err, "No site named \"Nope\".\n");
    }
    EXPECT_EQ(siteFile("Example"), before);
}

TEST_F(CommandLine, EditRobotsAndDelete) {
    runLoomcrest(home, {"add", "Example", "example.com"});
    EXPECT_EQ(runLoomcrest(home, {"robots", "Example", "ignore"}).exitCode, 0);
    EXPECT_EQ(runLoomcrest(home, {"edit", "Example", "--url", "example.org/a b"}).exitCode, 0);
    EXPECT_EQ(runLoomcrest(home, {"edit", "Example", "--name", "Renamed"}).exitCode, 0);
    EXPECT_EQ(siteFile("Renamed"),
              "<siteName>Renamed</siteName>\n<siteURL>http://example.org/a%20b/</siteURL>\n"
              "<ignoreRobotFile>YES</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
              "<totalLinks>0</totalLinks>\n<pagesUsed>0</pagesUsed>");

    const auto removal = runLoomcrest(home, {"delete", "Renamed"});
    EXPECT_EQ(removal.exitCode, 0);
    EXPECT_EQ(removal.err, "Do you really want to delete the site:\nRenamed\n\n");
    EXPECT_EQ(runLoomcrest(home, {"sites"}).out, "");
}

TEST_F(CommandLine, RenameOntoAnExistingSiteWarnsAndExitsOne) {
    runLoomcrest(home, {"add", "First", "first.com"});
    runLoomcrest(home, {"add", "Second", "second.com"});
    const auto result = runLoomcrest(home, {"edit", "First", "--name", "Second"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "A site with the name \"Second\" already exists, please delete this site first or "
              "select a different name.\n\n");
    EXPECT_EQ(runLoomcrest(home, {"sites"}).out,
              "First\thttp://first.com/\t0\t0\t0\nSecond\thttp://first.com/\t0\t0\t0\n");
}

TEST_F(CommandLine, UsageErrorsExitTwo) {
    EXPECT_EQ(runLoomcrest(home, {}).exitCode, 2);
    EXPECT_EQ(runLoomcrest(home, {"bogus"}).exitCode, 2);
    EXPECT_EQ(runLoomcrest(home, {"add", "OnlyName"}).exitCode, 2);
    EXPECT_EQ(runLoomcrest(home, {"robots", "Example", "sometimes"}).exitCode, 2);
    EXPECT_EQ(runLoomcrest(home, {"--help"}).exitCode, 0);
    const auto version = runLoomcrest(home, {"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out, "loomcrest " LOOMCREST_VERSION "\n");
}

}  // namespace
}  // namespace loomcrest

namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;
using test::TemporaryHome;

TEST(FiltersCommand, ListsAddsAndDeletesByRowFromOne) {
    TemporaryHome home;
    runLoomcrest(home, {"add", "Example", "example.com"});
    const std::string file = home.dataRoot() + "/Example/filters.zplp";

    const auto empty = runLoomcrest(home, {"filters", "Example"});
    EXPECT_EQ(empty.exitCode, 0);
    EXPECT_EQ(empty.out, "");
    EXPECT_EQ(fileContents(file), "") << "selecting the site creates the file";

    EXPECT_EQ(runLoomcrest(home, {"filters", "Example", "add", "  tmp  "}).exitCode, 0);
    EXPECT_EQ(runLoomcrest(home, {"filters", "Example", "add", "PDF"}).exitCode, 0);
    EXPECT_EQ(runLoomcrest(home, {"filters", "Example", "add", "old"}).exitCode, 0);
    EXPECT_EQ(runLoomcrest(home, {"filters", "Example"}).out, "  tmp  \nPDF\nold\n");
    EXPECT_EQ(runLoomcrest(home, {"filters", "Example", "list"}).out, "  tmp  \nPDF\nold\n");

    EXPECT_EQ(runLoomcrest(home, {"filters", "Example", "delete", "3", "1"}).exitCode, 0);
    EXPECT_EQ(fileContents(file), "PDF\n");
}

TEST(FiltersCommand, RefusalsTouchNothing) {
    TemporaryHome home;
    runLoomcrest(home, {"add", "Example", "example.com"});
    runLoomcrest(home, {"filters", "Example", "add", "PDF"});
    const std::string file = home.dataRoot() + "/Example/filters.zplp";

    const auto nothing = runLoomcrest(home, {"filters", "Example", "add", ""});
    EXPECT_EQ(nothing.exitCode, 1);
    EXPECT_EQ(nothing.err, "Cannot Add Filter\nThere is nothing to add!\n");

    const auto pastEnd = runLoomcrest(home, {"filters", "Example", "delete", "1", "2"});
    EXPECT_EQ(pastEnd.exitCode, 1);
    EXPECT_EQ(pastEnd.err, "No filter in row 2.\n");
    EXPECT_EQ(runLoomcrest(home, {"filters", "Example", "delete", "0"}).exitCode, 2);
    EXPECT_EQ(runLoomcrest(home, {"filters", "Example", "rename"}).exitCode, 2);
    EXPECT_EQ(runLoomcrest(home, {"filters", "Nope"}).err, "No site named \"Nope\".\n");
    EXPECT_EQ(fileContents(file), "PDF\n");
}

}  // namespace
}  // namespace loomcrest

namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;
using test::TemporaryHome;
using test::writeFile;

TEST(XmlCommand, ListsEditsAndDeletesEntries) {
    TemporaryHome home;
    runLoomcrest(home, {"add", "Site", "example.com"});
    const std::string file = home.dataRoot() + "/Site/sitemap.xml";
    const std::string header =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<urlset \n"
        "\txmlns=\"http://www.sitemaps.org/schemas/sitemap/0.9\" \n"
        "\txmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" \n"
        "\txsi:schemaLocation=\"http://www.sitemaps.org/schemas/sitemap/0.9 \n"
        "\thttp://www.sitemaps.org/schemas/sitemap/0.9/sitemap.xsd\">\n"
        "<!-- Created with Loomcrest -->";
    const auto entry = [](const std::string& url, const std::string& priority) {
        return "\n\t<url>\n\t\t<loc>" + url +
               "</loc>\n\t\t<lastmod></lastmod>\n\t\t<changefreq>monthly</changefreq>\n\t\t"
               "<priority>" +
               priority + "</priority>\n\t</url>";
    };
    writeFile(file, header + entry("http://example.com/?a=1&amp;b=2", "0.5") +
                        entry("http://example.com/x.html", "0.5") + "\n</urlset>");

    for (const auto& list :
         {runLoomcrest(home, {"xml", "Site"}), runLoomcrest(home, {"xml", "Site", "list"})}) {
        EXPECT_EQ(list.out,
                  "1\thttp://example.com/?a=1&b=2\t\tmonthly\t0.5\n"
                  "2\thttp://example.com/x.html\t\tmonthly\t0.5\n");
    }

    const auto january = runLoomcrest(home, {"xml", "Site", "set", "1", "lastmod", "2024-01-17"});
    EXPECT_EQ(january.exitCode, 1);
    EXPECT_EQ(january.err, "The month must be a number between 01 and 12\n\n");

    EXPECT_EQ(runLoomcrest(home, {"xml", "Site", "set", "2", "priority", "1"}).exitCode, 0);
    EXPECT_EQ(runLoomcrest(home, {"xml", "Site", "set", "2", "changefreq", "often"}).exitCode, 0);
    EXPECT_EQ(runLoomcrest(home, {"xml", "Site", "delete", "1"}).exitCode, 0);
    EXPECT_EQ(fileContents(file),
              header +
                  "\n\t<url>\n\t\t<loc>http://example.com/x.html</loc>\n\t\t<lastmod></lastmod>"
                  "\n\t\t<changefreq>often</changefreq>\n\t\t<priority>1</priority>\n\t</url>"
                  "\n</urlset>");

    EXPECT_EQ(runLoomcrest(home, {"xml", "Site", "delete", "2"}).err, "No entry in row 2.\n");
    EXPECT_EQ(runLoomcrest(home, {"xml", "Site", "set", "1", "colour", "red"}).exitCode, 2);
}

}  // namespace
}  // namespace loomcrest

namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;
using test::TemporaryHome;

TEST(HtmlCommand, ListsStylesEditsDeletesAndPreviews) {
    TemporaryHome home;
    ASSERT_EQ(runLoomcrest(home, {"demo"}).exitCode, 0);
    const std::string folder = home.dataRoot() + "/Demo";
    const auto lines = runLoomcrest(home, {"html", "Demo", "1c", "lines"});
    EXPECT_EQ(lines.exitCode, 0);
    EXPECT_TRUE(lines.out.starts_with("1\ttitle\t0\tDemo Shop\thttp://127.0.0.1:")) << lines.out;
    EXPECT_NE(lines.out.find("\n2\tlink\t2\tHome\thttp://127.0.0.1:"), std::string::npos);

    const std::string twoColumns = fileContents(folder + "/sitemap2c.html");
    EXPECT_EQ(runLoomcrest(home, {"html", "Demo", "1c", "style", "--pl-size", "1.3em",
                                  "--pt-underline", "none"})
                  .exitCode,
              0);
    const std::string styled = fileContents(folder + "/sitemap1c.html");
    EXPECT_NE(styled.find("\t\tfont-size: 1.3em;\n\t\tmargin-left: 20px;"), std::string::npos);
    EXPECT_NE(styled.find("\t.zplPageTitle a:hover { text-decoration:none }"), std::string::npos);
    EXPECT_EQ(fileContents(folder + "/sitemap2c.html"), twoColumns) << "one layout at a time";

    const auto badColour =
        runLoomcrest(home, {"html", "Demo", "1c", "style", "--pt-colour", "#12345"});
    EXPECT_EQ(badColour.exitCode, 1);
    EXPECT_EQ(badColour.err,
              "The colour much be 6 characters, (7 with begining #) please check the "
              "colour hex value you entered.\n\n");

    EXPECT_EQ(
        runLoomcrest(home, {"html", "Demo", "1c", "edit", "2", "--title", "Start & more"}).exitCode,
        0);
    EXPECT_NE(fileContents(folder + "/sitemap1c.html").find(">Start &amp; more<!-- LINKID: 2 -->"),
              std::string::npos);
    const auto blankTitle = runLoomcrest(home, {"html", "Demo", "1c", "edit", "2", "--title", ""});
    EXPECT_EQ(blankTitle.exitCode, 1);
    EXPECT_EQ(blankTitle.err,
              "The title field cannot be left blank, please enter a title for this page.\n\n");

    EXPECT_EQ(runLoomcrest(home, {"html", "Demo", "1c", "delete", "1"}).exitCode, 0);
    EXPECT_TRUE(runLoomcrest(home, {"html", "Demo", "1c", "lines"})
                    .out.starts_with("1\ttitle\t2\tStart & more\t"))
        << "the page's first link became its title";

    const auto preview = runLoomcrest(home, {"html", "Demo", "1c", "preview"});
    EXPECT_EQ(preview.out, folder + "/tmpMap.html\n");
    EXPECT_EQ(fileContents(folder + "/tmpMap.html").find("LINKID"), std::string::npos);

    EXPECT_EQ(runLoomcrest(home, {"html", "Demo", "4c", "lines"}).exitCode, 2);
    EXPECT_EQ(runLoomcrest(home, {"html", "Demo", "1c", "delete", "9999"}).exitCode, 1);

    const auto style = runLoomcrest(home, {"html", "Demo", "1c", "style"});
    EXPECT_EQ(style.exitCode, 0);
    EXPECT_EQ(style.out,
              "pt font-family: Times New Roman, Times, serif\npt font-size: 1.1em\n"
              "pt font-weight: bold\npt font-style: normal\npt color: #000000\n"
              "pt underline: none\n"
              "pl font-family: Times New Roman, Times, serif\npl font-size: 1.3em\n"
              "pl font-weight: normal\npl font-style: normal\npl color: #0000FF\n"
              "pl underline: hover\n");
}

TEST(HtmlCommand, ALineThatCannotBeFoundAgainIsReported) {
    TemporaryHome home;
    ASSERT_EQ(runLoomcrest(home, {"demo"}).exitCode, 0);
    // A title written with a reference the layouts never write: a click reads it as a quote,
    // which the line does not hold.
    const std::string path = home.dataRoot() + "/Demo/sitemap1c.html";
    const std::string quoted = replaceAll(fileContents(path), ">Demo Shop<", ">&quot;Demo&quot;<");
    test::writeFile(path, quoted);
    EXPECT_TRUE(runLoomcrest(home, {"html", "Demo", "1c", "lines"})
                    .out.starts_with("1\ttitle\t0\t\"Demo\"\t"));
    for (const std::string action : {"delete", "edit"}) {
        const auto result =
            action == "delete"
                ? runLoomcrest(home, {"html", "Demo", "1c", "delete", "1"})
                : runLoomcrest(home, {"html", "Demo", "1c", "edit", "1", "--title", "X"});
        EXPECT_EQ(result.exitCode, 1) << action;
        const std::string question =
            action == "delete" ? "Are you absolutely sure you want to remove this link from your "
                                 "sitemap, deleted links cannot be restored.\nThis could take a "
                                 "while for large sites.\n"
                               : "";
        EXPECT_EQ(result.err, question +
                                  "Line 1 could not be found again in the layout; nothing was " +
                                  (action == "delete" ? "deleted" : "changed") + ".\n");
        EXPECT_EQ(fileContents(path), quoted);
    }
}

// Every element and attribute of a published page that runs or loads something.
size_t liveMarkup(const std::string& html) {
    const auto document = MarkupDocument::parseHtml(html);
    return document
        ->select(
            "//script | //img | //iframe | //base | //meta[@http-equiv='refresh']"
            " | //@*[starts-with(name(), 'on')]")
        .size();
}

TEST(HtmlCommand, CrawledMarkupIsShownAsTextNeverRun) {
    TemporaryHome home;
    test::TestServer server;
    server.server().Get("/", [](const httplib::Request&, httplib::Response& res) {
        res.set_content(
            "<title>&lt;script&gt;document.title='pwned'&lt;/script&gt;</title>"
            "<a href=\"a.html\">&lt;img src=x onerror=alert(1)&gt;</a>"
            "<a href=\"b.html?q=1&amp;r=2\">Dee &amp;lt; Dum</a>"
            "<a href=\"c.html\">&lt;/a&gt;&lt;iframe src=//evil.example/&gt;</a>",
            "text/html");
    });
    server.server().Get("/a.html", [](const httplib::Request&, httplib::Response& res) {
        res.set_content(
            "<title>&lt;meta http-equiv=refresh content=0;url=//evil.example/&gt;"
            "&lt;base href=//evil.example/&gt;</title>",
            "text/html");
    });
    server.start();
    ASSERT_EQ(runLoomcrest(home, {"add", "Site", server.url("/")}).exitCode, 0);
    ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
    const std::string folder = home.dataRoot() + "/Site";
    EXPECT_NE(fileContents(folder + "/sitemap3c.html")
                  .find("<div class=\"zplPageLink\"><a href=\"" + server.url("/a.html") +
                        "---LINKID:2---\">&lt;img src=x onerror=alert(1)&gt;<!-- LINKID: 2 -->"
                        "</a></div>"),
              std::string::npos);
    for (const char* layout : {"3c", "2c", "1c", "3cpo", "2cpo", "1cpo"}) {
        const std::string file = folder + "/sitemap" + layout + ".html";
        EXPECT_EQ(liveMarkup(fileContents(file)), 0U) << layout;
        ASSERT_EQ(runLoomcrest(home, {"html", "Site", layout, "preview"}).exitCode, 0);
        EXPECT_EQ(liveMarkup(fileContents(folder + "/tmpMap.html")), 0U) << layout;
        ASSERT_EQ(
            runLoomcrest(home, {"export", "Site", layout, home.path() + "/out.html"}).exitCode, 0);
        EXPECT_EQ(liveMarkup(fileContents(home.path() + "/out.html")), 0U) << layout;
    }

    // The labels as a browser shows them, and edits that find exactly those lines.
    EXPECT_EQ(runLoomcrest(home, {"html", "Site", "1c", "lines"}).out,
              "1\ttitle\t0\t<script>document.title='pwned'</script>\t" + server.url("/") +
                  "\n2\tlink\t2\t<img src=x onerror=alert(1)>\t" + server.url("/a.html") +
                  "\n3\tlink\t3\tDee &lt; Dum\t" + server.url("/b.html?q=1&r=2") +
                  "\n4\tlink\t4\t</a><iframe src=//evil.example/>\t" + server.url("/c.html") +
                  "\n5\ttitle\t4\t<meta http-equiv=refresh content=0;url=//evil.example/>"
                  "<base href=//evil.example/>\t" +
                  server.url("/a.html") + "\n");
    EXPECT_EQ(
        runLoomcrest(home, {"html", "Site", "1c", "edit", "3", "--link", "http://h/d"}).exitCode,
        0);
    EXPECT_EQ(
        runLoomcrest(home, {"html", "Site", "1c", "edit", "2", "--title", "<b>bold</b>"}).exitCode,
        0);
    const std::string edited = fileContents(folder + "/sitemap1c.html");
    EXPECT_NE(
        edited.find("<a href=\"http://h/d---LINKID:3---\">Dee &amp;lt; Dum<!-- LINKID: 3 -->"),
        std::string::npos);
    EXPECT_NE(edited.find("---LINKID:2---\">&lt;b&gt;bold&lt;/b&gt;<!-- LINKID: 2 -->"),
              std::string::npos);
    EXPECT_EQ(runLoomcrest(home, {"html", "Site", "1c", "delete", "4"}).exitCode, 0);
    EXPECT_EQ(fileContents(folder + "/sitemap1c.html").find("iframe"), std::string::npos);
}

}  // namespace
}  // namespace loomcrest

namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;
using test::TemporaryHome;

TEST(ExportCommand, WritesTheChosenFileOrRefuses) {
    TemporaryHome home;
    ASSERT_EQ(runLoomcrest(home, {"demo"}).exitCode, 0);
    const std::string out = home.path() + "/site-map.html";
    EXPECT_EQ(runLoomcrest(home, {"export", "Demo", "2cpo", out}).exitCode, 0);
    const std::string exported = fileContents(out);
    EXPECT_EQ(exported.find("LINKID"), std::string::npos);
    EXPECT_NE(exported.find("<div class=\"zplPageTitle\"><a href=\"http://127.0.0.1:"),
              std::string::npos);

    EXPECT_EQ(runLoomcrest(home, {"export", "Demo", "broken-txt", home.path() + "/b.txt"}).exitCode,
              0);
    EXPECT_TRUE(fileContents(home.path() + "/b.txt").ends_with("/spring-sale.html\n\n"));

    runLoomcrest(home, {"add", "Never", "never.example"});
    const auto never = runLoomcrest(home, {"export", "Never", "xml", home.path() + "/n.xml"});
    EXPECT_EQ(never.exitCode, 1);
    EXPECT_EQ(never.err,
              "The sitemap you are trying to export could not be found, please make "
              "sure you have scanned your site before exporting.\n\n");
    EXPECT_EQ(runLoomcrest(home, {"export", "Demo", "4c", out}).exitCode, 2);
}

}  // namespace
}  // namespace loomcrest
