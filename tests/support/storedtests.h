#pragma once

#include "db/databasemanager.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <QVariant>

#include <utility>

namespace velometer {

/// A store of its own, open as gDB, that takes rows as they are: also such as no test would leave.
class StoredTests
{
public:
    StoredTests()
    {
        DatabaseManager::database_path = directory.path();
        gDB->openDB();
    }
    ~StoredTests() { gDB->deleteDB(); }
    Q_DISABLE_COPY_MOVE(StoredTests)

    struct Row
    {
        qlonglong id = 1;
        qlonglong series = 12;
        qlonglong test = 4;
        QVariant timestamp = 1'700'000'000'000.0;
        double download = 38'412'000;
        double upload = 14'980'200;
        qlonglong rtt = 31;
        QString type = QStringLiteral("Mobile(LTE)");
        QString location = QStringLiteral("Indoor");
        QString server = QStringLiteral("speed.example");
    };

    void add(const Row &row)
    {
        QSqlQuery query(QSqlDatabase::database());
        query.prepare(QStringLiteral(
            "INSERT INTO testresults(id,seriesid,testid,timestamp,downloadSpeed,uploadSpeed,rtt,"
            "connectionType,location,server) VALUES(?,?,?,?,?,?,?,?,?,?)"));
        for (const QVariant &value :
             {QVariant(row.id), QVariant(row.series), QVariant(row.test), row.timestamp,
              QVariant(row.download), QVariant(row.upload), QVariant(row.rtt), QVariant(row.type),
              QVariant(row.location), QVariant(row.server)}) {
            query.addBindValue(value);
        }
        QVERIFY(query.exec());
    }

    void addDetail(qlonglong id, const QString &key, const QVariant &value)
    {
        const int type = value.typeId();
        const auto [column, letter] = type == QMetaType::Double    ? std::pair("double", "f")
                                      : type == QMetaType::QString ? std::pair("string", "s")
                                                                   : std::pair("long", "l");
        QSqlQuery query(QSqlDatabase::database());
        query.prepare(QStringLiteral("INSERT OR REPLACE INTO testdetails(id,key,type,%1) "
                                     "VALUES(?,?,?,?)")
                          .arg(QLatin1StringView(column)));
        for (const QVariant &each :
             {QVariant(id), QVariant(key), QVariant(QLatin1StringView(letter)), value}) {
            query.addBindValue(each);
        }
        QVERIFY(query.exec());
    }

    /// @p list: numbers, separated by commas.
    void addIntervals(qlonglong id, int phase, const QString &list)
    {
        QVERIFY(QSqlQuery(QSqlDatabase::database())
                    .exec(QStringLiteral("INSERT INTO testintervals VALUES(%1,%2,'%3')")
                              .arg(QString::number(id), QString::number(phase), list)));
    }

private:
    QTemporaryDir directory;
};

} // namespace velometer
