#include "ConsoleScanSheet.h"

#include <cstdio>

namespace loomcrest::cli {

namespace {

constexpr std::chrono::milliseconds kRedrawInterval{100};

}  // namespace

ConsoleScanSheet::ConsoleScanSheet(std::ostream& err, bool live, std::function<void()> onScanEnded)
    : err_(err), live_(live), onScanEnded_(std::move(onScanEnded)) {}

void ConsoleScanSheet::showConnectionSheet(bool shown) {
    if (live_ && shown) {
        err_ << "Connecting..." << std::flush;
        lineShown_ = true;
    } else if (!shown) {
        clearLine();
    }
}

void ConsoleScanSheet::showProgressSheet(bool shown) {
    if (shown) {
        printLine(true);
    } else {
        clearLine();
    }
}

void ConsoleScanSheet::showProgress(const ScanProgress& progress) {
    progress_ = progress;
    printLine(false);
}

void ConsoleScanSheet::showTotalLinks(int32_t totalLinks) {
    totalLinks_ = totalLinks;
    printLine(false);
}

void ConsoleScanSheet::scanEnded() {
    clearLine();
    if (onScanEnded_) {
        onScanEnded_();
    }
}

void ConsoleScanSheet::printLine(bool force) {
    const auto now = std::chrono::steady_clock::now();
    if (!live_ || (!force && now - lastPrint_ < kRedrawInterval)) {
        return;
    }
    lastPrint_ = now;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now - start_).count();
    char line[160];
    std::snprintf(line, sizeof line,
                  "\r\033[KScanned %lld pages, %lld left, %lld broken, %d links, %lld:%02lld",
                  static_cast<long long>(progress_.pagesScanned),
                  static_cast<long long>(progress_.pagesLeft),
                  static_cast<long long>(progress_.brokenLinks), totalLinks_,
                  static_cast<long long>(seconds / 60), static_cast<long long>(seconds % 60));
    err_ << line << std::flush;
    lineShown_ = true;
}

void ConsoleScanSheet::clearLine() {
    if (lineShown_) {
        err_ << "\r\033[K" << std::flush;
        lineShown_ = false;
    }
}

}  // namespace loomcrest::cli
