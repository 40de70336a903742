#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace velometer {

/// The command line of one program as a table of its commands and options, each with what its value
/// does. All programs read theirs through it, so that the same mistake gets the same sentence
/// everywhere, help pages look alike, and what a shell may complete is one list.
///
/// Options may stand before, between and after the words, as "--name value" or "--name=value".
/// --help, --version and --completions are options of every program. Texts are German or English,
/// also while there is no application. A plain value.
class Syntax
{
public:
    /// Keeps @p value of the option (or of the word) @p name. What comes back says in one sentence
    /// why it makes no sense; empty when it does.
    using Take = std::function<QString(const QString &name, const QString &value)>;

    // Initialisers that say nothing let the tables name only what they mean.
    // NOLINTBEGIN(readability-redundant-member-init)
    struct Option
    {
        QString name;              ///< "--count", "-4"
        QString value;             ///< as the help names it, "SECONDS" or "yes|no"; empty: a flag
        QString description;       ///< half a sentence for the help
        Take take;                 ///< a flag gets an empty value; never called with one otherwise
        QStringList commands = {}; ///< those that know it; empty: all
    };

    struct Command
    {
        QString name;
        QString summary;     ///< half a sentence for the list of commands
        QString text = {};   ///< what its page says before the options; empty: nothing
        QString word = {};   ///< the word that must follow it, as the help names it; empty: none
        Take takeWord = {};  ///< gets an empty value when the word is missing
        QString needed = {}; ///< the option it cannot do without, with its value
        QStringList examples = {}; ///< what stands behind the program's name
    };
    // NOLINTEND(readability-redundant-member-init)

    /// @p summary is one sentence about the program, @p version what --version adds to its name.
    Syntax(const QString &program, const QString &summary, const QString &version);

    /// The first command holds where no word names one. A program may have none.
    void add(const Command &command);
    void add(const Option &option);
    /// Ends the pages of @p commands and the program's own.
    void addNote(const QString &text, const QStringList &commands = {});

    /// Reads @p arguments (without the program's name): finds the command, hands every value to its
    /// Take in the order of the line, the word last. Stops at the first thing that makes no sense
    /// and says it in one sentence; empty when all of it does.
    QString read(const QStringList &arguments);

    /// The command that the last read() found; empty in a program without commands.
    QString command() const { return chosen; }
    /// What the program prints instead of working, when the last read() met --help, --version or
    /// --completions; else empty.
    QString answer() const;

    /// "a", "a or b", "a, b or c".
    static QString listed(QStringList items);

private:
    struct Given
    {
        const Option *option;
        QString value;
    };
    enum class Question { None, Help, Version, Completions };

    static const QList<Option> &questions();
    const Option *find(const QString &name) const;
    QString split(const QStringList &arguments, QList<Given> *given, QStringList *words);
    QString take(const Given &given) const;
    QString unknown(const QString &argument) const;
    QString needsValue(const QString &name) const;
    QString page() const;
    QString overview() const;
    QString options(const QString &command, bool common) const;
    QString notes(const QString &command) const;
    QString completions() const;

    QString program;
    QString summary;
    QString version;
    QList<Command> commandTable;
    QList<Option> optionTable;
    QList<std::pair<QString, QStringList>> noteTable;
    QString chosen;
    bool commandGiven = false;
    Question question = Question::None;
};

} // namespace velometer
