#pragma once

#include <string_view>

/// One line per event on standard error, "warning: sentence", as systemd's journal likes it.
/// Callable from every thread; what is below the level costs a comparison.
namespace velometer::Log {

enum class Level { Error, Warning, Info, Debug };

void setLevel(Level level);

/// Control characters in @p text are printed as '?', so that nobody writes lines of his own.
void write(Level level, std::string_view text);

} // namespace velometer::Log
