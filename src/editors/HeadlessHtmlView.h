#pragma once

#include "editors/HtmlView.h"

namespace loomcrest {

// A view that shows nothing, for editing layouts without a window: the command line, the
// fuzz targets and tests.
class HeadlessHtmlView : public HtmlView {
public:
    void htmlViewChanged(const HtmlViewState&) override {}
    void loadPreview(std::string_view) override {}
    void showPreviewPanel(bool) override {}
    void setPreviewProgress(double, double) override {}
    void openWithDefaultApplication(const std::string&) override {}
};

}  // namespace loomcrest
