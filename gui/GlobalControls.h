#pragma once

#include <QObject>
#include <QString>

class QLabel;
class QMainWindow;

namespace loomcrest::gui {

// The version text, the operating system's version and "Report a Problem".
class GlobalControls : public QObject {
    Q_OBJECT
public:
    explicit GlobalControls(QMainWindow& mainWindow);

    static QString versionText();
    // The operating system's product version as Qt reads it ("12" on Debian 12).
    static QString operatingSystemVersion();
    static QString supportPage();
    void reportProblem();

    QLabel* versionField() const { return versionField_; }

private:
    QLabel* versionField_ = nullptr;
};

}  // namespace loomcrest::gui
