#include "data/delayplan.h"

#include "utils/utils.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

const QString loadKey = u"UnderLoad"_s;

} // namespace

DelayPlan DelayPlan::remembered()
{
    DelayPlan plan;
    plan.underLoad = Utils::getSettingsValue(loadKey) == "set"_L1;
    return plan;
}

void DelayPlan::remember() const
{
    Utils::setSettingsValue(loadKey, underLoad ? u"set"_s : u"notset"_s);
}

} // namespace velometer
