#include "data/reportdocument.h"

#include <QCryptographicHash>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString wrapped(QLatin1StringView name, const QString &content)
{
    return u'<' + name + u'>' + content + "</"_L1 + name + u'>';
}

bool allowed(char32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
           (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

} // namespace

QString ReportDocument::element(QLatin1StringView name, const QString &value)
{
    QString escaped = value.toHtmlEscaped();
    escaped.replace(u'\'', "&apos;"_L1);
    return wrapped(name, escaped);
}

QString ReportDocument::element(QLatin1StringView name, qint64 value)
{
    return wrapped(name, QString::number(value));
}

QString ReportDocument::cdataElement(QLatin1StringView name, const QString &value)
{
    QString text = value;
    text.replace("]]>"_L1, "]]]]><![CDATA[>"_L1);
    text.replace(u'\'', "]]>&apos;<![CDATA["_L1);
    return wrapped(name, "<![CDATA["_L1 + text + "]]>"_L1);
}

QString ReportDocument::withoutForbiddenCharacters(const QString &document)
{
    QString clean;
    clean.reserve(document.size());
    for (const char32_t c : document.toUcs4()) {
        if (allowed(c)) {
            clean += QString::fromUcs4(&c, 1);
        }
    }
    return clean;
}

QString ReportDocument::hash(const QString &salt, const QStringList &parts)
{
    const QString text = salt + u'|' + parts.join(u'|') + u'|' + salt;
    const QByteArray digest = QCryptographicHash::hash(text.toLocal8Bit(), QCryptographicHash::Md5);
    return QString::fromLatin1(digest.toBase64());
}

QString ReportDocument::withoutUmlauts(QString document)
{
    return document.replace(u'ä', "ae"_L1).replace(u'ö', "oe"_L1).replace(u'ü', "ue"_L1);
}

} // namespace velometer
