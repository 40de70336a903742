#include "http/request.h"

#include "net/connection.h"

#include <boost/asio/buffer.hpp>
#include <boost/beast/core/string.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>

#include <algorithm>
#include <charconv>

namespace velometer {

namespace http = boost::beast::http;

namespace {

/// Clients that take the service for a proxy send the whole address; what counts is its path.
std::string_view withoutAuthority(std::string_view target)
{
    constexpr std::string_view scheme = "http://";
    if (!boost::beast::iequals(target.substr(0, scheme.size()), scheme)) {
        return target;
    }
    target.remove_prefix(scheme.size());
    target.remove_prefix(std::min(target.find_first_of("/?"), target.size()));
    return target;
}

} // namespace

std::optional<Request> Request::parse(std::string_view head)
{
    http::request_parser<http::empty_body> parser;
    parser.header_limit(static_cast<std::uint32_t>(maxHeadBytes));
    // The length of the body is judged by whoever reads it.
    parser.body_limit(boost::none);
    boost::beast::error_code error;
    parser.put(boost::asio::buffer(head), error);
    if ((error && error != http::error::need_more) || !parser.is_header_done()) {
        return std::nullopt;
    }
    const auto &message = parser.get();
    const auto view = [](auto text) { return std::string_view(text.data(), text.size()); };
    const auto target = withoutAuthority(view(message.target()));
    const auto question = target.find('?');

    Request request;
    request.method = view(message.method_string());
    request.path = target.substr(0, question);
    if (question != std::string_view::npos) {
        request.query = target.substr(question + 1);
    }
    request.acceptLanguage = view(message[http::field::accept_language]);
    request.user = view(message["Velometer-User"]);
    const auto [firstForwarded, lastForwarded] = message.equal_range("X-Forwarded-For");
    for (auto field = firstForwarded; field != lastForwarded; ++field) {
        request.forwardedFor += request.forwardedFor.empty() ? "" : ",";
        request.forwardedFor += view(field->value());
    }
    for (const auto &coding : http::ext_list(message[http::field::accept_encoding])) {
        const bool refused = std::ranges::any_of(coding.second, [&](const auto &parameter) {
            // "q=0", "q=0.000"
            return boost::beast::iequals(parameter.first, "q") &&
                   view(parameter.second).find_first_not_of("0.") == std::string_view::npos;
        });
        request.acceptsGzip =
            request.acceptsGzip || (boost::beast::iequals(coding.first, "gzip") && !refused);
    }
    const bool modern = message.version() >= 11;
    request.takesChunks = modern;
    const auto hosts = message.count(http::field::host);
    request.namesHost = hosts == 1 || (hosts == 0 && !modern);
    request.expectsContinue =
        modern && boost::beast::iequals(message[http::field::expect], "100-continue");
    const auto coding = message[http::field::transfer_encoding];
    request.transferEncoded = !coding.empty() && !boost::beast::iequals(coding, "identity");
    if (const auto length = parser.content_length()) {
        request.contentLength = *length;
    }
    return request;
}

std::optional<std::string_view> Request::parameter(std::string_view key) const
{
    std::string_view rest = query;
    while (!rest.empty()) {
        const auto end = std::min(rest.find('&'), rest.size());
        const auto item = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const auto equals = item.find('=');
        if (item.substr(0, equals) == key) {
            return equals == std::string_view::npos ? std::string_view() : item.substr(equals + 1);
        }
    }
    return std::nullopt;
}

std::optional<std::int64_t> Request::number(std::string_view key) const
{
    const auto text = parameter(key);
    if (!text || text->empty() || text->front() == '-') {
        return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), value);
    if (error != std::errc() || end != text->data() + text->size()) {
        return std::nullopt;
    }
    return value;
}

} // namespace velometer
