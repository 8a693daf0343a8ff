// The HTML sitemap layout editor: the bytes are a layout file; one of its links is clicked,
// retitled, clicked again and deleted, as a person would in the preview. Kept thin on
// purpose: it drives only the controller's public actions.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "FuzzInput.h"
#include "app/ProcessState.h"
#include "editors/HTMLViewController.h"
#include "editors/HeadlessHtmlView.h"
#include "platform/HtmlDocument.h"
#include "platform/ImmediateUiThread.h"
#include "sites/DataPaths.h"

namespace {

using namespace loomcrest;

// Answers every question with its default button, as the command line does.
class DefaultAnswers : public AlertPresenter {
public:
    void presentAlert(const Alert&, AlertCompletion completion) override {
        if (completion) {
            completion(kDefaultButtonCode);
        }
    }
};

// A private data root with the site "Fuzz", made once per process and removed at its end.
class FuzzHome {
public:
    FuzzHome() {
        std::string pattern = std::filesystem::temp_directory_path() / "loomcrest-fuzz-XXXXXX";
        root_ = mkdtemp(pattern.data());
        setenv("HOME", root_.c_str(), 1);
        std::filesystem::create_directories(siteFolderLocation("Fuzz"));
        layout_ = siteFolderLocation("Fuzz") + "/sitemap3c.html";
    }
    FuzzHome(const FuzzHome&) = delete;
    FuzzHome& operator=(const FuzzHome&) = delete;
    ~FuzzHome() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    const std::string& layout() const { return layout_; }

private:
    std::string root_;
    std::string layout_;
};

const std::string& layoutPath() {
    static const FuzzHome home;
    return home.layout();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view layout = fuzz::asText(data, size);
    std::ofstream(layoutPath(), std::ios::binary | std::ios::trunc) << layout;

    ProcessState process;
    process.vrlmpCurSite = "Fuzz";
    HeadlessHtmlView view;
    DefaultAnswers alerts;
    ImmediateUiThread ui;
    HTMLViewController html(process, view, alerts, ui, [] { return std::string("Fuzz"); });
    if (!html.viewTBIAction() || !html.state().editOptionsEnabled) {
        return 0;
    }
    const auto document = MarkupDocument::parseHtml(process.vrlmpHTMLString);
    const auto anchors = document ? document->select("//a") : std::vector<MarkupNode>{};
    if (anchors.empty()) {
        return 0;
    }
    // The input's length picks the link, so the seeds reach more than the first line.
    const MarkupNode& anchor = anchors[size % anchors.size()];
    const std::string address = anchor.attribute("href").value_or("");
    const std::string label = anchor.stringValue();
    html.linkClicked(address, label);
    html.setEditFields("Fuzzed & <title>", address);
    html.titleEditInputAction();
    html.linkClicked(address, "Fuzzed & <title>");
    html.deleteLinkAction();
    return 0;
}
