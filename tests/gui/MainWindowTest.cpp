#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusPendingCall>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableWidget>

#include "BrokenLinksViewWidget.h"
#include "CrawlSettingsSheet.h"
#include "FiltersDrawer.h"
#include "GlobalControls.h"
#include "PreviewPage.h"
#include "ScanSheets.h"
#include "Screenshots.h"
#include "SiteSheetDialog.h"
#include "WindowTest.h"
#include "crawler/CrawlSettings.h"
#include "platform/FolderLock.h"
#include "sites/DataPaths.h"
#include "sites/SiteFile.h"
#include "support/RawHttpServer.h"
#include "support/TestServer.h"

using namespace loomcrest;
using namespace loomcrest::gui;

class MainWindowTest : public test::WindowTest {
    Q_OBJECT

private:
    void reopenWithSites(const std::vector<std::string>& names) {
        window_.reset();
        for (const std::string& name : names) {
            test::writeFile(returnFullFileLocation(name),
                            newSiteFileText(name, "http://" + name + ".example/"));
        }
        openWindow();
    }
    void addSite(const QString& name, const QString& url) {
        press(Qt::Key_N, Qt::ControlModifier);
        SiteSheetDialog& sheet = window_->siteSheet();
        QTRY_VERIFY(sheet.isVisible());
        QTest::keyClicks(sheet.nameField(), name);
        QTest::keyClicks(sheet.urlField(), url);
        click(sheet.defaultButton());
    }
    void expectNothingSelected() {
        QVERIFY(scan().siteTable()->selectedItems().isEmpty());
        QCOMPARE(window_->processState().vrlmpCurSite, std::string());
        QCOMPARE(window_->windowTitle(), QStringLiteral("Loomcrest2"));
        QCOMPARE(detail("siteName"), QString());
    }
    QString detail(const char* name) { return scan().detail(QString::fromLatin1(name))->text(); }
    // The shown figures as "pages found|total links|broken links|links scanned".
    QString figures() {
        return QStringList{detail("pagesFound"), detail("totalLinksFound"), detail("brokenLinks"),
                           detail("linksScanned")}
            .join('|');
    }

    CrawlSettingsSheet& crawlSheet() { return *scan().crawlSettingsSheet(); }
    std::string crawlSettingsPath() { return home_->dataRoot() + "/Site/crawl.json"; }
    void openCrawlSheet() {
        click(scan().crawlSettingsButton());
        QTRY_VERIFY(crawlSheet().isVisible());
    }
    // The sheet's fields as "connections|rate|user agent|fetch once|netrc|headers".
    QString crawlFields() {
        CrawlSettingsSheet& sheet = crawlSheet();
        return QStringList{sheet.connectionsField()->text(),
                           sheet.rateField()->text(),
                           sheet.userAgentField()->text(),
                           sheet.fetchOnceBox()->isChecked() ? "fetch once" : "",
                           sheet.netrcBox()->isChecked() ? "netrc" : "",
                           sheet.headersField()->toPlainText()}
            .join('|');
    }

    void addTwoFiltersAndDeleteThemByKeyAndButton() {
        FiltersDrawer& drawer = window_->filterDrawer();
        click(scan().filtersButton());
        QTRY_VERIFY(drawer.isVisible());
        QTest::keyClicks(drawer.input(), QStringLiteral("PDF"));
        click(drawer.addButton());
        QTest::keyClicks(drawer.input(), QStringLiteral("?print"));
        QTest::keyClick(drawer.input(), Qt::Key_Return);
        QCOMPARE(drawer.table()->count(), 2);
        QVERIFY(drawer.input()->text().isEmpty());
        QTest::keyClick(drawer.input(), Qt::Key_Delete);
        QCOMPARE(drawer.table()->count(), 2);  // Delete in the field deletes no filter
        QListWidget* list = drawer.table();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(0)).center());
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(drawer.table()->count(), 1);
        list->item(0)->setSelected(true);
        click(drawer.deleteButton());
        QCOMPARE(drawer.table()->count(), 0);
        QCOMPARE(test::fileContents(home_->dataRoot() + "/Example/filters.zplp"), std::string());
    }

    // Offered on the session bus (the test runs with one of its own), the scripting command
    // changes nothing in the window.
    void expectTheUrlCommandToChangeNothing() {
        QDBusConnection bus = QDBusConnection::sessionBus();
        QDBusInterface command(QStringLiteral("org.loomcrest.Loomcrest"),
                               QStringLiteral("/URLCommand"),
                               QStringLiteral("org.loomcrest.Loomcrest.URLCommand"), bus);
        QVERIFY(command.isValid());
        // Answered from this process's own event loop, so the call is made asynchronously.
        QDBusPendingCall call = command.asyncCall(QStringLiteral("performWithURL"),
                                                  QStringLiteral("http://example.com/a"));
        QTRY_VERIFY(call.isFinished());
        QVERIFY(!call.isError());
    }

    void checkTheBrokenLinksView(const std::string& gone, const std::string& home) {
        click(scan().brokenLinksButton());
        QCOMPARE(window_->returnCurrentView(), 7);
        // The details as columns (their texts are the scan's); a double-click opens the page,
        // Ctrl+C copies the selected rows, the CSV button exports them; a list without details
        // shows the URL alone.
        BrokenLinksViewWidget& view = window_->brokenLinksView();
        QTableWidget* table = view.table();
        QCOMPARE(table->rowCount(), 1);
        QCOMPARE(table->columnCount(), 5);
        // A double-click is a press and release followed by a double-click event.
        const QPoint cell = table->visualItemRect(table->item(0, 2)).center();
        QtAlerts::forgetShownAlerts();
        withoutABrowser([&] {
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);
            QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
        });
        QVERIFY(QtAlerts::shownAlerts()[0].message.find(gone + "\n") != std::string::npos);

        QApplication::clipboard()->clear();
        QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
        QTRY_COMPARE(QApplication::clipboard()->text(),
                     QString::fromStdString(gone + "\t404 - Not Found\t" + home + "\tG\t2\n"));

        const QString exported = QString::fromStdString(home_->path() + "/broken.csv");
        exportWith(view.csvButton(), exported);
        QCOMPARE(test::fileContents(exported.toStdString()),
                 "URL,Status,Found on,Link text,Links\r\n" + gone + ",404 - Not Found," + home +
                     ",G,2\r\n");

        QVERIFY(removeFile(home_->dataRoot() + "/Site/brokenLinks.tsv"));
        window_->toolbarAction(MainViewControl::BrokenLinks)->trigger();
        QCOMPARE(table->columnCount(), 1);
        QCOMPARE(table->item(0, 0)->text(), QString::fromStdString(gone));
    }

    // A slow site's scan is cancelled from its progress sheet.
    void cancelTheScanOfASlowSite() {
        std::atomic<int> pagesAsked{0};
        test::RawHttpServer slowServer([&](int connection, const std::string&,
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
        addSite(QStringLiteral("Slow"), QString::fromStdString(slowServer.url("/")));
        selectSite(QStringLiteral("Slow"));
        click(scan().scanButton());
        QTRY_VERIFY(scan().sheets().progressSheet()->isVisible());
        QTRY_VERIFY(pagesAsked > 12);
        QTest::keyClick(scan().sheets().progressSheet(), Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(!scan().scanner().isScanning(), 10000);
        QTRY_COMPARE(windowsBesides(*window_), QStringList());
        QVERIFY(detail("pagesFound").toInt() > 10);
    }

    void editTheCrawlSettingsAndHaveSomeRefused() {
        openCrawlSheet();
        const QString defaultAgent = QString::fromStdString(CrawlSettings::defaultUserAgent());
        QCOMPARE(crawlFields(), "1|0|" + defaultAgent + "|||");
        retype(crawlSheet().connectionsField(), QStringLiteral("4"));
        retype(crawlSheet().rateField(), QStringLiteral("2.5"));
        tick(crawlSheet().fetchOnceBox());
        QPlainTextEdit* headers = crawlSheet().headersField();
        QTest::keyClicks(headers, QStringLiteral("Cookie: a=b"));
        QTest::keyClick(headers, Qt::Key_Return);
        QTest::keyClicks(headers, QStringLiteral("X-Token: t"));
        click(crawlSheet().saveButton());
        QTRY_VERIFY(!crawlSheet().isVisible());
        const std::string saved = test::fileContents(crawlSettingsPath());

        // Opened again, the sheet shows what was saved (the file's bytes are the settings'
        // own tests' business); refused settings keep it open and write nothing.
        openCrawlSheet();
        QCOMPARE(crawlFields(), "4|2.5|" + defaultAgent + "|fetch once||Cookie: a=b\nX-Token: t\n");
        retype(crawlSheet().connectionsField(), QStringLiteral("17"));
        QtAlerts::queueAnswers({kDefaultButtonCode, kDefaultButtonCode});
        QTest::keyClick(crawlSheet().connectionsField(), Qt::Key_Return);  // the default button
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        QVERIFY(crawlSheet().isVisible());
        click(crawlSheet().cancelButton());
        QTRY_VERIFY(!crawlSheet().isVisible());
        QCOMPARE(test::fileContents(crawlSettingsPath()), saved);
        QtAlerts::forgetShownAlerts();
    }

    // The window's place and the export folder outlast the window.
    void expectThePlaceAndTheExportFolderToBeKept() {
        test::writeFile(home_->dataRoot() + "/Site/sitemap.xml", "<urlset>\n</urlset>");
        const QRect placed(60, 50, 1010, 700);
        window_->setGeometry(placed);
        QTRY_COMPARE(window_->geometry(), placed);
        press(Qt::Key_5, Qt::ControlModifier);
        const QString folder = QString::fromStdString(home_->path() + "/exports");
        QDir().mkpath(folder);
        ExportViewWidget& exports = window_->exportView();
        exportWith(exports.xmlExportButton(), folder + "/first.xml");
        QTRY_COMPARE(exports.saveToField()->text(), folder);

        // The real save dialog opens in that folder; it blocks, so it is answered from a timer.
        QString openedIn;
        QTimer answer;
        connect(&answer, &QTimer::timeout, this, [&] {
            if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
                openedIn = dialog->directory().absolutePath();
                dialog->reject();
            }
        });
        answer.start(50);
        click(exports.xmlExportButton());
        QTRY_COMPARE(openedIn, folder);
        exports.exporter().waitForExport();

        press(Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!window_->isVisible());
        QVERIFY2(QtAlerts::shownAlerts().empty(), "nothing unsaved, nothing asked");
        openWindow();
        QCOMPARE(window_->geometry(), placed);
        QCOMPARE(window_->exportView().saveToField()->text(), folder);
    }

    // A click on the menu's title opens it whether or not the window has the focus.
    void restoreFromTheFileMenu(QAction* restore) {
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QMenuBar* menuBar = window_->menuBar();
        QAction* fileItem = menuBar->actions().front();
        QMenu* fileMenu = fileItem->menu();
        QTest::mouseClick(menuBar, Qt::LeftButton, {}, menuBar->actionGeometry(fileItem).center());
        QTRY_VERIFY(fileMenu->isVisible());
        QTest::mouseClick(fileMenu, Qt::LeftButton, {}, fileMenu->actionGeometry(restore).center());
        QTRY_COMPARE(detail("pagesFound"), QStringLiteral("3"));
        QVERIFY(!restore->isEnabled());
    }

private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void init() {
        useFreshHome();
        openWindow();
    }
    void cleanup() { closeWindow(); }

    // A progress dialog shows itself a few seconds after it is made unless it is reset; the
    // panels once showed so after every start, so no dialog may even be armed to show. And the
    // first site was selected as soon as the list had focus.
    void anIdleWindowShowsNothingElseAndNeitherItNorAnEditSelectsAnything() {
        reopenWithSites({"Alpha", "Beta"});
        for (const QProgressDialog* dialog : window_->findChildren<QProgressDialog*>()) {
            for (const QTimer* timer : dialog->findChildren<QTimer*>()) {
                QVERIFY2(!timer->isActive(), qPrintable(dialog->labelText()));
            }
        }
        expectNothingSelected();
        QWidget* belowTheNames = scan().siteTable()->viewport();
        QTest::mouseClick(belowTheNames, Qt::LeftButton, {},
                          QPoint(20, belowTheNames->height() - 10));
        QTRY_VERIFY(scan().siteTable()->hasFocus());
        QCOMPARE(windowsBesides(*window_), QStringList());
        expectNothingSelected();
        QTest::keyClick(scan().siteTable(), Qt::Key_Space);
        QCOMPARE(window_->windowTitle(), QStringLiteral("Loomcrest2 - Alpha"));

        // An edit leaves nothing selected and no other site's settings.
        test::writeFile(home_->dataRoot() + "/Beta/filters.zplp", "private\n");
        selectSite(QStringLiteral("Beta"));
        tick(scan().robotsBox());
        click(scan().filtersButton());
        FiltersDrawer& drawer = window_->filterDrawer();
        QTRY_COMPARE(drawer.table()->count(), 1);
        press(Qt::Key_E, Qt::ControlModifier);
        QTRY_VERIFY(window_->siteSheet().isVisible());
        retype(window_->siteSheet().urlField(), QStringLiteral("beta.example/x"));
        QTest::keyClick(window_->siteSheet().urlField(), Qt::Key_Return);
        QTRY_VERIFY(!window_->siteSheet().isVisible());
        scan().siteTable()->setFocus();
        QTRY_VERIFY(scan().siteTable()->hasFocus());
        expectNothingSelected();
        QVERIFY(!scan().robotsBox()->isChecked());
        QVERIFY(!scan().robotsBox()->isEnabled());
        QCOMPARE(drawer.table()->count(), 0);
        QVERIFY(!drawer.input()->isEnabled());
    }

    // The export view's list and the refusals are the controllers' own tests' business.
    void withoutASiteOnlyTheScanViewWorksAndASiteAddedIsListedChangedAndFiltered() {
        QCOMPARE(window_->returnCurrentView(), 1);
        QVERIFY(QFileInfo::exists(QString::fromStdString(homeFolderLocation())));
        for (QWidget* off :
             std::initializer_list<QWidget*>{scan().scanButton(), scan().crawlSettingsButton(),
                                             window_->exportView().htmlExportButton(),
                                             window_->exportView().xmlExportButton()}) {
            QVERIFY(!off->isEnabled());
        }

        QtAlerts::queueAnswers({kDefaultButtonCode, kDefaultButtonCode});
        press(Qt::Key_5, Qt::ControlModifier);
        press(Qt::Key_2, Qt::ControlModifier);
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        press(Qt::Key_4, Qt::ControlModifier);
        QCOMPARE(QtAlerts::shownAlerts().size(), size_t{2});
        QVERIFY(window_->toolbarAction(MainViewControl::Export)->isChecked());
        QVERIFY(!window_->toolbarAction(MainViewControl::HtmlSitemap)->isChecked());
        QCOMPARE(window_->returnCurrentView(), 5);

        press(Qt::Key_1, Qt::ControlModifier);
        QtAlerts::queueAnswers({kDefaultButtonCode});
        addSite(QStringLiteral("a.b"), QString());
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{3});
        QVERIFY(window_->siteSheet().isVisible());
        QTest::keyClick(window_->siteSheet().nameField(), Qt::Key_Escape);
        QTRY_VERIFY(!window_->siteSheet().isVisible());

        addSite(QStringLiteral("Example"), QStringLiteral("example.com"));
        QTRY_VERIFY(!window_->siteSheet().isVisible());
        QCOMPARE(scan().siteTable()->count(), 1);
        selectSite(QStringLiteral("Example"));
        QCOMPARE(detail("siteName") + "|" + detail("siteURL") + "|" + figures(),
                 QStringLiteral("Example|http://example.com/|0|0|0|0"));
        QVERIFY(scan().scanButton()->isEnabled());
        QVERIFY(scan().deleteButton()->isEnabled());
        tick(scan().robotsBox());
        QCOMPARE(readSiteField(readSiteFile("Example"), SiteField::IgnoreRobotFile),
                 std::string("YES"));

        addTwoFiltersAndDeleteThemByKeyAndButton();

        press(Qt::Key_5, Qt::ControlModifier);
        expectTheUrlCommandToChangeNothing();
        QCOMPARE(window_->returnCurrentView(), 5);
    }

    // The scan's figures, files and texts are its own tests' business: here a key starts it,
    // its views show and export what it found, the File menu puts back the sitemaps of the
    // scan before, a site another scan holds is refused, and a scan can be cancelled.
    void aScanRunsFromTheKeyToItsViewsAndTheFileMenuPutsThePreviousOneBack() {
        std::mutex mutex;
        std::string homePage =
            R"(<title>Home</title><a href="a.html">A</a><a href="gone.html">G</a>)";
        test::TestServer server;
        server.server().Get("/", [&](const httplib::Request&, httplib::Response& res) {
            const std::lock_guard lock(mutex);
            res.set_content(homePage, "text/html");
        });
        server.server().Get("/a.html", [](const httplib::Request&, httplib::Response& res) {
            res.set_content("<title>A</title><a href=\"gone.html\">G again</a>", "text/html");
        });
        server.start();
        addSite(QStringLiteral("Site"), QString::fromStdString(server.url("/")));
        selectSite(QStringLiteral("Site"));
        press(Qt::Key_F5);
        QTRY_VERIFY_WITH_TIMEOUT(!scan().scanner().isScanning(), 10000);
        QTRY_VERIFY(scan().scanButton()->isEnabled());
        QTRY_COMPARE(figures(), QStringLiteral("3|5|1|2"));
        QTRY_COMPARE(windowsBesides(*window_), QStringList());
        QVERIFY(scan().brokenLinksButton()->isVisible());
        QVERIFY(scan().scannedLinks()->toPlainText().contains(QStringLiteral("/a.html")));
        QAction* restore = scan().restoreAction();
        QVERIFY(!restore->isEnabled());

        checkTheBrokenLinksView(server.url("/gone.html"), server.url("/"));
        window_->toolbarAction(MainViewControl::Export)->trigger();
        ExportViewWidget& exports = window_->exportView();
        QCOMPARE(exports.sitePicker()->currentText(), QStringLiteral("Site"));
        tick(exports.layoutBox(SitemapExporter::oneCSF));
        QVERIFY(!exports.layoutBox(SitemapExporter::threeCSF)->isChecked());
        exportWith(exports.htmlExportButton(),
                   QString::fromStdString(home_->path() + "/sitemap.html"));

        press(Qt::Key_1, Qt::ControlModifier);
        {
            const std::lock_guard lock(mutex);
            homePage = "<title>Two</title>";
        }
        click(scan().scanButton());
        QTRY_VERIFY_WITH_TIMEOUT(restore->isEnabled(), 10000);
        QTRY_COMPARE(detail("pagesFound"), QStringLiteral("1"));
        restoreFromTheFileMenu(restore);

        const FolderLock otherScan = FolderLock::tryLock(home_->dataRoot() + "/Site");
        QVERIFY(otherScan.held());
        QtAlerts::forgetShownAlerts();
        QtAlerts::queueAnswers({kDefaultButtonCode});
        click(scan().scanButton());
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), size_t{1});
        QVERIFY(scan().scanButton()->isEnabled());

        cancelTheScanOfASlowSite();
    }

    // A malformed settings file's alert is the settings editor's own test. At the smallest size
    // the drawer once widened the window and cut its field's text off.
    void crawlSettingsTheDrawerEveryViewsShortcutAndTheWindowsPlaceWork() {
        reopenWithSites({"Site"});
        selectSite(QStringLiteral("Site"));
        editTheCrawlSettingsAndHaveSomeRefused();

        const QSize smallest = window_->minimumSize();
        window_->resize(smallest);
        QTRY_COMPARE(window_->size(), smallest);
        click(scan().filtersButton());
        FiltersDrawer& drawer = window_->filterDrawer();
        QTRY_VERIFY(drawer.isVisible());
        QTRY_VERIFY(drawer.input()->width() > 0);
        QCOMPARE(window_->size(), smallest);
        QVERIFY(drawer.input()->width() >=
                drawer.input()->fontMetrics().horizontalAdvance(drawer.input()->placeholderText()));
        press(Qt::Key_5, Qt::ControlModifier);
        QVERIFY(!drawer.isVisible());
        QCOMPARE(window_->returnCurrentView(), 5);
        press(Qt::Key_1, Qt::ControlModifier);
        QVERIFY(drawer.isVisible());
        QCOMPARE(window_->returnCurrentView(), 1);

        // Every view has its shortcut and mark.
        for (const int view : {3, 4, 5, 6, 7, 2, 1}) {
            press(Qt::Key_0 + view, Qt::ControlModifier);
            QCOMPARE(window_->returnCurrentView(), view);
            QCOMPARE(qobject_cast<QStackedWidget*>(window_->centralWidget())->currentWidget(),
                     window_->mainViewsList(view));
            for (int other = 1; other <= 7; ++other) {
                QCOMPARE(window_->toolbarAction(other)->isChecked(), other == view);
            }
        }

        expectThePlaceAndTheExportFolderToBeKept();
    }

    // Escape answers as the button that changes nothing; it never picks save or discard.
    void escapeOnAnAlertAnswersWithTheHarmlessButtonAndAFailedBrowserIsReported() {
        const std::pair<Alert, std::optional<int>> cases[] = {
            {Alert::question("Delete?", "", "Delete Link", "", "Cancel"), kOtherButtonCode},
            {Alert::question("Save?", "", "Save Changes", "Cancel Deletion", "Discard Changes"),
             kAlternateButtonCode},
            {Alert::refusal("No."), kDefaultButtonCode},
            {Alert::question("Save?", "", "Save Changes", "", "Discard"), std::nullopt},
        };
        for (const auto& [alert, expected] : cases) {
            std::optional<int> answer;
            window_->alerts().presentAlert(alert, [&answer](int code) { answer = code; });
            QTRY_VERIFY(qobject_cast<QMessageBox*>(QApplication::activeModalWidget()));
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QTest::keyClick(box, Qt::Key_Escape);
            if (!expected) {
                QVERIFY(!answer);  // no harmless button: the alert stays open
                click(box->defaultButton());
            }
            QTRY_COMPARE(answer, std::optional<int>(expected.value_or(kDefaultButtonCode)));
        }

        // Report a Problem says when no browser starts.
        QtAlerts::forgetShownAlerts();
        withoutABrowser([this] {
            press(Qt::Key_H, Qt::AltModifier);
            QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
        });
        QCOMPARE(QtAlerts::shownAlerts()[0].title, std::string("The Page Could Not Be Opened"));
        QVERIFY(GlobalControls::supportPage().startsWith(QStringLiteral("file:///")));
        QVERIFY(GlobalControls::supportPage().endsWith(QStringLiteral("/doc/loomcrest/README.md")));
    }
};

int main(int argc, char** argv) {
    prepareWebEngine();
    QApplication application(argc, argv);
    MainWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "MainWindowTest.moc"
