#include "utils/signalwatcher.h"

#include <array>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace velometer {

namespace {

/// Write end first. A signal handler may use little more than write().
std::array<int, 2> wires{-1, -1};

void restoreDefaults()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

extern "C" void velometerCatchSignal(int number)
{
    if (number == SIGHUP) {
        std::signal(SIGHUP, SIG_IGN);
    } else {
        restoreDefaults();
    }
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const ssize_t written = ::write(wires[0], &byte, 1);
}

int openWires()
{
    ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, wires.data());
    return wires[1];
}

} // namespace

SignalWatcher::SignalWatcher(QObject *parent)
    : QObject(parent)
    , notifier(openWires(), QSocketNotifier::Read)
{
    connect(&notifier, &QSocketNotifier::activated, this, &SignalWatcher::read);
    std::signal(SIGINT, velometerCatchSignal);
    std::signal(SIGTERM, velometerCatchSignal);
    if (std::signal(SIGHUP, velometerCatchSignal) == SIG_IGN) {
        std::signal(SIGHUP, SIG_IGN);
    }
}

SignalWatcher::~SignalWatcher()
{
    restoreDefaults();
    std::signal(SIGHUP, SIG_DFL);
    notifier.setEnabled(false);
    for (int &wire : wires) {
        ::close(wire);
        wire = -1;
    }
}

void SignalWatcher::read()
{
    unsigned char byte = 0;
    if (::read(wires[1], &byte, 1) == 1) {
        Q_EMIT caught(byte);
    }
}

} // namespace velometer
