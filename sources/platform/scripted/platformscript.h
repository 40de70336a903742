#pragma once

#include "platform/networksession.h"
#include "platform/networkstate.h"

#include <QGeoPositionInfo>
#include <QList>
#include <QString>

#include <chrono>
#include <optional>

namespace velometer {

/// What one line of a script changes. Members that are not set stay as they were.
struct ScriptEvent
{
    struct Session
    {
        enum Kind { Opened, Error, Lost };
        Kind kind = Opened;
        NetworkSession::SessionError error = NetworkSession::UnknownSessionError;
    };

    struct Metered
    {
        std::optional<bool> metered;
        bool guessed = false;
    };

    std::chrono::milliseconds at{0};
    std::optional<QGeoPositionInfo> position; ///< without a timestamp: that of its moment
    bool positionTimeout = false;
    std::optional<QList<int>> satellitesInUse;
    std::optional<QList<int>> satellitesInView;
    std::optional<NetworkMode> mode;
    std::optional<NetworkStatus> status;
    std::optional<int> signal;
    std::optional<QString> name;
    std::optional<QString> mcc;
    std::optional<QString> mnc;
    std::optional<QString> homeMcc;
    std::optional<QString> homeMnc;
    std::optional<qint64> cell;
    std::optional<int> lac;
    // An inner nothing: told as unknown.
    std::optional<std::optional<double>> rsrp;
    std::optional<std::optional<double>> rsrq;
    std::optional<std::optional<double>> snr;
    std::optional<QString> band;
    std::optional<Metered> metered;
    std::optional<Session> session;
};

struct ScriptDevice
{
    QString imei;
    QString imsi;
    QString manufacturer;
    QString product;
    QString model;
};

/// A script of the scripted platform (docs/scripted-platform.md), read and checked. Bounded: 16
/// MiB, 1 MiB a line, 100000 lines.
struct PlatformScript
{
    ScriptDevice device;
    QList<ScriptEvent> events; ///< in order of time
    bool hasPosition = false;
    bool hasSatellites = false;

    /// Nothing comes back when the file cannot be read or a line is wrong; @p error then says
    /// "FILE: what" or "FILE, line N: what".
    static std::optional<PlatformScript> load(const QString &file, QString *error);

    /// The same for a text already in memory; @p name stands for the file in messages.
    static std::optional<PlatformScript> parse(const QByteArray &text, const QString &name,
                                               QString *error);
};

} // namespace velometer
