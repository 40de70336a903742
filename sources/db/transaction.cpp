#include "db/transaction.h"

#include "utils/utils.h"

#include <QSqlQuery>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// SQLITE_BUSY, whatever stands above its eight bits for the reason.
constexpr int busyCode = 5;
constexpr int codeMask = 0xff;

bool lastOnLock = false;

} // namespace

void logSqlError(const QString &text, const QSqlError &error)
{
    lastOnLock = isLock(error);
    Utils::addLogEntry(text.arg(error.databaseText(), error.driverText()));
}

bool isLock(const QSqlError &error)
{
    return (error.nativeErrorCode().toInt() & codeMask) == busyCode;
}

bool failedOnLock()
{
    return lastOnLock;
}

Transaction::Transaction(QSqlDatabase &connection)
    : db(connection)
    , open(run(u"BEGIN IMMEDIATE"_s))
{}

Transaction::~Transaction()
{
    if (open) {
        run(u"ROLLBACK"_s);
    }
}

bool Transaction::commit()
{
    const bool committed = open && run(u"COMMIT"_s);
    if (committed) {
        open = false;
    }
    return committed;
}

bool Transaction::run(const QString &statement)
{
    QSqlQuery query(db);
    const bool done = query.exec(statement);
    if (!done) {
        logSqlError(u"ERROR: %1 %2"_s, query.lastError());
    }
    return done;
}

} // namespace velometer
