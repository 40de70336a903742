#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

namespace velometer {

/// One program for one data directory: the first becomes the owner, a later one asks it to come to
/// the front and ends. Only the same user is heard. Main thread only.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// @p key tells the programs apart that may run side by side.
    explicit SingleInstance(const QString &key);

    /// True when another program is there and has been asked to come to the front. False when this
    /// one is the first, and hears of later ones from now on; also when that cannot be arranged: a
    /// program that runs is worth more than one that does not.
    bool otherRaised();

Q_SIGNALS:
    /// Another one was started. @p token is what its window system gave it to hand the focus on.
    void raiseRequested(const QByteArray &token);

private:
    bool askOther() const;
    void listen();
    void serve();

    const QString name;
    QLockFile lock;
    QLocalServer server;
};

} // namespace velometer
