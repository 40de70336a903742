#include "platform/systemdeviceinfosource.h"

#include <QSysInfo>

QString SystemDeviceInfoSource::imei() const
{
    return {};
}

QString SystemDeviceInfoSource::imsi() const
{
    return {};
}

QString SystemDeviceInfoSource::manufacturer() const
{
    return {};
}

QString SystemDeviceInfoSource::productName() const
{
    return QSysInfo::prettyProductName();
}

QString SystemDeviceInfoSource::model() const
{
    return QSysInfo::currentCpuArchitecture();
}
