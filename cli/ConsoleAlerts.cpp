#include "ConsoleAlerts.h"

namespace loomcrest::cli {

void ConsoleAlerts::presentAlert(const Alert& alert, AlertCompletion completion) {
    err_ << alert.title << '\n' << alert.message << '\n';
    err_.flush();
    shown_.push_back(alert);
    if (!alert.isQuestion()) {
        anyAlertShown_ = true;
    }
    const int answer = alert.isQuestion() && answerer_ ? answerer_(alert) : kDefaultButtonCode;
    if (completion) {
        completion(answer);
    }
}

}  // namespace loomcrest::cli
