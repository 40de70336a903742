#pragma once

#include <QByteArray>
#include <QString>

namespace velometer {

/// The secret with which texts that name a device, or a subscriber's address, become hashes before
/// they are kept: whoever has the data base alone learns neither, and cannot try them all out. It
/// lies in a file of its own, which no copy of the data base holds. A plain value.
class DeviceKey
{
public:
    /// Reads @p file, which is made with a key drawn at random, for its owner alone, when it is
    /// missing and @p mayCreate. Programs that do so at the same time get the same one. Without a
    /// key @p problem says why.
    static DeviceKey load(const QString &file, bool mayCreate, QString *problem);

    bool isNull() const { return secret.isEmpty(); }

    /// What is kept in place of @p text: a mark that no device's text begins with, and HMAC-SHA256
    /// (RFC 2104) in hexadecimal digits.
    QString hash(const QString &text) const;
    static bool isHash(const QString &text) { return text.startsWith(mark); }

    /// By which a data base knows its key again without having it.
    QString fingerprint() const;

    static constexpr QLatin1StringView mark{"h:"};

private:
    QByteArray secret;
};

} // namespace velometer
