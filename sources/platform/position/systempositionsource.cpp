#include "platform/position/systempositionsource.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QGeoSatelliteInfoSource>
#include <QLoggingCategory>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// The bus daemon itself answers; what it has not said by then does not matter any more.
constexpr int busTimeoutMs = 2000;

QLoggingCategory::CategoryFilter previousFilter = nullptr;

void withoutPositioningWarnings(QLoggingCategory *category)
{
    // Installing calls this for every category there is, before the old filter is known.
    if (previousFilter)
        previousFilter(category);
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
        if (type != QtWarningMsg)
            previous(type, context, text);
    }

    static inline QtMessageHandler previous = nullptr;
};

} // namespace

SystemPositionSource::SystemPositionSource(QObject *parent)
    : PositionSource(parent)
{
    if (!previousFilter)
        previousFilter = QLoggingCategory::installFilter(withoutPositioningWarnings);

    const QuietCreation quiet;
    // The location service asks its agent about the program of this desktop file; by itself the
    // plug-in would name the application, and there is no desktop file of that name.
    position =
        QGeoPositionInfoSource::createDefaultSource({{u"desktopId"_s, u"velometer"_s}}, this);
    satellites = QGeoSatelliteInfoSource::createDefaultSource(this);

    if (position) {
        connect(position, &QGeoPositionInfoSource::positionUpdated, this,
                [this](const QGeoPositionInfo &info) {
                    setProblem(Problem::None);
                    Q_EMIT positionUpdated(info);
                });
        connect(position, &QGeoPositionInfoSource::errorOccurred, this,
                &SystemPositionSource::takeError);
    } else {
        setProblem(Problem::NoSource);
    }
    if (satellites) {
        connect(satellites, &QGeoSatelliteInfoSource::satellitesInUseUpdated, this,
                &PositionSource::satellitesInUseUpdated);
        connect(satellites, &QGeoSatelliteInfoSource::satellitesInViewUpdated, this,
                &PositionSource::satellitesInViewUpdated);
    }
}

void SystemPositionSource::takeError(QGeoPositionInfoSource::Error error)
{
    switch (error) {
    case QGeoPositionInfoSource::NoError: return;
    case QGeoPositionInfoSource::AccessError: return explainAccessError();
    case QGeoPositionInfoSource::ClosedError:
    case QGeoPositionInfoSource::UnknownSourceError: return setProblem(Problem::Unavailable);
    case QGeoPositionInfoSource::UpdateTimeoutError:
        setProblem(Problem::NoFix);
        Q_EMIT updateTimeout();
        return;
    }
}

void SystemPositionSource::explainAccessError()
{
    // The plug-in says the same of a location service that refuses and of one that is not there.
    if (position->sourceName() != "geoclue2"_L1)
        return setProblem(Problem::Refused);
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return setProblem(Problem::Unavailable);
    QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << u"org.freedesktop.GeoClue2"_s;
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(question, busTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *call) {
                call->deleteLater();
                const bool isThere = call->reply().arguments().value(0).toBool();
                setProblem(isThere ? Problem::Refused : Problem::Unavailable);
            });
}

QString SystemPositionSource::name() const
{
    return position ? position->sourceName() : QString();
}

bool SystemPositionSource::hasPosition() const
{
    return position != nullptr;
}

bool SystemPositionSource::hasSatellites() const
{
    return satellites != nullptr;
}

QGeoPositionInfo SystemPositionSource::lastKnownPosition() const
{
    return position ? position->lastKnownPosition() : QGeoPositionInfo();
}

int SystemPositionSource::minimumUpdateInterval() const
{
    return position ? position->minimumUpdateInterval() : 0;
}

void SystemPositionSource::setUpdateInterval(int ms)
{
    if (!position)
        return;
    position->setPreferredPositioningMethods(QGeoPositionInfoSource::AllPositioningMethods);
    position->setUpdateInterval(ms);
}

void SystemPositionSource::startPosition()
{
    if (position)
        position->startUpdates();
}

void SystemPositionSource::stopPosition()
{
    if (position)
        position->stopUpdates();
}

void SystemPositionSource::startSatellites()
{
    if (satellites)
        satellites->startUpdates();
}

void SystemPositionSource::stopSatellites()
{
    if (satellites)
        satellites->stopUpdates();
}
