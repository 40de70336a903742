#include "platform/position/sentencepipe.h"

#include <algorithm>

namespace velometer {

namespace {

constexpr qsizetype maxWaiting = 65'536;

} // namespace

SentencePipe::SentencePipe(QObject *parent)
    : QIODevice(parent)
{
    open(QIODevice::ReadOnly);
}

void SentencePipe::put(const QByteArray &line)
{
    if (waiting.size() + line.size() <= maxWaiting) {
        waiting.append(line);
    }
}

void SentencePipe::announce()
{
    if (!waiting.isEmpty()) {
        Q_EMIT readyRead();
    }
}

qint64 SentencePipe::bytesAvailable() const
{
    return waiting.size() + QIODevice::bytesAvailable();
}

bool SentencePipe::canReadLine() const
{
    return waiting.contains('\n') || QIODevice::canReadLine();
}

qint64 SentencePipe::readData(char *data, qint64 size)
{
    const qsizetype count = std::min(static_cast<qsizetype>(size), waiting.size());
    std::copy_n(waiting.constData(), count, data);
    waiting.remove(0, count);
    return count;
}

} // namespace velometer
