#include "BrokenLinksViewWidget.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QTableWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "DesktopLinks.h"
#include "ExportViewWidget.h"
#include "sites/DataPaths.h"

namespace loomcrest::gui {

namespace {

constexpr int kLinksColumn = 4;

QStringList rowCells(const BrokenLinkDetail& row, bool withDetails) {
    if (!withDetails) {
        return {QString::fromStdString(row.url)};
    }
    return {QString::fromStdString(row.url), QString::fromStdString(row.status),
            QString::fromStdString(row.foundOn), QString::fromStdString(row.linkText),
            QString::number(row.links)};
}

}  // namespace

BrokenLinksViewWidget::BrokenLinksViewWidget(ExportViewWidget& exportView, AlertPresenter& alerts,
                                             QWidget* parent)
    : QWidget(parent), exportView_(exportView), alerts_(alerts) {
    table_ = new QTableWidget(this);
    table_->setObjectName(QStringLiteral("brokenLinksTable"));
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setStretchLastSection(false);
    htmlButton_ = new QPushButton(QStringLiteral("Export as HTML"), this);
    textButton_ = new QPushButton(QStringLiteral("Export as Text"), this);
    csvButton_ = new QPushButton(QStringLiteral("Export as CSV"), this);

    // The table's own Ctrl+C copies the current cell alone; whole rows are meant here.
    table_->installEventFilter(this);
    connect(table_, &QTableWidget::cellDoubleClicked, this,
            [this](int row, int /*column*/) { openRow(row); });

    const auto exportWith = [this](void (SitemapExporter::*action)()) {
        return [this, action] {
            exportView_.exporter().setSelectedSite(siteName_);
            (exportView_.exporter().*action)();
        };
    };
    connect(htmlButton_, &QPushButton::clicked, this,
            exportWith(&SitemapExporter::exportBrokenAsHTMLAction));
    connect(textButton_, &QPushButton::clicked, this,
            exportWith(&SitemapExporter::exportBrokenAsTXTAction));
    connect(csvButton_, &QPushButton::clicked, this,
            exportWith(&SitemapExporter::exportBrokenAsCSVAction));

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton* button : {htmlButton_, textButton_, csvButton_}) {
        buttons->addWidget(button);
    }
    auto* column = new QVBoxLayout(this);
    column->addWidget(table_, 1);
    column->addLayout(buttons);
}

void BrokenLinksViewWidget::reloadBrokenLinks(const std::string& siteName,
                                              const std::vector<std::string>& badLinks) {
    siteName_ = siteName;
    badLinkArray_ = siteName.empty() ? BrokenLinkReport{}
                                     : readBrokenLinkReport(siteFolderLocation(siteName), badLinks);
    if (siteName.empty()) {
        for (const std::string& url : badLinks) {
            badLinkArray_.rows.push_back({url, {}, {}, {}, 0});
        }
    }
    const bool withDetails = badLinkArray_.complete;
    QStringList titles;
    for (const std::string_view title : kBrokenLinkColumns) {
        titles << QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
        if (!withDetails) {
            break;
        }
    }
    table_->clearContents();
    table_->setColumnCount(static_cast<int>(titles.size()));
    table_->setHorizontalHeaderLabels(titles);
    table_->setRowCount(static_cast<int>(badLinkArray_.rows.size()));
    for (int row = 0; row < table_->rowCount(); ++row) {
        const QStringList cells =
            rowCells(badLinkArray_.rows[static_cast<size_t>(row)], withDetails);
        for (int column = 0; column < cells.size(); ++column) {
            auto* item = new QTableWidgetItem(cells[column]);
            if (column == kLinksColumn) {
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            }
            table_->setItem(row, column, item);
        }
    }
    table_->resizeColumnsToContents();
    table_->horizontalHeader()->setStretchLastSection(!withDetails);
}

bool BrokenLinksViewWidget::eventFilter(QObject* watched, QEvent* event) {
    if (watched == table_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
        copySelectedRows();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void BrokenLinksViewWidget::copySelectedRows() const {
    QList<QModelIndex> selected = table_->selectionModel()->selectedRows();
    std::sort(selected.begin(), selected.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    QString text;
    for (const QModelIndex& index : selected) {
        text +=
            rowCells(badLinkArray_.rows[static_cast<size_t>(index.row())], badLinkArray_.complete)
                .join(QLatin1Char('\t')) +
            QLatin1Char('\n');
    }
    if (!text.isEmpty()) {
        QApplication::clipboard()->setText(text);
    }
}

void BrokenLinksViewWidget::openRow(int row) {
    if (row >= 0 && static_cast<size_t>(row) < badLinkArray_.rows.size()) {
        openOrSayWhyNot(
            QUrl(QString::fromStdString(badLinkArray_.rows[static_cast<size_t>(row)].url)),
            alerts_);
    }
}

}  // namespace loomcrest::gui
