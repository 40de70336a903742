#pragma once

#include "utils/clocktimer.h"

#include <QObject>

#include <functional>

namespace velometer {

/// Looks every two seconds whether an open session still has its network. One look without is no
/// loss: a change from one interface to another leaves a moment without any. Main thread only.
class LinkWatch : public QObject
{
    Q_OBJECT

public:
    /// @p isThere is asked at each look, for as long as the watch lives.
    explicit LinkWatch(std::function<bool()> isThere, QObject *parent = nullptr);

    void start();
    void stop();
    /// Started, and neither stopped nor lost since.
    bool isWatching() const { return timer.isActive(); }

Q_SIGNALS:
    /// Two looks in a row found no network; the watch has ended.
    void lost();

private:
    void look();

    const std::function<bool()> hasNetwork;
    ClockTimer timer;
    int looksWithout = 0;
};

} // namespace velometer
