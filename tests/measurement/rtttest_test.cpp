#include "measurement/rtttest.h"

#include "data/result.h"

#include "support/fakecontext.h"
#include "support/fakeservice.h"
#include "support/registeredtest.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace velometer {

class RttTestTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsThreeOfFourConnects()
    {
        RttTest test(&context, &record);
        test.doMeasurement();
        QTRY_COMPARE(context.results.size(), 1);

        const Result *result = context.results.first();
        QCOMPARE(result->getResponseTimes().size(), 3);
        QVERIFY(result->isValid() && result->getResponseMin() > 0);
        QCOMPARE(context.observer.progress, (QList<int>{0, 1, 2, 3, 4}));
        QTRY_COMPARE(service.probes(), 4);
    }

    void anUnreachableServerStillEndsInAResult()
    {
        service.refuse();
        RttTest test(&context, &record);
        test.doMeasurement();
        QTRY_COMPARE(context.results.size(), 1);
        const Result *result = context.results.first();
        QVERIFY(!result->isValid());
        QCOMPARE(result->getResponseTimes().values(), (QList<int>{-1, -1, -1}));
    }

    void aCancelledTestReportsNothing()
    {
        RttTest test(&context, &record);
        test.doMeasurement();
        test.cancel();
        QTest::qWait(300);
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
