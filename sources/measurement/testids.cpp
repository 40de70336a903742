#include "measurement/testids.h"

#include "utils/utils.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// Ids are drawn in a moment: whoever holds the lock is soon done.
constexpr auto lockPollInterval = 20ms;
constexpr int staleLockMs = 30'000;

/// Ids stay where every program that reads them, a script's doubles included, has them exactly.
constexpr qlonglong maxId = qlonglong(1) << 53;
constexpr int unusedBits = 64 - 53;

qlonglong plausible(qlonglong id, qlonglong minimum)
{
    return id < minimum || id > maxId ? minimum : id;
}

qlonglong saved(const QString &key)
{
    return Utils::getSettingsCommonValue(key).toLongLong();
}

/// Beside the settings it guards.
QString lockFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           "/orvak/ids.lock"_L1;
}

} // namespace

TestIds::TestIds()
{
    load();
}

void TestIds::load()
{
    const qlonglong savedUser = saved(u"UserId"_s);
    if (savedUser < 1) {
        return;
    }
    const std::pair drawn{plausible(saved(u"SeriesId"_s), 1), plausible(saved(u"TestId"_s), 0)};
    // Where the settings cannot be written, they stay behind what has been given already.
    if (user != savedUser || drawn > std::pair{series, test}) {
        std::tie(series, test) = drawn;
    }
    user = savedUser;
}

void TestIds::save() const
{
    Utils::setSettingsCommonValues({{u"UserId"_s, QString::number(user)},
                                    {u"SeriesId"_s, QString::number(series)},
                                    {u"TestId"_s, QString::number(test)}});
}

void TestIds::draw(QObject *context, const std::function<void()> &done)
{
    underLock(context, &TestIds::nextTest, done);
}

void TestIds::startNewSeries(QObject *context, const std::function<void()> &done)
{
    underLock(context, &TestIds::nextSeries, done);
}

void TestIds::forgetUser(QObject *context, qlonglong gone)
{
    if (gone > 0 && gone == user) {
        underLock(context, &TestIds::noUser, [] {});
    }
}

void TestIds::noUser()
{
    user = series = test = 0;
}

void TestIds::nextTest()
{
    ++test;
}

void TestIds::nextSeries()
{
    ++series;
    test = 0;
}

void TestIds::assignUser(bool ok, const QString &answer)
{
    const QStringList parts = answer.trimmed().split(u';');
    user = ok && parts.size() >= 2 ? plausible(parts[0].toLongLong(), 0) : 0;
    series = user == 0 ? 1 : plausible(parts[1].toLongLong(), 0) + 1;
    test = 0;
    while (user == 0) {
        // Whoever knows an id sees its measurements: it must not be guessed, as a time can be.
        user = static_cast<qlonglong>(QRandomGenerator::system()->generate64() >> unusedBits);
    }
}

void TestIds::underLock(QObject *context, void (TestIds::*change)(),
                        const std::function<void()> &done)
{
    const QString file = lockFile();
    QDir().mkpath(QFileInfo(file).path());
    QLockFile lock(file);
    lock.setStaleLockTime(staleLockMs);
    // Where no lock can be made, nothing can be saved either, and nobody else draws.
    if (!lock.tryLock(0ms) && lock.error() == QLockFile::LockFailedError) {
        QTimer::singleShot(lockPollInterval, context,
                           [this, context, change, done] { underLock(context, change, done); });
        return;
    }
    Utils::forgetSettingsCommonValues();
    load();
    (this->*change)();
    save();
    lock.unlock();
    done();
}

} // namespace velometer
