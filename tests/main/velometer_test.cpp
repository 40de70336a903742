// The built application on an X server of its own, against the built service.

#include "support/programhome.h"
#include "support/registeredtest.h"

#include <QImage>

#include <cmath>
#include <functional>
#include <utility>

namespace velometer {

namespace {

constexpr int startLimit = 20'000;

bool isStartButton(const QColor &colour)
{
    return colour.red() < 90 && colour.green() > 160 && colour.blue() > 140;
}

bool hasStartButton(const QImage &screen)
{
    constexpr int step = 10;
    for (int y = 0; y < screen.height(); y += step) {
        for (int x = 0; x < screen.width(); x += step) {
            if (isStartButton(screen.pixelColor(x, y))) {
                return true;
            }
        }
    }
    return false;
}

bool isOrdinaryButton(const QColor &colour)
{
    return std::min({colour.red(), colour.green(), colour.blue()}) > 185;
}

/// Mean difference of two images of one size, per channel of 255.
double difference(const QImage &a, const QImage &b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
        }
    }
    return sum / (a.width() * a.height());
}

} // namespace

class VelometerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home = std::make_unique<ProgramHome>();
        home->environment.insert(u"VELOMETER_MEASUREMENT_SECONDS"_s, u"1"_s);
        home->environment.remove(u"WAYLAND_DISPLAY"_s);
        home->environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        home->environment.insert(u"XDG_RUNTIME_DIR"_s, home->path({}));
    }

    void cleanup()
    {
        for (auto *process : {&application, &server}) {
            if (*process) {
                (*process)->terminate();
                (*process)->waitForFinished();
            }
            process->reset();
        }
    }

    void turnsTheWindowOnAHandsetsPanel()
    {
        startServer(u"480x854"_s);
        startApplication({u"--shell"_s, u"phone"_s});
        const QImage upright = settledScreen();
        cleanup();
        startServer(u"854x480"_s);
        startApplication({u"--shell"_s, u"handset"_s});
        const QImage turned = settledScreen();
        QCOMPARE(turned.size(), QSize(854, 480));

        // Letters are drawn a little differently when they lie on their side.
        const QImage turnedBack = turned.transformed(QTransform().rotate(90));
        const QImage wrongWay = turned.transformed(QTransform().rotate(-90));
        QVERIFY2(difference(upright, turnedBack) < 2,
                 qPrintable(QString::number(difference(upright, turnedBack))));
        QVERIFY(difference(upright, wrongWay) > 10);

        const QByteArray window =
            output(u"xdotool"_s, {u"search"_s, u"--name"_s, u"^VeloMeter$"_s});
        const QByteArray property =
            output(u"xprop"_s, {u"-id"_s, QString::fromLatin1(window.trimmed().split('\n').last()),
                                u"_MEEGOTOUCH_ORIENTATION_ANGLE"_s});
        QCOMPARE(property.trimmed(), QByteArray("_MEEGOTOUCH_ORIENTATION_ANGLE(CARDINAL) = 270"));
    }

    void aClickLeadsToAStoredTest()
    {
        startServer(u"480x854"_s);
        home->startService();
        startApplication({u"--config"_s, home->config()});

        clickOn(isStartButton);
        clickOn(isOrdinaryButton); // the costs
        clickOn(isOrdinaryButton); // indoor
        const QString stored = u"SELECT location FROM testresults WHERE downloadSpeed > 0 AND "
                               "uploadSpeed > 0 AND rtt >= 0"_s;
        const QList<QVariantList> indoor{{u"Indoor"_s}};
        QTRY_COMPARE_WITH_TIMEOUT(ProgramHome::rows(home->store(), stored), indoor,
                                  ProgramHome::limitMs);
        QTRY_COMPARE(ProgramHome::rows(home->reports(), u"SELECT location FROM reports"_s), indoor);

        const auto second =
            home->start(QStringLiteral(APPLICATION_PROGRAM), {u"--config"_s, home->config()});
        QVERIFY(second->waitForFinished(startLimit));
        QCOMPARE(second->exitCode(), 0);
        QCOMPARE(application->state(), QProcess::Running);
        application->terminate();
        QVERIFY(application->waitForFinished(startLimit));
        QCOMPARE(application->exitStatus(), QProcess::NormalExit);
    }

private:
    void startServer(const QString &size)
    {
        server = home->start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s,
                                         size + u"x24"_s, u"-nolisten"_s, u"tcp"_s});
        QTRY_VERIFY_WITH_TIMEOUT(server->canReadLine(), startLimit);
        home->environment.insert(u"DISPLAY"_s,
                                 u':' + QString::fromLatin1(server->readLine().trimmed()));
    }

    void startApplication(const QStringList &options)
    {
        application = home->start(QStringLiteral(APPLICATION_PROGRAM),
                                  QStringList{u"--language"_s, u"en"_s, u"--platform"_s, u"none"_s,
                                              u"--theme"_s, u"given"_s} +
                                      options);
        QVERIFY(application->waitForStarted());
        // "Loading" stands still, too.
        const bool hasBegun =
            QTest::qWaitFor([this] { return hasStartButton(screen()); }, startLimit);
        const QString state = u"state %1, exit %2, screen of %3 px: "_s.arg(application->state())
                                  .arg(application->exitCode())
                                  .arg(screen().width());
        QVERIFY2(hasBegun,
                 qPrintable(state + QString::fromUtf8(application->readAllStandardError())));
    }

    QByteArray output(const QString &program, const QStringList &arguments)
    {
        const auto process = home->start(program, arguments);
        process->waitForFinished();
        return process->readAllStandardOutput();
    }

    QImage screen()
    {
        return QImage::fromData(output(u"import"_s, {u"-window"_s, u"root"_s, u"png:-"_s}));
    }

    /// The screen once it stands still.
    QImage settledScreen()
    {
        QImage last = screen();
        (void)QTest::qWaitFor(
            [&] {
                const QImage now = screen();
                return std::exchange(last, now) == now;
            },
            startLimit);
        return last;
    }

    /// Clicks on the topmost place that looks like this, a finger's width into it.
    void clickOn(const std::function<bool(const QColor &)> &wanted)
    {
        constexpr int column = 130; // left of every caption
        constexpr int finger = 20;
        int found = -1;
        const auto search = [&] {
            const QImage image = settledScreen();
            for (int y = 60; y + 2 * finger < image.height(); ++y) {
                if (wanted(image.pixelColor(column, y)) &&
                    wanted(image.pixelColor(column, y + finger))) {
                    found = y + finger;
                    return true;
                }
            }
            return false;
        };
        QVERIFY(QTest::qWaitFor(search, startLimit));
        QTest::qWait(500); // a popup that has just come takes no press
        output(u"xdotool"_s, {u"mousemove"_s, QString::number(column), QString::number(found),
                              u"click"_s, u"1"_s});
    }

    std::unique_ptr<ProgramHome> home;
    ProgramHome::Process server;
    ProgramHome::Process application;
};

} // namespace velometer

VELOMETER_TEST(VelometerTest)

#include "velometer_test.moc"
