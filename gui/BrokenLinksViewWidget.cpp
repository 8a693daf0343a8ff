#include "BrokenLinksViewWidget.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "ExportViewWidget.h"

namespace loomcrest::gui {

BrokenLinksViewWidget::BrokenLinksViewWidget(ExportViewWidget& exportView, QWidget* parent)
    : QWidget(parent), exportView_(exportView) {
    table_ = new QListWidget(this);
    htmlButton_ = new QPushButton(QStringLiteral("Export as HTML"), this);
    textButton_ = new QPushButton(QStringLiteral("Export as Text"), this);

    connect(htmlButton_, &QPushButton::clicked, this, [this] {
        exportView_.exporter().setSelectedSite(siteName_);
        exportView_.exporter().exportBrokenAsHTMLAction();
    });
    connect(textButton_, &QPushButton::clicked, this, [this] {
        exportView_.exporter().setSelectedSite(siteName_);
        exportView_.exporter().exportBrokenAsTXTAction();
    });

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(htmlButton_);
    buttons->addWidget(textButton_);

    auto* column = new QVBoxLayout(this);
    column->addWidget(table_, 1);
    column->addLayout(buttons);
}

void BrokenLinksViewWidget::reloadBrokenLinks(const std::string& siteName,
                                              const std::vector<std::string>& badLinks) {
    siteName_ = siteName;
    badLinkArray_ = badLinks;
    table_->clear();
    for (const std::string& line : badLinkArray_) {
        table_->addItem(QString::fromStdString(line));
    }
}

}  // namespace loomcrest::gui
