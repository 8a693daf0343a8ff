#pragma once

#include <QByteArray>
#include <QString>

namespace loomcrest::gui {

// What the window remembers between runs, in the user's settings (QSettings): its place
// on the screen and the folder of the last export.
namespace windowsettings {

QByteArray windowGeometry();
void rememberWindowGeometry(const QByteArray& geometry);

// Empty until something was exported or a save folder chosen.
QString lastExportFolder();
void rememberExportFolder(const QString& folder);

}  // namespace windowsettings

}  // namespace loomcrest::gui
