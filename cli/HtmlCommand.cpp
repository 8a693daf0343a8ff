#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "Commands.h"
#include "RowNumber.h"
#include "SiteSession.h"
#include "editors/HTMLViewController.h"
#include "editors/HeadlessHtmlView.h"
#include "editors/HtmlStyle.h"
#include "editors/LayoutLines.h"
#include "platform/HtmlDocument.h"
#include "platform/ImmediateUiThread.h"
#include "platform/Text.h"

namespace loomcrest::cli {

namespace {

using htmlstyle::Group;
using htmlstyle::Underline;

constexpr std::array<std::string_view, 6> kLayoutCodes = {"3c", "2c", "1c", "3cpo", "2cpo", "1cpo"};
constexpr std::array<std::pair<std::string_view, Group>, 2> kGroups = {{
    {"pt", Group::PageTitle},
    {"pl", Group::PageLink},
}};
constexpr std::array<std::pair<std::string_view, Underline>, 3> kUnderlines = {{
    {"hover", Underline::OnHover},
    {"none", Underline::None},
    {"always", Underline::Always},
}};

std::vector<std::string> choices(std::span<const std::string_view> items) {
    return {items.begin(), items.end()};
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
        const size_t layout = *indexOf(kLayoutCodes, layout_);
        html.startWithLayout(layout);
        if (!html.viewTBIAction()) {
            return kExitRefused;
        }
        if (!html.state().editOptionsEnabled) {
            err() << "No sitemap is available for \"" << name_ << "\"; scan the site first.\n";
            return kExitRefused;
        }
        if (const auto status = act(html)) {
            return *status;
        }
        return session.exitStatus();
    }

private:
    // The chosen action; an exit status when it ends the command before any alert counts.
    std::optional<int> act(HTMLViewController& html) {
        if (lines_->parsed()) {
            printLines(process().vrlmpHTMLString);
            return kExitSuccess;
        }
        if (style_->parsed()) {
            return restyle(html);
        }
        if (preview_->parsed()) {
            html.viewSitemapButton();
            html.waitForPreview();
            out() << html.previewFileLocation() << '\n';
            return std::nullopt;
        }
        return editLine(html);
    }

    void printLines(std::string_view html) {
        size_t number = 0;
        forEachMarkedLine(html, [&](const MarkedLine& line) {
            const ClickedLink shown = clickedLink(line);
            out() << ++number << '\t' << (line.isTitle ? "title" : "link") << '\t' << line.linkId
                  << '\t' << shown.label << '\t' << htmlAttributeValue(line.address) << '\n';
            return true;
        });
    }

    // With no option the current style is printed, one property a line.
    std::optional<int> restyle(HTMLViewController& html) {
        if (!anyStyleOptionGiven()) {
            for (const auto& [prefix, group] : kGroups) {
                printStyle(prefix, htmlstyle::readGroupStyle(process().vrlmpHTMLString, group));
            }
            return kExitSuccess;
        }
        pageTitles_.apply(html, Group::PageTitle);
        pageLinks_.apply(html, Group::PageLink);
        if (html.state().saveEnabled) {
            html.saveRecentChanges();
        }
        return std::nullopt;
    }

    bool anyStyleOptionGiven() const {
        const std::vector<CLI::Option*> options = style_->get_options();
        return std::any_of(options.begin(), options.end(),
                           [](const CLI::Option* option) { return option->count() > 0; });
    }

    void printStyle(std::string_view prefix, const htmlstyle::GroupStyle& style) {
        std::string_view underline = "mixed";
        for (const auto& [name, mode] : kUnderlines) {
            if (style.underline == mode) {
                underline = name;
            }
        }
        out() << prefix << " font-family: " << style.fontFamily << '\n'
              << prefix << " font-size: " << style.fontSize << '\n'
              << prefix << " font-weight: " << style.fontWeight << '\n'
              << prefix << " font-style: " << style.fontStyle << '\n'
              << prefix << " color: " << style.colour << '\n'
              << prefix << " underline: " << underline << '\n';
    }

    std::optional<int> editLine(HTMLViewController& html) {
        const auto line = rowNumber(line_);
        if (!line) {
            err() << "Name a line number, counted from 1.\n";
            return kExitRefused;
        }
        const std::vector<MarkedLine> lines = markedLines(process().vrlmpHTMLString, *line);
        if (*line > lines.size()) {
            err() << "No line " << *line << " in this layout.\n";
            return kExitRefused;
        }
        if (!delete_->parsed() && !title_ && !link_) {
            err() << "edit: give --title, --link or both.\n";
            return kExitUsage;
        }
        // A click reports the address and the label as the browser reads them.
        const ClickedLink clicked = clickedLink(lines[*line - 1]);
        html.linkClicked(clicked.address, clicked.label);
        if (delete_->parsed()) {
            html.deleteLinkAction();
        } else {
            html.setEditFields(title_.value_or(html.state().titleField),
                               link_.value_or(html.state().linkField));
            title_ ? html.titleEditInputAction() : html.linkEditInputAction();
        }
        if (html.lastLineEdit() == HTMLViewController::LineEdit::NotFound) {
            err() << "Line " << *line << " could not be found again in the layout; nothing was "
                  << (delete_->parsed() ? "deleted" : "changed") << ".\n";
            return kExitRefused;
        }
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
