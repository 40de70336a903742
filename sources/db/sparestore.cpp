#include "db/sparestore.h"

#include "db/databasestatements.h"
#include "db/reportqueue.h"
#include "db/teststore.h"
#include "utils/utils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

using namespace DatabaseStatements;

namespace {

/// A folder that holds more has been filled by somebody else.
constexpr int maxSpares = 1000;

/// One spare file, open while this lives.
struct Spare
{
    explicit Spare(const QString &file)
    {
        db.setDatabaseName(file);
        db.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=0"_s);
        db.open();
    }
    ~Spare()
    {
        const QString connection = db.connectionName();
        db = {};
        QSqlDatabase::removeDatabase(connection);
    }
    Q_DISABLE_COPY_MOVE(Spare)

    bool makeTables()
    {
        const auto made = [this](QLatin1StringView statement) {
            return QSqlQuery(db).exec(statement);
        };
        return std::ranges::all_of(std::array{CREATE_TABLE_TESTRESULTS, CREATE_TABLE_TESTDETAILS,
                                              CREATE_TABLE_TESTINTERVALS, CREATE_TABLE_XMLFILES},
                                   made);
    }

    QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"spare"_s);
    ReportQueue reports{db};
    TestStore tests{db, reports};
};

/// Of finished ones; one that is being written has another ending.
QStringList files(const QString &store)
{
    const QFileInfo info(store);
    QStringList found;
    const QStringList names = info.dir().entryList({info.fileName() + ".spare-*"_L1}, QDir::Files,
                                                   QDir::Time | QDir::Reversed);
    for (const QString &name : names.mid(0, maxSpares)) {
        if (!name.endsWith("-journal"_L1) && !name.endsWith(".part"_L1)) {
            found.append(info.dir().filePath(name));
        }
    }
    return found;
}

} // namespace

bool SpareStore::keep(const QString &store, const FinishedTest &test, XMLData report)
{
    const QString file = u"%1.spare-%2"_s.arg(store).arg(Utils::getTimeInNs());
    const QString part = file + ".part"_L1;
    bool kept = false;
    {
        Spare spare(part);
        QFile::setPermissions(part, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        kept = spare.makeTables() && spare.tests.store(test, &report) > 0;
    }
    kept = kept && QFile::rename(part, file);
    if (!kept) {
        QFile::remove(part);
    }
    Utils::addLogEntry(kept ? u"Test kept in %1"_s.arg(file) : u"Unable to keep the test!"_s);
    return kept;
}

void SpareStore::handOver(const QString &store,
                          const std::function<bool(const FinishedTest &, XMLData *)> &take)
{
    for (const QString &file : files(store)) {
        bool taken = false;
        {
            Spare spare(file);
            const auto rows = spare.tests.rows();
            if (rows.empty()) {
                continue;
            }
            const auto report = spare.reports.next(0);
            if (report) {
                report->identification.reset();
            }
            taken = take(spare.tests.test(*rows.front()), report.get());
        }
        if (!taken) {
            return;
        }
        QFile::remove(file);
        Utils::addLogEntry(u"Test taken in from %1"_s.arg(file));
    }
}

void SpareStore::remove(const QString &store)
{
    for (const QString &file : files(store)) {
        QFile::remove(file);
    }
}

} // namespace velometer
