#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "editors/HtmlStyle.h"
#include "editors/LayoutRebuild.h"

namespace loomcrest {

// One group of style controls ("pt" for page titles, "pl" for page links).
struct StyleControls {
    std::optional<size_t> face;  // index into htmlstyle::kFontFaces; nothing selected
    std::optional<size_t> size;  // index into htmlstyle::kFontSizes
    bool bold = false;
    bool italic = false;
    htmlstyle::Underline underline = htmlstyle::Underline::OnHover;
    std::string colourField;
    htmlstyle::Rgb colourWell;
};

struct HtmlViewState {
    StyleControls pt;
    StyleControls pl;
    bool editOptionsEnabled = false;
    bool saveEnabled = false;
    size_t layout = 0;  // index into kSitemapLayouts
    std::string layoutLabel;
    std::string titleField;
    std::string linkField;
    bool deleteEnabled = false;
};

// A change to the shown layout that the preview can make to the page it has loaded instead of
// loading the whole text again.
struct PreviewEdit {
    // One element of the page, written as the layout holds it (an anchor or a line's div),
    // found `count` times; `after` takes its place, or nothing when it is removed.
    struct Replacement {
        std::string before;
        std::optional<std::string> after;
        size_t count = 0;
        bool operator==(const Replacement&) const = default;
    };
    std::vector<Replacement> replacements;
    // The style element's text before and after, when only the style changed.
    struct StyleChange {
        std::string before;
        std::string after;
        bool operator==(const StyleChange&) const = default;
    };
    std::optional<StyleChange> style;
    // After a re-pack that moved no cell to another row.
    std::optional<RowChange> rows;
};

// What the HTML sitemap view's controller needs from whatever draws it.
class HtmlView {
public:
    virtual ~HtmlView() = default;
    virtual void htmlViewChanged(const HtmlViewState& state) = 0;
    // Shows `html` in the preview, as text with no base address; the scroll position the
    // controller keeps is restored once it has loaded.
    virtual void loadPreview(std::string_view html) = 0;
    // The working copy became `html` through `edit`. A view that can change the loaded page in
    // place does so and loads `html` when that fails; the others load it.
    virtual void updatePreview(std::string_view html, const PreviewEdit& edit) {
        (void)edit;
        loadPreview(html);
    }
    // The panel shown while the browser preview file is made, and its progress.
    virtual void showPreviewPanel(bool shown) = 0;
    virtual void setPreviewProgress(double value, double maximum) = 0;
    virtual void openWithDefaultApplication(const std::string& path) = 0;
};

}  // namespace loomcrest
