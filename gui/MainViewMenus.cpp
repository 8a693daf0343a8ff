#include <QAction>
#include <QActionGroup>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableView>
#include <QToolBar>

#include "FiltersDrawer.h"
#include "GlobalControls.h"
#include "HtmlSitemapView.h"
#include "MainViewControl.h"
#include "ScanViewWidget.h"
#include "XmlSitemapView.h"

// The window's menus and toolbar, made in one place so that new items find their menu here.
namespace loomcrest::gui {

namespace {

struct ViewItem {
    MainViewControl::View view;
    const char* title;
    // The desktop icon theme's name, and the bundled picture used when the theme has none.
    const char* themeIcon;
    const char* bundledIcon;
    void (MainViewControl::*action)();
};

constexpr std::array<ViewItem, 7> kViewItems = {{
    {MainViewControl::Scan, "Scan", "system-search", "scan", &MainViewControl::scanTBIAction},
    {MainViewControl::HtmlSitemap, "HTML Sitemap", "text-html", "html-sitemap",
     &MainViewControl::htmlTBIAction},
    {MainViewControl::HtmlEditor, "HTML Editor", "accessories-text-editor", "html-editor",
     &MainViewControl::htmlEditTBIAction},
    {MainViewControl::XmlSitemap, "XML Sitemap", "text-xml", "xml-sitemap",
     &MainViewControl::xmlTBIAction},
    {MainViewControl::Export, "Export", "document-save-as", "export",
     &MainViewControl::exportTBIAction},
    {MainViewControl::Upload, "Upload", "document-send", "upload",
     &MainViewControl::uploadTBIAction},
    {MainViewControl::BrokenLinks, "Broken Links", "dialog-warning", "broken-links",
     &MainViewControl::showBrokenLinks},
}};

QIcon viewIcon(const ViewItem& item) {
    return QIcon::fromTheme(QString::fromLatin1(item.themeIcon),
                            QIcon(QStringLiteral(":/icons/%1.png").arg(item.bundledIcon)));
}

}  // namespace

void MainViewControl::buildMenus() {
    fileMenu_ = menuBar()->addMenu(QStringLiteral("&File"));
    QMenu& file = *fileMenu_;
    addSiteAction_ = addMenuItem(file, QStringLiteral("addSite"), QStringLiteral("Add Site…"),
                                 QKeySequence(Qt::CTRL | Qt::Key_N), {});
    editSiteAction_ = addMenuItem(file, QStringLiteral("editSite"), QStringLiteral("Edit Site…"),
                                  QKeySequence(Qt::CTRL | Qt::Key_E), {});
    file.addSeparator();
    addMenuItem(file, QStringLiteral("saveStyle"), QStringLiteral("Save Sitemap Style"),
                QKeySequence(Qt::CTRL | Qt::Key_S), [this] { saveStyle(); });
    quitSeparator_ = file.addSeparator();
    addMenuItem(file, QStringLiteral("quit"), QStringLiteral("Quit"),
                QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { close(); });

    QMenu& edit = *menuBar()->addMenu(QStringLiteral("&Edit"));
    addMenuItem(edit, QStringLiteral("deleteSelection"), QStringLiteral("Delete"),
                QKeySequence(Qt::Key_Delete), [this] { deleteSelection(); });

    QMenu& scan = *menuBar()->addMenu(QStringLiteral("&Scan"));
    addMenuItem(scan, QStringLiteral("scanSite"), QStringLiteral("Scan Site"),
                QKeySequence(Qt::Key_F5), [this] { scanSite(); });
    // Enabled only while a scan runs, so that Escape is left to everything else otherwise.
    cancelScanAction_ =
        addMenuItem(scan, QStringLiteral("cancelScan"), QStringLiteral("Cancel Scan"),
                    QKeySequence(Qt::Key_Escape), [this] { scanView_->scanner().cancelScan(); });
    cancelScanAction_->setEnabled(false);

    buildViewItems(*menuBar()->addMenu(QStringLiteral("&View")));

    QMenu& help = *menuBar()->addMenu(QStringLiteral("&Help"));
    addMenuItem(help, QStringLiteral("reportProblem"), QStringLiteral("Report a Problem"), {},
                [this] { globalControls_->reportProblem(); });
}

QAction* MainViewControl::addMenuItem(QMenu& menu, const QString& name, const QString& title,
                                      const QKeySequence& shortcut, std::function<void()> action) {
    QAction* item = menu.addAction(title);
    item->setObjectName(name);
    item->setShortcut(shortcut);
    if (action) {
        connect(item, &QAction::triggered, this, std::move(action));
    }
    return item;
}

// Each view has one item, in the View menu and the toolbar alike, with Ctrl+1 to Ctrl+7;
// the item of the view on screen is marked.
void MainViewControl::buildViewItems(QMenu& menu) {
    auto* toolbar = addToolBar(QStringLiteral("Views"));
    toolbar->setObjectName(QStringLiteral("toolbar"));
    toolbar->setMovable(false);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar->setIconSize(QSize(24, 24));
    viewGroup_ = new QActionGroup(this);
    for (const ViewItem& view : kViewItems) {
        const QString title = QString::fromLatin1(view.title);
        QAction* item = menu.addAction(viewIcon(view), title);
        item->setObjectName(title);
        item->setCheckable(true);
        item->setShortcut(
            QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + static_cast<int>(view.view))));
        viewGroup_->addAction(item);
        toolbar->addAction(item);
        // A refused switch leaves the mark where it was.
        connect(item, &QAction::triggered, this, [this, action = view.action] {
            (this->*action)();
            markCurrentView();
        });
        toolbarActions_[static_cast<size_t>(view.view - 1)] = item;
    }
}

void MainViewControl::markCurrentView() {
    if (QAction* current = toolbarAction(state_.vrlmpCurrentView)) {
        current->setChecked(true);
    }
}

void MainViewControl::deleteSelection() {
    QPushButton* target = nullptr;
    switch (state_.vrlmpCurrentView) {
        case HtmlSitemap:
            target = htmlWindowView_->deleteButton();
            break;
        case XmlSitemap:
            if (xmlWindowView_->table()->selectionModel()->hasSelection()) {
                target = xmlWindowView_->deleteButton();
            }
            break;
        case Scan:
            if (filterDrawer_->isVisible() && !filterDrawer_->table()->selectedItems().isEmpty()) {
                target = filterDrawer_->deleteButton();
            }
            break;
        default:
            break;
    }
    if (target != nullptr && target->isEnabled()) {
        target->click();
    }
}

void MainViewControl::saveStyle() {
    if (state_.vrlmpCurrentView == HtmlSitemap && htmlWindowView_->saveButton()->isEnabled()) {
        htmlWindowView_->saveButton()->click();
    }
}

void MainViewControl::scanSite() {
    if (!scanView_->scanButton()->isEnabled()) {
        return;
    }
    if (state_.vrlmpCurrentView != Scan) {
        scanTBIAction();
    }
    scanView_->scanButton()->click();
}

QAction* MainViewControl::menuAction(const QString& name) const {
    return findChild<QAction*>(name);
}

}  // namespace loomcrest::gui
