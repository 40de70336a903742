#include "app/sleepinhibitor.h"

#include "support/mockbus.h"
#include "support/registeredtest.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velometer {

class SleepInhibitorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDeviceIsKeptAwakeAsLongAsItIsWantedAndNoLonger()
    {
        const QString service = u"org.freedesktop.login1"_s;
        const QString path = u"/org/freedesktop/login1"_s;
        const QString manager = service + u".Manager"_s;
        MockBus bus;
        QVERIFY(bus.start());
        SleepInhibitor awake(bus.connection(), nullptr);
        awake.hold(); // before anybody is there
        const auto grant = [&](const QString &python) {
            QVERIFY(bus.startService(service, path, manager));
            QVERIFY(bus.addMethod(service, path, manager, u"Inhibit"_s, "ssss", u"h"_s, python));
        };
        const auto open = [] { return QDir(u"/proc/self/fd"_s).entryList().size(); };
        // Only what is asked for as it must be is granted.
        const QString give = u"import os, dbus\n"
                             "if args[0] != 'sleep:idle' or args[3] != 'block': raise ValueError\n"
                             "ret = dbus.types.UnixFd(os.open('/dev/null', os.O_RDONLY))"_s;
        QTest::qWait(0);
        QVERIFY(!awake.isHeld());
        grant(give);
        awake.hold();
        QTRY_VERIFY(awake.isHeld());
        const auto held = open();
        awake.hold(); // once is enough
        QTest::qWait(100);
        QCOMPARE(open(), held);
        awake.release();
        QVERIFY(!awake.isHeld());
        QCOMPARE(open(), held - 1);
        // What comes too late is given back.
        awake.hold();
        awake.release();
        QTest::qWait(200);
        QCOMPARE(open(), held - 1);
        // Who refuses is asked again the next time.
        QVERIFY(bus.addMethod(service, path, manager, u"Inhibit"_s, "ssss", u"h"_s,
                              u"raise ValueError"_s));
        awake.hold();
        QTest::qWait(200);
        QVERIFY(!awake.isHeld());
    }
};

} // namespace velometer

VELOMETER_TEST(SleepInhibitorTest)
#include "sleepinhibitor_test.moc"
