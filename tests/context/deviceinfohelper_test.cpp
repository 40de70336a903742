#include "context/deviceinfohelper.h"

#include "support/fakeplatform.h"
#include "support/registeredtest.h"
#include "utils/utils.h"

#include <QRegularExpression>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

class DeviceInfoHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheDevice()
    {
        FakePlatform platform;
        platform.device.manufacturer = u"Ma\nker"_s + QString(300, u'x');
        const DeviceInfoHelper helper(platform, nullptr);
        QCOMPARE(helper.getImei(), u"356938035643809"_s);
        QCOMPARE(helper.getImsi(), u"228011234567890"_s);
        QCOMPARE(helper.getManufacturer(), u"Maker"_s + QString(251, u'x'));
        QCOMPARE(helper.getProductName(), u"Product"_s);
        QCOMPARE(helper.getModel(), u"Model"_s);
        for (const auto &[told, model] :
             {std::pair{u"armv7l "_s, u"N900"_s}, {u"armv7l"_s, u"armv7l"_s}}) {
            platform.device.model = told;
            QCOMPARE(DeviceInfoHelper(platform, nullptr).getModel(), model);
        }
    }

    void waitsForALateModemUntilSomebodyAsks()
    {
        for (const bool asked : {false, true}) {
            Utils::setSettingsValue(u"fakeimei"_s, QString());
            FakePlatform platform;
            const QString imei = std::exchange(platform.device.imei, QString());
            platform.device.complete = false;
            const DeviceInfoHelper helper(platform, nullptr);
            const QString early = asked ? helper.getImei() : QString();
            platform.device.imei = imei;
            platform.device.setComplete();
            QCOMPARE(helper.getImei(), asked ? early : imei);
            QCOMPARE(Utils::getSettingsValue(u"fakeimei"_s), early);
        }
    }

    void keepsItsSubstituteImei()
    {
        Utils::setSettingsValue(u"fakeimei"_s, QString());
        FakePlatform platform;
        platform.device.imei = u"\n"_s;
        const QString first = DeviceInfoHelper(platform, nullptr).getImei();
        QVERIFY2(QRegularExpression(u"^[0-9]{14}$"_s).match(first).hasMatch(), qPrintable(first));
        QCOMPARE(DeviceInfoHelper(platform, nullptr).getImei(), first);
        Utils::setSettingsValue(u"fakeimei"_s, QString());
        QVERIFY(DeviceInfoHelper(platform, nullptr).getImei() != first);
    }
};

} // namespace velometer

VELOMETER_TEST(DeviceInfoHelperTest)
#include "deviceinfohelper_test.moc"
