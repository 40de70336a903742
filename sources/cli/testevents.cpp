#include "cli/testevents.h"

#include "figures/jsonformat.h"

using namespace Qt::StringLiterals;

namespace velometer::TestEvents {

namespace {

QJsonObject event(QLatin1StringView name)
{
    return {{u"event"_s, name}};
}

} // namespace

QJsonObject phase(const QString &name, int test, int count)
{
    QJsonObject object = event("phase"_L1);
    object.insert("phase"_L1, name);
    object.insert("test"_L1, test);
    object.insert("count"_L1, count);
    return object;
}

QJsonObject progress(int value, int max)
{
    QJsonObject object = event("progress"_L1);
    object.insert("value"_L1, value);
    object.insert("max"_L1, max);
    return object;
}

QJsonObject result(const FinishedTest &finished)
{
    QJsonObject object = event("result"_L1);
    object.insert("result"_L1, JsonFormat::test(finished));
    return object;
}

QJsonObject error(const QString &message, int status)
{
    QJsonObject object = event("error"_L1);
    object.insert("message"_L1, message);
    object.insert("status"_L1, status);
    return object;
}

} // namespace velometer::TestEvents
