#pragma once

#include <QObject>
#include <QString>

class QLabel;
class QMainWindow;

namespace loomcrest {
class AlertPresenter;
}

namespace loomcrest::gui {

// The version text, the operating system's version and "Report a Problem".
class GlobalControls : public QObject {
    Q_OBJECT
public:
    GlobalControls(QMainWindow& mainWindow, AlertPresenter& alerts);

    static QString versionText();
    // The operating system's product version as Qt reads it ("12" on Debian 12).
    static QString operatingSystemVersion();
    // Where "Report a Problem" leads; set when building (LOOMCREST_REPORT_PROBLEM_URL).
    static QString supportPage();
    // Opens the support page; says so when no browser could be started.
    void reportProblem();

    QLabel* versionField() const { return versionField_; }

private:
    AlertPresenter& alerts_;
    QLabel* versionField_ = nullptr;
};

}  // namespace loomcrest::gui
