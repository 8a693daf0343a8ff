#include "sites/SiteInputCheck.h"

#include <algorithm>
#include <array>

#include "platform/Text.h"
#include "platform/Url.h"
#include "sites/PageExtensions.h"

namespace loomcrest {

namespace {

constexpr std::array<char, 4> kForbiddenNameCharacters = {'/', '\\', '.', '?'};

// Users rely on a field with a blank at either end being refused as blank rather than
// silently trimmed.
std::string emptiedIfBlankAtEitherEnd(std::string_view typed) {
    return typed.starts_with(' ') || typed.ends_with(' ') ? std::string() : std::string(typed);
}

// The extensions are searched anywhere in the URL, host name included.
bool namesAPage(std::string_view url) {
    return std::any_of(
        kPageExtensions.begin(), kPageExtensions.end(),
        [&](std::string_view extension) { return containsIgnoringCase(url, extension); });
}

}  // namespace

SiteInput checkSiteInput(std::string_view typedName, std::string_view typedURL) {
    SiteInput input{emptiedIfBlankAtEitherEnd(typedName), emptiedIfBlankAtEitherEnd(typedURL), {}};

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
