#pragma once

#include <boost/asio/ip/address.hpp>
#include <boost/asio/ip/network_v4.hpp>
#include <boost/asio/ip/network_v6.hpp>

#include <optional>
#include <string_view>
#include <variant>

namespace velometer {

/// "10.0.0.0/8", "fd00::/8", or one address. A plain value.
class AddressRange
{
public:
    static std::optional<AddressRange> parse(std::string_view text);

    bool contains(const boost::asio::ip::address &address) const;

private:
    using Network = std::variant<boost::asio::ip::network_v4, boost::asio::ip::network_v6>;

    explicit AddressRange(Network range)
        : network(std::move(range))
    {}
    Network network;
};

} // namespace velometer
