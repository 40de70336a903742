#pragma once

#include "platform/deviceinfosource.h"
#include "utils/clocktimer.h"

namespace velometer {

class ModemClient;

/// The device as its modem, the device tree and the firmware tables tell it, else the operating
/// system and the processor. IMEI and IMSI are the modem's alone; the host name is the owner's
/// business and stays out.
class MachineDeviceInfoSource final : public DeviceInfoSource
{
    Q_OBJECT

public:
    /// @p modemClient is borrowed and outlives the source; null: there is no modem. @p systemRoot
    /// is where "sys" lies.
    explicit MachineDeviceInfoSource(const ModemClient *modemClient = nullptr,
                                     const QString &systemRoot = QStringLiteral("/"),
                                     QObject *parent = nullptr);

    QString imei() const override;
    QString imsi() const override;
    QString manufacturer() const override;
    QString productName() const override;
    QString model() const override;
    bool isComplete() const override;

private:
    void finish();

    const ModemClient *const modem;
    QString boardManufacturer;
    QString boardProduct;
    QString boardModel;
    ClockTimer timer; ///< the end of waiting for the modem
    bool complete = false;
};

} // namespace velometer
