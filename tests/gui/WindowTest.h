#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <memory>

#include "ExportViewWidget.h"
#include "MainViewControl.h"
#include "QtAlerts.h"
#include "ScanViewWidget.h"
#include "app/ProcessState.h"
#include "support/TemporaryHome.h"

namespace loomcrest::test {

// The real main window under Xvfb, with a home and settings of its own. Every alert is
// answered from a queue, so no test waits for a person.
class WindowTest : public QObject {
protected:
    void useFreshHome() {
        home_ = std::make_unique<TemporaryHome>();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(home_->path() + "/.config"));
        gui::QtAlerts::forgetShownAlerts();
        gui::QtAlerts::queueAnswers({});
    }
    // Shortcuts and focus need the window to be the active one, as it is for a person.
    void openWindow(QSize size = QSize()) {
        window_ = std::make_unique<gui::MainViewControl>();
        if (size.isValid()) {
            window_->resize(size);
        }
        window_->show();
        window_->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), window_.get());
    }
    void closeWindow() {
        window_.reset();
        home_.reset();
    }
    gui::ScanViewWidget& scan() { return window_->scanView(); }

    // Shortcuts reach the active window only. Without a window manager (Xvfb) nothing gives
    // the window back its activation after a sheet has closed.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        window_->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), window_.get());
        QTest::keyClick(window_.get(), static_cast<Qt::Key>(key), modifiers);
    }
    static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
    // On the check box's square itself: the widget may stretch far beyond its label.
    static void tick(QWidget* box) {
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    }
    // Selects the field's text and types `text` over it.
    static void retype(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, text);
    }
    // A click on an export button with `file` chosen in the save dialog, and the export done.
    void exportWith(QWidget* button, const QString& file) {
        gui::ExportViewWidget::setNextSaveFileName(file);
        click(button);
        QTRY_VERIFY(QFileInfo::exists(file));
        window_->exportView().exporter().waitForExport();
    }
    // A click on the site's name in the list.
    void selectSite(const QString& name) {
        QListWidget* list = scan().siteTable();
        const auto items = list->findItems(name, Qt::MatchExactly);
        QVERIFY(!items.isEmpty());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(items.first()).center());
        QTRY_COMPARE(QString::fromStdString(window_->processState().vrlmpCurSite), name);
    }
    // Does `action` with no web browser to be found and waits for the one alert it shows.
    void withoutABrowser(const std::function<void()>& action) {
        const QByteArray path = qgetenv("PATH");
        const QTemporaryDir nothingToRun;
        qputenv("PATH", nothingToRun.path().toUtf8());
        qunsetenv("BROWSER");
        qunsetenv("DEFAULT_BROWSER");
        gui::QtAlerts::queueAnswers({kDefaultButtonCode});
        action();
        const bool shown = QTest::qWaitFor([] { return gui::QtAlerts::shownAlerts().size() == 1; });
        qputenv("PATH", path);
        QVERIFY(shown);
    }

    std::unique_ptr<TemporaryHome> home_;
    std::unique_ptr<gui::MainViewControl> window_;
};

}  // namespace loomcrest::test
