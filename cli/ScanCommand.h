#pragma once

#include <ostream>
#include <string>

namespace loomcrest::cli {

class SiteSession;
class CrawlOptions;

// How the multiple-"?" warning is answered.
enum class WarningAnswer { Continue, Cancel, AskOnTerminal };

// Exit status of a scan stopped by Ctrl-C: its files are closed and its figures stored.
inline constexpr int kExitInterrupted = 130;

// What a scan prints and writes besides its files.
struct ScanReporting {
    // The summary as one JSON object instead of labelled lines.
    bool json = false;
    // Exit 3 when the scan finished with broken links.
    bool failOnBroken = false;
    // Where every link the scan did not queue is explained; empty for nowhere.
    std::string explainPath;
};

// Selects the site in `session`, scans it and prints a summary. Crawl options given change
// the site's crawl settings for this scan alone.
int scanSite(SiteSession& session, const std::string& name, WarningAnswer onWarning,
             std::ostream& out, std::ostream& err, const ScanReporting& reporting = {},
             const CrawlOptions* crawlOptions = nullptr);

}  // namespace loomcrest::cli
