#include "app/testconsent.h"

#include "platform/platform.h"
#include "utils/utils.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

const QString costsKey = u"CostWarning"_s;

} // namespace

TestConsent::TestConsent(const Platform &devicePlatform, QObject *parent)
    : QObject(parent)
    , platform(devicePlatform)
{}

std::optional<TestConsent::Dialogue> TestConsent::askCosts() const
{
    if (!Utils::getSettingsValue(costsKey).isEmpty()) {
        return std::nullopt;
    }
    QStringList hints;
    const PlatformFacts facts = platform.facts();
    if (facts.metered.value_or(false)) {
        hints.append(facts.meteredGuessed ? tr("This connection is probably metered.")
                                          : tr("This connection is metered."));
    }
    const DataBudget budget = DataBudget::remembered();
    if (budget.bytes()) {
        hints.append(tr("A test uses at most %1.").arg(budget.text()));
    }
    const QString question = tr("CostsQuestion");
    return Dialogue{Question::Costs, tr("Costs"),
                    hints.isEmpty() ? question : question + "<br><br>"_L1 + hints.join(u' ')};
}

std::optional<TestConsent::Dialogue> TestConsent::askRoaming(bool roaming) const
{
    if (!roaming || roamingAgreed) {
        return std::nullopt;
    }
    return Dialogue{Question::Roaming, tr("Roaming"), tr("RoamingQuestion")};
}

// Who agrees to roaming knows of the costs.
void TestConsent::agree(Question question)
{
    roamingAgreed |= question == Question::Roaming;
    Utils::setSettingsValue(costsKey, u"set"_s);
}

QString TestConsent::notice(DataBudget budget) const
{
    const PlatformFacts facts = platform.facts();
    if (!facts.metered.value_or(false)) {
        return {};
    }
    QString text = facts.meteredGuessed
                       ? tr("The connection is metered (guessed from its kind); a test may cost "
                            "money.")
                       : tr("The connection is metered; a test may cost money.");
    if (budget.bytes()) {
        text += u' ' + tr("A test uses at most %1.").arg(budget.text());
    }
    return text;
}

QString TestConsent::roamingRefusal() const
{
    return tr("The device is roaming; a test may be expensive. --allow-roaming tests all the "
              "same.");
}

} // namespace velometer
