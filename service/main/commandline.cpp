#include "main/commandline.h"

#include "utils/deployment.h"

#include <QCommandLineParser>
#include <QHostAddress>
#include <QRegularExpression>
#include <QStandardPaths>

#include <thread>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Thrown inside this file only: one sentence about what the user wrote.
struct Misuse
{
    QString sentence;
};

int number(const QCommandLineParser &parser, const QString &option, int least, int most)
{
    bool isNumber = false;
    const QString text = parser.value(option);
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < least || value > most) {
        throw Misuse{u"--%1 takes a number from %2 to %3, not \"%4\"."_s.arg(option)
                         .arg(least)
                         .arg(most)
                         .arg(text)};
    }
    return value;
}

ServerOptions::Endpoint endpoint(const QString &text)
{
    static const QRegularExpression form(
        u"\\A(?:\\[([0-9A-Fa-f:.]+)\\]|([0-9.]+)):([0-9]{1,5})\\z"_s);
    const auto match = form.match(text);
    const QString address = match.captured(1) + match.captured(2);
    const int port = match.captured(3).toInt();
    const bool six = !match.captured(1).isEmpty();
    const QHostAddress parsed(address);
    if (!match.hasMatch() || port > 65535 || parsed.isNull() ||
        six != (parsed.protocol() == QAbstractSocket::IPv6Protocol)) {
        throw Misuse{
            u"--listen takes ADDRESS:PORT as in 127.0.0.1:8080 or [::1]:8080, not \"%1\"."_s.arg(
                text)};
    }
    return {.address = parsed.toString().toStdString(), .port = static_cast<std::uint16_t>(port)};
}

QString databaseFile(const QString &text)
{
    if (text.startsWith(u"postgresql://"_s)) {
        throw Misuse{
            u"PostgreSQL is not supported yet; please name a file with --database sqlite:FILE."_s};
    }
    const QString prefix = u"sqlite:"_s;
    if (!text.startsWith(prefix) || text.size() == prefix.size()) {
        throw Misuse{u"--database takes sqlite:FILE, not \"%1\"."_s.arg(text)};
    }
    return text.sliced(prefix.size());
}

Log::Level logLevel(const QString &text)
{
    const QStringList names{u"error"_s, u"warning"_s, u"info"_s, u"debug"_s};
    const auto index = names.indexOf(text);
    if (index < 0) {
        throw Misuse{u"--log-level takes error, warning, info or debug, not \"%1\"."_s.arg(text)};
    }
    return static_cast<Log::Level>(index);
}

std::variant<CommandLine::Start, CommandLine::End> evaluate(const QStringList &arguments)
{
    const QString ownFile = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                            u"/orvak/velometer-service/reports.db.sqlite"_s;
    const int cores = std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Serves Velometer's measurements: control requests, streams, reports and web pages."_s);
    const auto helpOption = parser.addHelpOption();
    const auto versionOption = parser.addVersionOption();
    parser.addOptions({
        {u"listen"_s, u"Listen here; may be given several times."_s, u"ADDRESS:PORT"_s,
         u"127.0.0.1:8080"_s},
        {u"database"_s, u"Keep users and reports here."_s, u"sqlite:FILE"_s,
         u"sqlite:"_s + ownFile},
        {u"threads"_s, u"Serve with so many threads."_s, u"N"_s, QString::number(cores)},
        {u"max-streams"_s, u"Measurement streams at once."_s, u"N"_s, u"128"_s},
        {u"max-connections-per-address"_s, u"Connections at once from one address."_s, u"N"_s,
         u"512"_s},
        {u"max-report-bytes"_s, u"Largest report taken."_s, u"N"_s, u"4194304"_s},
        {u"config"_s, u"Read the deployment from this file."_s, u"FILE"_s},
        {u"log-level"_s, u"Log error, warning, info or debug."_s, u"LEVEL"_s, u"info"_s},
    });
    if (!parser.parse(arguments)) {
        throw Misuse{parser.errorText()};
    }
    if (parser.isSet(helpOption)) {
        return CommandLine::End{.status = 0, .text = parser.helpText()};
    }
    if (parser.isSet(versionOption)) {
        return CommandLine::End{.status = 0,
                                .text = u"velometer-service " VELOMETER_VERSION "\n"_s};
    }
    if (!parser.positionalArguments().isEmpty()) {
        throw Misuse{u"\"%1\" is not an option."_s.arg(parser.positionalArguments().constFirst())};
    }
    CommandLine::Start start;
    start.options.listen.clear();
    for (const auto &text : parser.values(u"listen"_s)) {
        start.options.listen.push_back(endpoint(text));
    }
    start.options.databaseFile = databaseFile(parser.value(u"database"_s));
    start.options.threads = number(parser, u"threads"_s, 1, 1024);
    start.options.maxStreams = number(parser, u"max-streams"_s, 1, 1'000'000);
    start.options.maxConnectionsPerAddress =
        number(parser, u"max-connections-per-address"_s, 1, 1'000'000);
    start.options.maxReportBytes =
        static_cast<std::size_t>(number(parser, u"max-report-bytes"_s, 1024, 1 << 28));
    start.logLevel = logLevel(parser.value(u"log-level"_s));

    QString error;
    const auto deployment = Deployment::load(parser.value(u"config"_s), &error);
    if (!deployment) {
        throw Misuse{error};
    }
    start.options.salt = deployment->salt;
    return start;
}

} // namespace

std::variant<CommandLine::Start, CommandLine::End> CommandLine::parse(const QStringList &arguments)
{
    try {
        return evaluate(arguments);
    } catch (const Misuse &misuse) {
        return End{.status = 2, .text = misuse.sentence + u'\n'};
    }
}

} // namespace velometer
