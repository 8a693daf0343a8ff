#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <set>
#include <utility>

#include "platform/Http.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/SitemapFiles.h"
#include "sites/SiteFile.h"
#include "sites/SitemapRestore.h"
#include "support/ScanFixture.h"
#include "support/TemporaryHome.h"

// What a scan does to the files it replaces, and to a disk that cannot take them.
namespace loomcrest {
namespace {

using test::fileContents;
using Files = std::map<std::string, std::string>;

const std::vector<std::string> kSitemapNames = {
    "sitemap1cpo.html", "sitemap2cpo.html", "sitemap3cpo.html", "sitemap1c.html", "sitemap2c.html",
    "sitemap3c.html",   "sitemap.xml",      "badLinks.txt",     "brokenLinks.tsv"};
const std::string kNotWritten = "The sitemap files could not be written.";

class ScanFiles : public test::ScanFixture {
protected:
    std::string folder() const { return home.dataRoot() + "/Test"; }

    // Every file of the site's folder with its contents; the lock file holds nothing.
    Files files() const {
        Files contents;
        for (const std::string& name : walkFolder(folder())) {
            if (name != ".lock") {
                contents[name] = fileContents(folder() + "/" + name);
            }
        }
        return contents;
    }

    static Files current(Files all) {
        std::erase_if(all, [](const auto& file) { return file.first.ends_with(".previous"); });
        return all;
    }

    // A home page with `links` anchors to pages that are not there: its block alone makes
    // the all-links layouts far larger than their headers.
    void serveLargeSite(int links) {
        std::string body = "<title>Large</title>";
        for (int i = 0; i < links; ++i) {
            body += "<a href=\"p/" + std::to_string(i) + ".html\">Page number " +
                    std::to_string(i) + "</a>";
        }
        servePage("/", {body});
    }

    // Room for the headers of the sitemap files, not for a page block of serveLargeSite.
    static rlim_t roomForHeadersOnly() {
        return htmlSitemapHead().size() + kTableOpening.size() + 1000;
    }
};

// Every request waits twenty seconds, date lookups ten.
TEST_F(ScanFiles, TheScanBeforeTheLastIsKeptAndCanBePutBack) {
    servePage("/", {R"(<title>One</title><a href="gone.html">G</a>)"});
    addSite();
    std::mutex mutex;
    std::map<std::string, std::set<int64_t>> timeouts;
    http::setRequestObserver([&](const http::Request& request) {
        const std::lock_guard lock(mutex);
        timeouts[request.method].insert(request.timeout.count());
    });
    scan();
    http::setRequestObserver({});
    EXPECT_EQ(timeouts, (std::map<std::string, std::set<int64_t>>{{"GET", {20}}, {"HEAD", {10}}}));
    const Files first = files();
    EXPECT_FALSE(siteView.state().previousSitemapsKept);

    servePage("/", {"<title>Two</title>"});
    scan();
    const Files second = files();
    for (const std::string& name : kSitemapNames) {
        EXPECT_EQ(second.at(name + ".previous"), first.at(name)) << name;
    }
    EXPECT_EQ(second.at("statistics.previous"),
              "<pagesFound>2</pagesFound>\n<totalLinks>2</totalLinks>\n<pagesUsed>1</pagesUsed>");
    EXPECT_TRUE(siteView.state().previousSitemapsKept);

    // A start URL that is down leaves bare headers; the last complete set is one step away. A
    // redirect is refused under the code of the page it leads to.
    servePage("/", {"", "text/html", 301, "", "/gone/"});
    scan();
    EXPECT_EQ(alerts.described(),
              std::vector<std::string>{
                  "Refusal: The Site URL Could Not Be Reached | Error Code: 404 - Not Found [OK]"});
    EXPECT_EQ(files().at("sitemap.xml"), std::string(xmlSitemapHeader()));
    EXPECT_EQ(files().at("sitemap1c.html"), std::string(htmlSitemapHead()));
    EXPECT_TRUE(siteView.state().scanButtonEnabled);
    SitemapRestore restore(siteView, alerts);
    restore.restorePreviousSitemaps();
    EXPECT_EQ(files(), current(second));
    EXPECT_FALSE(siteView.state().previousSitemapsKept);

    servePage("/", {R"(<title>Three</title><a href="a.html">A</a><a href="b.html">B</a>)"});
    scan();
    EXPECT_EQ(siteView.state().details.pagesFound, "3");
    restore.restorePreviousSitemaps();
    EXPECT_EQ(files(), current(second));
    EXPECT_EQ(figures(), "links 1, pages 1, scanned 1, broken 0")
        << "the details show what was restored";
    EXPECT_EQ(alerts.shown.back().title,
              "Do you really want to restore the previous sitemaps of the site:\nTest");
}

// A full disk stops a scan as Cancel would and leaves the files of the scan before, or none.
TEST_F(ScanFiles, AFullDiskLeavesThePreviousFilesOrNone) {
    serveLargeSite(300);
    addSite();
    const auto scanOnAFullDisk = [this](rlim_t room) {
        alerts.shown.clear();
        sheet.events.clear();
        const test::FileSizeLimit fullDisk(room);
        scan();
        EXPECT_EQ(alerts.shown.size(), 1U);
        return alerts.shown.empty() ? std::string() : alerts.shown[0].title;
    };
    EXPECT_EQ(scanOnAFullDisk(roomForHeadersOnly()), kNotWritten);
    EXPECT_EQ(files(), (Files{{"Test.vrLMP", fileContents(folder() + "/Test.vrLMP")}}));
    EXPECT_EQ(siteView.state().details.pagesFound, "0") << "the statistics were not written";
    const auto log = requestLog();
    EXPECT_LE(std::count_if(log.begin(), log.end(),
                            [](const std::string& line) { return line.find(" /p/") != line.npos; }),
              24)
        << "the scan stopped as Cancel would; four pages ahead";

    servePage("/", {R"(<title>Small</title><a href="gone.html">G</a>)"});
    scan();
    const Files before = files();
    serveLargeSite(300);
    EXPECT_EQ(scanOnAFullDisk(roomForHeadersOnly()), kNotWritten);
    EXPECT_EQ(files(), before) << "the previous set is back, statistics and broken links too";
    EXPECT_EQ(siteView.state().details.pagesFound, "2");
    EXPECT_EQ(process.vrlmpBadLinkArray, std::vector<std::string>{server.url("/gone.html")});
    EXPECT_EQ(sheet.events.back(), "ended");
    EXPECT_TRUE(siteView.state().scanButtonEnabled);

    scanOnAFullDisk(100);  // room for the statistics only
    EXPECT_EQ(alerts.described(),
              std::vector<std::string>{"Refusal: " + kNotWritten + " | " + folder() +
                                       "/sitemap1cpo.html: File too large [OK]"});
    EXPECT_EQ(files(), before) << "nothing is appended after the old closing tags";
    EXPECT_EQ(sheet.events, (std::vector<std::string>{"connect", "connected"}));
    EXPECT_TRUE(siteView.state().scanButtonEnabled);
}

}  // namespace
}  // namespace loomcrest
