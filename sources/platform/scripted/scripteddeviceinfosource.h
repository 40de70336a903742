#pragma once

#include "platform/deviceinfosource.h"
#include "platform/scripted/platformscript.h"

namespace velometer {

/// The device that a script names.
class ScriptedDeviceInfoSource final : public DeviceInfoSource
{
    Q_OBJECT

public:
    explicit ScriptedDeviceInfoSource(ScriptDevice scripted);

    QString imei() const override;
    QString imsi() const override;
    QString manufacturer() const override;
    QString productName() const override;
    QString model() const override;

private:
    const ScriptDevice device;
};

} // namespace velometer
