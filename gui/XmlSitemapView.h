#pragma once

#include <QAbstractTableModel>
#include <QWidget>
#include <memory>

#include "editors/XMLViewController.h"

class QLabel;
class QPushButton;
class QTableView;

namespace loomcrest::gui {

class QtAlerts;

// The XML sitemap's entries as a table model over XMLViewController: URL and Last Updated
// are edited in place, Change Frequency and Priority are chosen from their menus.
class XmlEntryModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit XmlEntryModel(XMLViewController& controller, QObject* parent = nullptr)
        : QAbstractTableModel(parent), controller_(controller) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    // The entries changed: values only, or rows came or went.
    void reload();
    // Another sitemap was loaded.
    void resetAll();

private:
    XMLViewController& controller_;
    int shownRows_ = 0;
};

// The XML sitemap view (view 4). Its status line counts what search engines would object to
// in the file, checked again after every change.
class XmlSitemapView : public QWidget {
    Q_OBJECT
public:
    XmlSitemapView(ProcessState& process, QtAlerts& alerts,
                   std::function<std::string()> shownSiteName, QWidget* parent = nullptr);
    ~XmlSitemapView() override;

    XMLViewController& controller() { return *controller_; }
    // Loads the table from the site's file.
    void reload();

    QTableView* table() const { return table_; }
    XmlEntryModel* model() const { return model_; }
    QPushButton* deleteButton() const { return delete_; }
    QLabel* statusLine() const { return status_; }

private:
    void refreshStatusLine();

    std::function<std::string()> shownSiteName_;
    std::unique_ptr<XMLViewController> controller_;
    XmlEntryModel* model_ = nullptr;
    QTableView* table_ = nullptr;
    QPushButton* delete_ = nullptr;
    QLabel* status_ = nullptr;
};

}  // namespace loomcrest::gui
