#pragma once

#include "platform/platformfacts.h"

#include <QString>
#include <QtGlobal>

#include <memory>

namespace velometer {

class DeviceInfoSource;
class NetworkInfoSource;
class NetworkSession;
class PositionSource;
struct PlatformChoice;

/// What the device offers, behind four small interfaces: the one place that knows which back ends
/// exist. The program creates one Platform at start and keeps it longer than anything made from it.
class Platform
{
public:
    virtual ~Platform() = default;

    virtual std::unique_ptr<PositionSource> createPositionSource() = 0;
    virtual std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() = 0;
    virtual std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() = 0;
    virtual std::unique_ptr<NetworkSession> createNetworkSession() = 0;

    /// As of now; a device that has just been made needs a moment to answer.
    virtual PlatformFacts facts() const { return {}; }
    /// False while parts of the device have not answered yet; true within a few seconds.
    virtual bool isComplete() const { return true; }

    /// The device of @p choice, with its positions from where it says. When its script cannot be
    /// used, nothing comes back and @p error says why, see scripted(). A receiver that is not there
    /// is no error: it may come later.
    static std::unique_ptr<Platform> create(const PlatformChoice &choice, QString *error);

    /// The real device: its modem, network and position services, as far as they are there.
    static std::unique_ptr<Platform> system();

    /// This machine without modem and position: its interfaces alone.
    static std::unique_ptr<Platform> none();

    /// Replays the JSON-lines file @p file (see scriptedplatform.h). When the file cannot be read
    /// or a line is wrong, nothing comes back and @p error says in one sentence what and where.
    static std::unique_ptr<Platform> scripted(const QString &file, QString *error);

protected:
    Platform() = default;
    Q_DISABLE_COPY_MOVE(Platform)
};

} // namespace velometer
