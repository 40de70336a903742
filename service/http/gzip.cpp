#include "http/gzip.h"

#include <zlib.h>

#include <array>
#include <new>

namespace velometer {

namespace {

// A window of 32 KiB, and 16 for gzip's header instead of zlib's own.
constexpr int gzipWindow = 15 + 16;

} // namespace

GzipStream::GzipStream()
    : stream(std::make_unique<z_stream>())
{
    constexpr int memoryLevel = 8;
    if (deflateInit2(stream.get(), Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindow, memoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc(); // there is no other reason
    }
}

GzipStream::~GzipStream()
{
    deflateEnd(stream.get());
}

std::string GzipStream::add(std::string_view part, bool isLast)
{
    // zlib does not write to its input; its old interface does not say so.
    stream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(part.data()));
    stream->avail_in = static_cast<uInt>(part.size());
    std::string bytes;
    do {
        std::array<char, 65536> packed{};
        stream->next_out = reinterpret_cast<Bytef *>(packed.data());
        stream->avail_out = static_cast<uInt>(packed.size());
        deflate(stream.get(), isLast ? Z_FINISH : Z_NO_FLUSH);
        bytes.append(packed.data(), packed.size() - stream->avail_out);
    } while (stream->avail_out == 0);
    return bytes;
}

std::string gzip(std::string_view text)
{
    return GzipStream().add(text, true);
}

std::string gunzip(std::string_view packed, std::size_t most)
{
    z_stream stream{};
    if (inflateInit2(&stream, gzipWindow) != Z_OK) {
        return {};
    }
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string text;
    int state = Z_OK;
    while (state == Z_OK && text.size() <= most) {
        std::array<char, 65536> part{};
        stream.next_out = reinterpret_cast<Bytef *>(part.data());
        stream.avail_out = static_cast<uInt>(part.size());
        state = inflate(&stream, Z_NO_FLUSH);
        text.append(part.data(), part.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    return state == Z_STREAM_END && text.size() <= most ? text : std::string();
}

} // namespace velometer
