#include "app/positionwait.h"

#include "context/locationhelper.h"
#include "support/fakeclock.h"
#include "support/fakeplatform.h"
#include "support/registeredtest.h"

#include <QSignalSpy>

using namespace std::chrono_literals;

namespace velometer {

class PositionWaitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsWhereItHasAPoint_data()
    {
        using enum PositionSource::Problem;
        using Wanted = std::optional<std::chrono::seconds>;
        const Rows<PositionSource::Problem, Wanted, int> row("problem", "wanted", "waits");
        row("cold", None, std::nullopt, 5);
        row("not wanted", NoFix, 0s, 0);
        row("no source", NoSource, 20s, 0);
        row("refused", Refused, std::nullopt, 0);
        row("not there, but wanted", Unavailable, 600s, 600);
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

        // A position ends it at once, and then there is nothing to wait for.
        platform.position.setProblem(PositionSource::Problem::NoFix);
        QVERIFY(wait.start(600s) && ended.size() < 2);
        platform.position.emitPosition(47.5, 8.5);
        QVERIFY(ended.size() == (waits == 0 ? 1 : 2) && !wait.start(600s));
    }
};

} // namespace velometer

VELOMETER_TEST(PositionWaitTest)
#include "positionwait_test.moc"
