#include "reports/postgresdatabase.h"

#include "reports/postgresconnection.h"
#include "reports/postgresschema.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

bool PostgresDatabase::isAddress(const QString &name)
{
    return name.startsWith("postgresql://"_L1) || name.startsWith("postgres://"_L1);
}

PostgresDatabase::PostgresDatabase(const QString &databaseAddress)
    : address(databaseAddress)
{}

QString PostgresDatabase::shownName() const
{
    return QUrl(address).toDisplayString(QUrl::RemovePassword | QUrl::RemoveQuery);
}

QString PostgresDatabase::prepare()
{
    PostgresConnection connection;
    return connection.open(address) ? PostgresSchema::bringForward(connection)
                                    : connection.problem();
}

std::unique_ptr<SqlConnection> PostgresDatabase::connect(bool /*writes*/, QString *problem)
{
    auto connection = std::make_unique<PostgresConnection>();
    if (connection->open(address)) {
        return connection;
    }
    *problem = connection->problem();
    return nullptr;
}

bool PostgresDatabase::isCurrent(SqlConnection &connection) const
{
    return PostgresSchema::isCurrent(connection);
}

bool PostgresDatabase::tryWriting(SqlConnection &connection) const
{
    return connection.execute(u"UPDATE schema_version SET version = version"_s);
}

} // namespace velometer
