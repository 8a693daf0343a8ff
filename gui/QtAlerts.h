#pragma once

#include <QPointer>
#include <QWidget>
#include <deque>
#include <vector>

#include "platform/Alerts.h"

namespace loomcrest::gui {

// Alerts and questions as window-modal message boxes that do not block: the completion runs
// when the user answers. Tests queue answers instead, so that nothing waits for a person.
class QtAlerts : public AlertPresenter {
public:
    explicit QtAlerts(QWidget* mainWindow) : mainWindow_(mainWindow) {}

    // The window an alert on the add/edit sheet attaches to, while that sheet is open.
    void setSiteSheet(QWidget* sheet) { siteSheet_ = sheet; }

    void presentAlert(const Alert& alert, AlertCompletion completion) override;

    // Test hooks: the next alerts are answered with these codes, in order, as soon as the
    // event loop runs; every alert shown is recorded.
    static void queueAnswers(std::deque<int> answers);
    static const std::vector<Alert>& shownAlerts();
    static void forgetShownAlerts();

private:
    QPointer<QWidget> mainWindow_;
    QPointer<QWidget> siteSheet_;
};

}  // namespace loomcrest::gui
