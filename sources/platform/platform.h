#pragma once

#include "platform/platformfacts.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace velometer {

class DeviceInfoSource;
class NetworkInfoSource;
class NetworkSession;
class PositionSource;
struct PlatformChoice;

/// What the device offers, behind four small interfaces: the one place that knows which back ends
/// exist. The program creates one Platform at start and keeps it longer than anything made from it.
class Platform : public QObject
{
    Q_OBJECT

public:
    virtual std::unique_ptr<PositionSource> createPositionSource() = 0;
    virtual std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() = 0;
    virtual std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() = 0;
    virtual std::unique_ptr<NetworkSession> createNetworkSession() = 0;

    /// As of now; a device that has just been made needs a moment to answer.
    virtual PlatformFacts facts() const { return {}; }
    /// False while parts of the device have not answered yet; true within a few seconds, and then
    /// for good.
    virtual bool isComplete() const { return true; }

    /// The device of @p choice, with its positions from where it says. When its script cannot be
    /// used, nothing comes back and @p error says why, see scripted(). A receiver that is not there
    /// is no error: it may come later.
    static std::unique_ptr<Platform> create(const PlatformChoice &choice, QString *error);

    /// The real device: its modem, network and position services, as far as they are there.
    static std::unique_ptr<Platform> system();

    /// This machine without modem and position: its interfaces alone.
    static std::unique_ptr<Platform> none();

    /// Replays the JSON-lines file @p file (docs/scripted-platform.md tells its format). When the
    /// file cannot be read or a line is wrong, nothing comes back and @p error says in one sentence
    /// what and where.
    static std::unique_ptr<Platform> scripted(const QString &file, QString *error);

Q_SIGNALS:
    /// Once: the services of the device have answered, or will not. From the event loop, also when
    /// there was nothing to wait for.
    void completed();

protected:
    Platform()
    {
        QTimer::singleShot(0, this, [this] {
            running = true;
            tellCompletion();
        });
    }
    /// To be called when isComplete() may have become true.
    void tellCompletion()
    {
        if (told || !running || !isComplete()) {
            return;
        }
        told = true;
        Q_EMIT completed();
    }

private:
    bool running = false; ///< the event loop, so that whoever made the platform could connect
    bool told = false;
};

} // namespace velometer
