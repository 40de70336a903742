#include "http/answer.h"

#include "net/httpdate.h"

#include <string_view>
#include <utility>

namespace velometer {

namespace {

std::string_view reason(int status)
{
    switch (status) {
    case 200: return "OK";
    case 201: return "Created";
    case 202: return "Accepted";
    case 400: return "Bad Request";
    case 403: return "Forbidden";
    case 404: return "Not Found";
    case 405: return "Method Not Allowed";
    case 408: return "Request Timeout";
    case 410: return "Gone";
    case 411: return "Length Required";
    case 413: return "Content Too Large";
    case 429: return "Too Many Requests";
    case 431: return "Request Header Fields Too Large";
    case 501: return "Not Implemented";
    case 503: return "Service Unavailable";
    default: return "Internal Server Error";
    }
}

} // namespace

Answer Answer::sentence(int status, std::string text)
{
    text += '\n';
    return Answer{.status = status, .body = std::move(text), .headers = {}};
}

Answer Answer::later(std::string text)
{
    // About as long as a test runs.
    auto answer = sentence(503, std::move(text));
    answer.headers = "Retry-After: 20\r\n";
    return answer;
}

Answer Answer::comeBack(int status, std::string text, std::chrono::seconds wait)
{
    constexpr std::int64_t minute = 60;
    constexpr std::int64_t fewMinutes = 3;
    const std::int64_t seconds = wait.count();
    const bool isShort = seconds < fewMinutes * minute;
    text += " Please try again in " +
            std::to_string(isShort ? seconds : (seconds + minute - 1) / minute) +
            (isShort ? seconds == 1 ? " second." : " seconds." : " minutes.");
    auto answer = sentence(status, std::move(text));
    answer.headers = "Retry-After: " + std::to_string(seconds) + "\r\n";
    return answer;
}

std::string Answer::head(std::optional<std::size_t> length) const
{
    std::string bytes = "HTTP/1.1 " + std::to_string(status) + ' ';
    bytes += reason(status);
    bytes += "\r\n" + httpDate() + "Content-Type: " + contentType + "\r\n";
    if (length) {
        bytes += "Content-Length: " + std::to_string(*length) + "\r\n";
    }
    return bytes + "X-Content-Type-Options: nosniff\r\nReferrer-Policy: no-referrer\r\n" +
           "Cache-Control: " + cacheControl + "\r\nConnection: close\r\n" + headers + "\r\n";
}

std::string Answer::toBytes() const
{
    return head(body.size()) + body;
}

} // namespace velometer
