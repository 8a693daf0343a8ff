#include "ScanCommand.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <iostream>
#include <optional>

#include "Commands.h"
#include "ConsoleScanSheet.h"
#include "CrawlOptions.h"
#include "SiteSession.h"
#include "crawler/CrawlSettingsFile.h"
#include "crawler/ScanDriver.h"
#include "platform/RunLoop.h"
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

void configureWarningAnswer(ConsoleAlerts& alerts, WarningAnswer onWarning, std::ostream& err) {
    const bool interactive = onWarning == WarningAnswer::AskOnTerminal && isatty(STDIN_FILENO);
    alerts.answerQuestionsWith([onWarning, interactive, &err](const Alert& alert) {
        if (interactive) {
            return askOnTerminal(alert, err);
        }
        return onWarning == WarningAnswer::Cancel ? kOtherButtonCode : kDefaultButtonCode;
    });
}

// `scan NAME [--on-warning continue|cancel]`.
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
        return scanSite(session, name_, answer, out(), err(), &options_);
    }

private:
    std::string name_;
    std::string onWarning_;
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

}  // namespace

std::unique_ptr<Command> makeScanCommand(CommandContext& context) {
    return std::make_unique<ScanCommand>(context);
}

int scanSite(SiteSession& session, const std::string& name, WarningAnswer onWarning,
             std::ostream& out, std::ostream& err, const CrawlOptions* crawlOptions) {
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

    RunLoop loop;
    ConsoleScanSheet sheet(err, isatty(STDERR_FILENO) != 0, [&loop] { loop.stop(); });
    ScanDriver driver(session.process(), session.siteList(), sheet, session.alerts(), loop);
    if (settings) {
        driver.useCrawlSettingsOnce(std::move(*settings));
    }
    const InterruptGuard interruptGuard;
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
    if (session.alerts().anyRefusalShown()) {
        return kExitRefused;
    }

    const SiteDetailsFields& details = session.siteList().state().details;
    out << "Pages found: " << details.pagesFound << '\n'
        << "Pages used: " << details.linksScanned << '\n'
        << "Total links: " << details.totalLinksFound << '\n'
        << "Broken links: " << details.brokenLinks << '\n'
        << "Files in: " << siteFolderLocation(session.process().vrlmpCurSite) << '\n';
    if (const std::string& advice = session.siteList().state().crawlDelayAdvice; !advice.empty()) {
        out << advice << '\n';
    }
    return interrupted ? kExitInterrupted : kExitSuccess;
}

}  // namespace loomcrest::cli
