#include "ScanSheets.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <climits>

namespace loomcrest::gui {

// A panel shown only while its stage of a scan runs. A plain dialog, not a progress
// dialog: those show themselves on a timer of their own, with or without a scan.
//
// It is not modal and never takes the keyboard: the window is disabled under it instead.
// A modal panel took the window's keyboard focus with it when it went, since the window
// system gave the window the focus while the panel still blocked it.
class BusySheet : public QDialog {
public:
    BusySheet(QWidget* parent, const QString& text) : QDialog(parent) {
        setWindowFlag(Qt::WindowDoesNotAcceptFocus);
        setAttribute(Qt::WA_ShowWithoutActivating);
        auto* bar = new QProgressBar(this);
        bar->setRange(0, 0);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel(text, this));
        layout->addWidget(bar);
        setMinimumWidth(300);
    }

    // Shows the panel and lets the window system put it on screen before its stage goes on:
    // the connection stage holds the event loop until it is over.
    void showOnScreen() {
        show();
        const QDeadlineTimer deadline(1000);
        while (windowHandle() != nullptr && !windowHandle()->isExposed() &&
               !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        }
    }

protected:
    // Escape would hide the panel while its stage still runs.
    void reject() override {}
};

namespace {

// Escape and the close box cancel the scan, as the Cancel button does; the sheet stays
// until the scan has stopped.
class ProgressSheet : public QDialog {
public:
    ProgressSheet(QWidget* parent, std::function<void()> cancel)
        : QDialog(parent), cancel_(std::move(cancel)) {
        // Escape cancels even while the window system still gives the keys to the window
        // under the sheet.
        auto* escape =
            new QShortcut(QKeySequence::Cancel, this, nullptr, nullptr, Qt::ApplicationShortcut);
        connect(escape, &QShortcut::activated, this, [this] { cancel_(); });
    }

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

QDialog* ScanSheets::connectionSheet() const {
    return connecting_;
}

QDialog* ScanSheets::endPanel() const {
    return finishing_;
}

// While a panel is up the window under it takes no input, as under a sheet.
void ScanSheets::showPanel(BusySheet* panel, bool shown) {
    if (shown) {
        focusBeforePanel_ = mainWindow_->focusWidget();
    }
    for (QWidget* part : mainWindow_->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (!part->isWindow()) {
            part->setEnabled(!shown);
        }
    }
    if (shown) {
        panel->showOnScreen();
        return;
    }
    panel->hide();
    // Disabling took the keyboard focus from the control that had it.
    if (focusBeforePanel_ != nullptr) {
        focusBeforePanel_->setFocus();
    }
}

void ScanSheets::showConnectionSheet(bool shown) {
    showPanel(connecting_, shown);
}

void ScanSheets::showProgressSheet(bool shown) {
    if (shown) {
        progressSheet_->open();
        progressSheet_->raise();
        // The keyboard goes to the sheet, so that Escape cancels the scan at once.
        progressSheet_->activateWindow();
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
    showPanel(finishing_, shown);
}

void ScanSheets::bringWindowToFront() {
    mainWindow_->raise();
    // A sheet open on the window keeps the keyboard.
    QWidget* modal = QApplication::activeModalWidget();
    (modal != nullptr ? modal : mainWindow_)->activateWindow();
}

void ScanSheets::scanEnded() {
    emit scanHasEnded();
}

}  // namespace loomcrest::gui
