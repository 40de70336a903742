#pragma once

#include <QByteArray>
#include <QImage>

namespace velometer {

/// The picture in the answer of a tile server; null unless it is a PNG or JPEG of 256 or 512 px
/// square. The format and size are looked at before anything is decoded, so that a small file
/// cannot ask for a large memory.
QImage decodeTile(const QByteArray &answer);

} // namespace velometer
