#include "reports/placeholders.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer::Placeholders {

namespace {

/// What the kernel tells of the longest stream is not half of it.
constexpr qsizetype maxValue = 131'072;

/// A client has eight of them; a document of nothing but placeholders must not grow.
constexpr int maxCount = 64;
constexpr qsizetype maxGrowth = 2 * maxValue;

QString harmless(const QString &value)
{
    static const QRegularExpression others(u"[^A-Za-z0-9 .:;,_/=()+-]"_s);
    return QString(value).replace(others, u"_"_s);
}

} // namespace

QString fill(const QString &document, const QHash<QString, QString> &values)
{
    static const QRegularExpression place(u"###SERVER_([A-Z]{1,20})###"_s);
    QString result;
    result.reserve(document.size());
    qsizetype taken = 0;
    qsizetype room = maxGrowth;
    auto matches = place.globalMatch(document);
    for (int count = 0; matches.hasNext() && count < maxCount;) {
        const auto match = matches.next();
        const auto value = values.constFind(match.captured(1));
        if (value == values.constEnd()) {
            continue;
        }
        result += QStringView(document).sliced(taken, match.capturedStart() - taken);
        const QString put = harmless(value->left(std::min(room, maxValue)));
        room -= put.size();
        result += put;
        taken = match.capturedEnd();
        ++count;
    }
    result += QStringView(document).sliced(taken);
    return result;
}

} // namespace velometer::Placeholders
