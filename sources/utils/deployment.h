#pragma once

#include "utils/endpoint.h"

#include <QString>

#include <optional>

namespace velometer {

/// Where this installation's service lives: read from an INI file, over built-in defaults that
/// point at a service on this machine. A plain value; the program keeps one as current().
struct Deployment
{
    QString webHost = QStringLiteral("127.0.0.1"); ///< assigns user ids, serves the users' pages
    int webPort = 8080;
    QString importHost = QStringLiteral("127.0.0.1"); ///< named in the report's document type
    QString salt = QStringLiteral("8352"); ///< shared with the service, see the report's hash
    QStringList oldSalts; ///< that the service takes as well, while clients change to the new one
    QString feedbackMailbox = QStringLiteral("feedback@velometer.invalid");
    QString makerUrl; ///< empty: the web host's root

    Endpoint swisscom{QStringLiteral("127.0.0.1"), 8080};
    Endpoint sunrise{QStringLiteral("127.0.0.2"), 8080};
    Endpoint hsr{QStringLiteral("127.0.0.3"), 8080};
    Endpoint ipPlusGermany{QStringLiteral("127.0.0.4"), 8080};
    Endpoint ipPlusItaly{QStringLiteral("127.0.0.5"), 8080};
    Endpoint ipPlusNewYork{QStringLiteral("127.0.0.6"), 8080};

    QString tileUrl = QStringLiteral("https://tile.openstreetmap.org/{z}/{x}/{y}.png");
    QString attribution = QStringLiteral("(c) OpenStreetMap contributors");

    /// The values of @p file over the defaults. When the file cannot be read or a value in it makes
    /// no sense, nothing comes back and @p error says in one sentence which.
    static std::optional<Deployment> fromFile(const QString &file, QString *error);

    /// As fromFile for @p file (--config) when it is given, else the file that VELOMETER_CONFIG
    /// names, else velometer/deployment.conf in the XDG configuration directories, else the
    /// defaults.
    static std::optional<Deployment> load(const QString &file, QString *error);

    /// "http://host" of the web host, with its port when that is not 80; no slash at the end.
    QString webAddress() const;

    /// The maker's web page.
    QString makerAddress() const;

    /// The page that shows all measurements of @p userId; @p language is "de" or "en".
    QString userPageAddress(qint64 userId, const QString &language) const;

    static const Deployment &current();
    static void setCurrent(const Deployment &deployment);
};

} // namespace velometer
