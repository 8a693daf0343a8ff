#include "ConsoleAlerts.h"

namespace loomcrest::cli {

void ConsoleAlerts::presentAlert(const Alert& alert, AlertCompletion completion) {
    err_ << alert.title << '\n' << alert.message << '\n';
    err_.flush();
    if (alert.kind == AlertKind::Refusal) {
        anyRefusalShown_ = true;
    }
    const bool question = alert.kind == AlertKind::Question;
    const int answer = question && answerer_ ? answerer_(alert) : kDefaultButtonCode;
    if (completion) {
        completion(answer);
    }
}

}  // namespace loomcrest::cli
