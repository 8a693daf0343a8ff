#include "export/SitemapExporter.h"

#include <gtest/gtest.h>

#include "app/ProcessState.h"

#include "export/Gzip.h"
#include "export/SitePicker.h"
#include "export/SitemapSplit.h"
#include "export/XmlExportText.h"
#include "platform/FileSystem.h"
#include "platform/ImmediateUiThread.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/Golden.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using namespace test;

class RecordingExportView : public ExportView {
public:
    void showExportPanel(bool shown) override { panelShown = shown; }
    void setProgressIndeterminate(bool) override {}
    void updateExportBar(uint64_t maximum, uint64_t current) override {
        barMaximum = maximum;
        barValue = current;
    }
    // Each save dialog as the proposed name and the types it allows.
    std::optional<std::string> chooseSaveFile(const SaveFileRequest& request) override {
        std::string asked = request.proposedName + ":";
        for (const std::string& type : request.allowedTypes) {
            asked += " " + type;
        }
        requests.push_back(asked);
        return answer;
    }

    bool panelShown = false;
    uint64_t barMaximum = 0;
    uint64_t barValue = 0;
    std::vector<std::string> requests;
    std::optional<std::string> answer;
};

class Export : public testing::Test {
protected:
    void SetUp() override {
        view.answer = home.path() + "/exported";
        exporter.setSelectedSite("Site");
    }
    std::string site(const std::string& file) const { return home.dataRoot() + "/Site/" + file; }
    std::string exported() const { return fileContents(*view.answer); }
    // Starts an export and waits until it has finished.
    void exportWith(void (SitemapExporter::*start)()) {
        (exporter.*start)();
        exporter.waitForExport();
    }

    TemporaryHome home;
    RecordingExportView view;
    RecordingAlerts alerts;
    ImmediateUiThread ui;
    ProcessState process;
    SitemapExporter exporter{process, view, alerts, ui};
};

TEST_F(Export, ALayoutLosesItsMarkersAndNothingElse) {
    const std::string layout = std::string(htmlSitemapHead()) + "\n" +
                               pageTitleLine("http://h/", 0, "Home & away") +
                               linkLine("http://h/a.html?x=1", 12, "A") +
                               "\n<div class=\"clearer\">&nbsp;</div>\n</body>\n</html>";
    writeFile(site("sitemap1c.html"), layout);
    exporter.chooseLayout(SitemapExporter::oneCSF);
    exportWith(&SitemapExporter::exportHTMLSitemaps);

    EXPECT_EQ(exported(),
              std::string(htmlSitemapHead()) +
                  "\n\n\t\t\t<div class=\"zplPageTitle\"><a href=\"http://h/\">Home &amp; away</a>"
                  "</div>\n\t\t\t<div class=\"zplPageLink\"><a href=\"http://h/a.html?x=1\">A</a>"
                  "</div>\n<div class=\"clearer\">&nbsp;</div>\n</body>\n</html>");
    EXPECT_EQ(view.requests, std::vector<std::string>{"sitemap.html: html php asp htm"});
    EXPECT_FALSE(view.panelShown);
    EXPECT_EQ(view.barMaximum, 56U);
    EXPECT_EQ(view.barValue, 55U);
    EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(Export, XmlDropsEmptyElementsWithTheirIndent) {
    writeFile(site("sitemap.xml"), golden("empty-elements-sitemap"));
    exportWith(&SitemapExporter::exportXMLSitemap);
    EXPECT_EQ(exported(), golden("empty-elements-export"));
    EXPECT_EQ(view.requests, std::vector<std::string>{"sitemap.xml: xml"});
    EXPECT_EQ(alerts.described(),
              std::vector<std::string>{
                  "Information: The XML sitemap was exported. | 2 empty last-modified dates were "
                  "left out: search engines take an empty date as an invalid one. [OK]"});
}

TEST(XmlExportText, EveryEmptyDateGoesAndIsCounted) {
    struct Case {
        std::string sitemap;
        std::string exported;
        size_t datesLeftOut;
    };
    const std::vector<Case> cases = {
        {"<loc>a</loc> <lastmod/><lastmod >\n</lastmod></url><lastmod>x</lastmod><lastmodx/>",
         "<loc>a</loc></url><lastmod>x</lastmod><lastmodx/>", 2},
        {"<changefreq></changefreq>\n\t</url>", "<changefreq></changefreq>\n\t</url>", 0},
        {"<loc>http://h/it's \"x\"</loc>'<loc>'",
         "<loc>http://h/it&apos;s &quot;x&quot;</loc>'<loc>&apos;", 0},
    };
    for (const Case& c : cases) {
        const XmlExportText result = xmlSitemapForExport(c.sitemap);
        EXPECT_EQ(result.text, c.exported) << c.sitemap;
        EXPECT_EQ(result.emptyDatesLeftOut, c.datesLeftOut) << c.sitemap;
    }
}

TEST_F(Export, ABareAmpersandIsEscapedOnlyWhenTheUserAgrees) {
    const std::string header(xmlSitemapHeader());
    const std::string sitemap = header + "\n\t<url>\n\t\t<loc>http://h/?a=1&b=2&amp;c</loc>" +
                                "\n\t\t<lastmod></lastmod>\n\t</url>\n</urlset>";
    writeFile(site("sitemap.xml"), sitemap);
    alerts.answers = {kAlternateButtonCode};
    exportWith(&SitemapExporter::exportXMLSitemap);
    EXPECT_EQ(alerts.described(),
              std::vector<std::string>{
                  "Question: The XML sitemap is not well formed: line 9 holds a bare \"&\". | "
                  "Export it with every bare \"&\" written as \"&amp;\"? The site's own "
                  "sitemap.xml stays as it is. [Fix and Export] [Cancel]"});
    EXPECT_TRUE(exporter.ampersandRepairDeclined());
    EXPECT_TRUE(view.requests.empty());
    EXPECT_FALSE(view.panelShown);

    exportWith(&SitemapExporter::exportXMLSitemap);
    EXPECT_FALSE(exporter.ampersandRepairDeclined());
    EXPECT_EQ(exported(), header + "\n\t<url>\n\t\t<loc>http://h/?a=1&amp;b=2&amp;c</loc>" +
                              "\n\t</url>\n</urlset>");
    EXPECT_EQ(fileContents(site("sitemap.xml")), sitemap);
    EXPECT_EQ(alerts.shown.back().message,
              "1 empty last-modified date was left out: search engines take an empty date as an "
              "invalid one.");

    writeFile(site("sitemap.xml"), header + "\n\t<url><loc>http://h/?a&b</url>\n</urlset>");
    exportWith(&SitemapExporter::exportXMLSitemap);
    EXPECT_EQ(alerts.described().back(),
              "Refusal: The XML sitemap is not well formed, so it was not exported. | Line 8: "
              "Opening and ending tag mismatch: loc line 8 and url. [OK]");
    EXPECT_EQ(view.requests.size(), 1U);
}

std::string sitemapOf(size_t urls) {
    std::string text(xmlSitemapHeader());
    for (size_t i = 0; i < urls; ++i) {
        text += xmlSitemapEntry("http://h/shop/p" + std::to_string(i) + ".html", "2024-05-17");
    }
    return text + "\n</urlset>";
}

// Over 50,000 URLs (twice as many and one more here) the export is an index of the parts
// beside it, each as the split gives it, compressed when asked.
TEST_F(Export, ABigSitemapBecomesAnIndexOfPartsPlainOrCompressed) {
    writeFile(home.dataRoot() + "/Site/Site.vrLMP", "<siteURL>http://h/shop/index.html</siteURL>");
    writeFile(site("sitemap.xml"), sitemapOf(100001));
    const std::vector<std::string> parts = splitSitemap(sitemapOf(100001));
    view.answer = home.path() + "/my map.xml";
    for (const std::string ending : {".xml", ".xml.gz"}) {
        SCOPED_TRACE(ending);
        exporter.setCompressParts(ending != ".xml");
        alerts.shown.clear();
        exportWith(&SitemapExporter::exportXMLSitemap);
        EXPECT_EQ(exported(), replaceAll(golden("sitemap-index-export"), ".xml<", ending + "<"));
        for (size_t part = 0; part < parts.size(); ++part) {
            std::string bytes =
                fileContents(home.path() + "/my map-" + std::to_string(part + 1) + ending);
            if (ending != ".xml") {
                const auto plain = gunzip(bytes, parts[part].size() + 1);
                ASSERT_TRUE(plain && !plain->truncated);
                bytes = plain->bytes;
            }
            EXPECT_EQ(bytes, parts[part]) << part;
        }
        EXPECT_EQ(alerts.shown.at(0).message,
                  "\"my map.xml\" is a sitemap index of 3 parts beside it, \"my map-1" + ending +
                      "\" to \"my map-3" + ending +
                      "\": one file may hold at most 50,000 URLs and 50 MB.");
    }
}

TEST(SitemapSplit, PartsKeepHeadTailAndSeparatorsWithinBothLimits) {
    const std::string text = "<s>\n <u>1</u>\n <u>22</u><!-- <u>x</u> -->\n <u>3</u><u/>\n</s>";
    EXPECT_EQ(splitSitemap(text, {4, text.size()}), std::vector<std::string>{text});
    // Two entries to a part, by their count or by a size limit they reach exactly.
    for (const SitemapLimits limits : {SitemapLimits{2, text.size()}, SitemapLimits{4, 29}}) {
        EXPECT_EQ(splitSitemap(text, limits),
                  (std::vector<std::string>{"<s>\n <u>1</u>\n <u>22</u>\n</s>",
                                            "<s>\n <u>3</u><u/>\n</s>"}));
    }
    EXPECT_EQ(splitSitemap(text, {4, 20}),
              (std::vector<std::string>{"<s>\n <u>1</u>\n</s>", "<s>\n <u>22</u>\n</s>",
                                        "<s>\n <u>3</u>\n</s>", "<s>\n <u/>\n</s>"}));
    EXPECT_EQ(sitemapPartPath("/o/map.v2.xml", 2, false), "/o/map.v2-2.xml");
    EXPECT_EQ(sitemapPartPath("/o.d/map", 1, true), "/o.d/map-1.gz");
    EXPECT_EQ(sitemapPartPath(".xml", 1, false), ".xml-1");
}

TEST_F(Export, MissingOrUnreadableFilesAreReportedAndNothingIsWritten) {
    const std::string missing =
        "The sitemap you are trying to export could not be found, please make sure you have "
        "scanned your site before exporting.";
    const std::string unreadable =
        "An error has occurred while exporting your sitemap, you may need to re-scan the site.\n";
    for (const bool present : {false, true}) {
        if (present) {
            writeFile(site("sitemap3c.html"), "caf\xe9");
            writeFile(site("sitemap.xml"), "caf\xe9");
        }
        alerts.shown.clear();
        exportWith(&SitemapExporter::exportHTMLSitemaps);
        exportWith(&SitemapExporter::exportXMLSitemap);
        const std::string shown =
            present ? "Refusal: " + unreadable +
                          " | If this problem persists, please contact support. [OK]"
                    : "Refusal: " + missing + " |  [OK]";
        EXPECT_EQ(alerts.described(), std::vector<std::string>(2, shown));
        EXPECT_TRUE(view.requests.empty());
    }
}

// A dialog cancelled writes nothing and says nothing; a file that cannot be written is
// refused with the reason; without a site no file is asked for.
TEST_F(Export, AFileThatCannotBeWrittenIsRefusedWithTheReason) {
    writeFile(site("sitemap3c.html"), "plain");
    view.answer.reset();
    exportWith(&SitemapExporter::exportHTMLSitemaps);
    EXPECT_FALSE(view.panelShown);
    EXPECT_TRUE(alerts.shown.empty());
    const std::vector<std::pair<std::string, std::string>> cases = {
        {home.path() + "/missing/x.html", "No such file or directory."},
        {"", "No file name was given."},
    };
    for (const auto& [path, reason] : cases) {
        view.answer = path;
        exportWith(&SitemapExporter::exportHTMLSitemaps);
        ASSERT_FALSE(alerts.shown.empty()) << path;
        EXPECT_EQ(alerts.described().back(), "Refusal: The export could not be written" +
                                                 (path.empty() ? "." : " to \"" + path + "\".") +
                                                 " | " + reason + " [OK]");
    }
    EXPECT_FALSE(pathExists(home.path() + "/missing"));
    exporter.setSelectedSite("");
    exportWith(&SitemapExporter::exportHTMLSitemaps);
    EXPECT_EQ(view.requests.size(), 3U);
}

TEST_F(Export, BrokenLinksAsHtmlAndText) {
    process.vrlmpBadLinkArray = {"http://h/a?x=1&y=2", "http://h/gone.html"};
    exportWith(&SitemapExporter::exportBrokenAsHTMLAction);
    EXPECT_EQ(exported(), golden("broken-links-export.html"));

    exportWith(&SitemapExporter::exportBrokenAsTXTAction);
    EXPECT_EQ(exported(), "http://h/a?x=1&y=2\nhttp://h/gone.html\n\n");
    EXPECT_EQ(view.requests, (std::vector<std::string>{"brokenLinksExport.html: html",
                                                       "brokenLinksExport.txt: txt"}));
}

TEST_F(Export, CopyFileStampsAnExistingDestination) {
    writeFile(home.path() + "/source.html", "new");
    SitemapExporter::copyFile(home.path() + "/source.html", home.path() + "/copy.html", ".html");
    EXPECT_EQ(fileContents(home.path() + "/copy.html"), "new");
    SitemapExporter::copyFile(home.path() + "/source.html", home.path() + "/copy.html", ".htm");
    std::vector<std::string> stamped;
    for (const std::string& entry : walkFolder(home.path())) {
        if (entry.starts_with("copy_") && entry.ends_with(".htm")) {
            stamped.push_back(entry);
        }
    }
    ASSERT_EQ(stamped.size(), 1U);
    EXPECT_EQ(stamped[0].size(), std::string("copy_HHMMSS.htm").size());
    SitemapExporter::saveEditedSitemapContent("edited", home.path() + "/copy.html");
    EXPECT_EQ(fileContents(home.path() + "/copy.html"), "edited");
}

TEST(SitePicker, ListsScannedSitesOrSaysNone) {
    TemporaryHome home;
    checkNeededFoldersExist();
    EXPECT_EQ(populateSitePicker("").items, std::vector<std::string>{"No Sites Have Been Scanned"});
    writeFile(home.dataRoot() + "/Beta/sitemap.xml", "");
    writeFile(home.dataRoot() + "/Alpha/sitemap.xml", "");
    writeFile(home.dataRoot() + "/Never/Never.vrLMP", "");
    const SitePickerItems picker = populateSitePicker("Beta");
    EXPECT_EQ(picker.items, (std::vector<std::string>{"Alpha", "Beta"}));
    EXPECT_EQ(picker.selected, 1U);
}

}  // namespace
}  // namespace loomcrest
