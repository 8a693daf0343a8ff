#include <chrono>
#include <cstdint>

#include "app/ProcessState.h"
#include "editors/HTMLViewController.h"
#include "editors/LayoutRebuild.h"
#include "editors/SitemapLayouts.h"
#include "editors/UnsavedChanges.h"
#include "platform/FileSystem.h"
#include "platform/Regex.h"
#include "platform/Text.h"
#include "sites/SiteFile.h"

namespace loomcrest {

namespace {

// A sheet that follows another opens half a second later, once the first has closed.
constexpr std::chrono::milliseconds kSheetDelay{500};

std::string anchor(std::string_view href, std::string_view number, std::string_view title) {
    return "<a href=\"" + std::string(href) + "---LINKID:" + std::string(number) + "---\">" +
           std::string(title) + "<!-- LINKID: " + std::string(number) + " --></a>";
}

std::optional<std::string> firstMatch(std::string_view text, const std::string& pattern) {
    const auto match = Regex(pattern).firstMatch(text);
    return match ? std::optional<std::string>(match->whole()) : std::nullopt;
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
    linkTitleValue_ = replaceAll(label, "&", "&amp;");
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
    const std::string title = replaceAll(state_.titleField, "&", "&amp;");
    const std::string replacement = anchor(state_.linkField, linkNumber_, title);
    std::string html = process_.vrlmpHTMLString;
    if (containsIgnoringCase(html, originalLinkValue_)) {
        html = replaceAll(html, originalLinkValue_, replacement);
    } else if (const std::string unescaped = replaceAll(originalLinkValue_, "&amp;", "&");
               containsIgnoringCase(html, unescaped)) {
        html = replaceAll(html, unescaped, replacement);
    }
    originalLinkValue_ = replacement;
    applyEdit(std::move(html), AfterEdit::WriteNow);
}

void HTMLViewController::deleteLinkAction() {
    if (!hasLayout() || !state_.deleteEnabled) {
        return;  // no line is selected
    }
    if (originalHTMLString_ == process_.vrlmpHTMLString) {
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
                originalHTMLString_ = process_.vrlmpHTMLString;
                saveActive();
                ui_.performAfter(kSheetDelay, [this] { linkDeletion(); });
            } else if (returnCode == kOtherButtonCode) {
                process_.vrlmpHTMLString = originalHTMLString_;
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

void HTMLViewController::linkDeletion() {
    // Only question marks are escaped: other pattern characters in an address or title are
    // taken as a pattern.
    const std::string pattern =
        replaceAll("<div .*>" + anchor(delLink_, linkNumber_, delTitle_) + "</div>", "?", "\\?");
    if (const auto line = firstMatch(process_.vrlmpHTMLString, pattern)) {
        process_.vrlmpHTMLString = replaceAll(process_.vrlmpHTMLString, "\n\t\t\t" + *line, "");
        if (containsIgnoringCase(*line, "zplPageTitle")) {
            promoteFirstLink();
        }
        checkForEmptyColumn();
    }
    forgetSelection();
    applyEdit(process_.vrlmpHTMLString, AfterEdit::WriteNow);
}

// The line that followed a deleted page title carries the next number still present; when
// it is a link of the same page it becomes the page's title line.
void HTMLViewController::promoteFirstLink() {
    const std::string siteFile = readSiteFile(shownSiteName_());
    const int total =
        leadingIntegerValue(readSiteField(siteFile, SiteField::TotalLinks).value_or(""));
    // Wide enough that a number read at its limit still has a next one.
    const int64_t number = leadingIntegerValue(linkNumber_);
    int64_t next = number + 1;
    auto following =
        firstMatch(process_.vrlmpHTMLString,
                   "<div .*><a .*---\">.*<!-- LINKID: " + std::to_string(next) + " --></a></div>");
    if (!following) {
        for (int64_t candidate = number + 2; number + 1 < total && candidate <= total;
             ++candidate) {
            next = candidate;
            following = firstMatch(process_.vrlmpHTMLString,
                                   "<div .*---LINKID:" + std::to_string(candidate) + "---.*</div>");
            if (following) {
                break;
            }
        }
        linkNumber_ = std::to_string(next);
    }
    if (following && following->starts_with("<div class=\"zplPageLink\"")) {
        process_.vrlmpHTMLString =
            replaceAll(process_.vrlmpHTMLString, *following,
                       replaceAll(*following, "zplPageLink", "zplPageTitle"));
    }
}

void HTMLViewController::checkForEmptyColumn() {
    bool removedAny = false;
    const std::vector<std::string> cells = cellsToKeep(process_.vrlmpHTMLString, removedAny);
    if (removedAny) {
        rebuildSitemaps(cells);
    }
}

void HTMLViewController::rebuildSitemaps(const std::vector<std::string>& cells) {
    const std::string path = layoutFileLocation(state_.layout);
    const std::string onDisk = readTextFile(path).value_or("");
    // The head, and with it the style, comes from the file, not from the working copy.
    const std::string head = onDisk.substr(0, std::min(onDisk.find("<body>"), onDisk.size()));
    if (!writeLayout(path, rebuiltLayout(head, kSitemapLayouts.at(state_.layout).columns, cells),
                     alerts_)) {
        return;
    }
    process_.vrlmpHTMLString = readTextFile(path).value_or("");
    originalHTMLString_ = process_.vrlmpHTMLString;
    reload();
}

}  // namespace loomcrest
