#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/Alerts.h"
#include "sites/ScanView.h"
#include "sites/SiteSheetView.h"

namespace loomcrest::test {

// An alert as one line, to compare whole: its kind, title, message, the buttons it shows and
// the window it is attached to when that is not the main one.
inline std::string describe(const Alert& alert) {
    constexpr const char* kKinds[] = {"Information", "Refusal", "Question"};
    std::string text = std::string(kKinds[static_cast<int>(alert.kind)]) + ": " + alert.title +
                       " | " + alert.message;
    for (const std::string* button :
         {&alert.defaultButton, &alert.alternateButton, &alert.otherButton}) {
        if (!button->empty()) {
            text += " [" + *button + "]";
        }
    }
    return alert.parent == AlertParent::SiteSheet ? text + " (site sheet)" : text;
}

// Records every alert and answers each with the next queued button code (default button
// when the queue is empty).
class RecordingAlerts : public AlertPresenter {
public:
    void presentAlert(const Alert& alert, AlertCompletion completion) override {
        shown.push_back(alert);
        if (onShown) {
            onShown();
        }
        int answer = kDefaultButtonCode;
        if (!answers.empty()) {
            answer = answers.front();
            answers.pop_front();
        }
        if (completion) {
            completion(answer);
        }
    }

    // Every alert shown so far, described.
    std::vector<std::string> described() const {
        std::vector<std::string> lines;
        for (const Alert& alert : shown) {
            lines.push_back(describe(alert));
        }
        return lines;
    }

    std::vector<Alert> shown;
    std::deque<int> answers;
    std::function<void()> onShown;  // before the answer is given
};

class RecordingScanView : public ScanView {
public:
    void scanViewChanged(const ScanViewState& newState) override {
        state = newState;
        if (onStateChanged) {
            onStateChanged(newState);
        }
    }
    void siteListChanged(const std::vector<std::string>& newNames, int row) override {
        names = newNames;
        selectedRow = row;
    }
    void setWindowTitle(std::string_view title) override { windowTitle = title; }
    void reloadFilterList() override { ++filterReloads; }
    void clearScannedLinks() override {
        ++scannedLinksClears;
        scannedLinks.clear();
    }
    void appendScannedLink(std::string_view url) override {
        scannedLinks.append(url).append("\n");
        if (onScannedLinkAppended) {
            onScannedLinkAppended();
        }
    }
    void setScannedLinksText(std::string_view text) override { scannedLinks = text; }

    ScanViewState state;
    std::vector<std::string> names;
    int selectedRow = -1;
    std::string windowTitle;
    int filterReloads = 0;
    int scannedLinksClears = 0;
    std::string scannedLinks;
    std::function<void(const ScanViewState&)> onStateChanged;
    std::function<void()> onScannedLinkAppended;
};

class RecordingSiteSheet : public SiteSheetView {
public:
    void siteSheetChanged(const SiteSheetState& newState) override { state = newState; }
    void focusNameField() override { ++focusRequests; }

    SiteSheetState state;
    int focusRequests = 0;
};

}  // namespace loomcrest::test
