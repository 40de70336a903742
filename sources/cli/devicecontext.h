#pragma once

#include "figures/finishedtest.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace velometer {

class DeviceInfoHelper;
class LocationHelper;
class NetworkInfoHelper;
class Platform;

/// What the device tells about network, position and itself, and what it does not. Main thread
/// only.
class DeviceContext : public QObject
{
    Q_OBJECT

public:
    /// @p devicePlatform is borrowed and outlives the context.
    explicit DeviceContext(Platform &devicePlatform);
    ~DeviceContext() override;

    enum class Until {
        Ready,       ///< one look
        Interrupted, ///< again after every change
    };

    /// Gives the device time to answer what it can; then comes ready(), at the latest after three
    /// seconds, and with Until::Interrupted again whenever text() has changed.
    void look(Until end = Until::Ready);

    // What is known now; translated labels in the text, fixed names in the others.
    QString text() const;
    QByteArray json() const;
    QByteArray csv() const;

Q_SIGNALS:
    void ready();

private:
    struct Fact
    {
        QString name; ///< fixed
        QString label;
        FinishedTest::Text value;
    };

    void poll();
    void watch();
    QList<Fact> facts() const;
    QStringList missing() const;

    Platform &platform;

    std::unique_ptr<LocationHelper> location;
    std::unique_ptr<NetworkInfoHelper> network;
    std::unique_ptr<DeviceInfoHelper> device;
    QTimer timer{this};
    int polls = 0;
    Until until = Until::Ready;
    QString lastText; ///< of the last ready(), while watching
};

} // namespace velometer
