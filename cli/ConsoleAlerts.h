#pragma once

#include <functional>
#include <ostream>

#include "platform/Alerts.h"

namespace loomcrest::cli {

// Prints every alert and question as its title, a line feed and its message. Questions, and
// refusals that offer another way out, are answered with their default button: the command
// itself is the user's answer.
class ConsoleAlerts : public AlertPresenter {
public:
    explicit ConsoleAlerts(std::ostream& err) : err_(err) {}

    void presentAlert(const Alert& alert, AlertCompletion completion) override;

    // Decides the answers to questions from now on instead of the default button.
    void answerQuestionsWith(std::function<int(const Alert&)> answerer) {
        answerer_ = std::move(answerer);
    }

    // Whether a refusal was shown: the command did not do what was asked.
    bool anyRefusalShown() const { return anyRefusalShown_; }

private:
    std::ostream& err_;
    bool anyRefusalShown_ = false;
    std::function<int(const Alert&)> answerer_;
};

}  // namespace loomcrest::cli
