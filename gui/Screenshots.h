#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace loomcrest::gui {

class MainViewControl;

// Shows each view in turn and saves a picture of the window for each into `folder`
// (scan.png, html.png, ...). Returns false when a picture cannot be written or when any
// window other than `window` is on screen while the pictures are taken.
bool takeScreenshots(MainViewControl& window, const QString& folder);

// The visible top-level windows other than `window`, by class and title.
QStringList windowsBesides(const QWidget& window);

}  // namespace loomcrest::gui
