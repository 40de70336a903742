#include "context/deviceinfohelper.h"

#include "platform/deviceinfosource.h"
#include "platform/platform.h"
#include "utils/cleantext.h"
#include "utils/utils.h"

#include <QRandomGenerator>

#include <memory>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

const QString fakeImeiKey = u"fakeimei"_s;

// One digit short of a real IMEI, so that the service cannot take it for one.
constexpr int substituteDigits = 14;

// From the system's generator: two devices must not draw the same identity.
QString drawDigits()
{
    QString digits;
    for (int i = 0; i < substituteDigits; ++i) {
        digits += QString::number(QRandomGenerator::system()->bounded(10));
    }
    return digits;
}

QString substituteImei()
{
    Utils::addLogEntry(u"Empty IMEI!"_s);
    QString substitute = cleanText(Utils::getSettingsValue(fakeImeiKey));
    if (substitute.isEmpty()) {
        substitute = drawDigits();
        Utils::setSettingsValue(fakeImeiKey, substitute);
        Utils::addLogEntry(u"Generated IMEI: %1"_s.arg(substitute));
    }
    return substitute;
}

} // namespace

DeviceInfoHelper::DeviceInfoHelper(Platform &platform, QObject *parent)
    : QObject(parent)
    , sysinfo(platform.createDeviceInfoSource())
    , plattform(u"Meego (Qt: %1)"_s.arg(QString::fromLatin1(qVersion())))
{
    if (sysinfo->isComplete()) {
        identity();
    } else {
        connect(sysinfo.get(), &DeviceInfoSource::completed, this, [this] { identity(); });
    }
}

DeviceInfoHelper::~DeviceInfoHelper() = default;

const DeviceInfoHelper::Identity &DeviceInfoHelper::identity() const
{
    if (!known) {
        known = read(*sysinfo);
    }
    return *known;
}

DeviceInfoHelper::Identity DeviceInfoHelper::read(const DeviceInfoSource &source)
{
    Identity identity;
    identity.imei = cleanText(source.imei());
    identity.imsi = cleanText(source.imsi());
    identity.manufacturer = cleanText(source.manufacturer());
    identity.productname = cleanText(source.productName());
    identity.model = cleanText(source.model());

    // That device names its processor with a blank behind it in place of itself.
    if (identity.model == "armv7l "_L1) {
        identity.model = u"N900"_s;
    }
    if (identity.imei.isEmpty()) {
        identity.imei = substituteImei();
    }

    Utils::addLogEntry(u"IMEI: %1"_s.arg(identity.imei));
    Utils::addLogEntry(u"Manufacturer: %1"_s.arg(identity.manufacturer));
    Utils::addLogEntry(u"ProductName: %1"_s.arg(identity.productname));
    Utils::addLogEntry(u"Model: %1"_s.arg(identity.model));
    return identity;
}

QString DeviceInfoHelper::getImei() const
{
    return identity().imei;
}

QString DeviceInfoHelper::getImsi() const
{
    return identity().imsi;
}

QString DeviceInfoHelper::getManufacturer() const
{
    return identity().manufacturer;
}

QString DeviceInfoHelper::getProductName() const
{
    return identity().productname;
}

QString DeviceInfoHelper::getModel() const
{
    return identity().model;
}

QString DeviceInfoHelper::getPlattform() const
{
    return plattform;
}

} // namespace velometer
