#pragma once

#include <cstdint>

namespace loomcrest {

// The figures of the progress sheet.
struct ScanProgress {
    int64_t pagesLeft = 0;
    int64_t pagesScanned = 0;
    int64_t brokenLinks = 0;
    int64_t barMaximum = 5;
    int64_t barValue = 1;

    bool operator==(const ScanProgress&) const = default;
};

// The sheets and fields a scan drives besides the scan view itself. Every call comes on
// the user-interface thread.
class ScanSheetView {
public:
    virtual ~ScanSheetView() = default;
    // "Connecting" with a busy indicator, while the start URL is probed.
    virtual void showConnectionSheet(bool shown) = 0;
    // The progress sheet with its Cancel button.
    virtual void showProgressSheet(bool shown) = 0;
    virtual void showProgress(const ScanProgress& progress) = 0;
    // The total-links field.
    virtual void showTotalLinks(int32_t totalLinks) = 0;
    // "Finishing" with a busy indicator, while the files are closed.
    virtual void showEndPanel(bool shown) = 0;
    virtual void bringWindowToFront() = 0;
    // The scan is over and every window update of its end has been made.
    virtual void scanEnded() = 0;
};

}  // namespace loomcrest
