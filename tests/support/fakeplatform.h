#pragma once

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/platform.h"
#include "platform/positionsource.h"

#include <QGeoCoordinate>
#include <QPointer>

#include <memory>
#include <optional>

namespace velometer {

/// A component of the fake device: makes sources and signals through the one that was made last, as
/// long as it lives.
template <typename Component, typename Interface>
class FakeComponent
{
public:
    std::unique_ptr<Interface> create()
    {
        auto made = std::make_unique<typename Component::Source>(static_cast<Component &>(*this));
        source = made.get();
        return made;
    }

protected:
    class Told : public Interface
    {
    public:
        explicit Told(Component &control)
            : fake(control)
        {}

    protected:
        Component &fake;
    };

    QPointer<Interface> source;
};

/// Position and satellites. emit...() signals at once, also when nobody has started the updates: a
/// source may be that broken.
class FakePosition : public FakeComponent<FakePosition, PositionSource>
{
public:
    // What was asked for.
    bool positionRunning = false;
    bool satellitesRunning = false;
    int positionStarts = 0;

    void emitPosition(const QGeoPositionInfo &info)
    {
        if (source) {
            told()->setPosition(info);
        }
    }
    /// A fix as receivers send it; without @p altitude a two-dimensional one.
    void emitPosition(double latitude, double longitude, double altitude = qQNaN())
    {
        emitPosition(
            {{latitude, longitude, altitude}, QDateTime::fromSecsSinceEpoch(1'700'000'000)});
    }
    void emitTimeout() { told()->setTimedOut(); }
    void setProblem(PositionSource::Problem problem) { told()->setProblem(problem); }

    class Source : public Told
    {
    public:
        using Told::Told;
        QString name() const override { return QStringLiteral("fake"); }
        bool hasPosition() const override { return true; }
        bool hasSatellites() const override { return true; }
        Position lastKnownPosition() const override { return {}; }
        int minimumUpdateInterval() const override { return 0; }
        void setUpdateInterval(int /*ms*/) override {}
        void startPosition() override
        {
            fake.positionRunning = true;
            ++fake.positionStarts;
        }
        void stopPosition() override { fake.positionRunning = false; }
        void startSatellites() override { fake.satellitesRunning = true; }
        void stopSatellites() override { fake.satellitesRunning = false; }
        using PositionSource::setPosition;
        using PositionSource::setProblem;
        using PositionSource::setTimedOut;
    };

private:
    Source *told() { return static_cast<Source *>(source.data()); }
};

/// Network information. Set the members of the state before the code under test is made; set...()
/// and tell() signal at once.
class FakeNetwork : public FakeComponent<FakeNetwork, NetworkInfoSource>, public NetworkState
{
public:
    void setMode(NetworkMode value)
    {
        mode = value;
        tell();
    }
    void setStatus(NetworkMode of, NetworkStatus value)
    {
        links[of].status = value;
        tell();
    }
    /// What the members say now.
    void tell()
    {
        if (source) {
            static_cast<Source *>(source.data())->setState(*this);
        }
    }

    class Source : public Told
    {
    public:
        explicit Source(FakeNetwork &control)
            : Told(control)
        {
            setState(control);
        }
        using NetworkInfoSource::setState;
    };
};

/// Answers open() from the event loop; opens unless told otherwise.
class FakeSession : public FakeComponent<FakeSession, NetworkSession>
{
public:
    void fails(NetworkSession::SessionError with) { failure = with; }

    /// The network goes away under the open session.
    void lose()
    {
        sessionOpen = false;
        Q_EMIT source->error(NetworkSession::SessionAbortedError);
    }

    int openCalls = 0;

    class Source : public Told
    {
    public:
        using Told::Told;
        QList<NetworkConfiguration> allConfigurations() const override
        {
            return {defaultConfiguration()};
        }
        NetworkConfiguration defaultConfiguration() const override
        {
            return {QStringLiteral("Ethernet"), QStringLiteral("eth0"),
                    NetworkConfiguration::UnknownPurpose, NetworkConfiguration::Active, true};
        }
        bool canStartAndStopInterfaces() const override { return false; }
        bool isOpen() const override { return fake.sessionOpen; }
        void open() override
        {
            ++fake.openCalls;
            fake.sessionOpen = false;
            QMetaObject::invokeMethod(this, &Source::reply, Qt::QueuedConnection);
        }
        void reply()
        {
            fake.sessionOpen = !fake.failure;
            if (fake.sessionOpen) {
                Q_EMIT opened();
            } else {
                Q_EMIT error(*fake.failure);
            }
        }
    };

private:
    std::optional<NetworkSession::SessionError> failure;
    bool sessionOpen = false;
};

class FakeDevice : public FakeComponent<FakeDevice, DeviceInfoSource>
{
public:
    QString imei = QStringLiteral("356938035643809");
    QString imsi = QStringLiteral("228011234567890");
    QString manufacturer = QStringLiteral("Maker");
    QString productName = QStringLiteral("Product");
    QString model = QStringLiteral("Model");
    bool complete = true; ///< set it false before the code under test is made

    /// What was missing is there.
    void setComplete()
    {
        complete = true;
        Q_EMIT source->completed();
    }

    class Source : public Told
    {
    public:
        using Told::Told;
        QString imei() const override { return fake.imei; }
        QString imsi() const override { return fake.imsi; }
        QString manufacturer() const override { return fake.manufacturer; }
        QString productName() const override { return fake.productName; }
        QString model() const override { return fake.model; }
        bool isComplete() const override { return fake.complete; }
    };
};

/// A device whose every value and signal is driven by the test. Lives longer than what is made from
/// it.
class FakePlatform : public Platform
{
public:
    FakePosition position;
    FakeNetwork network;
    FakeSession session;
    FakeDevice device;
    PlatformFacts told;   ///< what facts() says
    bool complete = true; ///< set it false before the event loop runs

    /// The device has answered.
    void setComplete()
    {
        complete = true;
        tellCompletion();
    }

    PlatformFacts facts() const override { return told; }
    bool isComplete() const override { return complete; }
    std::unique_ptr<PositionSource> createPositionSource() override { return position.create(); }
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override
    {
        return network.create();
    }
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override { return device.create(); }
    std::unique_ptr<NetworkSession> createNetworkSession() override { return session.create(); }
};

} // namespace velometer
