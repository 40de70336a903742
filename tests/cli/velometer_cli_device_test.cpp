// The built velometer-cli on a phone of our own, against the built velometer-service.

#include "support/mockgeoclue.h"
#include "support/mockphone.h"
#include "support/programhome.h"
#include "support/registeredtest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <numeric>

using namespace Qt::StringLiterals;

namespace velometer {

class VelometerCliDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home = std::make_unique<ProgramHome>();
        home->environment.insert(u"VELOMETER_MEASUREMENT_SECONDS"_s, u"1"_s);
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        home->environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, bus->busAddress());
        // With it Qt loads no plug-in that asks a location service.
        home->environment.remove(u"QT_QTESTLIB_RUNNING"_s);
        phone = std::make_unique<MockPhone>(*bus);
    }
    void cleanup()
    {
        phone.reset();
        bus.reset();
        home.reset();
    }

    void saysWhatIsMissing()
    {
        const QByteArray page = run({u"context"_s, u"--platform"_s, u"system"_s}).printed;
        for (const auto *each :
             {"Neither ModemManager nor oFono is running: start one of them if this device has a "
              "modem.",
              "NetworkManager is not running: whether the connection is metered is unknown.",
              "The source of positions (geoclue2) cannot be reached: check that it is there, that "
              "it runs and that you may read it.",
              "There is no source of satellites."}) {
            QVERIFY2(page.contains('\n' + QByteArray(each) + '\n'), page.constData());
        }
        QCOMPARE(page.count(".\n"), 4);
    }

    void saysThatPositionsAreRefused()
    {
        MockGeoClue geoClue(*bus);
        QVERIFY(geoClue.start());
        const auto ended = run({u"context"_s, u"--verbose"_s});
        QCOMPARE(ended.status, 0);
        QVERIFY2(ended.printed.contains("location service (geoclue2) refuses"),
                 ended.printed.constData());
        QVERIFY2(ended.messages.contains("Position: refused by the system's location service "
                                         "(geoclue2)"),
                 ended.messages.constData());
        QCOMPARE(geoClue.desktopId(), u"velometer"_s);
    }

    void goesOnWhenTheLocationServiceHangs()
    {
        MockGeoClue geoClue(*bus);
        QVERIFY(geoClue.start());
        geoClue.freeze();
        const auto client = start({u"context"_s});
        // The bus gives up on it after 25 s.
        QVERIFY(client->waitForFinished(20'000));
        const QByteArray page = client->readAllStandardOutput();
        QVERIFY2(page.contains("(geoclue2) cannot be reached"), page.constData());
    }

    void showsEveryFieldThatAPhoneTells()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        const QJsonObject mobile = object(run({u"context"_s, u"--json"_s}));
        const QJsonObject network = mobile[u"network"_s].toObject();
        QCOMPARE(network[u"mode"_s], u"LteMode"_s);
        QCOMPARE(network[u"status"_s], u"Roaming"_s);
        QCOMPARE(network[u"metered"_s], u"yes-guessed"_s);
        QCOMPARE(network[u"connectivity"_s], u"full"_s);
        QCOMPARE(mobile[u"device"_s][u"model"_s], u"Modem 7"_s);

        // With a WLAN and a receiver besides, nothing at all is left open.
        QVERIFY(phone->leaveBy(MockPhone::wlanPath));
        QByteArray recording;
        for (const QByteArray text :
             {"GPGSV,1,1,03,04,40,083,46,07,17,308,41,09,20,100,30",
              "GPGSA,A,3,04,07,09,,,,,,,,,,2.0,0.9,1.5",
              "GPGGA,101500,4713.596,N,00849.104,E,1,03,0.9,410.0,M,48.0,M,,",
              "GPRMC,101500,A,4713.596,N,00849.104,E,5.0,90.0,010624,,"}) {
            recording += sentence(text);
        }
        const QStringList arguments{u"context"_s, u"--position"_s,
                                    u"nmea:"_s + home->write(u"drive.nmea"_s, recording)};
        const QByteArray page = run(arguments).printed;
        QVERIFY2(!page.contains("unknown") && page.contains("Device id"), page.constData());
        const QJsonObject context = object(run(arguments + QStringList{u"--json"_s}));
        QCOMPARE(context[u"position"_s][u"latitude"_s], 47.2266);
        QCOMPARE(context[u"network"_s][u"rsrp_dbm"_s], -97.0);
        QCOMPARE(context[u"network"_s][u"ssid"_s], u"Caf\u00e9"_s);
        QCOMPARE(context[u"network"_s][u"wlan_signal"_s], 64);
        QVERIFY(context[u"missing"_s].toArray().isEmpty());
    }

    void printsEveryChange()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        const auto client = start({u"context"_s, u"--watch"_s});
        QVERIFY(ProgramHome::waitForText(*client, "Abroad"));
        QVERIFY(phone->leaveBy(MockPhone::wlanPath));
        QVERIFY(ProgramHome::waitForText(*client, "Caf\xc3\xa9"));
        ::kill(static_cast<pid_t>(client->processId()), SIGINT);
        QCOMPARE(ProgramHome::end(*client).status, 130);
    }

    void waitsForAModemToTellItsOperator()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        QVERIFY(phone->set(MockPhone::gpp, u"OperatorCode"_s, u"22802"_s));
        bus->freezeService(MockPhone::modemService);
        const auto client = start({u"--json"_s, u"--allow-roaming"_s});
        QTest::qWait(250); // more than the client needs until it asks
        bus->thawService(MockPhone::modemService);
        // Nothing serves there, so that the test ends soon.
        const auto ended = ProgramHome::end(*client);
        QCOMPARE(ended.status, 5);
        QCOMPARE(object(ended)[u"server"_s][u"name"_s], u"Sunrise"_s);
    }

    void measuresAbroadOnlyWhenAllowed()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        home->startService();
        const QStringList arguments{u"--json"_s, u"--config"_s, home->config()};

        const auto refused = run(arguments);
        QCOMPARE(refused.status, 4);
        QVERIFY2(refused.messages.startsWith("The connection is metered (guessed"),
                 refused.messages.constData());
        const auto ended = run(arguments + QStringList{u"--allow-roaming"_s});
        QCOMPARE(ended.status, 0);
        const QJsonObject test = object(ended);
        const QJsonObject network = test[u"network"_s].toObject();
        QCOMPARE(network[u"type"_s], u"Mobile(LTE)"_s);
        QCOMPARE(network[u"mcc"_s], u"310"_s);
        QCOMPARE(network[u"mnc"_s], u"026"_s);
        QCOMPARE(network[u"cell"_s], 2814209);
        QCOMPARE(network[u"lac"_s], 0xf1e2);
        QCOMPARE(network[u"roaming"_s], true);
        QVERIFY(test[u"report"_s][u"delivered"_s].toBool());
    }

private:
    static QByteArray sentence(const QByteArray &text)
    {
        const int sum = std::accumulate(text.begin(), text.end(), 0, std::bit_xor<int>());
        return '$' + text + '*' + QByteArray::number(sum, 16).rightJustified(2, '0') + "\r\n";
    }

    ProgramHome::Process start(const QStringList &arguments) const
    {
        return home->start(QStringLiteral(CLIENT_PROGRAM), arguments);
    }
    ProgramHome::Ended run(const QStringList &arguments) const
    {
        return ProgramHome::end(*start(arguments));
    }
    static QJsonObject object(const ProgramHome::Ended &ended)
    {
        return QJsonDocument::fromJson(ended.printed).object();
    }

    std::unique_ptr<ProgramHome> home;
    std::unique_ptr<MockBus> bus;
    std::unique_ptr<MockPhone> phone;
};

} // namespace velometer

VELOMETER_TEST(VelometerCliDeviceTest)
#include "velometer_cli_device_test.moc"
