#include "platform/position/nmeapositionsource.h"

#include "support/fakeclock.h"
#include "support/registeredtest.h"

#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace velometer {

using Problem = PositionSource::Problem;

namespace {

/// "$body*hh" CR LF.
QByteArray sentence(const QByteArray &body)
{
    int sum = 0;
    for (const char each : body) {
        sum ^= static_cast<uchar>(each);
    }
    return '$' + body + '*' + QByteArray::number(sum, 16).rightJustified(2, '0').toUpper() + "\r\n";
}

QByteArray rmc(const QByteArray &time, const QByteArray &place = "4713.596,N,00849.104,E",
               const QByteArray &rest = "5.4,84.4,010624,,,A")
{
    return sentence("GPRMC," + time + ",A," + place + ',' + rest);
}

/// The sentence @p kind of a receiver at @p time, on the first or the second of June.
QByteArray tell(const QByteArray &talker, const QByteArray &kind, const QByteArray &time)
{
    const QByteArray place = "4713.596,N,00849.104,E";
    const QByteArray day = time == "235959.00" ? "01" : "02";
    const QMap<QByteArray, QByteArray> rest{
        {"RMC", time + ",A," + place + ",5.4,84.4," + day + "0624,,,A"},
        {"GGA", time + "," + place + ",1,08,0.9,410.5,M,48.0,M,,"},
        {"GLL", place + "," + time + ",A,A"},
        {"ZDA", time + "," + day + ",06,2024,00,00"},
        {"VTG", "84.4,T,,M,5.4,N,10.0,K,A"},
        {"GSA", "A,3,04,07,09,,,,,,,,,,2.0,0.9,1.5"},
        {"GSV", "1,1,01,04,40,083,46"}};
    return sentence(talker + kind + ',' + rest.value(kind));
}

/// "latitude longitude altitude accuracies"
QString shown(const Position &position)
{
    QStringList numbers;
    for (const auto &value : {position.latitude, position.longitude, position.altitude,
                              position.horizontalAccuracy, position.verticalAccuracy}) {
        numbers += value ? QString::number(*value, 'g', 6) : u"nan"_s;
    }
    return numbers.join(u' ');
}

} // namespace

class NmeaPositionSourceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        source.reset();
        clock.reset();
        folder = std::make_unique<QTemporaryDir>();
        clock = std::make_unique<FakeClock>();
        heard.clear();
        heardWhole.clear();
        timeouts = 0;
    }
    void readsPositions_data()
    {
        const Rows<QByteArray, QString> row("bytes", "first");
        // 13.596' are 0.2266 degrees; accuracies are 2 * 5.1 m * HDOP and VDOP.
        row("all kinds",
            rmc("101500") +
                sentence("GPGGA,101500,4713.596,N,00849.104,E,1,08,0.9,410.5,M,48.0,M,,") +
                sentence("GPGSA,A,3,04,07,09,,,,,,,,,,2.0,0.9,1.5"),
            "47.2266 8.8184 410.5 9.18 15.3");
        row("south and west", rmc("101500.000", "3352.128,S,15112.558,W"),
            "-33.8688 -151.209 nan nan nan");
        // What must not count comes first; then a good one.
        const auto bad = [&](const char *name, const QByteArray &bytes) {
            row(name, bytes, "47.2266 8.8184 nan nan nan");
        };
        const QByteArray place = "1000.000,N,00500.000,E";
        const QByteArray other = rmc("101400", place);
        bad("half a line, then another receiver's", rmc("101400").first(30) + "\r\n");
        bad("two lines in one", rmc("101400").first(30) + other);
        bad("wrong checksum", QByteArray(other).replace("1000.000", "1000.001"));
        bad("no checksum", other.first(other.indexOf('*')) + "\r\n");
        bad("NUL inside", rmc("101400", QByteArray(place).replace('.', '\0')));
        bad("no fix", sentence("GPRMC,101700,V," + place + ",5.4,84.4,010624,,,A") +
                          sentence("GPGGA,101700," + place + ",0,00,,410.5,M,48.0,M,,") +
                          sentence("GPGSA,A,1,,,,,,,,,,,,,,,"));
        bad("huge numbers",
            rmc("101501", '9' + QByteArray(300, '9') + ",N,1e999,E", "inf,nan,010624,,,A"));
        bad("longer than a line may be",
            rmc("101400", place, "5.4,84.4,010624,,,A," + QByteArray(1000, '0')));
        bad("noise", QByteArray(100'000, '\xff') + QByteArray(900'000, '7') + "\n$*00\n$\n*\n");
    }
    void readsPositions()
    {
        QFETCH(QByteArray, bytes);
        play(bytes + rmc("101501"));
        source->startPosition();
        // A megabyte takes some looks.
        pass(10s);
        QVERIFY(!heard.isEmpty());
        QTEST(heard.first(), "first");
        QCOMPARE(shown(source->lastKnownPosition()), heard.last());
    }

    void tellsAMomentOnceAndWhole_data()
    {
        const Rows<QByteArray, QByteArray, QString, QString> row("talker", "kinds", "expected",
                                                                 "day");
        const QString all = u"47.2266 8.8184 410.5 9.18 15.3, 2.778 84.4, "_s;
        const QString june = u"2024-06-0"_s;
        row("as most do", "GP", "RMC VTG GGA GSA GSV GLL", all, june);
        row("GGA first", "GN", "GGA GSA GSA GSV GSV GSV GSV RMC", all, june);
        row("accuracies first", "GA", "GSA GSV GGA RMC", all, june);
        row("date apart", "GB", "GGA VTG GSA ZDA", all, june);
        row("no height", "GN", "RMC GSA", "47.2266 8.8184 nan 9.18 15.3, 2.778 84.4, ", june);
        row("GLL alone", "GP", "GLL", "47.2266 8.8184 nan nan nan, -1 -1, ", "2023-11-1");
    }
    void tellsAMomentOnceAndWhole()
    {
        const auto [talker, kinds, expected, day] =
            currentRow<QByteArray, QByteArray, QString, QString>();
        const int firstDay = day == "2023-11-1"_L1 ? 4 : 1;
        for (const auto rest : {600ms, 0ms}) {
            makeFifo();
            source->startPosition();
            heard.clear();
            for (const QByteArray time : {"235959.00", "000000.00"}) {
                for (const QByteArray &kind : kinds.split(' ')) {
                    const QByteArray line = tell(talker, kind, time);
                    // Each by another writer, at 9600 baud.
                    write(u"fifo"_s, line);
                    pass(std::chrono::milliseconds(line.size() * 10 * 1000 / 9600));
                }
                pass(rest);
            }
            pass(400ms);
            QStringList whole;
            whole.swap(heardWhole);
            QCOMPARE(whole, (QStringList{expected + day + u"%1T23:59:59Z"_s.arg(firstDay),
                                         expected + day + u"%1T00:00:00Z"_s.arg(firstDay + 1)}));
        }
    }

    void tellsNoMoreOftenThanWanted()
    {
        makeFifo();
        source->setUpdateInterval(1000);
        source->startPosition();
        for (const QByteArray time : {"101500.0", "101500.5", "101500.996", "101501.5", "101500"}) {
            write(u"fifo"_s, rmc(time));
            pass(400ms);
        }
        QCOMPARE(heard.size(), 3);
    }

    void readsSatellites_data()
    {
        QTest::addColumn<QByteArray>("before");
        // What must not count.
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("numbers that overflow") << sentence("GPGSV,1,252,-2147483648");
        QTest::newRow("a count without satellites") << sentence("GPGSV,1,1,999999999,04,40,083,46");
        QTest::newRow("a list without an end") << second.repeated(10'000);
        QTest::newRow("lists of two systems mixed up")
            << first + sentence("GLGSV,2,2,05,75,10,200,");
    }
    void readsSatellites()
    {
        QFETCH(QByteArray, before);
        play(before + sentence("GNGSA,A,3,04,07,09,,,,,,,,,,2.0,0.9,1.5") +
             sentence("GNGSA,A,3,65,,,,,,,,,,,,2.0,0.9,1.5") + first + second +
             sentence("GLGSV,1,1,01,65,10,200,") +
             sentence("GPGSV,2,1,05,31,40,083,46")); // not whole yet
        source->startSatellites();
        pass(10s);
        QCOMPARE(inView, (QList{4, 7, 9, 16, 27, 65}));
        QCOMPARE(inUse, (QList{4, 7, 9, 65}));
    }

    void playsARecordingAtItsPace()
    {
        const auto epoch = [](const QByteArray &time, const QByteArray &satellite) {
            return rmc(time) + sentence("GPGSV,1,1,01," + satellite + ",40,083,46");
        };
        play(epoch("235958.500", "01") + epoch("000000", "02") + epoch("000130", "03") +
             epoch("000100", "04"));
        source->startSatellites();
        const auto seen = [&](std::chrono::milliseconds later) {
            pass(later);
            return inView;
        };
        QCOMPARE(seen(100ms), QList{1});
        QCOMPARE(seen(1380ms), QList{1});
        QCOMPARE(seen(100ms), QList{2});

        // While it is stopped it stands still; a pause is a minute at most.
        source->stopSatellites();
        clock->advance(24h);
        source->startSatellites();
        QCOMPARE(seen(59'900ms), QList{2});
        QCOMPARE(seen(400ms), QList{4}); // and a step back is no pause

        pass(1s);
        source->stopSatellites();
        source->startSatellites();
        QCOMPARE(seen(100ms), QList{1});
    }

    void asksGpsdAndComesBack()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        make(u"gpsd://127.0.0.1:%1"_s.arg(server.serverPort()));
        QCOMPARE(source->name(), u"gpsd 127.0.0.1:%1"_s.arg(server.serverPort()));
        source->startPosition();
        auto client = accept(server);
        QVERIFY(client);
        client->write("{\"class\":\"DEVICES\",\"devices\":[]}\r\n" + rmc("101500"));
        QTRY_COMPARE((pass(100ms), heard.size()), 1);
        QCOMPARE(source->problem(), Problem::None);

        client->close();
        QTRY_COMPARE((pass(100ms), source->problem()), Problem::Unavailable);
        pass(5s);
        client = accept(server);
        QVERIFY(client);
        QTRY_COMPARE((pass(100ms), source->problem()), Problem::NoFix);
        // Its clock was put right meanwhile.
        client->write(rmc("091500", "1000.000,N,00500.000,E"));
        QTRY_COMPARE((pass(100ms), heard.size()), 2);
        QCOMPARE(heard.last(), u"10 5 nan nan nan"_s);
        QCOMPARE(source->problem(), Problem::None);

        source->stopPosition();
        QTRY_COMPARE(client->state(), QAbstractSocket::UnconnectedState);
    }

    void saysWhyThereAreNoPositions()
    {
        make("nmea:"_L1 + folder->path());
        source->startSatellites();
        QCOMPARE(source->problem(), Problem::Unavailable);

        make("nmea:"_L1 + folder->filePath(u"not there yet"_s));
        QCOMPARE(source->problem(), Problem::None);
        source->startPosition();
        QCOMPARE(source->problem(), Problem::Unavailable);
        pass(10s);
        QCOMPARE(timeouts, 1);
        QCOMPARE(source->problem(), Problem::Unavailable);

        write(u"not there yet"_s, rmc("101500"));
        pass(6s);
        QCOMPARE(heard.size(), 1);
        QCOMPARE(source->problem(), Problem::None);
        pass(10s);
        QCOMPARE(source->problem(), Problem::NoFix);
        QCOMPARE(timeouts, 2);
    }

private:
    static inline const QByteArray first =
        sentence("GPGSV,2,1,05,04,40,083,46,07,17,308,41,09,07,344,39,16,22,228,45");
    static inline const QByteArray second = sentence("GPGSV,2,2,05,27,10,200,");

    void make(const QString &choice)
    {
        QString error;
        source = std::make_unique<NmeaPositionSource>(*PositionChoice::parse(choice, &error));
        connect(source.get(), &PositionSource::positionUpdated, this, [this] {
            if (const auto &position = source->position()) {
                heard += shown(*position);
                heardWhole += u"%1, %2 %3, %4"_s.arg(
                    heard.last(), QString::number(position->groundSpeed.value_or(-1), 'g', 4),
                    QString::number(position->direction.value_or(-1)),
                    QDateTime::fromMSecsSinceEpoch(position->time.value_or(0))
                        .toUTC()
                        .toString(Qt::ISODate));
            } else {
                ++timeouts;
            }
        });
        const auto numbers = [](const std::optional<QList<int>> &satellites) {
            auto sorted = satellites.value_or(QList<int>());
            std::sort(sorted.begin(), sorted.end());
            return sorted;
        };
        connect(source.get(), &PositionSource::satellitesUpdated, this, [this, numbers] {
            inView = numbers(source->satellites().inView);
            inUse = numbers(source->satellites().inUse);
        });
    }
    void makeFifo()
    {
        const QString path = folder->filePath(u"fifo"_s);
        const bool made = ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
        QVERIFY(made || QFile::exists(path));
        make("nmea:"_L1 + path);
    }
    /// In steps that are shorter than what the source waits for.
    void pass(std::chrono::milliseconds time) const
    {
        for (; time > 0ms; time -= 20ms) {
            clock->advance(std::min(time, std::chrono::milliseconds(20)));
        }
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder->filePath(name));
        // Of a FIFO this end never waits for the other.
        QVERIFY(file.open(QIODevice::ReadWrite));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    void play(const QByteArray &bytes)
    {
        write(u"recording"_s, bytes);
        make("nmea:"_L1 + folder->filePath(u"recording"_s));
    }
    /// The next connection, once it has asked for sentences.
    static std::unique_ptr<QTcpSocket> accept(QTcpServer &server)
    {
        if (!QTest::qWaitFor([&] { return server.hasPendingConnections(); })) {
            return nullptr;
        }
        std::unique_ptr<QTcpSocket> client(server.nextPendingConnection());
        client->setParent(nullptr);
        if (!QTest::qWaitFor([&] { return client->canReadLine(); }) ||
            client->readLine() != "?WATCH={\"enable\":true,\"nmea\":true};\n") {
            return nullptr;
        }
        return client;
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<FakeClock> clock;
    std::unique_ptr<NmeaPositionSource> source;
    QStringList heard;
    QStringList heardWhole;
    int timeouts = 0;
    QList<int> inView;
    QList<int> inUse;
};

} // namespace velometer

VELOMETER_TEST(NmeaPositionSourceTest)
#include "nmeapositionsource_test.moc"
