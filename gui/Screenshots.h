#pragma once

#include <QString>

namespace loomcrest::gui {

class MainViewControl;

// Shows each view in turn and saves a picture of the window for each into `folder`
// (scan.png, html.png, ...). Returns false when a picture cannot be written.
bool takeScreenshots(MainViewControl& window, const QString& folder);

}  // namespace loomcrest::gui
