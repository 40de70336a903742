#pragma once

#include "data/databudget.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace velometer {

class Platform;

/// What stands before a test and must be known or agreed to: that it may cost money, that the
/// connection is metered, that the device roams, and the data budget that bounds it. A window asks
/// by these values, a command line prints or refuses by them. Remembers what was agreed to: the
/// costs for good, in the settings, roaming for this run of the program. Main thread only.
class TestConsent : public QObject
{
    Q_OBJECT

public:
    enum class Question { Costs, Roaming };

    /// A question as a window shows it; the text is rich text.
    struct Dialogue
    {
        Question question = Question::Costs;
        QString title;
        QString text;
    };

    /// @p platform is borrowed and outlives this.
    explicit TestConsent(const Platform &platform, QObject *parent = nullptr);

    /// Nothing when the costs were agreed to once.
    std::optional<Dialogue> askCosts() const;
    /// Nothing when the device does not roam, or roaming was agreed to.
    std::optional<Dialogue> askRoaming(bool roaming) const;
    void agree(Question question);
    /// Agreed to by an option of the command line, for this run.
    void allowRoaming() { roamingAgreed = true; }
    bool isRoamingAgreed() const { return roamingAgreed; }

    /// What a test may cost, as one line of plain text; empty when nothing is known.
    QString notice(DataBudget budget) const;
    /// Why a roaming device does not test, and what to do.
    QString roamingRefusal() const;

private:
    const Platform &platform;
    bool roamingAgreed = false;
};

} // namespace velometer
