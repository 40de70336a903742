#include "ops/log.h"

#include <array>
#include <atomic>
#include <string>

#include <unistd.h>

namespace velometer::Log {

namespace {

std::atomic<Level> highestLevel{Level::Info};

} // namespace

void setLevel(Level level)
{
    highestLevel = level;
}

void write(Level level, std::string_view text)
{
    if (level > highestLevel.load(std::memory_order_relaxed)) {
        return;
    }
    static constexpr std::array<std::string_view, 4> names{"error", "warning", "info", "debug"};
    std::string line(names.at(static_cast<std::size_t>(level)));
    line += ": ";
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        line += code < 0x20 || code == 0x7f ? '?' : character;
    }
    line += '\n';
    // A single write keeps lines of several threads apart; a log that cannot be written is no
    // reason to stop.
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

} // namespace velometer::Log
