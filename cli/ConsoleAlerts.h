#pragma once

#include <functional>
#include <ostream>
#include <vector>

#include "platform/Alerts.h"

namespace loomcrest::cli {

// Prints every alert and question as its title, a line feed and its message. Questions
// are answered with their default button: the command itself is the user's answer.
class ConsoleAlerts : public AlertPresenter {
public:
    explicit ConsoleAlerts(std::ostream& err) : err_(err) {}

    void presentAlert(const Alert& alert, AlertCompletion completion) override;

    // Decides the answers to questions from now on instead of the default button.
    void answerQuestionsWith(std::function<int(const Alert&)> answerer) {
        answerer_ = std::move(answerer);
    }

    // Whether an alert (not a question) was shown, which means an action was refused.
    bool anyAlertShown() const { return anyAlertShown_; }
    // Every alert and question shown so far, in order.
    const std::vector<Alert>& shown() const { return shown_; }

private:
    std::ostream& err_;
    bool anyAlertShown_ = false;
    std::vector<Alert> shown_;
    std::function<int(const Alert&)> answerer_;
};

}  // namespace loomcrest::cli
