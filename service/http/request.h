#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velometer {

/// The head of one request, parsed. Nothing in it is trusted beyond its syntax.
struct Request
{
    std::string method;
    std::string path;  ///< without the query
    std::string query; ///< what follows the first '?', undecoded
    std::string acceptLanguage;
    std::string user;         ///< the header Velometer-User
    std::string forwardedFor; ///< all headers X-Forwarded-For, joined by commas
    std::string segment;      ///< what stands in the path for the {} of its endpoint
    std::optional<std::uint64_t> contentLength; ///< bytes
    bool acceptsGzip = false;
    bool expectsContinue = false; ///< the body comes once it is told to
    bool namesHost = true;        ///< once, or not at all in HTTP/1.0
    bool transferEncoded = false; ///< the body is not what it is
    bool takesChunks = false;     ///< an answer may come in chunks

    /// Parses @p head, which ends with its empty line. Nothing comes back when it is malformed.
    static std::optional<Request> parse(std::string_view head);

    /// The value of the first @p key in the query, undecoded: no value of a measurement's requests
    /// needs an escape (the others' are read by UrlQuery). Nothing comes back when the key is
    /// absent.
    std::optional<std::string_view> parameter(std::string_view key) const;

    /// The parameter @p key when it consists of digits alone and fits into 63 bits.
    std::optional<std::int64_t> number(std::string_view key) const;
};

} // namespace velometer
