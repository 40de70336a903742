#include "utils/deployment.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// A configuration is a few lines; anything of this size is some other file.
constexpr qint64 maxFileBytes = 1'048'576;
constexpr int defaultHttpPort = 80;

Deployment currentDeployment;

class Reader
{
public:
    explicit Reader(const QString &file)
        : settings(file, QSettings::IniFormat)
    {}

    void text(const QString &key, QString &value) const
    {
        if (settings.contains(key)) {
            value = valueOf(key);
        }
    }

    /// Separated by commas; what is empty is none.
    void list(const QString &key, QStringList &values) const
    {
        for (const QString &each : settings.value(key).toStringList()) {
            if (const QString text = each.trimmed(); !text.isEmpty()) {
                values += text;
            }
        }
    }

    void host(const QString &key, QString &value)
    {
        if (!settings.contains(key)) {
            return;
        }
        const auto endpoint = Endpoint::parse(valueOf(key), defaultHttpPort);
        if (!endpoint) {
            return reject(key);
        }
        value = endpoint->host;
    }

    void port(const QString &key, int &value)
    {
        if (!settings.contains(key)) {
            return;
        }
        const auto endpoint = Endpoint::parse(u"host:"_s + valueOf(key), defaultHttpPort);
        if (!endpoint) {
            return reject(key);
        }
        value = endpoint->port;
    }

    void endpoint(const QString &key, Endpoint &value)
    {
        if (!settings.contains(key)) {
            return;
        }
        const auto parsed = Endpoint::parse(valueOf(key), defaultHttpPort);
        if (!parsed) {
            return reject(key);
        }
        value = *parsed;
    }

    bool readable() const { return settings.status() == QSettings::NoError; }
    QString rejected() const { return rejectedKey; }

private:
    // QSettings takes a comma for a list; here it is part of a text.
    QString valueOf(const QString &key) const
    {
        return settings.value(key).toStringList().join(u", "_s).trimmed();
    }

    void reject(const QString &key)
    {
        if (rejectedKey.isEmpty()) {
            rejectedKey = u"%1=%2"_s.arg(key, valueOf(key).left(100));
        }
    }

    QSettings settings;
    QString rejectedKey;
};

} // namespace

std::optional<Deployment> Deployment::fromFile(const QString &file, QString *error)
{
    const QFileInfo info(file);
    if (!info.isFile() || !info.isReadable() || info.size() > maxFileBytes) {
        *error = u"The configuration file %1 cannot be read."_s.arg(file);
        return std::nullopt;
    }
    Deployment result;
    Reader reader(file);
    reader.host(u"Service/WebHost"_s, result.webHost);
    reader.port(u"Service/WebPort"_s, result.webPort);
    reader.host(u"Service/ImportHost"_s, result.importHost);
    reader.text(u"Service/Salt"_s, result.salt);
    reader.list(u"Service/OldSalts"_s, result.oldSalts);
    reader.text(u"Service/FeedbackMailbox"_s, result.feedbackMailbox);
    reader.text(u"Service/MakerUrl"_s, result.makerUrl);
    reader.endpoint(u"TestServers/Swisscom"_s, result.swisscom);
    reader.endpoint(u"TestServers/Sunrise"_s, result.sunrise);
    reader.endpoint(u"TestServers/HSR"_s, result.hsr);
    reader.endpoint(u"TestServers/IpPlusGermany"_s, result.ipPlusGermany);
    reader.endpoint(u"TestServers/IpPlusItaly"_s, result.ipPlusItaly);
    reader.endpoint(u"TestServers/IpPlusNewYork"_s, result.ipPlusNewYork);
    reader.text(u"Map/TileUrl"_s, result.tileUrl);
    reader.text(u"Map/Attribution"_s, result.attribution);
    if (!reader.readable()) {
        *error = u"The configuration file %1 is not a valid INI file."_s.arg(file);
        return std::nullopt;
    }
    if (!reader.rejected().isEmpty()) {
        *error = u"The configuration file %1 has a value that makes no sense: %2."_s.arg(
            file, reader.rejected());
        return std::nullopt;
    }
    return result;
}

std::optional<Deployment> Deployment::load(const QString &file, QString *error)
{
    if (!file.isEmpty()) {
        return fromFile(file, error);
    }
    const QString fromEnvironment = qEnvironmentVariable("VELOMETER_CONFIG");
    if (!fromEnvironment.isEmpty()) {
        return fromFile(fromEnvironment, error);
    }
    const QString installed = QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                                     u"velometer/deployment.conf"_s);
    return installed.isEmpty() ? Deployment() : fromFile(installed, error);
}

QString Deployment::webAddress() const
{
    const QString address = u"http://"_s + Endpoint::bracketed(webHost);
    return webPort == defaultHttpPort ? address : u"%1:%2"_s.arg(address).arg(webPort);
}

QString Deployment::makerAddress() const
{
    return makerUrl.isEmpty() ? webAddress() + u'/' : makerUrl;
}

QString Deployment::userPageAddress(qint64 userId, const QString &language) const
{
    return u"%1/velometer/Controller?page=UserReport&language=%2&userid=%3"_s.arg(
        webAddress(), language, QString::number(userId));
}

const Deployment &Deployment::current()
{
    return currentDeployment;
}

void Deployment::setCurrent(const Deployment &deployment)
{
    currentDeployment = deployment;
}

} // namespace velometer
