#include "sitemap/PreviousSitemaps.h"

#include <gtest/gtest.h>

#include <map>

#include "sitemap/BrokenLinkDetails.h"
#include "sitemap/SitemapFiles.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::TemporaryHome;
using test::writeFile;

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

    // Every file of the folder and its contents.
    std::map<std::string, std::string> folderContents() const {
        std::map<std::string, std::string> contents;
        for (const std::string& name : walkFolder(folder)) {
            contents[name] = fileContents(folder + "/" + name);
        }
        return contents;
    }

    static std::map<std::string, std::string> asPrevious(std::map<std::string, std::string> set) {
        std::map<std::string, std::string> previous;
        for (auto& [name, text] : set) {
            previous[name + ".previous"] = std::move(text);
        }
        previous["statistics.previous"] = kStatistics;
        return previous;
    }

    TemporaryHome home;
    std::string folder = home.path() + "/Site";
};

TEST_F(PreviousSitemaps, AMissingBrokenLinksListIsCarriedOverAsMissing) {
    writeSet("first", true);
    ASSERT_TRUE(keepPreviousSitemaps(folder, kStatistics));
    writeSet("second", false);
    ASSERT_TRUE(keepPreviousSitemaps(folder, kStatistics));
    EXPECT_FALSE(pathExists(folder + "/badLinks.txt.previous"));
    EXPECT_FALSE(pathExists(folder + "/brokenLinks.tsv.previous"));
    ASSERT_TRUE(writeFileAtomically(folder + "/badLinks.txt", "third broken\n"));
    ASSERT_TRUE(writeFileAtomically(folder + "/brokenLinks.tsv", "third details\n"));
    ASSERT_TRUE(putBackPreviousSitemaps(folder));
    EXPECT_FALSE(pathExists(folder + "/badLinks.txt"));
    EXPECT_FALSE(pathExists(folder + "/brokenLinks.tsv"));
}

TEST_F(PreviousSitemaps, AnUnfinishedSetNeverReplacesTheLastCompleteOne) {
    const auto first = writeSet("first", true);
    ASSERT_TRUE(keepPreviousSitemaps(folder, kStatistics));
    auto unfinished = writeSet("cut", false);
    writeFile(folder + "/sitemap3c.html", "cut <table>");
    unfinished["sitemap3c.html"] = "cut <table>";
    EXPECT_FALSE(sitemapsComplete(folder));
    ASSERT_TRUE(keepPreviousSitemaps(folder, "<pagesFound>0</pagesFound>"));
    auto expected = asPrevious(first);
    expected.insert(unfinished.begin(), unfinished.end());
    EXPECT_EQ(folderContents(), expected);
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

TEST_F(PreviousSitemaps, NoRoomForTheStatisticsLeavesEverythingWhereItWas) {
    const auto set = writeSet("first", true);
    const test::FileSizeLimit fullDisk(10);
    const WriteResult kept = keepPreviousSitemaps(folder, kStatistics);
    EXPECT_EQ(kept.message(), folder + "/statistics.previous: File too large");
    EXPECT_EQ(folderContents(), set);
}

}  // namespace
}  // namespace loomcrest
