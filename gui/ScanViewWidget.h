#pragma once

#include <QWidget>
#include <memory>

#include "crawler/ScanDriver.h"
#include "crawler/ScanFilters.h"
#include "sites/AddEditDeleteSites.h"
#include "sites/ScanView.h"
#include "sites/ScanViewController.h"
#include "sites/SitemapRestore.h"

class QAction;
class QCheckBox;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace loomcrest::gui {

class CrawlSettingsSheet;
class FiltersDrawer;
class QtAlerts;
class QtUiThread;
class ScanSheets;
class SiteSheetDialog;

// The scan view (view 1): the site list, the selected site's details, the robots box, the
// scan button and the list of scanned pages, over the core's site and scan controllers.
class ScanViewWidget : public QWidget, public ScanView {
    Q_OBJECT
public:
    ScanViewWidget(QWidget* mainWindow, ProcessState& process, QtAlerts& alerts, QtUiThread& ui,
                   FiltersDrawer& drawer, SiteSheetDialog& sheet, QAction& addSiteAction,
                   QAction& editSiteAction);
    ~ScanViewWidget() override;

    ScanViewController& siteList() { return *siteList_; }
    AddEditDeleteSites& siteRecords() { return *siteRecords_; }
    ScanDriver& scanner() { return *driver_; }
    ScanSheets& sheets() { return *sheets_; }

    // ScanView
    void scanViewChanged(const ScanViewState& state) override;
    void siteListChanged(const std::vector<std::string>& names, int selectedRow) override;
    void setWindowTitle(std::string_view title) override;
    void reloadFilterList() override;
    void clearScannedLinks() override;
    void appendScannedLink(std::string_view url) override;
    void setScannedLinksText(std::string_view text) override;

    QListWidget* siteTable() const { return siteTable_; }
    QPushButton* scanButton() const { return scanButton_; }
    QPushButton* deleteButton() const { return deleteButton_; }
    QPushButton* filtersButton() const { return filtersButton_; }
    QPushButton* brokenLinksButton() const { return brokenLinksButton_; }
    QCheckBox* robotsBox() const { return robotsBox_; }
    QPlainTextEdit* scannedLinks() const { return scannedLinks_; }
    QPushButton* crawlSettingsButton() const { return crawlSettingsButton_; }
    CrawlSettingsSheet* crawlSettingsSheet() const { return crawlSettingsSheet_; }
    QLabel* crawlDelayAdvice() const { return crawlDelayAdvice_; }
    QLabel* detail(const QString& name) const;
    // "Restore Previous Sitemaps", for the File menu: enabled while the selected site keeps
    // the sitemaps of the scan before its last and no scan runs.
    QAction* restoreAction() const { return restoreAction_; }

signals:
    void brokenLinksRequested();

private:
    // The constructor's steps: the controls in their focus order, their layout, and what
    // each control and action does.
    void createControls();
    void layOutControls();
    void connectControls();

    QWidget* mainWindow_;
    FiltersDrawer& drawer_;
    QAction& addSiteAction_;
    QAction& editSiteAction_;
    std::unique_ptr<ScanSheets> sheets_;
    std::unique_ptr<ScanViewController> siteList_;
    std::unique_ptr<AddEditDeleteSites> siteRecords_;
    std::unique_ptr<ScanFilters> filters_;
    std::unique_ptr<ScanDriver> driver_;
    std::unique_ptr<SitemapRestore> sitemapRestore_;
    QAction* restoreAction_ = nullptr;

    QListWidget* siteTable_ = nullptr;
    QLabel* siteName_ = nullptr;
    QLabel* siteURL_ = nullptr;
    QLabel* totalLinksFound_ = nullptr;
    QLabel* pagesFound_ = nullptr;
    QLabel* linksScanned_ = nullptr;
    QLabel* brokenLinks_ = nullptr;
    QCheckBox* robotsBox_ = nullptr;
    QPushButton* scanButton_ = nullptr;
    QPushButton* addButton_ = nullptr;
    QPushButton* deleteButton_ = nullptr;
    QPushButton* filtersButton_ = nullptr;
    QPushButton* brokenLinksButton_ = nullptr;
    QPlainTextEdit* scannedLinks_ = nullptr;
    QPushButton* crawlSettingsButton_ = nullptr;
    CrawlSettingsSheet* crawlSettingsSheet_ = nullptr;
    QLabel* crawlDelayAdvice_ = nullptr;
};

}  // namespace loomcrest::gui
