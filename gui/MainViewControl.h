#pragma once

#include <QKeySequence>
#include <QMainWindow>
#include <array>
#include <functional>
#include <memory>

#include "app/ProcessState.h"

class QAction;
class QActionGroup;
class QCloseEvent;
class QLabel;
class QMenu;
class QStackedWidget;

namespace loomcrest::gui {

class BrokenLinksViewWidget;
class HtmlSitemapView;
class XmlSitemapView;
class ExportViewWidget;
class FiltersDrawer;
class GlobalControls;
class QtAlerts;
class QtUiThread;
class ScanViewWidget;
class SiteSheetDialog;
class UrlCommandService;

// The main window: menus, a toolbar and a content area showing one of the seven views.
class MainViewControl : public QMainWindow {
    Q_OBJECT
public:
    enum View { Scan = 1, HtmlSitemap, HtmlEditor, XmlSitemap, Export, Upload, BrokenLinks };

    explicit MainViewControl(QWidget* parent = nullptr);
    ~MainViewControl() override;

    void changeCurrentView(int view);
    int returnCurrentView() const;
    QWidget* mainViewsList(int view) const;

    // Toolbar actions.
    void scanTBIAction();
    void htmlTBIAction();
    void htmlEditTBIAction();
    void xmlTBIAction();
    void exportTBIAction();
    void uploadTBIAction();
    void showBrokenLinks();
    void exportReload();
    void populateSitePicker();

    ScanViewWidget& scanView() { return *scanView_; }
    ExportViewWidget& exportView() { return *exportView_; }
    BrokenLinksViewWidget& brokenLinksView() { return *brokenLinksView_; }
    HtmlSitemapView& htmlView() { return *htmlWindowView_; }
    XmlSitemapView& xmlView() { return *xmlWindowView_; }
    FiltersDrawer& filterDrawer() { return *filterDrawer_; }
    SiteSheetDialog& siteSheet() { return *siteSheet_; }
    QtAlerts& alerts() { return *alerts_; }
    // The item of a view (1 to 7) in the toolbar and the View menu.
    QAction* toolbarAction(int view) const;
    // A menu item by its object name: "addSite", "editSite", "saveStyle", "quit",
    // "deleteSelection", "scanSite", "cancelScan", "reportProblem".
    QAction* menuAction(const QString& name) const;
    const QString& versionString() const { return versionString_; }
    ProcessState& processState() { return state_; }

protected:
    // With unsaved style changes the HTML view's save question comes first.
    void closeEvent(QCloseEvent* event) override;

private:
    // Every menu, menu item and toolbar item is made here (MainViewMenus.cpp).
    void buildMenus();
    QAction* addMenuItem(QMenu& menu, const QString& name, const QString& title,
                         const QKeySequence& shortcut, std::function<void()> action);
    void buildViewItems(QMenu& menu);
    void markCurrentView();
    void makeRoomForTheDrawer();
    // What the shortcuts do in the view on screen.
    void deleteSelection();
    void saveStyle();
    void scanSite();

    void switchTo(int view);
    void setFilterDrawerOpen(bool open);
    void leaveHtmlView();
    QWidget* plainView(const QString& name, const QString& text);

    // Declared first, so that it outlives every view that holds it.
    ProcessState state_;
    std::unique_ptr<QtAlerts> alerts_;
    std::unique_ptr<QtUiThread> ui_;
    QStackedWidget* mainViewArea_ = nullptr;
    FiltersDrawer* filterDrawer_ = nullptr;
    SiteSheetDialog* siteSheet_ = nullptr;
    ScanViewWidget* scanView_ = nullptr;
    HtmlSitemapView* htmlWindowView_ = nullptr;
    QWidget* htmlEditorWindowView_ = nullptr;
    XmlSitemapView* xmlWindowView_ = nullptr;
    ExportViewWidget* exportView_ = nullptr;
    QWidget* uploadWindowView_ = nullptr;
    BrokenLinksViewWidget* brokenLinksView_ = nullptr;
    GlobalControls* globalControls_ = nullptr;
    UrlCommandService* urlCommand_ = nullptr;
    QAction* addSiteAction_ = nullptr;
    QAction* editSiteAction_ = nullptr;
    QAction* cancelScanAction_ = nullptr;
    // The scan view's items join the File menu above this separator once the view exists.
    QMenu* fileMenu_ = nullptr;
    QAction* quitSeparator_ = nullptr;
    QActionGroup* viewGroup_ = nullptr;
    std::array<QAction*, 7> toolbarActions_{};
    QString versionString_;
    // Set once the save question has been answered, so the close goes through.
    bool closeAnswered_ = false;
};

}  // namespace loomcrest::gui
