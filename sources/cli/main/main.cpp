#include "cli/commandline.h"
#include "cli/exitstatus.h"
#include "cli/output.h"
#include "cli/program.h"
#include "db/databasemanager.h"
#include "utils/deployment.h"
#include "utils/signalwatcher.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Standard error is for the user; the diagnostic log and the toolkit's remarks are not.
void onlyFatal(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        Output(STDERR_FILENO).line(message);
    }
}

void everything(QtMsgType, const QMessageLogContext &, const QString &message)
{
    Output(STDERR_FILENO).line(message);
}

/// Called with a standard descriptor closed, the first file we open would take its place: what is
/// printed would end up in the database.
void openStandardDescriptors()
{
    for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            ::open("/dev/null", O_RDWR);
        }
    }
}

int fail(Output &err, const QString &sentence)
{
    err.line("velometer-cli: "_L1 + sentence);
    return static_cast<int>(ExitStatus::Usage);
}

/// Runs the command in the event loop; the status for the shell.
int run(const CommandLine &options, Output &out, Output &err, const QString &language)
{
    Program program(options, out, err, language);
    SignalWatcher signalWatcher;
    QObject::connect(&signalWatcher, &SignalWatcher::caught, &program, [&](int number) {
        program.stop(number == SIGTERM ? ExitStatus::Terminated : ExitStatus::Interrupted);
    });
    QObject::connect(&program, &Program::finished, &program,
                     [](ExitStatus status) { QCoreApplication::exit(static_cast<int>(status)); });
    QTimer::singleShot(0, &program, &Program::start);
    return QCoreApplication::exec();
}

} // namespace

} // namespace velometer

using namespace velometer;

int main(int argc, char *argv[])
{
    // Settings, store and their directories tell where the device was, and which one it is.
    ::umask(S_IRWXG | S_IRWXO);
    openStandardDescriptors();
    // A reader that goes away must not end a test; Output notices it.
    std::signal(SIGPIPE, SIG_IGN);
    qInstallMessageHandler(onlyFatal);
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"orvak"_s);
    QCoreApplication::setApplicationName(u"Velometer"_s);
    QCoreApplication::setApplicationVersion(Utils::getPlainVersion());

    Output out(STDOUT_FILENO);
    Output err(STDERR_FILENO);
    const QString language = Translations::systemLanguage();
    Translations::install(language);

    QString error;
    const auto options = CommandLine::parse(QCoreApplication::arguments().mid(1), &error);
    if (!options) {
        return fail(err, error);
    }
    if (options->help) {
        out.write(CommandLine::helpText(options->command, !options->commandGiven).toUtf8());
        return 0;
    }
    if (options->version) {
        out.line("velometer-cli "_L1 + Utils::getPlainVersion());
        return 0;
    }
    if (options->verbose) {
        qInstallMessageHandler(everything);
    }
    // What programs read does not depend on who runs it where.
    if (options->format != CommandLine::Format::Text) {
        Translations::install(u"en"_s);
    }

    const auto deployment = Deployment::load(options->configFile, &error);
    if (!deployment) {
        return fail(err, error);
    }
    Deployment::setCurrent(*deployment);
    DatabaseManager::database_path =
        options->dataDir.isEmpty()
            ? QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)
            : QFileInfo(options->dataDir).absoluteFilePath();

    const int status = run(*options, out, err, language);
    delete gDB;
    gDB = nullptr;
    return status;
}
