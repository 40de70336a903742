#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace velometer {

/// Where the bytes of NMEA sentences come from. Nothing here waits: what is not there yet is asked
/// for again later.
class NmeaInput
{
public:
    enum class State {
        Closed,
        Opening, ///< may take its time
        Open,
        Ended, ///< a recording is over
        Lost,  ///< cannot be opened, or has broken off
    };

    virtual ~NmeaInput() = default;

    /// Begins anew, whatever the state.
    virtual void open() = 0;
    virtual void close() = 0;
    virtual State state() const = 0;

    /// What is there, at most @p most bytes. The state may be another one afterwards.
    virtual QByteArray read(qint64 most) = 0;

    /// True for what was recorded before and has to be played at the pace of its time stamps; known
    /// once it is open.
    virtual bool isRecording() const = 0;

protected:
    NmeaInput() = default;
    Q_DISABLE_COPY_MOVE(NmeaInput)
};

} // namespace velometer
