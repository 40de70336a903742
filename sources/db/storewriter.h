#pragma once

#include "utils/clocktimer.h"

#include <QObject>

#include <functional>

namespace velometer {

/// Brings a write into the store that another program may hold locked: tries it at once, and while
/// the store is locked again five times a second, for a minute. It never blocks the event loop. One
/// write at a time; gDB is open. Main thread only.
class StoreWriter : public QObject
{
    Q_OBJECT

public:
    explicit StoreWriter(QObject *parent);

    /// @p attempt is a write to gDB and tells whether it is done; @p done hears the same of the
    /// last attempt, before this returns when the store is free. What still waits is replaced.
    void write(std::function<bool()> attempt, std::function<void(bool)> done);
    /// Drops what waits, without a word.
    void cancel();

Q_SIGNALS:
    /// The store has been locked for two seconds: worth telling. Once for each write.
    void waiting();

private:
    void tryOnce();

    std::function<bool()> attempt;
    std::function<void(bool)> done;
    ClockTimer retry;
    qint64 since = 0; ///< ns
    bool told = false;
};

} // namespace velometer
