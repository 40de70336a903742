#pragma once

#include "platform/positionsource.h"

namespace velometer {

/// A device without positioning: never signals.
class NoPositionSource : public PositionSource
{
    Q_OBJECT

public:
    explicit NoPositionSource(QObject *parent = nullptr)
        : PositionSource(parent)
    {
        setProblem(Problem::NoSource);
    }

    QString name() const override { return {}; }
    bool hasPosition() const override { return false; }
    bool hasSatellites() const override { return false; }
    Position lastKnownPosition() const override { return {}; }
    int minimumUpdateInterval() const override { return 0; }
    void setUpdateInterval(int /*ms*/) override {}
    void startPosition() override {}
    void stopPosition() override {}
    void startSatellites() override {}
    void stopSatellites() override {}
};

} // namespace velometer
