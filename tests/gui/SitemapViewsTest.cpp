#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QWindow>
#include <climits>

#include "PreviewWindowTest.h"
#include "XmlSitemapView.h"
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

    // Clicks the anchor number `index` and waits for its title in the field.
    void selectAnchor(int index, const QString& title) {
        clickAnchor(index);
        QTRY_COMPARE(html().titleField()->text(), title);
    }
    // Ctrl+2, as a person opens the view, and the preview's load.
    void openHtmlView() {
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        press(Qt::Key_2, Qt::ControlModifier);
        QVERIFY(loaded.wait(20000));
    }
    QString previewText(const QString& script) { return askPreview(script).toString(); }
    // The indexes of the preview's anchors that carry the selection's outline.
    QString outlinedAnchors() {
        return previewText(
            "[...document.links].flatMap((a, i) => getComputedStyle(a).outlineStyle"
            " === 'solid' ? [i] : []).join(',')");
    }
    QString anchorTexts() {
        return previewText("[...document.links].map(a => a.textContent).join('|')");
    }
    void retitle(const QString& title) {
        html().titleField()->setText(title);
        QTest::keyClick(html().titleField(), Qt::Key_Return);
    }

    // Waits for a cell's line editor, types `text` over what it holds and ends with `key`.
    void typeInCell(const QString& text, Qt::Key key) {
        QTRY_VERIFY(qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr);
        QWidget* editor = QApplication::focusWidget();
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, key);
    }

    // The site's pages-only three-column layout as the page titles P1, P2, … up to `pages`
    // pages or until it holds more than `bytes`, shown in the open view's preview.
    void showPagesOnlyLayout(int pages, size_t bytes = SIZE_MAX) {
        std::string text = std::string(htmlSitemapHead()) + std::string(kTableOpening);
        int filled = 0;
        for (int page = 1; page <= pages && text.size() <= bytes; ++page) {
            const std::string number = std::to_string(page);
            text += tablePiece(pageTitleLine("http://h/p" + number + ".html", page, "P" + number),
                               3, filled);
        }
        test::writeFile(home_->dataRoot() + "/Site/sitemap3cpo.html",
                        text + std::string(threeColumnClosing(filled)));
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        emit html().layoutPopup()->activated(3);
        QVERIFY(loaded.wait(20000));
    }

    // Tab once reset the table and lost the next cell's edit; menu picks waited for focus
    // to leave the cell. The status line counts the problems after each edit.
    void editTheXmlTableByKeyboard() {
        press(Qt::Key_4, Qt::ControlModifier);
        QLabel* status = window_->xmlView().statusLine();
        QCOMPARE(status->text(), QStringLiteral("No problems, 3 warnings"));
        QTableView* table = window_->xmlView().table();
        const auto sitemapHolds = [this](const std::string& piece) {
            return layout("sitemap.xml").find(piece) != std::string::npos;
        };
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(0, 0)).center());
        QTest::keyClick(table, Qt::Key_F2);
        const QString renamed = QStringLiteral("http://elsewhere.example/a.html");
        typeInCell(renamed, Qt::Key_Tab);
        QTRY_COMPARE(status->text(), QStringLiteral("1 problem, 3 warnings"));
        QTRY_COMPARE(table->currentIndex(), table->model()->index(0, 1));
        typeInCell(QStringLiteral("2024-05-17"), Qt::Key_Return);
        QTRY_VERIFY(sitemapHolds("<lastmod>2024-05-17</lastmod>"));
        QVERIFY(sitemapHolds("<loc>" + renamed.toStdString() + "</loc>"));
        QCOMPARE(table->currentIndex(), table->model()->index(0, 1));

        QTest::keyClick(table, Qt::Key_Right);
        QTest::keyClick(table, Qt::Key_F2);
        QTRY_VERIFY(qobject_cast<QComboBox*>(QApplication::focusWidget()) != nullptr);
        auto* menu = qobject_cast<QComboBox*>(QApplication::focusWidget());
        const std::string picked = menu->itemText(menu->currentIndex() + 1).toStdString();
        QTest::keyClick(menu, Qt::Key_Down);
        QTRY_VERIFY(sitemapHolds("<changefreq>" + picked + "</changefreq>"));
        QCOMPARE(table->currentIndex(), table->model()->index(0, 2));

        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::keyClick(table, Qt::Key_Delete);
        QTRY_COMPARE(table->model()->rowCount(), 2);
        QVERIFY(!sitemapHolds(renamed.toStdString()));
    }

private slots:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void init() {
        useFreshHome();
        server_ = std::make_unique<test::TestServer>();
        const std::pair<const char*, const char*> pages[] = {
            {"/",
             "<title>Home</title><a href=\"a.html\">Tom &amp; Jerry</a><a href=\"b.html\">B</a>"},
            {"/a.html",
             "<title>&lt;script&gt;document.title='pwned'&lt;/script&gt;</title><a "
             "href=\"/\">Back</a>"},
            {"/b.html", "<title>B page</title>"}};
        for (const auto& [path, page] : pages) {
            server_->server().Get(path, [page](const httplib::Request&, httplib::Response& res) {
                res.set_content(page, "text/html");
            });
        }
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

    // A click outlines without leaving the page (a title holding a script runs none); Enter
    // in the title field rewrites the line in place; a page changed behind the view's back or
    // a lost renderer loads it again; Delete on a page title changes the preview; another
    // layout forgets the clicked link.
    void clicksOutlineAndEditsChangeThePreviewInPlaceUntilTheViewIsLeft() {
        openHtmlView();
        QCOMPARE(html().previewPage()->title(), QStringLiteral("Sitemap"));
        const QUrl shown = html().previewPage()->url();
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        selectAnchor(1, QStringLiteral("Tom & Jerry"));
        QCOMPARE(html().linkField()->text(), QString::fromStdString(server_->url("/a.html")));
        QTRY_COMPARE(outlinedAnchors(), QStringLiteral("1"));
        QCOMPARE(html().previewPage()->url(), shown);
        QVERIFY(window_->processState().vrlmpHTMLString.find("outline") == std::string::npos);

        retitle(QStringLiteral("Tom & Jerry's <3"));
        QVERIFY(updated.wait(20000));
        QVERIFY(anchorTexts().contains(QStringLiteral("|Tom & Jerry's <3|")));
        QCOMPARE(loaded.count(), 0);
        emit html().previewPage()->renderProcessTerminated(QWebEnginePage::CrashedTerminationStatus,
                                                           11);
        QVERIFY(loaded.wait(20000));
        QVERIFY(anchorTexts().contains(QStringLiteral("|Tom & Jerry's <3|")));
        selectAnchor(1, QStringLiteral("Tom & Jerry's <3"));
        askPreview(QStringLiteral("document.getElementsByTagName('a')[1].remove(); true"));
        retitle(QStringLiteral("Jerry"));
        QVERIFY(loaded.wait(20000));
        QVERIFY(anchorTexts().contains(QStringLiteral("|Jerry|")));

        selectAnchor(0, QStringLiteral("Home"));
        QtAlerts::queueAnswers({kDefaultButtonCode});
        press(Qt::Key_Delete);
        QVERIFY(updated.wait(20000));
        QVERIFY(!html().deleteButton()->isEnabled());
        QVERIFY(anchorTexts().startsWith(QStringLiteral("Jerry|")));

        clickAnchor(1);
        QTRY_VERIFY(html().deleteButton()->isEnabled());
        QTest::keyClick(html().layoutPopup(), Qt::Key_Down);
        QVERIFY(loaded.wait(20000));
        QVERIFY(html().titleField()->text().isEmpty());
        QVERIFY(!html().deleteButton()->isEnabled());
        QCOMPARE(outlinedAnchors(), QString());
    }

    // The web view's surface was once made on the first visit, rebuilding the whole window.
    // Edits once wrote the previous site's sitemap into a site never scanned.
    void theXmlTableAndTheWindowWorkAndASiteNeverScannedCanBeNeitherEditedNorWritten() {
        const QPointer<QWindow> handle = window_->windowHandle();
        const WId native = window_->winId();
        openHtmlView();
        QCOMPARE(window_->windowHandle(), handle.data());
        QCOMPARE(window_->winId(), native);
        withoutABrowser(
            [this] { QTest::mouseClick(html().viewInBrowserButton(), Qt::LeftButton); });
        QCOMPARE(QtAlerts::shownAlerts()[0].message,
                 "No web browser could be started to show " + home_->dataRoot() +
                     "/Site/tmpMap.html\nOpen it in your browser yourself.");

        editTheXmlTableByKeyboard();
        window_->toolbarAction(MainViewControl::Export)->trigger();
        tick(window_->exportView().compressPartsBox());
        QVERIFY(window_->exportView().exporter().compressParts());

        press(Qt::Key_1, Qt::ControlModifier);
        window_->scanView().siteRecords().addNewSite();
        window_->scanView().siteRecords().setSheetFields("Fresh", "fresh.example");
        window_->scanView().siteRecords().defaultAction();
        selectSite(QStringLiteral("Fresh"));
        openHtmlView();
        QVERIFY(html().previewPage()->shownHtml().contains("No Sitemap Is Available"));
        const HtmlSitemapView::StyleGroupControls& links = html().pageLinkControls();
        for (QWidget* control : std::initializer_list<QWidget*>{
                 html().titleField(), html().linkField(), html().saveButton(),
                 html().deleteButton(), links.bold, links.face, links.colourWell}) {
            QVERIFY(!control->isEnabled());
        }
        window_->resize(window_->minimumSize());
        QTRY_COMPARE(window_->size(), window_->minimumSize());
        QTRY_VERIFY(html().preview()->height() >= 150);
    }

    // A small layout keeps its rows as a table; emptying a cell of its last row changes that
    // row in place. Only a big layout's preview lays its rows out apart; clicks and edits still
    // change single anchors in place there.
    void pagesOnlyLayoutsChangeSingleRowsAndAnchorsInPlace() {
        openHtmlView();
        showPagesOnlyLayout(7);
        const char* firstRowDisplay = "getComputedStyle(document.querySelector('tr')).display";
        QCOMPARE(previewText(firstRowDisplay), QStringLiteral("table-row"));
        selectAnchor(6, QStringLiteral("P7"));
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::mouseClick(html().deleteButton(), Qt::LeftButton);
        QVERIFY(updated.wait(20000));
        QCOMPARE(loaded.count(), 0);
        QCOMPARE(previewText("document.querySelector('table').rows.length + ':' + "
                             "document.querySelectorAll('td[width=\"32%\"]').length"),
                 QStringLiteral("2:6"));

        QtAlerts::queueAnswers({kOtherButtonCode});  // the deletion is not saved
        showPagesOnlyLayout(INT_MAX, size_t{1} << 20);
        QCOMPARE(previewText(firstRowDisplay), QStringLiteral("flex"));
        clickAnchor(1);
        QTRY_COMPARE(outlinedAnchors(), QStringLiteral("1"));
        selectAnchor(4, QStringLiteral("P5"));
        QTRY_COMPARE(outlinedAnchors(), QStringLiteral("4"));
        loaded.clear();
        retitle(QStringLiteral("Renamed"));
        QVERIFY(updated.wait(20000));
        QCOMPARE(loaded.count(), 0);
        QVERIFY(anchorTexts().startsWith(QStringLiteral("P1|P2|P3|P4|Renamed|P6|")));
    }

    // A style change enables Save and shows in the preview; leaving or closing with unsaved style
    // asks (the question's words are the editor's own test).
    void styleChangesAreShownSavedOrOfferedBeforeLeaving() {
        openHtmlView();
        QVERIFY(!html().saveButton()->isEnabled());
        QLineEdit* field = html().pageTitleControls().colourField;
        field->selectAll();
        QTest::keyClicks(field, QStringLiteral("ff8800"));
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY(html().saveButton()->isEnabled());
        QtAlerts::queueAnswers({kDefaultButtonCode});
        press(Qt::Key_S, Qt::ControlModifier);
        QTRY_VERIFY(!html().saveButton()->isEnabled());
        QCOMPARE(layout("sitemap3c.html"), window_->processState().vrlmpHTMLString);

        const char* linkSize =
            "getComputedStyle(document.querySelector('.zplPageLink a')).fontSize";
        const QString sizeBefore = previewText(linkSize);
        QSignalSpy updated(&html(), &HtmlSitemapView::previewUpdated);
        emit html().pageLinkControls().size->activated(5);
        QVERIFY(html().saveButton()->isEnabled());
        QVERIFY(updated.wait(20000));
        QVERIFY(previewText(linkSize) != sizeBefore);
        const size_t asked = QtAlerts::shownAlerts().size();
        QtAlerts::queueAnswers({kOtherButtonCode});
        window_->toolbarAction(MainViewControl::Scan)->trigger();
        QCOMPARE(window_->returnCurrentView(), 1);
        QTRY_COMPARE(QtAlerts::shownAlerts().size(), asked + 1);
        QTRY_VERIFY(!window_->processState().vrlmpNeedsSave);

        openHtmlView();
        QTest::mouseClick(html().pageLinkControls().italic, Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(html().saveButton()->isEnabled());
        const std::string italic = window_->processState().vrlmpHTMLString;
        QtAlerts::queueAnswers({kDefaultButtonCode});
        press(Qt::Key_Q, Qt::ControlModifier);
        QTRY_VERIFY(!window_->isVisible());
        QCOMPARE(QtAlerts::shownAlerts().back().kind, AlertKind::Question);
        QCOMPARE(layout("sitemap3c.html"), italic);
    }
};

int main(int argc, char** argv) {
    prepareWebEngine();
    QApplication application(argc, argv);
    SitemapViewsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SitemapViewsTest.moc"
