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

    // The sheet's fields as "connections|rate|user agent|fetch once|netrc|headers".
    QString fields() {
        return QStringList{sheet().connectionsField()->text(),
                           sheet().rateField()->text(),
                           sheet().userAgentField()->text(),
                           sheet().fetchOnceBox()->isChecked() ? "fetch once" : "",
                           sheet().netrcBox()->isChecked() ? "netrc" : "",
                           sheet().headersField()->toPlainText()}
            .join('|');
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

    void theButtonWaitsForASiteAndTypedSettingsAreSaved() {
        QVERIFY(!scan().crawlSettingsButton()->isEnabled());
        QCOMPARE(scan().crawlSettingsButton()->text(), QStringLiteral("Crawl Settings…"));
        QVERIFY(!scan().crawlDelayAdvice()->isVisible());
        addAndSelectSite("http://example.com/");
        openSheet();
        const QString defaultAgent = QString::fromStdString(CrawlSettings::defaultUserAgent());
        QCOMPARE(fields(), "1|0|" + defaultAgent + "|||");

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

        const std::string saved =
            "{\n  \"connections\": 4,\n  \"requestsPerSecond\": 2.5,\n  \"fetchOnce\": true,\n"
            "  \"extraHeaders\": [\n    \"Cookie: a=b\",\n    \"X-Token: t\"\n  ],\n"
            "  \"useNetrc\": false\n}\n";
        QCOMPARE(test::fileContents(settingsPath()), saved);

        // Opened again, the sheet shows what was saved; Escape leaves the file alone.
        openSheet();
        QCOMPARE(fields(), "4|2.5|" + defaultAgent + "|fetch once||Cookie: a=b\nX-Token: t\n");
        retype(sheet().connectionsField(), QStringLiteral("9"));
        QTest::keyClick(sheet().connectionsField(), Qt::Key_Escape);
        QTRY_VERIFY(!sheet().isVisible());
        QCOMPARE(test::fileContents(settingsPath()), saved);
    }

    void refusedSettingsKeepTheSheetOpen() {
        addAndSelectSite("http://example.com/");
        openSheet();
        retype(sheet().connectionsField(), QStringLiteral("17"));
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::keyClick(sheet().connectionsField(), Qt::Key_Return);  // the default button
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        QVERIFY(sheet().isVisible());
        QVERIFY(!QFileInfo::exists(QString::fromStdString(settingsPath())));

        retype(sheet().connectionsField(), QStringLiteral("2"));
        retype(sheet().userAgentField(), QString());
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::mouseClick(sheet().saveButton(), Qt::LeftButton);
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{2});
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
