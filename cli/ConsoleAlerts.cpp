#include "ConsoleAlerts.h"

namespace loomcrest::cli {

void ConsoleAlerts::presentAlert(const Alert& alert, AlertCompletion completion) {
    err_ << alert.title << '\n' << alert.message << '\n';
    err_.flush();
    if (!alert.isQuestion()) {
        anyAlertShown_ = true;
    }
    if (completion) {
        completion(kDefaultButtonCode);
    }
}

}  // namespace loomcrest::cli
