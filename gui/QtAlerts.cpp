#include "QtAlerts.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace loomcrest::gui {

namespace {

std::deque<int>& queuedAnswers() {
    static std::deque<int> answers;
    return answers;
}

std::vector<Alert>& recordedAlerts() {
    static std::vector<Alert> alerts;
    return alerts;
}

// Escape answers as the button that does nothing: the alternate, a "Cancel…" button, or
// the only button. A question offering only to save or to discard keeps Escape from
// choosing for the user.
QPushButton* escapeButton(const Alert& alert, QPushButton* defaultButton,
                          QPushButton* alternateButton, QPushButton* otherButton) {
    if (alternateButton != nullptr) {
        return alternateButton;
    }
    if (otherButton == nullptr) {
        return defaultButton;
    }
    return alert.otherButton.starts_with("Cancel") ? otherButton : nullptr;
}

}  // namespace

void QtAlerts::queueAnswers(std::deque<int> answers) {
    queuedAnswers() = std::move(answers);
}

const std::vector<Alert>& QtAlerts::shownAlerts() {
    return recordedAlerts();
}

void QtAlerts::forgetShownAlerts() {
    recordedAlerts().clear();
}

void QtAlerts::presentAlert(const Alert& alert, AlertCompletion completion) {
    recordedAlerts().push_back(alert);
    QWidget* parent = alert.parent == AlertParent::SiteSheet && siteSheet_ ? siteSheet_.data()
                                                                           : mainWindow_.data();
    if (!queuedAnswers().empty()) {
        const int answer = queuedAnswers().front();
        queuedAnswers().pop_front();
        QTimer::singleShot(0, parent, [completion, answer] {
            if (completion) {
                completion(answer);
            }
        });
        return;
    }

    auto* box = new QMessageBox(parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->setWindowTitle(QStringLiteral("Loomcrest"));
    box->setText(QString::fromStdString(alert.title));
    if (!alert.message.empty()) {
        box->setInformativeText(QString::fromStdString(alert.message));
    }
    QPushButton* defaultButton =
        box->addButton(QString::fromStdString(alert.defaultButton), QMessageBox::AcceptRole);
    QPushButton* alternateButton =
        alert.alternateButton.empty()
            ? nullptr
            : box->addButton(QString::fromStdString(alert.alternateButton),
                             QMessageBox::RejectRole);
    QPushButton* otherButton = alert.otherButton.empty()
                                   ? nullptr
                                   : box->addButton(QString::fromStdString(alert.otherButton),
                                                    QMessageBox::DestructiveRole);
    box->setDefaultButton(defaultButton);
    box->setEscapeButton(escapeButton(alert, defaultButton, alternateButton, otherButton));
    QObject::connect(box, &QMessageBox::finished, box,
                     [box, defaultButton, alternateButton, otherButton, completion](int) {
                         const QAbstractButton* clicked = box->clickedButton();
                         int code = kDefaultButtonCode;
                         if (clicked != nullptr && clicked == alternateButton) {
                             code = kAlternateButtonCode;
                         } else if (clicked != nullptr && clicked == otherButton) {
                             code = kOtherButtonCode;
                         } else if (clicked == nullptr && otherButton != nullptr) {
                             code = kOtherButtonCode;  // closed with Escape
                         }
                         (void)defaultButton;
                         if (completion) {
                             completion(code);
                         }
                     });
    box->open();
}

}  // namespace loomcrest::gui
