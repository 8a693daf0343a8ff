#pragma once

class QUrl;

namespace loomcrest {
class AlertPresenter;
}

namespace loomcrest::gui {

// Opens `url` with the user's default application for it (a web browser for pages). When
// none can be started the user is told, with the address, instead of nothing happening.
bool openOrSayWhyNot(const QUrl& url, AlertPresenter& alerts);

}  // namespace loomcrest::gui
