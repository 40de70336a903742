#pragma once

#include "db/databasemanager.h"

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

    QString path() const { return directory.path(); }

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
        insert(QStringLiteral("INSERT INTO testresults(id,seriesid,testid,timestamp,downloadSpeed,"
                              "uploadSpeed,rtt,connectionType,location,server) "
                              "VALUES(?,?,?,?,?,?,?,?,?,?)"),
               {row.id, row.series, row.test, row.timestamp, row.download, row.upload, row.rtt,
                row.type, row.location, row.server});
    }

    void addDetail(qlonglong id, const QString &key, const QVariant &value)
    {
        const int type = value.typeId();
        const auto [column, letter] = type == QMetaType::Double    ? std::pair("double", "f")
                                      : type == QMetaType::QString ? std::pair("string", "s")
                                                                   : std::pair("long", "l");
        insert(QStringLiteral("INSERT OR REPLACE INTO testdetails(id,key,type,%1) VALUES(?,?,?,?)")
                   .arg(QLatin1StringView(column)),
               {id, key, QLatin1StringView(letter), value});
    }

    /// @p list: numbers, separated by commas.
    void addIntervals(qlonglong id, int phase, const QString &list)
    {
        insert(QStringLiteral("INSERT INTO testintervals VALUES(?,?,?)"), {id, phase, list});
    }

private:
    static void insert(const QString &statement, const QVariantList &values)
    {
        QSqlQuery query;
        query.prepare(statement);
        for (const QVariant &value : values) {
            query.addBindValue(value);
        }
        QVERIFY(query.exec());
    }

    QTemporaryDir directory;
};

} // namespace velometer
