#include "app/qrcode.h"

#include <qrencode.h>

#include <memory>

namespace velometer {

std::optional<QrCode> QrCode::of(const QString &text)
{
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> made(
        QRcode_encodeString(text.toUtf8().constData(), 0, QR_ECLEVEL_M, QR_MODE_8, 1), QRcode_free);
    if (!made || text.isEmpty()) {
        return std::nullopt;
    }
    QrCode code;
    code.width = made->width;
    for (int i = 0; i < made->width * made->width; ++i) {
        code.modules.append(static_cast<char>(made->data[i] & 1)); // the rest tells what it is for
    }
    return code;
}

bool QrCode::isDark(int x, int y) const
{
    const bool inside = x >= 0 && y >= 0 && x < width && y < width;
    return inside && modules.at(y * width + x) != 0;
}

} // namespace velometer
