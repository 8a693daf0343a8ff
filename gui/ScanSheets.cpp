#include "ScanSheets.h"

#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>
#include <climits>

namespace loomcrest::gui {

namespace {

// A panel shown only while its stage of a scan runs. A plain dialog, not a progress
// dialog: those show themselves on a timer of their own, with or without a scan.
class BusySheet : public QDialog {
public:
    BusySheet(QWidget* parent, const QString& text) : QDialog(parent) {
        setWindowModality(Qt::WindowModal);
        auto* bar = new QProgressBar(this);
        bar->setRange(0, 0);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel(text, this));
        layout->addWidget(bar);
        setMinimumWidth(300);
    }

protected:
    // Escape would hide the panel while its stage still runs.
    void reject() override {}
};

// Escape and the close box cancel the scan, as the Cancel button does; the sheet stays
// until the scan has stopped.
class ProgressSheet : public QDialog {
public:
    ProgressSheet(QWidget* parent, std::function<void()> cancel)
        : QDialog(parent), cancel_(std::move(cancel)) {}

protected:
    void reject() override { cancel_(); }

private:
    std::function<void()> cancel_;
};

int clamped(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, 0, INT_MAX));
}

}  // namespace

ScanSheets::ScanSheets(QWidget* mainWindow, std::function<void()> cancelScan)
    : QObject(mainWindow), mainWindow_(mainWindow) {
    connecting_ = new BusySheet(mainWindow, QStringLiteral("Connecting to the site…"));
    connecting_->setObjectName(QStringLiteral("connectionSheet"));
    finishing_ = new BusySheet(mainWindow, QStringLiteral("Finishing the sitemaps…"));
    finishing_->setObjectName(QStringLiteral("endPanel"));

    progressSheet_ = new ProgressSheet(mainWindow, cancelScan);
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
    cancel_->setAutoDefault(false);
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
    emit progressSheetShown(shown);
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
