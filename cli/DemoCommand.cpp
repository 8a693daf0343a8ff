#include <httplib.h>

#include <sstream>
#include <thread>

#include "Commands.h"
#include "DemoSite.h"
#include "ScanCommand.h"
#include "SiteSession.h"
#include "platform/Http.h"
#include "sitemap/BrokenLinkDetails.h"
#include "sitemap/SitemapFiles.h"
#include "sites/DataPaths.h"

namespace loomcrest::cli {

namespace {

constexpr const char* kDemoName = "Demo";

class DemoServer {
public:
    DemoServer() : site_(demoSite()) {
        server_.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
            // The crawler asks for robots.txt below the site base, with a double slash.
            std::string target = request.target;
            while (target.starts_with("//")) {
                target.erase(0, 1);
            }
            const auto found = site_.find(target);
            if (found == site_.end()) {
                response.status = 404;
                response.set_content("<html><title>Not found</title></html>", "text/html");
                return;
            }
            response.set_content(found->second.body, found->second.contentType.c_str());
        });
        // Without it small answers wait for the client's delayed acknowledgements.
        server_.set_tcp_nodelay(true);
        port_ = server_.bind_to_any_port("127.0.0.1");
        if (port_ > 0) {
            thread_ = std::thread([this] { server_.listen_after_bind(); });
        }
    }
    DemoServer(const DemoServer&) = delete;
    DemoServer& operator=(const DemoServer&) = delete;
    ~DemoServer() {
        // The server waits for kept-alive connections to close before it stops.
        http::closeThreadConnections();
        server_.stop();
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    bool listening() const { return port_ > 0; }
    std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

private:
    std::map<std::string, DemoResource> site_;
    httplib::Server server_;
    std::thread thread_;
    int port_ = 0;
};

// `demo`: serves the bundled demo site on a free port of 127.0.0.1, adds it as the site
// "Demo" (replacing an earlier one), scans it and tells where the sitemaps are.
class DemoCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        return *parent.add_subcommand(
            "demo", "Serve the bundled demo site on 127.0.0.1 and scan it as \"Demo\"");
    }

    int run() override {
        DemoServer server;
        if (!server.listening()) {
            err() << "Could not open a port on 127.0.0.1 for the demo site.\n";
            return kExitRefused;
        }
        out() << "Serving the demo site at " << server.url() << '\n';
        removeEarlierDemo();
        {
            SiteSession session(process(), err());
            session.addSite(kDemoName, server.url());
            if (const int added = session.exitStatus(); added != kExitSuccess) {
                return added;
            }
        }
        SiteSession session(process(), err());
        const int scanned = scanSite(session, kDemoName, WarningAnswer::Continue, out(), err());
        if (scanned == kExitSuccess) {
            listSitemaps();
        }
        return scanned;
    }

private:
    // Deletes an earlier demo site the way the Delete button would, answering its question.
    void removeEarlierDemo() {
        std::ostringstream quiet;
        SiteSession session(process(), quiet);
        if (session.siteList().rowOfSite(kDemoName) >= 0) {
            session.selectSite(kDemoName);
            session.siteRecords().deleteSite();
        }
    }

    void listSitemaps() {
        const std::string folder = siteFolderLocation(kDemoName);
        out() << "\nThe sitemaps of the demo site:\n";
        for (const std::string_view file :
             {kOneColumnAllLinks, kTwoColumnAllLinks, kThreeColumnAllLinks, kOneColumnPagesOnly,
              kTwoColumnPagesOnly, kThreeColumnPagesOnly, kXmlSitemap, kBrokenLinksFile,
              kBrokenLinkDetailsFile}) {
            out() << "  " << folder << '/' << file << '\n';
        }
    }
};

}  // namespace

std::unique_ptr<Command> makeDemoCommand(CommandContext& context) {
    return std::make_unique<DemoCommand>(context);
}

}  // namespace loomcrest::cli
