// The back ends for modem and network against services on a bus of our own.

#include "platform/deviceinfosource.h"
#include "platform/modemmanager/modemmanagerclient.h"
#include "platform/networkmanager/networkmanagersession.h"
#include "platform/system/devicenetworkinfosource.h"
#include "platform/system/systemplatform.h"
#include "support/mockphone.h"
#include "support/rows.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

using enum NetworkMode;
using Missing = PlatformFacts::Missing;

namespace {

const SystemInterface cable{u"eth0"_s, u"Ethernet"_s, NetworkMode::Ethernet, false, true, true};

void fireTimer(QTimer *timer)
{
    QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
}

} // namespace

class DeviceBackendsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        phone = std::make_unique<MockPhone>(*bus);
    }
    void cleanup()
    {
        network.reset();
        platform.reset();
        phone.reset();
        bus.reset();
    }

    void knowsAPhoneAbroad()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        watch();
        QTRY_VERIFY(platform->isComplete());
        QCOMPARE(network->currentMode(), Lte);
        QCOMPARE(network->networkStatus(Lte), NetworkStatus::Roaming);
        QCOMPARE(network->networkSignalStrength(Lte), 71);
        QCOMPARE(network->networkName(Lte), u"Abroad"_s);
        QCOMPARE(network->currentMobileCountryCode() + network->currentMobileNetworkCode(),
                 u"310026"_s);
        QCOMPARE(network->homeMobileCountryCode() + network->homeMobileNetworkCode(), u"22801"_s);
        QCOMPARE(network->cellId(), 2814209);
        QCOMPARE(network->locationAreaCode(), 0xf1e2);
        const auto device = platform->createDeviceInfoSource();
        QVERIFY(device->isComplete());
        QCOMPARE(device->imei(), u"356938035643809"_s);
        QCOMPARE(device->imsi(), u"228011234567890"_s);
        QCOMPARE(device->manufacturer() + device->model(), u"MakerModem 7"_s);
        const PlatformFacts facts = platform->facts();
        QCOMPARE(*facts.rsrp, -97.0);
        QCOMPARE(*facts.rsrq, -11.5);
        QCOMPARE(*facts.snr, 8.0);
        QVERIFY(*facts.metered && facts.meteredGuessed);
        QCOMPARE(facts.connectivity, PlatformFacts::Connectivity::Full);
        QVERIFY(!facts.missing.contains(Missing::ModemService));
    }

    void followsTheModem_data()
    {
        const Rows<QString, QString, QVariant, NetworkMode, NetworkStatus, qint64, int> row(
            "interface", "property", "value", "mode", "status", "cell", "area");
        const auto technology = [&](const char *name, uint bits, NetworkMode mode,
                                    int area = 0xf1e2) {
            row(name, MockPhone::modem, "AccessTechnologies", QVariant(bits), mode,
                NetworkStatus::Roaming, 2814209, area);
        };
        // Without LTE the location area counts, and here it is the reserved one.
        technology("5G beside LTE", 1U << 15 | 1U << 14, Nr);
        technology("LTE for machines", 1U << 17, Lte);
        technology("HSPA+", 1U << 9 | 1U << 5, Wcdma, -1);
        technology("EDGE", 1U << 4, Gsm, -1);
        technology("EVDO", 1U << 12, Cdma, -1);
        technology("any", 0xffffffffU, Unknown, -1);
        const auto registration = [&](const char *name, uint number, NetworkStatus status) {
            row(name, MockPhone::gpp, "RegistrationState", QVariant(number), Lte, status, 2814209,
                0xf1e2);
        };
        registration("not registered", 0, NetworkStatus::NoNetworkAvailable);
        registration("home", 1, NetworkStatus::HomeNetwork);
        registration("searching", 2, NetworkStatus::Searching);
        registration("denied", 3, NetworkStatus::Denied);
        registration("unknown", 4, NetworkStatus::Undefined);
        registration("roaming, messages alone", 7, NetworkStatus::Roaming);
        registration("emergency calls", 8, NetworkStatus::EmergencyOnly);
        registration("emergency calls of another kind", 11, NetworkStatus::EmergencyOnly);
        registration("a state of the future", 99, NetworkStatus::Undefined);
        const auto cell = [&](const char *name, const char *text, qint64 id, int area) {
            row(name, MockPhone::location, "Location", MockPhone::at(QString::fromLatin1(text)),
                Lte, NetworkStatus::Roaming, id, area);
        };
        cell("other cell", "310,026,FFFE,2AF102,F1E3", 2814210, 0xf1e3);
        cell("36 bits", "310,026,FFFE,FFFFFFFFF,F1E3", 0xfffffffffLL, 0xf1e3);
        cell("no tracking area", "310,026,12AB,2AF102,0", 2814210, 0x12ab);
        cell("no area at all", "310,026,FFFE,2AF102,0", 2814210, -1);
        cell("37 bits", "310,026,12AB,1FFFFFFFFF,1", -1, 1);
        cell("negative", "310,026,-1,-2,-3", -1, -1);
        cell("too few fields", "310,026", -1, -1);
        cell("nonsense", ",,,,,,,,,,", -1, -1);
    }
    void followsTheModem()
    {
        QFETCH(QString, interface);
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        QFETCH(NetworkMode, mode);
        QFETCH(NetworkStatus, status);
        QFETCH(qint64, cell);
        QFETCH(int, area);
        QVERIFY(phone->startModem() && phone->startNetwork());
        watch();
        QTRY_COMPARE(network->currentMode(), Lte);
        QSignalSpy modes(network.get(), &NetworkInfoSource::networkModeChanged);
        QVERIFY(phone->set(interface, property, value));
        QTRY_COMPARE(network->currentMode(), mode);
        QTRY_COMPARE(network->networkStatus(mode), status);
        QTRY_COMPARE(network->cellId(), cell);
        QTRY_COMPARE(network->locationAreaCode(), area);
        QCOMPARE(modes.size(), mode == Lte ? 0 : 1);
    }

    void takesNothingThatMakesNoSense_data()
    {
        const Rows<QString, QString, QVariant> row("interface", "property", "value");
        row("signal over 100", MockPhone::modem, "SignalQuality",
            QVariant::fromValue(Quality{101}));
        row("signal as text", MockPhone::modem, "SignalQuality", QVariant(u"71"_s));
        row("signal as list", MockPhone::modem, "SignalQuality", QVariant(QStringList{u"7"_s}));
        row("technologies as text", MockPhone::modem, "AccessTechnologies", QVariant(u"LTE"_s));
        row("sim as text", MockPhone::modem, "Sim", QVariant(u"/x"_s));
        row("imei with letters", MockPhone::gpp, "Imei", QVariant(u"35693803564380x"_s));
        row("code with letters", MockPhone::gpp, "OperatorCode", QVariant(u"31o026"_s));
        row("long code", MockPhone::gpp, "OperatorCode", QVariant(u"3100260"_s));
        row("location as text", MockPhone::location, "Location", QVariant(u"310,026,1,2,3"_s));
        row("radio as text", MockPhone::signal, "Lte", QVariant(u"-97"_s));
        row("radio out of range", MockPhone::signal, "Lte",
            QVariant(QVariantMap{{u"rsrp"_s, 1e300}, {u"snr"_s, qQNaN()}, {u"rsrq"_s, u"1"_s}}));
    }
    void takesNothingThatMakesNoSense()
    {
        QFETCH(QString, interface);
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        QVERIFY(phone->startModem());
        ModemManagerClient client(bus->connection());
        QTRY_VERIFY(client.isComplete());
        QVERIFY(phone->set(interface, property, value));
        // The next change shows that the one before has been taken.
        QVERIFY(
            phone->set(MockPhone::gpp, u"OperatorName"_s, u" \t\x1b[31m"_s + QString(1000, u'x')));
        QTRY_COMPARE(client.state().operatorName.size(), 128);
        const ModemState &state = client.state();
        QVERIFY(!state.operatorName.contains(u'\x1b'));
        QCOMPARE(state.signal, property == "SignalQuality"_L1 ? -1 : 71);
        QCOMPARE(state.mode, property == "AccessTechnologies"_L1 ? Unknown : Lte);
        QCOMPARE(state.imei, property == "Imei"_L1 ? u"A1"_s : u"356938035643809"_s);
        QCOMPARE(state.imsi.isEmpty(), property == "Sim"_L1);
        QCOMPARE(state.mcc.isEmpty(), property == "OperatorCode"_L1);
        QCOMPARE(state.cellId == -1, property == "Location"_L1);
        const bool radio = property != "Lte"_L1 && property != "AccessTechnologies"_L1;
        QCOMPARE(state.rsrp.has_value(), radio);
        QCOMPARE(state.rsrq.has_value(), radio);
        QCOMPARE(state.snr.has_value(), radio);
    }

    void prefersTheConnectedModem()
    {
        const QString other = u"/org/freedesktop/ModemManager1/Modem/10"_s;
        QVERIFY(phone->startModem() && phone->addModem(other));
        ModemManagerClient client(bus->connection());
        QTRY_COMPARE(client.state().path, MockPhone::modemPath);
        QVERIFY(phone->set(MockPhone::modem, u"State"_s, 8));
        QTRY_COMPARE(client.state().path, other);
        QVERIFY(phone->set(MockPhone::modem, u"State"_s, 11));
        QTRY_COMPARE(client.state().path, MockPhone::modemPath);
    }

    void survivesWhatGoesAway()
    {
        QVERIFY(phone->startModem());
        watch();
        QTRY_COMPARE(network->networkStatus(Lte), NetworkStatus::Roaming);
        QSignalSpy home(network.get(), &NetworkInfoSource::homeOperatorChanged);

        // Unplugged.
        QVERIFY(phone->removeModem());
        QTRY_VERIFY(platform->facts().missing.contains(Missing::Modem));
        QCOMPARE(network->cellId(), -1);
        QCOMPARE(network->networkStatus(Lte), NetworkStatus::NoNetworkAvailable);
        QCOMPARE(network->homeMobileCountryCode(), QString());
        QVERIFY(!home.isEmpty());

        // The service goes, and comes back.
        bus->stopService(MockPhone::modemService);
        QTRY_VERIFY(platform->facts().missing.contains(Missing::ModemService));
        // It had its name before it had the modem.
        QVERIFY(phone->startModem() && phone->announce());
        QTRY_COMPARE(network->networkStatus(Lte), NetworkStatus::Roaming);
        QCOMPARE(network->homeMobileCountryCode(), u"228"_s);
    }

    void asksForTheCell_data()
    {
        const Rows<uint, bool, bool, QString, qint64> row("enabled", "signals", "refused", "asked",
                                                          "cell");
        row("not enabled", 2U, false, false, "Setup 3 False", 0x2af101);
        row("refused", 2U, false, true, "Setup 3 False", -1);
        row("enabled by others", 1U, false, false, "", 0x2af101);
        row("signalled by others", 1U, true, false, "", -1);
    }
    void asksForTheCell()
    {
        QFETCH(uint, enabled);
        QFETCH(bool, signals);
        QFETCH(bool, refused);
        QFETCH(QString, asked);
        QVERIFY(phone->startModem());
        QVERIFY(bus->addMethod(MockPhone::modemService, MockPhone::modemPath, MockPhone::location,
                               {u"GetLocation"_s, QString(), u"a{uv}"_s,
                                u"ret = {dbus.UInt32(1): dbus.String('310,026,FFFE,2AF101,F1E2', "
                                "variant_level=1)}"_s}));
        QVERIFY(bus->addMethod(
            MockPhone::modemService, MockPhone::modemPath, MockPhone::location,
            {u"Setup"_s, u"ub"_s, QString(),
             u"self.UpdateProperties('%1', {'Model': 'Setup %d %s' % (args[0], bool(args[1]))})\n"_s
                     .arg(MockPhone::modem) +
                 (refused ? u"raise dbus.exceptions.DBusException('No', name='no.No')"_s
                          : u"self.UpdateProperties('%1', {'Enabled': args[0]})"_s.arg(
                                MockPhone::location))}));
        QVERIFY(phone->set(MockPhone::location, u"Location"_s,
                           QVariant::fromValue(LocationMap{{2U, QDBusVariant(u"x"_s)}})));
        QVERIFY(phone->set(MockPhone::location, u"SignalsLocation"_s, signals));
        QVERIFY(phone->set(MockPhone::location, u"Enabled"_s, enabled));
        ModemManagerClient client(bus->connection());
        QTRY_VERIFY(client.isComplete());
        QTRY_COMPARE(client.state().model, asked.isEmpty() ? u"Modem 7"_s : asked);
        QTRY_COMPARE(client.state().cellId, cell());
    }

    void asksForTheSignal_data()
    {
        const Rows<int, uint, QString, QString> row("state", "rate", "asked", "left");
        row("connected", 11, 0U, "Setup 3", "Setup 0");
        row("asked by others", 11, 10U, "Modem 7", "Modem 7");
        row("off", 3, 0U, "Modem 7", "Modem 7");
    }
    void asksForTheSignal()
    {
        QFETCH(int, state);
        QFETCH(uint, rate);
        QFETCH(QString, asked);
        QFETCH(QString, left);
        QVERIFY(phone->startModem());
        QVERIFY(bus->addMethod(
            MockPhone::modemService, MockPhone::modemPath, MockPhone::signal,
            {u"Setup"_s, u"u"_s, QString(),
             u"self.UpdateProperties('%1', {'Model': 'Setup %d' % args[0]})\n"
             "self.UpdateProperties('%1.Signal', {'Rate': args[0]})"_s.arg(MockPhone::modem)}));
        QVERIFY(phone->set(MockPhone::signal, u"Rate"_s, rate));
        QVERIFY(phone->set(MockPhone::modem, u"State"_s, state));
        auto client = std::make_unique<ModemManagerClient>(bus->connection());
        QTRY_VERIFY(client->isComplete());
        QTRY_COMPARE(client->state().model, asked);
        if (state < 8) {
            // It is switched on.
            QVERIFY(phone->set(MockPhone::modem, u"State"_s, 8));
            QTRY_COMPARE(client->state().model, u"Setup 3"_s);
            return;
        }
        client.reset();
        QVERIFY(phone->set(MockPhone::modem, u"State"_s, 3));
        const ModemManagerClient later(bus->connection());
        QTRY_COMPARE(later.state().model, left);
    }

    void followsTheWlan()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        watch();
        QTRY_COMPARE(network->networkStatus(Lte), NetworkStatus::Roaming);
        QStringList heard;
        connect(network.get(), &NetworkInfoSource::networkModeChanged, this,
                [&](NetworkMode mode) { heard += u"mode %1"_s.arg(int(mode)); });
        connect(network.get(), &NetworkInfoSource::networkStatusChanged, this,
                [&](NetworkMode mode, NetworkStatus status) {
                    heard += u"status %1 %2"_s.arg(int(mode)).arg(int(status));
                });
        connect(network.get(), &NetworkInfoSource::networkNameChanged, this,
                [&](NetworkMode mode, const QString &name) {
                    heard += u"name %1 %2"_s.arg(int(mode)).arg(name);
                });
        QVERIFY(phone->leaveBy(MockPhone::wlanPath));
        QTRY_COMPARE(network->networkName(Wlan), u"Caf\u00e9"_s);
        QCOMPARE(network->currentMode(), Wlan);
        QCOMPARE(network->networkSignalStrength(Wlan), 64);
        QCOMPARE(network->networkStatus(Lte), NetworkStatus::Roaming);
        QCOMPARE(network->networkSignalStrength(Lte), 71);
        // One change, nothing in between.
        QCOMPARE(heard, (QStringList{u"mode 4"_s, u"status 4 5"_s, u"name 4 Caf\u00e9"_s}));
        heard.clear();
        QVERIFY(phone->leaveBy(MockPhone::mobilePath));
        QTRY_COMPARE(network->currentMode(), Lte);
        QTRY_COMPARE(heard, (QStringList{u"mode 8"_s, u"status 4 1"_s, u"name 4 "_s,
                                         u"status 8 8"_s, u"name 8 Abroad"_s}));
    }

    void opensAndLosesTheConnection()
    {
        QVERIFY(phone->startNetwork() && phone->leaveBy(u"/"_s));
        NetworkManagerClient networkClient(bus->connection());
        ModemManagerClient modemClient(bus->connection());
        NetworkManagerSession session(networkClient, modemClient, [] { return SystemNetwork(); });
        QSignalSpy opened(&session, &NetworkSession::opened);
        QSignalSpy failed(&session, &NetworkSession::error);
        session.open();
        QTRY_VERIFY(networkClient.isComplete() && modemClient.isComplete());
        QVERIFY(!session.isOpen());
        // Ten seconds without a connection.
        fireTimer(session.findChild<QTimer *>(u"open"_s));
        QCOMPARE(failed.size(), 1);

        session.open();
        QVERIFY(phone->leaveBy(MockPhone::mobilePath));
        QTRY_VERIFY(session.isOpen());
        auto *watchTimer = session.findChild<QTimer *>(u"watch"_s);
        // A look without a connection is a hand-over, two in a row are a loss.
        QVERIFY(phone->leaveBy(u"/"_s));
        QTRY_VERIFY(!networkClient.state().activated);
        fireTimer(watchTimer);
        QVERIFY(session.isOpen());
        fireTimer(watchTimer);
        QVERIFY(!session.isOpen());
        QCOMPARE(opened.size(), 1);
        QCOMPARE(failed.size(), 2);
    }

    void takesWhatOthersConnected()
    {
        QVERIFY(phone->startNetwork() && phone->leaveBy(u"/"_s));
        const auto managerState = [&](uint state) {
            return bus->set(MockPhone::networkService, MockPhone::networkPath,
                            MockPhone::networkService, u"State"_s, state);
        };
        QVERIFY(managerState(40));
        SystemNetwork interfaces{{cable}, u"eth0"_s};
        const auto lookUp = [&] { return interfaces; };
        NetworkManagerClient manager(bus->connection());
        const ModemManagerClient modem(bus->connection());
        const DeviceNetworkInfoSource info(modem, manager, lookUp);
        NetworkManagerSession session(manager, modem, lookUp);
        session.open();
        QTRY_VERIFY(manager.isComplete() && modem.isComplete());
        // What NetworkManager is about to connect is waited for.
        QVERIFY(!session.isOpen());
        QVERIFY(managerState(20));
        QTRY_VERIFY(session.isOpen());
        QCOMPARE(info.currentMode(), NetworkMode::Ethernet);
        QCOMPARE(info.networkStatus(NetworkMode::Ethernet), NetworkStatus::Connected);
    }

    void givesUpOnServicesThatHang()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        bus->freezeService(MockPhone::modemService);
        bus->freezeService(MockPhone::networkService);
        const SystemPlatform system(bus->connection());
        QTRY_VERIFY(system.isComplete());
        QCOMPARE(system.facts().missing,
                 (QList{Missing::ModemServiceAnswer, Missing::NetworkManagerAnswer}));
    }

    void doesWithoutServices_data()
    {
        const Rows<bool, bool, QList<Missing>> row("hasBus", "up", "missing");
        row("no bus", false, true, {Missing::SystemBus});
        row("no services", true, true, {Missing::ModemService, Missing::NetworkManager});
        row("nothing up", true, false, {Missing::ModemService, Missing::NetworkManager});
    }
    void doesWithoutServices()
    {
        QFETCH(bool, hasBus);
        QFETCH(bool, up);
        QFETCH(QList<Missing>, missing);
        const QDBusConnection connection = hasBus ? bus->connection() : QDBusConnection(u"-"_s);
        SystemPlatform system(connection);
        QTRY_VERIFY(system.isComplete());
        QCOMPARE(system.facts().missing, missing);
        const auto device = system.createDeviceInfoSource();
        QVERIFY(device->isComplete() && device->imei().isEmpty());

        SystemNetwork interfaces;
        if (up)
            interfaces = {{cable}, u"eth0"_s};
        const auto lookUp = [&] { return interfaces; };
        const ModemManagerClient modem(connection);
        const NetworkManagerClient manager(connection);
        const DeviceNetworkInfoSource info(modem, manager, lookUp);
        QCOMPARE(info.currentMode(), up ? NetworkMode::Ethernet : Unknown);
        NetworkManagerSession session(manager, modem, lookUp);
        QSignalSpy failed(&session, &NetworkSession::error);
        session.open();
        QVERIFY(!session.isOpen());
        QTRY_COMPARE(session.isOpen(), up);
        QTRY_COMPARE(failed.size(), up ? 0 : 1);
    }

private:
    void watch()
    {
        platform = std::make_unique<SystemPlatform>(bus->connection());
        network = platform->createNetworkInfoSource();
    }
    static qint64 cell()
    {
        QFETCH(qint64, cell);
        return cell;
    }

    std::unique_ptr<MockBus> bus;
    std::unique_ptr<MockPhone> phone;
    std::unique_ptr<SystemPlatform> platform;
    std::unique_ptr<NetworkInfoSource> network;
};

QTEST_GUILESS_MAIN(DeviceBackendsTest)
#include "devicebackends_test.moc"
