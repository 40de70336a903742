#pragma once

#include <QString>

/// Who the device is. Asked once at start; unknown texts are empty.
class DeviceInfoSource
{
public:
    virtual ~DeviceInfoSource() = default;

    virtual QString imei() const = 0;
    virtual QString imsi() const = 0;
    virtual QString manufacturer() const = 0;
    virtual QString productName() const = 0;
    virtual QString model() const = 0;

protected:
    DeviceInfoSource() = default;
    Q_DISABLE_COPY_MOVE(DeviceInfoSource)
};
