#pragma once

#include <QObject>
#include <QString>

namespace velometer {

/// What the service saw of the client's connection, parsed from the body of the initialise answer:
/// items of key, colon, value and semicolon, in any order, with anything between them.
class RemoteInitialValues : public QObject
{
    Q_OBJECT

public:
    explicit RemoteInitialValues(QObject *parent);

    /// Parses @p answer. A missing key leaves its field as it was, a malformed number becomes 0 and
    /// is logged. Never fails.
    void remoteInitialValuesLoaded(QString answer);

    QString getClientHostname() const { return clientHostname; }
    QString getRemoteIP() const { return remoteIP; } ///< the server's own address ("Server-IP:")
    QString getLocalIP() const
    {
        return localIP;
    } ///< the client as the server sees it ("Remote-IP:")
    QString getInternalIP() const { return internalIP; } ///< the client's own address ("Local-IP:")
    int getMss() const { return mss; }                   ///< bytes
    int getRwin() const { return rwin; }                 ///< bytes
    int getWscale() const { return wscale; }
    int getSack() const { return sack; }
    int getTimestamp() const { return timestamp; }
    /// True when the service could not read its kernel, or the segment size is unknown.
    bool isWeb100Error() const { return web100Error; }

private:
    QString clientHostname;
    QString remoteIP;
    QString localIP;
    QString internalIP;
    int mss = 0;
    int wscale = 0;
    int sack = 0;
    int timestamp = 0;
    int rwin = 0;
    bool web100Error = false;
};

} // namespace velometer
