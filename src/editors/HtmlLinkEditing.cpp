#include <chrono>
#include <cstdint>

#include "app/ProcessState.h"
#include "editors/HTMLViewController.h"
#include "editors/LayoutRebuild.h"
#include "editors/LayoutSearch.h"
#include "editors/SitemapLayouts.h"
#include "editors/UnsavedChanges.h"
#include "platform/FileSystem.h"
#include "platform/Regex.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sites/SiteFile.h"

namespace loomcrest {

namespace {

// A sheet that follows another opens half a second later, once the first has closed.
constexpr std::chrono::milliseconds kSheetDelay{500};

std::string anchor(std::string_view href, std::string_view number, std::string_view title) {
    return "<a href=\"" + std::string(href) + "---LINKID:" + std::string(number) + "---\">" +
           std::string(title) + "<!-- LINKID: " + std::string(number) + " --></a>";
}

std::string text(std::string_view html, const MatchSpan& span) {
    return std::string(html.substr(span.begin, span.end - span.begin));
}

bool allDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The tail every line ends with: the marker comment and the closing tags.
std::string lineTail(std::string_view number) {
    return "<!-- LINKID: " + std::string(number) + " --></a></div>";
}

// "&amp;", "&lt;" and "&gt;" read back in one pass, as older layouts wrote titles.
std::string withMarkupUnescaped(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const std::string_view rest = text.substr(i);
        if (rest.starts_with("&amp;")) {
            plain += '&';
            i += 4;
        } else if (rest.starts_with("&lt;")) {
            plain += '<';
            i += 3;
        } else if (rest.starts_with("&gt;")) {
            plain += '>';
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

bool containsAnyCase(std::string_view html, std::string_view text) {
    return html.find(text) != std::string_view::npos || containsIgnoringCase(html, text);
}

}  // namespace

void HTMLViewController::linkClicked(std::string_view address, std::string_view label) {
    linkHREFValue_ = address;
    linkTitleValue_ = label;
    if (address.empty()) {
        state_.deleteEnabled = false;
        showState();
        return;
    }
    state_.titleField = label;
    const std::string href(address);
    static const Regex markerPattern("---.*---");
    static const Regex numberPattern("---LINKID:(.*)---");
    const auto marker = markerPattern.firstMatch(href);
    const auto number = numberPattern.firstMatch(href);
    const std::string markerText = marker ? marker->whole() : std::string();
    linkNumber_ = number ? number->capture(1).value_or("") : std::string();
    linkTitleValue_ = escapeMarkup(label);
    originalLinkValue_ =
        "<a href=\"" + href + "\">" + linkTitleValue_ + "<!-- LINKID: " + linkNumber_ + " --></a>";
    const std::string plainHref = replaceAll(href, markerText, "");
    state_.linkField = plainHref;
    linkIdentifier_ = markerText;
    delTitle_ = linkTitleValue_;
    delLink_ = plainHref;
    state_.deleteEnabled = true;
    showState();
}

void HTMLViewController::setEditFields(std::string title, std::string link) {
    state_.titleField = std::move(title);
    state_.linkField = std::move(link);
}

void HTMLViewController::forgetSelection() {
    for (std::string* part :
         {&linkHREFValue_, &linkTitleValue_, &linkNumber_, &linkIdentifier_, &originalLinkValue_,
          &delLink_, &delTitle_, &state_.titleField, &state_.linkField}) {
        part->clear();
    }
    state_.deleteEnabled = false;
    showState();
}

void HTMLViewController::titleEditInputAction() {
    if (!state_.titleField.empty()) {
        editLinkAndTitle();
        delTitle_.clear();
        delLink_.clear();
        return;
    }
    fieldAction(state_.linkField.empty(),
                "The title field cannot be left blank, please enter a title for this page.");
}

void HTMLViewController::linkEditInputAction() {
    if (!state_.linkField.empty()) {
        editLinkAndTitle();
        delTitle_.clear();
        delLink_.clear();
        return;
    }
    fieldAction(state_.titleField.empty(),
                "The link field cannot be left blank, please enter the link for this page.");
}

void HTMLViewController::fieldAction(bool otherFieldEmpty, std::string message) {
    if (otherFieldEmpty) {
        return;
    }
    alerts_.presentAlert(Alert::refusalOffering(std::move(message), "Delete This Link"),
                         [this](int returnCode) {
                             if (returnCode != kDefaultButtonCode) {
                                 ui_.performAfter(kSheetDelay, [this] { beginLinkDeletion(); });
                             }
                         });
    state_.titleField.clear();
    state_.linkField.clear();
    showState();
    reload();
}

void HTMLViewController::editLinkAndTitle() {
    if (!hasLayout()) {
        return;  // a placeholder is shown: the working copy may be another site's
    }
    const std::string replacement =
        anchor(escapeAddress(state_.linkField), linkNumber_, escapeMarkup(state_.titleField));
    const std::string& html = process_.vrlmpHTMLString;
    // The anchor as the click rebuilt it, or as older layouts wrote it. A form found only in
    // another letter case is replaced nowhere.
    std::optional<std::string> form;
    if (containsAnyCase(html, originalLinkValue_)) {
        form = originalLinkValue_;
    } else if (std::string older = withMarkupUnescaped(originalLinkValue_);
               containsAnyCase(html, older)) {
        form = std::move(older);
    }
    originalLinkValue_ = replacement;
    keepOriginal();
    PreviewEdit preview;
    const size_t count =
        form ? layoutsearch::replaceInPlace(process_.vrlmpHTMLString, *form, replacement).count : 0;
    lineEdit_ = count > 0 ? LineEdit::Done : LineEdit::NotFound;
    if (count > 0) {
        preview.replacements.push_back({*std::move(form), replacement, count});
    }
    workingCopyEdited(AfterEdit::WriteNow, preview);
}

void HTMLViewController::deleteLinkAction() {
    if (!hasLayout() || !state_.deleteEnabled) {
        return;  // no line is selected
    }
    if (workingCopyUnchanged()) {
        beginLinkDeletion();
        return;
    }
    // Both answers that go on delete without the confirmation of beginLinkDeletion.
    alerts_.presentAlert(
        unsavedChangesQuestion(UnsavedChangesMoment::LinkDeletion), [this](int returnCode) {
            if (returnCode == kDefaultButtonCode) {
                if (!writeLayout(shownFileLocation(), process_.vrlmpHTMLString, alerts_)) {
                    return;
                }
                originalIsWorkingCopy_ = true;
                saveActive();
                ui_.performAfter(kSheetDelay, [this] { linkDeletion(); });
            } else if (returnCode == kOtherButtonCode) {
                revertWorkingCopy();
                ui_.performAfter(kSheetDelay, [this] { linkDeletion(); });
                setPopupButtons();
            }
        });
}

void HTMLViewController::beginLinkDeletion() {
    alerts_.presentAlert(
        Alert::question("Are you absolutely sure you want to remove this link from your "
                        "sitemap, deleted links cannot be restored.",
                        "This could take a while for large sites.", "Delete Link", "", "Cancel"),
        [this](int returnCode) {
            if (returnCode == kDefaultButtonCode) {
                linkDeletion();
            }
        });
}

std::optional<MatchSpan> HTMLViewController::findSelectedLine() const {
    // Only question marks are escaped: other pattern characters in an address or title are
    // taken as a pattern.
    const Regex pattern(
        replaceAll("<div .*>" + anchor(delLink_, linkNumber_, delTitle_) + "</div>", "?", "\\?"));
    const std::string& html = process_.vrlmpHTMLString;
    if (allDigits(linkNumber_) && layoutsearch::keepsToOneLine(delLink_) &&
        layoutsearch::keepsToOneLine(delTitle_)) {
        return layoutsearch::firstMatchOnLinesHolding(html, pattern, lineTail(linkNumber_));
    }
    return pattern.find(html);
}

void HTMLViewController::linkDeletion() {
    if (!hasLayout()) {
        return;
    }
    std::optional<PreviewEdit> preview = PreviewEdit{};
    const auto found = findSelectedLine();
    lineEdit_ = found ? LineEdit::Done : LineEdit::NotFound;
    if (found) {
        keepOriginal();
        const std::string line = text(process_.vrlmpHTMLString, *found);
        const size_t count =
            layoutsearch::replaceInPlace(process_.vrlmpHTMLString, "\n\t\t\t" + line, "").count;
        preview->replacements.push_back({line, std::nullopt, count});
        if (containsIgnoringCase(line, "zplPageTitle")) {
            promoteFirstLink(*preview);
        }
        checkForEmptyColumn(preview);
    }
    forgetSelection();
    workingCopyEdited(AfterEdit::WriteNow, preview);
}

// The line that followed a deleted page title carries the next number still present; when
// it is a link of the same page it becomes the page's title line.
void HTMLViewController::promoteFirstLink(PreviewEdit& preview) {
    const std::string siteFile = readSiteFile(shownSiteName_());
    const int64_t total =
        leadingIntegerValue(readSiteField(siteFile, SiteField::TotalLinks).value_or(""));
    const int64_t number = leadingIntegerValue(linkNumber_);
    std::string& html = process_.vrlmpHTMLString;
    const std::string nextTail = lineTail(std::to_string(number + 1));
    auto following = layoutsearch::firstMatchOnLinesHolding(
        html, Regex("<div .*><a .*---\">.*" + nextTail), nextTail);
    if (!following) {
        // The numbers are looked for in rising order; one pass finds the smallest present.
        int64_t next = number + 1;
        if (number + 1 < total) {
            const auto numbered = layoutsearch::firstLineNumberedBetween(html, number + 2, total);
            next = numbered ? numbered->number : total;
            following = numbered ? std::optional(numbered->span) : std::nullopt;
        }
        linkNumber_ = std::to_string(next);
    }
    if (!following) {
        return;
    }
    const std::string line = text(html, *following);
    if (line.starts_with("<div class=\"zplPageLink\"")) {
        std::string title = replaceAll(line, "zplPageLink", "zplPageTitle");
        const size_t count = layoutsearch::replaceInPlace(html, line, title).count;
        preview.replacements.push_back({line, std::move(title), count});
    }
}

void HTMLViewController::checkForEmptyColumn(std::optional<PreviewEdit>& preview) {
    bool removedAny = false;
    size_t firstDropped = 0;
    const std::vector<std::string_view> cells =
        cellsToKeep(process_.vrlmpHTMLString, removedAny, &firstDropped);
    if (!removedAny) {
        return;
    }
    // `cells` point into the working copy, which is replaced once the new text is built.
    std::string rebuilt = rebuildSitemaps(cells);
    auto rows = rowChange(process_.vrlmpHTMLString, firstDropped, rebuilt,
                          kSitemapLayouts.at(state_.layout).columns);
    process_.vrlmpHTMLString = std::move(rebuilt);
    if (preview && rows) {
        preview->rows = std::move(rows);
    } else {
        preview.reset();
    }
}

std::string HTMLViewController::rebuildSitemaps(std::span<const std::string_view> cells) const {
    // The head, and with it the style, comes from the file, not from the working copy.
    const std::string head =
        readTextFileUpTo(layoutFileLocation(state_.layout), "<body>").value_or("");
    return rebuiltLayout(head, kSitemapLayouts.at(state_.layout).columns, cells);
}

}  // namespace loomcrest
