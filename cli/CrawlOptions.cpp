#include "CrawlOptions.h"

#include <algorithm>

namespace loomcrest::cli {

void CrawlOptions::addTo(CLI::App& command) {
    const auto onOff = CLI::IsMember({"on", "off"});
    connectionsOption_ = command.add_option(
        "--connections", connections_, "Connections fetching pages ahead, 1 to 16 (default 1)");
    rateOption_ = command.add_option("--rate", rate_, "Requests a second at most; 0: no limit");
    userAgentOption_ =
        command.add_option("--user-agent", userAgent_, "User-Agent of every request");
    fetchOnceOption_ =
        command.add_option("--fetch-once", fetchOnce_, "Ask for each URL once: on or off")
            ->check(onOff);
    CLI::Option* header = command.add_option(
        "--header", headers_, "Add a header \"Name: value\" to every request (repeatable)");
    header->allow_extra_args(false);  // one value each time, so NAME is never taken for one
    CLI::Option* noHeaders = command.add_flag(
        "--no-headers", noHeaders_, "Drop the extra headers (before adding those of --header)");
    netrcOption_ =
        command.add_option("--netrc", netrc_, "Basic-auth credentials from ~/.netrc: on or off")
            ->check(onOff);
    all_ = {connectionsOption_, rateOption_, userAgentOption_, fetchOnceOption_, header,
            noHeaders,          netrcOption_};
}

bool CrawlOptions::anyGiven() const {
    return std::any_of(all_.begin(), all_.end(),
                       [](const CLI::Option* option) { return option->count() > 0; });
}

std::optional<std::string> CrawlOptions::applyTo(CrawlSettings& settings) const {
    if (connectionsOption_->count() > 0) {
        const auto connections = connectionsFromText(connections_);
        if (!connections) {
            return std::string(kConnectionsProblem);
        }
        settings.setConnections(*connections);
    }
    if (rateOption_->count() > 0) {
        const auto rate = rateFromText(rate_);
        if (!rate) {
            return std::string(kRateProblem);
        }
        settings.setRequestsPerSecond(*rate);
    }
    if (userAgentOption_->count() > 0) {
        settings.setUserAgent(userAgent_);
    }
    if (fetchOnceOption_->count() > 0) {
        settings.setFetchOnce(switchFromText(fetchOnce_).value_or(false));
    }
    if (noHeaders_) {
        settings.setExtraHeaders({});
    }
    for (const std::string& header : headers_) {
        settings.addExtraHeader(header);
    }
    if (netrcOption_->count() > 0) {
        settings.setUseNetrc(switchFromText(netrc_).value_or(false));
    }
    return settings.problem();
}

void printCrawlSettings(std::ostream& out, const CrawlSettings& settings) {
    const auto onOff = [](bool on) { return on ? "on" : "off"; };
    out << "Connections: " << settings.connections() << '\n'
        << "Requests per second: " << rateText(settings.requestsPerSecond())
        << (settings.requestsPerSecond() == 0 ? " (no limit)" : "") << '\n'
        << "User agent: " << settings.userAgent() << '\n'
        << "Fetch once: " << onOff(settings.fetchOnce()) << '\n'
        << "Use ~/.netrc: " << onOff(settings.useNetrc()) << '\n'
        << "Extra headers:" << (settings.extraHeaders().empty() ? " none" : "") << '\n';
    for (const std::string& header : settings.extraHeaders()) {
        out << "  " << header << '\n';
    }
}

}  // namespace loomcrest::cli
