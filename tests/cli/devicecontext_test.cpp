#include "cli/devicecontext.h"

#include "support/fakeplatform.h"
#include "support/registeredtest.h"

#include <QSignalSpy>

namespace velometer {

using Missing = PlatformFacts::Missing;
using Problem = PositionSource::Problem;

class DeviceContextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsOnlyForWhatMayStillCome_data()
    {
        const Rows<QList<Missing>, NetworkMode, Problem, bool> row("missing", "mode", "problem",
                                                                   "ready");
        using enum PlatformFacts::Missing;
        using enum NetworkMode;
        row("positions refused", {}, Lte, Problem::Refused, true);
        row("no source", {}, Lte, Problem::NoSource, true);
        row("first fix", {}, Lte, Problem::None, false);
        row("modem that registers", {PrimaryConnection}, Unknown, Problem::Refused, false);
        row("no modem service", {ModemService, PrimaryConnection}, Unknown, Problem::Refused, true);
        row("no bus", {SystemBus}, Unknown, Problem::Refused, true);
    }
    void waitsOnlyForWhatMayStillCome()
    {
        const auto [missing, mode, problem, ready] =
            currentRow<QList<Missing>, NetworkMode, Problem, bool>();
        FakePlatform device;
        device.told.missing = missing;
        device.network.mode = mode;
        DeviceContext context(device);
        device.position.setProblem(problem);
        QSignalSpy looks(&context, &DeviceContext::ready);
        context.look();
        auto *timer = context.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        const auto fire = [timer] {
            QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
        };
        fire();
        QCOMPARE(looks.size(), ready ? 1 : 0);
        for (int times = 1; times < 30; ++times) {
            fire();
        }
        QVERIFY(!looks.isEmpty()); // after three seconds in any case
    }
};

} // namespace velometer

VELOMETER_TEST(DeviceContextTest)
#include "devicecontext_test.moc"
