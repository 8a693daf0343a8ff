#pragma once

#include <map>
#include <mutex>
#include <string>

#include "support/RunCommand.h"
#include "support/TestServer.h"

namespace loomcrest::test {

// A small site served on 127.0.0.1 and added to a temporary home as "Site": a home page
// with a page, a broken link and a PDF, and a page that links to the broken one again.
// Pages can be changed or added between scans.
class ServedSite : public CommandLineTest {
protected:
    void SetUp() override {
        server.server().Get(".*",
                            [this](const httplib::Request& request, httplib::Response& response) {
                                const std::lock_guard lock(mutex);
                                const auto page = pages.find(request.path);
                                if (page == pages.end()) {
                                    response.status = 404;
                                } else {
                                    response.set_content(page->second, "text/html");
                                }
                            });
        server.start();
        ASSERT_EQ(run({"add", "Site", server.url("/")}).exitCode, 0);
    }

    void servePage(const std::string& path, std::string body) {
        const std::lock_guard lock(mutex);
        pages[path] = std::move(body);
    }

    // Declared before the server, which serves them until it is gone.
    std::mutex mutex;
    std::map<std::string, std::string> pages = {
        {"/",
         "<title>Home</title><a href=\"a.html\">A</a>"
         "<a href=\"gone.html\">Gone, \"really\"</a><a href=\"doc.pdf\">D</a>"},
        {"/a.html", "<title>A</title><a href=\"gone.html\">G</a>"},
    };
    TestServer server;
    std::string folder = home.dataRoot() + "/Site";
};

}  // namespace loomcrest::test
