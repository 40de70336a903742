#include "reports/sqlitedatabase.h"

#include "reports/sqliteconnection.h"
#include "reports/sqliteschema.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// A full batch of large reports, and SQLite's journal of it, must fit.
constexpr qint64 minFree = qint64{8} << 20;

} // namespace

SqliteDatabase::SqliteDatabase(const QString &databaseFile, int inheritedLock)
    : file(databaseFile)
    , inherited(inheritedLock)
{}

SqliteDatabase::~SqliteDatabase()
{
    if (lockHeld >= 0) {
        ::close(lockHeld);
    }
}

/// Two services on one file would each take the other's work for a program that holds it. The
/// lock ends with the process, however that ends.
bool SqliteDatabase::lock()
{
    const auto name = QFile::encodeName(file + u".lock"_s);
    struct stat there{};
    struct stat passed{};
    if (inherited >= 0 && ::stat(name.constData(), &there) == 0 &&
        ::fstat(inherited, &passed) == 0 && there.st_dev == passed.st_dev &&
        there.st_ino == passed.st_ino) {
        lockHeld = inherited;
        return true;
    }
    lockHeld = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return lockHeld < 0 || ::flock(lockHeld, LOCK_EX | LOCK_NB) == 0;
}

QString SqliteDatabase::prepare()
{
    SqliteConnection connection;
    if (!connection.open(file)) {
        return connection.problem();
    }
    if (!lock()) {
        return u"another velometer-service uses it"_s;
    }
    // Nobody waits yet, so another program may take its time.
    connection.execute(u"PRAGMA busy_timeout=5000"_s);
    return SqliteSchema::bringForward(connection, file);
}

std::unique_ptr<SqlConnection> SqliteDatabase::connect(bool writes, QString *problem)
{
    auto connection = std::make_unique<SqliteConnection>();
    // What a commit says is on the disk.
    if (connection->open(file) &&
        connection->execute(writes ? u"PRAGMA synchronous=FULL"_s : u"PRAGMA query_only=ON"_s) &&
        connection->execute(u"PRAGMA foreign_keys=ON"_s)) {
        return connection;
    }
    *problem = connection->problem();
    return nullptr;
}

bool SqliteDatabase::isCurrent(SqlConnection &connection) const
{
    return SqliteSchema::isCurrent(connection);
}

std::optional<qint64> SqliteDatabase::freeBytes() const
{
    struct statvfs disk{};
    return ::statvfs(QFile::encodeName(file).constData(), &disk) == 0
               ? std::optional(static_cast<qint64>(disk.f_bavail * disk.f_frsize))
               : std::nullopt;
}

QString SqliteDatabase::shortage() const
{
    return freeBytes().value_or(minFree) < minFree ? u"its disk is full"_s : QString();
}

// A file that can be read may still take nothing, so this writes a page.
bool SqliteDatabase::tryWriting(SqlConnection &connection) const
{
    const auto version = connection.number(u"PRAGMA user_version"_s);
    return version && connection.execute(u"PRAGMA user_version=%1"_s.arg(*version));
}

} // namespace velometer
