#pragma once

#include "platform/position/nmeainput.h"

#include <QString>

#include <optional>

#include <termios.h>

namespace velometer {

/// A recording in a regular file, or a receiver behind a device file or a FIFO. A terminal line is
/// set to raw while it is open, so that nothing is echoed to the receiver; its speed stays as it
/// is.
class FileNmeaInput : public NmeaInput
{
public:
    explicit FileNmeaInput(QString path);
    ~FileNmeaInput() override;

    void open() override;
    void close() override;
    State state() const override { return current; }
    QByteArray read(qint64 most) override;
    bool isRecording() const override { return recording; }

private:
    const QString file;
    int descriptor = -1;
    State current = State::Closed;
    bool recording = false;
    bool fifo = false;
    std::optional<termios> line; ///< how a terminal line was before
};

} // namespace velometer
