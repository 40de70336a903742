#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace velometer {

class DeviceInfoSource;
class Platform;

/// Who the device is, read once: at construction, or when the device has answered, two seconds
/// later at the latest. A question before that is answered with what is known by then, for good. A
/// device without an IMEI gets 14 random digits instead, made once and kept in the settings
/// ("fakeimei"), so that it is the same device to the service in every run. Texts are cut to 256
/// characters and lose their control characters. Main thread only.
class DeviceInfoHelper : public QObject
{
    Q_OBJECT

public:
    DeviceInfoHelper(Platform &platform, QObject *parent);
    ~DeviceInfoHelper() override;

    QString getImei() const;
    QString getImsi() const;
    QString getManufacturer() const;
    QString getProductName() const;
    QString getModel() const;
    QString getPlattform() const;

    // The test's start and end change nothing here.
    void startService() {}
    void stopService() {}

private:
    struct Identity
    {
        QString imei;
        QString imsi;
        QString manufacturer;
        QString productname;
        QString model;
    };

    const Identity &identity() const;
    static Identity read(const DeviceInfoSource &source);

    std::unique_ptr<DeviceInfoSource> sysinfo;
    mutable std::optional<Identity> known; ///< settled when it is first needed
    QString plattform;
};

} // namespace velometer
