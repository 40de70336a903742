#include "net/proxyheader.h"

#include <algorithm>
#include <array>

namespace velometer::ProxyHeader {

namespace ip = boost::asio::ip;

namespace {

constexpr unsigned char versionTwo = 0x20;
constexpr unsigned char commandProxy = 0x01;
constexpr unsigned char tcp4 = 0x11;
constexpr unsigned char tcp6 = 0x21;

unsigned char byteAt(std::string_view bytes, std::size_t place)
{
    return static_cast<unsigned char>(bytes.at(place));
}

/// Both ends' addresses and ports follow the fixed bytes.
template <typename Address>
std::optional<Told> sourceOf(std::string_view header)
{
    typename Address::bytes_type bytes{};
    constexpr std::size_t needed = 2 * bytes.size() + 4;
    if (header.size() < fixedBytes + needed) {
        return std::nullopt;
    }
    std::ranges::transform(header.substr(fixedBytes, bytes.size()), bytes.begin(),
                           [](char c) { return static_cast<unsigned char>(c); });
    return Told{.client = Address(bytes)};
}

} // namespace

std::optional<std::size_t> restLength(std::string_view fixed)
{
    if (fixed.size() < fixedBytes || !fixed.starts_with(signature) ||
        (byteAt(fixed, 12) & 0xf0U) != versionTwo) {
        return std::nullopt;
    }
    const std::size_t length = byteAt(fixed, 14) * 256U + byteAt(fixed, 15);
    return length <= mostBytes ? std::optional(length) : std::nullopt;
}

std::optional<Told> parse(std::string_view header)
{
    if (restLength(header) != header.size() - std::min(header.size(), fixedBytes)) {
        return std::nullopt;
    }
    if ((byteAt(header, 12) & 0x0fU) != commandProxy) {
        return Told{};
    }
    switch (byteAt(header, 13)) {
    case tcp4: return sourceOf<ip::address_v4>(header);
    case tcp6: return sourceOf<ip::address_v6>(header);
    default: return Told{};
    }
}

std::optional<ip::address> takeLast(std::string_view &text)
{
    const auto comma = text.rfind(',');
    auto last = comma == std::string_view::npos ? text : text.substr(comma + 1);
    text = text.substr(0, comma == std::string_view::npos ? 0 : comma);
    last.remove_prefix(std::min(last.find_first_not_of(" \t"), last.size()));
    last = last.substr(0, last.find_last_not_of(" \t") + 1);
    boost::system::error_code failure;
    const auto address = ip::make_address(std::string(last), failure);
    return failure ? std::nullopt : std::optional(address);
}

} // namespace velometer::ProxyHeader
