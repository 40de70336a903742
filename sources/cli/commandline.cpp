#include "cli/commandline.h"

#include "cli/optionvalues.h"
#include "utils/quoted.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Command = CommandLine::Command;
using Format = CommandLine::Format;

constexpr int maxCount = 100'000;
/// A week: whoever wants longer pauses has a timer service for it.
constexpr int maxInterval = 604'800;
constexpr int maxLimit = 1'000'000'000;

constexpr std::array commandNames = {
    std::pair{Command::Test, "test"_L1},       std::pair{Command::Results, "results"_L1},
    std::pair{Command::Show, "show"_L1},       std::pair{Command::Export, "export"_L1},
    std::pair{Command::Servers, "servers"_L1}, std::pair{Command::Context, "context"_L1},
    std::pair{Command::Resend, "resend"_L1},   std::pair{Command::NewSeries, "new-series"_L1},
    std::pair{Command::Clear, "clear"_L1},
};

constexpr std::array formatNames = {
    std::pair{Format::Text, "text"_L1}, std::pair{Format::Json, "json"_L1},
    std::pair{Format::Csv, "csv"_L1},   std::pair{Format::GeoJson, "geojson"_L1},
    std::pair{Format::Gpx, "gpx"_L1},
};

constexpr unsigned bit(Command command)
{
    return 1U << static_cast<unsigned>(command);
}

constexpr unsigned everywhere = ~0U;
constexpr unsigned onlyTest = bit(Command::Test);
constexpr unsigned formatted = onlyTest | bit(Command::Results) | bit(Command::Show) |
                               bit(Command::Export) | bit(Command::Servers) | bit(Command::Context);
/// Commands that look at the device.
constexpr unsigned onDevice =
    onlyTest | bit(Command::Context) | bit(Command::Resend) | bit(Command::NewSeries);

QStringList formatsOf(Command command)
{
    if (command == Command::Export) {
        return {u"csv"_s, u"json"_s, u"geojson"_s, u"gpx"_s};
    }
    return {u"text"_s, u"json"_s, u"csv"_s};
}

QString listed(QStringList items)
{
    const QString last = items.takeLast();
    return items.isEmpty() ? last : CommandLine::tr("%1 or %2").arg(items.join(", "_L1), last);
}

class Parser
{
public:
    explicit Parser(const QStringList &all)
        : arguments(all)
    {}

    QString run()
    {
        QString error = split();
        if (error.isEmpty()) {
            error = takeCommand();
        }
        for (const Given &each : std::as_const(given)) {
            if (error.isEmpty()) {
                error = take(each);
            }
        }
        if (!error.isEmpty() || line.help || line.version) {
            return error;
        }
        error = takeWords();
        return error.isEmpty() ? checkWhole() : error;
    }

    CommandLine line;

private:
    using Take = QString (Parser::*)(const QString &value);
    struct Option
    {
        QLatin1StringView name;
        bool hasValue;
        unsigned commands;
        Take take;
    };
    struct Given
    {
        const Option *option;
        QString value;
    };
    static const Option options[];

    static const Option *find(const QString &name);
    QString split();
    QString takeCommand();
    QString takeWords();
    QString take(const Given &option);
    QString checkWhole() const;

    QString takeNumber(QLatin1StringView option, const QString &value, int min, int max, int *to);
    QString takeFormatName(const QString &option, Format format);
    QString takeProtocol(QAbstractSocket::NetworkLayerProtocol protocol);
    QString takeStoredTest(const QString &word)
    {
        return keep(OptionValues::storedTest(word), &line.storedTest,
                    CommandLine::tr("show takes an ID such as 17, or SERIES/TEST such as 3/12, not "
                                    "%1.")
                        .arg(quoted(word)));
    }
    /// The value where there is one, else what is wrong.
    template <typename Value, typename Target>
    static QString keep(const std::optional<Value> &value, Target *to, const QString &complaint)
    {
        if (!value) {
            return complaint;
        }
        *to = *value;
        return {};
    }
    QString takeText(QLatin1StringView option, const QString &value, QString *to);
    static QString set(bool *flag)
    {
        *flag = true;
        return {};
    }

    QString server(const QString &v) { return takeText("--server"_L1, v, &line.server); }
    QString config(const QString &v) { return takeText("--config"_L1, v, &line.configFile); }
    QString dataDir(const QString &v) { return takeText("--data-dir"_L1, v, &line.dataDir); }
    QString platform(const QString &v);
    QString position(const QString &v);
    QString watch(const QString &) { return set(&line.watch); }
    QString count(const QString &v)
    {
        return takeNumber("--count"_L1, v, 1, maxCount, &line.count);
    }
    QString interval(const QString &v)
    {
        intervalGiven = true;
        return takeNumber("--interval"_L1, v, 0, maxInterval, &line.interval);
    }
    QString resume(const QString &) { return set(&line.resume); }
    QString maxBytes(const QString &v)
    {
        return keep(OptionValues::budget(v), &line.budget,
                    CommandLine::tr("--max-bytes takes a number of bytes from %1 on, also such as "
                                    "500k, 10M or 2G, or 0 for no limit, not %2.")
                        .arg(QString::number(DataBudget::minimum), quoted(v)));
    }
    QString limit(const QString &v)
    {
        return takeNumber("--limit"_L1, v, 1, maxLimit, &line.limit);
    }
    QString location(const QString &v)
    {
        return keep(OptionValues::location(v), &line.location,
                    CommandLine::tr("--location takes %1, not %2.")
                        .arg(listed(OptionValues::locations()), quoted(v)));
    }
    QString format(const QString &v);
    QString json(const QString &) { return takeFormatName(u"--json"_s, Format::Json); }
    QString csv(const QString &) { return takeFormatName(u"--csv"_s, Format::Csv); }
    QString jsonStream(const QString &)
    {
        return takeFormatName(u"--json-stream"_s, Format::JsonStream);
    }
    QString progress(const QString &v);
    QString allowRoaming(const QString &) { return set(&line.allowRoaming); }
    QString yes(const QString &) { return set(&line.yes); }
    QString ipv4(const QString &) { return takeProtocol(QAbstractSocket::IPv4Protocol); }
    QString ipv6(const QString &) { return takeProtocol(QAbstractSocket::IPv6Protocol); }
    QString verbose(const QString &) { return set(&line.verbose); }
    QString version(const QString &) { return set(&line.version); }
    QString help(const QString &) { return set(&line.help); }

    const QStringList &arguments;
    QList<Given> given;
    QStringList words;
    QString formatOption;
    QString platformOption;
    QString positionOption;
    bool intervalGiven = false;
};

const Parser::Option Parser::options[] = {
    {"--server"_L1, true, onlyTest | bit(Command::Resend), &Parser::server},
    {"--location"_L1, true, onlyTest, &Parser::location},
    {"--count"_L1, true, onlyTest, &Parser::count},
    {"--interval"_L1, true, onlyTest, &Parser::interval},
    {"--resume"_L1, false, onlyTest, &Parser::resume},
    {"--max-bytes"_L1, true, onlyTest, &Parser::maxBytes},
    {"--format"_L1, true, formatted, &Parser::format},
    {"--json"_L1, false, formatted, &Parser::json},
    {"--csv"_L1, false, formatted, &Parser::csv},
    {"--json-stream"_L1, false, onlyTest, &Parser::jsonStream},
    {"--progress"_L1, true, onlyTest, &Parser::progress},
    {"--allow-roaming"_L1, false, onlyTest, &Parser::allowRoaming},
    {"-4"_L1, false, onlyTest | bit(Command::Resend), &Parser::ipv4},
    {"-6"_L1, false, onlyTest | bit(Command::Resend), &Parser::ipv6},
    {"--limit"_L1, true, bit(Command::Results), &Parser::limit},
    {"--yes"_L1, false, bit(Command::Clear), &Parser::yes},
    {"--platform"_L1, true, onDevice, &Parser::platform},
    {"--position"_L1, true, onDevice, &Parser::position},
    {"--watch"_L1, false, bit(Command::Context), &Parser::watch},
    {"--config"_L1, true, everywhere, &Parser::config},
    {"--data-dir"_L1, true, everywhere, &Parser::dataDir},
    {"--verbose"_L1, false, everywhere, &Parser::verbose},
    {"--version"_L1, false, everywhere, &Parser::version},
    {"--help"_L1, false, everywhere, &Parser::help},
};

const Parser::Option *Parser::find(const QString &name)
{
    const auto *option = std::find_if(std::begin(options), std::end(options),
                                      [&](const Option &each) { return name == each.name; });
    return option == std::end(options) ? nullptr : option;
}

QString Parser::split()
{
    static const QRegularExpression negative(u"^-[0-9]+$"_s);
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (!argument.startsWith(u'-')) {
            words.append(argument);
            continue;
        }
        const qsizetype equals = argument.startsWith("--"_L1) ? argument.indexOf(u'=') : -1;
        const Option *option = find(equals < 0 ? argument : argument.left(equals));
        if (!option) {
            return CommandLine::tr("There is no option %1; --help lists them.")
                .arg(quoted(argument));
        }
        if (!option->hasValue) {
            if (equals >= 0) {
                return CommandLine::tr("%1 takes no value.").arg(option->name);
            }
            given.append({option, QString()});
            continue;
        }
        if (equals >= 0) {
            given.append({option, argument.mid(equals + 1)});
            continue;
        }
        // A negative number is a value out of range, not a forgotten value.
        const QString next = arguments.value(i + 1);
        const bool isValue =
            !next.startsWith(u'-') || (!find(next) && negative.match(next).hasMatch());
        if (i + 1 >= arguments.size() || !isValue) {
            return CommandLine::tr("%1 needs a value.").arg(option->name);
        }
        given.append({option, next});
        ++i;
    }
    return {};
}

QString Parser::takeCommand()
{
    if (words.isEmpty()) {
        return {};
    }
    const QString word = words.takeFirst();
    QStringList names;
    for (const auto &[command, name] : commandNames) {
        if (word == name) {
            line.command = command;
            line.commandGiven = true;
            return {};
        }
        names.append(name);
    }
    return CommandLine::tr("There is no command %1; use %2.").arg(quoted(word), listed(names));
}

QString Parser::takeWords()
{
    if (line.command == Command::Show) {
        if (words.isEmpty()) {
            return CommandLine::tr("show needs the ID of a test, as results lists it.");
        }
        QString error = takeStoredTest(words.takeFirst());
        if (!error.isEmpty()) {
            return error;
        }
    }
    if (words.isEmpty()) {
        return {};
    }
    return CommandLine::tr("%1 does not know what to do with %2.")
        .arg(CommandLine::name(line.command), quoted(words.first()));
}

QString Parser::take(const Given &option)
{
    if (!(option.option->commands & bit(line.command))) {
        return CommandLine::tr("%1 is no option of %2.")
            .arg(option.option->name, CommandLine::name(line.command));
    }
    return (this->*option.option->take)(option.value);
}

QString Parser::checkWhole() const
{
    if (intervalGiven && line.count == 1) {
        return CommandLine::tr("--interval needs --count with at least 2 tests.");
    }
    if (line.resume && (line.count > 1 || line.location != "Unknown"_L1)) {
        return CommandLine::tr("--resume goes on with what the series began with; leave out "
                               "--count, --interval and --location.");
    }
    if (line.command == Command::Export && formatOption.isEmpty()) {
        return CommandLine::tr("export needs --format with %1.")
            .arg(listed(formatsOf(Command::Export)));
    }
    return {};
}

QString Parser::takeNumber(QLatin1StringView option, const QString &value, int min, int max,
                           int *to)
{
    const auto number = OptionValues::wholeNumber(value);
    if (!number || *number < min || *number > max) {
        return CommandLine::tr("%1 takes a whole number from %2 to %3, not %4.")
            .arg(option, QString::number(min), QString::number(max), quoted(value));
    }
    *to = static_cast<int>(*number);
    return {};
}

QString Parser::takeText(QLatin1StringView option, const QString &value, QString *to)
{
    if (value.isEmpty()) {
        return CommandLine::tr("%1 needs a value.").arg(option);
    }
    *to = value;
    return {};
}

QString Parser::takeFormatName(const QString &option, Format format)
{
    if (!formatOption.isEmpty() && format != line.format) {
        return CommandLine::tr("%1 and %2 contradict each other.").arg(formatOption, option);
    }
    formatOption = option;
    line.format = format;
    return {};
}

QString Parser::format(const QString &value)
{
    const QStringList allowed = formatsOf(line.command);
    for (const auto &[format, name] : formatNames) {
        if (value == name && allowed.contains(value)) {
            return takeFormatName(u"--format %1"_s.arg(name), format);
        }
    }
    return CommandLine::tr("--format of %1 takes %2, not %3.")
        .arg(CommandLine::name(line.command), listed(allowed), quoted(value));
}

QString Parser::platform(const QString &value)
{
    const PlatformChoice before = line.platform;
    QString error;
    if (!line.platform.setDevice(value, &error)) {
        return error;
    }
    const QString option = "--platform "_L1 + quoted(value);
    if (!platformOption.isEmpty() && before != line.platform) {
        return CommandLine::tr("%1 and %2 contradict each other.").arg(platformOption, option);
    }
    platformOption = option;
    return {};
}

QString Parser::position(const QString &value)
{
    QString error;
    const auto choice = PositionChoice::parse(value, &error);
    if (!choice) {
        return error;
    }
    const QString option = "--position "_L1 + quoted(value);
    if (!positionOption.isEmpty() && *choice != line.platform.position) {
        return CommandLine::tr("%1 and %2 contradict each other.").arg(positionOption, option);
    }
    positionOption = option;
    line.platform.position = *choice;
    return {};
}

QString Parser::progress(const QString &value)
{
    if (value == "auto"_L1) {
        line.progress = CommandLine::Progress::Auto;
    } else if (value == "yes"_L1) {
        line.progress = CommandLine::Progress::Yes;
    } else if (value == "no"_L1) {
        line.progress = CommandLine::Progress::No;
    } else {
        return CommandLine::tr("--progress takes auto, yes or no, not %1.").arg(quoted(value));
    }
    return {};
}

QString Parser::takeProtocol(QAbstractSocket::NetworkLayerProtocol protocol)
{
    if (line.protocol != QAbstractSocket::AnyIPProtocol && line.protocol != protocol) {
        return CommandLine::tr("%1 and %2 contradict each other.").arg(u"-4"_s, u"-6"_s);
    }
    line.protocol = protocol;
    return {};
}

} // namespace

std::optional<CommandLine> CommandLine::parse(const QStringList &arguments, QString *error)
{
    Parser parser(arguments);
    *error = parser.run();
    return error->isEmpty() ? std::optional(parser.line) : std::nullopt;
}

QString CommandLine::name(Command command)
{
    const auto *row = std::find_if(commandNames.begin(), commandNames.end(),
                                   [&](const auto &each) { return each.first == command; });
    return row->second;
}

} // namespace velometer
