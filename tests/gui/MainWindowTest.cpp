#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusPendingCall>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>
#include <memory>

#include "BrokenLinksViewWidget.h"
#include "ExportViewWidget.h"
#include "FiltersDrawer.h"
#include "MainViewControl.h"
#include "PreviewPage.h"
#include "QtAlerts.h"
#include "ScanSheets.h"
#include "ScanViewWidget.h"
#include "SiteSheetDialog.h"
#include "app/ProcessState.h"
#include "app/URLCommand.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"
#include "support/RawHttpServer.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

using namespace loomcrest;
using namespace loomcrest::gui;

// Drives the real main window under Xvfb. Every alert is answered from a queue, so no test
// waits for a person.
class MainWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<test::TemporaryHome> home_;
    std::unique_ptr<MainViewControl> window_;

    void openWindow() {
        window_ = std::make_unique<MainViewControl>();
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    }
    ScanViewWidget& scan() { return window_->scanView(); }
    void addSite(const QString& name, const QString& url) {
        window_->findChild<QAction*>(QString(), Qt::FindDirectChildrenOnly);
        scan().siteRecords().addNewSite();
        SiteSheetDialog& sheet = window_->siteSheet();
        QTRY_VERIFY(sheet.isVisible());
        sheet.nameField()->setText(name);
        sheet.urlField()->setText(url);
        QTest::mouseClick(sheet.defaultButton(), Qt::LeftButton);
    }
    void selectSite(const QString& name) {
        const auto items = scan().siteTable()->findItems(name, Qt::MatchExactly);
        QVERIFY(!items.isEmpty());
        scan().siteTable()->setCurrentItem(items.first());
    }
    QString detail(const char* name) { return scan().detail(QString::fromLatin1(name))->text(); }

private slots:
    void init() {
        home_ = std::make_unique<test::TemporaryHome>();
        QtAlerts::forgetShownAlerts();
        QtAlerts::queueAnswers({});
        openWindow();
    }
    void cleanup() {
        window_.reset();
        home_.reset();
    }

    void startsOnTheScanViewWithTheDataFolders() {
        QCOMPARE(window_->windowTitle(), QStringLiteral("Loomcrest2"));
        QCOMPARE(window_->returnCurrentView(), 1);
        QVERIFY(QFileInfo::exists(QString::fromStdString(homeFolderLocation())));
        QCOMPARE(window_->exportView().sitePickerItems(),
                 QStringList{QStringLiteral("No Sites Have Been Scanned")});
        QVERIFY(!scan().scanButton()->isEnabled());
    }

    void addingASiteThroughTheSheetListsIt() {
        addSite(QStringLiteral("Example"), QStringLiteral("example.com"));
        QTRY_VERIFY(!window_->siteSheet().isVisible());
        QCOMPARE(scan().siteTable()->count(), 1);
        QCOMPARE(scan().siteTable()->item(0)->text(), QStringLiteral("Example"));
        QCOMPARE(
            QString::fromStdString(readSiteFile("Example")),
            QStringLiteral("<siteName>Example</siteName>\n<siteURL>http://example.com/</siteURL>\n"
                           "<ignoreRobotFile>NO</ignoreRobotFile>\n<pagesFound>0</pagesFound>\n"
                           "<totalLinks>0</totalLinks>"));
    }

    void refusedInputShowsTheAlertAndKeepsTheSheet() {
        QtAlerts::queueAnswers({kDefaultButtonCode});
        addSite(QStringLiteral("a.b"), QString());
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        const Alert& alert = QtAlerts::shownAlerts().front();
        QCOMPARE(alert.title,
                 std::string("The following error has occurred while saving your site."));
        QCOMPARE(alert.message,
                 std::string("\nThe site name cannot contain the following characters: "
                             "/ \\ . or ?\nThe site URL field cannot be left blank."));
        QVERIFY(window_->siteSheet().isVisible());
        QCOMPARE(window_->siteSheet().nameField()->text(), QStringLiteral("a.b"));
    }

    void selectingASiteShowsItsDetails() {
        addSite(QStringLiteral("Example"), QStringLiteral("example.com"));
        selectSite(QStringLiteral("Example"));
        QCOMPARE(window_->windowTitle(), QStringLiteral("Loomcrest2 - Example"));
        QCOMPARE(detail("siteName"), QStringLiteral("Example"));
        QCOMPARE(detail("siteURL"), QStringLiteral("http://example.com/"));
        QCOMPARE(detail("pagesFound"), QStringLiteral("0"));
        QVERIFY(scan().scanButton()->isEnabled());
        QVERIFY(scan().deleteButton()->isEnabled());
    }

    void theRobotsBoxRewritesTheSiteFile() {
        addSite(QStringLiteral("Example"), QStringLiteral("example.com"));
        selectSite(QStringLiteral("Example"));
        QTest::mouseClick(scan().robotsBox(), Qt::LeftButton, {}, QPoint(5, 5));
        QCOMPARE(readSiteField(readSiteFile("Example"), SiteField::IgnoreRobotFile),
                 std::string("YES"));
    }

    void filtersAreAddedAndDeleted() {
        addSite(QStringLiteral("Example"), QStringLiteral("example.com"));
        selectSite(QStringLiteral("Example"));
        FiltersDrawer& drawer = window_->filterDrawer();
        QTest::mouseClick(scan().filtersButton(), Qt::LeftButton);
        QTRY_VERIFY(drawer.isVisible());
        drawer.input()->setText(QStringLiteral("PDF"));
        QTest::mouseClick(drawer.addButton(), Qt::LeftButton);
        QCOMPARE(drawer.table()->count(), 1);
        QVERIFY(drawer.input()->text().isEmpty());
        drawer.table()->item(0)->setSelected(true);
        QTest::mouseClick(drawer.deleteButton(), Qt::LeftButton);
        QCOMPARE(drawer.table()->count(), 0);
        QCOMPARE(test::fileContents(home_->dataRoot() + "/Example/filters.zplp"), std::string());
    }

    void theDrawerIsRestoredOnReturningToTheScanView() {
        addSite(QStringLiteral("Example"), QStringLiteral("example.com"));
        selectSite(QStringLiteral("Example"));
        QTest::mouseClick(scan().filtersButton(), Qt::LeftButton);
        QTRY_VERIFY(window_->filterDrawer().isVisible());
        window_->toolbarAction(MainViewControl::Export)->trigger();
        QVERIFY(!window_->filterDrawer().isVisible());
        QCOMPARE(window_->returnCurrentView(), 5);
        window_->toolbarAction(MainViewControl::Scan)->trigger();
        QVERIFY(window_->filterDrawer().isVisible());
        QCOMPARE(window_->returnCurrentView(), 1);
    }

    void sitemapViewsNeedASite() {
        QtAlerts::queueAnswers({kDefaultButtonCode, kDefaultButtonCode});
        window_->toolbarAction(MainViewControl::HtmlSitemap)->trigger();
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        window_->toolbarAction(MainViewControl::XmlSitemap)->trigger();
        QCOMPARE(QtAlerts::shownAlerts().size(), size_t{2});
        QCOMPARE(QtAlerts::shownAlerts()[0].title,
                 std::string("You need to select a sitemap from the sites list to use the HTML "
                             "sitemap viewer."));
        QCOMPARE(QtAlerts::shownAlerts()[1].title,
                 std::string("You need to select a sitemap from the sites list to use the XML "
                             "sitemap viewer."));
        QCOMPARE(window_->returnCurrentView(), 1);
    }

    void exportButtonsAreOffWithoutAScannedSite() {
        window_->toolbarAction(MainViewControl::Export)->trigger();
        QVERIFY(!window_->exportView().htmlExportButton()->isEnabled());
        QVERIFY(!window_->exportView().xmlExportButton()->isEnabled());
        QCOMPARE(window_->windowTitle(), QStringLiteral("Loomcrest2"));
    }

    void aScanRunsFromTheButtonToTheStatistics() {
        test::TestServer server;
        server.server().Get("/", [](const httplib::Request&, httplib::Response& res) {
            res.set_content(
                "<title>Home</title><a href=\"a.html\">A</a><a href=\"gone.html\">G</a>",
                "text/html");
        });
        server.server().Get("/a.html", [](const httplib::Request&, httplib::Response& res) {
            res.set_content("<title>A</title>", "text/html");
        });
        server.start();
        addSite(QStringLiteral("Site"), QString::fromStdString(server.url("/")));
        selectSite(QStringLiteral("Site"));
        QTest::mouseClick(scan().scanButton(), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(!scan().scanner().isScanning(), 10000);
        QTRY_COMPARE(detail("pagesFound"), QStringLiteral("3"));
        QCOMPARE(detail("totalLinksFound"), QStringLiteral("4"));
        QCOMPARE(detail("brokenLinks"), QStringLiteral("1"));
        QCOMPARE(detail("linksScanned"), QStringLiteral("2"));
        QVERIFY(scan().brokenLinksButton()->isVisible());
        QVERIFY(scan().scannedLinks()->toPlainText().contains(QStringLiteral("/a.html")));
        QVERIFY(scan().scanButton()->isEnabled());

        QTest::mouseClick(scan().brokenLinksButton(), Qt::LeftButton);
        QCOMPARE(window_->returnCurrentView(), 7);
        QCOMPARE(window_->brokenLinksView().table()->count(), 1);

        window_->toolbarAction(MainViewControl::Export)->trigger();
        QVERIFY(window_->exportView().htmlExportButton()->isEnabled());
        QCOMPARE(window_->exportView().sitePicker()->currentText(), QStringLiteral("Site"));

        const QString exported = QString::fromStdString(home_->path() + "/sitemap.html");
        ExportViewWidget::setNextSaveFileName(exported);
        QTest::mouseClick(window_->exportView().layoutBox(SitemapExporter::oneCSF), Qt::LeftButton,
                          {}, QPoint(5, 5));
        QVERIFY(!window_->exportView().layoutBox(SitemapExporter::threeCSF)->isChecked());
        QTest::mouseClick(window_->exportView().htmlExportButton(), Qt::LeftButton);
        QTRY_VERIFY(QFileInfo::exists(exported));
        window_->exportView().exporter().waitForExport();
        const std::string text = test::fileContents(exported.toStdString());
        QVERIFY(text.find("LINKID") == std::string::npos);
        QVERIFY(text.find("<a href=\"" + server.url("/a.html") + "\">A</a>") != std::string::npos);
    }

    void aScanCanBeCancelled() {
        std::atomic<int> pagesAsked{0};
        test::RawHttpServer server([&](int connection, const std::string&,
                                       const std::atomic<bool>&) {
            ++pagesAsked;
            std::string page = "<title>T</title>";
            for (int i = 0; i < 50; ++i) {
                page +=
                    "<a href=\"p" + std::to_string(pagesAsked.load() * 100 + i) + ".html\">x</a>";
            }
            QThread::msleep(20);
            test::RawHttpServer::send(connection,
                                      test::RawHttpServer::response("200 OK", "text/html", page));
        });
        addSite(QStringLiteral("Slow"), QString::fromStdString(server.url("/")));
        selectSite(QStringLiteral("Slow"));
        QTest::mouseClick(scan().scanButton(), Qt::LeftButton);
        QTRY_VERIFY(scan().sheets().progressSheet()->isVisible());
        QTRY_VERIFY(pagesAsked > 12);
        QTest::mouseClick(scan().sheets().cancelButton(), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(!scan().scanner().isScanning(), 10000);
        QVERIFY(!scan().sheets().progressSheet()->isVisible());
        QVERIFY(detail("pagesFound").toInt() > 10);
        QVERIFY(
            QString::fromStdString(test::fileContents(home_->dataRoot() + "/Slow/sitemap1c.html"))
                .endsWith(QStringLiteral("</body>\n</html>")));
    }

    void theScriptingCommandIsOfferedOnTheSessionBus() {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            QSKIP("no session bus");
        }
        QDBusInterface command(QStringLiteral("org.loomcrest.Loomcrest"),
                               QStringLiteral("/URLCommand"),
                               QStringLiteral("org.loomcrest.Loomcrest.URLCommand"), bus);
        QVERIFY(command.isValid());
        // Answered from this process's own event loop, so the call is made asynchronously.
        QDBusPendingCall call = command.asyncCall(QStringLiteral("performWithURL"),
                                                  QStringLiteral("http://example.com/a"));
        QTRY_VERIFY(call.isFinished());
        QVERIFY(!call.isError());
        QCOMPARE(window_->returnCurrentView(), 1);
    }

    void theScriptingCommandChangesNothing() {
        URLCommand::performDefaultImplementation("http://example.com/a/b");
        URLCommand::performDefaultImplementation("example.com");
        URLCommand::performDefaultImplementation("");
        QCOMPARE(window_->returnCurrentView(), 1);
        QCOMPARE(window_->windowTitle(), QStringLiteral("Loomcrest2"));
    }
};

int main(int argc, char** argv) {
    prepareWebEngine();
    QApplication application(argc, argv);
    MainWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MainWindowTest.moc"
