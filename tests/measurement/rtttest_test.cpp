#include "measurement/rtttest.h"

#include "data/result.h"

#include "support/fakeclock.h"
#include "support/fakecontext.h"
#include "support/fakeservice.h"
#include "support/registeredtest.h"
#include "support/silentpeer.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

class RttTestTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsThreeOfFourConnects()
    {
        FakeClock clock;
        RttTest test(&context, &record);
        test.doMeasurement();
        for (int connect = 1; connect <= 4; ++connect) {
            QTRY_COMPARE(context.observer.progress.last(), connect);
            // One that began too early would last a millisecond.
            clock.advance(199ms);
            clock.advance(1ms);
        }
        QCOMPARE(context.results.size(), 1);
        QCOMPARE(context.results.first()->getResponseTimes().values(), (QList<int>{0, 0, 0}));
        QTRY_COMPARE(service.probes(), 4);
        QCOMPARE(context.observer.progress, (QList<int>{0, 1, 2, 3, 4}));
    }

    void aBusyProgramAddsNothing()
    {
        FakeClock clock;
        RttTest test(&context, &record);
        test.doMeasurement();
        for (int connect = 1; connect <= 4; ++connect) {
            clock.lag(900ms); // the answer is there, but nobody looks
            QTRY_COMPARE(context.observer.progress.last(), connect);
            clock.advance(200ms);
        }
        for (const int ns : context.results.first()->getResponseTimes()) {
            QVERIFY2(ns > 0 && ns < 900'000'000, QByteArray::number(ns).constData());
        }
    }

    void aConnectHasThreeSeconds()
    {
        const SilentPeer peer;
        context.server->setPort(peer.port());
        FakeClock clock;
        RttTest test(&context, &record);
        test.doMeasurement();
        for (int connect = 1; connect <= 4; ++connect) {
            clock.advance(2999ms);
            QCOMPARE(context.observer.progress.last(), connect - 1);
            clock.advance(1ms);
            QCOMPARE(context.observer.progress.last(), connect);
            clock.advance(200ms);
        }
        const Result *result = context.results.first();
        QVERIFY(!result->isValid());
        QCOMPARE(result->getResponseTimes().values(), (QList<int>{-1, -1, -1}));
    }

    void aCancelledTestReportsNothing()
    {
        FakeClock clock;
        RttTest test(&context, &record);
        test.doMeasurement();
        QTRY_COMPARE(context.observer.progress.last(), 1);
        test.cancel();
        clock.advance(10s);
        QCOMPARE(context.observer.progress.last(), 1);
        QVERIFY(context.results.isEmpty());
    }

    void init()
    {
        context.results.clear();
        context.observer.progress.clear();
        context.server->setHostname(u"127.0.0.1"_s);
        context.server->setPort(service.port());
    }

private:
    FakeService service;
    FakeContext context;
    QObject record;
};

} // namespace velometer

VELOMETER_TEST(RttTestTest)
#include "rtttest_test.moc"
