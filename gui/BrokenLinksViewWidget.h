#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "sitemap/BrokenLinkDetails.h"

class QPushButton;
class QTableWidget;

namespace loomcrest {
class AlertPresenter;
}

namespace loomcrest::gui {

class ExportViewWidget;

// The broken-links view (view 7): the current site's broken pages, one a row. With the
// details of the last scan there are five columns (URL, Status, Found on, Link text,
// Links), else the URL alone. A double-click opens the page in the browser, Ctrl+C copies
// the selected rows as tab-separated lines; the list is exported as HTML, text or CSV
// through the export's save dialogs.
class BrokenLinksViewWidget : public QWidget {
    Q_OBJECT
public:
    // Exports go through `exportView`'s exporter and save dialogs.
    BrokenLinksViewWidget(ExportViewWidget& exportView, AlertPresenter& alerts,
                          QWidget* parent = nullptr);

    // Takes a copy of the site's broken links, reads their details and shows them.
    void reloadBrokenLinks(const std::string& siteName, const std::vector<std::string>& badLinks);
    QTableWidget* table() const { return table_; }
    QPushButton* htmlButton() const { return htmlButton_; }
    QPushButton* textButton() const { return textButton_; }
    QPushButton* csvButton() const { return csvButton_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void copySelectedRows() const;
    void openRow(int row);

    ExportViewWidget& exportView_;
    AlertPresenter& alerts_;
    std::string siteName_;
    BrokenLinkReport badLinkArray_;
    QTableWidget* table_ = nullptr;
    QPushButton* htmlButton_ = nullptr;
    QPushButton* textButton_ = nullptr;
    QPushButton* csvButton_ = nullptr;
};

}  // namespace loomcrest::gui
