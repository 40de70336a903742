#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velometer {

/// A QR code (ISO/IEC 18004, error correction level M) as a square of modules, without the quiet
/// zone of four modules that a reader needs around it. A plain value.
class QrCode
{
public:
    /// Nothing for a text that does not fit, some 2,300 bytes, and for an empty one.
    static std::optional<QrCode> of(const QString &text);

    int size() const { return width; } ///< modules a side
    /// False outside of the square.
    bool isDark(int x, int y) const;

private:
    QrCode() = default;

    int width = 0;
    QByteArray modules; ///< row by row, 1 where it is dark
};

} // namespace velometer
