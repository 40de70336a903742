#pragma once

#include "support/sqlitefile.h"

#include <QFile>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace velometer {

/// The built programs as a shell would run them: with a home of their own, and the built service
/// (SERVICE_PROGRAM) on loopback to measure against. Both end with it.
class ProgramHome
{
public:
    using Process = std::unique_ptr<QProcess>;

    /// A test lasts a good 15 s; more only on a machine that is busy with something else.
    static constexpr int limitMs = 90'000;

    /// What a whole run left; status -1 when it crashed or did not end.
    struct Ended
    {
        int status;
        QByteArray printed;
        QByteArray messages;
    };

    ProgramHome()
    {
        environment.insert(QStringLiteral("HOME"), directory.path());
        for (const QString &each :
             {QStringLiteral("CONFIG"), QStringLiteral("DATA"), QStringLiteral("CACHE")}) {
            environment.insert(QStringLiteral("XDG_%1_HOME").arg(each), path(each.toLower()));
        }
    }
    ~ProgramHome() { stopService(); }
    Q_DISABLE_COPY_MOVE(ProgramHome)

    QString path(const QString &name) const { return directory.filePath(name); }
    QString config() const { return path(QStringLiteral("deployment.conf")); }
    QString store() const
    {
        return path(QStringLiteral("data/orvak/Velometer/orvakVelometer.db.sqlite"));
    }
    QString reports() const { return path(QStringLiteral("reports.sqlite")); }

    /// Makes a file, or makes it longer; gives its path.
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::Append) || file.write(content) != content.size()) {
            qFatal("%s cannot be written", qPrintable(name));
        }
        return file.fileName();
    }

    /// On the port it had before, and any free one at first; config() names it.
    void startService()
    {
        service = start(QStringLiteral(SERVICE_PROGRAM),
                        {QStringLiteral("--listen"), QStringLiteral("127.0.0.1:%1").arg(port),
                         QStringLiteral("--database"), QStringLiteral("sqlite:") + reports()});
        const QByteArray announced = "listening on 127.0.0.1:";
        QVERIFY2(waitForText(*service, announced), "the service did not start");
        QByteArray line = service->readLine();
        while (!line.contains(announced)) {
            line = service->readLine();
        }
        port = line.mid(line.indexOf(announced) + announced.size()).trimmed().toInt();
        QFile::remove(config());
        const QByteArray number = QByteArray::number(port);
        write(QStringLiteral("deployment.conf"),
              "[Service]\nWebHost=127.0.0.1\nWebPort=" + number +
                  "\n[TestServers]\nSwisscom=127.0.0.1:" + number + '\n');
    }
    void stopService()
    {
        if (!service) {
            return;
        }
        service->kill();
        service->waitForFinished();
        service.reset();
    }

    Process start(const QString &program, const QStringList &arguments) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->start(program, arguments);
        return process;
    }
    static Ended end(QProcess &process)
    {
        const bool whole =
            process.waitForFinished(limitMs) && process.exitStatus() == QProcess::NormalExit;
        return {whole ? process.exitCode() : -1, process.readAllStandardOutput(),
                process.readAllStandardError()};
    }

    /// Waits for a line with @p text on the standard output and leaves it unread.
    static bool waitForText(QProcess &process, const QByteArray &text)
    {
        return QTest::qWaitFor(
            [&] {
                const QByteArray printed = process.peek(1024 * 1024);
                const auto at = printed.indexOf(text);
                return at >= 0 && printed.indexOf('\n', at) > at;
            },
            limitMs);
    }

    /// The rows of a query on a SQLite file that another program writes; none without the file.
    static QList<QVariantList> rows(const QString &file, const QString &query)
    {
        return QFile::exists(file) ? SqliteFile(file).rows(query) : QList<QVariantList>();
    }

    /// What the service answers to GET @p target, without its head; an old client's answer, in one
    /// piece.
    QByteArray get(const QByteArray &target) const
    {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(port));
        socket.write("GET " + target + " HTTP/1.0\r\n\r\n");
        while (socket.waitForReadyRead(limitMs)) {
        }
        const QByteArray answer = socket.readAll();
        return answer.mid(answer.indexOf("\r\n\r\n") + 4);
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();

private:
    QTemporaryDir directory;
    Process service;
    int port = 0;
};

} // namespace velometer
