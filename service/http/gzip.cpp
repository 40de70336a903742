#include "http/gzip.h"

#include <zlib.h>

#include <array>

namespace velometer {

namespace {

// A window of 32 KiB, and 16 for gzip's header instead of zlib's own.
constexpr int gzipWindow = 15 + 16;

} // namespace

std::string gzip(std::string_view text)
{
    constexpr int memoryLevel = 8;
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindow, memoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        return {};
    }
    std::string bytes(deflateBound(&stream, text.size()), '\0');
    // zlib does not write to its input; its old interface does not say so.
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    const bool done = deflate(&stream, Z_FINISH) == Z_STREAM_END;
    bytes.resize(done ? stream.total_out : 0);
    deflateEnd(&stream);
    return bytes;
}

std::string gunzip(std::string_view packed)
{
    z_stream stream{};
    if (inflateInit2(&stream, gzipWindow) != Z_OK) {
        return {};
    }
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string text;
    int state = Z_OK;
    while (state == Z_OK) {
        std::array<char, 65536> part{};
        stream.next_out = reinterpret_cast<Bytef *>(part.data());
        stream.avail_out = static_cast<uInt>(part.size());
        state = inflate(&stream, Z_NO_FLUSH);
        text.append(part.data(), part.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    return state == Z_STREAM_END ? text : std::string();
}

} // namespace velometer
