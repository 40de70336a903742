#include "main/commandline.h"

#include "arguments/takes.h"
#include "reports/postgresdatabase.h"
#include "utils/deployment.h"
#include "utils/endpoint.h"

#include <QHash>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

#include <unistd.h>

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

std::optional<qint64> userId(const QString &text)
{
    const auto number = Takes::wholeNumber(text);
    return number && *number > 0 ? number : std::nullopt;
}

std::optional<AddressRange> addressRange(const QString &text)
{
    return AddressRange::parse(text.toStdString());
}

Syntax::Take proxies(std::vector<AddressRange> *ranges)
{
    return [ranges](const QString &name, const QString &value) {
        const auto range = addressRange(value);
        if (!range) {
            return Takes::wrong(name, u"an address or a range as in 10.0.0.0/8"_s, value);
        }
        ranges->push_back(*range);
        return QString();
    };
}

/// What the options of the command line are read into.
struct Words
{
    CommandLine::Start start;
    CommandLine::Task task;
    int reportBytes = 0;
    bool listenGiven = false;
    bool listenTlsGiven = false;
    bool listenAdminGiven = false;
    QString configFile;
};

const QString serve = u"serve"_s;

using TaskKind = CommandLine::Task::Kind;

void addCommands(Syntax &syntax, Words &words)
{
    const auto user = Takes::parsed(userId, u"a user's id, which is a number"_s, &words.task.user);
    syntax.add({.name = serve, .summary = u"serve measurements until a signal ends it"_s});
    syntax.add({.name = u"check"_s,
                .summary = u"look whether a service could do its work here, and say what to do"_s});
    syntax.add({.name = u"stats"_s, .summary = u"say how much is in the store"_s});
    syntax.add({.name = u"export"_s,
                .summary = u"write all that is kept of one user, as lines of JSON"_s,
                .word = u"USER"_s,
                .takeWord = user});
    syntax.add({.name = u"forget"_s,
                .summary = u"delete all that is kept of one user, for good"_s,
                .word = u"USER"_s,
                .takeWord = user});
    syntax.add({.name = u"migrate"_s,
                .summary = u"move a store from an SQLite file to PostgreSQL"_s,
                .text =
                    u"The service on the file may go on. What is missing is copied, what differs "
                    "is changed, what is gone goes; it may be interrupted and run again. Run it "
                    "the last time when the old service has ended, and start the new one then."_s,
                .examples = {u"migrate --from sqlite:reports.sqlite --to "
                             "postgresql://velometer@db/velometer"_s}});
    syntax.add({u"--from"_s,
                u"ADDRESS"_s,
                u"move from here: sqlite:FILE"_s,
                database(&words.task.from),
                {u"migrate"_s}});
    syntax.add({u"--to"_s,
                u"ADDRESS"_s,
                u"move there: postgresql://USER@HOST/DATABASE"_s,
                database(&words.task.to),
                {u"migrate"_s}});
}

void addStore(Syntax &syntax, StoreOptions &store, const QStringList &commands)
{
    syntax.add(
        {u"--database"_s, u"ADDRESS"_s,
         u"keep users and reports here: sqlite:FILE, or postgresql://USER@HOST/DATABASE, which "
         "several services may share (sqlite:%1)"_s.arg(store.database),
         database(&store.database), commands});
    syntax.add({u"--device-key"_s,
                u"FILE"_s,
                u"the key with which devices' numbers become hashes, made when it is missing; "
                "services that share a data base need the same (the SQLite file's name with .key, "
                "or device.key in the same folder)"_s,
                Takes::text(&store.keyFile),
                {serve, u"check"_s}});
    const auto days = [&](const QString &name, const QString &text, std::optional<int> *to) {
        const auto parse = [](const QString &value) -> std::optional<int> {
            const auto number = Takes::wholeNumber(value);
            constexpr qint64 most = 36'500;
            return number && *number >= 1 && *number <= most
                       ? std::optional(static_cast<int>(*number))
                       : std::nullopt;
        };
        syntax.add({name,
                    u"N"_s,
                    text,
                    Takes::parsed(parse, u"a whole number from 1 to 36500"_s, to),
                    {serve, u"check"_s}});
    };
    days(u"--retain-days"_s, u"delete reports and tracks that came before so many days (never)"_s,
         &store.reportDays);
    days(u"--retain-documents-days"_s,
         u"keep of reports older than so many days their figures alone (never)"_s,
         &store.documentDays);
}

/// "0" or a number, of what one address or user may have in a time.
void addLimits(Syntax &syntax, Words &words, const QStringList &commands)
{
    struct Row
    {
        Spent kind;
        const char *name;
        const char *text;
        std::int64_t unit;
    };
    constexpr std::int64_t gigabyte = 1'000'000'000;
    constexpr std::array rows{
        Row{Spent::Ids, "--max-ids-per-hour", "questions for a user id an hour, of one address", 1},
        Row{Spent::Streams, "--max-streams-per-hour", "measurement streams an hour", 1},
        Row{Spent::Reports, "--max-reports-per-hour", "reports an hour", 1},
        Row{Spent::Pages, "--max-pages-per-hour", "pages, and what they ask for, an hour", 1},
        Row{Spent::Exports, "--max-exports-per-hour", "exports an hour", 1},
        Row{Spent::Bytes, "--max-gigabytes-per-day", "gigabytes of streams a day", gigabyte}};
    for (const Row &row : rows) {
        auto &limit = words.start.options.allowances.at(static_cast<std::size_t>(row.kind));
        const auto take = [&limit, unit = row.unit](const QString &name, const QString &value) {
            const auto number = Takes::wholeNumber(value);
            constexpr qint64 most = 1'000'000'000;
            if (!number || *number < 0 || *number > most) {
                return Takes::wrong(name, u"a whole number from 0 to %1"_s.arg(most), value);
            }
            limit.most = *number * unit;
            return QString();
        };
        syntax.add(
            {QString::fromLatin1(row.name), u"N"_s,
             u"%1, of one address or user; 0: without limit (%2)"_s.arg(QLatin1StringView(row.text))
                 .arg(limit.most / row.unit),
             take, commands});
    }
    const auto megabits = [](const QString &text) -> std::optional<std::int64_t> {
        const auto number = Takes::wholeNumber(text);
        constexpr qint64 most = 10'000'000;
        return number && *number >= 1 && *number <= most ? std::optional(*number * 1'000'000)
                                                         : std::nullopt;
    };
    syntax.add({u"--max-bandwidth"_s, u"MBIT"_s,
                u"Mbit/s of this machine's own line: tests are refused when it is nearly full, and "
                "streams that run share it out (no bound)"_s,
                Takes::parsed(megabits, u"Mbit/s, a whole number from 1"_s,
                              &words.start.options.maxBandwidth),
                commands});
}

void addServing(Syntax &syntax, Words &words)
{
    const QStringList both{serve, u"check"_s};
    ServerOptions &options = words.start.options;
    const auto number = [&](const QString &name, const QString &text, int least, int most,
                            int *to) {
        syntax.add(
            {name, u"N"_s, u"%1 (%2)"_s.arg(text).arg(*to), Takes::number(least, most, to), both});
    };
    syntax.add({u"--listen"_s, u"ADDRESS:PORT"_s,
                u"listen here (127.0.0.1:8080); may be given several times"_s,
                listen(&options.listen, &words.listenGiven), both});
    syntax.add({u"--tls-listen"_s, u"ADDRESS:PORT"_s,
                u"listen here with TLS, for all but measurement streams"_s,
                listen(&options.listenTls, &words.listenTlsGiven), both});
    syntax.add(
        {u"--tls-cert"_s, u"FILE"_s,
         u"the certificate, and those that lead to it, in PEM's form; SIGHUP reads it anew"_s,
         Takes::text(&options.tlsCertificate), both});
    syntax.add({u"--tls-key"_s, u"FILE"_s, u"its key"_s, Takes::text(&options.tlsKey), both});
    syntax.add({u"--admin-listen"_s, u"ADDRESS:PORT"_s,
                u"have /metrics and what ails /healthz here, and nowhere else"_s,
                listen(&options.listenAdmin, &words.listenAdminGiven), both});
    syntax.add(
        {u"--trust-proxy"_s, u"CIDR"_s,
         u"believe a proxy in this range whom it speaks for, by X-Forwarded-For or the PROXY "
         "protocol; may be given several times"_s,
         proxies(&options.proxies), both});
    number(u"--threads"_s, u"serve with so many threads"_s, 1, 1024, &options.threads);
    number(u"--max-streams"_s, u"measurement streams at once"_s, 1, 1'000'000, &options.maxStreams);
    number(u"--max-streams-per-address"_s, u"measurement streams at once to one address"_s, 1,
           1'000'000, &options.maxStreamsPerAddress);
    number(u"--max-connections-per-address"_s, u"connections at once from one address"_s, 1,
           1'000'000, &options.maxConnectionsPerAddress);
    addLimits(syntax, words, both);
    number(u"--max-report-bytes"_s, u"largest report taken"_s, 1024, 1 << 28, &words.reportBytes);
    syntax.add(
        {u"--tile-url"_s, u"URL"_s,
         u"draw maps with these tiles, as in https://tiles.example/{z}/{x}/{y}.png; without it "
         "the outlines of countries"_s,
         Takes::parsed(tiles, u"an http or https address with {z}, {x} and {y}"_s,
                       &options.tiles.address),
         both});
    syntax.add({u"--tile-attribution"_s, u"TEXT"_s, u"whom maps thank for their tiles"_s,
                Takes::text(&options.tiles.attribution), both});
    syntax.add({u"--statistics-licence"_s, u"LICENCE"_s,
                u"give the public figures away on these terms (%1)"_s.arg(options.licence),
                Takes::parsed(licence, u"an SPDX expression as in CC-BY-4.0"_s, &options.licence),
                both});
    syntax.add({u"--config"_s, u"FILE"_s, u"read the deployment from this file"_s,
                Takes::text(&words.configFile), both});
    syntax.add({u"--log-level"_s, u"error|warning|info|debug"_s, u"log so much (info)"_s,
                Takes::choice<Log::Level>({{u"error"_s, Log::Level::Error},
                                           {u"warning"_s, Log::Level::Warning},
                                           {u"info"_s, Log::Level::Info},
                                           {u"debug"_s, Log::Level::Debug}},
                                          &words.start.logLevel),
                both});
    syntax.add({u"--log-format"_s, u"json|text"_s,
                u"write lines of JSON, or for a person (json, but text on a terminal)"_s,
                Takes::choice<Log::Format>(
                    {{u"json"_s, Log::Format::Json}, {u"text"_s, Log::Format::Text}},
                    &words.start.logFormat),
                both});
}

/// What single options cannot see; a sentence, or nothing.
QString contradiction(const Words &words, const QString &command)
{
    const ServerOptions &options = words.start.options;
    if (options.tlsCertificate.isEmpty() != options.tlsKey.isEmpty()) {
        return u"--tls-cert and --tls-key need each other."_s;
    }
    if (!options.listenTls.empty() && options.tlsCertificate.isEmpty()) {
        return u"--tls-listen needs --tls-cert and --tls-key."_s;
    }
    if (command == u"migrate"_s && (words.task.from.isEmpty() || words.task.to.isEmpty())) {
        return u"migrate needs --from and --to."_s;
    }
    return {};
}

/// Fills in what the deployment says; a sentence when that cannot be.
QString deploy(Words &words)
{
    QString error;
    const auto deployment = Deployment::load(words.configFile, &error);
    if (!deployment) {
        return error;
    }
    ServerOptions &options = words.start.options;
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
    return {};
}

std::optional<TaskKind> taskOf(const QString &command)
{
    static const QHash<QString, TaskKind> kinds{{u"migrate"_s, TaskKind::Migrate},
                                                {u"forget"_s, TaskKind::Forget},
                                                {u"export"_s, TaskKind::Export},
                                                {u"stats"_s, TaskKind::Stats},
                                                {u"check"_s, TaskKind::Check}};
    const auto found = kinds.constFind(command);
    return found == kinds.cend() ? std::nullopt : std::optional(*found);
}

} // namespace

std::variant<CommandLine::Start, CommandLine::Task, CommandLine::End>
CommandLine::parse(const QStringList &arguments)
{
    Words words;
    ServerOptions &options = words.start.options;
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           u"/orvak/velometer-service/"_s;
    options.store.database = folder + u"reports.db.sqlite"_s;
    options.threads = std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
    words.reportBytes = static_cast<int>(options.maxReportBytes);
    if (::isatty(STDERR_FILENO) == 1) {
        words.start.logFormat = Log::Format::Text;
    }

    Syntax syntax(
        u"velometer-service"_s,
        u"Serves Velometer's measurements: control requests, streams, reports and web pages."_s,
        QStringLiteral(VELOMETER_VERSION));
    addCommands(syntax, words);
    addStore(syntax, options.store, {serve, u"check"_s, u"stats"_s, u"export"_s, u"forget"_s});
    addServing(syntax, words);

    QString error = syntax.read(arguments.mid(1));
    if (error.isEmpty() && !syntax.answer().isEmpty()) {
        return End{.status = 0, .text = syntax.answer()};
    }
    if (error.isEmpty()) {
        error = contradiction(words, syntax.command());
    }
    if (error.isEmpty()) {
        error = deploy(words);
    }
    if (!error.isEmpty()) {
        return End{.status = 2, .text = u"velometer-service: "_s + error + u'\n'};
    }
    if (options.store.keyFile.isEmpty() && PostgresDatabase::isAddress(options.store.database)) {
        options.store.keyFile = folder + u"device.key"_s;
    }
    options.maxReportBytes = static_cast<std::size_t>(words.reportBytes);
    if (const auto kind = taskOf(syntax.command())) {
        words.task.kind = *kind;
        words.task.options = options;
        return words.task;
    }
    words.start.listenGiven = words.listenGiven;
    return words.start;
}

} // namespace velometer
