#include "HtmlCommands.h"

#include <array>

#include "RowNumber.h"
#include "SiteCommands.h"
#include "SiteSession.h"
#include "app/ProcessState.h"
#include "editors/HTMLViewController.h"
#include "editors/HtmlStyle.h"
#include "platform/ImmediateUiThread.h"
#include "platform/Regex.h"
#include "platform/Text.h"

namespace loomcrest::cli {

namespace {

using htmlstyle::Group;

constexpr std::array<std::string_view, 6> kLayoutCodes = {"3c", "2c", "1c", "3cpo", "2cpo", "1cpo"};

class HeadlessHtmlView : public HtmlView {
public:
    void htmlViewChanged(const HtmlViewState&) override {}
    void loadPreview(std::string_view) override {}
    void showPreviewPanel(bool) override {}
    void setPreviewProgress(double, double) override {}
    void openWithDefaultApplication(const std::string&) override {}
};

// One line of a layout as a click on it would report it.
struct LayoutLine {
    bool isTitle = false;
    std::string linkId;
    std::string title;       // as shown, "&amp;" read as "&"
    std::string address;     // without its marker
    std::string markedHref;  // as the href stands
};

std::vector<LayoutLine> layoutLines(std::string_view html) {
    static const Regex linePattern(
        R"re(<div class="(zplPageTitle|zplPageLink)"><a href="(.*)---LINKID:(\d+)---">(.*)<!-- LINKID: \d+ --></a></div>)re");
    std::vector<LayoutLine> lines;
    for (const std::string& text : split(html, '\n')) {
        const auto match = linePattern.firstMatch(text);
        if (!match) {
            continue;
        }
        LayoutLine line;
        line.isTitle = match->capture(1) == "zplPageTitle";
        line.address = match->capture(2).value_or("");
        line.linkId = match->capture(3).value_or("");
        line.title = replaceAll(match->capture(4).value_or(""), "&amp;", "&");
        line.markedHref = line.address + "---LINKID:" + line.linkId + "---";
        lines.push_back(std::move(line));
    }
    return lines;
}

std::optional<size_t> lineIndex(const std::vector<std::string>& arguments, size_t lines,
                                std::ostream& err) {
    const auto line = arguments.size() == 2 ? rowNumber(arguments[1]) : std::nullopt;
    if (!line) {
        err << "Name a line number, counted from 1.\n";
        return std::nullopt;
    }
    if (*line > lines) {
        err << "No line " << *line << " in this layout.\n";
        return std::nullopt;
    }
    return *line - 1;
}

// Applies the given style options of one group; false on an option value that is not offered.
bool applyStyle(HTMLViewController& html, Group group, const StyleOptions& options,
                std::ostream& err) {
    const bool titles = group == Group::PageTitle;
    if (options.face) {
        const auto face = indexOf(htmlstyle::kFontFaces, *options.face);
        if (!face) {
            err << "Unknown face \"" << *options.face << "\".\n";
            return false;
        }
        titles ? html.ptFontFamily(*face) : html.plFontFamily(*face);
    }
    if (options.size) {
        const auto size = indexOf(htmlstyle::kFontSizes, *options.size);
        if (!size) {
            err << "Unknown size \"" << *options.size << "\".\n";
            return false;
        }
        titles ? html.ptFontSize(*size) : html.plFontSize(*size);
    }
    if (options.bold) {
        titles ? html.ptFontStyleBold(*options.bold == "on")
               : html.plFontStyleBold(*options.bold == "on");
    }
    if (options.italic) {
        titles ? html.ptFontStyleItalic(*options.italic == "on")
               : html.plFontStyleItalic(*options.italic == "on");
    }
    if (options.underline == "always") {
        titles ? html.ptUnderlineAll() : html.plUnderlineAll();
    } else if (options.underline == "none") {
        titles ? html.ptUnderlineNone() : html.plUnderlineNone();
    } else if (options.underline == "hover") {
        titles ? html.ptUnderlineOnHover() : html.plUnderlineOnHover();
    }
    if (options.colour) {
        titles ? html.ptFontColourFieldAction(*options.colour)
               : html.plFontColourFieldAction(*options.colour);
    }
    return true;
}

// The questions that stand for a refused entry rather than a confirmation.
bool refusedByQuestion(const ConsoleAlerts& alerts) {
    for (const Alert& alert : alerts.shown()) {
        if (alert.title.starts_with("The colour much be") ||
            alert.title.starts_with("The title field cannot be left blank") ||
            alert.title.starts_with("The link field cannot be left blank")) {
            return true;
        }
    }
    return false;
}

}  // namespace

int runHtmlCommand(const HtmlRequest& request, std::ostream& out, std::ostream& err) {
    const auto layout = indexOf(kLayoutCodes, request.layout);
    if (!layout || request.arguments.empty()) {
        err << "Usage: loomcrest html NAME 3c|2c|1c|3cpo|2cpo|1cpo lines|style|edit LINE|"
               "delete LINE|preview\n";
        return kExitUsage;
    }
    SiteSession session(err);
    if (!session.selectSite(request.name)) {
        return kExitRefused;
    }
    HeadlessHtmlView view;
    ImmediateUiThread ui;
    HTMLViewController html(view, session.alerts(), ui,
                            [&session] { return session.siteList().state().details.siteName; });
    vrlmpCurrentView = 1;
    if (!html.viewTBIAction()) {
        return kExitRefused;
    }
    if (!html.state().editOptionsEnabled) {
        err << "No sitemap is available for \"" << request.name << "\"; scan the site first.\n";
        return kExitRefused;
    }
    html.changeMapType(*layout);

    const std::string& action = request.arguments[0];
    const std::vector<LayoutLine> lines = layoutLines(vrlmpHTMLString);
    if (action == "lines") {
        for (size_t i = 0; i < lines.size(); ++i) {
            out << i + 1 << '\t' << (lines[i].isTitle ? "title" : "link") << '\t' << lines[i].linkId
                << '\t' << lines[i].title << '\t' << lines[i].address << '\n';
        }
        return kExitSuccess;
    }
    if (action == "style") {
        if (!applyStyle(html, Group::PageTitle, request.pageTitles, err) ||
            !applyStyle(html, Group::PageLink, request.pageLinks, err)) {
            return kExitUsage;
        }
        if (html.state().saveEnabled) {
            html.saveRecentChanges();
        }
    } else if (action == "edit" || action == "delete") {
        const auto line = lineIndex(request.arguments, lines.size(), err);
        if (!line) {
            return kExitRefused;
        }
        const LayoutLine& chosen = lines[*line];
        html.linkClicked(chosen.markedHref, chosen.title);
        if (action == "delete") {
            html.deleteLinkAction();
        } else if (!request.title && !request.link) {
            err << "edit: give --title, --link or both.\n";
            return kExitUsage;
        } else {
            html.setEditFields(request.title.value_or(chosen.title),
                               request.link.value_or(chosen.address));
            request.title ? html.titleEditInputAction() : html.linkEditInputAction();
        }
    } else if (action == "preview") {
        html.viewSitemapButton();
        html.waitForPreview();
        out << html.previewFileLocation() << '\n';
    } else {
        err << "Unknown action \"" << action << "\".\n";
        return kExitUsage;
    }
    return session.alerts().anyAlertShown() || refusedByQuestion(session.alerts()) ? kExitRefused
                                                                                   : kExitSuccess;
}

}  // namespace loomcrest::cli
