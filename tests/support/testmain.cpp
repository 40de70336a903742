#include "support/registeredtest.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

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
    qputenv("TZ", "IST-5:30"); // not what programs tell each other the time in
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

} // namespace

} // namespace velometer

/// PROGRAM TEST [options of Qt Test]: runs that class, named after its file.
int main(int argc, char *argv[])
{
    const auto &tests = velometer::registeredTests();
    const auto test = tests.find(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    if (test == tests.end()) {
        std::fprintf(stderr, "%s: name one of its tests:\n", argv[0]);
        for (const auto &each : tests) {
            std::fprintf(stderr, "    %s\n", qPrintable(each.first));
        }
        return 2;
    }
    const QTemporaryDir home;
    if (!home.isValid()) {
        qFatal("no home for the test: %s", qPrintable(home.errorString()));
    }
    velometer::settleIn(home);
    argv[1] = argv[0];
    return test->second(argc - 1, argv + 1);
}
