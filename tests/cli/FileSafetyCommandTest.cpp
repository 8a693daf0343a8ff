#include <gtest/gtest.h>

#include <map>
#include <mutex>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/FolderLock.h"
#include "support/RunCommand.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

// The command line on a full disk, on a site being scanned, and putting back the previous
// sitemaps: every refusal prints why, exits 1 and leaves every file as it was.
namespace loomcrest {
namespace {

using test::fileContents;
using test::runLoomcrest;
using test::runLoomcrestWithFileSizeLimit;
using Files = std::map<std::string, std::string>;

class FileSafety : public testing::Test {
protected:
    void SetUp() override {
        server.server().Get(".*",
                            [this](const httplib::Request& request, httplib::Response& response) {
                                const std::lock_guard lock(mutex);
                                if (request.path == "/") {
                                    response.set_content(homePage, "text/html");
                                } else if (request.path == "/a.html") {
                                    response.set_content("<title>A</title>", "text/html");
                                } else {
                                    response.status = 404;
                                }
                            });
        server.start();
        ASSERT_EQ(runLoomcrest(home, {"add", "Site", server.url("/")}).exitCode, 0);
    }

    void serveHomePage(std::string body) {
        const std::lock_guard lock(mutex);
        homePage = std::move(body);
    }

    // Every file below the data root with its contents; lock files hold nothing.
    Files files() const {
        Files contents;
        for (const std::string& name : walkFolder(home.dataRoot())) {
            if (!name.ends_with("/.lock")) {
                contents[name] = fileContents(home.dataRoot() + "/" + name);
            }
        }
        return contents;
    }

    void scanTwice() {
        ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
        serveHomePage(R"(<title>Two</title><a href="a.html">A</a>)");
        ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
        ASSERT_EQ(runLoomcrest(home, {"filters", "Site", "add", "tmp"}).exitCode, 0);
        ASSERT_EQ(runLoomcrest(home, {"filters", "Site", "add", "pdf"}).exitCode, 0);
    }

    // Declared before the server, which serves them until it is gone.
    std::mutex mutex;
    std::string homePage = R"(<title>One</title><a href="a.html">A</a><a href="gone.html">G</a>)";
    test::TemporaryHome home;
    test::TestServer server;
    std::string folder = home.dataRoot() + "/Site";
};

const std::string kRestoreQuestion =
    "Do you really want to restore the previous sitemaps of the site:\nSite\n"
    "The sitemaps of the last scan are replaced by those of the scan before it.\n";

TEST_F(FileSafety, RestorePutsBackTheScanBeforeTheLastOnce) {
    ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
    const Files first = files();
    const std::string firstShow = runLoomcrest(home, {"show", "Site"}).out;
    serveHomePage("<title>Two</title>");
    ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
    EXPECT_NE(runLoomcrest(home, {"show", "Site"}).out, firstShow);

    const auto restored = runLoomcrest(home, {"restore", "Site"});
    EXPECT_EQ(restored.exitCode, 0);
    EXPECT_EQ(restored.err, kRestoreQuestion);
    EXPECT_EQ(files(), first);
    EXPECT_EQ(runLoomcrest(home, {"show", "Site"}).out, firstShow);

    const auto again = runLoomcrest(home, {"restore", "Site"});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_EQ(again.err, "There are no previous sitemaps to restore.\n\n");
    EXPECT_EQ(runLoomcrest(home, {"restore", "Nobody"}).exitCode, 1);
}

TEST_F(FileSafety, AScanThatRunsOutOfSpaceLeavesThePreviousFiles) {
    ASSERT_EQ(runLoomcrest(home, {"scan", "Site"}).exitCode, 0);
    const Files before = files();
    std::string large = "<title>Large</title>";
    for (int i = 0; i < 300; ++i) {
        large +=
            "<a href=\"p" + std::to_string(i) + ".html\">Page number " + std::to_string(i) + "</a>";
    }
    serveHomePage(large);
    const auto result = runLoomcrestWithFileSizeLimit(home, 4096, {"scan", "Site"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(
        result.err.starts_with("The sitemap files could not be written.\n" + folder + "/sitemap"))
        << result.err;
    EXPECT_TRUE(result.err.ends_with(".html: File too large\n")) << result.err;
    EXPECT_EQ(files(), before);
}

TEST_F(FileSafety, EveryChangeOnAFullDiskIsRefusedWithTheFileAndTheReason) {
    scanTwice();
    const std::string root = home.dataRoot();
    const std::string tooLarge = ": File too large\n";
    const struct {
        std::vector<std::string> arguments;
        std::string err;
    } cases[] = {
        {{"scan", "Site"},
         "The sitemap files could not be written.\n" + folder + "/statistics.previous" + tooLarge},
        {{"robots", "Site", "ignore"},
         "The site file could not be saved.\n" + folder + "/Site.vrLMP" + tooLarge},
        {{"filters", "Site", "add", "x"},
         "The filters could not be saved.\n" + folder + "/filters.zplp" + tooLarge},
        {{"filters", "Site", "delete", "1"},
         "The filters could not be saved.\n" + folder + "/filters.zplp" + tooLarge},
        {{"xml", "Site", "set", "1", "priority", "0.3"},
         "The XML sitemap could not be saved.\n" + folder + "/sitemap.xml" + tooLarge},
        {{"xml", "Site", "delete", "1"},
         "Do you really want to delete the selected link?\nDeleting links cannot be undone!\n\n"
         "The XML sitemap could not be saved.\n" +
             folder + "/sitemap.xml" + tooLarge},
        {{"html", "Site", "1c", "edit", "1", "--title", "T"},
         "The HTML sitemap could not be saved.\n" + folder + "/sitemap1c.html" + tooLarge},
        {{"edit", "Site", "--url", "http://other.example/"},
         "The site could not be changed.\n" + folder + "/Site.vrLMP" + tooLarge},
        {{"edit", "Site", "--name", "Other"},
         "The site could not be changed.\n" + root + "/Other/Other.vrLMP" + tooLarge},
        {{"add", "New", "http://new.example/"},
         "The site could not be created.\n" + root + "/New/New.vrLMP" + tooLarge},
        {{"restore", "Site"},
         kRestoreQuestion + "The previous sitemaps could not be restored.\n" + folder +
             "/Site.vrLMP" + tooLarge},
    };
    const Files before = files();
    for (const auto& c : cases) {
        // One byte rather than none: a sanitizer's runtime may write a little before main.
        const auto result = runLoomcrestWithFileSizeLimit(home, 1, c.arguments);
        EXPECT_EQ(result.exitCode, 1) << c.arguments[0];
        EXPECT_EQ(result.err, c.err) << c.arguments[0];
        EXPECT_EQ(files(), before) << c.arguments[0];
    }
}

TEST_F(FileSafety, WhileASiteIsScannedNothingElseChangesIt) {
    scanTwice();
    const Files before = files();
    const FolderLock scanning = FolderLock::tryLock(folder);
    ASSERT_TRUE(scanning.held());
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"scan", "Site"},
             {"robots", "Site", "ignore"},
             {"filters", "Site", "add", "x"},
             {"filters", "Site", "delete", "1"},
             {"xml", "Site", "set", "1", "priority", "0.3"},
             {"html", "Site", "1c", "edit", "1", "--title", "T"},
             {"edit", "Site", "--url", "http://other.example/"},
             {"edit", "Site", "--name", "Other"},
             {"delete", "Site"},
             {"restore", "Site"},
         }) {
        // Without a limit the helper runs the binary all the same.
        const auto result = runLoomcrestWithFileSizeLimit(home, RLIM_INFINITY, arguments);
        EXPECT_EQ(result.exitCode, 1) << arguments[0];
        EXPECT_TRUE(result.err.ends_with("A scan of Site is already running.\n\n"))
            << arguments[0] << ": " << result.err;
        EXPECT_EQ(files(), before) << arguments[0];
    }
    const auto show = runLoomcrest(home, {"show", "Site"});
    EXPECT_EQ(show.exitCode, 0) << "reading needs no lock";
}

TEST_F(FileSafety, ANameTheFileSystemCannotHoldIsRefused) {
    const Files before = files();
    const auto result = runLoomcrest(home, {"add", "Tab\tName", "http://example.com/"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "The following error has occurred while saving your site.\n\n"
              "The site name cannot contain control characters\n");
    EXPECT_EQ(files(), before);
}

}  // namespace
}  // namespace loomcrest
