#include "reports/sqlconnection.h"

namespace velometer {

std::optional<qint64> SqlConnection::number(const QString &statement, const QVariantList &values)
{
    auto answer = select(statement, values);
    return answer && answer->next() && !answer->value(0).isNull()
               ? std::optional(answer->value(0).toLongLong())
               : std::nullopt;
}

} // namespace velometer
