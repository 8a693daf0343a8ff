#pragma once

#include <QWidget>
#include <array>
#include <memory>

#include "export/SitemapExporter.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QProgressDialog;
class QPushButton;

namespace loomcrest::gui {

class QtAlerts;
class QtUiThread;

// The export view (view 5): six layout boxes acting as one radio group, the site picker, a
// save-to folder chooser and the two export buttons, over the core's SitemapExporter.
class ExportViewWidget : public QWidget, public ExportView {
    Q_OBJECT
public:
    ExportViewWidget(ProcessState& process, QtAlerts& alerts, QtUiThread& ui,
                     QWidget* parent = nullptr);
    ~ExportViewWidget() override;

    // Refills the site picker (populateSitePicker) and selects the site named
    // `shownSiteName`; enables both export buttons unless no site has been scanned.
    void populateSitePicker(const std::string& shownSiteName);
    void setExportButtonsEnabled(bool enabled);
    QStringList sitePickerItems() const;

    SitemapExporter& exporter() { return *exporter_; }

    // ExportView
    void showExportPanel(bool shown) override;
    void setProgressIndeterminate(bool indeterminate) override;
    void updateExportBar(uint64_t maximum, uint64_t current) override;
    std::optional<std::string> chooseSaveFile(const SaveFileRequest& request) override;

    // Test hook: the next save dialog is answered with this path (empty: cancelled).
    static void setNextSaveFileName(const QString& path);

    QPushButton* htmlExportButton() const { return htmlExportButton_; }
    QPushButton* xmlExportButton() const { return xmlExportButton_; }
    QComboBox* sitePicker() const { return sitePicker_; }
    QLineEdit* saveToField() const { return saveToField_; }
    QCheckBox* layoutBox(SitemapExporter::Box box) const { return boxes_[box]; }
    QCheckBox* compressPartsBox() const { return compressParts_; }

private:
    // The six layout boxes in their group, and the progress shown during an export.
    QGroupBox* createLayoutBoxes();
    void createProgressDialog();
    void chooseLayout(SitemapExporter::Box box);
    void startExport(bool xml);
    void saveToButton();
    // The folder the save dialogs open in next time, here and in later runs.
    void rememberFolder(const QString& folder);

    std::unique_ptr<SitemapExporter> exporter_;
    std::array<QCheckBox*, 6> boxes_{};
    QComboBox* sitePicker_ = nullptr;
    QLineEdit* saveToField_ = nullptr;
    QCheckBox* compressParts_ = nullptr;
    QPushButton* htmlExportButton_ = nullptr;
    QPushButton* xmlExportButton_ = nullptr;
    QProgressDialog* exportProgress_ = nullptr;
    bool closing_ = false;
};

}  // namespace loomcrest::gui
