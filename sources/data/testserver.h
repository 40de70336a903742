#pragma once

#include <QObject>
#include <QString>

namespace velometer {

/// One server to measure against: where it is reached, and where it stands in the world.
class TestServer : public QObject
{
    Q_OBJECT

public:
    explicit TestServer(QObject *parent);
    TestServer(QString name, QString hostname, int port, QString logo, QString city, QString state,
               QString country, QObject *parent);

    QString getName() const { return name; }
    QString getHostname() const { return hostname; } ///< DNS name or address, without brackets
    int getPort() const { return port; }
    QString getLogo() const { return logo; }
    QString getCity() const { return city; }
    QString getState() const { return state; }
    QString getCountry() const { return country; } ///< two-letter code

    void setName(const QString &value) { name = value; }
    void setHostname(const QString &value) { hostname = value; }
    void setPort(int value) { port = value; }
    void setLogo(const QString &value) { logo = value; }
    void setCity(const QString &value) { city = value; }
    void setState(const QString &value) { state = value; }
    void setCountry(const QString &value) { country = value; }

    /// The host name without its first label; the whole name when it has no dot.
    QString getDomain() const;

    /// "host:port" as it stands in a Host line; an IPv6 literal in brackets.
    QString getHostHeader() const;

private:
    QString name;
    QString hostname;
    int port = 0;
    QString logo;
    QString city;
    QString state;
    QString country;
};

} // namespace velometer
