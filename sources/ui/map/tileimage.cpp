#include "ui/map/tileimage.h"

#include <QBuffer>
#include <QImageReader>

namespace velometer {

QImage decodeTile(const QByteArray &answer)
{
    QByteArray format;
    if (answer.startsWith("\x89PNG\r\n\x1a\n")) {
        format = "png";
    } else if (answer.startsWith("\xff\xd8\xff")) {
        format = "jpeg";
    } else {
        return {};
    }
    QBuffer buffer;
    buffer.setData(answer);
    if (!buffer.open(QIODevice::ReadOnly)) {
        return {};
    }
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size != QSize(256, 256) && size != QSize(512, 512)) {
        return {};
    }
    return reader.read();
}

} // namespace velometer
