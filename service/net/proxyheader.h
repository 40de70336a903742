#pragma once

#include <boost/asio/ip/address.hpp>

#include <optional>
#include <string>
#include <string_view>

/// What a proxy in front of the service tells about the client it speaks for. All of it is checked
/// by whoever asks: a client may write the same.
namespace velometer::ProxyHeader {

/// With these bytes a header of the PROXY protocol's second version begins
/// (haproxy.org/download/2.8/doc/proxy-protocol.txt, 2.2).
inline constexpr std::string_view signature{"\r\n\r\n\0\r\nQUIT\n", 12};
/// The signature, command, family, and the length of the rest.
inline constexpr std::size_t fixedBytes = 16;
/// No address with its extras is longer.
inline constexpr std::size_t mostBytes = 1024;

/// Bytes behind the fixed ones; nothing when these are no such header.
std::optional<std::size_t> restLength(std::string_view fixed);

struct Told
{
    /// Nothing: the proxy speaks for itself, as when it looks whether the service is well.
    std::optional<boost::asio::ip::address> client;
};
/// Of the whole header; nothing when it is damaged.
std::optional<Told> parse(std::string_view header);

/// The addresses of X-Forwarded-For, @p text, from the last to the first, as long as they are such.
std::optional<boost::asio::ip::address> takeLast(std::string_view &text);

} // namespace velometer::ProxyHeader
