#include "cli/textformat.h"

#include "data/databudget.h"
#include "data/testserver.h"
#include "figures/loadwords.h"
#include "utils/cleantext.h"
#include "utils/units.h"
#include "utils/utils.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Row = std::pair<QString, QString>;

/// About a metre.
constexpr int textDegreeDecimals = 5;

/// Columns side by side, each as wide as its widest cell.
QString joined(const QList<FinishedTest::Text> &parts, QLatin1StringView separator)
{
    QStringList known;
    for (const FinishedTest::Text &part : parts) {
        if (part) {
            known.append(*part);
        }
    }
    return known.join(separator);
}

QString numberOrUnknown(const FinishedTest::Number &number)
{
    return number ? QString::number(*number) : TextFormat::unknown();
}

QString endpoint(const FinishedTest::Server &server)
{
    TestServer address(nullptr);
    address.setHostname(server.host.value_or(QString()));
    address.setPort(static_cast<int>(server.port.value_or(0)));
    return server.port ? address.getHostHeader() : address.getHostname();
}

QString serverText(const FinishedTest::Server &server)
{
    const QString place = joined({server.city, server.country}, ", "_L1);
    const QString where = endpoint(server);
    QString text = server.name ? u"%1 (%2)"_s.arg(*server.name, where) : where;
    if (!place.isEmpty()) {
        text += ", "_L1 + place;
    }
    return text;
}

QString networkText(const FinishedTest::Network &network)
{
    QStringList parts;
    parts.append(network.type ? TextFormat::connectionType(*network.type) : TextFormat::unknown());
    if (network.name) {
        parts.append(u'"' + *network.name + u'"');
    }
    if (network.signal) {
        parts.append(TextFormat::tr("signal %1 %").arg(*network.signal));
    }
    const auto add = [&](const FinishedTest::Real &value, const QString &wording) {
        if (value) {
            parts.append(wording.arg(QString::number(*value, 'f', 1)));
        }
    };
    add(network.rsrp, u"RSRP %1 dBm"_s);
    add(network.rsrq, u"RSRQ %1 dB"_s);
    add(network.snr, u"SNR %1 dB"_s);
    if (network.band) {
        parts.append(TextFormat::tr("band %1").arg(*network.band));
    }
    if (network.cell) {
        parts.append(TextFormat::tr("cell %1").arg(*network.cell));
    }
    if (network.roaming.value_or(false)) {
        parts.append(TextFormat::tr("roaming"));
    }
    return parts.join(", "_L1);
}

QString positionText(const FinishedTest &test)
{
    const FinishedTest::Position &position = test.position;
    QString text =
        u"%1, %2"_s.arg(QString::number(position.latitude.value_or(0), 'f', textDegreeDecimals),
                        QString::number(position.longitude.value_or(0), 'f', textDegreeDecimals));
    const auto add = [&](const FinishedTest::Real &value, const QString &wording) {
        if (value) {
            text += ", "_L1 + wording.arg(Units::whole(*value, ""_L1));
        }
    };
    add(position.horizontalAccuracy, TextFormat::tr("within %1 m"));
    add(position.altitude, TextFormat::tr("altitude %1 m"));
    add(Known::above(-1, test.movement.velocity), TextFormat::tr("%1 km/h"));
    return text;
}

QString reportText(const FinishedTest::Report &report)
{
    QString text;
    if (report.delivered.value_or(false)) {
        text = TextFormat::tr("delivered");
    } else if (report.queueId) {
        text = TextFormat::tr("waits in the queue");
    } else {
        text = TextFormat::tr("none");
    }
    if (report.resent && *report.resent > 0) {
        text += ", "_L1 + TextFormat::tr("earlier ones delivered: %1").arg(*report.resent);
    }
    return text;
}

/// "93.2 Mbit/s (80.1 Mbit/s to 99.0 Mbit/s), 81.50 MB"
QString throughputText(const FinishedTest::Number &average, const FinishedTest::Number &minimum,
                       const FinishedTest::Number &maximum, const FinishedTest::Throughput &phase)
{
    const bool measured = phase.valid.value_or(true) || average;
    QString text = measured ? TextFormat::rate(average) : TextFormat::tr("not measured");
    if (minimum && maximum) {
        text += u" (%1)"_s.arg(
            TextFormat::tr("%1 to %2").arg(TextFormat::rate(minimum), TextFormat::rate(maximum)));
    }
    if (phase.bytes) {
        text += ", "_L1 + TextFormat::megabytes(phase.bytes);
    }
    if (average && phase.steadyRate()) {
        text += ", "_L1 + TextFormat::tr("steady %1").arg(TextFormat::rate(phase.steadyRate()));
    }
    return text;
}

QString roundTripText(const FinishedTest::RoundTrip &phase)
{
    QString text = TextFormat::milliseconds(phase.average);
    if (phase.minimum && phase.maximum) {
        text += u" (%1)"_s.arg(TextFormat::tr("%1 to %2")
                                   .arg(TextFormat::milliseconds(phase.minimum),
                                        TextFormat::milliseconds(phase.maximum)));
    }
    return text;
}

} // namespace

QString TextFormat::test(const FinishedTest &finished, const QString &pageAddress)
{
    QList<QStringList> rows;
    const auto add = [&](const QString &name, const QString &value) {
        rows.append({u"  "_s + name, value});
    };
    const QString location = Utils::trLocation(finished.location.value_or(QString()));
    add(tr("Server"), serverText(finished.server));
    const FinishedTest::Throughput &download = finished.download;
    add(tr("Download"),
        throughputText(download.averageRate, download.minimumRate, download.maximumRate, download));
    add(tr("Upload"), throughputText(finished.uploadRate(), finished.uploadMinimum(),
                                     finished.uploadMaximum(), finished.upload));
    add(tr("Round trip"), roundTripText(finished.rtt));
    const auto addKnown = [&](const QString &name, const QString &value) {
        if (!value.isEmpty()) {
            add(name, value);
        }
    };
    addKnown(tr("Delay idle"), LoadWords::idleFigures(finished));
    addKnown(tr("Delay in download"), LoadWords::figures(finished, finished.downloadLoad));
    addKnown(tr("Delay in upload"), LoadWords::figures(finished, finished.uploadLoad));
    addKnown(tr("Delay in extra download"),
             LoadWords::figures(finished, finished.extraDownloadLoad));
    addKnown(tr("Delay in extra upload"), LoadWords::figures(finished, finished.extraUploadLoad));
    addKnown(tr("Under load"), LoadWords::sentences(finished).join("; "_L1));
    const QString ended =
        DataBudget(finished.budget.bytes).endedEarly(finished.budget.reached.value_or(QString()));
    if (!ended.isEmpty()) {
        add(tr("Data budget"), ended);
    }
    add(tr("Network"), networkText(finished.network));
    if (finished.position.latitude) {
        add(tr("Position"), positionText(finished));
    }
    if (!location.isEmpty()) {
        add(tr("Location"), location);
    }
    if (finished.report.delivered) {
        add(tr("Report"), reportText(finished.report));
    }
    if (!pageAddress.isEmpty()) {
        add(tr("All tests"), pageAddress);
    }

    const QString title =
        tr("Test %1 of series %2, %3")
            .arg(numberOrUnknown(finished.testId), numberOrUnknown(finished.seriesId),
                 localTime(finished.timestamp));
    return title + u'\n' + aligned(rows);
}

QString TextFormat::aligned(const QList<QStringList> &rows)
{
    QList<qsizetype> widths;
    for (const QStringList &row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i == widths.size()) {
                widths.append(0);
            }
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    QString text;
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            line += row[i].leftJustified(widths[i] + 2);
        }
        while (line.endsWith(u' ')) {
            line.chop(1);
        }
        text += line + u'\n';
    }
    return text;
}

QString TextFormat::localTime(const FinishedTest::Number &ms)
{
    return ms ? QDateTime::fromMSecsSinceEpoch(*ms).toString(u"yyyy-MM-dd HH:mm:ss"_s) : unknown();
}

QString TextFormat::duration(std::chrono::milliseconds time)
{
    constexpr int inHour = 3600;
    constexpr int inMinute = 60;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return u"%1:%2:%3"_s.arg(seconds / inHour)
        .arg(seconds / inMinute % inMinute, 2, 10, QChar(u'0'))
        .arg(seconds % inMinute, 2, 10, QChar(u'0'));
}

QString TextFormat::table(const QList<FinishedTest> &tests)
{
    if (tests.isEmpty()) {
        return {};
    }
    QList<QStringList> rows{{tr("ID"), tr("Time"), tr("Test"), tr("Download"), tr("Upload"),
                             tr("Round trip"), tr("Network"), tr("Location"), tr("Server")}};
    for (const FinishedTest &test : tests) {
        rows.append({numberOrUnknown(test.storedId), localTime(test.timestamp),
                     u"%1/%2"_s.arg(numberOrUnknown(test.seriesId), numberOrUnknown(test.testId)),
                     rate(test.download.averageRate), rate(test.uploadRate()),
                     milliseconds(test.rtt.average),
                     test.network.type ? connectionType(*test.network.type) : unknown(),
                     Utils::trLocationShort(test.location.value_or(QString())),
                     test.server.name.value_or(endpoint(test.server))});
    }
    return aligned(rows);
}

QString TextFormat::servers(const QList<TestServer *> &servers, const TestServer *selected)
{
    QList<QStringList> rows;
    for (const TestServer *server : servers) {
        rows.append({(server == selected ? u"* "_s : u"  "_s) + cleanText(server->getName()),
                     server->getHostHeader(), cleanText(server->getCity()),
                     cleanText(server->getCountry())});
    }
    return aligned(rows);
}

QString TextFormat::facts(const QList<std::pair<QString, FinishedTest::Text>> &rows)
{
    QList<QStringList> lines;
    for (const auto &[name, value] : rows) {
        lines.append({name, value.value_or(unknown())});
    }
    return aligned(lines);
}

QString TextFormat::connectionType(const QString &stored)
{
    return QCoreApplication::translate("velometer::Utils", stored.toUtf8().constData());
}

QString TextFormat::rate(const FinishedTest::Number &bitsPerSecond)
{
    return bitsPerSecond ? Units::scaledRate(*bitsPerSecond) : unknown();
}

QString TextFormat::milliseconds(const FinishedTest::Number &ns)
{
    return ns ? Units::milliseconds(static_cast<double>(*ns), 1) : unknown();
}

QString TextFormat::megabytes(const FinishedTest::Number &bytes)
{
    return bytes ? Units::megabytes(*bytes) : unknown();
}

QString TextFormat::unknown()
{
    return tr("unknown");
}

} // namespace velometer
