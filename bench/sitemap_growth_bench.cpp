// Measures the two costs that grow with a site: appending page blocks to the layout files
// and asking the page list whether it holds a URL. Each is timed over the first and the
// last tenth of the run, so a cost that grows with the file or the list shows as a ratio
// well above 1.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "app/ProcessState.h"
#include "crawler/PageList.h"
#include "crawler/SiteScanner.h"
#include "editors/XMLViewController.h"
#include "platform/FileSystem.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::string pageBlock(int page) {
    std::string block = loomcrest::pageTitleLine(
        "http://example.com/page" + std::to_string(page) + ".html", page * 20, "Page title");
    for (int link = 1; link <= 20; ++link) {
        block += loomcrest::linkLine("http://example.com/l" + std::to_string(link) + ".html",
                                     page * 20 + link, "A link title of usual length");
    }
    return block;
}

void benchAppends(int pages) {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / "loomcrest-bench-sitemaps";
    std::filesystem::create_directories(folder);
    for (const char* name : {"sitemap1c.html", "sitemap2c.html", "sitemap3c.html"}) {
        loomcrest::writeFileAtomically((folder / name).string(),
                                       std::string(loomcrest::htmlSitemapHead()));
    }
    loomcrest::ProcessState process;
    loomcrest::SiteScanner scanner{process};
    scanner.setSitemapFolder(folder.string());
    const int tenth = pages / 10;
    double firstTenth = 0;
    double lastTenth = 0;
    const auto start = Clock::now();
    for (int page = 0; page < pages; ++page) {
        const std::string block = pageBlock(page);
        const auto pageStart = Clock::now();
        scanner.buildAllLinksSitemaps(block);
        const double spent = millisecondsSince(pageStart);
        if (page < tenth) {
            firstTenth += spent;
        } else if (page >= pages - tenth) {
            lastTenth += spent;
        }
    }
    const auto size = std::filesystem::file_size(folder / "sitemap1c.html");
    std::printf(
        "append %d page blocks to 3 layouts: %.0f ms in all, %.3f ms a page; "
        "last tenth / first tenth = %.2f; sitemap1c.html %.1f MB\n",
        pages, millisecondsSince(start), millisecondsSince(start) / pages, lastTenth / firstTenth,
        static_cast<double>(size) / 1e6);
    std::filesystem::remove_all(folder);
}

void benchPageList(int urls) {
    loomcrest::PageList list;
    const auto start = Clock::now();
    for (int i = 0; i < urls; ++i) {
        list.append("http://example.com/section" + std::to_string(i % 100) + "/page" +
                    std::to_string(i) + ".html");
    }
    const double filled = millisecondsSince(start);
    const auto lookups = Clock::now();
    int found = 0;
    for (int i = 0; i < urls; ++i) {
        found += list.contains("http://example.com/section" + std::to_string(i % 100) + "/page" +
                               std::to_string(i * 7) + ".html")
                     ? 1
                     : 0;
    }
    std::printf("page list of %d URLs: filled in %.0f ms, %d look-ups in %.0f ms (%d found)\n",
                urls, filled, urls, millisecondsSince(lookups), found);
}

class SilentAlerts : public loomcrest::AlertPresenter {
public:
    void presentAlert(const loomcrest::Alert&, loomcrest::AlertCompletion completion) override {
        if (completion) {
            completion(loomcrest::kDefaultButtonCode);
        }
    }
};

// The XML sitemap view on a sitemap of `entries` entries: loading it, and editing one date
// (the file is rewritten whole after each edit).
void benchXmlEditor(int entries) {
    const std::filesystem::path home =
        std::filesystem::temp_directory_path() / "loomcrest-bench-xml";
    setenv("HOME", home.c_str(), 1);
    const std::string folder = home.string() + "/Library/Application Support/Quillmoor/Loomcrest/S";
    std::filesystem::create_directories(folder);
    std::string text(loomcrest::xmlSitemapHeader());
    for (int i = 0; i < entries; ++i) {
        text += loomcrest::xmlSitemapEntry(
            "http://example.com/section/page" + std::to_string(i) + ".html?a=1&b=2", "");
    }
    loomcrest::writeFileAtomically(folder + "/sitemap.xml", text + "\n</urlset>");
    SilentAlerts alerts;
    loomcrest::ProcessState process;
    loomcrest::XMLViewController xml(process, alerts, [] { return std::string("S"); });
    auto start = Clock::now();
    xml.createTableContent();
    const double loaded = millisecondsSince(start);
    start = Clock::now();
    xml.setObjectValue("2024-05-17", loomcrest::XMLViewController::LastUpdated, 10);
    const double firstEdit = millisecondsSince(start);
    start = Clock::now();
    xml.setObjectValue("2024-06-17", loomcrest::XMLViewController::LastUpdated, 11);
    std::printf(
        "XML editor with %d entries: loaded in %.0f ms, first edit %.0f ms, next edit %.0f ms\n",
        entries, loaded, firstEdit, millisecondsSince(start));
    std::filesystem::remove_all(home);
}

}  // namespace

int main() {
    benchAppends(10000);
    benchPageList(1000000);
    benchXmlEditor(50000);
    benchXmlEditor(100000);
    return 0;
}
