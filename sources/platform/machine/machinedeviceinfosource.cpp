#include "platform/machine/machinedeviceinfosource.h"

#include "platform/bus/busvalue.h"
#include "platform/modem/modemclient.h"

#include <QFile>
#include <QSysInfo>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr auto identityWait = 2s;
/// Longer than any name that firmware gives.
constexpr qint64 maxFirmwareBytes = 512;

/// What stands in the tables of boards whose makers have not filled them in.
bool isPlaceholder(const QString &text)
{
    static const QStringList placeholders = {
        u"to be filled by o.e.m."_s,
        u"default string"_s,
        u"system manufacturer"_s,
        u"system product name"_s,
        u"system version"_s,
        u"not specified"_s,
        u"not applicable"_s,
        u"none"_s,
        u"n/a"_s,
        u"o.e.m."_s,
        u"oem"_s,
        u"unknown"_s,
        u"invalid"_s,
    };
    const bool meansNothing =
        std::none_of(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
    return meansNothing || placeholders.contains(text.toLower());
}

QString readName(const QString &file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly)) {
        return {};
    }
    QByteArray content = source.read(maxFirmwareBytes);
    // Texts of the device tree end in a zero byte.
    if (const qsizetype end = content.indexOf('\0'); end >= 0) {
        content.truncate(end);
    }
    const QString name = BusValue::cleanText(QString::fromUtf8(content));
    return isPlaceholder(name) ? QString() : name;
}

QString firstKnown(const QString &first, const QString &second)
{
    return first.isEmpty() ? second : first;
}

} // namespace

MachineDeviceInfoSource::MachineDeviceInfoSource(const ModemClient *modemClient,
                                                 const QString &systemRoot, QObject *parent)
    : DeviceInfoSource(parent)
    , modem(modemClient)
    , complete(!modem || modem->isComplete())
{
    const QString dmi = systemRoot + "/sys/class/dmi/id/"_L1;
    boardProduct = readName(systemRoot + "/sys/firmware/devicetree/base/model"_L1);
    if (boardProduct.isEmpty()) {
        boardManufacturer = readName(dmi + "sys_vendor"_L1);
        boardProduct = readName(dmi + "product_name"_L1);
        boardModel = readName(dmi + "product_version"_L1);
    } else {
        // "Maker Model": the tree has one text for both.
        boardManufacturer = boardProduct.section(u' ', 0, 0);
        boardModel = boardProduct.section(u' ', 1);
    }
    if (complete) {
        return;
    }
    connect(modem, &ModemClient::completed, this, &MachineDeviceInfoSource::finish);
    connect(&timer, &ClockTimer::timeout, this, &MachineDeviceInfoSource::finish);
    timer.start(identityWait);
}

void MachineDeviceInfoSource::finish()
{
    if (complete) {
        return;
    }
    complete = true;
    timer.stop();
    Q_EMIT completed();
}

bool MachineDeviceInfoSource::isComplete() const
{
    return complete;
}

QString MachineDeviceInfoSource::imei() const
{
    return modem ? modem->state().imei : QString();
}

QString MachineDeviceInfoSource::imsi() const
{
    return modem ? modem->state().imsi : QString();
}

QString MachineDeviceInfoSource::manufacturer() const
{
    return firstKnown(modem ? modem->state().manufacturer : QString(), boardManufacturer);
}

QString MachineDeviceInfoSource::productName() const
{
    return firstKnown(boardProduct, QSysInfo::prettyProductName());
}

QString MachineDeviceInfoSource::model() const
{
    const QString known = firstKnown(modem ? modem->state().model : QString(), boardModel);
    return firstKnown(known, QSysInfo::currentCpuArchitecture());
}

} // namespace velometer
