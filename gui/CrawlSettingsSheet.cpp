#include "CrawlSettingsSheet.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "QtAlerts.h"

namespace loomcrest::gui {

namespace {

QString qt(const std::string& text) {
    return QString::fromStdString(text);
}

}  // namespace

CrawlSettingsSheet::CrawlSettingsSheet(QWidget* mainWindow, QtAlerts& alerts,
                                       std::function<std::string()> siteFolder)
    : QDialog(mainWindow), editor_(alerts), siteFolder_(std::move(siteFolder)) {
    setWindowModality(Qt::WindowModal);
    setObjectName(QStringLiteral("crawlSettingsSheet"));
    setWindowTitle(QStringLiteral("Crawl Settings"));
    connections_ = new QLineEdit(this);
    connections_->setObjectName(QStringLiteral("connections"));
    connections_->setPlaceholderText(QStringLiteral("1 to 16"));
    rate_ = new QLineEdit(this);
    rate_->setObjectName(QStringLiteral("requestsPerSecond"));
    rate_->setPlaceholderText(QStringLiteral("0: no limit"));
    userAgent_ = new QLineEdit(this);
    userAgent_->setObjectName(QStringLiteral("userAgent"));
    auto* defaultAgent = new QPushButton(QStringLiteral("Default"), this);
    fetchOnce_ = new QCheckBox(QStringLiteral("Ask for each page once"), this);
    fetchOnce_->setObjectName(QStringLiteral("fetchOnce"));
    headers_ = new QPlainTextEdit(this);
    headers_->setObjectName(QStringLiteral("extraHeaders"));
    headers_->setPlaceholderText(QStringLiteral("Name: value, one a line"));
    headers_->setTabChangesFocus(true);
    headers_->setFixedHeight(headers_->fontMetrics().lineSpacing() * 5);
    netrc_ =
        new QCheckBox(QStringLiteral("Log in with the user name and password in ~/.netrc"), this);
    netrc_->setObjectName(QStringLiteral("useNetrc"));
    save_ = new QPushButton(QStringLiteral("Save"), this);
    save_->setObjectName(QStringLiteral("saveButton"));
    save_->setDefault(true);
    cancel_ = new QPushButton(QStringLiteral("Cancel"), this);
    cancel_->setObjectName(QStringLiteral("cancelButton"));

    auto* agentRow = new QHBoxLayout;
    agentRow->addWidget(userAgent_, 1);
    agentRow->addWidget(defaultAgent);
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Connections:"), connections_);
    fields->addRow(QStringLiteral("Requests per second:"), rate_);
    fields->addRow(QStringLiteral("User agent:"), agentRow);
    fields->addRow(QString(), fetchOnce_);
    fields->addRow(QStringLiteral("Extra headers:"), headers_);
    fields->addRow(QString(), netrc_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel_);
    buttons->addWidget(save_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);
    setMinimumWidth(520);

    connect(defaultAgent, &QPushButton::clicked, this,
            [this] { userAgent_->setText(qt(CrawlSettings::defaultUserAgent())); });
    connect(save_, &QPushButton::clicked, this, [this] {
        if (editor_.save(typedFields())) {
            accept();
        }
    });
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
}

void CrawlSettingsSheet::openForSelectedSite() {
    showFields(editor_.open(siteFolder_()));
    connections_->setFocus();
    open();
}

void CrawlSettingsSheet::showFields(const CrawlSettingsFields& fields) {
    connections_->setText(qt(fields.connections));
    rate_->setText(qt(fields.requestsPerSecond));
    userAgent_->setText(qt(fields.userAgent));
    userAgent_->setCursorPosition(0);
    fetchOnce_->setChecked(fields.fetchOnce);
    headers_->setPlainText(qt(fields.extraHeaders));
    netrc_->setChecked(fields.useNetrc);
}

CrawlSettingsFields CrawlSettingsSheet::typedFields() const {
    CrawlSettingsFields fields;
    fields.connections = connections_->text().toStdString();
    fields.requestsPerSecond = rate_->text().toStdString();
    fields.userAgent = userAgent_->text().toStdString();
    fields.fetchOnce = fetchOnce_->isChecked();
    fields.extraHeaders = headers_->toPlainText().toStdString();
    fields.useNetrc = netrc_->isChecked();
    return fields;
}

}  // namespace loomcrest::gui
