#include "reports/testqueries.h"

#include "reports/nullable.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace velometer::TestQueries {

namespace {

/// Documents that one step of a walk reads: some megabytes at most, and a few milliseconds.
constexpr int documentsAtOnce = 20;

class ConditionBuilder
{
public:
    explicit ConditionBuilder(qint64 userId)
        : built{.text = u"userid = ?"_s, .values = {userId}}
    {}

    void add(const TestFilter &filter)
    {
        if (filter.from) {
            add(u"client_time >= ?"_s, {*filter.from});
        }
        if (filter.to) {
            add(u"client_time < ?"_s, {*filter.to});
        }
        QVariantList types;
        for (const auto type : filter.types) {
            types += static_cast<int>(type);
        }
        addList(u"type"_s, types);
        addList(u"test_server"_s, {filter.servers.cbegin(), filter.servers.cend()});
        addList(u"seriesid"_s, {filter.series.cbegin(), filter.series.cend()});
        addList(u"location"_s, {filter.locations.cbegin(), filter.locations.cend()});
        addList(u"operator"_s, {filter.operators.cbegin(), filter.operators.cend()});
        if (filter.verified) {
            add(u"verified = 1"_s, {});
        }
        if (filter.test) {
            add(u"id = ?"_s, {*filter.test});
        }
    }
    void add(const QString &text, const QVariantList &values)
    {
        built.text += u" AND "_s + text;
        built.values += values;
    }

    Condition built;

private:
    void addList(const QString &column, const QVariantList &values)
    {
        if (!values.isEmpty()) {
            add(column + u" IN (%1)"_s.arg(QStringList(values.size(), u"?"_s).join(u',')), values);
        }
    }
};

/// Columns of a row, as read() takes them.
constexpr auto rowColumns =
    "id, testid, seriesid, client_time, test_server, type, connection_type, network, operator, "
    "location, download_rate, upload_rate, rtt, latitude, longitude, accuracy, verified, "
    "service_late, note"_L1;
constexpr int rowColumnCount = 19;

TestRow readRow(const SqlAnswer &query)
{
    const auto number = [&](int column) { return query.value(column).toLongLong(); };
    const auto text = [&](int column) { return query.value(column).toString(); };
    TestRow row;
    row.id = number(0);
    row.testId = number(1);
    row.seriesId = number(2);
    row.time = number(3);
    row.server = text(4);
    row.type = ConnectionClasses::ofNumber(query.value(5).toInt());
    row.connectionType = text(6);
    row.network = text(7);
    row.operatorCode = text(8);
    row.location = text(9);
    row.download = optionalNumber(query.value(10));
    row.upload = optionalNumber(query.value(11));
    row.rtt = optionalNumber(query.value(12));
    row.latitude = optionalReal(query.value(13));
    row.longitude = optionalReal(query.value(14));
    row.accuracy = optionalReal(query.value(15));
    row.verified = number(16) > 0;
    row.contradicting = number(16) < 0;
    row.serviceLate = number(17) != 0;
    row.note = text(18);
    return row;
}

/// The rows of @p condition with their documents and streams.
std::optional<QList<ReportStore::StoredTest>> storedTests(SqlConnection &connection, qint64 userId,
                                                          const Condition &condition,
                                                          const QString &rest)
{
    auto query = connection.select(u"SELECT "_s + rowColumns + u", document FROM reports WHERE "_s +
                                       condition.text + rest,
                                   condition.values);
    if (!query) {
        return std::nullopt;
    }
    QList<ReportStore::StoredTest> tests;
    while (query->next()) {
        ReportStore::StoredTest test;
        test.row = readRow(*query);
        test.document = query->value(rowColumnCount).toString();
        const StreamKey key{.user = userId, .series = test.row.seriesId, .test = test.row.testId};
        test.download = stream(connection, key, Direction::Download);
        test.upload = stream(connection, key, Direction::Upload);
        tests += test;
    }
    return tests;
}

} // namespace

Condition condition(const TestScope &scope)
{
    ConditionBuilder builder(scope.userId);
    builder.add(scope.filter);
    builder.add(scope.bounds);
    return builder.built;
}

std::optional<QList<TestRow>> rows(SqlConnection &connection, const QList<qint64> &ids)
{
    if (ids.isEmpty()) {
        return QList<TestRow>();
    }
    QStringList texts;
    for (const qint64 id : ids) {
        texts += QString::number(id);
    }
    auto query = connection.select(u"SELECT "_s + rowColumns +
                                   u" FROM reports WHERE id IN (%1)"_s.arg(texts.join(u',')));
    if (!query) {
        return std::nullopt;
    }
    QHash<qint64, TestRow> found;
    while (query->next()) {
        const TestRow row = readRow(*query);
        found.insert(row.id, row);
    }
    QList<TestRow> list;
    for (const qint64 id : ids) {
        if (const auto row = found.constFind(id); row != found.cend()) {
            list += *row;
        }
    }
    return list;
}

bool fill(SqlConnection &connection, qint64 userId, TestTable &table)
{
    // The whole is read from the index alone; a few new ones are found by their ids.
    const bool whole = table.lastId() == 0;
    return connection.forEachRow(
        u"SELECT id, client_time, seriesid, download_rate, upload_rate, rtt, bytes, latitude, "
        "longitude, accuracy, type, verified, test_server, location, operator, network "
        "FROM reports%1 WHERE userid = ? AND id > ? %2 LIMIT ?"_s.arg(
            connection.byIndex(whole ? u"reports_figures"_s : u"reports_by_user"_s),
            whole ? u"ORDER BY client_time DESC"_s : QString()),
        {userId, table.lastId(), TestTable::maxTests}, [&table](const SqlRow &row) {
            table.add({.id = row.number(0),
                       .time = row.number(1),
                       .series = row.number(2),
                       .download = row.optionalNumber(3),
                       .upload = row.optionalNumber(4),
                       .rtt = row.optionalNumber(5),
                       .bytes = row.number(6),
                       .latitude = row.optionalReal(7),
                       .longitude = row.optionalReal(8),
                       .accuracy = row.optionalReal(9),
                       .type = ConnectionClasses::ofNumber(static_cast<int>(row.number(10))),
                       .verified = row.number(11) > 0,
                       .server = row.text(12),
                       .location = row.text(13),
                       .operatorCode = row.text(14),
                       .network = row.text(15)});
        });
}

std::optional<QList<ReportStore::StoredTest>> test(SqlConnection &connection,
                                                   const TestScope &scope, const TestName &name)
{
    ConditionBuilder builder(scope.userId);
    builder.add(scope.filter);
    builder.add(scope.bounds);
    if (name.series == 0) {
        builder.add(u"id = ?"_s, {name.id});
    } else {
        builder.add(u"seriesid = ? AND testid = ?"_s, {name.series, name.test});
    }
    return storedTests(connection, scope.userId, builder.built,
                       u" ORDER BY client_time DESC LIMIT 1"_s);
}

std::optional<ReportStore::Documents> documents(SqlConnection &connection, const TestScope &scope,
                                                const QString &after)
{
    ConditionBuilder builder(scope.userId);
    builder.add(scope.filter);
    builder.add(scope.bounds);
    if (const auto cursor = Cursor::parse(after)) {
        builder.add(u"(client_time, id) < (?, ?)"_s,
                    {cursor->value.value_or(QString()).toLongLong(), cursor->id});
    }
    const QString rest = u" ORDER BY client_time DESC, id DESC LIMIT %1"_s.arg(documentsAtOnce);
    auto tests = storedTests(connection, scope.userId, builder.built, rest);
    if (!tests) {
        return std::nullopt;
    }
    ReportStore::Documents found{.tests = *std::move(tests), .next = {}};
    if (found.tests.size() == documentsAtOnce) {
        const TestRow &last = found.tests.constLast().row;
        found.next = Cursor{.value = QString::number(last.time), .id = last.id}.toText();
    }
    return found;
}

std::optional<StreamRecord> stream(SqlConnection &connection, const StreamKey &test,
                                   Direction direction)
{
    auto query = connection.select(
        u"SELECT ended, bytes, lasted_ms, min, avg, max, late, kernel FROM streams "
        "WHERE userid = ? AND seriesid = ? AND testid = ? AND direction = ?"_s,
        {qlonglong(test.user), qlonglong(test.series), qlonglong(test.test), int(direction)});
    if (!query || !query->next()) {
        return std::nullopt;
    }
    const auto number = [&](int column) { return query->value(column).toLongLong(); };
    return StreamRecord{.test = test,
                        .direction = direction,
                        .ended = number(0),
                        .bytes = number(1),
                        .lasted = number(2),
                        .min = number(3),
                        .avg = number(4),
                        .max = number(5),
                        .kernel = query->value(7).toString(),
                        .late = number(6) != 0};
}

} // namespace velometer::TestQueries
