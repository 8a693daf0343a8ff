#include "editors/HTMLViewController.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "app/ProcessState.h"
#include "platform/FileSystem.h"
#include "platform/ImmediateUiThread.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/LayoutMarkup.h"
#include "sitemap/SitemapFiles.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"
#include "support/LayoutPieces.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"
#include "support/TextChecks.h"

namespace loomcrest {
namespace {

using namespace test;
using namespace layoutmarkup;
using htmlstyle::Group;
using htmlstyle::Rgb;
using htmlstyle::Underline;

class RecordingHtmlView : public HtmlView {
public:
    void htmlViewChanged(const HtmlViewState& newState) override { state = newState; }
    void loadPreview(std::string_view html) override {
        preview = html;
        ++loads;
    }
    void updatePreview(std::string_view html, const PreviewEdit& edit) override {
        preview = html;
        edits.push_back(edit);
    }
    void showPreviewPanel(bool shown) override { panelShown = shown; }
    void setPreviewProgress(double, double) override {}
    void openWithDefaultApplication(const std::string& path) override { opened.push_back(path); }

    HtmlViewState state;
    std::string preview;
    int loads = 0;
    std::vector<PreviewEdit> edits;
    bool panelShown = false;
    std::vector<std::string> opened;
};

// A group's controls as "face size [bold] [italic] underline field (well)".
std::string shown(const StyleControls& c) {
    const auto index = [](std::optional<size_t> i) { return i ? std::to_string(*i) : "-"; };
    std::ostringstream text;
    text << index(c.face) << ' ' << index(c.size) << (c.bold ? " bold" : "")
         << (c.italic ? " italic" : "") << " underline " << static_cast<int>(c.underline) << ' '
         << c.colourField << " (" << c.colourWell.red << ',' << c.colourWell.green << ','
         << c.colourWell.blue << ')';
    return text.str();
}

// The whole state of the view, one line for its fields and one for each group's controls.
std::string shown(const HtmlViewState& s) {
    return std::string(s.editOptionsEnabled ? "edit " : "") + (s.saveEnabled ? "save " : "") +
           (s.deleteEnabled ? "delete " : "") + std::to_string(s.layout) + " " + s.layoutLabel +
           "|" + s.titleField + "|" + s.linkField + "\npt " + shown(s.pt) + "\npl " + shown(s.pl);
}

// Two pages, as a scan writes them into the three-column all-links layout.
std::string threeColumnLayout() {
    const std::string first = pageTitleLine("http://h/", 0, "Home") +
                              linkLine("http://h/a.html", 2, "Tom & Jerry") +
                              linkLine("http://h/b.html", 3, "B");
    const std::string second =
        pageTitleLine("http://h/a.html", 3, "A page") + linkLine("http://h/", 5, "Back home");
    return std::string(htmlSitemapHead()) + std::string(kTableOpening) + std::string(kRowOpening) +
           first + std::string(kCellSeparator) + second + std::string(kCellSeparator) +
           std::string(kPaddedRowEnd);
}

std::string oneColumnLayout(const std::vector<std::string>& lines) {
    std::string text(htmlSitemapHead());
    for (const std::string& line : lines) {
        text += oneColumnPiece(line);
    }
    return text + std::string(kOneColumnEnd);
}

class HtmlEditor : public testing::Test {
protected:
    void SetUp() override {
        process.vrlmpCurSite = "Site";
        writeFile(layout("sitemap3c.html"), threeColumnLayout());
        writeFile(layout("sitemap2c.html"), "two columns");
        writeFile(returnFullFileLocation("Site"),
                  newSiteFileText("Site", "http://h/") + "\n<pagesUsed>2</pagesUsed>");
        writeSiteStatistics("Site", 5, 3, 2);
        controller.firstLoad();
    }
    std::string layout(const std::string& file) const { return home.dataRoot() + "/Site/" + file; }

    TemporaryHome home;
    RecordingHtmlView view;
    RecordingAlerts alerts;
    ImmediateUiThread ui;
    std::string siteName = "Site";
    ProcessState process;
    HTMLViewController controller{process, view, alerts, ui, [this] { return siteName; }};
};

TEST_F(HtmlEditor, FirstLoadShowsTheThreeColumnLayoutAndReadsItsStyle) {
    EXPECT_EQ(process.vrlmpHTMLString, threeColumnLayout());
    EXPECT_EQ(view.preview, threeColumnLayout());
    EXPECT_EQ(process.vrlmpUTLLoc, layout("sitemap3c.html"));
    EXPECT_EQ(controller.urlToLoad(), "file://" + layout("sitemap3c.html"));
    EXPECT_EQ(shown(view.state),
              "edit 0 Three Columns, All Links||\n"
              "pt 1 3 bold underline 0 #000000 (0,0,0)\n"
              "pl 1 2 underline 0 #0000FF (0,0,1)");

    controller.changeMapType(1);
    EXPECT_EQ(process.vrlmpHTMLString, "two columns");
    EXPECT_EQ(process.vrlmpUTLLoc, layout("sitemap2c.html"));
    EXPECT_EQ(view.state.layoutLabel, "Two Columns, All Links");
}

// Each style edit rewrites its own lines of the working copy, shows in the controls and is not
// saved; the edit that brings back the file's bytes turns the save state off.
TEST_F(HtmlEditor, StyleEditsRewriteOnlyTheirLines) {
    const auto underline = [this](Underline mode) {
        return [this, mode] { controller.setUnderline(Group::PageTitle, mode); };
    };
    const auto colour = [this](const char* entry) {
        return [this, entry] { controller.colourFieldEntered(Group::PageTitle, entry); };
    };
    // The title's four link-state rules, as a scan writes them: underlined on hover only.
    const std::string head(htmlSitemapHead());
    const size_t rules = head.find("\t.zplPageTitle a:active");
    const std::string onHover = head.substr(rules, head.find("\n\t.zplPageLink") - rules);
    const std::string always = replaceAll(onHover, "none", "underline");
    const std::string never = replaceAll(onHover, "underline", "none");
    const std::tuple<std::function<void()>, std::string, std::string> edits[] = {
        {underline(Underline::Always), onHover, always},
        {underline(Underline::None), always, never},
        {underline(Underline::OnHover), never, onHover},
        {[this] { controller.setFontSize(Group::PageLink, 5); }, "serif;\n\t\tfont-size: 1em;",
         "serif;\n\t\tfont-size: 1.3em;"},
        {[this] { controller.setBold(Group::PageTitle, false); },
         "\t\tfont-weight: bold;\n\t\tfont-style", "\t\tfont-weight: normal;\n\t\tfont-style"},
        {[this] { controller.setItalic(Group::PageLink, true); },
         "\t\tfont-style: normal;\n\t\tfont-family", "\t\tfont-style: italic;\n\t\tfont-family"},
        {colour("#ff8800"), "color: #000000;", "color: #ff8800;"},
        {colour("00FF00"), "color: #ff8800;", "color: #00FF00;"},
    };
    std::string expected = threeColumnLayout();
    for (const auto& [edit, from, to] : edits) {
        SCOPED_TRACE(to);
        edit();
        ASSERT_NE(expected.find(from), std::string::npos);
        expected.replace(expected.find(from), from.size(), to);
        EXPECT_EQ(process.vrlmpHTMLString, expected);
        EXPECT_EQ(view.state.saveEnabled, expected != threeColumnLayout());
        EXPECT_EQ(process.vrlmpNeedsSave, expected != threeColumnLayout());
    }
    EXPECT_EQ(shown(view.state),
              "edit save 0 Three Columns, All Links||\n"
              "pt 1 3 underline 0 00FF00 (0,1,0)\n"
              "pl 1 5 italic underline 0 #0000FF (0,0,1)");
    controller.setUnderline(Group::PageTitle, Underline::None);
    controller.setPopupButtons();
    EXPECT_EQ(view.state.pt.underline, Underline::None) << "as read back from the working copy";
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_EQ(fileContents(layout("sitemap3c.html")), threeColumnLayout()) << "not saved yet";
}

TEST_F(HtmlEditor, HexEntriesAndTheirConversions) {
    controller.colourFieldEntered(Group::PageTitle, "#12345");
    EXPECT_EQ(process.vrlmpHTMLString, threeColumnLayout());
    alerts.answers = {kOtherButtonCode};
    controller.colourFieldEntered(Group::PageLink, "#ff88001a");
    const std::string warning =
        "Refusal: The colour much be 6 characters, (7 with begining #) please check the colour "
        "hex value you entered. |  [OK] [Reset]";
    EXPECT_EQ(alerts.described(), std::vector<std::string>(2, warning))
        << "the entry is used anyway";
    EXPECT_EQ(alerts.shown[0].otherButton, "Reset") << "its slot gives the code answered";
    EXPECT_EQ(process.vrlmpHTMLString,
              replaceAll(threeColumnLayout(), "color: #0000FF;", "color: #ff88001a;"));
    EXPECT_EQ(view.state.pl.colourWell, (Rgb{0, 0, 1})) << "eight hex digits leave the well";
    EXPECT_EQ(view.state.pl.colourField, "#0000FF") << "Reset puts the well's colour back";

    EXPECT_EQ(HTMLViewController::getHEXValue(Rgb{1, 0.5, 0}), "#FF7F00");
}

// Another view taking the window, the save button and a layout switch each ask before they
// save or drop unsaved edits.
TEST_F(HtmlEditor, UnsavedEditsAreSavedOrDroppedAfterAQuestion) {
    controller.setFontSize(Group::PageTitle, 6);
    HTMLViewController::checkSave(process, alerts);
    EXPECT_EQ(fileContents(layout("sitemap3c.html")), process.vrlmpHTMLString);
    EXPECT_FALSE(process.vrlmpNeedsSave);
    HTMLViewController::checkSave(process, alerts);  // nothing to save, nothing asked

    controller.setFontSize(Group::PageLink, 0);
    controller.saveRecentChanges();
    const std::string saved = fileContents(layout("sitemap3c.html"));
    EXPECT_EQ(saved, process.vrlmpHTMLString);
    EXPECT_FALSE(view.state.saveEnabled);

    controller.changeMapType(1);
    controller.setFontSize(Group::PageLink, 6);
    alerts.answers = {kOtherButtonCode};
    controller.saveNow("savebutton");
    EXPECT_EQ(view.state.layout, 0U) << "cancelling drops the edits and shows the first layout";
    EXPECT_EQ(fileContents(layout("sitemap2c.html")), "two columns");

    controller.setFontSize(Group::PageTitle, 0);
    alerts.answers = {kOtherButtonCode};
    controller.changeMapType(1);
    EXPECT_EQ(process.vrlmpHTMLString, "two columns");
    EXPECT_EQ(process.vrlmpUTLLoc, layout("sitemap3c.html")) << "only a direct switch moves it";
    EXPECT_EQ(fileContents(layout("sitemap3c.html")), saved);

    const std::string saveButton =
        "Question: Are you sure you want to save the changes you have "
        "made? |  [Save Changes] [Cancel]";
    EXPECT_EQ(alerts.described(),
              (std::vector<std::string>{
                  "Question: Changes have been made to this sitemap, would you like to save "
                  "before proceeding? |  [Save Changes] [Discard]",
                  saveButton, saveButton,
                  "Question: Changes have been made to the look of this sitemap, would you like to "
                  "save these changes? |  [Save Changes] [Discard]"}));
}

TEST_F(HtmlEditor, AClickFillsTheFieldsAndAnEditRewritesOrDeletesTheLine) {
    EXPECT_TRUE(controller.shouldAllowNavigation("about:blank"));
    EXPECT_FALSE(controller.shouldAllowNavigation("http://h/a.html---LINKID:2---"));
    controller.linkClicked("http://h/a.html---LINKID:2---", "Tom & Jerry");
    EXPECT_TRUE(shown(view.state)
                    .starts_with("edit delete 0 Three Columns, All Links|Tom & "
                                 "Jerry|http://h/a.html\n"));

    controller.setEditFields("Tom & Jerry's", "http://h/tom.html");
    controller.titleEditInputAction();
    controller.setEditFields("Tom", "http://h/tom.html");
    controller.linkEditInputAction();
    EXPECT_EQ(fileContents(layout("sitemap3c.html")),
              replaceAll(threeColumnLayout(), linkLine("http://h/a.html", 2, "Tom & Jerry"),
                         linkLine("http://h/tom.html", 2, "Tom")))
        << "a second edit of the line finds it again";

    // An empty field offers the line's deletion.
    controller.linkClicked("http://h/b.html---LINKID:3---", "B");
    controller.setEditFields("", "http://h/b.html");
    alerts.answers = {kOtherButtonCode, kDefaultButtonCode};
    controller.titleEditInputAction();
    EXPECT_EQ(alerts.described(),
              (std::vector<std::string>{
                  "Refusal: The title field cannot be left blank, please enter a title for this "
                  "page. |  [OK] [Delete This Link]",
                  "Question: Are you absolutely sure you want to remove this link from your "
                  "sitemap, deleted links cannot be restored. | This could take a while for large "
                  "sites. [Delete Link] [Cancel]"}));
    EXPECT_FALSE(test::contains(fileContents(layout("sitemap3c.html")), "b.html"));
}

TEST_F(HtmlEditor, UnsavedChangesAreOfferedBeforeADeletion) {
    controller.setFontSize(Group::PageTitle, 0);
    controller.linkClicked("http://h/b.html---LINKID:3---", "B");
    alerts.answers = {kAlternateButtonCode};
    controller.deleteLinkAction();
    EXPECT_EQ(fileContents(layout("sitemap3c.html")), threeColumnLayout());

    alerts.answers = {kOtherButtonCode};
    controller.deleteLinkAction();
    const std::string saved = fileContents(layout("sitemap3c.html"));
    EXPECT_FALSE(test::contains(saved, "b.html"));
    EXPECT_TRUE(test::contains(saved, "\t\tfont-size: 1.1em;")) << "the style edit was discarded";
    // The scan's filler cell holds no line, so the deletion re-packs and loads the layout again.
    EXPECT_EQ(view.preview, saved);
    EXPECT_EQ(view.edits.size(), 1U) << "the style edit's alone";
    const std::string question =
        "Question: Changes have been made to this sitemap, would you like to save the changes you "
        "have made before deleting this link? | Once you have deleted a link it cannot be "
        "restored without re-scanning the site. [Save Changes] [Cancel Deletion] [Discard "
        "Changes]";
    EXPECT_EQ(alerts.described(), std::vector<std::string>(2, question))
        << "no second confirmation on this path";
}

TEST_F(HtmlEditor, ThePreviewIsACopyWithoutMarkersUnlessCancelled) {
    const std::string path = home.dataRoot() + "/Site/tmpMap.html";
    controller.viewSitemapButton();
    controller.waitForPreview();
    const std::string preview = fileContents(path);
    EXPECT_FALSE(test::contains(preview, "LINKID"));
    EXPECT_TRUE(preview.ends_with("</html></table>\n</body>\n</html>"));
    EXPECT_EQ(view.opened, std::vector<std::string>{path});
    EXPECT_FALSE(view.panelShown);

    writeFile(path, "earlier preview");
    controller.cancelViewInExternalButtonAction();
    controller.setFontSize(Group::PageTitle, 0);
    alerts.answers = {kOtherButtonCode};
    controller.viewSitemapButton();  // through the prompt the earlier cancel still holds
    controller.waitForPreview();
    EXPECT_EQ(fileContents(path), "earlier preview");
    EXPECT_EQ(view.opened.size(), 1U);
    EXPECT_EQ(fileContents(layout("sitemap3c.html")), threeColumnLayout()) << "discarded";
}

std::string div(const std::string& line) {
    return line.substr(std::string_view("\n\t\t\t").size());
}

using Replacement = PreviewEdit::Replacement;

TEST_F(HtmlEditor, EditsChangeThePreviewInPlaceUntilAStyleRuleIsQuotedInATitle) {
    const std::string home = pageTitleLine("http://h/", 0, "Home");
    const std::string first = linkLine("http://h/a.html", 1, "Tom & Jerry");
    const std::string quoted = ".zplPageTitle a:hover { text-decoration:underline }";
    writeFile(
        layout("sitemap1c.html"),
        oneColumnLayout({home + first + pageTitleLine("http://h/c.html", 2, "CSS: " + quoted)}));
    controller.changeMapType(2);
    const int loads = view.loads;

    controller.linkClicked("http://h/a.html---LINKID:1---", "Tom & Jerry");
    controller.setEditFields("Tom", "http://h/a.html");
    controller.titleEditInputAction();
    const std::string edited = linkLine("http://h/a.html", 1, "Tom");
    EXPECT_FALSE(view.state.deleteEnabled) << "as after a reload";
    ASSERT_EQ(view.edits.size(), 1U);
    const auto anchor = [](const std::string& line) {
        return line.substr(line.find("<a "), line.find("</a>") + 4 - line.find("<a "));
    };
    EXPECT_EQ(view.edits[0].replacements,
              (std::vector<Replacement>{{anchor(first), anchor(edited), 1}}));

    controller.linkClicked("http://h/---LINKID:0---", "Home");
    controller.deleteLinkAction();
    ASSERT_EQ(view.edits.size(), 2U);
    EXPECT_EQ(view.edits[1].replacements,
              (std::vector<Replacement>{
                  {div(home), std::nullopt, 1},
                  {div(edited), replaceAll(div(edited), "zplPageLink", "zplPageTitle"), 1}}));

    controller.setFontSize(Group::PageTitle, 0);
    ASSERT_EQ(view.edits.size(), 3U);
    const auto style = [](const std::string& html) {
        const size_t start = html.find("<style type=\"text/css\">") + 23;
        return html.substr(start, html.find("</style>") - start);
    };
    EXPECT_EQ(view.edits[2].style,
              (PreviewEdit::StyleChange{style(fileContents(layout("sitemap1c.html"))),
                                        style(process.vrlmpHTMLString)}));
    EXPECT_EQ(view.preview, process.vrlmpHTMLString);
    EXPECT_EQ(view.loads, loads) << "nothing was loaded again";

    controller.setUnderline(Group::PageTitle, Underline::None);
    EXPECT_TRUE(
        test::contains(process.vrlmpHTMLString,
                       ">CSS: .zplPageTitle a:hover { text-decoration:none }<!-- LINKID: 2 -->"))
        << "every occurrence of the rule is rewritten";
    EXPECT_EQ(view.loads, loads + 1);
    EXPECT_EQ(view.edits.size(), 3U);
}

// Unsaved, the change stays in the working copy, which is loaded again as a whole.
TEST_F(HtmlEditor, AFailedSaveLoadsThePreviewAgain) {
    const int loads = view.loads;
    removeRecursively(home.dataRoot() + "/Site");
    controller.linkClicked("http://h/a.html---LINKID:2---", "Tom & Jerry");
    controller.setEditFields("Tom", "http://h/a.html");
    controller.titleEditInputAction();
    EXPECT_EQ(view.loads, loads + 1);
    EXPECT_EQ(view.preview, process.vrlmpHTMLString);
    EXPECT_TRUE(test::contains(view.preview, ">Tom<!-- LINKID: 2 -->"));
    EXPECT_TRUE(view.state.saveEnabled);
    ASSERT_FALSE(alerts.shown.empty());
    EXPECT_EQ(alerts.shown.back().title, "The HTML sitemap could not be saved.");
}

// A click on a line of a one-column layout, and an edit of its title and address or its deletion;
// the lines after it, or none when the line is not found again and nothing changes.
using Lines = std::vector<std::string>;
using Edit = std::optional<std::pair<std::string, std::string>>;  // none deletes
struct LineEditCase {
    Lines lines;
    std::string href;  // as a browser reports it
    std::string label;
    Edit edit;
    std::optional<Lines> after;
};

TEST_F(HtmlEditor, EditsAndDeletionsFindTheClickedLineAgain) {
    const std::string older =
        "\n\t\t\t<div class=\"zplPageTitle\"><a href=\"http://h/---LINKID:0---\">"
        "A < B<!-- LINKID: 0 --></a></div>";
    const std::string same = pageTitleLine("http://h/a.html", 4, "Same");
    const Lines patterns = {pageTitleLine("http://h/x?y", 1, "a (b)"),
                            pageTitleLine("http://h/x?y", 2, "a (b")};
    const LineEditCase cases[] = {
        // An escaped title and a quoted address.
        {Lines{pageTitleLine("http://h/q?x=\"1\"&y=2", 7, "<b>Bold</b> & co")},
         "http://h/q?x=%221%22&y=2---LINKID:7---", "<b>Bold</b> & co",
         std::pair{"<i>\"x\"</i>", "http://h/\"new\""},
         Lines{pageTitleLine("http://h/%22new%22", 7, "<i>\"x\"</i>")}},
        // Older bare markup.
        {Lines{older}, "http://h/---LINKID:0---", "A < B", std::pair{"A > B", "http://h/"},
         Lines{pageTitleLine("http://h/", 0, "A > B")}},
        // "." in the address matches any character: an earlier line answers the pattern.
        {Lines{pageTitleLine("http://h/aXhtml", 4, "Same"), same}, "http://h/a.html---LINKID:4---",
         "Same", std::nullopt, Lines{"", same}},
        // A line no longer there.
        {patterns, "http://h/gone.html---LINKID:9---", "Gone",
         std::pair{"Back", "http://h/gone.html"}, std::nullopt},
        // Pattern characters other than "?" in a title are taken as a pattern.
        {patterns, "http://h/x?y---LINKID:1---", "a (b)", std::nullopt, std::nullopt},
        {patterns, "http://h/x?y---LINKID:2---", "a (b", std::nullopt, std::nullopt},
    };
    for (const LineEditCase& c : cases) {
        SCOPED_TRACE(c.label);
        const std::string path = layout("sitemap1c.html");
        writeFile(path, oneColumnLayout(c.lines));
        controller.changeMapType(2);
        controller.linkClicked(c.href, c.label);
        if (c.edit) {
            controller.setEditFields(c.edit->first, c.edit->second);
            controller.titleEditInputAction();
        } else {
            controller.deleteLinkAction();
        }
        EXPECT_EQ(controller.lastLineEdit(), c.after ? HTMLViewController::LineEdit::Done
                                                     : HTMLViewController::LineEdit::NotFound);
        EXPECT_EQ(fileContents(path), oneColumnLayout(c.after.value_or(c.lines)));
    }
}

// A page title is deleted; the next number present decides which line follows it.
TEST_F(HtmlEditor, TheLineAfterADeletedTitleIsTheNextNumberPresent) {
    struct Case {
        std::string lines;  // after the title numbered 10
        int total;
        std::string promoted;  // the line that became a title, if any
    };
    const auto link = [](int number) { return linkLine("http://h/l.html", number, "L"); };
    const std::string zeros =
        replaceAll(linkLine("http://h/z.html", 12, "Z"), ":12---", ":0012---");
    const std::vector<Case> cases = {
        {pageTitleLine("http://h/n.html", 2005, "N"), 3000, ""},
        {"", 3000, ""},
        {link(11), 5, link(11)},
        {link(14), 14, link(14)},  // the last number is looked for too
        {zeros + link(14), 100, link(14)},
        {link(30) + link(20), 100, link(20)},
    };
    for (const Case& each : cases) {
        const std::string title = pageTitleLine("http://h/t.html?a", 10, "T");
        writeFile(layout("sitemap1c.html"), oneColumnLayout({title + each.lines}));
        writeSiteStatistics("Site", each.total, 3, 2);
        controller.changeMapType(2);
        controller.linkClicked("http://h/t.html?a---LINKID:10---", "T");
        controller.deleteLinkAction();
        const std::string after =
            each.promoted.empty()
                ? each.lines
                : replaceAll(each.lines, each.promoted,
                             replaceAll(each.promoted, "zplPageLink", "zplPageTitle"));
        EXPECT_EQ(fileContents(layout("sitemap1c.html")), oneColumnLayout({after}))
            << each.lines << each.total;
    }
}

TEST_F(HtmlEditor, EveryLoadForgetsTheClickedLine) {
    const std::vector<std::pair<const char*, std::function<void()>>> loads = {
        {"layout switch", [&] { controller.changeMapType(1); }},
        {"toolbar pressed again", [&] { controller.viewTBIAction(); }},
    };
    process.vrlmpCurrentView = 2;
    for (const auto& [name, load] : loads) {
        controller.firstLoad();
        controller.linkClicked("http://h/b.html---LINKID:3---", "B");
        ASSERT_TRUE(view.state.deleteEnabled);
        load();
        EXPECT_FALSE(view.state.deleteEnabled) << name;
        EXPECT_EQ(view.state.titleField + view.state.linkField, "") << name;
        controller.deleteLinkAction();
        EXPECT_TRUE(alerts.shown.empty()) << name << ": nothing left to delete";
    }
    EXPECT_TRUE(test::contains(fileContents(layout("sitemap3c.html")), "b.html"));
}

TEST_F(HtmlEditor, WithoutALayoutOrASiteAPlaceholderShowsAndNothingIsWritten) {
    controller.linkClicked("http://h/b.html---LINKID:3---", "B");
    siteName = "Never Scanned";
    writeFile(returnFullFileLocation(siteName), newSiteFileText(siteName, "http://n/"));
    controller.firstLoad();
    EXPECT_FALSE(view.state.deleteEnabled);
    EXPECT_FALSE(view.state.editOptionsEnabled);
    controller.setEditFields("New title", "http://h/new.html");
    controller.titleEditInputAction();
    controller.setFontSize(Group::PageTitle, 2);
    EXPECT_FALSE(process.vrlmpNeedsSave) << "the working copy is left alone";
    controller.saveNow("closewindow");
    controller.deleteLinkAction();
    EXPECT_FALSE(pathExists(home.dataRoot() + "/Never Scanned/sitemap3c.html"));
    EXPECT_EQ(fileContents(layout("sitemap3c.html")), threeColumnLayout());
    EXPECT_TRUE(test::contains(view.preview,
                               "<h2 align=\"center\">No Sitemap Is Available<br />Please scan "
                               "this website to create the html sitemap.</h2></body></html>"))
        << "the placeholder stays on show";
    EXPECT_TRUE(alerts.shown.empty());

    siteName.clear();
    controller.firstLoad();
    EXPECT_TRUE(test::contains(
        view.preview, "<h2 align=\"center\">Please Select A Site To View It's Sitemap</h2>"));
    process.vrlmpCurSite.clear();
    EXPECT_FALSE(controller.viewTBIAction());
    EXPECT_EQ(alerts.described(), std::vector<std::string>{"Refusal: You need to select a sitemap "
                                                           "from the sites list to use the HTML "
                                                           "sitemap viewer. |  [OK]"});
}

// Seven page-title cells in three columns, as the pages-only layout of a scan.
std::string sevenCells() {
    std::string text = std::string(htmlSitemapHead()) + std::string(kTableOpening);
    int filled = 0;
    for (int page = 1; page <= 7; ++page) {
        text += tablePiece(pageTitleLine("http://h/p" + std::to_string(page) + ".html", page,
                                         "P" + std::to_string(page)),
                           3, filled);
    }
    return text + std::string(threeColumnClosing(filled));
}

TEST_F(HtmlEditor, EmptyingTheLastRowChangesItInPlace) {
    const std::string path = layout("sitemap3cpo.html");
    writeFile(path, sevenCells());
    controller.changeMapType(3);
    const int loads = view.loads;
    controller.linkClicked("http://h/p7.html---LINKID:7---", "P7");
    controller.deleteLinkAction();
    ASSERT_EQ(view.edits.size(), 1U);
    // The row of P7 and the fillers goes, as the clean-up removes it from the file.
    EXPECT_EQ(view.edits[0].rows, (RowChange{2, 3, "32%", ""}));
    EXPECT_EQ(view.loads, loads);
    EXPECT_EQ(fileContents(path), process.vrlmpHTMLString);
    EXPECT_FALSE(view.state.saveEnabled);
}

}  // namespace
}  // namespace loomcrest
