#pragma once

#include <boost/asio/ip/address.hpp>

#include <compare>
#include <cstdint>
#include <string>

namespace velometer {

/// The part of an address that tells one peer from another when their shares are counted: all of
/// an IPv4 address, the /64 of an IPv6 one, which one subscriber owns.
struct Subscriber
{
    std::uint64_t network = 0;
    bool isV6 = false;

    static Subscriber of(const boost::asio::ip::address &address);

    /// "v4 7f000001": the same everywhere.
    std::string name() const;

    auto operator<=>(const Subscriber &) const = default;
};

} // namespace velometer
