#include "cli/commandsyntax.h"

#include "app/positionwait.h"
#include "arguments/takes.h"
#include "cli/optionvalues.h"
#include "utils/quoted.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Command = CommandLine::Command;
using Format = CommandLine::Format;
using Progress = CommandLine::Progress;

constexpr int maxCount = 100'000;
/// A week: whoever wants longer pauses has a timer service for it.
constexpr int maxInterval = 604'800;
constexpr int maxLimit = 1'000'000'000;

QString name(Command command)
{
    switch (command) {
    case Command::Test: return u"test"_s;
    case Command::Results: return u"results"_s;
    case Command::Show: return u"show"_s;
    case Command::Export: return u"export"_s;
    case Command::Servers: return u"servers"_s;
    case Command::Context: return u"context"_s;
    case Command::Resend: return u"resend"_s;
    case Command::NewSeries: return u"new-series"_s;
    case Command::Page: return u"page"_s;
    case Command::Clear: return u"clear"_s;
    case Command::Track: return u"track"_s;
    case Command::Tracks: return u"tracks"_s;
    case Command::DeleteTrack: return u"delete-track"_s;
    }
    Q_UNREACHABLE();
}

QList<std::pair<QString, Format>> formatsOf(Command command)
{
    if (command == Command::Export) {
        return {{u"csv"_s, Format::Csv},
                {u"json"_s, Format::Json},
                {u"geojson"_s, Format::GeoJson},
                {u"gpx"_s, Format::Gpx}};
    }
    return {{u"text"_s, Format::Text}, {u"json"_s, Format::Json}, {u"csv"_s, Format::Csv}};
}

const QString exportFormats = u"csv|json|geojson|gpx"_s;

} // namespace

CommandSyntax::CommandSyntax()
    : syntax(u"velometer-cli"_s,
             tr("velometer-cli measures download, upload and round-trip time of this connection."),
             Utils::getPlainVersion())
{
    addCommands();
    addTrackCommands();
    addTestOptions();
    addTrackOptions();
    addOutputOptions();
    addDeviceOptions();
    addCommonOptions();
    addNotes();
}

void CommandSyntax::addCommands()
{
    syntax.add({.name = name(Command::Test),
                .summary = tr("run a test, or a series of them"),
                .examples = {u"--location train"_s,
                             u"test --server sunrise --count 12 --interval 300 --csv"_s,
                             u"--position gpsd --count 60 --interval 60"_s,
                             u"--json | jq .download.avg_bps"_s}});
    syntax.add({.name = name(Command::Results),
                .summary = tr("list the stored tests"),
                .text = tr("Lists the stored tests, the newest first."),
                .examples = {u"results --limit 10"_s, u"results --json"_s}});
    syntax.add(
        {.name = name(Command::Show),
         .summary = tr("one stored test"),
         .text = tr("One stored test: ID as results lists it, or SERIES/TEST."),
         .word = u"ID"_s,
         .takeWord = [this](const QString &, const QString &word) { return takeStoredTest(word); },
         .examples = {u"show 17"_s, u"show 3/12 --json"_s}});
    syntax.add(
        {.name = name(Command::Export),
         .summary = tr("all stored tests for other programs"),
         .text = tr("All stored tests, the newest first: a table, a JSON object a line, a GeoJSON\n"
                    "collection, or a GPX waypoint for each test whose position is known."),
         .needed = u"--format "_s + exportFormats,
         .examples = {u"export --format csv > tests.csv"_s, u"export --format gpx > tests.gpx"_s}});
    syntax.add({.name = name(Command::Servers),
                .summary = tr("the servers to test against"),
                .text = tr("The servers to test against; a star marks the one used last."),
                .examples = {u"servers"_s}});
    syntax.add(
        {.name = name(Command::Context),
         .summary = tr("what the device tells about itself right now"),
         .text =
             tr("What the device tells about network, position and itself, and what it does not.\n"
                "With --watch again after every change, until interrupted."),
         .examples = {u"context --json"_s, u"context --position nmea:/dev/ttyACM0"_s,
                      u"context --watch"_s}});
    syntax.add(
        {.name = name(Command::Resend),
         .summary = tr("deliver the reports that wait"),
         .text =
             tr("Offers the waiting reports to the service once. Exit status 0: none waits any\n"
                "more, 1: the service did not take them all, 5: it cannot be reached."),
         .examples = {u"resend"_s}});
    syntax.add({.name = name(Command::NewSeries),
                .summary = tr("start a new series of tests"),
                .text = tr("The tests from now on belong to a new series and are counted from 1."),
                .examples = {u"new-series && velometer-cli --count 5 --interval 60"_s}});
    syntax.add(
        {.name = name(Command::Page),
         .summary = tr("where the service shows your tests"),
         .text =
             tr("The address of the page on which the service shows your tests and, on a\n"
                "terminal, the same as a QR code for a phone's camera. Whoever has the address\n"
                "sees the tests."),
         .examples = {u"page"_s, u"page --open"_s}});
    syntax.add(
        {.name = name(Command::Clear),
         .summary = tr("delete all stored tests and waiting reports"),
         .text = tr("Deletes all stored tests and all waiting reports. Without --yes it only says\n"
                    "what it would delete."),
         .examples = {u"clear --yes"_s}});
}

void CommandSyntax::addTestOptions()
{
    const QStringList test{name(Command::Test)};
    const QStringList testing = test + QStringList(name(Command::Track));
    const QStringList onNetwork = testing + QStringList(name(Command::Resend));
    const auto protocol = [this](QAbstractSocket::NetworkLayerProtocol wanted) {
        return [this, wanted](const QString &option, const QString &) {
            return keepProtocol(option, wanted);
        };
    };
    syntax.add({u"--server"_s, u"NAME|HOST[:PORT]"_s,
                tr("a server of the list, or any other (port 80)"), Takes::text(&result.server),
                onNetwork});
    syntax.add({u"--location"_s, OptionValues::locations().join(u'|'),
                tr("where you are; goes into the report"),
                Takes::parsed(OptionValues::location, Syntax::listed(OptionValues::locations()),
                              &result.location),
                testing});
    syntax.add({u"--count"_s, u"N"_s, tr("so many tests (1 to 100000)"),
                Takes::number(1, maxCount, &result.count), test});
    syntax.add({u"--interval"_s, u"SECONDS"_s,
                tr("of tests from start to start (0 to 604800), of a track from point to point (1 "
                   "to 3600, or in metres, such as 10m)"),
                [this](const QString &option, const QString &value) {
                    return takeInterval(option, value);
                },
                testing});
    syntax.add({u"--resume"_s,
                {},
                tr("go on with a series, or a track, that was interrupted"),
                Takes::flag(&result.resume),
                testing});
    syntax.add({u"--max-bytes"_s, u"N"_s,
                tr("download and upload of a test end when they have moved N bytes together "
                   "(from 100000; 500k, 10M, 2G), 0 for no limit; else what the settings page "
                   "says"),
                Takes::parsed(OptionValues::budget,
                              tr("a number of bytes from %1 on, also such as 500k, 10M or 2G, or 0 "
                                 "for no limit")
                                  .arg(DataBudget::minimum),
                              &result.budget),
                testing});
    syntax.add({u"--rtt-samples"_s, u"N"_s,
                tr("times the round trip of the idle line N times (3 to 200), for median, 95th "
                   "percentile and jitter; its figures stay those of the first 3"),
                Takes::number(DelayPlan::countedSamples, DelayPlan::mostSamples,
                              &result.delays.idleSamples),
                test});
    syntax.add({u"--under-load"_s,
                {},
                tr("after the usual figures load the line for 5 s each way with CUBIC, which fills "
                   "queues, and tell the delay meanwhile"),
                Takes::flag(&result.delays.underLoad),
                test});
    syntax.add({u"--congestion-control"_s, u"NAME"_s,
                tr("of the streams of both ends, where their kernels have it; else BBR, where they "
                   "have that"),
                Takes::parsed(OptionValues::congestionControl,
                              Syntax::listed(Sockets::congestionControls()),
                              &result.delays.congestionControl),
                test});
    syntax.add(
        {u"--wait-position"_s, u"SECONDS"_s,
         tr("wait before the first test for a first position (0 to 600); else 5 where "
            "something may tell one"),
         [this, take = Takes::number(0, static_cast<int>(PositionWait::longest.count()),
                                     &waitSeconds)](const QString &option, const QString &value) {
             const QString complaint = take(option, value);
             result.waitPosition = std::chrono::seconds(waitSeconds);
             return complaint;
         },
         test});
    syntax.add({u"--allow-roaming"_s,
                {},
                tr("test even when it may be expensive"),
                Takes::flag(&result.allowRoaming),
                testing});
    syntax.add({u"-4"_s, {}, tr("only IPv4"), protocol(QAbstractSocket::IPv4Protocol), onNetwork});
    syntax.add({u"-6"_s, {}, tr("only IPv6"), protocol(QAbstractSocket::IPv6Protocol), onNetwork});
}

void CommandSyntax::addOutputOptions()
{
    QStringList formatted;
    for (const Command command :
         {Command::Test, Command::Results, Command::Show, Command::Export, Command::Servers,
          Command::Context, Command::Track, Command::Tracks}) {
        formatted.append(name(command));
    }
    const QStringList test{name(Command::Test)};
    const auto format = [this](Format wanted) {
        return [this, wanted](const QString &option, const QString &) {
            return keepFormat(option, wanted);
        };
    };
    syntax.add(
        {u"--format"_s, u"FORMAT"_s, tr("text, json or csv; of export csv, json, geojson or gpx"),
         [this](const QString &, const QString &value) { return takeFormat(value); }, formatted});
    syntax.add({u"--json"_s, {}, tr("the same as --format json"), format(Format::Json), formatted});
    syntax.add({u"--csv"_s, {}, tr("the same as --format csv"), format(Format::Csv), formatted});
    syntax.add({u"--json-stream"_s,
                {},
                tr("events as they happen, one JSON object a line"),
                format(Format::JsonStream),
                test});
    syntax.add(
        {u"--progress"_s,
         u"auto|yes|no"_s,
         tr("to standard error; auto: on a terminal"),
         Takes::choice<Progress>(
             {{u"auto"_s, Progress::Auto}, {u"yes"_s, Progress::Yes}, {u"no"_s, Progress::No}},
             &result.progress),
         {name(Command::Test), name(Command::Track)}});
    syntax.add({u"--limit"_s,
                u"N"_s,
                tr("at most so many tests"),
                Takes::number(1, maxLimit, &result.limit),
                {name(Command::Results)}});
    syntax.add({u"--yes"_s,
                {},
                tr("really delete"),
                Takes::flag(&result.yes),
                {name(Command::Clear), name(Command::DeleteTrack)}});
    syntax.add({u"--open"_s,
                {},
                tr("open it in the browser as well"),
                Takes::flag(&result.open),
                {name(Command::Page)}});
}

void CommandSyntax::addDeviceOptions()
{
    const QStringList onDevice{name(Command::Test), name(Command::Context), name(Command::Resend),
                               name(Command::NewSeries), name(Command::Track)};
    syntax.add({u"--platform"_s, u"system|scripted:FILE|none"_s,
                tr("ask the device, replay a recorded one, or do without modem and position"),
                [this](const QString &, const QString &value) { return takePlatform(value); },
                onDevice});
    syntax.add({u"--position"_s, u"nmea:FILE|nmea:socket://HOST:PORT|gpsd[://HOST[:PORT]]"_s,
                tr("positions from a receiver, or from a recording at its pace, whatever the "
                   "platform"),
                [this](const QString &, const QString &value) { return takePosition(value); },
                onDevice});
    syntax.add({u"--watch"_s,
                {},
                tr("print again whenever something changes"),
                Takes::flag(&result.watch),
                {name(Command::Context)}});
}

void CommandSyntax::addCommonOptions()
{
    syntax.add({u"--config"_s, u"FILE"_s,
                tr("where the service lives (else VELOMETER_CONFIG, else "
                   "velometer/deployment.conf)"),
                Takes::text(&result.configFile)});
    syntax.add(
        {u"--data-dir"_s, u"DIR"_s, tr("keep the results there"), Takes::text(&result.dataDir)});
    syntax.add({u"--verbose"_s,
                {},
                tr("the diagnostic log, to standard error"),
                Takes::flag(&result.verbose)});
}

void CommandSyntax::addNotes()
{
    syntax.addNote(
        tr("Exit status: 0 done, 1 the service refused or broke the test, 2 wrong usage,\n"
           "3 the store cannot be opened or written, 4 roaming or over the data budget,\n"
           "5 no network or no server, 129 hung up, 130 interrupted, 143 terminated."),
        {name(Command::Test), name(Command::Track)});
}

QString CommandSyntax::read(const QStringList &arguments)
{
    const QString error = syntax.read(arguments);
    for (int i = 0; i <= static_cast<int>(Command::DeleteTrack); ++i) {
        if (name(static_cast<Command>(i)) == syntax.command()) {
            result.command = static_cast<Command>(i);
        }
    }
    result.answer = syntax.answer();
    return error.isEmpty() && result.answer.isEmpty() ? checkWhole() : error;
}

QString CommandSyntax::takeStoredTest(const QString &word)
{
    if (word.isEmpty()) {
        return tr("show needs the ID of a test, as results lists it.");
    }
    return Takes::parsed(OptionValues::storedTest,
                         tr("an ID such as 17, or SERIES/TEST such as 3/12"),
                         &result.storedTest)(u"show"_s, word);
}

QString CommandSyntax::takeFormat(const QString &value)
{
    const bool isExport = syntax.command() == name(Command::Export);
    Format format = Format::Text;
    const QString error = Takes::choice(formatsOf(isExport ? Command::Export : Command::Test),
                                        &format)(tr("--format of %1").arg(syntax.command()), value);
    return error.isEmpty() ? keepFormat("--format "_L1 + value, format) : error;
}

QString CommandSyntax::keepFormat(const QString &option, Format format)
{
    if (!formatOption.isEmpty() && format != result.format) {
        return Takes::contradiction(formatOption, option);
    }
    formatOption = option;
    result.format = format;
    return {};
}

QString CommandSyntax::keepProtocol(const QString &option,
                                    QAbstractSocket::NetworkLayerProtocol protocol)
{
    if (!protocolOption.isEmpty() && protocolOption != option) {
        return Takes::contradiction(protocolOption, option);
    }
    protocolOption = option;
    result.protocol = protocol;
    return {};
}

QString CommandSyntax::takePlatform(const QString &value)
{
    const PlatformChoice before = result.platform;
    QString error;
    if (!result.platform.setDevice(value, &error)) {
        return error;
    }
    const QString option = "--platform "_L1 + quoted(value);
    if (!platformOption.isEmpty() && before != result.platform) {
        return Takes::contradiction(platformOption, option);
    }
    platformOption = option;
    return {};
}

QString CommandSyntax::takePosition(const QString &value)
{
    QString error;
    const auto choice = PositionChoice::parse(value, &error);
    if (!choice) {
        return error;
    }
    const QString option = "--position "_L1 + quoted(value);
    if (!positionOption.isEmpty() && *choice != result.platform.position) {
        return Takes::contradiction(positionOption, option);
    }
    positionOption = option;
    result.platform.position = *choice;
    return {};
}

QString CommandSyntax::checkWhole() const
{
    if (intervalGiven && result.count == 1) {
        return tr("--interval needs --count with at least 2 tests.");
    }
    if (result.resume && result.command == Command::Test &&
        (result.count > 1 || result.location != "Unknown"_L1)) {
        return tr("--resume goes on with what the series began with; leave out --count, "
                  "--interval and --location.");
    }
    if (result.command == Command::Export && formatOption.isEmpty()) {
        QStringList formats;
        for (const auto &each : formatsOf(Command::Export)) {
            formats.append(each.first);
        }
        return tr("export needs --format with %1.").arg(Syntax::listed(formats));
    }
    return {};
}

} // namespace velometer
