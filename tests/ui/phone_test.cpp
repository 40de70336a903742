// Whole tests on a phone of our own: what its services tell, and what becomes of it in the report,
// in the store and on the map.

#include "context/networkinfohelper.h"
#include "data/testdetails.h"
#include "data/testserver.h"
#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "platform/system/systemplatform.h"
#include "ui/map/geomaptab.h"
#include "ui/map/mapswidget.h"
#include "utils/utils.h"

#include "utils/deployment.h"

#include "support/fakeobserver.h"
#include "support/fakeplatform.h"
#include "support/fakeservice.h"
#include "support/mockphone.h"
#include "support/registeredtest.h"
#include "support/storedtests.h"

#include <QSignalSpy>

#include <functional>
#include <map>

namespace velometer {

using Phase = TestController::Phase;
using End = TestOutcome::End;

namespace {

constexpr int limitMs = 30'000;

/// The device of a mocked phone; its position is told by the test.
class PhonePlatform : public SystemPlatform
{
public:
    using SystemPlatform::SystemPlatform;
    std::unique_ptr<PositionSource> createPositionSource() override { return position.create(); }
    FakePosition position;
};

} // namespace

class PhoneTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        bus = std::make_unique<MockBus>();
        QVERIFY(bus->start());
        phone = std::make_unique<MockPhone>(*bus);
        QVERIFY(phone->startModem() && phone->startNetwork());
        store = std::make_unique<StoredTests>();
        service = std::make_unique<FakeService>();
        Deployment deployment;
        deployment.webPort = service->port();
        Deployment::setCurrent(deployment);
        Utils::setSettingsCommonValue(u"UserId"_s, u"52077"_s);
        online = true;
        observer = std::make_unique<FakeObserver>();
        platform = std::make_unique<PhonePlatform>(bus->connection(), [this] {
            const MachineInterface modem{u"wwan0"_s, u"Mobile"_s, {}, false, true, online};
            return MachineNetwork{{modem}, online ? u"wwan0"_s : QString()};
        });
        server.setHostname(u"127.0.0.1"_s);
        server.setPort(service->port());
        controller = std::make_unique<TestController>(nullptr, observer.get(), &server, *platform);
        QTRY_VERIFY(platform->isComplete());
        steps.clear();
        connect(controller.get(), &TestController::phaseEntered, this, [this](Phase phase) {
            if (const auto step = steps.find(phase); step != steps.end()) {
                step->second();
            }
        });
    }
    void cleanup()
    {
        controller.reset();
        platform.reset();
        service.reset();
        store.reset();
        phone.reset();
        bus.reset();
    }
    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void aTestAbroadIsReportedAndDrawn()
    {
        const NetworkInfoHelper &network = *controller->getNetWorkInfoHelper();
        QVERIFY(controller->checkRoaming());
        steps[Phase::Download] = [this] { platform->position.emitPosition(47.25, 8.75, 400); };
        steps[Phase::Upload] = [&] {
            QVERIFY(phone->set(MockPhone::location, u"Location"_s,
                               MockPhone::at(u"310,026,FFFE,FFFFFFFFF,F1E3"_s)));
            QTRY_COMPARE(network.getNetworkcell(), u"68719476735"_s);
        };
        steps[Phase::Rtt] = [&] {
            QVERIFY(phone->set(MockPhone::modem, u"AccessTechnologies"_s, 1U << 15));
            QTRY_COMPARE(network.getNetworkmode(), u"NrMode"_s);
        };
        run();
        QCOMPARE(controller->getOutcome().end, End::Completed);
        QVERIFY(controller->getOutcome().reportDelivered);
        const QByteArray once =
            QByteArray::fromPercentEncoding(service->requests("redirect_iphone").value(0));
        const auto report = QString::fromUtf8(QByteArray::fromPercentEncoding(once));
        // The cells are those at the beginning and the end of the three measurements.
        for (
            const QString &each :
            {u"<Network><![CDATA[Abroad]]></Network><MNC>026</MNC><MCC>310</MCC>"_s,
             u"<MNC>01</MNC><MCC>228</MCC>"_s,
             u"<LAC>61923</LAC><CellIDs>2814209,2814209,2814209,68719476735,68719476735,68719476735</CellIDs>"_s,
             u"<UUID>356938035643809</UUID>"_s, u"<![CDATA[Modem 7]]>"_s}) {
            QVERIFY2(report.contains(each), qPrintable(each + u'\n' + report));
        }
        const auto details = gDB->getDetailsById(controller->getOutcome().storedId);
        QCOMPARE(details->getString(u"connectionType"_s), u"Mobile(mixed)"_s);

        GeoMapTab map(nullptr);
        map.resize(480, 854);
        map.show();
        map.pauseDownloads(true);
        map.showResultsOnMap();
        QCOMPARE(map.map()->shownMarkers().size(), size_t(1));
        QCOMPARE(map.map()->shownMarkers().at(0)->markerType(), Marker::LocOther);
    }

    void aModemThatIsPulledOutEndsTheTest()
    {
        // The download goes on until the network is gone.
        service->script("downloadtest", {QByteArray("HTTP/1.0 200 OK\r\n\r\nx"), false});
        steps[Phase::Download] = [&] {
            QVERIFY(phone->removeModem() && phone->leaveBy(u"/"_s));
            online = false;
        };
        run();
        QCOMPARE(controller->getOutcome().end, End::NoNetwork);
        QVERIFY(controller->getOutcome().queueId > 0);
        const auto queued = gDB->getNextUnsentXMLFile(0);
        QVERIFY(queued && queued->xml.contains("<CellIDs>2814209"_L1));
        // It was there when the test began.
        QVERIFY(queued->xml.contains("DownloadStart"_L1));
    }

private:
    void run()
    {
        QSignalSpy ended(controller.get(), &TestController::testEnded);
        controller->runTests(u"Train"_s);
        QVERIFY(ended.wait(limitMs));
    }

    std::unique_ptr<MockBus> bus;
    std::unique_ptr<MockPhone> phone;
    std::unique_ptr<StoredTests> store;
    std::unique_ptr<FakeService> service;
    TestServer server{nullptr};
    std::unique_ptr<FakeObserver> observer;
    std::unique_ptr<PhonePlatform> platform;
    std::unique_ptr<TestController> controller;
    std::map<Phase, std::function<void()>> steps; ///< before a phase begins
    bool online = true;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(PhoneTest)
#include "phone_test.moc"
