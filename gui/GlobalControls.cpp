#include "GlobalControls.h"

#include <QDesktopServices>
#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>
#include <QSysInfo>
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
    return QSysInfo::productVersion();
}

QString GlobalControls::supportPage() {
    return QStringLiteral("https://loomcrest.example/support");
}

void GlobalControls::reportProblem() {
    QDesktopServices::openUrl(QUrl(supportPage()));
}

}  // namespace loomcrest::gui
