#include "main/openstore.h"

#include "reports/postgresdatabase.h"
#include "reports/sqlreportstore.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velometer {

OpenStore::OpenStore(const QString &name, bool writes, QString *problem)
    : database(SqlReportStore::databaseOf(name))
{
    QString reason;
    if (!PostgresDatabase::isAddress(name) && !QFile::exists(name)) {
        reason = u"there is no such file"_s;
    } else {
        connection = database->connect(writes, &reason);
    }
    if (connection && !database->isCurrent(*connection)) {
        reason = u"it is not of this version; start a service of this version on it once"_s;
        connection.reset();
    }
    if (!connection) {
        *problem = u"The database %1 cannot be used: %2."_s.arg(database->shownName(), reason);
    }
}

} // namespace velometer
