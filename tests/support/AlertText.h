#pragma once

#include <string>
#include <vector>

#include "platform/Alerts.h"

namespace loomcrest::test {

// Each alert as "title|message|default button|alternate button|other button", one a line, so
// a test compares every text shown in one expectation.
inline std::string alertTexts(const std::vector<Alert>& alerts) {
    std::string text;
    for (const Alert& a : alerts) {
        text += a.title + "|" + a.message + "|" + a.defaultButton + "|" + a.alternateButton + "|" +
                a.otherButton + "\n";
    }
    return text;
}

}  // namespace loomcrest::test
