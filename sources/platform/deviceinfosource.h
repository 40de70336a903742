#pragma once

#include <QObject>
#include <QString>

namespace velometer {

/// Who the device is. Asked once at start; unknown texts are empty. Main thread only; nothing
/// blocks.
class DeviceInfoSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual QString imei() const = 0;
    virtual QString imsi() const = 0;
    virtual QString manufacturer() const = 0;
    virtual QString productName() const = 0;
    virtual QString model() const = 0;

    /// False as long as a part of the device, such as its modem, has not answered yet. That ends
    /// in completed(), two seconds after construction at the latest.
    virtual bool isComplete() const { return true; }

Q_SIGNALS:
    /// At most once, and never from a source that was complete from the start.
    void completed();
};

} // namespace velometer
