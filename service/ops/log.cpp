#include "ops/log.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <atomic>
#include <chrono>
#include <map>
#include <mutex>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer::Log {

namespace {

std::atomic<Level> highestLevel{Level::Info};
std::atomic<Format> lineFormat{Format::Text};

constexpr std::array<std::string_view, 4> names{"error", "warning", "info", "debug"};

/// Lines of one kind of event in one second.
constexpr int mostLines = 100;

struct Recent
{
    std::int64_t second = 0;
    int lines = 0;
    std::int64_t leftOut = 0;
};

std::string_view nameOf(Level level)
{
    return names.at(static_cast<std::size_t>(level));
}

std::string textOf(const Value &value)
{
    const auto *text = std::get_if<std::string>(&value);
    return text ? *text : std::to_string(std::get<std::int64_t>(value));
}

void putLine(Level level, std::string_view event, std::string_view text,
             std::initializer_list<Field> fields)
{
    std::string line;
    if (lineFormat.load(std::memory_order_relaxed) == Format::Json) {
        const auto string = [](std::string_view bytes) {
            return QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
        };
        QJsonObject object{{u"time"_s, QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
                           {u"level"_s, string(nameOf(level))},
                           {u"event"_s, string(event)}};
        if (!text.empty()) {
            object.insert(u"message"_s, string(text));
        }
        for (const auto &[name, value] : fields) {
            const auto *words = std::get_if<std::string>(&value);
            object.insert(string(name), words ? QJsonValue(string(*words))
                                              : QJsonValue(qint64(std::get<std::int64_t>(value))));
        }
        line = QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
    } else {
        line = std::string(nameOf(level)) + ": " + std::string(text.empty() ? event : text);
        for (const auto &[name, value] : fields) {
            line += ' ' + std::string(name) + '=' + textOf(value);
        }
        for (char &character : line) {
            const auto code = static_cast<unsigned char>(character);
            character = code < 0x20 || code == 0x7f ? '?' : character;
        }
    }
    line += '\n';
    // A single write keeps lines of several threads apart; a log that cannot be written is no
    // reason to stop.
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

} // namespace

void setLevel(Level level)
{
    highestLevel = level;
}

void setFormat(Format format)
{
    lineFormat = format;
}

void write(Level level, std::string_view event, std::string_view text,
           std::initializer_list<Field> fields)
{
    if (level > highestLevel.load(std::memory_order_relaxed)) {
        return;
    }
    static std::mutex mutex;
    static std::map<std::string, Recent, std::less<>> recent; // events are a few
    const auto now = std::chrono::duration_cast<std::chrono::seconds>(
                         std::chrono::steady_clock::now().time_since_epoch())
                         .count();
    std::int64_t leftOut = 0;
    {
        const std::lock_guard lock(mutex);
        Recent &own = recent[std::string(event)];
        if (own.second != now) {
            leftOut = std::exchange(own, Recent{.second = now}).leftOut;
        }
        if (++own.lines > mostLines) {
            ++own.leftOut;
            return;
        }
    }
    if (leftOut > 0) {
        putLine(Level::Warning, "left_out", "too many lines of one kind",
                {{"of", std::string(event)}, {"lines", leftOut}});
    }
    putLine(level, event, text, fields);
}

} // namespace velometer::Log
