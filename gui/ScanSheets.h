#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

#include "crawler/ScanSheetView.h"

class QDialog;
class QLabel;
class QProgressBar;
class QPushButton;
class QWidget;

namespace loomcrest::gui {

class BusySheet;

// The scan's sheets: connecting, the progress sheet with its counters and Cancel button,
// and the end panel while the files are closed.
class ScanSheets : public QObject, public ScanSheetView {
    Q_OBJECT
public:
    ScanSheets(QWidget* mainWindow, std::function<void()> cancelScan);

    void showConnectionSheet(bool shown) override;
    void showProgressSheet(bool shown) override;
    void showProgress(const ScanProgress& progress) override;
    void showTotalLinks(int32_t totalLinks) override;
    void showEndPanel(bool shown) override;
    void bringWindowToFront() override;
    void scanEnded() override;

    QDialog* connectionSheet() const;
    QDialog* progressSheet() const { return progressSheet_; }
    QDialog* endPanel() const;
    QPushButton* cancelButton() const { return cancel_; }
    QLabel* pagesLeft() const { return pagesLeft_; }
    QLabel* pagesScanned() const { return pagesScanned_; }
    QLabel* brokenLinks() const { return brokenLinks_; }
    QLabel* totalLinks() const { return totalLinks_; }

signals:
    void scanHasEnded();
    // The progress sheet, with its Cancel button, came up (true) or went (false).
    void progressSheetShown(bool shown);

private:
    void showPanel(BusySheet* panel, bool shown);

    QWidget* mainWindow_;
    BusySheet* connecting_ = nullptr;
    BusySheet* finishing_ = nullptr;
    QDialog* progressSheet_ = nullptr;
    QLabel* pagesLeft_ = nullptr;
    QLabel* pagesScanned_ = nullptr;
    QLabel* brokenLinks_ = nullptr;
    QLabel* totalLinks_ = nullptr;
    QProgressBar* bar_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPointer<QWidget> focusBeforePanel_;
};

}  // namespace loomcrest::gui
