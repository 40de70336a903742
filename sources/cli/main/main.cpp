#include "app/startup.h"
#include "cli/commandline.h"
#include "cli/exitstatus.h"
#include "cli/output.h"
#include "cli/program.h"
#include "utils/signalwatcher.h"
#include "utils/translations.h"

#include <QCoreApplication>
#include <QTimer>

#include <csignal>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

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
        program.stop(number == SIGHUP    ? ExitStatus::HungUp
                     : number == SIGTERM ? ExitStatus::Terminated
                                         : ExitStatus::Interrupted);
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
    StartUp::prepareProcess();
    const QCoreApplication application(argc, argv);
    StartUp::nameApplication();
    Output out(STDOUT_FILENO);
    Output err(STDERR_FILENO);
    const QString language = Translations::systemLanguage();
    Translations::install(language);

    QString error;
    const auto options = CommandLine::parse(QCoreApplication::arguments().mid(1), &error);
    if (!options) {
        return fail(err, error);
    }
    if (!options->answer.isEmpty()) {
        out.write(options->answer.toUtf8());
        return 0;
    }
    if (options->verbose) {
        StartUp::showLog();
    }
    // What programs read does not depend on who runs it where.
    if (options->format != CommandLine::Format::Text) {
        Translations::install(u"en"_s);
    }
    if (!StartUp::loadDeployment(options->configFile, options->dataDir, &error)) {
        return fail(err, error);
    }
    const int status = run(*options, out, err, language);
    StartUp::closeStore();
    return status;
}
