#pragma once

#include <string>
#include <string_view>

namespace velometer {

/// @p text in gzip's format; empty when there is no memory for it.
std::string gzip(std::string_view text);

/// The text again that @p packed was made of by this program; empty when there is no memory for it.
std::string gunzip(std::string_view packed);

} // namespace velometer
