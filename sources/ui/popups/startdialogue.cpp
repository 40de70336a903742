#include "ui/popups/startdialogue.h"

#include "data/databudget.h"
#include "db/databasemanager.h"
#include "db/dbtestresults.h"
#include "measurement/testcontroller.h"
#include "ui/popups/messagepopup.h"
#include "ui/popups/numberofmeasurementspopup.h"
#include "ui/popups/popuplayer.h"
#include "utils/utils.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

QString codeOf(UserLocation location)
{
    switch (location) {
    case LOCATION_NOTSELECTED: return u"Unknown"_s;
    case LOCATION_INDOOR: return u"Indoor"_s;
    case LOCATION_OUTDOOR: return u"Outdoor"_s;
    case LOCATION_TRAIN: return u"Train"_s;
    case LOCATION_CAR: return u"Car"_s;
    case LOCATION_OTHER: return u"Other"_s;
    }
    Q_UNREACHABLE();
}

} // namespace

namespace {

/// What a test moves that is as fast as the one before; 0 when there is none.
qint64 expectedBytes()
{
    constexpr double bitsPerByte = 8;
    const auto last = gDB->getNewestResults();
    if (!last) {
        return 0;
    }
    const double bits = (std::max(0.0, last->downloadSpeed) + std::max(0.0, last->uploadSpeed)) *
                        TestController::standardDuration;
    const qint64 bytes = qRound64(bits / bitsPerByte);
    return std::min(bytes, DataBudget::remembered().bytes().value_or(bytes));
}

} // namespace

StartDialogue::StartDialogue(PopupLayer &popupLayer, TestConsent &testConsent,
                             std::function<bool()> roaming, QWidget *window)
    : QObject(window)
    , layer(popupLayer)
    , consent(testConsent)
    , isRoaming(std::move(roaming))
    , locationPopup(new LocationPopup(window))
    , numberPopup(new NumberOfMeasurementsPopup(window))
    , warningPopup(new MessagePopup(window))
    , resumePopup(new MessagePopup(window))
{
    warningPopup->setObjectName(u"WarningPopup"_s);
    for (PopupBase *popup :
         std::initializer_list<PopupBase *>{locationPopup, numberPopup, warningPopup}) {
        popup->hide();
        connect(popup, &PopupBase::cancelled, this, &StartDialogue::cancel);
    }
    connect(locationPopup, &LocationPopup::locationSelected, this,
            &StartDialogue::locationSelected);
    connect(numberPopup, &NumberOfMeasurementsPopup::numberSelected, this,
            &StartDialogue::numberSelected);
    connect(warningPopup, &MessagePopup::accepted, this, &StartDialogue::warningAccepted);
    resumePopup->setObjectName(u"ResumePopup"_s);
    resumePopup->hide();
    connect(resumePopup, &MessagePopup::accepted, this, [this] {
        layer.close(resumePopup);
        begin(Goal::Resumption);
    });
    connect(resumePopup, &PopupBase::cancelled, this, [this] {
        layer.close(resumePopup);
        Q_EMIT declined();
    });
}

void StartDialogue::offer(const TestSeries::Interrupted &series)
{
    resumePopup->setMessage({tr("Test Series"),
                             tr("A series was interrupted. Test %1 of %2 was next. Continue?")
                                 .arg(series.nextAt(Utils::getTimeInMs()))
                                 .arg(series.plan.count),
                             tr("Yes, continue"), tr("No, forget it")});
    layer.show(resumePopup);
}

void StartDialogue::begin(Goal newGoal)
{
    goal = newGoal;
    advance(Step::Costs);
}

void StartDialogue::advance(Step next)
{
    step = next;
    switch (step) {
    case Step::Idle:
    case Step::Done: return;
    case Step::Costs:
        if (!ask(consent.askCosts())) {
            advance(Step::Location);
        }
        return;
    case Step::Location:
        // An interrupted series knows where it was made.
        if (location == "Unknown"_L1 && goal != Goal::Resumption) {
            layer.show(locationPopup);
        } else {
            advance(Step::Roaming);
        }
        return;
    case Step::Roaming:
        if (!ask(consent.askRoaming(isRoaming()))) {
            advance(Step::Number);
        }
        return;
    case Step::Number:
        if (goal == Goal::Series) {
            showNumber();
        } else {
            finish({location});
        }
        return;
    }
}

void StartDialogue::showNumber()
{
    numberPopup->setBytesPerTest(expectedBytes());
    layer.show(numberPopup);
}

bool StartDialogue::ask(const std::optional<TestConsent::Dialogue> &question)
{
    if (question) {
        asked = question->question;
        warningPopup->setMessage(
            {question->title, question->text, tr("Yes, start test"), tr("No, don't test")});
        layer.show(warningPopup);
    }
    return question.has_value();
}

void StartDialogue::askLocation()
{
    step = Step::Idle;
    layer.show(locationPopup);
}

void StartDialogue::askNumber()
{
    goal = Goal::Series;
    step = Step::Number;
    showNumber();
}

void StartDialogue::setLocation(const QString &code)
{
    location = code;
    Q_EMIT locationChanged(location);
}

void StartDialogue::locationSelected(UserLocation where)
{
    layer.close(locationPopup);
    setLocation(codeOf(where));
    if (step == Step::Location) {
        advance(Step::Roaming);
    }
}

void StartDialogue::numberSelected(int count, int intervalSeconds)
{
    layer.close(numberPopup);
    finish({location, count, std::chrono::seconds(intervalSeconds)});
}

void StartDialogue::warningAccepted()
{
    layer.close(warningPopup);
    consent.agree(asked);
    advance(step == Step::Costs ? Step::Location : Step::Number);
}

void StartDialogue::cancel()
{
    step = Step::Idle;
    for (PopupBase *popup :
         std::initializer_list<PopupBase *>{locationPopup, numberPopup, warningPopup}) {
        layer.close(popup);
    }
}

void StartDialogue::finish(const TestSeries::Plan &plan)
{
    step = Step::Done;
    Q_EMIT agreed(goal, plan);
}

} // namespace velometer
