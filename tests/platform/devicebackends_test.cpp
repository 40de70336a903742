// The back ends for modem and network against services on a bus of our own.

#include "platform/deviceinfosource.h"
#include "platform/modemmanager/modemmanagerclient.h"
#include "platform/networkmanager/networkmanagersession.h"
#include "platform/system/devicenetworkinfosource.h"
#include "platform/system/systemplatform.h"
#include "support/fakeclock.h"
#include "support/mockphone.h"
#include "support/modemstory.h"
#include "support/registeredtest.h"

#include <QSignalSpy>

namespace velometer {

using enum NetworkMode;
using Missing = PlatformFacts::Missing;

namespace {

const MachineInterface cable{u"eth0"_s, u"Ethernet"_s, NetworkMode::Ethernet, false, true, true};

const NetworkState abroad{Lte,      {{Lte, {NetworkStatus::Roaming, 71, u"Abroad"_s}}},
                          u"310"_s, u"026"_s,
                          u"228"_s, u"01"_s,
                          2814209,  0xf1e2,
                          false,    {-97, -11.5, 8, u"B20"_s}};

} // namespace

class DeviceBackendsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        network.reset();
        platform.reset();
        phone.reset();
        bus.reset();
        clock.reset();
        // However slow the services are: time passes when a test says so.
        clock = std::make_unique<FakeClock>();
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        phone = std::make_unique<MockPhone>(*bus);
    }
    void knowsAPhoneAbroad()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        watch();
        QSignalSpy completed(platform.get(), &Platform::completed);
        // Nobody has answered yet whether there is a modem.
        QVERIFY(network->state().codesPending && !platform->isComplete());
        QTRY_COMPARE(completed.size(), 1);
        QVERIFY(platform->isComplete());
        QCOMPARE(network->state(), abroad);
        const auto device = platform->createDeviceInfoSource();
        QVERIFY(device->isComplete());
        QCOMPARE(
            (QStringList{device->imei(), device->imsi(), device->manufacturer(), device->model()}),
            (QStringList{u"356938035643809"_s, u"228011234567890"_s, u"Maker"_s, u"Modem 7"_s}));
        const PlatformFacts facts = platform->facts();
        QCOMPARE((QList{*facts.rsrp, *facts.rsrq, *facts.snr}), (QList{-97.0, -11.5, 8.0}));
        QVERIFY(*facts.metered && facts.meteredGuessed);
        QCOMPARE(facts.connectivity, PlatformFacts::Connectivity::Full);
        QVERIFY(!facts.missing.contains(Missing::ModemService));
    }

    void waitsForAModemThatFindsItsNetworkLate()
    {
        QVERIFY(phone->startModem() && phone->set(MockPhone::gpp, u"OperatorCode"_s, QString()));
        watch();
        QTRY_VERIFY(platform->isComplete());
        QVERIFY(network->state().codesPending && network->state().homeMcc == "228"_L1);
        QVERIFY(phone->set(MockPhone::gpp, u"OperatorCode"_s, u"310026"_s));
        QTRY_VERIFY(!network->state().codesPending);
        QCOMPARE(network->state().mcc, u"310"_s);
    }

    void followsTheModem_data()
    {
        const Rows<QString, QString, QVariant, QString> row("interface", "property", "value",
                                                            "expected");
        const auto technology = [&](const char *name, uint bits, const char *expected) {
            row(name, MockPhone::modem, "AccessTechnologies", bits, expected);
        };
        // Which measures its reference signals where 5G does not.
        technology("5G beside LTE", 1U << 15 | 1U << 14, "mode 9");
        technology("5G alone", 1U << 15, "mode 9, radio");
        // Without LTE the location area counts, and here it is the reserved one.
        technology("HSPA+", 1U << 9 | 1U << 5, "mode 3, area -1, radio");
        technology("EDGE", 1U << 4, "mode 1, area -1, radio");
        technology("any", 0xffffffffU, "mode 0, area -1, radio");
        const auto cell = [&](const char *name, const QString &fields, const char *expected) {
            row(name, MockPhone::location, "Location", MockPhone::at(fields), expected);
        };
        cell("36 bits", u"310,026,FFFE,FFFFFFFFF,F1E3"_s, "cell fffffffff, area f1e3");
        cell("no tracking area", u"310,026,12AB,2AF102,0"_s, "cell 2af102, area 12ab");
        cell("37 bits", u"310,026,12AB,1FFFFFFFFF,1"_s, "cell -1, area 1");
        cell("negative", u"310,026,-1,-2,-3"_s, "cell -1, area -1");
        cell("nonsense", u",,,,,,,,,,"_s, "cell -1, area -1");

        row("signal over 100", MockPhone::modem, "SignalQuality", MockPhone::quality(101),
            "signal -1");
        row("signal as dictionary", MockPhone::modem, "SignalQuality", properties("x", 1),
            "signal -1");
        row("technologies as text", MockPhone::modem, "AccessTechnologies", u"LTE"_s,
            "mode 0, area -1, radio");
        row("sim as text", MockPhone::modem, "Sim", u"/x"_s, "home , imsi ");
        row("imei with letters", MockPhone::gpp, "Imei", u"35693803564380x"_s, "imei A1");
        row("location as text", MockPhone::location, "Location", u"310,026,1,2,3"_s,
            "cell -1, area -1");
        row("radio out of range", MockPhone::signal, "Lte",
            properties("rsrp", 1e300, "snr", qQNaN(), "rsrq", "1"), "radio");
    }
    void followsTheModem()
    {
        const auto [interface, property, value] = currentRow<QString, QString, QVariant>();
        QVERIFY(phone->startModem());
        ModemManagerClient client(bus->connection());
        QTRY_VERIFY(client.isComplete());
        const ModemState before = client.state();
        QCOMPARE(told(before), u"mode 8, status 8, signal 71, network 310026, home 22801, "
                               "cell 2af101, area f1e2, imei 356938035643809, "
                               "imsi 228011234567890, radio -97 -11.5 8"_s);
        QVERIFY(phone->set(interface, property, value));
        // The next change shows that the one before has been taken.
        QVERIFY(phone->set(MockPhone::modem, u"Model"_s, u" \t\x1b[31m"_s + QString(1000, u'x')));
        QTRY_COMPARE(client.state().model, u"[31m"_s + QString(124, u'x'));
        QTEST(told(client.state(), before), "expected");
    }

    void knowsItsRegistration()
    {
        using enum NetworkStatus;
        QVERIFY(phone->startModem());
        const ModemManagerClient client(bus->connection());
        uint number = 0;
        // The last one is of the future.
        for (const NetworkStatus expected :
             {NoNetworkAvailable, HomeNetwork, Searching, Denied, Undefined, Roaming, HomeNetwork,
              Roaming, EmergencyOnly, HomeNetwork, Roaming, EmergencyOnly, Undefined}) {
            QVERIFY(phone->set(MockPhone::gpp, u"RegistrationState"_s, number++));
            QTRY_COMPARE(client.state().status, expected);
        }
    }

    void believesTheServiceAloneAndPrefersTheConnectedModem()
    {
        const QString other = u"/org/freedesktop/ModemManager1/Modem/10"_s;
        QVERIFY(phone->startModem() && phone->addModem(other));
        ModemManagerClient client(bus->connection());
        QTRY_VERIFY(client.isComplete());
        QTRY_COMPARE(client.state().path, MockPhone::modemPath);
        const QString properties = u"org.freedesktop.DBus.Properties"_s;
        const QString change = u"PropertiesChanged"_s;
        // Somebody else's signal, and one that tells something else than its name says.
        QDBusMessage foreign = QDBusMessage::createSignal(MockPhone::modemPath, properties, change);
        foreign << MockPhone::modem << velometer::properties("Model", "Foreign") << QStringList();
        QVERIFY(bus->connection().send(foreign));
        QVERIFY(bus->mock(MockPhone::modemService, MockPhone::modemPath, "EmitSignal", properties,
                          change, "s", QVariantList{MockPhone::modem}));
        QVERIFY(phone->set(MockPhone::gpp, u"OperatorName"_s, u"Here"_s));
        QTRY_COMPARE(client.state().operatorName, u"Here"_s);
        QCOMPARE(client.state().model, u"Modem 7"_s);

        QVERIFY(phone->set(MockPhone::modem, u"State"_s, 8));
        QTRY_COMPARE(client.state().path, other);
        QVERIFY(phone->set(MockPhone::modem, u"State"_s, 11));
        QTRY_COMPARE(client.state().path, MockPhone::modemPath);
    }

    void survivesWhatGoesAway()
    {
        QVERIFY(phone->startModem());
        watch();
        QTRY_COMPARE(network->state().link(Lte).status, NetworkStatus::Roaming);

        // Unplugged.
        QVERIFY(phone->removeModem());
        QTRY_VERIFY(platform->facts().missing.contains(Missing::Modem));
        QCOMPARE(network->state().link(Lte), NetworkState::Link());
        QCOMPARE(network->state().cell, std::nullopt);
        QVERIFY(!network->state().codesPending && network->state().homeMcc.isEmpty());

        // The service goes, and comes back.
        bus->stopService(MockPhone::modemService);
        QTRY_VERIFY(platform->facts().missing.contains(Missing::ModemService));
        // It had its name before it had the modem.
        QVERIFY(phone->startModem() && phone->announce());
        QTRY_COMPARE(network->state().link(Lte).status, NetworkStatus::Roaming);
        QCOMPARE(network->state().homeMcc, u"228"_s);
    }

    void asksForWhatNobodyAskedFor()
    {
        // The modem's name tells what was asked of it.
        const auto addSetup = [&](const QString &interface, const char *in, const char *property) {
            return bus->addMethod(MockPhone::modemService, MockPhone::modemPath, interface,
                                  u"Setup"_s, in, QString(),
                                  u"self.asked = getattr(self, 'asked', '') + '%1 %d ' % args[0]\n"
                                  "self.UpdateProperties('%2', {'Model': self.asked})\n"
                                  "self.UpdateProperties('%3', {'%1': args[0]})"_s.arg(
                                      QLatin1String(property), MockPhone::modem, interface));
        };
        QVERIFY(phone->startModem() && addSetup(MockPhone::location, "ub", "Enabled") &&
                addSetup(MockPhone::signal, "u", "Rate") &&
                bus->addMethod(MockPhone::modemService, MockPhone::modemPath, MockPhone::location,
                               u"GetLocation"_s, "", u"a{uv}"_s,
                               u"ret = {dbus.UInt32(1): dbus.String('310,026,FFFE,2AF102,F1E2', "
                               "variant_level=1)}"_s) &&
                phone->set(MockPhone::location, u"SignalsLocation"_s, false) &&
                phone->set(MockPhone::location, u"Enabled"_s, 2U) &&
                phone->set(MockPhone::signal, u"Rate"_s, 0U) &&
                phone->set(MockPhone::modem, u"State"_s, 3));
        auto client = std::make_unique<ModemManagerClient>(bus->connection());
        QTRY_VERIFY(client->isComplete());
        QCOMPARE(client->state().model, u"Modem 7"_s);
        // It is switched on.
        QVERIFY(phone->set(MockPhone::modem, u"State"_s, 8));
        QTRY_COMPARE(client->state().model, u"Enabled 3 Rate 3"_s);
        // Whoever will not have the cell signalled has it polled.
        QVERIFY(phone->set(MockPhone::location, u"Location"_s,
                           asVariant(LocationMap{{2U, QDBusVariant(u"x"_s)}})));
        QTRY_COMPARE(client->state().cellId, 0x2af102);
        client.reset();

        // What others ask for is left to them.
        QVERIFY(phone->set(MockPhone::signal, u"Rate"_s, 10U));
        const ModemManagerClient later(bus->connection());
        for (const QString &name : {u"One"_s, u"Two"_s}) {
            QVERIFY(phone->set(MockPhone::gpp, u"OperatorName"_s, name));
            QTRY_COMPARE(later.state().operatorName, name);
        }
        QCOMPARE(later.state().model, u"Enabled 3 Rate 3 Rate 0"_s);
    }

    void followsTheWlan()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        watch();
        QTRY_COMPARE(network->state(), abroad);
        QSignalSpy changed(network.get(), &NetworkInfoSource::changed);
        NetworkState wlan = abroad;
        wlan.mode = Wlan;
        wlan.links[Wlan] = {NetworkStatus::Connected, 64, u"Caf\u00e9"_s};
        QVERIFY(phone->leaveBy(MockPhone::wlanPath));
        QTRY_COMPARE(network->state(), wlan);
        // One change, nothing in between.
        QCOMPARE(changed.size(), 1);
        QVERIFY(phone->leaveBy(MockPhone::mobilePath));
        QTRY_COMPARE(network->state(), abroad);
        QCOMPARE(changed.size(), 2);
    }

    void findsWhatCarriesTheTraffic_data()
    {
        const Rows<QString, QString, QString, QVariant, QString> row("type", "below", "property",
                                                                     "mobileHas", "expected");
        const auto plain = [&](const char *type, const char *expected) {
            row(type, type, "/", "Default", false, expected);
        };
        plain("wireguard", "4 Caf\u00e9 64");
        plain("tun", "4 Caf\u00e9 64");
        plain("pppoe", "5  -1");
        plain("infiniband", "5  -1");
        plain("bridge", "5  -1");
        row("tunnel over the default route", "wireguard", "/", "Default", true, "8 Abroad 71");
        row("VPN over the modem", "vpn", MockPhone::mobilePath, "Default", false, "8 Abroad 71");
        row("bond of the modem", "bond", "/", "Controller", asVariant(MockPhone::device),
            "8 Abroad 71");
        // Then the modem is there all the same: it may roam.
        row("in a circle", "vpn", MockPhone::upperPath, "Default", false, "0 Abroad 71");
    }
    void findsWhatCarriesTheTraffic()
    {
        const auto [type, below, property, mobileHas] =
            currentRow<QString, QString, QString, QVariant>();
        QVERIFY(phone->startModem() && phone->startNetwork() &&
                phone->setConnection(MockPhone::mobilePath, property, mobileHas) &&
                phone->leaveByUpper(qPrintable(type), below));
        watch();
        QTRY_VERIFY(platform->isComplete());
        const NetworkState::Link link = network->state().current();
        QTEST(u"%1 %2 %3"_s.arg(int(network->state().mode))
                  .arg(link.name)
                  .arg(link.signal.value_or(-1)),
              "expected");
    }

    void opensAndLosesTheConnection()
    {
        const auto managerState = [&](uint state) {
            return bus->set(MockPhone::networkService, MockPhone::networkPath,
                            MockPhone::networkService, u"State"_s, state);
        };
        QVERIFY(phone->startNetwork() && phone->leaveBy(u"/"_s));
        MachineNetwork interfaces;
        const auto lookUp = [&] { return interfaces; };
        NetworkManagerClient manager(bus->connection());
        const ModemManagerClient modem(bus->connection());
        NetworkManagerSession session(manager, modem, lookUp);
        QSignalSpy opened(&session, &NetworkSession::opened);
        QSignalSpy failed(&session, &NetworkSession::error);
        session.open();
        QTRY_VERIFY(manager.isComplete() && modem.isComplete());
        QVERIFY(!session.isOpen());
        clock->advance(9999ms);
        QVERIFY(failed.isEmpty());
        clock->advance(1ms);
        QCOMPARE(failed.size(), 1);

        session.open();
        QVERIFY(phone->leaveBy(MockPhone::mobilePath));
        QTRY_VERIFY(session.isOpen());
        clock->advance(2s); // a look that finds it
        // A look without a connection is a hand-over, two in a row are a loss.
        QVERIFY(phone->leaveBy(u"/"_s));
        QTRY_VERIFY(!manager.state().activated);
        clock->advance(2s);
        QVERIFY(session.isOpen());
        clock->advance(2s);
        QVERIFY(!session.isOpen());
        QCOMPARE(opened.size(), 1);
        QCOMPARE(failed.size(), 2);

        // What NetworkManager is about to connect is waited for; what others connected is taken.
        QVERIFY(managerState(40));
        QTRY_VERIFY(manager.state().connecting);
        interfaces = {{cable}, u"eth0"_s};
        const DeviceNetworkInfoSource info(modem, manager, lookUp);
        session.open();
        // One turn to look, another to open.
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        QVERIFY(!session.isOpen());
        QVERIFY(managerState(20));
        QTRY_VERIFY(session.isOpen());
        QCOMPARE(info.state().mode, NetworkMode::Ethernet);
        QCOMPARE(info.state().current().status, NetworkStatus::Connected);
    }

    void givesUpOnServicesThatHang()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        bus->freezeService(MockPhone::modemService);
        bus->freezeService(MockPhone::networkService);
        const SystemPlatform system(bus->connection());
        QTRY_VERIFY((clock->advance(100ms), system.isComplete()));
        QCOMPARE(system.facts().missing,
                 (QList{Missing::ModemServiceAnswer, Missing::NetworkManagerAnswer}));
    }

    void doesWithoutServices()
    {
        // Without a bus, but with a network; with a bus on which nobody is.
        for (const bool up : {true, false}) {
            const QDBusConnection connection = up ? QDBusConnection(u"-"_s) : bus->connection();
            SystemPlatform system(connection);
            // Also where there is nobody to wait for.
            QVERIFY(QSignalSpy(&system, &Platform::completed).wait());
            QVERIFY(system.isComplete());
            QCOMPARE(system.facts().missing,
                     (up ? QList{Missing::SystemBus}
                         : QList{Missing::ModemService, Missing::NetworkManager}));
            QVERIFY(system.createDeviceInfoSource()->isComplete());

            const MachineNetwork interfaces =
                up ? MachineNetwork{{cable}, u"eth0"_s} : MachineNetwork();
            const auto lookUp = [&] { return interfaces; };
            const ModemManagerClient modem(connection);
            const NetworkManagerClient manager(connection);
            const DeviceNetworkInfoSource info(modem, manager, lookUp);
            QCOMPARE(info.state().mode, up ? NetworkMode::Ethernet : Unknown);
            QTRY_VERIFY(!info.state().codesPending);
            NetworkManagerSession session(manager, modem, lookUp);
            QSignalSpy failed(&session, &NetworkSession::error);
            session.open();
            QVERIFY(!session.isOpen());
            QTRY_COMPARE(session.isOpen(), up);
            QTRY_COMPARE(failed.size(), up ? 0 : 1);
        }
    }

private:
    void watch()
    {
        platform = std::make_unique<SystemPlatform>(bus->connection());
        network = platform->createNetworkInfoSource();
    }
    std::unique_ptr<FakeClock> clock;
    std::unique_ptr<MockBus> bus;
    std::unique_ptr<MockPhone> phone;
    std::unique_ptr<SystemPlatform> platform;
    std::unique_ptr<NetworkInfoSource> network;
};

} // namespace velometer

VELOMETER_TEST(DeviceBackendsTest)
#include "devicebackends_test.moc"
