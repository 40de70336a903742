#include "cli/jsonformat.h"

#include "data/testfields.h"
#include "data/testserver.h"
#include "utils/cleantext.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QJsonValue toJson(const QVariant &value, Unit unit)
{
    if (!value.isValid()) {
        return QJsonValue::Null;
    }
    if (unit == Unit::Identity) {
        return value.toString();
    }
    if (unit == Unit::Moment) {
        return JsonFormat::timestamp(value.toLongLong());
    }
    if (value.typeId() != QMetaType::QVariantList) {
        return QJsonValue::fromVariant(value);
    }
    QJsonArray array;
    for (const QVariant &each : value.toList()) {
        array.append(toJson(each, unit));
    }
    return array;
}

QJsonObject event(QLatin1StringView name)
{
    return {{u"event"_s, name}};
}

} // namespace

namespace JsonFormat {

QJsonObject test(const FinishedTest &test)
{
    QJsonObject object{{u"schema_version"_s, schemaVersion}};
    for (const TestField &field : TestFields::all()) {
        const QString key = field.key;
        const QString group = key.section(u'.', 0, -2);
        // The row in this device's store is nobody else's affair.
        if (key.isEmpty() || key == "id"_L1) {
            continue;
        }
        const QJsonValue value = toJson(field.get(test), field.unit);
        if (group.isEmpty()) {
            object.insert(key, value);
            continue;
        }
        QJsonObject members = object.value(group).toObject();
        members.insert(key.section(u'.', -1), value);
        object.insert(group, members);
    }
    if (!test.position.latitude) {
        object.insert("position"_L1, QJsonValue::Null);
    }
    return object;
}

QJsonObject server(const TestServer &server, bool selected)
{
    return {{u"name"_s, cleanText(server.getName())},
            {u"host"_s, cleanText(server.getHostname())},
            {u"port"_s, server.getPort()},
            {u"city"_s, cleanText(server.getCity())},
            {u"state"_s, cleanText(server.getState())},
            {u"country"_s, cleanText(server.getCountry())},
            {u"selected"_s, selected}};
}

QJsonObject phaseEvent(const QString &phase, int test, int count)
{
    QJsonObject object = event("phase"_L1);
    object.insert("phase"_L1, phase);
    object.insert("test"_L1, test);
    object.insert("count"_L1, count);
    return object;
}

QJsonObject progressEvent(int value, int max)
{
    QJsonObject object = event("progress"_L1);
    object.insert("value"_L1, value);
    object.insert("max"_L1, max);
    return object;
}

QJsonObject resultEvent(const FinishedTest &finished)
{
    QJsonObject object = event("result"_L1);
    object.insert("result"_L1, test(finished));
    return object;
}

QJsonObject errorEvent(const QString &message, int status)
{
    QJsonObject object = event("error"_L1);
    object.insert("message"_L1, message);
    object.insert("status"_L1, status);
    return object;
}

QByteArray line(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString timestamp(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms).toUTC().toString(Qt::ISODateWithMs);
}

} // namespace JsonFormat

} // namespace velometer
