#include "cli/textformat.h"

#include "data/testserver.h"
#include "utils/cleantext.h"
#include "utils/utils.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Row = std::pair<QString, QString>;

constexpr double bytesPerMegabyte = 1024.0 * 1024.0;
constexpr double nsPerMs = 1e6;
/// From here on a rate reads better in Mbit/s; below it would round to 1000 kbit/s.
constexpr double megaFrom = 999'500;

/// Columns side by side, each as wide as its widest cell.
QString aligned(const QList<QStringList> &rows)
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

QString joined(const QList<TestSummary::Text> &parts, QLatin1StringView separator)
{
    QStringList known;
    for (const TestSummary::Text &part : parts) {
        if (part) {
            known.append(*part);
        }
    }
    return known.join(separator);
}

QString localTime(const TestSummary::Number &ms)
{
    return ms ? QDateTime::fromMSecsSinceEpoch(*ms).toString(u"yyyy-MM-dd HH:mm:ss"_s)
              : TextFormat::unknown();
}

QString numberOrUnknown(const TestSummary::Number &number)
{
    return number ? QString::number(*number) : TextFormat::unknown();
}

QString endpoint(const TestSummary::Server &server)
{
    TestServer address(nullptr);
    address.setHostname(server.host.value_or(QString()));
    address.setPort(static_cast<int>(server.port.value_or(0)));
    return server.port ? address.getHostHeader() : address.getHostname();
}

QString serverText(const TestSummary::Server &server)
{
    const QString place = joined({server.city, server.country}, ", "_L1);
    const QString where = endpoint(server);
    QString text = server.name ? u"%1 (%2)"_s.arg(*server.name, where) : where;
    if (!place.isEmpty()) {
        text += ", "_L1 + place;
    }
    return text;
}

QString networkText(const TestSummary::Network &network)
{
    QStringList parts;
    parts.append(network.type ? TextFormat::connectionType(*network.type) : TextFormat::unknown());
    if (network.name) {
        parts.append(u'"' + *network.name + u'"');
    }
    if (network.signal) {
        parts.append(TextFormat::tr("signal %1 %").arg(*network.signal));
    }
    if (network.cell) {
        parts.append(TextFormat::tr("cell %1").arg(*network.cell));
    }
    if (network.roaming.value_or(false)) {
        parts.append(TextFormat::tr("roaming"));
    }
    return parts.join(", "_L1);
}

QString positionText(const TestSummary::Position &position)
{
    QString text = u"%1, %2"_s.arg(QString::number(position.latitude, 'f', 5),
                                   QString::number(position.longitude, 'f', 5));
    const auto add = [&](const TestSummary::Real &value, const QString &wording) {
        if (value) {
            text += ", "_L1 + wording.arg(QString::number(*value, 'f', 0));
        }
    };
    add(position.horizontalAccuracy, TextFormat::tr("within %1 m"));
    add(position.altitude, TextFormat::tr("altitude %1 m"));
    add(position.velocity, TextFormat::tr("%1 km/h"));
    return text;
}

QString reportText(const TestSummary::Report &report)
{
    QString text;
    if (*report.delivered) {
        text = TextFormat::tr("delivered");
    } else if (report.queueId) {
        text = TextFormat::tr("waits in the queue");
    } else {
        text = TextFormat::tr("none");
    }
    if (report.resent.value_or(0) > 0) {
        text += ", "_L1 + TextFormat::tr("earlier ones delivered: %1").arg(*report.resent);
    }
    return text;
}

/// "93.2 Mbit/s (80.1 Mbit/s to 99.0 Mbit/s), 81.50 MB"
QString throughputText(const TestSummary::Number &average, const TestSummary::Throughput &phase)
{
    const bool measured = phase.valid.value_or(true) || phase.averageRate;
    QString text = measured ? TextFormat::rate(average) : TextFormat::tr("not measured");
    if (phase.minimumRate && phase.maximumRate) {
        text += u" (%1)"_s.arg(
            TextFormat::tr("%1 to %2")
                .arg(TextFormat::rate(phase.minimumRate), TextFormat::rate(phase.maximumRate)));
    }
    if (phase.bytes) {
        text += ", "_L1 + TextFormat::megabytes(phase.bytes);
    }
    return text;
}

QString roundTripText(const TestSummary::RoundTrip &phase)
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

QString TextFormat::test(const TestSummary &summary, const QString &pageAddress)
{
    QList<QStringList> rows;
    const auto add = [&](const QString &name, const QString &value) {
        rows.append({u"  "_s + name, value});
    };
    const QString location = Utils::trLocation(summary.location.value_or(QString()));
    add(tr("Server"), serverText(summary.server));
    add(tr("Download"), throughputText(summary.download.averageRate, summary.download));
    add(tr("Upload"), throughputText(summary.uploadRate(), summary.upload));
    add(tr("Round trip"), roundTripText(summary.rtt));
    const QString ended = summary.budget.endedEarly(summary.budgetReached.value_or(QString()));
    if (!ended.isEmpty()) {
        add(tr("Data budget"), ended);
    }
    add(tr("Network"), networkText(summary.network));
    if (summary.position) {
        add(tr("Position"), positionText(*summary.position));
    }
    if (!location.isEmpty()) {
        add(tr("Location"), location);
    }
    if (summary.report.delivered) {
        add(tr("Report"), reportText(summary.report));
    }
    if (!pageAddress.isEmpty()) {
        add(tr("All tests"), pageAddress);
    }

    const QString title = tr("Test %1 of series %2, %3")
                              .arg(numberOrUnknown(summary.testId),
                                   numberOrUnknown(summary.seriesId), localTime(summary.timestamp));
    return title + u'\n' + aligned(rows);
}

QString TextFormat::table(const QList<TestSummary> &tests)
{
    if (tests.isEmpty()) {
        return {};
    }
    QList<QStringList> rows{{tr("ID"), tr("Time"), tr("Test"), tr("Download"), tr("Upload"),
                             tr("Round trip"), tr("Network"), tr("Location"), tr("Server")}};
    for (const TestSummary &test : tests) {
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

QString TextFormat::facts(const QList<std::pair<QString, TestSummary::Text>> &rows)
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

QString TextFormat::rate(const TestSummary::Number &bitsPerSecond)
{
    if (!bitsPerSecond) {
        return unknown();
    }
    const auto value = static_cast<double>(*bitsPerSecond);
    if (value < megaFrom) {
        return QString::number(value / 1e3, 'f', 0) + " kbit/s"_L1;
    }
    return QString::number(value / 1e6, 'f', value < 1e8 ? 2 : 1) + " Mbit/s"_L1;
}

QString TextFormat::milliseconds(const TestSummary::Number &ns)
{
    return ns ? QString::number(static_cast<double>(*ns) / nsPerMs, 'f', 1) + " ms"_L1 : unknown();
}

QString TextFormat::megabytes(const TestSummary::Number &bytes)
{
    return bytes
               ? QString::number(static_cast<double>(*bytes) / bytesPerMegabyte, 'f', 2) + " MB"_L1
               : unknown();
}

QString TextFormat::unknown()
{
    return tr("unknown");
}

} // namespace velometer
