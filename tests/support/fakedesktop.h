#pragma once

#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

namespace velometer {

/// A desktop whose opener notes what it is to open, and is as noisy as real ones.
class FakeDesktop
{
public:
    FakeDesktop()
    {
        QFile opener(home.filePath(QStringLiteral("xdg-open")));
        (void)opener.open(QIODevice::WriteOnly);
        opener.write("#!/bin/sh\necho noise >&2\nprintf '%s\\n' \"$1\" >> \"${0%/*}/opened\"\n");
        opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        qputenv("PATH", home.path().toLocal8Bit() + ':' + path);
    }
    ~FakeDesktop() { qputenv("PATH", path); }
    FakeDesktop(const FakeDesktop &) = delete;
    FakeDesktop &operator=(const FakeDesktop &) = delete;

    /// From now on there is no opener at all.
    static void takeAway() { qputenv("PATH", QByteArrayLiteral("/nonexistent")); }

    QStringList opened() const
    {
        QFile file(home.filePath(QStringLiteral("opened")));
        return file.open(QIODevice::ReadOnly)
                   ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                   : QStringList();
    }
    void forget() { QFile::remove(home.filePath(QStringLiteral("opened"))); }

private:
    const QByteArray path = qgetenv("PATH");
    QTemporaryDir home;
};

} // namespace velometer
