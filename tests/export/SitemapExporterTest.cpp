#include "export/SitemapExporter.h"

#include <gtest/gtest.h>

#include "app/ProcessState.h"
#include "export/BrokenLinksReport.h"
#include "export/SitePicker.h"
#include "platform/FileSystem.h"
#include "platform/ImmediateUiThread.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using test::fileContents;
using test::RecordingAlerts;
using test::TemporaryHome;
using test::writeFile;

class RecordingExportView : public ExportView {
public:
    void showExportPanel(bool shown) override { panelShown = shown; }
    void setProgressIndeterminate(bool indeterminate) override {
        this->indeterminate = indeterminate;
    }
    void updateExportBar(uint64_t maximum, uint64_t current) override {
        barMaximum = maximum;
        barValue = current;
    }
    std::optional<std::string> chooseSaveFile(const SaveFileRequest& request) override {
        requests.push_back(request);
        return answer;
    }

    bool panelShown = false;
    bool indeterminate = false;
    uint64_t barMaximum = 0;
    uint64_t barValue = 0;
    std::vector<SaveFileRequest> requests;
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
    exporter.exportHTMLSitemaps();
    exporter.waitForExport();

    EXPECT_EQ(exported(),
              std::string(htmlSitemapHead()) +
                  "\n\n\t\t\t<div class=\"zplPageTitle\"><a href=\"http://h/\">Home &amp; away</a>"
                  "</div>\n\t\t\t<div class=\"zplPageLink\"><a href=\"http://h/a.html?x=1\">A</a>"
                  "</div>\n<div class=\"clearer\">&nbsp;</div>\n</body>\n</html>");
    ASSERT_EQ(view.requests.size(), 1U);
    EXPECT_EQ(view.requests[0].proposedName, "sitemap.html");
    EXPECT_EQ(view.requests[0].allowedTypes,
              (std::vector<std::string>{"html", "php", "asp", "htm"}));
    EXPECT_FALSE(view.panelShown);
    EXPECT_EQ(view.barMaximum, 56U);
    EXPECT_EQ(view.barValue, 55U);
    EXPECT_TRUE(alerts.shown.empty());
}

TEST_F(Export, TheLayoutBoxesActAsOneRadioGroup) {
    EXPECT_TRUE(exporter.isChosen(SitemapExporter::threeCSF));
    exporter.chooseLayout(SitemapExporter::twoCSF);
    for (const auto box :
         {SitemapExporter::threeCSF, SitemapExporter::oneCSF, SitemapExporter::threeCST,
          SitemapExporter::twoCST, SitemapExporter::oneCST}) {
        EXPECT_FALSE(exporter.isChosen(box));
    }
    EXPECT_TRUE(exporter.isChosen(SitemapExporter::twoCSF));
}

TEST_F(Export, XmlDropsEmptyElementsWithTheirIndent) {
    const std::string header(xmlSitemapHeader());
    writeFile(site("sitemap.xml"),
              header + xmlSitemapEntry("http://h/", "") +
                  xmlSitemapEntry("http://h/a.html", "2024-05-17") +
                  "\n\t<url>\n\t\t<loc>http://h/b.html</loc>\n\t\t<lastmod></lastmod>\n\t\t"
                  "<changefreq></changefreq>\n\t\t<priority></priority>\n\t</url>\n</urlset>");
    exporter.exportXMLSitemap();
    exporter.waitForExport();
    EXPECT_EQ(exported(),
              header +
                  "\n\t<url>\n\t\t<loc>http://h/</loc>\n\t\t<changefreq>monthly</changefreq>\n\t\t"
                  "<priority>0.5</priority>\n\t</url>" +
                  xmlSitemapEntry("http://h/a.html", "2024-05-17") +
                  "\n\t<url>\n\t\t<loc>http://h/b.html</loc>\n\t\t<priority></priority>\n\t</url>"
                  "\n</urlset>");
    EXPECT_EQ(view.requests.at(0).proposedName, "sitemap.xml");
    EXPECT_EQ(view.requests.at(0).allowedTypes, std::vector<std::string>{"xml"});
    EXPECT_FALSE(view.indeterminate);
}

TEST_F(Export, MissingFilesAreReportedAndNothingIsWritten) {
    exporter.exportHTMLSitemaps();
    exporter.waitForExport();
    exporter.exportXMLSitemap();
    exporter.waitForExport();
    ASSERT_EQ(alerts.shown.size(), 2U);
    for (const Alert& alert : alerts.shown) {
        EXPECT_EQ(alert.title,
                  "The sitemap you are trying to export could not be found, please "
                  "make sure you have scanned your site before exporting.");
    }
    EXPECT_TRUE(view.requests.empty());
    EXPECT_FALSE(pathExists(*view.answer));
}

TEST_F(Export, AnUnreadableLayoutIsReported) {
    writeFile(site("sitemap3c.html"), "caf\xe9");
    exporter.exportHTMLSitemaps();
    exporter.waitForExport();
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(
        alerts.shown[0].title,
        "An error has occurred while exporting your sitemap, you may need to re-scan the site.\n");
    EXPECT_EQ(alerts.shown[0].message, "If this problem persists, please contact support.");
}

TEST_F(Export, CancellingTheSaveDialogWritesNothing) {
    writeFile(site("sitemap3c.html"), "plain");
    view.answer.reset();
    exporter.exportHTMLSitemaps();
    exporter.waitForExport();
    EXPECT_EQ(view.requests.size(), 1U);
    EXPECT_FALSE(pathExists(home.path() + "/exported"));
}

TEST_F(Export, BrokenLinksAsHtmlAndText) {
    process.vrlmpBadLinkArray = {"http://h/a?x=1&y=2", "http://h/gone.html"};
    exporter.exportBrokenAsHTMLAction();
    exporter.waitForExport();
    EXPECT_EQ(
        exported(),
        "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01//EN\"\n"
        "\t\"http://www.w3.org/TR/html4/strict.dtd\">\n\t<html lang=\"en\">\n<head>\n"
        "\t<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\">\n"
        "\t<title>Broken Links Export</title>\n</head>\n<body>"
        "\n\t<p><a href=\"http://h/a?x=1&y=2\">http://h/a?x=1&y=2</a></p>"
        "\n\t<p><a href=\"http://h/gone.html\">http://h/gone.html</a></p>\n</body>\n</html>\n");
    EXPECT_EQ(view.requests.at(0).proposedName, "brokenLinksExport.html");

    exporter.exportBrokenAsTXTAction();
    exporter.waitForExport();
    EXPECT_EQ(exported(), "http://h/a?x=1&y=2\nhttp://h/gone.html\n\n");
    EXPECT_EQ(view.requests.at(1).proposedName, "brokenLinksExport.txt");
    EXPECT_EQ(view.requests.at(1).allowedTypes, std::vector<std::string>{"txt"});
}

TEST_F(Export, AnEmptyBrokenListStillMakesValidFiles) {
    EXPECT_EQ(brokenLinksText({}), "\n");
    EXPECT_TRUE(brokenLinksHtml({}).ends_with("<body>\n</body>\n</html>\n"));
}

TEST_F(Export, NoSelectedSiteClosesThePanel) {
    exporter.setSelectedSite("");
    exporter.exportHTMLSitemaps();
    exporter.waitForExport();
    EXPECT_FALSE(view.panelShown);
    EXPECT_TRUE(view.requests.empty());
    EXPECT_TRUE(alerts.shown.empty());
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
    EXPECT_EQ(populateSitePicker("Never").selected, std::nullopt);
}

}  // namespace
}  // namespace loomcrest
