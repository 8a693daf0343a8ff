#pragma once

#include <QObject>
#include <QString>

namespace loomcrest::gui {

// The scripting command on the session bus: service "org.loomcrest.Loomcrest", object
// "/URLCommand", method performWithURL(string). It is accepted and changes nothing.
class UrlCommandService : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.loomcrest.Loomcrest.URLCommand")
public:
    using QObject::QObject;

    // Registers on the session bus; false (and the application runs on) without one.
    bool registerOnSessionBus();

public slots:
    Q_SCRIPTABLE void performWithURL(const QString& url);
};

}  // namespace loomcrest::gui
