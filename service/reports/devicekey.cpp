#include "reports/devicekey.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <QTemporaryFile>

#include <array>
#include <cerrno>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qsizetype keyBytes = 32;

/// Its letters in whole, so that nobody reads half of it.
bool create(const QString &file)
{
    std::array<quint32, keyBytes / sizeof(quint32)> words{};
    QRandomGenerator::system()->fillRange(words.data(), qsizetype(words.size()));
    const QByteArray secret(reinterpret_cast<const char *>(words.data()), keyBytes);
    if (!QDir().mkpath(QFileInfo(file).absolutePath())) {
        return false;
    }
    // A temporary file is its owner's alone. A link fails where another program was first.
    QTemporaryFile fresh(file + u".XXXXXX"_s);
    const bool written = fresh.open() && fresh.write(secret.toHex() + '\n') > 0 && fresh.flush() &&
                         ::fsync(fresh.handle()) == 0;
    return written && (::link(QFile::encodeName(fresh.fileName()).constData(),
                              QFile::encodeName(file).constData()) == 0 ||
                       errno == EEXIST);
}

} // namespace

DeviceKey DeviceKey::load(const QString &file, bool mayCreate, QString *problem)
{
    if (!QFile::exists(file) && (!mayCreate || !create(file))) {
        *problem = mayCreate ? u"the device key %1 cannot be made"_s.arg(file)
                             : u"its device key %1 is missing"_s.arg(file);
        return {};
    }
    QFile source(file);
    DeviceKey key;
    if (source.open(QIODevice::ReadOnly)) {
        key.secret = QByteArray::fromHex(source.read(qint64{4} * keyBytes).trimmed());
    }
    if (key.secret.size() != keyBytes) {
        *problem =
            u"%1 is no device key, which is one line of %2 hexadecimal digits"_s.arg(file).arg(
                2 * keyBytes);
        return {};
    }
    return key;
}

QString DeviceKey::hash(const QString &text) const
{
    return mark + QString::fromLatin1(QMessageAuthenticationCode::hash(text.toUtf8(), secret,
                                                                       QCryptographicHash::Sha256)
                                          .toHex());
}

QString DeviceKey::fingerprint() const
{
    return hash(u" the key itself"_s);
}

} // namespace velometer
