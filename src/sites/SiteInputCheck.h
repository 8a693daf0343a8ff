#pragma once

#include <string>
#include <string_view>

namespace loomcrest {

struct SiteInput {
    std::string name;
    std::string url;
    // Every problem found, each but a leading blank-name message starting with a line
    // feed; empty when the input may be saved.
    std::string errors;

    bool isOK() const { return errors.empty(); }
};

// Validates and normalises a site's name and start URL as typed into the add/edit sheet.
// Surrounding blanks empty a field entirely; a URL without http(s) scheme gets "http://"
// in front; a URL that names no page gets a trailing "/"; spaces become "%20".
SiteInput checkSiteInput(std::string_view typedName, std::string_view typedURL);

}  // namespace loomcrest
