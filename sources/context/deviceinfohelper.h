#pragma once

#include <QObject>
#include <QString>

class Platform;

/// Who the device is, read once at construction; nothing changes afterwards. A device without an
/// IMEI gets 14 random digits instead, made once and kept in the settings ("fakeimei"), so that it
/// is the same device to the service in every run. Texts are cut to 256 characters and lose their
/// control characters. Main thread only.
class DeviceInfoHelper : public QObject
{
    Q_OBJECT

public:
    DeviceInfoHelper(Platform &platform, QObject *parent);

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
    QString imei;
    QString imsi;
    QString manufacturer;
    QString productname;
    QString model;
    QString plattform;
};
