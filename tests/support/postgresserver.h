#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <unistd.h>

namespace velometer {

/// A PostgreSQL of Debian's package that this test alone uses, over a socket in a folder that goes
/// away with it. Root starts it as nobody, since it refuses to run as root.
class PostgresServer
{
public:
    PostgresServer()
    {
        // Newest last.
        const QStringList versions = QDir(QStringLiteral("/usr/lib/postgresql"))
                                         .entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        if (versions.isEmpty()) {
            qFatal("PostgreSQL is not installed; scripts/setup test installs it.");
        }
        programs = QStringLiteral("/usr/lib/postgresql/%1/bin/").arg(versions.constLast());
        if (::geteuid() == 0) {
            user = QStringLiteral("setpriv --reuid nobody --regid nogroup --clear-groups ")
                       .split(u' ', Qt::SkipEmptyParts);
            [[maybe_unused]] const int given =
                ::chown(QFile::encodeName(folder.path()).constData(), 65534, 65534);
        }
        run({program(u"initdb"), QStringLiteral("-D"), data(), QStringLiteral("-U"),
             QStringLiteral("velometer"), QStringLiteral("-A"), QStringLiteral("trust"),
             QStringLiteral("-N"), QStringLiteral("-E"), QStringLiteral("UTF8"),
             QStringLiteral("--locale=C"), QStringLiteral("--no-instructions")});
        start();
    }
    ~PostgresServer() { stop(); }
    Q_DISABLE_COPY_MOVE(PostgresServer)

    void start()
    {
        const QStringList words = user + QStringList{program(u"postgres"),
                                                     QStringLiteral("-D"),
                                                     data(),
                                                     QStringLiteral("-k"),
                                                     folder.path(),
                                                     QStringLiteral("-c"),
                                                     QStringLiteral("listen_addresses="),
                                                     QStringLiteral("-c"),
                                                     QStringLiteral("fsync=off"),
                                                     QStringLiteral("-c"),
                                                     QStringLiteral("max_connections=60")};
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(words.constFirst(), words.mid(1));
        const bool ready = QTest::qWaitFor(
            [this] {
                return QProcess::execute(
                           program(u"pg_isready"),
                           {QStringLiteral("-q"), QStringLiteral("-h"), folder.path()}) == 0;
            },
            60'000);
        if (!ready) {
            qFatal("PostgreSQL does not start: %s", process.readAll().constData());
        }
    }
    /// Ends all its connections.
    void stop()
    {
        // What runs it for another user has become it.
        if (process.state() != QProcess::NotRunning) {
            ::kill(static_cast<pid_t>(process.processId()), SIGINT);
            process.waitForFinished(20'000);
        }
    }

    /// The address of a new data base.
    QString database()
    {
        const QString name = QStringLiteral("t%1").arg(++count);
        run({program(u"createdb"), QStringLiteral("-h"), folder.path(), QStringLiteral("-U"),
             QStringLiteral("velometer"), name});
        return QStringLiteral("postgresql://velometer@/%1?host=%2").arg(name, folder.path());
    }

private:
    QString program(QStringView name) const { return programs + name.toString(); }
    QString data() const { return folder.filePath(QStringLiteral("data")); }
    void run(const QStringList &command) const
    {
        const QStringList words = user + command;
        QProcess program;
        program.setWorkingDirectory(folder.path());
        program.start(words.constFirst(), words.mid(1));
        if (!program.waitForFinished(60'000) || program.exitCode() != 0) {
            qFatal("%s: %s", qUtf8Printable(words.join(u' ')),
                   program.readAllStandardError().constData());
        }
    }

    // Wherever else temporary files go: a socket's name is short, and nobody must get there.
    QTemporaryDir folder{QStringLiteral("/tmp/velometer-postgres-XXXXXX")};
    QString programs;
    QStringList user; ///< words before a command that run it for another user
    QProcess process;
    int count = 0;
};

} // namespace velometer
