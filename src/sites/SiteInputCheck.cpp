#include "sites/SiteInputCheck.h"

#include <algorithm>
#include <array>

#include "crawler/AllowedMedia.h"
#include "platform/Text.h"
#include "platform/Url.h"

namespace loomcrest {

namespace {

constexpr std::array<char, 4> kForbiddenNameCharacters = {'/', '\\', '.', '?'};

// The extensions that mark a URL as naming a page rather than a folder. They are searched
// anywhere in the URL, host name included.
constexpr std::array<std::string_view, 14> kPageExtensions = {
    ".aspx", ".asp",  ".cfm",  ".html",  ".htm",  ".jsp",  ".php",
    ".phps", ".cfml", ".shtm", ".shtml", ".php3", ".php4", ".php5"};

// Each loop trims from the opposite end, so any surrounding blank empties the field.
// Users rely on the field being refused rather than silently trimmed.
std::string stripBlanks(std::string_view typed) {
    std::string text(typed);
    while (!text.empty() && text.front() == ' ') {
        text.pop_back();
    }
    while (!text.empty() && text.back() == ' ') {
        text.erase(text.begin());
    }
    return text;
}

bool namesAPage(std::string_view url) {
    return std::any_of(
        kPageExtensions.begin(), kPageExtensions.end(),
        [&](std::string_view extension) { return containsIgnoringCase(url, extension); });
}

}  // namespace

SiteInput checkSiteInput(std::string_view typedName, std::string_view typedURL) {
    SiteInput input{stripBlanks(typedName), stripBlanks(typedURL), {}};

    if (input.name.empty()) {
        input.errors = "The site name field cannot be left blank.";
    }
    for (const char forbidden : kForbiddenNameCharacters) {
        if (input.name.find(forbidden) != std::string::npos) {
            input.errors += "\nThe site name cannot contain the following characters: / \\ . or ?";
        }
    }
    if (input.url.empty()) {
        input.errors += "\nThe site URL field cannot be left blank.";
    }

    const auto scheme = urlScheme(input.url);
    if (scheme == "ftp" || scheme == "ftps") {
        input.errors +=
            "\nURLs must begin http:// or https://\nftp:// etc scans are not available.";
        input.url.clear();
    } else if (scheme != "http" && scheme != "https") {
        input.url.insert(0, "http://");
    }

    if (!input.url.ends_with('/') && !namesAPage(input.url)) {
        input.url += '/';
    }
    // A URL with a space does not parse, so it got a second scheme above; undo that.
    input.url = replaceAll(replaceAll(input.url, " ", "%20"), "http://http://", "http://");
    return input;
}

}  // namespace loomcrest
