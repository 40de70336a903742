#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

namespace velometer {

/// The facts of one finished test by key, as the details window shows them and the database keeps
/// them. A value is a text, a 64-bit integer or a double.
class TestDetails : public QObject
{
    Q_OBJECT

public:
    TestDetails(QObject *parent, qlonglong myTestId);

    qlonglong getMyTestId() const { return myTestId; }
    void setMyTestId(qlonglong id) { myTestId = id; }
    const QHash<QString, QVariant> &getData() const { return data; }

    void putString(const QString &key, const QString &value) { data.insert(key, value); }
    void putLong(const QString &key, qlonglong value) { data.insert(key, value); }
    void putDouble(const QString &key, double value) { data.insert(key, value); }

    QString getString(const QString &key) const { return data.value(key).toString(); }
    qlonglong getLong(const QString &key) const { return data.value(key).toLongLong(); }
    double getDouble(const QString &key) const { return data.value(key).toDouble(); }
    bool contains(const QString &key) const { return data.contains(key); }

    /// True when the latitude or the longitude is not 0.
    bool hasGPSCoordinates() const;

    /// "%.2f MB" of 1024 x 1024 bytes, "Format Error" for what is no integer.
    QString formatMegaBytes(const QVariant &bytes) const;

    /// The value of @p key as a person reads it, with its unit; the translated "n/a" when there is
    /// none.
    QString getFormatedStringByKey(const QString &key) const;

private:
    QString formattedVelocity() const;
    QString formattedDistance() const;

    QHash<QString, QVariant> data;
    qlonglong myTestId;
};

} // namespace velometer
