#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/Alerts.h"
#include "sites/ScanView.h"
#include "sites/SiteSheetView.h"

namespace loomcrest::test {

// Records every alert and answers each with the next queued button code (default button
// when the queue is empty).
class RecordingAlerts : public AlertPresenter {
public:
    void presentAlert(const Alert& alert, AlertCompletion completion) override {
        shown.push_back(alert);
        int answer = kDefaultButtonCode;
        if (!answers.empty()) {
            answer = answers.front();
            answers.pop_front();
        }
        if (completion) {
            completion(answer);
        }
    }

    std::vector<Alert> shown;
    std::deque<int> answers;
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
        ++listReloads;
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
    int listReloads = 0;
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
