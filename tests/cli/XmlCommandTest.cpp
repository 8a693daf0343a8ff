#include <gtest/gtest.h>

#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/RunCommand.h"

namespace loomcrest {
namespace {

using XmlCommand = test::CommandLineTest;

TEST_F(XmlCommand, ListsEditsAndDeletesEntriesByRowFromOne) {
    ASSERT_EQ(run({"add", "Site", "example.com"}).exitCode, 0);
    const std::string file = siteFile("Site", "sitemap.xml");
    const std::string header(xmlSitemapHeader());
    test::writeFile(file, header + xmlSitemapEntry("http://example.com/?a=1&b=2", "") +
                              xmlSitemapEntry("http://example.com/x.html", "") + "\n</urlset>");
    const std::string listed =
        "1\thttp://example.com/?a=1&b=2\t\tmonthly\t0.5\n2\thttp://example.com/"
        "x.html\t\tmonthly\t0.5\n";
    expectSteps({
        {{"xml", "Site"}, 0, listed},
        {{"xml", "Site", "list"}, 0, listed},
        // The texts of a refused value and of the question are the editor's own tests.
        {{"xml", "Site", "set", "1", "lastmod", "2024-01-17"}, 1, "", std::nullopt},
        {{"xml", "Site", "set", "3", "priority", "1"}, 1, "", "No entry in row 3.\n"},
        {{"xml", "Site", "set", "2", "priority", "1"}},
        {{"xml", "Site", "set", "2", "changefreq", "often"}},
        {{"xml", "Site", "delete", "1"}, 0, "", std::nullopt},
        {{"xml", "Site", "delete", "2"}, 1, "", "No entry in row 2.\n"},
        {{"xml", "Site", "delete", "0"}, 1, "", "Not a row number: 0\n"},
        {{"xml", "Site", "set", "1", "colour", "red"}, 2, "", std::nullopt},
    });
    EXPECT_EQ(test::fileContents(file),
              header +
                  "\n\t<url>\n\t\t<loc>http://example.com/x.html</loc>\n\t\t<lastmod></lastmod>"
                  "\n\t\t<changefreq>often</changefreq>\n\t\t<priority>1</priority>\n\t</url>"
                  "\n</urlset>");
}

}  // namespace
}  // namespace loomcrest
