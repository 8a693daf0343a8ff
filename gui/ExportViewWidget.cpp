#include "ExportViewWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "QtAlerts.h"
#include "QtUiThread.h"
#include "WindowSettings.h"
#include "export/SitePicker.h"

namespace loomcrest::gui {

namespace {

constexpr std::array<const char*, 6> kBoxTitles = {
    "Three Columns, All Links",  "Two Columns, All Links",  "Single Column, All Links",
    "Three Columns, Pages Only", "Two Columns, Pages Only", "Single Column, Pages Only"};

std::optional<QString>& nextSaveFileName() {
    static std::optional<QString> path;
    return path;
}

int clampedToInt(uint64_t value) {
    return static_cast<int>(std::min<uint64_t>(value, std::numeric_limits<int>::max()));
}

QString nameFilter(const std::vector<std::string>& types) {
    QStringList patterns;
    for (const std::string& type : types) {
        patterns << QStringLiteral("*.") + QString::fromStdString(type);
    }
    return QStringLiteral("Files (%1)").arg(patterns.join(QLatin1Char(' ')));
}

}  // namespace

ExportViewWidget::ExportViewWidget(ProcessState& process, QtAlerts& alerts, QtUiThread& ui,
                                   QWidget* parent)
    : QWidget(parent) {
    exporter_ = std::make_unique<SitemapExporter>(process, *this, alerts, ui);

    QGroupBox* layouts = createLayoutBoxes();

    sitePicker_ = new QComboBox(this);

    saveToField_ = new QLineEdit(this);
    saveToField_->setReadOnly(true);
    saveToField_->setText(QDir::toNativeSeparators(windowsettings::lastExportFolder()));
    auto* saveToButton = new QPushButton(QStringLiteral("Save To…"), this);
    connect(saveToButton, &QPushButton::clicked, this, &ExportViewWidget::saveToButton);
    auto* saveToRow = new QHBoxLayout;
    saveToRow->addWidget(saveToField_, 1);
    saveToRow->addWidget(saveToButton);

    compressParts_ =
        new QCheckBox(QStringLiteral("Compress the parts of a split XML sitemap (.xml.gz)"), this);
    compressParts_->setToolTip(QStringLiteral(
        "An XML sitemap of more than 50,000 URLs or 50 MB is exported as a sitemap index with "
        "its parts beside it."));
    connect(compressParts_, &QCheckBox::toggled, this,
            [this](bool on) { exporter_->setCompressParts(on); });

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Site:"), sitePicker_);
    form->addRow(QStringLiteral("Save to:"), saveToRow);
    form->addRow(QString(), compressParts_);

    htmlExportButton_ = new QPushButton(QStringLiteral("Export HTML Sitemap"), this);
    xmlExportButton_ = new QPushButton(QStringLiteral("Export XML Sitemap"), this);
    connect(htmlExportButton_, &QPushButton::clicked, this, [this] { startExport(false); });
    connect(xmlExportButton_, &QPushButton::clicked, this, [this] { startExport(true); });
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(htmlExportButton_);
    buttons->addWidget(xmlExportButton_);

    auto* column = new QVBoxLayout(this);
    column->addWidget(layouts);
    column->addLayout(form);
    column->addLayout(buttons);
    column->addStretch(1);

    createProgressDialog();

    setExportButtonsEnabled(false);
}

QGroupBox* ExportViewWidget::createLayoutBoxes() {
    auto* layouts = new QGroupBox(QStringLiteral("Layout"), this);
    auto* grid = new QGridLayout(layouts);
    for (size_t i = 0; i < boxes_.size(); ++i) {
        const auto box = static_cast<SitemapExporter::Box>(i);
        boxes_[i] = new QCheckBox(QString::fromLatin1(kBoxTitles[i]), layouts);
        boxes_[i]->setChecked(exporter_->isChosen(box));
        grid->addWidget(boxes_[i], static_cast<int>(i / 3), static_cast<int>(i % 3));
        connect(boxes_[i], &QCheckBox::clicked, this, [this, box] { chooseLayout(box); });
    }
    return layouts;
}

void ExportViewWidget::createProgressDialog() {
    exportProgress_ = new QProgressDialog(this);
    exportProgress_->setWindowModality(Qt::WindowModal);
    exportProgress_->setLabelText(QStringLiteral("Exporting…"));
    exportProgress_->setCancelButton(nullptr);
    exportProgress_->setAutoClose(false);
    exportProgress_->setAutoReset(false);
    exportProgress_->setMinimumDuration(0);
    // Without this the dialog shows itself a few seconds after construction.
    exportProgress_->reset();
    exportProgress_->hide();
}

ExportViewWidget::~ExportViewWidget() {
    // A running export may be waiting on this thread for a bar update or a save dialog, so
    // events keep flowing until its worker is done. The exporter goes before the widgets
    // because that worker calls back into them.
    closing_ = true;
    exporter_->abandonQuestions();
    QEventLoop loop;
    std::unique_ptr<QThread> waiter(QThread::create([this] { exporter_->waitForExport(); }));
    connect(waiter.get(), &QThread::finished, &loop, &QEventLoop::quit);
    waiter->start();
    loop.exec();
    waiter->wait();
    exporter_.reset();
}

void ExportViewWidget::populateSitePicker(const std::string& shownSiteName) {
    const SitePickerItems picker = loomcrest::populateSitePicker(shownSiteName);
    sitePicker_->clear();
    for (const std::string& item : picker.items) {
        sitePicker_->addItem(QString::fromStdString(item));
    }
    if (picker.selected) {
        sitePicker_->setCurrentIndex(static_cast<int>(*picker.selected));
    }
    setExportButtonsEnabled(!picker.items.empty() && picker.items.front() != kNoSitesScanned);
}

void ExportViewWidget::setExportButtonsEnabled(bool enabled) {
    htmlExportButton_->setEnabled(enabled);
    xmlExportButton_->setEnabled(enabled);
}

QStringList ExportViewWidget::sitePickerItems() const {
    QStringList items;
    for (int i = 0; i < sitePicker_->count(); ++i) {
        items << sitePicker_->itemText(i);
    }
    return items;
}

void ExportViewWidget::chooseLayout(SitemapExporter::Box box) {
    exporter_->chooseLayout(box);
    for (size_t i = 0; i < boxes_.size(); ++i) {
        boxes_[i]->setChecked(exporter_->isChosen(static_cast<SitemapExporter::Box>(i)));
    }
}

void ExportViewWidget::startExport(bool xml) {
    const std::string site = sitePicker_->currentText().toStdString();
    exporter_->setSelectedSite(site == kNoSitesScanned ? std::string() : site);
    if (xml) {
        exporter_->exportXMLSitemap();
    } else {
        exporter_->exportHTMLSitemaps();
    }
}

void ExportViewWidget::saveToButton() {
    auto* dialog = new QFileDialog(this, QStringLiteral("Set Save Folder"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, QStringLiteral("Set Save Folder"));
    if (const QString folder = windowsettings::lastExportFolder(); !folder.isEmpty()) {
        dialog->setDirectory(folder);
    }
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& folder) { rememberFolder(folder); });
    dialog->open();
}

void ExportViewWidget::showExportPanel(bool shown) {
    if (shown) {
        exportProgress_->show();
    } else {
        exportProgress_->hide();
    }
}

void ExportViewWidget::setProgressIndeterminate(bool indeterminate) {
    if (indeterminate) {
        exportProgress_->setRange(0, 0);
    }
}

void ExportViewWidget::updateExportBar(uint64_t maximum, uint64_t current) {
    exportProgress_->setRange(0, clampedToInt(maximum));
    exportProgress_->setValue(clampedToInt(current));
}

std::optional<std::string> ExportViewWidget::chooseSaveFile(const SaveFileRequest& request) {
    if (std::optional<QString>& queued = nextSaveFileName()) {
        const QString path = *queued;
        queued.reset();
        if (path.isEmpty()) {
            return std::nullopt;
        }
        rememberFolder(QFileInfo(path).absolutePath());
        return path.toStdString();
    }
    if (closing_) {
        return std::nullopt;  // the window is going away; nobody is left to answer
    }

    QFileDialog dialog(this);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setWindowModality(Qt::WindowModal);
    if (!request.allowedTypes.empty()) {
        dialog.setNameFilter(nameFilter(request.allowedTypes));
        dialog.setDefaultSuffix(QString::fromStdString(request.allowedTypes.front()));
    }
    if (const QString folder = windowsettings::lastExportFolder(); !folder.isEmpty()) {
        dialog.setDirectory(folder);
    }
    dialog.selectFile(QString::fromStdString(request.proposedName));
    // The worker waits for the answer, so this dialog has to block.
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    const QString path = dialog.selectedFiles().constFirst();
    rememberFolder(QFileInfo(path).absolutePath());
    return path.toStdString();
}

void ExportViewWidget::rememberFolder(const QString& folder) {
    windowsettings::rememberExportFolder(folder);
    saveToField_->setText(QDir::toNativeSeparators(folder));
}

void ExportViewWidget::setNextSaveFileName(const QString& path) {
    nextSaveFileName() = path;
}

}  // namespace loomcrest::gui
