#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velometer {

/// A file that the pages load: a script, a style, a part of the map's outline.
struct Asset
{
    std::string_view name;        ///< "site.css", "outline/12-3.json"
    std::string_view contentType; ///< as HTTP says it
    std::string_view gzip;        ///< the content, compressed
};

/// The files that are built into the program, by name. Their address holds a hash over all of them,
/// so that whoever has one never asks for it again.
namespace Assets {

/// Ordered by name.
std::span<const Asset> all();

/// Changes with any of them.
std::string_view version();

/// Nothing when there is none of that name.
const Asset *find(std::string_view name);

/// "/velometer/assets/"; below it stand the version and the name.
inline constexpr std::string_view root = "/velometer/assets/";

/// Where @p name is found.
std::string address(std::string_view name);

} // namespace Assets

} // namespace velometer
