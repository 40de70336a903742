#pragma once

#include "reports/sqlreportstore.h"

#include <QTemporaryDir>

#include <future>

namespace velometer {

using Store = std::unique_ptr<SqlReportStore>;

/// Waits for what one call of the store gives its callback.
template <typename Value, typename Call>
Value result(Call call)
{
    std::promise<Value> promise;
    call([&promise](Value value) { promise.set_value(std::move(value)); });
    return promise.get_future().get();
}

template <typename Value, typename Call>
Value answer(Call call)
{
    return result<std::optional<Value>>(call).value();
}

/// The data bases of a server share one key.
inline StoreOptions storeOptions(const QString &database)
{
    static const QTemporaryDir keys;
    return {.database = database, .keyFile = keys.filePath(QStringLiteral("key"))};
}

inline Store openStore(const StoreOptions &options)
{
    QString error;
    Store store = SqlReportStore::open(options, &error);
    if (!store) {
        qFatal("%s", qUtf8Printable(error));
    }
    return store;
}

inline Report report(qint64 user, qint64 series, qint64 time)
{
    Report report;
    report.userId = user;
    report.seriesId = series;
    report.clientTime = time;
    report.document = QStringLiteral("<a/>");
    return report;
}

inline ReportStore::User userOf(const Store &store, const QString &uuid)
{
    using User = std::optional<ReportStore::User>;
    return result<User>([&](auto done) { store->findOrCreateUser(uuid, done); })
        .value_or(ReportStore::User{});
}

inline ReportStore::Outcome put(const Store &store, const Report &report)
{
    return result<ReportStore::Outcome>([&](auto done) { store->storeReport(report, done); });
}

/// The newest first.
inline QList<TestRow> testsOf(const Store &store, qint64 user)
{
    const TestScope scope{.userId = user, .filter = {}, .bounds = {}};
    return answer<TestPage>([&](auto done) { store->tests(scope, {}, done); }).rows;
}

} // namespace velometer
