#include "context/deviceinfohelper.h"

#include "support/fakeplatform.h"
#include "utils/utils.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class DeviceInfoHelperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { Utils::setSettingsValue(u"fakeimei"_s, QString()); }
    void readsTheDevice();
    void keepsItsSubstituteImei();
    void correctsOneModel_data();
    void correctsOneModel();
};

void DeviceInfoHelperTest::readsTheDevice()
{
    FakePlatform platform;
    platform.device.manufacturer = u"Ma\nker"_s + QString(300, u'x');
    const DeviceInfoHelper helper(platform, nullptr);
    QCOMPARE(helper.getImei(), u"356938035643809"_s);
    QCOMPARE(helper.getImsi(), u"228011234567890"_s);
    QCOMPARE(helper.getManufacturer(), u"Maker"_s + QString(251, u'x'));
    QCOMPARE(helper.getProductName(), u"Product"_s);
    QCOMPARE(helper.getPlattform(), u"Meego (Qt: "_s + QLatin1StringView(qVersion()) + u')');
    QVERIFY(Utils::getSettingsValue(u"fakeimei"_s).isEmpty());
    QVERIFY(!Utils::getLogEntries().contains(u"Empty IMEI!"_s));
}

void DeviceInfoHelperTest::keepsItsSubstituteImei()
{
    FakePlatform platform;
    platform.device.imei = u"\n"_s;
    const QString first = DeviceInfoHelper(platform, nullptr).getImei();
    QVERIFY2(QRegularExpression(u"^[0-9]{14}$"_s).match(first).hasMatch(), qPrintable(first));
    QCOMPARE(Utils::getSettingsValue(u"fakeimei"_s), first);
    QCOMPARE(DeviceInfoHelper(platform, nullptr).getImei(), first);
    QCOMPARE(Utils::getLogEntries().count(u"Generated IMEI: "_s + first), 1);
    QCOMPARE(Utils::getLogEntries().count(u"Empty IMEI!"_s), 2);

    Utils::setSettingsValue(u"fakeimei"_s, QString());
    QVERIFY(DeviceInfoHelper(platform, nullptr).getImei() != first);
}

void DeviceInfoHelperTest::correctsOneModel_data()
{
    QTest::addColumn<QString>("reported");
    QTest::addColumn<QString>("model");
    QTest::newRow("with blank") << u"armv7l "_s << u"N900"_s;
    QTest::newRow("without blank") << u"armv7l"_s << u"armv7l"_s;
    QTest::newRow("two blanks") << u"armv7l  "_s << u"armv7l  "_s;
}

void DeviceInfoHelperTest::correctsOneModel()
{
    QFETCH(QString, reported);
    FakePlatform platform;
    platform.device.model = reported;
    QTEST(DeviceInfoHelper(platform, nullptr).getModel(), "model");
}

QTEST_GUILESS_MAIN(DeviceInfoHelperTest)
#include "deviceinfohelper_test.moc"
