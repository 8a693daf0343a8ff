#include "GlobalControls.h"

#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>
#include <QUrl>

namespace loomcrest::gui {

GlobalControls::GlobalControls(QMainWindow& mainWindow) : QObject(&mainWindow) {
    versionField_ = new QLabel(versionText(), &mainWindow);
    versionField_->setObjectName(QStringLiteral("versionField"));
    mainWindow.statusBar()->addPermanentWidget(versionField_);
}

QString GlobalControls::versionText() {
    return QStringLiteral("Loomcrest Version ") + QStringLiteral(LOOMCREST_VERSION);
}

QString GlobalControls::operatingSystemVersion() {
    QFile release(QStringLiteral("/etc/os-release"));
    if (!release.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    QString name;
    while (!release.atEnd()) {
        const QString line = QString::fromUtf8(release.readLine()).trimmed();
        const auto value = [&line] { return line.section('=', 1).remove('"'); };
        if (line.startsWith(QStringLiteral("VERSION_ID="))) {
            return value();
        }
        if (line.startsWith(QStringLiteral("NAME="))) {
            name = value();
        }
    }
    return name;
}

QString GlobalControls::supportPage() {
    return QStringLiteral("https://loomcrest.example/support");
}

void GlobalControls::reportProblem() {
    QDesktopServices::openUrl(QUrl(supportPage()));
}

}  // namespace loomcrest::gui
