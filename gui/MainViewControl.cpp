#include "MainViewControl.h"

#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QMenu>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "BrokenLinksViewWidget.h"
#include "ExportViewWidget.h"
#include "FiltersDrawer.h"
#include "GlobalControls.h"
#include "HtmlSitemapView.h"
#include "QtAlerts.h"
#include "QtUiThread.h"
#include "ScanSheets.h"
#include "ScanViewWidget.h"
#include "SiteSheetDialog.h"
#include "UrlCommandService.h"
#include "WindowSettings.h"
#include "XmlSitemapView.h"
#include "editors/HTMLViewController.h"
#include "editors/UnsavedChanges.h"
#include "export/SitePicker.h"
#include "sites/DataPaths.h"

namespace loomcrest::gui {

namespace {

QString plainTitle() {
    return QString::fromUtf8(kPlainWindowTitle.data(),
                             static_cast<qsizetype>(kPlainWindowTitle.size()));
}

}  // namespace

MainViewControl::MainViewControl(QWidget* parent) : QMainWindow(parent) {
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(plainTitle());
    if (!restoreGeometry(windowsettings::windowGeometry())) {
        resize(1000, 640);
    }
    versionString_ = GlobalControls::operatingSystemVersion();
    alerts_ = std::make_unique<QtAlerts>(this);
    ui_ = std::make_unique<QtUiThread>(this);

    mainViewArea_ = new QStackedWidget(this);
    mainViewArea_->setObjectName(QStringLiteral("mainViewArea"));
    setCentralWidget(mainViewArea_);
    filterDrawer_ = new FiltersDrawer(this);
    addDockWidget(Qt::RightDockWidgetArea, filterDrawer_);
    filterDrawer_->hide();
    siteSheet_ = new SiteSheetDialog(this);
    globalControls_ = new GlobalControls(*this, *alerts_);
    buildMenus();

    exportView_ = new ExportViewWidget(state_, *alerts_, *ui_, this);
    // The picker is filled before the data folders are made, so a first start shows
    // "No Sites Have Been Scanned".
    populateSitePicker();
    checkNeededFoldersExist();

    scanView_ = new ScanViewWidget(this, state_, *alerts_, *ui_, *filterDrawer_, *siteSheet_,
                                   *addSiteAction_, *editSiteAction_);
    fileMenu_->insertAction(quitSeparator_, scanView_->restoreAction());
    const auto shownSiteName = [this] { return scanView_->siteList().state().details.siteName; };
    htmlWindowView_ = new HtmlSitemapView(state_, *alerts_, *ui_, shownSiteName, this);
    htmlEditorWindowView_ = plainView(QStringLiteral("htmlEditorWindowView"),
                                      QStringLiteral("The HTML sitemap editor."));
    xmlWindowView_ = new XmlSitemapView(state_, *alerts_, shownSiteName, this);
    uploadWindowView_ = plainView(QStringLiteral("uploadWindowView"),
                                  QStringLiteral("Upload your sitemaps to your web server."));
    brokenLinksView_ = new BrokenLinksViewWidget(*exportView_, *alerts_, this);
    for (QWidget* view : {static_cast<QWidget*>(scanView_), static_cast<QWidget*>(htmlWindowView_),
                          htmlEditorWindowView_, static_cast<QWidget*>(xmlWindowView_),
                          static_cast<QWidget*>(exportView_), uploadWindowView_,
                          static_cast<QWidget*>(brokenLinksView_)}) {
        mainViewArea_->addWidget(view);
    }
    connect(scanView_, &ScanViewWidget::brokenLinksRequested, this,
            &MainViewControl::showBrokenLinks);
    connect(&scanView_->sheets(), &ScanSheets::progressSheetShown, cancelScanAction_,
            &QAction::setEnabled);

    mainViewArea_->setCurrentWidget(scanView_);
    changeCurrentView(Scan);
    makeRoomForTheDrawer();

    urlCommand_ = new UrlCommandService(this);
    urlCommand_->registerOnSessionBus();
}

MainViewControl::~MainViewControl() {
    // The views hold the state, the alerts and the user-interface thread, which as members
    // would go before the base class deletes its child widgets.
    delete mainViewArea_;
}

// The window is never narrower than the scan view with the filters drawer beside it, so
// opening the drawer takes its room from the views instead of widening the window.
void MainViewControl::makeRoomForTheDrawer() {
    filterDrawer_->setVisible(true);
    layout()->invalidate();
    const int widthWithDrawer = layout()->minimumSize().width();
    filterDrawer_->setVisible(false);
    setMinimumWidth(widthWithDrawer);
}

void MainViewControl::changeCurrentView(int view) {
    state_.vrlmpCurrentView = view;
    markCurrentView();
}

int MainViewControl::returnCurrentView() const {
    return state_.vrlmpCurrentView;
}

QWidget* MainViewControl::mainViewsList(int view) const {
    switch (view) {
        case Scan:
            return scanView_;
        case HtmlSitemap:
            return htmlWindowView_;
        case HtmlEditor:
            return htmlEditorWindowView_;
        case XmlSitemap:
            return xmlWindowView_;
        case Export:
            return exportView_;
        case Upload:
            return uploadWindowView_;
        case BrokenLinks:
            return brokenLinksView_;
        default:
            return nullptr;
    }
}

QAction* MainViewControl::toolbarAction(int view) const {
    return view >= Scan && view <= BrokenLinks ? toolbarActions_[static_cast<size_t>(view - 1)]
                                               : nullptr;
}

void MainViewControl::closeEvent(QCloseEvent* event) {
    if (state_.vrlmpNeedsSave && !closeAnswered_) {
        event->ignore();
        alerts_->presentAlert(unsavedChangesQuestion(UnsavedChangesMoment::Closing),
                              [this](int returnCode) {
                                  if (returnCode == kDefaultButtonCode) {
                                      htmlWindowView_->controller().saveNow("closewindow");
                                  }
                                  closeAnswered_ = true;
                                  close();
                              });
        return;
    }
    windowsettings::rememberWindowGeometry(saveGeometry());
    QMainWindow::closeEvent(event);
}

QWidget* MainViewControl::plainView(const QString& name, const QString& text) {
    auto* view = new QWidget(this);
    view->setObjectName(name);
    auto* label = new QLabel(text, view);
    label->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(view);
    layout->addWidget(label);
    return view;
}

// The common tail of every toolbar action: the unsaved-changes question does not hold the
// switch up.
void MainViewControl::switchTo(int view) {
    leaveHtmlView();
    HTMLViewController::checkSave(state_, *alerts_);
    if (QWidget* target = mainViewsList(view)) {
        mainViewArea_->setCurrentWidget(target);
    }
    changeCurrentView(view);
}

void MainViewControl::setFilterDrawerOpen(bool open) {
    filterDrawer_->setVisible(open);
}

void MainViewControl::leaveHtmlView() {
    if (state_.vrlmpCurrentView == HtmlSitemap) {
        htmlWindowView_->controller().clearEditFields();
    }
}

void MainViewControl::scanTBIAction() {
    if (state_.vrlmpPLastState == 1) {
        setFilterDrawerOpen(true);
    } else {
        setFilterDrawerOpen(false);
        state_.vrlmpPLastState = 0;
    }
    switchTo(Scan);
}

void MainViewControl::htmlTBIAction() {
    if (state_.vrlmpCurSite.empty()) {
        htmlWindowView_->controller().viewTBIAction();  // says a site must be selected
        return;
    }
    setFilterDrawerOpen(false);
    setWindowTitle(QString::fromStdString(state_.vrlmpWinTit));
    const bool entering = state_.vrlmpCurrentView != HtmlSitemap;
    // Entering loads the three-column layout; pressing again offers to save.
    htmlWindowView_->controller().viewTBIAction();
    if (entering) {
        mainViewArea_->setCurrentWidget(htmlWindowView_);
        changeCurrentView(HtmlSitemap);
    }
}

void MainViewControl::htmlEditTBIAction() {
    setFilterDrawerOpen(false);
    switchTo(HtmlEditor);
}

void MainViewControl::xmlTBIAction() {
    if (!xmlWindowView_->controller().viewTBIAction()) {
        return;
    }
    setFilterDrawerOpen(false);
    setWindowTitle(QString::fromStdString(state_.vrlmpWinTit));
    switchTo(XmlSitemap);
    xmlWindowView_->reload();
}

void MainViewControl::exportTBIAction() {
    setFilterDrawerOpen(false);
    setWindowTitle(plainTitle());
    populateSitePicker();
    switchTo(Export);
}

void MainViewControl::exportReload() {
    exportTBIAction();
    populateSitePicker();
}

void MainViewControl::uploadTBIAction() {
    switchTo(Upload);
}

void MainViewControl::showBrokenLinks() {
    leaveHtmlView();
    mainViewArea_->setCurrentWidget(brokenLinksView_);
    changeCurrentView(BrokenLinks);
    brokenLinksView_->reloadBrokenLinks(state_.vrlmpCurSite, state_.vrlmpBadLinkArray);
}

void MainViewControl::populateSitePicker() {
    exportView_->populateSitePicker(
        scanView_ != nullptr ? scanView_->siteList().state().details.siteName : std::string());
}

}  // namespace loomcrest::gui
