#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace loomcrest::cli {

// The style options of `html NAME LAYOUT style`, one group for page titles ("pt") and one
// for page links ("pl").
struct StyleOptions {
    std::optional<std::string> face;
    std::optional<std::string> size;
    std::optional<std::string> bold;       // on|off
    std::optional<std::string> italic;     // on|off
    std::optional<std::string> underline;  // hover|none|always
    std::optional<std::string> colour;     // as typed into the hex field
};

struct HtmlRequest {
    std::string name;
    std::string layout;                  // 3c, 2c, 1c, 3cpo, 2cpo, 1cpo
    std::vector<std::string> arguments;  // lines | style | edit LINE | delete LINE | preview
    StyleOptions pageTitles;
    StyleOptions pageLinks;
    std::optional<std::string> title;
    std::optional<std::string> link;
};

int runHtmlCommand(const HtmlRequest& request, std::ostream& out, std::ostream& err);

}  // namespace loomcrest::cli
