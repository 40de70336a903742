#include "arguments/takes.h"
#include "cli/commandsyntax.h"
#include "cli/optionvalues.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int longestTrackInterval = 3'600;
constexpr int longestTestInterval = 604'800;

} // namespace

void CommandSyntax::addTrackCommands()
{
    syntax.add(
        {.name = u"track"_s,
         .summary = tr("record where you are and what your network is there"),
         .text = tr("Records position, network, cell and signal on the way, without any traffic,\n"
                    "until interrupted; Ctrl+Z and fg pause it. What is stored after a crash goes "
                    "on\nwith --resume. With --json or --csv every point is also printed."),
         .examples = {u"track --position gpsd --test-every 500m"_s,
                      u"track --interval 10m --duration 3600"_s,
                      u"track --json | jq .rsrp_dbm"_s}});
    syntax.add({.name = u"tracks"_s,
                .summary = tr("list the recorded tracks"),
                .text = tr("Lists the recorded tracks, the newest first; export --track ID writes "
                           "one."),
                .examples = {u"tracks"_s, u"export --track 3 --format gpx > drive.gpx"_s}});
    syntax.add({.name = u"delete-track"_s,
                .summary = tr("delete a recorded track"),
                .text = tr("Deletes the track ID, as tracks lists it, from this device. Without "
                           "--yes it only\nsays what it would delete."),
                .word = u"ID"_s,
                .takeWord =
                    [this](const QString &, const QString &word) {
                        return word.isEmpty()
                                   ? tr("delete-track needs the ID of a track, as tracks lists it.")
                                   : takeTrack(u"delete-track"_s, word);
                    },
                .examples = {u"delete-track 3 --yes"_s}});
}

void CommandSyntax::addTrackOptions()
{
    syntax.add({u"--test-every"_s,
                u"SECONDS|METRES"_s,
                tr("run a test on the way, from start to start: 300, or 500m"),
                [this](const QString &option, const QString &value) {
                    if (const auto metres = OptionValues::metres(value)) {
                        result.track.testMetres = *metres;
                        result.track.testInterval = {};
                        return QString();
                    }
                    result.track.testMetres = 0;
                    return Takes::parsed(
                        [](const QString &text) {
                            return OptionValues::seconds(text, longestTestInterval);
                        },
                        tr("seconds such as 300 or metres such as 500m"),
                        &result.track.testInterval)(option, value);
                },
                {u"track"_s}});
    syntax.add(
        {u"--duration"_s,
         u"SECONDS"_s,
         tr("end after so long (1 to 604800)"),
         Takes::parsed(
             [](const QString &text) { return OptionValues::seconds(text, longestTestInterval); },
             tr("seconds from 1 to %1").arg(longestTestInterval), &result.duration),
         {u"track"_s}});
    syntax.add({u"--local"_s,
                {},
                tr("the track stays on this device; else the service shows it on your page"),
                Takes::flag(&result.isLocal),
                {u"track"_s}});
    syntax.add({u"--send"_s,
                {},
                tr("first bring those to the service that it does not have"),
                Takes::flag(&result.send),
                {u"tracks"_s}});
    syntax.add(
        {u"--track"_s,
         u"ID"_s,
         tr("this track in place of the tests"),
         [this](const QString &option, const QString &value) { return takeTrack(option, value); },
         {u"export"_s}});
}

QString CommandSyntax::takeInterval(const QString &option, const QString &value)
{
    if (syntax.command() != "track"_L1) {
        intervalGiven = true;
        return Takes::number(0, longestTestInterval, &result.interval)(option, value);
    }
    if (const auto metres = OptionValues::metres(value)) {
        result.track.metres = *metres;
        result.track.interval = std::chrono::seconds(1);
        return {};
    }
    result.track.metres = 0;
    return Takes::parsed(
        [](const QString &text) { return OptionValues::seconds(text, longestTrackInterval); },
        tr("seconds from 1 to %1, or metres such as 10m").arg(longestTrackInterval),
        &result.track.interval)(option, value);
}

QString CommandSyntax::takeTrack(const QString &option, const QString &word)
{
    return Takes::parsed(
        [](const QString &text) {
            const auto row = Takes::wholeNumber(text);
            return row && *row > 0 ? std::optional(static_cast<qulonglong>(*row)) : std::nullopt;
        },
        tr("the ID of a track, as tracks lists it"), &result.trackRow)(option, word);
}

} // namespace velometer
