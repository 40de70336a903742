#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

namespace velometer {

/// One complete answer to a control request.
struct Answer
{
    int status = 200;
    std::string body;
    std::string contentType = "text/plain; charset=utf-8";
    std::string headers; ///< further header lines, each ending in CR LF
    /// Addresses here are keys to somebody's measurements: nothing is kept unless it says so.
    std::string cacheControl = "no-store";

    /// An answer that explains itself with one sentence.
    static Answer sentence(int status, std::string text);

    /// 503: there is no room now; @p text tells the user, Retry-After a program.
    static Answer later(std::string text);

    /// With @p status (429 when the client has had its share, 503 when all have): @p text tells the
    /// user, and how long to wait, which Retry-After tells a program.
    static Answer comeBack(int status, std::string text, std::chrono::seconds wait);

    /// The bytes for the wire: HTTP/1.1, Connection: close, no referrer for other sites.
    std::string toBytes() const;

    /// The head alone, for a body of @p length bytes; without one its headers say how it ends.
    std::string head(std::optional<std::size_t> length) const;
};

} // namespace velometer
