#pragma once

#include <QDockWidget>

#include "crawler/ScanFilters.h"

class QLineEdit;
class QListWidget;
class QPushButton;

namespace loomcrest::gui {

// The filters drawer beside the scan view: the site's filters, a field and Add and Delete.
class FiltersDrawer : public QDockWidget, public FilterView {
    Q_OBJECT
public:
    explicit FiltersDrawer(QWidget* parent);
    void connectTo(ScanFilters& filters) { filters_ = &filters; }
    void setControlsEnabled(bool enabled);

    void reloadFilterTable() override;
    void clearNewFilterInput() override;

    QListWidget* table() const { return table_; }
    QLineEdit* input() const { return input_; }
    QPushButton* addButton() const { return add_; }
    QPushButton* deleteButton() const { return delete_; }

private:
    ScanFilters* filters_ = nullptr;
    QListWidget* table_ = nullptr;
    QLineEdit* input_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* delete_ = nullptr;
};

}  // namespace loomcrest::gui
