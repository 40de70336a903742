#include "main/options.h"

#include "main/singleinstance.h"

#include "support/registeredtest.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace velometer {

class OptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesWhatMakesSense()
    {
        QString error;
        const auto options = Options::parse(
            {u"--language=de"_s, u"--shell"_s, u"phone"_s, u"--data-dir"_s, u"/a b"_s,
             u"--platform=scripted:x"_s, u"--position"_s, u"nmea:y"_s, u"--config"_s, u"c.conf"_s},
            &error);
        QVERIFY2(options, qPrintable(error));
        QCOMPARE(options->language, u"de"_s);
        QVERIFY(options->shell == ShellKind::Phone);
        QCOMPARE(options->dataDir, u"/a b"_s);
        QCOMPARE(options->platform.script, u"x"_s);
        QCOMPARE(options->platform.position.file, u"y"_s);
        QCOMPARE(options->configFile, u"c.conf"_s);
    }

    void namesWhatIsWrong()
    {
        for (const auto &[line, named] : {std::pair{u"--fullscreen"_s, u"fullscreen"_s},
                                          {u"--language=fr"_s, u"\"fr\""_s},
                                          {u"--config"_s, u"config"_s},
                                          {u"--version=2"_s, u"version"_s}}) {
            QString error;
            QVERIFY(!Options::parse(line.split(u' '), &error));
            QVERIFY2(error.contains(named), qPrintable(error));
            QVERIFY2(error.count(u'.') == 1 && error.endsWith(u'.'), qPrintable(error));
        }
    }

    void fitsTheShellToTheScreen()
    {
        using enum ShellKind;
        QVERIFY(Shell::fitting({854, 480}, 0) == Handset);
        QVERIFY(Shell::fitting({360, 720}, 65) == Phone); // scaled
        QVERIFY(Shell::fitting({480, 854}, 0) == Phone);  // a handset held upright
        QVERIFY(Shell::fitting({1366, 768}, 310) == Desktop);
        QVERIFY(Shell::fitting({1080, 1920}, 300) == Desktop); // a monitor on its side
    }

    void aSecondProgramRaisesTheFirst()
    {
        const QTemporaryDir runtime;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        auto first = std::make_unique<SingleInstance>(u"store"_s);
        QVERIFY(!first->otherRaised());
        QSignalSpy raised(first.get(), &SingleInstance::raiseRequested);
        qputenv("XDG_ACTIVATION_TOKEN", "token-1");
        SingleInstance second(u"store"_s);
        QVERIFY(second.otherRaised());
        QTRY_COMPARE(raised.count(), 1);
        QCOMPARE(raised.first().first().toByteArray(), QByteArray("token-1"));
        SingleInstance elsewhere(u"another store"_s);
        QVERIFY(!elsewhere.otherRaised());
        first.reset();
        QVERIFY(!second.otherRaised());
    }
};

} // namespace velometer

VELOMETER_WIDGET_TEST(OptionsTest)

#include "options_test.moc"
