#include "SiteSheetDialog.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "sites/AddEditDeleteSites.h"

namespace loomcrest::gui {

SiteSheetDialog::SiteSheetDialog(QWidget* mainWindow) : QDialog(mainWindow) {
    setWindowModality(Qt::WindowModal);
    setObjectName(QStringLiteral("siteSheet"));
    name_ = new QLineEdit(this);
    name_->setObjectName(QStringLiteral("siteName"));
    url_ = new QLineEdit(this);
    url_->setObjectName(QStringLiteral("siteURL"));
    url_->setPlaceholderText(QStringLiteral("example.com"));
    defaultButton_ = new QPushButton(this);
    defaultButton_->setObjectName(QStringLiteral("defaultButton"));
    defaultButton_->setDefault(true);
    alternateButton_ = new QPushButton(this);
    alternateButton_->setObjectName(QStringLiteral("alternateButton"));

    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Site name:"), name_);
    fields->addRow(QStringLiteral("Site URL:"), url_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(alternateButton_);
    buttons->addWidget(defaultButton_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);
    setMinimumWidth(420);

    connect(defaultButton_, &QPushButton::clicked, this, [this] {
        if (records_ != nullptr) {
            records_->setSheetFields(name_->text().toStdString(), url_->text().toStdString());
            records_->defaultAction();
        }
    });
    connect(alternateButton_, &QPushButton::clicked, this, [this] {
        if (records_ != nullptr) {
            records_->alternateAction();
        }
    });
    // Escape and the close box act as the alternate button.
    connect(this, &QDialog::rejected, this, [this] {
        if (records_ != nullptr && records_->sheetState().shown) {
            records_->alternateAction();
        }
    });
}

void SiteSheetDialog::siteSheetChanged(const SiteSheetState& state) {
    setWindowTitle(QString::fromStdString(state.title));
    defaultButton_->setText(QString::fromStdString(state.defaultButtonTitle));
    alternateButton_->setText(QString::fromStdString(state.alternateButtonTitle));
    if (state.shown && !isVisible()) {
        name_->setText(QString::fromStdString(state.siteName));
        url_->setText(QString::fromStdString(state.siteURL));
        open();
    } else if (!state.shown && isVisible()) {
        name_->clear();
        url_->clear();
        hide();
    }
}

void SiteSheetDialog::focusNameField() {
    name_->setFocus();
}

}  // namespace loomcrest::gui
