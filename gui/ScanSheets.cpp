#include "ScanSheets.h"

#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>
#include <climits>

namespace loomcrest::gui {

namespace {

QProgressDialog* busySheet(QWidget* parent, const QString& text) {
    auto* sheet = new QProgressDialog(text, QString(), 0, 0, parent);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->setCancelButton(nullptr);
    sheet->setMinimumDuration(0);
    sheet->setAutoClose(false);
    sheet->setAutoReset(false);
    sheet->hide();
    return sheet;
}

int clamped(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, 0, INT_MAX));
}

}  // namespace

ScanSheets::ScanSheets(QWidget* mainWindow, std::function<void()> cancelScan)
    : QObject(mainWindow), mainWindow_(mainWindow) {
    connecting_ = busySheet(mainWindow, QStringLiteral("Connecting to the site…"));
    finishing_ = busySheet(mainWindow, QStringLiteral("Finishing the sitemaps…"));

    progressSheet_ = new QDialog(mainWindow);
    progressSheet_->setObjectName(QStringLiteral("scanProgressSheet"));
    progressSheet_->setWindowTitle(QStringLiteral("Scanning"));
    progressSheet_->setWindowModality(Qt::WindowModal);
    pagesLeft_ = new QLabel(QStringLiteral("0"), progressSheet_);
    pagesScanned_ = new QLabel(QStringLiteral("0"), progressSheet_);
    brokenLinks_ = new QLabel(QStringLiteral("0"), progressSheet_);
    totalLinks_ = new QLabel(QStringLiteral("0"), progressSheet_);
    bar_ = new QProgressBar(progressSheet_);
    cancel_ = new QPushButton(QStringLiteral("Cancel"), progressSheet_);
    auto* counters = new QFormLayout;
    counters->addRow(QStringLiteral("Pages left:"), pagesLeft_);
    counters->addRow(QStringLiteral("Pages scanned:"), pagesScanned_);
    counters->addRow(QStringLiteral("Broken links:"), brokenLinks_);
    counters->addRow(QStringLiteral("Total links:"), totalLinks_);
    auto* layout = new QVBoxLayout(progressSheet_);
    layout->addLayout(counters);
    layout->addWidget(bar_);
    layout->addWidget(cancel_, 0, Qt::AlignRight);
    progressSheet_->setMinimumWidth(360);
    connect(cancel_, &QPushButton::clicked, this, std::move(cancelScan));
}

void ScanSheets::showConnectionSheet(bool shown) {
    shown ? connecting_->show() : connecting_->hide();
}

void ScanSheets::showProgressSheet(bool shown) {
    if (shown) {
        progressSheet_->open();
        progressSheet_->raise();
    } else {
        progressSheet_->hide();
    }
}

void ScanSheets::showProgress(const ScanProgress& progress) {
    pagesLeft_->setNum(clamped(progress.pagesLeft));
    pagesScanned_->setNum(clamped(progress.pagesScanned));
    brokenLinks_->setNum(clamped(progress.brokenLinks));
    bar_->setRange(0, clamped(progress.barMaximum));
    bar_->setValue(clamped(progress.barValue));
}

void ScanSheets::showTotalLinks(int32_t totalLinks) {
    totalLinks_->setNum(totalLinks);
}

void ScanSheets::showEndPanel(bool shown) {
    shown ? finishing_->show() : finishing_->hide();
}

void ScanSheets::bringWindowToFront() {
    mainWindow_->raise();
    mainWindow_->activateWindow();
}

void ScanSheets::scanEnded() {
    emit scanHasEnded();
}

}  // namespace loomcrest::gui
