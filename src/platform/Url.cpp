#include "platform/Url.h"

#include <uriparser/Uri.h>

#include <cstring>

#include "platform/Text.h"

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

UrlParts partsOf(const UriUriA& uri) {
    UrlParts parts;
    parts.scheme = rangeText(uri.scheme);
    parts.host = rangeText(uri.hostText);
    parts.path = decodedPath(uri);
    parts.hasQuery = uri.query.first != nullptr;
    parts.query = rangeText(uri.query);
    return parts;
}

bool isWebScheme(const UriTextRangeA& scheme) {
    const std::string_view text(scheme.first, static_cast<size_t>(scheme.afterLast - scheme.first));
    return equalsIgnoringCase(text, "http") || equalsIgnoringCase(text, "https");
}

// Whether parsing the printed text of `uri` gives back its own parts. It does for an http(s)
// URI with a host name or IPv4 address and no absolute-path flag: every part is printed
// from the range it is read from (an IPv4 address from its numbers, which only read as one
// in the very form they are printed in), and after "//host" a path keeps its segments
// whatever they hold. Without a host the printed path can read as an authority, an IPv6
// host is printed in another form than its text, and the other shapes are left to the
// parser as well, being rare.
bool partsSurvivePrinting(const UriUriA& uri) {
    const UriHostDataA& host = uri.hostData;
    return uri.scheme.first != nullptr && isWebScheme(uri.scheme) &&
           uri.hostText.first != nullptr && uri.hostText.afterLast > uri.hostText.first &&
           host.ip6 == nullptr && host.ipFuture.first == nullptr && uri.absolutePath == URI_FALSE;
}

// Resolves `reference` against `base` into `resolved`, which then points into the text of
// `referenceUri` as well as into the base.
bool resolveAgainst(const UriUriA* base, std::string_view reference, ParsedUri& referenceUri,
                    ParsedUri& resolved) {
    return referenceUri.parse(reference) &&
           uriAddBaseUriExA(resolved.get(), referenceUri.get(), base, URI_RESOLVE_STRICTLY) ==
               URI_SUCCESS;
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
    return partsOf(*uri);
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
    ParsedUri resolved;
    if (!base_->valid || !resolveAgainst(base_->uri.get(), reference, referenceUri, resolved)) {
        return std::nullopt;
    }
    return resolved.toString();
}

std::optional<ResolvedUrl> UrlResolver::resolveWithParts(std::string_view reference) const {
    ParsedUri referenceUri;
    ParsedUri resolved;
    if (!base_->valid || !resolveAgainst(base_->uri.get(), reference, referenceUri, resolved)) {
        return std::nullopt;
    }
    auto text = resolved.toString();
    if (!text) {
        return std::nullopt;
    }
    // A printed URI holds "#" only before its fragment.
    if (const size_t hash = text->rfind('#'); hash != std::string::npos) {
        text->erase(hash);
    }
    if (partsSurvivePrinting(*resolved)) {
        return ResolvedUrl{std::move(*text), partsOf(*resolved)};
    }
    auto parts = parseUrl(*text);
    if (!parts) {
        return std::nullopt;
    }
    return ResolvedUrl{std::move(*text), std::move(*parts)};
}

}  // namespace loomcrest
