#pragma once

#include "platform/position/nmeaepoch.h"
#include "platform/position/nmealines.h"
#include "platform/position/positionchoice.h"
#include "platform/positionsource.h"
#include "utils/clocktimer.h"

#include <QQueue>

#include <memory>

namespace velometer {

class NmeaInput;

/// Positions and satellites from NMEA sentences: of a receiver behind a device file, a FIFO, a TCP
/// port or gpsd, live; or of a recording, at the pace of its time stamps.
///
/// A position is told when all that the receiver tells of its moment is there: when the next moment
/// begins, or when the receiver has been silent for a quarter of a second.
///
/// Reads only while started, at most 160 KiB/s. A recording goes on where it was stopped, and
/// starts over when it had ended; its pauses are cut to a minute. What cannot be opened or breaks
/// off is tried again every five seconds and is a problem meanwhile. Without a position for ten
/// seconds the position is gone.
class NmeaPositionSource : public PositionSource
{
    Q_OBJECT

public:
    /// @p choice names a file or an address, not the platform.
    explicit NmeaPositionSource(const PositionChoice &choice, QObject *parent = nullptr);
    ~NmeaPositionSource() override;

    QString name() const override { return label; }
    bool hasPosition() const override { return true; }
    bool hasSatellites() const override { return true; }
    Position lastKnownPosition() const override { return last; }
    int minimumUpdateInterval() const override;
    void setUpdateInterval(int ms) override;
    void startPosition() override;
    void stopPosition() override;
    void startSatellites() override;
    void stopSatellites() override;

private:
    void run();
    void pauseUnlessWanted();
    void open();
    void retry();
    void poll();
    void play();
    void hand(const NmeaSentence &sentence);
    void tell();
    bool isTooSoon(const QDateTime &moment) const;
    void giveUpOnFix();

    const QString label;
    const std::unique_ptr<NmeaInput> input;
    NmeaLines lines;
    std::unique_ptr<NmeaEpoch> epoch; ///< of this connection

    ClockTimer pollTimer;
    ClockTimer silenceTimer; ///< runs since the last bytes of a receiver
    ClockTimer retryTimer;   ///< runs from every attempt to open, and from a loss
    ClockTimer fixTimer;     ///< runs since the last position
    int interval = 0;        ///< ms between updates; 0: all of them
    bool positionRunning = false;
    bool satellitesRunning = false;
    Position last;
    QDateTime lastMoment; ///< of the position that was told last, to the ms

    // Of a recording.
    QQueue<NmeaSentence> ahead;
    qint64 dueNs = 0;             ///< when timeOfDay is reached
    qint64 restNs = 0;            ///< how long it was to that when the recording was stopped
    std::optional<int> timeOfDay; ///< of the last sentence that told one, or of the next
};

} // namespace velometer
