#include "context/deviceinfohelper.h"

#include "context/cleantext.h"
#include "platform/deviceinfosource.h"
#include "platform/platform.h"
#include "utils/utils.h"

#include <QRandomGenerator>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString fakeImeiKey = u"fakeimei"_s;

// One digit short of a real IMEI, so that the service cannot take it for one.
constexpr int substituteDigits = 14;

// From the system's generator: two devices must not draw the same identity.
QString drawDigits()
{
    QString digits;
    for (int i = 0; i < substituteDigits; ++i)
        digits += QString::number(QRandomGenerator::system()->bounded(10));
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
{
    const std::unique_ptr<DeviceInfoSource> sysinfo = platform.createDeviceInfoSource();
    imei = cleanText(sysinfo->imei());
    imsi = cleanText(sysinfo->imsi());
    manufacturer = cleanText(sysinfo->manufacturer());
    productname = cleanText(sysinfo->productName());
    model = cleanText(sysinfo->model());

    // That device names its processor with a blank behind it in place of itself.
    if (model == "armv7l "_L1)
        model = u"N900"_s;
    if (imei.isEmpty())
        imei = substituteImei();
    plattform = u"Meego (Qt: %1)"_s.arg(QString::fromLatin1(qVersion()));

    Utils::addLogEntry(u"IMEI: %1"_s.arg(imei));
    Utils::addLogEntry(u"Manufacturer: %1"_s.arg(manufacturer));
    Utils::addLogEntry(u"ProductName: %1"_s.arg(productname));
    Utils::addLogEntry(u"Model: %1"_s.arg(model));
}

QString DeviceInfoHelper::getImei() const
{
    return imei;
}

QString DeviceInfoHelper::getImsi() const
{
    return imsi;
}

QString DeviceInfoHelper::getManufacturer() const
{
    return manufacturer;
}

QString DeviceInfoHelper::getProductName() const
{
    return productname;
}

QString DeviceInfoHelper::getModel() const
{
    return model;
}

QString DeviceInfoHelper::getPlattform() const
{
    return plattform;
}
