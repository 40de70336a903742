#pragma once

namespace velometer {

/// The pages that the navigation leads to.
enum class Page { Test, Results, Settings, Links, About };

} // namespace velometer
