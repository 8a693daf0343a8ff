#include "WindowSettings.h"

#include <QSettings>

namespace loomcrest::gui::windowsettings {

namespace {

const QString kGeometry = QStringLiteral("window/geometry");
const QString kExportFolder = QStringLiteral("export/lastFolder");

// Named here rather than taken from the application object, so that the window's tests
// read and write the same file as the application.
QSettings settings() {
    return QSettings(QStringLiteral("Quillmoor"), QStringLiteral("Loomcrest"));
}

}  // namespace

QByteArray windowGeometry() {
    return settings().value(kGeometry).toByteArray();
}

void rememberWindowGeometry(const QByteArray& geometry) {
    settings().setValue(kGeometry, geometry);
}

QString lastExportFolder() {
    return settings().value(kExportFolder).toString();
}

void rememberExportFolder(const QString& folder) {
    settings().setValue(kExportFolder, folder);
}

}  // namespace loomcrest::gui::windowsettings
