#include <gtest/gtest.h>

#include <map>

#include "platform/FileSystem.h"
#include "platform/FolderLock.h"
#include "support/ServedSite.h"

// The command line on a full disk, on a site being scanned, and putting back the previous
// sitemaps (`restore`): every refusal prints why, exits 1 and leaves every file as it was.
namespace loomcrest {
namespace {

using Files = std::map<std::string, std::string>;

const std::string kRestoreQuestion =
    "Do you really want to restore the previous sitemaps of the site:\nSite\n"
    "The sitemaps of the last scan are replaced by those of the scan before it.\n";

// Every command that changes the site "Site" (or adds one), with what it says on a full disk.
struct Change {
    std::vector<std::string> arguments;
    std::string fullDiskErr;
};

class FileSafety : public test::ServedSite {
protected:
    // Every file below the data root with its contents; lock files hold nothing.
    Files files() const {
        Files contents;
        for (const std::string& name : walkFolder(home.dataRoot())) {
            if (!name.ends_with("/.lock")) {
                contents[name] = test::fileContents(home.dataRoot() + "/" + name);
            }
        }
        return contents;
    }

    // Adding another site is no change to the scanned one, and reading needs no lock.
    void expectRefusedDuringAScan(const std::vector<Change>& changes, const Files& before) {
        const FolderLock scanning = FolderLock::tryLock(folder);
        ASSERT_TRUE(scanning.held());
        std::vector<std::vector<std::string>> locked{{"delete", "Site"}};
        for (const Change& change : changes) {
            if (change.arguments[0] != "add") {
                locked.push_back(change.arguments);
            }
        }
        for (const std::vector<std::string>& arguments : locked) {
            const auto result = run(arguments);
            EXPECT_EQ(result.exitCode, 1) << arguments[0];
            EXPECT_TRUE(result.err.ends_with("A scan of Site is already running.\n\n"))
                << arguments[0] << ": " << result.err;
            EXPECT_EQ(files(), before) << arguments[0];
        }
        EXPECT_EQ(run({"show", "Site"}).exitCode, 0);
    }
};

TEST_F(FileSafety, EveryChangeOnAFullDiskOrDuringAScanIsRefusedAndRestoreStillWorksAfter) {
    ASSERT_EQ(run({"scan", "Site"}).exitCode, 0);
    const std::string firstShow = run({"show", "Site"}).out;
    servePage("/", R"(<title>Two</title><a href="a.html">A</a>)");
    ASSERT_EQ(run({"scan", "Site"}).exitCode, 0);
    ASSERT_NE(run({"show", "Site"}).out, firstShow);
    ASSERT_EQ(run({"filters", "Site", "add", "tmp"}).exitCode, 0);
    const std::string root = home.dataRoot();
    const auto tooLarge = [](const std::string& what, const std::string& file) {
        return what + " could not be saved.\n" + file + ": File too large\n";
    };
    const std::vector<Change> changes = {
        {{"scan", "Site"},
         "The sitemap files could not be written.\n" + folder +
             "/statistics.previous: File too large\n"},
        {{"robots", "Site", "ignore"}, tooLarge("The site file", folder + "/Site.vrLMP")},
        {{"filters", "Site", "add", "x"}, tooLarge("The filters", folder + "/filters.zplp")},
        {{"xml", "Site", "delete", "1"},
         "Do you really want to delete the selected link?\nDeleting links cannot be undone!\n\n" +
             tooLarge("The XML sitemap", folder + "/sitemap.xml")},
        {{"html", "Site", "1c", "edit", "1", "--title", "T"},
         tooLarge("The HTML sitemap", folder + "/sitemap1c.html")},
        {{"edit", "Site", "--url", "http://other.example/"},
         "The site could not be changed.\n" + folder + "/Site.vrLMP: File too large\n"},
        {{"edit", "Site", "--name", "Other"},
         "The site could not be changed.\n" + root + "/Other/Other.vrLMP: File too large\n"},
        {{"restore", "Site"},
         kRestoreQuestion + "The previous sitemaps could not be restored.\n" + folder +
             "/Site.vrLMP: File too large\n"},
        {{"add", "New", "http://new.example/"},
         "The site could not be created.\n" + root + "/New/New.vrLMP: File too large\n"},
    };
    const Files before = files();
    for (const Change& change : changes) {
        // One byte rather than none: a sanitizer's runtime may write a little before main.
        const auto result = test::runLoomcrest(home, change.arguments, 1);
        EXPECT_EQ(result.exitCode, 1) << change.arguments[0];
        EXPECT_EQ(result.err, change.fullDiskErr) << change.arguments[0];
        EXPECT_EQ(files(), before) << change.arguments[0];
    }

    // While a scan holds the site, nothing else changes it.
    expectRefusedDuringAScan(changes, before);

    // Which files come back is the scan files' own test; the figures show the earlier scan.
    expectSteps({
        {{"restore", "Site"}, 0, "", kRestoreQuestion},
        {{"show", "Site"}, 0, firstShow},
        {{"restore", "Site"}, 1, "", "There are no previous sitemaps to restore.\n\n"},
    });
}

}  // namespace
}  // namespace loomcrest
