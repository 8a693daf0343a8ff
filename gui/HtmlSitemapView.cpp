#include "HtmlSitemapView.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSplitter>
#include <QUrl>
#include <QVBoxLayout>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineView>

#include "DesktopLinks.h"
#include "PreviewPage.h"
#include "QtAlerts.h"
#include "QtUiThread.h"
#include "app/ProcessState.h"
#include "editors/SitemapLayouts.h"

namespace loomcrest::gui {

namespace {

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QByteArray bytes(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

QColor toQColor(const htmlstyle::Rgb& colour) {
    return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                            static_cast<float>(colour.blue));
}

htmlstyle::Rgb fromQColor(const QColor& colour) {
    return {colour.redF(), colour.greenF(), colour.blueF()};
}

// The colour well shows the colour as an icon, painted exactly as entered; a style sheet
// background would be blended into the button's own shading. Icons grey out with their
// button, so a disabled group looks disabled.
QIcon swatch(const QColor& colour) {
    QPixmap pixmap(28, 14);
    pixmap.fill(colour);
    return QIcon(pixmap);
}

// The preview keeps at least this height, whatever the window's size.
constexpr int kPreviewMinimumHeight = 160;

}  // namespace

HtmlSitemapView::HtmlSitemapView(ProcessState& process, QtAlerts& alerts, QtUiThread& ui,
                                 std::function<std::string()> shownSiteName, QWidget* parent)
    : QWidget(parent), alerts_(alerts) {
    setObjectName(QStringLiteral("htmlWindowView"));
    profile_ = new QWebEngineProfile(this);
    page_ = new PreviewPage(profile_, this);
    preview_ = new QWebEngineView(this);
    preview_->setPage(page_);
    preview_->setContextMenuPolicy(Qt::NoContextMenu);
    preview_->setMinimumHeight(kPreviewMinimumHeight);
    // Starting the page (a script does that without loading anything) makes the view's
    // drawing surface now, before the window is shown. Made later, on the first visit, it
    // would make the toolkit tear the whole window down and build it again.
    page_->runJavaScript(QStringLiteral("0"), QWebEngineScript::ApplicationWorld);

    layout_ = new QComboBox(this);
    for (const SitemapLayout& sitemapLayout : kSitemapLayouts) {
        layout_->addItem(QString::fromUtf8(sitemapLayout.name.data(),
                                           static_cast<int>(sitemapLayout.name.size())));
    }
    layoutLabel_ = new QLabel(this);
    pt_ = makeGroup(QStringLiteral("Page titles"), htmlstyle::Group::PageTitle, this);
    pl_ = makeGroup(QStringLiteral("Links"), htmlstyle::Group::PageLink, this);
    titleField_ = new QLineEdit(this);
    titleField_->setPlaceholderText(QStringLiteral("Click a link in the sitemap to edit it"));
    linkField_ = new QLineEdit(this);
    save_ = new QPushButton(QStringLiteral("Save"), this);
    delete_ = new QPushButton(QStringLiteral("Delete"), this);
    viewInBrowser_ = new QPushButton(QStringLiteral("View in Browser"), this);
    previewPanel_ = new QProgressDialog(QStringLiteral("Preparing the preview…"),
                                        QStringLiteral("Cancel"), 0, 1, this);
    previewPanel_->setWindowModality(Qt::WindowModal);
    previewPanel_->setAutoClose(false);
    previewPanel_->setAutoReset(false);
    previewPanel_->reset();
    previewPanel_->hide();

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Layout:"), this));
    top->addWidget(layout_);
    top->addWidget(layoutLabel_, 1);
    top->addWidget(viewInBrowser_);
    top->addWidget(save_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(makeSplitter(), 1);

    controller_ =
        std::make_unique<HTMLViewController>(process, *this, alerts, ui, std::move(shownSiteName));
    connectControls(process);
}

void HtmlSitemapView::connectControls(ProcessState& process) {
    HTMLViewController& html = *controller_;
    connect(layout_, &QComboBox::activated, this,
            [&html](int index) { html.changeMapType(static_cast<size_t>(index)); });
    connect(save_, &QPushButton::clicked, this, [&html] { html.saveRecentChanges(); });
    connect(viewInBrowser_, &QPushButton::clicked, this, [&html] { html.viewSitemapButton(); });
    connect(delete_, &QPushButton::clicked, this, [this, &html] {
        forwardEditFields();
        html.deleteLinkAction();
    });
    connect(titleField_, &QLineEdit::returnPressed, this, [this, &html] {
        forwardEditFields();
        html.titleEditInputAction();
    });
    connect(linkField_, &QLineEdit::returnPressed, this, [this, &html] {
        forwardEditFields();
        html.linkEditInputAction();
    });
    connect(previewPanel_, &QProgressDialog::canceled, this,
            [&html] { html.cancelViewInExternalButtonAction(); });
    connect(page_, &PreviewPage::linkClicked, this,
            [this, &html](const QString& address, const QString& label) {
                const QPointF scroll = page_->scrollPosition();
                html.scrollPositionChanged({scroll.x(), scroll.y()});
                html.linkClicked(address.toStdString(), label.toStdString());
            });
    connect(page_, &PreviewPage::changedInPlace, this, &HtmlSitemapView::previewUpdated);
    // The working copy is what the preview shows after changes in place.
    page_->setCurrentHtml([&process] { return bytes(process.vrlmpHTMLString); });
    connect(page_, &QWebEnginePage::loadFinished, this, [this, &html](bool ok) {
        if (!ok) {
            return;  // replaced by a newer load before it was shown
        }
        const HTMLViewController::ScrollPosition position = html.savedScrollPosition();
        page_->runJavaScript(
            QStringLiteral("window.scrollTo(%1, %2);").arg(position.x).arg(position.y),
            QWebEngineScript::ApplicationWorld);
        emit previewLoaded();
    });
}

// The style panel, the edit fields and the preview, one above the other. The style panel
// scrolls and can be dragged shut, so a small window still shows the sitemap.
QSplitter* HtmlSitemapView::makeSplitter() {
    auto* styles = new QWidget;
    auto* groups = new QHBoxLayout(styles);
    groups->setContentsMargins(0, 0, 0, 0);
    groups->addWidget(pt_.face->parentWidget());
    groups->addWidget(pl_.face->parentWidget());
    auto* stylePanel = new QScrollArea;
    stylePanel->setObjectName(QStringLiteral("stylePanel"));
    stylePanel->setWidget(styles);
    stylePanel->setWidgetResizable(true);
    stylePanel->setFrameShape(QFrame::NoFrame);

    auto* editPanel = new QWidget;
    auto* edit = new QFormLayout;
    edit->addRow(QStringLiteral("Title:"), titleField_);
    edit->addRow(QStringLiteral("Address:"), linkField_);
    auto* editRow = new QHBoxLayout(editPanel);
    editRow->setContentsMargins(0, 0, 0, 0);
    editRow->addLayout(edit, 1);
    editRow->addWidget(delete_);
    editPanel->setFixedHeight(editPanel->sizeHint().height());

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName(QStringLiteral("previewSplitter"));
    splitter->addWidget(stylePanel);
    splitter->addWidget(editPanel);
    splitter->addWidget(preview_);
    splitter->setCollapsible(1, false);
    splitter->setCollapsible(2, false);
    splitter->setStretchFactor(2, 1);
    splitter->setSizes({styles->sizeHint().height(), editPanel->height(), 10000});
    return splitter;
}

HtmlSitemapView::~HtmlSitemapView() {
    controller_.reset();
    // The page goes before its profile.
    delete page_;
}

HtmlSitemapView::StyleGroupControls HtmlSitemapView::makeGroup(const QString& title,
                                                               htmlstyle::Group group,
                                                               QWidget* parent) {
    auto* box = new QGroupBox(title, parent);
    StyleGroupControls controls;
    controls.face = new QComboBox(box);
    for (const std::string_view face : htmlstyle::kFontFaces) {
        controls.face->addItem(QString::fromUtf8(face.data(), static_cast<int>(face.size())));
    }
    controls.size = new QComboBox(box);
    for (const std::string_view size : htmlstyle::kFontSizes) {
        controls.size->addItem(QString::fromUtf8(size.data(), static_cast<int>(size.size())));
    }
    controls.bold = new QCheckBox(QStringLiteral("Bold"), box);
    controls.italic = new QCheckBox(QStringLiteral("Italic"), box);
    controls.underline = new QButtonGroup(box);
    auto* underlineRow = new QHBoxLayout;
    const std::array<QString, 3> underlineTitles = {QStringLiteral("Underline on hover"),
                                                    QStringLiteral("No underline"),
                                                    QStringLiteral("Always underlined")};
    for (int tag = 0; tag < 3; ++tag) {
        auto* choice = new QRadioButton(underlineTitles[static_cast<size_t>(tag)], box);
        controls.underline->addButton(choice, tag);
        underlineRow->addWidget(choice);
    }
    controls.colourWell = new QPushButton(box);
    controls.colourWell->setIconSize(QSize(28, 14));
    controls.colourField = new QLineEdit(box);
    controls.colourField->setMaximumWidth(110);
    auto* toggles = new QHBoxLayout;
    toggles->addWidget(controls.bold);
    toggles->addWidget(controls.italic);
    toggles->addStretch();
    auto* colour = new QHBoxLayout;
    colour->addWidget(controls.colourWell);
    colour->addWidget(controls.colourField);
    colour->addStretch();
    auto* form = new QFormLayout(box);
    form->addRow(QStringLiteral("Face:"), controls.face);
    form->addRow(QStringLiteral("Size:"), controls.size);
    form->addRow(QString(), toggles);
    form->addRow(QString(), underlineRow);
    form->addRow(QStringLiteral("Colour:"), colour);

    connectGroup(controls, group);
    return controls;
}

void HtmlSitemapView::connectGroup(const StyleGroupControls& controls, htmlstyle::Group group) {
    const auto html = [this] { return controller_.get(); };
    connect(controls.face, &QComboBox::activated, this,
            [html, group](int index) { html()->setFontFace(group, static_cast<size_t>(index)); });
    connect(controls.size, &QComboBox::activated, this,
            [html, group](int index) { html()->setFontSize(group, static_cast<size_t>(index)); });
    connect(controls.bold, &QCheckBox::clicked, this,
            [html, group](bool on) { html()->setBold(group, on); });
    connect(controls.italic, &QCheckBox::clicked, this,
            [html, group](bool on) { html()->setItalic(group, on); });
    // The buttons' ids are the Underline values.
    connect(controls.underline, &QButtonGroup::idClicked, this, [html, group](int tag) {
        html()->setUnderline(group, static_cast<htmlstyle::Underline>(tag));
    });
    QLineEdit* field = controls.colourField;
    connect(field, &QLineEdit::returnPressed, this, [html, group, field] {
        html()->colourFieldEntered(group, field->text().toStdString());
    });
    connect(controls.colourWell, &QPushButton::clicked, this, [this, html, group] {
        const StyleControls& state =
            group == htmlstyle::Group::PageTitle ? html()->state().pt : html()->state().pl;
        auto* dialog = new QColorDialog(toQColor(state.colourWell), this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QColorDialog::colorSelected, this, [html, group](const QColor& colour) {
            html()->colourWellChosen(group, fromQColor(colour));
        });
        dialog->open();
    });
}

void HtmlSitemapView::showGroup(const StyleGroupControls& controls, const StyleControls& state) {
    const QSignalBlocker faceBlocker(controls.face);
    const QSignalBlocker sizeBlocker(controls.size);
    controls.face->setCurrentIndex(state.face ? static_cast<int>(*state.face) : -1);
    controls.size->setCurrentIndex(state.size ? static_cast<int>(*state.size) : -1);
    controls.bold->setChecked(state.bold);
    controls.italic->setChecked(state.italic);
    if (QAbstractButton* cell = controls.underline->button(static_cast<int>(state.underline))) {
        cell->setChecked(true);
    }
    controls.colourField->setText(QString::fromStdString(state.colourField));
    controls.colourWell->setIcon(swatch(toQColor(state.colourWell)));
}

void HtmlSitemapView::htmlViewChanged(const HtmlViewState& state) {
    showGroup(pt_, state.pt);
    showGroup(pl_, state.pl);
    {
        const QSignalBlocker blocker(layout_);
        layout_->setCurrentIndex(static_cast<int>(state.layout));
    }
    layoutLabel_->setText(QString::fromStdString(state.layoutLabel));
    if (titleField_->text().toStdString() != state.titleField) {
        titleField_->setText(QString::fromStdString(state.titleField));
    }
    if (linkField_->text().toStdString() != state.linkField) {
        linkField_->setText(QString::fromStdString(state.linkField));
    }
    for (QWidget* control :
         {static_cast<QWidget*>(pt_.face), static_cast<QWidget*>(pt_.size),
          static_cast<QWidget*>(pt_.bold), static_cast<QWidget*>(pt_.italic),
          static_cast<QWidget*>(pt_.colourWell), static_cast<QWidget*>(pt_.colourField),
          static_cast<QWidget*>(pl_.face), static_cast<QWidget*>(pl_.size),
          static_cast<QWidget*>(pl_.bold), static_cast<QWidget*>(pl_.italic),
          static_cast<QWidget*>(pl_.colourWell), static_cast<QWidget*>(pl_.colourField),
          static_cast<QWidget*>(layout_), static_cast<QWidget*>(layoutLabel_),
          static_cast<QWidget*>(viewInBrowser_), static_cast<QWidget*>(titleField_),
          static_cast<QWidget*>(linkField_)}) {
        control->setEnabled(state.editOptionsEnabled);
    }
    for (QAbstractButton* cell : pt_.underline->buttons() + pl_.underline->buttons()) {
        cell->setEnabled(state.editOptionsEnabled);
    }
    save_->setEnabled(state.editOptionsEnabled && state.saveEnabled);
    delete_->setEnabled(state.editOptionsEnabled && state.deleteEnabled);
    page_->highlightLink(state.deleteEnabled ? QString::fromStdString(controller_->linkNumber())
                                             : QString());
}

void HtmlSitemapView::forwardEditFields() {
    controller_->setEditFields(titleField_->text().toStdString(), linkField_->text().toStdString());
}

void HtmlSitemapView::loadPreview(std::string_view html) {
    page_->showHtml(bytes(html));
}

void HtmlSitemapView::updatePreview(std::string_view /*html*/, const PreviewEdit& edit) {
    QJsonArray replacements;
    for (const PreviewEdit::Replacement& replacement : edit.replacements) {
        replacements.append(
            QJsonArray{fromUtf8(replacement.before),
                       replacement.after ? QJsonValue(fromUtf8(*replacement.after)) : QJsonValue(),
                       static_cast<qint64>(replacement.count)});
    }
    const QJsonValue style =
        edit.style
            ? QJsonValue(QJsonArray{fromUtf8(edit.style->before), fromUtf8(edit.style->after)})
            : QJsonValue();
    const QJsonValue rows =
        edit.rows
            ? QJsonValue(QJsonArray{static_cast<qint64>(edit.rows->keptRows),
                                    static_cast<qint64>(edit.rows->rowsBefore),
                                    fromUtf8(edit.rows->cellWidth), fromUtf8(edit.rows->newRows)})
            : QJsonValue();
    page_->changeInPlace(replacements, style, rows);
}

void HtmlSitemapView::showPreviewPanel(bool shown) {
    if (shown) {
        previewPanel_->show();
    } else {
        previewPanel_->reset();
        previewPanel_->hide();
    }
}

void HtmlSitemapView::setPreviewProgress(double value, double maximum) {
    previewPanel_->setMaximum(static_cast<int>(maximum));
    previewPanel_->setValue(static_cast<int>(value));
}

void HtmlSitemapView::openWithDefaultApplication(const std::string& path) {
    const QString file = QString::fromStdString(path);
    opened_.append(file);
    openOrSayWhyNot(QUrl::fromLocalFile(file), alerts_);
}

}  // namespace loomcrest::gui
