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

// Selects the site in `session`, scans it and prints a summary. Crawl options given change
// the site's crawl settings for this scan alone.
int scanSite(SiteSession& session, const std::string& name, WarningAnswer onWarning,
             std::ostream& out, std::ostream& err, const CrawlOptions* crawlOptions = nullptr);

}  // namespace loomcrest::cli
