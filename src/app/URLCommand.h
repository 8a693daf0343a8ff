#pragma once

#include <string_view>

namespace loomcrest {

// The one scripting command: it takes a URL and is accepted and otherwise ignored, so that
// scripts sending it succeed. It opens no view, selects no site and starts no scan.
class URLCommand {
public:
    // Returns no result in every case.
    static void performWithURL(std::string_view url);
    static void performDefaultImplementation(std::string_view directParameter) {
        performWithURL(directParameter);
    }
};

}  // namespace loomcrest
