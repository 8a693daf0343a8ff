#include <gtest/gtest.h>

#include <algorithm>

#include "platform/Text.h"
#include "support/RunCommand.h"
#include "support/ServedSite.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

using test::contains;
using test::fileContents;
using HtmlCommand = test::CommandLineTest;

TEST_F(HtmlCommand, ListsStylesEditsDeletesAndPreviewsOrSaysWhyNot) {
    ASSERT_EQ(run({"demo"}).exitCode, 0);
    const std::string folder = home.dataRoot() + "/Demo";
    const auto lines = run({"html", "Demo", "1c", "lines"});
    EXPECT_TRUE(lines.out.starts_with("1\ttitle\t0\tDemo Shop\thttp://127.0.0.1:")) << lines.out;
    const std::string last = std::to_string(std::count(lines.out.begin(), lines.out.end(), '\n'));
    const std::string beyond = std::to_string(std::stoi(last) + 1);

    const std::string twoColumns = fileContents(folder + "/sitemap2c.html");
    expectSteps({
        {{"html", "Demo", "1c", "style", "--pl-size", "1.3em", "--pt-underline", "none"},
         0,
         "",
         std::nullopt},
        {{"html", "Demo", "1c", "style", "--pt-colour", "#12345"}, 1, "", std::nullopt},
        {{"html", "Demo", "1c", "edit", "2", "--title", "Start & more"}},
        {{"html", "Demo", "1c", "edit", "2", "--title", ""}, 1, "", std::nullopt},
        {{"html", "Demo", "1c", "edit", beyond, "--title", "X"},
         1,
         "",
         "No line " + beyond + " in this layout.\n"},
        {{"html", "Demo", "1c", "edit", last, "--title", "Last one"}},
        {{"html", "Demo", "1c", "edit", "2"}, 2, "", "edit: give --title, --link or both.\n"},
        {{"html", "Demo", "4c", "lines"}, 2, "", std::nullopt},
        {{"html", "Demo", "1c", "style"},
         0,
         "pt font-family: Times New Roman, Times, serif\npt font-size: 1.1em\n"
         "pt font-weight: bold\npt font-style: normal\npt color: #000000\npt underline: none\n"
         "pl font-family: Times New Roman, Times, serif\npl font-size: 1.3em\n"
         "pl font-weight: normal\npl font-style: normal\npl color: #0000FF\npl underline: hover\n"},
    });
    EXPECT_EQ(fileContents(folder + "/sitemap2c.html"), twoColumns) << "one layout at a time";
    const std::string edited = run({"html", "Demo", "1c", "lines"}).out;
    EXPECT_TRUE(contains(edited, "\n" + last + "\tlink\t"));
    EXPECT_TRUE(contains(edited, "\tLast one\t"));

    expectSteps({
        {{"html", "Demo", "1c", "delete", "1"}, 0, "", std::nullopt},
        {{"html", "Demo", "1c", "delete", beyond}, 1, "", std::nullopt},
        {{"html", "Demo", "1c", "preview"}, 0, folder + "/tmpMap.html\n"},
    });
    EXPECT_TRUE(run({"html", "Demo", "1c", "lines"}).out.starts_with("1\ttitle\t2\tStart & more\t"))
        << "the page's first link became its title";

    // A title written with a reference the layouts never write: a click reads it as a quote,
    // which the line does not hold.
    const std::string path = folder + "/sitemap3c.html";
    const std::string quoted = replaceAll(fileContents(path), ">Demo Shop<", ">&quot;Demo&quot;<");
    test::writeFile(path, quoted);
    EXPECT_TRUE(run({"html", "Demo", "3c", "lines"}).out.starts_with("1\ttitle\t0\t\"Demo\"\t"));
    const std::string notFound = "Line 1 could not be found again in the layout; nothing was ";
    const auto deleted = run({"html", "Demo", "3c", "delete", "1"});
    EXPECT_EQ(deleted.exitCode, 1);
    // The question before it is the editor's own test.
    EXPECT_TRUE(deleted.err.ends_with("large sites.\n" + notFound + "deleted.\n"));
    expectSteps(
        {{{"html", "Demo", "3c", "edit", "1", "--title", "X"}, 1, "", notFound + "changed.\n"}});
    EXPECT_EQ(fileContents(path), quoted);
}

using CrawledMarkup = test::ServedSite;

TEST_F(CrawledMarkup, IsListedAsShownAndEditedAsText) {
    // The layouts keep crawled text escaped (their own tests show it for every line), and the
    // lines print it as a browser shows it; edits find exactly those lines.
    servePage("/",
              "<title>&lt;script&gt;x()&lt;/script&gt;</title>"
              "<a href=\"b.html?q=1&amp;r=2\">Dee &amp;lt; Dum</a>");
    ASSERT_EQ(run({"scan", "Site"}).exitCode, 0);
    EXPECT_EQ(run({"html", "Site", "1c", "lines"}).out,
              "1\ttitle\t0\t<script>x()</script>\t" + server.url("/") +
                  "\n2\tlink\t2\tDee &lt; Dum\t" + server.url("/b.html?q=1&r=2") + "\n");
    expectSteps({
        {{"html", "Site", "1c", "edit", "2", "--link", "http://h/d"}},
        {{"html", "Site", "1c", "edit", "1", "--title", "<b>bold</b>"}},
    });
}

}  // namespace
}  // namespace loomcrest
