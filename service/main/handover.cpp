#include "main/handover.h"

#include <QByteArrayList>
#include <QFile>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer::Handover {

namespace {

constexpr const char *lockName = "VELOMETER_STORE_LOCK";
constexpr const char *readyName = "VELOMETER_READY";

/// sd_listen_fds() takes what begins here.
constexpr int firstSocket = 3;

/// A large SQLite file may be brought forward first.
constexpr int startTimeMs = 60'000;

constexpr std::size_t pidDigits = 10;

int takeNumber(const char *name)
{
    const char *const text = std::getenv(name);
    const int number = text ? std::atoi(text) : -1;
    ::unsetenv(name);
    if (number > STDERR_FILENO) {
        ::fcntl(number, F_SETFD, FD_CLOEXEC);
        return number;
    }
    return -1;
}

/// Everything the child needs, made before the fork: after it nothing may be allocated.
class Plan
{
public:
    Plan(const QString &programFile, const QStringList &words,
         const std::vector<Inherited> &sockets, int storeLock, int ready)
        : program(QFile::encodeName(programFile))
    {
        for (const QString &word : words) {
            arguments += word.toLocal8Bit();
        }
        for (char **each = environ; *each != nullptr; ++each) {
            const QByteArray entry(*each);
            if (!entry.startsWith("LISTEN_") && !entry.startsWith("WATCHDOG_PID=")) {
                variables += entry;
            }
        }
        constexpr std::array<const char *, 3> names{"public", "tls", "admin"};
        QByteArrayList roles;
        int target = firstSocket;
        for (const auto &socket : sockets) {
            moves.push_back({socket.descriptor, target++});
            roles += names.at(static_cast<std::size_t>(socket.role));
        }
        variables += "LISTEN_FDS=" + QByteArray::number(qsizetype(sockets.size()));
        variables += "LISTEN_FDNAMES=" + roles.join(':');
        variables += readyName + QByteArray("=") + QByteArray::number(target);
        moves.push_back({ready, target++});
        if (storeLock >= 0) {
            variables += lockName + QByteArray("=") + QByteArray::number(target);
            moves.push_back({storeLock, target++});
        }
        variables += "LISTEN_PID=" + QByteArray(pidDigits, '0');
        for (auto *list : {&arguments, &variables}) {
            auto &pointers = list == &arguments ? argumentPointers : variablePointers;
            for (QByteArray &each : *list) {
                pointers.push_back(each.data());
            }
            pointers.push_back(nullptr);
        }
        free = std::max(target, ready) + static_cast<int>(moves.size()) + 1;
    }

    /// In the child, which it makes the new program.
    [[noreturn]] void execute()
    {
        // First out of the way of each other, then into their places.
        for (auto &move : moves) {
            move.from = ::fcntl(move.from, F_DUPFD, free);
        }
        for (const auto &move : moves) {
            ::dup2(move.from, move.to); // the copy stays open in the new program
            ::close(move.from);
        }
        // A number that begins with 0 would be read as an octal one.
        char *const digits = variables.last().data() + std::strlen("LISTEN_PID=");
        *std::to_chars(digits, digits + pidDigits, ::getpid()).ptr = '\0';
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::execve(program.constData(), argumentPointers.data(), variablePointers.data());
        ::_exit(127);
    }

private:
    struct Move
    {
        int from;
        int to;
    };
    QByteArray program;
    QByteArrayList arguments, variables;
    std::vector<char *> argumentPointers, variablePointers;
    std::vector<Move> moves;
    int free = 0; ///< above all places
};

} // namespace

Legacy takeLegacy()
{
    return {.storeLock = takeNumber(lockName), .ready = takeNumber(readyName)};
}

void tellReady(const Legacy &legacy)
{
    if (legacy.ready >= 0) {
        [[maybe_unused]] const auto written = ::write(legacy.ready, "1", 1);
        ::close(legacy.ready);
    }
}

QString begin(const QString &program, const QStringList &arguments,
              const std::vector<Inherited> &sockets, int storeLock)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return u"There is no pipe for a new process."_s;
    }
    Plan plan(program, arguments, sockets, storeLock, ends[1]);
    const pid_t child = ::fork();
    if (child == 0) {
        plan.execute();
    }
    ::close(ends[1]);
    pollfd wait{.fd = ends[0], .events = POLLIN, .revents = 0};
    char answer = 0;
    const bool serves = child > 0 && ::poll(&wait, 1, startTimeMs) > 0 &&
                        ::read(ends[0], &answer, 1) == 1 && answer == '1';
    ::close(ends[0]);
    if (serves) {
        return {};
    }
    if (child > 0) {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    return u"The new process does not serve; this one goes on."_s;
}

} // namespace velometer::Handover
