#include "XmlSitemapView.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include "QtAlerts.h"
#include "export/SiteSitemapCheck.h"

namespace loomcrest::gui {

namespace {

using Column = XMLViewController::Column;

Column columnOf(int index) {
    return static_cast<Column>(index + 1);
}

QStringList menuItems(int column) {
    QStringList items;
    if (columnOf(column) == Column::ChangeFrequency) {
        for (const std::string_view item : XMLViewController::kChangeFrequencies) {
            items << QString::fromUtf8(item.data(), static_cast<int>(item.size()));
        }
    } else {
        for (const std::string_view item : XMLViewController::kPriorities) {
            items << QString::fromUtf8(item.data(), static_cast<int>(item.size()));
        }
    }
    return items;
}

// The pop-up cells of the change-frequency and priority columns.
class MenuDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override {
        auto* menu = new QComboBox(parent);
        menu->addItems(menuItems(index.column()));
        // A pick is written at once, not when focus leaves the cell.
        auto* self = const_cast<MenuDelegate*>(this);
        connect(menu, &QComboBox::activated, self, [self, menu] {
            emit self->commitData(menu);
            emit self->closeEditor(menu);
        });
        return menu;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto* menu = static_cast<QComboBox*>(editor);
        menu->setCurrentIndex(menu->findText(index.data(Qt::EditRole).toString()));
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        model->setData(index, static_cast<QComboBox*>(editor)->currentText(), Qt::EditRole);
    }
};

}  // namespace

int XmlEntryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(controller_.numberOfRowsInTableView());
}

int XmlEntryModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : 4;
}

QVariant XmlEntryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole)) {
        return {};
    }
    return QString::fromStdString(controller_.objectValueForTableColumn(
        columnOf(index.column()), static_cast<size_t>(index.row())));
}

QVariant XmlEntryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    const std::array<QString, 4> titles = {QStringLiteral("URL"), QStringLiteral("Last Updated"),
                                           QStringLiteral("Change Frequency"),
                                           QStringLiteral("Priority")};
    return section >= 0 && section < 4 ? titles[static_cast<size_t>(section)] : QVariant();
}

Qt::ItemFlags XmlEntryModel::flags(const QModelIndex& index) const {
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool XmlEntryModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole) {
        return false;
    }
    const std::string text = value.toString().toStdString();
    const auto row = static_cast<size_t>(index.row());
    const Column column = columnOf(index.column());
    // The pop-up cells are menu choices for the selected row.
    if (column == Column::ChangeFrequency || column == Column::Priority) {
        controller_.selectRow(row);
        column == Column::ChangeFrequency ? controller_.cfMenuChangeUpdates(text)
                                          : controller_.priorityMenuChangeUpdates(text);
    } else {
        controller_.setObjectValue(text, column, row);
    }
    return true;
}

void XmlEntryModel::reload() {
    const int rows = rowCount();
    if (rows != shownRows_) {
        beginResetModel();
        shownRows_ = rows;
        endResetModel();
        return;
    }
    // An edit changes values only. A reset here would close the editor the view has just
    // opened on the next cell (after Tab) and lose the current cell.
    if (rows > 0) {
        emit dataChanged(index(0, 0), index(rows - 1, columnCount() - 1));
    }
}

void XmlEntryModel::resetAll() {
    beginResetModel();
    shownRows_ = rowCount();
    endResetModel();
}

XmlSitemapView::XmlSitemapView(ProcessState& process, QtAlerts& alerts,
                               std::function<std::string()> shownSiteName, QWidget* parent)
    : QWidget(parent),
      shownSiteName_(shownSiteName),
      controller_(std::make_unique<XMLViewController>(process, alerts, std::move(shownSiteName))) {
    setObjectName(QStringLiteral("xmlWindowView"));
    model_ = new XmlEntryModel(*controller_, this);
    table_ = new QTableView(this);
    table_->setModel(model_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setItemDelegateForColumn(2, new MenuDelegate(table_));
    table_->setItemDelegateForColumn(3, new MenuDelegate(table_));
    table_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    table_->horizontalHeader()->resizeSection(1, 120);
    table_->horizontalHeader()->resizeSection(2, 160);
    table_->horizontalHeader()->resizeSection(3, 90);
    // Uniform rows let a table of many thousands of entries scroll without measuring each.
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table_->verticalHeader()->setDefaultSectionSize(24);
    delete_ = new QPushButton(QStringLiteral("Delete"), this);
    status_ = new QLabel(this);
    status_->setObjectName(QStringLiteral("xmlStatusLine"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(status_);
    buttons->addStretch();
    buttons->addWidget(delete_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    layout->addLayout(buttons);

    controller_->setEntriesChangedHandler([this] {
        model_->reload();
        refreshStatusLine();
    });
    connect(delete_, &QPushButton::clicked, this, [this] {
        const QModelIndexList rows = table_->selectionModel()->selectedRows();
        controller_->selectRow(rows.isEmpty() ? std::nullopt
                                              : std::optional<size_t>(rows.first().row()));
        controller_->delLinkAction();
    });
}

XmlSitemapView::~XmlSitemapView() = default;

void XmlSitemapView::reload() {
    controller_->createTableContent();
    model_->resetAll();
    // A file that holds no entries does not tell the table to redraw.
    if (controller_->numberOfRowsInTableView() == 0) {
        refreshStatusLine();
    }
}

void XmlSitemapView::refreshStatusLine() {
    const std::string site = shownSiteName_();
    const SitemapFileCheck check = checkSitemapFile(site, siteSitemapPath(site));
    status_->setText(check.readFailure ? QString()
                                       : QString::fromStdString(problemSummary(check.problems)));
}

}  // namespace loomcrest::gui
