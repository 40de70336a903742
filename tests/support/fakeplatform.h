#pragma once

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/platform.h"
#include "platform/positionsource.h"

#include <QGeoCoordinate>
#include <QMap>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

/// The objects that a test's code made from one part of the fake, as long as they live.
template <typename Source>
class FakeSources
{
public:
    void add(Source *source) { sources.append(source); }

    void each(const std::function<void(Source &)> &call) const
    {
        // A called slot may make or destroy sources.
        const QList<QPointer<Source>> copy = sources;
        for (const QPointer<Source> &source : copy) {
            if (source)
                call(*source);
        }
    }

private:
    QList<QPointer<Source>> sources;
};

/// Position and satellites. emit...() signals at once, also when nobody has started the updates: a
/// source may be that broken.
class FakePosition
{
public:
    bool hasPosition = true;
    bool hasSatellites = true;
    QGeoPositionInfo lastKnown;
    int minimumInterval = 0;

    // What was asked for.
    int updateInterval = 0;
    bool positionRunning = false;
    bool satellitesRunning = false;
    int positionStarts = 0;

    /// A fix as receivers send it; without @p altitude a two-dimensional one.
    static QGeoPositionInfo
    fix(double latitude, double longitude, std::optional<double> altitude = std::nullopt,
        const QDateTime &time = QDateTime::fromSecsSinceEpoch(1'700'000'000))
    {
        QGeoCoordinate coordinate(latitude, longitude);
        if (altitude)
            coordinate.setAltitude(*altitude);
        return {coordinate, time};
    }

    void emitPosition(const QGeoPositionInfo &info)
    {
        lastKnown = info;
        sources.each([&](PositionSource &source) { Q_EMIT source.positionUpdated(info); });
    }
    void emitPosition(double latitude, double longitude,
                      std::optional<double> altitude = std::nullopt)
    {
        emitPosition(fix(latitude, longitude, altitude));
    }
    void emitTimeout()
    {
        sources.each([](PositionSource &source) { Q_EMIT source.updateTimeout(); });
    }
    void emitSatellitesInUse(const QList<int> &ids)
    {
        const auto list = satellites(ids);
        sources.each([&](PositionSource &source) { Q_EMIT source.satellitesInUseUpdated(list); });
    }
    void emitSatellitesInView(const QList<int> &ids)
    {
        const auto list = satellites(ids);
        sources.each([&](PositionSource &source) { Q_EMIT source.satellitesInViewUpdated(list); });
    }

    std::unique_ptr<PositionSource> create();

private:
    static QList<QGeoSatelliteInfo> satellites(const QList<int> &ids)
    {
        QList<QGeoSatelliteInfo> list;
        for (int id : ids) {
            QGeoSatelliteInfo satellite;
            satellite.setSatelliteIdentifier(id);
            list.append(satellite);
        }
        return list;
    }

    FakeSources<PositionSource> sources;
};

/// Network information. set...() signals at once, except where the interface has no signal.
class FakeNetwork
{
public:
    void setMode(NetworkMode value)
    {
        mode = value;
        sources.each([&](NetworkInfoSource &source) { Q_EMIT source.networkModeChanged(value); });
    }
    void setStatus(NetworkMode of, NetworkStatus value)
    {
        status[of] = value;
        sources.each(
            [&](NetworkInfoSource &source) { Q_EMIT source.networkStatusChanged(of, value); });
    }
    void setSignal(NetworkMode of, int percent)
    {
        signal[of] = percent;
        sources.each([&](NetworkInfoSource &source) {
            Q_EMIT source.networkSignalStrengthChanged(of, percent);
        });
    }
    void setName(NetworkMode of, const QString &value)
    {
        name[of] = value;
        sources.each(
            [&](NetworkInfoSource &source) { Q_EMIT source.networkNameChanged(of, value); });
    }
    void setMcc(const QString &code)
    {
        mcc = code;
        sources.each([&](NetworkInfoSource &source) {
            Q_EMIT source.currentMobileCountryCodeChanged(code);
        });
    }
    void setMnc(const QString &code)
    {
        mnc = code;
        sources.each([&](NetworkInfoSource &source) {
            Q_EMIT source.currentMobileNetworkCodeChanged(code);
        });
    }

    std::unique_ptr<NetworkInfoSource> create();

    // Set before the code under test is made, or through the setters above.
    NetworkMode mode = NetworkMode::Unknown;
    QMap<NetworkMode, NetworkStatus> status;
    QMap<NetworkMode, int> signal;
    QMap<NetworkMode, QString> name;
    QString mcc;
    QString mnc;
    QString homeMcc;
    QString homeMnc;
    int cell = -1; ///< polled
    int lac = -1;  ///< polled

private:
    FakeSources<NetworkInfoSource> sources;
};

/// Answers open() from the event loop as told; opens unless told otherwise.
class FakeSession
{
public:
    void opens() { answer = Answer::Opens; }
    void fails(NetworkSession::SessionError with)
    {
        answer = Answer::Fails;
        failure = with;
    }
    void neverAnswers() { answer = Answer::Never; }

    /// The network goes away under every open session.
    void lose(NetworkSession::SessionError with = NetworkSession::SessionAbortedError);

    QList<NetworkConfiguration> configurations{{QStringLiteral("Ethernet"), QStringLiteral("eth0"),
                                                NetworkConfiguration::UnknownPurpose,
                                                NetworkConfiguration::Active, true}};
    /// What defaultConfiguration() answers; the first of the list unless set.
    std::optional<NetworkConfiguration> defaultConfiguration;
    bool canStartAndStopInterfaces = false;
    int openCalls = 0;

    std::unique_ptr<NetworkSession> create();

private:
    friend class FakeNetworkSession;
    enum class Answer { Opens, Fails, Never };

    Answer answer = Answer::Opens;
    NetworkSession::SessionError failure = NetworkSession::UnknownSessionError;
    FakeSources<NetworkSession> sources;
};

class FakeDevice
{
public:
    QString imei = QStringLiteral("356938035643809");
    QString imsi = QStringLiteral("228011234567890");
    QString manufacturer = QStringLiteral("Maker");
    QString productName = QStringLiteral("Product");
    QString model = QStringLiteral("Model");

    std::unique_ptr<DeviceInfoSource> create() const;
};

/// A device whose every value and signal is driven by the test. Lives longer than what is made from
/// it.
///
///     FakePlatform platform;
///     platform.network.mode = NetworkMode::Lte;             // before: what is found
///     NetworkInfoHelper helper(platform, nullptr);
///     platform.network.setMode(NetworkMode::Gsm);           // after: what changes
///     platform.session.fails(NetworkSession::RoamingError);
class FakePlatform : public Platform
{
public:
    FakePosition position;
    FakeNetwork network;
    FakeSession session;
    FakeDevice device;

    std::unique_ptr<PositionSource> createPositionSource() override { return position.create(); }
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override
    {
        return network.create();
    }
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override { return device.create(); }
    std::unique_ptr<NetworkSession> createNetworkSession() override { return session.create(); }
};

class FakePositionSource : public PositionSource
{
public:
    explicit FakePositionSource(FakePosition &control)
        : fake(control)
    {}

    bool hasPosition() const override { return fake.hasPosition; }
    bool hasSatellites() const override { return fake.hasSatellites; }
    QGeoPositionInfo lastKnownPosition() const override { return fake.lastKnown; }
    int minimumUpdateInterval() const override { return fake.minimumInterval; }
    void setUpdateInterval(int ms) override { fake.updateInterval = ms; }
    void startPosition() override
    {
        fake.positionRunning = true;
        ++fake.positionStarts;
    }
    void stopPosition() override { fake.positionRunning = false; }
    void startSatellites() override { fake.satellitesRunning = true; }
    void stopSatellites() override { fake.satellitesRunning = false; }

private:
    FakePosition &fake;
};

class FakeNetworkInfoSource : public NetworkInfoSource
{
public:
    explicit FakeNetworkInfoSource(FakeNetwork &control)
        : fake(control)
    {}

    int cellId() const override { return fake.cell; }
    int locationAreaCode() const override { return fake.lac; }
    QString homeMobileCountryCode() const override { return fake.homeMcc; }
    QString homeMobileNetworkCode() const override { return fake.homeMnc; }
    QString currentMobileCountryCode() const override { return fake.mcc; }
    QString currentMobileNetworkCode() const override { return fake.mnc; }
    NetworkMode currentMode() const override { return fake.mode; }
    NetworkStatus networkStatus(NetworkMode mode) const override
    {
        return fake.status.value(mode, NetworkStatus::Undefined);
    }
    int networkSignalStrength(NetworkMode mode) const override
    {
        return fake.signal.value(mode, -1);
    }
    QString networkName(NetworkMode mode) const override { return fake.name.value(mode); }

private:
    FakeNetwork &fake;
};

class FakeNetworkSession : public NetworkSession
{
public:
    explicit FakeNetworkSession(FakeSession &control)
        : fake(control)
    {}

    QList<NetworkConfiguration> allConfigurations() const override { return fake.configurations; }
    NetworkConfiguration defaultConfiguration() const override
    {
        return fake.defaultConfiguration.value_or(fake.configurations.value(0));
    }
    bool canStartAndStopInterfaces() const override { return fake.canStartAndStopInterfaces; }
    bool isOpen() const override { return sessionOpen; }
    void open() override
    {
        ++fake.openCalls;
        QMetaObject::invokeMethod(
            this, [this] { reply(); }, Qt::QueuedConnection);
    }

    void lose(SessionError with)
    {
        if (!sessionOpen)
            return;
        sessionOpen = false;
        Q_EMIT error(with);
    }

private:
    void reply()
    {
        switch (fake.answer) {
        case FakeSession::Answer::Opens:
            sessionOpen = true;
            Q_EMIT opened();
            break;
        case FakeSession::Answer::Fails:
            Q_EMIT error(fake.failure);
            break;
        case FakeSession::Answer::Never:
            break;
        }
    }

    FakeSession &fake;
    bool sessionOpen = false;
};

class FakeDeviceInfoSource : public DeviceInfoSource
{
public:
    explicit FakeDeviceInfoSource(const FakeDevice &control)
        : fake(control)
    {}

    QString imei() const override { return fake.imei; }
    QString imsi() const override { return fake.imsi; }
    QString manufacturer() const override { return fake.manufacturer; }
    QString productName() const override { return fake.productName; }
    QString model() const override { return fake.model; }

private:
    const FakeDevice &fake;
};

inline std::unique_ptr<PositionSource> FakePosition::create()
{
    auto source = std::make_unique<FakePositionSource>(*this);
    sources.add(source.get());
    return source;
}

inline std::unique_ptr<NetworkInfoSource> FakeNetwork::create()
{
    auto source = std::make_unique<FakeNetworkInfoSource>(*this);
    sources.add(source.get());
    return source;
}

inline std::unique_ptr<NetworkSession> FakeSession::create()
{
    auto source = std::make_unique<FakeNetworkSession>(*this);
    sources.add(source.get());
    return source;
}

inline void FakeSession::lose(NetworkSession::SessionError with)
{
    sources.each(
        [with](NetworkSession &source) { static_cast<FakeNetworkSession &>(source).lose(with); });
}

inline std::unique_ptr<DeviceInfoSource> FakeDevice::create() const
{
    return std::make_unique<FakeDeviceInfoSource>(*this);
}
