#pragma once

#include "utils/endpoint.h"

#include <QString>

#include <optional>

namespace velometer {

/// Where positions come from, as the user writes it. A plain value.
struct PositionChoice
{
    enum class Source {
        Platform, ///< whatever the platform has
        NmeaFile, ///< a recording, a receiver's device file or a FIFO
        NmeaSocket,
        Gpsd,
    };

    /// Where gpsd listens unless told otherwise.
    static constexpr int gpsdPort = 2947;

    Source source = Source::Platform;
    QString file;      ///< of Source::NmeaFile; not opened yet
    Endpoint endpoint; ///< of Source::NmeaSocket and Source::Gpsd

    /// Reads "nmea:FILE", "nmea:socket://HOST:PORT", "socket://HOST:PORT", "gpsd",
    /// "gpsd://HOST" or "gpsd://HOST:PORT". At anything else nothing comes back and @p error says
    /// in one sentence what is allowed.
    static std::optional<PositionChoice> parse(const QString &text, QString *error);

    /// For people: "nmea FILE", "nmea HOST:PORT", "gpsd HOST:PORT"; empty for Source::Platform.
    QString name() const;

    bool operator==(const PositionChoice &other) const = default;
};

} // namespace velometer
