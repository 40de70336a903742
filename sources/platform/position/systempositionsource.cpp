#include "platform/position/systempositionsource.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QGeoSatelliteInfoSource>
#include <QLoggingCategory>

#include <chrono>
#include <cstring>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// A service that has to be started first answers within a second.
constexpr int answerTimeoutMs = 2000;
constexpr auto sourceRetryInterval = 10s;
/// Qt's name for the plug-in that asks the system's location service.
constexpr auto locationService = "geoclue2"_L1;

QLoggingCategory::CategoryFilter previousFilter = nullptr;

void withoutPositioningWarnings(QLoggingCategory *category)
{
    // Installing calls this for every category there is, before the old filter is known.
    if (previousFilter) {
        previousFilter(category);
    }
    constexpr const char *prefix = "qt.positioning";
    if (std::strncmp(category->categoryName(), prefix, std::strlen(prefix)) == 0 &&
        !category->isDebugEnabled()) {
        category->setEnabled(QtWarningMsg, false);
        category->setEnabled(QtCriticalMsg, false);
    }
}

// Some plug-ins warn without a category while they look for a receiver.
class QuietCreation
{
public:
    QuietCreation() { previous = qInstallMessageHandler(handle); }
    ~QuietCreation() { qInstallMessageHandler(previous); }

private:
    Q_DISABLE_COPY_MOVE(QuietCreation)

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type != QtWarningMsg) {
            previous(type, context, text);
        }
    }

    static inline QtMessageHandler previous = nullptr;
};

QList<int> numbersOf(const QList<QGeoSatelliteInfo> &satellites)
{
    QList<int> numbers;
    for (const QGeoSatelliteInfo &each : satellites) {
        numbers.append(each.satelliteIdentifier());
    }
    return numbers;
}

} // namespace

SystemPositionSource::SystemPositionSource(QObject *parent)
    : PositionSource(parent)
{
    if (!previousFilter) {
        previousFilter = QLoggingCategory::installFilter(withoutPositioningWarnings);
    }

    connect(&retryTimer, &ClockTimer::timeout, this, &SystemPositionSource::askLocationService);

    const QuietCreation quiet;
    // The location service asks its agent about the program of this desktop file; by itself the
    // plug-in would name the application, and there is no desktop file of that name.
    positionReader =
        QGeoPositionInfoSource::createDefaultSource({{u"desktopId"_s, u"velometer"_s}}, this);
    satelliteReader = QGeoSatelliteInfoSource::createDefaultSource(this);

    if (positionReader) {
        connect(positionReader, &QGeoPositionInfoSource::positionUpdated, this,
                &SystemPositionSource::setPosition);
        connect(positionReader, &QGeoPositionInfoSource::errorOccurred, this,
                &SystemPositionSource::takeError);
    } else {
        setProblem(Problem::NoSource);
    }
    if (satelliteReader) {
        connect(satelliteReader, &QGeoSatelliteInfoSource::satellitesInUseUpdated, this,
                [this](const QList<QGeoSatelliteInfo> &list) {
                    setSatellites({numbersOf(list), satellites().inView});
                });
        connect(satelliteReader, &QGeoSatelliteInfoSource::satellitesInViewUpdated, this,
                [this](const QList<QGeoSatelliteInfo> &list) {
                    setSatellites({satellites().inUse, numbersOf(list)});
                });
    }
}

void SystemPositionSource::takeError(QGeoPositionInfoSource::Error error)
{
    switch (error) {
    case QGeoPositionInfoSource::NoError: return;
    case QGeoPositionInfoSource::AccessError: return setProblem(Problem::Refused);
    case QGeoPositionInfoSource::ClosedError:
    case QGeoPositionInfoSource::UnknownSourceError: return setProblem(Problem::Unavailable);
    case QGeoPositionInfoSource::UpdateTimeoutError:
        setProblem(Problem::NoFix);
        setTimedOut();
        return;
    }
}

void SystemPositionSource::askLocationService()
{
    if (!wanted || running) {
        return;
    }
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        return setProblem(Problem::Unavailable);
    }
    retryTimer.start(sourceRetryInterval);
    // The property that the plug-in reads first; the question also starts the service.
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.GeoClue2"_s, u"/org/freedesktop/GeoClue2/Manager"_s,
        u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << u"org.freedesktop.GeoClue2.Manager"_s << u"AvailableAccuracyLevel"_s;
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(question, answerTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *call) {
                call->deleteLater();
                if (call->isError()) {
                    setProblem(Problem::Unavailable);
                } else {
                    startUpdates();
                }
            });
}

void SystemPositionSource::startUpdates()
{
    if (!wanted || running) {
        return;
    }
    running = true;
    retryTimer.stop();
    positionReader->setPreferredPositioningMethods(QGeoPositionInfoSource::AllPositioningMethods);
    positionReader->setUpdateInterval(interval);
    positionReader->startUpdates();
}

QString SystemPositionSource::name() const
{
    return positionReader ? positionReader->sourceName() : QString();
}

bool SystemPositionSource::hasPosition() const
{
    return positionReader != nullptr;
}

bool SystemPositionSource::hasSatellites() const
{
    return satelliteReader != nullptr;
}

Position SystemPositionSource::lastKnownPosition() const
{
    return positionReader ? Position::from(positionReader->lastKnownPosition()) : Position();
}

int SystemPositionSource::minimumUpdateInterval() const
{
    return positionReader ? positionReader->minimumUpdateInterval() : 0;
}

void SystemPositionSource::setUpdateInterval(int ms)
{
    interval = ms;
}

void SystemPositionSource::startPosition()
{
    if (!positionReader || wanted) {
        return;
    }
    wanted = true;
    if (name() == locationService) {
        askLocationService();
    } else {
        startUpdates();
    }
}

void SystemPositionSource::stopPosition()
{
    wanted = false;
    retryTimer.stop();
    if (std::exchange(running, false)) {
        positionReader->stopUpdates();
    }
}

void SystemPositionSource::startSatellites()
{
    if (satelliteReader) {
        satelliteReader->startUpdates();
    }
}

void SystemPositionSource::stopSatellites()
{
    if (satelliteReader) {
        satelliteReader->stopUpdates();
    }
}

} // namespace velometer
