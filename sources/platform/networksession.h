#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace velometer {

/// One way into the network as the platform lists it; the numbers stand in log lines.
struct NetworkConfiguration
{
    /// States add up: an active configuration is also discovered and defined.
    enum State { Undefined = 1, Defined = 2, Discovered = 6, Active = 14 };
    enum Purpose { UnknownPurpose = 0, PublicPurpose = 1, PrivatePurpose = 2 };

    QString bearer; ///< "Ethernet", "WLAN", "Loopback" ...
    QString name;
    int purpose = UnknownPurpose;
    int state = Undefined;
    bool valid = false;
};

/// Keeps the device's default way into the network open while tests run. One object is one attempt:
/// open() answers with exactly one of opened() and error(), never before it returns. After
/// opened(), a lost network is told by error() and isOpen() is false. Main thread only; nothing
/// blocks.
class NetworkSession : public QObject
{
    Q_OBJECT

public:
    /// The numbers stand in log lines.
    enum SessionError {
        UnknownSessionError = 0,
        SessionAbortedError = 1,
        RoamingError = 2,
        OperationNotSupportedError = 3,
        InvalidConfigurationError = 4,
    };
    Q_ENUM(SessionError)

    using QObject::QObject;

    virtual QList<NetworkConfiguration> allConfigurations() const = 0;
    virtual NetworkConfiguration defaultConfiguration() const = 0;
    virtual bool canStartAndStopInterfaces() const = 0;

    virtual bool isOpen() const = 0;
    virtual void open() = 0;

Q_SIGNALS:
    void opened();
    void error(NetworkSession::SessionError error);
};

} // namespace velometer
