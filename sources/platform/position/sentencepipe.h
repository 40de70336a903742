#pragma once

#include <QByteArray>
#include <QIODevice>

namespace velometer {

/// Sentences for one of Qt's NMEA readers, which each want a device of their own. Keeps at most
/// 64 KiB that are not read; what comes on top is dropped. Open from the beginning.
class SentencePipe : public QIODevice
{
    Q_OBJECT

public:
    explicit SentencePipe(QObject *parent = nullptr);

    /// Adds a whole line, without a signal.
    void put(const QByteArray &line);
    /// Signals readyRead() when there is something.
    void announce();

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override;
    bool canReadLine() const override;

protected:
    qint64 readData(char *data, qint64 size) override;
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray waiting;
};

} // namespace velometer
