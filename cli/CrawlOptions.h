#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "crawler/CrawlSettings.h"

namespace loomcrest::cli {

// The crawl-settings options: `settings` saves them for the site, `scan` uses them for
// one scan. Their values are read by the same rules as the window's crawl settings sheet.
class CrawlOptions {
public:
    void addTo(CLI::App& command);
    bool anyGiven() const;
    // Changes what the options name; the message of the first value that is not allowed.
    std::optional<std::string> applyTo(CrawlSettings& settings) const;

private:
    std::string connections_;
    std::string rate_;
    std::string userAgent_;
    std::string fetchOnce_;
    std::string netrc_;
    std::vector<std::string> headers_;
    bool noHeaders_ = false;
    CLI::Option* connectionsOption_ = nullptr;
    CLI::Option* rateOption_ = nullptr;
    CLI::Option* userAgentOption_ = nullptr;
    CLI::Option* fetchOnceOption_ = nullptr;
    CLI::Option* netrcOption_ = nullptr;
    std::vector<CLI::Option*> all_;
};

// One labelled line a setting, the extra headers one a line below theirs.
void printCrawlSettings(std::ostream& out, const CrawlSettings& settings);

}  // namespace loomcrest::cli
