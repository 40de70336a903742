#include "limits/allowances.h"
#include "runningservice.h"
#include "storequestions.h"
#include "support/registeredtest.h"
#include "support/rows.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

/// How much one address, or one user, gets of the service.
class ServiceLimitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesBackBitByBit()
    {
        Allowances::Limits limits{};
        limits[0] = {.most = 2, .period = 20s};
        Allowances here(limits);
        Allowances there(limits);
        const Allowances::Clock::time_point start(1'000'000s);
        const auto spend = [&](Allowances &who, std::chrono::seconds after, int share = 1) {
            return static_cast<int>(
                who.spend(Spent::Ids, "a", start + after, share).value_or(0s).count());
        };
        QCOMPARE(spend(here, 0s), 0);
        QCOMPARE(spend(here, 0s), 0);
        QCOMPARE(spend(here, 0s), 10);
        QCOMPARE(spend(here, 4s), 6);
        QCOMPARE(spend(here, 4s, 2), 0);   // somebody proven is behind the address
        QCOMPARE(spend(here, -3600s), 16); // the clock was set back
        QVERIFY(!here.spend(Spent::Ids, "b", start));
        for (int i = 0; i < 100; ++i) {
            QVERIFY(!here.spend(Spent::Reports, "a", start)); // without limit
        }
        // Another service has let him have one meanwhile.
        Allowances shared(limits);
        QCOMPARE(spend(shared, 0s), 0);
        shared.learn({{"a", Spent::Ids, 1.0, 1'000'000'000}});
        QCOMPARE(shared.takeNews().size(), 1U);
        QCOMPARE(shared.takeNews().size(), 0U);
        QCOMPARE(spend(shared, 0s), 10);
    }

    void refusesWithAWordAndATime_data()
    {
        const Rows<int, QByteArray, QByteArray> row("kind", "request", "words");
        const QByteArray ids = "?testuserid=1&seriesid=1&testid=";
        row("user ids", 0, "/velometer/getIDwithUUID.jsp?UUID=a", "So many user ids");
        row("tests", 2, "/velometer/initialise.php" + ids + "1000001", "So many measurements");
        row("streams of no test", 2, "/velometer/downloadtest.php?logtraffic=1",
            "So many measurements");
        row("pages", 3, "/", "So many pages");
        row("interface", 3, "/velometer/api/v1/tests?userid=1", "So many pages");
        row("exports", 4, "/velometer/api/v1/export?userid=1&format=csv", "So many exports");
    }
    void refusesWithAWordAndATime()
    {
        const auto [kind, request, words] = currentRow<int, QByteArray, QByteArray>();
        const auto limited = [kind = kind](ServerOptions &options) {
            options.allowances.at(static_cast<std::size_t>(kind)).most = 2;
            options.longestStream = 0s;
        };
        auto service = std::make_unique<RunningService>(limited);
        for (int i = 0; i < 2; ++i) {
            SocketClient client(service->port());
            client.send("GET " + request + " HTTP/1.1\r\nHost: x\r\n\r\n");
            QVERIFY(statusOf(client.receive(40)) != 429);
        }
        const QByteArray answer = service->get(request);
        QCOMPARE(statusOf(answer), 429);
        QVERIFY2(bodyOf(answer).startsWith(words), answer);
        QVERIFY2(bodyOf(answer).endsWith("Please try again in 30 minutes.\n"), answer);
        QVERIFY2(answer.contains("\r\nRetry-After: 1800\r\n") ||
                     answer.contains("\r\nRetry-After: 1799\r\n"),
                 answer);
        QVERIFY(service->get("/metrics").contains("refusals_total{reason=\""));
        QCOMPARE(statusOf(service->get("/healthz")), 200);
    }

    void remembersOverARestartWhoHadWhat()
    {
        const QTemporaryDir directory;
        const auto options = [&](ServerOptions &o) {
            o.store.database = directory.filePath(u"r.db"_s);
            o.allowances.at(0).most = 1;
        };
        const QByteArray question = "/velometer/getIDwithUUID.jsp?UUID=a";
        auto service = std::make_unique<RunningService>(options);
        QCOMPARE(statusOf(service->get(question)), 200);
        service.reset();
        service = std::make_unique<RunningService>(options);
        QTRY_COMPARE(statusOf(service->get(question)), 429);
        // The address itself is kept nowhere.
        QCOMPARE(sql(directory.filePath(u"r.db"_s),
                     {u"SELECT count(*) || ' ' || length(payer) FROM allowances"_s}),
                 u"1 66"_s);
    }

    void countsAProvenUserForHimself()
    {
        const QTemporaryDir directory;
        StoreOptions store{.database = directory.filePath(u"r.db"_s)};
        {
            const Store filled = openStore(store);
            StreamRecord stream;
            stream.test = {.user = 7, .series = 1, .test = 1};
            stream.lasted = 5000;
            stream.avg = 8'000'000;
            filled->storeStream(stream);
            Report backed = report(7, 1, 1);
            backed.testId = 1;
            backed.download.avg = 8'000'000;
            backed.downloadIntervals = 50;
            QCOMPARE(put(filled, backed), ReportStore::Outcome::Stored);
            put(filled, report(8, 1, 1)); // claims nothing, and proves nothing
        }
        const RunningService service([&](ServerOptions &options) {
            options.store = store;
            options.allowances.at(3).most = 3;
        });
        const auto page = [&](int user) {
            return statusOf(
                service.get("/velometer/api/v1/summary?userid=" + QByteArray::number(user)));
        };
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(page(8), 200);
            QCOMPARE(page(7), 200);
        }
        QCOMPARE(page(7), 429); // his own three
        // He has made room for as many more behind his address.
        QCOMPARE(page(8), 200);
        QCOMPARE(page(9), 404);
        QCOMPARE(page(8), 200);
        QCOMPARE(page(8), 429);
    }

    void addsUpWhatServicesWithOneStoreHaveGiven()
    {
        const QTemporaryDir directory;
        const Store store = openStore({.database = directory.filePath(u"r.db"_s)});
        Allowances::Limits limits{};
        limits[1] = {.most = 1000, .period = 1000s};
        using Levels = std::vector<Allowances::Level>;
        const auto add = [&](double level, std::int64_t at) {
            const Levels news{{"x", Spent::Reports, level, at}};
            return answer<Levels>([&](auto done) { store->addAllowances(limits, news, done); })
                .at(0);
        };
        const std::int64_t now = QDateTime::currentMSecsSinceEpoch();
        QCOMPARE(add(100, now).level, 100);
        QCOMPARE(add(50, now + 30'000).level, 120);
        const auto late = add(5, now); // a service whose clock is behind
        QCOMPARE(late.level, 125);
        QCOMPARE(late.at, now + 30'000);
        QCOMPARE(add(1, now + 900'000).level, 1);
        const auto all = answer<Levels>([&](auto done) { store->allowances(limits, done); });
        QCOMPARE(all.size(), 1U);
        QCOMPARE(all[0].payer, std::string("x"));
    }
};

} // namespace velometer

VELOMETER_TEST(ServiceLimitsTest)
#include "service_limits_test.moc"
