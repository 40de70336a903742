#pragma once

#include <string_view>

namespace velometer {

/// docs/openapi.json.
std::string_view openApi();

} // namespace velometer
