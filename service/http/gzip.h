#pragma once

#include <memory>
#include <string>
#include <string_view>

struct z_stream_s;

namespace velometer {

/// @p text as gzip's format has it, for answers to clients that take it.
std::string gzip(std::string_view text);

/// The text that gzip() was given. Empty on failure, and when it is longer than @p most.
std::string gunzip(std::string_view packed, std::size_t most);

/// Packs a text that comes in parts; holds a quarter of a megabyte, however long the text is.
class GzipStream
{
public:
    GzipStream();
    ~GzipStream();
    GzipStream(const GzipStream &) = delete;
    GzipStream &operator=(const GzipStream &) = delete;

    /// What is ready after @p part, often nothing; all of the rest with @p isLast.
    std::string add(std::string_view part, bool isLast);

private:
    std::unique_ptr<z_stream_s> stream;
};

} // namespace velometer
