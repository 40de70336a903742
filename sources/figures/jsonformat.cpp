#include "figures/jsonformat.h"

#include "figures/testfields.h"

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
