#include "context/deviceinfohelper.h"

#include "support/fakeplatform.h"
#include "support/registeredtest.h"
#include "utils/utils.h"

#include <QRegularExpression>

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

class DeviceInfoHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleansWhatTheDeviceSays_data()
    {
        const Rows<QString, QString> row("text", "clean");
        const QString longText(255, u'a');
        const QString smile = u"\U0001F600"_s;
        row("terminal sequence", u"a\u001b[2J\u0007\r\n\tb\u0000\u007f\u009bc"_s, "a[2Jbc");
        row("too long", longText + u"bc"_s, longText + u'b');
        row("pair at the end", longText + smile, longText);
        row("half a pair", QString(smile.at(0)) + smile + smile.at(1), smile);
        row("no character", "a\uffff\ufdd0\U0001fffe", "a");
        row("only controls", QString(100'000, u'\n') + u'x', "x");
    }
    void cleansWhatTheDeviceSays()
    {
        QFETCH(QString, text);
        FakePlatform platform;
        platform.device.manufacturer = text;
        QTEST(DeviceInfoHelper(platform, nullptr).getManufacturer(), "clean");
    }

    void readsTheDevice()
    {
        FakePlatform platform;
        QCOMPARE(DeviceInfoHelper(platform, nullptr).getImsi(), u"228011234567890"_s);
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
