#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace velometer {

/// Turns the first SIGINT or SIGTERM into a Qt signal, from its construction on; a second one ends
/// the program at once, for a user who has lost patience. So does SIGHUP, of which any number may
/// follow: a terminal that is closed sends several. A program that was started with SIGHUP ignored
/// goes on ignoring it. One in a process, main thread.
class SignalWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SignalWatcher(QObject *parent = nullptr);
    /// Restores the default actions.
    ~SignalWatcher() override;
    Q_DISABLE_COPY_MOVE(SignalWatcher)

Q_SIGNALS:
    void caught(int signalNumber);

private:
    void read();

    QSocketNotifier notifier;
};

} // namespace velometer
