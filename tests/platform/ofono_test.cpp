// The modem as oFono shows it, and which of two services is believed.

#include "platform/modem/modemchoice.h"
#include "platform/modemmanager/modemmanagerclient.h"
#include "platform/ofono/ofonoclient.h"
#include "platform/system/systemplatform.h"
#include "support/fakeclock.h"
#include "support/mockofono.h"
#include "support/mockphone.h"
#include "support/modemstory.h"
#include "support/registeredtest.h"

#include <QSignalSpy>

namespace velometer {

class OfonoTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        client.reset();
        ofono.reset();
        bus.reset();
        clock.reset();
        clock = std::make_unique<FakeClock>();
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        ofono = std::make_unique<MockOfono>(*bus);
        QVERIFY(ofono->start());
    }
    void isTheModemOfTheSystem()
    {
        QVERIFY(ofono->addModem() && MockPhone(*bus).startNetwork());
        const SystemPlatform platform(bus->connection());
        QTRY_VERIFY(platform.isComplete());
        QCOMPARE(platform.facts().modemService, u"oFono"_s);
        QCOMPARE(platform.facts().missing, QList<PlatformFacts::Missing>());
        QVERIFY(watch());
        QCOMPARE(client->state().manufacturer, u"Fakesys"_s);
        QCOMPARE(client->state().operatorName, u"Abroad"_s);
    }

    void followsTheModem_data()
    {
        const Rows<QString, QString, QVariant, QString> row("interface", "property", "value",
                                                            "expected");
        const auto net = [&](const char *name, const char *property, const QVariant &value,
                             const char *expected) {
            row(name, MockOfono::net, property, value, expected);
        };
        // The area and the figures that were measured in LTE hold for LTE alone.
        net("5G beside LTE", "Technology", u"nr"_s, "mode 9");
        net("HSPA", "Technology", u"hspa"_s, "mode 3, area 12ab, radio");
        net("EDGE", "Technology", u"edge"_s, "mode 1, area 12ab, radio");
        net("technology of the future", "Technology", u"6g"_s, "mode 0, area 12ab, radio");
        net("home", "Status", u"registered"_s, "status 6");
        // Nothing of the last network is told as if it were there.
        const QString gone = u"mode 0, status %1, signal -1, network , cell -1, area -1, radio"_s;
        row("searching", MockOfono::net, "Status", u"searching"_s, gone.arg(3));
        row("status as path", MockOfono::net, "Status", asVariant(QDBusObjectPath(u"/roaming"_s)),
            gone.arg(0));
        row("offline", MockOfono::modem, "Online", false, gone.arg(1));
        net("no cell", "CellId", 0xffffffffU, "cell -1");
        net("cell beyond 64 bits", "CellId", ~0ULL, "cell -1");
        net("signal over 100", "Strength", asVariant(uchar{101}), "signal -1");
        net("country with letters", "MobileCountryCode", u"3l0"_s, "network 026");
        row("interfaces as text", MockOfono::modem, "Interfaces", MockOfono::net,
            "mode 0, status 0, signal -1, network , home , cell -1, area -1, imsi , radio");

        const auto measured = [&](const char *name, const QString &answer, const char *expected) {
            row(name, MockOfono::monitor, "", u"'Technology': 'lte', "_s + answer, expected);
        };
        measured(
            "not known",
            u"'ReferenceSignalReceivedPower': dbus.Byte(255), 'TrackingAreaCode': 0, "
            "'ReferenceSignalReceivedQuality': dbus.Byte(255), 'SingalToNoiseRatio': 2**31-1"_s,
            "area 12ab, radio");
        measured("over Android's radio layer",
                 u"'ReferenceSignalReceivedPower': dbus.Byte(11), "
                 "'ReferenceSignalReceivedQuality': dbus.Byte(105), 'SignalToNoiseRatio': 300"_s,
                 "area 12ab, radio -105 -11 30");
        measured("wrong types",
                 u"'ReferenceSignalReceivedPower': '44', 'SingalToNoiseRatio': {'a': 1}, "
                 "'ReferenceSignalReceivedQuality': [dbus.Byte(17)], 'TrackingAreaCode': -1"_s,
                 "area 12ab, radio");
    }
    void followsTheModem()
    {
        const auto [interface, property, value] = currentRow<QString, QString, QVariant>();
        QVERIFY(ofono->addModem() &&
                measure(u"'Technology': 'lte', 'TrackingAreaCode': dbus.UInt16(0xf1e2), "
                        "'ReferenceSignalReceivedPower': dbus.Byte(44), "
                        "'ReferenceSignalReceivedQuality': dbus.Byte(17), "
                        "'SingalToNoiseRatio': dbus.Int32(-35)"_s) &&
                offer({MockOfono::sim, MockOfono::net, MockOfono::monitor}) && watch());
        QTRY_COMPARE(told(client->state()),
                     abroad + u", area f1e2, "_s + ids + u", radio -97 -11.5 -3.5"_s);
        const ModemState before = client->state();
        if (interface == MockOfono::monitor) {
            QVERIFY(measure(value.toString()));
            clock->advance(5s);
        } else {
            QVERIFY(ofono->set(interface, property, value));
        }
        // A signal of another kind than its name says.
        QVERIFY(bus->mock(MockOfono::service, MockOfono::path, "EmitSignal", MockOfono::net,
                          "PropertyChanged", "ss", QVariantList{u"Strength"_s, u"x"_s}));
        // The next change shows that the one before has been taken.
        QVERIFY(ofono->set(MockOfono::modem, u"Model"_s, u" \t\x1b[31m"_s + QString(1000, u'x')));
        QTRY_COMPARE(client->state().model, u"[31m"_s + QString(124, u'x'));
        QTEST(told(client->state(), before), "expected");
    }

    void forgetsWhatNobodyTellsAnyMore()
    {
        QVERIFY(ofono->addModem() && watch());
        QCOMPARE(told(client->state()), abroad + u", area 12ab, "_s + ids);
        // The new network has no cell to tell, the new SIM no number.
        QVERIFY(ofono->answer(MockOfono::net, u"GetProperties"_s,
                              u"'Status': 'registered', 'Technology': 'umts'"_s) &&
                ofono->set(MockOfono::net, u"Status"_s, u"registered"_s));
        QTRY_COMPARE(told(client->state()), u"mode 3, status 6, home 22801, "_s + ids);
        QVERIFY(ofono->answer(MockOfono::sim, u"GetProperties"_s, u"'Present': True"_s) &&
                ofono->set(MockOfono::sim, u"Present"_s, true));
        QTRY_COMPARE(told(client->state()), u"mode 3, status 6, imei 356938035643809"_s);
        QVERIFY(offer({MockOfono::sim}));
        QTRY_COMPARE(told(client->state()), u"imei 356938035643809"_s);
    }

    void survivesAListThatMakesNoSense()
    {
        // Other objects, one modem too many, another phone. The modem after the last one that is
        // read would be the first by its path.
        for (const auto &[list, signature, path] :
             {std::tuple{u"[('/a', 1)]"_s, u"a(oi)"_s, QString()},
              {u"[('/modem%d' % i, dbus.Dictionary({'Interfaces': 5, 'Model': {'a': 1}}, "
               "signature='sv')) for i in range(16)] + "
               "[('/x', dbus.Dictionary({}, signature='sv'))]"_s,
               u"a(oa{sv})"_s, u"/modem0"_s},
              {u"[('/hfp', {'Type': 'hfp'}), ('/modem', {'Type': 'hardware'})]"_s, u"a(oa{sv})"_s,
               u"/modem"_s}}) {
            QVERIFY(ofono->list(list, signature) && watch());
            QCOMPARE(client->state().path, path);
            QCOMPARE(client->state().model + told(client->state()), QString());
        }
    }

    void survivesWhatGoesAway()
    {
        // Gone and back as another one before the list is read anew.
        QVERIFY(ofono->addModem() && watch() && ofono->removeModem() && ofono->addPlainModem());
        QTRY_COMPARE(told(client->state()),
                     u"mode 1, status 6, signal 80, network 77711, home 310150, cell 27db, "
                     "area 3db, imei 12345678-1234-1234-1234-000000000001, imsi 310150000000001"_s);
        QVERIFY(ofono->removeModem());
        QTRY_COMPARE(client->state(), ModemState());
        bus->stopService(MockOfono::service);
        QTRY_COMPARE(client->presence(), BusService::Presence::Absent);
        QCOMPARE(client->state(), ModemState());
        QVERIFY(ofono->start() && ofono->addModem());
        QTRY_COMPARE(told(client->state()), abroad + u", area 12ab, "_s + ids);
    }

    void believesModemManagerFirst()
    {
        MockPhone phone(*bus);
        QVERIFY(ofono->addModem());
        ModemChoice choice(std::make_unique<ModemManagerClient>(bus->connection()),
                           std::make_unique<OfonoClient>(bus->connection()));
        QSignalSpy completed(&choice, &ModemClient::completed);
        QTRY_COMPARE(choice.state().service, u"oFono"_s);
        QVERIFY(phone.startModem() && phone.announce());
        QTRY_COMPARE(choice.state().service, u"ModemManager"_s);
        // Nobody hears of the modem that is not shown.
        QSignalSpy changed(&choice, &ModemClient::changed);
        QVERIFY(ofono->set(MockOfono::net, u"Name"_s, u"Elsewhere"_s));
        QVERIFY(phone.set(MockPhone::gpp, u"OperatorName"_s, u"Here"_s));
        QTRY_COMPARE(choice.state().operatorName, u"Here"_s);
        QCOMPARE(changed.size(), 1);

        QVERIFY(phone.removeModem());
        QTRY_COMPARE(choice.state().operatorName, u"Elsewhere"_s);
        bus->stopService(MockOfono::service);
        QTRY_COMPARE(choice.state(), ModemState());
        QCOMPARE(choice.presence(), BusService::Presence::Present);
        bus->stopService(MockPhone::modemService);
        QTRY_COMPARE(choice.presence(), BusService::Presence::Absent);
        QCOMPARE(completed.size(), 1);
    }

private:
    static inline const QString abroad =
        u"mode 8, status 8, signal 71, network 310026, home 22801, cell 2af101"_s;
    static inline const QString ids = u"imei 356938035643809, imsi 228011234567890"_s;

    bool measure(const QString &values)
    {
        return ofono->answer(MockOfono::monitor, u"GetServingCellInformation"_s, values);
    }
    bool offer(const QStringList &interfaces)
    {
        return ofono->set(MockOfono::modem, u"Interfaces"_s, interfaces);
    }
    bool watch()
    {
        client = std::make_unique<OfonoClient>(bus->connection());
        return QTest::qWaitFor([&] { return client->isComplete(); });
    }

    std::unique_ptr<FakeClock> clock;
    std::unique_ptr<MockBus> bus;
    std::unique_ptr<MockOfono> ofono;
    std::unique_ptr<OfonoClient> client;
};

} // namespace velometer

VELOMETER_TEST(OfonoTest)
#include "ofono_test.moc"
