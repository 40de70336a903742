#include "platform/position/systempositionsource.h"

#include <QGeoPositionInfoSource>
#include <QGeoSatelliteInfoSource>
#include <QLoggingCategory>

#include <cstring>

namespace {

QLoggingCategory::CategoryFilter previousFilter = nullptr;

void withoutPositioningWarnings(QLoggingCategory *category)
{
    // Installing calls this for every category there is, before the old filter is known.
    if (previousFilter)
        previousFilter(category);
    constexpr const char *prefix = "qt.positioning";
    if (std::strncmp(category->categoryName(), prefix, std::strlen(prefix)) == 0 &&
        !category->isDebugEnabled())
        category->setEnabled(QtWarningMsg, false);
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
    position = QGeoPositionInfoSource::createDefaultSource(this);
    satellites = QGeoSatelliteInfoSource::createDefaultSource(this);

    if (position) {
        connect(position, &QGeoPositionInfoSource::positionUpdated, this,
                &PositionSource::positionUpdated);
        connect(position, &QGeoPositionInfoSource::errorOccurred, this,
                [this](QGeoPositionInfoSource::Error error) {
                    if (error == QGeoPositionInfoSource::UpdateTimeoutError)
                        Q_EMIT updateTimeout();
                });
    }
    if (satellites) {
        connect(satellites, &QGeoSatelliteInfoSource::satellitesInUseUpdated, this,
                &PositionSource::satellitesInUseUpdated);
        connect(satellites, &QGeoSatelliteInfoSource::satellitesInViewUpdated, this,
                &PositionSource::satellitesInViewUpdated);
    }
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
