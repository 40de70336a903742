#pragma once

#include "cli/testsummary.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class DeviceInfoHelper;
class LocationHelper;
class NetworkInfoHelper;
class Platform;

/// One look at what the device tells about network, position and itself. Main thread only.
class DeviceContext : public QObject
{
    Q_OBJECT

public:
    /// @p platform is borrowed and outlives the context.
    explicit DeviceContext(Platform &platform);
    ~DeviceContext() override;

    /// Gives the device time to answer; ends in one ready(), at the latest after three seconds.
    void look();

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
        TestSummary::Text value;
    };

    void poll();
    QList<Fact> facts() const;

    std::unique_ptr<LocationHelper> location;
    std::unique_ptr<NetworkInfoHelper> network;
    std::unique_ptr<DeviceInfoHelper> device;
    QTimer timer;
    int polls = 0;
};
