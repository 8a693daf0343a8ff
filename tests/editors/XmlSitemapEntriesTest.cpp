#include "editors/XmlSitemapEntries.h"

#include <gtest/gtest.h>

#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"

namespace loomcrest {
namespace {

const std::string kHeader(xmlSitemapHeader());

// Whether the plain reader gives what the XML parser gives is compared by the xml_editor fuzz
// target; here, what both give.
TEST(XmlSitemapEntries, PlainFilesAreReadWithTheirReferencesDecoded) {
    const std::string scanned = xmlSitemapEntry("http://h/?a=1&b='2'<>", "2024-05-17");
    EXPECT_EQ(xmlentries::plainEntries(kHeader + scanned +
                                       "\n\t<url>\n\t\t<loc>&#233;&#x41;"
                                       "&quot;</loc>\n\t</url>\n</urlset>\n"),
              (std::vector<std::string>{
                  "<url>\n\t\t<loc>http://h/?a=1&amp;b='2'&lt;&gt;</loc>\n\t\t<lastmod>2024-05-17"
                  "</lastmod>\n\t\t<changefreq>monthly</changefreq>\n\t\t<priority>0.5</priority>"
                  "\n\t</url>",
                  "<url>\n\t\t<loc>\xC3\xA9"
                  "A\"</loc>\n\t</url>"}));
}

TEST(XmlSitemapEntries, OtherFormsAreLeftToTheParser) {
    const std::string entry = "\n\t<url>\n\t\t<loc>http://h/</loc>\n\t</url>";
    for (const std::string& odd : {
             kHeader + "\n\t<url><!-- note --><loc>x</loc></url>\n</urlset>",
             "<!DOCTYPE urlset [<!ENTITY e \"x\">]>" + kHeader + entry + "\n</urlset>",
             kHeader + entry,
             kHeader + entry + "\n</urlset>\n<more/>",
             kHeader + "\n\t<url>\n\t\t<loc>a&e;b</loc>\n\t</url>\n</urlset>",
             kHeader + "\n\t<url>\n\t\t<loc>a\rb</loc>\n\t</url>\n</urlset>",
             kHeader + "\n\t<url>\n\t\t<loc>&#13;</loc>\n\t</url>\n</urlset>",
             kHeader + "\n\t<url>\n\t\t<loc><![CDATA[x]]></loc>\n\t</url>\n</urlset>",
             kHeader + "\n\t<url>\n\t\t<loc/>\n\t</url>\n</urlset>",
         }) {
        EXPECT_FALSE(xmlentries::plainEntries(odd).has_value()) << odd;
    }
}

}  // namespace
}  // namespace loomcrest
