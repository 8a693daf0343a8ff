#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/Http.h"
#include "support/RawHttpServer.h"
#include "support/ScanFixture.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

using test::RawHttpServer;
using namespace std::chrono_literals;

constexpr int kManyAnchors = 100000;

// Waits until the client hangs up or the server stops.
void waitForHangUp(int connection, const std::atomic<bool>& stopping) {
    char buffer[256];
    while (!stopping) {
        pollfd readable{connection, POLLIN, 0};
        if (::poll(&readable, 1, 20) > 0 && ::recv(connection, buffer, sizeof buffer, 0) <= 0) {
            return;
        }
    }
}

// Built once: the page is asked for six times, and a sanitised build is slow to build it.
const std::string& manyAnchors() {
    static const std::string page = [] {
        std::string text = "<title>Many</title>";
        for (int i = 0; i < kManyAnchors; ++i) {
            text += "<a href=\"http://elsewhere.example/" + std::to_string(i % 10) + "\">x</a>";
        }
        return text;
    }();
    return page;
}

void answer(int connection, const std::string& head, const std::atomic<bool>& stopping) {
    const std::string requestLine = head.substr(0, head.find("\r\n"));
    const auto asked = [&](std::string_view path) {
        return requestLine.find(" " + std::string(path) + " ") != std::string::npos;
    };
    if (asked("/")) {
        RawHttpServer::send(
            connection,
            RawHttpServer::response(
                "200 OK", "text/html",
                "<title>Home</title><a href=\"silent.html\">1</a><a href=\"slow.html\">2</a>"
                "<a href=\"endless.html\">3</a><a href=\"binary.html\">4</a>"
                "<a href=\"latin1.html\">5</a><a href=\"loop.html\">6</a><a "
                "href=\"many.html\">7</a>"));
    } else if (asked("/silent.html")) {
        waitForHangUp(connection, stopping);
    } else if (asked("/slow.html")) {
        RawHttpServer::send(connection,
                            "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n"
                            "Content-Length: 100000\r\n\r\n<title>");
        while (!stopping && RawHttpServer::send(connection, "x")) {
            std::this_thread::sleep_for(100ms);
        }
    } else if (asked("/endless.html")) {
        RawHttpServer::send(connection, "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n");
        const std::string chunk(64 * 1024, 'a');
        while (!stopping && RawHttpServer::send(connection, chunk)) {
        }
    } else if (asked("/binary.html")) {
        std::string noise;
        for (int i = 0; i < 5000; ++i) {
            noise += static_cast<char>((i * 7919) % 256);
        }
        RawHttpServer::send(connection, RawHttpServer::response("200 OK", "text/html", noise));
    } else if (asked("/latin1.html")) {
        RawHttpServer::send(
            connection,
            RawHttpServer::response("200 OK", "text/html",
                                    "<title>Caf\xe9</title><a href=\"/\">\xe0 la maison</a>"));
    } else if (asked("/loop.html")) {
        RawHttpServer::send(connection,
                            "HTTP/1.1 302 Found\r\nLocation: /loop.html\r\n"
                            "Content-Length: 0\r\nConnection: close\r\n\r\n");
    } else if (asked("/many.html")) {
        RawHttpServer::send(connection,
                            RawHttpServer::response("200 OK", "text/html", manyAnchors()));
    } else {
        RawHttpServer::send(connection, RawHttpServer::response("404 Not Found", "text/html", ""));
    }
}

class HostileServers : public test::ScanFixture {
protected:
    void SetUp() override {
        ScanFixture::SetUp();
        // Long enough for the large page even in a sanitised build, short enough to keep the
        // silent and dribbling pages quick. ThreadSanitizer slows the parse of the large page
        // several times over.
#if defined(__SANITIZE_THREAD__)
        http::setTimeoutLimit(3000ms);
#else
        http::setTimeoutLimit(1000ms);
#endif
    }
    void TearDown() override {
        http::setTimeoutLimit(0ms);
        ScanFixture::TearDown();
    }
};

TEST_F(HostileServers, NeitherHangNorCrashTheScan) {
    manyAnchors();
    RawHttpServer hostile(answer);
    addSiteAt(hostile.url("/"));
    scan();

    EXPECT_FALSE(driver.isScanning());
    const auto broken = process.vrlmpBadLinkArray;
    for (const char* page : {"/silent.html", "/slow.html", "/endless.html", "/loop.html"}) {
        EXPECT_NE(std::find(broken.begin(), broken.end(), hostile.url(page)), broken.end()) << page;
    }
    EXPECT_EQ(broken.size(), 4U);
    EXPECT_EQ(siteView.state().details.pagesFound, "8");
    EXPECT_EQ(siteView.state().details.linksScanned, "4");
    EXPECT_GT(scanner().totLinks, kManyAnchors);
    for (const char* file : {"sitemap1c.html", "sitemap2c.html", "sitemap3c.html",
                             "sitemap1cpo.html", "sitemap2cpo.html", "sitemap3cpo.html"}) {
        EXPECT_TRUE(siteFile(file).ends_with("</body>\n</html>")) << file;
    }
    EXPECT_TRUE(siteFile("sitemap.xml").ends_with("\n</urlset>"));
    EXPECT_TRUE(test::contains(siteFile("sitemap1c.html"), "elsewhere.example/9---LINKID:"));
}

}  // namespace
}  // namespace loomcrest
