#include "platform/position/positionchoice.h"

#include "utils/quoted.h"
#include "utils/translations.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// What follows @p prefix; nothing when something else does.
std::optional<QString> after(const QString &text, QLatin1StringView prefix)
{
    return text.startsWith(prefix) ? std::optional(text.mid(prefix.size())) : std::nullopt;
}

std::optional<PositionChoice> read(const QString &text)
{
    using Source = PositionChoice::Source;
    if (text == "gpsd"_L1) {
        return PositionChoice{Source::Gpsd, {}, {u"localhost"_s, PositionChoice::gpsdPort}};
    }
    if (const auto address = after(text, "gpsd://"_L1)) {
        const auto endpoint = Endpoint::parse(*address, PositionChoice::gpsdPort);
        return endpoint ? std::optional(PositionChoice{Source::Gpsd, {}, *endpoint}) : std::nullopt;
    }
    const QString rest = after(text, "nmea:"_L1).value_or(text);
    if (const auto address = after(rest, "socket://"_L1)) {
        // There is no usual port.
        constexpr int none = 0;
        const auto endpoint = Endpoint::parse(*address, none);
        return endpoint && endpoint->port != none
                   ? std::optional(PositionChoice{Source::NmeaSocket, {}, *endpoint})
                   : std::nullopt;
    }
    // An address of another kind is a mistake rather than a file's name.
    if (rest.size() == text.size() || rest.isEmpty() || rest.contains("://"_L1) ||
        rest.contains(QChar::Null)) {
        return std::nullopt;
    }
    return PositionChoice{Source::NmeaFile, rest, {}};
}

} // namespace

std::optional<PositionChoice> PositionChoice::parse(const QString &text, QString *error)
{
    auto choice = read(text);
    if (!choice) {
        *error =
            Translations::translate("PositionChoice",
                                    "--position takes nmea:FILE, nmea:socket://HOST:PORT, gpsd or "
                                    "gpsd://HOST:PORT, not %1.")
                .arg(quoted(text));
    }
    return choice;
}

QString PositionChoice::name() const
{
    const QString address =
        Endpoint::bracketed(endpoint.host) + u':' + QString::number(endpoint.port);
    switch (source) {
    case Source::Platform: break;
    case Source::NmeaFile: return "nmea "_L1 + file;
    case Source::NmeaSocket: return "nmea "_L1 + address;
    case Source::Gpsd: return "gpsd "_L1 + address;
    }
    return {};
}

} // namespace velometer
