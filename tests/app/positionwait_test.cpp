#include "app/positionwait.h"

#include "context/locationhelper.h"
#include "support/fakeclock.h"
#include "support/fakeplatform.h"
#include "support/registeredtest.h"
#include "support/rows.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace velometer {

class PositionWaitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsWhereItHasAPoint_data()
    {
        using Problem = PositionSource::Problem;
        using Seconds = std::optional<std::chrono::seconds>;
        const Rows<Problem, Seconds, int> row("problem", "wanted", "waits");
        row("cold", Problem::None, std::nullopt, 5);
        row("no fix yet", Problem::NoFix, 20s, 20);
        row("not wanted", Problem::None, 0s, 0);
        row("no source", Problem::NoSource, 20s, 0);
        row("refused", Problem::Refused, std::nullopt, 0);
        row("refused, but wanted", Problem::Refused, 600s, 600);
        row("not there", Problem::Unavailable, std::nullopt, 0);
    }
    void waitsWhereItHasAPoint()
    {
        QFETCH(PositionSource::Problem, problem);
        QFETCH(std::optional<std::chrono::seconds>, wanted);
        QFETCH(int, waits);
        FakeClock clock;
        FakePlatform platform;
        LocationHelper location(platform, nullptr);
        platform.position.setProblem(problem);
        PositionWait wait(location);
        const QSignalSpy ended(&wait, &PositionWait::ended);
        QCOMPARE(wait.start(wanted).value_or(0s).count(), waits);
        for (int second = 1; second < waits; ++second) {
            clock.advance(1s);
            QVERIFY(ended.isEmpty() && platform.position.positionRunning);
        }
        clock.advance(1s);
        QCOMPARE(ended.size(), waits == 0 ? 0 : 1);
    }

    void endsAtOnceWithAPositionOrWithoutHope()
    {
        const FakeClock clock;
        FakePlatform platform;
        LocationHelper location(platform, nullptr);
        PositionWait wait(location);
        const QSignalSpy ended(&wait, &PositionWait::ended);
        QVERIFY(wait.start({}));
        platform.position.setProblem(PositionSource::Problem::NoFix);
        QCOMPARE(ended.size(), 0);
        platform.position.setProblem(PositionSource::Problem::Refused);
        QCOMPARE(ended.size(), 1);
        QVERIFY(wait.start(600s));
        platform.position.emitPosition(47.5, 8.5);
        QCOMPARE(ended.size(), 2);
        QVERIFY(!wait.start(600s));
    }
};

} // namespace velometer

VELOMETER_TEST(PositionWaitTest)
#include "positionwait_test.moc"
