#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

/// One line per event on standard error: an object of JSON, or "warning: sentence" for a person.
/// Callable from every thread; what is below the level costs a comparison. Of one kind of event a
/// hundred lines a second are written; how many were left out is told a second later.
namespace velometer::Log {

enum class Level { Error, Warning, Info, Debug };
enum class Format { Text, Json };

void setLevel(Level level);
void setFormat(Format format);

using Value = std::variant<std::string, std::int64_t>;
using Field = std::pair<std::string_view, Value>;

/// What happened, as one of a few words ("access", "refusal"), for a program to pick out; for a
/// person @p text, which may be empty. Nobody writes lines of his own through either.
void write(Level level, std::string_view event, std::string_view text,
           std::initializer_list<Field> fields = {});

} // namespace velometer::Log
