#include "reports/postgresconnection.h"
#include "reports/shownfigures.h"
#include "reports/sqliteconnection.h"
#include "storequestions.h"
#include "support/postgresserver.h"
#include "support/registeredtest.h"

#include <QTemporaryDir>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

template <typename Value>
Value parsed(const std::string &query)
{
    return std::get<Value>(Value::parse(UrlQuery::parse(query).value()));
}

} // namespace

/// What users, reports and tracks are kept in, whichever data base it is.
class ServiceStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        const Rows<bool> row("isPostgres");
        row("sqlite", false);
        row("postgresql", true);
    }
    void init()
    {
        QFETCH_GLOBAL(const bool, isPostgres);
        if (isPostgres) {
            if (!postgres) {
                postgres = std::make_unique<PostgresServer>();
            }
            database = postgres->database();
            auto connection = std::make_unique<PostgresConnection>();
            QVERIFY(connection->open(database));
            beside = std::move(connection);
        } else {
            directory = std::make_unique<QTemporaryDir>();
            database = directory->filePath(u"r.db"_s);
            auto connection = std::make_unique<SqliteConnection>();
            QVERIFY(connection->open(database));
            beside = std::move(connection);
        }
    }
    void cleanup() { beside.reset(); }

    void knowsWhoeverSentAReportOrAskedForAnId()
    {
        const Store store = open();
        put(store, report(5, 1, 20));
        for (const auto &[user, state] : {std::pair{qint64{5}, Access::State::Granted},
                                          {userOf(store, u"x"_s).id, Access::State::Granted},
                                          {6, Access::State::Unknown}}) {
            const auto access =
                answer<Access>([&, id = user](auto done) { store->accessOfUser(id, done); });
            QCOMPARE(access.state, state);
        }
    }

    void showsNothingThatNoNetworkGives()
    {
        for (const bool beyond : {false, true}) {
            Report claimed = report(5, 1, 20);
            claimed.verified = true;
            claimed.download.avg = claimed.upload.avg = ShownFigures::maxRate + beyond;
            claimed.rttAvg = ShownFigures::maxResponse + beyond;
            claimed.accuracy = ShownFigures::maxAccuracy + beyond;
            const ShownFigures shown = ShownFigures::of(claimed);
            QCOMPARE(shown.download.has_value(), !beyond);
            QCOMPARE(shown.upload.has_value(), !beyond);
            QCOMPARE(shown.rtt.has_value(), !beyond);
            QCOMPARE(shown.accuracy.has_value(), !beyond);
        }
    }

    void believesWhatItServed_data()
    {
        const Rows<QString, int> row("change", "verified");
        row("as served", "UPDATE streams SET ended = ended", 1);
        row("no download", "DELETE FROM streams WHERE direction = 1", 0);
        row("no upload", "DELETE FROM streams WHERE direction = 2", 0);
        row("another test's", "UPDATE streams SET testid = 4", 0);
        row("another series'", "UPDATE streams SET seriesid = 4", 0);
        row("another user's", "UPDATE streams SET userid = 4", 0);
        row("too short", "UPDATE streams SET lasted_ms = 499 WHERE direction = 1", 0);
        row("half the rate", "UPDATE streams SET avg = avg / 2 WHERE direction = 1", 1);
        row("less than half", "UPDATE streams SET avg = avg / 2 - 1 WHERE direction = 1", -1);
        row("other minimum", "UPDATE streams SET min = 0 WHERE direction = 2", -1);
        row("other average", "UPDATE streams SET avg = avg + 1 WHERE direction = 2", -1);
        row("other maximum", "UPDATE streams SET max = 0 WHERE direction = 2", -1);
    }
    void believesWhatItServed()
    {
        QFETCH(const QString, change);
        QFETCH(const int, verified);
        const Store store = open();
        Report claimed = report(5, 6, 10);
        claimed.download = {21, 24, 29};
        claimed.upload = {11, 12, 13};
        claimed.downloadIntervals = claimed.uploadIntervals = 5;
        for (const auto direction : {Direction::Download, Direction::Upload}) {
            const bool up = direction == Direction::Upload;
            store->storeStream({.test = claimed.key(),
                                .direction = direction,
                                .ended = 4'102'444'800'000,
                                .bytes = 14,
                                .lasted = 500,
                                .min = up ? 11 : 0,
                                .avg = up ? 12 : 24,
                                .max = up ? 13 : 0,
                                .late = up});
        }
        put(store, report(5, 7, 10)); // behind them in the queue
        sql({u"DELETE FROM reports"_s, change});
        put(store, claimed);
        const auto shown = testsOf(store, 5).constFirst();
        QCOMPARE(shown.verified, verified > 0);
        QCOMPARE(shown.contradicting, verified < 0);
        QCOMPARE(
            testsOf(store, 5).constFirst().serviceLate,
            sql({u"SELECT count(*) FROM streams WHERE direction = 2 AND userid = 5 AND seriesid = 6 AND testid = 0"_s}) ==
                u"1"_s);
        claimed.uploadIntervals = 4;
        claimed.clientTime = 11;
        put(store, claimed);
        QVERIFY(!testsOf(store, 5).constFirst().verified);
    }

    void filtersMeanTheSameInListsAndFigures()
    {
        const Store store = open();
        for (int i = 0; i < 30; ++i) {
            Report each = report(5, i / 10, i / 2 * 86'400'000LL + 946'684'800'000);
            each.testId = i;
            each.testServer = i % 3 == 0 ? u"a"_s : u"b'"_s;
            each.connectionType = i % 5 == 0 ? u"WlanMode"_s : u"LteMode"_s;
            each.location = i % 4 == 0 ? u"Indoor"_s : u"Car"_s;
            each.mcc = u"228"_s;
            each.mnc = i % 2 == 0 ? u"01"_s : u"02"_s;
            each.uploadClient.avg = i % 7 == 0 ? std::optional<qint64>(1) : std::nullopt;
            put(store, each);
        }
        sql({u"UPDATE reports SET download_rate = nullif(id * 7 % 11, 3), upload_rate = "
             "nullif(id % 3, 0), rtt = nullif(id * 5 % 9, 4)"_s});
        for (const auto &[query, condition] :
             {std::pair{"", u"1 = 1"_s},
              {"from=2000-01-03&to=2000-01-05",
               u"client_time >= 946857600000 AND client_time < 947116800000"_s},
              {"from=946857600001&to=947030400000",
               u"client_time > 946857600000 AND client_time <= 947030400000"_s},
              {"type=wlan,5g", u"connection_type = 'WlanMode'"_s},
              {"server=b%27&series=0,2", u"test_server LIKE 'b_' AND seriesid <> 1"_s},
              {"location=Car&operator=228-02", u"location = 'Car' AND mnc = '02'"_s},
              {"verified=1", u"verified = 1"_s},
              {"test=9", u"id = 9"_s},
              {"server=none", u"1 = 0"_s}}) {
            const auto filter = parsed<TestFilter>(query);
            QCOMPARE(parsed<TestFilter>(filter.toQuery().toStdString()), filter);
            for (const auto &scope : {TestScope{5, filter, {}}, TestScope{5, {}, filter}}) {
                const auto summary =
                    answer<Summary>([&](auto done) { store->summary(scope, done); });
                for (const auto &[sort, column] : {std::pair{"time", u"client_time"_s},
                                                   {"download", u"download_rate"_s},
                                                   {"upload", u"upload_rate"_s},
                                                   {"rtt", u"rtt"_s},
                                                   {"type", u"type"_s},
                                                   {"server", u"test_server"_s}}) {
                    for (const QString &direction : {u"asc"_s, u"desc"_s}) {
                        std::string next;
                        QStringList walk;
                        do {
                            const auto order =
                                parsed<TestOrder>("limit=4&sort=" + std::string(sort) + "&order=" +
                                                  direction.toStdString() + "&after=" + next);
                            const auto page = answer<TestPage>(
                                [&](auto done) { store->tests(scope, order, done); });
                            QCOMPARE(page.count, summary.tests);
                            for (const TestRow &row : page.rows) {
                                walk += QString::number(row.id);
                            }
                            next = page.next.toStdString();
                        } while (!next.empty());
                        const QString all =
                            u"SELECT id FROM reports WHERE %1 ORDER BY %2 IS NULL, %2 %3, id %3"_s;
                        QCOMPARE(walk.join(u','), sql({all.arg(condition, column, direction)}));
                        QCOMPARE(walk.size(), summary.tests);
                    }
                }
            }
        }
    }

    /// @p points in a cell of their own, heard at -100 dBm and up.
    static TrackPart heard(const QString &id, int points)
    {
        TrackPart part;
        part.track.id = id;
        for (int i = 0; i < points; ++i) {
            TrackPoint point;
            point.time = 1 + i;
            point.latitude = 47.0;
            point.longitude = 8.5;
            point.mode = u"LteMode"_s;
            point.rsrp = -100 + i;
            part.points += point;
        }
        return part;
    }

    void publishesTheSignalThatTracksOfSeveralUsersHeard()
    {
        Store store = open();
        const auto take = [&](qint64 user, const TrackPart &part) {
            return answer<ReportStore::TrackTaken>(
                [&](auto done) { store->takeTrack(user, part, done); });
        };
        const auto cells = [&] {
            return answer<Statistics>(
                       [&](auto done) { store->statistics(StatisticsBy::Cell, done); })
                .rows;
        };
        QCOMPARE(take(1, heard(u"a"_s, 4)).state,
                 ReportStore::TrackState::Deleted); // not known yet
        for (int user = 1; user <= 3; ++user) {
            put(store, report(user, 1, 10));
            QCOMPARE(take(user, heard(u"a"_s, 4)).points, 4);
            // Again, as after an answer that was lost: nothing counts twice.
            QCOMPARE(take(user, heard(u"a"_s, 4)).points, 4);
        }
        const auto rows = cells();
        QCOMPARE(rows.size(), 2); // all types, and LTE
        QVERIFY(rows[0].rsrp && !rows[0].download);
        QCOMPARE(rows[0].rsrp->count, 12);
        QCOMPARE(rows[0].rsrp->median, -98);
        QCOMPARE(rows[0].rsrp->p90, -97);

        // Long ones come back in their parts, the greatest number of tracks is kept, and all of it
        // goes with the user.
        TrackPart more = heard(u"a"_s, 6);
        QCOMPARE(take(1, more).points, 6);
        QList<TrackPart> part =
            answer<QList<TrackPart>>([&](auto done) { store->trackPart(1, u"a"_s, 0, done); });
        QVERIFY(part.size() == 1 && part[0].points == more.points.mid(0, 4));
        part = answer<QList<TrackPart>>([&](auto done) { store->trackPart(1, u"a"_s, 4, done); });
        QVERIFY(part.size() == 1 && part[0].points == more.points.mid(4));
        for (qint64 i = 1; i < ReportStore::maxTracks; ++i) {
            QCOMPARE(take(1, heard(QString::number(i), 1)).points, 1);
        }
        QCOMPARE(take(1, heard(u"b"_s, 1)).state, ReportStore::TrackState::Full);
        QCOMPARE(take(1, more).points, 6);
        QVERIFY(answer<qint64>([&](auto done) { store->deleteUser(1, done); }) > 0);
        QCOMPARE(take(1, more).state, ReportStore::TrackState::Deleted);
        store.reset();
        QCOMPARE(sql({u"SELECT (SELECT count(*) FROM tracks) || ' ' || (SELECT count(*) FROM "
                      "trackparts) || ' ' || (SELECT sum(points) FROM trackcells)"_s}),
                 u"2 2 8"_s);
    }

    void whatIsOldGoes()
    {
        constexpr qint64 day = 24 * 3'600'000;
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        Store store = open();
        for (int age = 0; age < 60; ++age) {
            Report each = report(1 + age % 2, 1, age);
            each.serverTime = now - age * day + 1000;
            put(store, each);
        }
        QCOMPARE(testsOf(store, 1).size(), 30);
        store.reset();
        auto options = storeOptions(database);
        options.reportDays = 40;
        options.documentDays = 7;
        store = openStore(options);
        const auto left = [&] {
            return sql({u"SELECT count(*) || ' ' || sum(CASE WHEN document = '' THEN 0 ELSE 1 END) "
                        "|| ' ' || max(client_time) FROM reports"_s});
        };
        QTRY_COMPARE(left(), u"41 8 40"_s);
        QCOMPARE(testsOf(store, 1).size(), 21);
    }

    void keepsNoDevicesNumber()
    {
        const QString device = u"490154203237518"_s;
        Store store = open();
        const qint64 user = userOf(store, device).id;
        Report named = report(user, 1, 1);
        named.document = u"<UUID>%1</UUID> GET ?UUID=%1&x"_s.arg(device);
        put(store, named);
        QCOMPARE(userOf(store, device).id, user);
        QCOMPARE(sql({u"SELECT document || ' ' || length(uuid) FROM reports JOIN users ON users.id "
                      "= userid"_s}),
                 u"<UUID></UUID> GET ?UUID=&x 66"_s);
        auto foreign = storeOptions(database);
        foreign.keyFile += u".other"_s;
        store.reset();
        QString error;
        QVERIFY(!SqlReportStore::open(foreign, &error));
        QVERIFY2(error.contains(u"key.other is missing"_s), qUtf8Printable(error));
    }

    void publishesFiguresOfVerifiedTestsOfSeveralUsers()
    {
        Store store = open();
        // Ten tests of three users over WLAN, nine over LTE, eleven of two users over 5G; then as
        // many that claim what nobody served.
        for (int i = 0; i < 60; ++i) {
            const int kind = i % 30 < 10 ? 0 : i % 30 < 19 ? 1 : 2;
            Report each = report(1 + i % (kind == 2 ? 2 : 3), 1, 946'684'800'000 + i);
            each.connectionType = QStringList{u"WlanMode"_s, u"LteMode"_s, u"NrMode"_s}.at(kind);
            each.testServer = i % 30 < 15 ? u"a.example"_s : u"<b>"_s;
            each.rttAvg = 1'000'000 * (1 + i);
            each.uploadRtt = each.rttAvg;
            each.download.avg = i < 30 ? std::nullopt : std::optional<qint64>(5);
            put(store, each);
        }
        const auto near = [](qint64 ns) {
            return QString::number(std::round(static_cast<double>(ns) / 1e6));
        };
        for (const auto &[by, expected] :
             {std::pair{StatisticsBy::Type, u"wlan all 10 2 6 9"_s},
              {StatisticsBy::Server, u"a.example all 15 2 8 14|a.example wlan 10 2 6 9"_s},
              {StatisticsBy::Month, u"2000-01 all 30 4 16 27|2000-01 wlan 10 2 6 9"_s}}) {
            QStringList rows;
            const auto found = answer<Statistics>(
                [&, wanted = by](auto done) { store->statistics(wanted, done); });
            for (const auto &row : found.rows) {
                QVERIFY(row.rtt && !row.download && !row.upload && !row.downloadRtt);
                QVERIFY(row.uploadRtt && row.uploadRtt->median == row.rtt->median);
                rows += QStringList{row.key,
                                    row.type ? ConnectionClasses::key(*row.type) : u"all"_s,
                                    QString::number(row.rtt->count),
                                    near(row.rtt->p10),
                                    near(row.rtt->median),
                                    near(row.rtt->p90)}
                            .join(u' ');
            }
            QCOMPARE(rows.join(u'|'), expected);
        }
        // They are kept beside the reports: whoever comes next reads what is new alone.
        const auto types = [&] {
            return answer<Statistics>(
                       [&](auto done) { store->statistics(StatisticsBy::Type, done); })
                .rows;
        };
        store.reset();
        sql({u"UPDATE reports SET rtt = 1"_s});
        store = open();
        QCOMPARE(types().value(0).rtt.value_or(Statistics::Figure()).count, 10);
        QVERIFY(types()[0].rtt->median > 5'000'000);
        store.reset();
        store = open();
        for (int i = 0; i < 2; ++i) {
            Report more = report(1, 2, 946'684'800'100 + i);
            more.connectionType = u"WlanMode"_s;
            more.rttAvg = 1'000'000;
            put(store, more);
        }
        QCOMPARE(types()[0].rtt->count, 12);
        // Damaged ones are made anew.
        store.reset();
        sql({u"UPDATE figures SET counts = substr(counts, 1, 9)"_s});
        store = open();
        QCOMPARE(types()[0].rtt->count, 12);
        QVERIFY(types()[0].rtt->median < 100);
    }

    void finishesItsQueueBeforeItClosesAndFailsOneReportAlone()
    {
        Store store = open();
        QFETCH_GLOBAL(const bool, isPostgres);
        sql({isPostgres
                 ? u"ALTER TABLE reports ADD CHECK(client_time <> 30)"_s
                 : u"CREATE TRIGGER picky BEFORE INSERT ON reports WHEN NEW.client_time = 30 "
                   "BEGIN SELECT RAISE(ABORT, 'no'); END"_s});
        std::atomic<int> stored = 0;
        for (int i = 0; i < 300; ++i) {
            store->storeReport(report(1, 1, i), [&stored](ReportStore::Outcome outcome) {
                stored += outcome == ReportStore::Outcome::Stored ? 1 : 0;
            });
        }
        store.reset();
        QCOMPARE(stored, 299);
        QCOMPARE(sql({u"SELECT count(*) FROM reports"_s}), u"299"_s);
    }

private:
    Store open() const { return openStore(storeOptions(database)); }

    /// What the rows of the last of @p statements have in their first column; none should fail.
    QString sql(const QStringList &statements)
    {
        QStringList column;
        for (const QString &statement : statements) {
            auto found = beside->select(statement);
            if (!found) {
                qWarning("%s: %s", qUtf8Printable(statement), qUtf8Printable(beside->problem()));
            }
            for (column.clear(); found && found->next();) {
                column += found->value(0).toString();
            }
        }
        return column.join(u',');
    }

    std::unique_ptr<PostgresServer> postgres;
    std::unique_ptr<QTemporaryDir> directory;
    QString database;
    std::unique_ptr<SqlConnection> beside;
};

} // namespace velometer

VELOMETER_TEST(ServiceStoreTest)
#include "service_store_test.moc"
