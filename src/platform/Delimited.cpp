#include "platform/Delimited.h"

#include "platform/Text.h"

namespace loomcrest {

std::string tsvField(std::string_view text) {
    std::string field(text);
    for (char& c : field) {
        if (c == '\t' || c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return field;
}

std::string csvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        return std::string(text);
    }
    return "\"" + replaceAll(text, "\"", "\"\"") + "\"";
}

}  // namespace loomcrest
