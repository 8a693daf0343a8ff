#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

// Only a 200 passes; other answers add their reason, no answer adds nothing.
TEST(StartUrlProbe, OnlyA200PassesAndOtherAnswersGiveTheirReason) {
    test::TestServer server;
    server.server().Get("/", [](const httplib::Request&, httplib::Response& res) {
        res.set_content("<html></html>", "text/html");
    });
    server.server().Get("/old/", [](const httplib::Request&, httplib::Response& res) {
        res.set_redirect("/", 301);
    });
    server.server().Get("/odd/",
                        [](const httplib::Request&, httplib::Response& res) { res.status = 299; });
    server.start();
    ProcessState process;
    SiteScanner scanner{process};
    EXPECT_TRUE(scanner.httpIsValid(server.url("/")));
    EXPECT_FALSE(scanner.httpIsValid("http://127.0.0.1:1/"));
    EXPECT_TRUE(process.vrlmpBadLinkReasonArray.empty());
    for (const char* path : {"/missing/", "/old/", "/odd/"}) {
        EXPECT_FALSE(scanner.httpIsValid(server.url(path))) << path;
    }
    EXPECT_EQ(process.vrlmpBadLinkReasonArray,
              (std::vector<std::string>{"404 - Not Found", "301 - Moved Permanently", "299 - "}));
}

}  // namespace
}  // namespace loomcrest
