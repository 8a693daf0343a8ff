#include "platform/Url.h"

#include <uriparser/Uri.h>

#include <vector>

namespace loomcrest {

namespace {

class ParsedUri {
public:
    ParsedUri() = default;
    ParsedUri(const ParsedUri&) = delete;
    ParsedUri& operator=(const ParsedUri&) = delete;
    ~ParsedUri() { uriFreeUriMembersA(&uri_); }

    bool parse(std::string_view text) {
        const char* errorPosition = nullptr;
        return uriParseSingleUriExA(&uri_, text.data(), text.data() + text.size(),
                                    &errorPosition) == URI_SUCCESS;
    }
    UriUriA* get() { return &uri_; }
    const UriUriA& operator*() const { return uri_; }

    std::optional<std::string> toString() const {
        int length = 0;
        if (uriToStringCharsRequiredA(&uri_, &length) != URI_SUCCESS) {
            return std::nullopt;
        }
        std::vector<char> text(static_cast<size_t>(length) + 1);
        if (uriToStringA(text.data(), &uri_, length + 1, nullptr) != URI_SUCCESS) {
            return std::nullopt;
        }
        return std::string(text.data(), static_cast<size_t>(length));
    }

private:
    UriUriA uri_{};
};

std::string rangeText(const UriTextRangeA& range) {
    if (range.first == nullptr || range.afterLast == nullptr) {
        return {};
    }
    return std::string(range.first, range.afterLast);
}

std::string decodedPath(const UriUriA& uri) {
    std::string path =
        uri.absolutePath || (uri.hostText.first != nullptr && uri.pathHead) ? "/" : "";
    for (const UriPathSegmentA* segment = uri.pathHead; segment != nullptr;
         segment = segment->next) {
        path += rangeText(segment->text);
        if (segment->next != nullptr) {
            path += '/';
        }
    }
    std::vector<char> buffer(path.begin(), path.end());
    buffer.push_back('\0');
    uriUnescapeInPlaceExA(buffer.data(), URI_FALSE, URI_BR_DONT_TOUCH);
    return buffer.data();
}

}  // namespace

std::optional<std::string> urlScheme(std::string_view text) {
    ParsedUri uri;
    if (!uri.parse(text)) {
        return std::nullopt;
    }
    return rangeText((*uri).scheme);
}

std::optional<UrlParts> parseUrl(std::string_view text) {
    ParsedUri uri;
    if (!uri.parse(text)) {
        return std::nullopt;
    }
    UrlParts parts;
    parts.scheme = rangeText((*uri).scheme);
    parts.host = rangeText((*uri).hostText);
    parts.path = decodedPath(*uri);
    parts.hasQuery = (*uri).query.first != nullptr;
    parts.query = rangeText((*uri).query);
    return parts;
}

std::optional<std::string> resolveUrl(std::string_view base, std::string_view reference) {
    ParsedUri baseUri;
    ParsedUri referenceUri;
    if (!baseUri.parse(base) || !referenceUri.parse(reference)) {
        return std::nullopt;
    }
    ParsedUri resolved;
    if (uriAddBaseUriExA(resolved.get(), referenceUri.get(), baseUri.get(), URI_RESOLVE_STRICTLY) !=
        URI_SUCCESS) {
        return std::nullopt;
    }
    return resolved.toString();
}

}  // namespace loomcrest
