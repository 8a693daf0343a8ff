#include "editors/XmlSitemapEntries.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/HtmlDocument.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"

namespace loomcrest {
namespace {

// The entries as the XML parser serialises them, which the plain reader must give too.
std::vector<std::string> parsedEntries(const std::string& text) {
    std::vector<std::string> entries;
    const auto document = MarkupDocument::parseXml(text);
    for (const MarkupNode& entry : document->select("//*[local-name()='url']")) {
        entries.push_back(entry.markup());
    }
    return entries;
}

const std::string kHeader(xmlSitemapHeader());

TEST(XmlSitemapEntries, PlainFilesReadAsTheParserReadsThem) {
    std::mt19937 random(5);
    const std::vector<std::string> addresses = {
        "http://h/a?b=1&c=2",    "http://h/'quoted' \"twice\"",
        "http://h/<angle>",      "http://h/caf\xC3\xA9 \xE2\x82\xAC",
        "http://h/&amp;already", "http://h/tab\there"};
    for (int round = 0; round < 200; ++round) {
        std::string text = kHeader;
        const int entries = std::uniform_int_distribution<int>(0, 6)(random);
        for (int i = 0; i < entries; ++i) {
            const std::string& address =
                addresses[std::uniform_int_distribution<size_t>(0, addresses.size() - 1)(random)];
            text += xmlSitemapEntry(address, i % 2 == 0 ? "2024-05-17" : "");
        }
        // As the scan closes the file, and as the editor rewrites it with bare "&".
        text += round % 2 == 0 ? "\n</urlset>"
                               : "\n\t<url>\n\t\t<loc>http://h/x?a=1&b=2</loc>"
                                 "\n\t\t<priority>1</priority>\n\t</url>\n</urlset>";
        const auto plain = xmlentries::plainEntries(text);
        ASSERT_TRUE(plain.has_value()) << text;
        ASSERT_EQ(*plain, parsedEntries(text)) << text;
    }
    EXPECT_EQ(xmlentries::plainEntries(kHeader + "\n\t<url>\n\t\t<loc>&#233;&#x41;&quot;</loc>"
                                                 "\n\t</url>\n</urlset>\n"),
              (std::vector<std::string>{"<url>\n\t\t<loc>\xC3\xA9"
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
             kHeader + "\n\t<url>\n\t\t<image>x</image>\n\t</url>\n</urlset>",
             kHeader + "\n\t<url id=\"1\">\n\t\t<loc>x</loc>\n\t</url>\n</urlset>",
             kHeader + "\n\t<url>text<loc>x</loc>\n\t</url>\n</urlset>",
         }) {
        EXPECT_FALSE(xmlentries::plainEntries(odd).has_value()) << odd;
    }
}

}  // namespace
}  // namespace loomcrest
