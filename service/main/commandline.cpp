#include "main/commandline.h"

#include "arguments/takes.h"
#include "reports/postgresdatabase.h"
#include "utils/deployment.h"
#include "utils/endpoint.h"

#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Takes --listen: as often as it is given; the first time the standard address goes.
Syntax::Take listen(std::vector<Endpoint> *addresses, bool *given)
{
    return [=](const QString &name, const QString &value) {
        const auto endpoint = Endpoint::parseAddress(value);
        if (!endpoint) {
            return Takes::wrong(name, u"ADDRESS:PORT as in 127.0.0.1:8080 or [::1]:8080"_s, value);
        }
        if (!std::exchange(*given, true)) {
            addresses->clear();
        }
        addresses->push_back(*endpoint);
        return QString();
    };
}

Syntax::Take database(QString *file)
{
    return [file](const QString &name, const QString &value) {
        constexpr auto sqlite = "sqlite:"_L1;
        if (PostgresDatabase::isAddress(value)) {
            *file = value;
            return QString();
        }
        if (!value.startsWith(sqlite) || value.size() == sqlite.size()) {
            return Takes::wrong(name, u"sqlite:FILE or postgresql://USER@HOST/DATABASE"_s, value);
        }
        *file = value.sliced(sqlite.size());
        return QString();
    };
}

/// The address of tiles stands in the policy of every page, where a blank would begin another rule.
std::optional<QString> tiles(const QString &text)
{
    static const QRegularExpression address(
        u"^https?://(\\{s\\}\\.)?[A-Za-z0-9.-]+(:[0-9]{1,5})?/[!-~]*$"_s);
    const bool whole = std::ranges::all_of(std::array{"{z}"_L1, "{x}"_L1, "{y}"_L1},
                                           [&](auto part) { return text.contains(part); });
    return whole && address.match(text).hasMatch() ? std::optional(text) : std::nullopt;
}

std::optional<QString> licence(const QString &text)
{
    static const QRegularExpression expression(u"^[A-Za-z0-9(][A-Za-z0-9.+() -]{0,99}$"_s);
    return expression.match(text).hasMatch() ? std::optional(text) : std::nullopt;
}

} // namespace

std::variant<CommandLine::Start, CommandLine::End> CommandLine::parse(const QStringList &arguments)
{
    Start start;
    ServerOptions &options = start.options;
    options.databaseFile = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           u"/orvak/velometer-service/reports.db.sqlite"_s;
    options.threads = std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
    int reportBytes = static_cast<int>(options.maxReportBytes);
    bool listenGiven = false;
    QString configFile;

    Syntax syntax(
        u"velometer-service"_s,
        u"Serves Velometer's measurements: control requests, streams, reports and web pages."_s,
        QStringLiteral(VELOMETER_VERSION));
    const auto number = [&](const QString &name, const QString &text, int least, int most,
                            int *to) {
        syntax.add({name, u"N"_s, u"%1 (%2)"_s.arg(text).arg(*to), Takes::number(least, most, to)});
    };
    syntax.add({u"--listen"_s, u"ADDRESS:PORT"_s,
                u"listen here (127.0.0.1:8080); may be given several times"_s,
                listen(&options.listen, &listenGiven)});
    syntax.add(
        {u"--database"_s, u"ADDRESS"_s,
         u"keep users and reports here: sqlite:FILE, or postgresql://USER@HOST/DATABASE, which "
         "several services may share (sqlite:%1)"_s.arg(options.databaseFile),
         database(&options.databaseFile)});
    number(u"--threads"_s, u"serve with so many threads"_s, 1, 1024, &options.threads);
    number(u"--max-streams"_s, u"measurement streams at once"_s, 1, 1'000'000, &options.maxStreams);
    number(u"--max-streams-per-address"_s, u"measurement streams at once to one address"_s, 1,
           1'000'000, &options.maxStreamsPerAddress);
    number(u"--max-connections-per-address"_s, u"connections at once from one address"_s, 1,
           1'000'000, &options.maxConnectionsPerAddress);
    number(u"--max-report-bytes"_s, u"largest report taken"_s, 1024, 1 << 28, &reportBytes);
    syntax.add(
        {u"--tile-url"_s, u"URL"_s,
         u"draw maps with these tiles, as in https://tiles.example/{z}/{x}/{y}.png; without it "
         "the outlines of countries"_s,
         Takes::parsed(tiles, u"an http or https address with {z}, {x} and {y}"_s,
                       &options.tiles.address)});
    syntax.add({u"--tile-attribution"_s, u"TEXT"_s, u"whom maps thank for their tiles"_s,
                Takes::text(&options.tiles.attribution)});
    syntax.add({u"--statistics-licence"_s, u"LICENCE"_s,
                u"give the public figures away on these terms (%1)"_s.arg(options.licence),
                Takes::parsed(licence, u"an SPDX expression as in CC-BY-4.0"_s, &options.licence)});
    syntax.add({u"--config"_s, u"FILE"_s, u"read the deployment from this file"_s,
                Takes::text(&configFile)});
    syntax.add({u"--log-level"_s, u"error|warning|info|debug"_s, u"log so much (info)"_s,
                Takes::choice<Log::Level>({{u"error"_s, Log::Level::Error},
                                           {u"warning"_s, Log::Level::Warning},
                                           {u"info"_s, Log::Level::Info},
                                           {u"debug"_s, Log::Level::Debug}},
                                          &start.logLevel)});

    QString error = syntax.read(arguments.mid(1));
    if (error.isEmpty() && !syntax.answer().isEmpty()) {
        return End{.status = 0, .text = syntax.answer()};
    }
    std::optional<Deployment> deployment;
    if (error.isEmpty()) {
        deployment = Deployment::load(configFile, &error);
    }
    if (!deployment) {
        return End{.status = 2, .text = u"velometer-service: "_s + error + u'\n'};
    }
    if (options.tiles.attribution.isEmpty()) {
        options.tiles.attribution = deployment->attribution;
    }
    options.servers = {{u"Swisscom"_s, deployment->swisscom},
                       {u"Sunrise"_s, deployment->sunrise},
                       {u"HSR"_s, deployment->hsr},
                       {u"IP-Plus Germany"_s, deployment->ipPlusGermany},
                       {u"IP-Plus Italy"_s, deployment->ipPlusItaly},
                       {u"IP-Plus New York"_s, deployment->ipPlusNewYork}};
    options.salts = QStringList{deployment->salt} + deployment->oldSalts;
    options.maxReportBytes = static_cast<std::size_t>(reportBytes);
    return start;
}

} // namespace velometer
