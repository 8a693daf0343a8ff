#include "Screenshots.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QPixmap>
#include <QTimer>

#include "MainViewControl.h"

namespace loomcrest::gui {

namespace {

// Long enough for the preview to lay out its page.
void settle() {
    QEventLoop wait;
    QTimer::singleShot(1500, &wait, &QEventLoop::quit);
    wait.exec();
}

}  // namespace

bool takeScreenshots(MainViewControl& window, const QString& folder) {
    QDir().mkpath(folder);
    const std::pair<int, const char*> views[] = {
        {MainViewControl::Scan, "scan"},      {MainViewControl::Export, "export"},
        {MainViewControl::Upload, "upload"},  {MainViewControl::HtmlSitemap, "html"},
        {MainViewControl::XmlSitemap, "xml"}, {MainViewControl::HtmlEditor, "html-editor"},
    };
    bool saved = true;
    for (const auto& [view, name] : views) {
        window.toolbarAction(view)->trigger();
        settle();
        saved = window.grab().save(folder + "/" + name + ".png") && saved;
    }
    window.showBrokenLinks();
    settle();
    saved = window.grab().save(folder + "/broken-links.png") && saved;
    return saved;
}

}  // namespace loomcrest::gui
