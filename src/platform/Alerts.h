#pragma once

#include <functional>
#include <string>

namespace loomcrest {

// Which window an alert sheet is attached to.
enum class AlertParent { MainWindow, SiteSheet };

// Completion codes handed to an alert's completion handler.
inline constexpr int kDefaultButtonCode = 1;
inline constexpr int kAlternateButtonCode = 0;
inline constexpr int kOtherButtonCode = -1;

// What an alert means for the action that raised it; front ends that cannot ask the user
// (the command line) decide from it whether the action was done.
enum class AlertKind {
    Information,  // the action was done; the user is told something about it
    Refusal,      // the action was not done, or not as asked
    Question,     // the action waits for the user's answer
};

// An alert or question as the user sees it. A button with an empty title is not shown.
struct Alert {
    AlertKind kind = AlertKind::Information;
    std::string title;
    std::string message;
    std::string defaultButton = "OK";
    std::string alternateButton;
    std::string otherButton;
    AlertParent parent = AlertParent::MainWindow;

    // Refused with the one button "OK".
    static Alert refusal(std::string title, std::string message = {},
                         AlertParent parent = AlertParent::MainWindow) {
        Alert alert = withOK(AlertKind::Refusal, std::move(title), std::move(message));
        alert.parent = parent;
        return alert;
    }

    // Refused, with a second way out besides "OK" (such as "Reset").
    static Alert refusalOffering(std::string title, std::string otherButton) {
        Alert alert = withOK(AlertKind::Refusal, std::move(title), {});
        alert.otherButton = std::move(otherButton);
        return alert;
    }

    static Alert question(std::string title, std::string message, std::string defaultButton,
                          std::string alternateButton, std::string otherButton = {}) {
        Alert alert;
        alert.kind = AlertKind::Question;
        alert.title = std::move(title);
        alert.message = std::move(message);
        alert.defaultButton = std::move(defaultButton);
        alert.alternateButton = std::move(alternateButton);
        alert.otherButton = std::move(otherButton);
        return alert;
    }

private:
    static Alert withOK(AlertKind kind, std::string title, std::string message) {
        Alert alert;
        alert.kind = kind;
        alert.title = std::move(title);
        alert.message = std::move(message);
        return alert;
    }
};

using AlertCompletion = std::function<void(int buttonCode)>;

// Implemented by each front end: the window shows a sheet, the command line prints,
// tests record. The completion may run before presentAlert returns or later.
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    virtual void presentAlert(const Alert& alert, AlertCompletion completion) = 0;
};

}  // namespace loomcrest
