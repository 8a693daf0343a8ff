#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "app/ProcessState.h"
#include "crawler/CrawlSettingsFile.h"
#include "crawler/ScanDriver.h"
#include "platform/FileSystem.h"
#include "platform/RunLoop.h"
#include "sites/DataPaths.h"
#include "sites/ScanViewController.h"
#include "sites/SiteFile.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

namespace loomcrest::test {

class RecordingScanSheet : public ScanSheetView {
public:
    void showConnectionSheet(bool shown) override {
        events.push_back(shown ? "connect" : "connected");
    }
    void showProgressSheet(bool shown) override {
        events.push_back(shown ? "progress" : "no progress");
    }
    void showProgress(const ScanProgress& progress) override { progressShown.push_back(progress); }
    void showTotalLinks(int32_t totalLinks) override { lastTotalLinks = totalLinks; }
    void showEndPanel(bool shown) override {
        events.push_back(shown ? "end panel" : "no end panel");
    }
    void bringWindowToFront() override {}
    void scanEnded() override {
        events.push_back("ended");
        if (onEnded) {
            onEnded();
        }
    }

    std::vector<std::string> events;
    std::vector<ScanProgress> progressShown;
    int32_t lastTotalLinks = -1;
    std::function<void()> onEnded;
};

// One page of a test site.
struct TestPage {
    std::string body;
    std::string contentType = "text/html";
    int status = 200;
    std::string lastModified = {};
    std::string location = {};
};

// A site served on 127.0.0.1, added to a temporary data root and scanned from a RunLoop
// on the test's thread, as the command line does.
class ScanFixture : public testing::Test {
protected:
    void SetUp() override {
        checkNeededFoldersExist();
        server.server().Get(".*",
                            [this](const httplib::Request& request, httplib::Response& response) {
                                serve(request, response);
                            });
        server.start();
        sheet.onEnded = [this] { loop.stop(); };
    }

    void servePage(const std::string& path, TestPage page) {
        const std::lock_guard lock(mutex);
        pages.insert_or_assign(path, std::move(page));
    }

    // Adds the site "Test" with the start URL `path` on the server and selects it.
    void addSite(const std::string& path = "/") { addSiteAt(server.url(path)); }
    void addSiteAt(const std::string& startURL) {
        createFolder(siteFolderLocation("Test"));
        createSiteFile("Test", startURL);
        siteView.awakeFromNib();
        siteView.selectRow(siteView.rowOfSite("Test"));
    }

    void scan() {
        loop.perform([this] {
            driver.scanSiteAction();
            if (!driver.isScanning()) {
                loop.stop();
            }
        });
        loop.run();
    }

    std::string url(const std::string& path) const { return server.url(path); }

    void useSettings(const CrawlSettings& settings) {
        ASSERT_TRUE(writeCrawlSettings(home.dataRoot() + "/Test", settings));
    }

    std::string siteFile(const std::string& name) const {
        return fileContents(home.dataRoot() + "/Test/" + name);
    }

    // The figures of the site's details as the window shows them.
    std::string figures() const {
        const SiteDetailsFields& shown = siteView.state().details;
        return "links " + shown.totalLinksFound + ", pages " + shown.pagesFound + ", scanned " +
               shown.linksScanned + ", broken " + shown.brokenLinks;
    }

    std::vector<std::string> requestLog() {
        const std::lock_guard lock(mutex);
        return requests;
    }

    TemporaryHome home;
    TestServer server;
    RecordingScanView scanView;
    RecordingScanSheet sheet;
    RecordingAlerts alerts;
    RunLoop loop;
    // Called for every request before the pages answer it, on the server's threads; true
    // when it answered the request itself.
    std::function<bool(const httplib::Request&, httplib::Response&)> intercept;
    ProcessState process;
    ScanViewController siteView{process, scanView, alerts};
    ScanDriver driver{process, siteView, sheet, alerts, loop};

private:
    void serve(const httplib::Request& request, httplib::Response& response) {
        {
            const std::lock_guard lock(mutex);
            requests.push_back(request.method + " " + request.target);
        }
        if (intercept && intercept(request, response)) {
            return;
        }
        const std::lock_guard lock(mutex);
        const auto found = pages.find(request.target);
        if (found == pages.end()) {
            response.status = 404;
            return;
        }
        const TestPage& page = found->second;
        response.status = page.status;
        if (!page.location.empty()) {
            response.set_header("Location", page.location);
        }
        if (!page.lastModified.empty()) {
            response.set_header("Last-Modified", page.lastModified);
        }
        response.set_content(page.body, page.contentType.c_str());
    }

    std::mutex mutex;
    std::map<std::string, TestPage> pages;
    std::vector<std::string> requests;
};

}  // namespace loomcrest::test
