#pragma once

#include "platform/networksession.h"

#include <QObject>

#include <memory>

namespace velometer {

class Platform;

/// Keeps the one network session of the tests: opens it when it is not open, tells in the
/// diagnostic log what there is to connect with, and hears of its end. Main thread only.
class SessionOpener : public QObject
{
    Q_OBJECT

public:
    /// The platform is borrowed and outlives this.
    SessionOpener(Platform &platform, QObject *parent);
    ~SessionOpener() override;

    bool isOpen() const { return session && session->isOpen(); }
    /// Replaces a session that is not open. Ends in opened() or failed(); failed() may also come
    /// later, when the network goes away.
    void open();

Q_SIGNALS:
    void opened();
    void failed(NetworkSession::SessionError error);

private:
    Platform &platform;
    std::unique_ptr<NetworkSession> session;
};

} // namespace velometer
