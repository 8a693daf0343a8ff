#include "platform/Url.h"

#include <uriparser/Uri.h>

#include <cstring>

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
    const UriUriA* get() const { return &uri_; }
    const UriUriA& operator*() const { return uri_; }

    std::optional<std::string> toString() const {
        int length = 0;
        if (uriToStringCharsRequiredA(&uri_, &length) != URI_SUCCESS) {
            return std::nullopt;
        }
        // Written in place; the terminating NUL goes where the string keeps its own.
        std::string text(static_cast<size_t>(length), '\0');
        if (uriToStringA(text.data(), &uri_, length + 1, nullptr) != URI_SUCCESS) {
            return std::nullopt;
        }
        return text;
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
    // Decoding only shortens the text. It ends at the first NUL, a decoded "%00" included.
    uriUnescapeInPlaceExA(path.data(), URI_FALSE, URI_BR_DONT_TOUCH);
    path.resize(std::strlen(path.data()));
    return path;
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
    return UrlResolver(base).resolve(reference);
}

// The parsed URI points into its text, which is kept with it.
struct UrlResolver::Base {
    std::string text;
    ParsedUri uri;
    bool valid = false;
};

UrlResolver::UrlResolver(std::string_view base) : base_(std::make_unique<Base>()) {
    base_->text = base;
    base_->valid = base_->uri.parse(base_->text);
}

UrlResolver::~UrlResolver() = default;

std::optional<std::string> UrlResolver::resolve(std::string_view reference) const {
    ParsedUri referenceUri;
    if (!base_->valid || !referenceUri.parse(reference)) {
        return std::nullopt;
    }
    ParsedUri resolved;
    if (uriAddBaseUriExA(resolved.get(), referenceUri.get(), base_->uri.get(),
                         URI_RESOLVE_STRICTLY) != URI_SUCCESS) {
        return std::nullopt;
    }
    return resolved.toString();
}

}  // namespace loomcrest
