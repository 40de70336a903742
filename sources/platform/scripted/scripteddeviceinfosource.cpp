#include "platform/scripted/scripteddeviceinfosource.h"

#include <utility>

namespace velometer {

ScriptedDeviceInfoSource::ScriptedDeviceInfoSource(ScriptDevice scripted)
    : device(std::move(scripted))
{}

QString ScriptedDeviceInfoSource::imei() const
{
    return device.imei;
}

QString ScriptedDeviceInfoSource::imsi() const
{
    return device.imsi;
}

QString ScriptedDeviceInfoSource::manufacturer() const
{
    return device.manufacturer;
}

QString ScriptedDeviceInfoSource::productName() const
{
    return device.product;
}

QString ScriptedDeviceInfoSource::model() const
{
    return device.model;
}

} // namespace velometer
