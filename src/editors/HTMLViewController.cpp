#include "editors/HTMLViewController.h"

#include "app/ProcessState.h"
#include "editors/SitemapLayouts.h"
#include "platform/FileSystem.h"
#include "platform/Text.h"
#include "sites/DataPaths.h"

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

}  // namespace

HTMLViewController::HTMLViewController(HtmlView& view, AlertPresenter& alerts, UiThread& ui,
                                       std::function<std::string()> shownSiteName)
    : view_(view), alerts_(alerts), ui_(ui), shownSiteName_(std::move(shownSiteName)) {}

HTMLViewController::~HTMLViewController() {
    cancelExternalViewProcess_ = true;
    waitForPreview();
}

bool HTMLViewController::viewTBIAction() {
    if (vrlmpCurSite.empty()) {
        alerts_.presentAlert(Alert::notice("You need to select a sitemap from the sites list to "
                                           "use the HTML sitemap viewer."),
                             [](int) {});
        return false;
    }
    savedScrollPosition_ = {};
    if (vrlmpCurrentView != 2) {
        vrlmpCurrentView = 2;
        firstLoad();
    } else {
        if (vrlmpNeedsSave) {
            saveNow(kSaveButton);
        }
        state_.titleField.clear();
        state_.linkField.clear();
        showState();
    }
    return true;
}

void HTMLViewController::firstLoad() {
    const std::string siteName = shownSiteName_();
    if (siteName.empty()) {
        showPlaceholder("Please Select A Site To View It's Sitemap");
        return;
    }
    urlToLoad_ = "file://" + layoutFileLocation(0);
    vrlmpUTLLoc = shownFileLocation();
    const auto text = readTextFile(vrlmpUTLLoc);
    if (!text || text->empty()) {
        showPlaceholder(
            "No Sitemap Is Available<br />Please scan this website to create the "
            "html sitemap.");
        return;
    }
    vrlmpHTMLString = *text;
    originalHTMLString_ = *text;
    state_.layout = 0;
    state_.layoutLabel = kSitemapLayouts[0].name;
    reload();
    enableEditOptions();
    setPopupButtons();
}

void HTMLViewController::showPlaceholder(std::string_view text) {
    view_.loadPreview(placeholderPage(text));
    disableEditOptions();
}

void HTMLViewController::setPopupButtons() {
    saveActive();
    for (const Group group : {Group::PageTitle, Group::PageLink}) {
        StyleControls& controls = controlsOf(group);
        const htmlstyle::GroupStyle style = htmlstyle::readGroupStyle(vrlmpHTMLString, group);
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
    vrlmpNeedsSave = originalHTMLString_ != vrlmpHTMLString;
    state_.saveEnabled = vrlmpNeedsSave;
    showState();
}

std::string HTMLViewController::layoutFileLocation(size_t layout) const {
    return siteFolderLocation(shownSiteName_()) + "/" +
           std::string(kSitemapLayouts.at(layout).file);
}

void HTMLViewController::loadLayout(size_t layout) {
    state_.layout = layout;
    state_.layoutLabel = kSitemapLayouts[layout].name;
    urlToLoad_ = "file://" + layoutFileLocation(layout);
    originalHTMLString_ = readTextFile(shownFileLocation()).value_or("");
    vrlmpHTMLString = readTextFile(shownFileLocation()).value_or("");
}

void HTMLViewController::changeMapType(size_t layout) {
    if (layout >= kSitemapLayouts.size()) {
        return;
    }
    if (originalHTMLString_ == vrlmpHTMLString) {
        loadLayout(layout);
        vrlmpUTLLoc = shownFileLocation();
        reload();
        savedScrollPosition_ = {};
        setPopupButtons();
        return;
    }
    // Both answers leave vrlmpUTLLoc and the scroll position as they were: the class-level
    // prompt keeps naming the file loaded before.
    alerts_.presentAlert(
        Alert::question("Changes have been made to the look of this sitemap, would you like "
                        "to save these changes?",
                        "", "Save Changes", "", "Discard"),
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
            alerts_.presentAlert(
                Alert::question("Changes have been made to this sitemap, would you like to save "
                                "the changes you have made?",
                                "", "Save Changes", "", "Discard Changes"),
                sheetDidEndShouldSave);
        }
    } else if (request == kCloseWindow) {
        writeFileAtomically(path, vrlmpHTMLString);
        vrlmpHTMLString = readTextFile(path).value_or("");
        originalHTMLString_ = vrlmpHTMLString;
        saveActive();
    } else if (request == kChangeMap) {
        writeFileAtomically(path, vrlmpHTMLString);
        saveActive();
    }
}

void HTMLViewController::setEditOptionsEnabled(bool enabled) {
    state_.editOptionsEnabled = enabled;
    showState();
}

void HTMLViewController::reload() {
    view_.loadPreview(vrlmpHTMLString);
}

void HTMLViewController::showState() {
    view_.htmlViewChanged(state_);
}

void HTMLViewController::applyStyle(Group group, std::string_view pattern,
                                    std::string_view property) {
    vrlmpHTMLString = htmlstyle::withProperty(vrlmpHTMLString, group, pattern, property);
    reload();
    saveActive();
}

StyleControls& HTMLViewController::controlsOf(Group group) {
    return group == Group::PageTitle ? state_.pt : state_.pl;
}

void HTMLViewController::setFace(Group group, size_t face) {
    controlsOf(group).face = face;
    applyStyle(group, "font-family:.*;",
               "font-family: " + std::string(htmlstyle::kFontFaces.at(face)) + ";");
}

void HTMLViewController::setSize(Group group, size_t size) {
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

void HTMLViewController::ptFontFamily(size_t face) {
    setFace(Group::PageTitle, face);
}
void HTMLViewController::plFontFamily(size_t face) {
    setFace(Group::PageLink, face);
}
void HTMLViewController::ptFontSize(size_t size) {
    setSize(Group::PageTitle, size);
}
void HTMLViewController::plFontSize(size_t size) {
    setSize(Group::PageLink, size);
}
void HTMLViewController::ptFontStyleBold(bool on) {
    setBold(Group::PageTitle, on);
}
void HTMLViewController::plFontStyleBold(bool on) {
    setBold(Group::PageLink, on);
}
void HTMLViewController::ptFontStyleItalic(bool on) {
    setItalic(Group::PageTitle, on);
}
void HTMLViewController::plFontStyleItalic(bool on) {
    setItalic(Group::PageLink, on);
}

void HTMLViewController::underline(Group group, Underline mode) {
    controlsOf(group).underline = mode;
    vrlmpHTMLString = htmlstyle::withUnderline(vrlmpHTMLString, group, mode);
    reload();
    saveActive();
}

void HTMLViewController::ptUnderlineAll() {
    underline(Group::PageTitle, Underline::Always);
}
void HTMLViewController::ptUnderlineNone() {
    underline(Group::PageTitle, Underline::None);
}
void HTMLViewController::ptUnderlineOnHover() {
    underline(Group::PageTitle, Underline::OnHover);
}
void HTMLViewController::plUnderlineAll() {
    underline(Group::PageLink, Underline::Always);
}
void HTMLViewController::plUnderlineNone() {
    underline(Group::PageLink, Underline::None);
}
void HTMLViewController::plUnderlineOnHover() {
    underline(Group::PageLink, Underline::OnHover);
}

std::optional<htmlstyle::Rgb> HTMLViewController::setHEXValue(htmlstyle::Rgb& well,
                                                              std::string_view text) {
    const auto colour = htmlstyle::colourFromHex(text);
    if (colour) {
        well = *colour;
    }
    return colour;
}

void HTMLViewController::changeColour(Group group, std::string_view colour) {
    vrlmpHTMLString = htmlstyle::withProperty(vrlmpHTMLString, group, "color:.*;",
                                              "color: " + std::string(colour) + ";");
    reload();
}

void HTMLViewController::changePTColour(std::string_view colour) {
    changeColour(Group::PageTitle, colour);
}

void HTMLViewController::changePLColour(std::string_view colour) {
    changeColour(Group::PageLink, colour);
}

void HTMLViewController::colourWellAction(Group group, const htmlstyle::Rgb& colour) {
    StyleControls& controls = controlsOf(group);
    controls.colourWell = colour;
    controls.colourField = getHEXValue(colour);
    changeColour(group, controls.colourField);
    saveActive();
}

void HTMLViewController::ptColourWell(const htmlstyle::Rgb& colour) {
    colourWellAction(Group::PageTitle, colour);
}

void HTMLViewController::plColourWell(const htmlstyle::Rgb& colour) {
    colourWellAction(Group::PageLink, colour);
}

void HTMLViewController::colourFieldAction(Group group, std::string_view typed) {
    StyleControls& controls = controlsOf(group);
    controls.colourField = typed;
    const auto warn = [this, group] {
        alerts_.presentAlert(
            Alert::question("The colour much be 6 characters, (7 with begining #) please check "
                            "the colour hex value you entered.",
                            "", "OK", "", "Reset"),
            [this, group](int returnCode) {
                if (returnCode != kDefaultButtonCode) {
                    StyleControls& reset = controlsOf(group);
                    reset.colourField = getHEXValue(reset.colourWell);
                    showState();
                }
            });
    };
    std::string text(typed);
    if (text.size() == 6) {
        text.insert(0, "#");
    } else if (text.size() != 7) {
        // Only advice: the entry is used all the same.
        warn();
    }
    if (htmlstyle::containsHexColour(text)) {
        setHEXValue(controls.colourWell, text);
        changeColour(group, text);
    } else {
        warn();
    }
    saveActive();
}

void HTMLViewController::ptFontColourFieldAction(std::string_view text) {
    colourFieldAction(Group::PageTitle, text);
}

void HTMLViewController::plFontColourFieldAction(std::string_view text) {
    colourFieldAction(Group::PageLink, text);
}

}  // namespace loomcrest
