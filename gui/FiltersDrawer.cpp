#include "FiltersDrawer.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <set>

namespace loomcrest::gui {

FiltersDrawer::FiltersDrawer(QWidget* parent) : QDockWidget(QStringLiteral("Filters"), parent) {
    setObjectName(QStringLiteral("filterDrawer"));
    setFeatures(QDockWidget::NoDockWidgetFeatures);
    auto* content = new QWidget(this);
    table_ = new QListWidget(content);
    table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    input_ = new QLineEdit(content);
    input_->setPlaceholderText(QStringLiteral("Leave out URLs containing…"));
    // Wide enough to show its placeholder whole, with the frame and text margins around it.
    input_->setMinimumWidth(input_->fontMetrics().horizontalAdvance(input_->placeholderText()) +
                            24);
    add_ = new QPushButton(QStringLiteral("Add"), content);
    delete_ = new QPushButton(QStringLiteral("Delete"), content);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add_);
    buttons->addWidget(delete_);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(table_);
    layout->addWidget(input_);
    layout->addLayout(buttons);
    setWidget(content);

    const auto addFilter = [this] {
        if (filters_ != nullptr) {
            filters_->addFilterCommand(input_->text().toStdString());
        }
    };
    connect(add_, &QPushButton::clicked, this, addFilter);
    connect(input_, &QLineEdit::returnPressed, this, addFilter);
    connect(delete_, &QPushButton::clicked, this, [this] {
        if (filters_ == nullptr) {
            return;
        }
        std::set<size_t> rows;
        for (const QModelIndex& index : table_->selectionModel()->selectedRows()) {
            rows.insert(static_cast<size_t>(index.row()));
        }
        filters_->deleteFilter(rows);
    });
}

void FiltersDrawer::setControlsEnabled(bool enabled) {
    add_->setEnabled(enabled);
    delete_->setEnabled(enabled);
    input_->setEnabled(enabled);
}

void FiltersDrawer::reloadFilterTable() {
    table_->clear();
    if (filters_ == nullptr) {
        return;
    }
    for (size_t row = 0; row < filters_->filterArrayLength(); ++row) {
        table_->addItem(QString::fromStdString(filters_->filterArrayObject(row)));
    }
}

void FiltersDrawer::clearNewFilterInput() {
    input_->clear();
}

}  // namespace loomcrest::gui
