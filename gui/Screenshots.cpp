#include "Screenshots.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <cstdio>

#include "MainViewControl.h"

namespace loomcrest::gui {

namespace {

// Long enough for the preview to lay out its page.
void settle() {
    QEventLoop wait;
    QTimer::singleShot(1500, &wait, &QEventLoop::quit);
    wait.exec();
}

// Saves one picture; false, with the reason on standard error, when the picture cannot be
// written or another window is on screen beside the main window.
bool savePicture(MainViewControl& window, const QString& path) {
    const QStringList strays = windowsBesides(window);
    if (!strays.isEmpty()) {
        std::fprintf(stderr, "Another window is on screen while taking %s: %s\n", qPrintable(path),
                     qPrintable(strays.join(QStringLiteral(", "))));
        return false;
    }
    if (!window.grab().save(path)) {
        std::fprintf(stderr, "Could not write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

}  // namespace

QStringList windowsBesides(const QWidget& window) {
    QStringList strays;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget != &window && widget->isVisible()) {
            strays << QStringLiteral("%1 \"%2\"")
                          .arg(QString::fromLatin1(widget->metaObject()->className()),
                               widget->windowTitle());
        }
    }
    return strays;
}

bool takeScreenshots(MainViewControl& window, const QString& folder) {
    QDir().mkpath(folder);
    const std::pair<int, const char*> views[] = {
        {MainViewControl::Scan, "scan"},
        {MainViewControl::Export, "export"},
        {MainViewControl::Upload, "upload"},
        {MainViewControl::HtmlSitemap, "html"},
        {MainViewControl::XmlSitemap, "xml"},
        {MainViewControl::HtmlEditor, "html-editor"},
        {MainViewControl::BrokenLinks, "broken-links"},
    };
    bool saved = true;
    for (const auto& [view, name] : views) {
        window.toolbarAction(view)->trigger();
        settle();
        saved = savePicture(window, folder + "/" + name + ".png") && saved;
    }
    return saved;
}

}  // namespace loomcrest::gui
