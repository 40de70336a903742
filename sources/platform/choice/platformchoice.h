#pragma once

#include "platform/position/positionchoice.h"

#include <QString>

namespace velometer {

/// Which device a program runs on, as its user writes it. A plain value.
struct PlatformChoice
{
    enum class Device {
        System,   ///< this one
        Scripted, ///< a recorded one
        None,     ///< this one without modem and position
    };

    Device device = Device::System;
    QString script; ///< what Device::Scripted replays
    PositionChoice position;

    /// Takes the device that @p text names: "system", "scripted:FILE" or "none". False when it
    /// names none: then nothing is changed and @p error says in one sentence what is allowed.
    bool setDevice(const QString &text, QString *error);

    bool operator==(const PlatformChoice &other) const = default;
};

} // namespace velometer
