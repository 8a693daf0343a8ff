#pragma once

#include <QDialog>

#include "sites/SiteSheetView.h"

class QLineEdit;
class QPushButton;

namespace loomcrest {
class AddEditDeleteSites;
}

namespace loomcrest::gui {

// The add/edit sheet: a window-modal dialog with the site's name and URL.
class SiteSheetDialog : public QDialog, public SiteSheetView {
    Q_OBJECT
public:
    explicit SiteSheetDialog(QWidget* mainWindow);
    void connectTo(AddEditDeleteSites& records) { records_ = &records; }

    void siteSheetChanged(const SiteSheetState& state) override;
    void focusNameField() override;

    QLineEdit* nameField() const { return name_; }
    QLineEdit* urlField() const { return url_; }
    QPushButton* defaultButton() const { return defaultButton_; }
    QPushButton* alternateButton() const { return alternateButton_; }

private:
    AddEditDeleteSites* records_ = nullptr;
    QLineEdit* name_ = nullptr;
    QLineEdit* url_ = nullptr;
    QPushButton* defaultButton_ = nullptr;
    QPushButton* alternateButton_ = nullptr;
};

}  // namespace loomcrest::gui
