// The modem as oFono shows it, and which of two services is believed.

#include "platform/modem/modemchoice.h"
#include "platform/modemmanager/modemmanagerclient.h"
#include "platform/ofono/ofonoclient.h"
#include "platform/system/systemplatform.h"
#include "support/mockofono.h"
#include "support/mockphone.h"
#include "support/rows.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

template <typename Value>
QVariant as(const Value &value)
{
    return QVariant::fromValue(value);
}

/// Mode, status, signal, network, home network, cell and area; then the figures of the cell.
QString summary(const ModemState &state)
{
    QString text = u"%1 %2 %3 %4%5 %6%7 %8 %9"_s.arg(int(state.mode))
                       .arg(int(state.status))
                       .arg(state.signal)
                       .arg(state.mcc, state.mnc, state.homeMcc, state.homeMnc)
                       .arg(state.cellId, 0, 16)
                       .arg(state.areaCode, 0, 16);
    for (const auto &figure : {state.rsrp, state.rsrq, state.snr})
        text += figure ? u" %1"_s.arg(*figure) : QString();
    return text;
}

} // namespace

class OfonoTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        ofono = std::make_unique<MockOfono>(*bus);
        QVERIFY(ofono->start());
    }
    void cleanup()
    {
        client.reset();
        ofono.reset();
        bus.reset();
    }

    void isTheModemOfTheSystem()
    {
        QVERIFY(ofono->addModem() && MockPhone(*bus).startNetwork());
        const SystemPlatform platform(bus->connection());
        QTRY_VERIFY(platform.isComplete());
        QCOMPARE(platform.facts().modemService, u"oFono"_s);
        QCOMPARE(platform.facts().missing, QList<PlatformFacts::Missing>());
        QVERIFY(watch());
        QCOMPARE(client->state().imei, u"356938035643809"_s);
        QCOMPARE(client->state().imsi, u"228011234567890"_s);
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
        net("5G", "Technology", u"nr"_s, "9 8 71 310026 22801 2af101 12ab");
        net("HSPA", "Technology", u"hspa"_s, "3 8 71 310026 22801 2af101 12ab");
        net("UMTS", "Technology", u"umts"_s, "3 8 71 310026 22801 2af101 12ab");
        net("EDGE", "Technology", u"edge"_s, "1 8 71 310026 22801 2af101 12ab");
        net("GSM", "Technology", u"gsm"_s, "1 8 71 310026 22801 2af101 12ab");
        net("technology of the future", "Technology", u"6g"_s, "0 8 71 310026 22801 2af101 12ab");
        net("technology as dictionary", "Technology", QVariantMap{{u"lte"_s, 1}},
            "0 8 71 310026 22801 2af101 12ab");
        // Nothing of the last network is told as if it were there.
        net("home", "Status", u"registered"_s, "8 6 71 310026 22801 2af101 f1e2 -97 -11.5 -3.5");
        net("unregistered", "Status", u"unregistered"_s, "0 1 -1  22801 -1 -1");
        net("searching", "Status", u"searching"_s, "0 3 -1  22801 -1 -1");
        net("denied", "Status", u"denied"_s, "0 7 -1  22801 -1 -1");
        net("unknown", "Status", u"unknown"_s, "0 0 -1  22801 -1 -1");
        net("status as path", "Status", as(QDBusObjectPath(u"/roaming"_s)), "0 0 -1  22801 -1 -1");
        net("other cell", "CellId", 0xfffffffU, "8 8 71 310026 22801 fffffff f1e2 -97 -11.5 -3.5");
        net("no cell", "CellId", 0xffffffffU, "8 8 71 310026 22801 -1 f1e2 -97 -11.5 -3.5");
        net("cell beyond 64 bits", "CellId", as(~quint64{0}),
            "8 8 71 310026 22801 -1 f1e2 -97 -11.5 -3.5");
        net("cell as list", "CellId", QStringList{u"1"_s},
            "8 8 71 310026 22801 -1 f1e2 -97 -11.5 -3.5");
        net("signal over 100", "Strength", as(uchar{101}),
            "8 8 -1 310026 22801 2af101 f1e2 -97 -11.5 -3.5");
        net("signal below nothing", "Strength", -1,
            "8 8 -1 310026 22801 2af101 f1e2 -97 -11.5 -3.5");
        net("country with letters", "MobileCountryCode", u"3l0"_s,
            "8 8 71 026 22801 2af101 f1e2 -97 -11.5 -3.5");
        net("network of four digits", "MobileNetworkCode", u"0260"_s,
            "8 8 71 310 22801 2af101 f1e2 -97 -11.5 -3.5");
        row("interfaces as text", MockOfono::modem, "Interfaces", MockOfono::net, "0 0 -1   -1 -1");
        row("offline", MockOfono::modem, "Online", false, "0 1 -1  22801 -1 -1");

        const auto measured = [&](const char *name, const char *answer, const char *expected) {
            row(name, MockOfono::monitor, "", u"'Technology': 'lte', "_s + QLatin1String(answer),
                expected);
        };
        measured("best",
                 "'ReferenceSignalReceivedPower': dbus.Byte(97), "
                 "'ReferenceSignalReceivedQuality': dbus.Byte(34), 'SignalToNoiseRatio': 300",
                 "8 8 71 310026 22801 2af101 12ab -44 -3 30");
        measured("not known",
                 "'ReferenceSignalReceivedPower': dbus.Byte(255), 'TrackingAreaCode': 0, "
                 "'ReferenceSignalReceivedQuality': dbus.Byte(255), 'SingalToNoiseRatio': 2**31-1",
                 "8 8 71 310026 22801 2af101 12ab");
        measured("over Android's radio layer",
                 "'ReferenceSignalReceivedPower': dbus.Byte(11), "
                 "'ReferenceSignalReceivedQuality': dbus.Byte(105)",
                 "8 8 71 310026 22801 2af101 12ab -105 -11");
        measured("wrong types",
                 "'ReferenceSignalReceivedPower': '44', 'SingalToNoiseRatio': {'a': 1}, "
                 "'ReferenceSignalReceivedQuality': [dbus.Byte(17)], 'TrackingAreaCode': -1",
                 "8 8 71 310026 22801 2af101 12ab");
        measured("area of 5G", "'TrackingAreaCode': 0xfffff0", "8 8 71 310026 22801 2af101 fffff0");
        measured("area beyond all", "'TrackingAreaCode': 0x1000000",
                 "8 8 71 310026 22801 2af101 12ab");
    }
    void followsTheModem()
    {
        QFETCH(QString, interface);
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        QVERIFY(ofono->addModem() &&
                measure(u"'Technology': 'lte', 'TrackingAreaCode': dbus.UInt16(0xf1e2), "
                        "'ReferenceSignalReceivedPower': dbus.Byte(44), "
                        "'ReferenceSignalReceivedQuality': dbus.Byte(17), "
                        "'SingalToNoiseRatio': dbus.Int32(-35)"_s) &&
                offer({MockOfono::sim, MockOfono::net, MockOfono::monitor}) && watch());
        QTRY_COMPARE(summary(client->state()), u"8 8 71 310026 22801 2af101 f1e2 -97 -11.5 -3.5"_s);
        auto *timer = client->findChild<QTimer *>();
        if (interface == MockOfono::monitor) {
            QVERIFY(measure(value.toString()));
            QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
        } else {
            QVERIFY(ofono->set(interface, property, value));
        }
        // The next change shows that the one before has been taken.
        QVERIFY(ofono->set(MockOfono::modem, u"Model"_s, u" \t\x1b[31m"_s + QString(1000, u'x')));
        QTRY_COMPARE(client->state().model, u"[31m"_s + QString(124, u'x'));
        QTEST(summary(client->state()), "expected");
        QCOMPARE(timer->isActive(), client->state().mcc + client->state().mnc != QString());
    }

    void forgetsWhatNobodyTellsAnyMore()
    {
        QVERIFY(ofono->addModem() && watch());
        QCOMPARE(summary(client->state()), u"8 8 71 310026 22801 2af101 12ab"_s);
        // The new network has no cell to tell, the new SIM no number.
        QVERIFY(ofono->answer(MockOfono::net, u"GetProperties"_s,
                              u"'Status': 'registered', 'Technology': 'umts'"_s) &&
                ofono->set(MockOfono::net, u"Status"_s, u"registered"_s));
        QTRY_COMPARE(summary(client->state()), u"3 6 -1  22801 -1 -1"_s);
        QVERIFY(ofono->answer(MockOfono::sim, u"GetProperties"_s, u"'Present': True"_s) &&
                ofono->set(MockOfono::sim, u"Present"_s, true));
        QTRY_COMPARE(summary(client->state()), u"3 6 -1   -1 -1"_s);
        QVERIFY(offer({MockOfono::sim}));
        QTRY_COMPARE(summary(client->state()), u"0 0 -1   -1 -1"_s);
        QVERIFY(offer({MockOfono::sim, MockOfono::net}));
        QTRY_COMPARE(summary(client->state()), u"3 6 -1   -1 -1"_s);
    }

    void survivesAListThatMakesNoSense_data()
    {
        const Rows<QString, QString, QString> row("list", "signature", "path");
        row("no list", "'modems'", "s", "");
        row("other objects", "[('/a', 1)]", "a(oi)", "");
        row("refusal", "1 / 0", "a(oa{sv})", "");
        // The modem after the last one that is read would be the first by its path.
        row("one too many",
            "[('/modem%d' % i, dbus.Dictionary({'Interfaces': 5, 'Model': {'a': 1}}, "
            "signature='sv')) for i in range(16)] + [('/x', dbus.Dictionary({}, signature='sv'))]",
            "a(oa{sv})", "/modem0");
        row("another phone", "[('/hfp', {'Type': 'hfp'}), ('/modem', {'Type': 'hardware'})]",
            "a(oa{sv})", "/modem");
    }
    void survivesAListThatMakesNoSense()
    {
        QFETCH(QString, list);
        QFETCH(QString, signature);
        QVERIFY(ofono->list(list, signature) && watch());
        QTEST(client->state().path, "path");
        QCOMPARE(client->state().model + summary(client->state()), u"0 0 -1   -1 -1"_s);
    }

    void prefersTheAttachedModem()
    {
        const QString other = u"/ril_1"_s;
        QVERIFY(ofono->addModem() && ofono->addModem(other) && watch());
        QCOMPARE(client->state().path, MockOfono::path);
        QVERIFY(ofono->set(MockOfono::packet, u"Attached"_s, false));
        QTRY_COMPARE(client->state().path, other);
        QVERIFY(ofono->set(MockOfono::net, u"Status"_s, u"searching"_s, other));
        QTRY_COMPARE(client->state().path, MockOfono::path);
    }

    void survivesWhatGoesAway()
    {
        // Gone and back as another one before the list is read anew.
        QVERIFY(ofono->addModem() && watch() && ofono->removeModem() && ofono->addPlainModem());
        QTRY_COMPARE(summary(client->state()), u"1 6 80 77711 310150 27db 3db"_s);
        QVERIFY(ofono->removeModem());
        QTRY_COMPARE(client->state(), ModemState());
        QVERIFY(ofono->addPlainModem());
        QTRY_COMPARE(client->state().cellId, 10203);
        bus->stopService(MockOfono::service);
        QTRY_COMPARE(client->presence(), BusService::Presence::Absent);
        QCOMPARE(client->state(), ModemState());
        QVERIFY(ofono->start() && ofono->addModem());
        QTRY_COMPARE(summary(client->state()), u"8 8 71 310026 22801 2af101 12ab"_s);
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

    std::unique_ptr<MockBus> bus;
    std::unique_ptr<MockOfono> ofono;
    std::unique_ptr<OfonoClient> client;
};

QTEST_GUILESS_MAIN(OfonoTest)
#include "ofono_test.moc"
