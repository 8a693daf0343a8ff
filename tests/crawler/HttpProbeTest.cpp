#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "crawler/SiteScanner.h"
#include "support/TestServer.h"

namespace loomcrest {
namespace {

using test::TestServer;

class StartUrlProbe : public testing::Test {
protected:
    void SetUp() override {
        auto& routes = server.server();
        routes.Get("/", [](const httplib::Request&, httplib::Response& res) {
            res.set_content("<html></html>", "text/html");
        });
        routes.Get("/old/", [](const httplib::Request&, httplib::Response& res) {
            res.set_redirect("/", 301);
        });
        routes.Get("/odd/",
                   [](const httplib::Request&, httplib::Response& res) { res.status = 299; });
        server.start();
    }
    TestServer server;
    ProcessState process;
    SiteScanner scanner{process};
};

TEST_F(StartUrlProbe, OnlyA200Passes) {
    EXPECT_TRUE(scanner.httpIsValid(server.url("/")));
    EXPECT_TRUE(process.vrlmpBadLinkReasonArray.empty());
}

TEST_F(StartUrlProbe, OtherStatusesAddTheirReasonText) {
    EXPECT_FALSE(scanner.httpIsValid(server.url("/missing/")));
    EXPECT_FALSE(scanner.httpIsValid(server.url("/old/")));
    EXPECT_FALSE(scanner.httpIsValid(server.url("/odd/")));
    EXPECT_EQ(process.vrlmpBadLinkReasonArray,
              (std::vector<std::string>{"404 - Not Found", "301 - Moved Permanently", "299 - "}));
}

TEST_F(StartUrlProbe, NoAnswerRecordsNothing) {
    EXPECT_FALSE(scanner.httpIsValid("http://127.0.0.1:1/"));
    EXPECT_TRUE(process.vrlmpBadLinkReasonArray.empty());
}

}  // namespace
}  // namespace loomcrest
