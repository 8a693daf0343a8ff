#include <QAbstractItemModel>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QWebEngineScript>
#include <QWebEngineView>
#include <QtTest>
#include <memory>

#include "ExportViewWidget.h"
#include "HtmlSitemapView.h"
#include "MainViewControl.h"
#include "PreviewPage.h"
#include "QtAlerts.h"
#include "ScanViewWidget.h"
#include "XmlSitemapView.h"
#include "app/ProcessState.h"
#include "platform/Text.h"
#include "support/TemporaryHome.h"
#include "support/TestServer.h"

using namespace loomcrest;
using namespace loomcrest::gui;

// The two sitemap views on a layout written by a real scan of a small site.
class SitemapViewsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<test::TemporaryHome> home_;
    std::unique_ptr<test::TestServer> server_;
    std::unique_ptr<MainViewControl> window_;

    HtmlSitemapView& html() { return window_->htmlView(); }
    std::string layout(const char* file) const {
        return test::fileContents(home_->dataRoot() + "/Site/" + file);
    }

    void openHtmlView() {
        QSignalSpy loaded(&html(), &HtmlSitemapView::previewLoaded);
        window_->toolbarAction(MainViewControl::HtmlSitemap)->trigger();
        QVERIFY(loaded.wait(20000));
    }

    // Clicks the anchor number `index` of the preview where a person would.
    void clickAnchor(int index) {
        QVariant point;
        bool answered = false;
        html().previewPage()->runJavaScript(
            QStringLiteral(
                "(function () { var r = document.getElementsByTagName('a')[%1]"
                ".getBoundingClientRect(); return [r.left + 3, r.top + r.height / 2]; })()")
                .arg(index),
            QWebEngineScript::ApplicationWorld, [&](const QVariant& result) {
                point = result;
                answered = true;
            });
        QTRY_VERIFY(answered);
        const QVariantList xy = point.toList();
        QCOMPARE(xy.size(), 2);
        QWidget* surface = html().preview()->focusProxy();
        QVERIFY(surface != nullptr);
        QTest::mouseClick(surface, Qt::LeftButton, {}, QPoint(xy[0].toInt(), xy[1].toInt()));
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

private slots:
    void init() {
        home_ = std::make_unique<test::TemporaryHome>();
        QtAlerts::forgetShownAlerts();
        QtAlerts::queueAnswers({});
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

        window_ = std::make_unique<MainViewControl>();
        window_->resize(1200, 900);
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
        ScanViewWidget& scan = window_->scanView();
        scan.siteRecords().addNewSite();
        scan.siteRecords().setSheetFields("Site", server_->url("/"));
        scan.siteRecords().defaultAction();
        scan.siteList().selectRow(0);
        scan.scanner().scanSiteAction();
        QTRY_VERIFY_WITH_TIMEOUT(!scan.scanner().isScanning(), 20000);
        QTRY_COMPARE(QString::fromStdString(scan.siteList().state().details.pagesFound),
                     QStringLiteral("3"));
    }
    void cleanup() {
        window_.reset();
        server_.reset();
        home_.reset();
    }

    void aClickFillsTheFieldsWithoutLeavingThePage() {
        openHtmlView();
        const QUrl shown = html().previewPage()->url();
        clickAnchor(1);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("Tom & Jerry"));
        QCOMPARE(html().linkField()->text(), QString::fromStdString(server_->url("/a.html")));
        QVERIFY(html().deleteButton()->isEnabled());
        QTest::qWait(200);
        QCOMPARE(html().previewPage()->url(), shown);
    }

    void enterInTheTitleFieldRewritesTheLine() {
        openHtmlView();
        clickAnchor(1);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("Tom & Jerry"));
        html().titleField()->setText(QStringLiteral("Tom & Jerry's"));
        QTest::keyClick(html().titleField(), Qt::Key_Return);
        const std::string file = layout("sitemap3c.html");
        QVERIFY(file.find("<a href=\"" + server_->url("/a.html") +
                          "---LINKID:2---\">Tom &amp; Jerry's<!-- LINKID: 2 --></a>") !=
                std::string::npos);
    }

    void deletingAPageTitlePromotesItsFirstLink() {
        openHtmlView();
        clickAnchor(0);
        QTRY_COMPARE(html().titleField()->text(), QStringLiteral("Home"));
        QtAlerts::queueAnswers({kDefaultButtonCode});
        QTest::mouseClick(html().deleteButton(), Qt::LeftButton);
        QTRY_VERIFY(layout("sitemap3c.html").find(">Home<!-- LINKID: 0 -->") == std::string::npos);
        QVERIFY(layout("sitemap3c.html")
                    .find("<div class=\"zplPageTitle\"><a href=\"" + server_->url("/a.html") +
                          "---LINKID:2---\">") != std::string::npos);
    }

    void aSizeChangeEnablesSaveAndTouchesOnlyItsLine() {
        openHtmlView();
        QVERIFY(!html().saveButton()->isEnabled());
        const std::string before = layout("sitemap3c.html");
        emit html().pageLinkControls().size->activated(5);
        QVERIFY(html().saveButton()->isEnabled());
        QCOMPARE(window_->processState().vrlmpHTMLString,
                 replaceAll(before, "\t\tfont-size: 1em;\n\t\tmargin-left",
                            "\t\tfont-size: 1.3em;\n\t\tmargin-left"));
        QCOMPARE(layout("sitemap3c.html"), before);
    }

    void aTitleHoldingAScriptRunsNothing() {
        openHtmlView();
        QVERIFY(window_->processState().vrlmpHTMLString.find(
                    "<script>document.title='pwned'</script>") != std::string::npos);
        QTest::qWait(300);
        QCOMPARE(html().previewPage()->title(), QStringLiteral("Sitemap"));
    }

    void leavingWithUnsavedChangesAsks() {
        openHtmlView();
        emit html().pageTitleControls().size->activated(0);
        QtAlerts::queueAnswers({kOtherButtonCode});
        window_->toolbarAction(MainViewControl::Scan)->trigger();
        QCOMPARE(window_->returnCurrentView(), 1);
        QTRY_VERIFY(!QtAlerts::shownAlerts().empty());
        QCOMPARE(
            QtAlerts::shownAlerts().back().title,
            std::string("Changes have been made to this sitemap, would you like to save before "
                        "proceeding?"));
        QTRY_VERIFY(!window_->processState().vrlmpNeedsSave);
    }

    void theXmlTableEditsDatesAndPriorities() {
        window_->toolbarAction(MainViewControl::XmlSitemap)->trigger();
        XmlSitemapView& xml = window_->xmlView();
        QCOMPARE(xml.model()->rowCount(), 3);
        QtAlerts::queueAnswers({kDefaultButtonCode});
        xml.model()->setData(xml.model()->index(0, 1), QStringLiteral("2024-01-17"), Qt::EditRole);
        QCOMPARE(QtAlerts::shownAlerts().back().title,
                 std::string("The month must be a number between 01 and 12"));
        xml.model()->setData(xml.model()->index(0, 1), QStringLiteral("2024-05-17"), Qt::EditRole);
        xml.model()->setData(xml.model()->index(1, 3), QStringLiteral("1"), Qt::EditRole);
        const std::string file = layout("sitemap.xml");
        QVERIFY(file.find("<lastmod>2024-05-17</lastmod>") != std::string::npos);
        QVERIFY(file.find("<priority>1</priority>") != std::string::npos);
        QCOMPARE(xml.model()->data(xml.model()->index(1, 3), Qt::DisplayRole).toString(),
                 QStringLiteral("1"));
    }

    void theXmlStatusLineCountsProblemsAfterEachEdit() {
        window_->toolbarAction(MainViewControl::XmlSitemap)->trigger();
        QLabel* status = window_->xmlView().statusLine();
        QCOMPARE(status->text(), QStringLiteral("No problems, 3 warnings"));
        typeUrl(1, QStringLiteral("http://elsewhere.example/a.html"));
        QTRY_COMPARE(status->text(), QStringLiteral("1 problem, 3 warnings"));
        typeUrl(1, QString::fromStdString(server_->url("/a.html")));
        QTRY_COMPARE(status->text(), QStringLiteral("No problems, 3 warnings"));
    }

    void theExportOffersToEscapeABareAmpersand() {
        window_->toolbarAction(MainViewControl::XmlSitemap)->trigger();
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
        QCOMPARE(QtAlerts::shownAlerts()[0].title,
                 std::string("The XML sitemap is not well formed: line 9 holds a bare \"&\"."));
        QCOMPARE(QtAlerts::shownAlerts()[1].message,
                 std::string("3 empty last-modified dates were left out: search engines take an "
                             "empty date as an invalid one."));
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
