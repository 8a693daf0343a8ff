#include <QAbstractItemModel>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QWindow>
#include <QtTest>
#include <climits>
#include <cstdint>

#include "ExportViewWidget.h"
#include "PreviewWindowTest.h"
#include "XmlSitemapView.h"
#include "platform/Text.h"
#include "sitemap/HtmlSitemapFormat.h"
#include "sitemap/SitemapFiles.h"
#include "support/LayoutPieces.h"
#include "support/TestServer.h"

using namespace loomcrest;
using namespace loomcrest::gui;
using loomcrest::test::tablePiece;

// The two sitemap views on a layout written by a real scan of a small site.
class SitemapViewsTest : public test::PreviewWindowTest {
    Q_OBJECT

private:
    std::unique_ptr<test::TestServer> server_;

    std::string layout(const char* file) const {
        return test::fileContents(home_->dataRoot() + "/Site/" + file);
    }

    // Ctrl+2, as a person opens the view, and the preview's load.
    void openHtmlView() {
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        press(Qt::Key_2, Qt::ControlModifier);
        QVERIFY(loaded.wait(20000));
    }
    // The indexes of the preview's anchors that carry the selection's outline.
    QString outlinedAnchors() {
        return askPreview(
                   QStringLiteral("Array.prototype.map.call(document.getElementsByTagName('a'), "
                                  "function (a, i) { return getComputedStyle(a).outlineStyle === "
                                  "'solid' ? i : -1; }).filter(function (i) { return i >= 0; })"
                                  ".join(',')"))
            .toString();
    }
    QColor centreOf(QWidget* widget) {
        const QImage picture = widget->grab().toImage();
        return picture.pixelColor(picture.width() / 2, picture.height() / 2);
    }

    QString anchorTexts() {
        return askPreview(QStringLiteral("Array.from(document.querySelectorAll('a'))"
                                         ".map(function (a) { return a.textContent; }).join('|')"))
            .toString();
    }

    // Types a new address into the URL cell of `row` as a person would: a double-click opens
    // the editor, the keyboard replaces the text and Enter keeps it.
    void typeUrl(int row, const QString& url) {
        QTableView* table = window_->xmlView().table();
        const QRect cell = table->visualRect(table->model()->index(row, 0));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell.center());
        QTRY_VERIFY(qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr);
        QWidget* editor = QApplication::focusWidget();
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, url);
        QTest::keyClick(editor, Qt::Key_Return);
    }

    // The site's pages-only three-column layout as the page titles P1, P2, … up to `pages`
    // pages or until it holds more than `bytes`.
    void writePagesOnlyLayout(int pages, size_t bytes = SIZE_MAX) {
        std::string text = std::string(htmlSitemapHead()) + std::string(kTableOpening);
        int filled = 0;
        for (int page = 1; page <= pages && text.size() <= bytes; ++page) {
            const std::string number = std::to_string(page);
            text += tablePiece(pageTitleLine("http://h/p" + number + ".html", page, "P" + number),
                               3, filled);
        }
        test::writeFile(home_->dataRoot() + "/Site/sitemap3cpo.html",
                        text + std::string(threeColumnClosing(filled)));
    }

private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void init() {
        useFreshHome();
        server_ = std::make_unique<test::TestServer>();
        server_->server().Get("/", [](const httplib::Request&, httplib::Response& res) {
            res.set_content(
                "<title>Home</title><a href=\"a.html\">Tom &amp; Jerry</a>"
                "<a href=\"b.html\">B</a>",
                "text/html");
        });
        server_->server().Get("/a.html", [](const httplib::Request&, httplib::Response& res) {
            res.set_content(
                "<title>&lt;script&gt;document.title='pwned'&lt;/script&gt;</title>"
                "<a href=\"/\">Back</a>",
                "text/html");
        });
        server_->server().Get("/b.html", [](const httplib::Request&, httplib::Response& res) {
            res.set_content("<title>B page</title>", "text/html");
        });
        server_->start();

        openWindow(QSize(1200, 900));
        ScanViewWidget& scan = window_->scanView();
        scan.siteRecords().addNewSite();
        scan.siteRecords().setSheetFields("Site", server_->url("/"));
        scan.siteRecords().defaultAction();
        selectSite(QStringLiteral("Site"));
        scan.scanner().scanSiteAction();
        QTRY_VERIFY_WITH_TIMEOUT(!scan.scanner().isScanning(), 20000);
        QTRY_COMPARE(QString::fromStdString(scan.siteList().state().details.pagesFound),
                     QStringLiteral("3"));
    }
    void cleanup() {
        closeWindow();
        server_.reset();
    }

    void aTitleHoldingAScriptIsShownAsTextAndAClickOutlinesWithoutLeavingThePage() {
        openHtmlView();
        QCOMPARE(askPreview(QStringLiteral("document.querySelectorAll('script').length")).toInt(),
                 0);
        QVERIFY(anchorTexts().contains(QStringLiteral("|<script>document.title='pwned'</script>")));
        QCOMPARE(html().previewPage()->title(), QStringLiteral("Sitemap"));
        const QUrl shown = html().previewPage()->url();
        QSignalSpy loads(html().previewPage(), &QWebEnginePage::loadStarted);
        QCOMPARE(outlinedAnchors(), QString());
        clickAnchor(1);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("Tom & Jerry"));
        QCOMPARE(html().linkField()->text(), QString::fromStdString(server_->url("/a.html")));
        QVERIFY(html().deleteButton()->isEnabled());
        QTRY_COMPARE(outlinedAnchors(), QStringLiteral("1"));
        QCOMPARE(loads.count(), 0);
        QCOMPARE(html().previewPage()->url(), shown);
        QVERIFY(window_->processState().vrlmpHTMLString.find("outline") == std::string::npos);
    }

    // Delete once removed a line that was no longer shown as selected.
    void leavingTheViewOrLayoutForgetsTheClickedLink() {
        openHtmlView();
        const std::string before = layout("sitemap3c.html");
        clickAnchor(2);
        QTRY_VERIFY(html().deleteButton()->isEnabled());
        press(Qt::Key_4, Qt::ControlModifier);
        QCOMPARE(window_->returnCurrentView(), 4);
        openHtmlView();
        QVERIFY(html().titleField()->text().isEmpty());
        QVERIFY(!html().deleteButton()->isEnabled());
        QCOMPARE(outlinedAnchors(), QString());
        QtAlerts::queueAnswers({kDefaultButtonCode});
        press(Qt::Key_Delete);
        QCOMPARE(QtAlerts::shownAlerts().size(), size_t{0});
        QCOMPARE(layout("sitemap3c.html"), before);

        clickAnchor(2);
        QTRY_VERIFY(html().deleteButton()->isEnabled());
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        QTest::keyClick(html().layoutPopup(), Qt::Key_Down);
        QVERIFY(loaded.wait(20000));
        QCOMPARE(html().layoutPopup()->currentIndex(), 1);
        QVERIFY(!html().deleteButton()->isEnabled());
        QVERIFY(html().linkField()->text().isEmpty());
        QCOMPARE(outlinedAnchors(), QString());
    }

    // Edits once wrote the previous site's sitemap into a site never scanned.
    void aSiteNeverScannedCanBeNeitherEditedNorWritten() {
        window_->scanView().siteRecords().addNewSite();
        window_->scanView().siteRecords().setSheetFields("Fresh", "fresh.example");
        window_->scanView().siteRecords().defaultAction();
        selectSite(QStringLiteral("Site"));
        openHtmlView();
        const HtmlSitemapView::StyleGroupControls& links = html().pageLinkControls();
        QCOMPARE(centreOf(links.colourWell), QColor(0, 0, 255));
        press(Qt::Key_1, Qt::ControlModifier);
        selectSite(QStringLiteral("Fresh"));
        openHtmlView();
        QVERIFY(html().previewPage()->shownHtml().contains("No Sitemap Is Available"));
        for (QWidget* control :
             {static_cast<QWidget*>(html().titleField()), static_cast<QWidget*>(html().linkField()),
              static_cast<QWidget*>(html().saveButton()),
              static_cast<QWidget*>(html().deleteButton()), static_cast<QWidget*>(links.bold),
              static_cast<QWidget*>(links.face), static_cast<QWidget*>(links.colourWell)}) {
            QVERIFY(!control->isEnabled());
        }
        QVERIFY(centreOf(links.colourWell) != QColor(0, 0, 255));
    }

    // The web view's surface was once made on the first visit, rebuilding the whole window.
    void thePreviewNeitherRebuildsTheWindowNorShrinksAway() {
        const QPointer<QWindow> handle = window_->windowHandle();
        const WId native = window_->winId();
        openHtmlView();
        QCOMPARE(window_->windowHandle(), handle.data());
        QCOMPARE(window_->winId(), native);
        window_->resize(window_->minimumSize());
        QTRY_COMPARE(window_->size(), window_->minimumSize());
        QTRY_VERIFY(html().preview()->height() >= 150);
    }

    void theColourWellShowsTheColourAsEntered() {
        openHtmlView();
        QLineEdit* field = html().pageTitleControls().colourField;
        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("ff8800"));
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(centreOf(html().pageTitleControls().colourWell), QColor(255, 136, 0));
    }

    void enterInTheTitleFieldRewritesTheLineInPlace() {
        openHtmlView();
        clickAnchor(1);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("Tom & Jerry"));
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        html().titleField()->setText(QStringLiteral("Tom & Jerry's <3"));
        QTest::keyClick(html().titleField(), Qt::Key_Return);
        QVERIFY(updated.wait(20000));
        QVERIFY(anchorTexts().contains(QStringLiteral("|Tom & Jerry's <3|")));
        QCOMPARE(loaded.count(), 0);

        // A renderer lost after the change takes the page with it: the edited text comes back.
        emit html().previewPage()->renderProcessTerminated(QWebEnginePage::CrashedTerminationStatus,
                                                           11);
        QVERIFY(loaded.wait(20000));
        QVERIFY(anchorTexts().contains(QStringLiteral("|Tom & Jerry's <3|")));
    }

    void aPageChangedBehindTheViewsBackIsLoadedAgain() {
        openHtmlView();
        clickAnchor(1);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("Tom & Jerry"));
        askPreview(QStringLiteral("document.getElementsByTagName('a')[1].remove(); true"));
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        html().titleField()->setText(QStringLiteral("Jerry"));
        QTest::keyClick(html().titleField(), Qt::Key_Return);
        QVERIFY(loaded.wait(20000));
        QVERIFY(anchorTexts().contains(QStringLiteral("|Jerry|")));
    }

    void deletingAPageTitlePromotesItsFirstLink() {
        openHtmlView();
        clickAnchor(0);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("Home"));
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        QtAlerts::queueAnswers({kDefaultButtonCode});
        press(Qt::Key_Delete);
        QVERIFY(updated.wait(20000));
        QVERIFY(!html().deleteButton()->isEnabled());
        QCOMPARE(askPreview(QStringLiteral("(function () { var d = document.querySelector('td "
                                           "div'); return d.className + ':' + d.textContent; })()"))
                     .toString(),
                 QStringLiteral("zplPageTitle:Tom & Jerry"));
    }

    void emptyingACellOfTheLastRowChangesThatRowInPlace() {
        writePagesOnlyLayout(7);
        openHtmlView();
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        emit html().layoutPopup()->activated(3);
        QVERIFY(loaded.wait(20000));
        clickAnchor(6);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("P7"));
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::mouseClick(html().deleteButton(), Qt::LeftButton);
        QVERIFY(updated.wait(20000));
        QCOMPARE(loaded.count(), 1);
        QCOMPARE(askPreview(QStringLiteral("document.querySelector('table').rows.length")).toInt(),
                 2);
        QCOMPARE(askPreview(QStringLiteral("document.querySelectorAll('td[width=\"32%\"]').length"))
                     .toInt(),
                 6);
    }

    // Only a big layout's preview lays its rows out apart; clicks and edits still change
    // single anchors in place there.
    void aBigLayoutOutlinesAndChangesSingleAnchorsInPlace() {
        writePagesOnlyLayout(INT_MAX, size_t{1} << 20);
        openHtmlView();
        const QString rowDisplay =
            QStringLiteral("getComputedStyle(document.querySelector('tr')).display");
        QCOMPARE(askPreview(rowDisplay).toString(), QStringLiteral("table-row"));
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        emit html().layoutPopup()->activated(3);
        QVERIFY(loaded.wait(20000));
        QCOMPARE(askPreview(rowDisplay).toString(), QStringLiteral("flex"));
        clickAnchor(1);
        QTRY_COMPARE(outlinedAnchors(), QStringLiteral("1"));
        clickAnchor(4);
        QTRY_COMPARE(outlinedAnchors(), QStringLiteral("4"));
        QCOMPARE(html().titleField()->text(), QStringLiteral("P5"));
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        html().titleField()->setText(QStringLiteral("Renamed"));
        QTest::keyClick(html().titleField(), Qt::Key_Return);
        QVERIFY(updated.wait(20000));
        QCOMPARE(loaded.count(), 1);
        QVERIFY(anchorTexts().startsWith(QStringLiteral("P1|P2|P3|P4|Renamed|P6|")));
    }

    void aSizeChangeEnablesSaveAndTouchesOnlyItsLine() {
        openHtmlView();
        QVERIFY(!html().saveButton()->isEnabled());
        const QString linkSize =
            QStringLiteral("getComputedStyle(document.querySelector('.zplPageLink a')).fontSize");
        const QString sizeBefore = askPreview(linkSize).toString();
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        emit html().pageLinkControls().size->activated(5);
        QVERIFY(html().saveButton()->isEnabled());
        QVERIFY(updated.wait(20000));
        QVERIFY(askPreview(linkSize).toString() != sizeBefore);
    }

    void savingAndClosingWithUnsavedStyle() {
        openHtmlView();
        QTest::mouseClick(html().pageLinkControls().bold, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(html().saveButton()->isEnabled());
        QtAlerts::queueAnswers({kDefaultButtonCode});
        press(Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY(!html().saveButton()->isEnabled());
        QCOMPARE(layout("sitemap3c.html"), window_->processState().vrlmpHTMLString);

        QTest::mouseClick(html().pageLinkControls().italic, Qt::LeftButton, {}, QPoint(5, 5));
        const std::string italic = window_->processState().vrlmpHTMLString;
        QtAlerts::queueAnswers({kDefaultButtonCode});
        press(Qt::Key_Q, Qt::ControlModifier);
        QTRY_VERIFY(!window_->isVisible());
        const Alert& question = QtAlerts::shownAlerts().back();
        QCOMPARE(question.title, std::string("Changes have been made to this sitemap, would you "
                                             "like to save the changes you have made?"));
        QCOMPARE(question.defaultButton + "/" + question.otherButton,
                 std::string("Save Changes/Discard Changes"));
        QCOMPARE(layout("sitemap3c.html"), italic);
    }

    void viewInBrowserSaysWhenNoBrowserStarts() {
        openHtmlView();
        withoutABrowser(
            [this] { QTest::mouseClick(html().viewInBrowserButton(), Qt::LeftButton); });
        QCOMPARE(QtAlerts::shownAlerts()[0].message,
                 "No web browser could be started to show " + home_->dataRoot() +
                     "/Site/tmpMap.html\nOpen it in your browser yourself.");
    }

    void leavingWithUnsavedChangesAsks() {
        openHtmlView();
        emit html().pageTitleControls().size->activated(0);
        QtAlerts::queueAnswers({kOtherButtonCode});
        window_->toolbarAction(MainViewControl::Scan)->trigger();
        QCOMPARE(window_->returnCurrentView(), 1);
        QTRY_VERIFY(!QtAlerts::shownAlerts().empty());
        QTRY_VERIFY(!window_->processState().vrlmpNeedsSave);
    }

    // Tab once reset the table and lost the next cell's edit; menu picks waited for focus
    // to leave the cell.
    void theXmlTableWritesEveryEditAndKeepsItsCell() {
        press(Qt::Key_4, Qt::ControlModifier);
        QTableView* table = window_->xmlView().table();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(0, 0)).center());
        QTest::keyClick(table, Qt::Key_F2);
        QTRY_VERIFY(qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr);
        const QString renamed = QString::fromStdString(server_->url("/renamed.html"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), renamed);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTRY_COMPARE(table->currentIndex(), table->model()->index(0, 1));
        QTRY_VERIFY(qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("2024-05-17"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QTRY_VERIFY(layout("sitemap.xml").find("<lastmod>2024-05-17</lastmod>") !=
                    std::string::npos);
        QVERIFY(layout("sitemap.xml").find("<loc>" + renamed.toStdString() + "</loc>") !=
                std::string::npos);
        QCOMPARE(table->currentIndex(), table->model()->index(0, 1));

        QTest::keyClick(table, Qt::Key_Right);
        QTest::keyClick(table, Qt::Key_F2);
        QTRY_VERIFY(qobject_cast<QComboBox*>(QApplication::focusWidget()) != nullptr);
        auto* menu = qobject_cast<QComboBox*>(QApplication::focusWidget());
        const QString picked = menu->itemText(menu->currentIndex() + 1);
        QTest::keyClick(menu, Qt::Key_Down);
        QTRY_VERIFY(
            layout("sitemap.xml").find("<changefreq>" + picked.toStdString() + "</changefreq>") !=
            std::string::npos);
        QCOMPARE(table->currentIndex(), table->model()->index(0, 2));

        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::keyClick(table, Qt::Key_Delete);
        QTRY_COMPARE(table->model()->rowCount(), 2);
        QVERIFY(layout("sitemap.xml").find(renamed.toStdString()) == std::string::npos);
    }

    void theXmlStatusLineCountsProblemsAfterEachEditAndTheExportOffersToEscape() {
        window_->toolbarAction(MainViewControl::XmlSitemap)->trigger();
        QLabel* status = window_->xmlView().statusLine();
        QCOMPARE(status->text(), QStringLiteral("No problems, 3 warnings"));
        typeUrl(1, QStringLiteral("http://elsewhere.example/a.html"));
        QTRY_COMPARE(status->text(), QStringLiteral("1 problem, 3 warnings"));
        typeUrl(1, QString::fromStdString(server_->url("/a.html")));
        QTRY_COMPARE(status->text(), QStringLiteral("No problems, 3 warnings"));

        // The export offers to escape a bare ampersand.
        typeUrl(0, QString::fromStdString(server_->url("/?a=1&b=2")));
        QTRY_COMPARE(window_->xmlView().statusLine()->text(),
                     QStringLiteral("1 problem, 3 warnings"));

        window_->toolbarAction(MainViewControl::Export)->trigger();
        ExportViewWidget& exporting = window_->exportView();
        QTest::mouseClick(exporting.compressPartsBox(), Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(exporting.exporter().compressParts());
        const QString file = QString::fromStdString(home_->path() + "/sitemap.xml");
        ExportViewWidget::setNextSaveFileName(file);
        QtAlerts::forgetShownAlerts();
        QtAlerts::queueAnswers({kDefaultButtonCode, kDefaultButtonCode});
        QTest::mouseClick(exporting.xmlExportButton(), Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(QtAlerts::shownAlerts().size() == 2, 10000);
        exporting.exporter().waitForExport();
        const std::string exported = test::fileContents(file.toStdString());
        QVERIFY(exported.find("<loc>" + server_->url("/?a=1&amp;b=2") + "</loc>") !=
                std::string::npos);
        QVERIFY(exported.find("lastmod") == std::string::npos);
    }
};

int main(int argc, char** argv) {
    prepareWebEngine();
    QApplication application(argc, argv);
    SitemapViewsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SitemapViewsTest.moc"
