#pragma once

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "export/SitemapExporter.h"

class QListWidget;
class QPushButton;

namespace loomcrest::gui {

class ExportViewWidget;

// The broken-links view (view 7): the current site's broken pages, one a row, exported as
// HTML or text through the export's save dialogs.
class BrokenLinksViewWidget : public QWidget {
    Q_OBJECT
public:
    // Exports go through `exportView`'s exporter and save dialogs.
    BrokenLinksViewWidget(ExportViewWidget& exportView, QWidget* parent = nullptr);

    // Takes a copy of the site's broken links and shows it.
    void reloadBrokenLinks(const std::string& siteName, const std::vector<std::string>& badLinks);
    QListWidget* table() const { return table_; }
    QPushButton* htmlButton() const { return htmlButton_; }
    QPushButton* textButton() const { return textButton_; }

private:
    ExportViewWidget& exportView_;
    std::string siteName_;
    std::vector<std::string> badLinkArray_;
    QListWidget* table_ = nullptr;
    QPushButton* htmlButton_ = nullptr;
    QPushButton* textButton_ = nullptr;
};

}  // namespace loomcrest::gui
