#include "platform/position/nmeapositionsource.h"

#include "support/fakeclock.h"
#include "support/rows.h"

#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Problem = PositionSource::Problem;

namespace {

/// "$body*hh" CR LF.
QByteArray sentence(const QByteArray &body)
{
    int sum = 0;
    for (const char each : body)
        sum ^= static_cast<uchar>(each);
    return '$' + body + '*' + QByteArray::number(sum, 16).rightJustified(2, '0').toUpper() + "\r\n";
}

QByteArray rmc(const QByteArray &time, const QByteArray &place = "4713.596,N,00849.104,E")
{
    return sentence("GPRMC," + time + ",A," + place + ",5.4,84.4,010624,,,A");
}

/// "latitude longitude altitude accuracies"
QString shown(const QGeoPositionInfo &info)
{
    const auto number = [](double value) { return QString::number(value, 'g', 6); };
    return QStringList{number(info.coordinate().latitude()), number(info.coordinate().longitude()),
                       number(info.coordinate().altitude()),
                       number(info.attribute(QGeoPositionInfo::HorizontalAccuracy)),
                       number(info.attribute(QGeoPositionInfo::VerticalAccuracy))}
        .join(u' ');
}

QString shown(const QList<QGeoSatelliteInfo> &satellites)
{
    QStringList ids;
    for (const QGeoSatelliteInfo &each : satellites)
        ids += QString::number(each.satelliteIdentifier());
    ids.sort();
    return ids.join(u' ');
}

} // namespace

class NmeaPositionSourceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        clock = std::make_unique<FakeClock>();
        heard.clear();
    }
    void cleanup()
    {
        source.reset();
        clock.reset();
    }

    void readsPositions_data()
    {
        const Rows<QByteArray, QString> row("bytes", "first");
        // 13.596' are 0.2266 degrees; accuracies are 2 * 5.1 m * HDOP and VDOP.
        const QByteArray gga = "GPGGA,101500,4713.596,N,00849.104,E,1,08,0.9,410.5,M,48.0,M,,";
        const QString whole = u"47.2266 8.8184 410.5 9.18 15.3"_s;
        row("all kinds",
            rmc("101500") + sentence(gga) + sentence("GPGSA,A,3,04,07,09,,,,,,,,,,2.0,0.9,1.5") +
                sentence("GPVTG,84.4,T,,M,5.4,N,10.0,K"),
            whole);
        row("south and west", rmc("101500.000", "3352.128,S,15112.558,W"),
            "-33.8688 -151.209 nan nan nan");
        // What must not count comes first; then a good one.
        const QString good = u"47.2266 8.8184 nan nan nan"_s;
        const QByteArray other = rmc("101400", "1000.000,N,00500.000,E");
        row("half a line, then another receiver's", rmc("101400").first(30) + "\r\n", good);
        row("two lines in one", rmc("101400").first(30) + other, good);
        row("wrong checksum", QByteArray(other).replace("1000.000", "1000.001"), good);
        row("no checksum", other.first(other.indexOf('*')) + "\r\n", good);
        row("NUL inside",
            sentence(QByteArray("GPRMC,101400,A,10\0"
                                "0.0,N,00500.0,E,,,010624,,,A",
                                46)),
            good);
        row("no fix",
            sentence("GPRMC,101700,V,1000.000,N,00500.000,E,5.4,84.4,010624,,,A") +
                sentence("GPGGA,101700,1000.000,N,00500.000,E,0,00,,410.5,M,48.0,M,,") +
                sentence("GPGSA,A,1,,,,,,,,,,,,,,,"),
            good);
        row("huge numbers",
            sentence("GPRMC,101501,A,9" + QByteArray(300, '9') + ",N,1e999,E,inf,nan,010624,,,A"),
            good);
        row("longer than a line may be",
            sentence("GPRMC,101400,A,1000.000,N,00500.000,E,5.4,84.4,010624,,,A," +
                     QByteArray(1000, '0')),
            good);
        row("endless line", QByteArray(1'000'000, '7') + '\n', good);
        row("noise", QByteArray(100'000, '\xff') + QByteArray(100'000, '\0') + "\n$*00\n$\n*\n",
            good);
        row("another protocol", "{\"class\":\"VERSION\",\"release\":\"3.25\"}\r\n", good);
    }
    void readsPositions()
    {
        QFETCH(QByteArray, bytes);
        play(bytes + rmc("101501"));
        source->startPosition();
        // A megabyte takes some looks.
        for (int looks = 0; looks < 100; ++looks)
            fire(u"poll"_s);
        QTRY_VERIFY(!heard.isEmpty());
        QTEST(heard.first(), "first");
        QCOMPARE(shown(source->lastKnownPosition()), heard.last());
    }

    void readsSatellites_data()
    {
        const Rows<QByteArray, QString, QString> row("bytes", "inView", "inUse");
        const QByteArray first = sentence("GPGSV,2,1,05,04,40,083,46,07,17,308,41,09,07,344,39,"
                                          "16,22,228,45");
        const QByteArray second = sentence("GPGSV,2,2,05,27,10,200,");
        const QByteArray use = sentence("GPGSA,A,3,04,07,09,,,,,,,,,,2.0,0.9,1.5");
        row("both", use + first + second, "16 27 4 7 9", "4 7 9");
        // What must not count comes first.
        row("numbers that overflow", sentence("GPGSV,1,252,-2147483648") + use + first + second,
            "16 27 4 7 9", "4 7 9");
        row("a count without satellites",
            sentence("GPGSV,1,1,999999999,04,40,083,46") + use + first + second, "16 27 4 7 9",
            "4 7 9");
        row("a list without an end", second.repeated(10'000) + use + first + second, "16 27 4 7 9",
            "4 7 9");
        row("lists of two systems mixed up",
            first + sentence("GLGSV,2,2,05,75,10,200,") + use + first + second, "16 27 4 7 9",
            "4 7 9");
    }
    void readsSatellites()
    {
        QFETCH(QByteArray, bytes);
        play(bytes);
        source->startSatellites();
        for (int looks = 0; looks < 100; ++looks)
            fire(u"poll"_s);
        QTEST(inView, "inView");
        QTEST(inUse, "inUse");
    }

    void playsARecordingAtItsPace()
    {
        const auto epoch = [](const QByteArray &time, const QByteArray &satellite) {
            return rmc(time) + sentence("GPGSV,1,1,01," + satellite + ",40,083,46");
        };
        play(epoch("235958.500", "01") + epoch("000000", "02") + epoch("000130", "03") +
             epoch("000100", "04"));
        source->startSatellites();
        fire(u"poll"_s);
        QCOMPARE(inView, u"1"_s);
        clock->advance(1499ms);
        fire(u"poll"_s);
        QCOMPARE(inView, u"1"_s);
        clock->advance(1ms);
        fire(u"poll"_s);
        QCOMPARE(inView, u"2"_s);

        // While it is stopped it stands still; a pause is a minute at most.
        source->stopSatellites();
        clock->advance(24h);
        source->startSatellites();
        clock->advance(59s);
        fire(u"poll"_s);
        QCOMPARE(inView, u"2"_s);
        clock->advance(1s);
        fire(u"poll"_s);
        QCOMPARE(inView, u"4"_s); // and a step back is no pause

        fire(u"poll"_s);
        source->stopSatellites();
        source->startSatellites();
        fire(u"poll"_s);
        QCOMPARE(inView, u"1"_s);
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
        QTRY_COMPARE(heard.size(), 1);
        QCOMPARE(source->problem(), Problem::None);

        client->close();
        QTRY_COMPARE(source->problem(), Problem::Unavailable);
        fire(u"retry"_s);
        client = accept(server);
        QVERIFY(client);
        QTRY_COMPARE(source->problem(), Problem::NoFix);
        // Its clock was put right meanwhile.
        client->write(rmc("091500", "1000.000,N,00500.000,E"));
        QTRY_COMPARE(heard.size(), 2);
        QCOMPARE(heard.last(), u"10 5 nan nan nan"_s);
        QCOMPARE(source->problem(), Problem::None);

        source->stopPosition();
        QTRY_COMPARE(client->state(), QAbstractSocket::UnconnectedState);
    }

    void readsAFifoWhoeverWrites()
    {
        const QByteArray path = QFile::encodeName(folder->filePath(u"fifo"_s));
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
        make("nmea:"_L1 + QFile::decodeName(path));
        source->startPosition();
        for (const QByteArray &line : {rmc("101500"), rmc("101501")}) {
            fire(u"poll"_s);
            const int writer = ::open(path.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
            QVERIFY(writer >= 0);
            const auto written =
                ::write(writer, line.constData(), static_cast<size_t>(line.size()));
            ::close(writer);
            QCOMPARE(written, line.size());
            heard.clear();
            QTRY_COMPARE(heard.size(), 1);
        }
    }

    void saysWhyThereAreNoPositions()
    {
        make("nmea:"_L1 + folder->filePath(u"not there yet"_s));
        QSignalSpy timeouts(source.get(), &PositionSource::updateTimeout);
        QCOMPARE(source->problem(), Problem::None);
        source->startPosition();
        QCOMPARE(source->problem(), Problem::Unavailable);
        fire(u"fix"_s);
        QCOMPARE(timeouts.size(), 1);
        QCOMPARE(source->problem(), Problem::Unavailable);

        write(u"not there yet"_s, rmc("101500"));
        fire(u"retry"_s);
        QTRY_COMPARE(heard.size(), 1);
        QCOMPARE(source->problem(), Problem::None);
        fire(u"fix"_s);
        QCOMPARE(source->problem(), Problem::NoFix);
        QCOMPARE(timeouts.size(), 2);
    }

    void opensNoFolder()
    {
        make("nmea:"_L1 + folder->path());
        source->startSatellites();
        QCOMPARE(source->problem(), Problem::Unavailable);
    }

private:
    void make(const QString &choice)
    {
        QString error;
        source = std::make_unique<NmeaPositionSource>(*PositionChoice::parse(choice, &error));
        connect(source.get(), &PositionSource::positionUpdated, this,
                [this](const QGeoPositionInfo &info) { heard += shown(info); });
        connect(source.get(), &PositionSource::satellitesInViewUpdated, this,
                [this](const auto &satellites) { inView = shown(satellites); });
        connect(source.get(), &PositionSource::satellitesInUseUpdated, this,
                [this](const auto &satellites) { inUse = shown(satellites); });
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }
    void play(const QByteArray &bytes)
    {
        write(u"recording"_s, bytes);
        make("nmea:"_L1 + folder->filePath(u"recording"_s));
    }
    void fire(const QString &timer) const
    {
        QMetaObject::invokeMethod(source->findChild<QTimer *>(timer), "timeout",
                                  Qt::DirectConnection);
    }
    /// The next connection, once it has asked for sentences.
    static std::unique_ptr<QTcpSocket> accept(QTcpServer &server)
    {
        if (!QTest::qWaitFor([&] { return server.hasPendingConnections(); }))
            return nullptr;
        std::unique_ptr<QTcpSocket> client(server.nextPendingConnection());
        client->setParent(nullptr);
        if (!QTest::qWaitFor([&] { return client->canReadLine(); }) ||
            client->readLine() != "?WATCH={\"enable\":true,\"nmea\":true};\n")
            return nullptr;
        return client;
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<FakeClock> clock;
    std::unique_ptr<NmeaPositionSource> source;
    QStringList heard;
    QString inView;
    QString inUse;
};

QTEST_GUILESS_MAIN(NmeaPositionSourceTest)
#include "nmeapositionsource_test.moc"
