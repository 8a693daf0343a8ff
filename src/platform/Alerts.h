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

// An alert or question as the user sees it. A button with an empty title is not shown.
struct Alert {
    std::string title;
    std::string message;
    std::string defaultButton = "OK";
    std::string alternateButton;
    std::string otherButton;
    AlertParent parent = AlertParent::MainWindow;

    // An alert with the one button "OK".
    static Alert notice(std::string title, std::string message = {},
                        AlertParent parent = AlertParent::MainWindow) {
        Alert alert;
        alert.title = std::move(title);
        alert.message = std::move(message);
        alert.parent = parent;
        return alert;
    }

    static Alert question(std::string title, std::string message, std::string defaultButton,
                          std::string alternateButton, std::string otherButton = {}) {
        Alert alert;
        alert.title = std::move(title);
        alert.message = std::move(message);
        alert.defaultButton = std::move(defaultButton);
        alert.alternateButton = std::move(alternateButton);
        alert.otherButton = std::move(otherButton);
        return alert;
    }

    bool isQuestion() const { return !alternateButton.empty() || !otherButton.empty(); }
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
