#include "net/addressrange.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace velometer {

namespace ip = boost::asio::ip;

std::optional<AddressRange> AddressRange::parse(std::string_view text)
{
    const auto slash = text.find('/');
    boost::system::error_code failure;
    const auto address = ip::make_address(std::string(text.substr(0, slash)), failure);
    if (failure) {
        return std::nullopt;
    }
    const unsigned short bits = address.is_v4() ? 32 : 128;
    unsigned short length = bits;
    if (slash != std::string_view::npos) {
        const std::string digits(text.substr(slash + 1));
        const auto *const end = digits.data() + digits.size();
        const auto [last, error] = std::from_chars(digits.data(), end, length);
        if (error != std::errc() || last != end || length > bits) {
            return std::nullopt;
        }
    }
    return AddressRange(address.is_v4() ? Network(ip::network_v4(address.to_v4(), length))
                                        : Network(ip::network_v6(address.to_v6(), length)));
}

bool AddressRange::contains(const ip::address &address) const
{
    if (const auto *v4 = std::get_if<ip::network_v4>(&network)) {
        return address.is_v4() &&
               ip::network_v4(address.to_v4(), v4->prefix_length()).canonical() == v4->canonical();
    }
    const auto &v6 = std::get<ip::network_v6>(network);
    return address.is_v6() &&
           ip::network_v6(address.to_v6(), v6.prefix_length()).canonical() == v6.canonical();
}

} // namespace velometer
