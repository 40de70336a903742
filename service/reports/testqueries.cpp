#include "reports/testqueries.h"

#include "reports/nullable.h"

#include <algorithm>
#include <array>

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
            add(u"verified"_s, {});
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

struct Sorting
{
    TestOrder::By by;
    QLatin1StringView column;
    bool canBeNull;
    bool isText;
};

constexpr std::array sortings{
    Sorting{TestOrder::By::Time, "client_time"_L1, false, false},
    Sorting{TestOrder::By::Download, "download_rate"_L1, true, false},
    Sorting{TestOrder::By::Upload, "upload_rate"_L1, true, false},
    Sorting{TestOrder::By::Rtt, "rtt"_L1, true, false},
    Sorting{TestOrder::By::Type, "type"_L1, false, false},
    Sorting{TestOrder::By::Server, "test_server"_L1, false, true},
};

/// The rows beyond @p cursor.
void addCursor(ConditionBuilder &builder, const Sorting &sorting, bool ascending,
               const Cursor &cursor)
{
    const QString column = sorting.column;
    const QString beyond = ascending ? u">"_s : u"<"_s;
    if (!cursor.value) {
        builder.add(u"%1 IS NULL AND id %2 ?"_s.arg(column, beyond), {cursor.id});
        return;
    }
    const QVariant value =
        sorting.isText ? QVariant(*cursor.value) : QVariant(cursor.value->toLongLong());
    const QString rest = u"(%1, id) %2 (?, ?)"_s.arg(column, beyond);
    builder.add(sorting.canBeNull ? u"(%1 OR %2 IS NULL)"_s.arg(rest, column) : rest,
                {value, cursor.id});
}

/// Columns of a row, as read() takes them.
constexpr auto rowColumns =
    "id, testid, seriesid, client_time, test_server, type, connection_type, network, operator, "
    "location, download_rate, upload_rate, rtt, latitude, longitude, accuracy, verified, "
    "service_late, note"_L1;
constexpr int rowColumnCount = 19;

TestRow readRow(const QSqlQuery &query)
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
    row.verified = number(16) != 0;
    row.serviceLate = number(17) != 0;
    row.note = text(18);
    return row;
}

std::optional<QString> sortedValue(const TestRow &row, TestOrder::By by)
{
    const auto text = [](const std::optional<qint64> &number) {
        return number ? std::optional(QString::number(*number)) : std::nullopt;
    };
    switch (by) {
    case TestOrder::By::Time: return QString::number(row.time);
    case TestOrder::By::Download: return text(row.download);
    case TestOrder::By::Upload: return text(row.upload);
    case TestOrder::By::Rtt: return text(row.rtt);
    case TestOrder::By::Type: return QString::number(static_cast<int>(row.type));
    case TestOrder::By::Server: break;
    }
    return row.server;
}

/// The rows of @p condition with their documents and streams.
std::optional<QList<ReportStore::StoredTest>> storedTests(SqliteConnection &connection,
                                                          qint64 userId, const Condition &condition,
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

std::optional<TestPage> page(SqliteConnection &connection, const TestScope &scope,
                             const TestOrder &order)
{
    const auto &sorting = *std::ranges::find(sortings, order.by, &Sorting::by);
    ConditionBuilder builder(scope.userId);
    builder.add(scope.filter);
    builder.add(scope.bounds);
    if (order.after) {
        addCursor(builder, sorting, order.ascending, *order.after);
    }
    const QString direction = order.ascending ? u"ASC"_s : u"DESC"_s;
    const QString sorted =
        (sorting.canBeNull ? u" ORDER BY %1 IS NULL, %1 %2, id %2"_s : u" ORDER BY %1 %2, id %2"_s)
            .arg(sorting.column, direction);
    // The index has all that is compared; rows are read of those alone that are shown.
    auto query = connection.select(
        u"SELECT "_s + rowColumns +
            u" FROM reports WHERE id IN (SELECT id FROM reports INDEXED BY reports_figures WHERE "_s +
            builder.built.text + sorted + u" LIMIT ?)"_s + sorted,
        builder.built.values + QVariantList{order.limit + 1});
    if (!query) {
        return std::nullopt;
    }
    TestPage page;
    while (query->next()) {
        if (page.rows.size() == order.limit) {
            const TestRow &last = page.rows.constLast();
            page.next = Cursor{.value = sortedValue(last, order.by), .id = last.id}.toText();
            break;
        }
        page.rows += readRow(*query);
    }
    return page;
}

bool fill(SqliteConnection &connection, qint64 userId, TestTable &table)
{
    // The whole is read from the index alone; a few new ones are found by their ids.
    const bool whole = table.lastId() == 0;
    auto query = connection.select(
        u"SELECT id, client_time, seriesid, download_rate, upload_rate, rtt, bytes, latitude, "
        "longitude, accuracy, type, verified, test_server, location, operator, network "
        "FROM reports INDEXED BY %1 WHERE userid = ? AND id > ? %2 LIMIT ?"_s.arg(
            whole ? u"reports_figures"_s : u"reports_by_user"_s,
            whole ? u"ORDER BY client_time DESC"_s : QString()),
        {userId, table.lastId(), TestTable::maxTests});
    if (!query) {
        return false;
    }
    while (query->next()) {
        const auto number = [&](int column) { return query->value(column).toLongLong(); };
        const auto text = [&](int column) { return query->value(column).toString(); };
        TestTable::Row row;
        row.id = number(0);
        row.time = number(1);
        row.series = number(2);
        row.download = optionalNumber(query->value(3));
        row.upload = optionalNumber(query->value(4));
        row.verified = number(11) != 0;
        row.rtt = row.verified ? optionalNumber(query->value(5)) : std::nullopt;
        row.bytes = number(6);
        row.latitude = optionalReal(query->value(7));
        row.longitude = optionalReal(query->value(8));
        row.accuracy = optionalReal(query->value(9));
        row.type = ConnectionClasses::ofNumber(query->value(10).toInt());
        row.server = text(12);
        row.location = text(13);
        row.operatorCode = text(14);
        row.network = text(15);
        table.add(row);
    }
    return true;
}

std::optional<QList<ReportStore::StoredTest>> test(SqliteConnection &connection,
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

std::optional<ReportStore::Documents> documents(SqliteConnection &connection,
                                                const TestScope &scope, const QString &after)
{
    const auto &byTime = sortings.front();
    ConditionBuilder builder(scope.userId);
    builder.add(scope.filter);
    builder.add(scope.bounds);
    if (const auto cursor = Cursor::parse(after)) {
        addCursor(builder, byTime, false, *cursor);
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

std::optional<StreamRecord> stream(SqliteConnection &connection, const StreamKey &test,
                                   Direction direction)
{
    auto query = connection.select(
        u"SELECT ended, bytes, lasted_ms, min, avg, max, late FROM streams "
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
                        .late = number(6) != 0};
}

} // namespace velometer::TestQueries
