#include <chrono>

#include "app/ProcessState.h"
#include "editors/HTMLViewController.h"
#include "editors/UnsavedChanges.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sites/DataPaths.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

// The progress bar moves at most this often; each step waits for the interface thread.
constexpr std::chrono::milliseconds kProgressInterval{50};

}  // namespace

std::string HTMLViewController::previewFileLocation() const {
    return siteFolderLocation(shownSiteName_()) + "/tmpMap.html";
}

void HTMLViewController::viewSitemapButton() {
    if (workingCopyUnchanged()) {
        cancelExternalViewProcess_ = false;
        view_.setPreviewProgress(0, 1);
        startPreview();
        return;
    }
    // This path keeps an earlier cancel: such a preview stops after its first line.
    alerts_.presentAlert(unsavedChangesQuestion(UnsavedChangesMoment::Closing),
                         [this](int returnCode) {
                             if (returnCode == kDefaultButtonCode) {
                                 saveNow("closewindow");
                             } else {
                                 revertWorkingCopy();
                                 reload();
                             }
                             startPreview();
                         });
}

void HTMLViewController::startPreview() {
    waitForPreview();
    previewThread_ =
        std::thread([this, html = process_.vrlmpHTMLString] { externalBrowserView(html); });
}

void HTMLViewController::waitForPreview() {
    if (previewThread_.joinable()) {
        previewThread_.join();
    }
}

void HTMLViewController::externalBrowserView(const std::string& html) {
    ui_.perform([this] { view_.showPreviewPanel(true); });
    const std::vector<std::string> lines = split(html, '\n');
    const auto total = static_cast<double>(lines.size());
    auto lastProgress = std::chrono::steady_clock::time_point{};
    std::string page;
    bool cancelled = false;
    for (size_t i = 0; i < lines.size(); ++i) {
        const auto now = std::chrono::steady_clock::now();
        if (now - lastProgress >= kProgressInterval || i + 1 == lines.size()) {
            lastProgress = now;
            ui_.performAndWait(
                [this, i, total] { view_.setPreviewProgress(static_cast<double>(i + 1), total); });
        }
        if (i > 0) {
            page += '\n';
        }
        page += withoutLinkMarkers(lines[i]);
        if (cancelExternalViewProcess_) {
            cancelled = true;
            break;
        }
    }
    // The document already ends with these; browsers ignore the surplus.
    page += "</table>\n</body>\n</html>";
    if (!cancelled) {
        const std::string path = previewFileLocation();
        if (const WriteResult written = writeFileAtomically(path, page); written) {
            ui_.perform([this, path] { view_.openWithDefaultApplication(path); });
        } else {
            ui_.perform([this, written] {
                alertWriteFailure(alerts_, "The preview could not be written.", written);
            });
        }
    }
    ui_.perform([this] { view_.showPreviewPanel(false); });
}

void HTMLViewController::cancelViewInExternalButtonAction() {
    cancelExternalViewProcess_ = true;
    view_.showPreviewPanel(false);
}

void HTMLViewController::checkSave(ProcessState& process, AlertPresenter& alerts) {
    if (!process.vrlmpNeedsSave) {
        return;
    }
    alerts.presentAlert(unsavedChangesQuestion(UnsavedChangesMoment::OtherView),
                        [&process, &alerts](int returnCode) {
                            sheetDidEndSaveSitemapChanges(process, alerts, returnCode);
                        });
}

void HTMLViewController::sheetDidEndSaveSitemapChanges(ProcessState& process,
                                                       AlertPresenter& alerts, int returnCode) {
    if (returnCode == kDefaultButtonCode) {
        (void)writeLayout(process.vrlmpUTLLoc, process.vrlmpHTMLString, alerts);
    } else {
        process.vrlmpHTMLString = readTextFile(process.vrlmpUTLLoc).value_or("");
    }
    process.vrlmpNeedsSave = false;
}

}  // namespace loomcrest
