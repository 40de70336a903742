#include "app/startup.h"

#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <csignal>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

void print(const QString &message)
{
    // In one piece, and whatever locale the system is in.
    const QByteArray line = message.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
}

/// Standard error is for the user; the diagnostic log and the toolkit's remarks are not.
void onlyFatal(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        print(message);
    }
}

void everything(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &message)
{
    print(message);
}

} // namespace

void StartUp::prepareProcess()
{
    // Settings, store and their directories tell where the device was, and which one it is.
    ::umask(S_IRWXG | S_IRWXO);
    for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            ::open("/dev/null", O_RDWR);
        }
    }
    // A reader that goes away must not end a test.
    std::signal(SIGPIPE, SIG_IGN);
    qInstallMessageHandler(onlyFatal);
}

void StartUp::showLog()
{
    qInstallMessageHandler(everything);
}

void StartUp::nameApplication()
{
    QCoreApplication::setOrganizationName(u"orvak"_s);
    QCoreApplication::setApplicationName(Utils::getAppTitle());
    QCoreApplication::setApplicationVersion(Utils::getPlainVersion());
}

bool StartUp::loadDeployment(const QString &configFile, const QString &dataDir, QString *error)
{
    const auto deployment = Deployment::load(configFile, error);
    if (!deployment) {
        return false;
    }
    Deployment::setCurrent(*deployment);
    DatabaseManager::database_path =
        dataDir.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
                          : QFileInfo(dataDir).absoluteFilePath();
    return true;
}

QString StartUp::seriesFile()
{
    return QDir(QFileInfo(DatabaseManager::databaseFile()).path()).filePath(u"series.json"_s);
}

QString StartUp::trackLockFile()
{
    return QDir(QFileInfo(DatabaseManager::databaseFile()).path()).filePath(u"track.lock"_s);
}

int StartUp::measurementDuration()
{
    bool isNumber = false;
    const int seconds = qEnvironmentVariableIntValue("VELOMETER_MEASUREMENT_SECONDS", &isNumber);
    const bool shorter = isNumber && seconds >= 1 && seconds < TestController::standardDuration;
    return shorter ? seconds : TestController::standardDuration;
}

void StartUp::closeStore()
{
    delete std::exchange(gDB, nullptr);
}

} // namespace velometer
