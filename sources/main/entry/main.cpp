#include "app/startup.h"
#include "db/databasemanager.h"
#include "main/options.h"
#include "main/singleinstance.h"
#include "platform/platform.h"
#include "ui/mainwindow.h"
#include "ui/shell.h"
#include "ui/theme/appearance.h"
#include "utils/signalwatcher.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QMessageBox>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int usageError = 2;

int fail(const QString &sentence)
{
    std::fprintf(stderr, "velometer: %s\n", qPrintable(sentence));
    return usageError;
}

bool hasDisplay()
{
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(name)) {
            return true;
        }
    }
    return false;
}

QString chosenLanguage(const Options &options)
{
    if (!options.language.isEmpty()) {
        return options.language;
    }
    const QString chosen = Utils::getSettingsValue(u"Language"_s);
    return chosen == "de"_L1 || chosen == "en"_L1 ? chosen : Translations::systemLanguage();
}

/// From the window's creation to the end of the event loop.
int run(const Options &options, Platform &platform, SingleInstance &instance)
{
    const ShellKind kind =
        options.shell.value_or(Shell::fitting(*QGuiApplication::primaryScreen()));
    Appearance appearance(kind == ShellKind::Handset, options.theme);
    MainWindow window(platform);
    QObject::connect(&window, &MainWindow::lookChosen, &appearance, &Appearance::choose);
    QObject::connect(&window, &MainWindow::textSizeChosen, &appearance, &Appearance::setTextLarger);
    Shell shell(kind, window);
    QObject::connect(&instance, &SingleInstance::raiseRequested, &shell,
                     [&shell](const QByteArray &token) {
                         qputenv("XDG_ACTIVATION_TOKEN", token);
                         shell.raise();
                     });
    SignalWatcher signalWatcher;
    QObject::connect(&signalWatcher, &SignalWatcher::caught, &window, &QWidget::close);
    shell.show();
    window.showTestTab();
    const int status = QApplication::exec();
    StartUp::closeStore();
    return status;
}

} // namespace

} // namespace velometer

using namespace velometer;

int main(int argc, char *argv[])
{
    StartUp::prepareProcess();

    // Read before there is an application: help needs no display.
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    QString error;
    const auto options = Options::parse(arguments, &error);
    if (!options) {
        return fail(error);
    }
    if (!options->answer.isEmpty()) {
        std::fputs(qPrintable(options->answer), stdout);
        return 0;
    }
    if (!hasDisplay()) {
        return fail(Options::noDisplay());
    }
    if (options->verbose) {
        StartUp::showLog();
    }

    // The toolkit has a --platform of its own and must not see ours.
    int nameAlone = std::min(argc, 1);
    QApplication application(nameAlone, argv);
    QApplication::setQuitOnLastWindowClosed(true);
    StartUp::nameApplication();
    QApplication::setDesktopFileName(u"velometer"_s);
    QApplication::setWindowIcon(QIcon(u":/velometerres/velometer.png"_s));
    QApplication::setStyle(u"Fusion"_s);
    Utils::addLogEntry(u"Locale: %1"_s.arg(QLocale::system().name().left(2)));
    Translations::install(chosenLanguage(*options));

    if (!StartUp::loadDeployment(options->configFile, options->dataDir, &error)) {
        // Started from a menu, nobody sees what is printed.
        if (options->configFile.isEmpty() && ::isatty(STDERR_FILENO) == 0) {
            QMessageBox::critical(nullptr, Utils::getAppTitle(), error);
        }
        return fail(error);
    }
    const auto platform = Platform::create(options->platform, &error);
    if (!platform) {
        return fail(error);
    }

    SingleInstance instance(DatabaseManager::databaseFile());
    if (instance.otherRaised()) {
        return 0;
    }
    return run(*options, *platform, instance);
}
