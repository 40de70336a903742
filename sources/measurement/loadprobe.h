#pragma once

#include "figures/delays.h"
#include "utils/clocktimer.h"

#include <QHostAddress>
#include <QObject>

#include <vector>

class QTcpSocket;

namespace velometer {

/// The round-trip time while a stream runs: TCP connects to where the stream goes, from where it
/// comes, each timed from start to connected and reset at once. One every 200 ms, or fewer where
/// they would be felt; three under way at most. One that is refused, that needed a second SYN or
/// that takes 3 s is lost. Main thread only.
class LoadProbe : public QObject
{
    Q_OBJECT

public:
    explicit LoadProbe(QObject *parent);
    ~LoadProbe() override;

    /// What one connect and its end put on the wire, both directions together, IP headers included.
    static qint64 bytesPerProbe(const QHostAddress &peer);
    /// What probes beside a stream of at most @p limit bytes may move of them.
    static qint64 shareOf(qint64 limit);

    /// The first data of @p stream is there; it is connected, and looked at only now. Moves at most
    /// @p mostBytes. Once.
    void start(const QTcpSocket &stream, qint64 mostBytes);
    /// All that the stream has moved so far.
    void streamHasMoved(qint64 bytes) { moved = bytes; }
    /// The stream has ended: what is under way is dropped and counts for nothing.
    void stop();

    /// What has come back or is lost; no samples before start().
    LoadDelays delays() const;
    qint64 bytes() const { return static_cast<qint64>(probes.size()) * cost; }

Q_SIGNALS:
    /// A connect that began @p at ns after the start took @p delay ns.
    void sampled(qint64 at, qint64 delay);

private Q_SLOTS:
    void next();

private:
    struct Probe
    {
        qint64 begun = 0;             ///< ns, by the clock
        QTcpSocket *socket = nullptr; ///< while it is under way
        std::optional<qint64> delay = std::nullopt;
        bool isOver = false; ///< it has come back or is lost
    };

    bool mayOpen() const;
    void open();
    void connected(std::size_t number);
    void lose(std::size_t number);

    ClockTimer timer;
    QHostAddress peer;
    QHostAddress local;
    int port = 0;
    qint64 cost = 0;
    qint64 most = 0;
    qint64 moved = 0;
    qint64 startedAt = 0;
    bool started = false;
    std::vector<Probe> probes; ///< in the order of their beginnings
};

} // namespace velometer
