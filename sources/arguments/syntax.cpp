#include "arguments/syntax.h"

#include "utils/quoted.h"
#include "utils/translations.h"

#include <CLI/CLI.hpp>

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// A terminal's width, and where the descriptions of the help begin.
constexpr qsizetype pageWidth = 80;
constexpr qsizetype descriptionColumn = 29;

QString say(const char *text)
{
    return Translations::translate("Syntax", text);
}

/// Two columns; the right one begins a line of its own when the left one is too wide for it.
QString row(const QString &left, const QString &right)
{
    QString text = u"  "_s + left;
    qsizetype column = text.size();
    if (column + 2 > descriptionColumn) {
        text += u'\n';
        column = 0;
    }
    text += u" "_s.repeated(descriptionColumn - column);
    column = descriptionColumn;
    const QStringList words = right.split(u' ');
    for (const QString &word : words) {
        if (column > descriptionColumn) {
            const bool fits = column + 1 + word.size() <= pageWidth;
            text += fits ? u" "_s : u'\n' + u" "_s.repeated(descriptionColumn);
            column = fits ? column + 1 : descriptionColumn;
        }
        text += word;
        column += word.size();
    }
    return text + u'\n';
}

QString titled(const QString &title, const QString &rows)
{
    return rows.isEmpty() ? QString() : u'\n' + title + u'\n' + rows;
}

} // namespace

Syntax::Syntax(const QString &theProgram, const QString &theSummary, const QString &theVersion)
    : program(theProgram)
    , summary(theSummary)
    , version(theVersion)
{}

void Syntax::add(const Command &command)
{
    commandTable.append(command);
}

void Syntax::add(const Option &option)
{
    optionTable.append(option);
}

void Syntax::addNote(const QString &text, const QStringList &commands)
{
    noteTable.append({text, commands});
}

QString Syntax::listed(QStringList items)
{
    const QString last = items.takeLast();
    return items.isEmpty()
               ? last
               : say(QT_TRANSLATE_NOOP("Syntax", "%1 or %2")).arg(items.join(", "_L1), last);
}

const QList<Syntax::Option> &Syntax::questions()
{
    static const QList<Option> all{
        {u"--help"_s, {}, {}, {}}, {u"--version"_s, {}, {}, {}}, {u"--completions"_s, {}, {}, {}}};
    return all;
}

const Syntax::Option *Syntax::find(const QString &name) const
{
    for (const QList<Option> *table : {&optionTable, &questions()}) {
        for (const Option &option : *table) {
            if (option.name == name) {
                return &option;
            }
        }
    }
    return nullptr;
}

QString Syntax::read(const QStringList &arguments)
{
    question = Question::None;
    commandGiven = false;
    chosen = commandTable.isEmpty() ? QString() : commandTable.constFirst().name;

    QList<Given> given;
    QStringList words;
    QString error = split(arguments, &given, &words);
    for (const Given &each : std::as_const(given)) {
        if (error.isEmpty()) {
            error = take(each);
        }
    }
    if (!error.isEmpty() || question != Question::None) {
        return error;
    }
    for (const Command &command : std::as_const(commandTable)) {
        if (command.name == chosen && command.takeWord) {
            error = command.takeWord(command.name, words.value(0));
        }
    }
    return error;
}

QString Syntax::split(const QStringList &arguments, QList<Given> *given, QStringList *words)
{
    // An empty value, as an unset variable of a script leaves it, must not swallow the next word.
    for (const QString &argument : arguments) {
        const Option *option =
            argument.startsWith("--"_L1) ? find(argument.section(u'=', 0, 0)) : nullptr;
        if (option && argument.contains(u'=')) {
            if (option->value.isEmpty()) {
                return say(QT_TRANSLATE_NOOP("Syntax", "%1 takes no value.")).arg(option->name);
            }
            if (argument.endsWith(u'=') && argument.count(u'=') == 1) {
                return needsValue(option->name);
            }
        }
    }

    CLI::App app;
    app.set_help_flag();
    app.allow_extras();
    app.require_subcommand(0, 1);
    QHash<const CLI::Option *, const Option *> meant;
    const auto offer = [&](const Option &option) {
        const std::string name = option.name.toStdString();
        CLI::Option *added =
            option.value.isEmpty() ? app.add_flag(name) : app.add_option(name)->expected(1);
        meant.insert(added->take_all(), &option);
    };
    std::for_each(optionTable.cbegin(), optionTable.cend(), offer);
    std::for_each(questions().cbegin(), questions().cend(), offer);
    std::string word;
    for (const Command &command : std::as_const(commandTable)) {
        CLI::App *sub = app.add_subcommand(command.name.toStdString())->fallthrough();
        if (!command.word.isEmpty()) {
            sub->add_option(command.word.toStdString(), word);
        }
    }

    std::vector<std::string> backwards;
    std::transform(arguments.crbegin(), arguments.crend(), std::back_inserter(backwards),
                   [](const QString &argument) { return argument.toStdString(); });
    try {
        app.parse(std::move(backwards));
    } catch (const CLI::ParseError &) {
        // Of all that could be wrong only this is left to it: the line ends before a value.
        return needsValue(arguments.constLast());
    }

    for (const CLI::App *sub : app.get_subcommands()) {
        chosen = QString::fromStdString(sub->get_name());
        commandGiven = true;
    }
    if (!word.empty()) {
        words->append(QString::fromStdString(word));
    }
    // Behind a command the parser takes -4 for a number, and leaves it over.
    for (const std::string &extra : app.remaining(true)) {
        const QString argument = QString::fromStdString(extra);
        const Option *option = find(argument);
        if (!option) {
            return unknown(argument);
        }
        given->append(Given{option, QString()});
    }

    // Each option lists its values in the order of the line.
    QHash<const CLI::Option *, std::size_t> taken;
    for (const CLI::Option *each : app.parse_order()) {
        const Option *option = meant.value(each);
        const std::size_t index = taken[each]++;
        const QString value =
            option->value.isEmpty() ? QString() : QString::fromStdString(each->results().at(index));
        if (option->name == "--help"_L1) {
            question = Question::Help;
        } else if (option->name == "--version"_L1) {
            question = Question::Version;
        } else if (option->name == "--completions"_L1) {
            question = Question::Completions;
        } else {
            // A negative number is a value out of range, another option a forgotten value.
            static const QRegularExpression negative(u"\\A-[0-9]+\\z"_s);
            const bool dashed = value.startsWith(u'-') && value.size() > 1;
            if (dashed && !(negative.match(value).hasMatch() && !find(value)) &&
                !arguments.contains(option->name + u'=' + value)) {
                return needsValue(option->name);
            }
            given->append({option, value});
        }
    }
    return {};
}

QString Syntax::take(const Given &given) const
{
    const Option &option = *given.option;
    if (!option.commands.isEmpty() && !option.commands.contains(chosen)) {
        return say(QT_TRANSLATE_NOOP("Syntax", "%1 is no option of %2.")).arg(option.name, chosen);
    }
    if (!option.value.isEmpty() && given.value.isEmpty()) {
        return needsValue(option.name);
    }
    return option.take(option.name, given.value);
}

QString Syntax::unknown(const QString &argument) const
{
    if (argument.startsWith(u'-') || commandTable.isEmpty()) {
        return say(QT_TRANSLATE_NOOP("Syntax", "There is no option %1; --help lists them."))
            .arg(quoted(argument));
    }
    if (commandGiven) {
        return say(QT_TRANSLATE_NOOP("Syntax", "%1 does not know what to do with %2."))
            .arg(chosen, quoted(argument));
    }
    QStringList names;
    for (const Command &command : commandTable) {
        names.append(command.name);
    }
    return say(QT_TRANSLATE_NOOP("Syntax", "There is no command %1; use %2."))
        .arg(quoted(argument), listed(names));
}

QString Syntax::needsValue(const QString &name) const
{
    return say(QT_TRANSLATE_NOOP("Syntax", "%1 needs a value.")).arg(name);
}

QString Syntax::answer() const
{
    switch (question) {
    case Question::None: return {};
    case Question::Help: return commandGiven ? page() : overview();
    case Question::Version: return program + u' ' + version + u'\n';
    case Question::Completions: return completions();
    }
    Q_UNREACHABLE();
}

QString Syntax::overview() const
{
    QString text = summary + "\n\n"_L1;
    if (commandTable.isEmpty()) {
        return text + u"  %1 [options]\n\n"_s.arg(program) + options({}, true) + notes({});
    }
    for (const Command &command : commandTable) {
        const bool standard = &command == &commandTable.constFirst();
        QString line = program + u' ' + (standard ? u'[' + command.name + u']' : command.name);
        if (!command.word.isEmpty()) {
            line += u' ' + command.word;
        }
        text += row(line, command.summary);
    }
    text += u'\n' + say(QT_TRANSLATE_NOOP("Syntax", "COMMAND --help tells more about each.")) +
            u'\n' + titled(say(QT_TRANSLATE_NOOP("Syntax", "Everywhere:")), options({}, true));
    return text + notes({});
}

QString Syntax::page() const
{
    const auto command = std::find_if(commandTable.cbegin(), commandTable.cend(),
                                      [this](const Command &each) { return each.name == chosen; });
    const bool standard = command == commandTable.cbegin();
    QStringList usage{program, standard ? u'[' + chosen + u']' : chosen};
    for (const QString &part : {command->word, command->needed, u"[options]"_s}) {
        if (!part.isEmpty()) {
            usage.append(part);
        }
    }
    QString text = usage.join(u' ') + u'\n';
    if (!command->text.isEmpty()) {
        text += u'\n' + command->text + u'\n';
    }
    const QString own = options(chosen, false);
    text += own.isEmpty() ? own : u'\n' + own;
    QString examples;
    for (const QString &example : command->examples) {
        examples += u"  %1\n"_s.arg(example.isEmpty() ? program : program + u' ' + example);
    }
    text += titled(say(QT_TRANSLATE_NOOP("Syntax", "Examples:")), examples);
    text += titled(say(QT_TRANSLATE_NOOP("Syntax", "Everywhere:")), options(chosen, true));
    return text + notes(chosen);
}

QString Syntax::options(const QString &command, bool common) const
{
    QString text;
    for (const Option &option : optionTable) {
        if (option.commands.isEmpty() == common && (common || option.commands.contains(command))) {
            text += row((option.name + u' ' + option.value).trimmed(), option.description);
        }
    }
    return common ? text +
                        row(u"--version, --help"_s,
                            say(QT_TRANSLATE_NOOP("Syntax", "the version; this page"))) +
                        row(u"--completions"_s,
                            say(QT_TRANSLATE_NOOP("Syntax", "what a shell may complete, as a "
                                                            "table")))
                  : text;
}

QString Syntax::notes(const QString &command) const
{
    QString text;
    for (const auto &[note, commands] : noteTable) {
        if (command.isEmpty() || commands.isEmpty() || commands.contains(command)) {
            text += u'\n' + note + u'\n';
        }
    }
    return text;
}

QString Syntax::completions() const
{
    QString text;
    for (const Command &command : commandTable) {
        text += u"command\t%1\t%2\t%3\n"_s.arg(command.name, command.word, command.summary);
    }
    for (const Option &option : optionTable) {
        text += u"option\t%1\t%2\t%3\t%4\n"_s.arg(option.name, option.value, option.description,
                                                  option.commands.join(u','));
    }
    return text + u"option\t--version\t\t\t\noption\t--help\t\t\t\noption\t--completions\t\t\t\n"_s;
}

} // namespace velometer
