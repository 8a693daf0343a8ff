#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "editors/HtmlView.h"
#include "platform/Alerts.h"
#include "platform/Regex.h"
#include "platform/UiThread.h"

namespace loomcrest {

struct ProcessState;

// The HTML sitemap view: a working copy of one of the six layout files (vrlmpHTMLString),
// restyled, edited line by line and saved back to that file.
class HTMLViewController {
public:
    struct ScrollPosition {
        double x = 0;
        double y = 0;
    };

    // `shownSiteName` gives the site name of the site-name field.
    HTMLViewController(ProcessState& process, HtmlView& view, AlertPresenter& alerts, UiThread& ui,
                       std::function<std::string()> shownSiteName);
    HTMLViewController(const HTMLViewController&) = delete;
    HTMLViewController& operator=(const HTMLViewController&) = delete;
    ~HTMLViewController();

    // Loading and saving.
    bool viewTBIAction();
    void firstLoad();
    // The layout the first load shows: the window starts with the first one; the command line
    // starts with the one it works on, so that a big site's other layout is not read for
    // nothing.
    void startWithLayout(size_t layout) { firstLayout_ = layout; }
    void setPopupButtons();
    void saveActive();
    void changeMapType(size_t layout);
    void saveRecentChanges() { saveNow("savebutton"); }
    void saveNow(std::string_view request);
    void enableEditOptions() { setEditOptionsEnabled(true); }
    void disableEditOptions() { setEditOptionsEnabled(false); }

    // Style controls; each changes one group, page titles or links, of the style block.
    void setFontFace(htmlstyle::Group group, size_t face);
    void setFontSize(htmlstyle::Group group, size_t size);
    void setBold(htmlstyle::Group group, bool on);
    void setItalic(htmlstyle::Group group, bool on);
    void setUnderline(htmlstyle::Group group, htmlstyle::Underline mode);
    // A colour picked in the group's colour well.
    void colourWellChosen(htmlstyle::Group group, const htmlstyle::Rgb& colour);
    // Text entered in the group's hex field; a text that is not a colour gets a warning.
    void colourFieldEntered(htmlstyle::Group group, std::string_view text);

    static std::string getHEXValue(const htmlstyle::Rgb& well) { return htmlstyle::hexValue(well); }
    // Sets `well` from the text; returns the colour, or nothing when the text holds no
    // six-digit colour.
    static std::optional<htmlstyle::Rgb> setHEXValue(htmlstyle::Rgb& well, std::string_view text);

    // Link editing. The preview reports every navigation request; only reloads of the
    // working copy ("about:blank") are let through.
    bool shouldAllowNavigation(std::string_view address) const { return address == "about:blank"; }
    // A click on a link: its absolute address and visible label.
    void linkClicked(std::string_view address, std::string_view label);
    void scrollPositionChanged(ScrollPosition position) { savedScrollPosition_ = position; }
    ScrollPosition savedScrollPosition() const { return savedScrollPosition_; }
    // The text typed into the title and address fields.
    void setEditFields(std::string title, std::string link);
    // Empties the title and address fields, as leaving the view does.
    void clearEditFields() { forgetSelection(); }
    // Forgets the clicked line: empty fields, Delete disabled. Every load of a layout, a
    // placeholder or another view does this, so Delete never acts on a line not on show.
    void forgetSelection();
    // Whether a layout file is loaded; a placeholder page holds nothing to edit or save.
    bool hasLayout() const { return state_.editOptionsEnabled; }
    void titleEditInputAction();
    void linkEditInputAction();
    void editLinkAndTitle();
    void deleteLinkAction();
    void beginLinkDeletion();
    void linkDeletion();
    // Re-packs the working copy when a cell lost its last line. `preview` learns how the rows
    // changed, or becomes nothing when cells moved to other rows.
    void checkForEmptyColumn(std::optional<PreviewEdit>& preview);
    // The layout rebuilt from `cells`; the deletion writes it, as it writes every deletion.
    std::string rebuildSitemaps(std::span<const std::string_view> cells) const;

    // Whether the last edit or deletion of a line found the line in the working copy.
    enum class LineEdit { None, Done, NotFound };
    LineEdit lastLineEdit() const { return lineEdit_; }

    // Browser preview: writes "tmpMap.html" on a background thread and opens it.
    void viewSitemapButton();
    void cancelViewInExternalButtonAction();
    std::string previewFileLocation() const;
    // Waits for a preview that is being made.
    void waitForPreview();

    // The unsaved-changes question other views ask before they take the window. It works on
    // the shared working copy and the file last loaded into it, not on one view's file.
    static void checkSave(ProcessState& process, AlertPresenter& alerts);
    static void sheetDidEndSaveSitemapChanges(ProcessState& process, AlertPresenter& alerts,
                                              int returnCode);
    // Every save of a layout file goes here: it is refused while the site is being scanned,
    // and a failed write leaves the file as it was; both are shown on `alerts`.
    static bool writeLayout(const std::string& path, std::string_view html, AlertPresenter& alerts);

    const HtmlViewState& state() const { return state_; }
    const std::string& urlToLoad() const { return urlToLoad_; }
    std::string shownFileLocation() const {
        return urlToLoad_.size() > 7 ? urlToLoad_.substr(7) : "";
    }
    const std::string& linkNumber() const { return linkNumber_; }
    const std::string& originalLinkValue() const { return originalLinkValue_; }

private:
    void showPlaceholder(std::string_view text);
    void reload();
    void previewChangedInPlace();
    void showState();
    void setEditOptionsEnabled(bool enabled);
    std::string layoutFileLocation(size_t layout) const;
    void loadLayout(size_t layout);
    // What becomes of the working copy after an edit: styles wait for Save, link edits are
    // written at once.
    enum class AfterEdit { AwaitSave, WriteNow };
    // The working copy was changed as `preview` says; nothing: the preview loads it again.
    void workingCopyEdited(AfterEdit after, const std::optional<PreviewEdit>& preview);
    void editStyle(const std::function<void(const htmlstyle::Replace&)>& edit);
    StyleControls& controlsOf(htmlstyle::Group group);
    void applyStyle(htmlstyle::Group group, std::string_view pattern, std::string_view property);
    void warnAboutColour(htmlstyle::Group group);
    void fieldAction(bool otherFieldEmpty, std::string message);
    std::optional<MatchSpan> findSelectedLine() const;
    void promoteFirstLink(PreviewEdit& preview);
    // Keeps the text as it was before the working copy's first change; call before changing it.
    void keepOriginal();
    bool workingCopyUnchanged() const;
    void revertWorkingCopy();
    void externalBrowserView(const std::string& html);
    void startPreview();

    ProcessState& process_;
    HtmlView& view_;
    AlertPresenter& alerts_;
    UiThread& ui_;
    std::function<std::string()> shownSiteName_;
    HtmlViewState state_;
    // The text as loaded or last written. Until the working copy first changes it is the
    // working copy itself, so that loading or saving a big layout copies nothing.
    std::string originalHTMLString_;
    bool originalIsWorkingCopy_ = true;
    std::string urlToLoad_;
    size_t firstLayout_ = 0;
    ScrollPosition savedScrollPosition_;
    // Whether the last save without asking wrote the working copy whole.
    bool workingCopyIsOnDisk_ = false;

    // The selected line.
    std::string linkHREFValue_;
    std::string linkTitleValue_;
    std::string linkNumber_;
    std::string linkIdentifier_;
    std::string originalLinkValue_;
    std::string delLink_;
    std::string delTitle_;
    LineEdit lineEdit_ = LineEdit::None;

    std::atomic<bool> cancelExternalViewProcess_{false};
    std::thread previewThread_;
};

}  // namespace loomcrest
