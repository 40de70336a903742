#include "web/assets.h"

#include <algorithm>

namespace velometer::Assets {

const Asset *find(std::string_view name)
{
    const auto files = all();
    const auto found = std::ranges::lower_bound(files, name, {}, &Asset::name);
    return found != files.end() && found->name == name ? &*found : nullptr;
}

std::string address(std::string_view name)
{
    std::string path(root);
    path += version();
    path += '/';
    return path += name;
}

} // namespace velometer::Assets
