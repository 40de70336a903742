#include "app/userpage.h"

#include "figures/finishedtest.h"
#include "utils/deployment.h"
#include "utils/utils.h"

using namespace Qt::StringLiterals;

namespace velometer {

QString UserPage::userId()
{
    const qlonglong id = Utils::getSettingsCommonValue(u"UserId"_s).toLongLong();
    return id > 0 ? QString::number(id) : QString();
}

QString UserPage::address(const QString &language)
{
    const QString id = userId();
    return id.isEmpty() ? QString()
                        : Deployment::current().userPageAddress(id.toLongLong(), language);
}

QString UserPage::addressOf(const FinishedTest &test, const QString &language)
{
    if (!test.userId || !test.seriesId || !test.testId) {
        return {};
    }
    return u"%1/velometer/Controller?page=Test&language=%2&userid=%3&seriesid=%4&testid=%5"_s.arg(
        Deployment::current().webAddress(), language, QString::number(*test.userId),
        QString::number(*test.seriesId), QString::number(*test.testId));
}

} // namespace velometer
