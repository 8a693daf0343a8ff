#include "editors/HTMLViewController.h"

#include "app/ProcessState.h"
#include "editors/LayoutSearch.h"
#include "editors/SitemapLayouts.h"
#include "editors/UnsavedChanges.h"
#include "platform/FileSystem.h"
#include "platform/LargeText.h"
#include "platform/Text.h"
#include "sites/DataPaths.h"
#include "sites/SiteLock.h"

namespace loomcrest {

namespace {

using htmlstyle::Group;
using htmlstyle::Underline;

constexpr std::string_view kSaveButton = "savebutton";
constexpr std::string_view kCloseWindow = "closewindow";
constexpr std::string_view kChangeMap = "changemap";
constexpr std::string_view kDefaultAsk = "defaultAsk";

std::string placeholderPage(std::string_view text) {
    return "<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Transitional//EN\" "
           "\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-transitional.dtd\"><html "
           "xmlns=\"http://www.w3.org/1999/xhtml\">\t\t<head><meta http-equiv=\"Content-Type\" "
           "content=\"text/html; charset=UTF-8\" /><title>No Sitemap Available</title></head>"
           "<body><h2 align=\"center\">&nbsp;</h2><h2 align=\"center\">&nbsp;</h2>"
           "<h2 align=\"center\">&nbsp;</h2><h2 align=\"center\">" +
           std::string(text) + "</h2></body></html>";
}

// Where the text of the style element stands: [begin, end).
std::optional<std::pair<size_t, size_t>> styleText(std::string_view html) {
    constexpr std::string_view kOpen = "<style type=\"text/css\">";
    const size_t open = html.find(kOpen);
    const size_t close = html.find("</style>", open);
    if (open == std::string_view::npos || close == std::string_view::npos) {
        return std::nullopt;
    }
    return std::pair{open + kOpen.size(), close};
}

}  // namespace

HTMLViewController::HTMLViewController(ProcessState& process, HtmlView& view,
                                       AlertPresenter& alerts, UiThread& ui,
                                       std::function<std::string()> shownSiteName)
    : process_(process),
      view_(view),
      alerts_(alerts),
      ui_(ui),
      shownSiteName_(std::move(shownSiteName)) {}

HTMLViewController::~HTMLViewController() {
    cancelExternalViewProcess_ = true;
    waitForPreview();
}

bool HTMLViewController::viewTBIAction() {
    if (process_.vrlmpCurSite.empty()) {
        alerts_.presentAlert(Alert::refusal("You need to select a sitemap from the sites list to "
                                            "use the HTML sitemap viewer."),
                             [](int) {});
        return false;
    }
    savedScrollPosition_ = {};
    if (process_.vrlmpCurrentView != 2) {
        process_.vrlmpCurrentView = 2;
        firstLoad();
    } else {
        if (process_.vrlmpNeedsSave) {
            saveNow(kSaveButton);
        }
        forgetSelection();
    }
    return true;
}

void HTMLViewController::firstLoad() {
    forgetSelection();
    const std::string siteName = shownSiteName_();
    if (siteName.empty()) {
        showPlaceholder("Please Select A Site To View It's Sitemap");
        return;
    }
    urlToLoad_ = "file://" + layoutFileLocation(firstLayout_);
    process_.vrlmpUTLLoc = shownFileLocation();
    auto text = readTextFile(process_.vrlmpUTLLoc);
    if (!text || text->empty()) {
        showPlaceholder(
            "No Sitemap Is Available<br />Please scan this website to create the "
            "html sitemap.");
        return;
    }
    originalIsWorkingCopy_ = true;
    process_.vrlmpHTMLString = *std::move(text);
    state_.layout = firstLayout_;
    state_.layoutLabel = kSitemapLayouts[firstLayout_].name;
    reload();
    enableEditOptions();
    setPopupButtons();
}

void HTMLViewController::showPlaceholder(std::string_view text) {
    forgetSelection();
    view_.loadPreview(placeholderPage(text));
    disableEditOptions();
}

void HTMLViewController::setPopupButtons() {
    saveActive();
    for (const Group group : {Group::PageTitle, Group::PageLink}) {
        StyleControls& controls = controlsOf(group);
        const htmlstyle::GroupStyle style =
            htmlstyle::readGroupStyle(process_.vrlmpHTMLString, group);
        controls.colourField = style.colour;
        setHEXValue(controls.colourWell, style.colour);
        controls.face = indexOf(htmlstyle::kFontFaces, style.fontFamily);
        controls.size = indexOf(htmlstyle::kFontSizes, style.fontSize);
        controls.bold = style.fontWeight == "bold";
        controls.italic = style.fontStyle == "italic";
        if (style.underline) {
            controls.underline = *style.underline;
        }
    }
    showState();
}

void HTMLViewController::saveActive() {
    process_.vrlmpNeedsSave = !workingCopyUnchanged();
    state_.saveEnabled = process_.vrlmpNeedsSave;
    showState();
}

std::string HTMLViewController::layoutFileLocation(size_t layout) const {
    return siteFolderLocation(shownSiteName_()) + "/" +
           std::string(kSitemapLayouts.at(layout).file);
}

void HTMLViewController::loadLayout(size_t layout) {
    forgetSelection();
    state_.layout = layout;
    state_.layoutLabel = kSitemapLayouts[layout].name;
    urlToLoad_ = "file://" + layoutFileLocation(layout);
    process_.vrlmpHTMLString = readTextFile(shownFileLocation()).value_or("");
    originalIsWorkingCopy_ = true;
}

void HTMLViewController::changeMapType(size_t layout) {
    if (layout >= kSitemapLayouts.size()) {
        return;
    }
    if (workingCopyUnchanged()) {
        loadLayout(layout);
        process_.vrlmpUTLLoc = shownFileLocation();
        reload();
        savedScrollPosition_ = {};
        setPopupButtons();
        return;
    }
    // Both answers leave vrlmpUTLLoc and the scroll position as they were, so the question
    // other views ask before they take the window still names the file loaded before.
    alerts_.presentAlert(unsavedChangesQuestion(UnsavedChangesMoment::LayoutSwitch),
                         [this, layout](int returnCode) {
                             if (returnCode == kDefaultButtonCode) {
                                 saveNow(kChangeMap);
                             }
                             loadLayout(layout);
                             reload();
                             setPopupButtons();
                         });
}

void HTMLViewController::saveNow(std::string_view request) {
    if (!hasLayout()) {
        return;  // a placeholder is shown: its path may name another site's file
    }
    const std::string path = shownFileLocation();
    const auto sheetDidEndShouldSave = [this](int returnCode) {
        if (returnCode == kDefaultButtonCode) {
            saveNow(kCloseWindow);
        } else {
            // Even "Cancel" drops the edits and returns to the first layout.
            firstLoad();
        }
    };
    if (request == kSaveButton) {
        if (pathExists(path)) {
            alerts_.presentAlert(
                Alert::question("Are you sure you want to save the changes you have made?", "",
                                "Save Changes", "", "Cancel"),
                sheetDidEndShouldSave);
        }
    } else if (request == kDefaultAsk) {
        if (pathExists(path)) {
            alerts_.presentAlert(unsavedChangesQuestion(UnsavedChangesMoment::Closing),
                                 sheetDidEndShouldSave);
        }
    } else if (request == kCloseWindow) {
        // After a complete atomic write the file holds the working copy; unsaved, the
        // working copy keeps the change and Save stays enabled.
        workingCopyIsOnDisk_ = writeLayout(path, process_.vrlmpHTMLString, alerts_);
        if (workingCopyIsOnDisk_) {
            originalIsWorkingCopy_ = true;
        }
        saveActive();
    } else if (request == kChangeMap) {
        (void)writeLayout(path, process_.vrlmpHTMLString, alerts_);
        saveActive();
    }
}

bool HTMLViewController::writeLayout(const std::string& path, std::string_view html,
                                     AlertPresenter& alerts) {
    constexpr std::string_view kNotSaved = "The HTML sitemap could not be saved.";
    const auto lock = lockSiteOfFile(path, kNotSaved, alerts);
    if (!lock) {
        return false;
    }
    const WriteResult written = writeFileAtomically(path, html);
    if (!written) {
        alertWriteFailure(alerts, kNotSaved, written);
    }
    return written.ok();
}

void HTMLViewController::setEditOptionsEnabled(bool enabled) {
    state_.editOptionsEnabled = enabled;
    showState();
}

void HTMLViewController::keepOriginal() {
    if (originalIsWorkingCopy_) {
        assignLargeText(originalHTMLString_, process_.vrlmpHTMLString);
        originalIsWorkingCopy_ = false;
    }
}

bool HTMLViewController::workingCopyUnchanged() const {
    return originalIsWorkingCopy_ || originalHTMLString_ == process_.vrlmpHTMLString;
}

void HTMLViewController::revertWorkingCopy() {
    if (!originalIsWorkingCopy_) {
        process_.vrlmpHTMLString = originalHTMLString_;
    }
}

void HTMLViewController::reload() {
    view_.loadPreview(process_.vrlmpHTMLString);
}

// A reload reports a navigation without a clicked element, which disables Delete; a change
// in place stands for such a reload.
void HTMLViewController::previewChangedInPlace() {
    state_.deleteEnabled = false;
    showState();
}

void HTMLViewController::showState() {
    view_.htmlViewChanged(state_);
}

// Every change to the working copy ends here, so the preview and the Save button always
// follow it. A change in place is shown only when the text it stands for was written, or
// awaits Save; otherwise the preview loads the working copy again.
void HTMLViewController::workingCopyEdited(AfterEdit after,
                                           const std::optional<PreviewEdit>& preview) {
    workingCopyIsOnDisk_ = false;
    if (after == AfterEdit::WriteNow) {
        saveNow(kCloseWindow);
    }
    if (preview && (after == AfterEdit::AwaitSave || workingCopyIsOnDisk_)) {
        view_.updatePreview(process_.vrlmpHTMLString, *preview);
        previewChangedInPlace();
    } else {
        reload();
    }
    if (after == AfterEdit::AwaitSave) {
        saveActive();
    }
}

// The style is rewritten in the working copy itself. When every rewrite fell inside the style
// element, the preview changes that element alone.
void HTMLViewController::editStyle(const std::function<void(const htmlstyle::Replace&)>& edit) {
    if (!hasLayout()) {
        return;  // a placeholder is shown: the working copy may be another site's
    }
    keepOriginal();
    std::string& html = process_.vrlmpHTMLString;
    auto style = styleText(html);
    const std::string before = style ? html.substr(style->first, style->second - style->first) : "";
    edit([&](std::string_view from, std::string_view to) {
        const layoutsearch::Replaced replaced = layoutsearch::replaceInPlace(html, from, to);
        if (replaced.count == 0 || !style) {
            return;
        }
        if (replaced.first < style->first || replaced.last + from.size() > style->second) {
            style.reset();
            return;
        }
        style->second = style->second + replaced.count * to.size() - replaced.count * from.size();
    });
    std::optional<PreviewEdit> preview;
    if (style) {
        preview = PreviewEdit{};
        preview->style = PreviewEdit::StyleChange{
            before, html.substr(style->first, style->second - style->first)};
    }
    workingCopyEdited(AfterEdit::AwaitSave, preview);
}

void HTMLViewController::applyStyle(Group group, std::string_view pattern,
                                    std::string_view property) {
    editStyle([&](const htmlstyle::Replace& replace) {
        htmlstyle::rewriteProperty(process_.vrlmpHTMLString, group, pattern, property, replace);
    });
}

StyleControls& HTMLViewController::controlsOf(Group group) {
    return group == Group::PageTitle ? state_.pt : state_.pl;
}

void HTMLViewController::setFontFace(Group group, size_t face) {
    controlsOf(group).face = face;
    applyStyle(group, "font-family:.*;",
               "font-family: " + std::string(htmlstyle::kFontFaces.at(face)) + ";");
}

void HTMLViewController::setFontSize(Group group, size_t size) {
    controlsOf(group).size = size;
    applyStyle(group, "font-size:.*;",
               "font-size: " + std::string(htmlstyle::kFontSizes.at(size)) + ";");
}

void HTMLViewController::setBold(Group group, bool on) {
    controlsOf(group).bold = on;
    applyStyle(group, "font-weight:.*;", on ? "font-weight: bold;" : "font-weight: normal;");
}

void HTMLViewController::setItalic(Group group, bool on) {
    controlsOf(group).italic = on;
    applyStyle(group, "font-style:.*;", on ? "font-style: italic;" : "font-style: normal;");
}

void HTMLViewController::setUnderline(Group group, Underline mode) {
    controlsOf(group).underline = mode;
    editStyle([&](const htmlstyle::Replace& replace) {
        htmlstyle::rewriteUnderline(process_.vrlmpHTMLString, group, mode, replace);
    });
}

std::optional<htmlstyle::Rgb> HTMLViewController::setHEXValue(htmlstyle::Rgb& well,
                                                              std::string_view text) {
    const auto colour = htmlstyle::colourFromHex(text);
    if (colour) {
        well = *colour;
    }
    return colour;
}

void HTMLViewController::colourWellChosen(Group group, const htmlstyle::Rgb& colour) {
    StyleControls& controls = controlsOf(group);
    controls.colourWell = colour;
    controls.colourField = getHEXValue(colour);
    applyStyle(group, "color:.*;", "color: " + controls.colourField + ";");
}

void HTMLViewController::warnAboutColour(Group group) {
    alerts_.presentAlert(
        Alert::refusalOffering("The colour much be 6 characters, (7 with begining #) please check "
                               "the colour hex value you entered.",
                               "Reset"),
        [this, group](int returnCode) {
            if (returnCode != kDefaultButtonCode) {
                StyleControls& reset = controlsOf(group);
                reset.colourField = getHEXValue(reset.colourWell);
                showState();
            }
        });
}

void HTMLViewController::colourFieldEntered(Group group, std::string_view typed) {
    StyleControls& controls = controlsOf(group);
    controls.colourField = typed;
    std::string text(typed);
    if (text.size() == 6) {
        text.insert(0, "#");
    } else if (text.size() != 7) {
        // Only advice: the entry is used all the same.
        warnAboutColour(group);
    }
    if (htmlstyle::containsHexColour(text)) {
        setHEXValue(controls.colourWell, text);
        applyStyle(group, "color:.*;", "color: " + text + ";");
    } else {
        warnAboutColour(group);
        saveActive();
    }
}

}  // namespace loomcrest
