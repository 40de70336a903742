// What looking for modem, network and position adds to the start of a program: the sources of the
// real device beside those of no device, each in a process of its own, since the first use of the
// bus is the dear one. Prints a table.

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/platform.h"
#include "platform/positionsource.h"

#include "support/mockphone.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int repetitions = 9;
constexpr double nsPerMs = 1e6;
constexpr int limitMs = 20'000;

double startOnce(bool real)
{
    QElapsedTimer clock;
    clock.start();
    const auto platform = real ? Platform::system() : Platform::none();
    const auto position = platform->createPositionSource();
    const auto network = platform->createNetworkInfoSource();
    const auto device = platform->createDeviceInfoSource();
    const auto session = platform->createNetworkSession();
    return static_cast<double>(clock.nsecsElapsed()) / nsPerMs;
}

/// Median, ms.
double measure(const QString &kind, const QString &busAddress)
{
    std::vector<double> times;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, busAddress);
    process.setProcessEnvironment(environment);
    for (int i = 0; i < repetitions; ++i) {
        process.start(QCoreApplication::applicationFilePath(), {kind});
        if (!process.waitForFinished(limitMs)) {
            qFatal("no answer");
        }
        times.push_back(process.readAllStandardOutput().toDouble());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

} // namespace velometer

using namespace velometer;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString kind = application.arguments().value(1);
    if (!kind.isEmpty()) {
        std::printf("%f\n", startOnce(kind == "system"_L1));
        return 0;
    }
    const QString nowhere = u"unix:path=/nowhere"_s;
    MockBus bus;
    if (!bus.start()) {
        qFatal("python3-dbusmock or dbus-daemon is missing");
    }
    const double none = measure(u"none"_s, nowhere);
    const auto print = [&](const char *name, double ms) {
        std::printf("%-32s %8.1f ms %8.1f ms more\n", name, ms, ms - none);
    };
    print("no device", none);
    print("no bus", measure(u"system"_s, nowhere));
    print("a bus without services", measure(u"system"_s, bus.busAddress()));
    MockPhone phone(bus);
    if (!phone.startModem() || !phone.startNetwork()) {
        qFatal("no phone");
    }
    print("a phone", measure(u"system"_s, bus.busAddress()));
    return 0;
}
