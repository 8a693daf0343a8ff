#pragma once

#include <chrono>
#include <functional>
#include <ostream>

#include "crawler/ScanSheetView.h"

namespace loomcrest::cli {

// The scan's progress as one line that rewrites itself on a terminal: pages scanned, pages
// left, broken links, total links and the time since the start. Quiet elsewhere.
class ConsoleScanSheet : public ScanSheetView {
public:
    ConsoleScanSheet(std::ostream& err, bool live, std::function<void()> onScanEnded);

    void showConnectionSheet(bool shown) override;
    void showProgressSheet(bool shown) override;
    void showProgress(const ScanProgress& progress) override;
    void showTotalLinks(int32_t totalLinks) override;
    void showEndPanel(bool) override {}
    void bringWindowToFront() override {}
    void scanEnded() override;

private:
    void printLine(bool force);
    void clearLine();

    std::ostream& err_;
    bool live_;
    std::function<void()> onScanEnded_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point lastPrint_{};
    ScanProgress progress_;
    int32_t totalLinks_ = 0;
    bool lineShown_ = false;
};

}  // namespace loomcrest::cli
