#include "web/viewer.h"

using namespace Qt::StringLiterals;

namespace velometer {

QString Viewer::listPage() const
{
    return share.isEmpty() ? u"UserReport"_s : u"Shared"_s;
}

QString Viewer::credential() const
{
    UrlQuery query;
    if (isOwner()) {
        query.add(u"userid"_s, QString::number(userId));
    } else if (!share.isEmpty()) {
        query.add(u"share"_s, share);
    }
    return query.toString();
}

QString Viewer::address(const QString &page, const TestFilter &filter, Parameters more) const
{
    QString text = u"/velometer/Controller?page="_s + page;
    UrlQuery rest;
    rest.add(u"language"_s, language == Language::German ? u"de"_s : u"en"_s);
    for (const auto &[name, value] : more) {
        rest.add(name, value);
    }
    for (const QString &part : {credential(), rest.toString(), filter.toQuery()}) {
        if (!part.isEmpty()) {
            text += u'&' + part;
        }
    }
    return text;
}

} // namespace velometer
