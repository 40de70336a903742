#pragma once

#include <QString>
#include <QStringList>

#include <span>

/// What every store keeps of its users, table by table: for what copies a store or a user whole.
namespace velometer::StoreTables {

struct Table
{
    QString name;
    QString user;        ///< the column with the user's id
    QStringList key;     ///< columns that name a user's row
    QStringList columns; ///< all others that both data bases have
};

/// What others refer to comes first.
std::span<const Table> all();

} // namespace velometer::StoreTables
