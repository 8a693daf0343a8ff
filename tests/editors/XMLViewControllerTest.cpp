#include "editors/XMLViewController.h"

#include <gtest/gtest.h>

#include <ctime>
#include <optional>

#include "app/ProcessState.h"
#include "editors/XmlEntry.h"
#include "sitemap/SitemapFiles.h"
#include "sitemap/XmlSitemapFormat.h"
#include "sites/DataPaths.h"
#include "support/Recorders.h"
#include "support/TemporaryHome.h"

namespace loomcrest {
namespace {

using namespace test;
using Column = XMLViewController::Column;

std::string scannedFile(std::initializer_list<std::pair<std::string, std::string>> entries) {
    std::string text(xmlSitemapHeader());
    for (const auto& [url, date] : entries) {
        text += xmlSitemapEntry(url, date);
    }
    return text + "\n</urlset>";
}

std::string savedFile(const std::vector<std::string>& entries) {
    std::string text = std::string(xmlSitemapHeader()) + "\n\t";
    for (size_t i = 0; i < entries.size(); ++i) {
        text += entries[i] + (i + 1 == entries.size() ? "\n" : "\n\t");
    }
    return text + "</urlset>";
}

std::string savedEntry(const std::string& url, const std::string& date,
                       const std::string& frequency = "monthly",
                       const std::string& priority = "0.5") {
    return "<url>\n\t\t<loc>" + url + "</loc>\n\t\t<lastmod>" + date +
           "</lastmod>\n\t\t<changefreq>" + frequency + "</changefreq>\n\t\t<priority>" + priority +
           "</priority>\n\t</url>";
}

class XmlEditor : public testing::Test {
protected:
    void SetUp() override {
        process.vrlmpCurSite = "Site";
        writeFile(file(), scannedFile({{"http://h/", "2024-03-01"},
                                       {"http://h/a.html?x=1&y='2'", ""},
                                       {"http://h/b.html", "2023-12-31"}}));
        ASSERT_TRUE(xml.viewTBIAction());
    }
    std::string file() const { return home.dataRoot() + "/Site/sitemap.xml"; }

    TemporaryHome home;
    RecordingAlerts alerts;
    ProcessState process;
    XMLViewController xml{process, alerts, [] { return std::string("Site"); }};
};

// Each accepted edit rewrites the whole file; the menus need a selected row.
TEST_F(XmlEditor, ShowsOneRowPerEntryAndAcceptedEditsRewriteTheWholeFile) {
    ASSERT_EQ(xml.numberOfRowsInTableView(), 3U);
    EXPECT_EQ(xml.objectValueForTableColumn(Column::URL, 1), "http://h/a.html?x=1&y='2'");
    EXPECT_EQ(xml.objectValueForTableColumn(Column::LastUpdated, 0), "2024-03-01");
    EXPECT_EQ(xml.objectValueForTableColumn(Column::ChangeFrequency, 2), "monthly");
    EXPECT_EQ(xml.objectValueForTableColumn(Column::Priority, 2), "0.5");
    EXPECT_EQ(xml.objectValueForTableColumn(Column::URL, 9), "");

    xml.priorityMenuChangeUpdates("1");
    xml.setObjectValue("2024-05-17", Column::LastUpdated, 1);
    xml.setObjectValue("http://h/new.html?a=1&b=2", Column::URL, 0);
    // The address is saved with bare ampersands and read back as it was entered.
    XMLViewController reopened(process, alerts, [] { return std::string("Site"); });
    reopened.createTableContent();
    EXPECT_EQ(reopened.objectValueForTableColumn(Column::URL, 0), "http://h/new.html?a=1&b=2");
    reopened.setObjectValue("weekly", Column::ChangeFrequency, 2);
    reopened.selectRow(1);
    reopened.priorityMenuChangeUpdates("1");
    reopened.cfMenuChangeUpdates("never");
    EXPECT_EQ(reopened.objectValueForTableColumn(Column::Priority, 1), "1");
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_EQ(fileContents(file()),
              savedFile({savedEntry("http://h/new.html?a=1&b=2", "2024-03-01"),
                         savedEntry("http://h/a.html?x=1&y='2'", "2024-05-17", "never", "1"),
                         savedEntry("http://h/b.html", "2023-12-31", "weekly")}));
}

TEST_F(XmlEditor, EmptyCellsAndAnotherDateFormatAreRefusedWithTheirMessages) {
    const std::string before = fileContents(file());
    xml.setObjectValue("", Column::URL, 0);
    xml.setObjectValue("", Column::LastUpdated, 0);
    xml.setObjectValue("", Column::ChangeFrequency, 0);
    xml.setObjectValue("", Column::Priority, 0);
    xml.setObjectValue("17.05.2024", Column::LastUpdated, 0);
    const time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char today[16];
    std::strftime(today, sizeof today, "%Y-%m-%d", &local);
    EXPECT_EQ(alerts.described(),
              (std::vector<std::string>{
                  "Refusal: The URL field cannot be left blank |  [OK]",
                  "Refusal: The Last Updated field cannot be left blank |  [OK]",
                  "Refusal: The Change Frequency field cannot be left blank |  [OK]",
                  "Refusal: The Link Priority field cannot be left blank |  [OK]",
                  "Refusal: The Last Updated date format must be yyyy-mm-dd (" +
                      std::string(today) + ") |  [OK]"}));
    EXPECT_EQ(fileContents(file()), before);
}

TEST_F(XmlEditor, DeletionAsksThenRewritesDownToHeaderAndFooter) {
    xml.selectRow(1);
    alerts.answers.push_back(kOtherButtonCode);
    xml.delLinkAction();
    EXPECT_EQ(alerts.described(), std::vector<std::string>{"Question: Do you really want to delete "
                                                           "the selected link?\nDeleting links "
                                                           "cannot be undone! |  [Delete Link] "
                                                           "[Cancel]"});
    EXPECT_EQ(xml.numberOfRowsInTableView(), 3U);

    xml.selectRow(1);
    xml.delLinkAction();
    EXPECT_EQ(fileContents(file()), savedFile({savedEntry("http://h/", "2024-03-01"),
                                               savedEntry("http://h/b.html", "2023-12-31")}));

    // The only entry deleted leaves the header and the footer.
    writeFile(file(), scannedFile({{"http://h/", ""}}));
    xml.createTableContent();
    xml.selectRow(0);
    xml.delLinkAction();
    EXPECT_EQ(fileContents(file()), std::string(xmlSitemapHeader()) + "\n\t</urlset>");
}

TEST_F(XmlEditor, AMissingOrBrokenFileGivesAnEmptyTableAndNoSiteARefusal) {
    writeFile(file(), "not xml at all");
    xml.createTableContent();
    EXPECT_EQ(xml.numberOfRowsInTableView(), 0U);
    std::remove(file().c_str());
    xml.createTableContent();
    EXPECT_EQ(xml.numberOfRowsInTableView(), 0U);

    ProcessState noSite;
    XMLViewController withoutSite(noSite, alerts, [] { return std::string(); });
    EXPECT_FALSE(withoutSite.viewTBIAction());
    EXPECT_EQ(alerts.described(), std::vector<std::string>{"Refusal: You need to select a sitemap "
                                                           "from the sites list to use the XML "
                                                           "sitemap viewer. |  [OK]"});
}

// Month and day are read as numbers from fixed positions, so a blank lets a day of two
// digits reach the check; the bounds are checked at both sides.
TEST(LastUpdatedRule, ReadsMonthAndDayByPosition) {
    const std::string month = "The month must be a number between 01 and 12";
    const std::string day = "The day must be a number between 01 and 31";
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"2024-02-05", std::nullopt},
        {"2024-5 31 2024-05-17", std::nullopt},
        {"2024-5 32 2024-05-17", day},
        {"2024- 12 2024-05-17", std::nullopt},
        {"2024- 13 2024-05-17", month},
        {"2024-01-17", month},
        {"2024-11-05", day},
    };
    for (const auto& [value, problem] : cases) {
        EXPECT_EQ(xmlentry::lastUpdatedProblem(value, "2026-11-21"), problem) << value;
    }
}

}  // namespace
}  // namespace loomcrest
