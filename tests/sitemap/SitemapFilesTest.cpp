#include "sitemap/SitemapFiles.h"

#include <gtest/gtest.h>

#include <map>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"
#include "platform/FileSystem.h"
#include "sitemap/BrokenLinkDetails.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/PreviousSitemaps.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/LayoutPieces.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::TemporaryHome;

TEST(SitemapFiles, HeadersReplaceEarlierFilesAndClosingsUseTheAllLinksCounters) {
    TemporaryHome home;
    const std::string folder = home.path();
    test::writeFile(folder + "/sitemap1c.html", "an earlier scan");
    writeSitemapHeaders(folder);
    const std::string head(htmlSitemapHead());
    EXPECT_EQ(fileContents(folder + "/sitemap1c.html"), head);
    EXPECT_EQ(fileContents(folder + "/sitemap3cpo.html"), head + std::string(kTableOpening));

    // An open row of one cell is padded to its full width; the scan tests close the others.
    closeSitemapFiles(folder, 1, 1);
    EXPECT_EQ(
        fileContents(folder + "/sitemap2cpo.html"),
        head + std::string(kTableOpening) + "&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
    EXPECT_EQ(fileContents(folder + "/sitemap3cpo.html"),
              head + std::string(kTableOpening) +
                  "&nbsp;</td>\n\t\t<td>&nbsp;</td>\n\t</tr>\n</table>\n</body>\n</html>");
    EXPECT_EQ(fileContents(folder + "/sitemap.xml"),
              std::string(xmlSitemapHeader()) + "\n</urlset>");
}

using test::writeFile;

class SitemapBuilders : public testing::Test {
protected:
    void SetUp() override {
        writeSitemapHeaders(folder);
        scanner.setSitemapFolder(folder);
    }

    std::string file(const std::string& name) const { return fileContents(folder + "/" + name); }

    TemporaryHome home;
    std::string folder = home.path();
    ProcessState process;
    SiteScanner scanner{process};
};

TEST_F(SitemapBuilders, EmptyOrMalformedBlocksAreDroppedAndAFailedWriteStopsTheAppends) {
    scanner.buildAllLinksSitemaps("");
    scanner.buildAllLinksSitemaps("caf\xe9");
    EXPECT_EQ(scanner.twoColCountAP, 0);
    EXPECT_TRUE(scanner.sitemapWriteFailure().ok());
    (void)removeFile(folder + "/sitemap2cpo.html");
    scanner.buildPageTitleSitemap("X", "Not Found");
    scanner.buildAllLinksSitemaps("<div>block</div>");
    EXPECT_FALSE(pathExists(folder + "/sitemap2cpo.html")) << "a missing file is not made";
    EXPECT_EQ(scanner.sitemapWriteFailure().message(),
              folder + "/sitemap2cpo.html: No such file or directory");
    EXPECT_EQ(file("sitemap1cpo.html"), std::string(htmlSitemapHead()) + test::oneColumnPiece("X"));
    EXPECT_EQ(file("sitemap.xml"), std::string(xmlSitemapHeader()));
    EXPECT_EQ(file("sitemap1c.html"), std::string(htmlSitemapHead()));
    EXPECT_EQ(scanner.twoColCountPO, 1) << "the counters move on";
    scanner.setSitemapFolder(folder);
    EXPECT_TRUE(scanner.sitemapWriteFailure().ok()) << "a new scan starts afresh";
}

constexpr std::string_view kStatistics = "<pagesFound>3</pagesFound>\n<totalLinks>9</totalLinks>";

class PreviousSitemaps : public testing::Test {
protected:
    // The seven files and the broken-links list with its details, each holding `mark` and its
    // closing tag.
    std::map<std::string, std::string> writeSet(const std::string& mark, bool withBrokenLinks) {
        std::map<std::string, std::string> set;
        for (const std::string_view name :
             {kOneColumnPagesOnly, kTwoColumnPagesOnly, kThreeColumnPagesOnly, kOneColumnAllLinks,
              kTwoColumnAllLinks, kThreeColumnAllLinks}) {
            set[std::string(name)] = mark + " " + std::string(name) + "\n</body>\n</html>";
        }
        set[std::string(kXmlSitemap)] = mark + "\n</urlset>";
        for (const std::string_view list : {kBrokenLinksFile, kBrokenLinkDetailsFile}) {
            if (withBrokenLinks) {
                set[std::string(list)] = mark + " " + std::string(list) + "\n";
            } else {
                EXPECT_TRUE(removeFile(folder + "/" + std::string(list)));
            }
        }
        // Replaced as the program replaces files, never rewritten in place.
        createFolderWithParents(folder);
        for (const auto& [name, text] : set) {
            EXPECT_TRUE(writeFileAtomically(folder + "/" + name, text));
        }
        return set;
    }

    std::map<std::string, std::string> folderContents() const {
        std::map<std::string, std::string> contents;
        for (const std::string& name : walkFolder(folder)) {
            contents[name] = fileContents(folder + "/" + name);
        }
        return contents;
    }

    TemporaryHome home;
    std::string folder = home.path() + "/Site";
};

TEST_F(PreviousSitemaps, AMissingBrokenLinksListIsCarriedOverAsMissing) {
    writeSet("first", true);
    ASSERT_TRUE(keepPreviousSitemaps(folder, kStatistics));
    writeSet("second", false);
    ASSERT_TRUE(keepPreviousSitemaps(folder, kStatistics));
    // Both lists take one path; the first stands for them.
    EXPECT_FALSE(pathExists(folder + "/badLinks.txt.previous"));
    ASSERT_TRUE(writeFileAtomically(folder + "/badLinks.txt", "third broken\n"));
    ASSERT_TRUE(putBackPreviousSitemaps(folder));
    EXPECT_FALSE(pathExists(folder + "/badLinks.txt"));
}

TEST_F(PreviousSitemaps, AFailedScanPutsThePreviousSetBackOrLeavesNoCutFile) {
    const auto first = writeSet("first", true);
    ASSERT_TRUE(keepPreviousSitemaps(folder, kStatistics));
    writeFile(folder + "/sitemap1c.html", "cut off");
    ASSERT_TRUE(discardUnfinishedSitemaps(folder));
    EXPECT_EQ(folderContents(), first);

    writeSet("never finished", true);
    ASSERT_TRUE(discardUnfinishedSitemaps(folder));
    EXPECT_EQ(folderContents(), (std::map<std::string, std::string>{
                                    {"badLinks.txt", "never finished badLinks.txt\n"},
                                    {"brokenLinks.tsv", "never finished brokenLinks.tsv\n"}}))
        << "the lists are no sitemaps: they are written whole or not at all";
}

TEST_F(PreviousSitemaps, AMoveThatFailsHalfwayPutsTheCurrentSetBackAndKeepsNoPreviousOne) {
    const auto current = writeSet("current", true);
    // A folder where the XML sitemap's previous copy would go: the last move fails.
    ASSERT_TRUE(createFolderWithParents(folder + "/sitemap.xml.previous/blocked"));
    EXPECT_EQ(keepPreviousSitemaps(folder, kStatistics).message(),
              folder + "/sitemap.xml: Is a directory");
    removeRecursively(folder + "/sitemap.xml.previous");
    EXPECT_EQ(folderContents(), current) << "no previous copy is left, statistics included";
}

}  // namespace
}  // namespace loomcrest
