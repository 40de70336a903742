#include "main/options.h"

#include "utils/quoted.h"
#include "utils/translations.h"

#include <QCommandLineParser>
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
    const QCommandLineOption config(u"config"_s, {}, u"FILE"_s);
    const QCommandLineOption dataDir(u"data-dir"_s, {}, u"DIR"_s);
    const QCommandLineOption platform(u"platform"_s, {}, u"DEVICE"_s);
    const QCommandLineOption position(u"position"_s, {}, u"SOURCE"_s);
    const QCommandLineOption shell(u"shell"_s, {}, u"NAME"_s);
    const QCommandLineOption language(u"language"_s, {}, u"LANGUAGE"_s);
    const QCommandLineOption verbose(u"verbose"_s);
    const QCommandLineOption version(u"version"_s);
    const QCommandLineOption help(u"help"_s);

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions(
        {config, dataDir, platform, position, shell, language, verbose, version, help});
    // Also a line that is wrong tells in which language to say so.
    const QString inOne = arguments.filter(QRegularExpression(u"^--language="_s)).value(0);
    const qsizetype inTwo = arguments.indexOf(u"--language"_s);
    Translations::choose(inTwo >= 0 ? arguments.value(inTwo + 1) : inOne.section(u'=', 1));
    if (!parser.parse(QStringList(u"velometer"_s) + arguments)) {
        const QStringList unknown = parser.unknownOptionNames();
        *error =
            unknown.isEmpty()
                ? say(QT_TRANSLATE_NOOP("Options", "%1; --help lists the options."))
                      .arg(parser.errorText().chopped(1))
                : say(QT_TRANSLATE_NOOP("Options", "There is no option %1; --help lists them."))
                      .arg(quoted(unknown.first()));
        return std::nullopt;
    }
    if (!parser.positionalArguments().isEmpty()) {
        *error = say(QT_TRANSLATE_NOOP(
                         "Options",
                         "velometer does not know what to do with %1; --help lists the options."))
                     .arg(quoted(parser.positionalArguments().constFirst()));
        return std::nullopt;
    }

    Options options;
    options.verbose = parser.isSet(verbose);
    options.version = parser.isSet(version);
    options.help = parser.isSet(help);
    const struct
    {
        const QCommandLineOption &option;
        QString &to;
    } texts[] = {
        {config, options.configFile}, {dataDir, options.dataDir}, {language, options.language}};
    for (const auto &[option, to] : texts) {
        to = parser.value(option);
        if (parser.isSet(option) && to.isEmpty()) {
            *error = say(QT_TRANSLATE_NOOP("Options", "--%1 needs a value."))
                         .arg(option.names().constFirst());
            return std::nullopt;
        }
    }
    if (!options.language.isEmpty() && options.language != "de"_L1 && options.language != "en"_L1) {
        *error = say(QT_TRANSLATE_NOOP("Options", "--language takes de or en, not %1."))
                     .arg(quoted(options.language));
        return std::nullopt;
    }
    if (parser.isSet(platform) && !options.platform.setDevice(parser.value(platform), error)) {
        return std::nullopt;
    }
    if (parser.isSet(position)) {
        const auto choice = PositionChoice::parse(parser.value(position), error);
        if (!choice) {
            return std::nullopt;
        }
        options.platform.position = *choice;
    }
    if (parser.isSet(shell)) {
        options.shell = Shell::fromName(parser.value(shell));
        if (!options.shell) {
            *error = say(QT_TRANSLATE_NOOP("Options",
                                           "--shell takes handset, phone or desktop, not %1."))
                         .arg(quoted(parser.value(shell)));
            return std::nullopt;
        }
    }
    return options;
}

QString Options::helpText()
{
    return say(QT_TRANSLATE_NOOP(
        "Options",
        "velometer measures a mobile data connection: download, upload and round-trip time.\n"
        "\n"
        "usage: velometer [options]\n"
        "\n"
        "  --config FILE      deployment file: where the service and the test servers are\n"
        "  --data-dir DIR     where results are kept\n"
        "  --platform system|scripted:FILE|none\n"
        "                     asks the device, replays a recorded one, or does without modem and\n"
        "                     position\n"
        "  --position nmea:FILE|nmea:socket://HOST:PORT|gpsd[://HOST[:PORT]]\n"
        "                     positions from a receiver or a recording of one\n"
        "  --shell NAME       handset (turned, full screen), phone (full screen) or desktop\n"
        "                     (a window); without it what fits the screen\n"
        "  --language de|en   German or English; without it as chosen on the settings page\n"
        "  --verbose          writes the diagnostic log to standard error\n"
        "  --version          prints the version\n"
        "  --help             prints this text\n"
        "\n"
        "velometer-cli does the same without a display.\n"));
}

QString Options::noDisplay()
{
    return say(
        QT_TRANSLATE_NOOP("Options", "There is no display; velometer-cli measures without one."));
}

} // namespace velometer
