#include "ScanCommand.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <iostream>
#include <optional>

#include "BrokenLinksOutput.h"
#include "Commands.h"
#include "ConsoleScanSheet.h"
#include "CrawlOptions.h"
#include "SiteSession.h"
#include "crawler/CrawlSettingsFile.h"
#include "crawler/LinkExplanations.h"
#include "crawler/ScanDriver.h"
#include "platform/RunLoop.h"
#include "platform/Text.h"
#include "sites/DataPaths.h"

namespace loomcrest::cli {

namespace {

std::atomic<bool> interruptRequested{false};

extern "C" void requestInterrupt(int /*signal*/) {
    interruptRequested = true;
}

// Ctrl-C stops the scan as its Cancel button would; a second Ctrl-C ends the program.
class InterruptGuard {
public:
    InterruptGuard() {
        interruptRequested = false;
        struct sigaction action {};
        action.sa_handler = requestInterrupt;
        action.sa_flags = SA_RESETHAND;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &previous_);
    }
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard() { sigaction(SIGINT, &previous_, nullptr); }

private:
    struct sigaction previous_ {};
};

int askOnTerminal(const Alert& alert, std::ostream& err) {
    err << "[" << alert.defaultButton << "/" << alert.otherButton << "] (default "
        << alert.defaultButton << "): " << std::flush;
    std::string reply;
    std::getline(std::cin, reply);
    const bool declined = !reply.empty() && (reply[0] == 'c' || reply[0] == 'C' ||
                                             reply[0] == 'n' || reply[0] == 'N');
    return declined ? kOtherButtonCode : kDefaultButtonCode;
}

void reportExplanationFailure(std::ostream& err, const std::string& path,
                              const WriteResult& failure) {
    err << "The explanations could not be written to \"" << path << "\".\n"
        << failure.message() << '\n';
}

// The summary as labelled lines or, given the time the scan took, as one JSON object.
void printSummary(std::ostream& out, const SiteDetailsFields& details, const std::string& folder,
                  std::optional<double> jsonSeconds, std::vector<BrokenLinkDetail> brokenLinks) {
    if (!jsonSeconds) {
        out << "Pages found: " << details.pagesFound << '\n'
            << "Pages used: " << details.linksScanned << '\n'
            << "Total links: " << details.totalLinksFound << '\n'
            << "Broken links: " << details.brokenLinks << '\n'
            << "Files in: " << folder << '\n';
        return;
    }
    const json::Object summary{
        {"pagesFound", leadingIntegerValue(details.pagesFound)},
        {"pagesUsed", leadingIntegerValue(details.linksScanned)},
        {"totalLinks", leadingIntegerValue(details.totalLinksFound)},
        {"brokenLinks", leadingIntegerValue(details.brokenLinks)},
        {"folder", folder},
        {"seconds", std::round(*jsonSeconds * 1000) / 1000},
        {"brokenLinkDetails", brokenLinksJson(BrokenLinkReport{std::move(brokenLinks), true})},
    };
    out << json::write(summary, json::Layout::Indented) << '\n';
}

void configureWarningAnswer(ConsoleAlerts& alerts, WarningAnswer onWarning, std::ostream& err) {
    const bool interactive = onWarning == WarningAnswer::AskOnTerminal && isatty(STDIN_FILENO);
    alerts.answerQuestionsWith([onWarning, interactive, &err](const Alert& alert) {
        if (interactive) {
            return askOnTerminal(alert, err);
        }
        return onWarning == WarningAnswer::Cancel ? kOtherButtonCode : kDefaultButtonCode;
    });
}

// `scan NAME [--on-warning continue|cancel] [--json] [--fail-on-broken] [--explain FILE]`.
class ScanCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& scan = *parent.add_subcommand("scan", "Scan a site into its sitemaps");
        scan.add_option("NAME", name_, "Site name")->required();
        scan.add_option("--on-warning", onWarning_,
                        "Answer to the warning about URLs with several \"?\" (default: "
                        "continue; asked on a terminal)")
            ->check(CLI::IsMember({"continue", "cancel"}));
        scan.add_flag("--json", reporting_.json,
                      "Print the summary as one JSON object, broken-link details included");
        scan.add_flag("--fail-on-broken", reporting_.failOnBroken,
                      "Exit 3 when the scan finishes with broken links");
        scan.add_option("--explain", reporting_.explainPath,
                        "Write every link the scan did not queue to FILE, with its page and "
                        "the reason, as tab-separated lines")
            ->type_name("FILE");
        options_.addTo(scan);
        return scan;
    }

    int run() override {
        WarningAnswer answer = WarningAnswer::AskOnTerminal;
        if (onWarning_ == "continue") {
            answer = WarningAnswer::Continue;
        } else if (onWarning_ == "cancel") {
            answer = WarningAnswer::Cancel;
        }
        SiteSession session(process(), err());
        return scanSite(session, name_, answer, out(), err(), reporting_, &options_);
    }

private:
    std::string name_;
    std::string onWarning_;
    ScanReporting reporting_;
    CrawlOptions options_;
};

// The site's crawl settings changed by the options given; nothing when none was given or
// the options ask for what is not allowed (refused on `alerts`).
std::optional<CrawlSettings> settingsForThisScan(const std::string& name,
                                                 const CrawlOptions* options,
                                                 AlertPresenter& alerts, bool& refused) {
    refused = false;
    if (options == nullptr || !options->anyGiven()) {
        return std::nullopt;
    }
    const std::string folder = siteFolderLocation(name);
    CrawlSettingsRead read = readCrawlSettings(folder);
    if (read.problem) {
        alerts.presentAlert(unreadableCrawlSettingsAlert(folder, *read.problem), {});
    }
    if (const auto problem = options->applyTo(read.settings)) {
        alerts.presentAlert(refusedCrawlSettingsAlert(*problem), {});
        refused = true;
        return std::nullopt;
    }
    return std::move(read.settings);
}

// Runs the scan to its end on `loop`; an interrupt (Ctrl-C, once an InterruptGuard is in place)
// cancels it as the Cancel button does. True when it was interrupted.
bool runScan(RunLoop& loop, ScanDriver& driver, std::ostream& err) {
    bool interrupted = false;
    loop.perform([&] {
        driver.scanSiteAction();
        if (!driver.isScanning()) {
            loop.stop();
        }
    });
    loop.run([&] {
        if (interruptRequested && !interrupted) {
            interrupted = true;
            err << "\nStopping: closing the sitemap files..." << std::endl;
            driver.cancelScan();
        }
    });
    return interrupted;
}

}  // namespace

std::unique_ptr<Command> makeScanCommand(CommandContext& context) {
    return std::make_unique<ScanCommand>(context);
}

int scanSite(SiteSession& session, const std::string& name, WarningAnswer onWarning,
             std::ostream& out, std::ostream& err, const ScanReporting& reporting,
             const CrawlOptions* crawlOptions) {
    if (!session.selectSite(name)) {
        return kExitRefused;
    }
    bool refused = false;
    std::optional<CrawlSettings> settings =
        settingsForThisScan(name, crawlOptions, session.alerts(), refused);
    if (refused) {
        return kExitRefused;
    }
    configureWarningAnswer(session.alerts(), onWarning, err);
    LinkExplanations explanations;
    if (!reporting.explainPath.empty()) {
        if (const WriteResult opened = explanations.open(reporting.explainPath); !opened) {
            reportExplanationFailure(err, reporting.explainPath, opened);
            return kExitRefused;
        }
    }

    RunLoop loop;
    ConsoleScanSheet sheet(err, isatty(STDERR_FILENO) != 0, [&loop] { loop.stop(); });
    ScanDriver driver(session.process(), session.siteList(), sheet, session.alerts(), loop);
    driver.explainSkippedLinks(reporting.explainPath.empty() ? nullptr : &explanations);
    if (settings) {
        driver.useCrawlSettingsOnce(std::move(*settings));
    }
    const InterruptGuard interruptGuard;
    const auto started = std::chrono::steady_clock::now();
    const bool interrupted = runScan(loop, driver, err);
    if (session.alerts().anyRefusalShown()) {
        return kExitRefused;
    }
    if (!reporting.explainPath.empty()) {
        if (const WriteResult written = explanations.finish(); !written) {
            reportExplanationFailure(err, reporting.explainPath, written);
            return kExitRefused;
        }
    }

    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - started;
    const std::string folder = siteFolderLocation(session.process().vrlmpCurSite);
    printSummary(out, session.siteList().state().details, folder,
                 reporting.json ? std::optional(elapsed.count()) : std::nullopt,
                 driver.brokenLinkDetails());
    const std::string& advice = session.siteList().state().crawlDelayAdvice;
    if (!advice.empty() && !reporting.json) {
        out << advice << '\n';
    }
    if (interrupted) {
        return kExitInterrupted;
    }
    const bool foundBroken = !session.process().vrlmpBadLinkArray.empty();
    return reporting.failOnBroken && foundBroken ? kExitBrokenLinks : kExitSuccess;
}

}  // namespace loomcrest::cli
