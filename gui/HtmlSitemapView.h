#pragma once

#include <QPointer>
#include <QWidget>
#include <array>
#include <memory>

#include "PreviewPage.h"
#include "editors/HTMLViewController.h"
#include "editors/HtmlView.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressDialog;
class QPushButton;
class QSplitter;
class QWebEngineProfile;
class QWebEngineView;

namespace loomcrest::gui {

class PreviewPage;
class QtAlerts;
class QtUiThread;

// The HTML sitemap view (view 2): the live preview of the working copy, the layout pop-up,
// the page-title and link style controls, the title and address fields of a clicked line,
// Save, View in Browser and Delete, over the core's HTMLViewController.
class HtmlSitemapView : public QWidget, public HtmlView {
    Q_OBJECT
public:
    struct StyleGroupControls {
        QComboBox* face = nullptr;
        QComboBox* size = nullptr;
        QCheckBox* bold = nullptr;
        QCheckBox* italic = nullptr;
        QButtonGroup* underline = nullptr;
        QPushButton* colourWell = nullptr;
        QLineEdit* colourField = nullptr;
    };

    HtmlSitemapView(ProcessState& process, QtAlerts& alerts, QtUiThread& ui,
                    std::function<std::string()> shownSiteName, QWidget* parent = nullptr);
    ~HtmlSitemapView() override;

    HTMLViewController& controller() { return *controller_; }

    // HtmlView
    void htmlViewChanged(const HtmlViewState& state) override;
    void loadPreview(std::string_view html) override;
    void updatePreview(std::string_view html, const PreviewEdit& edit) override;
    void showPreviewPanel(bool shown) override;
    void setPreviewProgress(double value, double maximum) override;
    void openWithDefaultApplication(const std::string& path) override;

    QWebEngineView* preview() const { return preview_; }
    PreviewPage* previewPage() const { return page_; }
    const StyleGroupControls& pageTitleControls() const { return pt_; }
    const StyleGroupControls& pageLinkControls() const { return pl_; }
    QComboBox* layoutPopup() const { return layout_; }
    QLineEdit* titleField() const { return titleField_; }
    QLineEdit* linkField() const { return linkField_; }
    QPushButton* saveButton() const { return save_; }
    QPushButton* deleteButton() const { return delete_; }
    QPushButton* viewInBrowserButton() const { return viewInBrowser_; }
    // Test hook: files the view would have opened in the default browser.
    const QStringList& openedFiles() const { return opened_; }

signals:
    void previewLoaded();
    // An edit was shown by changing the loaded page, without loading it again.
    void previewUpdated();

private:
    QSplitter* makeSplitter();
    StyleGroupControls makeGroup(const QString& title, htmlstyle::Group group, QWidget* parent);
    // What the controls of one style group and the rest of the view do.
    void connectGroup(const StyleGroupControls& controls, htmlstyle::Group group);
    void connectControls(ProcessState& process);
    void showGroup(const StyleGroupControls& controls, const StyleControls& state);
    void forwardEditFields();

    QtAlerts& alerts_;
    std::unique_ptr<HTMLViewController> controller_;
    QWebEngineProfile* profile_ = nullptr;
    QPointer<PreviewPage> page_;
    QWebEngineView* preview_ = nullptr;
    StyleGroupControls pt_;
    StyleGroupControls pl_;
    QComboBox* layout_ = nullptr;
    QLabel* layoutLabel_ = nullptr;
    QLineEdit* titleField_ = nullptr;
    QLineEdit* linkField_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* delete_ = nullptr;
    QPushButton* viewInBrowser_ = nullptr;
    QProgressDialog* previewPanel_ = nullptr;
    QStringList opened_;
};

}  // namespace loomcrest::gui
