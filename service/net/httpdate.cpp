#include "net/httpdate.h"

#include <QDateTime>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace velometer {

std::string httpDate()
{
    return QLocale::c()
        .toString(QDateTime::currentDateTimeUtc(), u"'Date: 'ddd, dd MMM yyyy hh:mm:ss 'GMT\r\n'"_s)
        .toStdString();
}

} // namespace velometer
