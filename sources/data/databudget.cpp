#include "data/databudget.h"

#include "utils/utils.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

const QString settingsKey = u"MaxBytes"_s;

} // namespace

DataBudget::DataBudget(std::optional<qint64> bytes)
    : limit(bytes && *bytes >= minimum ? bytes : std::nullopt)
{}

DataBudget DataBudget::remembered()
{
    bool isNumber = false;
    const qint64 bytes = Utils::getSettingsValue(settingsKey).toLongLong(&isNumber);
    return isNumber ? DataBudget(bytes) : DataBudget();
}

void DataBudget::remember() const
{
    Utils::setSettingsValue(settingsKey, limit ? QString::number(*limit) : QString());
}

std::optional<qint64> DataBudget::downloadShare() const
{
    return limit ? std::optional(*limit / 2) : std::nullopt;
}

std::optional<qint64> DataBudget::uploadShare(qint64 downloaded) const
{
    return limit ? std::optional(std::max<qint64>(0, *limit - downloaded)) : std::nullopt;
}

QString DataBudget::text() const
{
    if (!limit) {
        return {};
    }
    const auto in = [this](double unit, QLatin1StringView name) {
        return QString::number(static_cast<double>(*limit) / unit, 'g', 12) + name;
    };
    if (*limit >= 1'000'000'000) {
        return in(1e9, " GB"_L1);
    }
    return *limit >= 1'000'000 ? in(1e6, " MB"_L1) : in(1e3, " kB"_L1);
}

QString DataBudget::endedEarly(const QString &phases) const
{
    QStringList known;
    for (const auto &[name, shown] :
         {std::pair{u"download"_s, tr("download")}, {u"upload"_s, tr("upload")}}) {
        if (phases.split(u',').contains(name)) {
            known.append(shown);
        }
    }
    if (known.isEmpty()) {
        return {};
    }
    const QString ended = tr("ended early: %1").arg(known.join(", "_L1));
    return limit ? tr("at most %1; %2").arg(text(), ended) : ended;
}

} // namespace velometer
