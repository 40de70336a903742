#include "main/options.h"

#include "arguments/takes.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString say(const char *text)
{
    return Translations::translate("Options", text);
}

} // namespace

std::optional<Options> Options::parse(const QStringList &arguments, QString *error)
{
    // Also a line that is wrong tells in which language to say so.
    const QString inOne = arguments.filter(QRegularExpression(u"^--language="_s)).value(0);
    const qsizetype inTwo = arguments.indexOf(u"--language"_s);
    Translations::choose(inTwo >= 0 ? arguments.value(inTwo + 1) : inOne.section(u'=', 1));

    Options options;
    Syntax syntax(u"velometer"_s,
                  say(QT_TRANSLATE_NOOP("Options", "velometer measures a mobile data connection: "
                                                   "download, upload and round-trip time.")),
                  Utils::getPlainVersion());
    syntax.add({u"--config"_s, u"FILE"_s,
                say(QT_TRANSLATE_NOOP(
                    "Options", "deployment file: where the service and the test servers are")),
                Takes::text(&options.configFile)});
    syntax.add({u"--data-dir"_s, u"DIR"_s,
                say(QT_TRANSLATE_NOOP("Options", "where results are kept")),
                Takes::text(&options.dataDir)});
    syntax.add({u"--platform"_s, u"system|scripted:FILE|none"_s,
                say(QT_TRANSLATE_NOOP("Options", "asks the device, replays a recorded one, or does "
                                                 "without modem and position")),
                [&](const QString &, const QString &value) {
                    QString wrong;
                    (void)options.platform.setDevice(value, &wrong);
                    return wrong;
                }});
    syntax.add(
        {u"--position"_s, u"nmea:FILE|nmea:socket://HOST:PORT|gpsd[://HOST[:PORT]]"_s,
         say(QT_TRANSLATE_NOOP("Options", "positions from a receiver or a recording of one")),
         [&](const QString &, const QString &value) {
             QString wrong;
             const auto choice = PositionChoice::parse(value, &wrong);
             options.platform.position = choice.value_or(options.platform.position);
             return wrong;
         }});
    syntax.add(
        {u"--shell"_s, u"NAME"_s,
         say(QT_TRANSLATE_NOOP("Options", "handset (turned, full screen), phone (full screen) or "
                                          "desktop (a window); without it what fits the screen")),
         Takes::parsed(Shell::fromName,
                       say(QT_TRANSLATE_NOOP("Options", "handset, phone or desktop")),
                       &options.shell)});
    syntax.add(
        {u"--theme"_s, u"auto|dark|light|given"_s,
         say(QT_TRANSLATE_NOOP("Options", "how it looks; without it as chosen on the settings "
                                          "page")),
         Takes::parsed(Appearance::fromName,
                       say(QT_TRANSLATE_NOOP("Options", "auto, dark, light or given")),
                       &options.theme)});
    syntax.add(
        {u"--language"_s, u"de|en"_s,
         say(QT_TRANSLATE_NOOP("Options", "German or English; without it as chosen on the "
                                          "settings page")),
         Takes::choice<QString>({{u"de"_s, u"de"_s}, {u"en"_s, u"en"_s}}, &options.language)});
    syntax.add({u"--verbose"_s,
                {},
                say(QT_TRANSLATE_NOOP("Options", "writes the diagnostic log to standard error")),
                Takes::flag(&options.verbose)});
    syntax.addNote(
        say(QT_TRANSLATE_NOOP("Options", "velometer-cli does the same without a display.")));

    *error = syntax.read(arguments);
    options.answer = syntax.answer();
    return error->isEmpty() ? std::optional(options) : std::nullopt;
}

QString Options::noDisplay()
{
    return say(
        QT_TRANSLATE_NOOP("Options", "There is no display; velometer-cli measures without one."));
}

} // namespace velometer
