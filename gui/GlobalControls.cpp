#include "GlobalControls.h"

#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>
#include <QSysInfo>
#include <QUrl>

#include "DesktopLinks.h"

namespace loomcrest::gui {

GlobalControls::GlobalControls(QMainWindow& mainWindow, AlertPresenter& alerts)
    : QObject(&mainWindow), alerts_(alerts) {
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
    return QStringLiteral(LOOMCREST_REPORT_PROBLEM_URL);
}

void GlobalControls::reportProblem() {
    openOrSayWhyNot(QUrl(supportPage()), alerts_);
}

}  // namespace loomcrest::gui
