#include "runningservice.h"
#include "support/registeredtest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTcpServer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

/// What an operator watches a service with, in the hands of a real Prometheus.
class ServiceMonitoringTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dashboardAndAlertsFindTheirFigures()
    {
        QVERIFY2(!QStandardPaths::findExecutable(u"prometheus"_s).isEmpty(),
                 "Prometheus is not installed; scripts/setup test installs it.");
        const QTemporaryDir directory;
        const RunningService service(
            [](ServerOptions &options) { options.allowances.at(3).most = 1; });
        QCOMPARE(statusOf(service.get("/")), 200);
        QCOMPARE(statusOf(service.get("/")), 429); // there are refusals to be seen

        QTcpServer free;
        QVERIFY(free.listen(QHostAddress::LocalHost));
        const quint16 port = free.serverPort();
        free.close();
        QFile config(directory.filePath(u"prometheus.yml"_s));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write("global: {scrape_interval: 1s, evaluation_interval: 1s}\n"
                     "rule_files: ['" MONITORING "/velometer-alerts.yml']\n"
                     "scrape_configs: [{job_name: velometer, static_configs: [{targets: "
                     "['127.0.0.1:" +
                     QByteArray::number(service.port()) + "']}]}]\n");
        config.close();
        QProcess prometheus;
        prometheus.setProcessChannelMode(QProcess::MergedChannels);
        prometheus.start(u"prometheus"_s,
                         {u"--config.file="_s + config.fileName(),
                          u"--storage.tsdb.path="_s + directory.filePath(u"data"_s),
                          u"--web.listen-address=127.0.0.1:%1"_s.arg(port)});
        const auto ask = [&](const QByteArray &path) {
            SocketClient client(port);
            client.send("GET /api/v1/" + path + " HTTP/1.0\r\nHost: x\r\n\r\n");
            return QJsonDocument::fromJson(bodyOf(client.receiveAll()))
                .object()
                .value(u"data"_s)
                .toObject();
        };
        const auto rows = [&](const QString &expression) {
            return ask("query?query=" + QUrl::toPercentEncoding(expression))
                .value(u"result"_s)
                .toArray()
                .size();
        };
        const bool scraped = QTest::qWaitFor(
            [&] {
                return prometheus.state() != QProcess::NotRunning &&
                       rows(u"count_over_time(velometer_build_info[30s]) >= 3"_s) == 1;
            },
            60'000);
        QVERIFY2(scraped, prometheus.readAll());

        QFile file(QStringLiteral(MONITORING "/velometer-dashboard.json"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto panels =
            QJsonDocument::fromJson(file.readAll()).object().value(u"panels"_s).toArray();
        QVERIFY(panels.size() >= 10);
        for (const auto &panel : panels) {
            for (const auto &target : panel.toObject().value(u"targets"_s).toArray()) {
                const QString expression = target.toObject().value(u"expr"_s).toString();
                QVERIFY2(rows(expression) > 0, qUtf8Printable(expression));
            }
        }
        const auto groups = ask("rules").value(u"groups"_s).toArray();
        QCOMPARE(groups.size(), 1);
        const auto rules = groups.at(0).toObject().value(u"rules"_s).toArray();
        QVERIFY(rules.size() >= 8);
        for (const auto &each : rules) {
            const auto rule = each.toObject();
            const QString name = rule.value(u"name"_s).toString();
            QVERIFY2(rule.value(u"health"_s).toString() == u"ok"_s, qUtf8Printable(name));
            QVERIFY2(rule.value(u"state"_s).toString() == u"inactive"_s, qUtf8Printable(name));
            // A figure that an alert is about exists, but where the service has no such thing.
            static const QRegularExpression metric(u"velometer_[a-z_]+"_s);
            const QString figure = metric.match(rule.value(u"query"_s).toString()).captured();
            QVERIFY2(figure.isEmpty() || figure.contains(u"certificate"_s) || rows(figure) > 0,
                     qUtf8Printable(figure));
        }
        prometheus.terminate();
        QVERIFY(prometheus.waitForFinished());
    }
};

} // namespace velometer

VELOMETER_TEST(ServiceMonitoringTest)
#include "service_monitoring_test.moc"
