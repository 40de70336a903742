#pragma once

#include "platform/deviceinfosource.h"

/// What Qt knows of any machine: the operating system and the processor. It has no IMEI; the host
/// name is the owner's business and stays out.
class SystemDeviceInfoSource : public DeviceInfoSource
{
public:
    QString imei() const override;
    QString imsi() const override;
    QString manufacturer() const override;
    QString productName() const override;
    QString model() const override;
};
