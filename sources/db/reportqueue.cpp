#include "db/reportqueue.h"

#include "data/reportdocument.h"
#include "db/databasestatements.h"
#include "db/transaction.h"
#include "utils/utils.h"

#include <QSqlQuery>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace velometer {

using namespace DatabaseStatements;

std::unique_ptr<XMLData> ReportQueue::next(qint64 lastId)
{
    QSqlQuery query(db);
    if (!query.exec(QString(SELECT_NEXTUNSENTXMLFILE).arg(lastId))) {
        Utils::addLogEntry(query.lastError().databaseText());
    }
    if (!query.next()) {
        return nullptr;
    }
    auto data = std::make_unique<XMLData>();
    data->identification = query.value(0).toLongLong();
    data->numberofretries = query.value(1).toInt();
    data->xml = ReportDocument::withoutUmlauts(query.value(2).toString());
    return data;
}

bool ReportQueue::remove(qint64 id, bool delivered)
{
    // Row ids are used again: a test that keeps one must not take the next report for its own.
    Transaction transaction(db);
    if (!transaction.isOpen()) {
        return false;
    }
    for (const auto &statement : {UPDATE_DELIVERED, DELETE_REPORTQUEUEID, DELETE_UNSENTXMLFILE}) {
        if (statement == UPDATE_DELIVERED && !delivered) {
            continue;
        }
        QSqlQuery query(db);
        if (!query.exec(QString(statement).arg(id))) {
            logSqlError(u"ERROR: %1 %2"_s, query.lastError());
            return false;
        }
    }
    return transaction.commit();
}

std::optional<qint64> ReportQueue::insertOrUpdate(const XMLData &report)
{
    const QString retries = QString::number(report.numberofretries);
    const QString statement =
        report.identification
            ? QString(UPDATE_UNSENTXMLFILE).arg(retries, QString::number(*report.identification))
            : QString(INSERT_UNSENTXMLFILE).arg(retries, report.xml);
    QSqlQuery query(db);
    if (!query.exec(statement)) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
        return std::nullopt;
    }
    return report.identification ? report.identification
                                 : std::optional(query.lastInsertId().toLongLong());
}

int ReportQueue::count()
{
    QSqlQuery query(db);
    query.exec(COUNT_UNSENTXMLFILES);
    return query.next() ? query.value(0).toInt() : 0;
}

} // namespace velometer
