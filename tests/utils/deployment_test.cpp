#include "utils/deployment.h"

#include "support/registeredtest.h"

#include <QTemporaryDir>

namespace velometer {

class DeploymentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEndpoints_data()
    {
        const Rows<QString, int> row("host", "port");
        row("host.example", "host.example", 80);
        row("192.0.2.1:65535", "192.0.2.1", 65535);
        row("[::1]:8080", "::1", 8080);
        row("[::1]", "::1", 80);
        row("2001:db8::1", "2001:db8::1", 80);
        row("b\u00fccher.example:1", "xn--bcher-kva.example", 1);
        for (const char *bad : {":80", "host:", "host:0", "host:65536", "host:8x", "[::1",
                                "[::1]80", "[host]:80", "1:2:3", "a b", "a\r\nX: y", "a'b",
                                "[::1%it's]", "-host", "host/path", "user@host"}) {
            row(bad, {}, 0);
        }
    }
    void readsEndpoints()
    {
        QFETCH(QString, host);
        const auto endpoint = Endpoint::parse(QString::fromUtf8(QTest::currentDataTag()), 80);
        QCOMPARE(endpoint.has_value(), !host.isEmpty());
        if (endpoint) {
            QCOMPARE(endpoint->host, host);
            QTEST(endpoint->port, "port");
        }
    }

    void readsAFileOverTheDefaults()
    {
        write("[Service]\nWebHost=2001:db8::7  ; assigns ids\nWebPort=80\nSalt=1234\nOldSalts=99, "
              ",1 0\n"
              "ImportHost=i.example\n"
              "[TestServers]\nHSR=[2001:db8::1]:8081\nSunrise=only-a-name.example\n"
              "[Map]\nAttribution=(c) Somebody, and others\n");
        QString error;
        qputenv("VELOMETER_CONFIG", file.toUtf8());
        const auto deployment = Deployment::load({}, &error);
        QVERIFY2(deployment, qPrintable(error));
        QCOMPARE(deployment->webAddress(), u"http://[2001:db8::7]"_s);
        QCOMPARE(deployment->importHost, u"i.example"_s);
        QCOMPARE(deployment->salt, u"1234"_s);
        QCOMPARE(deployment->oldSalts, (QStringList{u"99"_s, u"1 0"_s}));
        QCOMPARE(deployment->hsr, (Endpoint{u"2001:db8::1"_s, 8081}));
        QCOMPARE(deployment->sunrise, (Endpoint{u"only-a-name.example"_s, 80}));
        QCOMPARE(deployment->swisscom, (Endpoint{u"127.0.0.1"_s, 8080}));
        QCOMPARE(deployment->attribution, u"(c) Somebody, and others"_s);
        QCOMPARE(
            Deployment().userPageAddress(7, u"de"_s),
            u"http://127.0.0.1:8080/velometer/Controller?page=UserReport&language=de&userid=7"_s);
    }

    void namesWhatMakesNoSense()
    {
        for (const auto &[section, line] : {std::pair{"Service", "WebPort=70000"},
                                            {"Service", "WebHost=a b"},
                                            {"TestServers", "HSR=x:y"},
                                            {"Long", "cannot be read"},
                                            {nullptr, "cannot be read"}}) {
            // Settings files are cached by name.
            file += u'x';
            if (section) {
                const int length = *section == 'L' ? 1 << 20 : 1;
                write('[' + QByteArray(section) + "]\n" + line + QByteArray(length, '\n'));
            }
            QString error;
            QVERIFY(!Deployment::fromFile(file, &error));
            QVERIFY2(error.contains(QLatin1StringView(line)), qPrintable(error));
        }
    }

private:
    void write(const QByteArray &content)
    {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(content);
    }

    QTemporaryDir directory;
    QString file = directory.filePath(u"deployment.conf"_s);
};

} // namespace velometer

VELOMETER_TEST(DeploymentTest)
#include "deployment_test.moc"
