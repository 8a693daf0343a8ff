#include "sites/SiteInputCheck.h"

#include <algorithm>
#include <array>

#include "platform/Text.h"
#include "platform/Url.h"
#include "sites/PageExtensions.h"

namespace loomcrest {

namespace {

constexpr std::array<char, 4> kForbiddenNameCharacters = {'/', '\\', '.', '?'};
// The name becomes a folder and a file name; with the site file's extension and the
// temporary files beside it, this stays well within the 255 bytes a file name may have.
constexpr size_t kLongestName = 200;

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

// The C0 controls (tab, line feed, escape ...), DEL and the C1 controls U+0080 to U+009F,
// which UTF-8 writes as 0xC2 followed by 0x80 to 0x9F.
bool holdsControlCharacters(std::string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7F) {
            return true;
        }
        if (byte == 0xC2 && i + 1 < text.size()) {
            const auto next = static_cast<unsigned char>(text[i + 1]);
            if (next >= 0x80 && next <= 0x9F) {
                return true;
            }
        }
    }
    return false;
}

// Text the file system and the site file could not hold, or the list could not show.
std::string unholdableTextProblems(std::string_view text, std::string_view field) {
    std::string problems;
    if (holdsControlCharacters(text)) {
        problems += "\nThe site " + std::string(field) + " cannot contain control characters";
    }
    if (!isValidUtf8(text)) {
        problems += "\nThe site " + std::string(field) + " is not valid UTF-8 text";
    }
    return problems;
}

}  // namespace

SiteInput checkSiteInput(std::string_view typedName, std::string_view typedURL) {
    SiteInput input{emptiedIfBlankAtEitherEnd(typedName), emptiedIfBlankAtEitherEnd(typedURL), {}};
    const std::string urlAsTyped = input.url;

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

    input.errors += unholdableTextProblems(input.name, "name");
    if (input.name.size() > kLongestName) {
        input.errors += "\nThe site name is too long";
    }
    input.errors += unholdableTextProblems(urlAsTyped, "URL");
    return input;
}

}  // namespace loomcrest
