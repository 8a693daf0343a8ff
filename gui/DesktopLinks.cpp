#include "DesktopLinks.h"

#include <QDesktopServices>
#include <QUrl>

#include "platform/Alerts.h"

namespace loomcrest::gui {

bool openOrSayWhyNot(const QUrl& url, AlertPresenter& alerts) {
    if (QDesktopServices::openUrl(url)) {
        return true;
    }
    const QString address = url.isLocalFile() ? url.toLocalFile() : url.toString();
    alerts.presentAlert(
        Alert::refusal("The Page Could Not Be Opened", "No web browser could be started to show " +
                                                           address.toStdString() +
                                                           "\nOpen it in your browser yourself."),
        [](int) {});
    return false;
}

}  // namespace loomcrest::gui
