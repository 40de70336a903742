#pragma once

#include "platform/position/nmeainput.h"
#include "utils/endpoint.h"

#include <QTcpSocket>

namespace velometer {

/// A receiver behind a TCP port, or gpsd, which has to be asked. Connects directly, never through a
/// proxy; the kernel keeps what is not read.
class SocketNmeaInput : public NmeaInput
{
public:
    enum class Peer { Plain, Gpsd };

    SocketNmeaInput(Endpoint endpoint, Peer peer);
    ~SocketNmeaInput() override;

    void open() override;
    void close() override;
    State state() const override;
    QByteArray read(qint64 most) override;
    bool isRecording() const override { return false; }

private:
    const Endpoint address;
    bool wanted = false;
    QTcpSocket socket;
};

} // namespace velometer
