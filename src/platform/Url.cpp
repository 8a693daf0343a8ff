#include "platform/Url.h"

#include <uriparser/Uri.h>

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
    const UriUriA& get() const { return uri_; }

private:
    UriUriA uri_{};
};

}  // namespace

std::optional<std::string> urlScheme(std::string_view text) {
    ParsedUri uri;
    if (!uri.parse(text)) {
        return std::nullopt;
    }
    const UriTextRangeA& scheme = uri.get().scheme;
    if (scheme.first == nullptr) {
        return std::string();
    }
    return std::string(scheme.first, scheme.afterLast);
}

}  // namespace loomcrest
