#include "figures/csvformat.h"

#include "figures/jsonformat.h"
#include "figures/testfields.h"
#include "utils/cleantext.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// More than any receiver or clock has.
constexpr int significantDigits = 12;

QString cellOf(const QVariant &value, Unit unit)
{
    if (!value.isValid()) {
        return {};
    }
    if (unit == Unit::Moment) {
        return JsonFormat::timestamp(value.toLongLong());
    }
    switch (value.typeId()) {
    case QMetaType::QString: return CsvFormat::cell(value.toString());
    case QMetaType::Double: return QString::number(value.toDouble(), 'g', significantDigits);
    default: return value.toString();
    }
}

/// A list has no place in a cell.
bool isColumn(const TestField &field)
{
    return !field.key.isEmpty() && field.list == 0;
}

} // namespace

namespace CsvFormat {

QByteArray testHeader()
{
    QStringList names;
    for (const TestField &field : TestFields::all()) {
        if (isColumn(field)) {
            names.append(field.column());
        }
    }
    return line(names);
}

QByteArray test(const FinishedTest &test)
{
    QStringList cells;
    for (const TestField &field : TestFields::all()) {
        if (isColumn(field)) {
            cells.append(cellOf(field.get(test), field.unit));
        }
    }
    return line(cells);
}

QString cell(const QString &text)
{
    QString value = cleanText(text);
    if (!value.isEmpty() && u"=+-@"_s.contains(value.front())) {
        value.prepend(u'\'');
    }
    if (!value.contains(u'"') && !value.contains(u',')) {
        return value;
    }
    return u'"' + value.replace(u'"', "\"\""_L1) + u'"';
}

QByteArray line(const QStringList &cells)
{
    return cells.join(u',').toUtf8() + "\r\n";
}

} // namespace CsvFormat

} // namespace velometer
