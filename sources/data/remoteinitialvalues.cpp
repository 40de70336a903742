#include "data/remoteinitialvalues.h"

#include "utils/utils.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

std::optional<QString> valueOf(const QString &answer, QLatin1StringView key)
{
    const qsizetype start = answer.indexOf(key);
    if (start < 0) {
        return std::nullopt;
    }
    const qsizetype from = start + key.size();
    const qsizetype end = answer.indexOf(u';', from);
    return answer.mid(from, end < 0 ? -1 : end - from);
}

void readText(const QString &answer, QLatin1StringView key, QString &field)
{
    if (const auto value = valueOf(answer, key)) {
        field = *value;
    }
}

void readNumber(const QString &answer, QLatin1StringView key, const QString &error, int &field)
{
    const auto value = valueOf(answer, key);
    if (!value) {
        return;
    }
    bool ok = false;
    field = value->toInt(&ok); // 0 when it is no number
    if (!ok) {
        Utils::addLogEntry(error.arg(*value));
    }
}

} // namespace

RemoteInitialValues::RemoteInitialValues(QObject *parent)
    : QObject(parent)
{}

void RemoteInitialValues::remoteInitialValuesLoaded(QString answer)
{
    readText(answer, "Client-Hostname:"_L1, clientHostname);
    readText(answer, "Server-IP:"_L1, remoteIP);
    readText(answer, "Remote-IP:"_L1, localIP);
    readText(answer, "Local-IP:"_L1, internalIP);
    // Some socket libraries print an address with a leading slash.
    if (internalIP.startsWith(u'/')) {
        internalIP.remove(0, 1);
    }
    readNumber(answer, "MSS:"_L1, u"Error decoding mss (%1)"_s, mss);
    readNumber(answer, "WinScaleRcvd:"_L1, u"Error decoding wscale (%1)"_s, wscale);
    readNumber(answer, "MaxRwinRcvd:"_L1, u"Error decoding MaxRwinRcvd (%1)"_s, rwin);
    readNumber(answer, "SACK:"_L1, u"Error decoding SACK (%1)"_s, sack);
    readNumber(answer, "Timestamp:"_L1, u"Error decoding Timestamp (%1)"_s, timestamp);
    if (answer.contains("Web100:"_L1) || mss == 0) {
        web100Error = true;
    }
}

} // namespace velometer
