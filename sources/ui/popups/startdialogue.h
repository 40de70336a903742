#pragma once

#include "app/testconsent.h"
#include "app/testseries.h"
#include "ui/popups/locationpopup.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace velometer {

class MessagePopup;
class NumberOfMeasurementsPopup;
class PopupLayer;

/// Leads through the questions before a test: its costs, where the user is, roaming, and how many
/// tests. Each is asked only when its answer is not known; a refusal ends the dialogue. Owns the
/// popups it asks with. Main thread only.
class StartDialogue : public QObject
{
    Q_OBJECT

public:
    /// What is to be started at the end.
    enum class Goal { Test, Series, Resumption };

    /// Everything is borrowed and outlives the dialogue. @p roaming tells whether the device roams
    /// at this moment.
    StartDialogue(PopupLayer &layer, TestConsent &consent, std::function<bool()> roaming,
                  QWidget *window);

    /// Begins anew; ends in agreed() or in silence.
    void begin(Goal goal);
    /// Asks whether an interrupted series shall go on; yes begins with Goal::Resumption.
    void offer(const TestSeries::Interrupted &series);
    /// Asks where the user is, outside the questions: the answer starts nothing.
    void askLocation();
    /// Asks how many tests, without the questions before it.
    void askNumber();

    QString getLocation() const { return location; } ///< code, "Unknown" before it is known
    void setLocation(const QString &code);

    // The answers, as the popups give them.
    void locationSelected(UserLocation where);
    void numberSelected(int count, int intervalSeconds);
    void warningAccepted();
    void cancel();

Q_SIGNALS:
    void locationChanged(const QString &code);
    /// Everything is answered: start this, or resume for Goal::Resumption.
    void agreed(StartDialogue::Goal goal, const TestSeries::Plan &plan);
    /// The series that was offered shall not go on.
    void declined();

private:
    enum class Step { Idle, Costs, Location, Roaming, Number, Done };

    void advance(Step next);
    void showNumber();
    bool ask(const std::optional<TestConsent::Dialogue> &question);
    void finish(const TestSeries::Plan &plan);

    PopupLayer &layer;
    TestConsent &consent;
    std::function<bool()> isRoaming;
    LocationPopup *locationPopup;
    NumberOfMeasurementsPopup *numberPopup;
    MessagePopup *warningPopup;
    MessagePopup *resumePopup;
    Goal goal = Goal::Test;
    Step step = Step::Idle;
    TestConsent::Question asked = TestConsent::Question::Costs;
    QString location = QStringLiteral("Unknown");
};

} // namespace velometer
