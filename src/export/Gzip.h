#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace loomcrest {

// The bytes as a gzip file (zlib's deflate, best compression); nothing when zlib fails.
std::optional<std::string> gzipCompressed(std::string_view bytes);

bool isGzip(std::string_view bytes);

// The contents of a gzip file, at most `limit` bytes of them and `truncated` set when there
// was more; nothing when the bytes are not a valid gzip stream.
struct Gunzipped {
    std::string bytes;
    bool truncated = false;
};
std::optional<Gunzipped> gunzip(std::string_view gzip, size_t limit);

}  // namespace loomcrest
