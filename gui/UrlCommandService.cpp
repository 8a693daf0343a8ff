#include "UrlCommandService.h"

#include <QDBusConnection>

#include "app/URLCommand.h"

namespace loomcrest::gui {

bool UrlCommandService::registerOnSessionBus() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return false;
    }
    return bus.registerService(QStringLiteral("org.loomcrest.Loomcrest")) &&
           bus.registerObject(QStringLiteral("/URLCommand"), this,
                              QDBusConnection::ExportScriptableSlots);
}

void UrlCommandService::performWithURL(const QString& url) {
    URLCommand::performDefaultImplementation(url.toStdString());
}

}  // namespace loomcrest::gui
