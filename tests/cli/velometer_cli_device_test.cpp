// The built velometer-cli on a phone of our own, against the built velometer-service.

#include "support/mockgeoclue.h"
#include "support/mockphone.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <functional>
#include <memory>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int limitMs = 60'000;

} // namespace

class VelometerCliDeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        phone = std::make_unique<MockPhone>(*bus);
    }
    void cleanup()
    {
        phone.reset();
        bus.reset();
        home.reset();
    }

    void saysWhatIsMissing_data()
    {
        QTest::addColumn<QString>("platform");
        QTest::addColumn<QStringList>("missing");
        QTest::newRow("no services")
            << u"system"_s
            << QStringList{u"Neither ModemManager nor oFono is running."_s,
                           u"NetworkManager is not running."_s,
                           u"The source of positions (geoclue2) cannot be reached: check that it "
                           "is there, that it runs and that you may read it."_s,
                           u"There is no source of satellites."_s};
        QTest::newRow("nobody asked")
            << u"none"_s
            << QStringList{u"There is no source of positions: install a location service "
                           "(GeoClue), or name a receiver with --position."_s};
    }
    void saysWhatIsMissing()
    {
        QFETCH(QString, platform);
        QFETCH(QStringList, missing);
        const QByteArray page = run({u"context"_s, u"--platform"_s, platform});
        QCOMPARE(status, 0);
        for (const QString &each : missing)
            QVERIFY2(page.contains('\n' + each.toUtf8() + '\n'), page.constData());
        QCOMPARE(page.count(".\n"), missing.size());
    }

    void saysThatPositionsAreRefused()
    {
        MockGeoClue geoClue(*bus);
        QVERIFY(geoClue.start());
        const auto client = start({u"context"_s, u"--verbose"_s});
        QVERIFY(client->waitForFinished(limitMs));
        QCOMPARE(client->exitCode(), 0);
        const QByteArray page = client->readAllStandardOutput();
        QVERIFY2(page.contains("location service (geoclue2) refuses"), page.constData());
        const QByteArray log = client->readAllStandardError();
        QVERIFY2(log.contains("Position: refused by the system's location service (geoclue2)"),
                 log.constData());
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
        const QJsonObject mobile =
            QJsonDocument::fromJson(run({u"context"_s, u"--json"_s})).object();
        const QJsonObject network = mobile[u"network"_s].toObject();
        QCOMPARE(network[u"mode"_s], u"LteMode"_s);
        QCOMPARE(network[u"status"_s], u"Roaming"_s);
        QCOMPARE(network[u"metered"_s], u"yes-guessed"_s);
        QCOMPARE(network[u"connectivity"_s], u"full"_s);
        QCOMPARE(mobile[u"device"_s][u"model"_s], u"Modem 7"_s);

        // With a WLAN and a receiver besides, nothing at all is left open.
        QVERIFY(phone->leaveBy(MockPhone::wlanPath));
        QFile recording(home->filePath(u"drive.nmea"_s));
        QVERIFY(recording.open(QIODevice::WriteOnly));
        for (const QByteArray text :
             {"GPGSV,1,1,03,04,40,083,46,07,17,308,41,09,20,100,30",
              "GPGSA,A,3,04,07,09,,,,,,,,,,2.0,0.9,1.5",
              "GPGGA,101500,4713.596,N,00849.104,E,1,03,0.9,410.0,M,48.0,M,,",
              "GPRMC,101500,A,4713.596,N,00849.104,E,5.0,90.0,010624,,"})
            recording.write(sentence(text));
        recording.close();
        const QStringList arguments{u"context"_s, u"--position"_s,
                                    u"nmea:"_s + recording.fileName()};
        const QByteArray page = run(arguments);
        QCOMPARE(status, 0);
        QVERIFY2(!page.contains("unknown") && page.contains("Device id"), page.constData());
        const QJsonObject context =
            QJsonDocument::fromJson(run(arguments + QStringList{u"--json"_s})).object();
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
        QByteArray printed;
        const auto prints = [&](const QByteArray &text) {
            return QTest::qWaitFor(
                [&] {
                    printed += client->readAllStandardOutput();
                    return printed.contains(text);
                },
                limitMs);
        };
        QVERIFY(prints("Abroad"));
        QVERIFY(phone->leaveBy(MockPhone::wlanPath));
        QVERIFY(prints("Caf\xc3\xa9"));
        ::kill(static_cast<pid_t>(client->processId()), SIGINT);
        QVERIFY(client->waitForFinished(limitMs));
        QCOMPARE(client->exitCode(), 130);
    }

    void measuresAbroadOnlyWhenAllowed()
    {
        QVERIFY(phone->startModem() && phone->startNetwork());
        QProcess service;
        service.setStandardErrorFile(QProcess::nullDevice());
        service.start(QStringLiteral(SERVICE_PROGRAM),
                      {u"--listen"_s, u"127.0.0.1:0"_s, u"--database"_s,
                       u"sqlite:"_s + home->filePath(u"reports.sqlite"_s)});
        const QByteArray announced = "listening on 127.0.0.1:";
        QByteArray line;
        while (!line.contains(announced)) {
            QVERIFY(service.canReadLine() || service.waitForReadyRead(limitMs));
            line = service.readLine();
        }
        const QByteArray port = line.mid(line.indexOf(announced) + announced.size()).trimmed();
        QFile config(home->filePath(u"deployment.conf"_s));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write("[Service]\nWebHost=127.0.0.1\nWebPort=" + port +
                     "\n[TestServers]\nSwisscom=127.0.0.1:" + port + '\n');
        config.close();
        const QStringList arguments{u"--json"_s, u"--config"_s, config.fileName()};

        run(arguments);
        QCOMPARE(status, 4);
        QVERIFY2(messages.startsWith("The connection is metered (guessed"), messages.constData());
        const QJsonObject test =
            QJsonDocument::fromJson(run(arguments + QStringList{u"--allow-roaming"_s})).object();
        service.kill();
        service.waitForFinished();
        QCOMPARE(status, 0);
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

    std::unique_ptr<QProcess> start(const QStringList &arguments) const
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, home->path());
        for (const auto &[name, folder] : {std::pair{u"XDG_DATA_HOME"_s, u"data"_s},
                                           {u"XDG_CONFIG_HOME"_s, u"config"_s},
                                           {u"XDG_CACHE_HOME"_s, u"cache"_s}})
            environment.insert(name, home->filePath(folder));
        environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, bus->busAddress());
        // With it Qt loads no plug-in that asks a location service.
        environment.remove(u"QT_QTESTLIB_RUNNING"_s);
        process->setProcessEnvironment(environment);
        process->start(QStringLiteral(CLIENT_PROGRAM), arguments);
        return process;
    }
    QByteArray run(const QStringList &arguments)
    {
        const auto process = start(arguments);
        const bool whole =
            process->waitForFinished(limitMs) && process->exitStatus() == QProcess::NormalExit;
        status = whole ? process->exitCode() : -1;
        messages = process->readAllStandardError();
        return process->readAllStandardOutput();
    }

    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<MockBus> bus;
    std::unique_ptr<MockPhone> phone;
    int status = -1;
    QByteArray messages;
};

QTEST_GUILESS_MAIN(VelometerCliDeviceTest)
#include "velometer_cli_device_test.moc"
