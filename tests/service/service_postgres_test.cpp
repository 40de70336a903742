#include "reports/postgresconnection.h"
#include "reports/reportqueries.h"
#include "storequestions.h"
#include "support/postgresserver.h"
#include "support/registeredtest.h"

#include <set>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

/// What several services, and a server that comes and goes, make of a shared data base.
class ServicePostgresTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void severalStartAtOnceAndSeeTheSame()
    {
        const QString database = server.database();
        std::vector<std::future<Store>> opening;
        for (int i = 0; i < 4; ++i) {
            opening.push_back(
                std::async(std::launch::async, [&] { return openStore(storeOptions(database)); }));
        }
        std::vector<Store> stores;
        for (auto &each : opening) {
            stores.push_back(each.get());
        }
        // One device is one user, whoever is asked; one report is stored once.
        std::set<qint64> users;
        std::multiset<ReportStore::Outcome> outcomes;
        for (int round = 0; round < 20; ++round) {
            std::vector<std::future<qint64>> ids;
            std::vector<std::future<ReportStore::Outcome>> put;
            for (const Store &store : stores) {
                ids.push_back(std::async(std::launch::async, [&store, round] {
                    return userOf(store, QString::number(round)).id;
                }));
                put.push_back(std::async(std::launch::async, [&store, round] {
                    return velometer::put(store, report(7, 1, round));
                }));
            }
            for (auto &each : ids) {
                users.insert(each.get());
            }
            for (auto &each : put) {
                outcomes.insert(each.get());
            }
        }
        QCOMPARE(users.size(), 20U);
        QVERIFY(!users.contains(0));
        QCOMPARE(outcomes.count(ReportStore::Outcome::Stored), 20U);
        QCOMPARE(outcomes.count(ReportStore::Outcome::Repeated), 60U);
        for (const Store &store : stores) {
            QCOMPARE(testsOf(store, 7).size(), 20);
        }
        QCOMPARE(put(stores[0], report(7, 2, 100)), ReportStore::Outcome::Stored);
        QCOMPARE(testsOf(stores[1], 7).size(), 21);
        QVERIFY(answer<qint64>([&](auto done) { stores[2]->deleteUser(7, done); }) >= 21);
        QCOMPARE(testsOf(stores[3], 7).size(), 0);
        QCOMPARE(put(stores[3], report(7, 3, 100)), ReportStore::Outcome::Deleted);
    }

    void statisticsMissNobodyWhoIsStillWriting()
    {
        const QString database = server.database();
        const Store store = openStore(storeOptions(database));
        const auto measured = [](int number) {
            Report each = report(1 + number % 3, 1, 946'684'800'000 + number);
            each.connectionType = u"WlanMode"_s;
            each.rttAvg = 1'000'000;
            return each;
        };
        PostgresConnection slow;
        QVERIFY(slow.open(database) && slow.beginWriting());
        QCOMPARE(ReportQueries::insert(slow, measured(0)), ReportStore::Outcome::Stored);
        for (int i = 1; i < 10; ++i) {
            if (i % 3 != 0) { // the slow one has that user
                put(store, measured(i));
            }
        }
        auto rows = std::async(std::launch::async, [&] {
            return answer<Statistics>(
                       [&](auto done) { store->statistics(StatisticsBy::Type, done); })
                .rows;
        });
        QCOMPARE(rows.wait_for(100ms), std::future_status::timeout);
        for (int i = 3; i < 12; i += 3) {
            QCOMPARE(ReportQueries::insert(slow, measured(i)), ReportStore::Outcome::Stored);
        }
        QVERIFY(slow.commit());
        const auto found = rows.get();
        QCOMPARE(found.size(), 1);
        QCOMPARE(found[0].rtt.value_or(Statistics::Figure()).count, 10);
    }

    void comesBackWithItsServer()
    {
        const Store store = openStore(storeOptions(server.database()));
        QCOMPARE(put(store, report(5, 1, 1)), ReportStore::Outcome::Stored);
        QCOMPARE(testsOf(store, 5).size(), 1);
        server.stop();
        std::promise<ReportStore::Outcome> promise;
        store->storeReport(report(5, 1, 2),
                           [&](ReportStore::Outcome outcome) { promise.set_value(outcome); });
        auto waiting = promise.get_future();
        QCOMPARE(waiting.wait_for(200ms), std::future_status::timeout);
        const auto unread =
            result<std::optional<Access>>([&](auto done) { store->accessOfUser(5, done); });
        QVERIFY(!unread);
        server.start();
        QCOMPARE(waiting.get(), ReportStore::Outcome::Stored);
        QTRY_COMPARE(testsOf(store, 5).size(), 2);
        const auto health = result<QString>([&](auto done) { store->ping(done); });
        QCOMPARE(health, QString());
    }

    void whatItCannotUseItSays_data()
    {
        const Rows<QString, QString> row("change", "reason");
        row("a newer version's", "UPDATE schema_version SET version = 999", "newer version");
        row("another program's", "DROP TABLE schema_version", "cannot be brought");
        row("nobody there", {}, "No such file");
    }
    void whatItCannotUseItSays()
    {
        const auto [change, reason] = currentRow<QString, QString>();
        QString database = server.database();
        if (change.isEmpty()) {
            database = u"postgresql://me:secret@/x?host=/nowhere"_s;
        } else {
            openStore(storeOptions(database));
            PostgresConnection connection;
            QVERIFY(connection.open(database) && connection.execute(change));
        }
        QString error;
        QVERIFY(!SqlReportStore::open(storeOptions(database), &error));
        QVERIFY2(error.contains(reason) && !error.contains(u"secret"_s), qUtf8Printable(error));
    }

private:
    PostgresServer server;
};

} // namespace velometer

VELOMETER_TEST(ServicePostgresTest)
#include "service_postgres_test.moc"
