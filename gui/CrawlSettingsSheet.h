#pragma once

#include <QDialog>
#include <functional>
#include <string>

#include "crawler/CrawlSettingsEditor.h"

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace loomcrest::gui {

class QtAlerts;

// "Crawl Settings…" of the scan view: a window-modal sheet with the selected site's crawl
// settings. Save checks them as the command line does; a refusal keeps the sheet open.
class CrawlSettingsSheet : public QDialog {
    Q_OBJECT
public:
    // `siteFolder` gives the folder of the site selected when the sheet opens.
    CrawlSettingsSheet(QWidget* mainWindow, QtAlerts& alerts,
                       std::function<std::string()> siteFolder);

    // Fills the fields from the site's settings and opens the sheet.
    void openForSelectedSite();

    QLineEdit* connectionsField() const { return connections_; }
    QLineEdit* rateField() const { return rate_; }
    QLineEdit* userAgentField() const { return userAgent_; }
    QCheckBox* fetchOnceBox() const { return fetchOnce_; }
    QPlainTextEdit* headersField() const { return headers_; }
    QCheckBox* netrcBox() const { return netrc_; }
    QPushButton* saveButton() const { return save_; }
    QPushButton* cancelButton() const { return cancel_; }

private:
    void showFields(const CrawlSettingsFields& fields);
    CrawlSettingsFields typedFields() const;

    CrawlSettingsEditor editor_;
    std::function<std::string()> siteFolder_;
    QLineEdit* connections_ = nullptr;
    QLineEdit* rate_ = nullptr;
    QLineEdit* userAgent_ = nullptr;
    QCheckBox* fetchOnce_ = nullptr;
    QPlainTextEdit* headers_ = nullptr;
    QCheckBox* netrc_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

}  // namespace loomcrest::gui
