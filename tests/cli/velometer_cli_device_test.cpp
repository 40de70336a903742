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

namespace velometer {

class VelometerCliDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        phone.reset();
        bus.reset();
        home.reset();
        home = std::make_unique<ProgramHome>();
        home->environment.insert(u"VELOMETER_MEASUREMENT_SECONDS"_s, u"1"_s);
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        home->environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, bus->busAddress());
        // With it Qt loads no plug-in that asks a location service.
        home->environment.remove(u"QT_QTESTLIB_RUNNING"_s);
        phone = std::make_unique<MockPhone>(*bus);
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

    void saysThatPositionsAreRefusedOrCannotBeReached()
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
        QCOMPARE(valuesOf(mobile[u"network"_s], u"mode status metered connectivity"_s),
                 (QVariantList{u"LteMode"_s, u"Roaming"_s, u"yes-guessed"_s, u"full"_s}));
        QCOMPARE(mobile[u"device"_s][u"model"_s], u"Modem 7"_s);

        // With a WLAN and a receiver besides, nothing at all is left open.
        const auto watching = start({u"context"_s, u"--watch"_s});
        QVERIFY(ProgramHome::waitForText(*watching, "Abroad"));
        QVERIFY(phone->leaveBy(MockPhone::wlanPath));
        QVERIFY(ProgramHome::waitForText(*watching, "Caf\xc3\xa9"));
        ::kill(static_cast<pid_t>(watching->processId()), SIGINT);
        QCOMPARE(ProgramHome::end(*watching).status, 130);
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
        QCOMPARE(valuesOf(context[u"network"_s], u"rsrp_dbm ssid wlan_signal"_s),
                 (QVariantList{-97, u"Caf\u00e9"_s, 64}));
        QVERIFY(context[u"missing"_s].toArray().isEmpty());
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
        // Nothing went out: the service has not even been asked for a number.
        QCOMPARE(valuesOf(object(refused), u"user_id"_s),
                 QVariantList{QVariant::fromValue(nullptr)});
        QVERIFY(object(refused)[u"download"_s][u"bytes"_s].isNull());
        QVERIFY2(refused.messages.startsWith("The connection is metered (guessed") &&
                     refused.messages.contains("--allow-roaming"),
                 refused.messages.constData());
        const auto ended = run(arguments + QStringList{u"--allow-roaming"_s});
        QCOMPARE(ended.status, 0);
        const QJsonObject test = object(ended);
        QCOMPARE(valuesOf(test[u"network"_s], u"type mcc mnc cell lac roaming"_s),
                 (QVariantList{u"Mobile(LTE)"_s, u"310"_s, u"026"_s, 2814209, 0xf1e2, true}));
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
    static QVariantList valuesOf(const QJsonValue &object, const QString &keys)
    {
        QVariantList values;
        for (const QString &key : keys.split(u' ')) {
            values += object[key].toVariant();
        }
        return values;
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
