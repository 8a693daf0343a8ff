#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>

#include "CrawlSettingsSheet.h"
#include "PreviewPage.h"
#include "WindowTest.h"
#include "crawler/CrawlSettingsFile.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"

using namespace loomcrest;
using namespace loomcrest::gui;

// The scan view's "Crawl Settings…" sheet, driven with the mouse and the keyboard.
class CrawlSettingsSheetTest : public test::WindowTest {
    Q_OBJECT

private:
    CrawlSettingsSheet& sheet() { return *scan().crawlSettingsSheet(); }
    std::string settingsPath() { return siteFolderLocation("Site") + "/crawl.json"; }

    void addAndSelectSite(const std::string& url) {
        createFolderWithParents(siteFolderLocation("Site"));
        createSiteFile("Site", url);
        scan().siteList().reloadSiteList();
        selectSite(QStringLiteral("Site"));
        QTRY_VERIFY(scan().crawlSettingsButton()->isEnabled());
    }

    void openSheet() {
        QTest::mouseClick(scan().crawlSettingsButton(), Qt::LeftButton);
        QTRY_VERIFY(sheet().isVisible());
    }

    static void retype(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, text);
    }

private slots:
    void init() {
        useFreshHome();
        openWindow();
    }
    void cleanup() { closeWindow(); }

    void theButtonWaitsForASite() {
        QVERIFY(!scan().crawlSettingsButton()->isEnabled());
        QCOMPARE(scan().crawlSettingsButton()->text(), QStringLiteral("Crawl Settings…"));
        QVERIFY(!scan().crawlDelayAdvice()->isVisible());
    }

    void typedSettingsAreSaved() {
        addAndSelectSite("http://example.com/");
        openSheet();
        QCOMPARE(sheet().connectionsField()->text(), QStringLiteral("1"));
        QCOMPARE(sheet().rateField()->text(), QStringLiteral("0"));
        QCOMPARE(sheet().userAgentField()->text(),
                 QString::fromStdString(CrawlSettings::defaultUserAgent()));
        QVERIFY(!sheet().fetchOnceBox()->isChecked());
        QVERIFY(!sheet().netrcBox()->isChecked());

        retype(sheet().connectionsField(), QStringLiteral("4"));
        retype(sheet().rateField(), QStringLiteral("2.5"));
        // On the box itself: the widget stretches far beyond its label.
        QTest::mouseClick(sheet().fetchOnceBox(), Qt::LeftButton, {},
                          QPoint(8, sheet().fetchOnceBox()->height() / 2));
        sheet().headersField()->setFocus();
        QTest::keyClicks(sheet().headersField(), QStringLiteral("Cookie: a=b"));
        QTest::keyClick(sheet().headersField(), Qt::Key_Return);
        QTest::keyClicks(sheet().headersField(), QStringLiteral("X-Token: t"));
        QTest::mouseClick(sheet().saveButton(), Qt::LeftButton);
        QTRY_VERIFY(!sheet().isVisible());
        QVERIFY(QtAlerts::shownAlerts().empty());

        const CrawlSettingsRead read = readCrawlSettings(siteFolderLocation("Site"));
        QVERIFY(!read.problem);
        QCOMPARE(read.settings.connections(), 4);
        QCOMPARE(read.settings.requestsPerSecond(), 2.5);
        QVERIFY(read.settings.fetchOnce());
        QCOMPARE(read.settings.extraHeaders(),
                 (std::vector<std::string>{"Cookie: a=b", "X-Token: t"}));
        QVERIFY(!read.settings.useNetrc());

        // Opened again, the sheet shows what was saved; Escape leaves the file alone.
        openSheet();
        QCOMPARE(sheet().connectionsField()->text(), QStringLiteral("4"));
        QCOMPARE(sheet().headersField()->toPlainText(),
                 QStringLiteral("Cookie: a=b\nX-Token: t\n"));
        retype(sheet().connectionsField(), QStringLiteral("9"));
        QTest::keyClick(sheet().connectionsField(), Qt::Key_Escape);
        QTRY_VERIFY(!sheet().isVisible());
        QCOMPARE(readCrawlSettings(siteFolderLocation("Site")).settings.connections(), 4);
    }

    void refusedSettingsKeepTheSheetOpen() {
        addAndSelectSite("http://example.com/");
        openSheet();
        retype(sheet().connectionsField(), QStringLiteral("17"));
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::keyClick(sheet().connectionsField(), Qt::Key_Return);  // the default button
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        QCOMPARE(QtAlerts::shownAlerts()[0].title, std::string("Cannot Use These Crawl Settings"));
        QCOMPARE(QtAlerts::shownAlerts()[0].message,
                 std::string("Connections must be a whole number from 1 to 16."));
        QVERIFY(sheet().isVisible());
        QVERIFY(!QFileInfo::exists(QString::fromStdString(settingsPath())));

        retype(sheet().connectionsField(), QStringLiteral("2"));
        retype(sheet().userAgentField(), QString());
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::mouseClick(sheet().saveButton(), Qt::LeftButton);
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{2});
        QCOMPARE(QtAlerts::shownAlerts()[1].message,
                 std::string("The user agent must not be empty and must not hold control "
                             "characters."));
        QVERIFY(sheet().isVisible());
        QTest::mouseClick(sheet().cancelButton(), Qt::LeftButton);
        QTRY_VERIFY(!sheet().isVisible());
        QVERIFY(!QFileInfo::exists(QString::fromStdString(settingsPath())));
    }

    void aMalformedFileIsReportedWhenTheSheetOpens() {
        addAndSelectSite("http://example.com/");
        test::writeFile(settingsPath(), "{\"connections\": 3, \"speed\": 1}");
        QtAlerts::queueAnswers({kDefaultButtonCode});
        openSheet();
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        QCOMPARE(QtAlerts::shownAlerts()[0].message,
                 settingsPath() + ": unknown setting \"speed\". The default settings are used.");
        QCOMPARE(sheet().connectionsField()->text(), QStringLiteral("1"));
    }
};

int main(int argc, char** argv) {
    prepareWebEngine();
    QApplication application(argc, argv);
    CrawlSettingsSheetTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "CrawlSettingsSheetTest.moc"
