#include "measurement/requestparameters.h"

#include "data/testcontext.h"

using namespace Qt::StringLiterals;

namespace velometer {

QString testParameters(const TestContext &context, qlonglong testIdOffset)
{
    return u"testuserid=%1&seriesid=%2&testid=%3"_s.arg(
        QString::number(context.getUserId()), QString::number(context.getSeriesId()),
        QString::number(context.getTestId() + testIdOffset));
}

} // namespace velometer
