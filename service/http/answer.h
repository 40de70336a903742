#pragma once

#include <string>

namespace velometer {

/// One complete answer to a control request.
struct Answer
{
    int status = 200;
    std::string body;
    std::string contentType = "text/plain; charset=utf-8";
    std::string headers; ///< further header lines, each ending in CR LF

    /// An answer that explains itself with one sentence.
    static Answer sentence(int status, std::string text);

    /// 503: there is no room now; @p text tells the user, Retry-After a program.
    static Answer later(std::string text);

    /// The bytes for the wire: HTTP/1.1, Content-Length, Connection: close.
    std::string toBytes() const;
};

} // namespace velometer
