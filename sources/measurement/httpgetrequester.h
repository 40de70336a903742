#pragma once

#include "utils/clocktimer.h"

#include <QAbstractSocket>
#include <QObject>
#include <QString>

class QTcpSocket;

namespace velometer {

class MeasurementContext;

/// Sends one complete HTTP request over a socket of its own and hands the answer, split at its
/// first empty line, to the controller's httpRequestDone: exactly once for each doRequest, from the
/// event loop. It knows nothing else of HTTP; the server is expected to close. One request at a
/// time.
class HttpGetRequester : public QObject
{
    Q_OBJECT

public:
    /// @p controller is borrowed and outlives the requester.
    HttpGetRequester(MeasurementContext *controller, QObject *parent);
    ~HttpGetRequester() override;

    /// Starts a request; one that still runs is dropped without an answer. @p timeout in ms.
    void doRequest(QString hostname, int port, QString request, int timeout);
    /// Drops a running request without an answer.
    void cancel();

    /// This end's address in the last connection that was made.
    QString getLocalIP() const { return localip; }

private Q_SLOTS:
    void timeoutOccourd();
    void slotConnected();
    void slotDisconnected();
    void slotError(QAbstractSocket::SocketError code);
    void readyRead();
    void bytesWritten(qint64 count);

private:
    void finish();
    void decodeAnswer(const QString &answer);

    MeasurementContext *controller;
    ClockTimer timer;
    QTcpSocket *socket = nullptr;
    QString hostname;
    int port = 0;
    QString request;
    int timeout = 0;
    QString localip;
    QString response;
};

} // namespace velometer
