#include "export/Gzip.h"

#include <zlib.h>

#include <array>
#include <climits>

namespace loomcrest {

namespace {

// zlib's window size with 16 added: a gzip header and trailer instead of zlib's own.
constexpr int kGzipWindowBits = 15 + 16;
constexpr int kMemoryLevel = 8;
constexpr size_t kChunk = size_t{1} << 16;

class Stream {
public:
    explicit Stream(bool compress) : compress_(compress) {
        ready_ = compress ? deflateInit2(&stream_, Z_BEST_COMPRESSION, Z_DEFLATED, kGzipWindowBits,
                                         kMemoryLevel, Z_DEFAULT_STRATEGY) == Z_OK
                          : inflateInit2(&stream_, kGzipWindowBits) == Z_OK;
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() {
        if (ready_) {
            compress_ ? deflateEnd(&stream_) : inflateEnd(&stream_);
        }
    }
    bool ready() const { return ready_; }
    z_stream* get() { return &stream_; }

private:
    z_stream stream_{};
    bool compress_;
    bool ready_ = false;
};

Bytef* asInput(std::string_view bytes) {
    // zlib reads its input through a non-const pointer but never writes to it.
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
}

}  // namespace

std::optional<std::string> gzipCompressed(std::string_view bytes) {
    Stream stream(true);
    if (!stream.ready() || bytes.size() > UINT_MAX) {
        return std::nullopt;
    }
    z_stream* z = stream.get();
    z->next_in = asInput(bytes);
    z->avail_in = static_cast<uInt>(bytes.size());
    std::string out;
    std::array<char, kChunk> buffer{};
    int status = Z_OK;
    while (status == Z_OK) {
        z->next_out = reinterpret_cast<Bytef*>(buffer.data());
        z->avail_out = static_cast<uInt>(buffer.size());
        status = deflate(z, Z_FINISH);
        out.append(buffer.data(), buffer.size() - z->avail_out);
    }
    return status == Z_STREAM_END ? std::optional(std::move(out)) : std::nullopt;
}

bool isGzip(std::string_view bytes) {
    return bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0x1f &&
           static_cast<unsigned char>(bytes[1]) == 0x8b;
}

std::optional<Gunzipped> gunzip(std::string_view gzip, size_t limit) {
    Stream stream(false);
    if (!stream.ready() || gzip.size() > UINT_MAX) {
        return std::nullopt;
    }
    z_stream* z = stream.get();
    z->next_in = asInput(gzip);
    z->avail_in = static_cast<uInt>(gzip.size());
    Gunzipped result;
    std::array<char, kChunk> buffer{};
    int status = Z_OK;
    while (status == Z_OK) {
        z->next_out = reinterpret_cast<Bytef*>(buffer.data());
        z->avail_out = static_cast<uInt>(buffer.size());
        status = inflate(z, Z_NO_FLUSH);
        const size_t produced = buffer.size() - z->avail_out;
        if (result.bytes.size() + produced > limit) {
            result.bytes.append(buffer.data(), limit - result.bytes.size());
            result.truncated = true;
            return result;
        }
        result.bytes.append(buffer.data(), produced);
    }
    return status == Z_STREAM_END ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace loomcrest
