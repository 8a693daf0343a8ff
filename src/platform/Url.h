#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace loomcrest {

// The scheme of `text` read as an RFC 3986 URI reference: empty for a relative reference,
// nothing when the text is not a valid reference at all (one holding a space, for instance).
std::optional<std::string> urlScheme(std::string_view text);

// The parts of a URI reference that the crawler looks at.
struct UrlParts {
    std::string scheme;
    std::string host;
    // The path with percent escapes decoded, as a reader of the path sees it.
    std::string path;
    bool hasQuery = false;
    std::string query;
};

// Nothing when the text is not a valid RFC 3986 URI reference.
std::optional<UrlParts> parseUrl(std::string_view text);

// A resolved URL without its fragment, and the parts parseUrl finds in that text.
struct ResolvedUrl {
    std::string text;
    UrlParts parts;
};

// Resolves references against the absolute URI `base` (RFC 3986, section 5.2), with the base
// parsed once for all the links of a page.
class UrlResolver {
public:
    explicit UrlResolver(std::string_view base);
    UrlResolver(const UrlResolver&) = delete;
    UrlResolver& operator=(const UrlResolver&) = delete;
    ~UrlResolver();

    // The resolved reference printed back as text; nothing when either does not parse.
    std::optional<std::string> resolve(std::string_view reference) const;
    // What resolve gives, cut before its last "#", with the parts of that text; nothing when
    // the reference does not resolve or the text does not parse. For the usual web link the
    // parts come from the resolution itself, without parsing the text again.
    std::optional<ResolvedUrl> resolveWithParts(std::string_view reference) const;

private:
    struct Base;
    std::unique_ptr<Base> base_;
};

}  // namespace loomcrest
