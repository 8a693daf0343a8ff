#include "ScanViewWidget.h"

#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "CrawlSettingsSheet.h"
#include "FiltersDrawer.h"
#include "QtAlerts.h"
#include "QtUiThread.h"
#include "ScanSheets.h"
#include "SiteSheetDialog.h"
#include "sites/DataPaths.h"

namespace loomcrest::gui {

namespace {

QLabel* detailLabel(QWidget* parent, const QString& name) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace

ScanViewWidget::ScanViewWidget(QWidget* mainWindow, ProcessState& process, QtAlerts& alerts,
                               QtUiThread& ui, FiltersDrawer& drawer, SiteSheetDialog& sheet,
                               QAction& addSiteAction, QAction& editSiteAction)
    : QWidget(mainWindow),
      mainWindow_(mainWindow),
      drawer_(drawer),
      addSiteAction_(addSiteAction),
      editSiteAction_(editSiteAction) {
    setObjectName(QStringLiteral("scanView"));
    createControls();
    layOutControls();
    sheets_ = std::make_unique<ScanSheets>(mainWindow, [this] { driver_->cancelScan(); });
    siteList_ = std::make_unique<ScanViewController>(process, *this, alerts);
    siteRecords_ = std::make_unique<AddEditDeleteSites>(*siteList_, sheet, alerts);
    filters_ = std::make_unique<ScanFilters>(
        process, [this] { return siteList_->state().details.siteName; }, drawer, alerts);
    driver_ = std::make_unique<ScanDriver>(process, *siteList_, *sheets_, alerts, ui);
    sitemapRestore_ = std::make_unique<SitemapRestore>(*siteList_, alerts);
    restoreAction_ = new QAction(QStringLiteral("Restore Previous Sitemaps"), this);
    restoreAction_->setObjectName(QStringLiteral("restorePreviousSitemapsAction"));
    restoreAction_->setEnabled(false);
    sheet.connectTo(*siteRecords_);
    drawer.connectTo(*filters_);
    alerts.setSiteSheet(&sheet);
    crawlSettingsSheet_ = new CrawlSettingsSheet(mainWindow, alerts, [this] {
        return siteFolderLocation(siteList_->state().details.siteName);
    });
    connectControls();
    siteList_->awakeFromNib();
}

void ScanViewWidget::createControls() {
    siteTable_ = new QListWidget(this);
    siteTable_->setObjectName(QStringLiteral("siteListTable"));
    siteTable_->setSelectionMode(QAbstractItemView::SingleSelection);
    siteName_ = detailLabel(this, QStringLiteral("siteName"));
    siteURL_ = detailLabel(this, QStringLiteral("siteURL"));
    totalLinksFound_ = detailLabel(this, QStringLiteral("totalLinksFound"));
    pagesFound_ = detailLabel(this, QStringLiteral("pagesFound"));
    linksScanned_ = detailLabel(this, QStringLiteral("linksScanned"));
    brokenLinks_ = detailLabel(this, QStringLiteral("brokenLinks"));
    robotsBox_ = new QCheckBox(QStringLiteral("Ignore robots.txt"), this);
    robotsBox_->setObjectName(QStringLiteral("ignoreRobotsButton"));
    scanButton_ = new QPushButton(QStringLiteral("Scan Site"), this);
    scanButton_->setObjectName(QStringLiteral("scanSiteButton"));
    addButton_ = new QPushButton(QStringLiteral("Add Site…"), this);
    deleteButton_ = new QPushButton(QStringLiteral("Delete Site"), this);
    deleteButton_->setObjectName(QStringLiteral("deleteSiteButton"));
    filtersButton_ = new QPushButton(QStringLiteral("Filters"), this);
    filtersButton_->setObjectName(QStringLiteral("filterDrawerButton"));
    brokenLinksButton_ = new QPushButton(QStringLiteral("Broken Links"), this);
    brokenLinksButton_->setObjectName(QStringLiteral("brokenLinksButton"));
    // The row keeps the button's height while it is hidden, so the rows below stay put.
    QSizePolicy keepsItsPlace = brokenLinksButton_->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    brokenLinksButton_->setSizePolicy(keepsItsPlace);
    scannedLinks_ = new QPlainTextEdit(this);
    scannedLinks_->setObjectName(QStringLiteral("scannedLinksViewer"));
    scannedLinks_->setReadOnly(true);
    crawlSettingsButton_ = new QPushButton(QStringLiteral("Crawl Settings…"), this);
    crawlSettingsButton_->setObjectName(QStringLiteral("crawlSettingsButton"));
    crawlDelayAdvice_ = detailLabel(this, QStringLiteral("crawlDelayAdvice"));
    crawlDelayAdvice_->setWordWrap(true);
}

void ScanViewWidget::layOutControls() {
    auto* details = new QFormLayout;
    details->addRow(QStringLiteral("Name:"), siteName_);
    details->addRow(QStringLiteral("URL:"), siteURL_);
    details->addRow(QStringLiteral("Total links found:"), totalLinksFound_);
    details->addRow(QStringLiteral("Pages found:"), pagesFound_);
    details->addRow(QStringLiteral("Pages used in the sitemap:"), linksScanned_);
    auto* broken = new QHBoxLayout;
    broken->addWidget(brokenLinks_);
    broken->addWidget(brokenLinksButton_);
    broken->addStretch();
    details->addRow(QStringLiteral("Broken links:"), broken);
    details->addRow(QString(), robotsBox_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(addButton_);
    buttons->addWidget(deleteButton_);
    buttons->addWidget(filtersButton_);
    buttons->addWidget(crawlSettingsButton_);
    buttons->addStretch();
    buttons->addWidget(scanButton_);
    auto* right = new QVBoxLayout;
    right->addLayout(details);
    right->addLayout(buttons);
    right->addWidget(crawlDelayAdvice_);
    right->addWidget(new QLabel(QStringLiteral("Pages found by the scan:"), this));
    right->addWidget(scannedLinks_, 1);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(siteTable_, 1);
    layout->addLayout(right, 2);
}

void ScanViewWidget::connectControls() {
    // Only the selection makes a site current. The current row alone moves by itself: a
    // list that gains focus with no current row makes its first row current.
    connect(siteTable_, &QListWidget::itemSelectionChanged, this, [this] {
        const QList<QListWidgetItem*> selected = siteTable_->selectedItems();
        siteList_->selectRow(selected.isEmpty() ? -1 : siteTable_->row(selected.first()));
    });
    connect(robotsBox_, &QCheckBox::toggled, this,
            [this](bool checked) { siteList_->ignoreRobotsAction(checked); });
    connect(scanButton_, &QPushButton::clicked, this, [this] { driver_->scanSiteAction(); });
    connect(addButton_, &QPushButton::clicked, &addSiteAction_, &QAction::trigger);
    connect(&addSiteAction_, &QAction::triggered, this, [this] { siteRecords_->addNewSite(); });
    connect(&editSiteAction_, &QAction::triggered, this, [this] { siteRecords_->editSite(); });
    connect(deleteButton_, &QPushButton::clicked, this, [this] { siteRecords_->deleteSite(); });
    connect(filtersButton_, &QPushButton::clicked, this, [this] { siteList_->filterAddPanel(); });
    connect(brokenLinksButton_, &QPushButton::clicked, this, &ScanViewWidget::brokenLinksRequested);
    connect(crawlSettingsButton_, &QPushButton::clicked, crawlSettingsSheet_,
            &CrawlSettingsSheet::openForSelectedSite);
    connect(restoreAction_, &QAction::triggered, this,
            [this] { sitemapRestore_->restorePreviousSitemaps(); });
}

ScanViewWidget::~ScanViewWidget() {
    // A scan still running is told to stop. Its worker waits on this thread's event loop,
    // so the loop keeps turning until the worker has closed the files.
    driver_->cancelScan();
    while (driver_->isScanning()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

QLabel* ScanViewWidget::detail(const QString& name) const {
    return findChild<QLabel*>(name);
}

void ScanViewWidget::scanViewChanged(const ScanViewState& state) {
    const SiteDetailsFields& details = state.details;
    siteName_->setText(QString::fromStdString(details.siteName));
    siteURL_->setText(QString::fromStdString(details.siteURL));
    totalLinksFound_->setText(QString::fromStdString(details.totalLinksFound));
    pagesFound_->setText(QString::fromStdString(details.pagesFound));
    linksScanned_->setText(QString::fromStdString(details.linksScanned));
    brokenLinks_->setText(QString::fromStdString(details.brokenLinks));
    {
        const QSignalBlocker blocker(robotsBox_);
        robotsBox_->setChecked(state.ignoreRobotsChecked);
    }
    robotsBox_->setEnabled(state.siteControlsEnabled);
    brokenLinksButton_->setEnabled(state.brokenLinksButtonShown);
    brokenLinksButton_->setVisible(state.brokenLinksButtonShown);
    scanButton_->setEnabled(state.scanButtonEnabled);
    addSiteAction_.setEnabled(state.addSiteEnabled);
    addButton_->setEnabled(state.addSiteEnabled);
    editSiteAction_.setEnabled(state.editSiteEnabled);
    restoreAction_->setEnabled(state.previousSitemapsKept && state.scanButtonEnabled);
    deleteButton_->setEnabled(state.siteControlsEnabled);
    filtersButton_->setEnabled(state.siteControlsEnabled);
    crawlSettingsButton_->setEnabled(state.scanButtonEnabled);
    crawlDelayAdvice_->setText(QString::fromStdString(state.crawlDelayAdvice));
    crawlDelayAdvice_->setVisible(!state.crawlDelayAdvice.empty());
    drawer_.setControlsEnabled(state.siteControlsEnabled);
    drawer_.setVisible(state.filterDrawerOpen);
}

void ScanViewWidget::siteListChanged(const std::vector<std::string>& names, int selectedRow) {
    const QSignalBlocker blocker(siteTable_);
    siteTable_->clear();
    for (const std::string& name : names) {
        siteTable_->addItem(QString::fromStdString(name));
    }
    if (selectedRow >= 0) {
        siteTable_->setCurrentRow(selectedRow);
    } else {
        // Nothing selected and nothing current, so that focus selects nothing either.
        siteTable_->setCurrentRow(-1);
        siteTable_->clearSelection();
    }
}

void ScanViewWidget::setWindowTitle(std::string_view title) {
    mainWindow_->setWindowTitle(QString::fromUtf8(title.data(), static_cast<int>(title.size())));
}

void ScanViewWidget::reloadFilterList() {
    drawer_.reloadFilterTable();
}

void ScanViewWidget::clearScannedLinks() {
    scannedLinks_->clear();
}

void ScanViewWidget::appendScannedLink(std::string_view url) {
    scannedLinks_->appendPlainText(QString::fromUtf8(url.data(), static_cast<int>(url.size())));
}

void ScanViewWidget::setScannedLinksText(std::string_view text) {
    scannedLinks_->setPlainText(QString::fromUtf8(text.data(), static_cast<int>(text.size())));
}

}  // namespace loomcrest::gui
