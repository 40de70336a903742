#include "http/server.h"
#include "main/commandline.h"
#include "main/tasks.h"
#include "ops/log.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

#include <pthread.h>
#include <sys/stat.h>

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

} // namespace

int main(int argc, char *argv[])
{
    // Blocked before any thread exists: all of them inherit it, and sigwait below is the one
    // place that learns of the end.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    // A terminal that closes ends it as well, unless nohup has told it not to mind.
    struct sigaction hangUp{};
    if (sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN) {
        sigaddset(&signals, SIGHUP);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);

    // Whoever knows a user id sees that user's measurements: the files are for the owner alone.
    umask(077);

    const QCoreApplication application(argc, argv);
    const auto parsed = CommandLine::parse(QCoreApplication::arguments());
    if (const auto *end = std::get_if<CommandLine::End>(&parsed)) {
        std::fputs(qUtf8Printable(end->text), end->status == 0 ? stdout : stderr);
        return end->status;
    }
    if (const auto *task = std::get_if<CommandLine::Task>(&parsed)) {
        return run(*task);
    }
    const auto &start = std::get<CommandLine::Start>(parsed);
    Log::setLevel(start.logLevel);

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

    int signal = 0;
    sigwait(&signals, &signal);
    Log::write(Log::Level::Info, "ending");
    // A second signal finds its default action and ends the process at once.
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    server.stop();
    return 0;
}
