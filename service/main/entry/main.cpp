#include "http/server.h"
#include "main/commandline.h"
#include "main/handover.h"
#include "main/tasks.h"
#include "ops/log.h"
#include "ops/supervisor.h"

#include <QCoreApplication>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace velometer;

namespace {

int run(const CommandLine::Task &task)
{
    const StoreOptions &store = task.options.store;
    switch (task.kind) {
    case CommandLine::Task::Kind::Migrate: return Tasks::migrate(task.from, task.to);
    case CommandLine::Task::Kind::Forget: return Tasks::forget(store, task.user);
    case CommandLine::Task::Kind::Export: return Tasks::exportUser(store, task.user);
    case CommandLine::Task::Kind::Stats: return Tasks::stats(store);
    case CommandLine::Task::Kind::Check: return Tasks::check(task.options);
    }
    return 1;
}

Connection::Role roleOf(const std::string &name)
{
    if (name == "tls") {
        return Connection::Role::Tls;
    }
    return name == "admin" ? Connection::Role::Admin : Connection::Role::Public;
}

/// Blocked before any thread exists: all of them inherit it, and the one that waits for them is the
/// one place that learns of them. @p isWatched: a person sits before it.
sigset_t blockSignals(bool isWatched)
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int each : {SIGTERM, SIGINT, SIGUSR2}) {
        sigaddset(&signals, each);
    }
    // A terminal that closes ends it as well, unless nohup has told it not to mind.
    struct sigaction hangUp{};
    if (!isWatched || (sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN)) {
        sigaddset(&signals, SIGHUP);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

/// The next signal; meanwhile tells systemd that @p server is alive.
int waitForSignal(const sigset_t &signals, const Server &server)
{
    const auto period = Supervisor::watchdogPeriod();
    if (!period) {
        int signal = 0;
        sigwait(&signals, &signal);
        return signal;
    }
    // Twice in each period, so that one late look is none too many.
    const auto half = std::max<std::int64_t>(period->count() / 2, 1);
    const timespec pause{.tv_sec = half / 1000, .tv_nsec = half % 1000 * 1'000'000};
    while (true) {
        const int signal = sigtimedwait(&signals, nullptr, &pause);
        if (signal > 0) {
            return signal;
        }
        if (server.isAlive()) {
            Supervisor::tell("WATCHDOG=1");
        }
    }
}

void reload(Server &server, const QStringList &arguments)
{
    Supervisor::tell("RELOADING=1");
    const auto parsed = CommandLine::parse(arguments);
    QString error;
    if (const auto *end = std::get_if<CommandLine::End>(&parsed)) {
        error = end->text.trimmed();
    } else if (const auto *start = std::get_if<CommandLine::Start>(&parsed)) {
        server.reload(start->options, &error);
    }
    if (error.isEmpty()) {
        Log::write(Log::Level::Info, "reload", "has read its certificate and configuration anew");
    } else {
        Log::write(Log::Level::Error, "reload", error.toStdString());
    }
    Supervisor::tell("READY=1");
}

/// True when another process serves in place of this one.
bool handOver(const Server &server, const QString &program, const QStringList &arguments)
{
    Log::write(Log::Level::Info, "handover", "a new process takes over");
    const QString problem =
        Handover::begin(program, arguments, server.sockets(), server.storeLock());
    if (!problem.isEmpty()) {
        Log::write(Log::Level::Error, "handover", problem.toStdString());
    }
    return problem.isEmpty();
}

} // namespace

int main(int argc, char *argv[])
{
    const bool isWatched = ::isatty(STDIN_FILENO) == 1;
    const sigset_t signals = blockSignals(isWatched);
    const auto sockets = Supervisor::takeSockets();
    const auto legacy = Handover::takeLegacy();

    // Whoever knows a user id sees that user's measurements: the files are for the owner alone.
    umask(077);

    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    // Where an upgrade puts the next version.
    const QString program = QCoreApplication::applicationFilePath();
    const auto parsed = CommandLine::parse(arguments);
    if (const auto *end = std::get_if<CommandLine::End>(&parsed)) {
        std::fputs(qUtf8Printable(end->text), end->status == 0 ? stdout : stderr);
        return end->status;
    }
    if (const auto *task = std::get_if<CommandLine::Task>(&parsed)) {
        return run(*task);
    }
    auto start = std::get<CommandLine::Start>(parsed);
    Log::setLevel(start.logLevel);
    Log::setFormat(start.logFormat);
    for (const auto &socket : sockets) {
        start.options.inherited.push_back(
            {.descriptor = socket.descriptor, .role = roleOf(socket.name)});
    }
    if (legacy.ready >= 0) {
        // All of them, those of the command line included.
        start.options.listen.clear();
        start.options.listenTls.clear();
        start.options.listenAdmin.clear();
    } else if (!sockets.empty() && !start.listenGiven) {
        start.options.listen.clear();
    }
    start.options.store.inheritedLock = legacy.storeLock;

    Server server(start.options);
    QString error;
    if (!server.start(&error)) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(error));
        return 1;
    }
    for (const auto &address : server.addresses()) {
        std::printf("listening on %s\n", address.c_str());
    }
    std::fflush(stdout);
    Supervisor::tell("MAINPID=" + std::to_string(::getpid()) + "\nREADY=1");
    Handover::tellReady(legacy);

    bool isReplaced = false;
    for (bool runs = true; runs;) {
        const int signal = waitForSignal(signals, server);
        if (signal == SIGHUP && !isWatched) {
            reload(server, arguments);
        } else if (signal == SIGUSR2) {
            isReplaced = handOver(server, program, arguments);
            runs = !isReplaced;
        } else {
            runs = false;
        }
    }
    Log::write(Log::Level::Info, "end", "ending");
    // A second signal finds its default action and ends the process at once.
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    if (isReplaced) {
        server.stopGently();
    } else {
        Supervisor::tell("STOPPING=1");
        server.stop();
    }
    return 0;
}
