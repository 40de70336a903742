#include "http/gzip.h"

#include <zlib.h>

namespace velometer {

std::string gzip(std::string_view text)
{
    // A window of 32 KiB, and 16 for gzip's header instead of zlib's own.
    constexpr int gzipWindow = 15 + 16;
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

} // namespace velometer
