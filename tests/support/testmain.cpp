#include "support/registeredtest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Made on first use: tests register themselves before main().
std::vector<const RegisteredTest *> &registry()
{
    static std::vector<const RegisteredTest *> tests;
    return tests;
}

/// Neither the settings and results of who runs the tests, nor the machine's modem, nor what an
/// earlier run left.
void settleIn(const QTemporaryDir &home)
{
    const auto point = [&home](const char *variable, const QString &place) {
        qputenv(variable, QFile::encodeName(home.filePath(place)));
    };
    qputenv("HOME", QFile::encodeName(home.path()));
    point("XDG_CONFIG_HOME", u"config"_s);
    point("XDG_DATA_HOME", u"data"_s);
    point("XDG_CACHE_HOME", u"cache"_s);
    point("XDG_CONFIG_DIRS", u"none"_s);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + QFile::encodeName(home.filePath(u"none"_s)));
    qputenv("LC_ALL", "C.UTF-8");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

int runAlone(const RegisteredTest &test, int argc, char *argv[])
{
    const QTemporaryDir home;
    if (!home.isValid()) {
        std::fprintf(stderr, "no home for the test: %s\n", qPrintable(home.errorString()));
        return 2;
    }
    settleIn(home);
    return test.run(argc, argv);
}

/// In a process of its own, so that no class depends on what another one left. True when it passed.
bool runApart(const RegisteredTest &test, int argc, char *argv[])
{
    const pid_t child = fork();
    if (child == 0) {
        std::exit(runAlone(test, argc, argv));
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

} // namespace

RegisteredTest::RegisteredTest(const char *testClass, const char *file, Run runFunction)
    : className(testClass)
    , fileName(QFileInfo(QString::fromUtf8(file)).completeBaseName().toUtf8())
    , function(runFunction)
{
    registry().push_back(this);
}

const std::vector<const RegisteredTest *> &RegisteredTest::all()
{
    return registry();
}

} // namespace velometer

/// PROGRAM [TEST] [options of Qt Test]: runs that class, named after itself or its file; without it
/// all of the program, one after the other.
int main(int argc, char *argv[])
{
    using velometer::RegisteredTest;
    const std::vector<const RegisteredTest *> &tests = RegisteredTest::all();
    if (argc > 1) {
        for (const RegisteredTest *test : tests) {
            if (test->isCalled(argv[1])) {
                argv[1] = argv[0];
                return velometer::runAlone(*test, argc - 1, argv + 1);
            }
        }
        if (argv[1][0] != '-') {
            std::fprintf(stderr, "%s: no test is called %s; there are\n", argv[0], argv[1]);
            for (const RegisteredTest *test : tests) {
                std::fprintf(stderr, "    %s\n", test->name().constData());
            }
            return 2;
        }
    }
    QByteArrayList failed;
    for (const RegisteredTest *test : tests) {
        if (!velometer::runApart(*test, argc, argv)) {
            failed.append(test->name());
        }
    }
    for (const QByteArray &name : failed) {
        std::fprintf(stderr, "failed: %s\n", name.constData());
    }
    return failed.isEmpty() ? 0 : 1;
}
