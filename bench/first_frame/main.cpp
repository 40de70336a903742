// From the start of the process to its first painted frame: the application beside a program that
// shows an empty window of Qt Widgets, in turns. Prints a table; needs Xvfb for the half of it that
// is on a real display, and root for the half with a cold cache.

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>
#include <QWidget>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <poll.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int rounds = 15;
constexpr int coldRounds = 5;
constexpr int pipeEnd = 3;
constexpr int limitMs = 20'000;
/// What is painted after such a pause is no part of the start.
constexpr int silenceMs = 400;
constexpr double nsPerMs = 1e6;

qint64 nowNs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

/// ms from the start of a process.
struct Start
{
    double first = 0;   ///< to its first frame
    double settled = 0; ///< to the last one before it stands still: the page instead of "Loading"
    double cpu = 0;     ///< of the processor, to the first: what others do on it counts less
};

/// Of a number of starts.
struct Starts
{
    std::vector<double> first;
    std::vector<double> settled;
    std::vector<double> cpu;

    void add(const Start &start)
    {
        first.push_back(start.first);
        settled.push_back(start.settled);
        cpu.push_back(start.cpu);
    }
};

double quantile(std::vector<double> values, double part)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<size_t>(part * static_cast<double>(values.size() - 1))];
}

Start startOnce(const QString &program, const QStringList &arguments,
                const QProcessEnvironment &environment)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) {
        qFatal("no pipe");
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier([end = pipe[1]] { ::dup2(end, pipeEnd); });
    const qint64 began = nowNs();
    process.start(program, arguments);
    ::close(pipe[1]);
    QByteArray told;
    while (true) {
        pollfd waiting{pipe[0], POLLIN, 0};
        if (::poll(&waiting, 1, told.isEmpty() ? limitMs : silenceMs) <= 0) {
            break;
        }
        std::array<char, 4096> buffer{};
        const auto got = ::read(pipe[0], buffer.data(), buffer.size());
        if (got <= 0) {
            break;
        }
        told.append(buffer.data(), got);
    }
    ::close(pipe[0]);
    process.kill();
    process.waitForFinished();
    const QList<QByteArray> frames = told.trimmed().split('\n');
    if (frames.constFirst().isEmpty()) {
        qFatal("%s painted nothing", qPrintable(program));
    }
    const auto since = [began](const QByteArray &ns) {
        return static_cast<double>(ns.split(' ').constFirst().toLongLong() - began) / nsPerMs;
    };
    const double cpu = frames.constFirst().split(' ').constLast().toDouble() / nsPerMs;
    return {since(frames.constFirst()), since(frames.constLast()), cpu};
}

bool forgetFiles()
{
    ::sync();
    QFile file(u"/proc/sys/vm/drop_caches"_s);
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("3") == 1;
}

double load()
{
    double average = 0;
    return ::getloadavg(&average, 1) == 1 ? average : 0;
}

double median(const std::vector<double> &values)
{
    return quantile(values, 0.5);
}

void print(const char *name, const Starts &starts)
{
    std::printf("%-28s %8.1f %8.1f %8.1f %8.1f %9.1f\n", name, median(starts.first),
                quantile(starts.first, 0), quantile(starts.first, 1), median(starts.cpu),
                median(starts.settled));
}

void compare(const char *title, const QProcessEnvironment &environment, bool cold)
{
    const QString self = QCoreApplication::applicationFilePath();
    struct Peer
    {
        const char *name;
        QString program;
        QStringList arguments;
        Starts starts = {};
    };
    std::vector<Peer> peers{
        {"an empty window, ms", self, {u"--empty"_s}},
        {"a window with a word, ms", self, {u"--word"_s}},
        {"velometer, ms", QCoreApplication::applicationDirPath() + u"/velometer"_s, {}}};
    // The first start of all makes what later ones find: settings, the store, the cache of fonts.
    for (const Peer &peer : peers) {
        startOnce(peer.program, peer.arguments, environment);
    }
    for (int round = 0; round < (cold ? coldRounds : rounds); ++round) {
        for (size_t turn = 0; turn < peers.size(); ++turn) {
            if (cold && !forgetFiles()) {
                std::printf("%s: not measured, needs root\n", title);
                return;
            }
            // Who comes later finds what the first has read: they take turns.
            Peer &peer = peers[(turn + static_cast<size_t>(round)) % peers.size()];
            peer.starts.add(startOnce(peer.program, peer.arguments, environment));
        }
    }
    std::printf("\n%-28s %8s %8s %8s %8s %9s   load %.1f\n", title, "median", "least", "most",
                "cpu", "settled", load());
    for (const Peer &peer : peers) {
        print(peer.name, peer.starts);
    }
    const Starts &empty = peers.front().starts;
    const Starts &whole = peers.back().starts;
    std::printf("%-28s %8.2f %26.2f %9.2f\n", "ratio", median(whole.first) / median(empty.first),
                median(whole.cpu) / median(empty.cpu),
                median(whole.settled) / median(empty.settled));
}

int showWindow(int argc, char *argv[], bool withWord)
{
    const QApplication application(argc, argv);
    QApplication::setStyle(u"Fusion"_s); // the application's
    QWidget window;
    window.resize(480, 854);
    if (withWord) {
        // The least that brings up the system's fonts.
        new QLabel(u"Loading..."_s, &window);
    }
    window.show();
    return QApplication::exec();
}

} // namespace

} // namespace velometer

using namespace velometer;

int main(int argc, char *argv[])
{
    if (argc > 1) {
        return showWindow(argc, argv, qstrcmp(argv[1], "--word") == 0);
    }
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.insert(u"LD_PRELOAD"_s, QStringLiteral(PROBE));
    environment.insert(u"HOME"_s, home.path());
    for (const auto &each : {u"CONFIG"_s, u"DATA"_s, u"CACHE"_s}) {
        environment.insert(u"XDG_%1_HOME"_s.arg(each), home.filePath(each));
    }
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    compare("offscreen, warm", environment, false);
    compare("offscreen, cold", environment, true);

    QProcess server;
    server.setStandardErrorFile(QProcess::nullDevice());
    server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x900x24"_s,
                             u"-nolisten"_s, u"tcp"_s});
    if (!server.waitForReadyRead(limitMs)) {
        qFatal("Xvfb is missing");
    }
    environment.insert(u"DISPLAY"_s,
                       u':' + QString::fromLatin1(server.readAllStandardOutput().trimmed()));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    compare("X server, warm", environment, false);
    compare("X server, cold", environment, true);
    server.terminate();
    server.waitForFinished();
    return 0;
}
