#pragma once

#include "arguments/syntax.h"
#include "cli/commandline.h"

#include <QCoreApplication>

namespace velometer {

/// The commands and options of velometer-cli, and the CommandLine that they fill.
class CommandSyntax
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    CommandSyntax();
    CommandSyntax(const CommandSyntax &) = delete;
    CommandSyntax &operator=(const CommandSyntax &) = delete;

    /// Reads @p arguments (without the program's name), once; says in one sentence what makes no
    /// sense, nothing when all of it does.
    QString read(const QStringList &arguments);
    /// What read() understood.
    const CommandLine &line() const { return result; }

private:
    void addCommands();
    void addTrackCommands();
    void addTestOptions();
    void addTrackOptions();
    void addOutputOptions();
    void addDeviceOptions();
    void addCommonOptions();
    void addNotes();
    QString takeStoredTest(const QString &word);
    QString takeInterval(const QString &option, const QString &value);
    QString takeTrack(const QString &option, const QString &word);
    QString takeFormat(const QString &value);
    QString keepFormat(const QString &option, CommandLine::Format format);
    QString keepProtocol(const QString &option, QAbstractSocket::NetworkLayerProtocol protocol);
    QString takePlatform(const QString &value);
    QString takePosition(const QString &value);
    QString checkWhole() const;

    Syntax syntax;
    CommandLine result;
    bool intervalGiven = false;
    int waitSeconds = 0;
    QString formatOption; ///< the option that said it, for the sentence about one that contradicts
    QString protocolOption;
    QString platformOption;
    QString positionOption;
};

} // namespace velometer
