#include <array>
#include <optional>
#include <vector>

#include "Commands.h"
#include "RowNumber.h"
#include "SiteSession.h"
#include "editors/HTMLViewController.h"
#include "editors/HeadlessHtmlView.h"
#include "editors/HtmlStyle.h"
#include "platform/ImmediateUiThread.h"
#include "platform/Regex.h"
#include "platform/Text.h"

namespace loomcrest::cli {

namespace {

using htmlstyle::Group;
using htmlstyle::Underline;

constexpr std::array<std::string_view, 6> kLayoutCodes = {"3c", "2c", "1c", "3cpo", "2cpo", "1cpo"};
constexpr std::array<std::pair<std::string_view, Underline>, 3> kUnderlines = {{
    {"hover", Underline::OnHover},
    {"none", Underline::None},
    {"always", Underline::Always},
}};

std::vector<std::string> choices(std::span<const std::string_view> items) {
    return {items.begin(), items.end()};
}

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

// The style options of one group: "pt" for page titles, "pl" for page links.
struct StyleOptions {
    std::optional<std::string> face;
    std::optional<std::string> size;
    std::optional<std::string> bold;
    std::optional<std::string> italic;
    std::optional<std::string> underline;
    std::optional<std::string> colour;  // as typed into the hex field

    void configure(CLI::App& style, const std::string& prefix, const std::string& group) {
        style.add_option("--" + prefix + "-face", face, "Font face of " + group)
            ->check(CLI::IsMember(choices(htmlstyle::kFontFaces)));
        style.add_option("--" + prefix + "-size", size, "Font size of " + group)
            ->check(CLI::IsMember(choices(htmlstyle::kFontSizes)));
        style.add_option("--" + prefix + "-bold", bold, "on or off")
            ->check(CLI::IsMember({"on", "off"}));
        style.add_option("--" + prefix + "-italic", italic, "on or off")
            ->check(CLI::IsMember({"on", "off"}));
        style.add_option("--" + prefix + "-underline", underline, "hover, none or always")
            ->check(CLI::IsMember({"hover", "none", "always"}));
        style.add_option("--" + prefix + "-colour", colour,
                         "Hex colour, as typed into the colour field");
    }

    void apply(HTMLViewController& html, Group group) const {
        if (face) {
            html.setFontFace(group, *indexOf(htmlstyle::kFontFaces, *face));
        }
        if (size) {
            html.setFontSize(group, *indexOf(htmlstyle::kFontSizes, *size));
        }
        if (bold) {
            html.setBold(group, *bold == "on");
        }
        if (italic) {
            html.setItalic(group, *italic == "on");
        }
        for (const auto& [name, mode] : kUnderlines) {
            if (underline == name) {
                html.setUnderline(group, mode);
            }
        }
        if (colour) {
            html.colourFieldEntered(group, *colour);
        }
    }
};

// `html NAME LAYOUT lines|style|edit|delete|preview`: the HTML sitemap view on one layout.
// Lines count from 1; an edit or deletion acts as a click on the line would.
class HtmlCommand : public Command {
public:
    using Command::Command;

    CLI::App& configure(CLI::App& parent) override {
        CLI::App& html = *parent.add_subcommand(
            "html", "Work on one HTML sitemap layout: lines, style, edit, delete, preview");
        html.add_option("NAME", name_, "Site name")->required();
        html.add_option("LAYOUT", layout_, "3c, 2c, 1c, 3cpo, 2cpo or 1cpo")
            ->required()
            ->check(CLI::IsMember(choices(kLayoutCodes)));
        html.require_subcommand(1);
        lines_ = html.add_subcommand(
            "lines", "The layout's lines: number, title/link, LINKID, title, address (tabs)");
        style_ = html.add_subcommand(
            "style", "Restyle page titles (--pt-) or links (--pl-) and save the layout");
        pageTitles_.configure(*style_, "pt", "page titles");
        pageLinks_.configure(*style_, "pl", "page links");
        CLI::App& edit = *html.add_subcommand("edit", "Change a line's title or address");
        edit.add_option("LINE", line_, "Line number, counted from 1")->required();
        edit.add_option("--title", title_, "New title of the line");
        edit.add_option("--link", link_, "New address of the line");
        delete_ = html.add_subcommand("delete", "Delete a line");
        delete_->add_option("LINE", line_, "Line number, counted from 1")->required();
        preview_ = html.add_subcommand(
            "preview", "Write the layout without its markers to tmpMap.html and print its path");
        return html;
    }

    int run() override {
        SiteSession session(process(), err());
        if (!session.selectSite(name_)) {
            return kExitRefused;
        }
        HeadlessHtmlView view;
        ImmediateUiThread ui;
        HTMLViewController html(process(), view, session.alerts(), ui,
                                [&session] { return session.siteList().state().details.siteName; });
        process().vrlmpCurrentView = 1;
        if (!html.viewTBIAction()) {
            return kExitRefused;
        }
        if (!html.state().editOptionsEnabled) {
            err() << "No sitemap is available for \"" << name_ << "\"; scan the site first.\n";
            return kExitRefused;
        }
        html.changeMapType(*indexOf(kLayoutCodes, layout_));
        if (const auto status = act(html)) {
            return *status;
        }
        return session.exitStatus();
    }

private:
    // The chosen action; an exit status when it ends the command before any alert counts.
    std::optional<int> act(HTMLViewController& html) {
        const std::vector<LayoutLine> lines = layoutLines(process().vrlmpHTMLString);
        if (lines_->parsed()) {
            for (size_t i = 0; i < lines.size(); ++i) {
                out() << i + 1 << '\t' << (lines[i].isTitle ? "title" : "link") << '\t'
                      << lines[i].linkId << '\t' << lines[i].title << '\t' << lines[i].address
                      << '\n';
            }
            return kExitSuccess;
        }
        if (style_->parsed()) {
            pageTitles_.apply(html, Group::PageTitle);
            pageLinks_.apply(html, Group::PageLink);
            if (html.state().saveEnabled) {
                html.saveRecentChanges();
            }
            return std::nullopt;
        }
        if (preview_->parsed()) {
            html.viewSitemapButton();
            html.waitForPreview();
            out() << html.previewFileLocation() << '\n';
            return std::nullopt;
        }
        return editLine(html, lines);
    }

    std::optional<int> editLine(HTMLViewController& html, const std::vector<LayoutLine>& lines) {
        const auto line = rowNumber(line_);
        if (!line) {
            err() << "Name a line number, counted from 1.\n";
            return kExitRefused;
        }
        if (*line > lines.size()) {
            err() << "No line " << *line << " in this layout.\n";
            return kExitRefused;
        }
        const LayoutLine& chosen = lines[*line - 1];
        html.linkClicked(chosen.markedHref, chosen.title);
        if (delete_->parsed()) {
            html.deleteLinkAction();
            return std::nullopt;
        }
        if (!title_ && !link_) {
            err() << "edit: give --title, --link or both.\n";
            return kExitUsage;
        }
        html.setEditFields(title_.value_or(chosen.title), link_.value_or(chosen.address));
        title_ ? html.titleEditInputAction() : html.linkEditInputAction();
        return std::nullopt;
    }

    std::string name_;
    std::string layout_;
    std::string line_;
    std::optional<std::string> title_;
    std::optional<std::string> link_;
    StyleOptions pageTitles_;
    StyleOptions pageLinks_;
    CLI::App* lines_ = nullptr;
    CLI::App* style_ = nullptr;
    CLI::App* delete_ = nullptr;
    CLI::App* preview_ = nullptr;
};

}  // namespace

std::unique_ptr<Command> makeHtmlCommand(CommandContext& context) {
    return std::make_unique<HtmlCommand>(context);
}

}  // namespace loomcrest::cli
